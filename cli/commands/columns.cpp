// cableinfo columns

#include <memory>
#include <ostream>

#include "cli/commands/commands.h"
#include "cli/output/column_list.h"
#include "cli/output/whole_output.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo columns                             number, name and meaning of each column\n"
    "  cableinfo columns --json | jq -r .name        the names only";

}  // namespace

void AddColumnsCommand(CLI::App& app, Action& action) {
  CLI::App* const command = app.add_subcommand("columns", "List the columns of the table");
  command->footer(kExamples);
  const auto as_json = std::make_shared<bool>(false);
  command->add_flag("--json", *as_json, "Write one JSON object per column");
  command->callback([as_json, &action] {
    action = [as_json] {
      return WriteToStandardOutput(*as_json ? WriteColumnsAsJson : WriteColumnsAsText);
    };
  });
}

}  // namespace cli
