#include "cable_info/value_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>

namespace cable_info {

namespace {

constexpr std::array<std::string_view, 4> kAutonegStatusTexts = {
    "Success",
    "Port is not QDR",
    "Auto negotiation is in progress",
    "Link is down",
};

constexpr std::array<std::string_view, 9> kCableInfoVSStatusTexts = {
    "Success",
    "Invalid port number",
    "Port type is not QSFP (SFP/CX4 or internal)",
    "Cable not connected",
    "No eeprom in connected cable",
    "Invalid page number (>15)",
    "Address / size  is invalid. ((addr+size)>255) or size>48 or size==0",
    "Slave address is invalid. (slv_addr != 0x50)",
    "Bad QSFP cable (cable ignore ModSel# signal)",
};

// The names of the speeds of each mask, lowest first and joined.
struct SpeedList {
  std::array<char, 32> text;
  std::size_t size;
};

constexpr std::array<SpeedList, 1 << ib_compliance_code_arr.size()> SpeedLists() {
  std::array<SpeedList, 1 << ib_compliance_code_arr.size()> lists{};
  for (std::size_t mask = 1; mask < lists.size(); ++mask) {
    SpeedList& list = lists[mask];
    for (std::size_t bit = 0; bit < ib_compliance_code_arr.size(); ++bit) {
      if (((mask >> bit) & 1) == 0) continue;
      for (const char c : ib_compliance_code_arr[bit]) list.text[list.size++] = c;
    }
    --list.size;  // the separator behind the last speed
  }
  return lists;
}
constexpr auto kSpeedLists = SpeedLists();

constexpr std::string_view kUnknownStatus = "UNKNOWN";

// What the C locale calls blank; also what is trimmed from vendor texts.
constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int kLowestTemperature = -40;
constexpr int kHighestTemperature = 125;

constexpr std::uint32_t kMicrovoltsPerUnit = 100;

// Numbers are written three digits at a time, so that how many digits one has is hardly ever a
// matter of branches. Entry i begins at 4 i.
constexpr std::size_t kThreeDigits = 3;
constexpr std::size_t kEntrySize = 4;
constexpr std::uint32_t kEntries = 1000;
constexpr std::size_t kTableSize = kEntrySize * kEntries;
using ThreeDigitTable = std::array<char, kTableSize>;

// ".000" to ".999".
constexpr ThreeDigitTable Thousandths() {
  ThreeDigitTable texts{};
  for (std::size_t i = 0, at = 0; i < kEntries; ++i) {
    texts[at++] = '.';
    texts[at++] = static_cast<char>('0' + i / 100);
    texts[at++] = static_cast<char>('0' + i / 10 % 10);
    texts[at++] = static_cast<char>('0' + i % 10);
  }
  return texts;
}
constexpr auto kThousandths = Thousandths();

// "0" to "999", with how many digits they are in the fourth place.
constexpr ThreeDigitTable ShortNumbers() {
  ThreeDigitTable texts{};
  for (std::size_t i = 0; i < kEntries; ++i) {
    const std::size_t size = i < 10 ? 1 : i < 100 ? 2 : kThreeDigits;
    for (std::size_t digit = 0; digit < size; ++digit) {
      texts[kEntrySize * i + digit] = kThousandths[kEntrySize * (i + 1) - size + digit];
    }
    texts[kEntrySize * i + kThreeDigits] = static_cast<char>(size);
  }
  return texts;
}
constexpr auto kShortNumbers = ShortNumbers();

// The cells of four flags, "0,1,1,0,", for each value that four bits can have.
constexpr std::size_t kFourFlagsSize = 8;
using FourFlagsTable = std::array<char, 16 * kFourFlagsSize>;

constexpr FourFlagsTable FourFlagsTexts(bool upwards) {
  FourFlagsTable texts{};
  for (std::size_t bits = 0; bits < 16; ++bits) {
    for (std::size_t cell = 0; cell < 4; ++cell) {
      const std::size_t bit = upwards ? cell : 3 - cell;
      texts[kFourFlagsSize * bits + 2 * cell] = ((bits >> bit) & 1) != 0 ? '1' : '0';
      texts[kFourFlagsSize * bits + 2 * cell + 1] = ',';
    }
  }
  return texts;
}
constexpr FourFlagsTable kFlagsUpwards = FourFlagsTexts(true);
constexpr FourFlagsTable kFlagsDownwards = FourFlagsTexts(false);

std::string_view FourFlags(const FourFlagsTable& table, std::uint32_t bits) {
  return {&table[kFourFlagsSize * (bits & 0xF)], kFourFlagsSize};
}

// A run of missing cells.
constexpr int kMissingRun = 16;
constexpr std::size_t kMissingCell = na_val.size() + 1;

constexpr std::array<char, kMissingRun * kMissingCell> MissingCells() {
  std::array<char, kMissingRun * kMissingCell> cells{};
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::size_t at = i % kMissingCell;
    cells[i] = at < na_val.size() ? na_val[at] : ',';
  }
  return cells;
}
constexpr auto kMissingCells = MissingCells();

// Writes `value`, below 1000, at `to`, where an entry must have room; returns where it ends.
char* WriteShortNumber(char* to, std::uint32_t value) {
  const char* const entry = &kShortNumbers[kEntrySize * value];
  std::memcpy(to, entry, kEntrySize);
  return to + entry[kThreeDigits];
}

// Writes all three digits of `value`, below 1000, at `to`; returns where they end.
char* WriteThreeDigits(char* to, std::size_t value) {
  std::memcpy(to, &kThousandths[kEntrySize * value + 1], kThreeDigits);
  return to + kThreeDigits;
}

constexpr std::uint32_t kMillion = kEntries * kEntries;
constexpr std::uint32_t kBillion = kEntries * kMillion;

// Writes `value`, below a billion, at `to`; returns where it ends.
char* WriteBelowBillion(char* to, std::uint32_t value) {
  if (value < kEntries) return WriteShortNumber(to, value);
  const std::uint32_t thousands = value / kEntries;
  if (value < kMillion) {
    to = WriteShortNumber(to, thousands);
  } else {
    to = WriteThreeDigits(WriteShortNumber(to, value / kMillion), thousands % kEntries);
  }
  return WriteThreeDigits(to, value % kEntries);
}

// Writes all nine digits of `value`, below a billion, at `to`; returns where they end.
char* WriteNineDigits(char* to, std::uint32_t value) {
  to = WriteThreeDigits(to, value / kMillion);
  to = WriteThreeDigits(to, value / kEntries % kEntries);
  return WriteThreeDigits(to, value % kEntries);
}

// Writes a point and three digits of `thousandths`, below 1000, at `to`; returns where they end.
char* WriteThousandths(char* to, std::size_t thousandths) {
  std::memcpy(to, &kThousandths[kEntrySize * thousandths], kEntrySize);
  return to + kEntrySize;
}

// The parts of a double: 1 bit of sign, 11 of exponent, 52 of fraction.
static_assert(std::numeric_limits<double>::is_iec559);
constexpr int kFractionBits = 52;
constexpr std::uint64_t kFractionMask = (std::uint64_t{1} << kFractionBits) - 1;
constexpr int kExponentMask = 0x7FF;
constexpr int kExponentBias = 1023;

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

// |value| * 1000, rounded half to even as `printf` rounds; false for magnitudes of 2^52 and more,
// infinities and NaN. A double is m * 2^-shift with m < 2^53, so 1000 * m is exact in 64 bits.
bool ExactThousandths(double value, std::uint64_t& thousandths) {
  const std::uint64_t bits = BitsOf(value);
  const int exponent = static_cast<int>(bits >> kFractionBits) & kExponentMask;
  const int shift = kExponentBias + kFractionBits - exponent;
  if (shift <= 0) return false;

  thousandths = 0;
  if (shift >= 64) return true;  // below 2^63 / 2^64, less than half a thousandth
  const std::uint64_t product =
      ((bits & kFractionMask) | (std::uint64_t{1} << kFractionBits)) * 1000;
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  const std::uint64_t is_odd = (product >> shift) & 1;
  // A little less than half carries what lies above half; the whole half, ties of odd numbers.
  thousandths = (product + half - 1 + is_odd) >> shift;
  return true;
}

constexpr std::string_view kMilliwattText = " mW, ";
constexpr std::string_view kDbmText = " dBm";
constexpr std::string_view kMilliampereText = " mA";

// Logarithms, in thousandths of a decibel.
constexpr double kLn2 = 0.69314718055994530942;
constexpr double kLn10 = 2.30258509299404568402;
constexpr double kPerLn = 10'000.0 / kLn10;
constexpr double kPerOctave = kPerLn * kLn2;

// The significands 1 to 2 in equal steps: what brings the middle of a step to 1, and the logarithm
// of that middle.
struct LogStep {
  double reciprocal;
  double logarithm;
};
constexpr int kLogStepBits = 7;
using LogSteps = std::array<LogStep, 1 << kLogStepBits>;

// The natural logarithm of `x`, 1 to 2: twice the series of the inverse hyperbolic tangent.
constexpr double Ln(double x) {
  constexpr int kTerms = 20;  // each is at most a ninth of the one before
  const double tangent = (x - 1.0) / (x + 1.0);
  double sum = 0.0;
  double power = tangent;
  for (int i = 0; i < kTerms; ++i) {
    sum += power / (2 * i + 1);
    power *= tangent * tangent;
  }
  return 2.0 * sum;
}

constexpr LogSteps MakeLogSteps() {
  LogSteps steps{};
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const double middle = 1.0 + (static_cast<double>(i) + 0.5) / static_cast<double>(steps.size());
    steps[i] = {1.0 / middle, kPerLn * Ln(middle)};
  }
  return steps;
}
constexpr LogSteps kLogSteps = MakeLogSteps();

