#pragma once

// Builds memories of CMIS modules byte by byte. Places are written as the standard writes them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_image.h"
#include "cable_info/module_memory/module_info.h"

namespace cmis_memory {

using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::PageOf;

class Memory {
 public:
  /// A page of zeros.
  Memory& Add(Page page) {
    const std::array<std::uint8_t, ModuleImage::kHalf> zeros = {};
    image_.Put(page, page == Page::kLower ? 0 : ModuleImage::kHalf, zeros.data(), zeros.size());
    return *this;
  }
  Memory& Put(Page page, std::size_t byte, const std::vector<unsigned>& values) {
    for (const unsigned value : values) {
      const auto stored = static_cast<std::uint8_t>(value);
      image_.Put(page, byte++, &stored, 1);
    }
    return *this;
  }
  Memory& Word(Page page, std::size_t byte, unsigned value) {
    return Put(page, byte, {value >> 8U, value & 0xFFU});
  }
  Memory& Text(Page page, std::size_t byte, std::string_view text) {
    for (const char c : text) Put(page, byte++, {static_cast<unsigned char>(c)});
    return *this;
  }
  Memory& Drop(Page page) {
    image_.Drop(page);
    return *this;
  }

  /// Writes the checksums of the pages that are there and have one.
  Memory& Sum() {
    Sum(Page::k00, 128, 221);
    Sum(Page::k01, 130, 254);
    Sum(Page::k02, 128, 254);
    return Sum(Page::k04, 128, 254);
  }

  const ModuleImage& image() const { return image_; }
  ModuleInfo Decode() const { return cable_info::Decode(image_); }

 private:
  Memory& Sum(Page page, std::size_t first, std::size_t last) {
    if (!image_.Has(page)) return *this;
    unsigned sum = 0;
    for (std::size_t byte = first; byte <= last; ++byte) sum += image_.At(page, byte).value_or(0);
    return Put(page, last + 1, {sum & 0xFFU});
  }

  ModuleImage image_;
};

/// An OSFP module of CMIS 5.4 with eight host and eight media lanes, without anything advertised.
inline Memory BareModule() {
  Memory memory;
  for (const Page page : {Page::kLower, Page::k00, Page::k01, Page::k02, Page::k10, Page::k11}) {
    memory.Add(page);
  }
  memory.Put(Page::kLower, 0, {0x19, 0x54, 0x00, 0x06});
  memory.Put(Page::kLower, 85, {2, 0x51, 0x56, 0x88, 0x01, 0xFF});
  memory.Put(Page::k00, 128, {0x19});
  memory.Put(Page::k01, 176, {0x01});
  return memory;
}

/// The same with everything advertised, and the pages of it.
inline Memory FullModule() {
  Memory memory = BareModule();
  for (const unsigned page : {0x04U, 0x0CU, 0x0DU, 0x12U, 0x13U, 0x14U, 0x15U, 0x16U, 0x17U, 0x19U,
                              0x1DU, 0x2FU, 0x60U, 0x61U, 0x62U, 0x6DU}) {
    memory.Add(PageOf(static_cast<std::uint8_t>(page)));
  }
  memory.Put(Page::kLower, 2, {0x40});   // stepped configuration only
  memory.Put(Page::kLower, 62, {0x80});  // restrictions are valid
  memory.Put(Page::k01, 142, {0xFC});
  memory.Put(Page::k01, 155, {0xFF, 0x87, 0x0F, 0x06, 0x3F, 0x07, 0x7F, 0xFF, 0xC0});
  memory.Put(Page::k01, 145, {0x18});  // 15h is there, observables are temperatures
  memory.Put(Page::k01, 173, {0xC0, 0xE0, 0x01});
  memory.Put(Page::k01, 251, {0xAA, 0xE0});
  memory.Put(Page::k04, 128, {0xFF, 0xE0});
  memory.Put(Page::k04, 196, {0xC0});
  memory.Put(PageOf(0x0D), 128, {0x8F});
  memory.Put(Page::k13, 128, {0x7F, 0xFF, 0xFF, 0xFF});
  memory.Put(Page::k13, 141, {0xFF, 0xFF});
  memory.Put(PageOf(0x2F), 128, {0x0C});
  return memory;
}

/// A flat copper cable of CMIS 5.0: the lower page and page 00h.
inline Memory FlatModule() {
  Memory memory;
  memory.Add(Page::kLower).Add(Page::k00);
  memory.Put(Page::kLower, 0, {0x18, 0x50, 0x80});
  memory.Put(Page::kLower, 85, {3, 0x1D, 0x01, 0x88, 0x01, 0xFF});
  memory.Put(Page::k00, 128, {0x18});
  memory.Put(Page::k00, 212, {10});
  return memory;
}

}  // namespace cmis_memory
