// `ReadingsOf` for each record, field by field, with values calculated by hand.

#include "cable_info/readings/readings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "cable_info/cable_record.h"
#include "cable_info/combined_cable_info.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

// A 4-lane optical module, as the cable pages report it.
CableRecord Optic() {
  CableRecord r;
  r.Identifier = 0x11;
  r.Connector = 0x0C;
  r.SupportedSpeedMask = 0x1F;
  r.TransmitterTechnologyCode = 0;
  r.LengthSmf = 2;
  r.LengthOm3 = 35;
  r.LengthOm2 = 20;
  r.LengthOm1 = 10;
  r.LengthCopperOrActive = 50;
  r.Temperature = 41 << 8 | 0x80;
  r.NominalBitrate = 25;
  r.PowerClass = 4;
  r.CdrControl = 0x81;
  r.CdrPresence = 3;
  r.ExtSpecCompliance = 2;
  r.TxAdaptiveEqFreeze = 0x08;
  r.RxOutputDisableTxAdaptiveEq = 0x21;
  r.InputEq = 0x1234;
  r.OutputAmp = 0x5678;
  r.OutputEmp = 0x9ABC;
  r.SupplyVoltage = 32950;
  r.Lot = 0x4142;
  r.TempHighAlarmThresh = 75 << 8;
  r.TempHighWarnThresh = 70 << 8;
  r.TempLowAlarmThresh = 0xFB00;  // -5
  r.VoltHighAlarmThresh = 36300;
  r.VoltHighWarnThresh = 34650;
  r.VoltLowAlarmThresh = 29700;
  r.VoltLowWarnThresh = 31350;
  for (int i = 0; i < 4; ++i) {
    r.RxPower[i] = 0.5F + 0.1F * static_cast<float>(i);
    r.TxBias[i] = 7.0F + static_cast<float>(i);
    r.TxPower[i] = 1.5F + static_cast<float>(i);
  }
  r.RxPowerIsAverage = true;
  r.VendorName = " Acme ";
  r.Oui = "0x1b21";
  r.PartNumber = "AO-100-SR4 ";
  r.SerialNumber = "AO2415X0042";
  r.Revision = "A1";
  r.FwVersionText = "26.11.291";
  r.DateCodeText = "24040901";
  return r;
}

// An 8-lane optical module, as the PHY reports it.
ModuleRecord PhyOptic() {
  ModuleRecord m;
  m.power_unit_flag = 1;
  m.compliance_code = 0x1C;
  m.cable_technology = 6;
  m.power_class = 8;
  m.cable_identifier = 8;
  m.tx_input_eq = 3;
  m.rx_output_pre_emp = 1;
  m.rx_output_amp = 2;
  m.rx_output_post_emp = 4;
  m.max_power = 60;
  m.tx_cdr_state = 0x0F;
  m.rx_cdr_state = 0xF0;
  m.tx_cdr_cap = 1;
  m.rx_cdr_cap = 1;
  std::string(" Acme ").copy(m.vendor_name, 16);
  std::string("AO,800").copy(m.vendor_pn, 16);
  m.vendor_rev[1] = 'B';
  m.vendor_rev[3] = '2';
  std::string("SN1").copy(m.vendor_sn, 16);
  m.fw_version = 0x1A0B0123;
  m.voltage = 32870;
  m.temperature = 33 << 8;
  m.temp_low_threshold = 0xFB00;
  m.temp_high_threshold = 75 << 8;
  m.voltage_low_threshold = 29700;
  m.voltage_high_threshold = 36300;
  m.rx_power_low_threshold = 500;
  m.rx_power_high_threshold = 46774;
  m.tx_power_low_threshold = 1000;
  m.tx_power_high_threshold = 34674;
  m.tx_bias_low_threshold = 1500;
  m.tx_bias_high_threshold = 6000;
  for (std::uint16_t i = 0; i < 8; ++i) {  // in memory order
    m.rx_power[i] = static_cast<std::uint16_t>(1000 * (i + 1));
    m.tx_power[i] = static_cast<std::uint16_t>(2000 * (i + 1));
    m.tx_bias[i] = static_cast<std::uint16_t>(500 * (i + 1));
  }
  m.rx_power_type = 0;
  m.ib_compliance_code = 0x60;
  m.nominal_bitrate = 255;
  m.extended_bitrate = 212;
  m.lot = 0x4142;
  m.SetDateCode("240409");
  m.vendor_oui = 0x1B21;
  m.connector_type = 0x28;
  m.cdr_vendor = 2;
  return m;
}

PhyCableRecord& Fill(PhyCableRecord& phy, const ModuleRecord& module) {
  phy.source = "PHY";
  phy.SetModule(std::make_unique<ModuleRecord>(module));
  return phy;
}

PhyCableRecord& Fill(PhyCableRecord& phy, const LatchedFlagsPage& page) {
  phy.SetLatchedFlags(std::make_unique<LatchedFlagsPage>(page));
  return phy;
}

using Threshold = std::optional<float>;

void ExpectThresholds(const Reading& reading, Threshold high_alarm, Threshold low_alarm,
                      Threshold high_warning, Threshold low_warning) {
  EXPECT_EQ(reading.Threshold(AlarmLevel::kHighAlarm), high_alarm);
  EXPECT_EQ(reading.Threshold(AlarmLevel::kLowAlarm), low_alarm);
  EXPECT_EQ(reading.Threshold(AlarmLevel::kHighWarning), high_warning);
  EXPECT_EQ(reading.Threshold(AlarmLevel::kLowWarning), low_warning);
}

// ---------------------------------------------------------------------------------------------
// The cable pages
// ---------------------------------------------------------------------------------------------

