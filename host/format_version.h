#pragma once

namespace host {

/// The version of the JSON lines that the program reads and writes. It grows when a key changes its
/// meaning or goes away.
inline constexpr int kFormatVersion = 1;

}  // namespace host
