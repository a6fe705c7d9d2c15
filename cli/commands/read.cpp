// cableinfo read

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/commands/message_log.h"
#include "cli/input/port.h"
#include "cli/input/same_file.h"
#include "cli/live/live_record.h"
#include "cli/live/module_reader.h"
#include "cli/live/readers.h"
#include "cli/live/sysfs.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"
#include "cli/store/times.h"

namespace cli {

namespace {

using std::chrono::milliseconds;

std::string HostName() {
  constexpr std::size_t kCapacity = 256;
  char name[kCapacity] = {};
  return gethostname(name, sizeof(name) - 1) == 0 ? name : "localhost";
}

// SIGINT and SIGTERM end a watch after the port that is being read. They are blocked and polled, so
// that none is lost between a check and the wait that follows it.
class Interruption {
 public:
  Interruption() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
  }

  // True if one has arrived or arrives within the time.
  bool Within(std::chrono::nanoseconds time) {
    constexpr long kPerSecond = 1'000'000'000;
    timespec limit = {};
    limit.tv_sec = static_cast<time_t>(time.count() / kPerSecond);
    limit.tv_nsec = static_cast<long>(time.count() % kPerSecond);
    while (!is_interrupted_) {
      const int signal = sigtimedwait(&signals_, nullptr, &limit);
      if (signal < 0 && errno == EINTR) continue;
      if (signal < 0) break;
      is_interrupted_ = true;
    }
    return is_interrupted_;
  }

 private:
  sigset_t signals_ = {};
  bool is_interrupted_ = false;
};

// A module that takes longer than this many times the limit of a request is abandoned.
constexpr int kRequestsInModuleLimit = 10;

class Reader {
 public:
  explicit Reader(const ReadOptions& options)
      : options_(options),
        request_limit_(static_cast<std::int64_t>(options.timeout * 1000)),
        host_(HostName()) {}

  ExitStatus status() const { return status_; }
  const PortCounts& counts() const { return counts_; }

  // Counts ports that were there when the run began and are gone now.
  void CountUnknown(std::size_t ports) {
    counts_.left_out += ports;
    if (ports > 0) status_ = Worse(status_, ExitStatus::kBadPorts);
  }

  // One record per port, until `is_interrupted`. False when the run must end.
  bool ReadAll(const std::vector<LivePort>& ports, const std::string& taken_at, std::ostream& os,
               const std::function<bool()>& is_interrupted) {
    for (const LivePort& port : ports) {
      if (is_interrupted()) return false;
      Write(port, Read(port), taken_at, os);
      if (!os.good()) return false;
    }
    os.flush();
    return os.good();
  }

 private:
  using Make = std::function<std::unique_ptr<PageReader>()>;

  std::vector<Make> WaysTo(const LivePort& port) const {
    std::vector<Make> ways;
    if (!port.interface.empty()) {
      ways.emplace_back([&] { return MakeNetlinkReader(port.interface, request_limit_); });
      ways.emplace_back([&] { return MakeIoctlReader(port.interface); });
    }
    if (!port.eeprom.empty()) ways.emplace_back([&] { return MakeEepromFileReader(port.eeprom); });
    return ways;
  }

  // The module, read in the first way that works.
  LiveModule Read(const LivePort& port) {
    if (!busy_[port.Name()].expired()) {
      return Failure(
          {ReadError::Kind::kTimeLimit, "an earlier request is still waiting for an answer"});
    }
    ReadError error = {ReadError::Kind::kNotSupported, "it has no network interface"};
    for (const Make& make : WaysTo(port)) {
      std::shared_ptr<PageReader> reader = make();
      busy_[port.Name()] = reader;
      const auto timed = MakeTimedReader(std::move(reader), request_limit_);
      LiveModule module = ReadLiveModule(*timed, request_limit_ * kRequestsInModuleLimit);
      if (!module.error || !LeavesOthers(module.error->kind)) return module;
      if (error.kind == ReadError::Kind::kNotSupported) error = std::move(*module.error);
    }
    return Failure(std::move(error));
  }

