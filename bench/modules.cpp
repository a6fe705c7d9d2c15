// The time that a module's memory takes, step by step, compared with parsing its hexadecimal digits
// and with copying its JSON. Ratios are taken within one run, so they are comparable between
// machines.

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

std::string Hex(const std::vector<std::uint8_t>& dump) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : dump) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

struct Module {
  std::string hex;
  std::vector<std::uint8_t> bytes;
  ModuleImage image;
  ModuleInfo info;
  std::string json;
};

std::vector<Module> Modules() {
  std::vector<Module> modules;
  for (const auto& memory : {module_images::qsfp::Optic(), module_images::qsfp::Copper(),
                             module_images::cmis::Optic(), module_images::sfp::Optic()}) {
    Module module;
    for (const auto& byte : memory.Image()) module.bytes.push_back(*byte);
    module.hex = Hex(module.bytes);
    std::vector<std::string> remarks;
    module.image = SplitImage(module.bytes, remarks);
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

// The lower bounds: nanoseconds for parsing the hexadecimal digits of a module, and for copying its
// finished JSON.
struct Floor {
  double parsing;
  double copying;
};

void Print(std::string_view step, double nanoseconds, const Floor& floor) {
  std::printf("| %-18.*s | %8.0f | %10.1f | %10.1f |\n", static_cast<int>(step.size()), step.data(),
              nanoseconds, nanoseconds / floor.parsing, nanoseconds / floor.copying);
}

std::size_t Parse(const Module& module, std::vector<std::uint8_t>& bytes) {
  cable_info::module_memory::ParsePlainHex(module.hex, bytes);
  return bytes.size();
}

ModuleImage ImageOf(const std::vector<std::uint8_t>& bytes) {
  std::vector<std::string> remarks;
  return SplitImage(bytes, remarks);
}

}  // namespace

int main() {
  const std::vector<Module> modules = Modules();
  std::string target(1U << 17U, '\0');
  std::vector<std::uint8_t> bytes;
  ModuleInfo info;
  const auto time = [&modules](const auto& use) { return TimeOfEach(modules, use); };
  const auto decode = [&bytes, &info](const Module& module) {
    Parse(module, bytes);
    Decode(ImageOf(bytes), info);
  };
  const Floor floor = {time([&bytes](const Module& module) { return Parse(module, bytes); }),
                       time([&target](const Module& module) {
                         return module.json.copy(target.data(), target.size());
                       })};
  std::printf("| step               | ns       | to parsing | to copying |\n|---|---|---|---|\n");
  Print("parsing of the hex", floor.parsing, floor);
  Print("copy of the JSON", floor.copying, floor);
  Print("pages of the image",
        time([](const Module& module) { return ImageOf(module.bytes).halves().size(); }), floor);
  Print("record", time([](const Module& module) {
          return cable_info::module_memory::ReadModule(module.image).remarks.size();
        }),
        floor);
  Print("named values", time([&info](const Module& module) {
          Decode(module.image, info);
          return info.lanes.size();
        }),
        floor);
  Print("JSON", time([](const Module& module) {
          return cable_info::ModuleToJson(module.info, "module").size();
        }),
        floor);
  Print("text", time([](const Module& module) {
          return cable_info::ModuleToText(module.info, "module").size();
        }),
        floor);
  Print("hex to JSON", time([&](const Module& module) {
          decode(module);
          return cable_info::ModuleToJson(info, "module").size();
        }),
        floor);
  Print("hex to text", time([&](const Module& module) {
          decode(module);
          return cable_info::ModuleToText(info, "module").size();
        }),
        floor);
  return 0;
}
