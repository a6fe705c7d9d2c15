#include "cable_info/cable_record.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace cable_info::test {
namespace {

constexpr std::uint8_t Byte(unsigned value) { return static_cast<std::uint8_t>(value); }

// A temperature word of whole degrees.
constexpr std::uint16_t Degrees(int degrees) {
  return static_cast<std::uint16_t>(static_cast<std::uint8_t>(degrees) << 8);
}

TEST(CableRecord, StartsZeroedAndEmpty) {
  const CableRecord r;
  cable_record_data_t data;
  std::memset(&data, 0xFF, sizeof(data));
  r.ExportData(&data);
  EXPECT_EQ(data.status, 0);
  EXPECT_EQ(data.lengths[4], 0);
  for (const auto byte : data.bytes) EXPECT_EQ(byte, 0);
  for (const auto word : data.words) EXPECT_EQ(word, 0);
  for (const auto value : data.monitors) EXPECT_EQ(value, 0.0F);
  EXPECT_EQ(data.rx_power_is_average, 0);
  EXPECT_EQ(data.word, 0U);
  EXPECT_STREQ(data.vendor, "");
  EXPECT_STREQ(data.date_code, "");
}

// ---------------------------------------------------------------------------------------------
// Classification
// ---------------------------------------------------------------------------------------------

TEST(CableRecordKind, FollowsTechnologyAndConnector) {
  CableRecord r;
  for (unsigned technology = 0; technology < 256; ++technology) {
    for (unsigned connector = 0; connector < 256; ++connector) {
      r.TransmitterTechnologyCode = Byte(technology);
      r.Connector = Byte(connector);
      const bool passive = technology == 10;
      ASSERT_EQ(r.IsPassiveCable(), passive);
      ASSERT_EQ(r.IsActiveCable(), !passive && connector == 0x23);
      ASSERT_EQ(r.IsModule(), !passive && connector != 0x23);
    }
  }
}

TEST(CableRecordKind, IsOpticOnlyIfTheQuerySucceeded) {
  CableRecord r;
  for (unsigned status = 0; status < 256; ++status) {
    for (unsigned technology = 0; technology < 256; ++technology) {
      r.QueryStatus = Byte(status);
      r.TransmitterTechnologyCode = Byte(technology);
      ASSERT_EQ(r.IsOpticCable(), status == 0 && technology <= 9);
    }
  }
}

TEST(CableRecordKind, RecognizesTheHomeVendorsModules) {
  CableRecord r;
  for (const char* oui : {"0x5a1", "0x5A1", "0x5a1 ", "", "5a1"}) {
    r.Oui = oui;
    for (unsigned kind = 0; kind < 256; ++kind) {
      r.VendorModuleKind = Byte(kind);
      for (const unsigned technology : {0U, 9U, 10U, 11U, 255U}) {
        r.TransmitterTechnologyCode = Byte(technology);
        const bool home = r.Oui == "0x5a1" && technology != 10;
        ASSERT_EQ(r.IsKestMmf(), home && kind == 14);
        ASSERT_EQ(r.IsKestPsm(), home && kind == 16);
      }
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Temperature
// ---------------------------------------------------------------------------------------------

TEST(CableRecordTemperatureAlarms, ReverseTheHighNibble) {
  CableRecord r;
  for (unsigned flags = 0; flags < 256; ++flags) {
    r.LatchedTemperatureAlarms = Byte(flags);
    std::uint32_t expected = 0;
    if ((flags & 0x80) != 0) expected |= 1;  // high alarm
    if ((flags & 0x40) != 0) expected |= 2;  // low alarm
    if ((flags & 0x20) != 0) expected |= 4;  // high warning
    if ((flags & 0x10) != 0) expected |= 8;  // low warning
    EXPECT_EQ(r.GetTemperatureAlarms(), expected);
  }
}

TEST(CableRecordTemperatureErrors, CompareWithTheAlarmThresholds) {
  struct Case {
    int technology, reading, high, low;
    std::uint32_t errors;
  };
  constexpr Case kCases[] = {
      {0, 71, 70, 0, 1},   {0, 70, 70, 0, 0},     {0, -1, 70, 0, 2},   {0, 0, 70, 0, 0},
      {0, 30, 20, 40, 3},  {10, 90, 70, 0, 0},    {11, 90, 70, 0, 0},  {12, 90, 70, 0, 1},
      {0, 126, 70, 0, 0},  {0, -41, 70, 0, 0},    {0, 125, 124, 0, 1}, {0, -40, 70, -39, 2},
      {0, 90, 126, 95, 2}, {0, -30, -35, -41, 1}, {0, -30, -41, 0, 2}, {0, 90, 70, 126, 1},
      {255, 90, 70, 0, 1},
  };
  for (const Case& c : kCases) {
    CableRecord r;
    r.TransmitterTechnologyCode = Byte(static_cast<unsigned>(c.technology));
    r.Temperature = Degrees(c.reading) | 0xFF;  // the fraction is ignored
    r.TempHighAlarmThresh = Degrees(c.high);
    r.TempLowAlarmThresh = Degrees(c.low);
    r.TempHighWarnThresh = Degrees(-40);  // and so are the warning thresholds
    r.TempLowWarnThresh = Degrees(125);
    EXPECT_EQ(r.GetTemperatureErrorsByTreshold(), c.errors)
        << c.technology << ' ' << c.reading << ' ' << c.high << ' ' << c.low;
  }
}

TEST(CableRecordPower, InDbmHasAMarkerForZeroOnly) {
  const CableRecord r;
  EXPECT_EQ(r.mW_to_dBm(0.0), -999.999);
  EXPECT_EQ(r.mW_to_dBm(-0.0), -999.999);
  EXPECT_EQ(r.mW_to_dBm(1.0), 0.0);
  EXPECT_EQ(r.mW_to_dBm(10.0), 10.0);
  EXPECT_DOUBLE_EQ(r.mW_to_dBm(0.523), -2.814983111327258);
  EXPECT_TRUE(std::isnan(r.mW_to_dBm(-1.0)));
  EXPECT_TRUE(std::isnan(r.mW_to_dBm(std::numeric_limits<double>::quiet_NaN())));
}

// ---------------------------------------------------------------------------------------------
// Identification
// ---------------------------------------------------------------------------------------------

TEST(CableRecordIdentification, NeverHasAFirmwareObject) {
  CableRecord r;
  r.FwVersionText = "26.11.291";
  const fw_version_obj_t version = r.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
}

TEST(CableRecordIdentification, LeavesThePartNumberUntrimmed) {
  CableRecord r;
  for (const auto& [text, expected] : {std::pair<std::string, std::string>{"", ""},
                                       {"NA", ""},
                                       {" NA ", " NA "},
                                       {"na", "na"},
                                       {"  ABC-12 ", "  ABC-12 "}}) {
    r.PartNumber = text;
    EXPECT_EQ(r.GetPNVendor(), expected);
    EXPECT_EQ(r.GetIdObj().pn, expected);
  }
}

TEST(CableRecordIdentification, HasTheKnownParts) {
  CableRecord r;
  r.Identifier = 0x11;
  r.PartNumber = "KM1-SR4";
  r.SerialNumber = "KS2416FT00871";
  r.Revision = "A5";
  const cable_id_t id = r.GetIdObj();
  EXPECT_EQ(id.pn, "KM1-SR4");
  EXPECT_EQ(id.identifier, "QSFP28");
  EXPECT_EQ(id.vendor, "FT");
  EXPECT_EQ(id.revision, "A5");
}

TEST(CableRecordIdentification, IsEmptyWhereUnknown) {
  CableRecord r;
  r.Identifier = 0x0E;
  r.PartNumber = "NA";
  r.SerialNumber = "AO2415X0042";
  r.Revision = "NA";
  const cable_id_t id = r.GetIdObj();
  EXPECT_EQ(id.pn, "");
  EXPECT_EQ(id.identifier, "");
  EXPECT_EQ(id.vendor, "");
  EXPECT_EQ(id.revision, "");
}

// ---------------------------------------------------------------------------------------------
// Export
// ---------------------------------------------------------------------------------------------

TEST(CableRecordExport, ContainsEveryField) {
  CableRecord r;
  r.QueryStatus = 1;
  r.Identifier = 2;
  r.Connector = 3;
  r.SupportedSpeedMask = 4;
  r.TransmitterTechnologyCode = 5;
  r.LengthSmf = 6;
  r.LengthOm3 = 7;
  r.LengthOm2 = 8;
  r.LengthOm1 = 9;
  r.LengthCopperOrActive = 10;
  r.Temperature = 0x1234;
  r.OpaqueByte1 = 101;
  r.NominalBitrate = 102;
  r.PowerClass = 103;
  r.CdrControl = 104;
  r.CdrPresence = 105;
  r.VendorModuleKind = 106;
  for (unsigned i = 0; i < 4; ++i) r.Attenuation[i] = Byte(107 + i);
  r.OpaqueByte2 = 111;
  r.ExtSpecCompliance = 112;
  r.OpaqueByte3 = 113;
  r.LatchedCdrLos = 114;
  r.LatchedAdaptiveEqFault = 115;
  r.LatchedCdrLol = 116;
  r.LatchedTemperatureAlarms = 117;
  r.LatchedVoltageAlarms = 118;
  r.TransmitterTechnologyRaw = 119;
  r.TxAdaptiveEqFreeze = 120;
  r.RxOutputDisableTxAdaptiveEq = 121;
  std::uint16_t* const words[] = {&r.InputEq,
                                  &r.OutputAmp,
                                  &r.OutputEmp,
                                  &r.OpaqueWord1,
                                  &r.SupplyVoltage,
                                  &r.RxPowerAlarms,
                                  &r.TxBiasAlarms,
                                  &r.TxPowerAlarms,
                                  &r.Lot,
                                  &r.TempHighAlarmThresh,
                                  &r.TempHighWarnThresh,
                                  &r.TempLowAlarmThresh,
                                  &r.TempLowWarnThresh,
                                  &r.VoltHighAlarmThresh,
                                  &r.VoltHighWarnThresh,
                                  &r.VoltLowAlarmThresh,
                                  &r.VoltLowWarnThresh};
  for (unsigned i = 0; i < 17; ++i) *words[i] = static_cast<std::uint16_t>(1000 + i);
  for (unsigned i = 0; i < 4; ++i) {
    r.RxPower[i] = 0.5F + static_cast<float>(i);
    r.TxBias[i] = 10.5F + static_cast<float>(i);
    r.TxPower[i] = 20.5F + static_cast<float>(i);
  }
  r.RxPowerIsAverage = true;
  r.OpaqueDword1 = 0xDEADBEEF;
  r.VendorName = "vendor";
  r.Oui = "oui";
  r.PartNumber = "pn";
  r.SerialNumber = "sn";
  r.Revision = "rev";
  r.LengthText = "3 m";
  r.ExtraText = "extra";
  r.FwVersionText = "fw";
  r.DateCodeText = "240315";

  cable_record_data_t data;
  std::memset(&data, 0xFF, sizeof(data));
  r.ExportData(&data);
  EXPECT_EQ(data.status, 1);
  EXPECT_EQ(data.identifier, 2);
  EXPECT_EQ(data.connector, 3);
  EXPECT_EQ(data.supported_speed, 4);
  EXPECT_EQ(data.transmitter_technology, 5);
  for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(data.lengths[i], 6 + i);
  EXPECT_EQ(data.temperature, 0x1234);
  for (unsigned i = 0; i < 21; ++i) EXPECT_EQ(data.bytes[i], 101 + i);
  for (unsigned i = 0; i < 17; ++i) EXPECT_EQ(data.words[i], 1000 + i);
  for (unsigned i = 0; i < 12; ++i) {
    EXPECT_EQ(data.monitors[i],
              10.0F * static_cast<float>(i / 4) + 0.5F + static_cast<float>(i % 4));
  }
  EXPECT_EQ(data.rx_power_is_average, 1);
  EXPECT_EQ(data.word, 0xDEADBEEF);
  EXPECT_STREQ(data.vendor, "vendor");
  EXPECT_STREQ(data.oui, "oui");
  EXPECT_STREQ(data.pn, "pn");
  EXPECT_STREQ(data.sn, "sn");
  EXPECT_STREQ(data.revision, "rev");
  EXPECT_STREQ(data.length, "3 m");
  EXPECT_STREQ(data.extra, "extra");
  EXPECT_STREQ(data.fw_version, "fw");
  EXPECT_STREQ(data.date_code, "240315");

  r.PrtlLengthText = "3.1 m";
  r.ExportData(&data);
  EXPECT_STREQ(data.length, "3.1 m");
}

TEST(CableRecordExport, HasNaturalAlignment) {
  EXPECT_EQ(offsetof(cable_record_data_t, lengths), 5U);
  EXPECT_EQ(offsetof(cable_record_data_t, temperature), 10U);
  EXPECT_EQ(offsetof(cable_record_data_t, words), 34U);
  EXPECT_EQ(offsetof(cable_record_data_t, monitors), 68U);
  EXPECT_EQ(offsetof(cable_record_data_t, word), 120U);
  EXPECT_EQ(offsetof(cable_record_data_t, vendor), 124U);
  EXPECT_EQ(sizeof(cable_record_data_t), 416U);
}

TEST(CableRecordExport, CutsTextsToTheirSlots) {
  const std::string text = "0123456789012345678901234567890123456789xyz";
  CableRecord r;
  r.VendorName = r.Oui = r.PartNumber = r.SerialNumber = r.Revision = text;
  r.LengthText = r.ExtraText = r.FwVersionText = r.DateCodeText = text;
  cable_record_data_t data;
  r.ExportData(&data);
  for (const char* slot :
       {data.vendor, data.oui, data.pn, data.sn, data.revision, data.length, data.extra}) {
    EXPECT_EQ(std::string(slot), text.substr(0, 32));
  }
  EXPECT_EQ(std::string(data.fw_version), text.substr(0, 40));
  EXPECT_EQ(std::string(data.date_code), text.substr(0, 16));
}

TEST(CableRecordExport, StopsAtANulAndClearsTheRest) {
  CableRecord r;
  r.VendorName = std::string("ab\0cd", 5);
  cable_record_data_t data;
  std::memset(&data, 0xFF, sizeof(data));
  r.ExportData(&data);
  std::string expected = "ab";
  expected.resize(33);
  EXPECT_EQ(std::string(data.vendor, sizeof(data.vendor)), expected);
}

TEST(CableRecord, IsDestroyedThroughItsBase) {
  struct Watched : CableRecord {
    explicit Watched(bool* flag) : destroyed(flag) {}
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched() override { *destroyed = true; }
    bool* destroyed;
  };
  bool destroyed = false;
  const CableRecord* record = new Watched(&destroyed);
  delete record;
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace cable_info::test