TEST(CableReadings, IdentifyTheModule) {
  const Readings port = ReadingsOf(Optic());
  EXPECT_TRUE(port.has_data);
  EXPECT_EQ(port.source, "CABLE");
  EXPECT_EQ(port.query_status, 0);
  EXPECT_EQ(port.identity.vendor, "Acme");
  EXPECT_EQ(port.identity.oui, "001b21");
  EXPECT_EQ(port.identity.part_number, "AO-100-SR4");
  EXPECT_EQ(port.identity.serial_number, "AO2415X0042");
  EXPECT_EQ(port.identity.revision, "A1");
  EXPECT_EQ(port.identity.date_code, "240409");
  EXPECT_EQ(port.identity.lot, 0x4142);
  EXPECT_EQ(port.identity.firmware, "") << "known for some modules of the home vendor only";
  EXPECT_EQ(port.medium, Medium::kOptical);
  EXPECT_EQ(port.speeds, 0x1F);
  EXPECT_EQ(port.nominal_bitrate_gbps, 25.0F);
  EXPECT_EQ(port.power_class, 4);
  EXPECT_EQ(port.max_power_w, std::nullopt);
  EXPECT_EQ(port.rx_power_is_average, true);
  EXPECT_EQ(port.cdr_vendor, std::nullopt);
}

TEST(CableReadings, NameTheCodes) {
  const Readings port = ReadingsOf(Optic());
  EXPECT_EQ(port.identifier->code, 0x11);
  EXPECT_EQ(port.identifier->name, "QSFP28");
  EXPECT_EQ(port.connector->code, 0x0C);
  EXPECT_EQ(port.connector->name, "MPO 1x12");
  EXPECT_EQ(port.technology->code, 0);
  EXPECT_EQ(port.technology->name, "850 nm VCSEL");
  EXPECT_EQ(port.compliance->code, 2);
  EXPECT_EQ(port.compliance->name, "100GBASE-SR4 or 25GBASE-SR");
}

TEST(CableReadings, LeaveUnknownTextsEmpty) {
  CableRecord r;
  r.VendorName = "  ";
  r.PartNumber = "NA";
  r.Revision = " NA ";
  r.SerialNumber = "N/A";
  r.DateCodeText = "N/A";
  for (const char* oui : {"", "0x0", "0x1000000", "0x12x", "-1", "vendor"}) {
    r.Oui = oui;
    EXPECT_EQ(ReadingsOf(r).identity.oui, "") << oui;
  }
  const Identity identity = ReadingsOf(r).identity;
  EXPECT_EQ(identity.vendor, "");
  EXPECT_EQ(identity.part_number, "");
  EXPECT_EQ(identity.revision, "");
  EXPECT_EQ(identity.serial_number, "");
  EXPECT_EQ(identity.date_code, "");
}

TEST(CableReadings, GiveTheFirmwareOfTheHomeVendor) {
  CableRecord r = Optic();
  r.Oui = "0x5a1";
  EXPECT_EQ(ReadingsOf(r).identity.firmware, "");
  r.VendorModuleKind = 14;
  EXPECT_EQ(ReadingsOf(r).identity.firmware, "26.11.291");
  EXPECT_EQ(ReadingsOf(r).identity.oui, "0005a1");
}

TEST(CableReadings, GiveLengthsInMetres) {
  CableRecord r = Optic();
  r.PrtlLengthText = "50.5 m";
  const Lengths lengths = ReadingsOf(r).lengths;
  EXPECT_EQ(lengths.smf, 2000.0F);
  EXPECT_EQ(lengths.om3, 70.0F);
  EXPECT_EQ(lengths.om2, 20.0F);
  EXPECT_EQ(lengths.om1, 10.0F);
  EXPECT_EQ(lengths.om5, std::nullopt);
  EXPECT_EQ(lengths.om4, 100.0F) << "an 850 nm module with a connector: units of 2 m";
  EXPECT_EQ(lengths.cable, std::nullopt) << "such a module is no cable";
  EXPECT_EQ(lengths.measured, 50.5F);
}

TEST(CableReadings, GiveTheLengthOfACable) {
  CableRecord r = Optic();
  r.Connector = 0x23;
  EXPECT_EQ(ReadingsOf(r).lengths.cable, 50.0F);
  EXPECT_EQ(ReadingsOf(r).lengths.om4, std::nullopt);
  r.LengthCopperOrActive = 0;
  r.LengthText = "0.5 km";
  EXPECT_EQ(ReadingsOf(r).lengths.cable, 500.0F);
  r.LengthText = "70 m on OM3 or 100 m on OM4 fibre";
  EXPECT_EQ(ReadingsOf(r).lengths.cable, std::nullopt);
  r = CableRecord();
  r.TransmitterTechnologyCode = 10;
  r.LengthCopperOrActive = 3;
  EXPECT_EQ(ReadingsOf(r).lengths.cable, 3.0F);
}

TEST(CableReadings, ReadMeasuredLengths) {
  CableRecord r;
  const auto measured = [&](const char* text) {
    r.PrtlLengthText = text;
    return ReadingsOf(r).lengths.measured;
  };
  EXPECT_EQ(measured(""), std::nullopt);
  EXPECT_EQ(measured("12 m"), 12.0F);
  EXPECT_EQ(measured("12"), 12.0F);
  EXPECT_EQ(measured(" 1.5 km "), 1500.0F);
  EXPECT_EQ(measured("NA"), std::nullopt);
  EXPECT_EQ(measured("-1 m"), std::nullopt);
  EXPECT_EQ(measured("1.2.3 m"), std::nullopt);
  EXPECT_EQ(measured("12 ft"), std::nullopt);
  EXPECT_EQ(measured("123456789012345678901 m"), std::nullopt);
}

TEST(CableReadings, GiveTemperatureAndVoltage) {
  const Readings port = ReadingsOf(Optic());
  const Reading& temperature = port.Of(Quantity::kTemperature);
  EXPECT_EQ(temperature.lane, 0);
  EXPECT_TRUE(temperature.IsPresent());
  EXPECT_EQ(temperature.value, 41.0F) << "the low byte is no fraction in a record";
  ExpectThresholds(temperature, 75.0F, -5.0F, 70.0F, 0.0F);
  const Reading& voltage = port.Of(Quantity::kVoltage);
  EXPECT_TRUE(voltage.IsPresent());
  EXPECT_EQ(voltage.value, 3.295F);
  ExpectThresholds(voltage, 3.63F, 2.97F, 3.465F, 3.135F);
}

