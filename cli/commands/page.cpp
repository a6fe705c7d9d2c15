// cableinfo page

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/output/page_data.h"
#include "cli/output/whole_output.h"
#include "cli/store/database.h"
#include "cli/store/snapshot_reader.h"
#include "cli/store/times.h"

namespace cli {

namespace {

class EarlierCollector : public PortCollector {
 public:
  explicit EarlierCollector(PageData& page) : page_(page) {}

  void Take(std::string_view ports) override { page_.AddEarlier(ports); }
  void End(std::ostream& /*os*/, const RunEnd& /*run*/) override {}

 private:
  PageData& page_;
};

class PageCollector : public PortCollector {
 public:
  PageCollector(PageData& page, const PageData::About& about) : page_(page), about_(about) {}

  void Take(std::string_view ports) override { page_.Add(ports); }
  void End(std::ostream& os, const RunEnd& /*run*/) override { page_.WriteTo(os, about_); }

 private:
  PageData& page_;
  const PageData::About& about_;
};

// The snapshot that is the only input; none for other inputs.
std::optional<SnapshotName> OnlySnapshot(const PortOptions& options) {
  return options.inputs.size() == 1 ? FindSnapshot(options.inputs.front()) : std::nullopt;
}

// None for the first snapshot of a store.
std::optional<SnapshotName> EarlierSnapshot(const SnapshotName& snapshot) {
  try {
    return SnapshotBefore(snapshot);
  } catch (const StoreError& error) {
    if (error.code().value() != static_cast<int>(StoreProblem::kNoSnapshotBefore)) throw;
    return std::nullopt;
  }
}

// Adds what was before the snapshot, and gives the snapshot its number, so that it is the same one
// even if another is added.
ExitStatus AddEarlier(JudgedPortOptions& options, const SnapshotName& named,
                      const PortWriter& writer, PageData& page, PageData::About& about) {
  std::string& input = options.ports.inputs.front();
  try {
    const SnapshotName snapshot = Numbered(named);
    about.taken_at = TakenAt(snapshot);
    input = snapshot.Input();
    const std::optional<SnapshotName> earlier = EarlierSnapshot(snapshot);
    if (!earlier) return ExitStatus::kGood;
    about.earlier_taken_at = TakenAt(*earlier);
    PortOptions earlier_options = options.ports;
    earlier_options.inputs = {earlier->Input()};
    earlier_options.output = std::string(kStandardOutput);  // to which nothing is written
    EarlierCollector collector(page);
    return WritePorts(earlier_options, writer, &collector);
  } catch (const StoreError& error) {
    return FileFailed(input, error.code());
  }
}

}  // namespace

ExitStatus WritePage(JudgedPortOptions options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  const JudgingWriter writer(WritePagePort, settings);
  PageData page(settings);
  PageData::About about;
  ExitStatus earlier_status = ExitStatus::kGood;
  if (const std::optional<SnapshotName> snapshot = OnlySnapshot(options.ports)) {
    earlier_status = AddEarlier(options, *snapshot, writer, page, about);
    if (earlier_status >= ExitStatus::kUsage) return earlier_status;
  }
  about.input = InputNames(options.ports);
  about.written_at = TimeNow();
  PageCollector collector(page, about);
  return Worse(earlier_status, WritePorts(options.ports, writer, &collector));
}

}  // namespace cli
