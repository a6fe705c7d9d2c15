#pragma once

/// \file
/// Turns values into text: numbers, hexadecimal, CSV quoting, and the decoders and tables that
/// every kind of cable record shares.
///
/// All texts are those of a default-formatted stream in the C locale, whatever the program's
/// locale is. Decoders never fail: a value outside a table yields a fallback text.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace cable_info {

// ---------------------------------------------------------------------------------------------
// Missing values
// ---------------------------------------------------------------------------------------------

/// The missing value where a text carries no quotes of its own.
inline constexpr std::string_view kBareNa = "NA";
/// The missing value of a CSV cell, with its double quotes.
inline constexpr std::string_view na_val = "\"NA\"";
/// The missing value of the text report.
inline constexpr std::string_view kReportNa = "N/A";
/// The missing value of the text report for a power, which has two units.
inline constexpr std::string_view kReportNoPower = "N/A N/A";

/// The missing value of the CSV row (`csv` true) or of the text report.
constexpr std::string_view MissingValue(bool csv) { return csv ? na_val : kReportNa; }

/// The missing value for a text that is quoted as a whole afterwards when `csv` is true.
constexpr std::string_view UnquotedMissingValue(bool csv) { return csv ? kBareNa : kReportNa; }

// ---------------------------------------------------------------------------------------------
// Number to text
// ---------------------------------------------------------------------------------------------

/// `value` in decimal; a `double` in the shortest of fixed and exponent form with at most six
/// significant digits. Defined for `unsigned char` (a number, never a character),
/// `unsigned short` and `double`.
template <typename T>
std::string _to_string(T value);
/// A number, never a character.
template <>
std::string _to_string<unsigned char>(unsigned char value);
/// All digits.
template <>
std::string _to_string<unsigned short>(unsigned short value);
/// As a default-formatted stream writes it.
template <>
std::string _to_string<double>(double value);

/// "0x" and `value` in lower-case hexadecimal, filled with "0" to at least `width` digits (by
/// default, as many as the type holds). Defined for `unsigned char` and `unsigned short`.
template <typename T>
std::string _to_ptr_string(T value, int width = 2 * static_cast<int>(sizeof(T)));
/// At least two digits by default.
template <>
std::string _to_ptr_string<unsigned char>(unsigned char value, int width);
/// At least four digits by default.
template <>
std::string _to_ptr_string<unsigned short>(unsigned short value, int width);

/// `text` between double quotes when `quote` is true, else `text`. Nothing inside is escaped.
std::string _to_cvs_quoted(bool quote, const std::string& text);

// ---------------------------------------------------------------------------------------------
// Stream inserters
// ---------------------------------------------------------------------------------------------

/// Writes a value between two delimiters; nothing inside is escaped. Does not own the value.
template <typename T>
struct QUOTED_T {
  /// Takes what the members tell.
  QUOTED_T(const T* value_in, char open_in, char close_in)
      : value(value_in), open(open_in), close(close_in) {}

  const T* value;  ///< must outlive the output
  char open;       ///< written before the value
  char close;      ///< written behind the value
};

/// Writes a floating value with `precision` digits after the point in fixed notation, or in
/// scientific notation when `scientific` is set. Precision 0 leaves precision and notation to the
/// stream.
template <typename T>
struct FLOAT_T {
  /// Takes what the members tell.
  FLOAT_T(T value_in, int precision_in, bool scientific_in)
      : value(value_in), precision(precision_in), scientific(scientific_in) {}

  T value;                 ///< the number
  std::int32_t precision;  ///< digits after the point; 0: the stream's own
  bool scientific;         ///< scientific notation
};

/// Writes an integer in hexadecimal, without "0x", filled on the left to `width`. Width 0 means
/// that the stream's own width is left alone.
template <typename T>
struct HEX_T {
  /// Takes what the members tell.
  HEX_T(T value_in, int width_in, char fill_in) : value(value_in), width(width_in), fill(fill_in) {}

