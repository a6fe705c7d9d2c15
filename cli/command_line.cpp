// The command line of cableinfo: the options of each subcommand with their help, as data for its
// parser, and the answers to command lines that run no subcommand.

#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "cable_info/version.h"
#include "cli/commands/commands.h"
#include "cli/commands/message_log.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"
#include "cli/spelling.h"
#include "cli/store/times.h"

namespace cli {

namespace {

// The work of the program, after the command line was parsed.
using Action = std::function<ExitStatus()>;

// Lets parsing the subcommand set `action`, which passes the options on to `run`.
template <typename Options, typename Run>
void SetAction(CLI::App& command, const std::shared_ptr<Options>& options, Run run,
               Action& action) {
  command.callback([=, &action] { action = [=] { return run(*options); }; });
}

// ---------------------------------------------------------------------------------------------
// Shared by several subcommands
// ---------------------------------------------------------------------------------------------

constexpr int kHexadecimal = 16;

// The number as decimal digits, without an exponent.
std::string Digits(double number) {
  constexpr std::size_t kCapacity = 32;  // limits of options are short
  char text[kCapacity];
  return {text, std::to_chars(text, text + kCapacity, number, std::chars_format::fixed).ptr};
}

// The end of the description of an option.
std::string Default(double number) { return "(default: " + Digits(number) + ')'; }

std::optional<double> ParseNumber(const std::string& text) {
  double number = 0.0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

// Checks for a number from `lowest` to `highest`. `CLI::Range` would accept NaN.
CLI::Validator NumberFrom(double lowest, double highest) {
  const std::string range = Digits(lowest) + " to " + Digits(highest);
  return {[=](const std::string& text) {
            const std::optional<double> number = ParseNumber(text);
            return number && *number >= lowest && *number <= highest
                       ? std::string()
                       : "expected a number from " + range + ", found \"" + text + '"';
          },
          "FLOAT in [" + Digits(lowest) + " - " + Digits(highest) + ']', "NUMBER"};
}

// The problem with a tolerance; empty when it is a finite number of at least 0.
std::string ToleranceProblem(const std::string& text) {
  const std::optional<double> number = ParseNumber(text);
  return number && *number >= 0.0 && *number <= std::numeric_limits<double>::max()
             ? std::string()
             : "expected a number of at least 0, found \"" + text + '"';
}

// The problem with a GUID; empty when it is one, such as 0xa0b1c20000d4e500.
std::string GuidProblem(const std::string& text) {
  std::string_view digits = text;
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  constexpr std::size_t kMaxDigits = 16;
  const bool is_guid = !digits.empty() && digits.size() <= kMaxDigits &&
                       digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
  return is_guid ? "" : "expected a GUID of up to 16 hexadecimal digits, found \"" + text + '"';
}

CLI::App& AddCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& examples) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->footer(examples);
  return *command;
}

void AddOutputOption(CLI::App& command, std::string& output) {
  command
      .add_option("-o,--output", output,
                  "Write to this file, which is replaced when the output is complete")
      ->type_name("FILE");
}

// The options of a run that do not name the input.
void AddRunOptions(CLI::App& command, PortOptions& options) {
  command.add_option("--port", options.selection.numbers, "Only ports with this number")
      ->type_name("N")
      ->check(CLI::Range(0U, UINT32_MAX).description(""))
      ->allow_extra_args(false)
      ->take_all();
  command
      .add_option_function<std::vector<std::string>>(
          "--guid",
          [&options](const std::vector<std::string>& guids) {
            for (const std::string& guid : guids) {
              options.selection.guids.push_back(std::stoull(guid, nullptr, kHexadecimal));
            }
          },
          "Only ports with this port GUID or node GUID")
      ->type_name("GUID")
      ->allow_extra_args(false)
      ->take_all()
      ->check(GuidProblem, "", "GUID");
  command
      .add_option("--label", options.selection.labels,
                  "Only ports whose label matches this pattern of '*', '?' and '[...]'")
      ->type_name("GLOB")
      ->allow_extra_args(false)
      ->take_all();
  AddOutputOption(command, options.output);
  command.add_flag("--strict", options.strict, "Stop at the first bad port");
  command
      .add_option("-j,--jobs", options.jobs,
                  "Decode with this many threads (default: one for each processor)")
      ->type_name("N")
      ->check(CLI::Range(1U, kMaxJobs));
  command.add_flag("--no-files", options.no_files,
                   "Refuse port records that name files, for untrusted input");
  command.add_flag("--all-messages", options.all_messages,
                   "Show all messages, not only the first " + std::to_string(kMaxOfAKind) +
                       " of each kind for an input");
  command.add_flag("-q,--quiet", options.quiet, "Show no progress meter, remarks or summary");
}

// A subcommand that reads ports.
CLI::App& AddPortCommand(CLI::App& app, const std::string& name, const std::string& description,
                         const std::string& examples, PortOptions& options) {
  CLI::App& command = AddCommand(app, name, description, examples);
  CLI::Option* const inputs = command.add_option(
      "FILE", options.inputs,
      "Files of port records, or snapshots of a store, as FILE.db or FILE.db@3;\n"
      "'-' or no file: standard input");
  command
      .add_option("--module", options.modules,
                  "Read dumps of module memories instead of port records: images or hex\n"
                  "listings, each whole or, as PAGE:FILE, page by page")
      ->type_name("DUMP")
      ->excludes(inputs);
  AddRunOptions(command, options);
  return command;
}

// The options of the commands that judge ports.
void AddRuleOptions(CLI::App& command, RuleOptions& options) {
  command
      .add_option("--set", options.settings,
                  "Set the severity (off, unknown, warning, critical) or the limit of a rule")
      ->type_name("RULE=VALUE")
      ->allow_extra_args(false)
      ->take_all();
  command
      .add_option("--config", options.config,
                  "Read settings of rules from this file, one per line; '#' begins a comment")
      ->type_name("FILE");
}

// ---------------------------------------------------------------------------------------------
// The subcommands
// ---------------------------------------------------------------------------------------------

constexpr const char* kTableExamples =
    "Examples:\n"
    "  cableinfo table fabric.jsonl -o cables.csv    all ports, after a header of 177 columns\n"
    "  collect | cableinfo table --no-header         rows only, in a pipeline\n"
    "  cableinfo table --rfc4180 fabric.jsonl        for spreadsheets, databases and data frames\n"
    "  cableinfo table --json fabric.jsonl | jq .Temperature\n"
    "  cableinfo table --columns PortGuid,PortNum,SN,Temperature fabric.jsonl\n"
    "                                                these columns only, in this order";

void AddTableCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<TableOptions>();
  CLI::App& command = AddPortCommand(app, "table", "Write the CSV table, one row per port",
                                     kTableExamples, options->ports);
  command.add_flag("--no-header", options->no_header, "Write the rows only");
  CLI::Option* const rfc4180 =
      command.add_flag("--rfc4180", options->rfc4180,
                       "Write CSV for any reader: 177 cells in each row, quotes doubled,\n"
                       "missing values empty, numbers without units");
  command
      .add_flag("--json", options->as_json,
                "Write one JSON object per row: numbers as numbers, missing values null")
      ->excludes(rfc4180);
  SetAction(command, options, WriteTable, action);
  command
      .add_option("--columns", options->columns,
                  "Write only these columns, in this order: names joined by commas")
      ->type_name("NAMES")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->take_all();
}