// 10'000 * log10(milliwatts), rounded as `printf` rounds the decibels. False where that is not
// sure: close to a tie, and for what rounds to zero, which has a sign of its own; and for a million
// and more. The sum is off by less than 1e-6: the first term that its series lacks is rest^4 / 4,
// and |rest| is below 2^-8.
bool SureThousandthsOfDbm(double milliwatts, std::int32_t& thousandths) {
  constexpr double kClose = 1e-4;
  constexpr std::int32_t kOffset = 1 << 24;  // makes the sum positive, for a cast rounds to zero
  constexpr std::uint64_t kOne = std::uint64_t{kExponentBias} << kFractionBits;
  const std::uint64_t bits = BitsOf(milliwatts);
  const std::uint64_t fraction = bits & kFractionMask;
  // That of zero, negative numbers, infinities and NaN leads to a million and more.
  const int exponent = static_cast<int>(bits >> kFractionBits) - kExponentBias;
  const LogStep& step = kLogSteps[fraction >> (kFractionBits - kLogStepBits)];
  const std::uint64_t significand_bits = kOne | fraction;
  double significand = 0.0;
  std::memcpy(&significand, &significand_bits, sizeof(significand));
  const double rest = significand * step.reciprocal - 1.0;
  const double series = rest * (1.0 - rest * (1.0 / 2.0 - rest * (1.0 / 3.0)));
  const double sum = exponent * kPerOctave + step.logarithm + kPerLn * series + (kOffset + 0.5);
  const auto rounded = static_cast<std::int32_t>(sum);
  thousandths = rounded - kOffset;
  const bool is_sure = std::abs(sum - rounded - 0.5) < 0.5 - kClose;
  const auto magnitude = static_cast<std::uint32_t>(std::abs(thousandths));
  return is_sure && magnitude != 0 && magnitude < kMillion;
}

