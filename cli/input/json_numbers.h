#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cli {

/// JSON limits no number, but the parser refuses integers that 64 bits cannot hold and numbers that
/// a 64-bit float cannot hold. Returns the line with such numbers made representable, none when it
/// has no such number:
///
///     18446744073709551616  ->  18446744073709551616e0      a float of about the same value
///     -1e400                ->  -1.7976931348623157e308     the float of the largest magnitude
///
/// Fields then report the number as out of their range. To be called for lines that the parser
/// rejected.
std::optional<std::string> Representable(std::string_view line);

}  // namespace cli
