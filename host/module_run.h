#pragma once

#include "host/exit_status.h"
#include "host/port_writer.h"
#include "host/run.h"

namespace host {

/// Reads the dumps of `options.modules` and writes each module as a port, numbered from 1. A dump
/// is a module's whole image; consecutive `PAGE:FILE` are the pages of one module, until a page
/// comes that it has already. A bad dump costs a line on standard error and is left out.
ExitStatus RunModules(const PortOptions& options, const PortWriter& writer);

}  // namespace host
