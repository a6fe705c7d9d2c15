#pragma once

/// \file
/// All that is known about the cable in one port, and the table of all cables.

#include <array>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "cable_info/cable_record.h"
#include "cable_info/phy_cable_record.h"
#include "cable_info/value_format.h"

namespace cable_info {

/// A column of the cable table.
struct CsvColumn {
  std::string_view name;     ///< as it stands in the header
  std::string_view meaning;  ///< in a few words
};

/// The columns of the cable table, in order. The host writes the first three cells of a row, the
/// port's record the others.
inline constexpr std::array<CsvColumn, 177> kCsvColumns = {{
    {"NodeGuid", "GUID of the node that holds the port"},
    {"PortGuid", "GUID of the port"},
    {"PortNum", "port number"},
    {"Source",
     "source of the row's data: CABLE for the cable-information pages, else as the host named it"},
    {"Vendor", "vendor name"},
    {"OUI", "vendor OUI"},
    {"PN", "vendor part number"},
    {"SN", "vendor serial number"},
    {"Rev", "vendor revision"},
    {"LengthSMFiber", "length supported on single-mode fibre"},
    {"LengthOM5", "length supported on OM5 multi-mode fibre"},
    {"LengthOM4", "length supported on OM4 multi-mode fibre"},
    {"LengthOM3", "length supported on OM3 multi-mode fibre"},
    {"LengthOM2", "length supported on OM2 multi-mode fibre"},
    {"LengthOM1", "length supported on OM1 multi-mode fibre"},
    {"LengthCopperOrActive", "length of a copper or active cable"},
    {"Identifier", "module identifier code"},
    {"IdentifierStr", "module identifier as text"},
    {"Connector", "connector type code"},
    {"Type", "cable type or transmitter technology code"},
    {"SupportedSpeed", "supported-speed bit mask"},
    {"LengthDesc", "cable length as text"},
    {"LengthDescByPRTL", "cable length measured by round-trip latency"},
    {"LengthDescByReg", "cable length as read from the module register"},
    {"TypeDesc", "cable type as text"},
    {"SupportedSpeedDesc", "supported speeds as text"},
    {"Temperature", "module temperature"},
    {"PowerClass", "module power class"},
    {"NominalBitrate", "nominal bit rate"},
    {"CDREnableTxRx", "clock-and-data-recovery enable state, both directions"},
    {"CDREnableTx", "clock-and-data-recovery enable state, transmit lanes"},
    {"CDREnableRx", "clock-and-data-recovery enable state, receive lanes"},
    {"InputEq", "transmit input equalization setting"},
    {"OutputAmp", "receive output amplitude setting"},
    {"OutputEmp", "receive output emphasis setting"},
    {"OutputPreEmp", "receive output pre-emphasis setting"},
    {"OutputPostEmp", "receive output post-emphasis setting"},
    {"FWVersion", "module firmware version"},
    {"Attenuation2.5G", "copper attenuation at 2.5 GHz"},
    {"Attenuation5G", "copper attenuation at 5 GHz"},
    {"Attenuation7G", "copper attenuation at 7 GHz"},
    {"Attenuation12G", "copper attenuation at 12 GHz"},
    {"Attenuation25G", "copper attenuation at 25 GHz"},
    {"RXPowerType", "how receive power is measured"},
    {"RX1Power", "receive power, lane 1"},
    {"RX2Power", "receive power, lane 2"},
    {"RX3Power", "receive power, lane 3"},
    {"RX4Power", "receive power, lane 4"},
    {"RX5Power", "receive power, lane 5"},
    {"RX6Power", "receive power, lane 6"},
    {"RX7Power", "receive power, lane 7"},
    {"RX8Power", "receive power, lane 8"},
    {"TX1Bias", "transmit bias current, lane 1"},
    {"TX2Bias", "transmit bias current, lane 2"},
    {"TX3Bias", "transmit bias current, lane 3"},
    {"TX4Bias", "transmit bias current, lane 4"},
    {"TX5Bias", "transmit bias current, lane 5"},
    {"TX6Bias", "transmit bias current, lane 6"},
    {"TX7Bias", "transmit bias current, lane 7"},
    {"TX8Bias", "transmit bias current, lane 8"},
    {"TX1Power", "transmit power, lane 1"},
    {"TX2Power", "transmit power, lane 2"},
    {"TX3Power", "transmit power, lane 3"},
    {"TX4Power", "transmit power, lane 4"},
    {"TX5Power", "transmit power, lane 5"},
    {"TX6Power", "transmit power, lane 6"},
    {"TX7Power", "transmit power, lane 7"},
    {"TX8Power", "transmit power, lane 8"},
    {"RX1LatchedLossIndicator", "latched loss-of-signal flag, receive lane 1"},
    {"RX2LatchedLossIndicator", "latched loss-of-signal flag, receive lane 2"},
    {"RX3LatchedLossIndicator", "latched loss-of-signal flag, receive lane 3"},
    {"RX4LatchedLossIndicator", "latched loss-of-signal flag, receive lane 4"},
    {"TX1LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 1"},
    {"TX2LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 2"},
    {"TX3LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 3"},
    {"TX4LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 4"},
    {"TX1AdaptiveEqualizationFaultIndicator",
     "latched adaptive-equalization fault flag, transmit lane 1"},
    {"TX2AdaptiveEqualizationFaultIndicator",
     "latched adaptive-equalization fault flag, transmit lane 2"},
    {"TX3AdaptiveEqualizationFaultIndicator",
     "latched adaptive-equalization fault flag, transmit lane 3"},
    {"TX4AdaptiveEqualizationFaultIndicator",
     "latched adaptive-equalization fault flag, transmit lane 4"},
    {"RX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 1"},
    {"RX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 2"},
    {"RX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 3"},
    {"RX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 4"},
    {"TX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 1"},
    {"TX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 2"},
    {"TX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 3"},
    {"TX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 4"},
    {"HighTemperatureAlarm", "latched high temperature alarm flag"},
    {"LowTemperatureAlarm", "latched low temperature alarm flag"},
    {"HighTemperatureWarning", "latched high temperature warning flag"},
    {"LowTemperatureWarning", "latched low temperature warning flag"},
    {"InitializationFlagComplete", "module initialization-complete flag"},
    {"HighSupplyVoltageAlarm", "latched high supply-voltage alarm flag"},
    {"LowSupplyVoltageAlarm", "latched low supply-voltage alarm flag"},
    {"HighSupplyVoltageWarning", "latched high supply-voltage warning flag"},
    {"LowSupplyVoltageWarning", "latched low supply-voltage warning flag"},
    {"HighRX1PowerAlarm", "latched high receive power alarm flag, lane 1"},
    {"LowRX1PowerAlarm", "latched low receive power alarm flag, lane 1"},
    {"HighRX1PowerWarning", "latched high receive power warning flag, lane 1"},
    {"LowRX1PowerWarning", "latched low receive power warning flag, lane 1"},
    {"HighRX2PowerAlarm", "latched high receive power alarm flag, lane 2"},
    {"LowRX2PowerAlarm", "latched low receive power alarm flag, lane 2"},
    {"HighRX2PowerWarning", "latched high receive power warning flag, lane 2"},
    {"LowRX2PowerWarning", "latched low receive power warning flag, lane 2"},
    {"HighRX3PowerAlarm", "latched high receive power alarm flag, lane 3"},
    {"LowRX3PowerAlarm", "latched low receive power alarm flag, lane 3"},
    {"HighRX3PowerWarning", "latched high receive power warning flag, lane 3"},
    {"LowRX3PowerWarning", "latched low receive power warning flag, lane 3"},
    {"HighRX4PowerAlarm", "latched high receive power alarm flag, lane 4"},
    {"LowRX4PowerAlarm", "latched low receive power alarm flag, lane 4"},
    {"HighRX4PowerWarning", "latched high receive power warning flag, lane 4"},
    {"LowRX4PowerWarning", "latched low receive power warning flag, lane 4"},
    {"HighTX1BiasAlarm", "latched high transmit bias alarm flag, lane 1"},
    {"LowTX1BiasAlarm", "latched low transmit bias alarm flag, lane 1"},
    {"HighTX1BiasWarning", "latched high transmit bias warning flag, lane 1"},
    {"LowTX1BiasWarning", "latched low transmit bias warning flag, lane 1"},
    {"HighTX2BiasAlarm", "latched high transmit bias alarm flag, lane 2"},
    {"LowTX2BiasAlarm", "latched low transmit bias alarm flag, lane 2"},
    {"HighTX2BiasWarning", "latched high transmit bias warning flag, lane 2"},
    {"LowTX2BiasWarning", "latched low transmit bias warning flag, lane 2"},
    {"HighTX3BiasAlarm", "latched high transmit bias alarm flag, lane 3"},
    {"LowTX3BiasAlarm", "latched low transmit bias alarm flag, lane 3"},
    {"HighTX3BiasWarning", "latched high transmit bias warning flag, lane 3"},
    {"LowTX3BiasWarning", "latched low transmit bias warning flag, lane 3"},
    {"HighTX4BiasAlarm", "latched high transmit bias alarm flag, lane 4"},
    {"LowTX4BiasAlarm", "latched low transmit bias alarm flag, lane 4"},
    {"HighTX4BiasWarning", "latched high transmit bias warning flag, lane 4"},
    {"LowTX4BiasWarning", "latched low transmit bias warning flag, lane 4"},
    {"HighTX1PowerAlarm", "latched high transmit power alarm flag, lane 1"},
    {"LowTX1PowerAlarm", "latched low transmit power alarm flag, lane 1"},
    {"HighTX1PowerWarning", "latched high transmit power warning flag, lane 1"},
    {"LowTX1PowerWarning", "latched low transmit power warning flag, lane 1"},
    {"HighTX2PowerAlarm", "latched high transmit power alarm flag, lane 2"},
    {"LowTX2PowerAlarm", "latched low transmit power alarm flag, lane 2"},
    {"HighTX2PowerWarning", "latched high transmit power warning flag, lane 2"},
    {"LowTX2PowerWarning", "latched low transmit power warning flag, lane 2"},
    {"HighTX3PowerAlarm", "latched high transmit power alarm flag, lane 3"},
    {"LowTX3PowerAlarm", "latched low transmit power alarm flag, lane 3"},
    {"HighTX3PowerWarning", "latched high transmit power warning flag, lane 3"},
    {"LowTX3PowerWarning", "latched low transmit power warning flag, lane 3"},
    {"HighTX4PowerAlarm", "latched high transmit power alarm flag, lane 4"},
    {"LowTX4PowerAlarm", "latched low transmit power alarm flag, lane 4"},
    {"HighTX4PowerWarning", "latched high transmit power warning flag, lane 4"},
    {"LowTX4PowerWarning", "latched low transmit power warning flag, lane 4"},
    {"SupplyVoltageReporting", "supply voltage as measured by the module"},
    {"TransmitterTechnology", "transmitter technology"},
    {"ActiveWavelengthControl", "transmitter has active wavelength control"},
    {"CooledTransmitterDevice", "transmitter is cooled"},
    {"ActivePinDetector", "receiver uses an active PIN detector"},
    {"TunableTransmitter", "transmitter is tunable"},
    {"ExtendedSpecificationComplianceCodes", "extended specification compliance code"},
    {"AlarmTemperatureHighThresh", "alarm high temperature threshold"},
    {"AlarmTemperatureLowThresh", "alarm low temperature threshold"},
    {"WarnTemperatureHighThresh", "warning high temperature threshold"},
    {"WarnTemperatureLowThresh", "warning low temperature threshold"},
    {"AlarmVoltageHighThresh", "alarm high supply-voltage threshold"},
    {"AlarmVoltageLowThresh", "alarm low supply-voltage threshold"},
    {"WarnVoltageHighThresh", "warning high supply-voltage threshold"},
    {"WarnVoltageLowThresh", "warning low supply-voltage threshold"},
    {"RXPowerHighThresh", "receive power high threshold"},
    {"RXPowerLowThresh", "receive power low threshold"},
    {"TXPowerHighThresh", "transmit power high threshold"},
    {"TXPowerLowThresh", "transmit power low threshold"},
    {"TXBiasHighThresh", "transmit bias high threshold"},
    {"TXBiasLowThresh", "transmit bias low threshold"},
    {"DateCode", "vendor date code"},
    {"Lot", "vendor lot code"},
    {"TX1AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 1"},
    {"TX2AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 2"},
    {"TX3AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 3"},
    {"TX4AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 4"},
    {"RXOutputDisable", "receive output disable state"},
    {"TXAdaptiveEqualizationEnable", "transmit adaptive equalization enable state"},
    {"MaxPower", "maximum module power"},
    {"CdrVendor", "clock-and-data-recovery chip vendor code"},
    {"MaxFiberLength", "maximum fibre length"},
}};

/// The one object a host holds for a port. It owns at most one record of each kind and answers
/// every question from one of them: from the `CableRecord` when there is one, else from the
/// `PhyCableRecord`, else with a fixed value. Where an operation does otherwise, it says so.
///
/// Distinct objects may be used from different threads; one object, by one thread at a time.
class CombinedCableInfo {
 public:
  /// What the 32-bit queries return when there is no record.
  static constexpr std::uint32_t kNoRecord = 0xFFFFFFFF;

