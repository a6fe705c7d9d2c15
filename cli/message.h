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
  kWrongInput,   ///< the whole input is of another form
  kChecksum,     ///< a remark: the port is written
  kNoLength,     ///< a remark
  kOtherRemark,  ///< a remark
};
inline constexpr std::size_t kMessageKinds = 10;

constexpr bool IsRemark(MessageKind kind) { return kind >= MessageKind::kChecksum; }

/// What there is to say about a port, without its place in the input.
struct Message {
  MessageKind kind = MessageKind::kBadValue;
  std::string text;
  /// A key that is none of `known_keys`. The one that was meant is searched by `Suggestion`
  /// and not before, so that it costs nothing where the message is not shown.
  std::string unknown_key;
  std::span<const std::string_view> known_keys;

  /// `; did you mean "Temperature"?` after an unknown key that is similar to a known one.
  std::string Suggestion() const;
  std::string Text() const { return text + Suggestion(); }
};

/// Writes a line to standard error, in one piece. Control characters are shown as escapes, so that
/// foreign text cannot command a terminal nor forge a second line.
void PrintError(std::string_view line);

}  // namespace cli