  T value;             ///< the number
  std::int32_t width;  ///< characters at least; 0: the stream's own
  char fill;           ///< what fills the width; stays on the stream
};

/// A null value writes no text and sets the stream's badbit.
std::ostream& operator<<(std::ostream& os, const QUOTED_T<std::string>& quoted);
/// Reads the array up to its NUL or its end. A null value writes no text and sets the badbit.
std::ostream& operator<<(std::ostream& os, const QUOTED_T<char[3]>& quoted);
/// Restores the stream's format flags; a precision that was set stays.
std::ostream& operator<<(std::ostream& os, const FLOAT_T<float>& number);
/// Restores the stream's format flags; the fill character stays.
std::ostream& operator<<(std::ostream& os, const HEX_T<unsigned char>& number);

// ---------------------------------------------------------------------------------------------
// Shared tables
// ---------------------------------------------------------------------------------------------

/// Transmitter technologies by 4-bit code (SFF-8636 byte 147, bits 7..4): 0..9 are optical
/// transmitters, 10..15 copper cables.
inline constexpr std::array<std::string_view, 16> transmitter_technology_arr = {
    "850 nm VCSEL",
    "1310 nm VCSEL",
    "1550 nm VCSEL",
    "1310 nm FP",
    "1310 nm DFB",
    "1550 nm DFB",
    "1310 nm EML",
    "1550 nm EML",
    "others",
    "1490 nm DFB",
    "Copper cable- unequalized",
    "Copper cable- passive equalized",
    "Copper cable- near and far end limiting active equalizers",
    "Copper cable- far end limiting active equalizers",
    "Copper cable- near end limiting active equalizers",
    "Copper cable- linear active equalizers",
};

/// InfiniBand speeds by bit of the supported-speed mask (SFF-8636 byte 164), each with the
/// separator that follows it in a list.
inline constexpr std::array<std::string_view, 7> ib_compliance_code_arr = {
    "SDR/", "DDR/", "QDR/", "FDR/", "EDR/", "HDR/", "NDR/",
};

/// The highest optical code of `transmitter_technology_arr`.
inline constexpr std::uint8_t kLastOpticalTechnology = 9;
/// The code of unequalized copper.
inline constexpr std::uint8_t kUnequalizedCopper = 10;
/// The code of passive-equalized copper.
inline constexpr std::uint8_t kPassiveEqualizedCopper = 11;

/// The connector code of a cable without separable connector (SFF-8024, table of connector
/// types), which marks an active cable assembly.
inline constexpr std::uint8_t kNoSeparableConnector = 0x23;

/// Stands for a power that has no value in the wanted unit, in dBm or milliwatts.
inline constexpr double kUnrepresentablePower = -999.999;

// ---------------------------------------------------------------------------------------------
// Values that every record answers
// ---------------------------------------------------------------------------------------------

/// A module's firmware version; all zero means that none is known.
struct fw_version_obj_t {
  std::uint8_t major = 0;       ///< bits 31..24 of a version word
  std::uint8_t minor = 0;       ///< bits 23..16
  std::uint16_t sub_minor = 0;  ///< bits 15..0
};

/// How received power is measured, for the text report.
constexpr std::string_view RxPowerTypeName(bool is_average) {
  return is_average ? "Average Power" : "OMA";
}

/// Splits a 32-bit firmware version: major in bits 31..24, minor 23..16, sub-minor 15..0.
fw_version_obj_t FWVersionFromWord(std::uint32_t version);

/// What identifies a cable; an empty member means unknown.
struct cable_id_t {
  std::string pn;          ///< part number
  std::string identifier;  ///< identifier text
  std::string vendor;      ///< vendor code taken from the serial number
  std::string revision;    ///< revision
};

// ---------------------------------------------------------------------------------------------
// Shared decoders
// ---------------------------------------------------------------------------------------------

/// The entry of `transmitter_technology_arr`, or `fallback` for codes above 15.
std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback);

/// The speeds of the mask, lowest first and joined by "/"; `fallback` when bits 0..6 are clear.
std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback);

