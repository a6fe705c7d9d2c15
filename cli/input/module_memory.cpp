#include "cli/input/module_memory.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace cli {

namespace {

using cable_info::ModuleFamily;
using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::PageChecksum;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::SplitImage;

// The remarks of a module that is decoded without a record.
ModuleReading RemarksOf(const ModuleInfo& info) {
  ModuleReading reading;
  for (const PageChecksum& sum : info.checksums) {
    if (sum.stored != sum.computed) {
      reading.mismatches.push_back(cable_info::module_memory::MismatchText(sum));
    }
  }
  return reading;
}

ModuleReading Decode(const ModuleImage& image, ModuleUse use, ModuleInfo& info, Port& port) {
  if (use == ModuleUse::kRecords) return cable_info::module_memory::ReadModule(image);
  cable_info::Decode(image, info);
  port.module = &info;
  if (info.family == ModuleFamily::kUnknown) throw BadModule(info.warnings.front());
  return use == ModuleUse::kInfo ? RemarksOf(info) : cable_info::module_memory::ReadModule(image);
}

}  // namespace

ModuleReading DecodeModule(const ModuleImage& image, ModuleUse use, ModuleInfo& info, Port& port) {
  ModuleReading reading = Decode(image, use, info, port);
  port.checksum_mismatches = static_cast<int>(reading.mismatches.size());
  return reading;
}

namespace {

template <typename Bytes>
ModuleReading DecodeBytes(const Bytes& dump, ModuleUse use, ModuleInfo& info, Port& port) {
  std::vector<std::string> remarks;
  ModuleReading reading = DecodeModule(SplitImage(dump, remarks), use, info, port);
  // Decoding repeats the remark on the identifier.
  std::erase_if(remarks, [&reading](const std::string& remark) {
    return std::ranges::find(reading.remarks, remark) != reading.remarks.end();
  });
  reading.remarks.insert(reading.remarks.begin(), remarks.begin(), remarks.end());
  return reading;
}

}  // namespace

ModuleReading DecodeModule(const DumpBytes& dump, ModuleUse use, ModuleInfo& info, Port& port) {
  return DecodeBytes(dump, use, info, port);
}

ModuleReading DecodeModule(const std::vector<std::uint8_t>& dump, ModuleUse use, ModuleInfo& info,
                           Port& port) {
  return DecodeBytes(dump, use, info, port);
}

}  // namespace cli
