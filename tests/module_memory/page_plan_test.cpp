#include "cable_info/module_memory/page_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "cable_info/module_memory/memory_map.h"
#include "module_memory/cmis_memory.h"

namespace {

using cable_info::FirstPageOf;
using cable_info::kMaxMemoryParts;
using cable_info::MemoryPart;
using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::PageOf;
using cable_info::PartsToRead;
using cmis_memory::Memory;

// "lower 00 11.1", with a "+" after the second halves of SFP devices.
std::string Plan(const ModuleImage& image) {
  std::string text;
  for (const MemoryPart& part : PartsToRead(image)) {
    if (!text.empty()) text += ' ';
    text += cable_info::module_memory::PageKey(part.page);
    const bool is_upper = part.first == 128;
    EXPECT_TRUE(part.first == 0 || is_upper);
    if (part.page == Page::kA0 || part.page == Page::kA2) {
      text += is_upper ? "+" : "";
    } else {
      EXPECT_EQ(is_upper, part.page != Page::kLower);
    }
  }
  return text;
}

TEST(PagePlan, BeginsWithTheLowerPage) { EXPECT_EQ(Plan(ModuleImage()), "lower"); }

TEST(PagePlan, TheFirstPageOfSfpModulesIsA0) {
  EXPECT_EQ(FirstPageOf(0x03), Page::kA0);
  EXPECT_EQ(FirstPageOf(0x11), Page::kLower);
  EXPECT_EQ(FirstPageOf(0x19), Page::kLower);
  EXPECT_EQ(FirstPageOf(0x00), Page::kLower);
}

TEST(PagePlan, AnUnknownModuleIsIdentifiedByPage00h) {
  Memory memory;
  memory.Add(Page::kLower);
  EXPECT_EQ(Plan(memory.image()), "lower 00");
  memory.Add(Page::k00);
  EXPECT_EQ(Plan(memory.image()), "lower 00");
  memory.Put(Page::k00, 128, {0x11});
  EXPECT_EQ(Plan(memory.image()), "lower 00 03");
}

TEST(PagePlan, Sff8636) {
  Memory memory;
  memory.Add(Page::kLower).Put(Page::kLower, 0, {0x11});
  EXPECT_EQ(Plan(memory.image()), "lower 00 03");
  memory.Add(Page::k00).Put(Page::k00, 128, {0x11});
  EXPECT_EQ(Plan(memory.image()), "lower 00 03");
  memory.Put(Page::k00, 195, {0x80});
  EXPECT_EQ(Plan(memory.image()), "lower 00 02 03");
  memory.Put(Page::k00, 195, {0x01});
  EXPECT_EQ(Plan(memory.image()), "lower 00 03 20 21");
}

TEST(PagePlan, FlatMemoryHasNoUpperPagesButPage00h) {
  Memory qsfp;
  qsfp.Add(Page::kLower).Put(Page::kLower, 0, {0x11, 0, 0x04});
  qsfp.Add(Page::k00).Put(Page::k00, 195, {0xFF});
  EXPECT_EQ(Plan(qsfp.image()), "lower 00");
  Memory cmis;
  cmis.Add(Page::kLower).Put(Page::kLower, 0, {0x18, 0x40, 0x80});
  EXPECT_EQ(Plan(cmis.image()), "lower 00");
}

TEST(PagePlan, Sff8472) {
  Memory memory;
  memory.Put(Page::kA0, 0, {0x03});
  EXPECT_EQ(Plan(memory.image()), "a0");
  memory.Put(Page::kA0, 92, {0x40});
  EXPECT_EQ(Plan(memory.image()).substr(0, 5), "a0 a2");
  memory.Put(Page::kA0, 92, {0x44});  // A2h needs an address change, which is a write
  EXPECT_EQ(Plan(memory.image()), "a0");
}

// The mandatory pages of a CMIS module (CMIS 5.2, table 8-1), and those that page 01h advertises.
Memory Cmis(unsigned page142, unsigned page155 = 0) {
  Memory memory;
  memory.Add(Page::kLower).Put(Page::kLower, 0, {0x19, 0x52});
  memory.Add(Page::k00).Put(Page::k00, 128, {0x19});
  memory.Add(Page::k01).Put(Page::k01, 142, {page142}).Put(Page::k01, 155, {page155});
  return memory;
}

TEST(PagePlan, Cmis) {
  EXPECT_EQ(Plan(Cmis(0).Drop(Page::k01).image()), "lower 00 01 02 10 11");
  EXPECT_EQ(Plan(Cmis(0).image()), "lower 00 01 02 10 11");
  EXPECT_EQ(Plan(Cmis(0x01).image()), "lower 00 01 02 10 10.1 11 11.1");
  EXPECT_EQ(Plan(Cmis(0x02).image()), "lower 00 01 02 10 10.1 10.2 10.3 11 11.1 11.2 11.3");
  EXPECT_EQ(Plan(Cmis(0x20).image()), "lower 00 01 02 10 11 13 14");
  // Before CMIS 5.3 tunable modules have the coherent pages, too.
  Memory tunable = Cmis(0x00, 0x40);
  tunable.Put(Page::k00, 210, {0xFE});
  EXPECT_EQ(Plan(tunable.image()), "lower 00 01 02 10 11 04 12 34 35");
  tunable.Put(Page::kLower, 1, {0x53});
  EXPECT_EQ(Plan(tunable.image()), "lower 00 01 02 10 11 04 12");
}

TEST(PagePlan, CoherentPagesHaveABankForEachMediaLane) {
  Memory memory = Cmis(0x10).Put(Page::kLower, 1, {0x53}).Put(Page::k00, 210, {0xF5});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 34.1 35.1 34.3 35.3");
  memory.Put(Page::kLower, 1, {0x52});  // the bit is reserved
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11");
}

TEST(PagePlan, PagesOfLaterRevisions) {
  Memory memory = Cmis(0x80).Put(Page::kLower, 1, {0x54});
  memory.Put(Page::k01, 145, {0x08}).Put(Page::k01, 173, {0xC0, 0xE0, 0x02});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 0c 0d 15 16 17 19 60 61 62 1c 1c.1");
  memory.Put(Page::kLower, 1, {0x53});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 15 19 1c 1c.1");
  memory.Put(Page::kLower, 1, {0x52});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 15");
  memory.Put(Page::kLower, 1, {0x4F});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11");
}

TEST(PagePlan, LaneSwitchingAndUnidirectionalDataPaths) {
  Memory memory = Cmis(0).Put(Page::kLower, 1, {0x54});
  memory.Put(Page::k01, 162, {0x40}).Put(Page::k01, 252, {0xA0});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 19 1d 6d");
  memory.Put(Page::kLower, 1, {0x53});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 19 1d");
  memory.Put(Page::kLower, 1, {0x52});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 19");
  memory.Put(Page::kLower, 1, {0x51});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11");
}

TEST(PagePlan, OnlyTheMandatoryPagesBeforeCmis40) {
  EXPECT_EQ(Plan(Cmis(0xFC, 0xFF).Put(Page::kLower, 1, {0x30}).image()), "lower 00 01 02 10 11");
}

// Every page that a line of the map decodes, of a module that advertises everything.
TEST(PagePlan, EveryDecodedPageIsRead) {
  const cable_info::module_memory::MemoryMap& map = cable_info::module_memory::CmisMap();
  std::set<Page> decoded;
  for (const auto& line : map.fields) decoded.insert(line.page);
  for (const auto& line : map.lane_fields) decoded.insert(line.page);
  for (const auto& line : map.options) decoded.insert(line.page);
  for (const auto& line : map.monitors) decoded.insert({line.page, line.threshold_page});
  std::set<Page> planned;
  for (const MemoryPart& part : PartsToRead(cmis_memory::FullModule().image())) {
    planned.insert(part.page);
  }
  for (const Page page : decoded) {
    EXPECT_EQ(planned.count(page), 1U) << cable_info::PageName(page);
  }
}

TEST(PagePlan, VersatileDiagnosticsFollowTheirGroups) {
  Memory memory = Cmis(0x40);
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 2f");
  memory.Add(PageOf(0x2F));
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 2f 20 24 28 2c");
  memory.Put(PageOf(0x2F), 128, {0x03});
  EXPECT_EQ(Plan(memory.image()), "lower 00 01 02 10 11 2f 20 21 22 23 24 25 26 27 28 29 2a 2b 2c");
}

TEST(PagePlan, EveryBankHasItsOwnGroups) {
  Memory memory = Cmis(0x41);
  memory.Add(PageOf(0x2F)).Add(PageOf(0x2F, 1)).Put(PageOf(0x2F, 1), 128, {0x01});
  EXPECT_EQ(
      Plan(memory.image()),
      "lower 00 01 02 10 10.1 11 11.1 2f 20 24 28 2c 2f.1 20.1 21.1 24.1 25.1 28.1 29.1 2c.1");
}

// Reading pages that no decoder uses would only take time on the bus.
TEST(PagePlan, UndecodedPagesAreNotRead) {
  Memory memory = Cmis(0x1C).Put(Page::kLower, 1, {0x54});  // 03h, 05h, 30h to 4Fh
  const std::string plan = Plan(memory.image());
  EXPECT_EQ(plan.find(" 03"), std::string::npos) << plan;
  EXPECT_EQ(plan.find(" 05"), std::string::npos) << plan;
  EXPECT_EQ(plan.find(" 4f"), std::string::npos) << plan;
}

TEST(PagePlan, NoModuleMakesItEndless) {
  Memory memory = Cmis(0xFF, 0xFF).Put(Page::kLower, 1, {0x54}).Put(Page::k01, 142, {0xFF});
  memory.Put(Page::k01, 174, {0xFF});  // 32 banks
  for (unsigned bank = 0; bank < 32; ++bank) {
    memory.Add(PageOf(0x2F, bank)).Put(PageOf(0x2F, bank), 128, {0x03});
  }
  const std::vector<MemoryPart> parts = PartsToRead(memory.image());
  EXPECT_EQ(parts.size(), kMaxMemoryParts);
  for (auto part = parts.begin(); part != parts.end(); ++part) {
    EXPECT_EQ(std::find(part + 1, parts.end(), *part), parts.end());
  }
}

}  // namespace
