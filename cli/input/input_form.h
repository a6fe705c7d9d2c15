#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cli {

/// The form of an input.
enum class InputForm {
  kPortRecords,    ///< one JSON object per line, or anything that is not recognized
  kUnknownYet,     ///< the second line must be seen to decide
  kPrettyPrinted,  ///< JSON objects spread over lines
  kArray,          ///< a JSON array of objects
  kDump,           ///< the memory of a module
};

/// Recognizes the form of an input by its beginning, so that a wrong form is reported once, with a
/// remedy, instead of once per line.
InputForm RecognizeForm(std::string_view beginning);

/// True for standard input and for pipes and devices, where reading ahead would lose the beginning.
bool IsStream(const std::string& path);

/// The first character of a file after a byte order mark and blanks; none if there is no other, or
/// if it is a stream or cannot be read.
std::optional<char> FirstCharacter(const std::string& path);

/// The message about an input of that form; empty for port records.
std::string_view HintFor(InputForm form);

}  // namespace cli
