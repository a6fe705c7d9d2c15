// Reads files of port records and parses every line with the JSON library that cableinfo uses, and
// nothing more: what `cableinfo table` would cost if decoding and writing cost nothing.

#include <simdjson.h>

#include <cstdint>
#include <cstdio>
#include <exception>

#include "host/line_reader.h"

int main(int argc, char** argv) {
  std::uint64_t ports = 0;
  try {
    simdjson::dom::parser parser;
    for (int i = 1; i < argc; ++i) {
      host::LineReader lines(argv[i]);
      while (const auto line = lines.Next()) {
        simdjson::dom::element port;
        const auto error = parser.parse(line->text.data(), line->text.size(), false).get(port);
        if (error == simdjson::SUCCESS && port.is_object()) ++ports;
      }
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "parse_floor: %s\n", error.what());
    return 1;
  }
  std::printf("%llu\n", static_cast<unsigned long long>(ports));
  return 0;
}
