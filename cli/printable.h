#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

enum class Newlines { kEscaped, kKept };
enum class Escapes { kShortest, kJson };

/// Foreign text, made safe for a terminal: control characters (C0, DEL, C1), bidirectional
/// controls, line separators and bytes that are not UTF-8 become escapes.
///
///     ESC [ 3 1 m  ->  \x1b[31m        U+0085  ->  \x85        U+202E  ->  \u202e
///
/// `Escapes::kJson` writes each with four digits ("\u0085"), as texts in JSON require. The result
/// never holds an ESC, and with `Newlines::kEscaped` it is one line. Text without such characters
/// is returned unchanged, after one pass over it.
std::string Printable(std::string_view text, Newlines newlines = Newlines::kEscaped,
                      Escapes escapes = Escapes::kShortest);

/// Foreign text for a message: at most `max_size` bytes of it, and "..." after a text that was cut.
/// No character of UTF-8 is cut.
std::string Shortened(std::string_view text, std::size_t max_size = 40);

}  // namespace cli
