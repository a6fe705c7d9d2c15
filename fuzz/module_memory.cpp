// Dumps of module memory: arbitrary bytes are decoded or rejected.

#include "cable_info/module_memory/module_memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/combined_cable_info.h"
#include "cable_info/module_memory/module_output.h"

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

// All values of the memory, and their JSON and text.
void ShowInfo(const cable_info::ModuleImage& image) {
  const cable_info::ModuleInfo info = cable_info::Decode(image);
  cable_info::ModuleToJson(info, "module");
  cable_info::ModuleToText(info, "module");
}

// The dump as an image or a listing.
void DecodeWhole(std::string_view content) {
  try {
    const module_memory::DumpBytes dump = module_memory::DumpFromContent(content);
    std::vector<std::string> remarks;
    ShowInfo(module_memory::SplitImage(dump, remarks));
    Show(module_memory::ReadModule(dump));
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
    ShowInfo(image);
    Show(module_memory::ReadModule(image));
  } catch (const module_memory::BadModule&) {  // rejected
  }
}

// The lower page, then any upper pages, each preceded by its number and bank.
void DecodeBanks(std::string_view content) {
  constexpr std::size_t kHalf = cable_info::ModuleImage::kHalf;
  constexpr std::size_t kHeader = 2;
  cable_info::ModuleImage image;
  const auto put = [&image](cable_info::Page page, std::size_t first, std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto byte = static_cast<std::uint8_t>(bytes[i]);
      image.Put(page, first + i, &byte, 1);
    }
  };
  put(cable_info::Page::kLower, 0, content.substr(0, kHalf));
  content.remove_prefix(std::min(kHalf, content.size()));
  while (content.size() > kHeader) {
    const auto number = static_cast<std::uint8_t>(content[0]);
    const auto bank = static_cast<std::uint8_t>(content[1]);
    put(cable_info::PageOf(number, bank), kHalf, content.substr(kHeader, kHalf));
    content.remove_prefix(std::min(kHeader + kHalf, content.size()));
  }
  ShowInfo(image);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes as characters
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  DecodeWhole(content);
  DecodePages(content);
  DecodeBanks(content);
  return 0;
}
