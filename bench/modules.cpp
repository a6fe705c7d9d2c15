// The time that a module's memory takes, step by step, compared with parsing its hexadecimal digits
// and with copying its JSON; and the time of whole port records with such a memory, compared with
// parsing them and with copying the finished text. Ratios are taken within one run, so they are
// comparable between machines.

#include <simdjson.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cable_info/module_memory/module_output.h"
#include "cli/input/line_reader.h"
#include "cli/input/port_reader.h"
#include "cli/output/module_writer.h"
#include "cli/output/report_writer.h"
#include "cli/output/table_writer.h"
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
  std::string record;  // of a port with the memory, and the padding that readers need after it
  std::size_t record_size = 0;
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
    module.record =
        R"({"port_num":1,"label":"module","module_memory":{"hex":")" + module.hex + "\"}}";
    module.record_size = module.record.size();
    module.record.append(cli::LineReader::kPadding, ' ');
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

// The lower bounds: nanoseconds for parsing the hexadecimal digits of a module, or its port record
// with them, and for copying the finished text.
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

// Where finished texts go.
class Target : public std::streambuf {
 public:
  Target() : text_(1U << 17U, '\0') { Clear(); }
  void Clear() { setp(text_.data(), text_.data() + text_.size()); }
  std::string_view view() const { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }

 private:
  std::string text_;
};

// Whole port records, from the line to the finished text.
class Records {
 public:
  explicit Records(const std::vector<Module>& modules) : modules_(modules) {
    parsing_ = TimeOfEach(modules_, [this](const Module& module) {
      simdjson::dom::element record;
      constexpr bool kCopies = false;  // the line is padded already
      if (parser_.parse(module.record.data(), module.record_size, kCopies).get(record))
        return std::size_t{0};
      return Parse(module, bytes_);
    });
    Print("parsing of records", parsing_, {parsing_, parsing_});
  }

  void Measure(std::string_view step, const cli::PortWriter& writer) {
    cli::PortReaderOptions options;
    options.modules = writer.module_use();
    cli::PortReader reader(options);
    Target target;
    std::ostream os(&target);
    const auto write = [&](const Module& module) {
      target.Clear();
      cli::Port port;
      const std::string_view line = std::string_view(module.record).substr(0, module.record_size);
      if (reader.Read(line, port, messages_)) writer.Write(os, port);
      return target.view().size();
    };
    std::string copy(1U << 17U, '\0');
    double copying = 0;
    for (const Module& module : modules_) {
      write(module);
      copying += TimeOf(modules_.size(),
                        [&] { sink = sink + target.view().copy(copy.data(), copy.size()); });
    }
    Print(step, TimeOfEach(modules_, write), {parsing_, copying});
  }

 private:
  const std::vector<Module>& modules_;
  simdjson::dom::parser parser_;
  std::vector<std::uint8_t> bytes_;
  std::vector<cli::Message> messages_;
  double parsing_ = 0;
};

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
  std::printf("\n| a port record      | ns       | to parsing | to copying |\n|---|---|---|---|\n");
  Records records(modules);
  records.Measure("table", cli::TableWriter(cli::TableHeader::kOmitted));
  records.Measure("report", cli::ReportWriter());
  records.Measure("module", cli::ModuleWriter(cli::ModuleForm::kText));
  records.Measure("module --json", cli::ModuleWriter(cli::ModuleForm::kJson));
  return 0;
}
