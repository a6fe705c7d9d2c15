// The program cableinfo.

#include <csignal>
#include <exception>
#include <new>
#include <string>

#include "cli/command_line.h"
#include "cli/descriptors.h"
#include "cli/exit_status.h"
#include "cli/message.h"

int main(int argc, char** argv) {
  cli::ReserveStandardDescriptors();
  // Writing to a closed pipe, or beyond a limit on file sizes, is reported as a failed write.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return static_cast<int>(cli::RunCommandLine(argc, argv));
  } catch (const std::bad_alloc&) {
    cli::PrintError("cableinfo: out of memory");
  } catch (const std::exception& error) {
    cli::PrintError(std::string("cableinfo: ") + error.what());
  }
  return static_cast<int>(cli::FailureStatus(cli::ExitStatus::kInternal, argc, argv));
}
