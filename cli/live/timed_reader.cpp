#include <exception>
#include <future>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "cli/live/readers.h"

namespace cli {

namespace {

// Serves a request in its own thread, where an uncaught exception would end the program; it is
// passed to the waiting thread instead. The reader is released first, so that it is no longer in
// use when its answer arrives.
void Answer(std::shared_ptr<PageReader> reader, const PageRequest& request,
            std::promise<PageAnswer> promise) {
  try {
    PageAnswer answer = reader->Read(request);
    reader.reset();
    promise.set_value(std::move(answer));
  } catch (...) {
    reader.reset();
    promise.set_exception(std::current_exception());
  }
}

PageAnswer Received(std::future<PageAnswer>& answer) {
  try {
    return answer.get();
  } catch (const std::exception& error) {
    return Failed({ReadError::Kind::kPort, std::string("request failed: ") + error.what()});
  }
}

class TimedReader : public PageReader {
 public:
  TimedReader(std::shared_ptr<PageReader> reader, std::chrono::milliseconds limit)
      : reader_(std::move(reader)), limit_(limit) {}

  PageAnswer Read(const PageRequest& request) override {
    if (reader_ == nullptr) return Failed(NoAnswerInTime());
    std::promise<PageAnswer> promise;
    std::future<PageAnswer> answer = promise.get_future();
    try {
      std::thread(Answer, reader_, request, std::move(promise)).detach();
    } catch (const std::system_error& error) {
      return Failed({ReadError::Kind::kPort, "no thread: " + error.code().message()});
    }
    if (answer.wait_for(limit_) == std::future_status::ready) return Received(answer);
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
