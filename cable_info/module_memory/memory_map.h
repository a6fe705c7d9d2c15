#pragma once

// The memory map of a module family as a table, and the functions that read it. Decoding, output,
// documentation and conversion to records use the same lines.
//
// Internal; not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/module_memory/sff8024.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

// ---------------------------------------------------------------------------------------------
// The position of a field
// ---------------------------------------------------------------------------------------------

/// The size of a field: bits of one byte, or whole bytes.
struct Extent {
  std::uint8_t bytes;
  std::uint8_t high;  ///< bits of a single byte: high..low
  std::uint8_t low;
};
/// Bits of a byte, as the standards write them: 7..4.
constexpr Extent Bits(std::uint8_t high, std::uint8_t low) { return {1, high, low}; }
constexpr Extent Bit(std::uint8_t bit) { return {1, bit, bit}; }
/// Whole bytes, the most significant first.
constexpr Extent Bytes(std::uint8_t count) { return {count, 7, 0}; }
inline constexpr Extent kByte = Bytes(1);
inline constexpr Extent kWord = Bytes(2);

/// The bytes of a field as one big-endian number of at most four bytes; of a single byte, its bits.
inline std::uint32_t RawNumber(const ModuleImage::Half& half, std::size_t byte, Extent extent) {
  if (extent.bytes == 1) {
    return half[byte] >> extent.low & ((1U << (extent.high - extent.low + 1U)) - 1U);
  }
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < extent.bytes; ++i) number = number << 8U | half[byte + i];
  return number;
}

// ---------------------------------------------------------------------------------------------
// The meaning of its bytes
// ---------------------------------------------------------------------------------------------

enum class RawType : std::uint8_t {
  kText,
  kUnsigned,
  kSigned,       ///< two's complement over all bits of the field
  kSingle,       ///< IEEE-754 single precision
  kFlag,         ///< set: true
  kInverseFlag,  ///< clear: true
  kCode,
  kOui,      ///< three bytes as hexadecimal; all zero is none
  kVersion,  ///< two bytes, "major.minor"; 0.0 and 255.255 are none
  kOwn,      ///< decoded by code of the family, together with other fields
};

/// The meaning of the bits of a field.
struct Format {
  RawType type;
  double times = 1.0;  ///< value = raw * times / per
  double per = 1.0;
  const CodeTable* codes = nullptr;  ///< the names of codes
  bool zero_is_none = false;         ///< a raw 0 means that nothing is given
  bool highest_is_more = false;      ///< all bits set means more than the highest number

  /// A raw 0 means that nothing is given.
  constexpr Format ZeroIsNone() const {
    Format format = *this;
    format.zero_is_none = true;
    return format;
  }
  /// All bits set means "more than the highest number".
  constexpr Format HighestIsMore() const {
    Format format = *this;
    format.highest_is_more = true;
    return format;
  }
};

struct Scale {
  double times;
  double per;
};
/// value = raw number * times.
constexpr Scale Times(double times) { return {times, 1.0}; }
/// value = raw number / per.
constexpr Scale Per(double per) { return {1.0, per}; }

inline constexpr Format kText = {RawType::kText};
inline constexpr Format kFlag = {RawType::kFlag};
inline constexpr Format kInverseFlag = {RawType::kInverseFlag};
inline constexpr Format kOui = {RawType::kOui};
inline constexpr Format kVersion = {RawType::kVersion};
inline constexpr Format kOwn = {RawType::kOwn};
inline constexpr Format kNumber = {RawType::kUnsigned};
inline constexpr Format kSingle = {RawType::kSingle};
constexpr Format Number(Scale scale) { return {RawType::kUnsigned, scale.times, scale.per}; }
constexpr Format Signed(Scale scale) { return {RawType::kSigned, scale.times, scale.per}; }
constexpr Format Code(const CodeTable& codes) { return {RawType::kCode, 1.0, 1.0, &codes}; }

