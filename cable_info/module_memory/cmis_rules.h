#pragma once

// Advertisements of CMIS modules that depend on more than a single bit.
//
// Internal; not installed.

#include <cstdint>

#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The byte of the lower page where the eight application descriptors of four bytes begin.
inline constexpr std::uint8_t kFirstDescriptor = 86;
inline constexpr std::uint8_t kDescriptorBytes = 32;

inline constexpr Page kPage2C = PageOf(0x2C);
inline constexpr Page kPage2F = PageOf(0x2F);

/// The bits `high`..`low` of a byte; none when it was not read.
inline std::optional<unsigned> BitsOf(const ModuleImage& image, Page page, std::size_t byte,
                                      unsigned high = 7, unsigned low = 0) {
  const ModuleImage::Half& half = image.HalfOf(page, byte);
  if (!half.Has(byte)) return std::nullopt;
  return half[byte] >> low & ((1U << (high - low + 1U)) - 1U);
}

/// CMIS revision (byte 1: major in the high nibble, minor in the low one) of at least `revision`.
Advertised IsSince(const ModuleImage& image, unsigned revision);
template <unsigned kRevision>
Advertised Since(const ModuleImage& image) {
  return IsSince(image, kRevision);
}

/// Pages other than 00h, monitors, controls and flags: byte 2, bit 7 clear.
Advertised IsPaged(const ModuleImage& image);
template <unsigned kRevision>
Advertised PagedSince(const ModuleImage& image) {
  return Both(IsPaged(image), IsSince(image, kRevision));
}

/// A bit that is defined from a revision on.
template <Page kPage, std::uint8_t kByteNumber, std::uint8_t kBit, unsigned kRevision>
Advertised BitSince(const ModuleImage& image) {
  return Both(IsSince(image, kRevision), AskBit(image, kPage, kByteNumber, kBit));
}

/// The module supports stepped configuration only: lower byte 2.6.
Advertised HasAutoCommissioning(const ModuleImage& image);
/// Flat modules leave their state 0.
Advertised HasModuleState(const ModuleImage& image);
/// Any instance of the command data block: 01h:163.7-6.
Advertised HasCdb(const ModuleImage& image);
/// The host selects the method of TX squelch: 01h:155.5-4.
Advertised HostSelectsSquelch(const ModuleImage& image);
/// The media interface technology, 00h:212, is that of a copper cable.
Advertised IsCopper(const ModuleImage& image);
Advertised IsCopperSince53(const ModuleImage& image);
/// 01h:146-147 are not both 0.
Advertised HasCaseTemperatures(const ModuleImage& image);
/// Buffers for the adaptive input equalization: 01h:161.6-5.
Advertised HasEqBuffers(const ModuleImage& image);

/// A bit of page 04h, of a tunable module (01h:155.6).
Advertised HasTunableBit(const ModuleImage& image, std::uint8_t byte, std::uint8_t bit,
                         unsigned revision);
template <std::uint8_t kByteNumber, std::uint8_t kBit, unsigned kRevision = 0x40>
Advertised HasGrid(const ModuleImage& image) {
  return HasTunableBit(image, kByteNumber, kBit, kRevision);
}

/// A loopback of 13h:128, of a module with diagnostic pages (01h:142.5).
template <std::uint8_t kBit>
Advertised HasLoopback(const ModuleImage& image) {
  return Both(AskBit(image, Page::k01, 142, 5), AskBit(image, Page::k13, 128, kBit));
}

/// An auxiliary monitor (bit `kMonitor` of 01h:159) with the observable given by the value `kValue`
/// of bit `kObservable` of 01h:145.
Advertised HasAuxOf(const ModuleImage& image, unsigned monitor, unsigned observable,
                    unsigned value);
template <unsigned kMonitor, unsigned kObservable, unsigned kValue>
Advertised HasAux(const ModuleImage& image) {
  return HasAuxOf(image, kMonitor, kObservable, kValue);
}

}  // namespace module_memory
}  // namespace cable_info