// Writes "-" at `to` when `is_negative`, without a branch; returns where it ends.
char* WriteSign(char* to, bool is_negative) {
  *to = '-';
  return to + (is_negative ? 1 : 0);
}

// Writes `thousandths`, below a million, at `to` with the point before the last three digits;
// returns where they end.
char* WriteShortFixed3(char* to, std::uint32_t thousandths) {
  return WriteThousandths(WriteShortNumber(to, thousandths / kEntries), thousandths % kEntries);
}

// `WriteFixed3` of a thousand and more, infinities and NaN.
[[gnu::cold, gnu::noinline]] char* WriteLongFixed3(char* to, double value) {
  std::uint64_t thousandths = 0;
  if (!ExactThousandths(value, thousandths)) {
    return std::to_chars(to, to + kFixed3Room, value, std::chars_format::fixed, 3).ptr;
  }
  to = WriteSign(to, std::signbit(value));
  return WriteThousandths(WriteDecimal(to, thousandths / kEntries), thousandths % kEntries);
}

// Scans as the conversions of C's scanf do: each step fails at the end of the text or at a
// character that does not fit.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool Literal(std::string_view text) {
    if (rest_.substr(0, text.size()) != text) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  bool Number() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
    if (!rest_.empty() && (rest_[0] == '+' || rest_[0] == '-')) rest_.remove_prefix(1);
    const std::size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    rest_.remove_prefix(digits);
    return digits > 0;
  }

  bool Character(char& character) {
    if (rest_.empty()) return false;
    character = rest_[0];
    rest_.remove_prefix(1);
    return true;
  }

 private:
  std::string_view rest_;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Numbers, written into room that is known to suffice
