#include "cable_info/module_memory/memory_map.h"

#include <cmath>
#include <cstring>
#include <numeric>

namespace cable_info::module_memory {

namespace {

constexpr unsigned kBitsPerByte = 8;

bool IsBlank(char c) { return c == ' ' || c == '\0'; }

// The page of a line in another bank.
Page InBank(Page page, unsigned bank) { return bank == 0 ? page : PageOf(NumberOf(page), bank); }

std::int32_t SignedOf(std::uint32_t raw, unsigned bits) {
  if (bits == 0) return 0;
  const unsigned unused = 32 - bits;
  return static_cast<std::int32_t>(raw << unused) >> unused;
}

unsigned WidthOf(Extent extent) {
  return extent.bytes == 1 ? extent.high - extent.low + 1U : extent.bytes * kBitsPerByte;
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
  constexpr std::size_t kLongestText = 32;
  char text[kLongestText];
  std::size_t size = 0;
  // A text that is cut short is still one.
  while (size < line.extent.bytes && size < kLongestText && half.Has(line.byte + size)) {
    text[size] = static_cast<char>(half[line.byte + size]);
    ++size;
  }
  const bool is_known = size != 0;
  while (size != 0 && IsBlank(text[size - 1])) --size;
  const FieldState state = StateOf(advertised, is_known, size != 0);
  if (state != FieldState::kPresent) return to.info.SetState(line.field, state);
  if (size == 0) return to.info.SetState(line.field, FieldState::kNotImplemented);
  to.info.SetText(line.field, {text, size});
}

void SetOui(ModuleInfo& info, Field field, std::uint32_t raw) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr std::size_t kOuiDigits = 6;
  if (raw == 0) return info.SetState(field, FieldState::kNotImplemented);
  char text[kOuiDigits];
  for (std::size_t i = 0; i < kOuiDigits; ++i) {
    text[kOuiDigits - 1 - i] = kDigits[raw >> 4 * i & 0xFU];
  }
  info.SetText(field, {text, kOuiDigits});
}

void SetVersion(ModuleInfo& info, Field field, std::uint32_t raw) {
  constexpr std::uint32_t kInvalid = 0xFFFF;
  if (raw == 0 || raw == kInvalid) return info.SetState(field, FieldState::kNotImplemented);
  info.SetText(field, std::to_string(raw >> kBitsPerByte) + '.' + std::to_string(raw & 0xFFU));
}

void SetNumber(Decoding& to, const MapField& line, std::uint32_t raw) {
  const Format& format = line.format;
  const unsigned width = WidthOf(line.extent);
  const std::uint32_t highest = width < 32 ? (std::uint32_t{1} << width) - 1 : 0xFFFFFFFFU;
  if (format.zero_is_none && raw == 0) {
    return to.info.SetState(line.field, FieldState::kNotImplemented);
  }
  const double value = ValueOf(format, line.extent, raw);
  if (format.highest_is_more && raw == highest) {
    to.info.SetState(line.field, FieldState::kNotImplemented);
    return WarnMoreThan(to, line.field, (raw - 1) * format.times / format.per);
  }
  to.info.SetNumber(line.field, value);
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
    case LaneOrder::kModule:
      break;
  }
  return {line.byte, line.extent};
}

AlarmFlags ReadFlags(const ModuleImage& image, const FlagPlaces& places, unsigned lane,
                     unsigned bank) {
  AlarmFlags flags;
  const ModuleImage::Half& half = image.HalfOf(InBank(places.page, bank), places.byte);
  const int first = places.byte * 8 + (7 - places.bit) + static_cast<int>(lane - 1) * places.lane;
  for (unsigned level = 0; level < kAlarmLevels; ++level) {
    const int at = first + static_cast<int>(level & 1U) * places.low +
                   static_cast<int>(level >> 1U) * places.warning;
    const auto byte = static_cast<std::size_t>(at / 8);
    if (!half.Has(byte)) continue;
    flags.known |= static_cast<std::uint8_t>(1U << level);
    const unsigned is_raised = half[byte] >> (7 - at % 8) & 1U;
    flags.raised |= static_cast<std::uint8_t>(is_raised << level);
  }
  return flags;
}

