#pragma once

/// \file
/// The contents of a module's memory as named values.
///
/// `Decode` decodes the bytes that were read and never fails: each value is present or has a state
/// that explains why it is not.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/alarm_level.h"
#include "cable_info/module_memory/field_set.h"
#include "cable_info/module_memory/field_state.h"
#include "cable_info/module_memory/module_fields.h"
#include "cable_info/module_memory/module_image.h"

namespace cable_info {

/// The standard that a module's memory map follows.
enum class ModuleFamily : std::uint8_t {
  kUnknown,  ///< no identifier that names a module; nothing is decoded
  kSff8636,  ///< SFF-8636, and SFF-8436 before it: QSFP, QSFP+, QSFP28
  kCmis,     ///< CMIS 3.0 to 5.x: QSFP-DD, OSFP, SFP-DD, DSFP, QSFP with CMIS
  kSff8472,  ///< SFF-8472: SFP, SFP+, SFP28
};

/// "SFF-8636", "CMIS", "SFF-8472"; empty for an unknown family.
std::string_view FamilyName(ModuleFamily family);

/// The name in JSON: "present", "not_implemented", "not_read", "not_ready".
std::string_view StateName(FieldState state);

/// A value of a module.
struct FieldValue {
  /// Whether there is a value, or why not.
  FieldState state = FieldState::kNotImplemented;
  /// A number in the unit of its field, a code, or 1 for a flag that is set; 0 for a text.
  double number = 0.0;
  /// A text in UTF-8, which may contain control characters, or the name of a code, empty for a code
  /// without one. Valid as long as the `ModuleInfo` is not changed.
  std::string_view text;

  /// True when there is a value.
  bool IsPresent() const { return state == FieldState::kPresent; }
  /// The code as a number without fraction.
  unsigned code() const { return static_cast<unsigned>(number); }
};

/// The four thresholds of a quantity, in its unit. Each may be absent.
struct Thresholds {
  std::array<double, kAlarmLevels> values = {};  ///< by `AlarmLevel`
  std::uint8_t given = 0;                        ///< bit n: level n has a threshold

  /// The threshold of a level; none when it is not given.
  std::optional<double> At(AlarmLevel level) const {
    const auto n = static_cast<std::size_t>(level);
    if ((given >> n & 1U) == 0) return std::nullopt;
    return values[n];
  }
};

/// The four flags of a quantity, as the module latched them (in SFF-8472, latching is optional).
/// Each may be unknown.
struct AlarmFlags {
  std::uint8_t known = 0;   ///< bit n: the flag of level n was read
  std::uint8_t raised = 0;  ///< bit n: it is set

  /// The flag of a level; none when it is not known.
  std::optional<bool> At(AlarmLevel level) const {
    const auto n = static_cast<unsigned>(level);
    if ((known >> n & 1U) == 0) return std::nullopt;
    return (raised >> n & 1U) != 0;
  }
};

/// A monitored quantity with its thresholds and flags.
struct Monitor {
  FieldState state = FieldState::kNotImplemented;  ///< whether there is a value, or why not
  double value = 0.0;     ///< in the unit of the quantity; only when `state` is present
  Thresholds thresholds;  ///< in the unit of the quantity
  AlarmFlags flags;       ///< known and raised flags

  /// True when there is a value.
  bool IsPresent() const { return state == FieldState::kPresent; }
};

/// An auxiliary monitor, named after what it measures: "tec_current_percent",
/// "laser_temperature_c", "vcc2_v", "aux1_custom", "custom", "tec_current_ma".
struct AuxMonitor {
  std::string_view name;  ///< one of those above
  Monitor monitor;        ///< in the unit that the name states
};

/// The value of a lane: a number, a code, or a flag (0 or 1).
struct LaneValue {
  FieldState state = FieldState::kNotImplemented;  ///< whether there is a value, or why not
  double number = 0.0;                             ///< only when `state` is present

  /// True when there is a value.
  bool IsPresent() const { return state == FieldState::kPresent; }
};

/// A lane of a module. Lanes of CMIS modules with several banks are numbered consecutively: the
/// first lane of bank 1 is lane 9.
class Lane {
 public:
  unsigned number = 1;  ///< from 1
  Monitor rx_power;     ///< mW
  Monitor tx_power;     ///< mW
  Monitor tx_bias;      ///< mA

  /// The value of a field.
  LaneValue operator[](LaneField field) const {
    const FieldState state = states_[field];
    const bool is_present = state == FieldState::kPresent;
    return {state, is_present ? numbers_[static_cast<std::size_t>(field)] : 0.0};
  }
  /// The number of a field that is present; without meaning for others.
  double NumberOf(LaneField field) const { return numbers_[static_cast<std::size_t>(field)]; }
  /// The fields whose values have a state.
  FieldSet<LaneField> FieldsIn(FieldState state) const { return states_.In(state); }
  /// Sets the value of a field.
  void Set(LaneField field, LaneValue value) {
    states_.Set(field, value.state);
    numbers_[static_cast<std::size_t>(field)] = value.number;
  }
  /// Sets why several fields have no value: a state other than present.
  void SetState(const FieldSet<LaneField>& fields, FieldState state) { states_.Set(fields, state); }

