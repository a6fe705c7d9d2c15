#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cable_info/module_memory/module_memory.h"

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::PageOf;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpFromContent;
using cable_info::module_memory::SplitImage;

// Parts of 128 bytes, each filled with its index; the first byte is the identifier of the module.
std::string Content(std::size_t parts, char identifier) {
  std::string content(1, identifier);
  content.append(127, '\0');
  for (std::size_t i = 1; i < parts; ++i) content.append(128, static_cast<char>(i));
  return content;
}

ModuleImage Split(const std::string& content) {
  std::vector<std::string> remarks;
  return SplitImage(DumpFromContent(content), remarks);
}

TEST(LinearImage, UpperPagesFollowTheLowerOneByNumber) {
  for (const char identifier : {'\x11', '\x18'}) {
    const ModuleImage image = Split(Content(257, identifier));
    EXPECT_EQ(image.At(Page::kLower, 1), 0);
    EXPECT_EQ(image.At(Page::k00, 128), 1);
    EXPECT_EQ(image.At(Page::k03, 128), 4);
    EXPECT_EQ(image.At(Page::k11, 255), 0x12);
    EXPECT_EQ(image.At(PageOf(0xFE), 128), 0xFF);
    EXPECT_EQ(image.halves().size(), 257U);
  }
}

TEST(LinearImage, SfpModulesHaveA2AfterA0) {
  const ModuleImage image = Split(Content(259, 0x03));
  EXPECT_EQ(image.At(Page::kA0, 128), 1);
  EXPECT_EQ(image.At(Page::kA2, 0), 2);
  EXPECT_EQ(image.At(Page::kA2, 255), 3);
  EXPECT_EQ(image.halves().size(), 4U);
}

TEST(LinearImage, OtherSizesAreErrors) {
  for (const std::size_t parts : {33U, 256U, 258U, 260U}) {
    EXPECT_THROW(Split(Content(parts, 0x11)), BadModule) << parts;
  }
  EXPECT_THROW(Split(Content(259, 0x11)), BadModule);
  EXPECT_THROW(Split(Content(257, 0x03)), BadModule);
}

}  // namespace
