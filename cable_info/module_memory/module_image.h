#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_listing.h"

namespace cable_info::module_memory {

/// A page of a module's memory, called as the standards call it. Bytes 0..127 are those of
/// the lower page, 128..255 those of an upper page; SFP modules have two devices of 256 bytes.
enum class Page : std::uint16_t {
  k00 = 0x00,
  k01 = 0x01,
  k02 = 0x02,
  k03 = 0x03,
  k10 = 0x10,
  k11 = 0x11,
  kLower = 0x100,
  kA0 = 0x1A0,
  kA2 = 0x1A2,
};

/// "the lower page", "page 03h", "A2h".
std::string PageName(Page page);

/// What is known of a module's memory. Whatever is asked, the answer is a byte or that there is
/// none.
class ModuleImage {
 public:
  static constexpr std::size_t kHalf = 128;  ///< where upper pages begin
  static constexpr std::size_t kWhole = 256;

  DumpByte At(Page page, std::size_t byte) const;
  /// True when any byte of the page is known.
  bool Has(Page page) const;

  /// Stores `bytes` from byte `first` of the page on; what lies behind its end is dropped.
  void Put(Page page, std::size_t first, const DumpBytes& bytes);
  /// Forgets the page.
  void Drop(Page page) { pages_.erase(page); }
  /// Forgets every half page whose bytes are all 0xFF: that is what a bus reads that nobody
  /// answers.
  void DropUnanswered();

 private:
  std::map<Page, std::array<DumpByte, kWhole>> pages_;
};

/// The bytes of a dump: an image, or a hex listing. Throws `BadModule`.
DumpBytes DumpFromContent(std::string_view content);

/// A page of a dump that is given page by page.
struct PageFile {
  Page page;
  std::string path;
};

/// Takes "03:page3.bin" apart; none when nothing before the first colon is a page's name. Pages are
/// called "lower", "00" to "ff", with "h" behind or "0x" before it, or "a0" and "a2".
std::optional<PageFile> ParsePageFile(std::string_view argument);

/// Stores the dump of one page. An upper page may come alone or with the lower page before it.
/// Throws `BadModule`.
void PutPage(ModuleImage& image, Page page, const DumpBytes& bytes);

}  // namespace cable_info::module_memory
