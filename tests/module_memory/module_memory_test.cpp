#include "cable_info/module_memory/module_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "cable_info/combined_cable_info.h"
#include "module_images.h"

namespace {

using cable_info::CableRecord;
using cable_info::ModuleFamily;
using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::PhyCableRecord;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::ChecksumPolicy;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::ReadModule;
using cable_info::module_memory::ReportChecksums;
using module_images::ImageBuilder;
using module_images::Place;
namespace cmis = module_images::cmis;
namespace qsfp = module_images::qsfp;
namespace sfp = module_images::sfp;

using Texts = std::vector<std::string>;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;
using ModuleRecord = PhyCableRecord::ModuleRecord;

// Remarks except those on values for which a record has no field.
Texts RemarksBesidePlaces(const ModuleReading& reading) {
  Texts others;
  for (const std::string& remark : reading.remarks) {
    const bool is_on_place = remark.find("rows and reports") != std::string::npos ||
                             remark.find("reserved code") != std::string::npos;
    if (!is_on_place) others.push_back(remark);
  }
  return others;
}

// The record of a module whose memory gives no cause for other remarks.
CableRecord Cable(const ImageBuilder& memory) {
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.mismatches, Texts());
  EXPECT_EQ(RemarksBesidePlaces(reading), Texts());
  EXPECT_EQ(reading.phy, nullptr);
  return *reading.cable;
}

std::unique_ptr<PhyCableRecord> Phy(const DumpBytes& image) {
  ModuleReading reading = ReadModule(image);
  EXPECT_EQ(reading.mismatches, Texts());
  EXPECT_EQ(RemarksBesidePlaces(reading), Texts());
  EXPECT_EQ(reading.cable, nullptr);
  EXPECT_EQ(reading.phy->source, "MODULE");
  return std::move(reading.phy);
}

std::unique_ptr<PhyCableRecord> Phy(const ImageBuilder& memory) { return Phy(memory.Image()); }

std::string Problem(const DumpBytes& image) {
  try {
    ReadModule(image);
  } catch (const BadModule& bad) {
    return bad.what();
  }
  return "";
}

template <typename T, std::size_t N>
std::vector<T> Values(const T (&values)[N]) {
  return {std::begin(values), std::end(values)};
}

// ---------------------------------------------------------------------------------------------
// SFF-8636
// ---------------------------------------------------------------------------------------------

TEST(Sff8636, FillsTheFieldsOfTheLowerPage) {
  const CableRecord r = Cable(qsfp::Optic());
  EXPECT_EQ(r.Identifier, 0x11);
  EXPECT_EQ(r.LatchedCdrLos, 0x21);
  EXPECT_EQ(r.LatchedAdaptiveEqFault, 0x43);
  EXPECT_EQ(r.LatchedCdrLol, 0x84);
  EXPECT_EQ(r.LatchedTemperatureAlarms, 0xA1);
  EXPECT_EQ(r.LatchedVoltageAlarms, 0x50);
  EXPECT_EQ(r.RxPowerAlarms, 0x8421);
  EXPECT_EQ(r.TxBiasAlarms, 0x1248);
  EXPECT_EQ(r.TxPowerAlarms, 0xC003);
  EXPECT_EQ(r.GetTemperatureStr(), "26C");
  EXPECT_EQ(r.SupplyVoltage, 32989);
  EXPECT_EQ(Values(r.RxPower), (std::vector<float>{0.4643F, 0.9012F, 0.0F, 6.5535F}));
  EXPECT_EQ(Values(r.TxBias), (std::vector<float>{10.28F, 8.738F, 17.476F, 26.214F}));
  EXPECT_EQ(Values(r.TxPower), (std::vector<float>{1.6705F, 1.6962F, 1.7219F, 1.7476F}));
  EXPECT_EQ(r.CdrControl, 0xF3);
}

TEST(Sff8636, FillsTheFieldsOfPage00) {
  const CableRecord r = Cable(qsfp::Optic());
  EXPECT_EQ(r.PowerClass, 6);
  EXPECT_EQ(r.CdrPresence, 2);  // TX only
  EXPECT_EQ(r.Connector, 0x0C);
  EXPECT_EQ(r.NominalBitrate, 25);
  EXPECT_EQ(r.LengthSmf, 0);
  EXPECT_EQ(r.LengthOm3, 35);
  EXPECT_EQ(r.LengthCopperOrActive, 50);
  EXPECT_EQ(r.LengthText, "100 m");
  EXPECT_EQ(r.TransmitterTechnologyRaw, 0x06);
  EXPECT_EQ(r.TransmitterTechnologyCode, 0);
  EXPECT_EQ(r.VendorName, "Acme Optics");
  EXPECT_EQ(r.ConvertSupportedSpeedToStr(), "SDR/DDR/QDR/FDR/EDR");
  EXPECT_EQ(r.Oui, "0x5a1");
  EXPECT_EQ(r.PartNumber, "AO-Q28-SR4");
  EXPECT_EQ(r.Revision, "A1");
  EXPECT_EQ(Values(r.Attenuation), (std::vector<std::uint8_t>{0, 0, 0, 0}));
  EXPECT_EQ(r.ExtSpecCompliance, 2);
  EXPECT_EQ(r.SerialNumber, "KS2408VS01234");
  EXPECT_EQ(r.DateCodeText, "240315");
  EXPECT_EQ(r.Lot, 0x4C37);
  EXPECT_TRUE(r.RxPowerIsAverage);
}

TEST(Sff8636, FillsTheFieldsOfPage03) {
  const CableRecord r = Cable(qsfp::Optic());
  EXPECT_EQ(r.TempHighAlarmThresh, 0x4B00);
  EXPECT_EQ(r.TempLowAlarmThresh, 0xFB00);
  EXPECT_EQ(r.TempHighWarnThresh, 0x4600);
  EXPECT_EQ(r.TempLowWarnThresh, 0x0000);
  EXPECT_EQ(r.VoltHighAlarmThresh, 36300);
  EXPECT_EQ(r.VoltLowAlarmThresh, 29700);
  EXPECT_EQ(r.VoltHighWarnThresh, 34650);
  EXPECT_EQ(r.VoltLowWarnThresh, 31350);
  EXPECT_EQ(r.TxAdaptiveEqFreeze, 0x08);
  EXPECT_EQ(r.InputEq, 0x1234);
  EXPECT_EQ(r.OutputEmp, 0x5678);
  EXPECT_EQ(r.OutputAmp, 0x9ABC);
  EXPECT_EQ(r.RxOutputDisableTxAdaptiveEq, 0x5A);
}

TEST(Sff8636, FindsPage03AfterTwoOtherPages) {
  DumpBytes image = qsfp::Optic().Image();
  image.insert(image.begin() + 256, 256, 0x77);
  const ModuleReading reading = ReadModule(image);
  EXPECT_EQ(reading.cable->TempHighAlarmThresh, 0x4B00);
  EXPECT_EQ(reading.cable->InputEq, 0x1234);
}

TEST(Sff8636, ReadsFourAttenuationsOfCopper) {
  const CableRecord r = Cable(qsfp::Copper());
  EXPECT_EQ(Values(r.Attenuation), (std::vector<std::uint8_t>{7, 11, 13, 19}));
  EXPECT_EQ(r.ConvertAttenuationToStr(false), "7 11 13 19");
  EXPECT_EQ(r.LengthText, "3 m");
  EXPECT_EQ(r.ConvertCableTypeToStr(), "Copper cable- unequalized");
  EXPECT_EQ(r.GetTemperatureStr(), "N/A");
}

TEST(Sff8636, ReadsTheExtendedRateOnlyIfTheNominalRateIs255) {
  ImageBuilder memory = qsfp::Copper();
  EXPECT_EQ(Cable(memory).NominalBitrate, 25);
  memory.Byte(qsfp::kRate, 103).Byte(qsfp::kExtendedRate, 200);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).NominalBitrate, 10);
  memory.Byte(qsfp::kRate, 254);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).NominalBitrate, 25);
}

TEST(Sff8636, DecodesEightPowerClasses) {
  const std::pair<unsigned, unsigned> kClasses[] = {
      {0x00, 1}, {0x40, 2}, {0x80, 3}, {0xC0, 4}, {0xC1, 5},
      {0xC2, 6}, {0xC3, 7}, {0x03, 7}, {0x20, 8}, {0xE3, 8},
  };
  for (const auto& [byte, power_class] : kClasses) {
    ImageBuilder memory = qsfp::Optic();
    memory.Byte(qsfp::kExtendedIdentifier, byte).Byte(qsfp::kMaximumPower, 60);
    EXPECT_EQ(Cable(qsfp::Sealed(memory)).PowerClass, power_class) << byte;
  }
}

TEST(Sff8636, TakesClass8OnlyWithAMaximumPower) {
  ImageBuilder memory = qsfp::Optic();
  memory.Byte(qsfp::kExtendedIdentifier, 0xE3).Byte(qsfp::kMaximumPower, 0);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).PowerClass, 7);
}