/// \name Shared by the families
/// @{
inline constexpr Format kCelsius = Signed(Per(256));       ///< 1/256 degrees Celsius, in degrees
inline constexpr Format kVolts = Number(Per(10000));       ///< 100 uV, in V
inline constexpr Format kMilliwatts = Number(Per(10000));  ///< 0.1 uW, in mW
inline constexpr Format kMilliamperes = Number(Per(500));  ///< 2 uA, in mA
/// @}

// ---------------------------------------------------------------------------------------------
// Its advertisement
// ---------------------------------------------------------------------------------------------

enum class Advertised : std::uint8_t {
  kNo,
  kYes,
  kUnknown,  ///< the advertising page was not read
};

/// Where a module advertises that it implements a field.
struct Advertisement {
  /// Decides; null for a single bit.
  Advertised (*rule)(const ModuleImage& image) = nullptr;
  Page page = Page::k00;
  std::uint8_t byte = 0;
  std::uint8_t bit = 0;
  std::string_view words;  ///< the rule in words; empty for a single bit
  bool is_always = false;
};

/// Not advertised: every module has the field, or every module that has its page.
inline constexpr Advertisement kAlways = {nullptr, Page::k00, 0, 0, {}, true};
/// Advertised by a bit that is set.
constexpr Advertisement On(Page page, std::uint8_t byte, std::uint8_t bit) {
  return {nullptr, page, byte, bit, {}, false};
}
/// Advertised by a rule; `words` describes it.
constexpr Advertisement By(Advertised (*rule)(const ModuleImage&), std::string_view words) {
  return {rule, Page::k00, 0, 0, words, false};
}

constexpr Advertised AdvertisedIf(bool is_advertised) {
  return is_advertised ? Advertised::kYes : Advertised::kNo;
}
/// Yes if any bit of the mask is set; `half` contains the byte.
inline Advertised AskBits(const ModuleImage::Half& half, std::size_t byte, unsigned mask) {
  if (!half.Has(byte)) return Advertised::kUnknown;
  return AdvertisedIf((half[byte] & mask) != 0);
}
inline Advertised AskBits(const ModuleImage& image, Page page, std::size_t byte, unsigned mask) {
  return AskBits(image.HalfOf(page, byte), byte, mask);
}
/// Yes if the bit is set.
inline Advertised AskBit(const ModuleImage& image, Page page, std::size_t byte, unsigned bit) {
  return AskBits(image, page, byte, 1U << bit);
}
/// Evaluates an advertisement.
inline Advertised Ask(const ModuleImage& image, const Advertisement& advertisement) {
  if (advertisement.is_always) return Advertised::kYes;
  if (advertisement.rule != nullptr) return advertisement.rule(image);
  return AskBit(image, advertisement.page, advertisement.byte, advertisement.bit);
}

/// Finds the half pages of an image. Lines of a map that follow each other mostly have the same
/// one.
class HalfFinder {
 public:
  explicit HalfFinder(const ModuleImage& image) : image_(image) {}

  const ModuleImage::Half& operator()(Page page, std::size_t byte) {
    const bool is_upper = byte >= ModuleImage::kHalf;
    if (half_ == nullptr || page != page_ || is_upper != is_upper_) {
      half_ = &image_.HalfOf(page, byte);
      page_ = page;
      is_upper_ = is_upper;
    }
    return *half_;
  }

 private:
  const ModuleImage& image_;
  const ModuleImage::Half* half_ = nullptr;
  Page page_ = Page::kLower;
  bool is_upper_ = false;
};

/// Asks an image for advertisements. Lines of a map that follow each other often share one.
class Asker {
 public:
  explicit Asker(const ModuleImage& image) : image_(image), half_of_(image) {}

  Advertised operator()(const Advertisement& advertisement) {
    if (advertisement.is_always) return Advertised::kYes;
    if (advertisement.rule == nullptr) {
      return AskBits(half_of_(advertisement.page, advertisement.byte), advertisement.byte,
                     1U << advertisement.bit);
    }
    if (advertisement.rule != rule_) {
      rule_ = advertisement.rule;
      answer_ = rule_(image_);
    }
    return answer_;
  }

 private:
  const ModuleImage& image_;
  HalfFinder half_of_;
  Advertised (*rule_)(const ModuleImage& image) = nullptr;
  Advertised answer_ = Advertised::kUnknown;
};