TEST(CableReadings, HaveNoThresholdsIfAllFourAreZero) {
  CableRecord r = Optic();
  r.TempHighAlarmThresh = r.TempHighWarnThresh = r.TempLowAlarmThresh = r.TempLowWarnThresh = 0;
  r.VoltHighAlarmThresh = r.VoltHighWarnThresh = r.VoltLowAlarmThresh = r.VoltLowWarnThresh = 0;
  const Readings port = ReadingsOf(r);
  ExpectThresholds(port.Of(Quantity::kTemperature), {}, {}, {}, {});
  ExpectThresholds(port.Of(Quantity::kVoltage), {}, {}, {}, {});
  r.VoltHighAlarmThresh = 36300;
  ExpectThresholds(ReadingsOf(r).Of(Quantity::kVoltage), 3.63F, 0.0F, 0.0F, 0.0F);
}

TEST(CableReadings, OmitInvalidTemperatures) {
  CableRecord r = Optic();
  r.Temperature = 126 << 8;
  r.TempHighAlarmThresh = 126 << 8;
  r.TempLowAlarmThresh = 0xD700;  // -41
  const Reading temperature = ReadingsOf(r).Of(Quantity::kTemperature);
  EXPECT_EQ(temperature.state, FieldState::kNotRead);
  EXPECT_EQ(temperature.value, 0.0F);
  ExpectThresholds(temperature, {}, {}, 70.0F, 0.0F);
}

TEST(CableReadings, MeasureNothingOnPassiveCopper) {
  for (const std::uint8_t technology : std::initializer_list<std::uint8_t>{10, 11}) {
    CableRecord r = Optic();
    r.TransmitterTechnologyCode = technology;
    r.LatchedTemperatureAlarms = 0xF0;
    const Readings port = ReadingsOf(r);
    EXPECT_EQ(port.medium, Medium::kPassiveCopper);
    for (const Reading& reading : port) {
      EXPECT_EQ(reading.state, FieldState::kNotImplemented);
      EXPECT_EQ(reading.latched.known, 0);
      ExpectThresholds(reading, {}, {}, {}, {});
    }
  }
}

TEST(CableReadings, MeasureNoLightOnActiveCopper) {
  for (const std::uint8_t technology : std::initializer_list<std::uint8_t>{12, 13, 14, 15}) {
    CableRecord r = Optic();
    r.TransmitterTechnologyCode = technology;
    const Readings port = ReadingsOf(r);
    EXPECT_EQ(port.medium, Medium::kActiveCopper);
    EXPECT_EQ(port.Of(Quantity::kTemperature).value, 41.0F);
    EXPECT_EQ(port.Of(Quantity::kRxPower, 1).state, FieldState::kNotImplemented);
    EXPECT_EQ(port.lanes_in_use, 0x0F);
  }
}

TEST(CableReadings, HaveNoVoltageIfItReadsZero) {
  CableRecord r = Optic();
  r.SupplyVoltage = 0;
  EXPECT_EQ(ReadingsOf(r).Of(Quantity::kVoltage).state, FieldState::kNotImplemented);
  EXPECT_EQ(ReadingsOf(r).Of(Quantity::kTemperature).value, 41.0F);
  r.Temperature = 0;
  EXPECT_EQ(ReadingsOf(r).Of(Quantity::kTemperature).state, FieldState::kNotImplemented);
  r.SupplyVoltage = 1;
  EXPECT_TRUE(ReadingsOf(r).Of(Quantity::kTemperature).IsPresent());
}

TEST(CableReadings, GiveTheLanes) {
  const Readings port = ReadingsOf(Optic());
  EXPECT_EQ(port.lanes, 4);
  EXPECT_EQ(port.lanes_in_use, 0x0F);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 3).value, 0.5F + 0.2F);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 3).lane, 3);
  EXPECT_EQ(port.Of(Quantity::kTxBias, 4).value, 10.0F);
  EXPECT_EQ(port.Of(Quantity::kTxPower, 1).value, 1.5F);
  EXPECT_EQ(port.Of(Quantity::kTxPower, 5).state, FieldState::kNotImplemented);
  ExpectThresholds(port.Of(Quantity::kRxPower, 1), {}, {}, {}, {});
  int readings = 0;
  for (const Reading& reading : port) {
    readings += 1;
    EXPECT_EQ(&reading, &port.Of(reading.quantity, reading.lane));
  }
  EXPECT_EQ(readings, 26);
}

TEST(CableReadings, CountDarkLanesAsNotInUse) {
  CableRecord r = Optic();
  r.RxPower[1] = r.TxPower[1] = r.TxBias[1] = 0;
  r.RxPower[2] = r.TxPower[2] = 0;
  const Readings port = ReadingsOf(r);
  EXPECT_EQ(port.lanes_in_use, 0b1101);
  EXPECT_TRUE(port.Of(Quantity::kRxPower, 2).IsPresent()) << "0 is a value";
}

TEST(CableReadings, HaveNoMonitorsIfAllAreZero) {
  CableRecord r = Optic();
  for (int i = 0; i < 4; ++i) r.RxPower[i] = r.TxPower[i] = r.TxBias[i] = 0;
  const Readings port = ReadingsOf(r);
  EXPECT_EQ(port.lanes_in_use, 0);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 1).state, FieldState::kNotImplemented);
  EXPECT_EQ(port.Of(Quantity::kTxBias, 4).state, FieldState::kNotImplemented);
}

TEST(CableReadings, OmitNanAndInfinities) {
  CableRecord r = Optic();
  r.RxPower[0] = std::numeric_limits<float>::quiet_NaN();
  r.TxPower[0] = std::numeric_limits<float>::infinity();
  const Readings port = ReadingsOf(r);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 1).state, FieldState::kNotRead);
  EXPECT_EQ(port.Of(Quantity::kTxPower, 1).state, FieldState::kNotRead);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 1).value, 0.0F);
}