// ---------------------------------------------------------------------------------------------
// Values for which a record has no field
// ---------------------------------------------------------------------------------------------

Texts RemarksOf(const ImageBuilder& memory) { return ReadModule(memory.Image()).remarks; }

TEST(ModuleRemarks, ReportTheMaximumPowerOfClass8) {
  ImageBuilder memory = qsfp::Optic();
  memory.Byte(qsfp::kExtendedIdentifier, 0x20).Byte(qsfp::kMaximumPower, 125);
  EXPECT_EQ(RemarksOf(qsfp::Sealed(memory)),
            Texts{"the maximum power is 12.5 W, which rows and reports do not show"});
}

TEST(ModuleRemarks, ReportThatDataIsNotReady) {
  ImageBuilder memory = qsfp::Optic();
  memory.Byte(qsfp::kStatus, 0x01);
  EXPECT_EQ(RemarksOf(memory), Texts{"the module reports that its data is not ready"});
}

TEST(ModuleRemarks, ReportThatDataOfAnSfpIsNotReady) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kStatus, 0x01);
  EXPECT_EQ(RemarksOf(memory), Texts{"the module reports that its data is not ready"});
}

TEST(ModuleRemarks, ReportTheAttenuationOfCopperAt25Gigahertz) {
  ImageBuilder memory = qsfp::Copper();
  memory.Byte(qsfp::kLengthOm1, 21);
  const ModuleReading reading = ReadModule(qsfp::Sealed(memory).Image());
  EXPECT_EQ(reading.remarks,
            Texts{"the attenuation at 25.8 GHz is 21 dB, which rows and reports do not show"});
  EXPECT_EQ(reading.cable->LengthOm1, 0);
}

TEST(ModuleRemarks, ReportABiasAboveTheRangeOfTheRecord) {
  ImageBuilder memory = cmis::Blank(0x18, false);
  memory.Byte(cmis::kMonitors, 0x17);  // times 4
  memory.Words(cmis::kTxBias, {35275});
  const ModuleReading reading = ReadModule(cmis::Sealed(memory).Image());
  EXPECT_EQ(reading.remarks,
            Texts{"the TX bias of lane 1 is 282.2 mA; rows and reports show at most 131.07 mA"});
  EXPECT_EQ(reading.phy->module->tx_bias[1], 65535);
}

TEST(ModuleRemarks, ReportALongFibre) {
  ImageBuilder memory = cmis::Blank(0x18, false);
  memory.Byte(cmis::kLengthSmf, 0xBF);  // 63 times 10 km
  EXPECT_EQ(RemarksOf(cmis::Sealed(memory)),
            Texts{"the length of single-mode fibre is above 255 km, which rows and reports "
                  "cannot show"});
}

TEST(ModuleRemarks, ReportALengthWhoseMultiplierIsNotDefined) {
  ImageBuilder memory = cmis::Blank(0x18, false);
  memory.Byte(cmis::kLengthSmf, 0xC4);
  const ModuleReading reading = ReadModule(cmis::Sealed(memory).Image());
  EXPECT_EQ(reading.phy->module->ConvertCableLengthSMFiberToStr(), "N/A");
  EXPECT_EQ(
      reading.remarks,
      Texts{"multiplier 3 of the length of single-mode fibre is not defined before CMIS 5.3"});
}

TEST(ModuleRemarks, ReportTheAttenuationAt53GigahertzOfCmis) {
  ImageBuilder memory = cmis::Copper();
  memory.Byte(cmis::kRevisionOfCmis, 0x53).Byte({Page::k00, 208}, 21);
  EXPECT_EQ(RemarksOf(cmis::SealedFlat(memory)),
            Texts{"the attenuation at 53.1 GHz is 21 dB, which rows and reports do not show"});
  memory.Byte(cmis::kRevisionOfCmis, 0x52);  // the byte is reserved
  EXPECT_TRUE(RemarksOf(cmis::SealedFlat(memory)).empty());
}

TEST(ModuleRemarks, ReportASpeedThatTheRecordHasNoBitFor) {
  ImageBuilder memory = cmis::Blank(0x19, false);
  memory.Bytes(cmis::kApplications, {0xA0, 0, 0, 0, 0xA0, 0, 0, 0, 0x32, 0, 0, 0, 0xFF});
  const ModuleReading reading = ReadModule(cmis::Sealed(memory).Image());
  EXPECT_EQ(reading.phy->module->ib_compliance_code, 0x40);  // NDR
  EXPECT_EQ(reading.remarks,
            Texts{"the module supports InfiniBand XDR, which rows and reports do not show"});
}

TEST(ModuleRemarks, ReportFlagsOfTheHigherLanes) {
  ImageBuilder memory = cmis::Blank(0x18, false);
  memory.Bytes(cmis::kRxFlags, {0x90});  // loss of signal on lanes 5 and 8
  EXPECT_EQ(RemarksOf(cmis::Sealed(memory)),
            Texts{"flags are raised that rows and reports do not show: lane 5, 8"});
}

TEST(ModuleRemarks, ReportAReservedMultiplier) {
  ImageBuilder memory = cmis::Blank(0x18, false);
  memory.Byte(cmis::kMonitors, 0x18);
  EXPECT_EQ(RemarksOf(cmis::Sealed(memory)),
            Texts{"the multiplier of the bias currents has a reserved code; it is taken as 1"});
}

TEST(Cmis, CallsTunableLasersOthersAndLinearCopperLinearActive) {
  const std::pair<unsigned, unsigned> kTechnologies[] = {{15, 15}, {16, 8},  {17, 8},
                                                         {18, 15}, {20, 15}, {21, 8}};
  for (const auto& [code, stored] : kTechnologies) {
    ImageBuilder memory = cmis::Blank(0x18, false);
    memory.Byte(cmis::kTechnology, code);
    EXPECT_EQ(Phy(cmis::Sealed(memory))->module->cable_technology, stored) << code;
  }
}

TEST(Sff8472, TakesByte18OfBaseTAsMetresOfCopper) {
  ImageBuilder memory = sfp::Blank(false);
  memory.Byte({Page::kA0, 6}, 0x08).Byte(sfp::kConnector, 0x22);
  memory.Byte(sfp::kLengthOm4OrCable, 100);
  const auto record = Phy(sfp::SealedA0(memory));
  EXPECT_EQ(record->module->cable_length, 100);
  EXPECT_EQ(record->module->length_om4, 0);
  EXPECT_FALSE(record->IsOpticCable());
}

TEST(Sff8472, DecodesCopperPigtailAndBaseTModulesAsCables) {
  const std::pair<Place, unsigned> kModules[] = {
      {sfp::kConnector, 0x21},          {sfp::kConnector, 0x22},
      {sfp::kExtendedCompliance, 0x16}, {sfp::kExtendedCompliance, 0x1C},
      {sfp::kExtendedCompliance, 0x1D}, {sfp::kExtendedCompliance, 0x1E}};
  for (const auto& [place, value] : kModules) {
    ImageBuilder memory = sfp::Blank(false);
    memory.Byte(place, value).Byte(sfp::kLengthOm4OrCable, 30).Byte(sfp::kLengthOm3, 5);
    const auto record = Phy(sfp::SealedA0(memory));
    EXPECT_EQ(record->module->cable_length, 30) << value;
    EXPECT_EQ(record->LengthOmxToStr(4), "N/A") << value;
    EXPECT_EQ(record->LengthOmxToStr(3), "N/A") << value;
    EXPECT_FALSE(record->IsOpticCable()) << value;
  }
}

// The record of a module with readings at A2h shows none of them.
void ExpectNoDiagnostics(const ImageBuilder& memory) {
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(
      reading.remarks,
      Texts{"A2h was read, but the module states that it has no diagnostics; A2h is not used"});
  EXPECT_EQ(reading.phy->latched_flags, nullptr);
  const ModuleRecord& m = *reading.phy->module;
  EXPECT_EQ(reading.phy->GetTemperatureStr(), "N/A");
  EXPECT_EQ(m.voltage, 0);
  EXPECT_EQ(m.tx_bias[1], 0);
  EXPECT_EQ(m.tx_power[1], 0);
  EXPECT_EQ(m.rx_power[1], 0);
  EXPECT_EQ(m.voltage_high_threshold, 0);
  EXPECT_EQ(m.rx_power_high_threshold, 0);
  EXPECT_EQ(std::string(m.vendor_name), "Acme Optics");
}

