#include "cable_info/cable_record.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "cable_info/cable_decode.h"
#include "cable_info/cable_output.h"

namespace cable_info {

using decode::Form;
using decode::FormOf;
using text::ToText;

namespace {

constexpr std::string_view kHomeVendorOui = "0x5a1";
constexpr std::uint8_t kHomeMultiMode = 14;
constexpr std::uint8_t kHomeParallelSingleMode = 16;

// The layout of the export record, which hosts read as plain memory.
static_assert(offsetof(cable_record_data_t, lengths) == 5);
static_assert(offsetof(cable_record_data_t, temperature) == 10);
static_assert(offsetof(cable_record_data_t, bytes) == 12);
static_assert(offsetof(cable_record_data_t, words) == 34);
static_assert(offsetof(cable_record_data_t, monitors) == 68);
static_assert(offsetof(cable_record_data_t, rx_power_is_average) == 116);
static_assert(offsetof(cable_record_data_t, word) == 120);
static_assert(offsetof(cable_record_data_t, vendor) == 124);
static_assert(offsetof(cable_record_data_t, oui) == 157);
static_assert(offsetof(cable_record_data_t, pn) == 190);
static_assert(offsetof(cable_record_data_t, sn) == 223);
static_assert(offsetof(cable_record_data_t, revision) == 256);
static_assert(offsetof(cable_record_data_t, length) == 289);
static_assert(offsetof(cable_record_data_t, extra) == 322);
static_assert(offsetof(cable_record_data_t, fw_version) == 355);
static_assert(offsetof(cable_record_data_t, date_code) == 396);
static_assert(sizeof(cable_record_data_t) == 416);

bool IsKnown(const std::string& text) { return !text.empty() && text != kBareNa; }

// Fills a text of the export record; pads it with NULs, as `strncpy` does.
template <std::size_t N>
void FillSlot(char (&slot)[N], const std::string& text) {
  std::strncpy(slot, text.c_str(), N - 1);
  slot[N - 1] = '\0';
}

}  // namespace

CableRecord::~CableRecord() = default;

// ---------------------------------------------------------------------------------------------
// Classification, identification, export
// ---------------------------------------------------------------------------------------------

bool CableRecord::IsModule() const {
  return !IsPassiveCable() && Connector != kNoSeparableConnector;
}

bool CableRecord::IsActiveCable() const {
  return !IsPassiveCable() && Connector == kNoSeparableConnector;
}

bool CableRecord::IsPassiveCable() const { return TransmitterTechnologyCode == kUnequalizedCopper; }

bool CableRecord::IsOpticCable() const {
  return QueryStatus == 0 && cable_info::IsOpticCable(TransmitterTechnologyCode);
}

bool CableRecord::IsKestMmf() const {
  return Oui == kHomeVendorOui && !IsPassiveCable() && VendorModuleKind == kHomeMultiMode;
}

bool CableRecord::IsKestPsm() const {
  return Oui == kHomeVendorOui && !IsPassiveCable() && VendorModuleKind == kHomeParallelSingleMode;
}

std::uint32_t CableRecord::GetTemperatureAlarms() const {
  std::uint32_t alarms = 0;
  for (int i = 0; i < 4; ++i) {
    alarms |= static_cast<std::uint32_t>((LatchedTemperatureAlarms >> (7 - i)) & 1) << i;
  }
  return alarms;
}

std::uint32_t CableRecord::GetTemperatureErrorsByTreshold() const {
  return TemperatureErrors(TransmitterTechnologyCode, Temperature, TempHighAlarmThresh,
                           TempLowAlarmThresh);
}

fw_version_obj_t CableRecord::GetFWObj() const { return {}; }

double CableRecord::mW_to_dBm(double mw) const { return cable::MilliwattsToDbm(mw); }

std::string CableRecord::GetPNVendor() const {
  return IsKnown(PartNumber) ? PartNumber : std::string();
}

cable_id_t CableRecord::GetIdObj() const {
  cable_id_t id;
  id.pn = GetPNVendor();
  id.identifier = ConvertCableIdentifierToStr();
  if (!IsKnown(id.identifier)) id.identifier.clear();
  id.vendor = _get_vendor_from_sn(SerialNumber);
  if (IsKnown(Revision)) id.revision = Revision;
  return id;
}

void CableRecord::ExportData(cable_record_data_t* data) const {
  data->status = QueryStatus;
  data->identifier = Identifier;
  data->connector = Connector;
  data->supported_speed = SupportedSpeedMask;
  data->transmitter_technology = TransmitterTechnologyCode;
  const std::uint8_t lengths[] = {LengthSmf, LengthOm3, LengthOm2, LengthOm1, LengthCopperOrActive};
  static_assert(sizeof(lengths) == sizeof(data->lengths));
  std::copy(std::begin(lengths), std::end(lengths), data->lengths);
  data->temperature = Temperature;
  const std::uint8_t bytes[] = {
      OpaqueByte1,
      NominalBitrate,
      PowerClass,
      CdrControl,
      CdrPresence,
      VendorModuleKind,
      Attenuation[0],
      Attenuation[1],
      Attenuation[2],
      Attenuation[3],
      OpaqueByte2,
      ExtSpecCompliance,
      OpaqueByte3,
      LatchedCdrLos,
      LatchedAdaptiveEqFault,
      LatchedCdrLol,
      LatchedTemperatureAlarms,
      LatchedVoltageAlarms,
      TransmitterTechnologyRaw,
      TxAdaptiveEqFreeze,
      RxOutputDisableTxAdaptiveEq,
  };
  static_assert(sizeof(bytes) == sizeof(data->bytes));
  std::copy(std::begin(bytes), std::end(bytes), data->bytes);
  const std::uint16_t words[] = {
      InputEq,
      OutputAmp,
      OutputEmp,
      OpaqueWord1,
      SupplyVoltage,
      RxPowerAlarms,
      TxBiasAlarms,
      TxPowerAlarms,
      Lot,
      TempHighAlarmThresh,
      TempHighWarnThresh,
      TempLowAlarmThresh,
      TempLowWarnThresh,
      VoltHighAlarmThresh,
      VoltHighWarnThresh,
      VoltLowAlarmThresh,
      VoltLowWarnThresh,
  };
  static_assert(sizeof(words) == sizeof(data->words));
  std::copy(std::begin(words), std::end(words), data->words);
  float* monitor = data->monitors;
  static_assert(sizeof(data->monitors) == sizeof(RxPower) + sizeof(TxBias) + sizeof(TxPower));
  monitor = std::copy(std::begin(RxPower), std::end(RxPower), monitor);
  monitor = std::copy(std::begin(TxBias), std::end(TxBias), monitor);
  std::copy(std::begin(TxPower), std::end(TxPower), monitor);
  data->rx_power_is_average = RxPowerIsAverage ? 1 : 0;
  data->word = OpaqueDword1;
  FillSlot(data->vendor, VendorName);
  FillSlot(data->oui, Oui);
  FillSlot(data->pn, PartNumber);
  FillSlot(data->sn, SerialNumber);
  FillSlot(data->revision, Revision);
  FillSlot(data->length, ConvertLengthToStr());
  FillSlot(data->extra, ExtraText);
  FillSlot(data->fw_version, FwVersionText);
  FillSlot(data->date_code, DateCodeText);
}

// ---------------------------------------------------------------------------------------------
// Decoders
// ---------------------------------------------------------------------------------------------

std::string CableRecord::ConvertCableIdentifierToStr() const {
  return std::string(cable::IdentifierName(Identifier));
}

std::string CableRecord::ConvertCableTypeToStr() const {
  return ToText(cable::AppendCableType, *this);
}

std::string CableRecord::ConvertSupportedSpeedToStr() const {
  return ToText(cable::AppendSupportedSpeed, *this);
}

std::string CableRecord::ConvertLengthToStr() const { return std::string(cable::Length(*this)); }

std::string CableRecord::ConvertPrtlLengthToStr() const {
  return std::string(cable::PrtlLength(*this));
}

std::string CableRecord::ConvertTemperatureToStr(unsigned short value, bool csv) const {
  return ToText(cable::AppendTemperature, *this, value, FormOf(csv));
}

std::string CableRecord::GetTemperatureStr() const {
  return ToText(cable::AppendTemperature, *this, Temperature, Form::kReport);
}

std::string CableRecord::GetHighTemperatureThresholdStr() const {
  return ToText(cable::AppendTemperature, *this, TempHighAlarmThresh, Form::kReport);
}

std::string CableRecord::GetLowTemperatureThresholdStr() const {
  return ToText(cable::AppendTemperature, *this, TempLowAlarmThresh, Form::kReport);
}

std::string CableRecord::ConvertVoltageToStr(unsigned short value) const {
  return VoltageToStr(value);
}

std::string CableRecord::ConvertDateCodeToStr() const {
  return ToText(cable::AppendDateCode, *this);
}

std::string CableRecord::ConvertFwVersionToStr(bool csv) const {
  return std::string(cable::FwVersion(*this, FormOf(csv)));
}

std::string CableRecord::ConvertAttenuationToStr(bool csv) const {
  return ToText(cable::AppendAttenuation, *this, FormOf(csv));
}

std::string CableRecord::ConvertCDREnableTxRxToStr(bool csv) const {
  return ToText(cable::AppendCdrEnable, *this, FormOf(csv));
}

std::string CableRecord::ConvertInputEqToStr(bool csv) const {
  return ToText(cable::AppendLaneSettings, *this, InputEq, FormOf(csv));
}

std::string CableRecord::ConvertOutputAmpToStr(bool csv) const {
  return ToText(cable::AppendLaneSettings, *this, OutputAmp, FormOf(csv));
}

std::string CableRecord::ConvertOutputEmpToStr(bool csv) const {
  return ToText(cable::AppendLaneSettings, *this, OutputEmp, FormOf(csv));
}

std::string CableRecord::ConvertRXOutputDisableToStr() const {
  return ToText(cable::AppendRxOutputDisable, *this);
}

std::string CableRecord::ConvertTXAdaptiveEqualizationEnableToStr() const {
  return ToText(cable::AppendTxAdaptiveEqEnable, *this);
}

// ---------------------------------------------------------------------------------------------
// Outputs
// ---------------------------------------------------------------------------------------------

std::string CableRecord::c_str(bool with_phy_lines) const {
  return cable::ReportBlock(*this,
                            with_phy_lines ? cable::PhyLines::kShown : cable::PhyLines::kLeftOut);
}

void CableRecord::ToFileStream(std::ostream& os) const { cable::WriteReport(os, *this); }

void CableRecord::ToCSVStream(std::ostream& os) const { cable::WriteRow(os, *this); }

}  // namespace cable_info