TEST(CableReadings, OfferTwoLanesInSmallFormFactors) {
  for (const std::uint8_t identifier : std::initializer_list<std::uint8_t>{0x1A, 0x1B}) {
    CableRecord r = Optic();
    r.Identifier = identifier;
    r.LatchedCdrLos = 0xFF;
    const Readings port = ReadingsOf(r);
    EXPECT_EQ(port.lanes, 2);
    EXPECT_EQ(port.lanes_in_use, 0x03);
    EXPECT_EQ(port.Of(LaneFlag::kRxLos).known, 0x03);
    EXPECT_EQ(port.Of(LaneFlag::kRxLos).raised, 0x03);
    EXPECT_EQ(port.Of(Quantity::kRxPower, 3).state, FieldState::kNotImplemented);
  }
}

TEST(CableReadings, ReadTheFlagsOfTheModule) {
  const AlarmLevel bounds[] = {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                               AlarmLevel::kHighWarning, AlarmLevel::kLowWarning};
  for (int i = 0; i < 4; ++i) {
    CableRecord r = Optic();
    r.LatchedTemperatureAlarms = static_cast<std::uint8_t>(0x80 >> i);
    r.LatchedVoltageAlarms = static_cast<std::uint8_t>(0x10 << i);
    const Readings port = ReadingsOf(r);
    for (int other = 0; other < 4; ++other) {
      EXPECT_EQ(port.Of(Quantity::kTemperature).Latched(bounds[other]), other == i);
      EXPECT_EQ(port.Of(Quantity::kVoltage).Latched(bounds[other]), other == 3 - i);
    }
  }
}

TEST(CableReadings, DoNotReadTheInitializationFlagAsAnAlarm) {
  CableRecord r = Optic();
  r.LatchedTemperatureAlarms = 0x0F;
  r.LatchedVoltageAlarms = 0x0F;
  EXPECT_EQ(ReadingsOf(r).Of(Quantity::kTemperature).latched.raised, 0);
  EXPECT_EQ(ReadingsOf(r).Of(Quantity::kVoltage).latched.raised, 0);
}

TEST(CableReadings, ReadTheFlagsOfTheLanes) {
  // One bit of the word at a time: lane 1 in the top nibble, the high alarm in its top bit.
  const AlarmLevel bounds[] = {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                               AlarmLevel::kHighWarning, AlarmLevel::kLowWarning};
  for (int bit = 0; bit < 16; ++bit) {
    CableRecord r = Optic();
    r.RxPowerAlarms = static_cast<std::uint16_t>(0x8000 >> bit);
    r.TxBiasAlarms = static_cast<std::uint16_t>(0x8000 >> ((bit + 1) % 16));
    r.TxPowerAlarms = static_cast<std::uint16_t>(0x8000 >> ((bit + 2) % 16));
    const Readings port = ReadingsOf(r);
    for (int at = 0; at < 16; ++at) {
      const int lane = at / 4 + 1;
      const AlarmLevel level = bounds[at % 4];
      EXPECT_EQ(port.Of(Quantity::kRxPower, lane).Latched(level), at == bit);
      EXPECT_EQ(port.Of(Quantity::kTxBias, lane).Latched(level), at == (bit + 1) % 16);
      EXPECT_EQ(port.Of(Quantity::kTxPower, lane).Latched(level), at == (bit + 2) % 16);
    }
    EXPECT_EQ(port.Of(Quantity::kRxPower, 5).Latched(AlarmLevel::kHighAlarm), std::nullopt);
  }
}

TEST(CableReadings, ReadLossAndFaultOfTheLanes) {
  for (int lane = 1; lane <= 4; ++lane) {
    CableRecord r = Optic();
    r.LatchedCdrLos = static_cast<std::uint8_t>(1 << (lane - 1));
    r.LatchedCdrLol = static_cast<std::uint8_t>(0x10 << (lane - 1));
    r.LatchedAdaptiveEqFault = static_cast<std::uint8_t>(0x10 << (lane - 1));
    Readings port = ReadingsOf(r);
    for (int other = 1; other <= 4; ++other) {
      EXPECT_EQ(port.Of(LaneFlag::kRxLos).Get(other), other == lane);
      EXPECT_EQ(port.Of(LaneFlag::kTxLos).Get(other), false);
      EXPECT_EQ(port.Of(LaneFlag::kTxLol).Get(other), other == lane);
      EXPECT_EQ(port.Of(LaneFlag::kRxLol).Get(other), false);
      EXPECT_EQ(port.Of(LaneFlag::kAdaptiveEqFault).Get(other), other == lane);
      EXPECT_EQ(port.Of(LaneFlag::kTxFault).Get(other), false);
    }
    r.LatchedCdrLos = static_cast<std::uint8_t>(r.LatchedCdrLos << 4);
    r.LatchedCdrLol = static_cast<std::uint8_t>(r.LatchedCdrLol >> 4);
    r.LatchedAdaptiveEqFault = static_cast<std::uint8_t>(r.LatchedAdaptiveEqFault >> 4);
    port = ReadingsOf(r);
    EXPECT_EQ(port.Of(LaneFlag::kTxLos).raised, 1 << (lane - 1));
    EXPECT_EQ(port.Of(LaneFlag::kRxLos).raised, 0);
    EXPECT_EQ(port.Of(LaneFlag::kRxLol).raised, 1 << (lane - 1));
    EXPECT_EQ(port.Of(LaneFlag::kTxLol).raised, 0);
    EXPECT_EQ(port.Of(LaneFlag::kTxFault).raised, 1 << (lane - 1));
    EXPECT_EQ(port.Of(LaneFlag::kAdaptiveEqFault).raised, 0);
    EXPECT_EQ(port.Of(LaneFlag::kRxLos).Get(5), std::nullopt);
  }
}