/// Yes if both are yes, no if one of them is no.
constexpr Advertised Both(Advertised a, Advertised b) {
  if (a == Advertised::kNo || b == Advertised::kNo) return Advertised::kNo;
  return a == Advertised::kYes ? b : a;
}
/// Yes if one of them is yes, no if both are no.
constexpr Advertised Either(Advertised a, Advertised b) {
  if (a == Advertised::kYes || b == Advertised::kYes) return Advertised::kYes;
  return a == Advertised::kNo ? b : a;
}
/// Yes if it is no, and vice versa.
constexpr Advertised Not(Advertised a) {
  if (a == Advertised::kUnknown) return a;
  return a == Advertised::kYes ? Advertised::kNo : Advertised::kYes;
}

/// The state of a field from its advertisement, whether its bytes are known (`is_known`) and
/// whether any of them is not 0 (`is_set`). If the advertising page was not read, 0 may mean no
/// value.
inline FieldState StateOf(Advertised advertised, bool is_known, bool is_set) {
  if (advertised == Advertised::kNo) return FieldState::kNotImplemented;
  if (!is_known) return FieldState::kNotRead;
  const bool is_present = advertised == Advertised::kYes || is_set;
  return is_present ? FieldState::kPresent : FieldState::kNotRead;
}

// ---------------------------------------------------------------------------------------------
// Maps
// ---------------------------------------------------------------------------------------------

/// A line of a map: a field of the module as a whole.
struct MapField {
  Field field;
  Page page;
  std::uint8_t byte;
  Extent extent;
  Format format;
  Advertisement advertised;
  std::string_view since;  ///< the first revision of the standard that has it; empty: all
};

/// The layout of the values of lanes 1, 2, ...
enum class LaneOrder : std::uint8_t {
  kModule,           ///< one value for all
  kBitsUp,           ///< one bit per lane, lane 1 in the lowest bit of the extent
  kBitsDown,         ///< one bit per lane, lane 1 in the highest bit of the extent
  kPairsUp,          ///< two bits per lane, lane 1 in bits 1..0
  kHighNibbleFirst,  ///< four bits per lane, lane 1 in bits 7..4 of the first byte
  kLowNibbleFirst,   ///< four bits per lane, lane 1 in bits 3..0 of the first byte
  kApart,            ///< the extents of the lanes follow each other
  kQuads,            ///< one of the four words of each lane, the next lane's 8 bytes later
};

/// The kind of lanes that have a field. The numbers of host and media lanes may differ.
enum class LaneSide : std::uint8_t { kBoth, kHost, kMedia };

/// A line of a map: a field of each lane. The extent is that of lane 1, for bits that of all lanes.
struct LaneMapField {
  LaneField field;
  Page page;
  std::uint8_t byte;
  Extent extent;
  LaneOrder order;
  Format format;
  Advertisement advertised;
  std::string_view since;
  LaneSide side = LaneSide::kBoth;
};

/// The monitored quantities of a module and its lanes.
enum class Quantity : std::uint8_t { kTemperature, kVoltage, kAux, kTxBias, kTxPower, kRxPower };

/// The position of the four flags of a quantity: that of the high alarm of lane 1, and the
/// distances to the others. Bits are numbered consecutively, bit 7 of a byte first.
struct FlagPlaces {
  Page page;
  std::uint8_t byte;
  std::uint8_t bit;     ///< of the high alarm of lane 1
  std::int8_t low;      ///< from a high level to the low one
  std::int8_t warning;  ///< from an alarm to the warning
  std::int8_t lane;     ///< from a lane to the next one
};

/// A bit of a byte of a page.
struct BitPlace {
  std::size_t byte;
  std::uint8_t bit;
};

/// The flag of a level of lane `lane`.
constexpr BitPlace FlagPlace(const FlagPlaces& places, AlarmLevel level, unsigned lane = 1) {
  constexpr unsigned kByteBits = 8;
  const auto n = static_cast<int>(level);
  const int from_first =
      (n & 1) * places.low + (n >> 1) * places.warning + static_cast<int>(lane - 1) * places.lane;
  const auto at = static_cast<unsigned>(places.byte * 8 + 7 - places.bit + from_first);
  return {at / kByteBits, static_cast<std::uint8_t>(7 - at % kByteBits)};
}

