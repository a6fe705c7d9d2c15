#include "host/module_run.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "host/dump_file.h"
#include "host/message.h"
#include "host/output_file.h"

namespace host {

namespace {

using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleImage;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::Page;
using cable_info::module_memory::PageFile;
using cable_info::module_memory::ParsePageFile;
using cable_info::module_memory::ReadModule;

// The dump of one module: one file, or a file a page.
struct Dump {
  std::string path;
  std::vector<PageFile> pages;
};

bool HasPage(const Dump& dump, Page page) {
  return std::any_of(dump.pages.begin(), dump.pages.end(),
                     [page](const PageFile& file) { return file.page == page; });
}

std::vector<Dump> Dumps(const std::vector<std::string>& arguments) {
  std::vector<Dump> dumps;
  for (const std::string& argument : arguments) {
    std::optional<PageFile> page = ParsePageFile(argument);
    if (!page) {
      dumps.push_back({argument, {}});
      continue;
    }
    const bool continues =
        !dumps.empty() && dumps.back().path.empty() && !HasPage(dumps.back(), page->page);
    if (!continues) dumps.emplace_back();
    dumps.back().pages.push_back(std::move(*page));
  }
  return dumps;
}

// How people call a dump: by its file, or the file of its first page.
std::string Name(const Dump& dump) {
  const std::string& path = dump.pages.empty() ? dump.path : dump.pages.front().path;
  return path == "-" ? "<stdin>" : path;
}

// A file that could not be read.
struct Unreadable {
  std::string path;
  std::error_code error;
};

DumpBytes Read(const std::string& path) {
  try {
    return ReadDump(path);
  } catch (const std::system_error& error) {
    throw Unreadable{path == "-" ? "<stdin>" : path, error.code()};
  }
}

ModuleReading ReadModuleOf(const Dump& dump) {
  if (dump.pages.empty()) return ReadModule(Read(dump.path));
  ModuleImage image;
  for (const PageFile& file : dump.pages) PutPage(image, file.page, Read(file.path));
  return ReadModule(std::move(image));
}

// One run over all dumps.
class Run {
 public:
  Run(const PortOptions& options, const PortWriter& writer, OutputFile& output)
      : options_(options), writer_(writer), os_(&output) {}

  // False when the run stopped before its end.
  bool Do() {
    writer_.Begin(os_);
    return std::ranges::all_of(Dumps(options_.modules),
                               [this](const Dump& dump) { return WriteModule(dump); });
  }

  ExitStatus status() const { return status_; }

 private:
  // False when the run must stop.
  bool WriteModule(const Dump& dump) {
    ++number_;
    try {
      ModuleReading reading = ReadModuleOf(dump);
      std::vector<std::string> remarks;
      Judge(reading, options_.strict, remarks);
      for (const std::string& remark : remarks) Say(Name(dump) + ": warning: " + remark);
      WritePort(std::move(reading));
      return os_.good();
    } catch (const BadModule& bad) {
      Say(Name(dump) + ": " + bad.what());
      status_ = std::max(status_, ExitStatus::kBadPorts);
    } catch (const Unreadable& file) {
      status_ = std::max(status_, FileFailed(file.path, file.error));
      return true;  // as an input of port records that cannot be read
    }
    return !options_.strict;
  }

  void WritePort(ModuleReading reading) {
    Port port;
    port.number = number_;
    port.cable_record = reading.cable.get();
    port.phy_cable_record = reading.phy.get();
    port.cable.AttachCableRecord(std::move(reading.cable));
    port.cable.AttachPhyCableRecord(std::move(reading.phy));
    if (has_written_) os_ << writer_.Separator();
    has_written_ = true;
    writer_.Write(os_, port);
  }

  const PortOptions& options_;
  const PortWriter& writer_;
  std::ostream os_;
  ExitStatus status_ = ExitStatus::kGood;
  std::uint32_t number_ = 0;
  bool has_written_ = false;
};

}  // namespace

ExitStatus RunModules(const PortOptions& options, const PortWriter& writer) {
  ExitStatus modules = ExitStatus::kGood;
  const ExitStatus output = WithOutput(options.output, [&](OutputFile& file) {
    Run run(options, writer, file);
    const bool reached_end = run.Do();
    modules = run.status();
    return reached_end || file.has_failed() || options.output.empty();
  });
  return std::max(modules, output);
}

}  // namespace host