TEST(CableReadings, GiveTheControlsByLane) {
  const Controls controls = ReadingsOf(Optic()).controls;
  EXPECT_EQ(controls.tx_cdr.raised, 0b1000) << "bit 7 is TX4";
  EXPECT_EQ(controls.rx_cdr.raised, 0b0001) << "bit 0 is RX1";
  EXPECT_EQ(controls.rx_output_disable.raised, 0b0010);
  EXPECT_EQ(controls.tx_adaptive_eq.raised, 0b0001);
  EXPECT_EQ(controls.tx_adaptive_eq_freeze.raised, 0b0001) << "bit 3 is TX1";
  EXPECT_EQ(controls.tx_input_eq[0], 1);
  EXPECT_EQ(controls.tx_input_eq[3], 4);
  EXPECT_EQ(controls.rx_amplitude[1], 6);
  EXPECT_EQ(controls.rx_emphasis[2], 0xB);
  EXPECT_EQ(controls.rx_emphasis[4], std::nullopt);
  EXPECT_EQ(controls.rx_pre_cursor[0], std::nullopt);
  EXPECT_EQ(controls.rx_post_cursor[0], std::nullopt);
}

TEST(CableReadings, GiveTheStateOfPresentCdrs) {
  CableRecord r = Optic();
  r.CdrPresence = 2;
  EXPECT_EQ(ReadingsOf(r).controls.tx_cdr.known, 0x0F);
  EXPECT_EQ(ReadingsOf(r).controls.rx_cdr.known, 0);
  r.CdrPresence = 1;
  EXPECT_EQ(ReadingsOf(r).controls.tx_cdr.known, 0);
  EXPECT_EQ(ReadingsOf(r).controls.rx_cdr.known, 0x0F);
  r.TransmitterTechnologyCode = 10;
  EXPECT_EQ(ReadingsOf(r).controls.rx_cdr.known, 0);
  EXPECT_EQ(ReadingsOf(r).controls.tx_input_eq[0], std::nullopt);
}

TEST(CableReadings, GiveTheAttenuationOfCopper) {
  CableRecord r;
  for (int i = 0; i < 4; ++i) r.Attenuation[i] = static_cast<std::uint8_t>(3 * i);
  EXPECT_EQ(ReadingsOf(r).attenuation.at_5, std::nullopt);
  r.TransmitterTechnologyCode = 10;
  const Attenuation attenuation = ReadingsOf(r).attenuation;
  EXPECT_EQ(attenuation.at_2p5, std::nullopt) << "0 is not given";
  EXPECT_EQ(attenuation.at_5, 3);
  EXPECT_EQ(attenuation.at_7, 6);
  EXPECT_EQ(attenuation.at_12p9, 9);
  EXPECT_EQ(attenuation.at_25p8, std::nullopt);
}

TEST(CableReadings, AreEmptyWhenTheQueryFailed) {
  CableRecord r = Optic();
  r.QueryStatus = 3;
  r.LatchedCdrLos = 0xFF;
  r.PrtlLengthText = "5 m";
  const Readings port = ReadingsOf(r);
  EXPECT_TRUE(port.has_data);
  EXPECT_EQ(port.query_status, 3);
  EXPECT_EQ(port.identity.part_number, "");
  EXPECT_EQ(port.identifier.has_value(), false);
  EXPECT_EQ(port.lengths.measured, 5.0F);
  for (const Reading& reading : port) EXPECT_EQ(reading.state, FieldState::kNotRead);
  EXPECT_EQ(port.Of(LaneFlag::kRxLos).known, 0);
}

// ---------------------------------------------------------------------------------------------
// The PHY's registers
// ---------------------------------------------------------------------------------------------

TEST(PhyReadings, IdentifyTheModule) {
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, PhyOptic()));
  EXPECT_TRUE(port.has_data);
  EXPECT_EQ(port.source, "PHY");
  EXPECT_EQ(port.query_status, std::nullopt);
  EXPECT_EQ(port.identity.vendor, "Acme");
  EXPECT_EQ(port.identity.oui, "001b21");
  EXPECT_EQ(port.identity.part_number, "AO,800");
  EXPECT_EQ(port.identity.revision, "B2");
  EXPECT_EQ(port.identity.serial_number, "SN1");
  EXPECT_EQ(port.identity.date_code, "240409");
  EXPECT_EQ(port.identity.firmware, "26.11.291");
  EXPECT_EQ(port.identity.lot, 0x4142);
  EXPECT_EQ(port.speeds, 0x60);
  EXPECT_EQ(port.nominal_bitrate_gbps, 53.0F);
  EXPECT_EQ(port.power_class, 8);
  EXPECT_EQ(port.max_power_w, 15.0F);
  EXPECT_EQ(port.rx_power_is_average, false);
  EXPECT_EQ(port.cdr_vendor, 2);
  EXPECT_EQ(port.medium, Medium::kOptical);
  EXPECT_EQ(port.identifier->code, 8);
  EXPECT_EQ(port.identifier->name, "OSFP");
  EXPECT_EQ(port.connector->code, 0x28);
  EXPECT_EQ(port.connector->name, "MPO 1x16");
  EXPECT_EQ(port.technology->code, 6);
  EXPECT_EQ(port.technology->name, "1310 nm EML");
}

TEST(PhyReadings, ConvertThresholdsToTheUnitOfTheirValue) {
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, PhyOptic()));
  ExpectThresholds(port.Of(Quantity::kTemperature), 75.0F, -5.0F, {}, {});
  ExpectThresholds(port.Of(Quantity::kVoltage), 3.63F, 2.97F, {}, {});
  ExpectThresholds(port.Of(Quantity::kRxPower, 8), 4.6774F, 0.05F, {}, {});
  ExpectThresholds(port.Of(Quantity::kTxPower, 1), 3.4674F, 0.1F, {}, {});
  ExpectThresholds(port.Of(Quantity::kTxBias, 5), 12.0F, 3.0F, {}, {});
  EXPECT_EQ(port.Of(Quantity::kTemperature).value, 33.0F);
  EXPECT_EQ(port.Of(Quantity::kVoltage).value, 3.287F);
}

