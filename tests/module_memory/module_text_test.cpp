// The data sheet of a module.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cable_info/module_memory/module_output.h"
#include "cmis_memory.h"
#include "module_images.h"

namespace {

using cable_info::Field;
using cable_info::FieldState;
using cable_info::Lane;
using cable_info::ModuleFamily;
using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::ModuleToText;
using cable_info::Page;
using cable_info::PageOf;

// A data sheet, line by line.
class Sheet {
 public:
  explicit Sheet(const ModuleInfo& info, std::string_view label = "m")
      : text_(ModuleToText(info, label)) {
    std::string line;
    for (const char c : text_) {
      if (c == '\n') {
        lines_.push_back(line);
        line.clear();
      } else if (c != ' ' || (!line.empty() && line.back() != ' ')) {
        line += c;
      }
    }
    EXPECT_EQ(line, "") << "the last line has no line break";
  }

  // With every run of blanks as one, and without indentation.
  testing::AssertionResult HasLine(const std::string& line) const {
    if (std::find(lines_.begin(), lines_.end(), line) != lines_.end()) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "no line \"" << line << "\" in\n" << text_;
  }
  bool Has(std::string_view part) const { return text_.find(part) != std::string::npos; }
  const std::string& text() const { return text_; }
  const std::string& title() const { return lines_.front(); }

