#include "cable_info/module_memory/module_image.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>

#include "cable_info/text/numbers.h"

namespace cable_info {

namespace {

// "03h", "A2h".
std::string NumberName(Page page) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const unsigned number = NumberOf(page);
  return {kDigits[number >> 4U], kDigits[number & 0xFU], 'h'};
}

}  // namespace

std::string PageName(Page page) {
  if (page == Page::kLower) return "the lower page";
  if (!IsUpperPage(page)) return NumberName(page);
  std::string name = "page " + NumberName(page);
  if (BankOf(page) != 0) name += " of bank " + std::to_string(BankOf(page));
  return name;
}

std::string ShortPageName(Page page) {
  if (page == Page::kLower) return "lower";
  std::string name = NumberName(page);
  if (BankOf(page) != 0) name += " bank " + std::to_string(BankOf(page));
  return name;
}

std::size_t ModuleImage::Half::KnownFrom(std::size_t byte, std::size_t count) const {
  std::size_t known = 0;
  while (known < count && Has(byte + known)) ++known;
  return known;
}

void ModuleImage::Half::Put(std::size_t byte, const module_memory::DumpByte* bytes,
                            std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (bytes[i]) Put(byte + i, *bytes[i]);
  }
}

void ModuleImage::Half::Put(std::size_t byte, const std::uint8_t* bytes, std::size_t count) {
  const std::size_t begin = byte - first_;
  if (begin >= kHalf) return;
  const std::size_t end = begin + std::min(count, kHalf - begin);
  std::copy_n(bytes, end - begin, bytes_ + begin);
  for (std::size_t at = begin; at < end;) {  // word by word
    const std::size_t shift = at % kWordBits;
    const std::size_t bits = std::min(kWordBits - shift, end - at);
    const std::uint64_t mask =
        bits < kWordBits ? (std::uint64_t{1} << bits) - 1 : ~std::uint64_t{0};
    known_[at / kWordBits] |= mask << shift;
    at += bits;
  }
}

bool ModuleImage::Half::IsUniform(std::uint8_t value) const {
  for (std::size_t i = 0; i < kHalf; ++i) {
    if (Has(first_ + i) && bytes_[i] != value) return false;
  }
  return true;
}

bool ModuleImage::Half::Repeats(const Half& other) const {
  return known_[0] == other.known_[0] && known_[1] == other.known_[1] &&
         std::equal(std::begin(bytes_), std::end(bytes_), std::begin(other.bytes_));
}

bool ModuleImage::Has(Page page) const {
  return std::any_of(halves_.begin(), halves_.end(),
                     [page](const Half& half) { return half.page() == page && !half.IsEmpty(); });
}

ModuleImage::Half& ModuleImage::Add(Page page, std::size_t byte) {
  constexpr std::size_t kUsualHalves = 8;
  const std::uint32_t key = KeyOf(page, byte);
  const std::size_t at = Find(key);
  if (at < halves_.size()) return halves_[at];
  if (halves_.empty()) {
    keys_.reserve(kUsualHalves);
    halves_.reserve(kUsualHalves);
  }
  AddKey(key);
  return halves_.emplace_back(page, byte < kHalf ? 0 : kHalf);
}

template <typename Byte>
void ModuleImage::PutBytes(Page page, std::size_t first, const Byte* bytes, std::size_t size) {
  const std::size_t end = first < kWhole ? std::min(size, kWhole - first) : 0;
  for (std::size_t i = 0; i < end;) {
    const std::size_t byte = first + i;
    const std::size_t count = std::min((byte < kHalf ? kHalf : kWhole) - byte, end - i);
    Add(page, byte).Put(byte, bytes + i, count);
    i += count;
  }
}

void ModuleImage::Put(Page page, std::size_t first, const module_memory::DumpByte* bytes,
                      std::size_t size) {
  PutBytes(page, first, bytes, size);
}

void ModuleImage::Put(Page page, std::size_t first, const std::uint8_t* bytes, std::size_t size) {
  PutBytes(page, first, bytes, size);
}

void ModuleImage::Put(const Half& half) {
  Half& place = Add(half.page(), half.first());
  if (place.IsEmpty()) {
    place = half;
    return;
  }
  for (std::size_t i = 0; i < kHalf; ++i) {
    if (half.Has(half.first() + i)) place.Put(half.first() + i, half[half.first() + i]);
  }
}

void ModuleImage::Drop(Page page) {
  const auto is_of_page = [page](const Half& half) { return half.page() == page; };
  halves_.erase(std::remove_if(halves_.begin(), halves_.end(), is_of_page), halves_.end());
  keys_.clear();
  slots_ = {};
  for (const Half& half : halves_) AddKey(KeyOf(half.page(), half.first()));
}

}  // namespace cable_info

namespace cable_info::module_memory {

namespace {

constexpr unsigned kHighestBank = 255;

bool ParseAll(std::string_view digits, int base, unsigned& number) {
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number, base);
  return read.ec == std::errc() && read.ptr == end;
}

// "03" of "0x03" and "03h".
std::string_view WithoutPageMarks(std::string_view name) {
  if (name.substr(0, 2) == "0x") return name.substr(2);
  if (!name.empty() && name.back() == 'h') name.remove_suffix(1);
  return name;
}

}  // namespace

DumpBytes DumpFromContent(std::string_view content) {
  if (content.empty()) throw BadModule("the dump is empty");
  if (IsListing(content)) return ParseListing(content);
  const bool is_linear = content.size() == kLinearImage || content.size() == kLinearSfpImage;
  if (content.size() > kMaxDumpSize && !is_linear) {
    throw BadModule("an image of " + std::to_string(content.size()) +
                    " bytes is not the memory of a module");
  }
  DumpBytes bytes;
  bytes.reserve(content.size());
  for (const char c : content) bytes.emplace_back(static_cast<std::uint8_t>(c));
  return bytes;
}

std::optional<Page> ParsePageName(std::string_view text) {
  std::string name;
  for (const char c : text) {
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  if (name == "lower") return Page::kLower;
  std::string_view digits = WithoutPageMarks(name);
  unsigned bank = 0;
  const std::size_t dot = digits.find('.');
  if (dot != std::string_view::npos) {
    if (!ParseAll(digits.substr(dot + 1), 10, bank) || bank > kHighestBank) return std::nullopt;
    digits = WithoutPageMarks(digits.substr(0, dot));
  }
  if (digits == "a0") return Page::kA0;
  if (digits == "a2") return Page::kA2;
  unsigned number = 0;
  if (digits.size() != 2 || !ParseAll(digits, 16, number)) return std::nullopt;
  return PageOf(static_cast<std::uint8_t>(number), bank);
}

std::string PageKey(Page page) {
  if (page == Page::kLower) return "lower";
  const unsigned number = NumberOf(page);
  std::string key = {text::kHexDigits[number >> 4U], text::kHexDigits[number & 0xFU]};
  if (BankOf(page) != 0) key += '.' + std::to_string(BankOf(page));
  return key;
}

std::optional<PageFile> ParsePageFile(std::string_view argument) {
  const std::size_t colon = argument.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const std::optional<Page> page = ParsePageName(argument.substr(0, colon));
  if (!page) return std::nullopt;
  return PageFile{*page, std::string(argument.substr(colon + 1))};
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
