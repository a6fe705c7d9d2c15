#include "cable_info/module_memory/decode.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace cable_info {

namespace module_memory {

namespace {

constexpr std::size_t kIdentifierCopy = 128;

// clang-format off
constexpr ModuleIdentifier kModuleIdentifiers[] = {
    {0x01, ModuleFamily::kSff8472},  // GBIC
    {0x02, ModuleFamily::kSff8472},  // soldered to the board
    {0x03, ModuleFamily::kSff8472, "SFP", FormFactor::kSfp28OrSfpPlus},
    {0x0C, ModuleFamily::kSff8636, "QSFP"},  // whose own map, INF-8438, is close to SFF-8436
    {0x0D, ModuleFamily::kSff8636, "QSFP+"},
    {0x0F, ModuleFamily::kSff8636},  // shielded mini multilane HD 4X
    {0x10, ModuleFamily::kSff8636},  // shielded mini multilane HD 8X
    {0x11, ModuleFamily::kSff8636, "QSFP28"},
    {0x14, ModuleFamily::kSff8636},  // shielded mini multilane HD 4X fan-out
    {0x15, ModuleFamily::kSff8636},  // shielded mini multilane HD 8X fan-out
    {0x17, ModuleFamily::kSff8636},  // microQSFP
    {0x18, ModuleFamily::kCmis, "QSFP-DD", FormFactor::kQsfpDd},
    {0x19, ModuleFamily::kCmis, "OSFP", FormFactor::kOsfp},
    {0x1A, ModuleFamily::kCmis, "SFP-DD", FormFactor::kSfpDd},
    {0x1B, ModuleFamily::kCmis, "DSFP", FormFactor::kDsfp},
    {0x1E, ModuleFamily::kCmis, "QSFP with CMIS", FormFactor::kQsfpCmis},
    {0x1F, ModuleFamily::kCmis},     // SFP-DD with CMIS
    {0x20, ModuleFamily::kCmis},     // SFP+ with CMIS
    {0x21, ModuleFamily::kCmis},     // OSFP-XD
    {0x22, ModuleFamily::kCmis},     // ELSFP
    {0x23, ModuleFamily::kCmis},     // CDFP x4
    {0x24, ModuleFamily::kCmis},     // CDFP x8
    {0x25, ModuleFamily::kCmis},     // CDFP x16
};
// clang-format on

// "QSFP28 (0x11)".
std::string Shown(std::optional<std::uint8_t> byte) {
  if (!byte) return "missing";
  const std::string_view name = kIdentifiers.Name(*byte);
  return name.empty() ? HexText(*byte) : std::string(name) + " (" + HexText(*byte) + ')';
}

ModuleFamily FamilyOf(std::optional<std::uint8_t> identifier) {
  const ModuleIdentifier* const known = FindIdentifier(identifier);
  return known != nullptr ? known->family : ModuleFamily::kUnknown;
}

// The lower page first, then by number and bank.
void AddPages(const ModuleImage& image, std::vector<Page>& pages) {
  for (const ModuleImage::Half& half : image.halves()) {
    if (half.IsEmpty()) continue;
    if (std::find(pages.begin(), pages.end(), half.page()) == pages.end()) {
      pages.push_back(half.page());
    }
  }
  const auto order = [](Page page) {
    if (page == Page::kLower) return -1;
    return static_cast<int>(NumberOf(page)) << 8 | static_cast<int>(BankOf(page));
  };
  std::sort(pages.begin(), pages.end(), [&](Page a, Page b) { return order(a) < order(b); });
}

bool HasFlatMemory(const ModuleImage& image, ModuleFamily family) {
  const std::uint8_t status = image.At(Page::kLower, 2).value_or(0);
  if (family == ModuleFamily::kSff8636) return (status & 1U << 2U) != 0;
  return family == ModuleFamily::kCmis && (status & 1U << 7U) != 0;
}

// An address without a device reads as equal bytes, or as the other device.
bool HasDiagnosticsDevice(const ModuleImage& image) {
  constexpr std::size_t kIdentityEnd = 96;
  constexpr std::size_t kVendor = 20;
  constexpr std::size_t kVendorEnd = 36;
  const ModuleImage::Half& a0 = image.HalfOf(Page::kA0, 0);
  const ModuleImage::Half& a2 = image.HalfOf(Page::kA2, 0);
  if (a2.IsUniform(a2[0])) return false;
  const auto repeats = [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      if (!a0.Has(i) || !a2.Has(i) || a0[i] != a2[i]) return false;
    }
    return true;
  };
  if (repeats(0, kIdentityEnd)) return false;
  // A vendor name in place of thresholds identifies an abbreviated copy of A0h.
  return !(repeats(0, 1) && repeats(kVendor, kVendorEnd));
}

}  // namespace

const ModuleIdentifier* FindIdentifier(std::optional<std::uint8_t> code) {
  for (const ModuleIdentifier& known : kModuleIdentifiers) {
    if (known.code == code) return &known;
  }
  return nullptr;
}

bool IsCustomCmis(std::optional<std::uint8_t> identifier, std::optional<std::uint8_t> revision,
                  std::optional<std::uint8_t> copy) {
  constexpr std::uint8_t kFirstCustom = 0x80;
  constexpr std::uint8_t kOldestRevision = 0x30;
  constexpr std::uint8_t kNewestRevision = 0x5F;
  return identifier && *identifier >= kFirstCustom && copy == identifier && revision &&
         *revision >= kOldestRevision && *revision <= kNewestRevision;
}

std::string DecodedByByte0Text(const std::string& byte0, const std::string& copy) {
  return "byte 0 names the module " + byte0 + ", byte 128 is " + copy + "; decoded by byte 0";
}

