// Writes the rows of many ports from several threads, each to a separate stream.
// Returns 1 if the rows differ from those of one thread.

#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cable_info/combined_cable_info.h"

namespace {

constexpr std::size_t kPorts = 400;
constexpr std::size_t kThreads = 4;

std::string Row(std::size_t number) {
  cable_info::CombinedCableInfo port;
  auto record = std::make_unique<cable_info::CableRecord>();
  record->PartNumber = "AO-" + std::to_string(number);
  record->RxPower[0] = static_cast<float>(number) / 8;
  port.AttachCableRecord(std::move(record));
  std::ostringstream os;
  port.ToCSVStream(os);
  return os.str();
}

std::vector<std::string> Rows() {
  std::vector<std::string> rows(kPorts);
  std::vector<std::thread> threads;
  for (std::size_t first = 0; first < kThreads; ++first) {
    threads.emplace_back([&rows, first] {
      for (std::size_t i = first; i < kPorts; i += kThreads) rows[i] = Row(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return rows;
}

}  // namespace

int main() {
  const std::vector<std::string> rows = Rows();
  for (std::size_t i = 0; i < kPorts; ++i) {
    if (rows[i] != Row(i)) return 1;
  }
  return 0;
}