// ---------------------------------------------------------------------------------------------

char* WriteDecimal(char* to, std::uint32_t value) {
  return value < kBillion ? WriteBelowBillion(to, value) : WriteDecimal(to, std::uint64_t{value});
}

char* WriteDecimal(char* to, std::uint64_t value) {
  const auto low = static_cast<std::uint32_t>(value % kBillion);
  const std::uint64_t billions = value / kBillion;
  if (billions == 0) return WriteBelowBillion(to, low);
  const auto middle = static_cast<std::uint32_t>(billions % kBillion);
  const auto high = static_cast<std::uint32_t>(billions / kBillion);
  to = high == 0 ? WriteBelowBillion(to, middle)
                 : WriteNineDigits(WriteBelowBillion(to, high), middle);
  return WriteNineDigits(to, low);
}

char* WriteAnyHex(char* to, std::uint32_t value, int width) {
  int digits = width > 1 ? width : 1;
  while (digits < kMostHexDigits && value >> (4 * digits) != 0) ++digits;
  char* const end = to + digits;
  char* digit = end;
  for (; digit - to >= 2; value >>= 8) {
    digit -= 2;
    WriteHexPair(digit, value & 0xFF);
  }
  if (digit != to) *to = kHexPairs[2 * std::size_t{value & 0xF} + 1];
  return end;
}

char* WriteFixed3(char* to, double value) {
  std::uint64_t thousandths = 0;
  if (!ExactThousandths(value, thousandths) || thousandths >= kMillion) {
    return WriteLongFixed3(to, value);
  }
  to = WriteSign(to, std::signbit(value));
  return WriteShortFixed3(to, static_cast<std::uint32_t>(thousandths));
}

char* WritePower(char* to, double milliwatts, double dbm) {
  static_assert(kPowerRoom == 2 * kFixed3Room + kMilliwattText.size() + kDbmText.size());
  to = WriteText(WriteFixed3(to, milliwatts), kMilliwattText);
  return WriteText(WriteFixed3(to, dbm), kDbmText);
}

char* WritePower(char* to, double milliwatts, double (*to_dbm)(double milliwatts)) {
  std::int32_t dbm = 0;
  if (!SureThousandthsOfDbm(milliwatts, dbm)) return WritePower(to, milliwatts, to_dbm(milliwatts));
  to = WriteText(WriteFixed3(to, milliwatts), kMilliwattText);
  to = WriteSign(to, dbm < 0);
  return WriteText(WriteShortFixed3(to, static_cast<std::uint32_t>(std::abs(dbm))), kDbmText);
}

