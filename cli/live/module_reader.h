#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "cable_info/module_memory/module_image.h"
#include "cli/live/page_reader.h"

namespace cli {

/// The memory of a module as far as it could be read.
struct LiveModule {
  cable_info::ModuleImage image;
  std::vector<std::string> remarks;  ///< on what could not be read
  /// Why the module could not be read; `image` is empty then.
  std::optional<ReadError> error;
};

/// Reads all parts of the memory that the module advertises and decoders use, each once. A part
/// that cannot be read costs a remark; a module that disappears, or takes longer than `limit` for
/// all of it, is an error.
LiveModule ReadLiveModule(PageReader& reader, std::chrono::milliseconds limit);

}  // namespace cli
