// cableinfo page

#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/output/page_data.h"
#include "cli/store/times.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo page fabric.jsonl -o fabric.html    open fabric.html in a browser\n"
    "  cableinfo page --label 'leaf-*' --set lane-imbalance=2.5 fabric.jsonl -o leaves.html\n"
    "  cableinfo page --module eeprom.bin -o module.html";

struct Options {
  PortOptions ports;
  RuleOptions rules;
};

// Writes the data of the ports one by one.
class PagePortWriter : public PortWriter {
 public:
  explicit PagePortWriter(const cable_info::RuleSettings& settings) : settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  void Write(std::ostream& os, Port& port) const override { WritePagePort(os, port, settings_); }

 private:
  const cable_info::RuleSettings& settings_;
};

class PageCollector : public PortCollector {
 public:
  PageCollector(const cable_info::RuleSettings& settings, Page::About about)
      : page_(settings), about_(std::move(about)) {}

  void Take(std::string_view ports) override { page_.Add(ports); }
  void End(std::ostream& os) override { page_.WriteTo(os, about_); }

 private:
  Page page_;
  Page::About about_;
};

ExitStatus WritePage(const Options& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  PageCollector collector(settings, {InputNames(options.ports), TimeNow()});
  return WritePorts(options.ports, PagePortWriter(settings), &collector);
}

}  // namespace

void AddPageCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(app, "page", "Write one HTML page to look at the ports",
                                           kExamples, options->ports);
  AddRuleOptions(*command, options->rules);
  command->callback([options, &action] { action = [options] { return WritePage(*options); }; });
}

}  // namespace cli
