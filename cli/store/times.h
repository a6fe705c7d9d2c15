#pragma once

#include <string>

namespace cli {

/// A date and time of ISO 8601 in UTC, such as 2026-01-31T12:00:00Z; empty for any other text.
std::string NormalizedTime(const std::string& text);

/// The time now, in the same form.
std::string TimeNow();

}  // namespace cli