std::string DecodedByCopyText(const std::string& byte0, const std::string& copy) {
  return "byte 0 is " + byte0 + "; decoded by byte 128, which names the module " + copy;
}

std::string UnknownIdentifierText(const std::string& byte0, const std::string& copy) {
  return "unknown module identifier: byte 0 is " + byte0 + ", byte 128 is " + copy;
}

void DecodeNominalBitrate(Decoding& to, std::optional<std::uint8_t> rate,
                          std::optional<std::uint8_t> extended) {
  constexpr unsigned kHighest = (kSeeExtendedBitrate - 1) * kBitrateUnit;
  if (!rate || (*rate == kSeeExtendedBitrate && !extended)) {
    return to.info.SetState(Field::kNominalBitrate, FieldState::kNotRead);
  }
  if (*rate == kSeeExtendedBitrate && *extended == 0) {
    return WarnMoreThan(to, Field::kNominalBitrate, kHighest);
  }
  if (*rate == 0) return;
  to.info.SetNumber(Field::kNominalBitrate, NominalBitrate(*rate, extended.value_or(0)));
}

ModuleMemory::ModuleMemory(const ModuleImage& image) : image_(&image) {
  constexpr std::uint8_t kUnanswered = 0xFF;
  Drop([](const ModuleImage::Half& half) { return half.IsUniform(kUnanswered); });
  if (image_->Has(Page::kA0) || image_->Has(Page::kA2)) {
    IdentifySfp();
  } else {
    Identify();
  }
  DropAbsent();
}

template <typename IsAbsent>
void ModuleMemory::Drop(const IsAbsent& is_absent) {
  const auto& halves = image_->halves();
  if (std::none_of(halves.begin(), halves.end(), is_absent)) return;
  ModuleImage rest;
  for (const ModuleImage::Half& half : halves) {
    if (!is_absent(half)) rest.Put(half);
  }
  rest_ = std::move(rest);
  image_ = &rest_;
}

void ModuleMemory::DropAbsent() {
  if (family_ == ModuleFamily::kSff8472) {
    if (image_->Has(Page::kA2) && !HasDiagnosticsDevice(*image_)) {
      Drop([](const ModuleImage::Half& half) { return half.page() == Page::kA2; });
    }
    return;
  }
  const ModuleImage::Half page00 = image_->HalfOf(Page::k00, ModuleImage::kHalf);
  const bool is_flat = HasFlatMemory(*image_, family_);
  Drop([&](const ModuleImage::Half& half) {
    if (!IsUpperPage(half.page()) || half.page() == Page::k00) return false;
    return is_flat || (!page00.IsEmpty() && half.Repeats(page00));
  });
}

void ModuleMemory::Choose(ModuleFamily family, std::optional<std::uint8_t> identifier) {
  family_ = family;
  identifier_ = identifier;
}

void ModuleMemory::IdentifySfp() {
  const std::optional<std::uint8_t> byte0 = image_->At(Page::kA0, 0);
  identifier_ = byte0;
  if (FamilyOf(byte0) == ModuleFamily::kSff8472) return Choose(ModuleFamily::kSff8472, byte0);
  remark_ = "unknown module identifier: byte 0 of A0h is " + Shown(byte0);
}

// By byte 0 and, if that names no module, by its copy at byte 128, which all but the SFP family
// have.
void ModuleMemory::Identify() {
  const auto is_paged = [](ModuleFamily family) {
    return family == ModuleFamily::kSff8636 || family == ModuleFamily::kCmis;
  };
  const std::optional<std::uint8_t> byte0 = image_->At(Page::kLower, 0);
  identifier_ = byte0;
  const std::optional<std::uint8_t> copy = image_->At(Page::k00, kIdentifierCopy);
  if (is_paged(FamilyOf(byte0))) {
    Choose(FamilyOf(byte0), byte0);
    if (!copy || copy == byte0) return;
    remark_ = DecodedByByte0Text(Shown(byte0), Shown(copy));
  } else if (is_paged(FamilyOf(copy))) {
    Choose(FamilyOf(copy), copy);
    remark_ = DecodedByCopyText(Shown(byte0), Shown(copy));
  } else if (IsCustomCmis(byte0, image_->At(Page::kLower, 1), copy)) {
    Choose(ModuleFamily::kCmis, byte0);
    remark_ = "byte 0 is " + Shown(byte0) + ", an identifier of the vendor's own; decoded as CMIS";
  } else {
    remark_ = UnknownIdentifierText(Shown(byte0), Shown(copy));
  }
}

}  // namespace module_memory

void Decode(const ModuleImage& image, ModuleInfo& info) {
  info.Clear();
  const module_memory::ModuleMemory memory(image);
  info.family = memory.family();
  if (!memory.remark().empty()) info.warnings.push_back(memory.remark());
  module_memory::AddPages(memory.image(), info.pages_read);
  if (memory.identifier()) {
    info.SetCode(Field::kIdentifier, *memory.identifier(), kIdentifiers.Name(*memory.identifier()));
  } else {
    info.SetState(Field::kIdentifier, FieldState::kNotRead);
  }
  module_memory::Decoding to = {memory.image(), info};
  switch (info.family) {
    case ModuleFamily::kSff8636:
      return module_memory::DecodeSff8636(to);
    case ModuleFamily::kSff8472:
      return module_memory::DecodeSff8472(to);
    case ModuleFamily::kCmis:
      return module_memory::DecodeCmis(to);
    case ModuleFamily::kUnknown:
      return;
  }
}

ModuleInfo Decode(const ModuleImage& image) {
  ModuleInfo info;
  Decode(image, info);
  return info;
}

}  // namespace cable_info