TEST(PhyReadings, GiveTheLanesInOrder) {
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, PhyOptic()));
  const float tenths_of_milliwatts[] = {2, 1, 4, 3,
                                        6, 5, 8, 7};  // in memory: lanes 2, 1, 4, 3, ...
  for (int lane = 1; lane <= 8; ++lane) {
    const float expected = tenths_of_milliwatts[lane - 1];
    EXPECT_FLOAT_EQ(port.Of(Quantity::kRxPower, lane).value, expected / 10);
    EXPECT_FLOAT_EQ(port.Of(Quantity::kTxPower, lane).value, expected / 5);
    EXPECT_FLOAT_EQ(port.Of(Quantity::kTxBias, lane).value, expected);
  }
}

TEST(PhyReadings, ReadPowersAsDbmWithoutTheUnitFlag) {
  ModuleRecord m = PhyOptic();
  m.power_unit_flag = 0;
  for (std::uint16_t& power : m.rx_power) power = 10;
  m.rx_power[0] = 0;  // lane 2
  m.rx_power[3] = 3;  // lane 3
  m.rx_power_low_threshold = 20;
  m.rx_power_high_threshold = 40;
  m.tx_power_high_threshold = 41;
  m.tx_power_low_threshold = 0;
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, m));
  EXPECT_FLOAT_EQ(port.Of(Quantity::kRxPower, 1).value, 10.0F);
  EXPECT_EQ(port.Of(Quantity::kRxPower, 2).state, FieldState::kNotRead) << "0 dBm is no value";
  EXPECT_FLOAT_EQ(port.Of(Quantity::kRxPower, 3).value, 1.9952623F);
  ExpectThresholds(port.Of(Quantity::kRxPower, 1), 10000.0F, 100.0F, {}, {});
  ExpectThresholds(port.Of(Quantity::kTxPower, 1), {}, {}, {}, {});
}

TEST(PhyReadings, OmitPowersOutOfRange) {
  ModuleRecord m = PhyOptic();
  m.power_unit_flag = 0;
  for (std::uint16_t& power : m.rx_power) power = 65535;
  PhyCableRecord phy;
  EXPECT_EQ(ReadingsOf(Fill(phy, m)).Of(Quantity::kRxPower, 1).state, FieldState::kNotRead);
}

TEST(PhyReadings, HaveNoThresholdsIfBothAreZero) {
  ModuleRecord m = PhyOptic();
  m.temp_high_threshold = m.temp_low_threshold = 0;
  m.voltage_high_threshold = m.voltage_low_threshold = 0;
  m.rx_power_high_threshold = m.rx_power_low_threshold = 0;
  m.tx_power_high_threshold = 0;
  m.tx_bias_high_threshold = m.tx_bias_low_threshold = 0;
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, m));
  ExpectThresholds(port.Of(Quantity::kTemperature), {}, {}, {}, {});
  ExpectThresholds(port.Of(Quantity::kVoltage), {}, {}, {}, {});
  ExpectThresholds(port.Of(Quantity::kRxPower, 1), {}, {}, {}, {});
  ExpectThresholds(port.Of(Quantity::kTxPower, 1), 0.0F, 0.1F, {}, {});
  ExpectThresholds(port.Of(Quantity::kTxBias, 1), {}, {}, {}, {});
}

TEST(PhyReadings, OfferTheLanesOfTheFormFactor) {
  const int lanes[] = {4, 4, 1, 1, 4, 2, 8, 4, 8, 8, 2, 4, 8};
  for (std::uint8_t identifier = 0; identifier < 13; ++identifier) {
    ModuleRecord m = PhyOptic();
    m.cable_identifier = identifier;
    m.cable_technology = 0;
    PhyCableRecord phy;
    const Readings port = ReadingsOf(Fill(phy, m));
    EXPECT_EQ(port.lanes, lanes[identifier]) << int{identifier};
    EXPECT_EQ(port.lanes_in_use, (1 << lanes[identifier]) - 1);
    for (int lane = 1; lane <= 8; ++lane) {
      EXPECT_EQ(port.Of(Quantity::kTxBias, lane).IsPresent(), lane <= lanes[identifier]);
    }
  }
}

TEST(PhyReadings, DeriveTheMediumFromTheTechnology) {
  const auto medium = [](std::uint8_t identifier, std::uint8_t technology) {
    ModuleRecord m = PhyOptic();
    m.cable_identifier = identifier;
    m.cable_technology = technology;
    PhyCableRecord phy;
    return ReadingsOf(Fill(phy, m)).medium;
  };
  EXPECT_EQ(medium(0, 0x90), Medium::kOptical);
  EXPECT_EQ(medium(0, 0xA0), Medium::kPassiveCopper);
  EXPECT_EQ(medium(0, 0xB0), Medium::kPassiveCopper);
  EXPECT_EQ(medium(0, 0xC0), Medium::kActiveCopper);
  EXPECT_EQ(medium(0, 0xFF), Medium::kActiveCopper);
  EXPECT_EQ(medium(8, 0x09), Medium::kOptical);
  EXPECT_EQ(medium(8, 0x0A), Medium::kPassiveCopper);
  EXPECT_EQ(medium(8, 0x0B), Medium::kPassiveCopper);
  EXPECT_EQ(medium(8, 0x0C), Medium::kActiveCopper);
  EXPECT_EQ(medium(8, 0x10), Medium::kOptical) << "a tunable laser";
  EXPECT_EQ(medium(8, 0x12), Medium::kActiveCopper) << "linear equalizers at both ends";
  EXPECT_EQ(medium(8, 0xA1), Medium::kPassiveCopper) << "as its record has it";
}

