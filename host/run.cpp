#include "host/run.h"

#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <system_error>
#include <thread>
#include <utility>

#include "host/block.h"
#include "host/line_reader.h"
#include "host/message.h"
#include "host/output_file.h"
#include "host/port_reader.h"
#include "host/progress.h"

namespace host {

namespace {

ExitStatus Worse(ExitStatus a, ExitStatus b) { return std::max(a, b); }

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

unsigned Threads(const PortOptions& options) {
  const unsigned wanted = options.jobs == 0 ? std::thread::hardware_concurrency() : options.jobs;
  return std::clamp(wanted, 1U, kMostJobs);
}

// A block under way from stage to stage, with the reader that decodes it. That a stage sees what
// the one before it did is the pipeline's own promise; here it is made in words that the thread
// sanitizer knows.
class Parcel {
 public:
  explicit Parcel(bool strict) : reader(strict) {}

  void Receive() const { static_cast<void>(stages_.load(std::memory_order_acquire)); }
  void Pass() { stages_.fetch_add(1, std::memory_order_release); }

  Block block;
  PortReader reader;

 private:
  std::atomic<unsigned> stages_ = 0;
};

// Parcels that are used over and over.
class ParcelPool {
 public:
  explicit ParcelPool(bool strict) : strict_(strict) {}
  ParcelPool(const ParcelPool&) = delete;
  ParcelPool& operator=(const ParcelPool&) = delete;
  ParcelPool(ParcelPool&&) = delete;
  ParcelPool& operator=(ParcelPool&&) = delete;
  ~ParcelPool() {
    const std::scoped_lock lock(mutex_);  // behind all that came back
    parcels_.clear();
  }

  Parcel* Take() {
    const std::scoped_lock lock(mutex_);
    if (free_.empty()) return parcels_.emplace_back(std::make_unique<Parcel>(strict_)).get();
    Parcel* const parcel = free_.back();
    free_.pop_back();
    return parcel;
  }
  void Return(Parcel* parcel) {
    const std::scoped_lock lock(mutex_);
    free_.push_back(parcel);
  }

 private:
  bool strict_;
  std::mutex mutex_;
  std::vector<std::unique_ptr<Parcel>> parcels_;
  std::vector<Parcel*> free_;
};

// One run over all inputs.
class Run {
 public:
  Run(const PortOptions& options, const PortWriter& writer, OutputFile& output)
      : Run(options, writer, output,
            options.inputs.empty() ? std::vector<std::string>{"-"} : options.inputs) {}

  void Do() {
    writer_.Begin(os_);
    const unsigned threads = Threads(options_);
    if (threads == 1) {
      DoAlone();
    } else {
      DoTogether(threads);
    }
  }

  ExitStatus status() const { return status_; }
  // False when a strict run stopped at a bad port, or the output could not be written.
  bool reached_end() const { return !is_stopped_; }

 private:
  Run(const PortOptions& options, const PortWriter& writer, OutputFile& output,
      const std::vector<std::string>& inputs)
      : options_(options),
        writer_(writer),
        inputs_(inputs),
        os_(&output),
        progress_(!options.quiet && !output.is_terminal() && StandardErrorIsTerminal(),
                  TotalSize(inputs)) {}

  void DoAlone() {
    PortReader reader(options_.strict);
    Block block;
    while (!is_stopped_ && inputs_.Next(block)) {
      block.Decode(reader, writer_, options_.strict);
      Write(block);
    }
  }

  // One thread at a time reads, and one writes; all others decode.
  void DoTogether(unsigned threads) {
    ParcelPool pool(options_.strict);
    std::mutex reading;  // never waited for: only one thread at a time reads, and one writes
    std::mutex writing;
    const auto read = [&](tbb::flow_control& flow) -> Parcel* {
      const std::scoped_lock lock(reading);
      Parcel* const parcel = pool.Take();
      if (!is_stopped_ && inputs_.Next(parcel->block)) {
        parcel->Pass();
        return parcel;
      }
      pool.Return(parcel);
      flow.stop();
      return nullptr;
    };
    const auto decode = [&](Parcel* parcel) {
      parcel->Receive();
      parcel->block.Decode(parcel->reader, writer_, options_.strict);
      parcel->Pass();
      return parcel;
    };
    const auto write = [&](Parcel* parcel) {
      const std::scoped_lock lock(writing);
      parcel->Receive();
      Write(parcel->block);
      pool.Return(parcel);
    };
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    tbb::task_arena arena(static_cast<int>(threads));
    arena.execute([&] {
      constexpr std::size_t kBlocksPerThread = 2;
      tbb::parallel_pipeline(
          kBlocksPerThread * threads,
          tbb::make_filter<void, Parcel*>(tbb::filter_mode::serial_in_order, read) &
              tbb::make_filter<Parcel*, Parcel*>(tbb::filter_mode::parallel, decode) &
              tbb::make_filter<Parcel*, void>(tbb::filter_mode::serial_in_order, write));
    });
  }

  void Write(const Block& block) {
    if (is_stopped_) return;
    if (!block.messages.empty() || block.input_error) progress_.Clear();
    for (const std::string& message : block.messages) Say(message);
    if (block.input_error) status_ = Worse(status_, FileFailed(block.input(), block.input_error));
    status_ = Worse(status_, block.status);
    if (block.ports > 0) {
      if (ports_ > 0) os_ << writer_.Separator();
      os_.write(block.text.data(), static_cast<std::streamsize>(block.text.size()));
      os_.flush();
    }
    ports_ += block.ports;
    if (!os_.good() || (options_.strict && block.status != ExitStatus::kGood)) is_stopped_ = true;
    progress_.Update(ports_, block.input_bytes);
  }

  const PortOptions& options_;
  const PortWriter& writer_;
  BlockReader inputs_;
  std::ostream os_;
  Progress progress_;
  ExitStatus status_ = ExitStatus::kGood;
  std::uint64_t ports_ = 0;
  std::atomic<bool> is_stopped_ = false;  // what is still to be read does not matter any more
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

ExitStatus RunPorts(const PortOptions& options, const PortWriter& writer) {
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
