#include "bench/fabric.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

using Json = nlohmann::ordered_json;

// Pseudo-random numbers (SplitMix64), reproducible by seed.
class Noise {
 public:
  explicit Noise(std::uint64_t seed) : state_(seed) {}

  // A number below `limit`.
  std::uint64_t Below(std::uint64_t limit) {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return (z ^ (z >> 31)) % limit;
  }

 private:
  std::uint64_t state_;
};

std::string Guid(std::uint64_t value) {
  char text[] = "0x0123456789abcdef";
  std::snprintf(text, sizeof(text), "0x%016llx", static_cast<unsigned long long>(value));
  return text;
}

// Replaces the last digits of the text by those of `number`.
void Renumber(Json& text, std::uint64_t number) {
  auto value = text.get<std::string>();
  for (auto c = value.rbegin(); c != value.rend(); ++c) {
    if (*c < '0' || *c > '9') return;
    *c = static_cast<char>('0' + number % 10);
    number /= 10;
    text = value;
  }
}

// A reading within 5 % of `value`; 0, no signal, is unchanged.
void Vary(Json& value, Noise& noise) {
  const double factor = 0.95 + static_cast<double>(noise.Below(1000)) / 10000;
  if (value.is_number_unsigned()) {
    value = static_cast<std::uint16_t>(std::fmin(65535, value.get<double>() * factor));
  } else if (value.is_number_float()) {
    value = std::round(value.get<double>() * factor * 10000) / 10000;
  }
}

void VaryEach(Json& record, std::initializer_list<std::string_view> keys, Noise& noise) {
  for (const std::string_view key : keys) {
    const auto found = record.find(key);
    if (found == record.end()) continue;
    if (found->is_array()) {
      for (Json& value : *found) Vary(value, noise);
    } else {
      Vary(*found, noise);
    }
  }
}

void VaryCable(Json& cable, std::uint64_t n, Noise& noise) {
  VaryEach(cable, {"Temperature", "SupplyVoltage", "RxPower", "TxBias", "TxPower"}, noise);
  if (const auto sn = cable.find("SerialNumber"); sn != cable.end()) Renumber(*sn, n);
}

void VaryModule(Json& module, std::uint64_t n, Noise& noise) {
  VaryEach(module, {"temperature", "voltage", "rx_power", "tx_power", "tx_bias"}, noise);
  if (const auto sn = module.find("vendor_sn"); sn != module.end()) Renumber(*sn, n);
}

// A round trip from which a length can be computed; some links of the sample have none.
void VaryPrtl(Json& prtl, Noise& noise) {
  for (Json& end : prtl) {
    end["latency_res"] = 1;
    end["local_phy_latency"] = 30;
    end["local_mod_dp_latency"] = 20;
    end["round_trip_latency"] = 400 + noise.Below(1000);
  }
}

}  // namespace

Fabric::Fabric(const std::string& sample_path) {
  std::ifstream sample(sample_path);
  for (std::string line; std::getline(sample, line);) sample_.push_back(Json::parse(line));
  if (sample_.empty()) throw std::runtime_error(sample_path + ": no port records");
}

std::string Fabric::Line(std::uint64_t n) const {
  constexpr std::uint64_t kGuidPrefix = 0xA0B1C20000000000;
  constexpr std::uint64_t kPortsOfSwitch = 64;
  Json port = sample_[n % sample_.size()];
  Noise noise(n);
  port["node_guid"] = port["port_guid"] = Guid(kGuidPrefix + (n / kPortsOfSwitch << 8));
  port["port_num"] = n % kPortsOfSwitch + 1;
  if (const auto cable = port.find("cable"); cable != port.end()) VaryCable(*cable, n, noise);
  if (const auto phy = port.find("phy"); phy != port.end()) {
    if (const auto module = phy->find("module"); module != phy->end())
      VaryModule(*module, n, noise);
  }
  if (const auto prtl = port.find("prtl"); prtl != port.end()) VaryPrtl(*prtl, noise);
  return port.dump();
}

}  // namespace bench