  CombinedCableInfo() = default;
  CombinedCableInfo(const CombinedCableInfo&) = delete;
  CombinedCableInfo& operator=(const CombinedCableInfo&) = delete;
  CombinedCableInfo(CombinedCableInfo&&) = delete;
  CombinedCableInfo& operator=(CombinedCableInfo&&) = delete;
  ~CombinedCableInfo();

  /// \name Handing over a record
  /// Replaces and frees the one held before; null detaches.
  /// @{

  /// What the cable-information pages tell.
  void AttachCableRecord(std::unique_ptr<CableRecord> record);
  /// What the PHY's registers tell.
  void AttachPhyCableRecord(std::unique_ptr<PhyCableRecord> record);
  /// @}

  /// \name The records held, null where there is none
  /// They stay the object's own.
  /// @{
  const CableRecord* cable_record() const { return cable_record_; }
  const PhyCableRecord* phy_cable_record() const { return phy_cable_record_; }
  /// @}

  /// The table's header line: the 177 column names joined by commas, and a newline.
  static std::string GetCSVHeader();

  /// Writes the port's row from the fourth column (Source) on; the host has written the first
  /// three cells, each with its comma. Without records only a newline and a flush.
  void ToCSVStream(std::ostream& os) const;
  /// Writes the port's block of the text report; nothing without records.
  void ToFileStream(std::ostream& os) const;