// That of a passive cable or copper module shows those that are not optical.
void ExpectNoOptics(const ImageBuilder& memory) {
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.remarks, Texts());
  const ModuleRecord& m = *reading.phy->module;
  EXPECT_EQ(m.temperature, 0x228A);
  EXPECT_EQ(m.voltage, 32893);
  EXPECT_NE(m.voltage_high_threshold, 0);
  for (const unsigned word : {m.tx_bias[1], m.tx_bias_high_threshold, m.tx_bias_low_threshold,
                              m.tx_power[1], m.tx_power_high_threshold, m.tx_power_low_threshold,
                              m.rx_power[1], m.rx_power_high_threshold, m.rx_power_low_threshold}) {
    EXPECT_EQ(word, 0U);
  }
  const LatchedFlagsPage& flags = *reading.phy->latched_flags;
  EXPECT_EQ(flags.latched_temperature_flags, 0x0F);
  EXPECT_EQ(flags.latched_voltage_flags, 0x0F);
  for (const unsigned mask :
       {flags.latched_tx_bias_high_alarm, flags.latched_tx_power_low_alarm,
        flags.latched_rx_power_high_warning, flags.latched_rx_power_low_alarm}) {
    EXPECT_EQ(mask, 0U);
  }
  EXPECT_EQ(flags.latched_rx_los, 1);
}

TEST(Sff8472, HasNoOpticalDiagnosticsOfPassiveCablesAndCopperModules) {
  const std::pair<Place, unsigned> kModules[] = {{sfp::kCableBits, 0x04},
                                                 {{Page::kA0, 6}, 0x08},
                                                 {sfp::kConnector, 0x22},
                                                 {sfp::kExtendedCompliance, 0x1C}};
  for (const auto& [place, value] : kModules) {
    ImageBuilder memory = sfp::Optic();
    memory.Byte({Page::kA2, 110}, 0x02);  // RX LOS
    for (const std::size_t byte : {112U, 113U, 116U, 117U}) memory.Byte({Page::kA2, byte}, 0xFF);
    ExpectNoOptics(sfp::Sealed(memory.Byte(place, value)));
    ExpectNoDiagnostics(sfp::Sealed(memory.Byte(sfp::kDiagnostics, 0x00)));
  }
}

TEST(Sff8472, HasDiagnosticsOfActiveCablesThatStateThem) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kCableBits, 0x08);
  const auto record = Phy(sfp::Sealed(memory));
  EXPECT_EQ(record->module->voltage, 32893);
  EXPECT_NE(record->latched_flags, nullptr);
  ExpectNoDiagnostics(sfp::Sealed(memory.Byte(sfp::kDiagnostics, 0x00)));
}

TEST(Sff8472, HasDiagnosticsOfOpticsThatDoNotStateThem) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kDiagnostics, 0x00);
  EXPECT_EQ(Phy(sfp::Sealed(memory))->module->voltage, 32893);
}

TEST(Sff8472, HasNoDiagnosticsWhereA2IsAnAbbreviatedCopyOfA0) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte({Page::kA2, 0}, 0x03).Text({Page::kA2, 20}, 16, "Acme Optics");
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.phy->latched_flags, nullptr);
  EXPECT_EQ(reading.phy->GetTemperatureStr(), "N/A");
}

TEST(Sff8472, HasNoDiagnosticsWhereA2RepeatsA0) {
  ImageBuilder memory = sfp::Optic();
  DumpBytes image = memory.Image();
  std::copy_n(image.begin(), 256, image.begin() + 256);
  const ModuleReading reading = ReadModule(image);
  EXPECT_EQ(reading.phy->latched_flags, nullptr);
  EXPECT_EQ(reading.phy->module->voltage, 0);
}

TEST(Sff8472, KnowsPowerLevel4) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte({Page::kA0, 64}, 0x62);
  EXPECT_EQ(Phy(sfp::Sealed(memory))->module->power_class, 4);
}

TEST(ModuleMemory, DropsAPageThatRepeatsPage00) {
  DumpBytes image = cmis::Optic().Image();
  std::copy_n(image.begin() + 128, 128, image.begin() + 640);  // page 11h
  EXPECT_EQ(ReadModule(image).phy->module->rx_power[1], 0);
}

TEST(ModuleMemory, DropsPage03OfSff8636ThatRepeatsPage00) {
  DumpBytes image = qsfp::Optic().Image();
  std::copy_n(image.begin() + 128, 128, image.begin() + 256);
  const ModuleReading reading = ReadModule(image);
  EXPECT_EQ(reading.cable->GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(reading.cable->VoltHighAlarmThresh, 0);
  EXPECT_EQ(reading.cable->InputEq, 0);
}

TEST(Sff8636, GivesTheLengthOfTheBestFibre) {
  ImageBuilder memory = qsfp::Blank(0x0D, true);
  memory.Byte(qsfp::kTechnology, 0x40);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "NA");
  memory.Byte(qsfp::kLengthOm1, 33);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "33 m");
  memory.Byte(qsfp::kLengthOm2, 82);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "82 m");
  memory.Byte(qsfp::kLengthOm3, 150);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "300 m");
  memory.Byte(qsfp::kLengthCable, 200);  // OM4 of 850 nm VCSELs only
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "300 m");
  memory.Byte(qsfp::kTechnology, 0x00);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "400 m");
  memory.Byte(qsfp::kLengthSmf, 10);
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "10 km");
  memory.Byte(qsfp::kConnector, 0x23);  // an active optical cable
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).LengthText, "200 m");
}

TEST(Sff8636, ShowsNegativeTemperaturesAndTheLowestAsMissing) {
  ImageBuilder memory = qsfp::Optic();
  memory.Word(qsfp::kTemperature, 0xF680);
  EXPECT_EQ(Cable(memory).GetTemperatureStr(), "-10C");
  memory.Word(qsfp::kTemperature, 0x8000);
  EXPECT_EQ(Cable(memory).Temperature, 0x8000);  // -128 C, which no sensor reads
  EXPECT_EQ(Cable(memory).GetTemperatureStr(), "N/A");
}

TEST(Sff8636, ShowsFieldsThatFlatMemoryLacksAsMissing) {
  DumpBytes image = qsfp::Copper().Image();
  image.resize(384, 0x55);  // the module says that it has no page 03h
  const ModuleReading reading = ReadModule(image);
  EXPECT_EQ(reading.cable->GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(reading.cable->VoltHighAlarmThresh, 0);
  EXPECT_EQ(reading.cable->InputEq, 0);
}

TEST(Sff8636, ShowsFieldsThatAnImageLacksAsMissing) {
  const ModuleReading reading = ReadModule(qsfp::Optic().Image(256));
  const CableRecord& r = *reading.cable;
  EXPECT_EQ(RemarksBesidePlaces(reading), Texts());
  EXPECT_EQ(r.GetTemperatureStr(), "26C");
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(r.GetLowTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(r.ConvertTemperatureToStr(r.TempHighWarnThresh, false), "N/A");
  EXPECT_EQ(r.ConvertTemperatureToStr(r.TempLowWarnThresh, false), "N/A");
}

TEST(Sff8636, ShowsAllFieldsOfAMissingPage00AsMissing) {
  const ModuleReading reading = ReadModule(qsfp::Optic().Image(128));
  const CableRecord& r = *reading.cable;
  EXPECT_EQ(reading.remarks, Texts{"the image ends after byte 127; later bytes are missing"});
  EXPECT_EQ(r.GetTemperatureStr(), "26C");
  EXPECT_EQ(r.VendorName, "NA");
  EXPECT_EQ(r.Oui, "NA");
  EXPECT_EQ(r.GetPNVendor(), "");
  EXPECT_EQ(r.LengthText, "NA");
  EXPECT_EQ(r.DateCodeText, "N/A");
  EXPECT_EQ(r.ConvertCableTypeToStr(), "NA");
  EXPECT_EQ(r.ConvertSupportedSpeedToStr(), "NA");
  EXPECT_EQ(r.PowerClass, 0);
  EXPECT_FALSE(r.IsOpticCable());
}

TEST(Sff8636, KeepsTheCharactersOfATruncatedText) {
  const ModuleReading reading = ReadModule(qsfp::Optic().Image(148 + 4));
  EXPECT_EQ(reading.cable->VendorName, "Acme");
  EXPECT_EQ(reading.cable->PartNumber, "NA");
}

TEST(Sff8636, IgnoresHalfOfAWord) {
  const ModuleReading reading = ReadModule(qsfp::Optic().Image(23));
  EXPECT_EQ(reading.cable->LatchedCdrLos, 0x21);
  EXPECT_EQ(reading.cable->GetTemperatureStr(), "N/A");
}

TEST(Sff8636, ReplacesControlCharactersInTexts) {
  ImageBuilder memory = qsfp::Optic();
  memory.Text(qsfp::kVendor, 16, std::string_view("Ac\0me\xE9\n\x7F\0\0\0\0\0\0\0\0", 16));
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).VendorName, "Ac me\xE9??");
  memory.Text(qsfp::kDate, 6, "");
  EXPECT_EQ(Cable(qsfp::Sealed(memory)).DateCodeText, "N/A");
}

// ---------------------------------------------------------------------------------------------
// CMIS
// ---------------------------------------------------------------------------------------------

