#pragma once

// Builds memories of modules, field by field. Places are written as the standards write them:
// a page, and a byte of it.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_image.h"

namespace module_images {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::module_memory::DumpByte;
using cable_info::module_memory::DumpBytes;

struct Place {
  Page page;
  std::size_t byte;
};

/// The memory of a module, all zero except the bytes that are put into it.
class ImageBuilder {
 public:
  explicit ImageBuilder(std::vector<Place> halves) : halves_(std::move(halves)) {
    for (const Place& half : halves_) bytes_[half.page].resize(ModuleImage::kWhole);
  }

  ImageBuilder& Byte(Place place, unsigned value) {
    bytes_.at(place.page).at(place.byte) = static_cast<std::uint8_t>(value);
    return *this;
  }
  ImageBuilder& Bytes(Place place, std::initializer_list<unsigned> values) {
    for (const unsigned value : values) Byte({place.page, place.byte++}, value);
    return *this;
  }
  ImageBuilder& Word(Place place, unsigned value) {
    return Bytes(place, {value >> 8, value & 0xFF});
  }
  ImageBuilder& Words(Place place, std::initializer_list<unsigned> values) {
    for (const unsigned value : values) {
      Word(place, value);
      place.byte += 2;
    }
    return *this;
  }
  /// Filled with blanks to `size`.
  ImageBuilder& Text(Place place, std::size_t size, std::string_view text) {
    for (std::size_t i = 0; i < size; ++i) {
      const char c = i < text.size() ? text[i] : ' ';
      Byte({place.page, place.byte + i}, static_cast<unsigned char>(c));
    }
    return *this;
  }
  /// Writes the sum of bytes `first` to `last` of the page after them.
  ImageBuilder& Sum(Page page, std::size_t first, std::size_t last) {
    unsigned sum = 0;
    for (std::size_t i = first; i <= last; ++i) sum += bytes_.at(page).at(i);
    return Byte({page, last + 1}, sum & 0xFF);
  }
  ImageBuilder& Fill(Place half, unsigned value) {
    for (std::size_t i = 0; i < ModuleImage::kHalf; ++i) {
      Byte({half.page, half.byte + i}, value);
    }
    return *this;
  }

  /// The halves of its pages in order.
  DumpBytes Image() const {
    DumpBytes image;
    for (const Place& half : halves_) {
      for (std::size_t i = 0; i < ModuleImage::kHalf; ++i) {
        image.emplace_back(bytes_.at(half.page).at(half.byte + i));
      }
    }
    return image;
  }
  /// The first `size` bytes of it.
  DumpBytes Image(std::size_t size) const {
    DumpBytes image = Image();
    image.resize(size);
    return image;
  }

