#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace host {

/// A one-line meter on standard error: ports, per cent where the input's size is known, rate, time
/// left. Silent unless it is shown to a person.
class Progress {
 public:
  Progress(bool shown, std::optional<std::uint64_t> total_bytes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(Progress&&) = delete;
  ~Progress() { Clear(); }

  /// Cheap enough to be told of every port.
  void Update(std::uint64_t ports, std::uint64_t bytes);
  /// Takes the meter off the screen, for a line of another kind.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool shown_;
  bool is_on_screen_ = false;
  std::optional<std::uint64_t> total_bytes_;
  Clock::time_point start_;
  Clock::time_point next_;
};

/// True when standard error is a terminal that can rewrite a line.
bool StandardErrorIsTerminal();

}  // namespace host
