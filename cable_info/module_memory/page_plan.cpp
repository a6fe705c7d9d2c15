#include "cable_info/module_memory/page_plan.h"

#include <algorithm>

#include "cable_info/module_memory/cmis_lanes.h"
#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/sff8472_rules.h"

namespace cable_info {

namespace module_memory {

namespace {

enum class Banks : std::uint8_t { kOne, kAll };

// Consecutive pages that are advertised together.
struct AdvertisedPages {
  std::uint8_t first = 0;
  std::uint8_t last = 0;
  Banks banks = Banks::kOne;
  Advertisement advertised;
};

// SFF-8636 rev 2.11, table 6-1; page 03h is there unless the memory is flat.
constexpr AdvertisedPages kSff8636Pages[] = {
    {0x01, 0x01, Banks::kOne, On(Page::k00, 195, 6)},
    {0x02, 0x02, Banks::kOne, On(Page::k00, 195, 7)},
    {0x03, 0x03, Banks::kOne, kAlways},
};

Advertised HasPage19(const ModuleImage& image) {
  return Either(Ask(image, kUnidirectional), Ask(image, kApplicationBlocks));
}

// CMIS 5.4, table 8-1. Page 01h precedes the others because it advertises them.
constexpr AdvertisedPages kCmisPages[] = {
    {0x01, 0x02, Banks::kOne, kAlways},
    {0x10, 0x11, Banks::kAll, kAlways},
    {0x04, 0x04, Banks::kOne, kTunable},
    {0x0C, 0x0C, Banks::kOne, kPageMap},
    {0x0D, 0x0D, Banks::kOne, kFirmwarePage},
    {0x12, 0x12, Banks::kAll, kTunable},
    {0x13, 0x14, Banks::kAll, kDiagnostics},
    {0x15, 0x15, Banks::kAll, kTiming},
    {0x16, 0x17, Banks::kAll, kNetworkPath},
    {0x19, 0x19, Banks::kAll, By(HasPage19, "01h:162.6, or 01h:175 is not 0")},
    {0x1D, 0x1D, Banks::kAll, kHostLaneSwitching},
    {0x60, 0x60, Banks::kAll, kLaneExtensions},
    {0x61, 0x61, Banks::kAll, kAcquisitionCounters},
    {0x62, 0x62, Banks::kAll, kLaneThresholds},
    {0x6D, 0x6D, Banks::kAll, kMediaLaneSwitching},
};

constexpr std::uint8_t kHalfSize = ModuleImage::kHalf;

// ---------------------------------------------------------------------------------------------
// The parts that decoders use
// ---------------------------------------------------------------------------------------------

MemoryPart PartOf(Page page, std::size_t byte) {
  return {page, byte < kHalfSize ? std::uint8_t{0} : kHalfSize};
}

bool Uses(const MapField& line, MemoryPart part) { return PartOf(line.page, line.byte) == part; }
bool Uses(const LaneMapField& line, MemoryPart part) {
  return PartOf(line.page, line.byte) == part;
}
bool Uses(const MapMonitor& line, MemoryPart part) {
  return PartOf(line.page, line.byte) == part || PartOf(line.flags.page, line.flags.byte) == part ||
         PartOf(line.threshold_page, line.threshold_byte) == part;
}
bool Uses(const NamedBit& line, MemoryPart part) { return PartOf(line.page, line.byte) == part; }

template <typename Line>
bool AnyUses(Lines<Line> lines, MemoryPart part) {
  return std::any_of(lines.begin(), lines.end(),
                     [part](const Line& line) { return Uses(line, part); });
}

// Maps list the pages of bank 0.
bool IsDecoded(const MemoryMap& map, MemoryPart part) {
  return AnyUses(map.fields, part) || AnyUses(map.lane_fields, part) ||
         AnyUses(map.monitors, part) || AnyUses(map.compliance, part) || AnyUses(map.options, part);
}

// ---------------------------------------------------------------------------------------------
// The parts that modules have
// ---------------------------------------------------------------------------------------------

class Plan {
 public:
  explicit Plan(const ModuleImage& image) : image_(image) {}

  void Add(Page page, std::size_t first = kHalfSize) {
    if (parts_.size() < kMaxMemoryParts) parts_.push_back(PartOf(page, first));
  }

  // The parameters of SFF-8636 and their thresholds are samples, which are not in the map.
  void AddParameters() {
    if (AskBit(image_, Page::k00, 195, 0) != Advertised::kYes) return;
    Add(Page::k20);
    Add(Page::k21);
  }

