// Writes the port records of a fabric: make_fabric PORTS > fabric.jsonl

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>

#include "bench/fabric.h"

int main(int argc, char** argv) {
  std::uint64_t ports = 0;
  const char* const end = argc == 2 ? argv[1] + std::strlen(argv[1]) : nullptr;
  if (end == nullptr || std::from_chars(argv[1], end, ports).ptr != end || end == argv[1]) {
    std::fputs("usage: make_fabric PORTS > fabric.jsonl\n", stderr);
    return 2;
  }
  try {
    const bench::Fabric fabric(BENCH_SAMPLE);
    for (std::uint64_t n = 0; n < ports; ++n) {
      const std::string line = fabric.Line(n) + '\n';
      if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) return 1;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_fabric: %s\n", error.what());
    return 1;
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
