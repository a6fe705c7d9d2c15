// The time of a port's row, report and export compared with lower bounds, copies of the same bytes
// as a whole and cell by cell or line by line, and with the straightforward implementation by
// string streams. Ratios are taken within one run, so they are comparable between machines.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <iomanip>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "bench/fabric.h"
#include "cable_info/combined_cable_info.h"
#include "cable_info/text/text_buffer.h"
#include "cli/input/line_reader.h"
#include "cli/input/port_reader.h"

namespace bench {
namespace {

using cable_info::CableRecord;
using cable_info::PhyCableRecord;
using cli::Port;

constexpr std::uint64_t kPorts = 1000;
constexpr std::size_t kCapacity = 1U << 14;  // more than a row or a report needs

// ---------------------------------------------------------------------------------------------
// The ports
// ---------------------------------------------------------------------------------------------

using Ports = std::vector<std::unique_ptr<Port>>;

Ports ReadPorts() {
  const Fabric fabric(BENCH_SAMPLE);
  cli::PortReader reader;
  std::vector<cli::Message> messages;
  Ports ports;
  for (std::uint64_t n = 0; n < kPorts; ++n) {
    std::string line = fabric.Line(n);
    const std::size_t size = line.size();
    line.resize(size + cli::LineReader::kPadding);
    const auto& port = ports.emplace_back(std::make_unique<Port>());
    reader.Read(std::string_view(line).substr(0, size), *port, messages);
  }
  return ports;
}

const Ports& AllPorts() {
  static const Ports ports = ReadPorts();
  return ports;
}

template <typename Record>
std::vector<const Record*> Records(Record* Port::*member) {
  std::vector<const Record*> records;
  for (const auto& port : AllPorts()) {
    if ((*port).*member != nullptr) records.push_back((*port).*member);
  }
  return records;
}

const std::vector<const CableRecord*>& CableRecords() {
  static const auto records = Records(&Port::cable_record);
  return records;
}

// The records with a module.
const std::vector<const PhyCableRecord*>& PhyRecords() {
  static const auto records = [] {
    auto all = Records(&Port::phy_cable_record);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const PhyCableRecord* r) { return r->module == nullptr; }),
              all.end());
    return all;
  }();
  return records;
}

// ---------------------------------------------------------------------------------------------
// The destination of the text
// ---------------------------------------------------------------------------------------------

// A stream buffer of fixed size.
class Memory : public std::streambuf {
 public:
  void Restart() { size_ = 0; }
  const char* data() const { return bytes_; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (count > static_cast<std::streamsize>(kCapacity - size_)) return 0;
    std::memcpy(bytes_ + size_, text, static_cast<std::size_t>(count));
    size_ += static_cast<std::size_t>(count);
    return count;
  }
  int_type overflow(int_type c) override {
    const char text = traits_type::to_char_type(c);
    return xsputn(&text, 1) == 1 ? c : traits_type::eof();
  }

 private:
  std::size_t size_ = 0;
  char bytes_[kCapacity] = {};
};

template <typename Record>
using Write = void (Record::*)(std::ostream&) const;

template <typename Record>
std::vector<std::string> Texts(const std::vector<const Record*>& records, Write<Record> write) {
  std::vector<std::string> texts;
  for (const Record* record : records) {
    std::ostringstream os;
    (record->*write)(os);
    texts.push_back(os.str());
  }
  return texts;
}

void CountRecords(benchmark::State& state, std::size_t records) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(records));
}

// ---------------------------------------------------------------------------------------------
// The library and lower bounds
// ---------------------------------------------------------------------------------------------

template <typename Record>
void Library(benchmark::State& state, const std::vector<const Record*>& records,
             Write<Record> write) {
  Memory memory;
  std::ostream os(&memory);
  for (auto _ : state) {
    for (const Record* record : records) {
      memory.Restart();
      (record->*write)(os);
      benchmark::DoNotOptimize(memory.data());
      benchmark::ClobberMemory();
    }
  }
  CountRecords(state, records.size());
}