/// `temperature` in degrees Celsius with "C", or `fallback` when `_is_valid_temperature` denies it.
std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                             const std::string& fallback);

/// A supply voltage, given in units of 100 uV, in microvolts with "uV".
std::string VoltageToStr(std::uint16_t raw);

/// True for the optical codes 0..9 of `transmitter_technology_arr`.
bool IsOpticCable(std::uint8_t technology);

/// True when the cable has a sensor (its technology is neither 10 nor 11) and the reading lies in
/// -40..125 degrees Celsius.
bool _is_valid_temperature(std::int8_t temperature, std::uint8_t technology);

/// True when `temperature` lies strictly above (`high`) or below `threshold`; false when either of
/// them is not valid.
bool _check_temperature_by_threshold(bool high, std::uint8_t technology, std::int8_t temperature,
                                     std::int8_t threshold);

/// Bit 0: above the high threshold, bit 1: below the low one. The words are those of a module's
/// memory, whole degrees Celsius in the high byte.
std::uint8_t TemperatureErrors(std::uint8_t technology, std::uint16_t temperature,
                               std::uint16_t high_threshold, std::uint16_t low_threshold);

/// The status of an InfiniBand auto-negotiation.
std::string ConvertAutonegValueToStr(std::uint8_t status);

/// The status of the vendor-specific query that reads a cable's pages.
std::string ConvertCableInfoVSStatusToStr(std::uint8_t status);

/// The two-character vendor code of a serial number of the form `KS<number><code><number>`;
/// empty for any other. Scans as C's "KS%d%c%c%d" does (blanks and signs before a number), with
/// numbers of any length.
std::string _get_vendor_from_sn(const std::string& sn);

/// Whole degrees Celsius of a temperature word: its high byte, signed.
constexpr std::int8_t WholeDegrees(std::uint16_t word) {
  return static_cast<std::int8_t>(static_cast<std::uint8_t>(word >> 8));
}

/// The entry of a table of texts at `code`, or `fallback` behind its end.
template <std::size_t N>
constexpr std::string_view TableEntry(const std::array<std::string_view, N>& table,
                                      std::size_t code, std::string_view fallback) {
  return code < N ? table[code] : fallback;
}

/// `text` without tabs, line feeds, vertical tabs, form feeds, carriage returns and spaces at its
/// ends.
std::string_view Trimmed(std::string_view text);

/// `text` up to its first NUL.
std::string_view UpToNul(std::string_view text);

/// A fixed char array up to its first NUL, or whole when it holds none.
template <std::size_t N>
std::string_view ArrayText(const char (&array)[N]) {
  return UpToNul(std::string_view(array, N));
}

// ---------------------------------------------------------------------------------------------
// Writing many texts without allocating
// ---------------------------------------------------------------------------------------------

/// \name Numbers, written into room that is known to suffice
/// Each writes at `to`, where as many characters as its room tells must be free, and returns where
/// its text ends. What lies behind that within the room may change, too.
/// @{

/// The room of a decimal: the longest has 20 digits.
inline constexpr std::size_t kDecimalRoom = 20;
/// All digits.
char* WriteDecimal(char* to, std::uint32_t value);
/// All digits.
char* WriteDecimal(char* to, std::uint64_t value);

/// The most digits that a hexadecimal has of itself.
inline constexpr int kMostHexDigits = 8;
/// The room of a hexadecimal of at least `width` digits.
constexpr std::size_t HexRoom(int width) {
  return static_cast<std::size_t>(width > kMostHexDigits ? width : kMostHexDigits);
}
/// What `WriteHex` writes of any value and width.
char* WriteAnyHex(char* to, std::uint32_t value, int width);
/// The digits of 00..ff, two characters each.
constexpr std::array<char, 512> HexPairs() {
  std::array<char, 512> pairs{};
  for (std::size_t i = 0; i < 256; ++i) {
    pairs[2 * i] = "0123456789abcdef"[i / 16];
    pairs[2 * i + 1] = "0123456789abcdef"[i % 16];
  }
  return pairs;
}
/// The same, made once.
inline constexpr std::array<char, 512> kHexPairs = HexPairs();
/// Both digits of `value`, which is below 256.
inline char* WriteHexPair(char* to, std::uint32_t value) {
  std::memcpy(to, &kHexPairs[2 * std::size_t{value}], 2);
  return to + 2;
}
/// Lower-case hexadecimal, filled with "0" to at least `width` digits.
[[gnu::always_inline]] inline char* WriteHex(char* to, std::uint32_t value, int width) {
  if (width == 2 && value < 0x100) return WriteHexPair(to, value);
  if (width == 4 && value < 0x10000) {
    return WriteHexPair(WriteHexPair(to, value / 0x100), value % 0x100);
  }
  return WriteAnyHex(to, value, width);
}

