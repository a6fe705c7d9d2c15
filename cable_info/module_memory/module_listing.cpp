#include "cable_info/module_memory/module_listing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace cable_info::module_memory {

namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kByteSeparators = " \t\r,";
constexpr std::size_t kBytesPerRow = 16;

constexpr std::uint8_t kNoNibble = 0xFF;

// The value of each hexadecimal digit; `kNoNibble` for other characters.
constexpr std::array<std::uint8_t, 256> NibblesOfDigits() {
  std::array<std::uint8_t, 256> nibbles = {};
  for (std::uint8_t& nibble : nibbles) nibble = kNoNibble;
  for (std::uint8_t digit = 0; digit < 10; ++digit) {
    nibbles[static_cast<std::size_t>('0') + digit] = digit;
  }
  for (std::uint8_t digit = 0; digit < 6; ++digit) {
    nibbles[static_cast<std::size_t>('a') + digit] = static_cast<std::uint8_t>(digit + 10);
    nibbles[static_cast<std::size_t>('A') + digit] = static_cast<std::uint8_t>(digit + 10);
  }
  return nibbles;
}

constexpr std::array<std::uint8_t, 256> kNibbles = NibblesOfDigits();

bool IsHexDigit(char c) { return kNibbles[static_cast<unsigned char>(c)] != kNoNibble; }

bool IsHex(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsHexDigit);
}

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

std::string_view WithoutPrefix(std::string_view text) {
  return StartsWith(text, "0x") || StartsWith(text, "0X") ? text.substr(2) : text;
}

// The words of a line between blanks or other separators.
std::vector<std::string_view> Words(std::string_view line, std::string_view separators = kBlanks) {
  std::vector<std::string_view> words;
  for (std::size_t begin = line.find_first_not_of(separators); begin != std::string_view::npos;) {
    const std::size_t end = std::min(line.find_first_of(separators, begin), line.size());
    words.push_back(line.substr(begin, end - begin));
    begin = line.find_first_not_of(separators, end);
  }
  return words;
}

// A row of a listing: its offset, if it has one, and the text of its bytes.
struct Row {
  std::optional<std::size_t> offset;
  std::string_view bytes;
  bool has_columns = false;  // three characters a byte, blank or "XX" where there is none
};

std::size_t Offset(std::string_view digits) {
  std::size_t offset = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), offset, 16);
  return read.ec == std::errc() ? std::min(offset, kMaxDumpSize + 1) : kMaxDumpSize + 1;
}

// "00000010: 1100 0755  ..U", "10: 11 00 XX", "0x0010:\t\t11 00", "00000010  11 00  |..|", or bytes
// alone.
Row SplitRow(std::string_view line, bool has_offsets) {
  constexpr std::size_t kLongOffset = 8;
  constexpr std::size_t kShortOffset = 2;
  const std::size_t word_end = std::min(line.find_first_of(" \t:"), line.size());
  const std::string_view word = line.substr(0, word_end);
  const std::string_view digits = WithoutPrefix(word);
  if (!IsHex(digits)) return {{}, line};
  std::string_view rest = line.substr(word_end);
  if (!StartsWith(rest, ":")) {
    // The last line of such a listing is an offset alone; in plain hexadecimal it is four bytes.
    const bool is_offset = rest.empty() ? has_offsets : StartsWith(rest, "  ");
    if (word.size() != kLongOffset || !is_offset) return {{}, line};
    return {Offset(digits), rest.substr(0, rest.find('|'))};
  }
  rest.remove_prefix(1);
  const bool is_prefixed = digits.size() != word.size();
  if (is_prefixed) return {Offset(digits), rest};
  if (word.size() == kShortOffset) {
    return {Offset(digits), rest.substr(0, 1 + 3 * kBytesPerRow), true};
  }
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  return {Offset(digits), rest.substr(0, rest.find("  "))};
}

// A heading, as some listings have it above their rows.
bool IsHeading(std::string_view line) {
  constexpr std::string_view kSizeRemark = "No size specified";
  constexpr std::string_view kColumnDigits = "0123456789abcdef";
  if (line.find_first_not_of("- \t\r") == std::string_view::npos) return true;
  if (StartsWith(line, kSizeRemark)) return true;
  const std::vector<std::string_view> words = Words(line);
  if (words == std::vector<std::string_view>{"Offset", "Values"}) return true;
  if (words.size() < kBytesPerRow) return false;
  for (std::size_t i = 0; i < kBytesPerRow; ++i) {
    if (words[i] != kColumnDigits.substr(i, 1)) return false;
  }
  return words.size() == kBytesPerRow || words[kBytesPerRow] == kColumnDigits;
}

class Listing {
 public:
  void AddLine(std::string_view line) {
    ++line_number_;
    line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
    if (line.empty()) return;
    line.remove_prefix(line.find_first_not_of(kBlanks));
    if (line == "*" && has_rows_) {
      repeats_ = true;
      return;
    }
    if (!has_rows_ && IsHeading(line)) return;
    AddRow(SplitRow(line, has_offsets_));
  }

