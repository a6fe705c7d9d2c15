#include "cable_info/combined_cable_info.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "random_records.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

constexpr std::uint32_t kAllBits = 0xFFFFFFFF;

std::unique_ptr<CableRecord> Cable() {
  auto r = std::make_unique<CableRecord>();
  r->Identifier = 0x11;
  r->PartNumber = " CABLE-PN ";
  r->SerialNumber = "KS1AB2";
  r->Revision = "C1";
  r->Temperature = 80 << 8;
  r->TempHighAlarmThresh = 75 << 8;
  r->TempLowAlarmThresh = 0xFB00;
  r->LatchedTemperatureAlarms = 0x90;
  r->LengthText = "3 m";
  return r;
}

std::unique_ptr<PhyCableRecord> Phy() {
  auto r = std::make_unique<PhyCableRecord>();
  r->source = "PHY";
  r->SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
  std::strcpy(r->module->vendor_pn, " PHY-PN ");
  std::strcpy(r->module->vendor_rev, "P1");
  r->module->cable_identifier = 8;
  r->module->cable_technology = 12;
  r->module->fw_version = 0x01020304;
  r->module->cdr_vendor = 7;
  r->module->temperature = 0xF600;
  r->module->temp_high_threshold = 70 << 8;
  r->module->temp_low_threshold = 0;
  r->SetLatchedFlags(std::make_unique<PhyCableRecord::LatchedFlagsPage>());
  r->latched_flags->latched_temperature_flags = 0xF2;
  return r;
}

std::string RowOf(const CombinedCableInfo& port) {
  return Written([&](std::ostream& os) { port.ToCSVStream(os); });
}

std::string ReportOf(const CombinedCableInfo& port) {
  return Written([&](std::ostream& os) { port.ToFileStream(os); });
}

TEST(CombinedCableInfo, IsNeitherCopiedNorMoved) {
  static_assert(!std::is_copy_constructible_v<CombinedCableInfo>);
  static_assert(!std::is_move_constructible_v<CombinedCableInfo>);
  static_assert(!std::is_copy_assignable_v<CombinedCableInfo>);
  static_assert(!std::is_move_assignable_v<CombinedCableInfo>);
  static_assert(!std::is_copy_constructible_v<PhyCableRecord>);
  static_assert(!std::is_move_constructible_v<PhyCableRecord>);
  static_assert(!std::is_polymorphic_v<CombinedCableInfo>);
  static_assert(sizeof(CombinedCableInfo) == 2 * sizeof(void*));
}

TEST(CombinedCableInfoWithoutRecords, ReturnsFixedValues) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  CombinedCableInfo port;
  port.ToCSVStream(os);
  EXPECT_EQ(buffer.str(), "\n");
  EXPECT_EQ(buffer.flushes(), 1);
  port.ToFileStream(os);
  EXPECT_EQ(buffer.str(), "\n");
  EXPECT_EQ(buffer.flushes(), 1);

  const cable_id_t id = port.GetIdObj();
  EXPECT_EQ(id.pn + id.identifier + id.vendor + id.revision, "");
  EXPECT_EQ(port.GetUniqueKey(), "");
  EXPECT_EQ(port.GetPNVendor(), "");
  cable_record_data_t data = {};
  data.status = 42;
  EXPECT_FALSE(port.ExportData(&data));
  EXPECT_EQ(data.status, 42);
  const fw_version_obj_t version = port.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
  EXPECT_EQ(port.GetCDRVendor(), kAllBits);
  EXPECT_FALSE(port.IsOpticCable());
  EXPECT_EQ(port.GetTemperatureAlarms(), kAllBits);
  EXPECT_EQ(port.GetTemperatureErrorsByTreshold(), kAllBits);
  EXPECT_EQ(port.GetTemperatureStr(), "N/A");
  EXPECT_EQ(port.GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(port.GetLowTemperatureThresholdStr(), "N/A");
  port.SetPrtlLength(3.0F);
  port.SetPrtlLength("3 m");
  EXPECT_EQ(ReportOf(port), "");
}

