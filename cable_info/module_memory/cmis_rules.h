#pragma once

// The rules of CMIS that decoding, conversion to records and page plans share: advertisements that
// depend on more than a single bit, and fields that depend on others.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// \name Application descriptors
/// @{
/// Those of the lower page and page 01h, of a bank of page 1Ch, and of a block of lanes.
inline constexpr unsigned kApplications = 15;
inline constexpr std::size_t kDescriptorSize = 4;
/// The host interface of a descriptor that ends the list.
inline constexpr std::uint8_t kEndOfList = 0xFF;
/// The bytes of the descriptor of application 1 to 15, in lower 86-117 and 01h:223-250; null if
/// they were not read, or if the list ends there.
const std::uint8_t* DescriptorOf(const ModuleImage& image, unsigned number);
/// @}

/// \name The first of the pages of VDM that have a group each
/// @{
inline constexpr std::uint8_t kVdmDescriptors = 0x20;
inline constexpr std::uint8_t kVdmValues = 0x24;
inline constexpr std::uint8_t kVdmThresholds = 0x28;
/// @}

inline constexpr Page kPage0C = PageOf(0x0C);
inline constexpr Page kPage0D = PageOf(0x0D);
inline constexpr Page kPage15 = PageOf(0x15);
inline constexpr Page kPage16 = PageOf(0x16);
inline constexpr Page kPage17 = PageOf(0x17);
inline constexpr Page kPage19 = PageOf(0x19);
inline constexpr Page kPage1C = PageOf(0x1C);
inline constexpr Page kPage1D = PageOf(0x1D);
inline constexpr Page kPage2C = PageOf(0x2C);
inline constexpr Page kPage2F = PageOf(0x2F);
inline constexpr Page kPage34 = PageOf(0x34);
inline constexpr Page kPage35 = PageOf(0x35);
inline constexpr Page kPage60 = PageOf(0x60);
inline constexpr Page kPage61 = PageOf(0x61);
inline constexpr Page kPage62 = PageOf(0x62);
inline constexpr Page kPage6D = PageOf(0x6D);

/// The bits `high`..`low` of a byte; none when it was not read.
inline std::optional<unsigned> BitsOf(const ModuleImage& image, Page page, std::size_t byte,
                                      unsigned high = 7, unsigned low = 0) {
  const ModuleImage::Half& half = image.HalfOf(page, byte);
  if (!half.Has(byte)) return std::nullopt;
  return half[byte] >> low & ((1U << (high - low + 1U)) - 1U);
}

/// CMIS revision (byte 1: major in the high nibble, minor in the low one) of at least `revision`.
inline Advertised IsSince(const ModuleImage& image, unsigned revision) {
  const ModuleImage::Half& lower = image.HalfOf(Page::kLower, 1);
  return lower.Has(1) ? AdvertisedIf(lower[1] >= revision) : Advertised::kUnknown;
}
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

/// Lower byte 2.1-0 applies: the module supports stepped configuration only (2.6), CMIS 5.3 or
/// later.
Advertised HasAutoCommissioning(const ModuleImage& image);
/// Bank `bank` of a module with paged memory.
Advertised HasBankOf(const ModuleImage& image, unsigned bank);
template <unsigned kBank>
Advertised HasBank(const ModuleImage& image) {
  return HasBankOf(image, kBank);
}
/// Flat modules leave their state 0.
Advertised HasModuleState(const ModuleImage& image);
/// Instance `instance` of the command data block: 01h:163.7-6 is at least that, CMIS 4.0 or later.
Advertised HasCdbInstance(const ModuleImage& image, unsigned instance);
template <unsigned kInstance>
Advertised HasCdb(const ModuleImage& image) {
  return HasCdbInstance(image, kInstance);
}
/// The host selects the method of TX squelch: 01h:155.5-4.
Advertised HostSelectsSquelch(const ModuleImage& image);
/// The media interface technology, 00h:212, is that of a cable that states its attenuation: of
/// passive copper, from CMIS 5.3 on also of linear active copper.
Advertised HasAttenuation(const ModuleImage& image);
Advertised HasAttenuationSince53(const ModuleImage& image);
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

/// Lanes may use applications of page 1Ch: 01h:175 is not 0, CMIS 5.3 or later.
Advertised HasApplicationBlocks(const ModuleImage& image);

/// \name The pages of a function
/// @{
inline constexpr Advertisement kTunable =
    By(BitSince<Page::k01, 155, 6, 0x40>, "01h:155.6, CMIS 4.0 or later");
inline constexpr Advertisement kDiagnostics =
    By(BitSince<Page::k01, 142, 5, 0x40>, "01h:142.5, CMIS 4.0 or later");
inline constexpr Advertisement kVdm =
    By(BitSince<Page::k01, 142, 6, 0x40>, "01h:142.6, CMIS 4.0 or later");
inline constexpr Advertisement kTiming =
    By(BitSince<Page::k01, 145, 3, 0x50>, "01h:145.3, CMIS 5.0 or later");
inline constexpr Advertisement kNetworkPath =
    By(BitSince<Page::k01, 142, 7, 0x54>, "01h:142.7, CMIS 5.4 or later");
