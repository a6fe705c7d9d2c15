#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "cli/live/readers.h"

namespace cli {

namespace {

class TimedReader : public PageReader {
 public:
  TimedReader(std::shared_ptr<PageReader> reader, std::chrono::milliseconds limit)
      : reader_(std::move(reader)), limit_(limit) {}

  PageAnswer Read(const PageRequest& request) override {
    if (reader_ == nullptr) return Failed(NoAnswerInTime());
    std::promise<PageAnswer> promise;
    std::future<PageAnswer> answer = promise.get_future();
    try {
      std::thread([reader = reader_, request, promise = std::move(promise)]() mutable {
        PageAnswer read = reader->Read(request);
        reader.reset();  // first, so that a reader whose answer has arrived is not in use
        promise.set_value(std::move(read));
      }).detach();
    } catch (const std::system_error& error) {
      return Failed({ReadError::Kind::kPort, "no thread: " + error.code().message()});
    }
    if (answer.wait_for(limit_) == std::future_status::ready) return answer.get();
    reader_.reset();  // the thread keeps it until its request ends
    return Failed(NoAnswerInTime());
  }

 private:
  std::shared_ptr<PageReader> reader_;
  const std::chrono::milliseconds limit_;
};

}  // namespace

std::unique_ptr<PageReader> MakeTimedReader(std::shared_ptr<PageReader> reader,
                                            std::chrono::milliseconds limit) {
  return std::make_unique<TimedReader>(std::move(reader), limit);
}

}  // namespace cli
