#pragma once

namespace cli {

/// Opens the null device for each of the descriptors 0 to 2 that the caller closed, so that no file
/// opened later becomes standard input, output or error. A closed input or output still fails: it
/// cannot be read or written.
void ReserveStandardDescriptors();

}  // namespace cli
