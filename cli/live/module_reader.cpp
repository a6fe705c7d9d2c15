#include "cli/live/module_reader.h"

#include <algorithm>
#include <utility>

#include "cable_info/module_memory/page_plan.h"

namespace cli {

namespace {

using cable_info::MemoryPart;
using cable_info::ModuleImage;
using Clock = std::chrono::steady_clock;

// True for errors after which nothing else can be read.
bool EndsAll(ReadError::Kind kind) { return kind != ReadError::Kind::kPage; }

// A bus on which no device answers reads as ones.
bool IsUnanswered(const PageAnswer& answer) {
  constexpr std::uint8_t kUnanswered = 0xFF;
  return std::all_of(answer.bytes.begin(), answer.bytes.end(),
                     [](std::uint8_t byte) { return byte == kUnanswered; });
}

class LiveReading {
 public:
  explicit LiveReading(PageReader& reader) : reader_(reader) {}

  LiveModule Run(Clock::time_point end) {
    while (const std::optional<MemoryPart> part = NextPart()) {
      if (Clock::now() >= end) {
        return Fail({ReadError::Kind::kTimeLimit, "the module answers too slowly"});
      }
      tried_.push_back(*part);
      PageAnswer answer = reader_.Read(RequestFor(*part));
      const bool is_first = tried_.size() == 1;
      if (answer.error && (is_first || EndsAll(answer.error->kind))) {
        return Fail(std::move(*answer.error));
      }
      if (is_first && IsUnanswered(answer)) {
        return Fail({ReadError::Kind::kNoModule, "the module does not answer"});
      }
      Store(*part, answer);
    }
    return std::move(module_);
  }

 private:
  std::optional<MemoryPart> NextPart() const {
    for (const MemoryPart& part : PartsToRead(module_.image)) {
      if (std::find(tried_.begin(), tried_.end(), part) == tried_.end()) return part;
    }
    return std::nullopt;
  }

  void Store(MemoryPart part, const PageAnswer& answer) {
    const std::string name = PageName(part.page);
    if (answer.error) {
      module_.remarks.push_back(name + " cannot be read: " + answer.error->text);
      return;
    }
    const std::size_t size = std::min(answer.bytes.size(), ModuleImage::kHalf);
    if (size < ModuleImage::kHalf) {
      module_.remarks.push_back("only " + std::to_string(size) + " of 128 bytes of " + name +
                                " were read");
    }
    // The name of the first part depends on its first byte.
    if (tried_.size() == 1) {
      part.page = cable_info::FirstPageOf(answer.bytes.front());
      tried_.back() = part;
    }
    module_.image.Put(part.page, part.first, answer.bytes.data(), size);
  }

  LiveModule Fail(ReadError error) {
    module_.image.Clear();
    module_.error = std::move(error);
    return std::move(module_);
  }

  PageReader& reader_;
  std::vector<MemoryPart> tried_;
  LiveModule module_;
};

}  // namespace

LiveModule ReadLiveModule(PageReader& reader, std::chrono::milliseconds limit) {
  return LiveReading(reader).Run(Clock::now() + limit);
}

}  // namespace cli