void Memcpy(benchmark::State& state, const std::vector<std::string>& texts) {
  char copy[kCapacity];
  for (auto _ : state) {
    for (const std::string& text : texts) {
      std::memcpy(copy, text.data(), text.size());
      benchmark::DoNotOptimize(&copy[0]);
      benchmark::ClobberMemory();
    }
  }
  CountRecords(state, texts.size());
}

// A text and the lengths of its pieces, each followed by one separator.
struct Pieces {
  std::string text;
  std::vector<std::uint16_t> lengths;
};

Pieces Cut(std::string text, char separator) {
  Pieces pieces;
  std::size_t begin = 0;
  if (text.back() == '\n' && separator != '\n') text.back() = separator;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;
       begin = end + 1) {
    pieces.lengths.push_back(static_cast<std::uint16_t>(end - begin));
  }
  pieces.text = std::move(text);
  return pieces;
}

// Cell copy and line copy: copies of the known pieces, each with its separator.
void PieceCopy(benchmark::State& state, const std::vector<std::string>& texts, char separator) {
  std::vector<Pieces> all;
  for (const std::string& text : texts) all.push_back(Cut(text, separator));
  char copy[kCapacity];
  for (auto _ : state) {
    for (const Pieces& pieces : all) {
      const char* from = pieces.text.data();
      char* to = copy;
      for (const std::uint16_t length : pieces.lengths) {
        std::memcpy(to, from, length);
        to[length] = separator;
        from += length + 1;
        to += length + 1;
      }
      benchmark::DoNotOptimize(to);
      benchmark::ClobberMemory();
    }
  }
  CountRecords(state, texts.size());
}

// Each line written to a stream buffer and flushed, as the PHY report requires.
void LinesFlushed(benchmark::State& state, const std::vector<std::string>& texts) {
  std::vector<Pieces> all;
  for (const std::string& text : texts) all.push_back(Cut(text, '\n'));
  Memory memory;
  std::streambuf* buffer = &memory;
  benchmark::DoNotOptimize(buffer);  // the library does not know the type of the buffer
  for (auto _ : state) {
    for (const Pieces& pieces : all) {
      memory.Restart();
      const char* from = pieces.text.data();
      for (const std::uint16_t length : pieces.lengths) {
        buffer->sputn(from, length + 1);
        buffer->pubsync();
        from += length + 1;
      }
      benchmark::DoNotOptimize(memory.data());
      benchmark::ClobberMemory();
    }
  }
  CountRecords(state, texts.size());
}

// The value of a cell before it is written.
struct Value {
  enum class Kind { kText, kQuoted, kDecimal, kHex, kFixed3 };
  Kind kind = Kind::kText;
  std::string text;
  std::uint64_t integer = 0;
  int digits = 0;
  double number = 0.0;
};

Value ValueOf(std::string_view cell) {
  Value value;
  const char* const end = cell.data() + cell.size();
  const auto is_whole = [&](std::from_chars_result result) {
    return result.ec == std::errc() && result.ptr == end;
  };
  if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"') {
    value.kind = Value::Kind::kQuoted;
    value.text = cell.substr(1, cell.size() - 2);
  } else if (cell.starts_with("0x") &&
             is_whole(std::from_chars(cell.data() + 2, end, value.integer, 16))) {
    value.kind = Value::Kind::kHex;
    value.digits = static_cast<int>(cell.size()) - 2;
  } else if (is_whole(std::from_chars(cell.data(), end, value.integer)) &&
             (cell.size() == 1 || cell.front() != '0')) {
    value.kind = Value::Kind::kDecimal;
  } else if (cell.size() > 4 && cell[cell.size() - 4] == '.' &&
             is_whole(std::from_chars(cell.data(), end, value.number))) {
    value.kind = Value::Kind::kFixed3;
  } else {
    value.text = cell;
  }
  return value;
}