 private:
  FieldStates<LaneField> states_;
  std::array<double, kLaneFieldCount> numbers_ = {};  // only those of present fields
};

/// A code of one of the tables of SFF-8024; the name is empty for a code without one.
struct NamedCode {
  unsigned code = 0;      ///< as the module has it
  std::string_view name;  ///< valid for the life of the program
};

/// The name of the code in a field of a lane; empty for codes without a name, for fields that are
/// not codes, and without a value.
std::string_view LaneCodeName(LaneField field, const LaneValue& value);

/// An application descriptor of a CMIS module.
struct Application {
  unsigned number = 1;        ///< the AppSel code
  NamedCode host_interface;   ///< SFF-8024, table 4-5
  NamedCode media_interface;  ///< SFF-8024, tables 4-6 to 4-10, by the media type
  /// Lanes of one instance on the host side; 0: as many as its interface defines.
  unsigned host_lanes = 0;
  unsigned media_lanes = 0;  ///< the same on the media side
  /// Bit n: may start on host lane n + 1; flat modules have none from CMIS 5.4 on.
  std::optional<unsigned> host_assignment;
  std::optional<unsigned> media_assignment;  ///< bit n: may start on media lane n + 1
};

/// A versatile diagnostics monitor: an observable with its value.
struct VdmSample {
  std::string_view observable;  ///< its name; empty when it has none
  unsigned type = 0;            ///< the number that the standard gives the observable
  std::string instance;         ///< "lane 1", "laser 1", "module"
  unsigned lane = 0;            ///< the lane; 0 for the module
  std::string_view unit;        ///< empty for ratios, counts and raw numbers
  Monitor monitor;              ///< value, thresholds and flags, in the unit
};

/// A checksum of a page: the low byte of the sum of its bytes `first` to `last`.
struct PageChecksum {
  Page page = Page::kLower;   ///< the page that contains these bytes
  std::uint8_t first = 0;     ///< the first byte of the sum
  std::uint8_t last = 0;      ///< the last byte of the sum
  std::uint8_t stored = 0;    ///< the sum that the module stores
  std::uint8_t computed = 0;  ///< the sum of the bytes

  /// True when the module stores the sum of its bytes.
  bool Matches() const { return stored == computed; }
};

/// The contents of a module's memory. Fields that the family of the module does not have are not
/// implemented.
class ModuleInfo {
 public:
  /// Of unknown family, with no field implemented.
  ModuleInfo() = default;

  ModuleFamily family = ModuleFamily::kUnknown;  ///< the standard of the memory map
  Monitor temperature;                           ///< degrees Celsius
  Monitor voltage;                               ///< volts
  std::vector<AuxMonitor> aux;            ///< the auxiliary monitors that the family can have
  std::vector<Lane> lanes;                ///< lanes that the module has, lowest first
  std::vector<Application> applications;  ///< of CMIS modules, in the order of their numbers
  /// VDM samples of CMIS modules, parameters of SFF-8636 (page 20h), in the order in which the
  /// module describes them.
  std::vector<VdmSample> vdm;
  std::vector<std::string_view> compliance;        ///< the standards that the module follows
  std::vector<std::string_view> supported_speeds;  ///< of InfiniBand: "SDR" ... "XDR", lowest first
  std::vector<std::string_view> options;           ///< the names of implemented options
  std::vector<PageChecksum> checksums;             ///< those whose bytes were all read
  std::vector<Page> pages_read;       ///< pages with at least one known byte, lower page first
  std::vector<std::string> warnings;  ///< inconsistencies and problems, one sentence each

  /// The value of a field.
  FieldValue operator[](Field field) const;
  /// Whether a field has a value, or why not.
  FieldState StateOf(Field field) const { return states_[field]; }
  /// The fields that have a state.
  FieldSet<Field> FieldsIn(FieldState state) const { return states_.In(state); }
  /// The value of the field with a key such as "identity.vendor"; none for an unknown key.
  std::optional<FieldValue> Find(std::string_view key) const;

  /// \name For decoders
  /// @{

  /// Removes everything; keeps the allocated memory.
  void Clear();
  /// Why a field has no value.
  void SetState(Field field, FieldState state);
  /// A number in the unit of the field, or 0 or 1 for a flag; the field is present.
  void SetNumber(Field field, double number);
  /// A code and its name in a code table; the characters of `name` must outlive this object.
  void SetCode(Field field, unsigned code, std::string_view name);
  /// A text whose bytes are the code points of the same numbers.
  void SetText(Field field, std::string_view latin1);
  /// @}

 private:
  // The value of a present field; without meaning for others.
  struct Slot {
    double number = 0.0;
    const char* name = nullptr;  // of a code, or null for a text, which begins in texts_
    std::uint32_t begin = 0;     // at this character
    std::uint32_t size = 0;      // of the name or the text
  };

  Slot& Present(Field field) {
    states_.Set(field, FieldState::kPresent);
    return slots_[static_cast<std::size_t>(field)];
  }

  FieldStates<Field> states_;
  std::array<Slot, kFieldCount> slots_;
  std::string texts_;
};

/// Decodes the known bytes of a module's memory. Never fails: an image that is not the memory of a
/// module gives a `ModuleInfo` of unknown family with a warning that states the reason.
ModuleInfo Decode(const ModuleImage& image);
/// The same into `info`, whose memory is reused.
void Decode(const ModuleImage& image, ModuleInfo& info);

}  // namespace cable_info
