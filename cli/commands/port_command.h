#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "cli/commands/port_options.h"
#include "cli/exit_status.h"
#include "cli/output/port_writer.h"

namespace cli {

/// Adds a subcommand that reads ports, with the options that all of them have. `options` must
/// outlive the parsing.
CLI::App* AddPortCommand(CLI::App& app, const std::string& name, const std::string& description,
                         const std::string& examples, PortOptions& options);

/// Adds the options that do not name the input.
void AddRunOptions(CLI::App& command, PortOptions& options);

/// The names of all files that the run reads, separated by blanks.
std::string InputNames(const PortOptions& options);

/// Reads the ports of the command line and writes each with `writer`: to the output, or when there
/// is one, to `collector`.
ExitStatus WritePorts(const PortOptions& options, const PortWriter& writer,
                      PortCollector* collector = nullptr);

}  // namespace cli
