#include "cli/commands/line_block.h"

namespace cli {

namespace {

// Short lines may have reports of kilobytes, so that both are limited.
constexpr std::size_t kMaxLines = 256;
constexpr std::size_t kMaxBytes = 256U << 10;

}  // namespace

void LineBlock::Restart(std::size_t input, const std::string& path) {
  input_ = input;
  path_ = path;
  bytes_.clear();
  lines_.clear();
  input_error.clear();
  form = InputForm::kPortRecords;
  is_last_for_now = false;
}

void LineBlock::Add(const LineReader::Line& line, std::uint64_t number) {
  if (lines_.empty()) first_number_ = number;
  const std::string_view kept = line.too_long ? std::string_view() : line.text;
  lines_.push_back({bytes_.size(), kept.size(), line.too_long});
  bytes_ += kept;
}

void LineBlock::Finish() { bytes_.append(LineReader::kPadding, ' '); }

bool LineBlock::IsFull() const { return lines_.size() >= kMaxLines || bytes_.size() >= kMaxBytes; }

LineBlock::Line LineBlock::operator[](std::size_t index) const {
  const Span& span = lines_[index];
  return {std::string_view(bytes_).substr(span.begin, span.size), first_number_ + index,
          span.too_long};
}

bool BlockReader::Next(LineBlock& block) {
  while (IsOpen() || next_ < paths_.size()) {
    const std::size_t input = IsOpen() ? next_ - 1 : next_;
    const std::string& path = paths_[input];
    block.Restart(input, path);
    block.input_bytes = bytes_before_;
    try {
      if (!IsOpen()) {
        ++next_;
        block.form = Open(path);
      }
      if (block.form != InputForm::kPortRecords) {
        Close();
      } else if (auto* const lines = std::get_if<LineReader>(&lines_)) {
        if (!Fill(block, *lines)) continue;
      } else if (!Fill(block, std::get<SnapshotReader>(lines_))) {
        continue;
      }
    } catch (const std::system_error& error) {
      Close();
      block.input_error = error.code();
    } catch (const StoreError& error) {
      Close();
      block.input_error = error.code();
    }
    block.Finish();
    return true;
  }
  return false;
}

InputForm BlockReader::Open(const std::string& path) {
  if (const std::optional<SnapshotName> snapshot = FindSnapshot(path)) {
    lines_.emplace<SnapshotReader>(*snapshot);
    return InputForm::kPortRecords;
  }
  auto& lines = lines_.emplace<LineReader>(path);
  lines.ReadMore();
  for (;;) {
    const InputForm form = RecognizeForm(lines.Buffered());
    if (form != InputForm::kUnknownYet) return form;
    const bool is_too_long = lines.Buffered().size() > 2 * LineReader::kMaxLine;
    if (is_too_long || !lines.ReadMore()) return InputForm::kPortRecords;
  }
}

template <typename Lines>
bool BlockReader::Fill(LineBlock& block, Lines& lines) {
  bool has_next = true;
  do {
    const std::optional<LineReader::Line> line = lines.Next();
    if (!line) {
      bytes_before_ += lines.bytes();
      Close();
      block.input_bytes = bytes_before_;
      block.is_last_for_now = true;
      return block.size() > 0;
    }
    block.Add(*line, lines.number());
    has_next = lines.HasNext();
  } while (!block.IsFull() && has_next);
  block.input_bytes = bytes_before_ + lines.bytes();
  block.is_last_for_now = !has_next;
  return true;
}

}  // namespace cli
