// Parses files of port records with the JSON library of cableinfo and does nothing else: a lower
// bound for `cableinfo table`.
//   parse_floor lines FILE...    line by line through one buffer, like cableinfo
//   parse_floor whole FILE...    loaded into memory as a whole, by the library's own function

#include <simdjson.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <string_view>

#include "cli/input/line_reader.h"

namespace {

std::uint64_t ParseLines(simdjson::dom::parser& parser, const char* path) {
  std::uint64_t ports = 0;
  cli::LineReader lines(path);
  while (const auto line = lines.Next()) {
    simdjson::dom::element port;
    const auto error = parser.parse(line->text.data(), line->text.size(), false).get(port);
    if (error == simdjson::SUCCESS && port.is_object()) ++ports;
  }
  return ports;
}

std::uint64_t ParseWhole(simdjson::dom::parser& parser, const char* path) {
  std::uint64_t ports = 0;
  parser.threaded = false;
  simdjson::dom::document_stream lines;
  if (parser.load_many(path).get(lines) != simdjson::SUCCESS) return 0;
  for (auto port : lines) {
    if (port.is_object()) ++ports;
  }
  return ports;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view way = argc > 2 ? argv[1] : "";
  if (way != "lines" && way != "whole") {
    std::fputs("usage: parse_floor lines|whole FILE...\n", stderr);
    return 2;
  }
  std::uint64_t ports = 0;
  try {
    simdjson::dom::parser parser;
    for (int i = 2; i < argc; ++i) {
      ports += way == "lines" ? ParseLines(parser, argv[i]) : ParseWhole(parser, argv[i]);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "parse_floor: %s\n", error.what());
    return 1;
  }
  std::printf("%llu\n", static_cast<unsigned long long>(ports));
  return ports > 0 ? 0 : 1;
}
