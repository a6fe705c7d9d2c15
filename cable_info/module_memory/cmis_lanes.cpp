#include "cable_info/module_memory/cmis_lanes.h"

#include <algorithm>
#include <optional>

#include "cable_info/module_memory/cmis_rules.h"

namespace cable_info::module_memory {

namespace {

// SFF-8024 Table 4-1: the lanes of the form factors that have other than eight.
unsigned LanesOfFormFactor(unsigned identifier) {
  switch (identifier) {
    case 0x20:  // SFP+
      return 1;
    case 0x1A:  // SFP-DD
    case 0x1B:  // DSFP
    case 0x1F:  // SFP-DD with CMIS
      return 2;
    case 0x1E:  // QSFP
    case 0x23:  // CDFP x4
      return 4;
    case 0x21:  // OSFP-XD
    case 0x25:  // CDFP x16
      return 16;
    default:
      return kLanesPerBank;
  }
}

constexpr unsigned LowestLanes(unsigned count) {
  return (1U << std::min(count, kLanesPerBank)) - 1U;
}

// The lanes used by applications of `count` lanes that may start at the bits of `starts`.
unsigned LanesFrom(unsigned starts, unsigned count) {
  unsigned lanes = 0;
  for (unsigned n = 0; n < kLanesPerBank; ++n) {
    if ((starts >> n & 1U) != 0) lanes |= LowestLanes(count) << n;
  }
  return lanes & LowestLanes(kLanesPerBank);
}

unsigned CountOf(unsigned bits) {
  unsigned count = 0;
  for (; bits != 0; bits &= bits - 1) ++count;
  return count;
}

// A descriptor without lane counts leaves them to its interfaces: assume all host lanes, and as
// many media lanes.
unsigned HostLaneCount(const Application& application) {
  return application.host_lanes != 0 ? application.host_lanes : kLanesPerBank;
}
unsigned MediaLaneCount(const Application& application) {
  return application.media_lanes != 0 ? application.media_lanes : HostLaneCount(application);
}

unsigned HostLanes(const Application& application) {
  return LanesFrom(std::max(application.host_assignment.value_or(0), 1U),
                   HostLaneCount(application));
}

// Without a media lane assignment, an application runs once for each host lane on which it may
// start.
unsigned MediaLanes(const Application& application) {
  const unsigned starts = application.media_assignment.value_or(0);
  if (starts != 0) return LanesFrom(starts, MediaLaneCount(application));
  const unsigned times = std::max(CountOf(application.host_assignment.value_or(0)), 1U);
  return LowestLanes(MediaLaneCount(application) * times);
}

// The highest bank of which any page was read.
unsigned HighestBankRead(const ModuleImage& image) {
  unsigned highest = 0;
  for (const ModuleImage::Half& half : image.halves()) {
    if (!half.IsEmpty() && IsUpperPage(half.page())) {
      highest = std::max(highest, BankOf(half.page()));
    }
  }
  return highest;
}

}  // namespace

unsigned BanksOf(const ModuleImage& image) {
  constexpr unsigned kMaxBanks = 32;
  constexpr unsigned kBanksByCode[] = {1, 2, 4};
  constexpr unsigned kExtended = 3;
  const std::optional<unsigned> code = BitsOf(image, Page::k01, 142, 1, 0);
  if (!code) return std::min(HighestBankRead(image) + 1U, kMaxBanks);
  if (*code < kExtended) return kBanksByCode[*code];
  if (IsSince(image, 0x54) != Advertised::kYes) return 1;
  return BitsOf(image, Page::k01, 174, 4, 0).value_or(0) + 1U;
}

LaneLayout LanesOf(const ModuleImage& image, unsigned identifier,
                   const std::vector<Application>& applications) {
  LaneLayout layout;
  layout.banks = BanksOf(image);
  for (const Application& application : applications) {
    layout.host |= HostLanes(application);
    layout.media |= MediaLanes(application);
  }
  const unsigned form_factor_lanes = LanesOfFormFactor(identifier);
  const unsigned all = LowestLanes(form_factor_lanes);
  layout.host &= all;
  layout.media &= all;
  if (layout.host == 0) layout.host = all;
  if (layout.media == 0) layout.media = layout.host;
  if (form_factor_lanes <= kLanesPerBank && layout.banks == 1) {
    layout.media &= ~MissingMediaLanes(image);
  }
  return layout;
}

}  // namespace cable_info::module_memory