/// A line of a map: a monitored quantity with its thresholds and flags. Lanes follow each other
/// word by word; thresholds are four words in the order of `AlarmLevel`.
struct MapMonitor {
  Quantity quantity;
  std::string_view name;  ///< of an auxiliary monitor
  Page page;
  std::uint8_t byte;
  Format format;
  Page threshold_page;
  std::uint8_t threshold_byte;
  FlagPlaces flags;
  Advertisement advertised;
  std::string_view since;
};

/// A bit with a name: an option, or a standard that the module follows.
struct NamedBit {
  Page page;
  std::uint8_t byte;
  std::uint8_t bit;
  std::string_view name;
  std::uint8_t since = 0;  ///< the revision byte of the first revision that has it; 0: all
};

/// A checksum: the low byte of the sum of some bytes, stored in another byte of the same page.
struct Checksum {
  Page page;
  std::uint8_t first;
  std::uint8_t last;
  std::uint8_t stored;
};

/// A view of the lines of a table.
template <typename T>
class Lines {
 public:
  constexpr Lines() = default;
  template <std::size_t N>
  constexpr Lines(const T (&lines)[N]) : begin_(lines), end_(lines + N) {}  // NOLINT: implicit
  template <std::size_t N>
  constexpr Lines(const std::array<T, N>& lines)  // NOLINT: implicit, as from an array
      : begin_(lines.data()), end_(lines.data() + N) {}
  constexpr const T* begin() const { return begin_; }
  constexpr const T* end() const { return end_; }
  constexpr std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

 private:
  const T* begin_ = nullptr;
  const T* end_ = nullptr;
};

/// Everything that the standard of a family defines as tables.
struct MemoryMap {
  Lines<MapField> fields;
  Lines<LaneMapField> lane_fields;
  Lines<MapMonitor> monitors;
  Lines<NamedBit> compliance;
  Lines<NamedBit> options;
  Lines<Checksum> checksums;
};

/// \name The maps
/// @{
const MemoryMap& Sff8636Map();
const MemoryMap& Sff8472Map();
const MemoryMap& CmisMap();
/// @}

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

/// The input and output of a family's decoder.
struct Decoding {
  const ModuleImage& image;
  ModuleInfo& info;

  void Warn(std::string_view warning) { info.warnings.emplace_back(warning); }
};

/// Decodes all fields of the map but those of `RawType::kOwn`. Those that are not advertised stay
/// not implemented.
void DecodeFields(Decoding& to, Lines<MapField> map);
/// Decodes one field, advertised as given, from the half page that contains it.
void DecodeField(Decoding& to, const MapField& line, const ModuleImage::Half& half,
                 Advertised advertised);

/// Reads a field of lane `lane` (1: the first of the bank), whose pages are in bank `bank`,
/// advertised as given.
LaneValue ReadLaneField(const ModuleImage& image, const LaneMapField& line, Advertised advertised,
                        unsigned lane, unsigned bank = 0);
/// The same, given the half page that contains the field.
LaneValue ReadLaneField(const ModuleImage::Half& half, const LaneMapField& line,
                        Advertised advertised, unsigned lane);
/// Reads a field, but none of `RawType::kOwn`, of the lanes of one bank. What the lanes have in
/// common is found once, since modules have hundreds of such values, most of them bits.
class LaneReader {
 public:
  /// The half page contains the field, and outlives the reader as the line does.
  LaneReader(const ModuleImage::Half& half, const LaneMapField& line, Advertised advertised);

  /// The value of lane `lane` (1: the first of the bank).
  LaneValue operator()(unsigned lane) const {
    if (is_bits_) return of_bit_[bits_ >> (lane - 1) & 1U];
    return ReadLaneField(*half_, *line_, advertised_, lane);
  }
  /// Sets the field of `count` lanes of the bank. Bit n of `having`: lane n + 1 of the bank has it.
  void Read(Lane* lanes, std::size_t count, std::uint64_t having) const;

