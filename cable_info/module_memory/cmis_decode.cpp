#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "cable_info/module_memory/cmis_lanes.h"
#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/samples.h"
#include "cable_info/module_memory/sff8024.h"

namespace cable_info::module_memory {

namespace {

// ---------------------------------------------------------------------------------------------
// The module
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
    default:  // the patterns
      return NamesOfBits(image, line, PatternName);
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
    case Field::kModselWaitTime:  // us, mantissa in the low bits
      if ((raw & 0x1FU) == 0) return std::nullopt;
      return static_cast<double>((raw & 0x1FU) << (raw >> 5U));
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
      return std::nullopt;
  }
}

void DecodeOwnField(Decoding& to, const MapField& line, Advertised advertised) {
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
      const CodeTable* subtypes = SubtypesOf(BitsOf(to.image, Page::kLower, 0).value_or(0));
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

// Flat memory is the lower page and page 00h.
enum class MemoryModel : std::uint8_t { kFlat, kPaged };

bool IsInFlatMemory(Page page) { return page == Page::kLower || page == Page::k00; }

// Flat memory lacks the other pages, and what they advertise of the lower page.
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
// Applications
// ---------------------------------------------------------------------------------------------

constexpr unsigned kApplications = 15;

// Descriptors 1 to 8 are in the lower page, the others in page 01h.
struct DescriptorPlace {
  Page page;
  std::size_t byte;
};
DescriptorPlace PlaceOfDescriptor(unsigned number) {
  constexpr std::size_t kSize = kDescriptorSize;
  if (number <= kLowerDescriptors) return {Page::kLower, kFirstDescriptor + kSize * (number - 1)};
  return {Page::k01, 223 + kSize * (number - kLowerDescriptors - 1)};
}

NamedCode Named(unsigned code, const CodeTable* names) {
  return {code, names != nullptr ? names->Name(code) : std::string_view()};
}

// What the descriptors of both kinds have: interfaces, and lanes of each side.
Application DescribedBy(const std::uint8_t* descriptor, unsigned number,
                        const CodeTable* media_interfaces) {
  Application application;
  application.number = number;
  application.host_interface = Named(descriptor[0], &kHostInterfaces);
  application.media_interface = Named(descriptor[1], media_interfaces);
  application.host_lanes = descriptor[2] >> 4U;
  application.media_lanes = descriptor[2] & 0xFU;
  return application;
}

// Byte 3 of flat modules is something else from CMIS 5.4 on.
std::optional<unsigned> HostAssignment(const ModuleImage& image, unsigned options) {
  const bool is_other =
      IsPaged(image) == Advertised::kNo && IsSince(image, 0x54) == Advertised::kYes;
  return is_other ? std::nullopt : std::optional<unsigned>(options);
}

void DecodeBasicApplications(Decoding& to, const CodeTable* media_interfaces) {
  constexpr std::size_t kFirstMediaAssignment = 175;  // of application 0, which does not exist
  for (unsigned number = 1; number <= kApplications; ++number) {
    const DescriptorPlace place = PlaceOfDescriptor(number);
    const ModuleImage::Half& half = to.image.HalfOf(place.page, place.byte);
    if (!half.Has(place.byte, kDescriptorSize) || half[place.byte] == kEndOfList) return;
    const std::uint32_t descriptor = RawNumber(half, place.byte, Bytes(kDescriptorSize));
    if (descriptor == 0) continue;  // unused; the list should have ended with FFh
    Application application = DescribedBy(half.From(place.byte), number, media_interfaces);
    application.host_assignment = HostAssignment(to.image, half[place.byte + 3]);
    application.media_assignment = BitsOf(to.image, Page::k01, kFirstMediaAssignment + number);
    to.info.applications.push_back(application);
  }
}

// Page 1Ch: 15 descriptors per bank. Bank 0 repeats the basic ones; it counts where those have a
// code that refers to it.
void DecodeNormalizedApplications(Decoding& to, const CodeTable* media_interfaces) {
  constexpr unsigned kSeePage1C = 0xBE;
  constexpr std::size_t kSize = 8;
  const unsigned banks = ApplicationBanksOf(to.image);
  for (unsigned bank = 0; bank < banks; ++bank) {
    const ModuleImage::Half& half = to.image.HalfOf(InBank(kPage1C, bank), 128);
    for (unsigned n = 1; n <= kApplications; ++n) {
      const std::size_t byte = 128 + kSize * (n - 1);
      if (!half.Has(byte, kSize) || half[byte] == kEndOfList) break;
      if (RawNumber(half, byte, Bytes(4)) == 0) continue;
      Application application =
          DescribedBy(half.From(byte), kApplications * bank + n, media_interfaces);
      application.host_assignment = half[byte + 3];
      application.media_assignment = half[byte + 4];
      if (bank != 0) {
        to.info.applications.push_back(application);
        continue;
      }
      for (Application& basic : to.info.applications) {
        const bool refers =
            basic.host_interface.code == kSeePage1C || basic.media_interface.code == kSeePage1C;
        if (refers && basic.number == n) basic = application;
      }
    }
  }
}

void DecodeApplications(Decoding& to, MemoryModel memory) {
  const CodeTable* media_interfaces =
      MediaInterfacesOf(BitsOf(to.image, Page::kLower, 85).value_or(0));
  DecodeBasicApplications(to, media_interfaces);
  if (memory == MemoryModel::kPaged) DecodeNormalizedApplications(to, media_interfaces);
}

void AddSpeeds(ModuleInfo& info) {
  // The codes ascend with the speeds.
  std::vector<unsigned> codes;
  for (const Application& application : info.applications) {
    codes.push_back(application.host_interface.code);
  }
  std::sort(codes.begin(), codes.end());
  for (const unsigned code : codes) {
    const std::string_view speed = InfiniBandSpeedOf(code);
    const bool is_new = info.supported_speeds.empty() || info.supported_speeds.back() != speed;
    if (!speed.empty() && is_new) info.supported_speeds.push_back(speed);
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

// An auxiliary monitor that the module does not advertise has no name, but must not be missed.
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
// Lanes
// ---------------------------------------------------------------------------------------------

// The position of a lane's fields.
struct LanePosition {
  unsigned lane;  // of the bank, from 1
  unsigned bank;
};

// The line of a field that the map has.
const LaneMapField& LineOf(LaneField field) {
  const Lines<LaneMapField> lines = CmisMap().lane_fields;
  return *std::find_if(lines.begin(), lines.end(),
                       [field](const LaneMapField& line) { return line.field == field; });
}

LaneValue Present(double number) { return {FieldState::kPresent, number}; }
LaneValue Absent(FieldState state) { return {state, 0.0}; }

// A CDR that cannot be bypassed is on.
LaneValue Cdr(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
              LanePosition at) {
  constexpr std::uint8_t kBypass = 1;
  const bool is_fixed = advertised == Advertised::kYes &&
                        AskBit(image, Page::k01, line.advertised.byte, kBypass) == Advertised::kNo;
  if (is_fixed) return Present(1);
  return ReadLaneField(image, line, advertised, at.lane, at.bank);
}

LaneValue PreCursor(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                    LanePosition at) {
  static const LaneMapField& kPostCursor = LineOf(LaneField::kRxPostCursor);
  const LaneMapField& place = ControlsPreCursorOnly(image) ? kPostCursor : line;
  return ReadLaneField(image, place, advertised, at.lane, at.bank);
}

// The masks of the four flags as one number, high alarm, low alarm, high warning and low warning
// from bit 3 down; one byte per level with one bit per lane.
LaneValue Masks(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                LanePosition at) {
  const ModuleImage::Half& half = image.HalfOf(InBank(line.page, at.bank), line.byte);
  unsigned masks = 0;
  for (std::size_t level = 0; level < kAlarmLevels; ++level) {
    masks = masks << 1U | (half[line.byte + level] >> (at.lane - 1U) & 1U);
  }
  const FieldState state = StateOf(advertised, half.Has(line.byte, kAlarmLevels), masks != 0);
  return state == FieldState::kPresent ? Present(masks) : Absent(state);
}

// Until CMIS 5.0, 6 was 75 GHz and 7 was 33 GHz.
LaneValue Grid(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
               LanePosition at) {
  constexpr double k33 = 6;
  constexpr double k75 = 7;
  LaneValue value = ReadLaneField(image, line, advertised, at.lane, at.bank);
  const bool is_swapped = value.number == k33 || value.number == k75;
  if (is_swapped && IsSince(image, 0x50) == Advertised::kNo) {
    value.number = k33 + k75 - value.number;
  }
  return value;
}

// The frequency of a channel in THz: 193.1 THz and so many steps of the grid.
std::optional<double> ChannelFrequency(unsigned grid, double channel) {
  constexpr double kBase = 193.1;
  switch (grid) {
    case 6:  // 33 GHz
      return kBase + channel * 0.1 / 3;
    case 7:  // 75 GHz; every third channel
      return kBase + channel / 40;
    case 8:  // 150 GHz; every sixth channel
      return kBase + (channel + 3) / 40;
    case 9:  // 300 GHz; every 24th channel
      return kBase + (channel - 9) / 80;
    default: {
      constexpr double kGigahertz[] = {3.125, 6.25, 12.5, 25, 50, 100};
      if (grid >= std::size(kGigahertz)) return std::nullopt;
      return kBase + channel * kGigahertz[grid] / 1000;
    }
  }
}

LaneValue TunedFrequency(const ModuleImage& image, Advertised advertised, LanePosition at) {
  static const LaneMapField& kGrid = LineOf(LaneField::kGrid);
  static const LaneMapField& kChannel = LineOf(LaneField::kChannel);
  const LaneValue grid = Grid(image, kGrid, advertised, at);
  const LaneValue channel = ReadLaneField(image, kChannel, advertised, at.lane, at.bank);
  if (!grid.IsPresent()) return Absent(grid.state);
  if (!channel.IsPresent()) return Absent(channel.state);
  const std::optional<double> frequency =
      ChannelFrequency(static_cast<unsigned>(grid.number), channel.number);
  return frequency ? Present(*frequency) : Absent(FieldState::kNotImplemented);
}

// 12h:216-217: half decibels above or below the target power, counted from 1.
LaneValue RelativeThreshold(const ModuleImage& image, const LaneMapField& line,
                            Advertised advertised, LanePosition at) {
  LaneValue value = ReadLaneField(image, line, advertised, at.lane, at.bank);
  if (!value.IsPresent()) return value;
  const bool is_low =
      line.field == LaneField::kRelativeLowAlarm || line.field == LaneField::kRelativeLowWarning;
  value.number = (value.number + 1) / (is_low ? -2 : 2);
  return value;
}

// ---------------------------------------------------------------------------------------------
// Results of diagnostics, page 14h, as selected by byte 128
// ---------------------------------------------------------------------------------------------

constexpr unsigned kGated = 0x10;  // a bit of the selector
constexpr unsigned kSelectBer = 1;
constexpr unsigned kSelectHostCounters = 2;   // of lanes 1 to 4; the next one of lanes 5 to 8
constexpr unsigned kSelectMediaCounters = 4;  // the same
constexpr unsigned kSelectSnr = 6;

std::uint64_t LittleEndian(const ModuleImage::Half& half, std::size_t byte, std::size_t count) {
  std::uint64_t number = 0;
  for (std::size_t i = count; i-- != 0;) number = number << 8U | half[byte + i];
  return number;
}

bool IsBer(LaneField field) {
  return field == LaneField::kHostBer || field == LaneField::kMediaBer;
}
bool IsSyncLost(LaneField field) {
  return field == LaneField::kHostSyncLost || field == LaneField::kMediaSyncLost;
}
bool IsSnr(LaneField field) {
  return field == LaneField::kHostSnr || field == LaneField::kMediaSnr;
}

struct DiagnosticsPlace {
  unsigned selector;
  std::size_t byte;
};

// The line has the place of lane 1. Words of lanes follow each other; counters are pairs, of errors
// and bits, and a selector shows those of four lanes.
DiagnosticsPlace PlaceOfDiagnostics(const LaneMapField& line, unsigned lane) {
  constexpr unsigned kLanesPerSelector = 4;
  const std::size_t size = line.extent.bytes;
  const unsigned n = lane - 1;
  if (IsBer(line.field)) return {kSelectBer, line.byte + size * n};
  if (IsSnr(line.field)) return {kSelectSnr, line.byte + size * n};
  const bool is_host = line.side == LaneSide::kHost;
  const unsigned first = is_host ? kSelectHostCounters : kSelectMediaCounters;
  return {first + n / kLanesPerSelector, line.byte + 2 * size * (n % kLanesPerSelector)};
}

LaneValue Diagnostics(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                      LanePosition at) {
  const DiagnosticsPlace place = PlaceOfDiagnostics(line, at.lane);
  const std::size_t size = line.extent.bytes;
  const ModuleImage::Half& half = image.HalfOf(InBank(line.page, at.bank), line.byte);
  // Ratios and counters may be gated.
  const unsigned selector = IsSnr(line.field) ? half[128] : half[128] & ~kGated;
  const bool is_selected = half.Has(128) && selector == place.selector;
  const bool is_known = is_selected && half.Has(place.byte, size);
  const std::uint64_t raw = is_known ? LittleEndian(half, place.byte, size) : 0;
  const FieldState state = StateOf(advertised, is_known, raw != 0);
  if (state != FieldState::kPresent) return Absent(state);
  if (IsBer(line.field)) {
    return Present(Float16(static_cast<std::uint16_t>(RawNumber(half, place.byte, kWord))));
  }
  if (IsSyncLost(line.field)) return Present((raw & 1U) != 0 ? 1.0 : 0.0);
  constexpr double kPerDecibel = 256;
  const auto number = static_cast<double>(raw);
  return Present(IsSnr(line.field) ? number / kPerDecibel : number);
}

// ---------------------------------------------------------------------------------------------

LaneValue OwnLaneField(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                       LanePosition at) {
  switch (line.field) {
    case LaneField::kTxCdr:
    case LaneField::kRxCdr:
      return Cdr(image, line, advertised, at);
    case LaneField::kRxPreCursor:
      return PreCursor(image, line, advertised, at);
    case LaneField::kRxPowerMask:
    case LaneField::kTxPowerMask:
    case LaneField::kTxBiasMask:
      return Masks(image, line, advertised, at);
    case LaneField::kGrid:
      return Grid(image, line, advertised, at);
    case LaneField::kChannelFrequency:
      return TunedFrequency(image, advertised, at);
    case LaneField::kRelativeHighAlarm:
    case LaneField::kRelativeLowAlarm:
    case LaneField::kRelativeHighWarning:
    case LaneField::kRelativeLowWarning:
      return RelativeThreshold(image, line, advertised, at);
    case LaneField::kDataPathDeinit: {
      LaneValue value = ReadLaneField(image, line, advertised, at.lane, at.bank);
      const bool is_power_up = IsSince(image, 0x40) == Advertised::kNo;
      if (value.IsPresent() && is_power_up) value.number = 1 - value.number;
      return value;
    }
    case LaneField::kDataPathFirstLane:
    case LaneField::kProvisionedTxFirstLane:
    case LaneField::kProvisionedRxFirstLane: {
      LaneValue value = ReadLaneField(image, line, advertised, at.lane, at.bank);
      if (value.IsPresent()) value.number += 1 + at.bank * kLanesPerBank;
      return value;
    }
    default:
      return Diagnostics(image, line, advertised, at);
  }
}

// Pages without banks describe the lanes of bank 0.
bool IsBanked(Page page) {
  constexpr std::uint8_t kFirstBanked = 0x10;
  return IsUpperPage(page) && NumberOf(page) >= kFirstBanked;
}

unsigned LanesWith(const LaneLayout& layout, LaneSide side) {
  if (side == LaneSide::kMedia) return layout.media;
  return side == LaneSide::kHost ? layout.host : layout.media | layout.host;
}

bool HasSide(const LaneLayout& layout, LaneSide side, unsigned lane) {
  return (LanesWith(layout, side) >> (lane - 1U) & 1U) != 0;
}

// A CDR that cannot be bypassed is on.
bool HasFixedValue(LaneField field) {
  return field == LaneField::kTxCdr || field == LaneField::kRxCdr;
}

// Decodes the fields of the lanes of a bank, which begin at `lanes`. Those of pages that were not
// read, often many, are collected by side and marked at the end.
void DecodeBank(Decoding& to, const LaneLayout& layout, unsigned bank, Lane* lanes,
                std::size_t count) {
  constexpr LaneSide kSides[] = {LaneSide::kBoth, LaneSide::kHost, LaneSide::kMedia};
  std::array<FieldSet<LaneField>, std::size(kSides)> not_read;
  Asker ask(to.image);
  HalfFinder half_of(to.image);
  for (const LaneMapField& line : CmisMap().lane_fields) {
    if (bank != 0 && !IsBanked(line.page)) continue;
    const Advertised advertised = ask(line.advertised);
    if (advertised == Advertised::kNo) continue;
    const ModuleImage::Half& half = half_of(InBank(line.page, bank), line.byte);
    if (half.IsEmpty() && !HasFixedValue(line.field)) {
      not_read[static_cast<std::size_t>(line.side)].Add(line.field);
    } else if (line.format.type != RawType::kOwn) {
      LaneReader(half, line, advertised).Read(lanes, count, LanesWith(layout, line.side));
    } else {
      for (Lane* lane = lanes; lane != lanes + count; ++lane) {
        const LanePosition at = {LaneInBank(lane->number), bank};
        if (!HasSide(layout, line.side, at.lane)) continue;
        lane->Set(line.field, OwnLaneField(to.image, line, advertised, at));
      }
    }
  }
  for (const LaneSide side : kSides) {
    for (Lane* lane = lanes; lane != lanes + count; ++lane) {
      if (!HasSide(layout, side, LaneInBank(lane->number))) continue;
      lane->SetState(not_read[static_cast<std::size_t>(side)], FieldState::kNotRead);
    }
  }
}

// The application of a lane is one of the 15 of its block.
void AddApplicationBlocks(std::vector<Lane>& lanes) {
  for (Lane& lane : lanes) {
    const LaneValue block = lane[LaneField::kApplicationBlock];
    LaneValue application = lane[LaneField::kApplication];
    if (!block.IsPresent() || !application.IsPresent() || application.number == 0) continue;
    application.number += kApplications * block.number;
    lane.Set(LaneField::kApplication, application);
  }
}

void DecodeLanes(Decoding& to, const LaneLayout& layout, MemoryModel memory) {
  static const Lane kLane;  // a copy is cheaper than a new one
  to.info.lanes.reserve(std::size_t{layout.banks} * kLanesPerBank);
  for (unsigned bank = 0; bank < layout.banks; ++bank) {
    for (unsigned n = 1; n <= kLanesPerBank; ++n) {
      if (!HasSide(layout, LaneSide::kBoth, n)) continue;
      to.info.lanes.emplace_back(kLane).number = bank * kLanesPerBank + n;
    }
  }
  if (memory == MemoryModel::kFlat) return;
  const std::size_t per_bank = to.info.lanes.size() / layout.banks;
  for (unsigned bank = 0; bank < layout.banks; ++bank) {
    DecodeBank(to, layout, bank, to.info.lanes.data() + bank * per_bank, per_bank);
  }
  if (Ask(to.image, kApplicationBlocks) == Advertised::kYes) AddApplicationBlocks(to.info.lanes);
}

// ---------------------------------------------------------------------------------------------
// Versatile diagnostics monitoring, pages 20h to 2Fh
// ---------------------------------------------------------------------------------------------

constexpr unsigned kVdmGroups = 4;
constexpr unsigned kVdmInstances = 64;

// An instance of a group: the bank and number of its pages, and its place in them.
struct VdmPlace {
  unsigned bank;
  std::uint8_t group;    // from 0
  std::size_t instance;  // from 0
};

Monitor VdmMonitor(const ModuleImage& image, const VdmObservable& observable,
                   unsigned threshold_set, VdmPlace at) {
  constexpr std::size_t kThresholdSetSize = 8;
  constexpr std::size_t kFlagBytes = 32;  // of a group
  const auto page = [&](std::uint8_t first) -> const ModuleImage::Half& {
    return image.HalfOf(PageOf(static_cast<std::uint8_t>(first + at.group), at.bank), 128);
  };
  return ReadSample(
      {page(kVdmValues), 128 + 2 * at.instance, page(kVdmThresholds),
       128 + kThresholdSetSize * threshold_set, image.HalfOf(InBank(kPage2C, at.bank), 128),
       128 + kFlagBytes * at.group + at.instance / 2,
       at.instance % 2 != 0 ? Nibble::kHigh : Nibble::kLow, FlagOrder::kUp},
      observable);
}

void DecodeVdmInstance(Decoding& to, unsigned descriptor, VdmPlace at) {
  constexpr unsigned kWholeModule = 15;
  constexpr unsigned kExternalLaserPower = 84;  // of a laser, not of a lane
  const unsigned type = descriptor & 0xFFU;
  if (type == 0) return;
  const unsigned location = descriptor >> 8U & 0xFU;
  const bool is_defined = IsSince(to.image, FirstRevisionOfVdm(type)) != Advertised::kNo;
  const VdmObservable* observable = is_defined ? FindVdmObservable(type) : nullptr;
  const unsigned lane = location == kWholeModule ? 0 : at.bank * kLanesPerBank + location + 1;
  const Monitor monitor = VdmMonitor(
      to.image, observable != nullptr ? *observable : kUnknownObservable, descriptor >> 12U, at);
  VdmSample sample = SampleOf(observable, type, lane, monitor);
  if (observable != nullptr && type == kExternalLaserPower && lane != 0) {
    sample.instance = "laser " + std::to_string(lane);
    sample.lane = 0;
  }
  to.info.vdm.push_back(std::move(sample));
}

bool HasVdmPages(const ModuleImage& image) {
  const auto& halves = image.halves();
  return std::any_of(halves.begin(), halves.end(), [](const ModuleImage::Half& half) {
    return IsUpperPage(half.page()) && (NumberOf(half.page()) & 0xF0U) == kVdmDescriptors &&
           !half.IsEmpty();
  });
}

void DecodeVdm(Decoding& to, const LaneLayout& layout) {
  if (!HasVdmPages(to.image)) return;
  if (Ask(to.image, kVdm) == Advertised::kNo) {
    return to.Warn("pages 20h to 2Fh (VDM) were read, but the module does not advertise them");
  }
  for (unsigned bank = 0; bank < layout.banks; ++bank) {
    const unsigned groups = VdmGroupsOf(to.image, bank).value_or(kVdmGroups);
    for (std::uint8_t group = 0; group < groups; ++group) {
      const Page page = PageOf(static_cast<std::uint8_t>(kVdmDescriptors + group), bank);
      const ModuleImage::Half& half = to.image.HalfOf(page, 128);
      for (std::size_t i = 0; i < kVdmInstances; ++i) {
        if (!half.Has(128 + 2 * i, 2)) continue;
        DecodeVdmInstance(to, RawNumber(half, 128 + 2 * i, kWord), {bank, group, i});
      }
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Coherent modules, pages 34h and 35h; bank n is media lane n + 1
// ---------------------------------------------------------------------------------------------

// A number of the coherent pages.
struct CoherentNumber {
  std::string_view name;
  std::string_view unit;
  std::uint8_t byte;
  std::uint8_t bytes;
  bool is_signed;
  double multiply;
  double divide;
};

// Page 34h: the last interval of the FEC performance monitoring.
constexpr CoherentNumber kCoherentCounters[] = {
    {"fec_received_bits", "bits", 128, 8, false, 1, 1},
    {"fec_bits_per_subinterval", "bits", 136, 8, false, 1, 1},
    {"fec_corrected_bits", "bits", 144, 8, false, 1, 1},
    {"fec_corrected_bits_minimum", "bits", 152, 8, false, 1, 1},
    {"fec_corrected_bits_maximum", "bits", 160, 8, false, 1, 1},
    {"fec_received_frames", "frames", 168, 4, false, 1, 1},
    {"fec_frames_per_subinterval", "frames", 172, 4, false, 1, 1},
    {"fec_uncorrectable_frames", "frames", 176, 4, false, 1, 1},
    {"fec_uncorrectable_frames_minimum", "frames", 180, 4, false, 1, 1},
    {"fec_uncorrectable_frames_maximum", "frames", 184, 4, false, 1, 1},
};

// Page 35h: averages, minima and maxima of the link monitors.
constexpr CoherentNumber kCoherentMonitors[] = {
    {"chromatic_dispersion_average", "ps/nm", 128, 4, true, 1, 1},
    {"chromatic_dispersion_minimum", "ps/nm", 132, 4, true, 1, 1},
    {"chromatic_dispersion_maximum", "ps/nm", 136, 4, true, 1, 1},
    {"differential_group_delay_average", "ps", 140, 2, false, 1, 100},
    {"differential_group_delay_minimum", "ps", 142, 2, false, 1, 100},
    {"differential_group_delay_maximum", "ps", 144, 2, false, 1, 100},
    {"sopmd_average", "ps^2", 146, 2, false, 1, 100},
    {"sopmd_minimum", "ps^2", 148, 2, false, 1, 100},
    {"sopmd_maximum", "ps^2", 150, 2, false, 1, 100},
    {"polarization_dependent_loss_average", "dB", 152, 2, false, 1, 10},
    {"polarization_dependent_loss_minimum", "dB", 154, 2, false, 1, 10},
    {"polarization_dependent_loss_maximum", "dB", 156, 2, false, 1, 10},
    {"osnr_average", "dB", 158, 2, false, 1, 10},
    {"osnr_minimum", "dB", 160, 2, false, 1, 10},
    {"osnr_maximum", "dB", 162, 2, false, 1, 10},
    {"esnr_average", "dB", 164, 2, false, 1, 10},
    {"esnr_minimum", "dB", 166, 2, false, 1, 10},
    {"esnr_maximum", "dB", 168, 2, false, 1, 10},
    {"carrier_frequency_offset_average", "MHz", 170, 2, true, 1, 1},
    {"carrier_frequency_offset_minimum", "MHz", 172, 2, true, 1, 1},
    {"carrier_frequency_offset_maximum", "MHz", 174, 2, true, 1, 1},
    {"error_vector_magnitude_average", "%", 176, 2, false, 100, 65535},
    {"error_vector_magnitude_minimum", "%", 178, 2, false, 100, 65535},
    {"error_vector_magnitude_maximum", "%", 180, 2, false, 100, 65535},
    {"tx_power_average", "dBm", 182, 2, true, 1, 100},
    {"tx_power_minimum", "dBm", 184, 2, true, 1, 100},
    {"tx_power_maximum", "dBm", 186, 2, true, 1, 100},
    {"rx_total_power_average", "dBm", 188, 2, true, 1, 100},
    {"rx_total_power_minimum", "dBm", 190, 2, true, 1, 100},
    {"rx_total_power_maximum", "dBm", 192, 2, true, 1, 100},
    {"rx_signal_power_average", "dBm", 194, 2, true, 1, 100},
    {"rx_signal_power_minimum", "dBm", 196, 2, true, 1, 100},
    {"rx_signal_power_maximum", "dBm", 198, 2, true, 1, 100},
    {"sop_rate_of_change_average", "krad/s", 200, 2, false, 1, 1},
    {"sop_rate_of_change_minimum", "krad/s", 202, 2, false, 1, 1},
    {"sop_rate_of_change_maximum", "krad/s", 204, 2, false, 1, 1},
    {"modulation_error_ratio_average", "dB", 206, 2, false, 1, 10},
    {"modulation_error_ratio_minimum", "dB", 208, 2, false, 1, 10},
    {"modulation_error_ratio_maximum", "dB", 210, 2, false, 1, 10},
    {"clock_recovery_loop_average", "%", 212, 2, true, 100, 32767},
    {"clock_recovery_loop_minimum", "%", 214, 2, true, 100, 32767},
    {"clock_recovery_loop_maximum", "%", 216, 2, true, 100, 32767},
    {"snr_margin_average", "dB", 224, 2, true, 1, 10},
    {"snr_margin_minimum", "dB", 226, 2, true, 1, 10},
    {"snr_margin_maximum", "dB", 228, 2, true, 1, 10},
    {"q_factor_average", "dB", 230, 2, false, 1, 10},
    {"q_factor_minimum", "dB", 232, 2, false, 1, 10},
    {"q_factor_maximum", "dB", 234, 2, false, 1, 10},
    {"q_margin_average", "dB", 236, 2, true, 1, 10},
    {"q_margin_minimum", "dB", 238, 2, true, 1, 10},
    {"q_margin_maximum", "dB", 240, 2, true, 1, 10},
};

double CoherentValue(const ModuleImage::Half& half, const CoherentNumber& number) {
  constexpr int kBitsPerByte = 8;
  std::uint64_t raw = 0;
  for (std::size_t i = 0; i < number.bytes; ++i) raw = raw << kBitsPerByte | half[number.byte + i];
  const auto value = static_cast<double>(raw);
  const double range = std::ldexp(1.0, kBitsPerByte * static_cast<int>(number.bytes));
  return number.is_signed && value >= range / 2 ? value - range : value;
}

template <std::size_t N>
void DecodeCoherentPage(Decoding& to, Page page, const CoherentNumber (&numbers)[N]) {
  constexpr unsigned kBanks = 8;  // a media lane each
  for (unsigned bank = 0; bank < kBanks; ++bank) {
    const ModuleImage::Half& half = to.image.HalfOf(InBank(page, bank), 128);
    for (const CoherentNumber& number : numbers) {
      if (!half.Has(number.byte, number.bytes)) continue;
      Monitor monitor;
      monitor.state = FieldState::kPresent;
      monitor.value = CoherentValue(half, number) * number.multiply / number.divide;
      VdmSample sample = SampleOf(nullptr, 0, bank + 1, monitor);
      sample.observable = number.name;
      sample.unit = number.unit;
      to.info.vdm.push_back(std::move(sample));
    }
  }
}

void DecodeCoherent(Decoding& to) {
  if (HasCoherentPages(to.image) == Advertised::kNo) return;
  DecodeCoherentPage(to, kPage34, kCoherentCounters);
  DecodeCoherentPage(to, kPage35, kCoherentMonitors);
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
  const LaneLayout layout = LanesOf(to.image, to.info.applications);
  DecodeLanes(to, layout, memory);
  DecodeMonitors(to, layout, memory);
  WarnOfFlags(to, CmisMap().lane_fields);
  AddOptions(to);
  DecodeVdm(to, layout);
  if (memory == MemoryModel::kPaged) DecodeCoherent(to);
  AddChecksums(to, CmisMap().checksums);
}

}  // namespace cable_info::module_memory
