#include "cable_info/module_memory/module_info.h"

#include <gtest/gtest.h>

namespace {

using cable_info::FamilyName;
using cable_info::Field;
using cable_info::FieldState;
using cable_info::LaneCodeName;
using cable_info::LaneField;
using cable_info::ModuleFamily;
using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::StateName;

// Pages 00h, 40h and 80h are looked up in the same place.
TEST(ModuleImage, KeepsPagesApart) {
  constexpr Page k40 = cable_info::PageOf(0x40);
  constexpr Page k80 = cable_info::PageOf(0x80);
  constexpr std::uint8_t kBytes[] = {1, 2, 3};
  ModuleImage image;
  image.Put(Page::k00, 128, &kBytes[0], 1);
  EXPECT_FALSE(image.At(k40, 128).has_value());
  image.Put(k40, 128, &kBytes[1], 1);
  EXPECT_EQ(image.At(Page::k00, 128), 1);
  EXPECT_EQ(image.At(k40, 128), 2);
  EXPECT_FALSE(image.At(k80, 128).has_value());
  image.Drop(Page::k00);
  EXPECT_FALSE(image.At(Page::k00, 128).has_value());
  EXPECT_EQ(image.At(k40, 128), 2);
  image.Put(k80, 128, &kBytes[2], 1);
  EXPECT_EQ(image.At(k80, 128), 3);
}

TEST(ModuleInfoNames, FamiliesAreNamedAfterTheirStandard) {
  EXPECT_EQ(FamilyName(ModuleFamily::kSff8636), "SFF-8636");
  EXPECT_EQ(FamilyName(ModuleFamily::kCmis), "CMIS");
  EXPECT_EQ(FamilyName(ModuleFamily::kSff8472), "SFF-8472");
  EXPECT_EQ(FamilyName(ModuleFamily::kUnknown), "");
}

TEST(ModuleInfoNames, StatesAreWords) {
  EXPECT_EQ(StateName(FieldState::kPresent), "present");
  EXPECT_EQ(StateName(FieldState::kNotImplemented), "not_implemented");
  EXPECT_EQ(StateName(FieldState::kNotRead), "not_read");
  EXPECT_EQ(StateName(FieldState::kNotReady), "not_ready");
}

TEST(ModuleInfoNames, CodesOfLanesHaveNames) {
  EXPECT_EQ(LaneCodeName(LaneField::kDataPathState, {FieldState::kPresent, 4}),
            "DataPathActivated");
  EXPECT_EQ(LaneCodeName(LaneField::kDataPathState, {FieldState::kPresent, 15}), "");
  EXPECT_EQ(LaneCodeName(LaneField::kTxInputEq, {FieldState::kPresent, 4}), "");
}

TEST(ModuleInfoNames, NumbersOfLanesHaveNoNames) {
  EXPECT_EQ(LaneCodeName(LaneField::kHostErrors, {FieldState::kPresent, 0x1p56}), "");
}

TEST(ModuleInfo, FindsFieldsByTheirKey) {
  ModuleInfo info;
  info.SetText(Field::kVendor, "Acme Optics");
  info.SetCode(Field::kConnector, 0x0C, "MPO 1x12");
  ASSERT_TRUE(info.Find("identity.vendor").has_value());
  EXPECT_EQ(info.Find("identity.vendor")->text, "Acme Optics");
  ASSERT_TRUE(info.Find("connector").has_value());
  EXPECT_EQ(info.Find("connector")->code(), 0x0CU);
  EXPECT_EQ(info.Find("connector")->text, "MPO 1x12");
}

TEST(ModuleInfo, FindsFieldsWithoutValue) {
  ASSERT_TRUE(ModuleInfo().Find("media.wavelength_nm").has_value());
  EXPECT_FALSE(ModuleInfo().Find("media.wavelength_nm")->IsPresent());
}

TEST(ModuleInfo, FindsNoUnknownKey) {
  EXPECT_FALSE(ModuleInfo().Find("identity").has_value());
  EXPECT_FALSE(ModuleInfo().Find("identity.vendor.").has_value());
  EXPECT_FALSE(ModuleInfo().Find("").has_value());
}

}  // namespace
