#pragma once

/// \file
/// A decoded module as JSON and as text.

#include <iosfwd>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_info.h"

namespace cable_info {

/// The version of the JSON; it increases when a key is renamed or removed.
inline constexpr unsigned kModuleFormatVersion = 1;

/// The module as one JSON object, on one line without a line break. The keys never depend on what
/// the module contains: absent values are null. `label` names the module, a file name for example;
/// bytes of it that are not UTF-8 become U+FFFD. docs/module.schema.json describes the object.
std::string ModuleToJson(const ModuleInfo& info, std::string_view label);
/// The same to a stream.
void WriteModuleJson(std::ostream& os, const ModuleInfo& info, std::string_view label);

/// The module as a data sheet: values in groups with units, thresholds next to their values, and
/// raised flags by name. Every line ends with a line break.
std::string ModuleToText(const ModuleInfo& info, std::string_view label);
/// The same to a stream.
void WriteModuleText(std::ostream& os, const ModuleInfo& info, std::string_view label);

}  // namespace cable_info