TEST(Cmis, FillsTheFieldsOfTheModule) {
  const auto phy = Phy(cmis::Optic());
  const ModuleRecord& m = *phy->module;
  EXPECT_EQ(m.cable_identifier, 6);
  EXPECT_EQ(m.power_unit_flag, 1);
  EXPECT_EQ(phy->GetTemperatureStr(), "45C");
  EXPECT_EQ(m.voltage, 32578);
  EXPECT_EQ(m.ConvertFWVersionToStr("none"), "2.10.0");
  EXPECT_EQ(m.ConvertIBComplianceCodeToStr("none"), "EDR/NDR");
  EXPECT_EQ(phy->VendorToStr(), "Acme Optics");
  EXPECT_EQ(m.vendor_oui, 0x9AADCAU);
  EXPECT_EQ(phy->VendorPnToStr(), "AO-DD-DR4");
  EXPECT_EQ(phy->RevisionToStr(), "2B");
  EXPECT_EQ(phy->VendorSnToStr(), "AO4711");
  EXPECT_EQ(m.ConvertDateCodeToStr("none"), "23-07-04");
  EXPECT_EQ(m.lot, 0x4C37);
  EXPECT_EQ(m.power_class, 6);
  EXPECT_EQ(m.ConvertMaxPowerToStr("none"), "9.5 W");
  EXPECT_EQ(m.connector_type, 0x0C);
  EXPECT_EQ(phy->TypeToStr(false), "1310 nm EML");
  EXPECT_EQ(m.ConvertCableLengthSMFiberToStr(), "5 km");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(5), "150 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(4), "100 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(3), "70 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(2), "82 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(1), "N/A");
  EXPECT_EQ(phy->RXPowerTypeToStr(), "Average Power");
  EXPECT_EQ(phy->CDREnableTxRXToStr(), "0xfe N/A");
  EXPECT_EQ(m.rx_cdr_state, 0x7F);
  EXPECT_EQ(m.tx_input_eq, 4);
  EXPECT_EQ(m.rx_output_pre_emp, 2);
  EXPECT_EQ(m.rx_output_post_emp, 1);
  EXPECT_EQ(m.rx_output_amp, 3);
}

TEST(Cmis, NamesEveryFormFactor) {
  const std::pair<unsigned, const char*> kNames[] = {
      {0x18, "QSFP-DD"}, {0x19, "OSFP"}, {0x1A, "SFP-DD"}, {0x1B, "DSFP"}, {0x1E, "QSFP_CMIS"},
  };
  for (const auto& [identifier, name] : kNames) {
    EXPECT_EQ(Phy(cmis::Optic(identifier))->module->ConvertCableIdentifierToStr(), name);
  }
}

TEST(Cmis, ShowsEveryLaneInItsPlace) {
  const auto phy = Phy(cmis::Optic());
  EXPECT_EQ(phy->TX1PowerToStr(true), "0.100");
  EXPECT_EQ(phy->TX8PowerToStr(true), "0.101");
  EXPECT_EQ(phy->RX1PowerToStr(true), "0.300");
  EXPECT_EQ(Values(phy->module->rx_power),
            (std::vector<std::uint16_t>{3002, 3001, 3004, 3003, 3006, 3005, 3008, 3007}));
  EXPECT_EQ(Values(phy->module->tx_power),
            (std::vector<std::uint16_t>{1002, 1001, 1004, 1003, 1006, 1005, 1008, 1007}));
}

TEST(Cmis, MultipliesBiasValuesAndThresholds) {
  for (const auto& [code, multiplier] : {std::pair{0U, 1}, {1U, 2}, {2U, 4}, {3U, 1}}) {
    ImageBuilder memory = cmis::Optic();
    memory.Byte(cmis::kMonitors, code << 3 | 0x07);
    memory.Words(cmis::kTxBias, {4500, 0, 0, 0, 0, 0, 0, 0xFFFF});
    memory.Words(cmis::kTxBiasThresholds, {7500, 500});
    const auto phy = Phy(cmis::Sealed(memory));
    EXPECT_EQ(phy->module->tx_bias[1], 4500 * multiplier) << code;  // lane 1
    EXPECT_EQ(phy->module->tx_bias[6], 0xFFFF) << code;             // cut to the field's range
    EXPECT_EQ(phy->module->tx_bias_high_threshold, 7500 * multiplier) << code;
    EXPECT_EQ(phy->module->tx_bias_low_threshold, 500 * multiplier) << code;
  }
}

TEST(Cmis, ReadsTheThresholdsInItsOwnOrder) {
  const auto phy = Phy(cmis::Optic());
  const ModuleRecord& m = *phy->module;
  EXPECT_EQ(m.temp_high_threshold, 0x4B00);
  EXPECT_EQ(m.temp_low_threshold, 0xFB00);
  EXPECT_EQ(m.voltage_high_threshold, 36300);
  EXPECT_EQ(m.voltage_low_threshold, 29700);
  EXPECT_EQ(m.tx_power_high_threshold, 46774);
  EXPECT_EQ(m.tx_power_low_threshold, 1905);
  EXPECT_EQ(m.tx_bias_high_threshold, 60000);
  EXPECT_EQ(m.tx_bias_low_threshold, 15000);
  EXPECT_EQ(m.rx_power_high_threshold, 35481);
  EXPECT_EQ(m.rx_power_low_threshold, 501);
}

TEST(Cmis, ReadsModuleFlagsFromTheLowestBitOn) {
  ImageBuilder memory = cmis::Optic();
  memory.Byte(cmis::kModuleFlags, 0x21);  // temperature high alarm, voltage low alarm
  const auto phy = Phy(memory);
  EXPECT_EQ(phy->latched_flags->latched_temperature_flags, 0x1);
  EXPECT_EQ(phy->latched_flags->latched_voltage_flags, 0x2);
  EXPECT_EQ(phy->GetTemperatureAlarms(), 1);
}

TEST(Cmis, ReadsLaneFlagsAsMasks) {
  const auto phy = Phy(cmis::Optic());
  const LatchedFlagsPage& f = *phy->latched_flags;
  EXPECT_EQ(f.latched_temperature_flags, 0xA);
  EXPECT_EQ(f.latched_voltage_flags, 0x5);
  EXPECT_EQ(f.latched_tx_los, 1);
  EXPECT_EQ(f.latched_tx_cdr_lol, 2);
  EXPECT_EQ(f.latched_tx_adaptive_eq_fault, 4);
  EXPECT_EQ(f.latched_tx_power_high_alarm, 8);
  EXPECT_EQ(f.latched_tx_power_low_alarm, 16);
  EXPECT_EQ(f.latched_tx_power_high_warning, 32);
  EXPECT_EQ(f.latched_tx_power_low_warning, 64);
  EXPECT_EQ(f.latched_tx_bias_high_alarm, 128);
  EXPECT_EQ(f.latched_tx_bias_low_alarm, 3);
  EXPECT_EQ(f.latched_tx_bias_high_warning, 5);
  EXPECT_EQ(f.latched_tx_bias_low_warning, 9);
  EXPECT_EQ(f.latched_rx_los, 17);
  EXPECT_EQ(f.latched_rx_cdr_lol, 33);
  EXPECT_EQ(f.latched_rx_power_high_alarm, 65);
  EXPECT_EQ(f.latched_rx_power_low_alarm, 129);
  EXPECT_EQ(f.latched_rx_power_high_warning, 6);
  EXPECT_EQ(f.latched_rx_power_low_warning, 10);
}

TEST(Cmis, HasTheSpeedsOfAllApplications) {
  constexpr unsigned kEdr = 0x10;  // bits of the record
  constexpr unsigned kNdr = 0x40;
  const Place kNinth = {Page::k01, 223};
  ImageBuilder memory = cmis::Blank(0x18, false);
  for (std::size_t i = 0; i < 8; ++i) memory.Byte({Page::kLower, 86 + 4 * i}, 0x11);  // Ethernet
  memory.Byte({Page::kLower, 86 + 28}, 0x30).Bytes(kNinth, {0x32, 0x1C, 0x84, 0x01, 0xFF});
  memory.Byte({Page::k01, 231}, 0x2C);  // after the end of the list
  EXPECT_EQ(Phy(cmis::Sealed(memory))->module->ib_compliance_code, kEdr | kNdr);

  memory.Byte({Page::kLower, 86 + 28}, 0xFF);  // ends the whole list
  EXPECT_EQ(Phy(cmis::Sealed(memory))->module->ib_compliance_code, 0);

  memory.Byte({Page::kLower, 86 + 28}, 0x11).Byte(kNinth, 0x11);
  memory.Byte({Page::k01, 227}, 0x11).Byte({Page::k01, 231}, 0x11).Byte({Page::k01, 235}, 0x11);
  memory.Byte({Page::k01, 239}, 0x11).Byte({Page::k01, 243}, 0x11).Byte({Page::k01, 247}, 0x30);
  EXPECT_EQ(Phy(cmis::Sealed(memory))->module->ib_compliance_code, kEdr);
}