  static LiveModule Failure(ReadError error) { return {{}, {}, std::move(error)}; }

  // Errors after which another way may succeed: a file can be read without privilege, and in a
  // container without the interface.
  static bool LeavesOthers(ReadError::Kind kind) {
    return kind == ReadError::Kind::kNotSupported || kind == ReadError::Kind::kNoPermission ||
           kind == ReadError::Kind::kPort;
  }

  void Write(const LivePort& port, const LiveModule& module, const std::string& taken_at,
             std::ostream& os) {
    const std::string label = host_ + ':' + port.Name();
    std::vector<std::string> remarks = module.remarks;
    if (module.error) {
      if (!IsWorthARecord(port, *module.error)) return LeaveOut(port, label, *module.error);
      remarks = {(module.error->kind == ReadError::Kind::kNoModule ? "no module: "
                                                                   : "no module memory: ") +
                 module.error->text};
    }
    for (const std::string& remark : remarks) Remark(label, remark);
    if (!remarks.empty()) ++counts_.remarked;
    os << LiveRecordText({port, label, taken_at, module.image}) << '\n';
    ++counts_.written;
  }

  bool IsNamed() const { return !options_.names.empty(); }

  // True for an empty cage, and for an InfiniBand port whose driver offers no module memory, unless
  // the command line names ports.
  bool IsWorthARecord(const LivePort& port, const ReadError& error) const {
    if (error.kind == ReadError::Kind::kNoModule) return true;
    return error.kind == ReadError::Kind::kNotSupported && !port.device.empty() && !IsNamed();
  }

  void LeaveOut(const LivePort& port, const std::string& label, const ReadError& error) {
    const bool is_other = port.device.empty() && !IsNamed();
    if (error.kind == ReadError::Kind::kNotSupported && is_other) {
      return Remark(label, "left out, no module memory: " + error.text);
    }
    ++counts_.left_out;
    if (error.kind != ReadError::Kind::kNoPermission) {
      status_ = Worse(status_, ExitStatus::kBadPorts);
      return PrintError(label + ": " + error.text);
    }
    status_ = Worse(status_, ExitStatus::kFileFailed);
    if (std::exchange(has_explained_permission_, true)) return;
    PrintError(label + ": " + error.text);
    if (port.interface.empty()) return;
    PrintError(
        "cableinfo: the kernel lets only processes with the capability CAP_NET_ADMIN read modules; "
        "run as root, or once: setcap cap_net_admin+ep PROGRAM");
  }

  void Remark(const std::string& label, const std::string& text) const {
    if (!options_.quiet) PrintError(label + ": warning: " + text);
  }

