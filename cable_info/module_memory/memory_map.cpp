#include "cable_info/module_memory/memory_map.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "cable_info/text/numbers.h"

namespace cable_info::module_memory {

namespace {

constexpr unsigned kBitsPerByte = 8;

bool HasAll(const ModuleImage::Half& half, std::size_t byte, Extent extent) {
  return extent.bytes == 1 ? half.Has(byte) : half.Has(byte, extent.bytes);
}

// A known word.
std::uint32_t WordAt(const ModuleImage::Half& half, std::size_t byte) {
  const std::uint8_t* const bytes = half.From(byte);
  return static_cast<std::uint32_t>(bytes[0] << kBitsPerByte | bytes[1]);
}

// At the end of a text; FFh is what erased memory holds.
bool IsPadding(char c) { return c == ' ' || c == '\0' || c == '\xFF'; }

std::int32_t SignedOf(std::uint32_t raw, unsigned bits) {
  if (bits == 0) return 0;
  const unsigned unused = 32 - bits;
  return static_cast<std::int32_t>(raw << unused) >> unused;
}

unsigned WidthOf(Extent extent) {
  return extent.bytes == 1 ? extent.high - extent.low + 1U : extent.bytes * kBitsPerByte;
}

// All bits set.
std::uint32_t HighestOf(Extent extent) {
  const unsigned width = WidthOf(extent);
  return width < 32 ? (std::uint32_t{1} << width) - 1 : 0xFFFFFFFFU;
}

double SingleOf(std::uint32_t raw) {
  float number = 0.0F;
  std::memcpy(&number, &raw, sizeof(number));
  return static_cast<double>(number);
}

double ValueOf(const Format& format, Extent extent, std::uint32_t raw) {
  double number = raw;
  if (format.type == RawType::kSigned) number = SignedOf(raw, WidthOf(extent));
  if (format.type == RawType::kSingle) number = SingleOf(raw);
  return number * format.times / format.per;
}

void DecodeText(Decoding& to, const MapField& line, const ModuleImage::Half& half,
                Advertised advertised) {
  constexpr std::size_t kMaxTextSize = 32;
  char text[kMaxTextSize];
  const std::size_t longest = std::min<std::size_t>(line.extent.bytes, kMaxTextSize);
  // A text that is cut short is still one.
  std::size_t size = half.Has(line.byte, longest) ? longest : half.KnownFrom(line.byte, longest);
  const bool is_known = size != 0;
  if (is_known) std::memcpy(text, half.From(line.byte), size);
  while (size != 0 && IsPadding(text[size - 1])) --size;
  const FieldState state = StateOf(advertised, is_known, size != 0);
  if (state != FieldState::kPresent) return to.info.SetState(line.field, state);
  if (size == 0) return to.info.SetState(line.field, FieldState::kNotImplemented);
  to.info.SetText(line.field, {text, size});
}

void SetOui(ModuleInfo& info, Field field, std::uint32_t raw) {
  constexpr std::size_t kOuiDigits = 6;
  if (raw == 0) return info.SetState(field, FieldState::kNotImplemented);
  char digits[kOuiDigits];
  for (std::size_t i = 0; i < kOuiDigits; ++i) {
    digits[kOuiDigits - 1 - i] = text::kHexDigits[raw >> 4 * i & 0xFU];
  }
  info.SetText(field, {digits, kOuiDigits});
}

void SetVersion(ModuleInfo& info, Field field, std::uint32_t raw) {
  constexpr std::uint32_t kInvalid = 0xFFFF;
  if (raw == 0 || raw == kInvalid) return info.SetState(field, FieldState::kNotImplemented);
  info.SetText(field, std::to_string(raw >> kBitsPerByte) + '.' + std::to_string(raw & 0xFFU));
}

void SetNumber(Decoding& to, const MapField& line, std::uint32_t raw) {
  const Format& format = line.format;
  if (format.zero_is_none && raw == 0) {
    return to.info.SetState(line.field, FieldState::kNotImplemented);
  }
  if (format.highest_is_more && raw == HighestOf(line.extent)) {
    to.info.SetState(line.field, FieldState::kNotImplemented);
    return WarnMoreThan(to, line.field, (raw - 1) * format.times / format.per);
  }
  to.info.SetNumber(line.field, ValueOf(format, line.extent, raw));
}

// The extent of one lane's value, and the byte that has it.
struct LanePlace {
  std::size_t byte;
  Extent extent;
};

LanePlace PlaceOf(const LaneMapField& line, unsigned lane) {
  const unsigned n = lane - 1;
  const auto bit = [](unsigned number) { return Bit(static_cast<std::uint8_t>(number)); };
  switch (line.order) {
    case LaneOrder::kBitsUp:
      return {line.byte, bit(line.extent.low + n)};
    case LaneOrder::kBitsDown:
      return {line.byte, bit(line.extent.high - n)};
    case LaneOrder::kPairsUp: {
      const auto low = static_cast<std::uint8_t>(n % 4 * 2);
      return {line.byte + n / 4, Bits(low + 1, low)};
    }
    case LaneOrder::kHighNibbleFirst:
      return {line.byte + n / 2, n % 2 == 0 ? Bits(7, 4) : Bits(3, 0)};
    case LaneOrder::kLowNibbleFirst:
      return {line.byte + n / 2, n % 2 == 0 ? Bits(3, 0) : Bits(7, 4)};
    case LaneOrder::kApart:
      return {line.byte + std::size_t{n} * line.extent.bytes, line.extent};
    case LaneOrder::kQuads:
      return {line.byte + std::size_t{n} * 4 * line.extent.bytes, line.extent};
    case LaneOrder::kModule:
      break;
  }
  return {line.byte, line.extent};
}

// `half` is the one of the flags.
AlarmFlags ReadFlags(const ModuleImage::Half& half, const FlagPlaces& places, unsigned lane) {
  if (half.IsEmpty()) return {};
  unsigned known = 0;
  unsigned raised = 0;
  for (unsigned level = 0; level < kAlarmLevels; ++level) {
    const BitPlace flag = FlagPlace(places, static_cast<AlarmLevel>(level), lane);
    const unsigned is_raised = half[flag.byte] >> flag.bit & 1U;  // a missing byte is 0
    known |= (half.Has(flag.byte) ? 1U : 0U) << level;
    raised |= is_raised << level;
  }
  return {static_cast<std::uint8_t>(known), static_cast<std::uint8_t>(raised)};
}

// The flags of each of the lanes 1 to `lanes`, if all of them are missing or clear, as most are.
std::optional<AlarmFlags> CommonFlags(const ModuleImage::Half& half, const FlagPlaces& places,
                                      unsigned lanes) {
  constexpr AlarmFlags kClear = {(1U << kAlarmLevels) - 1U, 0};
  if (half.IsEmpty()) return AlarmFlags();
  const auto byte_of = [&places](AlarmLevel level, unsigned lane) {
    return FlagPlace(places, level, lane).byte;
  };
  // The flags of the lanes follow each other up or down.
  constexpr AlarmLevel kFirst = AlarmLevel::kHighAlarm;
  constexpr AlarmLevel kLast = AlarmLevel::kLowWarning;
  const std::size_t begin = std::min(byte_of(kFirst, 1), byte_of(kFirst, lanes));
  const std::size_t end = std::max(byte_of(kLast, 1), byte_of(kLast, lanes)) + 1;
  if (!half.Has(begin, end - begin)) return std::nullopt;
  for (std::size_t byte = begin; byte < end; ++byte) {
    if (half[byte] != 0) return std::nullopt;
  }
  return kClear;
}

Thresholds ReadThresholds(const ModuleImage& image, const MapMonitor& line,
                          const Conversion& conversion) {
  constexpr std::uint32_t kAllSet = 0xFFFF;
  Thresholds thresholds;
  const ModuleImage::Half& half = image.HalfOf(line.threshold_page, line.threshold_byte);
  if (half.IsEmpty()) return thresholds;
  const bool are_all_known = half.Has(line.threshold_byte, 2 * kAlarmLevels);
  std::uint32_t common = kAllSet;
  std::uint32_t any = 0;
  for (std::size_t level = 0; level < kAlarmLevels; ++level) {
    const std::size_t byte = line.threshold_byte + 2 * level;
    if (!are_all_known && !half.Has(byte, 2)) continue;
    const std::uint32_t raw = WordAt(half, byte);
    common &= raw;
    any |= raw;
    thresholds.values[level] = conversion(raw);
    thresholds.given |= static_cast<std::uint8_t>(1U << level);
  }
  if (any == 0 || common == kAllSet) return {};
  return thresholds;
}

}  // namespace

std::string HexText(unsigned byte) {
  return {'0', 'x', text::kHexDigits[byte >> 4U & 0xFU], text::kHexDigits[byte & 0xFU]};
}

void WarnMoreThan(Decoding& to, Field field, double value) {
  const FieldInfo& info = DescribeField(field);
  to.info.warnings.push_back(std::string(info.label) + ": more than " +
                             std::to_string(std::lround(value)) + ' ' + std::string(info.unit));
}

std::optional<std::uint32_t> RawOf(const ModuleImage& image, const MapField& line) {
  const ModuleImage::Half& half = image.HalfOf(line.page, line.byte);
  if (!half.Has(line.byte, line.extent.bytes)) return std::nullopt;
  return RawNumber(half, line.byte, line.extent);
}

const MapField* FindLine(const MemoryMap& map, Field field) {
  for (const MapField& line : map.fields) {
    if (line.field == field) return &line;
  }
  return nullptr;
}

std::optional<double> ValueOf(const ModuleImage& image, const MemoryMap& map, Field field) {
  const MapField* const line = FindLine(map, field);
  if (line == nullptr) return std::nullopt;
  const std::optional<std::uint32_t> raw = RawOf(image, *line);
  if (!raw) return std::nullopt;
  return ValueOf(line->format, line->extent, *raw);
}

void DecodeField(Decoding& to, const MapField& line, const ModuleImage::Half& half,
                 Advertised advertised) {
  if (line.format.type == RawType::kText) return DecodeText(to, line, half, advertised);
  const bool is_known = HasAll(half, line.byte, line.extent);
  const std::uint32_t raw = is_known ? RawNumber(half, line.byte, line.extent) : 0;
  const FieldState state = StateOf(advertised, is_known, raw != 0);
  if (state != FieldState::kPresent) return to.info.SetState(line.field, state);
  switch (line.format.type) {
    case RawType::kFlag:
      return to.info.SetNumber(line.field, raw != 0 ? 1.0 : 0.0);
    case RawType::kInverseFlag:
      return to.info.SetNumber(line.field, raw != 0 ? 0.0 : 1.0);
    case RawType::kCode:
      if (line.format.zero_is_none && raw == 0) break;
      return to.info.SetCode(line.field, raw, line.format.codes->Name(raw));
    case RawType::kOui:
      return SetOui(to.info, line.field, raw);
    case RawType::kVersion:
      return SetVersion(to.info, line.field, raw);
    default:
      return SetNumber(to, line, raw);
  }
  to.info.SetState(line.field, FieldState::kNotImplemented);
}

void DecodeFields(Decoding& to, Lines<MapField> map) {
  Asker ask(to.image);
  HalfFinder half_of(to.image);
  for (const MapField& line : map) {
    if (line.format.type == RawType::kOwn) continue;
    const Advertised advertised = ask(line.advertised);
    if (advertised == Advertised::kNo) continue;
    DecodeField(to, line, half_of(line.page, line.byte), advertised);
  }
}

std::optional<std::uint32_t> RawOf(const ModuleImage& image, const LaneMapField& line,
                                   unsigned lane, unsigned bank) {
  const LanePlace place = PlaceOf(line, lane);
  const ModuleImage::Half& half = image.HalfOf(InBank(line.page, bank), place.byte);
  if (!half.Has(place.byte, place.extent.bytes)) return std::nullopt;
  return RawNumber(half, place.byte, place.extent);
}

namespace {

double LaneNumberOf(const Format& format, Extent extent, std::uint32_t raw) {
  if (format.type == RawType::kFlag) return raw != 0 ? 1.0 : 0.0;
  if (format.type == RawType::kInverseFlag) return raw != 0 ? 0.0 : 1.0;
  return ValueOf(format, extent, raw);
}

}  // namespace

LaneValue ReadLaneField(const ModuleImage::Half& half, const LaneMapField& line,
                        Advertised advertised, unsigned lane) {
  const LanePlace place = PlaceOf(line, lane);
  const bool is_known = HasAll(half, place.byte, place.extent);
  const std::uint32_t raw = is_known ? RawNumber(half, place.byte, place.extent) : 0;
  LaneValue value;
  value.state = StateOf(advertised, is_known, raw != 0);
  if (!value.IsPresent()) return value;
  if (line.format.zero_is_none && raw == 0) return {};
  value.number = LaneNumberOf(line.format, place.extent, raw);
  return value;
}

LaneValue ReadLaneField(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                        unsigned lane, unsigned bank) {
  return ReadLaneField(image.HalfOf(InBank(line.page, bank), line.byte), line, advertised, lane);
}

LaneReader::LaneReader(const ModuleImage::Half& half, const LaneMapField& line,
                       Advertised advertised)
    : half_(&half), line_(&line), advertised_(advertised) {
  const RawType type = line.format.type;
  is_bits_ = line.order == LaneOrder::kBitsUp && half.Has(line.byte) &&
             (type == RawType::kFlag || type == RawType::kInverseFlag) && !line.format.zero_is_none;
  if (!is_bits_) return;
  bits_ = static_cast<unsigned>(half[line.byte]) >> line.extent.low;
  for (unsigned raw = 0; raw < 2; ++raw) {
    LaneValue& value = of_bit_[raw];
    value.state = StateOf(advertised, true, raw != 0);
    if (value.IsPresent()) value.number = LaneNumberOf(line.format, Bit(0), raw);
  }
}

void LaneReader::Read(Lane* lanes, std::size_t count, std::uint64_t having) const {
  const LaneField field = line_->field;
  const auto set = [&](const auto& value_of) {
    for (Lane* lane = lanes; lane != lanes + count; ++lane) {
      const unsigned n = (lane->number - 1) % kLanesPerBank;
      if ((having >> n & 1U) != 0) lane->Set(field, value_of(n));
    }
  };
  if (is_bits_) {
    const unsigned bits = bits_;
    return set([this, bits](unsigned n) { return of_bit_[bits >> n & 1U]; });
  }
  if (half_->IsEmpty() && advertised_ != Advertised::kNo) {
    return set([](unsigned) { return LaneValue{FieldState::kNotRead, 0.0}; });
  }
  set([this](unsigned n) { return ReadLaneField(*half_, *line_, advertised_, n + 1); });
}

void DecodeLanes(Decoding& to, Lines<LaneMapField> map, std::uint64_t absent) {
  Asker ask(to.image);
  HalfFinder half_of(to.image);
  for (const LaneMapField& line : map) {
    if (line.format.type == RawType::kOwn) continue;
    const Advertised advertised = ask(line.advertised);
    if (advertised == Advertised::kNo) continue;
    LaneReader(half_of(line.page, line.byte), line, advertised)
        .Read(to.info.lanes.data(), to.info.lanes.size(), ~absent);
  }
}

double Conversion::operator()(std::uint32_t raw) const {
  double number =
      format.type == RawType::kSigned ? SignedOf(raw, WidthOf(kWord)) : static_cast<double>(raw);
  if (calibrate != nullptr) number = calibrate(constants, number);
  return number * (format.times * times) / format.per;
}

namespace {

// The values and the flags of a quantity in a bank with the lanes 1 to `lanes`.
class MonitorBank {
 public:
  MonitorBank(const ModuleImage& image, const MapMonitor& line, unsigned bank, unsigned lanes)
      : line_(&line),
        values_(&image.HalfOf(InBank(line.page, bank), line.byte)),
        flags_(&image.HalfOf(InBank(line.flags.page, bank), line.flags.byte)),
        common_flags_(CommonFlags(*flags_, line.flags, lanes)) {}

