#pragma once

#include <string>
#include <string_view>

#include "cable_info/text/text_buffer.h"

namespace cli {

/// Appends a byte as the UTF-8 of the code point of the same number. A NUL, which readers written
/// in C take for the end of a text, becomes its symbol, U+2400; no byte has that code point.
void AppendByteAsUtf8(cable_info::text::TextBuffer& out, unsigned char byte);

/// Appends bytes in the same way.
void AppendBytesAsUtf8(cable_info::text::TextBuffer& out, std::string_view bytes);

/// A text that should be UTF-8, such as the name of a file: a byte that is not part of a character
/// becomes the code point of the same number.
std::string Utf8Of(std::string_view text);

}  // namespace cli
