#pragma once

// Observables of versatile diagnostics monitoring (VDM): CMIS pages 20h to 2Fh, SFF-8636 page 20h.
//
// Internal; not installed.

#include <cstdint>
#include <optional>
#include <string_view>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The encoding of the 16 bits of a VDM sample or threshold.
enum class VdmNumberType : std::uint8_t {
  kUnsigned,
  kUnsignedOrInfinite,  ///< FFFFh is infinity
  kSigned,
  kFloat16,
};

/// A type of observable: CMIS 5.4, pages 20h to 23h, and the coherent extension from 128 on; or of
/// SFF-8636 rev 2.11, page 20h.
struct VdmObservable {
  std::string_view name;  ///< "esnr_media"; the side comes last
  std::string_view unit;  ///< "dB"; empty for ratios
  std::uint8_t type_id;
  VdmNumberType number;
  /// A value is the 16-bit number times `multiply` / `divide`.
  std::uint16_t multiply;
  std::uint16_t divide;
};

/// The observable of CMIS with `type_id`; null for reserved and custom ones.
const VdmObservable* FindVdmObservable(unsigned type_id);
/// The revision byte (lower byte 1) of the first CMIS revision that has the type.
unsigned FirstRevisionOfVdm(unsigned type_id);
/// The observable of SFF-8636 with `type_id`; null for reserved and vendor specific ones.
const VdmObservable* FindSff8636Observable(unsigned type_id);
/// A number without a name and a unit, for observables that are not known.
extern const VdmObservable kUnknownObservable;

/// The number of `raw` in the unit of `observable`; none for infinity.
std::optional<double> VdmValue(const VdmObservable& observable, std::uint16_t raw);

/// A threshold; none when `raw` is at an end of the range of its type, which means that it is not
/// given.
std::optional<double> VdmThreshold(const VdmObservable& observable, std::uint16_t raw);

/// A 16-bit floating-point number: bits 15..11 are the decimal exponent plus 24, bits 10..0 the
/// mantissa (CMIS type F16).
double Float16(std::uint16_t raw);

}  // namespace module_memory
}  // namespace cable_info
