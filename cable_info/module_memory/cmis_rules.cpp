#include "cable_info/module_memory/cmis_rules.h"

#include <iterator>

#include "cable_info/module_memory/cmis_lanes.h"
#include "cable_info/shared_decoders.h"

namespace cable_info::module_memory {

namespace {

// A property derived from a number; none if the number was not read.
template <typename Predicate>
Advertised AdvertisedBy(std::optional<unsigned> number, Predicate predicate) {
  if (!number) return Advertised::kUnknown;
  return AdvertisedIf(predicate(*number));
}

bool IsNotZero(unsigned number) { return number != 0; }

}  // namespace

const std::uint8_t* DescriptorOf(const ModuleImage& image, unsigned number) {
  constexpr std::size_t kFirst = 86;
  constexpr std::size_t kFirstUpper = 223;
  constexpr unsigned kLowerDescriptors = 8;
  const bool is_lower = number <= kLowerDescriptors;
  const std::size_t byte = is_lower
                               ? kFirst + kDescriptorSize * (number - 1)
                               : kFirstUpper + kDescriptorSize * (number - kLowerDescriptors - 1);
  const ModuleImage::Half& half = image.HalfOf(is_lower ? Page::kLower : Page::k01, byte);
  const bool is_end = !half.Has(byte, kDescriptorSize) || half[byte] == kEndOfList;
  return is_end ? nullptr : half.From(byte);
}

Advertised IsPaged(const ModuleImage& image) {
  return AdvertisedBy(BitsOf(image, Page::kLower, 2, 7, 7),
                      [](unsigned is_flat) { return is_flat == 0; });
}

Advertised HasBankOf(const ModuleImage& image, unsigned bank) {
  return Both(IsPaged(image), AdvertisedIf(BanksOf(image) > bank));
}

Advertised HasAutoCommissioning(const ModuleImage& image) {
  return Both(IsSince(image, 0x53), AskBit(image, Page::kLower, 2, 6));
}

Advertised HasModuleState(const ModuleImage& image) {
  return Either(IsPaged(image), AdvertisedBy(BitsOf(image, Page::kLower, 3, 3, 1), IsNotZero));
}

Advertised HasCdbInstance(const ModuleImage& image, unsigned instance) {
  const Advertised has_instance =
      AdvertisedBy(BitsOf(image, Page::k01, 163, 7, 6),
                   [instance](unsigned instances) { return instances >= instance; });
  return Both(IsSince(image, 0x40), has_instance);
}

Advertised HostSelectsSquelch(const ModuleImage& image) {
  return AdvertisedBy(BitsOf(image, Page::k01, 155, 5, 4),
                      [](unsigned method) { return method == 3; });
}

Advertised HasAttenuation(const ModuleImage& image) {
  const std::optional<unsigned> technology = BitsOf(image, Page::k00, 212);
  const Advertised is_linear = AdvertisedBy(technology, decode::IsLinearCopperTechnology);
  return Either(AdvertisedBy(technology, decode::IsPassiveCopperTechnology),
                Both(is_linear, IsSince(image, 0x53)));
}

Advertised HasAttenuationSince53(const ModuleImage& image) {
  return Both(IsSince(image, 0x53), HasAttenuation(image));
}

Advertised HasCaseTemperatures(const ModuleImage& image) {
  return Either(AdvertisedBy(BitsOf(image, Page::k01, 146), IsNotZero),
                AdvertisedBy(BitsOf(image, Page::k01, 147), IsNotZero));
}

Advertised HasEqBuffers(const ModuleImage& image) {
  return AdvertisedBy(BitsOf(image, Page::k01, 161, 6, 5), IsNotZero);
}

Advertised HasGating(const ModuleImage& image) {
  return Both(Ask(image, kDiagnostics),
              AdvertisedBy(BitsOf(image, Page::k13, 129, 7, 6), IsNotZero));
}

Advertised HasCoherentPages(const ModuleImage& image) {
  constexpr unsigned kFirstAdvertising = 0x53;
  const bool is_advertised = IsSince(image, kFirstAdvertising) == Advertised::kYes;
  return is_advertised ? AskBit(image, Page::k01, 142, 4) : Ask(image, kTunable);
}

unsigned ApplicationBanksOf(const ModuleImage& image) {
  constexpr unsigned kFourBits = 0xF;
  if (IsSince(image, 0x53) != Advertised::kYes) return 0;
  const unsigned banks = BitsOf(image, Page::k01, 175).value_or(0);
  return IsSince(image, 0x54) == Advertised::kYes ? banks : banks & kFourBits;
}

Advertised HasApplicationBlocks(const ModuleImage& image) {
  return Both(IsSince(image, 0x53), AdvertisedBy(BitsOf(image, Page::k01, 175), [&image](unsigned) {
                return ApplicationBanksOf(image) != 0;
              }));
}

Advertised HasPasswordResult(const ModuleImage& image) {
  constexpr unsigned kSupported = 2;
  return Both(IsSince(image, 0x53),
              AdvertisedBy(BitsOf(image, Page::k01, 251, 3, 2),
                           [](unsigned support) { return support == kSupported; }));
}

Advertised HasTunableBit(const ModuleImage& image, std::uint8_t byte, std::uint8_t bit,
                         unsigned revision) {
  const Advertised is_tunable = Both(AskBit(image, Page::k01, 155, 6), IsSince(image, revision));
  if (is_tunable == Advertised::kNo) return is_tunable;  // as most modules
  return Both(is_tunable, AskBit(image, Page::k04, byte, bit));
}

Advertised HasAuxOf(const ModuleImage& image, unsigned monitor, unsigned observable,
                    unsigned value) {
  const Advertised measures = AdvertisedBy(BitsOf(image, Page::k01, 145, observable, observable),
                                           [value](unsigned own) { return own == value; });
  return Both(AskBit(image, Page::k01, 159, monitor), measures);
}

std::optional<unsigned> VdmGroupsOf(const ModuleImage& image, unsigned bank) {
  const std::optional<unsigned> last = BitsOf(image, InBank(kPage2F, bank), 128, 1, 0);
  return last ? std::optional<unsigned>(*last + 1) : std::nullopt;
}

std::optional<unsigned> SmfLengthOf(const ModuleImage& image, unsigned raw) {
  constexpr unsigned kMetres[] = {100, 1000, 10000};
  constexpr unsigned kLongMetres[] = {50000, 100000, 200000, 500000};
  const unsigned base = raw & 0x3FU;
  const unsigned multiplier = raw >> 6U;
  if (base == 0) return 0;
  if (multiplier < std::size(kMetres)) return base * kMetres[multiplier];
  const std::optional<unsigned> code = BitsOf(image, Page::k01, 137, 7, 6);
  if (!code || IsSince(image, 0x53) != Advertised::kYes) return std::nullopt;
  return base * kLongMetres[*code];
}

bool ControlsPreCursorOnly(const ModuleImage& image) {
  constexpr unsigned kPreCursorOnly = 1;
  return BitsOf(image, Page::k01, 162, 4, 3) == kPreCursorOnly;
}

std::optional<unsigned> BiasMultiplierOf(unsigned code) {
  constexpr unsigned kMultipliers[] = {1, 2, 4};
  return code < std::size(kMultipliers) ? std::optional<unsigned>(kMultipliers[code])
                                        : std::nullopt;
}

bool HasBiasPages(const ModuleImage& image) { return image.Has(Page::k02) || image.Has(Page::k11); }

}  // namespace cable_info::module_memory
