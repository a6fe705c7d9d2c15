// The command line of cableinfo.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/version.h"
#include "cli/command_options.h"
#include "cli/descriptors.h"
#include "cli/exit_status.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"
#include "cli/spelling.h"

namespace {

using cli::ExitStatus;

constexpr const char* kDescription =
    "Decodes and formats the cable and transceiver data of InfiniBand ports.\n"
    "Reads port records, one JSON object per line, from files or standard input.";

constexpr const char* kFooter =
    "Exit status: 0 success, 1 some ports were bad and were left out, 2 wrong usage,\n"
    "3 a file could not be read or written, 4 internal error or out of memory.\n"
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
  const std::string_view nearest = cli::Nearest(word, known);
  return "unknown command \"" + std::string(word) + "\"; " +
         (nearest.empty() ? "the commands are " + list
                          : "did you mean \"" + std::string(nearest) + "\"?");
}

// Reports why the command line was not parsed, or writes the help or version that it asked for.
ExitStatus Answer(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  const std::string_view word = argc > 1 ? argv[1] : "";
  const std::string unknown =
      word.empty() || word.starts_with('-') ? std::string() : UnknownCommand(app, word);
  if (!unknown.empty()) {
    cli::PrintError("cableinfo: " + unknown);
    return ExitStatus::kUsage;
  }
  std::ostringstream out;
  std::ostringstream err;
  if (app.exit(error, out, err) == 0) {
    return cli::WriteToStandardOutput([&](std::ostream& os) { os << out.str(); });
  }
  std::istringstream lines(err.str());
  for (std::string line; std::getline(lines, line);) cli::PrintError(line);
  return ExitStatus::kUsage;
}

ExitStatus Run(int argc, char** argv) {
  CLI::App app(kDescription, "cableinfo");
  app.footer(kFooter);
  app.set_version_flag("--version", "cableinfo " + std::string(cable_info::kVersion));
  app.require_subcommand(1);

  cli::Action action;
  cli::AddCommands(app, action);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return Answer(app, error, argc, argv);
  }
  return action();
}

}  // namespace

int main(int argc, char** argv) {
  cli::ReserveStandardDescriptors();
  // A closed pipe and a limited file are reported as failed writes.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return static_cast<int>(Run(argc, argv));
  } catch (const std::bad_alloc&) {
    cli::PrintError("cableinfo: out of memory");
  } catch (const std::exception& error) {
    cli::PrintError(std::string("cableinfo: ") + error.what());
  }
  return static_cast<int>(ExitStatus::kInternal);
}
