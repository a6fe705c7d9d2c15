#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace bench {

/// A fabric of any number of ports, made from the ports of a sample: the mix of copper, optics and
/// active cables, of cable pages and PHY registers is the sample's, while GUIDs, serial numbers,
/// temperatures and lane monitors are every port's own. Port `n` is the same in every run.
class Fabric {
 public:
  /// Reads the sample: a port record a line. Throws `std::runtime_error`.
  explicit Fabric(const std::string& sample_path);

  /// The port record, one line of JSON without its newline.
  std::string Line(std::uint64_t n) const;

 private:
  std::vector<nlohmann::ordered_json> sample_;
};

}  // namespace bench
