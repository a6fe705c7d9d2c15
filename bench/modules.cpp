// The time that a module's memory takes, step by step, compared with copying its JSON. Ratios are
// taken within one run, so they are comparable between machines.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cable_info/module_memory/module_output.h"
#include "tests/module_memory/module_images.h"

namespace {

using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::SplitImage;

// The result of every step ends here, so that none is optimized away.
volatile std::size_t sink = 0;

// Nanoseconds per module, the least of several repetitions.
template <typename Step>
double TimeOf(std::size_t modules, const Step& step) {
  constexpr int kRepetitions = 21;
  constexpr int kRounds = 200;
  double least = std::numeric_limits<double>::max();
  for (int repetition = 0; repetition < kRepetitions; ++repetition) {
    const auto begin = std::chrono::steady_clock::now();
    for (int round = 0; round < kRounds; ++round) step();
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
    least = std::min(least, time.count() / kRounds / static_cast<double>(modules));
  }
  return least;
}

std::string Hex(const DumpBytes& dump) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const auto& byte : dump) {
    text += kDigits[*byte >> 4U];
    text += kDigits[*byte & 0xFU];
  }
  return text;
}

struct Module {
  std::string hex;
  DumpBytes dump;
  ModuleImage image;
  ModuleInfo info;
  std::string json;
};

std::vector<Module> Modules() {
  std::vector<Module> modules;
  for (const auto& memory : {module_images::qsfp::Optic(), module_images::qsfp::Copper(),
                             module_images::cmis::Optic(), module_images::sfp::Optic()}) {
    Module module;
    module.dump = memory.Image();
    module.hex = Hex(module.dump);
    std::vector<std::string> remarks;
    module.image = SplitImage(module.dump, remarks);
    module.info = cable_info::Decode(module.image);
    module.json = cable_info::ModuleToJson(module.info, "module");
    modules.push_back(std::move(module));
  }
  return modules;
}

template <typename Use>
double TimeOfEach(const std::vector<Module>& modules, const Use& use) {
  return TimeOf(modules.size(), [&] {
    for (const Module& module : modules) sink = sink + use(module);
  });
}

void Print(std::string_view step, double nanoseconds, double copy) {
  std::printf("| %-24.*s | %8.0f | %6.1f |\n", static_cast<int>(step.size()), step.data(),
              nanoseconds, nanoseconds / copy);
}

}  // namespace

int main() {
  const std::vector<Module> modules = Modules();
  std::string target(1U << 17U, '\0');
  const double copy = TimeOfEach(modules, [&target](const Module& module) {
    return module.json.copy(target.data(), target.size());
  });
  std::printf("| step                     | ns       | ratio  |\n|---|---|---|\n");
  Print("copy of the JSON", copy, copy);
  Print("hex listing",
        TimeOfEach(modules,
                   [](const Module& module) {
                     return cable_info::module_memory::ParseListing(module.hex).size();
                   }),
        copy);
  Print("pages of the image",
        TimeOfEach(modules,
                   [](const Module& module) {
                     std::vector<std::string> remarks;
                     return SplitImage(module.dump, remarks).halves().size();
                   }),
        copy);
  Print("record",
        TimeOfEach(modules,
                   [](const Module& module) {
                     return cable_info::module_memory::ReadModule(module.image).remarks.size();
                   }),
        copy);
  ModuleInfo info;
  Print("named values",
        TimeOfEach(modules,
                   [&info](const Module& module) {
                     Decode(module.image, info);
                     return info.lanes.size();
                   }),
        copy);
  Print("JSON",
        TimeOfEach(modules,
                   [](const Module& module) {
                     return cable_info::ModuleToJson(module.info, "module").size();
                   }),
        copy);
  Print("text",
        TimeOfEach(modules,
                   [](const Module& module) {
                     return cable_info::ModuleToText(module.info, "module").size();
                   }),
        copy);
  return 0;
}
