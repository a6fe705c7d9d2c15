// The samples of a CMIS module: versatile diagnostics monitoring (VDM), pages 20h to 2Fh, and the
// counters and link monitors of coherent modules, pages 34h and 35h.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "cable_info/module_memory/cmis_decode.h"
#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/cmis_vdm.h"
#include "cable_info/module_memory/samples.h"

namespace cable_info::module_memory {

// ---------------------------------------------------------------------------------------------
// Versatile diagnostics monitoring, pages 20h to 2Fh
// ---------------------------------------------------------------------------------------------

namespace {

constexpr unsigned kVdmGroups = 4;
constexpr unsigned kVdmInstances = 64;

// An instance of a group: the bank and number of its pages, and its place in them.
struct VdmPlace {
  unsigned bank;
  std::uint8_t group;    // from 0
  std::size_t instance;  // from 0
};

Monitor VdmMonitor(const ModuleImage& image, const VdmObservable& observable,
                   unsigned threshold_set, VdmPlace at) {
  constexpr std::size_t kThresholdSetSize = 8;
  constexpr std::size_t kFlagBytes = 32;  // of a group
  const auto page = [&](std::uint8_t first) -> const ModuleImage::Half& {
    return image.HalfOf(PageOf(static_cast<std::uint8_t>(first + at.group), at.bank), 128);
  };
  return ReadSample(
      {page(kVdmValues), 128 + 2 * at.instance, page(kVdmThresholds),
       128 + kThresholdSetSize * threshold_set, image.HalfOf(InBank(kPage2C, at.bank), 128),
       128 + kFlagBytes * at.group + at.instance / 2,
       at.instance % 2 != 0 ? Nibble::kHigh : Nibble::kLow, FlagOrder::kUp},
      observable);
}

void DecodeVdmInstance(Decoding& to, unsigned descriptor, VdmPlace at) {
  constexpr unsigned kWholeModule = 15;
  constexpr unsigned kExternalLaserPower = 84;  // of a laser, not of a lane
  const unsigned type = descriptor & 0xFFU;
  if (type == 0) return;
  const unsigned location = descriptor >> 8U & 0xFU;
  const bool is_defined = IsSince(to.image, FirstRevisionOfVdm(type)) != Advertised::kNo;
  const VdmObservable* observable = is_defined ? FindVdmObservable(type) : nullptr;
  const unsigned lane = location == kWholeModule ? 0 : at.bank * kLanesPerBank + location + 1;
  const Monitor monitor = VdmMonitor(
      to.image, observable != nullptr ? *observable : kUnknownObservable, descriptor >> 12U, at);
  VdmSample sample = SampleOf(observable, type, lane, monitor);
  if (observable != nullptr && type == kExternalLaserPower && lane != 0) {
    sample.instance = "laser " + std::to_string(lane);
    sample.lane = 0;
  }
  to.info.vdm.push_back(std::move(sample));
}

bool HasVdmPages(const ModuleImage& image) {
  const auto& halves = image.halves();
  return std::any_of(halves.begin(), halves.end(), [](const ModuleImage::Half& half) {
    return IsUpperPage(half.page()) && (NumberOf(half.page()) & 0xF0U) == kVdmDescriptors &&
           !half.IsEmpty();
  });
}

}  // namespace

void DecodeVdm(Decoding& to, const LaneLayout& layout) {
  if (!HasVdmPages(to.image)) return;
  if (Ask(to.image, kVdm) == Advertised::kNo) {
    return to.Warn("pages 20h to 2Fh (VDM) were read, but the module does not advertise them");
  }
  for (unsigned bank = 0; bank < layout.banks; ++bank) {
    const unsigned groups = VdmGroupsOf(to.image, bank).value_or(kVdmGroups);
    for (std::uint8_t group = 0; group < groups; ++group) {
      const Page page = PageOf(static_cast<std::uint8_t>(kVdmDescriptors + group), bank);
      const ModuleImage::Half& half = to.image.HalfOf(page, 128);
      for (std::size_t i = 0; i < kVdmInstances; ++i) {
        if (!half.Has(128 + 2 * i, 2)) continue;
        DecodeVdmInstance(to, RawNumber(half, 128 + 2 * i, kWord), {bank, group, i});
      }
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Coherent modules, pages 34h and 35h; bank n is media lane n + 1
// ---------------------------------------------------------------------------------------------

namespace {

// A number of the coherent pages.
struct CoherentNumber {
  std::string_view name;
  std::string_view unit;
  std::uint8_t byte;
  std::uint8_t bytes;
  bool is_signed;
  double multiply;
  double divide;
};

// Page 34h: the last interval of the FEC performance monitoring.
constexpr CoherentNumber kCoherentCounters[] = {
    {"fec_received_bits", "bits", 128, 8, false, 1, 1},
    {"fec_bits_per_subinterval", "bits", 136, 8, false, 1, 1},
    {"fec_corrected_bits", "bits", 144, 8, false, 1, 1},
    {"fec_corrected_bits_minimum", "bits", 152, 8, false, 1, 1},
    {"fec_corrected_bits_maximum", "bits", 160, 8, false, 1, 1},
    {"fec_received_frames", "frames", 168, 4, false, 1, 1},
    {"fec_frames_per_subinterval", "frames", 172, 4, false, 1, 1},
    {"fec_uncorrectable_frames", "frames", 176, 4, false, 1, 1},
    {"fec_uncorrectable_frames_minimum", "frames", 180, 4, false, 1, 1},
    {"fec_uncorrectable_frames_maximum", "frames", 184, 4, false, 1, 1},
};

// Page 35h: averages, minima and maxima of the link monitors.
constexpr CoherentNumber kCoherentMonitors[] = {
    {"chromatic_dispersion_average", "ps/nm", 128, 4, true, 1, 1},
    {"chromatic_dispersion_minimum", "ps/nm", 132, 4, true, 1, 1},
    {"chromatic_dispersion_maximum", "ps/nm", 136, 4, true, 1, 1},
    {"differential_group_delay_average", "ps", 140, 2, false, 1, 100},
    {"differential_group_delay_minimum", "ps", 142, 2, false, 1, 100},
    {"differential_group_delay_maximum", "ps", 144, 2, false, 1, 100},
    {"sopmd_average", "ps^2", 146, 2, false, 1, 100},
    {"sopmd_minimum", "ps^2", 148, 2, false, 1, 100},
    {"sopmd_maximum", "ps^2", 150, 2, false, 1, 100},
    {"polarization_dependent_loss_average", "dB", 152, 2, false, 1, 10},
    {"polarization_dependent_loss_minimum", "dB", 154, 2, false, 1, 10},
    {"polarization_dependent_loss_maximum", "dB", 156, 2, false, 1, 10},
    {"osnr_average", "dB", 158, 2, false, 1, 10},
    {"osnr_minimum", "dB", 160, 2, false, 1, 10},
    {"osnr_maximum", "dB", 162, 2, false, 1, 10},
    {"esnr_average", "dB", 164, 2, false, 1, 10},
    {"esnr_minimum", "dB", 166, 2, false, 1, 10},
    {"esnr_maximum", "dB", 168, 2, false, 1, 10},
    {"carrier_frequency_offset_average", "MHz", 170, 2, true, 1, 1},
    {"carrier_frequency_offset_minimum", "MHz", 172, 2, true, 1, 1},
    {"carrier_frequency_offset_maximum", "MHz", 174, 2, true, 1, 1},
    {"error_vector_magnitude_average", "%", 176, 2, false, 100, 65535},
    {"error_vector_magnitude_minimum", "%", 178, 2, false, 100, 65535},
    {"error_vector_magnitude_maximum", "%", 180, 2, false, 100, 65535},
    {"tx_power_average", "dBm", 182, 2, true, 1, 100},
    {"tx_power_minimum", "dBm", 184, 2, true, 1, 100},
    {"tx_power_maximum", "dBm", 186, 2, true, 1, 100},
    {"rx_total_power_average", "dBm", 188, 2, true, 1, 100},
    {"rx_total_power_minimum", "dBm", 190, 2, true, 1, 100},
    {"rx_total_power_maximum", "dBm", 192, 2, true, 1, 100},
    {"rx_signal_power_average", "dBm", 194, 2, true, 1, 100},
    {"rx_signal_power_minimum", "dBm", 196, 2, true, 1, 100},
    {"rx_signal_power_maximum", "dBm", 198, 2, true, 1, 100},
    {"sop_rate_of_change_average", "krad/s", 200, 2, false, 1, 1},
    {"sop_rate_of_change_minimum", "krad/s", 202, 2, false, 1, 1},
    {"sop_rate_of_change_maximum", "krad/s", 204, 2, false, 1, 1},
    {"modulation_error_ratio_average", "dB", 206, 2, false, 1, 10},
    {"modulation_error_ratio_minimum", "dB", 208, 2, false, 1, 10},
    {"modulation_error_ratio_maximum", "dB", 210, 2, false, 1, 10},
    {"clock_recovery_loop_average", "%", 212, 2, true, 100, 32767},
    {"clock_recovery_loop_minimum", "%", 214, 2, true, 100, 32767},
    {"clock_recovery_loop_maximum", "%", 216, 2, true, 100, 32767},
    {"snr_margin_average", "dB", 224, 2, true, 1, 10},
    {"snr_margin_minimum", "dB", 226, 2, true, 1, 10},
    {"snr_margin_maximum", "dB", 228, 2, true, 1, 10},
    {"q_factor_average", "dB", 230, 2, false, 1, 10},
    {"q_factor_minimum", "dB", 232, 2, false, 1, 10},
    {"q_factor_maximum", "dB", 234, 2, false, 1, 10},
    {"q_margin_average", "dB", 236, 2, true, 1, 10},
    {"q_margin_minimum", "dB", 238, 2, true, 1, 10},
    {"q_margin_maximum", "dB", 240, 2, true, 1, 10},
};

double CoherentValue(const ModuleImage::Half& half, const CoherentNumber& number) {
  constexpr int kBitsPerByte = 8;
  std::uint64_t raw = 0;
  for (std::size_t i = 0; i < number.bytes; ++i) raw = raw << kBitsPerByte | half[number.byte + i];
  const auto value = static_cast<double>(raw);
  const double range = std::ldexp(1.0, kBitsPerByte * static_cast<int>(number.bytes));
  return number.is_signed && value >= range / 2 ? value - range : value;
}

template <std::size_t N>
void DecodeCoherentPage(Decoding& to, Page page, const CoherentNumber (&numbers)[N]) {
  constexpr unsigned kBanks = 8;  // a media lane each
  for (unsigned bank = 0; bank < kBanks; ++bank) {
    const ModuleImage::Half& half = to.image.HalfOf(InBank(page, bank), 128);
    for (const CoherentNumber& number : numbers) {
      if (!half.Has(number.byte, number.bytes)) continue;
      Monitor monitor;
      monitor.state = FieldState::kPresent;
      monitor.value = CoherentValue(half, number) * number.multiply / number.divide;
      VdmSample sample = SampleOf(nullptr, 0, bank + 1, monitor);
      sample.observable = number.name;
      sample.unit = number.unit;
      to.info.vdm.push_back(std::move(sample));
    }
  }
}

}  // namespace

void DecodeCoherent(Decoding& to) {
  if (HasCoherentPages(to.image) == Advertised::kNo) return;
  DecodeCoherentPage(to, kPage34, kCoherentCounters);
  DecodeCoherentPage(to, kPage35, kCoherentMonitors);
}

}  // namespace cable_info::module_memory