void ExpectAnswersOfTheCableRecord(CombinedCableInfo& port) {
  EXPECT_EQ(RowOf(port), Written([](std::ostream& os) { Cable()->ToCSVStream(os); }));
  EXPECT_EQ(ReportOf(port), Cable()->c_str(true));
  const cable_id_t id = port.GetIdObj();
  EXPECT_EQ(id.pn, " CABLE-PN ");
  EXPECT_EQ(id.identifier, "QSFP28");
  EXPECT_EQ(id.vendor, "AB");
  EXPECT_EQ(id.revision, "C1");
  EXPECT_EQ(port.GetUniqueKey(), "");
  EXPECT_EQ(port.GetPNVendor(), "CABLE-PN");
  cable_record_data_t data;
  EXPECT_TRUE(port.ExportData(&data));
  EXPECT_STREQ(data.pn, " CABLE-PN ");
  const fw_version_obj_t version = port.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
  EXPECT_TRUE(port.IsOpticCable());
  EXPECT_EQ(port.GetTemperatureAlarms(), 0x09U);
  EXPECT_EQ(port.GetTemperatureErrorsByTreshold(), 1U);
  EXPECT_EQ(port.GetTemperatureStr(), "80C");
  EXPECT_EQ(port.GetHighTemperatureThresholdStr(), "75C");
  EXPECT_EQ(port.GetLowTemperatureThresholdStr(), "-5C");
}

TEST(CombinedCableInfoWithCableRecord, UsesIt) {
  CombinedCableInfo port;
  port.AttachCableRecord(Cable());
  ExpectAnswersOfTheCableRecord(port);
  EXPECT_EQ(port.GetCDRVendor(), kAllBits);
}

TEST(CombinedCableInfoWithBothRecords, UsesTheCableRecordExceptForTheCdrVendor) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(Phy());
  port.AttachCableRecord(Cable());
  ExpectAnswersOfTheCableRecord(port);
  EXPECT_EQ(port.GetCDRVendor(), 7U);
}

TEST(CombinedCableInfoWithPhyCableRecord, UsesIt) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(Phy());
  EXPECT_EQ(RowOf(port), Written([](std::ostream& os) { Phy()->ToCSVStream(os); }));
  EXPECT_EQ(ReportOf(port), Written([](std::ostream& os) { Phy()->ToFileStream(os); }));
  EXPECT_EQ(port.GetIdObj().pn, "PHY-PN");
  EXPECT_EQ(port.GetIdObj().identifier, "OSFP");
  EXPECT_EQ(port.GetUniqueKey(), "PHY-PN_0x08_P1");
  EXPECT_EQ(port.GetPNVendor(), "PHY-PN");
  cable_record_data_t data = {};
  data.status = 42;
  EXPECT_FALSE(port.ExportData(&data));
  EXPECT_EQ(data.status, 42);
  const fw_version_obj_t version = port.GetFWObj();
  EXPECT_EQ(version.major, 1);
  EXPECT_EQ(version.minor, 2);
  EXPECT_EQ(version.sub_minor, 0x0304);
  EXPECT_EQ(port.GetCDRVendor(), 7U);
  EXPECT_FALSE(port.IsOpticCable());
  EXPECT_EQ(port.GetTemperatureAlarms(), 0xF2U);
  EXPECT_EQ(port.GetTemperatureErrorsByTreshold(), 2U);
  EXPECT_EQ(port.GetTemperatureStr(), "-10C");
  EXPECT_EQ(port.GetHighTemperatureThresholdStr(), "70C");
  EXPECT_EQ(port.GetLowTemperatureThresholdStr(), "0C");
}

TEST(CombinedCableInfoWithEmptyPhyCableRecord, ReturnsTheValuesOfAMissingModule) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(std::make_unique<PhyCableRecord>());
  EXPECT_EQ(port.GetUniqueKey(), "");
  EXPECT_EQ(port.GetPNVendor(), "");
  EXPECT_EQ(port.GetFWObj().major, 0);
  EXPECT_EQ(port.GetCDRVendor(), 0U);
  EXPECT_FALSE(port.IsOpticCable());
  EXPECT_EQ(port.GetTemperatureAlarms(), 0U);
  EXPECT_EQ(port.GetTemperatureErrorsByTreshold(), 0U);
  EXPECT_EQ(port.GetTemperatureStr(), "N/A");
  EXPECT_EQ(port.GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(port.GetLowTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(Lines(ReportOf(port)).size(), 78U);
}

TEST(CombinedCableInfoWithEmptyPhyCableRecord, HasNoIdentification) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(std::make_unique<PhyCableRecord>());
  const cable_id_t id = port.GetIdObj();
  EXPECT_EQ(id.pn + id.identifier + id.vendor + id.revision, "");
  cable_record_data_t data = {};
  EXPECT_FALSE(port.ExportData(&data));
}

