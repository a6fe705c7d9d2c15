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

constexpr std::string_view kUnknownStatus = "UNKNOWN";

// What the C locale calls blank; also what is trimmed from vendor texts.
constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int kLowestTemperature = -40;
constexpr int kHighestTemperature = 125;

constexpr std::uint32_t kMicrovoltsPerUnit = 100;

// The digits of 00..99 and the hexadecimal ones of 00..ff, two characters each.
template <std::size_t kBase>
constexpr std::array<char, 2 * kBase * kBase> DigitPairs() {
  std::array<char, 2 * kBase * kBase> pairs{};
  for (std::size_t i = 0; i < kBase * kBase; ++i) {
    pairs[2 * i] = "0123456789abcdef"[i / kBase];
    pairs[2 * i + 1] = "0123456789abcdef"[i % kBase];
  }
  return pairs;
}
constexpr auto kDecimalPairs = DigitPairs<10>();
constexpr auto kHexPairs = DigitPairs<16>();

// ".000" to ".999".
constexpr std::size_t kPointAndDecimals = 4;
constexpr std::array<char, 1000 * kPointAndDecimals> Thousandths() {
  std::array<char, 1000 * kPointAndDecimals> texts{};
  for (std::size_t i = 0, at = 0; i < 1000; ++i) {
    texts[at++] = '.';
    texts[at++] = static_cast<char>('0' + i / 100);
    texts[at++] = static_cast<char>('0' + i / 10 % 10);
    texts[at++] = static_cast<char>('0' + i % 10);
  }
  return texts;
}
constexpr auto kThousandths = Thousandths();

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
constexpr std::size_t kMissingRun = 16;
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

template <typename Unsigned>
constexpr std::size_t kMaxDecimalDigits = std::numeric_limits<Unsigned>::digits10 + 1;

template <typename Unsigned>
std::size_t CountDigits(Unsigned value) {
  std::size_t count = 1;
  for (; value >= 10000; value /= 10000) count += 4;
  if (value >= 1000) return count + 3;
  if (value >= 100) return count + 2;
  return value >= 10 ? count + 1 : count;
}

// Writes `value`, below 100, at `begin`; returns where it ends.
template <typename Unsigned>
char* WriteOneOrTwoDigits(char* begin, Unsigned value) {
  if (value < 10) {
    *begin = static_cast<char>('0' + value);
    return begin + 1;
  }
  std::memcpy(begin, &kDecimalPairs[2 * value], 2);
  return begin + 2;
}

// Writes `value` at `begin`; returns where it ends. Most numbers have one digit or two.
template <typename Unsigned>
char* WriteDecimal(char* begin, Unsigned value) {
  if (value < 100) return WriteOneOrTwoDigits(begin, value);
  char* const end = begin + CountDigits(value);
  char* digit = end;
  for (; value >= 100; value /= 100) {
    digit -= 2;
    std::memcpy(digit, &kDecimalPairs[2 * (value % 100)], 2);
  }
  WriteOneOrTwoDigits(begin, value);
  return end;
}

// Writes a number of thousandths at `begin`; returns where it ends.
template <typename Unsigned>
char* WriteThousandths(char* begin, Unsigned thousandths) {
  char* const end = WriteDecimal(begin, thousandths / 1000);
  std::memcpy(end, &kThousandths[kPointAndDecimals * (thousandths % 1000)], kPointAndDecimals);
  return end + kPointAndDecimals;
}

// |value| * 1000, rounded half to even as `printf` rounds; false for magnitudes of 2^52 and more,
// infinities and NaN. A double is m * 2^-shift with m < 2^53, so 1000 * m is exact in 64 bits.
bool ExactThousandths(double value, std::uint64_t& thousandths) {
  static_assert(std::numeric_limits<double>::is_iec559);
  constexpr int kStoredBits = 52;
  constexpr int kExponentBias = 1023;
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  const auto exponent = static_cast<int>((bits >> kStoredBits) & 0x7FF);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << kStoredBits) - 1);
  const int shift = kExponentBias + kStoredBits - exponent;
  if (shift <= 0) return false;

  thousandths = 0;
  if (shift >= 64) return true;  // below 2^63 / 2^64, less than half a thousandth
  const std::uint64_t product = (fraction | (std::uint64_t{1} << kStoredBits)) * 1000;
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  const std::uint64_t is_odd = (product >> shift) & 1;
  // A little less than half carries what lies above half; the whole half, ties of odd numbers.
  thousandths = (product + half - 1 + is_odd) >> shift;
  return true;
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

TextBuffer& TextBuffer::AppendDecimal(std::uint32_t value) {
  return EndAt(WriteDecimal(Room(kMaxDecimalDigits<std::uint32_t>), value));
}