TEST(Cmis, ConvertsTheUnitsOfTheSingleModeLength) {
  const std::pair<unsigned, const char*> kLengths[] = {
      {0x05, "0.5 km"}, {0x4A, "10 km"},  {0x84, "40 km"}, {0x40, "N/A"},
      {0x00, "N/A"},    {0x99, "250 km"}, {0x9A, "N/A"},  // 260 km pass the field
  };
  for (const auto& [byte, length] : kLengths) {
    ImageBuilder memory = cmis::Optic();
    memory.Byte(cmis::kLengthSmf, byte);
    EXPECT_EQ(Phy(cmis::Sealed(memory))->module->ConvertCableLengthSMFiberToStr(), length) << byte;
  }
}

TEST(Cmis, ReadsTheLongestSmfMultiplierByItsSecondByte) {
  const std::pair<unsigned, const char*> kLengths[] = {
      {0x00, "50 km"}, {0x40, "100 km"}, {0x80, "200 km"}, {0xC0, "N/A"}};  // 500 km
  for (const auto& [byte, length] : kLengths) {
    ImageBuilder memory = cmis::Optic();
    memory.Byte(cmis::kRevisionOfCmis, 0x53).Byte(cmis::kLengthSmf, 0xC1);
    memory.Byte({Page::k01, 137}, byte);
    EXPECT_EQ(Phy(cmis::Sealed(memory))->module->ConvertCableLengthSMFiberToStr(), length) << byte;
  }
}

TEST(Cmis, TakesTheOnlyPreCursorFromTheFieldOfThePostCursor) {
  const std::tuple<unsigned, unsigned, unsigned> kControls[] = {
      {0x08, 5, 0}, {0x10, 6, 5}, {0x18, 6, 5}};
  for (const auto& [controls, pre_cursor, post_cursor] : kControls) {
    ImageBuilder memory = cmis::Optic();
    memory.Byte(cmis::kRxControls, controls).Byte(cmis::kPreCursor, 6).Byte(cmis::kPostCursor, 5);
    const auto phy = Phy(cmis::Sealed(memory));
    EXPECT_EQ(phy->module->rx_output_pre_emp, pre_cursor) << controls;
    EXPECT_EQ(phy->module->rx_output_post_emp, post_cursor) << controls;
  }
}

TEST(Cmis, ShowsNoMonitorsOfFlatMemory) {
  ImageBuilder memory = cmis::Copper();
  memory.Byte(cmis::kTechnology, 0x0E);  // an active cable
  memory.Byte(cmis::kModuleFlags, 0xFF).Word(cmis::kTemperature, 0x2D40);
  memory.Word(cmis::kVoltage, 32578);
  const auto phy = Phy(cmis::SealedFlat(memory));
  EXPECT_EQ(phy->GetTemperatureStr(), "N/A");
  EXPECT_EQ(phy->module->voltage, 0);
  EXPECT_EQ(phy->latched_flags, nullptr);
}

TEST(Cmis, ShowsACopperCableWithoutMonitors) {
  const auto phy = Phy(cmis::Copper());
  EXPECT_EQ(phy->TypeToStr(false), "Copper cable- unequalized");
  EXPECT_EQ(phy->CableLengthToStr(false), "1.5 m");
  EXPECT_EQ(Values(phy->module->attenuation), (std::vector<std::uint8_t>{5, 6, 8, 12}));
  EXPECT_EQ(phy->latched_flags, nullptr);
  EXPECT_EQ(phy->GetTemperatureStr(), "N/A");
  EXPECT_EQ(phy->GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(phy->MaxPowerToStr(false), "N/A");
  EXPECT_EQ(phy->FWVersionToStr(false), "N/A");
  EXPECT_EQ(phy->DateCodeToStr(false), "N/A");
}

TEST(Cmis, ShowsFieldsThatAnImageLacksAsMissing) {
  const auto phy = Phy(cmis::Optic().Image(256));
  EXPECT_EQ(phy->GetTemperatureStr(), "45C");
  EXPECT_EQ(phy->GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(phy->LengthSMFiberToStr(), "N/A");
  EXPECT_EQ(phy->CDREnableTxRXToStr(), "N/A N/A");
  // Byte 9 has alarms, which must not be lost.
  EXPECT_EQ(phy->LatchedTempAlarmAndWarningToStr(), "0x0a");

  ImageBuilder quiet = cmis::Optic();
  quiet.Byte(cmis::kModuleFlags, 0);
  EXPECT_EQ(Phy(quiet.Image(256))->LatchedTempAlarmAndWarningToStr(), "N/A");
}

TEST(Cmis, ShowsAllFieldsOfAMissingPage00AsMissing) {
  const ModuleReading reading = ReadModule(cmis::Optic().Image(128));
  EXPECT_EQ(reading.phy->VendorToStr(), "NA");
  EXPECT_EQ(reading.phy->VendorPnToStr(), "NA");
  EXPECT_EQ(reading.phy->TypeToStr(false), "N/A");
  EXPECT_FALSE(reading.phy->IsOpticCable());
}

TEST(Cmis, IgnoresPagesThatFlatMemoryLacks) {
  ImageBuilder memory = cmis::Optic();
  memory.Byte(cmis::kStatus, 0x80);
  const auto phy = Phy(memory);
  EXPECT_EQ(phy->module->length_om3, 0);
  EXPECT_EQ(phy->module->rx_power[0], 0);
}

TEST(Cmis, StopsAtTheEndOfAnyPage) {
  for (const std::size_t size : {384U, 512U, 640U}) {
    const ModuleReading reading = ReadModule(cmis::Optic().Image(size));
    EXPECT_EQ(reading.phy->module->length_om4, 50) << size;
    EXPECT_EQ(reading.phy->module->temp_high_threshold, size == 384 ? 0x8000 : 0x4B00);
    EXPECT_EQ(reading.phy->module->rx_power[0], 0) << size;
  }
}

// ---------------------------------------------------------------------------------------------
// SFF-8472
// ---------------------------------------------------------------------------------------------

TEST(Sff8472, FillsTheFieldsOfTheModule) {
  const auto phy = Phy(sfp::Optic());
  const ModuleRecord& m = *phy->module;
  EXPECT_EQ(m.ConvertCableIdentifierToStr(), "SFP28/SFP+");
  EXPECT_EQ(m.connector_type, 7);
  EXPECT_EQ(m.SelectNominalBR(), 10);
  EXPECT_EQ(m.extended_bitrate, 0);  // byte 66 is another thing unless byte 12 is 255
  EXPECT_EQ(m.ConvertCableLengthSMFiberToStr(), "10 km");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(1), "30 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(2), "80 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(3), "300 m");
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(4), "400 m");
  EXPECT_EQ(m.cable_length, 0);
  EXPECT_EQ(phy->VendorToStr(), "Acme Optics");
  EXPECT_EQ(m.compliance_code, 2);
  EXPECT_EQ(m.vendor_oui, 0x00176AU);
  EXPECT_EQ(phy->VendorPnToStr(), "AO-SFP-LR");
  EXPECT_EQ(phy->RevisionToStr(), "B4");
  EXPECT_EQ(phy->TypeToStr(false), "1310 nm DFB");
  EXPECT_EQ(phy->VendorSnToStr(), "AO1060");
  EXPECT_EQ(phy->DateCodeToStr(false), "15-07-03");
  EXPECT_EQ(m.lot, 0x3031);
  EXPECT_EQ(m.power_class, 1);
  EXPECT_EQ(phy->RXPowerTypeToStr(), "Average Power");
}

TEST(Sff8472, FillsTheFieldsOfTheDiagnostics) {
  const auto phy = Phy(sfp::Optic());
  const ModuleRecord& m = *phy->module;
  EXPECT_EQ(phy->GetTemperatureStr(), "34C");
  EXPECT_EQ(m.voltage, 32893);
  EXPECT_EQ(phy->TXBias1ToStr(true), "35.994");
  EXPECT_EQ(phy->TX1PowerToStr(true), "0.517");
  EXPECT_EQ(m.rx_power[1], 2);
  EXPECT_EQ(m.temp_high_threshold, 0x5A00);
  EXPECT_EQ(m.temp_low_threshold, 0xF600);
  EXPECT_EQ(m.voltage_high_threshold, 36300);
  EXPECT_EQ(m.voltage_low_threshold, 29700);
  EXPECT_EQ(m.tx_bias_high_threshold, 50000);
  EXPECT_EQ(m.tx_bias_low_threshold, 1000);
  EXPECT_EQ(m.tx_power_high_threshold, 13464);
  EXPECT_EQ(m.tx_power_low_threshold, 1267);
  EXPECT_EQ(m.rx_power_high_threshold, 20000);
  EXPECT_EQ(m.rx_power_low_threshold, 158);
}