TEST(CombinedCableInfoWithPhyCableRecord, MayLackItsModuleOrItsPage) {
  auto record = Phy();
  record->SetModule(nullptr);
  CombinedCableInfo port;
  port.AttachPhyCableRecord(std::move(record));
  EXPECT_EQ(port.GetTemperatureAlarms(), 0xF2U);
  EXPECT_EQ(port.GetCDRVendor(), 0U);
  EXPECT_EQ(port.GetTemperatureStr(), "N/A");
  EXPECT_EQ(port.GetUniqueKey(), "");

  record = Phy();
  record->SetLatchedFlags(nullptr);
  port.AttachPhyCableRecord(std::move(record));
  EXPECT_EQ(port.GetTemperatureAlarms(), 0U);
  EXPECT_EQ(port.GetCDRVendor(), 7U);
  EXPECT_EQ(port.GetTemperatureStr(), "-10C");
  EXPECT_EQ(port.GetUniqueKey(), "PHY-PN_0x08_P1");
}

// ---------------------------------------------------------------------------------------------
// Any records
// ---------------------------------------------------------------------------------------------

// The queries that the facade and both kinds of records have in common.
template <typename Port>
std::string CommonAnswers(const Port& port) {
  const cable_id_t id = port.GetIdObj();
  std::ostringstream answers;
  answers << id.pn << '|' << id.identifier << '|' << id.vendor << '|' << id.revision << '|'
          << port.IsOpticCable() << '|' << unsigned{port.GetTemperatureErrorsByTreshold()} << '|'
          << unsigned{port.GetTemperatureAlarms()} << '|' << unsigned{port.GetFWObj().major} << '|'
          << unsigned{port.GetFWObj().minor} << '|' << port.GetFWObj().sub_minor << '|'
          << port.GetTemperatureStr() << '|' << port.GetHighTemperatureThresholdStr() << '|'
          << port.GetLowTemperatureThresholdStr() << '|' << Trimmed(port.GetPNVendor()) << '|'
          << Written([&](std::ostream& os) { port.ToCSVStream(os); }) << '|'
          << Written([&](std::ostream& os) { port.ToFileStream(os); });
  return answers.str();
}

TEST(CombinedCableInfo, ReturnsTheSameAsItsRecord) {
  for (unsigned seed = 0; seed < 1000; ++seed) {
    const CableRecord cable = RandomCableRecord(seed);
    const auto phy = RandomPhyCableRecord(seed);
    CombinedCableInfo port;
    port.AttachPhyCableRecord(RandomPhyCableRecord(seed));
    ASSERT_EQ(CommonAnswers(port), CommonAnswers(*phy)) << seed;
    EXPECT_EQ(port.GetUniqueKey(), phy->GetUniqueKey());
    EXPECT_EQ(port.GetCDRVendor(), phy->GetCDRVendor());

    port.AttachCableRecord(std::make_unique<CableRecord>(cable));
    ASSERT_EQ(CommonAnswers(port), CommonAnswers(cable)) << seed;
    EXPECT_EQ(port.GetUniqueKey(), "");
    EXPECT_EQ(port.GetCDRVendor(), phy->GetCDRVendor());
    cable_record_data_t expected;
    cable_record_data_t data;
    std::memset(&expected, 0, sizeof(expected));
    std::memset(&data, 0, sizeof(data));
    cable.ExportData(&expected);
    EXPECT_TRUE(port.ExportData(&data));
    EXPECT_EQ(std::memcmp(&data, &expected, sizeof(data)), 0);
  }
}

TEST(CombinedCableInfo, ReturnsTheCdrVendorAsAnUnsignedByte) {
  for (unsigned vendor = 0; vendor < 256; ++vendor) {
    auto record = Phy();
    record->module->cdr_vendor = static_cast<std::uint8_t>(vendor);
    CombinedCableInfo port;
    port.AttachPhyCableRecord(std::move(record));
    EXPECT_EQ(port.GetCDRVendor(), vendor);
  }
}

