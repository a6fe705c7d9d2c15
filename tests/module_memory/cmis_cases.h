#pragma once

// Cases of the tests of the map of CMIS, compared with the lines of the map.

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "cable_info/module_memory/module_info.h"

namespace cmis_cases {

/// "identity.clei: 00h 190": the fields and places of cases or of lines of a map.
template <typename Lines>
std::set<std::string> PlacesOf(const Lines& lines) {
  std::set<std::string> places;
  for (const auto& line : lines) {
    places.insert(std::string(cable_info::DescribeField(line.field).key) + ": " +
                  cable_info::ShortPageName(line.page) + ' ' + std::to_string(line.byte));
  }
  return places;
}

/// The elements that only one of the sets has.
inline std::vector<std::string> Differences(const std::set<std::string>& a,
                                            const std::set<std::string>& b) {
  std::vector<std::string> differences;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(),
                                std::back_inserter(differences));
  return differences;
}

}  // namespace cmis_cases