  /// All empty without records.
  cable_id_t GetIdObj() const;
  /// Part number, identifier and revision joined by "_". Only a `PhyCableRecord` that stands alone
  /// has one; empty otherwise.
  std::string GetUniqueKey() const;
  /// Fills `*data`, which must not be null, from the `CableRecord`; false when there is none.
  bool ExportData(cable_record_data_t* data);
  /// The part number, trimmed; empty when it is not known.
  std::string GetPNVendor() const;
  /// Only a `PhyCableRecord` that stands alone has one; all zero otherwise.
  fw_version_obj_t GetFWObj() const;
  /// The CDR chip's vendor, always asked of the `PhyCableRecord`: 0 when it has no module,
  /// `kNoRecord` when there is none.
  std::uint32_t GetCDRVendor() const;
  /// False without records.
  bool IsOpticCable() const;
  /// Bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning; `kNoRecord` without records.
  std::uint32_t GetTemperatureAlarms() const;
  /// Bit 0: above the high alarm threshold, bit 1: below the low one; `kNoRecord` without records.
  std::uint32_t GetTemperatureErrorsByTreshold() const;
  /// Degrees Celsius with "C", or N/A (as the next two).
  std::string GetTemperatureStr() const;
  /// The high alarm threshold.
  std::string GetHighTemperatureThresholdStr() const;
  /// The low alarm threshold.
  std::string GetLowTemperatureThresholdStr() const;

  /// \name The length measured by round-trip latency
  /// Kept by the record that answers for the port; dropped when there is none.
  /// @{

  /// Metres; shown with at most six significant digits and " m". No value is special.
  void SetPrtlLength(float length);
  /// As it stands; an empty text clears the length.
  void SetPrtlLength(std::string text);
  /// @}

  /// \name Decoders that need no record
  /// See the functions of the same names in value_format.h.
  /// @{

  /// The technology of a 4-bit code.
  static std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback);
  /// The speeds of a mask.
  static std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback);
  /// Degrees Celsius with "C".
  static std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                                      const std::string& fallback);
  /// Microvolts with "uV", from units of 100 uV.
  static std::string VoltageToStr(std::uint16_t raw);
  /// True for the optical ones among the 4-bit codes.
  static bool IsOpticCable(std::uint8_t technology);
  /// @}

 private:
  CableRecord* cable_record_ = nullptr;
  PhyCableRecord* phy_cable_record_ = nullptr;
};

}  // namespace cable_info