constexpr const char* kReportExamples =
    "Examples:\n"
    "  cableinfo report fabric.jsonl                 a block of text for each port\n"
    "  cableinfo report --strict a.jsonl b.jsonl     two files, up to the first bad port\n"
    "  cableinfo report --module eeprom.bin          the memory of a module\n"
    "  cableinfo report --module lower:l.bin 00:u.bin\n"
    "                                                the same, page by page";

void AddReportCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<PortOptions>();
  CLI::App& command = AddPortCommand(app, "report", "Write the text report, one block per port",
                                     kReportExamples, *options);
  SetAction(command, options, WriteReport, action);
}

constexpr const char* kExportExamples =
    "Examples:\n"
    "  cableinfo export fabric.jsonl                 one JSON object per port\n"
    "  cableinfo export - < fabric.jsonl | jq .monitors.temperature_c.value";

void AddExportCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<PortOptions>();
  CLI::App& command = AddPortCommand(app, "export", "Write the values, one JSON object per port",
                                     kExportExamples, *options);
  SetAction(command, options, WriteExport, action);
}

constexpr const char* kCheckExamples =
    "Examples:\n"
    "  cableinfo check fabric.jsonl                  what is wrong, the worst port first\n"
    "  cableinfo check --set lane-imbalance=2.5 --set checksum=off fabric.jsonl\n"
    "  cableinfo check --json fabric.jsonl | jq -c 'select(.verdict == \"critical\")'\n"
    "  cableinfo check --module eeprom.bin           the verdict on one module\n"
    "  cableinfo check fabric.db                     on the latest snapshot of a store\n"
    "  cableinfo check --rules                       all rules with their limits\n"
    "Exit status: in addition, 5 when the worst verdict is a warning, 6 when it is critical;\n"
    "with --plugin: 0 ok, 1 warning, 2 critical, 3 unknown.";

void AddCheckCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App& command =
      AddPortCommand(app, "check", "Judge the ports: what is wrong, the worst first",
                     kCheckExamples, options->ports);
  AddRuleOptions(command, options->rules);
  CLI::Option* const json =
      command.add_flag("--json", options->as_json, "Write one JSON object per port and a summary");
  command.add_flag("--plugin", options->as_plugin, "Write one line for a monitoring system")
      ->excludes(json);
  command.add_flag("--rules", options->lists_rules, "List the rules and their settings, and exit");
  SetAction(command, options, Check, action);
}

constexpr const char* kDiffExamples =
    "Examples:\n"
    "  cableinfo diff yesterday.jsonl today.jsonl    what changed, port by port\n"
    "  cableinfo diff --power-tolerance 3 --json yesterday.jsonl today.jsonl\n"
    "  cableinfo diff before.bin after.bin           two dumps of one module\n"
    "  cableinfo diff fabric.db                      the last two snapshots of a store\n"
    "  cableinfo diff fabric.db@3 fabric.db@7        two given snapshots";

void AddDiffCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<DiffOptions>();
  CLI::App& command =
      AddCommand(app, "diff", "Compare two states of the same ports", kDiffExamples);
  command
      .add_option("OLD", options->before,
                  "Port records, a dump or a snapshot of a store, as they were")
      ->required();
  command.add_option("NEW", options->after,
                     "The same, as they are now; may be left out after a snapshot, which is then\n"
                     "compared with the one before it");
  command.add_flag("--json", options->as_json,
                   "Write one JSON object per port that changed and a summary");
  command
      .add_option("--power-tolerance", options->tolerances.power_db,
                  "Report powers that changed by more than this, in dB " +
                      Default(options->tolerances.power_db))
      ->type_name("DB")
      ->check(ToleranceProblem, "", "TOLERANCE");
  command
      .add_option("--temperature-tolerance", options->tolerances.temperature_c,
                  "Report temperatures that changed by more than this, in C " +
                      Default(options->tolerances.temperature_c))
      ->type_name("C")
      ->check(ToleranceProblem, "", "TOLERANCE");
  command
      .add_option("--bias-tolerance", options->tolerances.bias_percent,
                  "Report bias currents that changed by more than this, in % " +
                      Default(options->tolerances.bias_percent))
      ->type_name("PERCENT")
      ->check(ToleranceProblem, "", "TOLERANCE");
  AddRuleOptions(command, options->rules);
  AddRunOptions(command, options->ports);
  SetAction(command, options, Diff, action);
}

constexpr const char* kMetricsExamples =
    "Examples:\n"
    "  cableinfo metrics fabric.jsonl -o /var/lib/node_exporter/cableinfo.prom\n"
    "                                                for the textfile collector\n"
    "  cableinfo metrics fabric.jsonl | promtool check metrics";

void AddMetricsCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<JudgedPortOptions>();
  CLI::App& command =
      AddPortCommand(app, "metrics", "Write OpenMetrics text for a monitoring system",
                     kMetricsExamples, options->ports);
  AddRuleOptions(command, options->rules);
  SetAction(command, options, WriteMetrics, action);
}

constexpr const char* kPageExamples =
    "Examples:\n"
    "  cableinfo page fabric.jsonl -o fabric.html    open fabric.html in a browser\n"
    "  cableinfo page --label 'leaf-*' --set lane-imbalance=2.5 fabric.jsonl -o leaves.html\n"
    "  cableinfo page --module eeprom.bin -o module.html\n"
    "  cableinfo page fabric.db -o fabric.html       the latest snapshot of a store, with what\n"
    "                                                has changed since the one before";

void AddPageCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<JudgedPortOptions>();
  CLI::App& command = AddPortCommand(app, "page", "Write one HTML page that shows the ports",
                                     kPageExamples, options->ports);
  AddRuleOptions(command, options->rules);
  SetAction(command, options, WritePage, action);
}

