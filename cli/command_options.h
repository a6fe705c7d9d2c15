#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "cli/exit_status.h"

namespace cli {

/// What the program does once the command line is parsed.
using Action = std::function<ExitStatus()>;

/// Adds all subcommands with their options. Parsing the one that is given sets `action`.
void AddCommands(CLI::App& app, Action& action);

}  // namespace cli
