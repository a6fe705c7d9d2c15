#pragma once

/// \file
/// The bytes of a module's memory by page, for decoders, and the pages' names in options and
/// messages.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_listing.h"

namespace cable_info {

/// A page of a module's memory, named as in the standards. Bytes 0..127 are those of the lower
/// page, 128..255 those of an upper page; SFP modules have two devices of 256 bytes. Upper pages
/// have a number, 00h..FFh, and those of CMIS also a bank: see `PageOf`.
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
    static constexpr std::size_t kWordBits = 64;

   public:
    constexpr Half() = default;
    /// A half with no bytes; `first` is 0 or 128.
    Half(Page page, std::size_t first) : page_(page), first_(static_cast<std::uint8_t>(first)) {}

    /// The page that the half belongs to.
    Page page() const { return page_; }
    /// The number of its first byte: 0 or 128.
    std::size_t first() const { return first_; }
    /// True when the byte is known.
    bool Has(std::size_t byte) const {
      const std::size_t at = byte - first_;
      return at < kHalf && (known_[at / kWordBits] >> at % kWordBits & 1U) != 0;
    }
    /// True when all of `count` bytes from `byte` on are known.
    bool Has(std::size_t byte, std::size_t count) const {
      const std::size_t at = byte - first_;
      if (at >= kHalf || count > kHalf - at) return count == 0;
      if (count <= kWordBits) return count == 0 || HasUpToWord(at, count);
      return HasUpToWord(at, kWordBits) && HasUpToWord(at + kWordBits, count - kWordBits);
    }
    /// The number of bytes known from `byte` on without a gap, at most `count`.
    std::size_t KnownFrom(std::size_t byte, std::size_t count) const;
    /// The bytes from `byte`, which must be in this half, to its end; missing ones are 0.
    const std::uint8_t* From(std::size_t byte) const { return bytes_ + (byte - first_); }
    /// The byte; 0 when it is missing.
    std::uint8_t operator[](std::size_t byte) const {
      const std::size_t at = byte - first_;
      return at < kHalf ? bytes_[at] : std::uint8_t{0};
    }
    /// True when no byte is known.
    bool IsEmpty() const { return (known_[0] | known_[1]) == 0; }
    /// True when every byte that is known is `value`.
    bool IsUniform(std::uint8_t value) const;
    /// True if both have the same known bytes with the same values.
    bool Repeats(const Half& other) const;
    /// Stores a byte; ignored if it is outside this half.
    void Put(std::size_t byte, std::uint8_t value) {
      const std::size_t at = byte - first_;
      if (at >= kHalf) return;
      bytes_[at] = value;
      known_[at / kWordBits] |= std::uint64_t{1} << at % kWordBits;
    }
    /// Stores `count` bytes from `byte`, which must be in this half, on; ignores those after its
    /// end.
    void Put(std::size_t byte, const std::uint8_t* bytes, std::size_t count);
    /// Stores `count` bytes, some of which may be missing, in the same way.
    void Put(std::size_t byte, const module_memory::DumpByte* bytes, std::size_t count);

   private:
    // `count` bytes, 1 to 64, from the one with index `at` on, all in this half.
    bool HasUpToWord(std::size_t at, std::size_t count) const {
      const std::size_t shift = at % kWordBits;
      std::uint64_t known = known_[at / kWordBits] >> shift;
      if (shift != 0 && at < kWordBits) known |= known_[1] << (kWordBits - shift);
      const std::uint64_t wanted = ~std::uint64_t{0} >> (kWordBits - count);
      return (known & wanted) == wanted;
    }

