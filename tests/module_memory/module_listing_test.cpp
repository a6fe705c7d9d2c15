#include "cable_info/module_memory/module_listing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpByte;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::IsListing;
using cable_info::module_memory::ParseListing;

std::string Problem(std::string_view text) {
  try {
    ParseListing(text);
  } catch (const BadModule& bad) {
    return bad.what();
  }
  return "";
}

DumpBytes CountingUp(std::size_t count, unsigned first = 0) {
  DumpBytes bytes;
  for (std::size_t i = 0; i < count; ++i) bytes.emplace_back((first + i) & 0xFF);
  return bytes;
}

TEST(ModuleListing, DistinguishesTextFromImages) {
  EXPECT_TRUE(IsListing("11 07\t00\r\n"));
  EXPECT_FALSE(IsListing(std::string_view("\x11 00", 3)));
  EXPECT_FALSE(IsListing(std::string_view("00\0", 3)));
  EXPECT_FALSE(IsListing("00\xFF"));
}

TEST(ModuleListing, ReadsPlainHexadecimal) {
  EXPECT_EQ(ParseListing("00 01 02 03"), CountingUp(4));
  EXPECT_EQ(ParseListing("00010203"), CountingUp(4));
  EXPECT_EQ(ParseListing("  0001\r\n\t0203\n\n"), CountingUp(4));
  EXPECT_EQ(ParseListing("0x00, 0x01,\n0x02, 0x03,\n"), CountingUp(4));
  EXPECT_EQ(ParseListing("00,01,02,03"), CountingUp(4));
  EXPECT_EQ(ParseListing("0x00,0x01,\r\n0X02,0X03,\r\n"), CountingUp(4));
  EXPECT_EQ(ParseListing("0x0000: 00,01,02,03\n0x0004: 04 , 05\n"), CountingUp(6));
  EXPECT_EQ(ParseListing("aB Cd EF"), (DumpBytes{0xAB, 0xCD, 0xEF}));
}

TEST(ModuleListing, ReadsFourBytesOfPlainHexadecimalAsBytes) {
  EXPECT_EQ(ParseListing("00010203\n04050607\n"), CountingUp(8));
}

TEST(ModuleListing, ReadsXxd) {
  EXPECT_EQ(ParseListing("00000000: 0001 0203 0405 0607 0809 0a0b 0c0d 0e0f  ................\n"
                         "00000010: 1011 12                                  ab  cd\n"),
            CountingUp(19));
  EXPECT_EQ(ParseListing("00000000: 00 01 02 03  .. .\n00000004: 04 05 06 07  41 42\n"),
            CountingUp(8));
}

TEST(ModuleListing, ReadsCanonicalHexdump) {
  EXPECT_EQ(
      ParseListing("00000000  00 01 02 03 04 05 06 07  08 09 0a 0b 0c 0d 0e 0f  |00 01|2345678|\n"
                   "00000010  10 11                                             |..|\n"
                   "00000012\n"),
      CountingUp(18));
}

TEST(ModuleListing, RepeatsTheLastRowAfterAStar) {
  const DumpBytes bytes = ParseListing(
      "00000000  00 01 02 03 04 05 06 07  08 09 0a 0b 0c 0d 0e 0f  |................|\n"
      "00000010  20 20 20 20 20 20 20 20  20 20 20 20 20 20 20 20  |                |\n"
      "*\n"
      "00000040  07                                                |.|\n"
      "00000041\n");
  ASSERT_EQ(bytes.size(), 0x41U);
  for (std::size_t i = 0x10; i < 0x40; ++i) EXPECT_EQ(bytes[i], DumpByte(0x20)) << i;
  EXPECT_EQ(bytes[0x40], DumpByte(7));
}

TEST(ModuleListing, ReadsI2cdump) {
  const DumpBytes bytes = ParseListing(
      "No size specified (using byte-data access)\n"
      "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n"
      "00: 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f    ................\n"
      "10: 10 XX 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f    ?X?????????? 11 \n");
  DumpBytes expected = CountingUp(32);
  expected[0x11] = std::nullopt;
  EXPECT_EQ(bytes, expected);
}

TEST(ModuleListing, KeepsTheColumnsOfAPartialI2cdump) {
  const DumpBytes bytes = ParseListing(
      "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n"
      "10:       12 13                                           ??\n");
  ASSERT_GE(bytes.size(), 0x14U);
  EXPECT_EQ(bytes[0x00], DumpByte());
  EXPECT_EQ(bytes[0x11], DumpByte());
  EXPECT_EQ(bytes[0x12], DumpByte(0x12));
  EXPECT_EQ(bytes[0x13], DumpByte(0x13));
}

TEST(ModuleListing, ReadsTheKernelToolsListing) {
  EXPECT_EQ(ParseListing("Offset\t\tValues\n"
                         "------\t\t------\n"
                         "0x0000:\t\t00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
                         "0x0010:\t\t10 11 12 13 \n"),
            CountingUp(20));
}

TEST(ModuleListing, TreatsGapsAsMissing) {
  DumpBytes expected = CountingUp(2);
  expected.resize(0x80);
  expected.emplace_back(0x11);
  EXPECT_EQ(ParseListing("0x0000: 00 01\n0x0080: 11\n"), expected);
}

TEST(ModuleListing, NamesTheLineThatItCannotRead) {
  EXPECT_EQ(Problem(""), "the listing holds no bytes");
  EXPECT_EQ(Problem(" \n\n"), "the listing holds no bytes");
  EXPECT_EQ(Problem("00 01\nVendor: Acme\n"),
            "line 2 of the listing: expected bytes in hexadecimal, found \"Vendor:\"");
  EXPECT_EQ(Problem("00 1"), "line 1 of the listing: expected bytes in hexadecimal, found \"1\"");
  EXPECT_EQ(Problem("00,1"), "line 1 of the listing: expected bytes in hexadecimal, found \"1\"");
  EXPECT_EQ(Problem("00000010: 00\n00000000: 00\n"),
            "line 2 of the listing: expected ascending offsets, found a lower one");
  EXPECT_EQ(Problem("fffffffffffffffff0: 00\n"),
            "line 1 of the listing: expected an offset of at most 4096 bytes, found a higher one");
  EXPECT_EQ(Problem(std::string(9000, '0')),
            "line 1 of the listing: expected at most 4096 bytes, found more");
  EXPECT_EQ(Problem("0000000 0011 0755\n"),  // words of the machine's order
            "line 1 of the listing: expected bytes in hexadecimal, found \"0000000\"");
}

TEST(PlainHex, ConsistsOfDigitsOnly) {
  std::vector<std::uint8_t> bytes = {1, 2, 3};
  EXPECT_TRUE(cable_info::module_memory::ParsePlainHex("00fF10aB09", bytes));
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{0x00, 0xFF, 0x10, 0xAB, 0x09}));
  for (const char* text : {"", "00010203", "000102030", "0001020304\n", "00 0102030", "000102030g",
                           "0001:20304", "0x01020304"}) {
    EXPECT_FALSE(cable_info::module_memory::ParsePlainHex(text, bytes)) << text;
  }
  const std::string longest(2 * cable_info::module_memory::kMaxDumpSize, '7');
  EXPECT_TRUE(cable_info::module_memory::ParsePlainHex(longest, bytes));
  EXPECT_FALSE(cable_info::module_memory::ParsePlainHex(longest + "77", bytes));
}

}  // namespace