 private:
  const ModuleImage::Half* half_;
  const LaneMapField* line_;
  Advertised advertised_;
  bool is_bits_ = false;  // a bit for each lane, which is known
  unsigned bits_ = 0;     // of lane 1 and so on, from the lowest on
  LaneValue of_bit_[2];   // the values of a clear and a set bit
};
/// The banks of lanes: eight lanes each.
inline constexpr unsigned kLanesPerBank = 8;
/// The bank of lane `lane` of the module (from 1), and its number in that bank (from 1).
constexpr unsigned BankOfLane(unsigned lane) { return (lane - 1) / kLanesPerBank; }
constexpr unsigned LaneInBank(unsigned lane) { return (lane - 1) % kLanesPerBank + 1; }
/// A page of a map, which lists those of bank 0, in another bank.
constexpr Page InBank(Page page, unsigned bank) {
  return bank == 0 ? page : PageOf(NumberOf(page), bank);
}
/// Decodes the fields of all lanes of `to`, which are in bank 0, in the same way, all but those of
/// `RawType::kOwn`. Bit n of `absent`: lane n + 1 has none of them.
void DecodeLanes(Decoding& to, Lines<LaneMapField> map, std::uint64_t absent);
/// The raw number of a lane's field; none when it is not known.
std::optional<std::uint32_t> RawOf(const ModuleImage& image, const LaneMapField& line,
                                   unsigned lane, unsigned bank = 0);
/// The raw number of a field; none when it is not known.
std::optional<std::uint32_t> RawOf(const ModuleImage& image, const MapField& line);

/// The line of a map for a field; null when it has none. Where several lines are alternatives, the
/// first.
const MapField* FindLine(const MemoryMap& map, Field field);
/// The value of a numeric field, whether it is advertised or not; none when it is not known.
std::optional<double> ValueOf(const ModuleImage& image, const MemoryMap& map, Field field);

/// A raw monitor value into its unit. With a calibration, the raw value goes through it first.
struct Conversion {
  Format format;
  double (*calibrate)(const void* constants, double raw) = nullptr;
  const void* constants = nullptr;
  double times = 1.0;  ///< of the result

  double operator()(std::uint32_t raw) const;
};

/// Reads a quantity of lane `lane`, with its thresholds and flags, advertised as given. Thresholds
/// that are all 0000h or all FFFFh are not given.
Monitor ReadMonitor(const ModuleImage& image, const MapMonitor& line, const Conversion& conversion,
                    Advertised advertised, unsigned lane = 1, unsigned bank = 0);

/// Additional conditions for decoding quantities.
struct MonitorScope {
  std::uint64_t absent_lanes = 0;  ///< bit n: lane n + 1 does not have the quantity
  bool is_ready = true;            ///< the module has valid data
};

/// Decodes a quantity of the module, or of all lanes of `to`, eight per bank. A value or a flag
/// that is set but not advertised gives a warning.
void DecodeMonitor(Decoding& to, const MapMonitor& line, const Conversion& conversion,
                   Advertised advertised, const MonitorScope& scope);

/// Adds warnings for flags of lanes that are raised but not advertised.
void WarnOfFlags(Decoding& to, Lines<LaneMapField> map);

/// Appends the names of the bits that are set, of those that `revision` and the revisions before it
/// define. `ask`, if given, decides whether the module has a page.
void AddNames(const ModuleImage& image, Lines<NamedBit> bits, std::vector<std::string_view>& to,
              unsigned revision = 0xFF,
              Advertised (*ask)(const ModuleImage& image, Page page) = nullptr);

/// Computes a checksum; none when bytes of it are not known.
std::optional<PageChecksum> ReadChecksum(const ModuleImage& image, const Checksum& checksum);

/// Computes the checksums whose bytes are all known; a mismatch gives a warning.
void AddChecksums(Decoding& to, Lines<Checksum> checksums);

/// "Length, SMF: more than 254 km", as a warning.
void WarnMoreThan(Decoding& to, Field field, double value);

/// "0x1a".
std::string HexText(unsigned byte);

}  // namespace module_memory
}  // namespace cable_info
