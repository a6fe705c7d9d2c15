#include "cable_info/text/flushed_lines.h"

#include <ios>
#include <streambuf>
#include <string_view>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

namespace {

// The line whose size is stored at `at`.
std::string_view LineAt(const char* at) {
  std::size_t size = 0;
  std::memcpy(&size, at, sizeof(size));
  return {at + sizeof(size), size};
}

// Does what a stream's own output functions do when its buffer throws. True if the exception must
// be rethrown.
bool MarkBad(std::ostream& os) {
  try {
    os.setstate(std::ios_base::badbit);
  } catch (const std::ios_base::failure&) {
    return true;  // the buffer's own exception is more specific than this one
  }
  return false;
}

}  // namespace

void FlushedLines::FinishAndReserve(std::size_t capacity) {
  Finish();
  out_.Reserve(capacity);
}

void FlushedLines::Finish() {
  const char* at = os_.good() ? WriteDirectly() : out_.view().data();
  while (at != out_.end()) {
    const std::string_view line = LineAt(at);
    os_.write(line.data(), static_cast<std::streamsize>(line.size()));
    os_.flush();
    at = line.data() + line.size();
  }
  out_.Truncate(0);
  os_.width(0);  // as after any formatted output
}

// Writes lines to the stream's buffer until it fails; returns where the unwritten lines begin. When
// the buffer fails, the stream ends in the state that `write` and `flush` of that line would leave.
const char* FlushedLines::WriteDirectly() {
  std::streambuf* const buffer = os_.rdbuf();
  const char* const end = out_.end();
  const char* at = out_.view().data();
  bool is_put = false;
  try {
    while (at != end) {
      const std::string_view line = LineAt(at);
      const auto size = static_cast<std::streamsize>(line.size());
      is_put = false;
      if (buffer->sputn(line.data(), size) != size) break;
      is_put = true;
      if (buffer->pubsync() == -1) break;
      at = line.data() + size;
    }
  } catch (...) {
    if (MarkBad(os_)) throw;
  }
  if (at == end) return end;
  os_.setstate(std::ios_base::badbit);
  if (!is_put) os_.flush();
  return LineAt(at).data() + LineAt(at).size();
}

}  // namespace text
}  // namespace cable_info
