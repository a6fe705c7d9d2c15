#pragma once

#include "cli/exit_status.h"

namespace cli {

/// Parses the arguments of the program and runs the subcommand that they name; writes the help or
/// the version if that is requested, and reports wrong usage. Exceptions of the subcommand pass.
ExitStatus RunCommandLine(int argc, char** argv);

/// The status of a program that failed before its subcommand could end: `status`, or "unknown" for
/// `check --plugin`.
ExitStatus FailureStatus(ExitStatus status, int argc, char** argv);

}  // namespace cli
