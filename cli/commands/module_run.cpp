#include "cli/commands/module_run.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/commands/message_log.h"
#include "cli/commands/port_output.h"
#include "cli/input/dump_file.h"
#include "cli/input/input_name.h"
#include "cli/input/module_memory.h"
#include "cli/input/module_remarks.h"
#include "cli/input/record_text.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"
#include "cli/split_path.h"

namespace cli {

namespace {

using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::ChecksumPolicy;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::PageFile;
using cable_info::module_memory::ParsePageFile;
using cable_info::module_memory::PutPage;

// The dump of one module: one file, or one file per page.
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

const std::string& FirstPath(const Dump& dump) {
  return dump.pages.empty() ? dump.path : dump.pages.front().path;
}

// The name of a dump in messages: its file, or the file of its first page.
std::string Name(const Dump& dump) { return InputName(FirstPath(dump)); }

// The label of its port: the name of that file without its folder.
std::string Label(const Dump& dump) { return InputName(Split(FirstPath(dump)).name); }

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

ModuleReading ReadModuleOf(const Dump& dump, const PortWriter& writer, ModuleInfo& info,
                           Port& port) {
  const ModuleUse use = writer.module_use();
  if (dump.pages.empty()) {
    const DumpBytes bytes = Read(dump.path);
    if (writer.needs_record()) port.record = RecordOf(port.label, port.number, bytes);
    return DecodeModule(bytes, use, info, port);
  }
  ModuleImage image;
  for (const PageFile& file : dump.pages) PutPage(image, file.page, Read(file.path));
  if (writer.needs_record()) port.record = RecordOf(port.label, port.number, image);
  return DecodeModule(image, use, info, port);
}

// One run over all dumps.
class ModuleRun {
 public:
  ModuleRun(const PortOptions& options, const PortWriter& writer, PortCollector* collector,
            OutputFile& output)
      : options_(options),
        writer_(writer),
        collector_(collector),
        os_(&output),
        log_(LogOf(options)) {}

  Outcome Run() {
    writer_.Begin(os_);
    const bool reached_end = std::ranges::all_of(
        Dumps(options_.modules), [this](const Dump& dump) { return WriteModule(dump); });
    const Outcome outcome = {status_, reached_end ? Outcome::End::kReached : Outcome::End::kStopped,
                             counts_};
    if (collector_ != nullptr) collector_->End(os_, RunEndOf(outcome));
    log_.Finish();
    return outcome;
  }

 private:
  // False when the run must stop.
  bool WriteModule(const Dump& dump) {
    ++number_;
    log_.StartInput(number_, Name(dump));
    try {
      Port port;
      port.number = number_;
      port.label = Label(dump);
      ModuleReading reading = ReadModuleOf(dump, writer_, info_, port);
      std::vector<Message> remarks;
      AddRemarks(reading, options_.strict ? ChecksumPolicy::kRefuse : ChecksumPolicy::kReport,
                 remarks);
      for (const Message& remark : remarks) {
        if (log_.Admits(remark.kind)) PrintError(Name(dump) + ": warning: " + remark.text);
      }
      if (!remarks.empty()) ++counts_.remarked;
      port.Attach(std::move(reading.cable), std::move(reading.phy));
      WritePort(port);
      return os_.good();
    } catch (const BadModule& bad) {
      PrintError(Name(dump) + ": " + bad.what());
      ++counts_.left_out;
      status_ = Worse(status_, ExitStatus::kBadPorts);
    } catch (const Unreadable& file) {
      status_ = Worse(status_, FileFailed(file.path, file.error));
      ++counts_.failed_inputs;
      return true;  // as an input of port records that cannot be read
    }
    return !options_.strict;
  }

  void WritePort(Port& port) {
    if (!options_.selection.Selects(port)) return;
    if (collector_ != nullptr) {
      std::ostringstream text;
      writer_.Write(text, port);
      collector_->Take(text.view());
    } else {
      if (counts_.written > 0) os_ << writer_.Separator();
      writer_.Write(os_, port);
    }
    ++counts_.written;
  }

  const PortOptions& options_;
  const PortWriter& writer_;
  PortCollector* const collector_;
  std::ostream os_;
  MessageLog log_;
  ExitStatus status_ = ExitStatus::kGood;
  std::uint32_t number_ = 0;  // of the dump; a bad one has its number, too
  PortCounts counts_;
  ModuleInfo info_;  // of the last dump
};

}  // namespace

std::vector<std::string> ModulePaths(const PortOptions& options) {
  std::vector<std::string> paths;
  for (const Dump& dump : Dumps(options.modules)) {
    if (dump.pages.empty()) paths.push_back(dump.path);
    for (const PageFile& page : dump.pages) paths.push_back(page.path);
  }
  return paths;
}

std::optional<std::string> UnknownPage(const std::string& argument) {
  constexpr std::size_t kMaxName = 8;
  const std::size_t colon = argument.find(':');
  const std::string name = argument.substr(0, colon);
  const bool may_be_page = colon != std::string::npos && !name.empty() && name.size() <= kMaxName &&
                           name.find('/') == std::string::npos;
  if (!may_be_page || ParsePageFile(argument) || access(argument.c_str(), F_OK) == 0) {
    return std::nullopt;
  }
  return "unknown page \"" + name + "\" in " + argument + "; " + kPageNames;
}

ExitStatus RunModules(const PortOptions& options, const PortWriter& writer,
                      PortCollector* collector) {
  return WritePortOutput(options, writer, [&](OutputFile& output, const PortWriter& used) {
    return ModuleRun(options, collector == nullptr ? used : writer, collector, output).Run();
  });
}

}  // namespace cli
