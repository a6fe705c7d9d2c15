#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/commands/line_block.h"
#include "cli/commands/message_log.h"
#include "cli/input/port_reader.h"
#include "cli/input/selection.h"
#include "cli/message.h"
#include "cli/output/port_writer.h"

namespace cli {

/// What a run does with the ports after a bad one.
enum class OnBadPort { kContinue, kStop };

/// A message about a line.
struct LineMessage {
  std::uint64_t line = 0;
  Message message;
};

/// The result of decoding a block. Its memory is reused from block to block.
struct DecodedBlock {
  std::string text;                   ///< the output of all ports
  std::vector<LineMessage> messages;  ///< in the order of the lines
  PortCounts counts;
};

/// Decodes the lines of `block` and writes the selected ports into `decoded`, with `writer`'s
/// separator between them. Other ports have no remarks.
void DecodeBlock(const LineBlock& block, PortReader& reader, const Selection& selection,
                 const PortWriter& writer, OnBadPort on_bad_port, DecodedBlock& decoded);

}  // namespace cli
