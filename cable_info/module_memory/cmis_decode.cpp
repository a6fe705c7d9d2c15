// The decoder of CMIS: the fields, monitors and options of the module, and the order in which its
// parts are decoded.

#include "cable_info/module_memory/cmis_decode.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/sff8024.h"

namespace cable_info::module_memory {

namespace {

// ---------------------------------------------------------------------------------------------
// Fields
// ---------------------------------------------------------------------------------------------

// 00h:202. All bits set: longer than 6300 m.
std::optional<double> CableLength(Decoding& to, unsigned raw) {
  constexpr unsigned kMore = 0xFF;
  if (raw == kMore) {
    WarnMoreThan(to, Field::kLengthCable, 6300);
    return std::nullopt;
  }
  const double metres = CableLengthOf(static_cast<std::uint8_t>(raw));
  return metres != 0 ? std::optional<double>(metres) : std::nullopt;
}

// Metres.
std::optional<double> SmfLength(Decoding& to, unsigned raw) {
  const std::optional<unsigned> metres = SmfLengthOf(to.image, raw);
  if (!metres) to.Warn("Length, SMF: multiplier 3 is not defined before CMIS 5.3");
  return metres.value_or(0) != 0 ? std::optional<double>(*metres) : std::nullopt;
}

// The names of the bits that are set in the bytes of a field, low byte and low bit first, with
// commas between them: `name_of` gives that of a bit.
template <typename NameOf>
std::string NamesOfBits(const ModuleImage& image, const MapField& line, const NameOf& name_of) {
  constexpr unsigned kBitsPerByte = 8;
  std::string names;
  for (unsigned byte = 0; byte < line.extent.bytes; ++byte) {
    const unsigned bits =
        BitsOf(image, line.page, line.byte + byte, line.extent.high, line.extent.low).value_or(0);
    for (unsigned bit = 0; bit < kBitsPerByte; ++bit) {
      if ((bits >> bit & 1U) == 0) continue;
      if (!names.empty()) names += ", ";
      names += name_of(byte * kBitsPerByte + bit);
    }
  }
  return names;
}

std::string PatternName(unsigned id) {
  const std::string_view name = kTestPatterns.Name(id);
  return name.empty() ? std::to_string(id) : std::string(name);
}

// Lower 4 to 7: pages with a raised flag in a bank; until CMIS 5.0, lanes with one.
std::string FlagSummary(const ModuleImage& image, MapField line) {
  const bool is_by_lane = IsSince(image, 0x50) == Advertised::kNo;
  if (!is_by_lane) line.extent = Bits(3, 0);
  const std::string names = NamesOfBits(image, line, [is_by_lane](unsigned bit) {
    constexpr std::string_view kPages[] = {"page 11h", "page 12h", "page 14h", "page 2Ch"};
    return is_by_lane ? "lane " + std::to_string(bit + 1) : std::string(kPages[bit]);
  });
  return names.empty() ? "none" : names;
}

// 0Dh:136.
std::string FirmwareState(const ModuleImage& image, const MapField& line) {
  const std::string names = NamesOfBits(image, line, [](unsigned bit) {
    constexpr std::string_view kStates[] = {"running", "committed", "invalid"};
    return std::string(kStates[bit]);
  });
  return names.empty() ? "not running" : names;
}

// "1.2.345" of page 0Dh; empty without firmware.
std::string FirmwareVersion(std::uint32_t raw) {
  const std::uint32_t version = raw >> 16U;
  const bool is_none = version == 0 || version == 0xFFFF;
  if (is_none) return {};
  return std::to_string(raw >> 24U) + '.' + std::to_string(version & 0xFFU) + '.' +
         std::to_string(raw & 0xFFFFU);
}

// The text that the bits of a field stand for; empty for none.
std::string TextOf(const ModuleImage& image, const MapField& line, std::uint32_t raw) {
  switch (line.field) {
    case Field::kRevision:
      return std::to_string(raw >> 4U) + '.' + std::to_string(raw & 0xFU);
    case Field::kFlagSummary0:
    case Field::kFlagSummary1:
    case Field::kFlagSummary2:
    case Field::kFlagSummary3:
      return FlagSummary(image, line);
    case Field::kPagesSupported:
      return NamesOfBits(image, line, [](unsigned number) {
        return ShortPageName(PageOf(static_cast<std::uint8_t>(number)));
      });
    case Field::kFirmwareA:
    case Field::kFirmwareB:
    case Field::kFirmwareFixed:
      return FirmwareVersion(raw);
    case Field::kFirmwareAState:
    case Field::kFirmwareBState:
      return FirmwareState(image, line);
    case Field::kHostGeneratorPatterns:
    case Field::kMediaGeneratorPatterns:
    case Field::kHostCheckerPatterns:
    case Field::kMediaCheckerPatterns:
      return NamesOfBits(image, line, PatternName);
    default:
      assert(false);  // a text of the map that nothing decodes
      return {};
  }
}

// Of 01h:163.3-0; none for the reserved codes.
std::optional<double> CdbEplPages(unsigned code) {
  constexpr double kPages[] = {0, 1, 2, 3, 4, 8, 12, 16};
  return code < std::size(kPages) ? std::optional<double>(kPages[code]) : std::nullopt;
}

// Four masks with that of the high alarm in bit 3, not in bit 0.
unsigned HighAlarmFirst(unsigned masks) {
  unsigned reversed = 0;
  for (std::size_t level = 0; level < kAlarmLevels; ++level) {
    reversed = reversed << 1U | (masks >> level & 1U);
  }
  return reversed;
}

// The number of a field in its unit; none when nothing is given.
std::optional<double> NumberOf(Decoding& to, Field field, unsigned raw) {
  switch (field) {
    case Field::kLengthCable:
      return CableLength(to, raw);
    case Field::kLengthSmf:
      return SmfLength(to, raw);
    case Field::kModselWaitTime:
      return ModselWaitTimeOf(static_cast<std::uint8_t>(raw));
    case Field::kPageChangeTime:  // ms
      return 10.0 / static_cast<double>(1U << raw);
    case Field::kCdbEplPages:
      return CdbEplPages(raw);
    case Field::kCdbAccessSize:
      return 8 * (raw + 1.0);
    case Field::kBanks:
      return BanksOf(to.image);
    case Field::kNadBanks:
      return ApplicationBanksOf(to.image);
    case Field::kPowerClass:
    case Field::kVdmGroups:
      return raw + 1.0;
    case Field::kUserPatternSize:
      return 2.0 * (raw + 1.0);
    case Field::kTxBiasMultiplier:
      return BiasMultiplierOf(raw);
    case Field::kTemperatureMask:
    case Field::kVoltageMask:
    case Field::kAux1Mask:
    case Field::kAux2Mask:
    case Field::kAux3Mask:
    case Field::kCustomMonitorMask:
      return HighAlarmFirst(raw);
    default:
      assert(false);  // a number of the map that nothing decodes
      return std::nullopt;
  }
}

void DecodeOwnField(Decoding& to, const MapField& line, Advertised advertised) {
  if (line.field == Field::kIdentifier) return;  // decided with the family
  const std::optional<std::uint32_t> raw = RawOf(to.image, line);
  const FieldState state = StateOf(advertised, raw.has_value(), raw.value_or(0) != 0);
  if (state != FieldState::kPresent) return to.info.SetState(line.field, state);
  if (DescribeField(line.field).kind == FieldKind::kText) {
    const std::string text = TextOf(to.image, line, *raw);
    if (text.empty()) return to.info.SetState(line.field, FieldState::kNotImplemented);
    return to.info.SetText(line.field, text);
  }
  switch (line.field) {
    case Field::kManagementSpeed: {
      constexpr unsigned kBitsBefore53 = 3;
      const bool is_wide = IsSince(to.image, 0x53) == Advertised::kYes;
      const unsigned code = is_wide ? *raw : *raw & kBitsBefore53;
      return to.info.SetCode(line.field, code, kManagementSpeeds.Name(code));
    }
    case Field::kModuleSubtype: {
      const CodeTable* subtypes = SubtypesOf(to.info[Field::kIdentifier].code());
      return to.info.SetCode(line.field, *raw,
                             subtypes != nullptr ? subtypes->Name(*raw) : std::string_view());
    }
    default: {
      const std::optional<double> number = NumberOf(to, line.field, *raw);
      if (!number) break;
      return to.info.SetNumber(line.field, *number);
    }
  }
  to.info.SetState(line.field, FieldState::kNotImplemented);
}

bool IsInFlatMemory(Page page) { return page == Page::kLower || page == Page::k00; }

// Flat memory has no other pages, and no fields of the lower page that those would advertise.
Advertised AskFlat(const ModuleImage& image, const MapField& line) {
  if (!IsInFlatMemory(line.page)) return Advertised::kNo;
  const Advertised advertised = Ask(image, line.advertised);
  const bool is_elsewhere = line.page == Page::kLower && advertised == Advertised::kUnknown;
  return is_elsewhere ? Advertised::kNo : advertised;
}

void DecodeModule(Decoding& to, MemoryModel memory) {
  Asker ask(to.image);
  HalfFinder half_of(to.image);
  for (const MapField& line : CmisMap().fields) {
    const Advertised advertised =
        memory == MemoryModel::kFlat ? AskFlat(to.image, line) : ask(line.advertised);
    if (advertised == Advertised::kNo) continue;  // as all fields are before
    if (line.format.type == RawType::kOwn) {
      DecodeOwnField(to, line, advertised);
    } else {
      DecodeField(to, line, half_of(line.page, line.byte), advertised);
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Monitors
// ---------------------------------------------------------------------------------------------

double BiasMultiplier(Decoding& to) {
  static const MapField& kLine = *FindLine(CmisMap(), Field::kTxBiasMultiplier);
  const std::optional<std::uint32_t> code = RawOf(to.image, kLine);
  if (!code) {
    if (HasBiasPages(to.image)) to.Warn(kMissingBiasMultiplier);
    return 1;
  }
  const std::optional<unsigned> multiplier = BiasMultiplierOf(*code);
  if (!multiplier) to.Warn(kReservedBiasMultiplier);
  return multiplier.value_or(1);
}

// An auxiliary monitor that the module does not advertise has no name and is not listed; a warning
// reports it if it is in use.
void WarnOfAux(Decoding& to, const MapMonitor& line) {
  constexpr std::size_t kFirstByte = 18;
  const Monitor monitor = ReadMonitor(to.image, line, {line.format}, Advertised::kUnknown);
  if (!monitor.IsPresent() && monitor.flags.raised == 0) return;
  to.info.warnings.push_back("auxiliary monitor " +
                             std::to_string((line.byte - kFirstByte) / 2 + 1) +
                             " is not advertised, but has a value or a flag raised");
}

// What an auxiliary monitor measures is advertised with it; each has a line for each observable.
void DecodeAux(Decoding& to) {
  const MapMonitor* previous = nullptr;
  bool is_decoded = false;
  for (const MapMonitor& line : CmisMap().monitors) {
    if (line.quantity != Quantity::kAux) continue;
    const bool is_other = previous == nullptr || previous->byte != line.byte;
    if (is_other && previous != nullptr && !is_decoded) WarnOfAux(to, *previous);
    if (is_other) is_decoded = false;
    previous = &line;
    const Advertised advertised = Ask(to.image, line.advertised);
    if (advertised == Advertised::kNo) continue;
    is_decoded = true;
    if (advertised != Advertised::kYes) continue;
    DecodeMonitor(to, line, {line.format}, advertised, {});
  }
  if (previous != nullptr && !is_decoded) WarnOfAux(to, *previous);
}

// The same for all banks.
std::uint64_t LanesWithoutMedia(const LaneLayout& layout) {
  constexpr std::uint64_t kEveryBank = 0x0101010101010101;
  return ~(layout.media * kEveryBank);
}

void DecodeMonitors(Decoding& to, const LaneLayout& layout, MemoryModel memory) {
  const bool is_flat = memory == MemoryModel::kFlat;
  const double bias_multiplier = is_flat ? 1 : BiasMultiplier(to);
  MonitorScope scope;
  scope.absent_lanes = LanesWithoutMedia(layout);
  for (const MapMonitor& line : CmisMap().monitors) {
    if (line.quantity == Quantity::kAux) continue;
    Conversion conversion = {line.format};
    if (line.quantity == Quantity::kTxBias) conversion.times = bias_multiplier;
    const Advertised advertised = is_flat ? Advertised::kNo : Ask(to.image, line.advertised);
    DecodeMonitor(to, line, conversion, advertised, scope);
  }
  if (!is_flat) DecodeAux(to);
}

// ---------------------------------------------------------------------------------------------
// Options
// ---------------------------------------------------------------------------------------------

// What advertises a page that has options.
Advertised AskPageOfOptions(const ModuleImage& image, Page page) {
  if (page == Page::k04) return Ask(image, kTunable);
  if (page == kPage0D) return Ask(image, kFirmwarePage);
  if (page == Page::k13) return Ask(image, kDiagnostics);
  return page == kPage2F ? Ask(image, kVdm) : Advertised::kYes;
}

void AddOptions(Decoding& to) {
  constexpr unsigned kLatest = 0xFF;
  const unsigned revision = BitsOf(to.image, Page::kLower, 1).value_or(kLatest);
  AddNames(to.image, CmisMap().options, to.info.options, revision, AskPageOfOptions);
}

}  // namespace

void DecodeCmis(Decoding& to) {
  const MemoryModel memory =
      IsPaged(to.image) == Advertised::kNo ? MemoryModel::kFlat : MemoryModel::kPaged;
  DecodeModule(to, memory);
  DecodeApplications(to, memory);
  AddSpeeds(to.info);
  const LaneLayout layout =
      LanesOf(to.image, to.info[Field::kIdentifier].code(), to.info.applications);
  DecodeLaneFields(to, layout, memory);
  DecodeMonitors(to, layout, memory);
  WarnOfFlags(to, CmisMap().lane_fields);
  AddOptions(to);
  DecodeVdm(to, layout);
  if (memory == MemoryModel::kPaged) DecodeCoherent(to);
  AddChecksums(to, CmisMap().checksums);
}

}  // namespace cable_info::module_memory
