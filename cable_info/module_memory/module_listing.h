#pragma once

/// \file
/// Dumps of module memories: hex listings and images, as bytes that may be missing.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace cable_info::module_memory {

/// Thrown for a dump that is not the memory of a module, or not of one that fills a record, and for
/// a wrong checksum that is refused; the message states the reason.
class BadModule : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A byte of a dump; none where the dump has none, or where it could not be read.
using DumpByte = std::optional<std::uint8_t>;
/// The bytes of a dump, by offset.
using DumpBytes = std::vector<DumpByte>;

/// The size of the largest dump in bytes, apart from the EEPROM files described below.
inline constexpr std::size_t kMaxDumpSize = 4096;

/// \name EEPROM files of drivers
/// Their sizes, in the linear layout of all pages: the lower page, then 256 upper pages by number;
/// of SFP modules A0h, the lower half of A2h, and its 256 pages.
/// @{

/// The size of those of modules other than SFP, in bytes.
inline constexpr std::size_t kLinearImage = std::size_t{257} * 128;
/// The size of those of SFP modules, in bytes.
inline constexpr std::size_t kLinearSfpImage = std::size_t{259} * 128;
/// @}

/// True if `content` is text and therefore a listing; images contain zeros and control codes.
bool IsListing(std::string_view content);

/// Parses hexadecimal digits with nothing between or around them, as in port records, into `bytes`.
/// False for every other text, which may still be a listing for `ParseListing`, and for up to eight
/// digits, which may be an offset; `bytes` is then unspecified.
bool ParsePlainHex(std::string_view text, std::vector<std::uint8_t>& bytes);

/// The bytes of a hex listing, each at the offset that the listing gives it. Understands plain
/// hexadecimal, `xxd`, `hexdump -C`, `i2cdump`, and the `offset: bytes` listing of the kernel's
/// tool for module EEPROMs. Throws `BadModule`.
DumpBytes ParseListing(std::string_view text);

}  // namespace cable_info::module_memory