TextBuffer& TextBuffer::AppendDecimal(std::int64_t value) {
  if (value >= 0) {
    return EndAt(
        WriteDecimal(Room(kMaxDecimalDigits<std::uint64_t>), static_cast<std::uint64_t>(value)));
  }
  char* const begin = Room(1 + kMaxDecimalDigits<std::uint64_t>);
  *begin = '-';
  return EndAt(WriteDecimal(begin + 1, 0 - static_cast<std::uint64_t>(value)));
}

TextBuffer& TextBuffer::AppendHex(std::uint32_t value, int width) {
  if (width == 2 && value < 256) {
    std::memcpy(Room(2), &kHexPairs[2 * std::size_t{value}], 2);
    return EndAt(end_ + 2);
  }
  int digits = width > 1 ? width : 1;
  while (digits < 8 && value >> (4 * digits) != 0) ++digits;
  char* const begin = Room(static_cast<std::size_t>(digits));
  char* const end = begin + digits;
  char* digit = end;
  for (; digit - begin >= 2; value >>= 8) {
    digit -= 2;
    std::memcpy(digit, &kHexPairs[2 * std::size_t{value & 0xFF}], 2);
  }
  if (digit != begin) *begin = kHexPairs[2 * std::size_t{value & 0xF} + 1];
  return EndAt(end);
}

TextBuffer& TextBuffer::AppendFixed3(double value) {
  std::uint64_t thousandths = 0;
  if (!ExactThousandths(value, thousandths)) return AppendLongFixed3(value);
  char* const begin = Room(1 + kMaxDecimalDigits<std::uint64_t> + kPointAndDecimals);
  *begin = '-';
  char* const digits = begin + (std::signbit(value) ? 1 : 0);
  const auto narrow = static_cast<std::uint32_t>(thousandths);  // nearly always all of it
  return EndAt(narrow == thousandths ? WriteThousandths(digits, narrow)
                                     : WriteThousandths(digits, thousandths));
}

TextBuffer& TextBuffer::AppendLongFixed3(double value) {
  constexpr std::size_t kLongest =
      1 + std::numeric_limits<double>::max_exponent10 + 1 + kPointAndDecimals;
  char* const begin = Room(kLongest);
  const auto result = std::to_chars(begin, begin + kLongest, value, std::chars_format::fixed, 3);
  return EndAt(result.ptr);
}

TextBuffer& TextBuffer::AppendGeneral(double value) {
  constexpr int kPrecision = 6;  // a stream's default
  constexpr std::size_t kLongest = 32;
  char* const begin = Room(kLongest);
  const auto result =
      std::to_chars(begin, begin + kLongest, value, std::chars_format::general, kPrecision);
  return EndAt(result.ptr);
}

void CsvRow::Missing(int count) {
  for (auto left = static_cast<std::size_t>(count); left > 0;) {
    const std::size_t run = std::min(left, kMissingRun);
    out_.Append(std::string_view(kMissingCells.data(), run * kMissingCell));
    left -= run;
  }
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

void ReportLines::Finish() {
  std::size_t i = os_->good() ? WriteFast() : 0;
  for (std::size_t begin = i == 0 ? 0 : ends_[i - 1]; i < waiting_; begin = ends_[i], ++i) {
    os_->write(out_.view().data() + begin, static_cast<std::streamsize>(ends_[i] - begin));
    os_->flush();
  }
  waiting_ = 0;
  out_.Truncate(0);
}

// Writes the lines past the stream, straight to its buffer, as long as all goes well; returns how
// many. When the buffer fails, the stream ends up as if it had written that line itself.
std::size_t ReportLines::WriteFast() {
  std::streambuf* const buffer = os_->rdbuf();
  const char* const text = out_.view().data();
  std::size_t i = 0;
  bool is_written = true;
  try {
    for (std::size_t begin = 0; i < waiting_; begin = ends_[i], ++i) {
      const auto size = static_cast<std::streamsize>(ends_[i] - begin);
      is_written = false;
      if (buffer->sputn(text + begin, size) != size) break;
      is_written = true;
      if (buffer->pubsync() == -1) break;
    }
  } catch (...) {
    if (MarkBad(*os_)) throw;
  }
  if (i == waiting_) return i;
  os_->setstate(std::ios_base::badbit);
  if (!is_written) os_->flush();
  return i + 1;
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
  const std::size_t begin = out.size();
  for (std::size_t bit = 0; bit < ib_compliance_code_arr.size(); ++bit) {
    if (((mask >> bit) & 1) != 0) out.Append(ib_compliance_code_arr[bit]);
  }
  if (out.size() == begin) {
    out.Append(fallback);
    return;
  }
  out.Truncate(out.size() - 1);  // the separator behind the last speed
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
  out.AppendDecimal(raw * kMicrovoltsPerUnit).Append("uV");
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
