#include "cable_info/phy_cable_record.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace cable_info::test {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using Renderer = std::string (PhyCableRecord::*)(bool) const;
using PlainRenderer = std::string (PhyCableRecord::*)() const;

constexpr const char* kNa = "\"NA\"";

// A record with a zeroed module.
struct WithModule {
  WithModule() : m(Attach(r)) {}
  static ModuleRecord& Attach(PhyCableRecord& r) {
    r.SetModule(std::make_unique<ModuleRecord>());
    return *r.module;
  }
  PhyCableRecord r;
  ModuleRecord& m;
};

template <std::size_t N>
void Fill(char (&array)[N], const std::string& text) {
  std::memset(array, 0, N);
  std::memcpy(array, text.data(), text.size() < N ? text.size() : N);
}

TEST(PhyCableRecord, StartsEmpty) {
  const PhyCableRecord r;
  EXPECT_EQ(r.source, "");
  EXPECT_EQ(r.module, nullptr);
  EXPECT_EQ(r.latched_flags, nullptr);
  EXPECT_EQ(r.prtl_length, "");
}

TEST(PhyCableRecord, OwnsTheRegistersThatItIsGiven) {
  PhyCableRecord r;
  auto module = std::make_unique<ModuleRecord>();
  const ModuleRecord* const first = module.get();
  r.SetModule(std::move(module));
  EXPECT_EQ(r.module, first);
  auto page = std::make_unique<PhyCableRecord::LatchedFlagsPage>();
  const PhyCableRecord::LatchedFlagsPage* const first_page = page.get();
  r.SetLatchedFlags(std::move(page));
  EXPECT_EQ(r.latched_flags, first_page);

  // The sanitizers report a register that is not deleted, or is deleted twice.
  module = std::make_unique<ModuleRecord>();
  module->temperature = 41 << 8;
  r.SetModule(std::move(module));
  EXPECT_EQ(r.GetTemperatureStr(), "41C");
  page = std::make_unique<PhyCableRecord::LatchedFlagsPage>();
  page->latched_temperature_flags = 3;
  r.SetLatchedFlags(std::move(page));
  EXPECT_EQ(r.GetTemperatureAlarms(), 3);

  r.SetModule(nullptr);
  EXPECT_EQ(r.module, nullptr);
  r.SetLatchedFlags(nullptr);
  EXPECT_EQ(r.latched_flags, nullptr);
}

TEST(PhyCableRecordWithoutModule, ShowsTheMissingValueOfEachField) {
  struct Missing {
    Renderer renderer;
    const char* csv;
    const char* report;
  };
  constexpr Missing kMissing[] = {
      {&PhyCableRecord::TypeToStr, kNa, "N/A"},
      {&PhyCableRecord::CableIdentifierToStr, kNa, "N/A"},
      {&PhyCableRecord::BitrateToStr, "N/A", "N/A"},
      {&PhyCableRecord::CablePowerClassToStr, kNa, "NA"},
      {&PhyCableRecord::MaxPowerToStr, kNa, "N/A"},
      {&PhyCableRecord::FWVersionToStr, kNa, "N/A"},
      {&PhyCableRecord::DateCodeToStr, kNa, "N/A"},
      {&PhyCableRecord::LotToStr, kNa, "N/A"},
      {&PhyCableRecord::ComplanceCodeToStr, kNa, "N/A"},
      {&PhyCableRecord::TechnologyToStr, kNa, "N/A"},
      {&PhyCableRecord::SupportedSpeedToStr, kNa, "N/A"},
      {&PhyCableRecord::AttenuationToStr, R"("NA","NA","NA","NA")", "N/A N/A N/A N/A"},
      {&PhyCableRecord::CableLengthToStr, "NA", "NA"},
      {&PhyCableRecord::CableLengthByRegToStr, "NA", "NA"},
      {&PhyCableRecord::CableLengthByPrtlToStr, "NA", "NA"},
      {&PhyCableRecord::InputEqToStr, kNa, "N/A"},
      {&PhyCableRecord::OutputAmpToStr, kNa, "N/A"},
      {&PhyCableRecord::OuputPreEmpToStr, kNa, "N/A"},
      {&PhyCableRecord::OuputPostEmpToStr, kNa, "N/A"},
  };
  const PhyCableRecord r;
  for (std::size_t i = 0; i < std::size(kMissing); ++i) {
    EXPECT_EQ((r.*kMissing[i].renderer)(true), kMissing[i].csv) << i;
    EXPECT_EQ((r.*kMissing[i].renderer)(false), kMissing[i].report) << i;
  }
}

