#include "cli/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using cli::FirstUtf8Character;
using cli::IsUtf8;

TEST(Utf8, DecodesTheFirstCharacter) {
  const struct {
    std::string_view text;
    char32_t code;
    std::size_t size;
  } cases[] = {
      {std::string_view("\0a", 2), 0, 1},
      {"\x7f", 0x7F, 1},
      {"\xc2\x80", 0x80, 2},
      {"\xdf\xbf", 0x7FF, 2},
      {"\xe0\xa0\x80", 0x800, 3},
      {"\xed\x9f\xbf", 0xD7FF, 3},
      {"\xee\x80\x80", 0xE000, 3},
      {"\xef\xbf\xbf", 0xFFFF, 3},
      {"\xf0\x90\x80\x80", 0x10000, 4},
      {"\xf4\x8f\xbf\xbf!", 0x10FFFF, 4},
  };
  for (const auto& expected : cases) {
    const auto character = FirstUtf8Character(expected.text);
    ASSERT_TRUE(character) << testing::PrintToString(expected.text);
    EXPECT_EQ(character->code, expected.code);
    EXPECT_EQ(character->size, expected.size);
    EXPECT_TRUE(IsUtf8(expected.text));
  }
}

TEST(Utf8, RefusesWhatIsNotWellFormed) {
  for (const std::string_view text :
       {"\x80", "\xbf", "\xc2", "\xe2\x82", "\xf0\x90\x80", "\xc2\xc2", "\xe2\x82z", "\xc0\x80",
        "\xc1\xbf", "\xe0\x80\x80", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf", "\xed\xa0\x80",
        "\xed\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xfe", "\xff"}) {
    EXPECT_FALSE(FirstUtf8Character(text)) << testing::PrintToString(text);
    EXPECT_FALSE(IsUtf8("abc" + std::string(text))) << testing::PrintToString(text);
  }
  EXPECT_FALSE(FirstUtf8Character(""));
  EXPECT_TRUE(IsUtf8(""));
}

}  // namespace