TEST(CombinedCableInfo, ReversesTheTemperatureAlarmsOfTheCableRecord) {
  for (unsigned flags = 0; flags < 256; ++flags) {
    auto record = Cable();
    record->LatchedTemperatureAlarms = static_cast<std::uint8_t>(flags);
    CombinedCableInfo port;
    port.AttachCableRecord(std::move(record));
    const unsigned expected =
        (flags >> 7 & 1) | (flags >> 6 & 1) << 1 | (flags >> 5 & 1) << 2 | (flags >> 4 & 1) << 3;
    EXPECT_EQ(port.GetTemperatureAlarms(), expected) << flags;
  }
}

// ---------------------------------------------------------------------------------------------
// Part number
// ---------------------------------------------------------------------------------------------

TEST(CombinedCableInfoPartNumber, IsTrimmedAfterTheTestForNa) {
  for (const auto& [text, expected] : {std::pair<std::string, std::string>{"NA", ""},
                                       {" NA ", "NA"},
                                       {"", ""},
                                       {"   ", ""},
                                       {"  ABC-12 \t", "ABC-12"},
                                       {"\v\fA B\r\n", "A B"}}) {
    CombinedCableInfo port;
    auto record = std::make_unique<CableRecord>();
    record->PartNumber = text;
    port.AttachCableRecord(std::move(record));
    EXPECT_EQ(port.GetPNVendor(), expected) << text;
  }
}

TEST(CombinedCableInfoPartNumber, MayBeNaInAPhyCableRecord) {
  CombinedCableInfo port;
  auto record = Phy();
  std::strcpy(record->module->vendor_pn, "NA");
  port.AttachPhyCableRecord(std::move(record));
  EXPECT_EQ(port.GetPNVendor(), "NA");
}

TEST(CombinedCableInfoPartNumber, MayFillItsField) {
  CombinedCableInfo port;
  auto record = Phy();
  std::memcpy(record->module->vendor_pn, " 23456789ABCDEF,Z", 17);
  port.AttachPhyCableRecord(std::move(record));
  EXPECT_EQ(port.GetPNVendor(), "23456789ABCDEF,Z");

  record = Phy();
  std::memcpy(record->module->vendor_pn, " \t\0hidden", 10);
  port.AttachPhyCableRecord(std::move(record));
  EXPECT_EQ(port.GetPNVendor(), "");
}

TEST(CombinedCableInfoFirmware, IsUnknownForPassiveCables) {
  for (const std::uint8_t identifier : {std::uint8_t{0}, std::uint8_t{8}}) {
    for (unsigned technology = 0; technology < 256; ++technology) {
      CombinedCableInfo port;
      auto record = Phy();
      record->module->cable_identifier = identifier;
      record->module->cable_technology = static_cast<std::uint8_t>(technology);
      port.AttachPhyCableRecord(std::move(record));
      const bool passive = technology >> 4 == 10;
      EXPECT_EQ(port.GetFWObj().major, passive ? 0 : 1) << technology;
      EXPECT_EQ(port.GetFWObj().minor, passive ? 0 : 2) << technology;
      EXPECT_EQ(port.GetFWObj().sub_minor, passive ? 0 : 0x0304) << technology;
    }
  }
}

TEST(CombinedCableInfoFirmware, IsUnknownWhenAllIsZero) {
  CombinedCableInfo port;
  auto record = Phy();
  record->module->fw_version = 0;
  port.AttachPhyCableRecord(std::move(record));
  const fw_version_obj_t version = port.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
}

// ---------------------------------------------------------------------------------------------
// Ownership
// ---------------------------------------------------------------------------------------------

struct Watched : CableRecord {
  explicit Watched(int* counter) : destroyed(counter) {}
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;
  ~Watched() override { ++*destroyed; }
  int* destroyed;
};

TEST(CombinedCableInfoOwnership, FreesWhatItHolds) {
  int destroyed = 0;
  {
    CombinedCableInfo port;
    port.AttachCableRecord(std::make_unique<Watched>(&destroyed));
    port.AttachPhyCableRecord(Phy());
    EXPECT_EQ(destroyed, 0);
  }
  EXPECT_EQ(destroyed, 1);
}

