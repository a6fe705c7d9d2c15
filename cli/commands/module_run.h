#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/commands/port_options.h"
#include "cli/exit_status.h"
#include "cli/output/port_writer.h"

namespace cli {

/// Reads the dumps of `options.modules` and writes each module as a port, numbered from 1. A dump
/// is the whole memory of a module; consecutive `PAGE:FILE` arguments are the pages of one module,
/// until a page follows that the module already has. A bad dump is reported on standard error and
/// left out.
ExitStatus RunModules(const PortOptions& options, const PortWriter& writer,
                      PortCollector* collector);

/// Why an argument of `--module` of the form `NAME:FILE` names no page; none when it names one, or
/// when it is a file.
std::optional<std::string> UnknownPage(const std::string& argument);

/// The files of `options.modules`.
std::vector<std::string> ModulePaths(const PortOptions& options);

}  // namespace cli