TEST(PhyReadings, GiveLengthsInMetres) {
  ModuleRecord m = PhyOptic();
  m.cable_identifier = 0;
  m.smf_length = 0x0105;
  m.length_om5 = 1;
  m.length_om4 = 2;
  m.length_om3 = 3;
  m.length_om2 = 4;
  m.length_om1 = 5;
  m.cable_length = 7;
  PhyCableRecord qsfp;
  Lengths lengths = ReadingsOf(Fill(qsfp, m)).lengths;
  EXPECT_EQ(lengths.smf, 500.0F);
  EXPECT_EQ(lengths.om5, 2.0F);
  EXPECT_EQ(lengths.om4, 4.0F);
  EXPECT_EQ(lengths.om3, 6.0F);
  EXPECT_EQ(lengths.om2, 4.0F);
  EXPECT_EQ(lengths.om1, 50.0F);
  EXPECT_EQ(lengths.cable, std::nullopt) << "a module with a connector is no cable";
  m.cable_identifier = 2;
  m.smf_length = 3;
  PhyCableRecord sfp;
  lengths = ReadingsOf(Fill(sfp, m)).lengths;
  EXPECT_EQ(lengths.smf, 3000.0F);
  EXPECT_EQ(lengths.om5, 2.0F);
  EXPECT_EQ(lengths.om4, 20.0F);
  EXPECT_EQ(lengths.om3, 30.0F);
  EXPECT_EQ(lengths.om2, 40.0F);
  EXPECT_EQ(lengths.om1, 50.0F);
  m.smf_length = 0x0205;
  PhyCableRecord other;
  EXPECT_EQ(ReadingsOf(Fill(other, m)).lengths.smf, std::nullopt);
}

TEST(PhyReadings, GiveTheLengthOfACable) {
  const auto length = [](std::uint8_t identifier, std::uint8_t raw) {
    ModuleRecord m = PhyOptic();
    m.cable_identifier = identifier;
    m.connector_type = 0x23;
    m.cable_length = raw;
    PhyCableRecord phy;
    Fill(phy, m).prtl_length = "12 m";
    const Lengths lengths = ReadingsOf(phy).lengths;
    EXPECT_EQ(lengths.measured, 12.0F);
    return lengths.cable;
  };
  EXPECT_EQ(length(0, 0x85), 133.0F);
  EXPECT_EQ(length(0, 0), std::nullopt);
  EXPECT_EQ(length(8, 0x05), 0.5F);
  EXPECT_EQ(length(8, 0x45), 5.0F);
  EXPECT_EQ(length(8, 0x85), 50.0F);
  EXPECT_EQ(length(8, 0xC5), 500.0F);
  EXPECT_EQ(length(8, 0x40), std::nullopt);
}

TEST(PhyReadings, GiveTheControlsOfAllLanes) {
  PhyCableRecord phy;
  const Controls controls = ReadingsOf(Fill(phy, PhyOptic())).controls;
  EXPECT_EQ(controls.tx_cdr.known, 0xFF);
  EXPECT_EQ(controls.tx_cdr.raised, 0x0F);
  EXPECT_EQ(controls.rx_cdr.raised, 0xF0);
  EXPECT_EQ(controls.tx_input_eq[7], 3);
  EXPECT_EQ(controls.rx_amplitude[0], 2);
  EXPECT_EQ(controls.rx_pre_cursor[3], 1);
  EXPECT_EQ(controls.rx_post_cursor[3], 4);
  EXPECT_EQ(controls.rx_emphasis[0], std::nullopt);
  EXPECT_EQ(controls.rx_output_disable.known, 0);
}

TEST(PhyReadings, GiveTheAttenuationOfCopper) {
  ModuleRecord m = PhyOptic();
  m.cable_identifier = 0;
  m.cable_technology = 0xA0;
  for (int i = 0; i < 4; ++i) m.attenuation[i] = static_cast<std::uint8_t>(5 + i);
  PhyCableRecord phy;
  const Attenuation attenuation = ReadingsOf(Fill(phy, m)).attenuation;
  EXPECT_EQ(attenuation.at_2p5, std::nullopt);
  EXPECT_EQ(attenuation.at_5, 5);
  EXPECT_EQ(attenuation.at_7, 6);
  EXPECT_EQ(attenuation.at_12p9, 7);
  EXPECT_EQ(attenuation.at_25p8, 8);
}

TEST(PhyReadings, ReadTheFlagsOfTheModule) {
  const AlarmLevel bounds[] = {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                               AlarmLevel::kHighWarning, AlarmLevel::kLowWarning};
  for (int i = 0; i < 4; ++i) {
    LatchedFlagsPage page;
    page.latched_temperature_flags = static_cast<std::uint8_t>(1 << i);
    page.latched_voltage_flags = static_cast<std::uint8_t>(8 >> i);
    PhyCableRecord phy;
    const Readings port = ReadingsOf(Fill(Fill(phy, PhyOptic()), page));
    for (int other = 0; other < 4; ++other) {
      EXPECT_EQ(port.Of(Quantity::kTemperature).Latched(bounds[other]), other == i);
      EXPECT_EQ(port.Of(Quantity::kVoltage).Latched(bounds[other]), other == 3 - i);
    }
  }
}

TEST(PhyReadings, ReadTheFlagsOfAllEightLanes) {
  struct Mask {
    std::uint8_t LatchedFlagsPage::*byte;
    Quantity quantity;
    AlarmLevel level;
  };
  const Mask masks[] = {
      {&LatchedFlagsPage::latched_tx_power_low_warning, Quantity::kTxPower,
       AlarmLevel::kLowWarning},
      {&LatchedFlagsPage::latched_tx_power_high_warning, Quantity::kTxPower,
       AlarmLevel::kHighWarning},
      {&LatchedFlagsPage::latched_tx_power_low_alarm, Quantity::kTxPower, AlarmLevel::kLowAlarm},
      {&LatchedFlagsPage::latched_tx_power_high_alarm, Quantity::kTxPower, AlarmLevel::kHighAlarm},
      {&LatchedFlagsPage::latched_tx_bias_low_warning, Quantity::kTxBias, AlarmLevel::kLowWarning},
      {&LatchedFlagsPage::latched_tx_bias_high_warning, Quantity::kTxBias,
       AlarmLevel::kHighWarning},
      {&LatchedFlagsPage::latched_tx_bias_low_alarm, Quantity::kTxBias, AlarmLevel::kLowAlarm},
      {&LatchedFlagsPage::latched_tx_bias_high_alarm, Quantity::kTxBias, AlarmLevel::kHighAlarm},
      {&LatchedFlagsPage::latched_rx_power_low_warning, Quantity::kRxPower,
       AlarmLevel::kLowWarning},
      {&LatchedFlagsPage::latched_rx_power_high_warning, Quantity::kRxPower,
       AlarmLevel::kHighWarning},
      {&LatchedFlagsPage::latched_rx_power_low_alarm, Quantity::kRxPower, AlarmLevel::kLowAlarm},
      {&LatchedFlagsPage::latched_rx_power_high_alarm, Quantity::kRxPower, AlarmLevel::kHighAlarm},
  };
  for (const Mask& mask : masks) {
    for (int lane = 1; lane <= 8; ++lane) {
      LatchedFlagsPage page;
      page.*mask.byte = static_cast<std::uint8_t>(1 << (lane - 1));
      PhyCableRecord phy;
      const Readings port = ReadingsOf(Fill(Fill(phy, PhyOptic()), page));
      for (const Reading& reading : port) {
        for (const AlarmLevel level : kAllAlarmLevels) {
          const bool is_it =
              reading.quantity == mask.quantity && reading.lane == lane && level == mask.level;
          EXPECT_EQ(reading.Latched(level), is_it);
        }
      }
    }
  }
}