 private:
  std::string text_;
  std::vector<std::string> lines_;
};

Sheet SheetOf(const module_images::ImageBuilder& memory, std::string_view label = "m") {
  std::vector<std::string> remarks;
  return Sheet(cable_info::Decode(cable_info::module_memory::SplitImage(memory.Image(), remarks)),
               label);
}

TEST(ModuleText, ATitleNamesLabelIdentifierAndMemoryMap) {
  EXPECT_EQ(SheetOf(module_images::qsfp::Optic(), "port 7").title().rfind("port 7: ", 0), 0U);
  EXPECT_NE(SheetOf(module_images::qsfp::Optic()).title().find("(0x11), SFF-8636"),
            std::string::npos);
  EXPECT_NE(SheetOf(module_images::sfp::Optic()).title().find("(0x03), SFF-8472"),
            std::string::npos);
  EXPECT_NE(SheetOf(module_images::cmis::Optic()).title().find("(0x18), CMIS 4.0"),
            std::string::npos);
}

TEST(ModuleText, AModuleWithoutMemoryIsUnknown) {
  const Sheet sheet(cable_info::Decode(ModuleImage()), "nothing");
  EXPECT_EQ(sheet.title(), "nothing: unknown module");
  EXPECT_FALSE(sheet.Has("Identity"));
  EXPECT_FALSE(sheet.Has("Lanes"));
  EXPECT_FALSE(sheet.Has("RX power"));
  EXPECT_FALSE(sheet.Has("Checksums"));
  EXPECT_FALSE(sheet.Has("Pages read"));
}

TEST(ModuleText, ControlCharactersOfALabelAreQuestionMarks) {
  EXPECT_EQ(Sheet(ModuleInfo(), "a\x1B[1m\x7F\"\\\xC3\xA9\xFF").title(),
            "a?[1m?\"\\\xC3\xA9\xEF\xBF\xBD: unknown module");
}

TEST(ModuleText, IdentityOfAQsfp) {
  const Sheet sheet = SheetOf(module_images::qsfp::Optic());
  EXPECT_TRUE(sheet.HasLine("Identity"));
  EXPECT_TRUE(sheet.HasLine("Vendor Acme Optics"));
  EXPECT_TRUE(sheet.HasLine("Part number AO-Q28-SR4"));
  EXPECT_TRUE(sheet.HasLine("Serial number KS2408VS01234"));
  EXPECT_TRUE(sheet.HasLine("Date code 240315"));
  EXPECT_TRUE(sheet.HasLine("Power class 6"));
  EXPECT_TRUE(sheet.HasLine("Connector MPO 1x12 (0x0c)"));
  EXPECT_TRUE(sheet.HasLine("Length, OM3 70 m"));  // 35 units of 2 m
  EXPECT_TRUE(sheet.HasLine("InfiniBand speeds"));
  EXPECT_TRUE(sheet.HasLine("SDR, DDR, QDR, FDR, EDR"));
}

// Temperature 0x1A80 is 26.5 C; bytes 6 and 7 hold the flags from high alarm to low warning.
TEST(ModuleText, ThresholdsStandBesideTheValueFromLowToHigh) {
  const Sheet sheet = SheetOf(module_images::qsfp::Optic());
  EXPECT_TRUE(sheet.HasLine("Monitors value low alarm low warning high warning high alarm raised"));
  EXPECT_TRUE(sheet.HasLine("Temperature 26.5 C -5 0 70 75 high alarm, high warning"));
  EXPECT_TRUE(
      sheet.HasLine("Supply voltage 3.2989 V 2.97 3.135 3.465 3.63 low alarm, low warning"));
  EXPECT_TRUE(
      sheet.Has("    Temperature                              "
                "26.5 C                  -5            0             70            75"
                "            high alarm, high warning\n"))
      << sheet.text();
}

TEST(ModuleText, LanesOfAQsfpHavePowersInBothUnits) {
  const Sheet sheet = SheetOf(module_images::qsfp::Optic());
  EXPECT_TRUE(sheet.Has(" 0.4643 mW (-3.33 dBm) "));
  EXPECT_TRUE(sheet.Has(" 6.5535 mW (8.16 dBm) "));
  EXPECT_FALSE(sheet.Has(" 0 mW ("));  // there are no dBm of no light
  EXPECT_TRUE(sheet.Has(" 1.6705 mW (2.23 dBm) "));
  EXPECT_TRUE(sheet.Has(" 10.28 mA "));
}

TEST(ModuleText, RaisedFlagsOfLanesAreNamed) {
  const Sheet sheet = SheetOf(module_images::qsfp::Optic());
  for (const std::string_view name : {"RX power, lane 1", "RX power, lane 2", "TX bias, lane 4"}) {
    EXPECT_TRUE(sheet.Has(name)) << name;
  }
  EXPECT_TRUE(sheet.HasLine("RX power, lane 1 0.4643 mW (-3.33 dBm) high alarm"));
  EXPECT_TRUE(sheet.HasLine("RX power, lane 2 0.9012 mW (-0.45 dBm) low alarm"));
  EXPECT_TRUE(sheet.HasLine("RX power, lane 3 0 mW high warning"));
  EXPECT_TRUE(sheet.HasLine("RX power, lane 4 6.5535 mW (8.16 dBm) low warning"));
}

// Byte 3 is 0x21: the signal received on lane 1 is lost, and the host's on lane 2.
TEST(ModuleText, SettingsOfLanesHaveAColumnPerLane) {
  const Sheet sheet = SheetOf(module_images::qsfp::Optic());
  EXPECT_TRUE(sheet.HasLine("Lanes 1 2 3 4"));
  EXPECT_TRUE(sheet.HasLine("RX LOS yes no no no"));
  EXPECT_TRUE(sheet.HasLine("Warnings"));
  EXPECT_TRUE(sheet.HasLine("TX LOS is not advertised, but raised: lane 2"));
}

TEST(ModuleText, ChecksumsAreCorrectOrNameBothValues) {
  module_images::ImageBuilder memory = module_images::qsfp::Copper();
  EXPECT_TRUE(SheetOf(memory).Has(", correct\n"));
  EXPECT_FALSE(SheetOf(memory).Has("wrong"));
  const unsigned sum = memory.Image()[191].value_or(0);  // byte 191 of page 00h
  memory.Byte({Page::k00, 191}, (sum + 1) & 0xFF);
  const Sheet sheet = SheetOf(memory);
  EXPECT_TRUE(sheet.Has("    00h, bytes 128 to 190 ")) << sheet.text();
  EXPECT_TRUE(sheet.Has(", wrong: they add up to 0x")) << sheet.text();
  EXPECT_TRUE(sheet.Has(", correct\n"));  // that of bytes 192 to 222
}

TEST(ModuleText, PagesAreListedInOneLine) {
  EXPECT_TRUE(SheetOf(module_images::qsfp::Optic()).HasLine("Pages read"));
  EXPECT_TRUE(SheetOf(module_images::qsfp::Optic()).HasLine("lower, 00h, 03h"));
  EXPECT_TRUE(SheetOf(module_images::qsfp::Copper()).HasLine("lower, 00h"));
}

TEST(ModuleText, WarningsAreSentencesOfTheirOwn) {
  ModuleInfo info;
  EXPECT_FALSE(Sheet(info).Has("Warnings"));
  info.warnings = {"the first", "the\tsecond"};
  EXPECT_TRUE(Sheet(info).Has("  Warnings\n    the first\n    the?second\n"));
}

TEST(ModuleText, SfpReadsItsSecondMemory) {
  module_images::ImageBuilder memory = module_images::sfp::Optic();
  memory.Byte({Page::kA0, 93}, 0x80);  // it has alarm and warning flags
  const Sheet sheet = SheetOf(module_images::sfp::Sealed(memory));
  EXPECT_TRUE(sheet.HasLine("Vendor Acme Optics"));
  EXPECT_TRUE(sheet.HasLine("Part number AO-SFP-LR"));
  EXPECT_TRUE(sheet.HasLine("Wavelength 1310 nm"));
  EXPECT_TRUE(sheet.HasLine("Temperature 34.5390625 C -10 -5 85 90 high alarm, low warning"));
  EXPECT_TRUE(sheet.HasLine("Supply voltage 3.2893 V 2.97 3.13 3.46 3.63 low alarm, high warning"));
  EXPECT_TRUE(sheet.HasLine("TX bias, lane 1 35.994 mA 2 4 80 100 low alarm, high warning"));
  EXPECT_TRUE(
      sheet.HasLine("TX power, lane 1 0.5171 mW (-2.86 dBm) 0.1267 0.1584 1.122 1.3464 high alarm, "
                    "low warning"));
  EXPECT_TRUE(sheet.HasLine(
      "RX power, lane 1 0.0002 mW (-36.99 dBm) 0.0158 0.0316 1 2 low alarm, high warning"));
}

TEST(ModuleText, AnSfpWithoutItsSecondMemoryMeasuresNothing) {
  const Sheet sheet = SheetOf(module_images::sfp::Copper());
  EXPECT_TRUE(sheet.HasLine("Vendor Copperworks"));
  EXPECT_TRUE(sheet.HasLine("Temperature not implemented"));
  EXPECT_FALSE(sheet.Has(" mW"));
}

TEST(ModuleText, FlagsOfACmisModule) {
  module_images::ImageBuilder memory = module_images::cmis::Optic();
  memory.Byte({Page::k01, 159}, 0x03);  // it measures temperature and supply voltage
  const Sheet sheet = SheetOf(module_images::cmis::Sealed(memory));
  EXPECT_TRUE(sheet.HasLine(
      "RX power, lane 1 0.3001 mW (-5.23 dBm) 0.0501 0.06 3 3.5481 high alarm, low alarm"));
  EXPECT_TRUE(sheet.HasLine("Temperature 45.25 C -5 0 70 75 low alarm, low warning"));
  EXPECT_TRUE(
      sheet.HasLine("Supply voltage 3.2578 V 2.97 3.135 3.465 3.63 high alarm, high warning"));
  EXPECT_TRUE(sheet.HasLine("Lanes 1 2 3 4 5 6 7 8"));
}

TEST(ModuleText, ApplicationsNameBothSides) {
  cmis_memory::Memory memory = cmis_memory::BareModule();
  memory.Put(Page::kLower, 86, {0x50, 0xC5, 0x84, 0x01});
  const Sheet sheet(memory.Decode());
  EXPECT_TRUE(sheet.HasLine("Applications"));
  EXPECT_TRUE(
      sheet.HasLine("Application 1 400GAUI-4-L C2M (0x50) to 0xc5, 8 host and 4 media lanes"));
}

TEST(ModuleText, ApplicationsOmitCountsLeftToTheInterfaces) {
  cmis_memory::Memory memory = cmis_memory::BareModule();
  memory.Put(Page::kLower, 86, {0x50, 0xC5, 0x00, 0x01, 0x50, 0xC5, 0x80, 0x01});
  memory.Put(Page::kLower, 94, {0x50, 0xC5, 0x04, 0x01, 0xFF});
  const Sheet sheet(memory.Decode());
  EXPECT_TRUE(sheet.HasLine("Application 1 400GAUI-4-L C2M (0x50) to 0xc5"));
  EXPECT_TRUE(sheet.HasLine("Application 2 400GAUI-4-L C2M (0x50) to 0xc5, 8 host lanes"));
  EXPECT_TRUE(sheet.HasLine("Application 3 400GAUI-4-L C2M (0x50) to 0xc5, 4 media lanes"));
}

TEST(ModuleText, DiagnosticsHaveTheirInstanceAndUnit) {
  cmis_memory::Memory memory = cmis_memory::FullModule();
  for (const unsigned page : {0x20U, 0x24U, 0x28U, 0x2CU, 0x2FU}) {
    memory.Add(PageOf(static_cast<std::uint8_t>(page)));
  }
  memory.Put(PageOf(0x20), 128, {0x00, 5, 0x10, 15, 0x17, 101});
  memory.Put(PageOf(0x24), 128, {0x16, 0x80, 0x70, 0x78, 0x00, 0x07});
  memory.Put(PageOf(0x28), 128, {4, 0, 1, 0, 3, 0, 2, 0});
  const Sheet sheet(memory.Decode());
  EXPECT_TRUE(sheet.HasLine("Versatile diagnostics"));
  EXPECT_TRUE(sheet.HasLine("esnr media, lane 1 22.5 dB 1 2 3 4"));
  EXPECT_TRUE(sheet.Has("    pre fec ber current media, lane 1 ")) << sheet.text();
  EXPECT_TRUE(sheet.Has(" 1.2e-08\n")) << sheet.text();
  EXPECT_TRUE(sheet.Has("    type 101, lane 8 ")) << sheet.text();
}

cable_info::Monitor Measured(double value) {
  cable_info::Monitor monitor;
  monitor.state = FieldState::kPresent;
  monitor.value = value;
  return monitor;
}

TEST(ModuleText, AuxiliaryMonitorsHaveLabelsAndUnits) {
  ModuleInfo info;
  info.aux = {{"laser_temperature_c", Measured(50)}, {"tec_current_percent", Measured(-12.5)},
              {"tec_current_ma", Measured(3)},       {"vcc2_v", Measured(1.8)},
              {"aux1_custom", Measured(7)},          {"something_new", Measured(9)}};
  const Sheet sheet(info);
  EXPECT_TRUE(sheet.HasLine("Laser temperature 50 C"));
  EXPECT_TRUE(sheet.HasLine("TEC current -12.5%"));
  EXPECT_TRUE(sheet.HasLine("TEC current 3 mA"));
  EXPECT_TRUE(sheet.HasLine("Second supply voltage 1.8 V"));
  EXPECT_TRUE(sheet.HasLine("Auxiliary monitor 1, custom 7"));
  EXPECT_TRUE(sheet.HasLine("something_new 9"));
}

TEST(ModuleText, AMonitorWithoutValueGivesTheReason) {
  ModuleInfo info;
  info.temperature.state = FieldState::kNotRead;
  info.voltage.state = FieldState::kNotReady;
  EXPECT_TRUE(Sheet(info).HasLine("Temperature not read"));
  EXPECT_TRUE(Sheet(info).HasLine("Supply voltage not ready"));
}

TEST(ModuleText, LanesWithoutAnyValueShareALine) {
  ModuleInfo info;
  info.lanes.resize(2);
  info.lanes[0].number = 1;
  info.lanes[1].number = 2;
  EXPECT_TRUE(Sheet(info).HasLine("RX power not implemented"));
  info.lanes[1].rx_power.flags = {0x0F, 0x02};  // low alarm
  EXPECT_TRUE(Sheet(info).HasLine("RX power, lane 1 not implemented"));
  EXPECT_TRUE(Sheet(info).HasLine("RX power, lane 2 not implemented low alarm"));
  EXPECT_TRUE(Sheet(info).HasLine("TX power not implemented"));
  info.lanes[0].tx_bias = Measured(6.75);
  EXPECT_TRUE(Sheet(info).HasLine("TX bias, lane 1 6.75 mA"));
  EXPECT_TRUE(Sheet(info).HasLine("TX bias, lane 2 not implemented"));
}

// A module that monitors a quantity of its lanes, with thresholds from 2 to 9.
ModuleInfo Monitored(unsigned lanes, cable_info::Monitor Lane::*quantity, double value) {
  ModuleInfo info;
  info.lanes.resize(lanes);
  for (unsigned n = 0; n < lanes; ++n) {
    info.lanes[n].number = n + 1;
    info.lanes[n].*quantity = Measured(value);
    (info.lanes[n].*quantity).thresholds = {{9, 2, 8, 3}, 0x0F};
  }
  return info;
}

// Lanes 1 and 2 have the same thresholds, the others have fewer or other ones.
TEST(ModuleText, EachLineHasItsOwnThresholds) {
  ModuleInfo info = Monitored(6, &Lane::tx_bias, 6.75);
  info.lanes[2].tx_bias.thresholds.given = 0;
  info.lanes[3].tx_bias.thresholds.given = 0x0E;  // no high alarm, which is in the last column
  info.lanes[4].tx_bias.thresholds.values[0] = 9.5;
  info.lanes[5].tx_bias.flags = {0x0F, 0x01};
  EXPECT_TRUE(Sheet(info).Has(
      "    TX bias, lane 1                          6.75 mA                 2             3"
      "             8             9\n"
      "    TX bias, lane 2                          6.75 mA                 2             3"
      "             8             9\n"
      "    TX bias, lane 3                          6.75 mA\n"
      "    TX bias, lane 4                          6.75 mA                 2             3"
      "             8\n"
      "    TX bias, lane 5                          6.75 mA                 2             3"
      "             8             9.5\n"
      "    TX bias, lane 6                          6.75 mA                 2             3"
      "             8             9             high alarm\n"))
      << Sheet(info).text();
}

// A value of more than 23 characters moves the thresholds of its line, and of no other one.
TEST(ModuleText, AWideValueMovesItsThresholds) {
  ModuleInfo info = Monitored(3, &Lane::rx_power, 1);
  info.lanes[1].rx_power.value = 1234567.12345678;
  EXPECT_TRUE(Sheet(info).Has(
      "    RX power, lane 1                         1 mW (0 dBm)            2             3"
      "             8             9\n"
      "    RX power, lane 2                         1234567.12345678 mW (60.92 dBm) 2 "))
      << Sheet(info).text();
  EXPECT_TRUE(Sheet(info).Has(
      "    RX power, lane 3                         1 mW (0 dBm)            2             3"
      "             8             9\n"))
      << Sheet(info).text();
}

TEST(ModuleText, FieldsShowFlagsAsWordsAndCodesWithTheirNumber) {
  ModuleInfo info;
  info.family = ModuleFamily::kCmis;
  info.SetCode(Field::kConnector, 0x0C, "MPO 1x12");
  info.SetCode(Field::kTechnology, 0xAB, "");
  const Sheet sheet(info);
  EXPECT_EQ(sheet.title(), "m: unknown module, CMIS");
  EXPECT_TRUE(sheet.HasLine("Connector MPO 1x12 (0x0c)"));
  EXPECT_TRUE(sheet.Has(" 0xab\n"));
  EXPECT_TRUE(SheetOf(module_images::qsfp::Optic()).HasLine("Flat memory no"));
  EXPECT_TRUE(SheetOf(module_images::qsfp::Copper()).HasLine("Flat memory yes"));
}

TEST(ModuleText, FieldsOfMissingPagesAreListed) {
  ModuleInfo info;
  info.SetState(Field::kVendor, FieldState::kNotRead);
  info.SetState(Field::kWavelength, FieldState::kNotRead);
  info.SetState(Field::kSerialNumber, FieldState::kNotReady);
  EXPECT_TRUE(Sheet(info).Has("  Not read\n    Vendor, Wavelength\n")) << Sheet(info).text();
}

TEST(ModuleText, LongListsGoOnInTheNextLine) {
  ModuleInfo info;
  info.pages_read = {Page::kLower, Page::k00};
  for (unsigned bank = 0; bank < 12; ++bank) info.pages_read.push_back(PageOf(0x10, bank));
  const Sheet sheet(info);
  EXPECT_TRUE(sheet.Has("lower, 00h, 10h, 10h bank 1, 10h bank 2, "));
  EXPECT_TRUE(sheet.Has(",\n    10h bank "));
  EXPECT_TRUE(sheet.Has(" 10h bank 11\n"));
}

// The values of all lines begin in the same column.
TEST(ModuleText, LabelsFitTheirColumn) {
  constexpr std::size_t kWidth = 40;
  for (const auto& field : cable_info::ModuleFields()) {
    EXPECT_LE(field.label.size(), kWidth) << field.label;
  }
  for (const auto& field : cable_info::LaneFields()) {
    const std::size_t unit = field.unit.empty() ? 0 : std::string_view(", ").size();
    EXPECT_LE(field.label.size() + unit + field.unit.size(), kWidth) << field.label;
  }
}

}  // namespace