    Page page_ = Page::kLower;
    std::uint8_t first_ = 0;
    std::uint64_t known_[2] = {};  // a bit for each byte
    std::uint8_t bytes_[kHalf] = {};
  };

  /// The byte of a page; none when it is not known.
  std::optional<std::uint8_t> At(Page page, std::size_t byte) const {
    const Half& half = HalfOf(page, byte);
    return half.Has(byte) ? std::optional<std::uint8_t>(half[byte]) : std::nullopt;
  }
  /// True when any byte of the page is known.
  bool Has(Page page) const;
  /// The half of the page that contains the byte. If none of its bytes is known, the result is an
  /// empty half whose page and first byte are unspecified. Valid until the image changes.
  const Half& HalfOf(Page page, std::size_t byte) const {
    static constexpr Half kNothing;
    const std::size_t at = Find(KeyOf(page, byte));
    return at < keys_.size() ? halves_[at] : kNothing;
  }
  /// The halves in the order in which they were stored; some may be empty.
  const std::vector<Half>& halves() const { return halves_; }

  /// Stores `bytes` from byte `first` of the page on; bytes after its end are ignored. Bytes 0 to
  /// 127 of a module belong to `Page::kLower`, not to page 00h.
  void Put(Page page, std::size_t first, const module_memory::DumpBytes& bytes) {
    Put(page, first, bytes.data(), bytes.size());
  }
  /// Stores `size` bytes, some of which may be missing, in the same way.
  void Put(Page page, std::size_t first, const module_memory::DumpByte* bytes, std::size_t size);
  /// Stores `size` bytes in the same way.
  void Put(Page page, std::size_t first, const std::uint8_t* bytes, std::size_t size);
  /// Stores a half in the same way.
  void Put(const Half& half);
  /// Removes the page.
  void Drop(Page page);
  /// Removes everything; keeps the allocated memory.
  void Clear() {
    keys_.clear();
    halves_.clear();
    slots_ = {};
  }

 private:
  // Distinct for each half of each page.
  static constexpr std::uint32_t KeyOf(Page page, std::size_t byte) {
    return static_cast<std::uint32_t>(page) << 1U | (byte < kHalf ? 0U : 1U);
  }
  static constexpr std::size_t kSlots = 128;

  // The slot of a half. Halves of a module seldom share one: pages 00h to 3Fh have odd slots, the
  // lower page, A0h and A2h those around 00h, 40h and 44h.
  static constexpr std::size_t SlotOf(std::uint32_t key) {
    const std::uint32_t bank = key >> 17U;
    return (key ^ bank << 4U) % kSlots;
  }
  // The index of the half with the key; the number of halves if there is none. Decoders look up
  // halves hundreds of times per module, so a table replaces the search.
  std::size_t Find(std::uint32_t key) const {
    const std::size_t slot = slots_[SlotOf(key)];
    if (slot == 0) return keys_.size();
    return slot <= keys_.size() && keys_[slot - 1] == key ? slot - 1 : Search(key);
  }
  std::size_t Search(std::uint32_t key) const {
    std::size_t at = 0;
    while (at < keys_.size() && keys_[at] != key) ++at;
    return at;
  }
  void AddKey(std::uint32_t key) {
    constexpr std::size_t kHighest = 0xFFFF;
    keys_.push_back(key);
    std::uint16_t& slot = slots_[SlotOf(key)];
    if (slot == 0) {
      slot = static_cast<std::uint16_t>(keys_.size() < kHighest ? keys_.size() : kHighest);
    }
  }
  Half& Add(Page page, std::size_t byte);
  template <typename Byte>
  void PutBytes(Page page, std::size_t first, const Byte* bytes, std::size_t size);

  std::vector<std::uint32_t> keys_;  // of the halves, contiguous for fast search
  std::vector<Half> halves_;
  // The number, from 1, of the first half stored that has the slot; 0: none has. A number is only a
  // hint, because those of a moved-from image remain.
  std::array<std::uint16_t, kSlots> slots_ = {};
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

/// The page with the name `text`, in upper or lower case. The names are "lower", and "00" to "ff",
/// optionally with "h" after or "0x" before it. A bank other than 0 follows the page: "11.1". "a0"
/// and "a2", with the same marks, always name the devices of SFP modules; a bank is ignored.
std::optional<Page> ParsePageName(std::string_view text);

/// The name in its shortest form: "lower", "03", "11.1", "a2".
std::string PageKey(Page page);

/// Splits "03:page3.bin"; none if the text before the first colon is not the name of a page.
std::optional<PageFile> ParsePageFile(std::string_view argument);

/// Stores the dump of one page. An upper page may be given alone or after the lower page, which is
/// ignored if the image has one already. Throws `BadModule`.
void PutPage(ModuleImage& image, Page page, const DumpBytes& bytes);

}  // namespace cable_info::module_memory