TEST(Sff8472, FillsTheFlags) {
  const auto phy = Phy(sfp::Optic());
  const LatchedFlagsPage& f = *phy->latched_flags;
  EXPECT_EQ(f.latched_temperature_flags, 0x9);  // high alarm, low warning
  EXPECT_EQ(f.latched_voltage_flags, 0x6);      // low alarm, high warning
  EXPECT_EQ(phy->TXBiasAlarmAndWarningToStr(), "0x6000");
  EXPECT_EQ(phy->TXPowerAlarmAndWarningToStr(), "0x9000");
  EXPECT_EQ(phy->RXPowerAlarmAndWarningToStr(), "0x6000");
  EXPECT_EQ(f.latched_rx_los, 1);
}

TEST(Sff8472, ReadsTheExtendedRateIfTheNominalRateIs255) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kRate, 255).Byte(sfp::kExtendedRate, 103);
  EXPECT_EQ(Phy(sfp::Sealed(memory))->module->SelectNominalBR(), 25);
}

TEST(Sff8472, DerivesTheTechnologyFromCableBitsAndWavelength) {
  const std::pair<unsigned, unsigned> kOptics[] = {{850, 0x00},  {1310, 0x40}, {1490, 0x90},
                                                   {1550, 0x50}, {1270, 0x80}, {0, 0x80}};
  for (const auto& [wavelength, technology] : kOptics) {
    ImageBuilder memory = sfp::Optic();
    memory.Word(sfp::kWavelength, wavelength);
    EXPECT_EQ(Phy(sfp::Sealed(memory))->module->cable_technology, technology) << wavelength;
  }
  ImageBuilder cable = sfp::Copper();
  EXPECT_EQ(Phy(cable)->module->cable_technology, 0xA0);
  cable.Byte(sfp::kCableBits, 0x08);
  EXPECT_EQ(Phy(sfp::SealedA0(cable))->module->cable_technology, 0xC0);
}

TEST(Sff8472, ShowsACopperCableWithoutDiagnostics) {
  const auto phy = Phy(sfp::Copper());
  EXPECT_EQ(phy->CableLengthToStr(false), "2 m");
  EXPECT_EQ(phy->LengthOmxToStr(4), "N/A");
  EXPECT_EQ(phy->LengthOmxToStr(3), "N/A");  // of a cable, byte 19 is part of its length
  EXPECT_EQ(phy->GetTemperatureStr(), "N/A");
  EXPECT_EQ(phy->latched_flags, nullptr);
}

TEST(Sff8472, ReadsShortSingleModeLengthsInHundredsOfMetres) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kSmfKilometres, 0).Byte(sfp::kSmfHundredMetres, 5);
  EXPECT_EQ(Phy(sfp::Sealed(memory))->LengthSMFiberToStr(), "0.5 km");
}

TEST(Sff8472, ShowsDiagnosticsThatTheModuleDoesNotAdvertise) {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kDiagnostics, 0);
  const auto phy = Phy(sfp::Sealed(memory));
  EXPECT_EQ(phy->GetTemperatureStr(), "34C");
  EXPECT_EQ(phy->TXBias1ToStr(true), "35.994");
}

TEST(Sff8472, IgnoresBlankDiagnostics) {
  for (const unsigned blank : {0x00U, 0xFFU}) {
    ImageBuilder memory = sfp::Optic();
    memory.Fill({Page::kA2, 0}, blank);
    const auto phy = Phy(memory);
    EXPECT_EQ(phy->GetTemperatureStr(), "N/A") << blank;
    EXPECT_EQ(phy->GetHighTemperatureThresholdStr(), "N/A") << blank;
    EXPECT_EQ(phy->latched_flags, nullptr) << blank;
  }
}

ImageBuilder& Single(ImageBuilder& memory, Place place, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  return memory.Words(place, {bits >> 16, bits & 0xFFFF});
}

ImageBuilder ExternallyCalibrated() {
  ImageBuilder memory = sfp::Optic();
  memory.Byte(sfp::kDiagnostics, 0x58);
  const float kPowers[] = {1e-8F, 1e-6F, 0.001F, 2.0F, -5.0F};
  Place place = sfp::kRxPowerCalibration;
  for (const float coefficient : kPowers) {
    Single(memory, place, coefficient);
    place.byte += 4;
  }
  memory.Words(sfp::kTxBiasCalibration, {0x8000, 0xFFEC});       // times 128, less 20
  memory.Words(sfp::kTxPowerCalibration, {0x0080, 0x0064});      // times 0.5, more 100
  memory.Words(sfp::kTemperatureCalibration, {0x0180, 0xFF00});  // times 1.5, less 1 C
  memory.Words(sfp::kVoltageCalibration, {0x0140, 0x000A});      // times 1.25, more 10
  memory.Words(sfp::kReadings, {0x1400, 26000, 100, 5000, 100});
  return memory;
}

TEST(Sff8472, AppliesExternalCalibration) {
  const auto phy = Phy(sfp::Sealed(ExternallyCalibrated()));
  const ModuleRecord& m = *phy->module;
  EXPECT_EQ(m.temperature, 0x1D00);  // 20 C * 1.5 - 1 C
  EXPECT_EQ(m.voltage, 32510);
  EXPECT_EQ(m.tx_bias[1], 12780);
  EXPECT_EQ(m.tx_power[1], 2600);
  EXPECT_EQ(m.rx_power[1], 1 + 1 + 10 + 200 - 5);
  EXPECT_EQ(m.temp_low_threshold, 0xF000);  // -10 C * 1.5 - 1 C
  EXPECT_EQ(m.voltage_low_threshold, 37135);
  EXPECT_EQ(m.tx_power_low_threshold, 734);  // 1267 / 2 + 100, rounded
}

TEST(Sff8472, LimitsCalibratedValuesToTheirRange) {
  ImageBuilder memory = ExternallyCalibrated();
  memory.Words(sfp::kReadings, {0x7F00, 65535, 65535, 0, 0});
  memory.Words(sfp::kTxPowerCalibration, {0x0100, 0x8000});
  const auto phy = Phy(sfp::Sealed(memory));
  EXPECT_EQ(phy->module->temperature, 0x7FFF);
  EXPECT_EQ(phy->module->voltage, 0xFFFF);
  EXPECT_EQ(phy->module->tx_bias[1], 0xFFFF);
  EXPECT_EQ(phy->module->tx_power[1], 0);
  EXPECT_EQ(phy->module->rx_power[1], 0);
}

TEST(Sff8472, KeepsReadingsWhoseConstantsAreInvalid) {
  const auto text = [](const std::string& quantity) {
    return "the calibration constants of " + quantity + " are invalid; it is shown uncalibrated";
  };
  for (const unsigned single : {0x7FC0U, 0x7F80U, 0xFF80U}) {  // no number, infinities
    ImageBuilder memory = ExternallyCalibrated();
    memory.Words(sfp::kRxPowerCalibration, {single, 0});
    const ModuleReading reading = ReadModule(sfp::Sealed(memory).Image());
    EXPECT_EQ(reading.remarks, Texts{text("the RX power")});
    EXPECT_EQ(reading.phy->module->rx_power[1], 100);
    EXPECT_EQ(reading.phy->module->rx_power_high_threshold, 20000);
    EXPECT_EQ(reading.phy->module->temperature, 0x1D00);
  }
  ImageBuilder zeros = ExternallyCalibrated();
  zeros.Words(sfp::kRxPowerCalibration, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  zeros.Words(sfp::kTxBiasCalibration, {0, 0, 0, 0, 0, 0, 0, 0});  // and those after it
  const ModuleReading reading = ReadModule(sfp::Sealed(zeros).Image());
  EXPECT_EQ(reading.remarks,
            (Texts{text("the temperature"), text("the supply voltage"), text("the TX bias"),
                   text("the TX power"), text("the RX power")}));
  const ModuleRecord& m = *reading.phy->module;
  EXPECT_EQ(m.temperature, 0x1400);
  EXPECT_EQ(m.voltage, 26000);
  EXPECT_EQ(m.tx_bias[1], 100);
  EXPECT_EQ(m.tx_power[1], 5000);
  EXPECT_EQ(m.rx_power[1], 100);
  EXPECT_EQ(m.temp_high_threshold, 0x5A00);
}

TEST(Sff8472, PrefersInternalCalibration) {
  ImageBuilder memory = ExternallyCalibrated();
  memory.Byte(sfp::kDiagnostics, 0x78);
  EXPECT_EQ(Phy(sfp::Sealed(memory))->module->temperature, 0x1400);
}

TEST(Sff8472, NeedsNoUpperHalfOfTheDiagnostics) {
  EXPECT_EQ(Phy(sfp::Optic().Image(384))->GetTemperatureStr(), "34C");
}

// ---------------------------------------------------------------------------------------------
// All families
// ---------------------------------------------------------------------------------------------

TEST(ModuleMemory, ShowsNoLightAsZeroPower) {
  ImageBuilder dark = qsfp::Optic();
  dark.Words(qsfp::kRxPower, {0, 0, 0, 0});
  EXPECT_EQ(Cable(dark).RxPower[0], 0.0F);
  EXPECT_NE(Cable(dark).c_str(true).find("RX1 Power: 0.000 mW, -999.999 dBm\n"), std::string::npos);
  ImageBuilder dark_cmis = cmis::Optic();
  dark_cmis.Words(cmis::kRxPower, {0});
  EXPECT_EQ(Phy(dark_cmis)->RX1PowerToStr(false), "0.000 mW, -999.999 dBm");
}

TEST(ModuleMemory, DecodesByByte0WhereItsCopyDiffers) {
  ImageBuilder memory = qsfp::Optic();
  memory.Byte(qsfp::kIdentifier, 0x0D);
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.cable->Identifier, 0x0D);
  EXPECT_EQ(reading.cable->VendorName, "Acme Optics");
  EXPECT_EQ(RemarksBesidePlaces(reading),
            Texts{"byte 0 names the module QSFP+ (0x0d), byte 128 is 0x11; decoded by byte 0"});
}