void Insert(std::ostream& os, const Value& value) {
  switch (value.kind) {
    case Value::Kind::kText:
      os << value.text;
      break;
    case Value::Kind::kQuoted:
      os << '"' << value.text << '"';
      break;
    case Value::Kind::kDecimal:
      os << value.integer;
      break;
    case Value::Kind::kHex:
      os << "0x" << std::hex << std::setfill('0') << std::setw(value.digits) << value.integer
         << std::dec;
      break;
    case Value::Kind::kFixed3:
      os << std::fixed << std::setprecision(3) << value.number;
      break;
  }
}

// The straightforward implementation: each value is written to a separate string stream.
void InsertAsText(std::ostream& os, const Value& value) {
  std::ostringstream text;
  Insert(text, value);
  os << text.str();
}

std::vector<Value> ValuesOf(const std::string& row) {
  std::vector<Value> values;
  const Pieces pieces = Cut(row, ',');
  std::size_t begin = 0;
  for (const std::uint16_t length : pieces.lengths) {
    values.push_back(ValueOf(std::string_view(pieces.text).substr(begin, length)));
    begin += length + std::size_t{1};
  }
  return values;
}

using InsertValue = void (*)(std::ostream&, const Value&);

void WriteRow(std::ostream& os, const std::vector<Value>& values, InsertValue insert) {
  const char* separator = "";
  for (const Value& value : values) {
    os << separator;
    insert(os, value);
    separator = ",";
  }
  os << std::endl;
}

void Streams(benchmark::State& state, const std::vector<std::string>& rows, InsertValue insert) {
  std::vector<std::vector<Value>> all;
  for (const std::string& row : rows) {
    all.push_back(ValuesOf(row));
    std::ostringstream os;
    WriteRow(os, all.back(), insert);
    if (os.str() != row) {
      state.SkipWithError("the row written with streams is another one");
      return;
    }
  }
  Memory memory;
  std::ostream os(&memory);
  for (auto _ : state) {
    for (const std::vector<Value>& values : all) {
      memory.Restart();
      WriteRow(os, values, insert);
      benchmark::DoNotOptimize(memory.data());
      benchmark::ClobberMemory();
    }
  }
  CountRecords(state, rows.size());
}

// ---------------------------------------------------------------------------------------------
// Single operations
// ---------------------------------------------------------------------------------------------

void Header(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(cable_info::CombinedCableInfo::GetCSVHeader());
  CountRecords(state, 1);
}

void Export(benchmark::State& state) {
  cable_info::cable_record_data_t data;
  for (auto _ : state) {
    for (const CableRecord* record : CableRecords()) {
      record->ExportData(&data);
      benchmark::DoNotOptimize(data);
    }
  }
  CountRecords(state, CableRecords().size());
}

// A decoder, called with every byte.
void Decoder(benchmark::State& state, const std::function<std::string(std::uint8_t)>& decode) {
  for (auto _ : state) {
    for (unsigned code = 0; code < 256; ++code) {
      benchmark::DoNotOptimize(decode(static_cast<std::uint8_t>(code)));
    }
  }
  CountRecords(state, 256);
}

std::vector<double> MonitorValues() {
  std::vector<double> values;
  for (const CableRecord* record : CableRecords()) {
    for (const float value : record->RxPower) values.push_back(static_cast<double>(value));
    for (const float value : record->TxBias) values.push_back(static_cast<double>(value));
  }
  return values;
}

// Three-decimal numbers by `write(text, value)`.
template <typename WriteNumber>
void Fixed3(benchmark::State& state, const WriteNumber& write) {
  const std::vector<double> values = MonitorValues();
  for (auto _ : state) {
    for (const double value : values) write(value);
  }
  CountRecords(state, values.size());
}

// ---------------------------------------------------------------------------------------------
// Ratios
// ---------------------------------------------------------------------------------------------

// Keeps the times for the tables that are printed at the end. `--benchmark_out` writes them all.
class Times : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) {
        std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
        failed_ = true;
      } else if (run.run_type == Run::RT_Iteration) {
        const auto rate = run.counters.find("items_per_second");
        times_[run.run_name.function_name].push_back(1e9 / rate->second.value);
      }
    }
  }

  bool failed() const { return failed_; }

  // Nanoseconds per item, the minimum of the repetitions, because other activity of the machine can
  // only add to the time; 0 if it did not run.
  double Least(const std::string& name) const {
    const auto found = times_.find(name);
    if (found == times_.end()) return 0.0;
    return *std::min_element(found->second.begin(), found->second.end());
  }

 private:
  std::map<std::string, std::vector<double>> times_;
  bool failed_ = false;
};