char* WriteBias(char* to, double milliamperes) {
  static_assert(kBiasRoom == kFixed3Room + kMilliampereText.size());
  return WriteText(WriteFixed3(to, milliamperes), kMilliampereText);
}

char* WriteBias(char* to, std::uint32_t microamperes) {
  to = WriteThousandths(WriteDecimal(to, microamperes / kEntries), microamperes % kEntries);
  return WriteText(to, kMilliampereText);
}

// ---------------------------------------------------------------------------------------------
// TextBuffer and CsvRow
// ---------------------------------------------------------------------------------------------

void TextBuffer::Grow(std::size_t count) {
  const std::size_t used = size();
  const std::size_t capacity =
      std::max(2 * static_cast<std::size_t>(limit_ - begin_), used + count);
  std::unique_ptr<char[]> grown(new char[capacity]);
  std::copy_n(begin_, used, grown.get());
  heap_ = std::move(grown);
  begin_ = heap_.get();
  end_ = begin_ + used;
  limit_ = begin_ + capacity;
}

TextBuffer& TextBuffer::AppendDecimal(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  if (value < 0) Append('-');
  end_ = WriteDecimal(Room(kDecimalRoom), value < 0 ? 0 - bits : bits);
  return *this;
}

TextBuffer& TextBuffer::AppendGeneral(double value) {
  constexpr int kPrecision = 6;  // a stream's default
  constexpr std::size_t kLongest = 32;
  char* const begin = Room(kLongest);
  const auto result =
      std::to_chars(begin, begin + kLongest, value, std::chars_format::general, kPrecision);
  end_ = result.ptr;
  return *this;
}

void CsvRow::Missing(int count) {
  for (; count > kMissingRun; count -= kMissingRun) out_.AppendPart(kMissingCells);
  out_.AppendPart(kMissingCells, static_cast<std::size_t>(count) * kMissingCell);
}

void CsvRow::FlagsUpwards(std::uint32_t bits, int first, int count) {
  for (; count >= 4; first += 4, count -= 4) out_.Append(FourFlags(kFlagsUpwards, bits >> first));
  for (; count > 0; ++first, --count) Flag(((bits >> first) & 1) != 0);
}

void CsvRow::FlagsDownwards(std::uint32_t bits, int first, int count) {
  for (; count >= 4; first -= 4, count -= 4) {
    out_.Append(FourFlags(kFlagsDownwards, bits >> (first - 3)));
  }
  for (; count > 0; --first, --count) Flag(((bits >> first) & 1) != 0);
}

void CsvRow::WriteTo(std::ostream& os) {
  if (out_.size() > 0) out_.Truncate(out_.size() - 1);  // the last cell's comma
  out_.Append('\n');
  os.write(out_.view().data(), static_cast<std::streamsize>(out_.size()));
  os.flush();
}

namespace {

// The line whose size stands at `at`.
std::string_view LineAt(const char* at) {
  std::size_t size = 0;
  std::memcpy(&size, at, sizeof(size));
  return {at + sizeof(size), size};
}

// What a stream's own output functions do behind an exception of its buffer. True when the caller
// wants to see that exception.
bool MarkBad(std::ostream& os) {
  try {
    os.setstate(std::ios_base::badbit);
  } catch (const std::ios_base::failure&) {
    return true;  // the buffer's own exception tells more than this one
  }
  return false;
}

}  // namespace

void FlushedLines::MakeRoom(std::size_t room) {
  Finish();
  out_.Room(room);
}

void FlushedLines::Finish() {
  const char* at = os_.good() ? WriteFast() : out_.view().data();
  while (at != out_.end()) {
    const std::string_view line = LineAt(at);
    os_.write(line.data(), static_cast<std::streamsize>(line.size()));
    os_.flush();
    at = line.data() + line.size();
  }
  out_.Truncate(0);
}