TEST(ModuleMemory, DecodesByByte128WhereByte0IsNoIdentifier) {
  for (const auto& [unknown, shown] : {std::pair{0x00U, "0x00"}, {0x7EU, "0x7e"}}) {
    ImageBuilder memory = cmis::Optic();
    memory.Byte(cmis::kIdentifier, unknown);
    const ModuleReading reading = ReadModule(memory.Image());
    EXPECT_EQ(reading.phy->VendorToStr(), "Acme Optics");
    EXPECT_EQ(RemarksBesidePlaces(reading),
              Texts{std::string("byte 0 is ") + shown +
                    "; decoded by byte 128, which names the module QSFP-DD "
                    "(0x18)"});
  }
}

TEST(ModuleMemory, TreatsAnUnansweredLowerPageAsMissing) {
  ImageBuilder memory = qsfp::Optic();
  memory.Fill(module_images::kLowerHalf, 0xFF);
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.cable->Identifier, 0x11);
  EXPECT_EQ(reading.cable->VendorName, "Acme Optics");
  EXPECT_EQ(reading.cable->GetTemperatureStr(), "N/A");
  EXPECT_EQ(reading.cable->LatchedCdrLos, 0);
  EXPECT_EQ(reading.cable->RxPower[0], 0.0F);
}

TEST(ModuleMemory, NeverDecodesAFamilyWithTheMapOfAnother) {
  // The vendor's name begins at byte 129 in CMIS, at 148 in SFF-8636 and at 20 in SFF-8472.
  EXPECT_EQ(Phy(cmis::Optic(0x1E))->VendorToStr(), "Acme Optics");
  EXPECT_EQ(Cable(qsfp::Optic()).VendorName, "Acme Optics");
  EXPECT_EQ(Phy(sfp::Optic())->VendorToStr(), "Acme Optics");
}

TEST(ModuleMemory, RejectsUnknownModules) {
  ImageBuilder memory = qsfp::Blank(0x06, true);
  EXPECT_EQ(Problem(memory.Image()), "unknown module identifier: byte 0 is 0x06, byte 128 is 0x06");
  EXPECT_EQ(Problem({}), "unknown module identifier: byte 0 is missing, byte 128 is missing");
  EXPECT_EQ(Problem(DumpBytes(256, 0xFF)),
            "unknown module identifier: byte 0 is 0xff, byte 128 is 0xff");
  // Byte 128 of an SFP is no identifier.
  EXPECT_EQ(Problem(qsfp::Blank(0, true).Byte(qsfp::kIdentifierCopy, 3).Image()),
            "unknown module identifier: byte 0 is 0x00, byte 128 is 0x03");
}

// SFF-8024 rev 4.13, table 4-1: identifiers whose modules follow a map, but fill no record.
TEST(ModuleMemory, SplitsImagesOfModulesWithoutARecord) {
  const auto family_of = [](const DumpBytes& image) {
    Texts remarks;
    const ModuleImage pages = cable_info::module_memory::SplitImage(image, remarks);
    return cable_info::Decode(pages).family;
  };
  for (const unsigned identifier : {0x0FU, 0x10U, 0x14U, 0x15U, 0x17U}) {
    EXPECT_EQ(family_of(qsfp::Blank(identifier, true).Image()), ModuleFamily::kSff8636)
        << identifier;
  }
  for (const unsigned identifier : {0x1FU, 0x20U, 0x21U, 0x22U, 0x23U, 0x24U, 0x25U}) {
    const DumpBytes image = cmis::Optic(identifier).Image();
    EXPECT_EQ(family_of(image), ModuleFamily::kCmis) << identifier;
    EXPECT_NE(Problem(image), "") << identifier;
  }
  for (const unsigned identifier : {0x01U, 0x02U}) {
    const DumpBytes image = sfp::Optic().Byte({Page::kA0, 0}, identifier).Image();
    EXPECT_EQ(family_of(image), ModuleFamily::kSff8472) << identifier;
  }
}

// Identifiers from 80h on are the vendors' own; the revision distinguishes CMIS from other maps.
TEST(ModuleMemory, SplitsImagesOfCmisModulesWithACustomIdentifier) {
  ImageBuilder memory = cmis::Optic(0x80);
  Texts remarks;
  const ModuleImage pages =
      cable_info::module_memory::SplitImage(memory.Byte({Page::kLower, 1}, 0x50).Image(), remarks);
  EXPECT_TRUE(pages.Has(Page::k11));
  EXPECT_EQ(cable_info::Decode(pages).family, ModuleFamily::kCmis);
  EXPECT_EQ(Problem(memory.Byte({Page::kLower, 1}, 0x08).Image()),
            "unknown module identifier: byte 0 is 0x80, byte 128 is 0x80");
}

TEST(ModuleMemory, RejectsImagesOfImpossibleSize) {
  DumpBytes image = qsfp::Optic().Image();
  image.resize(512);
  EXPECT_EQ(
      Problem(image),
      "an image of 512 bytes is not the memory of a QSFP28 module; valid sizes are 256, 384, 640");
  image.resize(257);
  EXPECT_NE(Problem(image), "");
  image = qsfp::Blank(0x17, true).Image();
  image.resize(512);
  EXPECT_EQ(
      Problem(image),
      "an image of 512 bytes is not the memory of a module with identifier 0x17; valid sizes are "
      "256, 384, 640");
  image = cmis::Optic().Image();
  image.resize(896);
  EXPECT_EQ(Problem(image),
            "an image of 896 bytes is not the memory of a QSFP-DD module; valid sizes are "
            "256, 384, 512, 640, 768");
  image = sfp::Optic().Image();
  image.resize(640);
  EXPECT_EQ(
      Problem(image),
      "an image of 640 bytes is not the memory of a SFP module; valid sizes are 256, 384, 512");
}

TEST(ModuleMemory, VerifiesEveryChecksum) {
  struct Case {
    ImageBuilder memory;
    Place changed;
    const char* mismatch;
  };
  const Case kCases[] = {
      {qsfp::Copper(), qsfp::kVendor, "page 00h: the checksum of bytes 128 to 190 is "},
      {qsfp::Copper(), qsfp::kSerialNumber, "page 00h: the checksum of bytes 192 to 222 is "},
      {cmis::Optic(), cmis::kVendor, "page 00h: the checksum of bytes 128 to 221 is "},
      {cmis::Optic(), cmis::kLengthSmf, "page 01h: the checksum of bytes 130 to 254 is "},
      {cmis::Optic(), cmis::kVoltageThresholds, "page 02h: the checksum of bytes 128 to 254 is "},
      {sfp::Optic(), sfp::kVendor, "A0h: the checksum of bytes 0 to 62 is "},
      {sfp::Optic(), sfp::kSerialNumber, "A0h: the checksum of bytes 64 to 94 is "},
      {sfp::Optic(), sfp::kVoltageThresholds, "A2h: the checksum of bytes 0 to 94 is "},
  };
  for (const Case& one : kCases) {
    ImageBuilder memory = one.memory;
    memory.Byte(one.changed, 0x01);
    const ModuleReading reading = ReadModule(memory.Image());
    ASSERT_EQ(reading.mismatches.size(), 1U) << one.mismatch;
    EXPECT_TRUE(reading.mismatches[0].starts_with(one.mismatch)) << reading.mismatches[0];
  }
}

TEST(ModuleMemory, NamesBothValuesOfAChecksum) {
  ImageBuilder memory = qsfp::Blank(0x11, true);
  memory.Byte({Page::k00, 191}, 0x40);  // the sum of the page is that of its identifier
  const ModuleReading reading = ReadModule(memory.Image());
  EXPECT_EQ(reading.mismatches, Texts{"page 00h: the checksum of bytes 128 to 190 is 0x11, but "
                                      "byte 191 is 0x40"});
  EXPECT_NE(reading.cable, nullptr);
}

TEST(ModuleMemory, SkipsChecksumsOfMissingBytes) {
  ImageBuilder memory = qsfp::Copper();
  EXPECT_EQ(ReadModule(memory.Image(191)).mismatches, Texts());
  DumpBytes image = memory.Image();
  image[150] = std::nullopt;
  EXPECT_EQ(ReadModule(image).mismatches, Texts());
}

