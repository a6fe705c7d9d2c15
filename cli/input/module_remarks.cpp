#include "cli/input/module_remarks.h"

#include <cstddef>
#include <string>
#include <utility>

namespace cli {

void AddRemarks(const cable_info::module_memory::ModuleReading& reading,
                cable_info::module_memory::ChecksumPolicy checksums,
                std::vector<Message>& messages) {
  std::vector<std::string> texts;
  ReportChecksums(reading, checksums, texts);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const bool is_checksum = i < reading.mismatches.size();
    messages.push_back({is_checksum ? MessageKind::kChecksum : MessageKind::kOtherRemark,
                        std::move(texts[i]),
                        {},
                        {}});
  }
}

}  // namespace cli
