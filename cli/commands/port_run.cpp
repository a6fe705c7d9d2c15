// A run over the inputs, by any number of threads.
//
// Every thread is a worker that repeats the same three steps with its own work item: it reads
// a block of lines (R), decodes it (D) and writes the result (W). Only one worker reads at a time,
// and only one writes:
//
//     worker 1   R0 DDDDDDDD W0 R2 DDDDDDD   W2
//     worker 2      R1 DDDDDD   W1 R3 DDDDDDDD  W3
//
// Blocks are numbered as they are read, and the block that is written has the lowest number of all
// blocks in progress:
//
//     written_ <= number of each block in progress < read_,    read_ - written_ <= workers
//
// Hence output and messages are those of one thread, and memory is bounded by the number of
// threads. A worker waits for the blocks before its own, which costs little because blocks are of
// similar size; with one thread the cost is an uncontended lock per step.

#include "cli/commands/port_run.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/commands/decoded_block.h"
#include "cli/commands/line_block.h"
#include "cli/commands/message_log.h"
#include "cli/commands/port_output.h"
#include "cli/input/input_name.h"
#include "cli/input/port_reader.h"
#include "cli/message.h"
#include "cli/output/progress.h"
#include "cli/output/whole_output.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

namespace {

// The size of all inputs; none when one of them has no size.
std::optional<std::uint64_t> TotalSize(const std::vector<std::string>& inputs) {
  std::uint64_t total = 0;
  for (const std::string& input : inputs) {
    if (FindSnapshot(input)) return std::nullopt;
    const std::optional<std::uint64_t> size = FileSize(input);
    if (!size) return std::nullopt;
    total += *size;
  }
  return total;
}

unsigned ThreadsOf(const PortOptions& options) {
  const unsigned wanted = options.jobs == 0 ? std::thread::hardware_concurrency() : options.jobs;
  return std::clamp(wanted, 1U, kMaxJobs);
}

Progress::Meter MeterOf(const PortOptions& options, const OutputFile& output) {
  const bool is_shown = !options.quiet && !output.is_terminal() && StandardErrorIsTerminal();
  return is_shown ? Progress::Meter::kShown : Progress::Meter::kHidden;
}

PortReaderOptions ReaderOptionsOf(const PortOptions& options, const PortWriter& writer) {
  return {options.strict ? ChecksumPolicy::kRefuse : ChecksumPolicy::kReport,
          options.no_files ? FilePolicy::kRefuse : FilePolicy::kRead, writer.module_use(),
          writer.needs_record()};
}

// The memory of a worker, reused for every block.
struct WorkItem {
  explicit WorkItem(const PortReaderOptions& options) : reader(options) {}

  std::uint64_t number = 0;  // of the block
  LineBlock block;
  PortReader reader;
  DecodedBlock decoded;
};

class PortRun {
 public:
  PortRun(const PortOptions& options, const PortWriter& writer, PortCollector* collector,
          OutputFile& output)
      : on_bad_port_(options.strict ? OnBadPort::kStop : OnBadPort::kContinue),
        threads_(ThreadsOf(options)),
        reader_options_(ReaderOptionsOf(options, writer)),
        selection_(options.selection),
        writer_(writer),
        collector_(collector),
        inputs_(InputsOf(options)),
        os_(&output),
        shows_at_once_(output.is_terminal()),
        log_(LogOf(options)),
        progress_(MeterOf(options, output), TotalSize(InputsOf(options))) {}

  Outcome Run() {
    writer_.Begin(os_);
    std::vector<std::thread> others;
    for (unsigned i = 1; i < threads_; ++i) {
      try {
        others.emplace_back([this] { Work(); });
      } catch (const std::exception&) {
        break;  // no thread or no memory: continue with the threads that were started
      }
    }
    Work();
    for (std::thread& other : others) other.join();
    if (failure_) std::rethrow_exception(failure_);
    progress_.Clear();
    const Outcome outcome = {status_, is_stopped_ ? Outcome::End::kStopped : Outcome::End::kReached,
                             counts_};
    if (collector_ != nullptr) collector_->End(os_, RunEndOf(outcome));
    log_.Finish();
    return outcome;
  }

