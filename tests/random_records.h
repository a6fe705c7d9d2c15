#pragma once

// Records of random content, reproducible by seed.

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "cable_info/cable_record.h"
#include "cable_info/phy_cable_record.h"
#include "cable_record_fields.h"

namespace cable_info::test {

class RandomValues {
 public:
  explicit RandomValues(unsigned seed) : random_(seed) {}

  // Small codes and extremes, more frequent than in a uniform distribution.
  template <typename Unsigned>
  Unsigned Code() {
    switch (random_() % 8) {
      case 0:
        return 0;
      case 1:
        return static_cast<Unsigned>(~Unsigned{0});
      case 2:
      case 3:
        return static_cast<Unsigned>(random_() % 20);
      default:
        return static_cast<Unsigned>(random_());
    }
  }

  // Any float, including NaN and infinities.
  float Float() {
    if (random_() % 2 == 0) return static_cast<float>(random_() % 80000) / 8000.0F;
    return std::bit_cast<float>(static_cast<std::uint32_t>(random_()));
  }

  // Texts without commas and line breaks, so that cells and lines can be counted.
  std::string Text() {
    constexpr std::string_view kAlphabet = "abcXYZ 0189-_.\"\t";
    if (random_() % 8 == 0) return "NA";
    std::string text(random_() % 40, '\0');
    for (char& c : text) c = kAlphabet[random_() % kAlphabet.size()];
    return text;
  }

 private:
  std::mt19937 random_;
};

inline CableRecord RandomCableRecord(unsigned seed) {
  RandomValues random(seed);
  CableRecord r;
  for (std::uint8_t* byte : ByteFields(r)) {
    *byte = random.Code<std::uint8_t>();
  }
  for (std::uint16_t* word : WordFields(r)) {
    *word = random.Code<std::uint16_t>();
  }
  for (int lane = 0; lane < 4; ++lane) {
    r.RxPower[lane] = random.Float();
    r.TxBias[lane] = random.Float();
    r.TxPower[lane] = random.Float();
  }
  r.RxPowerIsAverage = random.Code<std::uint8_t>() % 2 == 0;
  r.OpaqueDword1 = random.Code<std::uint32_t>();
  for (std::string* text : TextFields(r)) {
    *text = random.Text();
  }
  return r;
}

// Module record and page with random bytes; either may be missing.
inline std::unique_ptr<PhyCableRecord> RandomPhyCableRecord(unsigned seed) {
  RandomValues random(seed);
  auto r = std::make_unique<PhyCableRecord>();
  r->source = random.Text();
  if (seed % 4 != 0) r->prtl_length = random.Text();
  if (seed % 7 != 0) {
    r->SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
    std::uint8_t bytes[sizeof(PhyCableRecord::ModuleRecord)];
    for (std::uint8_t& byte : bytes) byte = random.Code<std::uint8_t>();
    std::memcpy(static_cast<void*>(r->module), bytes, sizeof(bytes));
    for (char& c : r->module->vendor_name) {
      if (c == ',' || c == '\n') c = ' ';
    }
    for (auto* text : {r->module->vendor_pn, r->module->vendor_sn}) {
      for (std::size_t i = 0; i < sizeof(r->module->vendor_pn); ++i) {
        if (text[i] == '\n') text[i] = ' ';
      }
    }
    for (char& c : r->module->vendor_rev) {
      if (c == '\n') c = ' ';
    }
  }
  if (seed % 5 != 0) {
    r->SetLatchedFlags(std::make_unique<PhyCableRecord::LatchedFlagsPage>());
    std::uint8_t bytes[sizeof(PhyCableRecord::LatchedFlagsPage)];
    for (std::uint8_t& byte : bytes) byte = random.Code<std::uint8_t>();
    std::memcpy(static_cast<void*>(r->latched_flags), bytes, sizeof(bytes));
  }
  return r;
}

}  // namespace cable_info::test
