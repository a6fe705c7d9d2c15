#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/port.h"
#include "cli/message.h"

namespace cli {

using cable_info::module_memory::ChecksumPolicy;

/// Whether port records may name files, which are then read.
enum class FilePolicy { kRead, kRefuse };

struct PortReaderOptions {
  ChecksumPolicy checksums = ChecksumPolicy::kReport;
  FilePolicy files = FilePolicy::kRead;
  ModuleUse modules = ModuleUse::kRecords;
  bool keeps_records = false;  ///< sets `Port::record`
};

/// Reads ports from lines of JSON; docs/port.schema.json describes them. One reader is used for
/// many lines, so that its memory is reused.
class PortReader {
 public:
  explicit PortReader(const PortReaderOptions& options = {});
  PortReader(const PortReader&) = delete;
  PortReader& operator=(const PortReader&) = delete;
  PortReader(PortReader&&) = delete;
  PortReader& operator=(PortReader&&) = delete;
  ~PortReader();

  /// Names of files are relative to `folder`, the one of the input; empty: the current one.
  void SetFolder(std::string folder) { folder_ = std::move(folder); }

  /// Fills `port`, which must be new. `LineReader::kPadding` bytes after `line` must be readable.
  /// Returns false for a line that is not a port; `messages` then holds the reason, otherwise
  /// remarks about the port, usually none. `port.module` is valid until the next call.
  bool Read(std::string_view line, Port& port, std::vector<Message>& messages);

 private:
  class Parser;
  std::unique_ptr<Parser> parser_;
  PortReaderOptions options_;
  std::string folder_;
  cable_info::ModuleInfo info_;     // of the last port
  std::vector<std::uint8_t> dump_;  // of the last port with a dump in plain hexadecimal
};

}  // namespace cli
