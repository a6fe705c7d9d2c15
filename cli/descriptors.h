#pragma once

namespace cli {

/// Gives the descriptors 0 to 2 that the caller closed to the null device, so that no file which
/// the program opens becomes its standard input, output or error. A closed input or output still
/// fails: it cannot be read or written.
void ReserveStandardDescriptors();

}  // namespace cli
