// The effects of advertising bits and of the revision of CMIS modules.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/module_info.h"
#include "cmis_cases.h"
#include "cmis_memory.h"

namespace {

using cable_info::AuxMonitor;
using cable_info::FieldState;
using cable_info::Lane;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::PageOf;
using cmis_cases::Differences;
using cmis_memory::FullModule;
using cmis_memory::Memory;

constexpr Page kLower = Page::kLower;
constexpr Page kPage0D = PageOf(0x0D);
constexpr Page kPage2F = PageOf(0x2F);

// A module in which everything that it advertises has a value: numbers of which 0 means that
// nothing is given are 1 or more.
Memory RichModule() {
  Memory memory = FullModule();
  memory.Put(kLower, 39, {1, 1}).Put(Page::k01, 128, {1, 1, 1, 1, 1, 1, 1, 1, 1});
  memory.Put(Page::k00, 129, {'a'}).Put(Page::k00, 145, {1}).Put(Page::k00, 148, {'a'});
  memory.Put(Page::k00, 164, {'a'}).Put(Page::k00, 166, {'a'}).Put(Page::k00, 182, {'a'});
  memory.Put(Page::k00, 188, {'a', 'a', 'a'}).Put(Page::k00, 202, {1, 7, 1, 1, 1, 1, 1});
  memory.Put(Page::k00, 212, {10});  // copper, to have attenuations
  memory.Put(Page::k01, 138, {1, 1, 1, 1}).Put(Page::k01, 143, {1});
  memory.Put(Page::k01, 146, {1, 1, 1, 1, 1}).Put(Page::k01, 152, {1});
  memory.Put(PageOf(0x0C), 128, {1});
  memory.Put(kPage0D, 148, {1, 0, 0, 0, 'a'}).Put(kPage0D, 184, {1, 0, 0, 0, 'a'});
  memory.Put(kPage0D, 220, {1, 0, 0, 0, 'a'});
  memory.Put(Page::k11, 240, {0x11}).Put(Page::k11, 248, {0x11});
  memory.Put(Page::k12, 168, {1});
  memory.Put(Page::k13, 132, {1, 1, 1, 1, 1, 1, 1, 1});
  memory.Put(kPage2F, 129, {1}).Put(PageOf(0x62), 128, {1});
  return memory;
}

// The keys of the fields that have a state; lane fields are those of lane 1.
std::set<std::string> KeysOf(const ModuleInfo& info, FieldState expected) {
  std::set<std::string> keys;
  const auto add = [&keys, expected](FieldState state, const std::string& key) {
    if (state == expected) keys.insert(key);
  };
  for (const auto& field : cable_info::ModuleFields()) {
    add(info.StateOf(field.field), std::string(field.key));
  }
  const Lane& lane = info.lanes.at(0);
  for (const auto& field : cable_info::LaneFields()) {
    add(lane[field.field].state, "lanes." + std::string(field.key));
  }
  add(info.temperature.state, "monitors.temperature_c");
  add(info.voltage.state, "monitors.voltage_v");
  add(lane.rx_power.state, "lanes.rx_power_mw");
  add(lane.tx_power.state, "lanes.tx_power_mw");
  add(lane.tx_bias.state, "lanes.tx_bias_ma");
  return keys;
}

std::set<std::string> NotImplemented(const ModuleInfo& info) {
  return KeysOf(info, FieldState::kNotImplemented);
}

// The keys of which some end with "*", which stands for any end.
std::set<std::string> Expanded(const std::vector<std::string>& patterns,
                               const std::set<std::string>& all) {
  std::set<std::string> keys;
  for (const std::string& pattern : patterns) {
    if (pattern.back() != '*') {
      keys.insert(pattern);
      continue;
    }
    const std::string_view begin = std::string_view(pattern).substr(0, pattern.size() - 1);
    for (const std::string& key : all) {
      if (std::string_view(key).substr(0, begin.size()) == begin) keys.insert(key);
    }
  }
  return keys;
}

// The keys of the fields that `value` in the byte makes not implemented.
std::set<std::string> LostWithout(Page page, std::size_t byte, unsigned value) {
  Memory memory = RichModule();
  std::set<std::string> before = NotImplemented(memory.Decode());
  std::set<std::string> after = NotImplemented(memory.Put(page, byte, {value}).Decode());
  for (const std::string& key : before) EXPECT_EQ(after.count(key), 1U) << key;
  for (const std::string& key : before) after.erase(key);
  return after;
}

std::set<std::string> AllKeys() {
  std::set<std::string> keys;
  for (const auto& field : cable_info::ModuleFields()) keys.insert(std::string(field.key));
  for (const auto& field : cable_info::LaneFields()) {
    keys.insert("lanes." + std::string(field.key));
  }
  for (const std::string& key : NotImplemented(RichModule().Decode())) keys.erase(key);
  return keys;
}

// All lane fields of tuning but the thresholds of page 62h.
const std::vector<std::string> kFieldsOfPage12 = {
    "lanes.tuning.grid",         "lanes.tuning.fine_*",    "lanes.tuning.channel*",
    "lanes.tuning.laser_*",      "lanes.tuning.target_*",  "lanes.tuning.tuning_*",
    "lanes.tuning.wavelength_*", "lanes.tuning.invalid_*", "lanes.tuning.flags_*",
    "lanes.tuning.relative_*"};

std::vector<std::string> Joined(std::vector<std::string> a, const std::vector<std::string>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// Bits of a byte that are cleared, and the fields that are then not implemented.
struct Bits {
  Page page;
  std::size_t byte;
  unsigned mask;
  std::vector<std::string> governed;
};

// clang-format off
std::vector<Bits> Page01() {
  constexpr Page kPage = Page::k01;
  return {
      {kPage, 142, 0x80, {"lanes.data_path.network_path_*"}},
      {kPage, 142, 0x40, {"details.vdm_*"}},
      {kPage, 142, 0x20, {"diagnostics.*", "lanes.diagnostics.*"}},
      {kPage, 142, 0x1C, {}},  // pages of which no field is decoded, or samples
      {kPage, 145, 0x10, {}},
      {kPage, 145, 0x08, {"lanes.details.rx_latency_ns", "lanes.details.tx_latency_ns"}},
      {kPage, 155, 0x80, {}},
      {kPage, 155, 0x40, Joined({"tuning.*"}, kFieldsOfPage12)},
      {kPage, 155, 0x10, {"details.tx_squelch"}},  // not 3
      {kPage, 155, 0x20, {"details.tx_squelch"}},
      {kPage, 155, 0x08, {"lanes.details.tx_force_squelch"}},
      {kPage, 155, 0x04, {"lanes.details.tx_squelch_disable"}},
      {kPage, 155, 0x02, {"lanes.controls.tx_disable"}},
      {kPage, 155, 0x01, {"lanes.details.tx_polarity_flip"}},
      {kPage, 156, 0x80, {"details.bank_broadcast"}},
      {kPage, 156, 0x04, {"lanes.details.rx_squelch_disable"}},
      {kPage, 156, 0x02, {"lanes.controls.rx_output_disable"}},
      {kPage, 156, 0x01, {"lanes.details.rx_polarity_flip"}},
      {kPage, 157, 0x08, {"lanes.flags.tx_adaptive_eq_fault", "lanes.details.tx_adaptive_eq_fault_mask"}},
      {kPage, 157, 0x04, {"lanes.flags.tx_lol", "lanes.details.tx_lol_mask"}},
      {kPage, 157, 0x02, {"lanes.flags.tx_los", "lanes.details.tx_los_mask"}},
      {kPage, 157, 0x01, {"lanes.flags.tx_fault", "lanes.details.tx_fault_mask"}},
      {kPage, 158, 0x04, {"lanes.flags.rx_lol", "lanes.details.rx_lol_mask"}},
      {kPage, 158, 0x02, {"lanes.flags.rx_los", "lanes.details.rx_los_mask"}},
      {kPage, 159, 0x20, {"details.custom_monitor_mask"}},
      {kPage, 159, 0x10, {"details.aux3_mask"}},
      {kPage, 159, 0x08, {"details.aux2_mask"}},
      {kPage, 159, 0x04, {"details.aux1_mask"}},
      {kPage, 159, 0x02, {"monitors.voltage_v", "details.voltage_mask"}},
      {kPage, 159, 0x01, {"monitors.temperature_c", "details.temperature_mask"}},
      {kPage, 160, 0x04, {"lanes.rx_power_mw", "lanes.details.rx_power_mask"}},
      {kPage, 160, 0x02, {"lanes.tx_power_mw", "lanes.details.tx_power_mask"}},
      {kPage, 160, 0x01, {"lanes.tx_bias_ma", "lanes.details.tx_bias_mask", "details.tx_bias_multiplier"}},
      {kPage, 161, 0x60, {"lanes.data_path.tx_eq_recalled_buffer"}},
      {kPage, 161, 0x20, {}},  // one buffer less
      {kPage, 161, 0x10, {"lanes.details.tx_adaptive_eq_freeze"}},
      {kPage, 161, 0x08, {"lanes.details.tx_adaptive_eq"}},
      {kPage, 161, 0x04, {"lanes.controls.tx_input_eq", "details.max_tx_input_eq_db"}},
      {kPage, 161, 0x02, {}},
      {kPage, 161, 0x01, {"lanes.controls.tx_cdr"}},
      {kPage, 162, 0xA0, {}},
      {kPage, 162, 0x40, {"lanes.data_path.provisioned_*"}},
      {kPage, 162, 0x10, {"lanes.controls.rx_post_cursor", "details.max_rx_post_cursor"}},
      {kPage, 162, 0x08, {"lanes.controls.rx_pre_cursor", "details.max_rx_pre_cursor"}},
      {kPage, 162, 0x04, {"lanes.controls.rx_amplitude", "details.rx_amplitudes"}},
      {kPage, 162, 0x02, {}},
      {kPage, 162, 0x01, {"lanes.controls.rx_cdr"}},
      {kPage, 163, 0x80, {"details.cdb2_*"}},  // one instance
      {kPage, 163, 0xC0, {"details.cdb1_*", "details.cdb2_*", "details.cdb_epl_pages", "details.cdb_access_bytes"}},
      {kPage, 163, 0x3F, {}},
      {kPage, 173, 0x80, {"details.pages_supported"}},
      {kPage, 173, 0x40, {"details.firmware_*"}},
      {kPage, 174, 0x80, {"lanes.details.tx_inverted", "lanes.details.rx_inverted"}},
      {kPage, 174, 0x40, {"lanes.data_path.tx_host_acquisitions", "lanes.data_path.rx_media_acquisitions", "lanes.data_path.tx_acquisitions", "lanes.data_path.rx_acquisitions"}},
      {kPage, 174, 0x20, {"lanes.tuning.power_high_alarm_dbm", "lanes.tuning.power_low_alarm_dbm", "lanes.tuning.power_high_warning_dbm", "lanes.tuning.power_low_warning_dbm"}},
      {kPage, 175, 0x01, {"lanes.data_path.application_block"}},
      {kPage, 251, 0x08, {"details.password_result"}},  // not 2
      {kPage, 251, 0xA2, {}},
      {kPage, 252, 0x80, {"details.host_lane_switching", "details.host_lane_switching_time", "lanes.data_path.switched_host_lane"}},
      {kPage, 252, 0x40, {}},
      {kPage, 252, 0x20, {"details.media_lane_switching", "details.media_lane_switching_time", "lanes.data_path.switched_media_lane"}},
  };
}

std::vector<Bits> OtherPages() {
  return {
      {kLower, 2, 0x40, {"details.auto_commissioning"}},
      {kLower, 62, 0x80, {"details.low_power_restrictions"}},
      {Page::k00, 212, 0x08, {"media.attenuation_db.*"}},  // 2 is a laser
      {Page::k04, 128, 0x80, {"tuning.grid_75ghz_*"}},
      {Page::k04, 128, 0x40, {"tuning.grid_33ghz_*"}},
      {Page::k04, 128, 0x20, {"tuning.grid_100ghz_*"}},
      {Page::k04, 128, 0x10, {"tuning.grid_50ghz_*"}},
      {Page::k04, 128, 0x08, {"tuning.grid_25ghz_*"}},
      {Page::k04, 128, 0x04, {"tuning.grid_12p5ghz_*"}},
      {Page::k04, 128, 0x02, {"tuning.grid_6p25ghz_*"}},
      {Page::k04, 128, 0x01, {"tuning.grid_3p125ghz_*"}},
      {Page::k04, 129, 0x80, {"tuning.fine_tuning_*", "lanes.tuning.fine_tuning", "lanes.tuning.fine_tuning_offset_ghz"}},
      {Page::k04, 129, 0x40, {"tuning.grid_150ghz_*"}},
      {Page::k04, 129, 0x20, {"tuning.grid_300ghz_*"}},
      {Page::k04, 196, 0x80, {"tuning.output_power_*", "lanes.tuning.target_power_dbm"}},
      {Page::k04, 196, 0x40, {"lanes.tuning.relative_*"}},
      {kPage0D, 128, 0x01, {"details.firmware_a*"}},
      {kPage0D, 128, 0x02, {"details.firmware_b*"}},
      {kPage0D, 128, 0x04, {"details.firmware_fixed*"}},
      {kPage0D, 128, 0x88, {}},
      {Page::k13, 128, 0x01, {"lanes.diagnostics.media_output_loopback"}},
      {Page::k13, 128, 0x02, {"lanes.diagnostics.media_input_loopback"}},
      {Page::k13, 128, 0x04, {"lanes.diagnostics.host_output_loopback"}},
      {Page::k13, 128, 0x08, {"lanes.diagnostics.host_input_loopback"}},
      {Page::k13, 128, 0x70, {}},
      {Page::k13, 129, 0xC0, {"diagnostics.gate_time", "lanes.diagnostics.host_gating_*", "lanes.diagnostics.media_gating_*"}},
      {Page::k13, 129, 0x28, {}},
      {Page::k13, 129, 0x10, {"diagnostics.update_interval"}},
      {Page::k13, 129, 0x04, {"diagnostics.auto_restart"}},
      {Page::k13, 130, 0xC0, {}},
      {Page::k13, 130, 0x20, {"lanes.diagnostics.media_snr_db"}},
      {Page::k13, 130, 0x10, {"lanes.diagnostics.host_snr_db"}},
      {Page::k13, 130, 0x02, {"lanes.diagnostics.host_errors", "lanes.diagnostics.host_bits", "lanes.diagnostics.host_sync_lost", "lanes.diagnostics.media_errors", "lanes.diagnostics.media_bits", "lanes.diagnostics.media_sync_lost"}},
      {Page::k13, 130, 0x01, {"lanes.diagnostics.host_ber", "lanes.diagnostics.media_ber"}},
      {Page::k13, 131, 0xFF, {}},
      {Page::k13, 141, 0x80, {"lanes.diagnostics.media_checker_swapped"}},
      {Page::k13, 141, 0x40, {"lanes.diagnostics.media_checker_inverted"}},
      {Page::k13, 141, 0x20, {"lanes.diagnostics.media_generator_swapped"}},
      {Page::k13, 141, 0x10, {"lanes.diagnostics.media_generator_inverted"}},
      {Page::k13, 141, 0x08, {"lanes.diagnostics.host_checker_swapped"}},
      {Page::k13, 141, 0x04, {"lanes.diagnostics.host_checker_inverted"}},
      {Page::k13, 141, 0x02, {"lanes.diagnostics.host_generator_swapped"}},
      {Page::k13, 141, 0x01, {"lanes.diagnostics.host_generator_inverted"}},
      {Page::k13, 142, 0xFF, {}},
      {kPage2F, 128, 0x08, {"details.vdm_duty_cycle_percent"}},
      {kPage2F, 128, 0x04, {"details.vdm_power_saving"}},
  };
}

// clang-format on

class CmisAdvertisements : public testing::TestWithParam<std::vector<Bits> (*)()> {};

TEST_P(CmisAdvertisements, GovernTheirFieldsAndNoOthers) {
  const std::set<std::string> all = AllKeys();
  for (const Bits& bits : GetParam()()) {
    SCOPED_TRACE(cable_info::ShortPageName(bits.page) + ' ' + std::to_string(bits.byte) + ", " +
                 std::to_string(bits.mask));
    const unsigned value = RichModule().image().At(bits.page, bits.byte).value_or(0);
    EXPECT_EQ(Differences(LostWithout(bits.page, bits.byte, value & ~bits.mask),
                          Expanded(bits.governed, all)),
              std::vector<std::string>());
  }
}
INSTANTIATE_TEST_SUITE_P(Pages, CmisAdvertisements, testing::Values(Page01, OtherPages));

// A module with one bank that advertises everything has all fields of the map, except those of
// other banks.
TEST(CmisAdvertised, EverythingIsImplemented) {
  const cable_info::module_memory::MemoryMap& map = cable_info::module_memory::CmisMap();
  std::set<std::string> of_map;
  for (const auto& line : map.fields) {
    of_map.insert(std::string(cable_info::DescribeField(line.field).key));
  }
  for (const auto& line : map.lane_fields) {
    of_map.insert("lanes." + std::string(cable_info::DescribeField(line.field).key));
  }
  std::vector<std::string> absent;
  for (const std::string& key : NotImplemented(RichModule().Decode())) {
    if (of_map.count(key) != 0) absent.push_back(key);
  }
  EXPECT_EQ(absent,
            (std::vector<std::string>{"details.flag_summary_bank1", "details.flag_summary_bank2",
                                      "details.flag_summary_bank3"}));
}

// A missing page, and the fields that are then not read.
struct MissingPage {
  unsigned page;
  std::vector<std::string> fields;
};

// Page 14h: without the results, which need another selector than 0.
std::vector<MissingPage> MissingPages() {
  return {
      {0x0C, {"details.pages_supported"}},
      {0x10,
       {"lanes.data_path.deinit",
        "lanes.details.tx_polarity_flip",
        "lanes.controls.tx_disable",
        "lanes.details.tx_squelch_disable",
        "lanes.details.tx_force_squelch",
        "lanes.details.tx_adaptive_eq_freeze",
        "lanes.details.rx_polarity_flip",
        "lanes.controls.rx_output_disable",
        "lanes.details.rx_squelch_disable",
        "lanes.data_path.state_mask",
        "lanes.data_path.rx_output_status_mask",
        "lanes.details.tx_fault_mask",
        "lanes.details.tx_los_mask",
        "lanes.details.tx_lol_mask",
        "lanes.details.tx_adaptive_eq_fault_mask",
        "lanes.details.tx_power_mask",
        "lanes.details.tx_bias_mask",
        "lanes.details.rx_power_mask",
        "lanes.details.rx_los_mask",
        "lanes.details.rx_lol_mask"}},
      {0x11,
       {"lanes.data_path_state",
        "lanes.flags.*",
        "lanes.rx_power_mw",
        "lanes.tx_power_mw",
        "lanes.tx_bias_ma",
        "lanes.controls.tx_cdr",
        "lanes.controls.rx_cdr",
        "lanes.controls.tx_input_eq",
        "lanes.controls.rx_pre_cursor",
        "lanes.controls.rx_post_cursor",
        "lanes.controls.rx_amplitude",
        "lanes.details.tx_adaptive_eq",
        "lanes.details.tx_wavelength_number",
        "lanes.details.tx_fiber_number",
        "lanes.details.rx_wavelength_number",
        "lanes.details.rx_fiber_number",
        "lanes.data_path.rx_output_valid",
        "lanes.data_path.tx_output_valid",
        "lanes.data_path.rx_output_status_changed",
        "lanes.data_path.state_changed",
        "lanes.data_path.config_status",
        "lanes.data_path.application",
        "lanes.data_path.first_lane",
        "lanes.data_path.explicit_control",
        "lanes.data_path.tx_eq_recalled_buffer",
        "lanes.data_path.init_pending"}},
      {0x12, kFieldsOfPage12},
      {0x14,
       {"diagnostics.selector", "diagnostics.reference_clock_lost",
        "lanes.diagnostics.host_generator_lol", "lanes.diagnostics.host_checker_lol",
        "lanes.diagnostics.host_gating_complete", "lanes.diagnostics.media_generator_lol",
        "lanes.diagnostics.media_checker_lol", "lanes.diagnostics.media_gating_complete"}},
      {0x15, {"lanes.details.rx_latency_ns", "lanes.details.tx_latency_ns"}},
      {0x16,
       {"lanes.data_path.network_path_state", "lanes.data_path.network_path_deinit",
        "lanes.data_path.network_path_init_pending"}},
      {0x17,
       {"lanes.data_path.network_path_state_changed", "lanes.data_path.network_path_state_mask"}},
      {0x19, {"lanes.data_path.provisioned_*", "lanes.data_path.application_block"}},
      {0x1D,
       {"details.host_lane_switching", "details.host_lane_switching_time",
        "lanes.data_path.switched_host_lane"}},
      {0x60, {"lanes.details.tx_inverted", "lanes.details.rx_inverted"}},
      {0x61,
       {"lanes.data_path.tx_host_acquisitions", "lanes.data_path.rx_media_acquisitions",
        "lanes.data_path.tx_acquisitions", "lanes.data_path.rx_acquisitions"}},
      {0x62,
       {"lanes.tuning.power_high_alarm_dbm", "lanes.tuning.power_low_alarm_dbm",
        "lanes.tuning.power_high_warning_dbm", "lanes.tuning.power_low_warning_dbm"}},
      {0x6D,
       {"details.media_lane_switching", "details.media_lane_switching_time",
        "lanes.data_path.switched_media_lane"}},
  };
}

TEST(CmisAdvertised, FieldsOfAMissingPageAreNotRead) {
  const std::set<std::string> all = AllKeys();
  const std::set<std::string> before = KeysOf(RichModule().Decode(), FieldState::kNotRead);
  for (const MissingPage& missing : MissingPages()) {
    SCOPED_TRACE(missing.page);
    Memory memory = RichModule();
    const ModuleInfo info = memory.Drop(PageOf(static_cast<std::uint8_t>(missing.page))).Decode();
    std::set<std::string> not_read = KeysOf(info, FieldState::kNotRead);
    for (const std::string& key : before) not_read.erase(key);
    EXPECT_EQ(Differences(not_read, Expanded(missing.fields, all)), std::vector<std::string>());
    EXPECT_EQ(NotImplemented(info), NotImplemented(RichModule().Decode()));
  }
}

TEST(CmisAdvertised, ObservablesNameTheAuxiliaryMonitors) {
  const auto names = [](unsigned observables, unsigned monitors) {
    Memory memory = RichModule();
    memory.Put(Page::k01, 145, {observables}).Put(Page::k01, 159, {monitors});
    std::string text;
    for (const AuxMonitor& aux : memory.Decode().aux) text += std::string(aux.name) + ' ';
    return text;
  };
  EXPECT_EQ(names(0, 0x3F), "aux1_custom laser_temperature_c laser_temperature_c custom ");
  EXPECT_EQ(names(1, 0x3F), "tec_current_percent laser_temperature_c laser_temperature_c custom ");
  EXPECT_EQ(names(2, 0x3F), "aux1_custom tec_current_percent laser_temperature_c custom ");
  EXPECT_EQ(names(4, 0x3F), "aux1_custom laser_temperature_c vcc2_v custom ");
  EXPECT_EQ(names(7, 0x3B), "tec_current_percent vcc2_v custom ");
  EXPECT_EQ(names(7, 0x37), "tec_current_percent vcc2_v custom ");
  EXPECT_EQ(names(7, 0x2F), "tec_current_percent tec_current_percent custom ");
  EXPECT_EQ(names(7, 0x1F), "tec_current_percent tec_current_percent vcc2_v ");
}

// A revision, and the fields that a module of the previous one does not have.
struct Revision {
  unsigned before;
  unsigned from;
  std::vector<std::string> added;
};

TEST(CmisRevisions, AddTheirFieldsAndNoOthers) {
  const std::vector<Revision> revisions = {
      {0x53,
       0x54,
       {"details.abnormal_firmware",
        "details.abnormal_firmware_mask",
        "details.heatsink",
        "details.pages_supported",
        "details.firmware_*",
        "lanes.details.tx_default_inverted",
        "lanes.details.rx_default_inverted",
        "lanes.details.tx_inverted",
        "lanes.details.rx_inverted",
        "tuning.grid_300ghz_*",
        "lanes.tuning.relative_*",
        "lanes.tuning.power_*",
        "lanes.data_path.network_path_*",
        "details.vdm_duty_cycle_percent",
        "details.media_lane_switching*",
        "lanes.data_path.switched_media_lane",
        "lanes.data_path.tx_host_acquisitions",
        "lanes.data_path.rx_media_acquisitions",
        "lanes.data_path.tx_acquisitions",
        "lanes.data_path.rx_acquisitions"}},
      {0x52,
       0x53,
       {"details.auto_commissioning", "details.state_machines", "details.function_type",
        "details.module_subtype", "details.fiber_face", "details.low_power_restrictions",
        "details.password_result", "media.attenuation_db.53p1ghz", "details.page_change_time_ms",
        "details.nad_banks", "details.scratch_pad", "details.password_entry",
        "details.password_entry_result", "details.full_page_read", "tuning.grid_150ghz_*",
        "details.vdm_power_saving", "details.host_lane_switching*",
        "lanes.data_path.switched_host_lane", "lanes.data_path.application_block"}},
      {0x51, 0x52, {"details.bank_broadcast", "lanes.data_path.provisioned_*"}},
      {0x50, 0x51, {}},
      {0x4F,
       0x50,
       {"details.stepped_config_only", "details.fault_cause", "lanes.data_path.rx_output_valid",
        "lanes.data_path.tx_output_valid", "lanes.data_path.rx_output_status_changed",
        "lanes.data_path.rx_output_status_mask", "lanes.data_path.init_pending",
        "lanes.details.rx_latency_ns", "lanes.details.tx_latency_ns"}},
      {0x40, 0x4F, {}},
      {0x30,
       0x40,
       {"details.low_power_pin_enabled", "details.cdb1_*", "details.cdb2_*",
        "details.cdb_epl_pages", "details.cdb_access_bytes", "tuning.*", "lanes.tuning.*",
        "diagnostics.*", "lanes.diagnostics.*", "details.vdm_*"}},
  };
  const std::set<std::string> all = AllKeys();
  std::set<std::string> absent;  // in all older revisions
  for (const Revision& revision : revisions) {
    SCOPED_TRACE(revision.from);
    Memory memory = RichModule();
    std::set<std::string> without =
        NotImplemented(memory.Put(kLower, 1, {revision.before}).Decode());
    for (const std::string& key : NotImplemented(memory.Put(kLower, 1, {revision.from}).Decode())) {
      without.erase(key);
    }
    std::set<std::string> expected = Expanded(revision.added, all);
    for (const std::string& key : absent) expected.erase(key);
    EXPECT_EQ(Differences(without, expected), std::vector<std::string>());
    absent.insert(expected.begin(), expected.end());
  }
}

// The options whose bits are set in a module of a revision.
std::set<std::string> OptionsOf(unsigned revision) {
  const ModuleInfo info = RichModule().Put(kLower, 1, {revision}).Decode();
  return {info.options.begin(), info.options.end()};
}

TEST(CmisRevisions, AddTheirOptionsAndNoOthers) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(Differences(OptionsOf(0x54), OptionsOf(0x53)),
            (Names{"Acquisition counters page 61h", "Firmware download by CDB",
                   "Firmware management page 0Dh", "Lane extensions page 60h",
                   "Lane power thresholds page 62h", "Media lane switching", "Page map 0Ch",
                   "Power thresholds relative to the target", "Traffic with the fixed firmware",
                   "VDM duty cycle"}));
  EXPECT_EQ(Differences(OptionsOf(0x53), OptionsOf(0x52)),
            (Names{"Coherent pages", "Host lane switching", "Link training", "VDM power saving",
                   "Versatile control sets"}));
  EXPECT_EQ(Differences(OptionsOf(0x52), OptionsOf(0x51)),
            (Names{"Bank broadcast", "Page 05h", "Unidirectional reconfiguration"}));
  EXPECT_EQ(Differences(OptionsOf(0x51), OptionsOf(0x50)), (Names{"Network path pages"}));
  EXPECT_EQ(Differences(OptionsOf(0x50), OptionsOf(0x4F)), (Names{"Timing page 15h", "ePPS"}));
}

struct Option {
  Page page;
  std::size_t byte;
  std::vector<std::string_view> names;  // of bits 7 to 0; empty for none
};

// clang-format off
// Each option by its bit alone, in a module that advertises its page.
std::vector<Option> Options() {
  constexpr Page k01 = Page::k01;
  constexpr Page k13 = Page::k13;
  return {
      {k01, 142, {"Network path pages", "Versatile diagnostics monitoring (VDM)", "Diagnostic pages 13h, 14h", "Coherent pages", "Page 05h", "User page 03h", "", ""}},
      {k01, 145, {"", "", "", "ePPS", "Timing page 15h", "", "", ""}},
      {k01, 151, {"", "", "", "", "RX LOS on average power", "Fast RX LOS", "Fast TX disable", "TX disable of the whole module"}},
      {k01, 155, {"Wavelength control", "Tunable transmitter", "", "", "TX forced squelch", "TX squelch disable", "TX disable", "TX polarity flip"}},
      {k01, 156, {"Bank broadcast", "", "", "", "", "RX squelch disable", "RX output disable", "RX polarity flip"}},
      {k01, 157, {"", "", "", "", "TX adaptive equalization fault flag", "TX LOL flag", "TX LOS flag", "TX fault flag"}},
      {k01, 158, {"", "", "", "", "", "RX LOL flag", "RX LOS flag", ""}},
      {k01, 159, {"", "", "Custom monitor", "Auxiliary monitor 3", "Auxiliary monitor 2", "Auxiliary monitor 1", "Supply voltage monitor", "Temperature monitor"}},
      {k01, 160, {"", "", "", "", "", "RX power monitor", "TX power monitor", "TX bias monitor"}},
      {k01, 161, {"", "", "", "TX adaptive equalization freeze", "TX adaptive equalization", "TX input equalization control", "TX CDR bypass", "TX CDR"}},
      {k01, 162, {"Versatile control sets", "Unidirectional reconfiguration", "Staged control set 1", "RX post-cursor control", "RX pre-cursor control", "RX amplitude control", "RX CDR bypass", "RX CDR"}},
      {k01, 163, {"", "", "CDB in the background", "CDB automatic paging", "", "", "", ""}},
      {k01, 173, {"Page map 0Ch", "Firmware management page 0Dh", "", "", "", "", "", ""}},
      {k01, 174, {"Lane extensions page 60h", "Acquisition counters page 61h", "Lane power thresholds page 62h", "", "", "", "", ""}},
      {k01, 252, {"Host lane switching", "Link training", "Media lane switching", "", "", "", "", ""}},
      {Page::k04, 196, {"Output power per lane", "Power thresholds relative to the target", "", "", "", "", "", ""}},
      {kPage0D, 128, {"Firmware download by CDB", "", "", "", "Traffic with the fixed firmware", "", "", ""}},
      {k13, 128, {"", "Host and media side loopback at once", "Loopback per media lane", "Loopback per host lane", "Host side input loopback", "Host side output loopback", "Media side input loopback", "Media side output loopback"}},
      {k13, 129, {"", "", "Gated diagnostics results", "Periodic updates of diagnostics", "Diagnostics timers per lane", "Automatic restart of diagnostics", "", ""}},
      {k13, 130, {"Media side FEC error information", "Host side FEC error information", "Media side SNR", "Host side SNR", "", "", "Bit and error counters", "Bit error ratio"}},
      {k13, 131, {"Media side generator before FEC", "Media side generator after FEC", "Media side checker before FEC", "Media side checker after FEC", "Host side generator before FEC", "Host side generator after FEC", "Host side checker before FEC", "Host side checker after FEC"}},
      {k13, 140, {"", "", "Reference clock for patterns", "", "", "", "", ""}},
      {k13, 141, {"Media side checker swap", "Media side checker inversion", "Media side generator swap", "Media side generator inversion", "Host side checker swap", "Host side checker inversion", "Host side generator swap", "Host side generator inversion"}},
      {k13, 142, {"Media side checker enable per lane", "Media side checker pattern per lane", "Media side generator enable per lane", "Media side generator pattern per lane", "Host side checker enable per lane", "Host side checker pattern per lane", "Host side generator enable per lane", "Host side generator pattern per lane"}},
      {kPage2F, 128, {"", "", "", "", "VDM duty cycle", "VDM power saving", "", ""}},
  };
}

// clang-format on

TEST(CmisOptions, EachHasItsBit) {
  std::size_t tested = 0;
  for (const Option& option : Options()) {
    const unsigned value = RichModule().image().At(option.page, option.byte).value_or(0);
    for (unsigned bit = 0; bit < 8; ++bit) {
      const std::string_view name = option.names.at(7 - bit);
      if (name.empty()) continue;
      ++tested;
      SCOPED_TRACE(name);
      Memory memory = RichModule();
      memory.Put(option.page, option.byte, {value | 1U << bit});
      const std::vector<std::string_view> with = memory.Decode().options;
      EXPECT_EQ(std::set<std::string_view>(with.begin(), with.end()).count(name), 1U);
      memory.Put(option.page, option.byte, {(value | 0xFFU) & ~(1U << bit)});
      const std::vector<std::string_view> without = memory.Decode().options;
      EXPECT_EQ(std::set<std::string_view>(without.begin(), without.end()).count(name), 0U);
    }
  }
  EXPECT_EQ(tested, cable_info::module_memory::CmisMap().options.size());
}

TEST(CmisOptions, OfPagesThatAreNotAdvertisedDoNotCount) {
  Memory memory = RichModule();
  memory.Put(Page::k01, 142, {0x00}).Put(Page::k01, 155, {0x00}).Put(Page::k01, 173, {0x00});
  for (const std::string_view name : memory.Decode().options) {
    EXPECT_NE(name, "Host side SNR");
    EXPECT_NE(name, "VDM duty cycle");
    EXPECT_NE(name, "Output power per lane");
    EXPECT_NE(name, "Firmware download by CDB");
  }
}

}  // namespace
