#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/missing_values.h"
#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/record_map.h"
#include "cable_info/module_memory/records.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

namespace {

constexpr std::uint8_t kUnknownTechnology = 0xFF;  // not in the table: shown as missing
constexpr std::uint16_t kUnread = 0xFFFF;

// The record under construction, and bytes that form a field only together with others.
struct Draft {
  CableRecord record;
  std::uint16_t extended_identifier = kUnread;
  std::uint8_t maximum_power = 0;  // 0.1 W
  std::uint8_t rate = 0;
  std::uint8_t extended_rate = 0;
  std::uint8_t attenuation[4] = {};
};

template <auto kMember>
constexpr auto ToRecord = SetNumberOf<Draft, &Draft::record, kMember>;
template <auto kMember>
constexpr auto ToText = SetTextOf<Draft, &Draft::record, kMember>;
template <auto kMember>
constexpr auto ToDraft = SetNumber<Draft, kMember>;

void ToOui(Draft& draft, const FieldBytes& value) {
  draft.record.Oui = cable_info::text::ToText(
      [&](cable_info::text::TextBuffer& out) { out.AppendPrefixedHex(value.Number(), 1); });
}

void ToDate(Draft& draft, const FieldBytes& value) {
  char text[kMaxFieldSize];
  const std::string_view date = value.Text(text);
  draft.record.DateCodeText = date.empty() ? kReportNa : date;
}

void ToTechnology(Draft& draft, const FieldBytes& value) {
  draft.record.TransmitterTechnologyRaw = value[0];
  draft.record.TransmitterTechnologyCode = value[0] >> 4;
}

void ToAttenuation(Draft& draft, const FieldBytes& value) {
  for (std::size_t i = 0; i < std::size(draft.attenuation); ++i) draft.attenuation[i] = value[i];
}

// Lanes 1..4 in units of `kPerUnit` nano-units (nW, nA), shown in milli-units.
template <auto kMember, int kPerUnit>
void ToLanes(Draft& draft, const FieldBytes& value) {
  constexpr double kNanoPerMilli = 1e6;
  auto& lanes = draft.record.*kMember;
  for (std::size_t i = 0; i < std::size(lanes); ++i) {
    lanes[i] = static_cast<float>(value.Word(i) * kPerUnit / kNanoPerMilli);
  }
}

constexpr int kPowerUnit = 100;  // 0.1 uW
constexpr int kBiasUnit = 2000;  // 2 uA

// The fields, and what takes them. The places are those of the family's map.
// NOLINTNEXTLINE(readability-function-size): a table
const auto& Map() {
  using F = RecordField<Draft>;
  static const auto kMap = [] {
    const Places P(Sff8636Map());
    return std::array{
        F{P.Of(LaneField::kTxLos), ToRecord<&CableRecord::LatchedCdrLos>},
        F{P.Of(LaneField::kTxAdaptiveEqFault), ToRecord<&CableRecord::LatchedAdaptiveEqFault>},
        F{P.Of(LaneField::kTxLol), ToRecord<&CableRecord::LatchedCdrLol>},
        F{P.FlagBytes(Quantity::kTemperature, kHighAlarm),
          ToRecord<&CableRecord::LatchedTemperatureAlarms>},
        F{P.FlagBytes(Quantity::kVoltage, kHighAlarm),
          ToRecord<&CableRecord::LatchedVoltageAlarms>},
        F{P.FlagBytes(Quantity::kRxPower, kHighAlarm, 2), ToRecord<&CableRecord::RxPowerAlarms>},
        F{P.FlagBytes(Quantity::kTxBias, kHighAlarm, 2), ToRecord<&CableRecord::TxBiasAlarms>},
        F{P.FlagBytes(Quantity::kTxPower, kHighAlarm, 2), ToRecord<&CableRecord::TxPowerAlarms>},
        F{P.Value(Quantity::kTemperature), ToRecord<&CableRecord::Temperature>},
        F{P.Value(Quantity::kVoltage), ToRecord<&CableRecord::SupplyVoltage>},
        F{P.Value(Quantity::kRxPower, 4), ToLanes<&CableRecord::RxPower, kPowerUnit>},
        F{P.Value(Quantity::kTxBias, 4), ToLanes<&CableRecord::TxBias, kBiasUnit>},
        F{P.Value(Quantity::kTxPower, 4), ToLanes<&CableRecord::TxPower, kPowerUnit>},
        F{P.Of(LaneField::kTxCdr), ToRecord<&CableRecord::CdrControl>},
        F{P.Of(Field::kMaxPower), ToDraft<&Draft::maximum_power>},
        F{P.Of(Field::kPowerClass), ToDraft<&Draft::extended_identifier>},
        F{P.Of(Field::kPowerClass, Bits(3, 2)), ToRecord<&CableRecord::CdrPresence>},
        F{P.Of(Field::kConnector), ToRecord<&CableRecord::Connector>},
        F{P.Of(Field::kNominalBitrate), ToDraft<&Draft::rate>},
        F{P.Of(Field::kLengthSmf), ToRecord<&CableRecord::LengthSmf>},
        F{P.Of(Field::kLengthOm3), ToRecord<&CableRecord::LengthOm3>},
        F{P.Of(Field::kLengthOm2), ToRecord<&CableRecord::LengthOm2>},
        F{P.Of(Field::kLengthOm1), ToRecord<&CableRecord::LengthOm1>},
        F{P.Of(Field::kLengthCable), ToRecord<&CableRecord::LengthCopperOrActive>},
        F{P.Of(Field::kTechnology, kByte), ToTechnology},
        F{P.Of(Field::kVendor), ToText<&CableRecord::VendorName>, Partial::kAccepted},
        F{P.Of(Field::kSpeedMask), ToRecord<&CableRecord::SupportedSpeedMask>},
        F{P.Of(Field::kOui), ToOui},
        F{P.Of(Field::kPartNumber), ToText<&CableRecord::PartNumber>, Partial::kAccepted},
        F{P.Of(Field::kVendorRevision), ToText<&CableRecord::Revision>, Partial::kAccepted},
        F{P.Of(Field::kAttenuation2p5, Bytes(4)), ToAttenuation},
        F{P.Of(Field::kExtendedCompliance), ToRecord<&CableRecord::ExtSpecCompliance>},
        F{P.Of(Field::kSerialNumber), ToText<&CableRecord::SerialNumber>, Partial::kAccepted},
        F{P.Of(Field::kDateCode), ToDate, Partial::kAccepted},
        F{P.Of(Field::kLot), ToRecord<&CableRecord::Lot>},
        F{P.Of(Field::kRxPowerType), ToRecord<&CableRecord::RxPowerIsAverage>},
        F{P.Of(Field::kExtendedBitrate), ToDraft<&Draft::extended_rate>},
        F{P.Threshold(Quantity::kTemperature, kHighAlarm),
          ToRecord<&CableRecord::TempHighAlarmThresh>},
        F{P.Threshold(Quantity::kTemperature, kLowAlarm),
          ToRecord<&CableRecord::TempLowAlarmThresh>},
        F{P.Threshold(Quantity::kTemperature, kHighWarning),
          ToRecord<&CableRecord::TempHighWarnThresh>},
        F{P.Threshold(Quantity::kTemperature, kLowWarning),
          ToRecord<&CableRecord::TempLowWarnThresh>},
        F{P.Threshold(Quantity::kVoltage, kHighAlarm), ToRecord<&CableRecord::VoltHighAlarmThresh>},
        F{P.Threshold(Quantity::kVoltage, kLowAlarm), ToRecord<&CableRecord::VoltLowAlarmThresh>},
        F{P.Threshold(Quantity::kVoltage, kHighWarning),
          ToRecord<&CableRecord::VoltHighWarnThresh>},
        F{P.Threshold(Quantity::kVoltage, kLowWarning), ToRecord<&CableRecord::VoltLowWarnThresh>},
        F{P.Of(LaneField::kTxAdaptiveEqFreeze, Bits(3, 0)),
          ToRecord<&CableRecord::TxAdaptiveEqFreeze>},
        F{P.Of(LaneField::kTxInputEq, 2), ToRecord<&CableRecord::InputEq>},
        F{P.Of(LaneField::kRxEmphasis, 2), ToRecord<&CableRecord::OutputEmp>},
        F{P.Of(LaneField::kRxAmplitude, 2), ToRecord<&CableRecord::OutputAmp>},
        F{P.Of(LaneField::kRxOutputDisable), ToRecord<&CableRecord::RxOutputDisableTxAdaptiveEq>},
    };
  }();
  return kMap;
}

bool IsCopper(const CableRecord& record) {
  return decode::IsCopperTechnology(record.TransmitterTechnologyCode);
}

std::uint8_t PowerClass(const Draft& draft) {
  if (draft.extended_identifier == kUnread) return 0;
  return static_cast<std::uint8_t>(
      Sff8636PowerClass(draft.extended_identifier, draft.maximum_power));
}

std::uint8_t WholeGigabits(const Draft& draft) {
  constexpr unsigned kMegabits = 1000;
  return static_cast<std::uint8_t>(NominalBitrate(draft.rate, draft.extended_rate) / kMegabits);
}

std::string LengthText(const CableRecord& record) {
  constexpr std::uint8_t kVcsel850 = 0;
  const auto text = [](unsigned length, std::string_view unit) {
    return std::to_string(length).append(unit);
  };
  const bool is_cable = IsCopper(record) || record.Connector == kNoSeparableConnector;
  if (is_cable) {
    return record.LengthCopperOrActive == 0 ? std::string(kBareNa)
                                            : text(record.LengthCopperOrActive, " m");
  }
  if (record.LengthSmf != 0) return text(record.LengthSmf, " km");
  const unsigned om4 =
      record.TransmitterTechnologyCode == kVcsel850 ? record.LengthCopperOrActive * 2U : 0U;
  for (const unsigned metres :
       {om4, record.LengthOm3 * 2U, unsigned{record.LengthOm2}, unsigned{record.LengthOm1}}) {
    if (metres != 0) return text(metres, " m");
  }
  return std::string(kBareNa);
}

// A record with all values unknown, as far as it can represent that.
Draft UnknownCable(std::uint8_t identifier) {
  Draft draft;
  CableRecord& record = draft.record;
  record.Identifier = identifier;
  for (std::string CableRecord::*text :
       {&CableRecord::VendorName, &CableRecord::Oui, &CableRecord::PartNumber,
        &CableRecord::SerialNumber, &CableRecord::Revision, &CableRecord::LengthText}) {
    record.*text = kBareNa;
  }
  record.DateCodeText = kReportNa;
  record.TransmitterTechnologyCode = kUnknownTechnology;
  for (std::uint16_t CableRecord::*temperature :
       {&CableRecord::Temperature, &CableRecord::TempHighAlarmThresh,
        &CableRecord::TempHighWarnThresh, &CableRecord::TempLowAlarmThresh,
        &CableRecord::TempLowWarnThresh}) {
    record.*temperature = kNoTemperature;
  }
  return draft;
}

// Copper cables have no optical readings, whatever their vendors left in those bytes.
void DropOpticalReadings(CableRecord& record) {
  for (auto* lanes : {&record.RxPower, &record.TxBias, &record.TxPower}) {
    std::fill(std::begin(*lanes), std::end(*lanes), 0.0F);
  }
}

// Byte 145 of copper cables is the attenuation at 25.8 GHz.
void MoveAttenuation(CableRecord& record, std::vector<std::string>& remarks) {
  if (record.LengthOm1 == 0) return;
  remarks.push_back("the attenuation at 25.8 GHz is " + std::to_string(record.LengthOm1) +
                    " dB, which rows and reports do not show");
  record.LengthOm1 = 0;
}

void RemarkOnPower(const Draft& draft, std::vector<std::string>& remarks) {
  constexpr unsigned kClass8 = 8;
  constexpr unsigned kTenths = 10;
  if (draft.record.PowerClass != kClass8) return;
  remarks.push_back("the maximum power is " + std::to_string(draft.maximum_power / kTenths) + '.' +
                    std::to_string(draft.maximum_power % kTenths) +
                    " W, which rows and reports do not show");
}

}  // namespace

std::unique_ptr<CableRecord> CableFromSff8636(const ModuleImage& image, std::uint8_t identifier,
                                              std::vector<std::string>& remarks) {
  Draft draft = UnknownCable(identifier);
  SetFields<Draft>(image, Map(), draft);
  CableRecord& record = draft.record;
  record.PowerClass = PowerClass(draft);
  record.NominalBitrate = WholeGigabits(draft);
  record.LengthText = LengthText(record);
  if (IsCopper(record)) {  // optics keep wavelength and tolerance there
    std::copy(std::begin(draft.attenuation), std::end(draft.attenuation), record.Attenuation);
    DropOpticalReadings(record);
    MoveAttenuation(record, remarks);
  }
  RemarkOnPower(draft, remarks);
  if (AskBit(image, Page::kLower, 2, 0) == Advertised::kYes) remarks.emplace_back(kNotReadyText);
  return std::make_unique<CableRecord>(std::move(record));
}

}  // namespace cable_info::module_memory
