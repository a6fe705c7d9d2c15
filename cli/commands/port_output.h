#pragma once

#include <functional>

#include "cli/commands/message_log.h"
#include "cli/commands/port_options.h"
#include "cli/exit_status.h"
#include "cli/output/output_file.h"
#include "cli/output/port_writer.h"

namespace cli {

/// How a run over ports ended, apart from failures of its output.
struct Outcome {
  enum class End { kReached, kStopped };  ///< of the input

  ExitStatus status = ExitStatus::kGood;
  End end = End::kReached;
  PortCounts counts;
};

/// The same for a collector.
PortCollector::RunEnd RunEndOf(const Outcome& outcome);

/// \name Why a run leaves its output as it was, for messages
/// @{
inline constexpr const char* kInputNotRead = "an input could not be read";
inline constexpr const char* kStoppedAtBadPort = "the run stopped at a bad port";
inline constexpr const char* kNoPortDecoded = "no port could be decoded";
/// @}

/// Opens the output of the options and calls `write` with it and `writer`, or on a terminal with
/// one that escapes control characters. Then completes the output, which replaces an old file
/// unless
///
/// - the status is 3 or higher, because an input or the output failed,
/// - the run stopped before the end of its input, or
/// - there were ports, and not one could be decoded.
///
/// Prints the summary of a run that left something out. Returns the worst status of run and output.
ExitStatus WritePortOutput(const PortOptions& options, const PortWriter& writer,
                           const std::function<Outcome(OutputFile&, const PortWriter&)>& write);

}  // namespace cli