  const ReadOptions& options_;
  const milliseconds request_limit_;
  const std::string host_;
  std::map<std::string, std::weak_ptr<PageReader>> busy_;  // readers with a request under way
  bool has_explained_permission_ = false;
  ExitStatus status_ = ExitStatus::kGood;
  PortCounts counts_;
};

// The ports that the command line names.
struct NamedPorts {
  std::vector<LivePort> ports;
  std::size_t unknown = 0;  // names without a port
};

// Prints a message for each name without a port.
NamedPorts Ports(const ReadOptions& options) {
  const std::vector<LivePort> all = FindPorts(options.sysfs);
  std::vector<std::string> unknown;
  std::vector<LivePort> ports = SelectPorts(all, options.names, options.sysfs, unknown);
  std::string names;
  for (const LivePort& port : all) names += (names.empty() ? "" : ", ") + port.Name();
  for (const std::string& name : unknown) {
    std::error_code error;
    const bool is_file = std::filesystem::is_regular_file(name, error);
    PrintError("cableinfo: no port or EEPROM file \"" + name + "\"; " +
               (is_file         ? "for the file in this folder, write ./" + name
                : names.empty() ? "none was found"
                                : "the ports are " + names));
  }
  return {std::move(ports), unknown.size()};
}

// Why the output cannot be written; none when it can.
std::optional<std::string> OutputProblem(const ReadOptions& options,
                                         const std::vector<LivePort>& ports) {
  if (options.output.empty()) return kNoFileName;
  const auto is_same = [&](const LivePort& port) {
    return !port.eeprom.empty() && IsSameFile(port.eeprom, options.output);
  };
  if (std::ranges::any_of(ports, is_same)) return options.output + " is also an input";
  return std::nullopt;
}

ExitStatus Scan(const ReadOptions& options, const std::vector<LivePort>& ports) {
  std::vector<std::vector<std::string>> rows = {
      {"NAME", "DEVICE", "NODE GUID", "PORT GUID", "EEPROM FILE"}};
  for (const LivePort& port : ports) {
    const bool is_infiniband = !port.device.empty();
    rows.push_back(
        {port.Name(), is_infiniband ? port.device + '/' + std::to_string(port.number) : "-",
         is_infiniband ? GuidText(port.node_guid) : "-",
         is_infiniband ? GuidText(port.port_guid) : "-", port.eeprom.empty() ? "-" : port.eeprom});
  }
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  return WriteTo(options.output, [&](std::ostream& os) {
    for (const auto& row : rows) {
      for (std::size_t i = 0; i + 1 < row.size(); ++i) {
        os << row[i] << std::string(widths[i] - row[i].size() + 2, ' ');
      }
      os << row.back() << '\n';
    }
  });
}

ExitStatus ReadOnce(const ReadOptions& options, const std::vector<LivePort>& ports,
                    Reader& reader) {
  return WriteWhole(options.output, [&](OutputFile& output) {
    std::ostream os(&output);
    reader.ReadAll(ports, {}, os, [] { return false; });
    if (!output.replaces_file() || reader.counts().written > 0) return Ending::kCommit;
    PrintError("cableinfo: " + options.output + ": not written: no port could be read");
    return Ending::kDiscard;
  });
}

// Searches for ports in every round, because cards and interfaces may be added and removed.
ExitStatus Watch(const ReadOptions& options, Reader& reader) {
  Interruption interruption;
  const auto pause = std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>(options.watch));
  return WriteWhole(options.output, [&](OutputFile& output) {
    std::ostream os(&output);
    auto next = std::chrono::steady_clock::now();
    const auto is_interrupted = [&] { return interruption.Within({}); };
    for (;;) {
      const NamedPorts named = Ports(options);
      reader.CountUnknown(named.unknown);
      if (!reader.ReadAll(named.ports, TimeNow(), os, is_interrupted)) break;
      next = std::max(next + pause, std::chrono::steady_clock::now());
      if (interruption.Within(next - std::chrono::steady_clock::now())) break;
    }
    return Ending::kCommit;
  });
}

}  // namespace

ExitStatus ReadModules(const ReadOptions& options) {
  std::error_code error;
  if (options.names.empty() && std::filesystem::status(options.sysfs, error).type() ==
                                   std::filesystem::file_type::not_found) {
    return FileFailed(options.sysfs, error);
  }
  const NamedPorts named = Ports(options);
  if (named.unknown > 0) return ExitStatus::kUsage;
  if (const std::optional<std::string> problem = OutputProblem(options, named.ports)) {
    PrintError("cableinfo: --output: " + *problem);
    return ExitStatus::kUsage;
  }
  if (options.scan) return Scan(options, named.ports);
  if (named.ports.empty() && options.watch == 0) {
    PrintError("cableinfo: no port was found under " + options.sysfs);
    return ExitStatus::kBadPorts;
  }
  Reader reader(options);
  const ExitStatus output =
      options.watch > 0 ? Watch(options, reader) : ReadOnce(options, named.ports, reader);
  if (reader.counts().left_out > 0 && !options.quiet) PrintSummary(reader.counts());
  return Worse(reader.status(), output);
}

}  // namespace cli
