#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/exit_status.h"
#include "host/line_reader.h"
#include "host/port_reader.h"
#include "host/port_writer.h"

namespace host {

/// Some lines of the input on their way to the output. Blocks are read in order, decoded in any
/// order and by any thread, and written in order; what a block holds is bounded, whatever the input
/// is.
class Block {
 public:
  Block() = default;
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  Block(Block&&) = delete;
  Block& operator=(Block&&) = delete;
  ~Block() = default;

  /// \name The input
  /// @{

  /// Becomes an empty block of the input that people call `input`.
  void Restart(const std::string& input);
  void Add(const LineReader::Line& line, std::uint64_t number);
  /// True when no further line should be added.
  bool IsFull() const;
  bool HasLines() const { return !lines_.empty(); }

  std::uint64_t input_bytes = 0;  ///< of all inputs up to the end of this block
  std::error_code input_error;    ///< why the input ended behind this block, if it should not have
  /// @}

  /// Decodes the lines and writes their ports into `text`. A strict block ends at its first bad
  /// port.
  void Decode(PortReader& reader, const PortWriter& writer, bool strict);

  /// \name The output
  /// @{
  std::string text;                   ///< of all ports
  std::vector<std::string> messages;  ///< for standard error
  std::uint64_t ports = 0;            ///< in `text`
  ExitStatus status = ExitStatus::kGood;
  /// @}

  /// How people call the input.
  const std::string& input() const { return input_; }

 private:
  struct Line {
    std::size_t begin;
    std::size_t size;
    bool too_long;
  };

  void DecodeLine(const Line& line, PortReader& reader, const PortWriter& writer, std::ostream& os);
  /// Adds a line for standard error about a line of the input.
  void Say(const Line& line, const std::string& message);

  std::string input_;
  std::uint64_t first_number_ = 0;
  std::string bytes_;  // of all lines
  std::vector<Line> lines_;
};

/// Reads inputs block by block.
class BlockReader {
 public:
  /// "-" is standard input.
  explicit BlockReader(std::vector<std::string> inputs) : inputs_(std::move(inputs)) {}

  /// Fills `block` with the next lines, those that can be had without waiting for more; false at
  /// the end of the last input.
  bool Next(Block& block);

 private:
  bool Fill(Block& block);

  std::vector<std::string> inputs_;
  std::size_t next_ = 0;  // of the inputs
  std::optional<LineReader> lines_;
  std::uint64_t bytes_before_ = 0;  // of the inputs that are read
};

}  // namespace host