  // The raw number of a lane; none when it is not known.
  std::optional<std::uint32_t> RawOf(unsigned lane) const {
    const std::size_t byte = line_->byte + 2 * std::size_t{lane - 1};
    if (!values_->Has(byte, 2)) return std::nullopt;
    return WordAt(*values_, byte);
  }
  AlarmFlags FlagsOf(unsigned lane) const {
    return common_flags_ ? *common_flags_ : ReadFlags(*flags_, line_->flags, lane);
  }

 private:
  const MapMonitor* line_;
  const ModuleImage::Half* values_;
  const ModuleImage::Half* flags_;
  std::optional<AlarmFlags> common_flags_;  // those of each lane
};

// The raw value and the flags of a quantity, without its thresholds.
struct RawMonitor {
  RawMonitor(const MonitorBank& bank, unsigned lane)
      : value(bank.RawOf(lane)), flags(bank.FlagsOf(lane)) {}

  // A value that implies that the monitor exists.
  bool IsPlausible() const {
    constexpr std::uint32_t kAllSet = 0xFFFF;
    return value.value_or(0) != 0 && value != kAllSet;
  }

  std::optional<std::uint32_t> value;
  AlarmFlags flags;
};

void SetMonitor(Monitor& monitor, const RawMonitor& raw, const Conversion& conversion,
                Advertised advertised, const Thresholds& thresholds) {
  monitor = {};
  monitor.state = StateOf(advertised, raw.value.has_value(), raw.value.value_or(0) != 0);
  if (monitor.state == FieldState::kNotImplemented) return;
  if (monitor.IsPresent()) monitor.value = conversion(*raw.value);
  monitor.thresholds = thresholds;
  monitor.flags = raw.flags;
}

}  // namespace

Monitor ReadMonitor(const ModuleImage& image, const MapMonitor& line, const Conversion& conversion,
                    Advertised advertised, unsigned lane, unsigned bank) {
  Monitor monitor;
  SetMonitor(monitor, RawMonitor(MonitorBank(image, line, bank, lane), lane), conversion,
             advertised, ReadThresholds(image, line, conversion));
  return monitor;
}

namespace {

std::string_view NameOf(const MapMonitor& line) {
  switch (line.quantity) {
    case Quantity::kTemperature:
      return "Temperature";
    case Quantity::kVoltage:
      return "Supply voltage";
    case Quantity::kTxBias:
      return "TX bias";
    case Quantity::kTxPower:
      return "TX power";
    case Quantity::kRxPower:
      return "RX power";
    case Quantity::kAux:
      break;
  }
  return line.name;
}

bool IsOfLanes(Quantity quantity) {
  return quantity == Quantity::kTxBias || quantity == Quantity::kTxPower ||
         quantity == Quantity::kRxPower;
}

// "RX power is not advertised, but has a value: lane 1, 2".
void WarnOfLanes(Decoding& to, std::string_view name, const std::string& lanes,
                 std::string_view what) {
  if (lanes.empty()) return;
  constexpr std::string_view kNotAdvertised = " is not advertised, but ";
  constexpr std::string_view kLane = ": lane ";
  std::string& warning = to.info.warnings.emplace_back();
  warning.reserve(name.size() + kNotAdvertised.size() + what.size() + kLane.size() + lanes.size());
  warning.append(name).append(kNotAdvertised).append(what).append(kLane).append(lanes);
}

void AddLane(std::string& lanes, unsigned lane) {
  if (!lanes.empty()) lanes += ", ";
  lanes += std::to_string(lane);
}

Monitor& MonitorOf(Lane& lane, Quantity quantity) {
  if (quantity == Quantity::kTxBias) return lane.tx_bias;
  return quantity == Quantity::kTxPower ? lane.tx_power : lane.rx_power;
}

void ApplyReadiness(Monitor& monitor, const MonitorScope& scope) {
  if (scope.is_ready || !monitor.IsPresent()) return;
  monitor.state = FieldState::kNotReady;
  monitor.value = 0.0;
}

void DecodeModuleMonitor(Decoding& to, const MapMonitor& line, const Conversion& conversion,
                         Advertised advertised, const MonitorScope& scope) {
  const RawMonitor raw(MonitorBank(to.image, line, 0, 1), 1);
  Monitor monitor;
  SetMonitor(monitor, raw, conversion, advertised, ReadThresholds(to.image, line, conversion));
  ApplyReadiness(monitor, scope);
  if (line.quantity == Quantity::kTemperature) to.info.temperature = monitor;
  if (line.quantity == Quantity::kVoltage) to.info.voltage = monitor;
  if (line.quantity == Quantity::kAux) to.info.aux.push_back({line.name, monitor});
  if (advertised != Advertised::kNo) return;
  if (raw.IsPlausible()) {
    to.info.warnings.push_back(std::string(NameOf(line)) + " is not advertised, but has a value");
  }
  if (raw.flags.raised != 0) {
    to.info.warnings.push_back(std::string(NameOf(line)) +
                               " is not advertised, but has a flag raised");
  }
}

void DecodeLaneMonitor(Decoding& to, const MapMonitor& line, const Conversion& conversion,
                       Advertised advertised, const MonitorScope& scope) {
  if (to.info.lanes.empty()) return;
  std::string with_value;
  std::string with_flag;
  const Thresholds thresholds = ReadThresholds(to.image, line, conversion);  // those of all lanes
  const unsigned last_lane = LaneInBank(to.info.lanes.back().number);
  MonitorBank monitors(to.image, line, 0, last_lane);
  unsigned bank = 0;
  for (Lane& lane : to.info.lanes) {
    if (bank != BankOfLane(lane.number)) {
      bank = BankOfLane(lane.number);
      monitors = MonitorBank(to.image, line, bank, last_lane);
    }
    const RawMonitor raw(monitors, LaneInBank(lane.number));
    const bool is_absent = (scope.absent_lanes >> (lane.number - 1) % 64 & 1U) != 0;
    const Advertised of_lane = is_absent ? Advertised::kNo : advertised;
    Monitor& monitor = MonitorOf(lane, line.quantity);
    SetMonitor(monitor, raw, conversion, of_lane, thresholds);
    ApplyReadiness(monitor, scope);
    if (of_lane != Advertised::kNo) continue;
    if (raw.IsPlausible()) AddLane(with_value, lane.number);
    if (raw.flags.raised != 0) AddLane(with_flag, lane.number);
  }
  WarnOfLanes(to, NameOf(line), with_value, "has a value");
  WarnOfLanes(to, NameOf(line), with_flag, "has a flag raised");
}

}  // namespace

void DecodeMonitor(Decoding& to, const MapMonitor& line, const Conversion& conversion,
                   Advertised advertised, const MonitorScope& scope) {
  if (IsOfLanes(line.quantity)) {
    DecodeLaneMonitor(to, line, conversion, advertised, scope);
  } else {
    DecodeModuleMonitor(to, line, conversion, advertised, scope);
  }
}

void WarnOfFlags(Decoding& to, Lines<LaneMapField> map) {
  Asker ask(to.image);
  for (const LaneMapField& line : map) {
    if (line.field > kLastLaneFlag || ask(line.advertised) != Advertised::kNo) continue;
    std::string lanes;
    std::optional<LaneReader> read;
    unsigned bank = 0;
    for (const Lane& lane : to.info.lanes) {
      if (!read || bank != BankOfLane(lane.number)) {
        bank = BankOfLane(lane.number);
        // A value whose advertisement is unknown counts as present if any of its bits is set.
        read.emplace(to.image.HalfOf(InBank(line.page, bank), line.byte), line,
                     Advertised::kUnknown);
      }
      if ((*read)(LaneInBank(lane.number)).IsPresent()) AddLane(lanes, lane.number);
    }
    WarnOfLanes(to, DescribeField(line.field).label, lanes, "raised");
  }
}

void AddNames(const ModuleImage& image, Lines<NamedBit> bits, std::vector<std::string_view>& to,
              unsigned revision, Advertised (*ask)(const ModuleImage& image, Page page)) {
  HalfFinder half_of(image);
  for (const NamedBit* bit = bits.begin(); bit != bits.end();) {
    const Page page = bit->page;
    const std::size_t byte = bit->byte;
    unsigned value = half_of(page, byte)[byte];
    if (value != 0 && ask != nullptr && ask(image, page) == Advertised::kNo) value = 0;
    for (; bit != bits.end() && bit->byte == byte && bit->page == page; ++bit) {
      const bool is_set = (value >> bit->bit & 1U) != 0;
      if (is_set && revision >= bit->since) to.push_back(bit->name);
    }
  }
}

std::string MismatchText(const PageChecksum& sum) {
  // The checksum follows the bytes that it is of.
  return PageName(sum.page) + ": the checksum of bytes " + std::to_string(sum.first) + " to " +
         std::to_string(sum.last) + " is " + HexText(sum.computed) + ", but byte " +
         std::to_string(sum.last + 1) + " is " + HexText(sum.stored);
}

std::optional<PageChecksum> ReadChecksum(const ModuleImage& image, const Checksum& checksum) {
  const ModuleImage::Half& half = image.HalfOf(checksum.page, checksum.first);
  const std::size_t count = checksum.last - checksum.first + std::size_t{1};
  if (!half.Has(checksum.first, count) || !half.Has(checksum.stored)) return std::nullopt;
  const std::uint8_t* const bytes = half.From(checksum.first);
  const unsigned sum = std::accumulate(bytes, bytes + count, 0U);
  return PageChecksum{checksum.page, checksum.first, checksum.last, half[checksum.stored],
                      static_cast<std::uint8_t>(sum)};
}

void AddChecksums(Decoding& to, Lines<Checksum> checksums) {
  for (const Checksum& checksum : checksums) {
    const std::optional<PageChecksum> sum = ReadChecksum(to.image, checksum);
    if (!sum) continue;
    to.info.checksums.push_back(*sum);
    if (!sum->Matches()) to.info.warnings.push_back(MismatchText(*sum));
  }
}

}  // namespace cable_info::module_memory
