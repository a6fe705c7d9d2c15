#pragma once

namespace cli {

/// The version of the JSON lines that the program reads and writes. It increases when a key is
/// removed or changes its meaning.
inline constexpr int kFormatVersion = 1;

/// The version of the lines of `cableinfo export`.
inline constexpr int kExportFormatVersion = 2;

}  // namespace cli