constexpr const char* kStoreExamples =
    "Examples:\n"
    "  cableinfo store fabric.db fabric.jsonl        add a snapshot to fabric.db\n"
    "  collect | cableinfo store fabric.db --keep 30\n"
    "  sqlite3 fabric.db 'SELECT * FROM latest_finding'";

void AddStoreCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<StoreOptions>();
  CLI::App& command = AddPortCommand(app, "store", "Add a snapshot to an SQLite file",
                                     kStoreExamples, options->ports);
  CLI::Option* const files = command.get_option("FILE");  // the database, then the inputs
  files
      ->description(
          "The database, then files of port records, or snapshots of other stores;\n"
          "'-' or no other file: standard input")
      ->required();
  command.get_option("--module")->remove_excludes(files);
  files->remove_excludes(command.get_option("--module"));
  command.remove_option(command.get_option("--output"));
  AddRuleOptions(command, options->rules);
  command
      .add_option("--taken-at", options->taken_at,
                  "When the ports were read, as 2026-01-31T12:00:00Z (default: now)")
      ->type_name("TIME")
      ->check(
          [](const std::string& text) {
            return NormalizedTime(text).empty()
                       ? "expected a time such as 2026-01-31T12:00:00Z, found \"" + text + '"'
                       : std::string();
          },
          "", "TIME");
  command.add_option("--keep", options->keep, "Keep only this many snapshots, the newest")
      ->type_name("N")
      ->check(CLI::Range(1U, UINT32_MAX));
  command.callback([options, &action] {
    std::vector<std::string>& inputs = options->ports.inputs;
    options->database = inputs.front();
    inputs.erase(inputs.begin());
    action = [options] { return StoreSnapshot(*options); };
  });
}

constexpr const char* kModuleExamples =
    "Examples:\n"
    "  cableinfo module eeprom.bin                   the memory of a module as a data sheet\n"
    "  cableinfo module --json a.bin b.txt           one JSON object per module\n"
    "  cableinfo module lower:l.bin 00:u.bin 11:p.bin\n"
    "                                                the memory of a module, page by page\n"
    "  cableinfo module --json fabric.jsonl          the modules of port records";

void AddModuleCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<ModuleOptions>();
  CLI::App& command =
      AddPortCommand(app, "module", "Write the contents of module memories as text or JSON",
                     kModuleExamples, options->ports);
  command.get_option("FILE")->description(
      "Dumps of module memories (images or hex listings, each whole or, as PAGE:FILE,\n"
      "page by page), or files of port records, or snapshots of a store;\n"
      "'-' or no file: port records on standard input");
  command.add_flag("--json", options->as_json, "Write one JSON object per module");
  SetAction(command, options, WriteModules, action);
}

constexpr const char* kReadExamples =
    "Examples:\n"
    "  cableinfo read | cableinfo check              is anything wrong with this machine's "
    "cables?\n"
    "  cableinfo read --scan                         the ports of this machine\n"
    "  cableinfo read ib0 hca1/1 -o ports.jsonl      the modules of two ports\n"
    "  cableinfo read --watch 60 >> history.jsonl    every minute until interrupted";

void AddReadCommand(CLI::App& app, Action& action) {
  constexpr double kMaxWatch = 1e6;
  constexpr double kMinSeconds = 0.001;
  constexpr double kMaxTimeout = 600;
  const auto options = std::make_shared<ReadOptions>();
  CLI::App& command = AddCommand(
      app, "read", "Read the modules of this machine and write port records", kReadExamples);
  command.add_option("NAME", options->names,
                     "Ports: an interface (ib0), a device (hca0), a port of it (hca0/1) or\n"
                     "the path of an EEPROM file; none: all ports");
  CLI::Option* const scan =
      command.add_flag("--scan", options->scan, "List the ports without reading modules");
  command.add_option("--watch", options->watch, "Read again at this interval")
      ->type_name("SECONDS")
      ->check(NumberFrom(kMinSeconds, kMaxWatch))
      ->excludes(scan);
  command
      .add_option("--timeout", options->timeout,
                  "Wait this long for a page " + Default(options->timeout) +
                      ", ten times as long for a module")
      ->type_name("SECONDS")
      ->check(NumberFrom(kMinSeconds, kMaxTimeout));
  command.add_option("--sysfs", options->sysfs, "Look for ports here instead of in /sys")
      ->type_name("DIR");
  AddOutputOption(command, options->output);
  command.add_flag("-q,--quiet", options->quiet, "Show no remarks and no summary");
  SetAction(command, options, ReadModules, action);
}