// A line of a table; "-" for benchmarks that did not run.
void PrintRow(const std::string& name, const std::vector<double>& values, int decimals,
              const char* unit) {
  std::printf("| %-24s |", name.c_str());
  for (const double value : values) {
    if (value == 0.0 || !std::isfinite(value)) {
      std::printf(" %9s |", "-");
    } else {
      std::printf(" %6.*f %-2s |", decimals, value, unit);
    }
  }
  std::printf("\n");
}

void PrintHeading(const std::string& name, const std::vector<const char*>& columns) {
  std::printf("\n| %-24s |", name.c_str());
  for (const char* const column : columns) std::printf(" %9s |", column);
  std::printf("\n|--------------------------|");
  for (std::size_t i = 0; i < columns.size(); ++i) std::printf("-----------|");
  std::printf("\n");
}

void PrintRowTables(const Times& times) {
  const std::vector<std::string> floors = {"/memcpy", "/cells", "/plain", "/streamed"};
  PrintHeading("a row", {"library", "memcpy", "cell copy", "plain", "streamed"});
  for (const std::string name : {"cable_row", "phy_row"}) {
    std::vector<double> values = {times.Least(name)};
    for (const std::string& floor : floors) values.push_back(times.Least(name + floor));
    PrintRow(name, values, 0, "ns");
  }
  PrintHeading("ratio", {"to memcpy", "to cells", "of plain", "of stream"});
  for (const std::string name : {"cable_row", "phy_row"}) {
    const double library = times.Least(name);
    PrintRow(name,
             {library / times.Least(name + "/memcpy"), library / times.Least(name + "/cells"),
              times.Least(name + "/plain") / library, times.Least(name + "/streamed") / library},
             1, "x");
  }
}

void PrintReportTables(const Times& times) {
  PrintHeading("a report", {"library", "memcpy", "line copy", "flushed"});
  for (const std::string name : {"cable_report", "phy_report"}) {
    PrintRow(name,
             {times.Least(name), times.Least(name + "/memcpy"), times.Least(name + "/lines"),
              times.Least(name + "/flushed")},
             0, "ns");
  }
  PrintHeading("ratio", {"to memcpy", "to lines", "to flush"});
  for (const std::string name : {"cable_report", "phy_report"}) {
    const double library = times.Least(name);
    PrintRow(name,
             {library / times.Least(name + "/memcpy"), library / times.Least(name + "/lines"),
              library / times.Least(name + "/flushed")},
             1, "x");
  }
}

void PrintTables(const Times& times) {
  PrintRowTables(times);
  PrintReportTables(times);
  PrintHeading("a three-decimal number", {"library", "to_chars", "snprintf"});
  PrintRow("fixed3",
           {times.Least("fixed3/library"), times.Least("fixed3/to_chars"),
            times.Least("fixed3/snprintf")},
           1, "ns");
  PrintHeading("one call", {"library"});
  for (const char* const name :
       {"header", "export_data", "decoder/cable_type", "decoder/supported_speed",
        "decoder/temperature", "decoder/voltage"}) {
    PrintRow(name, {times.Least(name)}, 1, "ns");
  }
}

// ---------------------------------------------------------------------------------------------
// All benchmarks
// ---------------------------------------------------------------------------------------------

