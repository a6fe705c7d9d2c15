#include "cable_info/module_memory/cmis_vdm.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace cable_info::module_memory {

namespace {

constexpr auto kUnsigned = VdmNumberType::kUnsigned;
constexpr auto kUnsignedOrInfinite = VdmNumberType::kUnsignedOrInfinite;
constexpr auto kSigned = VdmNumberType::kSigned;
constexpr auto kFloat16 = VdmNumberType::kFloat16;

constexpr std::string_view kPercent = "%";
constexpr std::string_view kDecibel = "dB";
constexpr std::string_view kDecibelMilliwatt = "dBm";
constexpr std::string_view kCelsius = "C";
constexpr std::string_view kVolt = "V";
constexpr std::string_view kMegahertz = "MHz";
constexpr std::string_view kFrames = "frames";
constexpr std::string_view kNone;

constexpr VdmObservable kObservables[] = {
    {"laser_age", kPercent, 1, kUnsigned, 1, 1},
    {"tec_current", kPercent, 2, kSigned, 100, 32767},
    {"laser_frequency_error", kMegahertz, 3, kSigned, 10, 1},
    {"laser_temperature_deviation", kCelsius, 4, kSigned, 1, 256},
    {"esnr_media", kDecibel, 5, kUnsigned, 1, 256},
    {"esnr_host", kDecibel, 6, kUnsigned, 1, 256},
    {"pam4_level_transition_media", kDecibel, 7, kUnsignedOrInfinite, 1, 256},
    {"pam4_level_transition_host", kDecibel, 8, kUnsignedOrInfinite, 1, 256},
    {"pre_fec_ber_minimum_media", kNone, 9, kFloat16, 1, 1},
    {"pre_fec_ber_minimum_host", kNone, 10, kFloat16, 1, 1},
    {"pre_fec_ber_maximum_media", kNone, 11, kFloat16, 1, 1},
    {"pre_fec_ber_maximum_host", kNone, 12, kFloat16, 1, 1},
    {"pre_fec_ber_average_media", kNone, 13, kFloat16, 1, 1},
    {"pre_fec_ber_average_host", kNone, 14, kFloat16, 1, 1},
    {"pre_fec_ber_current_media", kNone, 15, kFloat16, 1, 1},
    {"pre_fec_ber_current_host", kNone, 16, kFloat16, 1, 1},
    {"frame_errors_minimum_media", kFrames, 17, kFloat16, 1, 1},
    {"frame_errors_minimum_host", kFrames, 18, kFloat16, 1, 1},
    {"frame_errors_maximum_media", kFrames, 19, kFloat16, 1, 1},
    {"frame_errors_maximum_host", kFrames, 20, kFloat16, 1, 1},
    {"frame_errors_average_media", kFrames, 21, kFloat16, 1, 1},
    {"frame_errors_average_host", kFrames, 22, kFloat16, 1, 1},
    {"frame_errors_current_media", kFrames, 23, kFloat16, 1, 1},
    {"frame_errors_current_host", kFrames, 24, kFloat16, 1, 1},
    {"frame_errors_total_media", kFrames, 25, kFloat16, 1, 1},
    {"frame_errors_total_host", kFrames, 26, kFloat16, 1, 1},
    {"symbol_error_weight_minimum_media", kNone, 27, kUnsigned, 1, 1},
    {"symbol_error_weight_minimum_host", kNone, 28, kUnsigned, 1, 1},
    {"symbol_error_weight_maximum_media", kNone, 29, kUnsigned, 1, 1},
    {"symbol_error_weight_maximum_host", kNone, 30, kUnsigned, 1, 1},
    {"symbol_error_weight_average_media", kNone, 31, kUnsigned, 1, 1},
    {"symbol_error_weight_average_host", kNone, 32, kUnsigned, 1, 1},
    {"symbol_error_weight_current_media", kNone, 33, kUnsigned, 1, 1},
    {"symbol_error_weight_current_host", kNone, 34, kUnsigned, 1, 1},
    {"supply_2p6v", kVolt, 77, kUnsigned, 1, 10000},
    {"supply_1p8v", kVolt, 78, kUnsigned, 1, 10000},
    {"supply_1p2v", kVolt, 79, kUnsigned, 1, 10000},
    {"supply_0p9v", kVolt, 80, kUnsigned, 1, 10000},
    {"supply_0p7v_a", kVolt, 81, kUnsigned, 1, 10000},
    {"supply_0p7v_b", kVolt, 82, kUnsigned, 1, 10000},
    {"supply_12v", kVolt, 83, kUnsigned, 1, 4000},
    {"external_laser_input_power", kDecibelMilliwatt, 84, kSigned, 1, 100},
    {"modulator_bias_xi", kPercent, 128, kUnsigned, 100, 65535},
    {"modulator_bias_xq", kPercent, 129, kUnsigned, 100, 65535},
    {"modulator_bias_yi", kPercent, 130, kUnsigned, 100, 65535},
    {"modulator_bias_yq", kPercent, 131, kUnsigned, 100, 65535},
    {"modulator_bias_x_phase", kPercent, 132, kUnsigned, 100, 65535},
    {"modulator_bias_y_phase", kPercent, 133, kUnsigned, 100, 65535},
    {"chromatic_dispersion_short_link", "ps/nm", 134, kSigned, 1, 1},
    {"chromatic_dispersion_long_link", "ps/nm", 135, kSigned, 20, 1},
    {"differential_group_delay", "ps", 136, kUnsigned, 1, 100},
    {"sopmd", "ps^2", 137, kUnsigned, 1, 100},
    {"polarization_dependent_loss", kDecibel, 138, kUnsigned, 1, 10},
    {"osnr", kDecibel, 139, kUnsigned, 1, 10},
    {"esnr", kDecibel, 140, kUnsigned, 1, 10},
    {"carrier_frequency_offset", kMegahertz, 141, kSigned, 1, 1},
    {"error_vector_magnitude", kPercent, 142, kUnsigned, 100, 65535},
    {"tx_power", kDecibelMilliwatt, 143, kSigned, 1, 100},
    {"rx_total_power", kDecibelMilliwatt, 144, kSigned, 1, 100},
    {"rx_signal_power", kDecibelMilliwatt, 145, kSigned, 1, 100},
    {"sop_rate_of_change", "krad/s", 146, kUnsigned, 1, 1},
    {"modulation_error_ratio", kDecibel, 147, kUnsigned, 1, 10},
    {"clock_recovery_loop", kPercent, 148, kSigned, 100, 32767},
    {"sopmd_coarse", "ps^2", 149, kUnsigned, 1, 1},
    {"snr_margin", kDecibel, 150, kSigned, 1, 10},
    {"q_factor", kDecibel, 151, kUnsigned, 1, 10},
    {"q_margin", kDecibel, 152, kSigned, 1, 10},
};

// SFF-8636 rev 2.11, page 20h: those of the signal that the media side receives.
constexpr std::string_view kFramesPerSecond = "frames/s";
constexpr VdmObservable kSff8636Observables[] = {
    {"snr_media", kDecibel, 1, kUnsigned, 1, 256},
    {"residual_dispersion_media", "ps/nm", 2, kSigned, 1, 10},
    {"pam4_level_transition_media", kDecibel, 3, kUnsignedOrInfinite, 1, 256},
    {"pre_fec_ber_average_media", kNone, 4, kFloat16, 1, 1},
    {"frame_errors_average_media", kFramesPerSecond, 5, kFloat16, 1, 1},
    {"tec_current", "mA", 6, kSigned, 1, 10},
    {"laser_frequency_error", kMegahertz, 7, kSigned, 10, 1},
    {"laser_temperature_error", kCelsius, 8, kSigned, 1, 256},
    {"pre_fec_ber_minimum_media", kNone, 9, kFloat16, 1, 1},
    {"pre_fec_ber_maximum_media", kNone, 10, kFloat16, 1, 1},
    {"pre_fec_ber_prior_period_media", kNone, 11, kFloat16, 1, 1},
    {"pre_fec_ber_current_media", kNone, 12, kFloat16, 1, 1},
    {"frame_errors_minimum_media", kFramesPerSecond, 13, kFloat16, 1, 1},
    {"frame_errors_maximum_media", kFramesPerSecond, 14, kFloat16, 1, 1},
    {"frame_errors_prior_period_media", kFramesPerSecond, 15, kFloat16, 1, 1},
    {"frame_errors_current_media", kFramesPerSecond, 16, kFloat16, 1, 1},
};

double Number(const VdmObservable& observable, std::uint16_t raw) {
  switch (observable.number) {
    case VdmNumberType::kFloat16:
      return Float16(raw);
    case VdmNumberType::kSigned:
      return static_cast<std::int16_t>(raw);
    case VdmNumberType::kUnsigned:
    case VdmNumberType::kUnsignedOrInfinite:
      break;
  }
  return raw;
}

template <std::size_t N>
const VdmObservable* Find(const VdmObservable (&observables)[N], unsigned type_id) {
  const VdmObservable* entry = std::lower_bound(
      std::begin(observables), std::end(observables), type_id,
      [](const VdmObservable& listed, unsigned id) { return listed.type_id < id; });
  return entry != std::end(observables) && entry->type_id == type_id ? entry : nullptr;
}

}  // namespace

