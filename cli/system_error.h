#pragma once

#include <system_error>

namespace cli {

/// Throws `std::system_error` for a value of `errno`.
[[noreturn]] inline void ThrowError(int error_number) {
  throw std::system_error(error_number, std::generic_category());
}

}  // namespace cli
