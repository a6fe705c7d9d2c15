#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "cli/commands/port_options.h"
#include "cli/message.h"

namespace cli {

/// What a run did with its ports.
struct PortCounts {
  std::uint64_t written = 0;
  std::uint64_t left_out = 0;
  std::uint64_t remarked = 0;       ///< written, with a remark
  std::uint64_t failed_inputs = 0;  ///< that could not be read to their end
};

/// The most messages of each kind that are written for an input.
inline constexpr std::uint64_t kMaxOfAKind = 20;

/// The messages of a run on standard error, limited in number: the first of each kind are written
/// for an input, the others are counted. One line after the input summarizes them:
///
///     ports.jsonl: 1003 more messages: 1000 unknown keys, 3 values that do not fit (...)
class MessageLog {
 public:
  enum class Limit { kPerKind, kNone };
  enum class Remarks { kShown, kHidden };

  MessageLog(Limit limit, Remarks remarks) : limit_(limit), remarks_(remarks) {}

  /// The following messages are about the input with this index and name.
  void StartInput(std::size_t index, const std::string& name);
  /// True when a message of this kind is shown now; counts it if not.
  bool Admits(MessageKind kind);
  /// The text of a message, with its suggestion. Caches suggestions: a wrong key usually occurs in
  /// many ports, and a search takes as long as twenty ports.
  std::string TextOf(const Message& message);
  /// Ends the last input.
  void Finish();

 private:
  void SumUp();

  Limit limit_;
  Remarks remarks_;
  std::size_t index_ = 0;
  std::string name_;
  std::array<std::uint64_t, kMessageKinds> counts_{};
  // By the keys that were known and the one that was not.
  std::map<std::pair<const std::string_view*, std::string>, std::string> suggestions_;
};

/// The log of a run with these options.
MessageLog LogOf(const PortOptions& options);

/// Prints how many ports were left out because others have the same `PortKey`; nothing for 0.
void PrintRepeatedPorts(std::size_t count);

/// Prints one line with the counts of a run that left something out.
void PrintSummary(const PortCounts& counts);

}  // namespace cli