TEST(PhyCableRecordWithoutModule, ShowsTheMissingValueOfPlainFields) {
  const PhyCableRecord r;
  for (const PlainRenderer renderer :
       {&PhyCableRecord::RevisionToStr, &PhyCableRecord::VendorToStr,
        &PhyCableRecord::VendorPnToStr, &PhyCableRecord::VendorSnToStr,
        &PhyCableRecord::VendorOUIToStr}) {
    EXPECT_EQ((r.*renderer)(), "NA");
  }
  EXPECT_EQ(r.LengthSMFiberToStr(), "N/A");
  EXPECT_EQ(r.LengthOmxToStr(3), "N/A");
  EXPECT_EQ(r.CDREnableTxRXToStr(), "N/A");
  EXPECT_EQ(r.RXPowerTypeToStr(), "N/A");
}

TEST(PhyCableRecordWithoutModule, IsNotIdentified) {
  const PhyCableRecord r;
  const cable_id_t id = r.GetIdObj();
  EXPECT_EQ(id.pn + id.identifier + id.vendor + id.revision, "");
  EXPECT_EQ(r.GetUniqueKey(), "");
  EXPECT_EQ(r.GetPNVendor(), "");
  const fw_version_obj_t version = r.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
  EXPECT_EQ(r.GetCDRVendor(), 0);
  EXPECT_FALSE(r.IsOpticCable());
}

TEST(PhyCableRecordType, IsQuotedAsAWhole) {
  WithModule p;
  EXPECT_EQ(p.r.TypeToStr(true), "\"850 nm VCSEL\"");
  EXPECT_EQ(p.r.TypeToStr(false), "850 nm VCSEL");
  p.m.cable_identifier = 8;
  p.m.cable_technology = 0x10;
  EXPECT_EQ(p.r.TypeToStr(true), kNa);
  EXPECT_EQ(p.r.TypeToStr(false), "N/A");
}

TEST(PhyCableRecordIdentifier, IsBareInTheTable) {
  WithModule p;
  p.m.cable_identifier = 8;
  EXPECT_EQ(p.r.CableIdentifierToStr(true), "OSFP");
  EXPECT_EQ(p.r.CableIdentifierToStr(false), "OSFP (0x08)");
  p.m.cable_identifier = 200;
  EXPECT_EQ(p.r.CableIdentifierToStr(true), "NA");
  EXPECT_EQ(p.r.CableIdentifierToStr(false), "NA (0xc8)");
}

