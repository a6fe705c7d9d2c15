#include "cli/output/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

namespace cli {

namespace {

constexpr std::chrono::milliseconds kFirstShown{500};  // short work needs no meter
constexpr std::chrono::milliseconds kInterval{200};

constexpr const char* kClearRest = "\x1b[K";  // clears the rest of the terminal's line

// 1234567 as 1,234,567.
std::string Grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

std::string Duration(double seconds) {
  const auto whole = std::llround(seconds);
  if (whole < 60) return std::to_string(whole) + " s";
  return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
}

}  // namespace

Progress::Progress(Meter meter, std::optional<std::uint64_t> total_bytes)
    : meter_(meter), total_bytes_(total_bytes), start_(Clock::now()), next_(start_ + kFirstShown) {}

void Progress::Update(std::uint64_t ports, std::uint64_t bytes) {
  if (meter_ == Meter::kHidden) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + kInterval;

  const double elapsed = std::chrono::duration<double>(now - start_).count();
  std::string line = Grouped(ports) + " ports";
  if (total_bytes_ && *total_bytes_ > 0) {
    const double share =
        std::min(1.0, static_cast<double>(bytes) / static_cast<double>(*total_bytes_));
    line += ", " + std::to_string(static_cast<int>(share * 100)) + " %";
  }
  line +=
      ", " + Grouped(static_cast<std::uint64_t>(static_cast<double>(ports) / elapsed)) + " ports/s";
  if (total_bytes_ && bytes > 0 && bytes < *total_bytes_) {
    const double left = static_cast<double>(*total_bytes_ - bytes) / static_cast<double>(bytes);
    line += ", " + Duration(elapsed * left) + " left";
  }
  std::cerr << '\r' + line + kClearRest;
  is_on_screen_ = true;
}

void Progress::Clear() {
  if (!is_on_screen_) return;
  std::cerr << '\r' + std::string(kClearRest);
  is_on_screen_ = false;
}

bool StandardErrorIsTerminal() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

}  // namespace cli
