#include "host/run.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <ostream>
#include <system_error>

#include "host/line_reader.h"
#include "host/message.h"
#include "host/output_file.h"
#include "host/port_reader.h"
#include "host/progress.h"

namespace host {

namespace {

ExitStatus Worse(ExitStatus a, ExitStatus b) { return std::max(a, b); }

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

// "ports.jsonl:17: "
std::string Place(const LineReader& lines) {
  return lines.name() + ':' + std::to_string(lines.number()) + ": ";
}

// The size of all inputs, if every one of them has a size.
std::optional<std::uint64_t> TotalSize(const std::vector<std::string>& inputs) {
  std::uint64_t total = 0;
  for (const std::string& input : inputs) {
    const std::optional<std::uint64_t> size = FileSize(input);
    if (!size) return std::nullopt;
    total += *size;
  }
  return total;
}

// One run over all inputs.
class Run {
 public:
  Run(const PortOptions& options, PortWriter& writer, OutputFile& output)
      : options_(options),
        inputs_(options.inputs.empty() ? std::vector<std::string>{"-"} : options.inputs),
        writer_(writer),
        os_(&output),
        progress_(!options.quiet && !output.is_terminal() && StandardErrorIsTerminal(),
                  TotalSize(inputs_)),
        reader_(options.strict) {}

  void Do() {
    writer_.Begin(os_);
    for (const std::string& input : inputs_) {
      if (!ReadInput(input)) return;
    }
    reached_end_ = true;
  }

  ExitStatus status() const { return status_; }
  // False when a strict run stopped at a bad port, or the output could not be written.
  bool reached_end() const { return reached_end_; }

 private:
  // False when the run must stop.
  bool ReadInput(const std::string& input) {
    try {
      LineReader lines(input);
      while (const std::optional<LineReader::Line> line = lines.Next()) {
        if (!ReadLine(lines, *line)) return false;
        progress_.Update(ports_, bytes_before_ + lines.bytes());
      }
      bytes_before_ += lines.bytes();
    } catch (const std::system_error& error) {
      progress_.Clear();
      status_ = Worse(status_, FileFailed(input == "-" ? "<stdin>" : input, error.code()));
    }
    return true;
  }

  bool ReadLine(const LineReader& lines, const LineReader::Line& line) {
    if (IsBlank(line.text) && !line.too_long) return true;
    try {
      if (line.too_long) {
        throw BadPort("expected a line of at most " + std::to_string(LineReader::kLongestLine) +
                      " bytes, found a longer one");
      }
      Port port;
      for (const std::string& remark : reader_.Read(line.text, port)) Remark(lines, port, remark);
      writer_.Write(os_, port);
      ++ports_;
      return os_.good();
    } catch (const BadPort& bad) {
      progress_.Clear();
      Say(Place(lines) + bad.what());
      status_ = Worse(status_, ExitStatus::kBadPorts);
      return !options_.strict;
    }
  }

  void Remark(const LineReader& lines, const Port& port, const std::string& remark) {
    progress_.Clear();
    Say(Place(lines) + "port " + GuidText(port.port_guid) + '/' + std::to_string(port.number) +
        ": " + remark);
  }

  const PortOptions& options_;
  std::vector<std::string> inputs_;
  PortWriter& writer_;
  std::ostream os_;
  Progress progress_;
  PortReader reader_;
  ExitStatus status_ = ExitStatus::kGood;
  bool reached_end_ = false;
  std::uint64_t ports_ = 0;
  std::uint64_t bytes_before_ = 0;
};

}  // namespace

ExitStatus FileFailed(const std::string& name, const std::error_code& error) {
  Say("cableinfo: " + name + ": " + error.message());
  return ExitStatus::kFileFailed;
}

ExitStatus WithOutput(const std::string& path, const std::function<bool(OutputFile&)>& write) {
  try {
    OutputFile output(path);
    if (write(output)) output.Commit();
  } catch (const std::system_error& error) {
    if (error.code().value() == EPIPE) return ExitStatus::kGood;
    return FileFailed(path.empty() ? "standard output" : path, error.code());
  }
  return ExitStatus::kGood;
}

ExitStatus RunPorts(const PortOptions& options, PortWriter& writer) {
  ExitStatus ports = ExitStatus::kGood;
  const ExitStatus output = WithOutput(options.output, [&](OutputFile& file) {
    Run run(options, writer, file);
    run.Do();
    ports = run.status();
    // What a strict run wrote to standard output before the bad port is whole, and so stays; under
    // a file's name it would pass for the whole table.
    return run.reached_end() || file.has_failed() || options.output.empty();
  });
  return Worse(ports, output);
}

ExitStatus RunToStandardOutput(const std::function<void(std::ostream&)>& write) {
  return WithOutput({}, [&](OutputFile& file) {
    std::ostream os(&file);
    write(os);
    return true;
  });
}

}  // namespace host