TEST(PhyCableRecordFields, HaveAFormPerOutput) {
  WithModule p;
  p.m.nominal_bitrate = 103;
  EXPECT_EQ(p.r.BitrateToStr(true), "10000");
  EXPECT_EQ(p.r.BitrateToStr(false), "10 Gb/s");
  p.m.power_class = 65;
  EXPECT_EQ(p.r.CablePowerClassToStr(true), "65");
  EXPECT_EQ(p.r.CablePowerClassToStr(false), "65");
  p.m.max_power = 14;
  EXPECT_EQ(p.r.MaxPowerToStr(true), "3.5 W");
  EXPECT_EQ(p.r.MaxPowerToStr(false), "3.5 W");
  p.m.fw_version = 0x1A0B0123;
  EXPECT_EQ(p.r.FWVersionToStr(true), "26.11.291");
  p.m.SetDateCode("240315");
  EXPECT_EQ(p.r.DateCodeToStr(true), "24-03-15");
  p.m.lot = 0x1F;
  EXPECT_EQ(p.r.LotToStr(true), "0x001f");
  EXPECT_EQ(p.r.LotToStr(false), "0x001f");
  p.m.compliance_code = 0x1C;
  EXPECT_EQ(p.r.ComplanceCodeToStr(true), "28");
  EXPECT_EQ(p.r.ComplanceCodeToStr(false), "0x1c");
  p.m.ib_compliance_code = 0x60;
  EXPECT_EQ(p.r.SupportedSpeedToStr(true), "\"HDR/NDR\"");
  EXPECT_EQ(p.r.SupportedSpeedToStr(false), "HDR/NDR");
  p.m.smf_length = 0x0105;
  EXPECT_EQ(p.r.LengthSMFiberToStr(), "0.5 km");
  p.m.length_om4 = 50;
  EXPECT_EQ(p.r.LengthOmxToStr(4), "100 m");
  p.m.vendor_oui = 0x0005A1;
  EXPECT_EQ(p.r.VendorOUIToStr(), "0x5a1");
  p.m.rx_power_type = 255;
  EXPECT_EQ(p.r.RXPowerTypeToStr(), "Average Power");
  p.m.rx_power_type = 0;
  EXPECT_EQ(p.r.RXPowerTypeToStr(), "OMA");
}

TEST(PhyCableRecordFields, ShowUnknownValues) {
  WithModule p;
  EXPECT_EQ(p.r.MaxPowerToStr(true), kNa);
  EXPECT_EQ(p.r.MaxPowerToStr(false), "N/A");
  EXPECT_EQ(p.r.FWVersionToStr(true), kNa);
  EXPECT_EQ(p.r.FWVersionToStr(false), "N/A");
  EXPECT_EQ(p.r.DateCodeToStr(true), kNa);
  EXPECT_EQ(p.r.DateCodeToStr(false), "N/A");
  EXPECT_EQ(p.r.SupportedSpeedToStr(true), kNa);
  EXPECT_EQ(p.r.SupportedSpeedToStr(false), "N/A");
  EXPECT_EQ(p.r.CableLengthByRegToStr(true), "NA");
  EXPECT_EQ(p.r.CableLengthByRegToStr(false), "NA");
  EXPECT_EQ(p.r.AttenuationToStr(true), R"("NA","NA","NA","NA")");
  EXPECT_EQ(p.r.AttenuationToStr(false), "NA NA NA NA");
  EXPECT_EQ(p.r.VendorOUIToStr(), "0x0");
}

TEST(PhyCableRecordTechnology, IsTheCodeOrTheWholeByte) {
  WithModule p;
  p.m.cable_technology = 0xA0;
  EXPECT_EQ(p.r.TechnologyToStr(true), "0x0a");
  EXPECT_EQ(p.r.TechnologyToStr(false), "0xa0");
  p.m.cable_identifier = 6;
  EXPECT_EQ(p.r.TechnologyToStr(true), "0xa0");
}

TEST(PhyCableRecordLength, PrefersTheMeasuredOne) {
  WithModule p;
  p.m.cable_length = 3;
  EXPECT_EQ(p.r.CableLengthToStr(true), "\"3 m\"");
  EXPECT_EQ(p.r.CableLengthToStr(false), "3 m");
  EXPECT_EQ(p.r.CableLengthByPrtlToStr(true), "NA");
  p.r.prtl_length = "50 \"m\"";
  EXPECT_EQ(p.r.CableLengthToStr(true), "\"50 \"m\"\"");
  EXPECT_EQ(p.r.CableLengthToStr(false), "50 \"m\"");
  EXPECT_EQ(p.r.CableLengthByPrtlToStr(true), "\"50 \"m\"\"");
  EXPECT_EQ(p.r.CableLengthByPrtlToStr(false), "50 \"m\"");
  EXPECT_EQ(p.r.CableLengthByRegToStr(true), "\"3 m\"");
  EXPECT_EQ(p.r.CableLengthByRegToStr(false), "3 m");
}