TEST(ModuleMemory, ReportsMismatchesAsErrorsIfStrict) {
  ModuleReading reading;
  reading.mismatches = {"page 00h is wrong"};
  reading.remarks = {"odd"};
  Texts remarks;
  ReportChecksums(reading, ChecksumPolicy::kReport, remarks);
  EXPECT_EQ(remarks, (Texts{"page 00h is wrong", "odd"}));
  EXPECT_THROW(ReportChecksums(reading, ChecksumPolicy::kRefuse, remarks), BadModule);
  reading.mismatches.clear();
  EXPECT_NO_THROW(ReportChecksums(reading, ChecksumPolicy::kRefuse, remarks));
}

// ---------------------------------------------------------------------------------------------
// Page by page
// ---------------------------------------------------------------------------------------------

DumpBytes Half(const DumpBytes& image, std::size_t number) {
  const auto begin = image.begin() + static_cast<std::ptrdiff_t>(128 * number);
  return {begin, begin + 128};
}

TEST(ModulePages, GiveTheSameModuleAsTheWholeImage) {
  const DumpBytes image = cmis::Optic().Image();
  const Page kPages[] = {Page::kLower, Page::k00, Page::k01, Page::k02, Page::k10, Page::k11};
  ModuleImage pages;
  for (std::size_t i = 0; i < std::size(kPages); ++i)
    cable_info::module_memory::PutPage(pages, kPages[i], Half(image, i));
  const ModuleReading reading = ReadModule(pages);
  std::ostringstream from_pages;
  std::ostringstream from_image;
  reading.phy->ToFileStream(from_pages);
  Phy(image)->ToFileStream(from_image);
  EXPECT_EQ(from_pages.str(), from_image.str());
}

TEST(ModulePages, MayFollowTheLowerPageInTheirFiles) {
  const DumpBytes image = qsfp::Optic().Image();
  DumpBytes third = Half(image, 0);
  const DumpBytes upper = Half(image, 2);
  third.insert(third.end(), upper.begin(), upper.end());
  ModuleImage pages;
  cable_info::module_memory::PutPage(pages, Page::k03, third);
  const ModuleReading reading = ReadModule(pages);
  EXPECT_EQ(reading.cable->GetTemperatureStr(), "26C");
  EXPECT_EQ(reading.cable->GetHighTemperatureThresholdStr(), "75C");
  EXPECT_EQ(reading.cable->VendorName, "NA");
}

TEST(ModulePages, GiveARemarkOnAMissingMultiplier) {
  const DumpBytes image = cmis::Optic().Image();
  ModuleImage pages;
  cable_info::module_memory::PutPage(pages, Page::kLower, Half(image, 0));
  cable_info::module_memory::PutPage(pages, Page::k11, Half(image, 5));
  const ModuleReading reading = ReadModule(pages);
  EXPECT_EQ(reading.phy->module->tx_bias[1], 2001);
  EXPECT_EQ(RemarksBesidePlaces(reading),
            Texts{"page 01h with the multiplier of the bias currents is missing; "
                  "it is taken as 1"});
}

TEST(ModulePages, AreNamedA0AndA2ForSfp) {
  const DumpBytes image = sfp::Optic().Image();
  ModuleImage pages;
  cable_info::module_memory::PutPage(pages, Page::kA0,
                                     DumpBytes(image.begin(), image.begin() + 256));
  cable_info::module_memory::PutPage(pages, Page::kA2, DumpBytes(image.begin() + 256, image.end()));
  EXPECT_EQ(ReadModule(pages).phy->GetTemperatureStr(), "34C");

  ModuleImage lower;
  cable_info::module_memory::PutPage(lower, Page::kLower, Half(image, 0));
  try {
    ReadModule(lower);
    FAIL();
  } catch (const BadModule& bad) {
    EXPECT_STREQ(bad.what(),
                 "the pages of a module that identifies itself as SFP (0x03) are a0 and a2");
  }
}

TEST(ModulePages, MustNotExceedTheirSize) {
  ModuleImage pages;
  EXPECT_THROW(cable_info::module_memory::PutPage(pages, Page::kLower, DumpBytes(129, 0)),
               BadModule);
  EXPECT_THROW(cable_info::module_memory::PutPage(pages, Page::k00, DumpBytes(257, 0)), BadModule);
  EXPECT_THROW(cable_info::module_memory::PutPage(pages, Page::kA2, DumpBytes(257, 0)), BadModule);
  EXPECT_FALSE(pages.Has(Page::kLower) || pages.Has(Page::k00) || pages.Has(Page::kA2));
}

TEST(ModulePages, AreDistinguishedFromPlainFiles) {
  for (const char* const argument : {"03:a.bin", "03h:a.bin", "0x03:a.bin", "03H:a.bin"}) {
    const auto file = cable_info::module_memory::ParsePageFile(argument);
    ASSERT_TRUE(file) << argument;
    EXPECT_EQ(file->page, Page::k03) << argument;
    EXPECT_EQ(file->path, "a.bin") << argument;
  }
  EXPECT_EQ(cable_info::module_memory::ParsePageFile("lower:x:y")->path, "x:y");
  EXPECT_EQ(cable_info::module_memory::ParsePageFile("lower:x")->page, Page::kLower);
  EXPECT_EQ(cable_info::module_memory::ParsePageFile("A2:x")->page, Page::kA2);
  for (const char* const argument : {"a.bin", "./03:a.bin", "3:a.bin", "123:a", "zz:a", ":a", ""}) {
    EXPECT_FALSE(cable_info::module_memory::ParsePageFile(argument)) << argument;
  }
}

TEST(ModulePages, ReturnMissingBytes) {
  ModuleImage image;
  EXPECT_EQ(image.At(Page::k03, 128), cable_info::module_memory::DumpByte());
  image.Put(Page::k03, 250, DumpBytes(100, 7));
  EXPECT_EQ(image.At(Page::k03, 255), cable_info::module_memory::DumpByte(7));
  EXPECT_EQ(image.At(Page::k03, 256), cable_info::module_memory::DumpByte());
  EXPECT_EQ(image.At(Page::k03, 249), cable_info::module_memory::DumpByte());
}

// ---------------------------------------------------------------------------------------------
// Hostile bytes
// ---------------------------------------------------------------------------------------------

// Decodes an image and writes its row, which always has all cells, and its report.
void Show(const DumpBytes& image) {
  try {
    ModuleReading reading = ReadModule(image);
    cable_info::CombinedCableInfo port;
    port.AttachCableRecord(std::move(reading.cable));
    port.AttachPhyCableRecord(std::move(reading.phy));
    std::ostringstream row;
    std::ostringstream report;
    port.ToCSVStream(row);
    port.ToFileStream(report);
    const std::string text = row.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
    EXPECT_FALSE(report.str().empty());
  } catch (const BadModule& bad) {
    EXPECT_STRNE(bad.what(), "");
  }
}

TEST(HostileModules, OfEverySizeAreDecodedOrRejected) {
  std::mt19937 random(20240315);
  const std::uint8_t kIdentifiers[] = {0x03, 0x0C, 0x0D, 0x11, 0x18, 0x19, 0x1A, 0x1B, 0x1E, 0x00};
  for (std::size_t size = 0; size <= 1024; ++size) {
    DumpBytes image;
    for (std::size_t i = 0; i < size; ++i) image.emplace_back(random() & 0xFF);
    if (size > 0) image[0] = kIdentifiers[size % std::size(kIdentifiers)];
    Show(image);
  }
}

TEST(HostileModules, OfValidSizesAndRandomBytesAreDecoded) {
  std::mt19937 random(4711);
  const std::pair<std::uint8_t, std::size_t> kModules[] = {
      {0x0D, 256}, {0x11, 384}, {0x11, 640}, {0x18, 256}, {0x19, 768}, {0x03, 256}, {0x03, 512},
  };
  for (int round = 0; round < 300; ++round) {
    for (const auto& [identifier, size] : kModules) {
      DumpBytes image;
      for (std::size_t i = 0; i < size; ++i) {
        const auto value = random();
        image.push_back((value & 0x1F00) == 0 ? cable_info::module_memory::DumpByte()
                                              : cable_info::module_memory::DumpByte(value & 0xFF));
      }
      image[0] = identifier;
      EXPECT_EQ(Problem(image), "");
      Show(image);
    }
  }
}

TEST(HostileModules, AsRandomTextAreReadOrRejected) {
  std::mt19937 random(815);
  constexpr std::string_view kCharacters = "0123456789abcdefXx:*|- \n\t";
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    for (auto length = random() % 200; length > 0; --length) {
      text += kCharacters[random() % kCharacters.size()];
    }
    try {
      Show(cable_info::module_memory::DumpFromContent(text));
    } catch (const BadModule& bad) {
      EXPECT_STRNE(bad.what(), "");
    }
  }
}

}  // namespace