/// The room of the same behind "0x".
constexpr std::size_t PrefixedHexRoom(int width) { return 2 + HexRoom(width); }
/// The same behind "0x".
[[gnu::always_inline]] inline char* WritePrefixedHex(char* to, std::uint32_t value, int width) {
  *to = '0';
  *(to + 1) = 'x';
  return WriteHex(to + 2, value, width);
}

/// The room of a number with three decimals: the longest has a sign and 309 digits before them.
inline constexpr std::size_t kFixed3Room = 314;
/// As `printf` writes "%.3f" in the C locale.
char* WriteFixed3(char* to, double value);

/// The room of a power in both of its units.
inline constexpr std::size_t kPowerRoom = 2 * kFixed3Room + 9;
/// A power in both of its units, "... mW, ... dBm", with three decimals.
char* WritePower(char* to, double milliwatts, double dbm);
/// The same with `to_dbm(milliwatts)`, which must be 10 log10 of every positive power: it is asked
/// only where a shorter way is not sure to lead to the same text.
char* WritePower(char* to, double milliwatts, double (*to_dbm)(double milliwatts));

/// The room of a bias.
inline constexpr std::size_t kBiasRoom = kFixed3Room + 3;
/// A bias, "... mA", with three decimals.
char* WriteBias(char* to, double milliamperes);
/// The same, given in microamperes.
char* WriteBias(char* to, std::uint32_t microamperes);
/// @}

/// Writes `text` at `to`, where there must be room for it; returns where it ends.
[[gnu::always_inline]] inline char* WriteText(char* to, std::string_view text) {
  std::char_traits<char>::copy(to, text.data(), text.size());
  return to + text.size();
}

