// The command line of cableinfo.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <string>

#include "cable_info/version.h"
#include "cli/commands/commands.h"
#include "cli/exit_status.h"
#include "cli/message.h"

namespace {

using cli::ExitStatus;

constexpr const char* kDescription =
    "Decodes and formats the cable and transceiver data of InfiniBand ports.\n"
    "Reads port records, one JSON object per line, from files or standard input.";

constexpr const char* kFooter =
    "Exit status: 0 success, 1 some ports were bad and were left out, 2 wrong usage,\n"
    "3 a file could not be read or written, 4 internal error or out of memory.\n"
    "'cableinfo COMMAND --help' describes a command; see also the manual page.";

ExitStatus Run(int argc, char** argv) {
  CLI::App app(kDescription, "cableinfo");
  app.footer(kFooter);
  app.set_version_flag("--version", "cableinfo " + std::string(cable_info::kVersion));
  app.require_subcommand(1);

  cli::Action action;
  cli::AddTableCommand(app, action);
  cli::AddReportCommand(app, action);
  cli::AddExportCommand(app, action);
  cli::AddColumnsCommand(app, action);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitStatus::kGood : ExitStatus::kUsage;
  }
  return action();
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is reported as a failed write
  try {
    return static_cast<int>(Run(argc, argv));
  } catch (const std::exception& error) {
    cli::PrintError(std::string("cableinfo: ") + error.what());
    return static_cast<int>(ExitStatus::kInternal);
  }
}