TEST(PhyCableRecordLaneSettings, AreTakenFromTheirFields) {
  struct Setting {
    std::uint8_t ModuleRecord::*field;
    Renderer renderer;
  };
  constexpr Setting kSettings[] = {
      {&ModuleRecord::tx_input_eq, &PhyCableRecord::InputEqToStr},
      {&ModuleRecord::rx_output_amp, &PhyCableRecord::OutputAmpToStr},
      {&ModuleRecord::rx_output_pre_emp, &PhyCableRecord::OuputPreEmpToStr},
      {&ModuleRecord::rx_output_post_emp, &PhyCableRecord::OuputPostEmpToStr},
  };
  for (const auto& [field, renderer] : kSettings) {
    WithModule p;
    p.m.*field = 10;
    EXPECT_EQ((p.r.*renderer)(true), "0a0a0a0a");
    EXPECT_EQ((p.r.*renderer)(false), "10 10 10 10");
    p.m.cable_technology = 0xAF;
    EXPECT_EQ((p.r.*renderer)(true), kNa);
    EXPECT_EQ((p.r.*renderer)(false), "N/A");
  }
}

TEST(PhyCableRecordCdrEnable, ShowsTransmitFirst) {
  WithModule p;
  p.m.tx_cdr_state = 0x0F;
  p.m.rx_cdr_state = 0xF0;
  EXPECT_EQ(p.r.CDREnableTxRXToStr(), "N/A N/A");
  p.m.tx_cdr_cap = 1;
  EXPECT_EQ(p.r.CDREnableTxRXToStr(), "0x0f N/A");
  p.m.rx_cdr_cap = 1;
  EXPECT_EQ(p.r.CDREnableTxRXToStr(), "0x0f 0xf0");
  p.m.cable_technology = 0xA0;
  EXPECT_EQ(p.r.CDREnableTxRXToStr(), "N/A N/A");
}

TEST(PhyCableRecordTexts, AreTrimmed) {
  WithModule p;
  EXPECT_EQ(p.r.VendorToStr(), "");
  EXPECT_EQ(p.r.VendorPnToStr(), "NA");
  EXPECT_EQ(p.r.VendorSnToStr(), "NA");
  EXPECT_EQ(p.r.RevisionToStr(), "NA");
  Fill(p.m.vendor_name, " \tA,B C\r\n ");
  Fill(p.m.vendor_pn, "  A,B,  ");
  Fill(p.m.vendor_sn, "\v\fS,N");
  Fill(p.m.vendor_rev, " A,1 ");
  EXPECT_EQ(p.r.VendorToStr(), "A,B C");
  EXPECT_EQ(p.r.VendorPnToStr(), "A-B-");
  EXPECT_EQ(p.r.VendorSnToStr(), "S-N");
  EXPECT_EQ(p.r.RevisionToStr(), "A-1");
}

TEST(PhyCableRecordTexts, MayFillTheirArrays) {
  WithModule p;
  const std::string full = "0123456789ABCDEFG";
  std::memcpy(p.m.vendor_name, full.data(), 17);
  std::memcpy(p.m.vendor_pn, full.data(), 17);
  std::memcpy(p.m.vendor_sn, full.data(), 17);
  std::memcpy(p.m.vendor_rev, full.data(), 5);
  EXPECT_EQ(p.r.VendorToStr(), full);
  EXPECT_EQ(p.r.VendorPnToStr(), full);
  EXPECT_EQ(p.r.VendorSnToStr(), full);
  EXPECT_EQ(p.r.RevisionToStr(), "01234");
  EXPECT_EQ(p.r.GetPNVendor(), full);
}

TEST(PhyCableRecordDescription, IsTrimmedAndHasDashesForCommas) {
  const PhyCableRecord r;
  EXPECT_EQ(r.DescToCsvDesc("  A,B  ", false), "A-B");
  EXPECT_EQ(r.DescToCsvDesc("\t\n\v\f\r ", false), "NA");
  EXPECT_EQ(r.DescToCsvDesc("\t\n\v\f\r ", true), "");
  EXPECT_EQ(r.DescToCsvDesc("", true), "");
  EXPECT_EQ(r.DescToCsvDesc("a \"b\"\n;c", true), "a \"b\"\n;c");
}