// Writes the lines past the stream, straight to its buffer, as long as all goes well; returns where
// the others begin. When the buffer fails, the stream ends up as if it had written that line
// itself.
const char* FlushedLines::WriteFast() {
  std::streambuf* const buffer = os_.rdbuf();
  const char* const end = out_.end();
  const char* at = out_.view().data();
  bool is_put = false;
  try {
    while (at != end) {
      const std::string_view line = LineAt(at);
      const auto size = static_cast<std::streamsize>(line.size());
      is_put = false;
      if (buffer->sputn(line.data(), size) != size) break;
      is_put = true;
      if (buffer->pubsync() == -1) break;
      at = line.data() + size;
    }
  } catch (...) {
    if (MarkBad(os_)) throw;
  }
  if (at == end) return end;
  os_.setstate(std::ios_base::badbit);
  if (!is_put) os_.flush();
  return LineAt(at).data() + LineAt(at).size();
}

// ---------------------------------------------------------------------------------------------
// Number to text
// ---------------------------------------------------------------------------------------------

template <>
std::string _to_string<unsigned char>(unsigned char value) {
  return std::to_string(value);
}

template <>
std::string _to_string<unsigned short>(unsigned short value) {
  return std::to_string(value);
}

template <>
std::string _to_string<double>(double value) {
  return ToText([&](TextBuffer& out) { out.AppendGeneral(value); });
}

template <>
std::string _to_ptr_string<unsigned char>(unsigned char value, int width) {
  return ToText([&](TextBuffer& out) { out.AppendPrefixedHex(value, width); });
}

template <>
std::string _to_ptr_string<unsigned short>(unsigned short value, int width) {
  return ToText([&](TextBuffer& out) { out.AppendPrefixedHex(value, width); });
}

std::string _to_cvs_quoted(bool quote, const std::string& text) {
  return quote ? '"' + text + '"' : text;
}

// ---------------------------------------------------------------------------------------------
// Stream inserters
// ---------------------------------------------------------------------------------------------

namespace {

// Null text sets the badbit, as the standard inserter of a null character pointer does.
std::ostream& InsertQuoted(std::ostream& os, char open, const std::string_view* text, char close) {
  os << open;
  if (text != nullptr) {
    os << *text;
  } else {
    os.setstate(std::ios_base::badbit);
  }
  return os << close;
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const QUOTED_T<std::string>& quoted) {
  if (quoted.value == nullptr) return InsertQuoted(os, quoted.open, nullptr, quoted.close);
  const std::string_view text = *quoted.value;
  return InsertQuoted(os, quoted.open, &text, quoted.close);
}

std::ostream& operator<<(std::ostream& os, const QUOTED_T<char[3]>& quoted) {
  if (quoted.value == nullptr) return InsertQuoted(os, quoted.open, nullptr, quoted.close);
  const std::string_view text = ArrayText(*quoted.value);
  return InsertQuoted(os, quoted.open, &text, quoted.close);
}

std::ostream& operator<<(std::ostream& os, const FLOAT_T<float>& number) {
  const std::ios_base::fmtflags flags = os.flags();
  if (number.precision != 0) {
    os.precision(number.precision);
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
  }
  if (number.scientific) os.setf(std::ios_base::scientific, std::ios_base::floatfield);
  os << static_cast<double>(number.value);
  os.flags(flags);
  return os;
}

std::ostream& operator<<(std::ostream& os, const HEX_T<unsigned char>& number) {
  const std::ios_base::fmtflags flags = os.flags();
  os.setf(std::ios_base::hex, std::ios_base::basefield);
  os.fill(number.fill);
  if (number.width != 0) os.width(number.width);
  os << static_cast<unsigned>(number.value);
  os.flags(flags);
  return os;
}

// ---------------------------------------------------------------------------------------------
// Shared decoders
// ---------------------------------------------------------------------------------------------

fw_version_obj_t FWVersionFromWord(std::uint32_t version) {
  return {static_cast<std::uint8_t>(version >> 24), static_cast<std::uint8_t>(version >> 16),
          static_cast<std::uint16_t>(version)};
}

void AppendCableType(TextBuffer& out, std::uint8_t technology, std::string_view fallback) {
  out.Append(TableEntry(transmitter_technology_arr, technology, fallback));
}

void AppendSupportedSpeed(TextBuffer& out, std::uint8_t mask, std::string_view fallback) {
  const SpeedList& list = kSpeedLists[mask % kSpeedLists.size()];
  if (list.size == 0) {
    out.Append(fallback);
  } else {
    out.AppendPart(list.text, list.size);
  }
}

void AppendTemperature(TextBuffer& out, std::uint8_t technology, std::int8_t temperature,
                       std::string_view fallback) {
  if (!_is_valid_temperature(temperature, technology)) {
    out.Append(fallback);
    return;
  }
  out.AppendDecimal(temperature).Append('C');
}

void AppendVoltage(TextBuffer& out, std::uint16_t raw) {
  constexpr std::string_view kUnit = "uV";
  out.AppendWithin(kDecimalRoom + kUnit.size(), [=](char* to) {
    return WriteText(WriteDecimal(to, raw * kMicrovoltsPerUnit), kUnit);
  });
}

void AppendCableInfoVSStatus(TextBuffer& out, std::uint8_t status) {
  out.Append(TableEntry(kCableInfoVSStatusTexts, status, kUnknownStatus));
}

std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback) {
  return ToText(AppendCableType, technology, fallback);
}

