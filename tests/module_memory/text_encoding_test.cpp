#include "cable_info/module_memory/text_encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "cable_info/module_memory/module_output.h"

namespace {

using cable_info::module_memory::AppendUtf8;
using cable_info::module_memory::Utf8Length;

TEST(Utf8Length, CountsTheBytesOfACharacter) {
  EXPECT_EQ(Utf8Length("a"), 1U);
  EXPECT_EQ(Utf8Length("\xC3\xA9z"), 2U);         // U+00E9
  EXPECT_EQ(Utf8Length("\xE2\x82\xAC"), 3U);      // U+20AC
  EXPECT_EQ(Utf8Length("\xF0\x9F\x94\x8C"), 4U);  // U+1F50C
  EXPECT_EQ(Utf8Length("\xF4\x8F\xBF\xBF"), 4U);  // U+10FFFF, the last one
  EXPECT_EQ(Utf8Length("\xED\x9F\xBF"), 3U);      // U+D7FF, before the surrogates
}

TEST(Utf8Length, IsZeroForInvalidCharacters) {
  EXPECT_EQ(Utf8Length(""), 0U);
  EXPECT_EQ(Utf8Length("\x80"), 0U) << "a continuation byte";
  EXPECT_EQ(Utf8Length("\xFF"), 0U) << "a byte that no character has";
  EXPECT_EQ(Utf8Length("\xE2\x82"), 0U) << "cut short";
  EXPECT_EQ(Utf8Length("\xC3z"), 0U) << "without its continuation";
  EXPECT_EQ(Utf8Length("\xC0\xAF"), 0U) << "overlong";
  EXPECT_EQ(Utf8Length("\xE0\x80\xAF"), 0U) << "overlong";
  EXPECT_EQ(Utf8Length("\xED\xA0\x80"), 0U) << "a surrogate";
  EXPECT_EQ(Utf8Length("\xF4\x90\x80\x80"), 0U) << "above U+10FFFF";
}

std::string Encoded(std::string_view text) {
  cable_info::text::TextBuffer out;
  AppendUtf8(out, text,
             [&out](unsigned char special) { out.Append('<').AppendDecimal(special).Append('>'); });
  return std::string(out.view());
}

TEST(AppendUtf8, KeepsCharactersAndReplacesOtherBytes) {
  EXPECT_EQ(Encoded(""), "");
  EXPECT_EQ(Encoded("plain \xC3\xA9 \xE2\x82\xAC"), "plain \xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Encoded("a\xFFz"), "a\xEF\xBF\xBDz");
  EXPECT_EQ(Encoded("\xE2\x82"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(AppendUtf8, HandsOverControlsQuotesAndBackslashes) {
  EXPECT_EQ(Encoded("a\tb\"c\\d\x7F"
                    "e\x1F"),
            "a<9>b<34>c<92>d<127>e<31>");
  EXPECT_EQ(Encoded(std::string_view("\0", 1)), "<0>");
}

// Characters are examined in groups, the last of which may overlap the one before.
TEST(AppendUtf8, FindsASpecialCharacterAtEachPlace) {
  constexpr std::size_t kMaxSize = 25;
  for (const char c : std::string_view("\0\x1F\"\\\x7F\x80\xFF", 7)) {
    const auto byte = static_cast<unsigned char>(c);
    const std::string shown =
        byte < 0x80 ? '<' + std::to_string(byte) + '>' : std::string("\xEF\xBF\xBD");
    for (std::size_t size = 1; size <= kMaxSize; ++size) {
      for (std::size_t place = 0; place < size; ++place) {
        std::string text(size, '~');
        text[place] = c;
        EXPECT_EQ(Encoded(text),
                  std::string(place, '~') + shown + std::string(size - place - 1, '~'));
      }
    }
  }
}

TEST(ModuleJson, EscapesStrings) {
  const std::string json = cable_info::ModuleToJson({}, "a\"b\\c\n\x7F\xC3\xA9\xFF");
  EXPECT_NE(json.find("\"a\\\"b\\\\c\\u000a\\u007f\xC3\xA9\xEF\xBF\xBD\""), std::string::npos)
      << json;
}

}  // namespace
