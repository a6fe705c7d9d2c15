// Decodes the memory of a module and judges it.
// Returns 1 if a result is not the expected one.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_image.h"
#include "cable_info/module_memory/module_info.h"
#include "cable_info/module_memory/page_plan.h"
#include "cable_info/readings/module_readings.h"
#include "cable_info/readings/rules.h"

namespace {

using cable_info::MemoryPart;
using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::Page;

// A QSFP28 module at 80 C, whose page 03h limits its temperature to 75 C.
using Half = std::array<std::uint8_t, ModuleImage::kHalf>;

Half ReadFromDevice(const MemoryPart& part) {
  Half bytes = {};
  if (part.page == Page::kLower) {
    bytes[0] = 0x11;
    bytes[22] = 80;
    bytes[26] = 0x80;  // 3.3 V
    bytes[27] = 0xE8;
  } else if (part.page == Page::k00) {
    constexpr std::string_view kVendor = "Acme Optics     ";
    bytes[0] = 0x11;
    std::copy(kVendor.begin(), kVendor.end(), bytes.begin() + (148 - ModuleImage::kHalf));
  } else if (part.page == Page::k03) {
    bytes[0] = 75;
  }
  return bytes;
}

ModuleImage ReadModule() {
  ModuleImage image;
  std::size_t tried = 0;
  std::vector<MemoryPart> parts = cable_info::PartsToRead(image);
  while (tried < parts.size()) {
    const MemoryPart part = parts[tried++];
    const Half bytes = ReadFromDevice(part);  // on failure, store nothing
    image.Put(part.page, part.first, bytes.data(), bytes.size());
    parts = cable_info::PartsToRead(image);  // those that it advertises follow
  }
  return image;
}

bool IsJudged(const ModuleInfo& module) {
  const cable_info::RuleSettings settings;
  std::vector<cable_info::Finding> findings;
  Judge(ReadingsOf(module), settings, findings);
  SortWorstFirst(findings);
  if (findings.empty()) return false;
  return Sentence(findings.front()) ==
         "The temperature is 80 C, above the high alarm limit of 75 C.";
}

}  // namespace

int main() {
  const ModuleInfo module = Decode(ReadModule());
  if (module[cable_info::Field::kVendor].text != "Acme Optics") return 1;
  if (module.Find("identity.vendor")->text != "Acme Optics") return 1;  // its key in JSON
  if (module.temperature.value != 80) return 1;
  return IsJudged(module) ? 0 : 1;
}
