#pragma once

#include <string_view>

namespace cli {

/// The page before and after its data, which is JSON in a separate element. The build makes both
/// from the files in `cli/page/`.
/// @{
extern const std::string_view kPageHead;
extern const std::string_view kPageTail;
/// @}

}  // namespace cli