  DumpBytes Take() {
    if (bytes_.empty()) throw BadModule("the listing holds no bytes");
    return std::move(bytes_);
  }

 private:
  void AddRow(const Row& row) {
    if (row.offset) MoveTo(*row.offset);
    has_offsets_ = row.offset.has_value();
    last_row_ = bytes_.size();
    has_rows_ = true;
    if (row.has_columns) {
      AddColumns(row.bytes);
    } else {
      for (const std::string_view word : Words(row.bytes, kByteSeparators)) {
        AddWord(word);
      }
    }
  }

  // Bytes that the listing omits repeat the last row after a "*"; otherwise they are missing.
  void MoveTo(std::size_t offset) {
    if (offset > kMaxDumpSize) {
      Fail("an offset of at most " + std::to_string(kMaxDumpSize) + " bytes", "a higher one");
    }
    if (offset < bytes_.size()) Fail("ascending offsets", "a lower one");
    const std::size_t row_size = bytes_.size() - last_row_;
    while (bytes_.size() < offset) {
      bytes_.push_back(repeats_ && row_size > 0 ? bytes_[bytes_.size() - row_size] : DumpByte());
    }
    repeats_ = false;
  }

  void AddColumns(std::string_view columns) {
    for (std::size_t at = 1; at < columns.size(); at += 3) {
      const std::string_view cell = columns.substr(at, 2);
      const std::vector<std::string_view> words = Words(cell);
      if (words.empty() || words[0] == "XX") {
        Add(std::nullopt);
      } else {
        AddWord(words[0]);
      }
    }
  }

  // "11", "0x11" or several bytes at once, "1100".
  void AddWord(std::string_view word) {
    const std::string_view digits = WithoutPrefix(word);
    if (!IsHex(digits) || digits.size() % 2 != 0) {
      constexpr std::size_t kShown = 20;
      Fail("bytes in hexadecimal", '"' + std::string(word.substr(0, kShown)) + '"');
    }
    for (std::size_t i = 0; i < digits.size(); i += 2) {
      std::uint8_t byte = 0;
      std::from_chars(digits.data() + i, digits.data() + i + 2, byte, 16);
      Add(byte);
    }
  }

  void Add(DumpByte byte) {
    if (bytes_.size() >= kMaxDumpSize) {
      Fail("at most " + std::to_string(kMaxDumpSize) + " bytes", "more");
    }
    bytes_.push_back(byte);
  }

  [[noreturn]] void Fail(const std::string& expected, const std::string& found) const {
    throw BadModule("line " + std::to_string(line_number_) + " of the listing: expected " +
                    expected + ", found " + found);
  }

  DumpBytes bytes_;
  std::size_t last_row_ = 0;  // where the last row begins
  bool has_rows_ = false;
  bool has_offsets_ = false;
  bool repeats_ = false;
  std::size_t line_number_ = 0;
};

}  // namespace

bool IsListing(std::string_view content) {
  const auto is_text = [](char c) {
    return (c >= ' ' && c <= '~') || c == '\t' || c == '\n' || c == '\r';
  };
  return std::all_of(content.begin(), content.end(), is_text);
}

bool ParsePlainHex(std::string_view text, std::vector<std::uint8_t>& bytes) {
  constexpr std::size_t kOffsetDigits = 8;  // eight digits alone may be an offset
  const bool is_short = text.size() <= kOffsetDigits || text.size() > 2 * kMaxDumpSize;
  if (is_short || text.size() % 2 != 0) return false;
  // Without branches and tables, so that compilers make it a loop over vectors.
  const auto nibble = [](std::uint8_t c) {  // letters have bit 6 set and begin with 1
    return static_cast<std::uint8_t>((c & 0xFU) + 9U * (c >> 6U));
  };
  const auto is_other = [](std::uint8_t c) {
    const auto digit = static_cast<std::uint8_t>(c - '0');
    const auto letter = static_cast<std::uint8_t>((c | 0x20U) - 'a');
    return static_cast<std::uint8_t>((digit > 9 ? 1U : 0U) & (letter > 5 ? 1U : 0U));
  };
  const std::size_t count = text.size() / 2;
  bytes.resize(count);
  std::uint8_t* const to = bytes.data();
  const char* const digits = text.data();
  std::uint8_t others = 0;  // 1 after any character that is no digit
  for (std::size_t i = 0; i < count; ++i) {
    const auto high = static_cast<std::uint8_t>(digits[2 * i]);
    const auto low = static_cast<std::uint8_t>(digits[2 * i + 1]);
    others = static_cast<std::uint8_t>(others | is_other(high) | is_other(low));
    to[i] = static_cast<std::uint8_t>(nibble(high) << 4U | nibble(low));
  }
  return others == 0;
}

DumpBytes ParseListing(std::string_view text) {
  Listing listing;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    listing.AddLine(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return listing.Take();
}

}  // namespace cable_info::module_memory