constexpr VdmObservable kUnknownObservable = {{}, {}, 0, kUnsigned, 1, 1};

unsigned FirstRevisionOfVdm(unsigned type_id) {
  if (type_id >= 25 && type_id <= 26) return 0x52;
  return type_id >= 27 && type_id <= 84 ? 0x53 : 0x40;
}

const VdmObservable* FindVdmObservable(unsigned type_id) { return Find(kObservables, type_id); }

const VdmObservable* FindSff8636Observable(unsigned type_id) {
  return Find(kSff8636Observables, type_id);
}

std::optional<double> VdmValue(const VdmObservable& observable, std::uint16_t raw) {
  constexpr std::uint16_t kInfinite = 0xFFFF;
  const bool is_infinite = observable.number == kUnsignedOrInfinite && raw == kInfinite;
  if (is_infinite) return std::nullopt;
  return Number(observable, raw) * observable.multiply / observable.divide;
}

std::optional<double> VdmThreshold(const VdmObservable& observable, std::uint16_t raw) {
  const bool is_signed = observable.number == VdmNumberType::kSigned;
  const std::uint16_t lowest = is_signed ? 0x8000 : 0x0000;
  const std::uint16_t highest = is_signed ? 0x7FFF : 0xFFFF;
  if (raw == lowest || raw == highest) return std::nullopt;
  return Number(observable, raw) * observable.multiply / observable.divide;
}

double Float16(std::uint16_t raw) {
  // A long double holds all of these powers exactly where it has 64 bits of mantissa.
  constexpr long double kPowersOfTen[] = {
      1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,  1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L,
      1e13L, 1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L, 1e21L, 1e22L, 1e23L, 1e24L};
  constexpr int kBias = 24;
  const int exponent = (raw >> 11) - kBias;
  const long double mantissa = raw & 0x7FF;
  return static_cast<double>(exponent < 0 ? mantissa / kPowersOfTen[-exponent]
                                          : mantissa * kPowersOfTen[exponent]);
}

}  // namespace cable_info::module_memory
