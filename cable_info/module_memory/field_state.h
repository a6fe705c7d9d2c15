#pragma once

#include <cstdint>

namespace cable_info {

/// Whether a quantity has a value. Only a present one has; 0 is a value.
enum class FieldState : std::uint8_t {
  kPresent,
  kNotImplemented,  ///< the module does not advertise it
  kNotRead,         ///< the page that holds it was not read
  kNotReady,        ///< the module has no valid data yet
};

}  // namespace cable_info