template <typename Record>
void RegisterOutput(const std::string& name, const std::vector<const Record*>& records,
                    Write<Record> write, bool is_row) {
  const auto texts = std::make_shared<std::vector<std::string>>(Texts(records, write));
  const std::string pieces = is_row ? "/cells" : "/lines";
  benchmark::RegisterBenchmark(
      name.c_str(), [&records, write](benchmark::State& state) { Library(state, records, write); });
  benchmark::RegisterBenchmark((name + "/memcpy").c_str(),
                               [texts](benchmark::State& state) { Memcpy(state, *texts); });
  benchmark::RegisterBenchmark((name + pieces).c_str(), [texts, is_row](benchmark::State& state) {
    PieceCopy(state, *texts, is_row ? ',' : '\n');
  });
  if (!is_row) {
    benchmark::RegisterBenchmark((name + "/flushed").c_str(),
                                 [texts](benchmark::State& state) { LinesFlushed(state, *texts); });
    return;
  }
  benchmark::RegisterBenchmark((name + "/plain").c_str(), [texts](benchmark::State& state) {
    Streams(state, *texts, InsertAsText);
  });
  benchmark::RegisterBenchmark((name + "/streamed").c_str(), [texts](benchmark::State& state) {
    Streams(state, *texts, Insert);
  });
}

void RegisterDecoder(const char* name, std::string (*decode)(std::uint8_t)) {
  benchmark::RegisterBenchmark(name, [decode](benchmark::State& state) { Decoder(state, decode); });
}

void RegisterPieces() {
  benchmark::RegisterBenchmark("header", Header);
  benchmark::RegisterBenchmark("export_data", Export);
  RegisterDecoder("decoder/cable_type",
                  [](std::uint8_t code) { return cable_info::CableTypeToStr(code, "NA"); });
  RegisterDecoder("decoder/supported_speed",
                  [](std::uint8_t mask) { return cable_info::SupportedSpeedToStr(mask, "NA"); });
  RegisterDecoder("decoder/temperature", [](std::uint8_t degrees) {
    return cable_info::TemperatureToStr(0, static_cast<std::int8_t>(degrees), "NA");
  });
  RegisterDecoder("decoder/voltage", [](std::uint8_t high) {
    return cable_info::VoltageToStr(static_cast<std::uint16_t>(high << 8));
  });
  benchmark::RegisterBenchmark("fixed3/library", [](benchmark::State& state) {
    cable_info::text::TextBuffer out;
    Fixed3(state, [&](double value) {
      out.Truncate(0);
      benchmark::DoNotOptimize(out.AppendFixed3(value).view().data());
      benchmark::ClobberMemory();
    });
  });
  benchmark::RegisterBenchmark("fixed3/to_chars", [](benchmark::State& state) {
    char text[400];
    Fixed3(state, [&](double value) {
      benchmark::DoNotOptimize(
          std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed, 3).ptr);
      benchmark::ClobberMemory();
    });
  });
  benchmark::RegisterBenchmark("fixed3/snprintf", [](benchmark::State& state) {
    char text[400];
    Fixed3(state, [&](double value) {
      benchmark::DoNotOptimize(std::snprintf(text, sizeof(text), "%.3f", value));
      benchmark::ClobberMemory();
    });
  });
}

// Several short runs of each in random order, so that all are affected equally by other activity.
std::vector<char*> WithDefaults(int argc, char** argv) {
  static char repetitions[] = "--benchmark_repetitions=21";
  static char min_time[] = "--benchmark_min_time=0.02";
  static char interleaving[] = "--benchmark_enable_random_interleaving=true";
  std::vector<char*> arguments = {argv[0], repetitions, min_time, interleaving};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  return arguments;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  std::vector<char*> arguments = bench::WithDefaults(argc, argv);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  bench::RegisterOutput("cable_row", bench::CableRecords(), &bench::CableRecord::ToCSVStream, true);
  bench::RegisterOutput("phy_row", bench::PhyRecords(), &bench::PhyCableRecord::ToCSVStream, true);
  bench::RegisterOutput("cable_report", bench::CableRecords(), &bench::CableRecord::ToFileStream,
                        false);
  bench::RegisterOutput("phy_report", bench::PhyRecords(), &bench::PhyCableRecord::ToFileStream,
                        false);
  bench::RegisterPieces();
  bench::Times times;
  benchmark::RunSpecifiedBenchmarks(&times);
  bench::PrintTables(times);
  return times.failed() ? 1 : 0;
}