inline constexpr Advertisement kPageMap =
    By(BitSince<Page::k01, 173, 7, 0x54>, "01h:173.7, CMIS 5.4 or later");
inline constexpr Advertisement kFirmwarePage =
    By(BitSince<Page::k01, 173, 6, 0x54>, "01h:173.6, CMIS 5.4 or later");
inline constexpr Advertisement kLaneExtensions =
    By(BitSince<Page::k01, 174, 7, 0x54>, "01h:174.7, CMIS 5.4 or later");
inline constexpr Advertisement kAcquisitionCounters =
    By(BitSince<Page::k01, 174, 6, 0x54>, "01h:174.6, CMIS 5.4 or later");
inline constexpr Advertisement kLaneThresholds =
    By(BitSince<Page::k01, 174, 5, 0x54>, "01h:174.5, CMIS 5.4 or later");
inline constexpr Advertisement kUnidirectional =
    By(BitSince<Page::k01, 162, 6, 0x52>, "01h:162.6, CMIS 5.2 or later");
inline constexpr Advertisement kHostLaneSwitching =
    By(BitSince<Page::k01, 252, 7, 0x53>, "01h:252.7, CMIS 5.3 or later");
inline constexpr Advertisement kMediaLaneSwitching =
    By(BitSince<Page::k01, 252, 5, 0x54>, "01h:252.5, CMIS 5.4 or later");
inline constexpr Advertisement kApplicationBlocks =
    By(HasApplicationBlocks, "01h:175 is not 0, CMIS 5.3 or later");
/// @}

/// A bit of page 13h, of a module with diagnostic pages.
template <std::uint8_t kByteNumber, std::uint8_t kBit>
Advertised HasDiagnosticsBit(const ModuleImage& image) {
  return Both(Ask(image, kDiagnostics), AskBit(image, Page::k13, kByteNumber, kBit));
}
/// Results of diagnostics are gated: 13h:129.7-6.
Advertised HasGating(const ModuleImage& image);

/// A bit of page 2Fh, of a module with VDM.
template <std::uint8_t kBit, unsigned kRevision>
Advertised HasVdmBit(const ModuleImage& image) {
  return Both(Both(IsSince(image, kRevision), Ask(image, kVdm)), AskBit(image, kPage2F, 128, kBit));
}

/// A firmware of page 0Dh: bit `kBit` of byte 128.
template <std::uint8_t kBit>
Advertised HasFirmware(const ModuleImage& image) {
  return Both(Ask(image, kFirmwarePage), AskBit(image, kPage0D, 128, kBit));
}

/// The coherent pages 34h and 35h: 01h:142.4 from CMIS 5.3 on; before, those of tunable modules.
Advertised HasCoherentPages(const ModuleImage& image);
/// The banks of page 1Ch with normalized application descriptors: 01h:175, of four bits in CMIS
/// 5.3; 0 before.
unsigned ApplicationBanksOf(const ModuleImage& image);
/// The result of a password entry is reported: 01h:251.3-2.
Advertised HasPasswordResult(const ModuleImage& image);

/// An auxiliary monitor (bit `monitor` of 01h:159) with the observable given by the value `value`
/// of bit `observable` of 01h:145.
Advertised HasAuxOf(const ModuleImage& image, unsigned monitor, unsigned observable,
                    unsigned value);
template <unsigned kMonitor, unsigned kObservable, unsigned kValue>
Advertised HasAux(const ModuleImage& image) {
  return HasAuxOf(image, kMonitor, kObservable, kValue);
}

/// The media lanes that the module lacks: bit n is lane n + 1 (00h:210; 0 if it was not read).
inline unsigned MissingMediaLanes(const ModuleImage& image) {
  return BitsOf(image, Page::k00, 210).value_or(0);
}

/// The groups of VDM in a bank: 2Fh:128.1-0, plus 1; none if it was not read.
std::optional<unsigned> VdmGroupsOf(const ModuleImage& image, unsigned bank);

/// The length of single-mode fibre that 01h:132 states as `raw`, in metres: bits 5..0 times 100,
/// 1000 or 10000, or from CMIS 5.3 on a multiplier of 01h:137.7-6. 0 if none is stated; none if the
/// multiplier is not defined or was not read.
std::optional<unsigned> SmfLengthOf(const ModuleImage& image, unsigned raw);

/// The module controls the RX pre-cursor alone, and keeps it in the field of the post-cursor:
/// 01h:162.4-3 is 1.
bool ControlsPreCursorOnly(const ModuleImage& image);

/// \name The multiplier of the bias currents and their thresholds: 01h:160.4-3
/// @{
/// None for the reserved code.
std::optional<unsigned> BiasMultiplierOf(unsigned code);
/// Pages with bias currents, or their thresholds, were read.
bool HasBiasPages(const ModuleImage& image);
inline constexpr std::string_view kMissingBiasMultiplier =
    "page 01h with the multiplier of the bias currents is missing; it is taken as 1";
inline constexpr std::string_view kReservedBiasMultiplier =
    "the multiplier of the bias currents has a reserved code; it is taken as 1";
/// @}

}  // namespace module_memory
}  // namespace cable_info
