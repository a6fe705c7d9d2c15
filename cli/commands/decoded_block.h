#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/exit_status.h"
#include "cli/input/line_block.h"
#include "cli/input/port_reader.h"
#include "cli/output/port_writer.h"

namespace cli {

/// What a run does with the ports after a bad one.
enum class OnBadPort { kContinue, kStop };

/// What the lines of a block became. Its memory is reused from block to block.
struct DecodedBlock {
  std::string text;                   ///< of all ports, for the output
  std::vector<std::string> messages;  ///< for standard error
  std::uint64_t ports = 0;            ///< in `text`
  ExitStatus status = ExitStatus::kGood;
};

/// Decodes the lines of `block` and writes their ports into `decoded`, with `writer`'s separator
/// between them.
void DecodeBlock(const LineBlock& block, PortReader& reader, const PortWriter& writer,
                 OnBadPort on_bad_port, DecodedBlock& decoded);

}  // namespace cli