/// Collects text. Rows and reports of usual size stay in the object itself; only longer ones move
/// to the heap. Not copyable; one thread at a time.
class TextBuffer {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): see inline_
  TextBuffer() : begin_(inline_), end_(inline_), limit_(inline_ + sizeof(inline_)) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;
  TextBuffer(TextBuffer&&) = delete;
  TextBuffer& operator=(TextBuffer&&) = delete;
  ~TextBuffer() = default;

  /// True when `count` more characters fit without moving the text.
  bool HasRoom(std::size_t count) const { return static_cast<std::size_t>(limit_ - end_) >= count; }
  /// Where the next characters go, `count` of which are free.
  char* Room(std::size_t count) {
    if (!HasRoom(count)) Grow(count);
    return end_;
  }
  /// Where the text ends.
  char* end() { return end_; }
  /// Takes in what was written behind the text, up to `end`.
  void EndAt(char* end) { end_ = end; }

  /// What `write(to)` writes at `to`, where `room` characters are free, up to what it returns.
  template <typename Write>
  TextBuffer& AppendWithin(std::size_t room, Write&& write) {
    EndAt(write(Room(room)));
    return *this;
  }

  /// One character.
  TextBuffer& Append(char c) {
    char* const to = Room(1);
    *to = c;
    end_ = to + 1;
    return *this;
  }

  /// The text as it stands. Inlined, the copy of a literal is a move or two instead of a call.
  [[gnu::always_inline]] TextBuffer& Append(std::string_view text) {
    end_ = WriteText(Room(text.size()), text);
    return *this;
  }

  /// The first `size` characters of `text`. All of it is copied, for a copy of known size is a few
  /// moves.
  template <std::size_t N>
  TextBuffer& AppendPart(const std::array<char, N>& text, std::size_t size = N) {
    char* const to = Room(N);
    std::char_traits<char>::copy(to, text.data(), N);
    end_ = to + size;
    return *this;
  }

  /// `text` between double quotes; nothing inside is escaped.
  TextBuffer& AppendQuoted(std::string_view text) { return Append('"').Append(text).Append('"'); }

  /// All digits.
  TextBuffer& AppendDecimal(std::uint32_t value) {
    end_ = WriteDecimal(Room(kDecimalRoom), value);
    return *this;
  }
  /// All digits, behind "-" when `value` is negative.
  TextBuffer& AppendDecimal(std::int64_t value);
  /// All digits, behind "-" when `value` is negative.
  TextBuffer& AppendDecimal(int value) {
    return value < 0 ? AppendDecimal(std::int64_t{value})
                     : AppendDecimal(static_cast<std::uint32_t>(value));
  }

  /// Lower-case hexadecimal, filled with "0" to at least `width` digits.
  TextBuffer& AppendHex(std::uint32_t value, int width) {
    end_ = WriteHex(Room(HexRoom(width)), value, width);
    return *this;
  }

  /// The same behind "0x".
  TextBuffer& AppendPrefixedHex(std::uint32_t value, int width) {
    end_ = WritePrefixedHex(Room(PrefixedHexRoom(width)), value, width);
    return *this;
  }

  /// As `printf` writes "%.3f" in the C locale.
  TextBuffer& AppendFixed3(double value) {
    end_ = WriteFixed3(Room(kFixed3Room), value);
    return *this;
  }

  /// As `printf` writes "%g" in the C locale.
  TextBuffer& AppendGeneral(double value);

  /// Drops everything behind the first `size` characters.
  void Truncate(std::size_t size) {
    if (size < this->size()) end_ = begin_ + size;
  }

  /// Puts another character at `position`, which must be below `size()`.
  void Replace(std::size_t position, char c) { begin_[position] = c; }

  /// How many characters there are.
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }
  /// Valid until the next append.
  std::string_view view() const { return {begin_, size()}; }

 private:
  [[gnu::cold, gnu::noinline]] void Grow(std::size_t count);

  char* begin_;
  char* end_;
  char* limit_;
  std::unique_ptr<char[]> heap_;
  char inline_[4096];  // left uninitialized: clearing it would cost more than writing a row
};

/// The text that `append(out, args...)` writes, as a string.
template <typename Append, typename... Args>
std::string ToText(Append&& append, const Args&... args) {
  TextBuffer out;
  append(out, args...);
  return std::string(out.view());
}

/// What `append(out, args...)` writes, between double quotes when `quote` is true.
template <typename Append, typename... Args>
void AppendCvsQuoted(TextBuffer& out, bool quote, Append&& append, const Args&... args) {
  if (quote) out.Append('"');
  append(out, args...);
  if (quote) out.Append('"');
}

/// \name The form of a text
/// @{
inline constexpr bool kCsv = true;      ///< the CSV row's
inline constexpr bool kReport = false;  ///< the text report's
/// @}

/// \name The shared decoders, appended to a buffer
/// @{

/// What `CableTypeToStr` returns.
void AppendCableType(TextBuffer& out, std::uint8_t technology, std::string_view fallback);
/// What `SupportedSpeedToStr` returns.
void AppendSupportedSpeed(TextBuffer& out, std::uint8_t mask, std::string_view fallback);
/// What `TemperatureToStr` returns.
void AppendTemperature(TextBuffer& out, std::uint8_t technology, std::int8_t temperature,
                       std::string_view fallback);
/// What `VoltageToStr` returns.
void AppendVoltage(TextBuffer& out, std::uint16_t raw);
/// What `ConvertCableInfoVSStatusToStr` returns.
void AppendCableInfoVSStatus(TextBuffer& out, std::uint8_t status);
/// @}

