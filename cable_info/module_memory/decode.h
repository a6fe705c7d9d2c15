#pragma once

// The decoders of the families, and rules that they share.
//
// Internal; not installed.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/phy_registers.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// An identifier of modules whose memory follows one of the maps (SFF-8024 rev 4.13, table 4-1).
struct ModuleIdentifier {
  std::uint8_t code;
  ModuleFamily family;
  std::string_view name = {};  ///< a short name; empty for modules that fill no record
  /// The form factor in the `PhyCableRecord`; without meaning for modules that fill none.
  FormFactor form_factor = FormFactor::kQsfp28;
};
/// Null for other codes.
const ModuleIdentifier* FindIdentifier(std::optional<std::uint8_t> code);

/// True for a CMIS module with a vendor's own identifier, 80h or higher, by bytes 0, 1 and 128.
bool IsCustomCmis(std::optional<std::uint8_t> identifier, std::optional<std::uint8_t> revision,
                  std::optional<std::uint8_t> copy);

/// The warning of a module whose values are not valid yet.
inline constexpr std::string_view kNotReadyText = "the module reports that its data is not ready";

/// \name The nominal bit rate of SFF-8636 (bytes 140 and 222) and SFF-8472 (A0h bytes 12 and 66)
/// @{
/// The units of the two bytes, in Mb/s. `extended` counts if `rate` is `kSeeExtendedBitrate`.
inline constexpr unsigned kBitrateUnit = 100;
inline constexpr unsigned kExtendedBitrateUnit = 250;
/// In Mb/s.
constexpr unsigned NominalBitrate(std::uint8_t rate, std::uint8_t extended) {
  return rate == kSeeExtendedBitrate ? extended * kExtendedBitrateUnit : rate * kBitrateUnit;
}
/// Decodes the rate from the bytes, which may be missing.
void DecodeNominalBitrate(Decoding& to, std::optional<std::uint8_t> rate,
                          std::optional<std::uint8_t> extended);
/// @}

/// \name Remarks on the identifiers in byte 0 and in its copy, byte 128
/// Both are shown as the caller names them: "QSFP28 (0x11)", "0x11", "missing".
/// @{
std::string DecodedByByte0Text(const std::string& byte0, const std::string& copy);
std::string DecodedByCopyText(const std::string& byte0, const std::string& copy);
std::string UnknownIdentifierText(const std::string& byte0, const std::string& copy);
/// @}

/// The power class of a module, 1 to 8, by bytes 129 and 107 of SFF-8636. Class 8 requires a
/// maximum power, because older revisions reserve its bit, and some modules set it.
unsigned Sff8636PowerClass(unsigned extended_identifier, unsigned maximum_power);

/// The medium that a module of SFF-8472 is made for.
enum class Sff8472Medium : std::uint8_t {
  kOptical,
  kPassiveCable,
  kActiveCable,
  kCopper,  ///< BASE-T, and others with a copper connector
};
Sff8472Medium Sff8472MediumOf(const ModuleImage& image);
/// False for passive cables and copper modules. Active cables may be optical.
constexpr bool MayHaveOptics(Sff8472Medium medium) {
  return medium == Sff8472Medium::kOptical || medium == Sff8472Medium::kActiveCable;
}

/// The power level of a module, 1 to 4, by byte 64 of A0h of SFF-8472.
unsigned Sff8472PowerLevel(unsigned options);

/// The length of a cable in metres, stated in one byte: bits 5..0 times 0.1, 1, 10 or 100 m, by
/// bits 7..6 (CMIS 00h:202; SFF-8472 rev 12.4, A0h byte 19).
constexpr double CableLengthOf(std::uint8_t byte) {
  constexpr unsigned kTenths[] = {1, 10, 100, 1000};
  return (byte & 0x3FU) * kTenths[byte >> 6U] / 10.0;
}

/// The time that a module needs after ModSelL, in microseconds, stated in one byte: bits 4..0 times
/// 2 to the power of bits 7..5 (SFF-8636 byte 115; CMIS 01h:143). None if bits 4..0 are 0.
constexpr std::optional<double> ModselWaitTimeOf(std::uint8_t byte) {
  const unsigned mantissa = byte & 0x1FU;
  if (mantissa == 0) return std::nullopt;
  return static_cast<double>(mantissa << (byte >> 5U));
}

/// The constants of external calibration of SFF-8472 (A2h bytes 56 to 91), neutral by default.
/// Raw numbers and results are in units of the registers.
struct Sff8472Calibration {
  struct Line {
    double slope = 1.0;
    double offset = 0.0;

    double At(double raw) const { return raw * slope + offset; }
    /// False if every value would be the same.
    bool IsValid() const { return slope != 0.0; }
  };

  double rx_power[5] = {0.0, 0.0, 0.0, 1.0, 0.0};  ///< of the powers 4 to 0 of the raw number
  Line temperature;
  Line voltage;
  Line tx_bias;
  Line tx_power;

  /// Never below 0.
  double RxPower(double raw) const;
  /// False if every value would be the same, or no number.
  bool IsRxPowerValid() const;
};
/// "the calibration constants of the TX bias are invalid; ..."
std::string UncalibratedText(std::string_view quantity);
/// The constants of the image; those that were not read are neutral.
Sff8472Calibration Sff8472CalibrationOf(const ModuleImage& image);

/// \name The families' decoders
/// The image is that of a `ModuleMemory`. Family and pages of the `ModuleInfo` are set already.
/// @{
void DecodeSff8636(Decoding& to);
void DecodeSff8472(Decoding& to);
void DecodeCmis(Decoding& to);
/// @}

/// The memory of a module and its family. Removes bytes that were read but do not exist:
/// - half pages whose bytes are all 0xFF, as read from a bus when no device responds;
/// - upper pages equal to page 00h, which a module returns for a page that it does not have;
/// - all upper pages except 00h if the module states that its memory is flat;
/// - device A2h if all its bytes are equal or it equals A0h: a module without that device.
class ModuleMemory {
 public:
  /// `image` must outlive this.
  explicit ModuleMemory(const ModuleImage& image);
  ModuleMemory(const ModuleMemory&) = delete;
  ModuleMemory& operator=(const ModuleMemory&) = delete;
  ModuleMemory(ModuleMemory&&) = delete;
  ModuleMemory& operator=(ModuleMemory&&) = delete;
  ~ModuleMemory() = default;

  ModuleFamily family() const { return family_; }
  /// The identifier that decided the family: byte 0, or its copy; none when it was not read.
  std::optional<std::uint8_t> identifier() const { return identifier_; }
  const ModuleImage& image() const { return *image_; }
  /// A remark on the identifier, or the reason for an unknown family; empty if there is none.
  const std::string& remark() const { return remark_; }

 private:
  void Identify();
  void IdentifySfp();
  template <typename IsAbsent>
  void Drop(const IsAbsent& is_absent);
  void DropAbsent();
  void Choose(ModuleFamily family, std::optional<std::uint8_t> identifier);

  const ModuleImage* image_;
  ModuleImage rest_;  // the image without removed bytes; image_ points to it if any were removed
  ModuleFamily family_ = ModuleFamily::kUnknown;
  std::optional<std::uint8_t> identifier_;
  std::string remark_;
};

}  // namespace module_memory
}  // namespace cable_info
