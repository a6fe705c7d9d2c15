#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace cli {

/// A one-line meter on standard error: ports, percentage and remaining time where the size of the
/// input is known, rate.
class Progress {
 public:
  enum class Meter { kHidden, kShown };

  Progress(Meter meter, std::optional<std::uint64_t> total_bytes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(Progress&&) = delete;
  ~Progress() { Clear(); }

  /// Costs next to nothing between two updates of the screen.
  void Update(std::uint64_t ports, std::uint64_t bytes);
  /// Removes the meter from the screen, before a line of another kind.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  Meter meter_;
  bool is_on_screen_ = false;
  std::optional<std::uint64_t> total_bytes_;
  Clock::time_point start_;
  Clock::time_point next_;
};

/// True when standard error is a terminal that can rewrite a line.
bool StandardErrorIsTerminal();

}  // namespace cli
