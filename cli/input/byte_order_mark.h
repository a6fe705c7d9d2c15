#pragma once

#include <string_view>

namespace cli {

/// `text` without the UTF-8 byte order mark that editors on some systems put before it.
constexpr std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return text.substr(0, kMark.size()) == kMark ? text.substr(kMark.size()) : text;
}

}  // namespace cli