TEST(PhyCableRecordIdentification, HasTheKnownParts) {
  WithModule p;
  Fill(p.m.vendor_pn, " AO,800 ");
  Fill(p.m.vendor_sn, " KS1234AB5678 ");
  Fill(p.m.vendor_rev, "A2");
  p.m.cable_identifier = 8;
  const cable_id_t id = p.r.GetIdObj();
  EXPECT_EQ(id.pn, "AO-800");
  EXPECT_EQ(id.identifier, "OSFP");
  EXPECT_EQ(id.vendor, "AB");
  EXPECT_EQ(id.revision, "A2");
}

TEST(PhyCableRecordIdentification, IsEmptyWhereUnknown) {
  WithModule p;
  p.m.cable_identifier = 12;
  const cable_id_t id = p.r.GetIdObj();
  EXPECT_EQ(id.pn, "");
  EXPECT_EQ(id.identifier, "");
  EXPECT_EQ(id.vendor, "");
  EXPECT_EQ(id.revision, "");
}

TEST(PhyCableRecordUniqueKey, NeedsPartNumberAndRevision) {
  WithModule p;
  Fill(p.m.vendor_pn, "PN-100");
  p.m.cable_identifier = 8;
  EXPECT_EQ(p.r.GetUniqueKey(), "");
  Fill(p.m.vendor_rev, "A2");
  EXPECT_EQ(p.r.GetUniqueKey(), "PN-100_0x08_A2");
  Fill(p.m.vendor_rev, "NA");
  EXPECT_EQ(p.r.GetUniqueKey(), "");
  Fill(p.m.vendor_rev, "A2");
  Fill(p.m.vendor_pn, "  ");
  EXPECT_EQ(p.r.GetUniqueKey(), "");
  Fill(p.m.vendor_pn, " NA");
  EXPECT_EQ(p.r.GetUniqueKey(), "");
}

TEST(PhyCableRecordIdentification, LeavesThePartNumberUntrimmed) {
  WithModule p;
  Fill(p.m.vendor_pn, " A,B ");
  EXPECT_EQ(p.r.GetPNVendor(), " A,B ");
  Fill(p.m.vendor_pn, "NA");
  EXPECT_EQ(p.r.GetPNVendor(), "NA");
}

TEST(PhyCableRecordFirmware, IsUnknownForPassiveCables) {
  WithModule p;
  p.m.fw_version = 0x1A0B0123;
  fw_version_obj_t version = p.r.GetFWObj();
  EXPECT_EQ(version.major, 0x1A);
  EXPECT_EQ(version.minor, 0x0B);
  EXPECT_EQ(version.sub_minor, 0x0123);
  std::uint32_t word = 0;
  static_assert(sizeof(version) == sizeof(word));
  std::memcpy(&word, &version, sizeof(word));
  EXPECT_EQ(word, 0x01230B1AU);
  p.m.cable_identifier = 8;
  p.m.cable_technology = 0xA3;
  version = p.r.GetFWObj();
  EXPECT_EQ(version.major + version.minor + version.sub_minor, 0);
}

TEST(PhyCableRecordIdentification, ReturnsTheCdrVendorUnchanged) {
  WithModule p;
  p.m.cdr_vendor = 255;
  EXPECT_EQ(p.r.GetCDRVendor(), 255);
}

TEST(PhyCableRecordKind, IsOpticBelowTen) {
  WithModule p;
  for (unsigned technology = 0; technology < 256; ++technology) {
    p.m.cable_technology = static_cast<std::uint8_t>(technology);
    p.m.cable_identifier = 0;
    EXPECT_EQ(p.r.IsOpticCable(), technology >> 4 < 10);
    p.m.cable_identifier = 8;
    EXPECT_EQ(p.r.IsOpticCable(), technology < 10);
  }
}

}  // namespace
}  // namespace cable_info::test