TEST(CombinedCableInfoOwnership, FreesWhatIsReplaced) {
  int destroyed = 0;
  CombinedCableInfo port;
  port.AttachCableRecord(std::make_unique<Watched>(&destroyed));
  port.AttachCableRecord(Cable());
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(port.GetPNVendor(), "CABLE-PN");
  port.AttachCableRecord(nullptr);
  EXPECT_EQ(port.GetPNVendor(), "");
  port.AttachPhyCableRecord(Phy());
  port.AttachPhyCableRecord(Phy());
  EXPECT_EQ(port.GetPNVendor(), "PHY-PN");
  port.AttachPhyCableRecord(nullptr);
  EXPECT_EQ(port.GetCDRVendor(), kAllBits);
}

TEST(CombinedCableInfoOwnership, FreesWhatIsDetached) {
  int destroyed = 0;
  CombinedCableInfo port;
  port.AttachCableRecord(std::make_unique<Watched>(&destroyed));
  port.AttachCableRecord(nullptr);
  EXPECT_EQ(destroyed, 1);
  port.AttachCableRecord(nullptr);
  port.AttachPhyCableRecord(nullptr);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(RowOf(port), "\n");
}

// ---------------------------------------------------------------------------------------------
// Length by round-trip latency
// ---------------------------------------------------------------------------------------------

std::string PrtlCell(const CombinedCableInfo& port) { return Row(RowOf(port))["LengthDescByPRTL"]; }

TEST(CombinedCableInfoPrtlLength, IsShownInMetres) {
  for (const auto& [length, expected] : {std::pair<float, std::string>{50.0F, "50 m"},
                                         {2.5F, "2.5 m"},
                                         {12.345678F, "12.3457 m"},
                                         {1234567.0F, "1.23457e+06 m"},
                                         {-1.0F, "-1 m"},
                                         {0.1F, "0.1 m"},
                                         {0.0F, "0 m"},
                                         {0.00001F, "1e-05 m"},
                                         {999999.0F, "999999 m"},
                                         {1000000.0F, "1e+06 m"},
                                         {std::numeric_limits<float>::infinity(), "inf m"}}) {
    CombinedCableInfo cable;
    cable.AttachCableRecord(Cable());
    cable.SetPrtlLength(length);
    EXPECT_EQ(PrtlCell(cable), '"' + expected + '"');
    EXPECT_EQ(Row(RowOf(cable))["LengthDesc"], '"' + expected + '"');
    EXPECT_EQ(Lines(ReportOf(cable))[8], "Length by PRTL: " + expected);

    CombinedCableInfo phy;
    phy.AttachPhyCableRecord(Phy());
    phy.SetPrtlLength(length);
    EXPECT_EQ(PrtlCell(phy), '"' + expected + '"');
    EXPECT_EQ(Lines(ReportOf(phy))[8], "Length by PRTL: " + expected);
  }
}

TEST(CombinedCableInfoMeasuredLength, IsShownInMetres) {
  CombinedCableInfo port;
  port.AttachCableRecord(Cable());
  EXPECT_TRUE(port.SetMeasuredLength(12.345678F));
  EXPECT_EQ(PrtlCell(port), "\"12.3457 m\"");
  EXPECT_TRUE(port.SetMeasuredLength(0.0F));
  EXPECT_EQ(PrtlCell(port), "\"0 m\"");
}

TEST(CombinedCableInfoMeasuredLength, IsRefusedIfItIsNotALength) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(Phy());
  ASSERT_TRUE(port.SetMeasuredLength(4.0F));
  using Limits = std::numeric_limits<float>;
  for (const float metres : {PrtlRecord::kNoLength, -0.5F, Limits::infinity(), -Limits::infinity(),
                             Limits::quiet_NaN()}) {
    EXPECT_FALSE(port.SetMeasuredLength(metres)) << metres;
    EXPECT_EQ(PrtlCell(port), "\"4 m\"") << metres;
  }
}

TEST(CombinedCableInfoMeasuredLength, IsRefusedByAPortWithoutRecords) {
  CombinedCableInfo port;
  EXPECT_FALSE(port.SetMeasuredLength(4.0F));
  port.AttachCableRecord(Cable());
  EXPECT_EQ(PrtlCell(port), R"("NA")");
  EXPECT_TRUE(port.SetMeasuredLength(4.0F));
  EXPECT_EQ(PrtlCell(port), "\"4 m\"");
}

