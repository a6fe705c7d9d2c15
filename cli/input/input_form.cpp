#include "cli/input/input_form.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/byte_order_mark.h"
#include "cli/input/input_name.h"

namespace cli {

namespace {

using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpFromContent;
using cable_info::module_memory::ReadModule;

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool IsDump(std::string_view content) {
  constexpr std::size_t kMaxContent = 256U << 10;
  if (content.size() > kMaxContent) return false;
  try {
    ReadModule(DumpFromContent(content));
    return true;
  } catch (const BadModule&) {
    return false;
  }
}

// The form of an input whose first line ends within an object or an array.
InputForm FormOfOpenLine(std::string_view first_line, std::string_view rest) {
  if (rest.empty()) return InputForm::kUnknownYet;
  if (first_line.front() == '[') {
    const bool holds_objects = first_line.size() > 1 || rest.front() == '{';
    return holds_objects ? InputForm::kArray : InputForm::kPortRecords;
  }
  return rest.front() == '"' ? InputForm::kPrettyPrinted : InputForm::kPortRecords;
}

}  // namespace

InputForm RecognizeForm(std::string_view beginning) {
  const std::string_view content = WithoutByteOrderMark(beginning);
  const std::string_view text = WithoutLeadingBlanks(content);
  if (text.empty()) return InputForm::kPortRecords;
  const bool is_json = text.front() == '{' || text.front() == '[';
  if (!is_json) return IsDump(content) ? InputForm::kDump : InputForm::kPortRecords;

  const std::size_t newline = std::min(text.find('\n'), text.size());
  const std::string_view line = WithoutTrailingBlanks(text.substr(0, newline));
  const bool is_array_of_objects =
      line.front() == '[' && WithoutLeadingBlanks(line.substr(1)).substr(0, 1) == "{";
  if (is_array_of_objects) return InputForm::kArray;
  constexpr std::string_view kOpenEnds = "{[,:";
  if (kOpenEnds.find(line.back()) == std::string_view::npos) return InputForm::kPortRecords;
  return FormOfOpenLine(line, WithoutLeadingBlanks(text.substr(newline)));
}

bool IsStream(const std::string& path) {
  if (IsStandardInput(path)) return true;
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  return std::filesystem::is_other(status);
}

std::optional<char> FirstCharacter(const std::string& path) {
  if (IsStream(path)) return std::nullopt;
  constexpr std::streamsize kCapacity = 4096;
  std::string beginning(kCapacity, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(beginning.data(), kCapacity);
  beginning.resize(static_cast<std::size_t>(file.gcount()));
  const std::string_view text = WithoutLeadingBlanks(WithoutByteOrderMark(beginning));
  return text.empty() ? std::nullopt : std::optional(text.front());
}

std::string_view HintFor(InputForm form) {
  switch (form) {
    case InputForm::kPrettyPrinted:
      return "expected one object per line, found objects spread over several lines; "
             "convert them, for example with jq -c .";
    case InputForm::kArray:
      return "expected one object per line, found an array of objects; "
             "convert it, for example with jq -c .[]";
    case InputForm::kDump:
      return "looks like a dump of a module's memory, not like port records; "
             "give it with --module";
    default:
      return {};
  }
}

}  // namespace cli
