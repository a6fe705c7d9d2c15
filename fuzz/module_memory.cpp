// Dumps of module memories: whatever the bytes are, they are decoded or refused.

#include "host/module_memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

#include "cable_info/combined_cable_info.h"

namespace {

void Show(host::ModuleReading reading) {
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
    Show(host::ReadModule(host::DumpFromContent(content)));
  } catch (const host::BadModule&) {  // refused
  }
}

// The dump as pages, each behind a byte that names it.
void DecodePages(std::string_view content) {
  constexpr std::size_t kSize = 1 + host::ModuleImage::kHalf;
  constexpr host::Page kPages[] = {
      host::Page::kLower, host::Page::k00, host::Page::k01, host::Page::k02, host::Page::k03,
      host::Page::k10,    host::Page::k11, host::Page::kA0, host::Page::kA2,
  };
  try {
    host::ModuleImage image;
    for (; !content.empty(); content.remove_prefix(std::min(kSize, content.size()))) {
      const auto name = static_cast<std::uint8_t>(content.front());
      host::DumpBytes bytes;
      for (const char c : content.substr(1, kSize - 1)) {
        bytes.emplace_back(static_cast<std::uint8_t>(c));
      }
      host::PutPage(image, kPages[name % std::size(kPages)], bytes);
    }
    Show(host::ReadModule(std::move(image)));
  } catch (const host::BadModule&) {  // refused
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
