#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_listing.h"

namespace cable_info {

/// A page of a module's memory, with the name of the standards. Bytes 0..127 are those of the lower
/// page, 128..255 those of an upper page; SFP modules have two devices of 256 bytes. Upper pages
/// have a number, 00h..FFh, and those of CMIS a bank, too: see `PageOf`.
enum class Page : std::uint32_t {
  k00 = 0x00,
  k01 = 0x01,
  k02 = 0x02,
  k03 = 0x03,
  k04 = 0x04,
  k10 = 0x10,
  k11 = 0x11,
  k12 = 0x12,
  k13 = 0x13,
  k14 = 0x14,
  k20 = 0x20,
  k21 = 0x21,
  kLower = 0x100,
  kA0 = 0x1A0,
  kA2 = 0x1A2,
};

/// The upper page with the given number and bank.
constexpr Page PageOf(std::uint8_t number, unsigned bank = 0) {
  return static_cast<Page>((bank & 0xFFU) << 16U | number);
}
/// The bank of a page; 0 for pages without banks.
constexpr unsigned BankOf(Page page) { return static_cast<std::uint32_t>(page) >> 16U; }
/// The number of an upper page.
constexpr std::uint8_t NumberOf(Page page) { return static_cast<std::uint8_t>(page); }
/// True for the pages that have a number: all but the lower page, A0h and A2h.
constexpr bool IsUpperPage(Page page) { return (static_cast<std::uint32_t>(page) & 0x100U) == 0; }

/// "the lower page", "page 03h", "page 11h of bank 1", "A2h".
std::string PageName(Page page);
/// "lower", "03h", "11h bank 1", "A2h".
std::string ShortPageName(Page page);

/// The known bytes of a module's memory. Every byte of every page can be queried; it is known or
/// missing.
class ModuleImage {
 public:
  static constexpr std::size_t kHalf = 128;   ///< where upper pages begin
  static constexpr std::size_t kWhole = 256;  ///< bytes of a page with the lower one

  /// 128 bytes of a page, each of which may be missing. Bytes are counted as in the page: those of
  /// an upper half are 128..255.
  class Half {
   public:
    Half() = default;
    /// A half with no bytes; `first` is 0 or 128.
    Half(Page page, std::size_t first) : page_(page), first_(static_cast<std::uint8_t>(first)) {}

    /// The page that the half belongs to.
    Page page() const { return page_; }
    /// The number of its first byte: 0 or 128.
    std::size_t first() const { return first_; }
    /// True when the byte is known.
    bool Has(std::size_t byte) const {
      const std::size_t at = byte - first_;
      return at < kHalf && (known_[at / 64] >> at % 64 & 1U) != 0;
    }
    /// True when all of `count` bytes from `byte` on are known.
    bool Has(std::size_t byte, std::size_t count) const;
    /// The byte; 0 when it is missing.
    std::uint8_t operator[](std::size_t byte) const {
      const std::size_t at = byte - first_;
      return at < kHalf ? bytes_[at] : std::uint8_t{0};
    }
    /// True when no byte is known.
    bool IsEmpty() const { return (known_[0] | known_[1]) == 0; }
    /// True when every byte is known and `value`.
    bool IsAll(std::uint8_t value) const;
    /// True when every byte that is known is `value`.
    bool IsUniform(std::uint8_t value) const;
    /// True if both have the same known bytes with the same values.
    bool Repeats(const Half& other) const;
    /// Stores a byte; ignored if it is outside this half.
    void Put(std::size_t byte, std::uint8_t value) {
      const std::size_t at = byte - first_;
      if (at >= kHalf) return;
      bytes_[at] = value;
      known_[at / 64] |= std::uint64_t{1} << at % 64;
    }

   private:
    Page page_ = Page::kLower;
    std::uint8_t first_ = 0;
    std::uint64_t known_[2] = {};
    std::uint8_t bytes_[kHalf] = {};
  };

  /// The byte of a page; none when it is not known.
  std::optional<std::uint8_t> At(Page page, std::size_t byte) const;
  /// True when any byte of the page is known.
  bool Has(Page page) const;
  /// The half of the page that contains the byte; an empty one if none of its bytes is known. Valid
  /// until the image changes.
  const Half& HalfOf(Page page, std::size_t byte) const;
  /// The halves with known bytes, in the order in which they were stored.
  const std::vector<Half>& halves() const { return halves_; }

  /// Stores `bytes` from byte `first` of the page on; bytes after its end are ignored.
  void Put(Page page, std::size_t first, const module_memory::DumpBytes& bytes);
  /// Stores `size` bytes in the same way.
  void Put(Page page, std::size_t first, const std::uint8_t* bytes, std::size_t size);
  /// Stores a half in the same way.
  void Put(const Half& half);
  /// Removes the page.
  void Drop(Page page);
  /// Removes every half page whose bytes are all 0xFF, as read from a bus when no device responds.
  void DropUnanswered();
  /// Removes everything; keeps the allocated memory.
  void Clear() {
    keys_.clear();
    halves_.clear();
  }

 private:
  Half& Add(Page page, std::size_t byte);
  template <typename Predicate>
  void Erase(const Predicate& is_such);

  std::vector<std::uint32_t> keys_;  // of the halves, contiguous for fast search
  std::vector<Half> halves_;
};

}  // namespace cable_info

namespace cable_info::module_memory {

/// The bytes of a dump: an image, or a hex listing. Throws `BadModule`.
DumpBytes DumpFromContent(std::string_view content);

/// A file with a single page of a dump.
struct PageFile {
  Page page;         ///< the page that the file holds
  std::string path;  ///< the path of the file
};

/// The page that the name stands for. The names are "lower", "00" to "ff", optionally with "h"
/// after or "0x" before it, "a0" and "a2", in any case. A bank other than 0 follows the page:
/// "11.1".
std::optional<Page> ParsePageName(std::string_view name);

/// The name in its shortest form: "lower", "03", "11.1", "a2".
std::string PageKey(Page page);

/// Splits "03:page3.bin"; none if the text before the first colon is not the name of a page.
std::optional<PageFile> ParsePageFile(std::string_view argument);

/// Stores the dump of one page. An upper page may be given alone or after the lower page.
/// Throws `BadModule`.
void PutPage(ModuleImage& image, Page page, const DumpBytes& bytes);

}  // namespace cable_info::module_memory
