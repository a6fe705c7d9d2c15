#include "cable_info/module_memory/module_image.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>

namespace cable_info::module_memory {

namespace {

bool IsUpperPage(Page page) { return page < Page::kLower; }

}  // namespace

std::string PageName(Page page) {
  if (page == Page::kLower) return "the lower page";
  if (page == Page::kA0) return "A0h";
  if (page == Page::kA2) return "A2h";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto number = static_cast<unsigned>(page);
  return std::string("page ") + kDigits[number >> 4 & 0xF] + kDigits[number & 0xF] + 'h';
}

DumpByte ModuleImage::At(Page page, std::size_t byte) const {
  const auto found = pages_.find(page);
  return found != pages_.end() && byte < kWhole ? found->second[byte] : DumpByte();
}

bool ModuleImage::Has(Page page) const { return pages_.count(page) != 0; }

void ModuleImage::Put(Page page, std::size_t first, const DumpBytes& bytes) {
  for (std::size_t i = 0; i < bytes.size() && first + i < kWhole; ++i) {
    if (bytes[i]) pages_[page][first + i] = bytes[i];
  }
}

void ModuleImage::DropUnanswered() {
  const auto is_known = [](DumpByte byte) { return byte.has_value(); };
  for (auto page = pages_.begin(); page != pages_.end();) {
    auto& bytes = page->second;
    for (auto* half = bytes.begin(); half != bytes.end(); half += kHalf) {
      const bool unanswered = std::all_of(
          half, half + kHalf, [](DumpByte byte) { return byte.value_or(0xFF) == 0xFF; });
      if (unanswered) std::fill(half, half + kHalf, DumpByte());
    }
    const bool is_empty = std::none_of(bytes.begin(), bytes.end(), is_known);
    page = is_empty ? pages_.erase(page) : std::next(page);
  }
}

DumpBytes DumpFromContent(std::string_view content) {
  if (content.empty()) throw BadModule("the dump is empty");
  if (IsListing(content)) return ParseListing(content);
  if (content.size() > kLongestDump) {
    throw BadModule("an image of more than " + std::to_string(kLongestDump) +
                    " bytes is no module's memory");
  }
  DumpBytes bytes;
  bytes.reserve(content.size());
  for (const char c : content) bytes.emplace_back(static_cast<std::uint8_t>(c));
  return bytes;
}

std::optional<PageFile> ParsePageFile(std::string_view argument) {
  const std::size_t colon = argument.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  std::string name;
  for (const char c : argument.substr(0, colon)) {
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  std::string path(argument.substr(colon + 1));
  if (name == "lower") return PageFile{Page::kLower, std::move(path)};
  std::string_view digits = name;
  if (digits.substr(0, 2) == "0x") {
    digits.remove_prefix(2);
  } else if (!digits.empty() && digits.back() == 'h') {
    digits.remove_suffix(1);
  }
  if (digits == "a0") return PageFile{Page::kA0, std::move(path)};
  if (digits == "a2") return PageFile{Page::kA2, std::move(path)};
  std::uint8_t number = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number, 16);
  if (digits.size() != 2 || read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return PageFile{static_cast<Page>(number), std::move(path)};
}

void PutPage(ModuleImage& image, Page page, const DumpBytes& bytes) {
  const std::size_t longest = page == Page::kLower ? ModuleImage::kHalf : ModuleImage::kWhole;
  if (bytes.size() > longest) {
    throw BadModule(PageName(page) + " has at most " + std::to_string(longest) + " bytes, not " +
                    std::to_string(bytes.size()));
  }
  if (!IsUpperPage(page)) return image.Put(page, 0, bytes);
  if (bytes.size() <= ModuleImage::kHalf) return image.Put(page, ModuleImage::kHalf, bytes);
  const auto middle = bytes.begin() + ModuleImage::kHalf;
  image.Put(page, ModuleImage::kHalf, DumpBytes(middle, bytes.end()));
  if (!image.Has(Page::kLower)) image.Put(Page::kLower, 0, DumpBytes(bytes.begin(), middle));
}

}  // namespace cable_info::module_memory
