#include "cli/commands/port_output.h"

#include "cli/message.h"
#include "cli/output/terminal_writer.h"
#include "cli/output/whole_output.h"

namespace cli {

namespace {

bool LeftSomethingOut(const PortCounts& counts) {
  return counts.left_out > 0 || counts.failed_inputs > 0;
}

// Why the output must not replace a file; null when it may.
const char* Reason(const Outcome& outcome) {
  if (outcome.status >= ExitStatus::kFileFailed) return kInputNotRead;
  if (outcome.end == Outcome::End::kStopped) return kStoppedAtBadPort;
  const bool none_was_good = outcome.counts.written == 0 && LeftSomethingOut(outcome.counts);
  return none_was_good ? kNoPortDecoded : nullptr;
}

}  // namespace

PortCollector::RunEnd RunEndOf(const Outcome& outcome) {
  const bool is_complete =
      outcome.end == Outcome::End::kReached && outcome.counts.failed_inputs == 0;
  return {outcome.status, is_complete};
}

ExitStatus WritePortOutput(const PortOptions& options, const PortWriter& writer,
                           const std::function<Outcome(OutputFile&, const PortWriter&)>& write) {
  Outcome outcome;
  const ExitStatus output_status = WriteWhole(options.output, [&](OutputFile& output) {
    const TerminalWriter terminal_writer(writer);
    outcome = write(output, output.is_terminal() ? terminal_writer : writer);
    const char* const reason =
        output.replaces_file() && !output.has_failed() ? Reason(outcome) : nullptr;
    if (reason == nullptr) return Ending::kCommit;
    PrintError("cableinfo: " + options.output + ": not written: " + reason);
    return Ending::kDiscard;
  });
  if (LeftSomethingOut(outcome.counts) && !options.quiet) PrintSummary(outcome.counts);
  return Worse(outcome.status, output_status);
}

}  // namespace cli
