#include "cable_info/text/text_buffer.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>
#include <string>

#include "text/number_samples.h"

namespace cable_info::text {
namespace {

using test::PrintfFixed3;

TEST(TextBuffer, GrowsAndKeepsItsText) {
  TextBuffer out;
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    out.AppendDecimal(i).Append(',').Append("text").AppendQuoted("q").AppendFixed3(i / 8.0);
    expected += std::to_string(i) + ",text\"q\"" + PrintfFixed3(i / 8.0);
  }
  EXPECT_EQ(out.view(), expected);
  const std::string big(1'000'000, 'x');
  out.Append(big);
  EXPECT_EQ(out.size(), expected.size() + big.size());
  out.Truncate(expected.size());
  EXPECT_EQ(out.view(), expected);
  out.Truncate(expected.size() + 1);
  EXPECT_EQ(out.size(), expected.size());
}

TEST(TextBuffer, FindsACharacterAgainAfterItGrew) {
  TextBuffer out;
  out.Append("label: ");
  const std::size_t offset = out.OffsetOf(out.end());
  EXPECT_EQ(offset, 7U);
  out.Append("value").Append(std::string(10'000, 'x'));
  EXPECT_EQ(std::string(out.At(offset), 5), "value");
  EXPECT_EQ(out.At(out.size()), out.end());
}

TEST(TextBuffer, GrowsAtEveryFillLevel) {
  for (std::size_t size = 4000; size <= 4200; ++size) {
    const std::string text(size, 'x');
    TextBuffer out;
    out.Append(text).Append('c');
    EXPECT_EQ(out.view(), text + 'c');
    out.Append(text).AppendHex(0xBEEF, 4).AppendDecimal(-1).AppendGeneral(2.5);
    EXPECT_EQ(out.view(), text + 'c' + text + "beef-12.5");
  }
}

// The address sanitizer reports insufficient capacity.
TEST(TextBuffer, ReservesEnoughForTheLongestNumbersAtEveryFillLevel) {
  const auto expect_after = [](const std::string& text, const std::string& number, auto append) {
    TextBuffer out;
    out.Append(text);
    append(out);
    EXPECT_EQ(out.view(), text + number);
  };
  for (std::size_t size = 3700; size <= 4100; ++size) {
    const std::string text(size, 'x');
    expect_after(text, "deadbeef", [](TextBuffer& out) { out.AppendHex(0xDEADBEEF, 8); });
    expect_after(text, "-9223372036854775808",
                 [](TextBuffer& out) { out.AppendDecimal(INT64_MIN); });
    expect_after(text, "-4503599627370495.500",
                 [](TextBuffer& out) { out.AppendFixed3(-4503599627370495.5); });
    expect_after(text, "-1.79769e+308", [](TextBuffer& out) { out.AppendGeneral(-DBL_MAX); });
    expect_after(text, PrintfFixed3(-DBL_MAX), [](TextBuffer& out) { out.AppendFixed3(-DBL_MAX); });
  }
}

TEST(TextBuffer, WritesTenthsAsPrintfWritesTheNumber) {
  for (std::uint32_t tenths = 0; tenths < 20'000; ++tenths) {
    TextBuffer out;
    out.AppendTenths(tenths);
    ASSERT_EQ(out.view(), test::PrintfGeneral(tenths * 0.1));
  }
}

TEST(TextBuffer, TakesTextWithNuls) {
  const std::string text("a\0b", 3);
  TextBuffer out;
  out.AppendQuoted(text).Append("").AppendPrefixedHex(10, 2);
  EXPECT_EQ(out.view(), '"' + text + "\"0x0a");
  out.Truncate(0);
  EXPECT_EQ(out.view(), "");
  out.Append("again");
  EXPECT_EQ(out.view(), "again");
}

}  // namespace
}  // namespace cable_info::text
