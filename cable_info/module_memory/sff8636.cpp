#include "cable_info/module_memory/sff8636.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

namespace {

using cable_info::CableRecord;

constexpr std::string_view kUnknown = "NA";
constexpr std::string_view kUnknownDate = "N/A";
constexpr std::uint8_t kUnknownTechnology = 0xFF;  // behind the end of the table: shows as missing
constexpr std::uint8_t kLastCopperTechnology = 15;
constexpr std::uint8_t kFlatMemoryBit = 2;
constexpr std::uint8_t kUnread = 0xFF;

// The record on its way, and the bytes that are a field only together with others.
struct Draft {
  CableRecord record;
  std::uint8_t power_classes_1_to_4 = kUnread;
  std::uint8_t is_power_class_8 = 0;
  std::uint8_t power_classes_5_to_7 = 0;
  std::uint8_t rate = 0;           // 100 Mb/s
  std::uint8_t extended_rate = 0;  // 250 Mb/s
  std::uint8_t attenuation[4] = {};
};

template <auto kMember>
constexpr auto ToRecord = SetNumberOf<Draft, &Draft::record, kMember>;
template <auto kMember>
constexpr auto ToText = SetTextOf<Draft, &Draft::record, kMember>;
template <auto kMember>
constexpr auto ToDraft = SetNumber<Draft, kMember>;

void ToOui(Draft& draft, const FieldValue& value) {
  draft.record.Oui = cable_info::text::ToText(
      [&](cable_info::text::TextBuffer& out) { out.AppendPrefixedHex(value.Number(), 1); });
}

void ToDate(Draft& draft, const FieldValue& value) {
  const std::string date = value.Text();
  draft.record.DateCodeText = date.empty() ? std::string(kUnknownDate) : date;
}

void ToTechnology(Draft& draft, const FieldValue& value) {
  draft.record.TransmitterTechnologyRaw = value[0];
  draft.record.TransmitterTechnologyCode = value[0] >> 4;
}

void ToAttenuation(Draft& draft, const FieldValue& value) {
  for (std::size_t i = 0; i < std::size(draft.attenuation); ++i) draft.attenuation[i] = value[i];
}

// Lanes 1..4 in units of `kPerUnit` nano-units (nW, nA), shown in milli-units.
template <auto kMember, int kPerUnit>
void ToLanes(Draft& draft, const FieldValue& value) {
  constexpr double kNanoPerMilli = 1e6;
  auto& lanes = draft.record.*kMember;
  for (std::size_t i = 0; i < std::size(lanes); ++i) {
    lanes[i] = static_cast<float>(value.Word(i) * kPerUnit / kNanoPerMilli);
  }
}

constexpr int kPowerUnit = 100;  // 0.1 uW
constexpr int kBiasUnit = 2000;  // 2 uA
constexpr Bits kAll = {};
constexpr bool kText = true;

constexpr MapField<Draft> kMap[] = {
    // The lower page
    {"Latched loss of signal, TX and RX", Page::kLower, 3, 1, kAll,
     ToRecord<&CableRecord::LatchedCdrLos>},
    {"Latched adaptive equalization fault, transmitter fault", Page::kLower, 4, 1, kAll,
     ToRecord<&CableRecord::LatchedAdaptiveEqFault>},
    {"Latched loss of lock, TX and RX", Page::kLower, 5, 1, kAll,
     ToRecord<&CableRecord::LatchedCdrLol>},
    {"Latched temperature alarms", Page::kLower, 6, 1, kAll,
     ToRecord<&CableRecord::LatchedTemperatureAlarms>},
    {"Latched supply voltage alarms", Page::kLower, 7, 1, kAll,
     ToRecord<&CableRecord::LatchedVoltageAlarms>},
    {"Latched RX power alarms", Page::kLower, 9, 2, kAll, ToRecord<&CableRecord::RxPowerAlarms>},
    {"Latched TX bias alarms", Page::kLower, 11, 2, kAll, ToRecord<&CableRecord::TxBiasAlarms>},
    {"Latched TX power alarms", Page::kLower, 13, 2, kAll, ToRecord<&CableRecord::TxPowerAlarms>},
    {"Temperature", Page::kLower, 22, 2, kAll, ToRecord<&CableRecord::Temperature>},
    {"Supply voltage", Page::kLower, 26, 2, kAll, ToRecord<&CableRecord::SupplyVoltage>},
    {"RX power", Page::kLower, 34, 8, kAll, ToLanes<&CableRecord::RxPower, kPowerUnit>},
    {"TX bias", Page::kLower, 42, 8, kAll, ToLanes<&CableRecord::TxBias, kBiasUnit>},
    {"TX power", Page::kLower, 50, 8, kAll, ToLanes<&CableRecord::TxPower, kPowerUnit>},
    {"CDR control", Page::kLower, 98, 1, kAll, ToRecord<&CableRecord::CdrControl>},

    // Page 00h
    {"Power class 1 to 4", Page::k00, 129, 1, {7, 6}, ToDraft<&Draft::power_classes_1_to_4>},
    {"Power class 8", Page::k00, 129, 1, {5, 5}, ToDraft<&Draft::is_power_class_8>},
    {"CDR present, TX and RX", Page::k00, 129, 1, {3, 2}, ToRecord<&CableRecord::CdrPresence>},
    {"Power class 5 to 7", Page::k00, 129, 1, {1, 0}, ToDraft<&Draft::power_classes_5_to_7>},
    {"Connector type", Page::k00, 130, 1, kAll, ToRecord<&CableRecord::Connector>},
    {"Nominal signaling rate", Page::k00, 140, 1, kAll, ToDraft<&Draft::rate>},
    {"Length, SMF", Page::k00, 142, 1, kAll, ToRecord<&CableRecord::LengthSmf>},
    {"Length, OM3", Page::k00, 143, 1, kAll, ToRecord<&CableRecord::LengthOm3>},
    {"Length, OM2", Page::k00, 144, 1, kAll, ToRecord<&CableRecord::LengthOm2>},
    {"Length, OM1", Page::k00, 145, 1, kAll, ToRecord<&CableRecord::LengthOm1>},
    {"Length, copper or active cable, or OM4", Page::k00, 146, 1, kAll,
     ToRecord<&CableRecord::LengthCopperOrActive>},
    {"Device technology", Page::k00, 147, 1, kAll, ToTechnology},
    {"Vendor name", Page::k00, 148, 16, kAll, ToText<&CableRecord::VendorName>, kText},
    {"Extended module codes, InfiniBand", Page::k00, 164, 1, kAll,
     ToRecord<&CableRecord::SupportedSpeedMask>},
    {"Vendor OUI", Page::k00, 165, 3, kAll, ToOui},
    {"Vendor part number", Page::k00, 168, 16, kAll, ToText<&CableRecord::PartNumber>, kText},
    {"Vendor revision", Page::k00, 184, 2, kAll, ToText<&CableRecord::Revision>, kText},
    {"Copper cable attenuation", Page::k00, 186, 4, kAll, ToAttenuation},
    {"Extended specification compliance", Page::k00, 192, 1, kAll,
     ToRecord<&CableRecord::ExtSpecCompliance>},
    {"Vendor serial number", Page::k00, 196, 16, kAll, ToText<&CableRecord::SerialNumber>, kText},
    {"Date code", Page::k00, 212, 6, kAll, ToDate, kText},
    {"Lot code", Page::k00, 218, 2, kAll, ToRecord<&CableRecord::Lot>},
    {"Received power measurement type",
     Page::k00,
     220,
     1,
     {3, 3},
     ToRecord<&CableRecord::RxPowerIsAverage>},
    {"Extended signaling rate", Page::k00, 222, 1, kAll, ToDraft<&Draft::extended_rate>},

    // Page 03h
    {"Temperature high alarm", Page::k03, 128, 2, kAll,
     ToRecord<&CableRecord::TempHighAlarmThresh>},
    {"Temperature low alarm", Page::k03, 130, 2, kAll, ToRecord<&CableRecord::TempLowAlarmThresh>},
    {"Temperature high warning", Page::k03, 132, 2, kAll,
     ToRecord<&CableRecord::TempHighWarnThresh>},
    {"Temperature low warning", Page::k03, 134, 2, kAll, ToRecord<&CableRecord::TempLowWarnThresh>},
    {"Supply voltage high alarm", Page::k03, 144, 2, kAll,
     ToRecord<&CableRecord::VoltHighAlarmThresh>},
    {"Supply voltage low alarm", Page::k03, 146, 2, kAll,
     ToRecord<&CableRecord::VoltLowAlarmThresh>},
    {"Supply voltage high warning", Page::k03, 148, 2, kAll,
     ToRecord<&CableRecord::VoltHighWarnThresh>},
    {"Supply voltage low warning", Page::k03, 150, 2, kAll,
     ToRecord<&CableRecord::VoltLowWarnThresh>},
    {"TX adaptive equalization freeze",
     Page::k03,
     233,
     1,
     {3, 0},
     ToRecord<&CableRecord::TxAdaptiveEqFreeze>},
    {"TX input equalization", Page::k03, 234, 2, kAll, ToRecord<&CableRecord::InputEq>},
    {"RX output emphasis", Page::k03, 236, 2, kAll, ToRecord<&CableRecord::OutputEmp>},
    {"RX output amplitude", Page::k03, 238, 2, kAll, ToRecord<&CableRecord::OutputAmp>},
    {"RX output disable, TX adaptive equalization enable", Page::k03, 241, 1, kAll,
     ToRecord<&CableRecord::RxOutputDisableTxAdaptiveEq>},
};

constexpr Checksum kChecksums[] = {
    {Page::k00, 128, 190, 191},
    {Page::k00, 192, 222, 223},
};

bool IsCopper(const CableRecord& record) {
  return record.TransmitterTechnologyCode >= cable_info::kUnequalizedCopper &&
         record.TransmitterTechnologyCode <= kLastCopperTechnology;
}

std::uint8_t PowerClass(const Draft& draft) {
  if (draft.power_classes_1_to_4 == kUnread) return 0;
  if (draft.is_power_class_8 != 0) return 8;
  if (draft.power_classes_5_to_7 != 0) return draft.power_classes_5_to_7 + 4;
  return draft.power_classes_1_to_4 + 1;
}

// Whole Gb/s.
std::uint8_t NominalBitrate(const Draft& draft) {
  constexpr std::uint8_t kSeeExtended = 255;
  return draft.rate == kSeeExtended ? draft.extended_rate / 4 : draft.rate / 10;
}

std::string LengthText(const CableRecord& record) {
  constexpr std::uint8_t kVcsel850 = 0;
  const auto text = [](unsigned length, std::string_view unit) {
    return std::to_string(length).append(unit);
  };
  const bool is_cable = IsCopper(record) || record.Connector == cable_info::kNoSeparableConnector;
  if (is_cable) {
    return record.LengthCopperOrActive == 0 ? std::string(kUnknown)
                                            : text(record.LengthCopperOrActive, " m");
  }
  if (record.LengthSmf != 0) return text(record.LengthSmf, " km");
  const unsigned om4 =
      record.TransmitterTechnologyCode == kVcsel850 ? record.LengthCopperOrActive * 2U : 0U;
  for (const unsigned metres :
       {om4, record.LengthOm3 * 2U, unsigned{record.LengthOm2}, unsigned{record.LengthOm1}}) {
    if (metres != 0) return text(metres, " m");
  }
  return std::string(kUnknown);
}

// A record that knows nothing, as far as it can say so.
Draft UnknownCable(std::uint8_t identifier) {
  Draft draft;
  CableRecord& record = draft.record;
  record.Identifier = identifier;
  for (std::string CableRecord::*text :
       {&CableRecord::VendorName, &CableRecord::Oui, &CableRecord::PartNumber,
        &CableRecord::SerialNumber, &CableRecord::Revision, &CableRecord::LengthText}) {
    record.*text = kUnknown;
  }
  record.DateCodeText = kUnknownDate;
  record.TransmitterTechnologyCode = kUnknownTechnology;
  for (std::uint16_t CableRecord::*temperature :
       {&CableRecord::Temperature, &CableRecord::TempHighAlarmThresh,
        &CableRecord::TempHighWarnThresh, &CableRecord::TempLowAlarmThresh,
        &CableRecord::TempLowWarnThresh}) {
    record.*temperature = kNoTemperature;
  }
  return draft;
}

}  // namespace

std::unique_ptr<CableRecord> CableFromSff8636(const ModuleImage& image, std::uint8_t identifier) {
  Draft draft = UnknownCable(identifier);
  SetFields(image, kMap, draft);
  CableRecord& record = draft.record;
  record.PowerClass = PowerClass(draft);
  record.NominalBitrate = NominalBitrate(draft);
  record.LengthText = LengthText(record);
  if (IsCopper(record)) {  // optics keep wavelength and tolerance there
    std::copy(std::begin(draft.attenuation), std::end(draft.attenuation), record.Attenuation);
  }
  return std::make_unique<CableRecord>(std::move(record));
}

ChecksumList Sff8636Checksums() { return ChecksumList(kChecksums); }

bool IsFlatSff8636(const ModuleImage& image) {
  return (image.At(Page::kLower, 2).value_or(0) >> kFlatMemoryBit & 1) != 0;
}

}  // namespace cable_info::module_memory
