#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace bench {

/// A fabric of any number of ports, derived from those of a sample. It has the sample's mix of
/// copper, optical and active cables and of sources; GUIDs, serial numbers, temperatures and lane
/// monitors are different for each port. Port `n` is the same in every run.
class Fabric {
 public:
  /// Reads the sample, one port record per line. Throws `std::runtime_error`.
  explicit Fabric(const std::string& sample_path);

  /// The port record, one line of JSON without its newline.
  std::string Line(std::uint64_t n) const;

 private:
  std::vector<nlohmann::ordered_json> sample_;
};

}  // namespace bench
