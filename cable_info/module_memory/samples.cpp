#include "cable_info/module_memory/samples.h"

#include <cstdint>
#include <optional>
#include <string>

namespace cable_info::module_memory {

namespace {

Thresholds ReadThresholds(const ModuleImage::Half& half, std::size_t byte,
                          const VdmObservable& observable) {
  constexpr unsigned kAllSet = 0xFFFF;
  Thresholds thresholds;
  unsigned any = 0;
  unsigned common = kAllSet;
  for (std::size_t level = 0; level < kAlarmLevels; ++level) {
    if (!half.Has(byte + 2 * level, 2)) continue;
    const unsigned raw = RawNumber(half, byte + 2 * level, kWord);
    any |= raw;
    common &= raw;
    const std::optional<double> threshold =
        VdmThreshold(observable, static_cast<std::uint16_t>(raw));
    if (!threshold) continue;
    thresholds.values[level] = *threshold;
    thresholds.given |= static_cast<std::uint8_t>(1U << level);
  }
  return any == 0 || common == kAllSet ? Thresholds() : thresholds;
}

AlarmFlags ReadFlags(const SamplePlace& place) {
  if (!place.flags.Has(place.flag)) return {};
  const unsigned shift = place.nibble == Nibble::kHigh ? 4U : 0U;
  const unsigned nibble = place.flags[place.flag] >> shift & 0xFU;
  AlarmFlags flags;
  for (unsigned level = 0; level < kAlarmLevels; ++level) {
    const unsigned bit = place.order == FlagOrder::kDown ? 3U - level : level;
    flags.known |= static_cast<std::uint8_t>(1U << level);
    flags.raised |= static_cast<std::uint8_t>((nibble >> bit & 1U) << level);
  }
  return flags;
}

}  // namespace

Monitor ReadSample(const SamplePlace& place, const VdmObservable& observable) {
  Monitor monitor;
  monitor.state = FieldState::kNotRead;
  if (place.values.Has(place.value, 2)) {
    const auto raw = static_cast<std::uint16_t>(RawNumber(place.values, place.value, kWord));
    const std::optional<double> value = VdmValue(observable, raw);
    monitor.state = value ? FieldState::kPresent : FieldState::kNotImplemented;
    monitor.value = value.value_or(0);
  }
  monitor.thresholds = ReadThresholds(place.thresholds, place.threshold, observable);
  monitor.flags = ReadFlags(place);
  return monitor;
}

VdmSample SampleOf(const VdmObservable* observable, unsigned type, unsigned lane,
                   const Monitor& monitor) {
  VdmSample sample;
  if (observable != nullptr) {
    sample.observable = observable->name;
    sample.unit = observable->unit;
  }
  sample.type = type;
  sample.lane = lane;
  sample.instance = lane == 0 ? "module" : "lane " + std::to_string(lane);
  sample.monitor = monitor;
  return sample;
}

}  // namespace cable_info::module_memory