 private:
  std::vector<Place> halves_;
  std::map<Page, std::vector<std::uint8_t>> bytes_;
};

inline constexpr Place kLowerHalf = {Page::kLower, 0};

namespace qsfp {

inline constexpr Place kIdentifier = {Page::kLower, 0};
inline constexpr Place kStatus = {Page::kLower, 2};  // bit 2: flat memory
inline constexpr Place kLos = {Page::kLower, 3};
inline constexpr Place kFaults = {Page::kLower, 4};
inline constexpr Place kLol = {Page::kLower, 5};
inline constexpr Place kTemperatureAlarms = {Page::kLower, 6};
inline constexpr Place kVoltageAlarms = {Page::kLower, 7};
inline constexpr Place kRxPowerAlarms = {Page::kLower, 9};
inline constexpr Place kTxBiasAlarms = {Page::kLower, 11};
inline constexpr Place kTxPowerAlarms = {Page::kLower, 13};
inline constexpr Place kTemperature = {Page::kLower, 22};
inline constexpr Place kVoltage = {Page::kLower, 26};
inline constexpr Place kRxPower = {Page::kLower, 34};
inline constexpr Place kTxBias = {Page::kLower, 42};
inline constexpr Place kTxPower = {Page::kLower, 50};
inline constexpr Place kCdrControl = {Page::kLower, 98};
inline constexpr Place kMaximumPower = {Page::kLower, 107};
inline constexpr Place kIdentifierCopy = {Page::k00, 128};
inline constexpr Place kExtendedIdentifier = {Page::k00, 129};
inline constexpr Place kConnector = {Page::k00, 130};
inline constexpr Place kRate = {Page::k00, 140};
inline constexpr Place kLengthSmf = {Page::k00, 142};
inline constexpr Place kLengthOm3 = {Page::k00, 143};
inline constexpr Place kLengthOm2 = {Page::k00, 144};
inline constexpr Place kLengthOm1 = {Page::k00, 145};
inline constexpr Place kLengthCable = {Page::k00, 146};
inline constexpr Place kTechnology = {Page::k00, 147};
inline constexpr Place kVendor = {Page::k00, 148};
inline constexpr Place kInfiniBand = {Page::k00, 164};
inline constexpr Place kOui = {Page::k00, 165};
inline constexpr Place kPartNumber = {Page::k00, 168};
inline constexpr Place kRevision = {Page::k00, 184};
inline constexpr Place kAttenuation = {Page::k00, 186};
inline constexpr Place kExtendedCompliance = {Page::k00, 192};
inline constexpr Place kSerialNumber = {Page::k00, 196};
inline constexpr Place kDate = {Page::k00, 212};
inline constexpr Place kLot = {Page::k00, 218};
inline constexpr Place kDiagnostics = {Page::k00, 220};
inline constexpr Place kExtendedRate = {Page::k00, 222};
inline constexpr Place kTemperatureThresholds = {Page::k03, 128};
inline constexpr Place kVoltageThresholds = {Page::k03, 144};
inline constexpr Place kPowerThresholds = {Page::k03, 176};
inline constexpr Place kFreeze = {Page::k03, 233};
inline constexpr Place kInputEq = {Page::k03, 234};
inline constexpr Place kEmphasis = {Page::k03, 236};
inline constexpr Place kAmplitude = {Page::k03, 238};
inline constexpr Place kOutputDisable = {Page::k03, 241};

inline ImageBuilder Blank(unsigned identifier, bool is_flat) {
  std::vector<Place> halves = {kLowerHalf, {Page::k00, 128}};
  if (!is_flat) halves.push_back({Page::k03, 128});
  ImageBuilder memory(halves);
  memory.Byte(kIdentifier, identifier).Byte(kIdentifierCopy, identifier);
  return memory.Byte(kStatus, is_flat ? 0x04 : 0x00);
}

inline ImageBuilder Sealed(ImageBuilder memory) {
  return memory.Sum(Page::k00, 128, 190).Sum(Page::k00, 192, 222);
}

/// A 100G optic with every field set.
inline ImageBuilder Optic() {
  ImageBuilder memory = Blank(0x11, false);
  memory.Byte(kLos, 0x21).Byte(kFaults, 0x43).Byte(kLol, 0x84).Byte(kTemperatureAlarms, 0xA1);
  memory.Byte(kVoltageAlarms, 0x50).Word(kRxPowerAlarms, 0x8421).Word(kTxBiasAlarms, 0x1248);
  memory.Word(kTxPowerAlarms, 0xC003).Word(kTemperature, 0x1A80).Word(kVoltage, 32989);
  memory.Words(kRxPower, {4643, 9012, 0, 65535}).Words(kTxBias, {5140, 4369, 8738, 13107});
  memory.Words(kTxPower, {16705, 16962, 17219, 17476}).Byte(kCdrControl, 0xF3);
  memory.Byte(kExtendedIdentifier, 0xCA).Byte(kConnector, 0x0C);
  memory.Byte(kRate, 255).Byte(kExtendedRate, 103);
  memory.Byte(kLengthOm3, 35).Byte(kLengthCable, 50).Byte(kTechnology, 0x06);
  memory.Text(kVendor, 16, "Acme Optics").Byte(kInfiniBand, 0x1F).Bytes(kOui, {0x00, 0x05, 0xA1});
  memory.Text(kPartNumber, 16, "AO-Q28-SR4").Text(kRevision, 2, "A1");
  memory.Bytes(kAttenuation, {0x42, 0x68, 0x07, 0xD0}).Byte(kExtendedCompliance, 0x02);
  memory.Text(kSerialNumber, 16, "KS2408VS01234").Text(kDate, 6, "240315").Text(kLot, 2, "L7");
  memory.Byte(kDiagnostics, 0x0C);
  memory.Words(kTemperatureThresholds, {0x4B00, 0xFB00, 0x4600, 0x0000});
  memory.Words(kVoltageThresholds, {36300, 29700, 34650, 31350});
  memory.Byte(kFreeze, 0xF8).Words(kInputEq, {0x1234}).Words(kEmphasis, {0x5678});
  memory.Words(kAmplitude, {0x9ABC}).Byte(kOutputDisable, 0x5A);
  return Sealed(memory);
}

/// A copper cable of 3 m.
inline ImageBuilder Copper() {
  ImageBuilder memory = Blank(0x11, true);
  memory.Byte(kConnector, 0x23).Byte(kLengthCable, 3).Byte(kTechnology, 0xA0);
  memory.Text(kVendor, 16, "Copperworks").Text(kPartNumber, 16, "CW-Q28-3M");
  memory.Text(kRevision, 2, "B").Text(kSerialNumber, 16, "CW23110077");
  memory.Bytes(kAttenuation, {7, 11, 13, 19}).Byte(kRate, 255).Byte(kExtendedRate, 103);
  return Sealed(memory);
}

}  // namespace qsfp

namespace cmis {

inline constexpr Place kIdentifier = {Page::kLower, 0};
inline constexpr Place kRevisionOfCmis = {Page::kLower, 1};
inline constexpr Place kStatus = {Page::kLower, 2};  // bit 7: flat memory
inline constexpr Place kModuleFlags = {Page::kLower, 9};
inline constexpr Place kTemperature = {Page::kLower, 14};
inline constexpr Place kVoltage = {Page::kLower, 16};
inline constexpr Place kFirmware = {Page::kLower, 39};
inline constexpr Place kApplications = {Page::kLower, 86};
inline constexpr Place kIdentifierCopy = {Page::k00, 128};
inline constexpr Place kVendor = {Page::k00, 129};
inline constexpr Place kOui = {Page::k00, 145};
inline constexpr Place kPartNumber = {Page::k00, 148};
inline constexpr Place kRevision = {Page::k00, 164};
inline constexpr Place kSerialNumber = {Page::k00, 166};
inline constexpr Place kDate = {Page::k00, 182};
inline constexpr Place kLot = {Page::k00, 188};
inline constexpr Place kPowerClass = {Page::k00, 200};
inline constexpr Place kMaxPower = {Page::k00, 201};
inline constexpr Place kCableLength = {Page::k00, 202};
inline constexpr Place kConnector = {Page::k00, 203};
inline constexpr Place kAttenuation = {Page::k00, 204};
inline constexpr Place kTechnology = {Page::k00, 212};
inline constexpr Place kLengthSmf = {Page::k01, 132};
inline constexpr Place kLengthsOm5ToOm2 = {Page::k01, 133};
inline constexpr Place kRxPowerType = {Page::k01, 151};
inline constexpr Place kMonitors = {Page::k01, 160};
inline constexpr Place kTxControls = {Page::k01, 161};
inline constexpr Place kRxControls = {Page::k01, 162};
inline constexpr Place kTemperatureThresholds = {Page::k02, 128};
inline constexpr Place kVoltageThresholds = {Page::k02, 136};
inline constexpr Place kTxPowerThresholds = {Page::k02, 176};
inline constexpr Place kTxBiasThresholds = {Page::k02, 184};
inline constexpr Place kRxPowerThresholds = {Page::k02, 192};
inline constexpr Place kTxFault = {Page::k11, 135};
inline constexpr Place kTxFlags = {Page::k11, 136};  // LOS, LOL, EQ failure, power, bias
inline constexpr Place kRxFlags = {Page::k11, 147};  // LOS, LOL, power
inline constexpr Place kTxPower = {Page::k11, 154};
inline constexpr Place kTxBias = {Page::k11, 170};
inline constexpr Place kRxPower = {Page::k11, 186};
inline constexpr Place kTxInputEq = {Page::k11, 217};
inline constexpr Place kCdrEnable = {Page::k11, 221};  // TX, RX
inline constexpr Place kPreCursor = {Page::k11, 223};
inline constexpr Place kPostCursor = {Page::k11, 227};
inline constexpr Place kAmplitude = {Page::k11, 231};

inline ImageBuilder Blank(unsigned identifier, bool is_flat) {
  std::vector<Place> halves = {kLowerHalf, {Page::k00, 128}};
  if (!is_flat) {
    for (const Page page : {Page::k01, Page::k02, Page::k10, Page::k11}) {
      halves.push_back({page, 128});
    }
  }
  ImageBuilder memory(halves);
  memory.Byte(kIdentifier, identifier).Byte(kIdentifierCopy, identifier);
  return memory.Byte(kRevisionOfCmis, 0x40).Byte(kStatus, is_flat ? 0x80 : 0x00);
}

inline ImageBuilder SealedFlat(ImageBuilder memory) { return memory.Sum(Page::k00, 128, 221); }

inline ImageBuilder Sealed(ImageBuilder memory) {
  return SealedFlat(std::move(memory)).Sum(Page::k01, 130, 254).Sum(Page::k02, 128, 254);
}

/// A 400G optic with every field set.
inline ImageBuilder Optic(unsigned identifier = 0x18) {
  ImageBuilder memory = Blank(identifier, false);
  memory.Byte(kModuleFlags, 0x5A).Word(kTemperature, 0x2D40).Word(kVoltage, 32578);
  memory.Bytes(kFirmware, {2, 10});
  memory.Bytes(kApplications, {0x11, 0x1C, 0x88, 0x01, 0x30, 0, 0, 0, 0x32, 0, 0, 0, 0xFF});
  memory.Byte({Page::kLower, 86 + 16}, 0x2C);  // after the end of the list
  memory.Text(kVendor, 16, "Acme Optics").Bytes(kOui, {0x9A, 0xAD, 0xCA});
  memory.Text(kPartNumber, 16, "AO-DD-DR4").Text(kRevision, 2, "2B");
  memory.Text(kSerialNumber, 16, "AO4711").Text(kDate, 6, "230704").Word(kLot, 0x4C37);
  memory.Byte(kPowerClass, 0xA0).Byte(kMaxPower, 38).Byte(kCableLength, 0x00);
  memory.Byte(kConnector, 0x0C).Byte(kTechnology, 0x06);
  memory.Byte(kLengthSmf, 0x45).Bytes(kLengthsOm5ToOm2, {75, 50, 35, 82});
  memory.Byte(kRxPowerType, 0x10).Byte(kMonitors, 0x0F);  // multiplier 2
  memory.Byte(kTxControls, 0x09).Byte(kRxControls, 0x3C);
  memory.Words(kTemperatureThresholds, {0x4B00, 0xFB00, 0x4600, 0x0000});
  memory.Words(kVoltageThresholds, {36300, 29700, 34650, 31350});
  memory.Words(kTxPowerThresholds, {46774, 1905, 40000, 2000});
  memory.Words(kTxBiasThresholds, {30000, 7500, 28000, 8000});
  memory.Words(kRxPowerThresholds, {35481, 501, 30000, 600});
  memory.Byte(kTxFault, 0xFF);
  memory.Bytes(kTxFlags, {1, 2, 4, 8, 16, 32, 64, 128, 3, 5, 9});
  memory.Bytes(kRxFlags, {17, 33, 65, 129, 6, 10});
  memory.Words(kTxPower, {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008});
  memory.Words(kTxBias, {2001, 2002, 2003, 2004, 2005, 2006, 2007, 40000});
  memory.Words(kRxPower, {3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008});
  memory.Byte(kTxInputEq, 0x74).Bytes(kCdrEnable, {0xFE, 0x7F});
  memory.Byte(kPreCursor, 0x52).Byte(kPostCursor, 0x31).Byte(kAmplitude, 0x63);
  return Sealed(memory);
}

/// A copper cable of 1.5 m.
inline ImageBuilder Copper() {
  ImageBuilder memory = Blank(0x19, true);
  memory.Byte(kConnector, 0x23).Byte(kCableLength, 0x0F).Byte(kTechnology, 0x0A);
  memory.Text(kVendor, 16, "Copperworks").Text(kPartNumber, 16, "CW-O-1M5");
  memory.Text(kRevision, 2, "C").Text(kSerialNumber, 16, "CW0815");
  memory.Bytes(kAttenuation, {5, 6, 8, 12}).Byte(kApplications, 0xFF);
  return SealedFlat(std::move(memory));
}

}  // namespace cmis

namespace sfp {

inline constexpr Place kIdentifier = {Page::kA0, 0};
inline constexpr Place kConnector = {Page::kA0, 2};
inline constexpr Place kCableBits = {Page::kA0, 8};  // bit 2 passive, 3 active
inline constexpr Place kRate = {Page::kA0, 12};
inline constexpr Place kSmfKilometres = {Page::kA0, 14};
inline constexpr Place kSmfHundredMetres = {Page::kA0, 15};
inline constexpr Place kLengthOm2 = {Page::kA0, 16};
inline constexpr Place kLengthOm1 = {Page::kA0, 17};
inline constexpr Place kLengthOm4OrCable = {Page::kA0, 18};
inline constexpr Place kLengthOm3 = {Page::kA0, 19};
inline constexpr Place kVendor = {Page::kA0, 20};
inline constexpr Place kExtendedCompliance = {Page::kA0, 36};
inline constexpr Place kOui = {Page::kA0, 37};
inline constexpr Place kPartNumber = {Page::kA0, 40};
inline constexpr Place kRevision = {Page::kA0, 56};
inline constexpr Place kWavelength = {Page::kA0, 60};
inline constexpr Place kExtendedRate = {Page::kA0, 66};
inline constexpr Place kSerialNumber = {Page::kA0, 68};
inline constexpr Place kDate = {Page::kA0, 84};
inline constexpr Place kLot = {Page::kA0, 90};
inline constexpr Place kDiagnostics = {Page::kA0, 92};
inline constexpr Place kTemperatureThresholds = {Page::kA2, 0};
inline constexpr Place kVoltageThresholds = {Page::kA2, 8};
inline constexpr Place kTxBiasThresholds = {Page::kA2, 16};
inline constexpr Place kTxPowerThresholds = {Page::kA2, 24};
inline constexpr Place kRxPowerThresholds = {Page::kA2, 32};
inline constexpr Place kRxPowerCalibration = {Page::kA2, 56};  // of raw^4 to raw^0
inline constexpr Place kTxBiasCalibration = {Page::kA2, 76};
inline constexpr Place kTxPowerCalibration = {Page::kA2, 80};
inline constexpr Place kTemperatureCalibration = {Page::kA2, 84};
inline constexpr Place kVoltageCalibration = {Page::kA2, 88};
inline constexpr Place kReadings = {Page::kA2, 96};  // temperature, voltage, bias, TX, RX
inline constexpr Place kStatus = {Page::kA2, 110};
inline constexpr Place kAlarms = {Page::kA2, 112};
inline constexpr Place kWarnings = {Page::kA2, 116};

inline ImageBuilder Blank(bool has_a2) {
  std::vector<Place> halves = {{Page::kA0, 0}, {Page::kA0, 128}};
  if (has_a2) {
    halves.push_back({Page::kA2, 0});
    halves.push_back({Page::kA2, 128});
  }
  return ImageBuilder(halves).Byte(kIdentifier, 0x03);
}

inline ImageBuilder SealedA0(ImageBuilder memory) {
  return memory.Sum(Page::kA0, 0, 62).Sum(Page::kA0, 64, 94);
}

inline ImageBuilder Sealed(ImageBuilder memory) {
  return SealedA0(std::move(memory)).Sum(Page::kA2, 0, 94);
}

/// A 10G optic with internal calibration and every field set.
inline ImageBuilder Optic() {
  ImageBuilder memory = Blank(true);
  memory.Byte(kConnector, 0x07).Byte(kRate, 103).Byte(kSmfKilometres, 10);
  memory.Byte(kSmfHundredMetres, 100).Byte(kLengthOm2, 8).Byte(kLengthOm1, 3);
  memory.Byte(kLengthOm4OrCable, 40).Byte(kLengthOm3, 30);
  memory.Text(kVendor, 16, "Acme Optics").Byte(kExtendedCompliance, 0x02);
  memory.Bytes(kOui, {0x00, 0x17, 0x6A}).Text(kPartNumber, 16, "AO-SFP-LR");
  memory.Text(kRevision, 4, "B4").Word(kWavelength, 1310).Byte(kExtendedRate, 42);
  memory.Text(kSerialNumber, 16, "AO1060").Text(kDate, 6, "150703").Word(kLot, 0x3031);
  memory.Byte(kDiagnostics, 0x68);
  memory.Words(kTemperatureThresholds, {0x5A00, 0xF600, 0x5500, 0xFB00});
  memory.Words(kVoltageThresholds, {36300, 29700, 34600, 31300});
  memory.Words(kTxBiasThresholds, {50000, 1000, 40000, 2000});
  memory.Words(kTxPowerThresholds, {13464, 1267, 11220, 1584});
  memory.Words(kRxPowerThresholds, {20000, 158, 10000, 316});
  memory.Words(kReadings, {0x228A, 32893, 17997, 5171, 2});
  memory.Byte(kStatus, 0x02).Bytes(kAlarms, {0x96, 0x40}).Bytes(kWarnings, {0x69, 0x80});
  return Sealed(memory);
}

/// A passive copper cable of 2 m.
inline ImageBuilder Copper() {
  ImageBuilder memory = Blank(false);
  memory.Byte(kConnector, 0x21).Byte(kCableBits, 0x04).Byte(kRate, 103);
  memory.Byte(kLengthOm4OrCable, 2).Byte(kLengthOm3, 0x42);
  memory.Text(kVendor, 16, "Copperworks").Text(kPartNumber, 16, "CW-SFP-2M");
  memory.Text(kRevision, 4, "A").Text(kSerialNumber, 16, "CW1").Text(kDate, 6, "190101");
  return SealedA0(memory);
}

}  // namespace sfp

}  // namespace module_images