constexpr const char* kColumnsExamples =
    "Examples:\n"
    "  cableinfo columns                             number, name and meaning of each column\n"
    "  cableinfo columns --json | jq -r .name        the names only";

void AddColumnsCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<ColumnsOptions>();
  CLI::App& command = AddCommand(app, "columns", "List the columns of the table", kColumnsExamples);
  command.add_flag("--json", options->as_json, "Write one JSON object per column");
  SetAction(command, options, WriteColumns, action);
}

// ---------------------------------------------------------------------------------------------
// The program
// ---------------------------------------------------------------------------------------------

// Adds all subcommands. Parsing the one that is given sets `action`.
void AddCommands(CLI::App& app, Action& action) {
  AddTableCommand(app, action);
  AddReportCommand(app, action);
  AddExportCommand(app, action);
  AddCheckCommand(app, action);
  AddDiffCommand(app, action);
  AddMetricsCommand(app, action);
  AddPageCommand(app, action);
  AddStoreCommand(app, action);
  AddModuleCommand(app, action);
  AddReadCommand(app, action);
  AddColumnsCommand(app, action);
}

constexpr const char* kDescription =
    "Decodes and formats the cable and transceiver data of InfiniBand ports.\n"
    "Reads port records, one JSON object per line, from files or standard input.";

constexpr const char* kFooter =
    "Exit status: 0 success, 1 some ports were bad and were left out, 2 wrong usage,\n"
    "3 a file could not be read or written, 4 internal error or out of memory;\n"
    "check also returns 5 if the worst verdict is a warning, 6 if it is critical.\n"
    "'cableinfo COMMAND --help' describes a command; see also the manual page.";

// The message for a word in place of a command; empty if it is a command.
std::string UnknownCommand(const CLI::App& app, std::string_view word) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  const std::vector<std::string_view> known(names.begin(), names.end());
  std::string list;
  for (const std::string_view name : known) {
    if (name == word) return {};
    list += (list.empty() ? "" : ", ") + std::string(name);
  }
  return "unknown command \"" + std::string(word) + '"' +
         Suggestion(word, known, "; the commands are " + list);
}

// The command line that shows the help for the one that was parsed.
std::string HelpCommand(const CLI::App& app) {
  const std::vector<const CLI::App*> parsed =
      app.get_subcommands([](const CLI::App* command) { return command->parsed(); });
  return "cableinfo " + (parsed.empty() ? "" : parsed.front()->get_name() + ' ') + "--help";
}

// The problem that the parser found. It begins some of its messages with a capital letter.
std::string ProblemOf(const CLI::ParseError& error) {
  std::string text = error.what();
  const auto is_lower = [](char c) { return c >= 'a' && c <= 'z'; };
  const bool is_sentence = text.size() > 1 && (text[1] == ' ' || is_lower(text[1]));
  if (is_sentence) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

// Reports why the command line was not parsed, or writes the help or version that it asked for.
ExitStatus Answer(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  const std::string_view word = argc > 1 ? argv[1] : "";
  const std::string unknown =
      word.empty() || word.starts_with('-') ? std::string() : UnknownCommand(app, word);
  if (!unknown.empty()) {
    PrintError("cableinfo: " + unknown);
    return ExitStatus::kUsage;
  }
  const bool is_answer = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
  if (is_answer) {
    return WriteTo(kStandardOutput, [&](std::ostream& os) { app.exit(error, os, os); });
  }
  PrintError("cableinfo: " + ProblemOf(error) + "; see " + HelpCommand(app));
  return FailureStatus(ExitStatus::kUsage, argc, argv);
}

}  // namespace

ExitStatus FailureStatus(ExitStatus status, int argc, char** argv) {
  const std::vector<std::string_view> words(argv, argv + argc);
  const bool is_plugin = words.size() > 1 && words[1] == "check" &&
                         std::ranges::find(words, "--plugin") != words.end();
  return is_plugin ? kPluginUnknown : status;
}

ExitStatus RunCommandLine(int argc, char** argv) {
  CLI::App app(kDescription, "cableinfo");
  app.footer(kFooter);
  app.set_version_flag("--version", "cableinfo " + std::string(cable_info::kVersion));
  app.require_subcommand(1);

  Action action;
  AddCommands(app, action);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return Answer(app, error, argc, argv);
  }
  return action();
}

}  // namespace cli
