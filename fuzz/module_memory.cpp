// Dumps of module memory: arbitrary bytes are decoded or rejected.

#include "cable_info/module_memory/module_memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

#include "cable_info/combined_cable_info.h"

namespace {

namespace module_memory = cable_info::module_memory;

void Show(module_memory::ModuleReading reading) {
  cable_info::CombinedCableInfo port;
  port.AttachCableRecord(std::move(reading.cable));
  port.AttachPhyCableRecord(std::move(reading.phy));
  std::ostringstream text;
  port.ToCSVStream(text);
  port.ToFileStream(text);
}

// The dump as an image or a listing.
void DecodeWhole(std::string_view content) {
  try {
    Show(module_memory::ReadModule(module_memory::DumpFromContent(content)));
  } catch (const module_memory::BadModule&) {  // rejected
  }
}

// The dump as pages, each preceded by a byte that selects the page.
void DecodePages(std::string_view content) {
  constexpr std::size_t kSize = 1 + cable_info::ModuleImage::kHalf;
  constexpr cable_info::Page kPages[] = {
      cable_info::Page::kLower, cable_info::Page::k00, cable_info::Page::k01,
      cable_info::Page::k02,    cable_info::Page::k03, cable_info::Page::k10,
      cable_info::Page::k11,    cable_info::Page::kA0, cable_info::Page::kA2,
  };
  try {
    cable_info::ModuleImage image;
    for (; !content.empty(); content.remove_prefix(std::min(kSize, content.size()))) {
      const auto name = static_cast<std::uint8_t>(content.front());
      module_memory::DumpBytes bytes;
      for (const char c : content.substr(1, kSize - 1)) {
        bytes.emplace_back(static_cast<std::uint8_t>(c));
      }
      module_memory::PutPage(image, kPages[name % std::size(kPages)], bytes);
    }
    Show(module_memory::ReadModule(std::move(image)));
  } catch (const module_memory::BadModule&) {  // rejected
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes as characters
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  DecodeWhole(content);
  DecodePages(content);
  return 0;
}
