#include "cli/commands/module_run.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/dump_file.h"
#include "cli/input/input_name.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"

namespace cli {

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::ChecksumPolicy;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::PageFile;
using cable_info::module_memory::ParsePageFile;
using cable_info::module_memory::PutPage;
using cable_info::module_memory::ReadModule;
using cable_info::module_memory::ReportChecksums;

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

// The name of a dump in messages: its file, or the file of its first page.
std::string Name(const Dump& dump) {
  const std::string& path = dump.pages.empty() ? dump.path : dump.pages.front().path;
  return InputName(path);
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
    throw Unreadable{InputName(path), error.code()};
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

  Outcome Do() {
    writer_.Begin(os_);
    const bool is_whole = std::ranges::all_of(
        Dumps(options_.modules), [this](const Dump& dump) { return WriteModule(dump); });
    return {status_, is_whole};
  }

 private:
  // False when the run must stop.
  bool WriteModule(const Dump& dump) {
    ++number_;
    try {
      ModuleReading reading = ReadModuleOf(dump);
      std::vector<std::string> remarks;
      ReportChecksums(reading, options_.strict ? ChecksumPolicy::kRefuse : ChecksumPolicy::kReport,
                      remarks);
      for (const std::string& remark : remarks) PrintError(Name(dump) + ": warning: " + remark);
      WritePort(std::move(reading));
      return os_.good();
    } catch (const BadModule& bad) {
      PrintError(Name(dump) + ": " + bad.what());
      status_ = Worse(status_, ExitStatus::kBadPorts);
    } catch (const Unreadable& file) {
      status_ = Worse(status_, FileFailed(file.path, file.error));
      return true;  // as an input of port records that cannot be read
    }
    return !options_.strict;
  }

  void WritePort(ModuleReading reading) {
    Port port;
    port.number = number_;
    port.Attach(std::move(reading.cable), std::move(reading.phy));
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
  return WriteWhole(options.output,
                    [&](OutputFile& output) { return Run(options, writer, output).Do(); });
}

}  // namespace cli