/// One row of the cable table. Every call writes the next cell, or cells, with the commas behind
/// them; a row writer therefore reads like the header.
class CsvRow {
 public:
  /// The text as it stands.
  void Raw(std::string_view text) {
    out_.AppendWithin(text.size() + 1, [&](char* to) { return EndCell(WriteText(to, text)); });
  }
  /// The text between double quotes; nothing inside is escaped.
  void Quoted(std::string_view text) {
    out_.AppendWithin(text.size() + 3, [&](char* to) {
      *to = '"';
      char* const end = WriteText(to + 1, text);
      *end = '"';
      return EndCell(end + 1);
    });
  }
  /// All digits.
  void Decimal(std::uint32_t value) {
    out_.AppendWithin(kDecimalRoom + 1, [=](char* to) { return EndCell(WriteDecimal(to, value)); });
  }
  /// "0x" and at least `width` digits.
  void Hex(std::uint32_t value, int width) {
    out_.AppendWithin(PrefixedHexRoom(width) + 1,
                      [=](char* to) { return EndCell(WritePrefixedHex(to, value, width)); });
  }
  /// Three digits after the point.
  void Fixed3(double value) {
    out_.AppendWithin(kFixed3Room + 1, [=](char* to) { return EndCell(WriteFixed3(to, value)); });
  }
  /// `count` missing values.
  void Missing(int count = 1);
  /// "1" or "0".
  void Flag(bool set) { out_.Append(set ? '1' : '0').Append(','); }
  /// `count` flags of `bits`, from bit `first` upwards.
  void FlagsUpwards(std::uint32_t bits, int first, int count);
  /// `count` flags of `bits`, from bit `first` downwards.
  void FlagsDownwards(std::uint32_t bits, int first, int count);

  /// What `append(buffer, args...)` writes: one cell, or several with the commas between them.
  template <typename Append, typename... Args>
  void Cell(Append&& append, const Args&... args) {
    append(out_, args...);
    out_.Append(',');
  }

  /// The same between double quotes.
  template <typename Append, typename... Args>
  void QuotedCell(Append&& append, const Args&... args) {
    AppendCvsQuoted(out_, true, append, args...);
    out_.Append(',');
  }

  /// Ends the row, writes it to `os` whatever formatting the stream is set to, and flushes.
  void WriteTo(std::ostream& os);

 private:
  static char* EndCell(char* end) {
    *end = ',';
    return end + 1;
  }

  TextBuffer out_;
};

/// The forms of a text report's lines, each a label and a value, above what becomes of the lines.
/// All are inlined: then copying a label is a move or two instead of a call.
template <typename Sink>
class LineForms : public Sink {
 public:
  using Sink::Sink;

  /// What `write(to)` writes at `to`, where `room` characters are free, up to what it returns.
  template <typename Write>
  [[gnu::always_inline]] void LineWithin(std::string_view label, std::size_t room,
                                         const Write& write) {
    char* const line = this->BeginLine(label.size() + room + 1);
    EndLine(line, write(WriteText(line, label)));
  }

  /// The same under a label that names a lane: `lane`, 1..9, stands in place of its "#".
  template <typename Write>
  [[gnu::always_inline]] void LaneLineWithin(std::string_view label, int lane, std::size_t room,
                                             const Write& write) {
    char* const line = this->BeginLine(label.size() + room + 1);
    char* const value = WriteText(line, label);
    *(line + label.find('#')) = static_cast<char>('0' + lane);
    EndLine(line, write(value));
  }

  /// What `append(buffer, args...)` writes.
  template <typename Append, typename... Args>
  [[gnu::always_inline]] void Line(std::string_view label, Append&& append, const Args&... args) {
    TextBuffer& out = this->Buffer();
    out.EndAt(WriteText(this->BeginLine(label.size()), label));
    const std::size_t before = out.size();
    append(out, args...);
    char* const end = out.Room(1);  // where that may be only now
    EndLine(end - (out.size() - before) - label.size(), end);
  }