 private:
  void Work() {
    try {
      WorkItem item(reader_options_);
      while (Read(item)) {
        DecodeBlock(item.block, item.reader, selection_, writer_, on_bad_port_, item.decoded);
        WriteInOrder(item);
      }
    } catch (...) {
      const std::scoped_lock lock(writing_);
      if (!failure_) failure_ = std::current_exception();
      is_stopped_ = true;
      turn_.notify_all();
    }
  }

  bool Read(WorkItem& item) {
    const std::scoped_lock lock(reading_);
    if (is_stopped_ || !inputs_.Next(item.block)) return false;
    item.number = read_++;
    return true;
  }

  void WriteInOrder(const WorkItem& item) {
    std::unique_lock lock(writing_);
    turn_.wait(lock, [&] { return written_ == item.number || failure_; });
    if (!is_stopped_) Write(item.block, item.decoded);
    ++written_;
    turn_.notify_all();
  }

  void Write(const LineBlock& block, const DecodedBlock& decoded) {
    Report(block, decoded);
    if (decoded.counts.written > 0) {
      WriteText(decoded.text);
    }
    if (block.is_last_for_now || shows_at_once_) os_.flush();
    Count(block, decoded.counts);
    const bool is_bad = decoded.counts.left_out > 0 || block.form != InputForm::kPortRecords;
    const bool ends_here = on_bad_port_ == OnBadPort::kStop && is_bad;
    if (!os_.good() || ends_here) is_stopped_ = true;
    progress_.Update(counts_.written, block.input_bytes);
  }

  void WriteText(const std::string& text) {
    if (collector_ != nullptr) return collector_->Take(text);
    if (counts_.written > 0) os_ << writer_.Separator();
    os_.write(text.data(), static_cast<std::streamsize>(text.size()));
  }

  void Report(const LineBlock& block, const DecodedBlock& decoded) {
    const std::string name = InputName(block.path());
    log_.StartInput(block.input(), name);
    for (const LineMessage& message : decoded.messages) {
      if (!log_.Admits(message.message.kind)) continue;
      progress_.Clear();
      PrintError(name + ':' + std::to_string(message.line) + ": " + log_.TextOf(message.message));
    }
    if (block.form != InputForm::kPortRecords) {
      progress_.Clear();
      PrintError(name + ": " + std::string(HintFor(block.form)));
    }
    if (!block.input_error) return;
    progress_.Clear();
    status_ = Worse(status_, FileFailed(name, block.input_error));
  }

  void Count(const LineBlock& block, const PortCounts& counts) {
    counts_.written += counts.written;
    counts_.left_out += counts.left_out;
    counts_.remarked += counts.remarked;
    const bool has_form = block.form == InputForm::kPortRecords;
    if (block.input_error || !has_form) ++counts_.failed_inputs;
    if (counts.left_out > 0 || !has_form) status_ = Worse(status_, ExitStatus::kBadPorts);
  }

  const OnBadPort on_bad_port_;
  const unsigned threads_;
  const PortReaderOptions reader_options_;
  const Selection& selection_;
  const PortWriter& writer_;
  PortCollector* const collector_;

  std::mutex reading_;  // guards the next two
  BlockReader inputs_;
  std::uint64_t read_ = 0;  // blocks

  std::mutex writing_;  // guards all of the following
  std::condition_variable turn_;
  std::uint64_t written_ = 0;  // blocks
  std::ostream os_;
  const bool shows_at_once_;
  MessageLog log_;
  Progress progress_;
  ExitStatus status_ = ExitStatus::kGood;
  PortCounts counts_;
  std::exception_ptr failure_;

  std::atomic<bool> is_stopped_ = false;  // the rest of the input is not read
};

}  // namespace

ExitStatus RunPorts(const PortOptions& options, const PortWriter& writer,
                    PortCollector* collector) {
  return WritePortOutput(options, writer, [&](OutputFile& output, const PortWriter& used) {
    return PortRun(options, collector == nullptr ? used : writer, collector, output).Run();
  });
}

}  // namespace cli
