#include "cable_info/readings/reading.h"

#include <cmath>

namespace cable_info {

namespace {

constexpr std::array<std::string_view, kQuantities> kQuantityNames = {
    "temperature", "voltage", "rx_power", "tx_power", "tx_bias"};
constexpr std::array<std::string_view, kQuantities> kQuantityUnits = {"C", "V", "mW", "mW", "mA"};

}  // namespace

std::string_view QuantityName(Quantity quantity) {
  return kQuantityNames[static_cast<std::size_t>(quantity)];
}

std::string_view QuantityUnit(Quantity quantity) {
  return kQuantityUnits[static_cast<std::size_t>(quantity)];
}

std::optional<double> MilliwattsToDbm(double milliwatts) {
  if (!(milliwatts > 0.0)) return std::nullopt;
  return 10.0 * std::log10(milliwatts);
}

std::optional<double> Reading::Dbm() const {
  if (!IsPower(quantity) || !IsPresent()) return std::nullopt;
  // The milliwatts' own digits, of which a power has at most nine.
  return MilliwattsToDbm(static_cast<double>(value));
}

}  // namespace cable_info
