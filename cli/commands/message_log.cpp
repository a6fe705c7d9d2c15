#include "cli/commands/message_log.h"

namespace cli {

namespace {

// By `MessageKind`, each with the word for one and for several.
struct KindName {
  std::string_view one;
  std::string_view several;
};
constexpr std::array<KindName, kMessageKinds> kKindNames = {{
    {"line that is not JSON", "lines that are not JSON"},
    {"unknown key", "unknown keys"},
    {"repeated key", "repeated keys"},
    {"value that does not fit", "values that do not fit"},
    {"line that is too long", "lines that are too long"},
    {"bad module memory", "bad module memories"},
    {"wrong checksum", "wrong checksums"},
    {"length that cannot be computed", "lengths that cannot be computed"},
    {"other remark", "other remarks"},
}};

}  // namespace

void MessageLog::StartInput(std::size_t index, const std::string& name) {
  if (index == index_ && name == name_) return;
  SumUp();
  index_ = index;
  name_ = name;
}

bool MessageLog::Admits(MessageKind kind) {
  if (remarks_ == Remarks::kHidden && IsRemark(kind)) return false;
  const std::uint64_t count = ++counts_[static_cast<std::size_t>(kind)];
  return limit_ == Limit::kNone || count <= kMaxOfAKind;
}

std::string MessageLog::TextOf(const Message& message) {
  constexpr std::size_t kMaxRemembered = 1000;
  if (message.unknown_key.empty()) return message.text;
  if (suggestions_.size() >= kMaxRemembered) suggestions_.clear();
  const auto [place, is_new] =
      suggestions_.try_emplace({message.known_keys.data(), message.unknown_key});
  if (is_new) place->second = message.Suggestion();
  return message.text + place->second;
}

void MessageLog::Finish() { SumUp(); }

void MessageLog::SumUp() {
  std::uint64_t total = 0;
  std::string kinds;
  for (std::size_t kind = 0; kind < kMessageKinds; ++kind) {
    const std::uint64_t count = counts_[kind];
    if (limit_ == Limit::kNone || count <= kMaxOfAKind) continue;
    const std::uint64_t hidden = count - kMaxOfAKind;
    total += hidden;
    kinds += kinds.empty() ? "" : ", ";
    kinds += Counted(hidden, kKindNames[kind].one, kKindNames[kind].several);
  }
  counts_ = {};
  if (total == 0) return;
  PrintError(name_ + ": " + Counted(total, "more message", "more messages") + ": " + kinds +
             " (--all-messages shows them)");
}

MessageLog LogOf(const PortOptions& options) {
  return {options.all_messages ? MessageLog::Limit::kNone : MessageLog::Limit::kPerKind,
          options.quiet ? MessageLog::Remarks::kHidden : MessageLog::Remarks::kShown};
}

void PrintRepeatedPorts(std::size_t count) {
  if (count == 0) return;
  PrintError("cableinfo: " + Counted(count, "port", "ports") +
             " left out: others have the same GUID and number (and label, if they have no GUID)");
}

void PrintSummary(const PortCounts& counts) {
  std::string line = "cableinfo: " + Counted(counts.written, "port", "ports") + " written, " +
                     std::to_string(counts.left_out) + " left out, " +
                     std::to_string(counts.remarked) + " remarked on";
  if (counts.failed_inputs > 0) {
    line += "; " + Counted(counts.failed_inputs, "input", "inputs") + " not read to the end";
  }
  PrintError(line);
}

}  // namespace cli