std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback) {
  return ToText(AppendSupportedSpeed, mask, fallback);
}

std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                             const std::string& fallback) {
  return ToText(AppendTemperature, technology, temperature, fallback);
}

std::string VoltageToStr(std::uint16_t raw) { return ToText(AppendVoltage, raw); }

bool IsOpticCable(std::uint8_t technology) { return technology <= kLastOpticalTechnology; }

bool _is_valid_temperature(std::int8_t temperature, std::uint8_t technology) {
  if (technology == kUnequalizedCopper || technology == kPassiveEqualizedCopper) return false;
  return temperature >= kLowestTemperature && temperature <= kHighestTemperature;
}

bool _check_temperature_by_threshold(bool high, std::uint8_t technology, std::int8_t temperature,
                                     std::int8_t threshold) {
  if (!_is_valid_temperature(temperature, technology)) return false;
  if (!_is_valid_temperature(threshold, technology)) return false;
  return high ? temperature > threshold : temperature < threshold;
}

std::uint8_t TemperatureErrors(std::uint8_t technology, std::uint16_t temperature,
                               std::uint16_t high_threshold, std::uint16_t low_threshold) {
  const std::int8_t reading = WholeDegrees(temperature);
  const bool too_high =
      _check_temperature_by_threshold(true, technology, reading, WholeDegrees(high_threshold));
  const bool too_low =
      _check_temperature_by_threshold(false, technology, reading, WholeDegrees(low_threshold));
  return static_cast<std::uint8_t>((too_high ? 1 : 0) | (too_low ? 2 : 0));
}

std::string ConvertAutonegValueToStr(std::uint8_t status) {
  return std::string(TableEntry(kAutonegStatusTexts, status, kUnknownStatus));
}

std::string ConvertCableInfoVSStatusToStr(std::uint8_t status) {
  return ToText(AppendCableInfoVSStatus, status);
}

std::string _get_vendor_from_sn(const std::string& sn) {
  Scanner scanner(UpToNul(sn));
  std::string vendor(2, '\0');
  const bool matches = scanner.Literal("KS") && scanner.Number() && scanner.Character(vendor[0]) &&
                       scanner.Character(vendor[1]) && scanner.Number();
  return matches ? vendor : std::string();
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace cable_info