TEST(PhyReadings, ReadLossAndFaultOfAllEightLanes) {
  LatchedFlagsPage page;
  page.latched_rx_los = 0x81;
  page.latched_tx_los = 0x42;
  page.latched_rx_cdr_lol = 0x24;
  page.latched_tx_cdr_lol = 0x18;
  page.latched_tx_adaptive_eq_fault = 0xC3;
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(Fill(phy, PhyOptic()), page));
  EXPECT_EQ(port.Of(LaneFlag::kRxLos).raised, 0x81);
  EXPECT_EQ(port.Of(LaneFlag::kTxLos).raised, 0x42);
  EXPECT_EQ(port.Of(LaneFlag::kRxLol).raised, 0x24);
  EXPECT_EQ(port.Of(LaneFlag::kTxLol).raised, 0x18);
  EXPECT_EQ(port.Of(LaneFlag::kAdaptiveEqFault).raised, 0xC3);
  EXPECT_EQ(port.Of(LaneFlag::kRxLos).Get(8), true);
  EXPECT_EQ(port.Of(LaneFlag::kTxFault).Get(1), std::nullopt) << "the page has no such flag";
}

TEST(PhyReadings, HaveNoFlagsWithoutTheirPage) {
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, PhyOptic()));
  for (const Reading& reading : port) EXPECT_EQ(reading.latched.known, 0);
  for (const LaneFlag flag : kAllLaneFlags) EXPECT_EQ(port.Of(flag).known, 0);
}

TEST(PhyReadings, GiveFlagsWithoutAModule) {
  LatchedFlagsPage page;
  page.latched_rx_los = 0x80;
  page.latched_temperature_flags = 1;
  PhyCableRecord phy;
  const Readings port = ReadingsOf(Fill(phy, page));
  EXPECT_TRUE(port.has_data);
  EXPECT_EQ(port.medium, Medium::kUnknown);
  EXPECT_EQ(port.lanes, 8);
  EXPECT_EQ(port.lanes_in_use, 0xFF);
  EXPECT_EQ(port.Of(LaneFlag::kRxLos).Get(8), true);
  EXPECT_EQ(port.Of(Quantity::kTemperature).Latched(AlarmLevel::kHighAlarm), true);
  EXPECT_EQ(port.Of(Quantity::kTemperature).state, FieldState::kNotRead);
}

TEST(PhyReadings, AreEmptyWithoutRegisters) {
  PhyCableRecord phy;
  phy.source = "PHY";
  phy.prtl_length = "12 m";
  const Readings port = ReadingsOf(phy);
  EXPECT_FALSE(port.has_data);
  EXPECT_EQ(port.lengths.measured, 12.0F);
}

// ---------------------------------------------------------------------------------------------
// The port
// ---------------------------------------------------------------------------------------------

TEST(PortReadings, AreThoseOfTheRecordInUse) {
  CombinedCableInfo cable;
  EXPECT_FALSE(ReadingsOf(cable).has_data);
  EXPECT_EQ(ReadingsOf(cable).source, "");
  auto phy = std::make_unique<PhyCableRecord>();
  Fill(*phy, PhyOptic());
  cable.AttachPhyCableRecord(std::move(phy));
  EXPECT_EQ(ReadingsOf(cable).source, "PHY");
  cable.AttachCableRecord(std::make_unique<CableRecord>(Optic()));
  EXPECT_EQ(ReadingsOf(cable).source, "CABLE");
}

TEST(Reading, GivesDbmIfThereIsLight) {
  Reading reading;
  reading.quantity = Quantity::kRxPower;
  reading.state = FieldState::kPresent;
  reading.value = 2.0F;
  EXPECT_NEAR(*reading.Dbm(), 3.0103, 0.0001);
  reading.value = 0.0F;
  EXPECT_EQ(reading.Dbm(), std::nullopt);
  reading.value = 1.0F;
  reading.state = FieldState::kNotRead;
  EXPECT_EQ(reading.Dbm(), std::nullopt);
  reading.state = FieldState::kPresent;
  reading.quantity = Quantity::kTxBias;
  EXPECT_EQ(reading.Dbm(), std::nullopt);
}

TEST(Reading, NamesItsParts) {
  EXPECT_EQ(QuantityName(Quantity::kTemperature), "temperature");
  EXPECT_EQ(QuantityName(Quantity::kTxBias), "tx_bias");
  EXPECT_EQ(QuantityUnit(Quantity::kVoltage), "V");
  EXPECT_EQ(QuantityUnit(Quantity::kTxPower), "mW");
  EXPECT_EQ(AlarmLevelName(AlarmLevel::kLowWarning), "low_warning");
  EXPECT_EQ(MediumName(Medium::kActiveCopper), "active_copper");
  EXPECT_EQ(MediumName(Medium::kOptical), "optical");
  EXPECT_EQ(MediumName(Medium::kPassiveCopper), "passive_copper");
  EXPECT_EQ(MediumName(Medium::kUnknown), "");
}

}  // namespace
}  // namespace cable_info