  /// The text as it stands.
  [[gnu::always_inline]] void Text(std::string_view label, std::string_view text) {
    LineWithin(label, text.size(), [=](char* to) { return WriteText(to, text); });
  }
  /// The text as it stands, under a label that names a lane.
  [[gnu::always_inline]] void LaneText(std::string_view label, int lane, std::string_view text) {
    LaneLineWithin(label, lane, text.size(), [=](char* to) { return WriteText(to, text); });
  }
  /// All digits, with `unit` behind them.
  [[gnu::always_inline]] void Decimal(std::string_view label, std::uint32_t value,
                                      std::string_view unit = {}) {
    LineWithin(label, kDecimalRoom + unit.size(),
               [=](char* to) { return WriteText(WriteDecimal(to, value), unit); });
  }
  /// "0x" and at least `width` digits.
  [[gnu::always_inline]] void Hex(std::string_view label, std::uint32_t value, int width) {
    LineWithin(label, PrefixedHexRoom(width),
               [=](char* to) { return WritePrefixedHex(to, value, width); });
  }
  /// A lane's power in both of its units; `dbm` is what `WritePower` takes.
  template <typename Dbm>
  [[gnu::always_inline]] void LanePower(std::string_view label, int lane, double milliwatts,
                                        Dbm dbm) {
    LaneLineWithin(label, lane, kPowerRoom,
                   [=](char* to) { return WritePower(to, milliwatts, dbm); });
  }
  /// A lane's bias; `bias` is what `WriteBias` takes.
  template <typename Bias>
  [[gnu::always_inline]] void LaneBias(std::string_view label, int lane, Bias bias) {
    LaneLineWithin(label, lane, kBiasRoom, [=](char* to) { return WriteBias(to, bias); });
  }

 private:
  [[gnu::always_inline]] void EndLine(char* line, char* end) {
    *end = '\n';
    Sink::EndLine(line, end + 1);
  }
};

/// Keeps lines as one text.
class KeptLines {
 public:
  /// The lines so far. Valid until the next line.
  std::string_view view() const { return out_.view(); }

 protected:
  /// Where the next line goes; `room` characters are free there.
  char* BeginLine(std::size_t room) { return out_.Room(room); }
  /// Takes in the line up to `end`.
  void EndLine(const char* /*line*/, char* end) { out_.EndAt(end); }
  /// Where the lines are put together.
  TextBuffer& Buffer() { return out_; }

 private:
  TextBuffer out_;
};

/// Writes lines to a stream, each with a flush behind it: the stream and its buffer see what
/// `write` and `flush` would do line by line, though for speed many lines may be put together
/// before the first of them is written. Call `Finish` behind the last line.
class FlushedLines {
 public:
  /// `os` must outlive the lines.
  explicit FlushedLines(std::ostream& os) : os_(os), sentry_(os) {}

  /// Writes what is not written yet.
  void Finish();

 protected:
  /// Where the next line goes; `room` characters are free there.
  char* BeginLine(std::size_t room) {
    if (!out_.HasRoom(kSizeRoom + room)) MakeRoom(kSizeRoom + room);
    return out_.end() + kSizeRoom;
  }
  /// Takes in the line up to `end`.
  void EndLine(char* line, char* end) {
    const auto size = static_cast<std::size_t>(end - line);
    std::memcpy(line - kSizeRoom, &size, kSizeRoom);
    out_.EndAt(end);
  }
  /// Where the lines are put together.
  TextBuffer& Buffer() { return out_; }

 private:
  // A line's size stands before it while it waits.
  static constexpr std::size_t kSizeRoom = sizeof(std::size_t);

  [[gnu::cold, gnu::noinline]] void MakeRoom(std::size_t room);
  const char* WriteFast();

  TextBuffer out_;
  std::ostream& os_;
  std::ostream::sentry sentry_;  // the stream is prepared once for all lines
};

/// A report that is kept as one text.
using ReportBlock = LineForms<KeptLines>;
/// A report that goes to a stream line by line.
using ReportLines = LineForms<FlushedLines>;

}  // namespace cable_info
