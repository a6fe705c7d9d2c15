#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace cli {

/// The kinds of messages about ports. Each kind is limited on its own, so that a flood of one does
/// not hide the others.
enum class MessageKind : std::uint8_t {
  kNotJson,
  kUnknownKey,
  kRepeatedKey,
  kBadValue,
  kLongLine,
  kBadModule,
  kChecksum,     ///< a remark: the port is written
  kNoLength,     ///< a remark
  kOtherRemark,  ///< a remark
};
inline constexpr std::size_t kMessageKinds = 9;

constexpr bool IsRemark(MessageKind kind) { return kind >= MessageKind::kChecksum; }

/// A message about a port, without its line in the input.
struct Message {
  MessageKind kind = MessageKind::kBadValue;
  std::string text;
  /// A key that is none of `known_keys`. `Suggestion` looks for the one that was meant, so that a
  /// message that is not shown does not cost the search.
  std::string unknown_key;
  std::span<const std::string_view> known_keys;

  /// `; did you mean "Temperature"?` after an unknown key that is similar to a known one.
  std::string Suggestion() const;
  std::string Text() const { return text + Suggestion(); }
};

/// A count with its noun: "1 port", "2 ports".
std::string Counted(std::uint64_t count, std::string_view one, std::string_view several);

/// Writes a line to standard error, in one piece. Control characters are shown as escapes, so that
/// foreign text can neither control a terminal nor forge a second line.
void PrintError(std::string_view line);

}  // namespace cli