TEST(CombinedCableInfoPrtlLength, MayBeAnyText) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(Phy());
  port.SetPrtlLength(" about 3 ");
  EXPECT_EQ(PrtlCell(port), "\" about 3 \"");
  port.SetPrtlLength(std::string());
  EXPECT_EQ(PrtlCell(port), "NA");
}

TEST(CombinedCableInfoPrtlLength, IsTheLastOneSet) {
  CombinedCableInfo port;
  port.AttachCableRecord(Cable());
  EXPECT_EQ(PrtlCell(port), R"("NA")");
  EXPECT_EQ(Row(RowOf(port))["LengthDesc"], "\"3 m\"");
  port.SetPrtlLength(5.0F);
  port.SetPrtlLength("6 km");
  EXPECT_EQ(PrtlCell(port), "\"6 km\"");
  EXPECT_EQ(Row(RowOf(port))["LengthDesc"], "\"6 km\"");
  port.SetPrtlLength(std::string());
  EXPECT_EQ(PrtlCell(port), R"("NA")");
  EXPECT_EQ(Row(RowOf(port))["LengthDesc"], "\"3 m\"");
}

TEST(CombinedCableInfoPrtlLength, DoesNotChangeTheOtherRecord) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(Phy());
  port.SetPrtlLength(4.0F);
  port.AttachCableRecord(Cable());
  port.SetPrtlLength(5.0F);
  port.SetPrtlLength("6 m");
  port.AttachCableRecord(nullptr);
  EXPECT_EQ(PrtlCell(port), "\"4 m\"");
}

TEST(CombinedCableInfoPrtlLength, IsStoredInTheRecordInUse) {
  CombinedCableInfo port;
  port.AttachCableRecord(Cable());
  port.AttachPhyCableRecord(Phy());
  port.SetPrtlLength(5.0F);
  EXPECT_EQ(PrtlCell(port), "\"5 m\"");
  port.AttachCableRecord(nullptr);
  EXPECT_EQ(PrtlCell(port), "NA");
}

// The cells of a record, by the names of their columns.
std::string CellOf(const CombinedCableInfo& port, const std::string& column) {
  const std::vector<std::string>& names = ColumnNames();
  const std::vector<std::string> cells = port.Cells();
  EXPECT_EQ(cells.size(), 174U);
  const auto index = std::find(names.begin(), names.end(), column) - names.begin();
  return cells.at(static_cast<std::size_t>(index) - 3);
}

TEST(CombinedCableInfo, GivesTheCellsOfTheRecordInUse) {
  CombinedCableInfo port;
  EXPECT_TRUE(port.Cells().empty());
  port.AttachPhyCableRecord(Phy());
  EXPECT_EQ(CellOf(port, "Source"), "\"PHY\"");
  EXPECT_EQ(CellOf(port, "Temperature"), "\"-10C\"");
  port.AttachCableRecord(Cable());
  EXPECT_EQ(CellOf(port, "Temperature"), "\"80C\"");
  EXPECT_EQ(CellOf(port, "SN"), "\"KS1AB2\"");
}

TEST(CombinedCableInfo, GivesTheSameCellsAsItsRow) {
  CombinedCableInfo ports[2];
  ports[0].AttachCableRecord(Cable());
  ports[1].AttachPhyCableRecord(Phy());
  for (const CombinedCableInfo& port : ports) {
    std::string row;
    for (const std::string& cell : port.Cells()) row.append(row.empty() ? "" : ",").append(cell);
    EXPECT_EQ(RowOf(port), row + '\n');
  }
}

TEST(CombinedCableInfo, LeavesTheWidthOfAStreamAtZero) {
  CombinedCableInfo ports[3];
  ports[1].AttachCableRecord(Cable());
  ports[2].AttachPhyCableRecord(Phy());
  for (const CombinedCableInfo& port : ports) {
    std::ostringstream os;
    os.width(12);
    port.ToCSVStream(os);
    EXPECT_EQ(os.width(), 0);
    os.width(12);
    port.ToFileStream(os);
    EXPECT_EQ(os.width(), 0);
  }
}

}  // namespace
}  // namespace cable_info::test
