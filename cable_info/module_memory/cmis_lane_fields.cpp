// The fields of the lanes of a CMIS module.

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

#include "cable_info/module_memory/cmis_decode.h"
#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/cmis_vdm.h"
#include "cable_info/module_memory/field_set.h"

namespace cable_info::module_memory {

namespace {

// ---------------------------------------------------------------------------------------------
// Fields that depend on others
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
// All fields
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
    case LaneField::kHostBer:
    case LaneField::kHostSnr:
    case LaneField::kHostErrors:
    case LaneField::kHostBits:
    case LaneField::kHostSyncLost:
    case LaneField::kMediaBer:
    case LaneField::kMediaSnr:
    case LaneField::kMediaErrors:
    case LaneField::kMediaBits:
    case LaneField::kMediaSyncLost:
      return Diagnostics(image, line, advertised, at);
    default:
      assert(false);  // a lane field of the map that nothing decodes
      return {};
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

// May have a value although its page was not read: see `Cdr`.
bool HasFixedValue(LaneField field) {
  return field == LaneField::kTxCdr || field == LaneField::kRxCdr;
}

// Decodes the fields of the lanes of a bank, which begin at `lanes`. Those of pages that were not
// read, often many, are collected by side and marked at the end.
void DecodeBank(const ModuleImage& image, const LaneLayout& layout, unsigned bank, Lane* lanes,
                std::size_t count) {
  constexpr LaneSide kSides[] = {LaneSide::kBoth, LaneSide::kHost, LaneSide::kMedia};
  std::array<FieldSet<LaneField>, std::size(kSides)> not_read;
  Asker ask(image);
  HalfFinder half_of(image);
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
        lane->Set(line.field, OwnLaneField(image, line, advertised, at));
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

// The application of a lane is one of the 15 of its block. It is not known when the block was not
// read, or does not exist.
void AddApplicationBlocks(Decoding& to) {
  const unsigned blocks = ApplicationBanksOf(to.image);
  if (blocks <= 1) return;
  for (Lane& lane : to.info.lanes) {
    const LaneValue block = lane[LaneField::kApplicationBlock];
    LaneValue application = lane[LaneField::kApplication];
    if (!application.IsPresent() || application.number == 0) continue;
    application = block.IsPresent() && block.number < blocks
                      ? Present(application.number + kApplications * block.number)
                      : Absent(FieldState::kNotRead);
    lane.Set(LaneField::kApplication, application);
    if (!block.IsPresent() || block.number < blocks) continue;
    to.Warn("lane " + std::to_string(lane.number) + ": block " +
            std::to_string(static_cast<unsigned>(block.number)) +
            " of application descriptors does not exist");
  }
}

// 62h:128-191: the four thresholds of a lane are not given if all of them are 0000h or FFFFh.
void DropEmptyThresholds(Decoding& to) {
  constexpr std::size_t kFirst = 128;
  constexpr std::size_t kSize = 8;
  for (Lane& lane : to.info.lanes) {
    const ModuleImage::Half& half =
        to.image.HalfOf(InBank(kPage62, BankOfLane(lane.number)), kFirst);
    const std::size_t first = kFirst + kSize * (LaneInBank(lane.number) - 1);
    if (!half.Has(first, kSize)) continue;
    const std::uint8_t* const bytes = half.From(first);
    const bool is_empty =
        (bytes[0] == 0 || bytes[0] == 0xFF) &&
        std::all_of(bytes, bytes + kSize, [bytes](std::uint8_t byte) { return byte == bytes[0]; });
    if (!is_empty) continue;
    for (const LaneField field : {LaneField::kTxPowerHighAlarm, LaneField::kTxPowerLowAlarm,
                                  LaneField::kTxPowerHighWarning, LaneField::kTxPowerLowWarning}) {
      lane.Set(field, Absent(FieldState::kNotImplemented));
    }
  }
}

}  // namespace

void DecodeLaneFields(Decoding& to, const LaneLayout& layout, MemoryModel memory) {
  static const Lane kLane;  // a copy is cheaper than a new one
  std::vector<Lane>& lanes = to.info.lanes;
  lanes.reserve(std::size_t{layout.banks} * kLanesPerBank);
  for (unsigned bank = 0; bank < layout.banks; ++bank) {
    const std::size_t first = lanes.size();
    for (unsigned n = 1; n <= kLanesPerBank; ++n) {
      if (!HasSide(layout, LaneSide::kBoth, n)) continue;
      lanes.emplace_back(kLane).number = bank * kLanesPerBank + n;
    }
    if (memory == MemoryModel::kPaged) {
      DecodeBank(to.image, layout, bank, lanes.data() + first, lanes.size() - first);
    }
  }
  AddApplicationBlocks(to);
  if (Ask(to.image, kLaneThresholds) != Advertised::kNo) DropEmptyThresholds(to);
}

}  // namespace cable_info::module_memory