Thresholds ReadThresholds(const ModuleImage& image, const MapMonitor& line,
                          const Conversion& conversion) {
  constexpr std::uint32_t kAllSet = 0xFFFF;
  Thresholds thresholds;
  const ModuleImage::Half& half = image.HalfOf(line.threshold_page, line.threshold_byte);
  std::uint32_t common = kAllSet;
  std::uint32_t any = 0;
  for (std::size_t level = 0; level < kAlarmLevels; ++level) {
    const std::size_t byte = line.threshold_byte + 2 * level;
    if (!half.Has(byte, 2)) continue;
    const std::uint32_t raw = RawNumber(half, byte, kWord);
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
  constexpr std::string_view kDigits = "0123456789abcdef";
  return {'0', 'x', kDigits[byte >> 4U & 0xFU], kDigits[byte & 0xFU]};
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

void DecodeField(Decoding& to, const MapField& line, Advertised advertised) {
  const ModuleImage::Half& half = to.image.HalfOf(line.page, line.byte);
  if (line.format.type == RawType::kText) return DecodeText(to, line, half, advertised);
  const bool is_known = half.Has(line.byte, line.extent.bytes);
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
  for (const MapField& line : map) {
    if (line.format.type == RawType::kOwn) continue;
    const Advertised advertised = Ask(to.image, line.advertised);
    if (advertised != Advertised::kNo) DecodeField(to, line, advertised);
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
  const bool is_known =
      place.extent.bytes == 1 ? half.Has(place.byte) : half.Has(place.byte, place.extent.bytes);
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

void DecodeLanes(Decoding& to, Lines<LaneMapField> map, std::uint64_t absent) {
  for (const LaneMapField& line : map) {
    if (line.format.type == RawType::kOwn) continue;
    const Advertised advertised = Ask(to.image, line.advertised);
    if (advertised == Advertised::kNo) continue;
    const ModuleImage::Half& half = to.image.HalfOf(line.page, line.byte);
    for (Lane& lane : to.info.lanes) {
      if ((absent >> (lane.number - 1) & 1U) != 0) continue;
      lane[line.field] = ReadLaneField(half, line, advertised, lane.number);
    }
  }
}

double Conversion::operator()(std::uint32_t raw) const {
  double number =
      format.type == RawType::kSigned ? SignedOf(raw, WidthOf(kWord)) : static_cast<double>(raw);
  if (calibrate != nullptr) number = calibrate(constants, number);
  return number * (format.times * times) / format.per;
}

namespace {

// Reads a quantity whose thresholds are known already.
Monitor ReadMonitor(const ModuleImage& image, const MapMonitor& line, const Conversion& conversion,
                    Advertised advertised, const Thresholds& thresholds, unsigned lane,
                    unsigned bank) {
  Monitor monitor;
  const std::size_t byte = line.byte + 2 * std::size_t{lane - 1};
  const ModuleImage::Half& half = image.HalfOf(InBank(line.page, bank), byte);
  const bool is_known = half.Has(byte, 2);
  const std::uint32_t raw = is_known ? RawNumber(half, byte, kWord) : 0;
  monitor.state = StateOf(advertised, is_known, raw != 0);
  if (monitor.state == FieldState::kNotImplemented) return monitor;
  if (monitor.IsPresent()) monitor.value = conversion(raw);
  monitor.thresholds = thresholds;
  monitor.flags = ReadFlags(image, line.flags, lane, bank);
  return monitor;
}

}  // namespace

Monitor ReadMonitor(const ModuleImage& image, const MapMonitor& line, const Conversion& conversion,
                    Advertised advertised, unsigned lane, unsigned bank) {
  return ReadMonitor(image, line, conversion, advertised, ReadThresholds(image, line, conversion),
                     lane, bank);
}

namespace {

constexpr unsigned kLanesPerBank = 8;

unsigned BankOfLane(unsigned lane) { return (lane - 1) / kLanesPerBank; }
unsigned LaneInBank(unsigned lane) { return (lane - 1) % kLanesPerBank + 1; }

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

// A value that implies that the monitor exists.
bool IsPlausible(const ModuleImage& image, const MapMonitor& line, unsigned lane, unsigned bank) {
  constexpr std::uint32_t kAllSet = 0xFFFF;
  const std::size_t byte = line.byte + 2 * std::size_t{lane - 1};
  const ModuleImage::Half& half = image.HalfOf(InBank(line.page, bank), byte);
  const std::uint32_t raw = half.Has(byte, 2) ? RawNumber(half, byte, kWord) : 0;
  return raw != 0 && raw != kAllSet;
}

bool IsAnyFlagRaised(const ModuleImage& image, const MapMonitor& line, unsigned lane,
                     unsigned bank) {
  return ReadFlags(image, line.flags, lane, bank).raised != 0;
}

// "RX power is not advertised, but has a value: lane 1, 2".
void WarnOfLanes(Decoding& to, std::string_view name, const std::string& lanes,
                 std::string_view what) {
  if (lanes.empty()) return;
  to.info.warnings.push_back(std::string(name) + " is not advertised, but " + std::string(what) +
                             ": lane " + lanes);
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
  Monitor monitor = ReadMonitor(to.image, line, conversion, advertised);
  ApplyReadiness(monitor, scope);
  if (line.quantity == Quantity::kTemperature) to.info.temperature = monitor;
  if (line.quantity == Quantity::kVoltage) to.info.voltage = monitor;
  if (line.quantity == Quantity::kAux) to.info.aux.push_back({line.name, monitor});
  if (advertised != Advertised::kNo) return;
  if (IsPlausible(to.image, line, 1, 0)) {
    to.info.warnings.push_back(std::string(NameOf(line)) + " is not advertised, but has a value");
  }
  if (IsAnyFlagRaised(to.image, line, 1, 0)) {
    to.info.warnings.push_back(std::string(NameOf(line)) +
                               " is not advertised, but has a flag raised");
  }
}

void DecodeLaneMonitor(Decoding& to, const MapMonitor& line, const Conversion& conversion,
                       Advertised advertised, const MonitorScope& scope) {
  std::string with_value;
  std::string with_flag;
  const Thresholds thresholds = ReadThresholds(to.image, line, conversion);  // those of all lanes
  for (Lane& lane : to.info.lanes) {
    const unsigned bank = BankOfLane(lane.number);
    const unsigned in_bank = LaneInBank(lane.number);
    const bool is_absent = (scope.absent_lanes >> (lane.number - 1) % 64 & 1U) != 0;
    const Advertised of_lane = is_absent ? Advertised::kNo : advertised;
    Monitor& monitor = MonitorOf(lane, line.quantity);
    monitor = ReadMonitor(to.image, line, conversion, of_lane, thresholds, in_bank, bank);
    ApplyReadiness(monitor, scope);
    if (of_lane != Advertised::kNo) continue;
    if (IsPlausible(to.image, line, in_bank, bank)) AddLane(with_value, lane.number);
    if (IsAnyFlagRaised(to.image, line, in_bank, bank)) AddLane(with_flag, lane.number);
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
  for (const LaneMapField& line : map) {
    if (line.field > kLastLaneFlag || Ask(to.image, line.advertised) != Advertised::kNo) continue;
    std::string lanes;
    for (const Lane& lane : to.info.lanes) {
      const unsigned bank = BankOfLane(lane.number);
      if (RawOf(to.image, line, LaneInBank(lane.number), bank).value_or(0) != 0) {
        AddLane(lanes, lane.number);
      }
    }
    WarnOfLanes(to, DescribeField(line.field).label, lanes, "raised");
  }
}

void AddNames(const ModuleImage& image, Lines<NamedBit> bits, std::vector<std::string_view>& to) {
  const ModuleImage::Half* half = nullptr;
  Page page = Page::kLower;
  std::size_t byte = 0;
  unsigned value = 0;
  for (const NamedBit& bit : bits) {  // those of a byte follow each other
    if (half == nullptr || page != bit.page || byte != bit.byte) {
      page = bit.page;
      byte = bit.byte;
      half = &image.HalfOf(page, byte);
      value = (*half)[byte];
    }
    if ((value >> bit.bit & 1U) != 0) to.push_back(bit.name);
  }
}

std::string MismatchText(const PageChecksum& sum) {
  // The checksum follows the bytes that it is of.
  return PageName(sum.page) + ": the checksum of bytes " + std::to_string(sum.first) + " to " +
         std::to_string(sum.last) + " is " + HexText(sum.computed) + ", but byte " +
         std::to_string(sum.last + 1) + " says " + HexText(sum.stored);
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
    if (sum->stored != sum->computed) to.info.warnings.push_back(MismatchText(*sum));
  }
}

}  // namespace cable_info::module_memory
