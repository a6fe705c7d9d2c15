// cableinfo columns

#include "cli/commands/commands.h"
#include "cli/output/column_list.h"
#include "cli/output/whole_output.h"

namespace cli {

ExitStatus WriteColumns(const ColumnsOptions& options) {
  return WriteTo(kStandardOutput, options.as_json ? WriteColumnsAsJson : WriteColumnsAsText);
}

}  // namespace cli
