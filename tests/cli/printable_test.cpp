#include "cli/printable.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using cli::Newlines;
using cli::Printable;

TEST(Printable, LeavesPlainTextAsItIs) {
  EXPECT_EQ(Printable(""), "");
  EXPECT_EQ(Printable("Acme Optics, 100%~"), "Acme Optics, 100%~");
  EXPECT_EQ(Printable("caf\u00e9 \u4e2d\u6587 \U0001F600"), "caf\u00e9 \u4e2d\u6587 \U0001F600");
}

TEST(Printable, EscapesControls) {
  EXPECT_EQ(Printable("\x1b[31m"), "\\x1b[31m");
  EXPECT_EQ(Printable(std::string_view("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(Printable("\x01\x1f\x7f\t\r"), "\\x01\\x1f\\x7f\\x09\\x0d");
  EXPECT_EQ(Printable("\u0080\u0085\u009f\u00a0"), "\\x80\\x85\\x9f\u00a0");
}

TEST(Printable, EscapesBidirectionalControlsAndLineSeparators) {
  EXPECT_EQ(Printable("\u202a\u202e\u2066\u2069\u200e\u200f\u061c\u2028\u2029"),
            "\\u202a\\u202e\\u2066\\u2069\\u200e\\u200f\\u061c\\u2028\\u2029");
  EXPECT_EQ(Printable("\u202f\u2065\u206a"), "\u202f\u2065\u206a");
}

TEST(Printable, EscapesBytesThatAreNotUtf8) {
  EXPECT_EQ(Printable("\x9b"), "\\x9b");
  EXPECT_EQ(Printable("\xc2"), "\\xc2");
  EXPECT_EQ(Printable("\xe2\x80"), "\\xe2\\x80");
  EXPECT_EQ(Printable("\xe2\x80z"), "\\xe2\\x80z");
  EXPECT_EQ(Printable("\xc0\x9b"), "\\xc0\\x9b");                    // overlong ESC
  EXPECT_EQ(Printable("\xe0\x80\x9b"), "\\xe0\\x80\\x9b");           // overlong
  EXPECT_EQ(Printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");           // a surrogate
  EXPECT_EQ(Printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");  // beyond U+10FFFF
  EXPECT_EQ(Printable("\xff\xfe"), "\\xff\\xfe");
}

TEST(Printable, KeepsNewlinesOnDemand) {
  EXPECT_EQ(Printable("a\nb\n"), "a\\x0ab\\x0a");
  EXPECT_EQ(Printable("a\n\x1b\n", Newlines::kKept), "a\n\\x1b\n");
}

TEST(Printable, WritesTheEscapesOfJsonOnDemand) {
  EXPECT_EQ(Printable("a\u009b\u202eb\x7f\n", Newlines::kKept, cli::Escapes::kJson),
            "a\\u009b\\u202eb\\u007f\n");
  EXPECT_EQ(Printable("\x9b", Newlines::kKept, cli::Escapes::kJson), "\\u009b");
}

}  // namespace