  void AddPages(const MemoryMap& map, Lines<AdvertisedPages> pages, unsigned banks) {
    for (const AdvertisedPages& line : pages) {
      if (Ask(image_, line.advertised) != Advertised::kYes) continue;
      for (unsigned number = line.first; number <= line.last; ++number) {
        const auto page = static_cast<std::uint8_t>(number);
        if (!IsDecoded(map, {PageOf(page), kHalfSize})) continue;
        const unsigned count = line.banks == Banks::kAll ? banks : 1;
        for (unsigned bank = 0; bank < count; ++bank) Add(PageOf(page, bank));
      }
    }
  }

  // Page 2Fh gives the number of groups of descriptors, values and thresholds.
  void AddVdm(unsigned banks) {
    if (Ask(image_, kVdm) != Advertised::kYes) return;
    constexpr std::uint8_t kTables[] = {kVdmDescriptors, kVdmValues, kVdmThresholds};
    for (unsigned bank = 0; bank < banks; ++bank) {
      Add(InBank(kPage2F, bank));
      const std::optional<unsigned> groups = VdmGroupsOf(image_, bank);
      if (!groups) continue;
      for (const std::uint8_t table : kTables) {
        for (unsigned group = 0; group < *groups; ++group) {
          Add(PageOf(static_cast<std::uint8_t>(table + group), bank));
        }
      }
      Add(InBank(kPage2C, bank));
    }
  }

  // Page 1Ch, with more applications, has its own banks.
  void AddApplications() {
    const unsigned banks = ApplicationBanksOf(image_);
    for (unsigned bank = 0; bank < banks; ++bank) Add(InBank(kPage1C, bank));
  }

  // Each bank of the coherent pages is one media lane.
  void AddCoherent() {
    if (HasCoherentPages(image_) != Advertised::kYes) return;
    const unsigned absent = MissingMediaLanes(image_);
    for (unsigned bank = 0; bank < kLanesPerBank; ++bank) {
      if ((absent >> bank & 1U) != 0) continue;
      Add(InBank(kPage34, bank));
      Add(InBank(kPage35, bank));
    }
  }

  void AddSff8472() {
    Add(Page::kA0, 0);
    if (IsDecoded(Sff8472Map(), {Page::kA0, kHalfSize})) Add(Page::kA0);
    if (HasDiagnostics(image_) != Advertised::kYes) return;
    if (NeedsAddressChange(image_) == Advertised::kYes) return;
    Add(Page::kA2, 0);
    if (IsDecoded(Sff8472Map(), {Page::kA2, kHalfSize})) Add(Page::kA2);
  }

  std::vector<MemoryPart> Take() { return std::move(parts_); }

 private:
  const ModuleImage& image_;
  std::vector<MemoryPart> parts_;
};

}  // namespace

}  // namespace module_memory

Page FirstPageOf(std::uint8_t identifier) {
  const module_memory::ModuleIdentifier* const known = module_memory::FindIdentifier(identifier);
  return known != nullptr && known->family == ModuleFamily::kSff8472 ? Page::kA0 : Page::kLower;
}

std::vector<MemoryPart> PartsToRead(const ModuleImage& image) {
  using namespace module_memory;
  Plan plan(image);
  if (image.Has(Page::kA0)) {
    plan.AddSff8472();
    return plan.Take();
  }
  plan.Add(Page::kLower, 0);
  if (!image.Has(Page::kLower)) return plan.Take();
  plan.Add(Page::k00);
  // If byte 0 is not the identifier of a module, its copy in page 00h decides.
  const ModuleMemory memory(image);
  if (memory.family() == ModuleFamily::kSff8636 &&
      AskBit(image, Page::kLower, 2, 2) == Advertised::kNo) {
    plan.AddPages(Sff8636Map(), kSff8636Pages, 1);
    plan.AddParameters();
  } else if (memory.family() == ModuleFamily::kCmis && IsPaged(image) == Advertised::kYes) {
    // Page 01h gives the number of banks; without it, one bank is read.
    const unsigned banks = image.Has(Page::k01) ? BanksOf(image) : 1;
    plan.AddPages(CmisMap(), kCmisPages, banks);
    plan.AddVdm(banks);
    plan.AddCoherent();
    plan.AddApplications();
  }
  return plan.Take();
}

}  // namespace cable_info
