// The JSON of CMIS modules.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_output.h"
#include "cmis_memory.h"

namespace {

using cable_info::FieldState;
using cable_info::LaneField;
using cable_info::ModuleInfo;
using cable_info::ModuleToJson;
using cable_info::Page;
using cable_info::PageOf;
using cmis_memory::BareModule;
using cmis_memory::FlatModule;
using cmis_memory::FullModule;
using cmis_memory::Memory;

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(CmisJson, ObjectsWithoutAnyValueAreNull) {
  const std::string json = ModuleToJson(FlatModule().Decode(), "flat");
  EXPECT_TRUE(Has(json, "\"attenuation_db\":null},\"encoding\":null"));
  EXPECT_TRUE(Has(json, ",\"tuning\":null,\"diagnostics\":null,\"applications\":["));
  EXPECT_TRUE(Has(json, ",\"data_path\":null,\"tuning\":null,\"diagnostics\":null}"));
}

TEST(CmisJson, ObjectsWithAnyValueAreWhole) {
  Memory memory = FullModule();
  memory.Put(Page::k11, 206, {0x12});
  const std::string json = ModuleToJson(memory.Decode(), "full");
  EXPECT_TRUE(Has(json, "\"attenuation_db\":null}"));
  EXPECT_TRUE(Has(json, "\"tuning\":{\"grid_3p125ghz_lowest_channel\":0,"));
  EXPECT_TRUE(Has(json, "\"data_path\":{\"rx_output_valid\":false,"));
  EXPECT_TRUE(Has(json, "\"application\":1,\"first_lane\":2,\"explicit_control\":false,"));
  EXPECT_TRUE(Has(json, "\"grid\":{\"code\":0,\"name\":\"3.125 GHz\"}"));
  EXPECT_TRUE(Has(json, "\"host_generator_pattern\":{\"code\":0,\"name\":\"PRBS31Q\"}"));
  EXPECT_TRUE(Has(json, "\"config_status\":{\"code\":0,\"name\":\"ConfigUndefined\"}"));
}

TEST(CmisJson, CopperHasItsAttenuationByFrequency) {
  Memory memory = FlatModule();
  memory.Put(Page::k00, 204, {5, 6, 11, 0});
  EXPECT_TRUE(Has(ModuleToJson(memory.Decode(), "dac"),
                  "\"attenuation_db\":{\"2p5ghz\":null,\"5ghz\":5,\"7ghz\":6,\"12p9ghz\":11,"
                  "\"25p8ghz\":null,\"53p1ghz\":null}}"));
}

TEST(CmisJson, ApplicationsHaveCodesWithNames) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x50, 0xC5, 0x84, 0x01});
  EXPECT_TRUE(Has(ModuleToJson(memory.Decode(), "osfp"),
                  "\"applications\":[{\"number\":1,\"host_interface\":{\"code\":80,\"name\":"
                  "\"400GAUI-4-L C2M\"},\"media_interface\":{\"code\":197,\"name\":null},"
                  "\"host_lanes\":8,\"media_lanes\":4,\"host_assignment\":1,"
                  "\"media_assignment\":1}]"));
}

TEST(CmisJson, CountsLeftToTheInterfacesAreNull) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x50, 0xC5, 0x00, 0x01, 0x50, 0xC5, 0x80, 0x01, 0xFF});
  const std::string json = ModuleToJson(memory.Decode(), "osfp");
  EXPECT_TRUE(Has(json, "\"host_lanes\":null,\"media_lanes\":null,\"host_assignment\":1,"));
  EXPECT_TRUE(Has(json, "\"host_lanes\":8,\"media_lanes\":null,\"host_assignment\":1,"));
}

TEST(CmisJson, VdmSamplesKeepTheirTypeNumber) {
  Memory memory = FullModule();
  memory.Add(PageOf(0x20)).Put(PageOf(0x20), 128, {0x00, 15, 0x01, 100});
  memory.Add(PageOf(0x24)).Put(PageOf(0x24), 128, {0x70, 0x78, 0x80, 0x01});
  const std::string json = ModuleToJson(memory.Decode(), "vdm");
  EXPECT_TRUE(Has(json,
                  "{\"observable\":\"pre_fec_ber_current_media\",\"type\":15,"
                  "\"instance\":\"lane 1\",\"unit\":\"\",\"value\":1.2e-08,"
                  "\"state\":\"present\","));
  EXPECT_TRUE(Has(json,
                  "{\"observable\":null,\"type\":100,\"instance\":\"lane 2\",\"unit\":\"\","
                  "\"value\":32769,"));
}

std::size_t CountOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// Lane 3 alone has lost its signal, and has another equalization.
TEST(CmisJson, LanesThatDifferInASettingAreNotRepeated) {
  Memory memory = FullModule();
  memory.Put(Page::k11, 147, {0x04}).Put(Page::k11, 218, {0x05}).Word(Page::k11, 190, 10000);
  const std::string json = ModuleToJson(memory.Decode(), "lanes");
  EXPECT_EQ(CountOf(json, "\"rx_los\":true"), 1U);
  EXPECT_EQ(CountOf(json, "\"rx_los\":false"), 7U);
  EXPECT_EQ(CountOf(json, "\"tx_input_eq\":5"), 1U);
  EXPECT_EQ(CountOf(json, "\"tx_input_eq\":0"), 7U);
  const std::size_t third = json.find("{\"lane\":3,\"rx_power_mw\":{\"value\":1,");
  ASSERT_NE(third, std::string::npos);
  EXPECT_LT(third, json.find("\"rx_los\":true"));
  EXPECT_LT(json.find("\"tx_input_eq\":5"), json.find("{\"lane\":4,"));
  EXPECT_EQ(CountOf(json, "{"), CountOf(json, "}"));
}

// Lane 2 has a field that the others lack.
TEST(CmisJson, LanesWithOtherFieldsAreNotRepeated) {
  ModuleInfo info;
  info.lanes.resize(3);
  for (unsigned n = 0; n < 3; ++n) {
    info.lanes[n].number = n + 1;
    info.lanes[n].Set(LaneField::kRxLos, {FieldState::kPresent, 1});
  }
  info.lanes[1].Set(LaneField::kTxFault, {FieldState::kPresent, 0});
  info.lanes[2].Set(LaneField::kRxLos, {FieldState::kPresent, 0});
  const std::string json = ModuleToJson(info, "lanes");
  EXPECT_EQ(CountOf(json, "\"rx_los\":true"), 2U);
  EXPECT_EQ(CountOf(json, "\"rx_los\":false"), 1U);
  EXPECT_EQ(CountOf(json, "\"tx_fault\":false"), 1U);
  EXPECT_EQ(CountOf(json, "\"tx_fault\":null"), 2U);
  EXPECT_LT(json.find("{\"lane\":3,"), json.find("\"rx_los\":false"));
}

TEST(CmisJson, IsTheSameInAStream) {
  const ModuleInfo info = FullModule().Decode();
  std::ostringstream os;
  cable_info::WriteModuleJson(os, info, "a");
  EXPECT_EQ(os.str(), ModuleToJson(info, "a"));
  os.str("");
  cable_info::WriteModuleText(os, info, "a");
  EXPECT_EQ(os.str(), cable_info::ModuleToText(info, "a"));
}

}  // namespace
