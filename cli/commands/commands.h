#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "cli/exit_status.h"

namespace cli {

/// What the program does once the command line is parsed.
using Action = std::function<ExitStatus()>;

/// \name The subcommands
/// Each function adds one; when it is given on the command line, parsing sets `action`.
/// @{
void AddTableCommand(CLI::App& app, Action& action);
void AddReportCommand(CLI::App& app, Action& action);
void AddExportCommand(CLI::App& app, Action& action);
void AddCheckCommand(CLI::App& app, Action& action);
void AddDiffCommand(CLI::App& app, Action& action);
void AddMetricsCommand(CLI::App& app, Action& action);
void AddPageCommand(CLI::App& app, Action& action);
void AddStoreCommand(CLI::App& app, Action& action);
void AddModuleCommand(CLI::App& app, Action& action);
void AddReadCommand(CLI::App& app, Action& action);
void AddColumnsCommand(CLI::App& app, Action& action);
/// @}

}  // namespace cli
