// The applications of a CMIS module, and the InfiniBand speeds of their host interfaces.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/cmis_decode.h"
#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/sff8024.h"

namespace cable_info::module_memory {

namespace {

NamedCode Named(unsigned code, const CodeTable* names) {
  return {code, names != nullptr ? names->Name(code) : std::string_view()};
}

// What the descriptors of both kinds have: interfaces, and lanes of each side.
Application DescribedBy(const std::uint8_t* descriptor, unsigned number,
                        const CodeTable* media_interfaces) {
  Application application;
  application.number = number;
  application.host_interface = Named(descriptor[0], &kHostInterfaces);
  application.media_interface = Named(descriptor[1], media_interfaces);
  application.host_lanes = descriptor[2] >> 4U;
  application.media_lanes = descriptor[2] & 0xFU;
  return application;
}

// Byte 3 of flat modules is something else from CMIS 5.4 on.
std::optional<unsigned> HostAssignment(const ModuleImage& image, unsigned options) {
  const bool is_other =
      IsPaged(image) == Advertised::kNo && IsSince(image, 0x54) == Advertised::kYes;
  return is_other ? std::nullopt : std::optional<unsigned>(options);
}

void DecodeBasicApplications(Decoding& to, const CodeTable* media_interfaces) {
  constexpr std::size_t kFirstMediaAssignment = 175;  // of application 0, which does not exist
  for (unsigned number = 1; number <= kApplications; ++number) {
    const std::uint8_t* const descriptor = DescriptorOf(to.image, number);
    if (descriptor == nullptr) return;
    const bool is_unused = std::all_of(descriptor, descriptor + kDescriptorSize,
                                       [](std::uint8_t byte) { return byte == 0; });
    if (is_unused) continue;  // the list should have ended with FFh
    Application application = DescribedBy(descriptor, number, media_interfaces);
    application.host_assignment = HostAssignment(to.image, descriptor[3]);
    application.media_assignment = BitsOf(to.image, Page::k01, kFirstMediaAssignment + number);
    to.info.applications.push_back(application);
  }
}

// Page 1Ch: 15 descriptors per bank. Bank 0 repeats the basic ones; it counts where those have a
// code that refers to it.
void DecodeNormalizedApplications(Decoding& to, const CodeTable* media_interfaces) {
  constexpr unsigned kSeePage1C = 0xBE;
  constexpr std::size_t kSize = 8;
  const unsigned banks = ApplicationBanksOf(to.image);
  for (unsigned bank = 0; bank < banks; ++bank) {
    const ModuleImage::Half& half = to.image.HalfOf(InBank(kPage1C, bank), 128);
    for (unsigned n = 1; n <= kApplications; ++n) {
      const std::size_t byte = 128 + kSize * (n - 1);
      if (!half.Has(byte, kSize) || half[byte] == kEndOfList) break;
      if (RawNumber(half, byte, Bytes(4)) == 0) continue;
      Application application =
          DescribedBy(half.From(byte), kApplications * bank + n, media_interfaces);
      application.host_assignment = half[byte + 3];
      application.media_assignment = half[byte + 4];
      if (bank != 0) {
        to.info.applications.push_back(application);
        continue;
      }
      for (Application& basic : to.info.applications) {
        const bool refers =
            basic.host_interface.code == kSeePage1C || basic.media_interface.code == kSeePage1C;
        if (refers && basic.number == n) basic = application;
      }
    }
  }
}

}  // namespace

void DecodeApplications(Decoding& to, MemoryModel memory) {
  const CodeTable* media_interfaces =
      MediaInterfacesOf(BitsOf(to.image, Page::kLower, 85).value_or(0));
  DecodeBasicApplications(to, media_interfaces);
  if (memory == MemoryModel::kPaged) DecodeNormalizedApplications(to, media_interfaces);
}

void AddSpeeds(ModuleInfo& info) {
  // The codes ascend with the speeds.
  std::vector<unsigned> codes;
  for (const Application& application : info.applications) {
    codes.push_back(application.host_interface.code);
  }
  std::sort(codes.begin(), codes.end());
  for (const unsigned code : codes) {
    const std::string_view speed = InfiniBandSpeedOf(code);
    const bool is_new = info.supported_speeds.empty() || info.supported_speeds.back() != speed;
    if (!speed.empty() && is_new) info.supported_speeds.push_back(speed);
  }
}

}  // namespace cable_info::module_memory
