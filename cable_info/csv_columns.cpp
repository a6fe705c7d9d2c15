#include "cable_info/csv_columns.h"

namespace cable_info {

namespace {

constexpr bool GroupsAreInOrder() {
  for (std::size_t i = 0; i < kCsvGroups.size(); ++i) {
    if (static_cast<std::size_t>(kCsvGroups[i].group) != i) return false;
  }
  return true;
}

constexpr int SumOfGroups() {
  int sum = 0;
  for (const CsvGroupSize& group : kCsvGroups) sum += group.column_count;
  return sum;
}

static_assert(GroupsAreInOrder());
static_assert(SumOfGroups() == static_cast<int>(kCsvColumns.size()));
static_assert(kRecordColumnCount == 174);

// The first and last column of each group, as in the headings of the row writers.
static_assert(ColumnCount("NodeGuid", "PortNum") == GroupSize(CsvGroup::kPort));
static_assert(ColumnCount("Source", "Rev") == GroupSize(CsvGroup::kIdentity));
static_assert(ColumnCount("LengthSMFiber", "Temperature") == GroupSize(CsvGroup::kType));
static_assert(ColumnCount("PowerClass", "Attenuation25G") == GroupSize(CsvGroup::kSettings));
static_assert(ColumnCount("RXPowerType", "TX8Power") == GroupSize(CsvGroup::kMonitors));
static_assert(ColumnCount("RX1LatchedLossIndicator", "LowTX4PowerWarning") ==
              GroupSize(CsvGroup::kFlags));
static_assert(ColumnCount("SupplyVoltageReporting", "ExtendedSpecificationComplianceCodes") ==
              GroupSize(CsvGroup::kTransmitter));
static_assert(ColumnCount("AlarmTemperatureHighThresh", "TXBiasLowThresh") ==
              GroupSize(CsvGroup::kThresholds));
static_assert(ColumnCount("DateCode", "MaxFiberLength") == GroupSize(CsvGroup::kManufacture));

}  // namespace

std::string_view CsvFormName(CsvForm form) {
  switch (form) {
    case CsvForm::kMissing:
      return "missing";
    case CsvForm::kGuid:
      return "guid";
    case CsvForm::kText:
      return "text";
    case CsvForm::kBareText:
      return "bare text";
    case CsvForm::kDecimal:
      return "decimal";
    case CsvForm::kFlag:
      return "flag";
    case CsvForm::kHex1:
      return "hex 1";
    case CsvForm::kHex2:
      return "hex 2";
    case CsvForm::kHex4:
      return "hex 4";
    case CsvForm::kFourNibbles:
      return "4 nibbles";
    case CsvForm::kFourBytes:
      return "4 bytes";
    case CsvForm::kFixed3:
      return "fixed 3";
    case CsvForm::kCelsius:
      return "celsius";
    case CsvForm::kMicrovolts:
      return "microvolts";
    case CsvForm::kFirmwareVersion:
      return "version";
    case CsvForm::kDate:
      return "date";
    case CsvForm::kWatts:
      return "watts";
  }
  return {};
}

}  // namespace cable_info
