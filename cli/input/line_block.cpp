#include "cli/input/line_block.h"

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
  while (lines_ || next_ < paths_.size()) {
    const std::size_t input = lines_ ? next_ - 1 : next_;
    const std::string& path = paths_[input];
    block.Restart(input, path);
    block.input_bytes = bytes_before_;
    try {
      if (!lines_) {
        ++next_;
        block.form = Open(path);
      }
      if (block.form == InputForm::kPortRecords && !Fill(block)) continue;
      if (block.form != InputForm::kPortRecords) lines_.reset();
    } catch (const std::system_error& error) {
      lines_.reset();
      block.input_error = error.code();
    }
    block.Finish();
    return true;
  }
  return false;
}

InputForm BlockReader::Open(const std::string& path) {
  lines_.emplace(path);
  lines_->ReadMore();
  for (;;) {
    const InputForm form = RecognizeForm(lines_->Buffered());
    if (form != InputForm::kUnknownYet) return form;
    const bool is_too_long = lines_->Buffered().size() > 2 * LineReader::kMaxLine;
    if (is_too_long || !lines_->ReadMore()) return InputForm::kPortRecords;
  }
}

bool BlockReader::Fill(LineBlock& block) {
  bool has_next = true;
  do {
    const std::optional<LineReader::Line> line = lines_->Next();
    if (!line) {
      bytes_before_ += lines_->bytes();
      lines_.reset();
      break;
    }
    block.Add(*line, lines_->number());
    has_next = lines_->HasNext();
  } while (!block.IsFull() && has_next);
  block.input_bytes = bytes_before_ + (lines_ ? lines_->bytes() : 0);
  block.is_last_for_now = !lines_ || !has_next;
  return block.size() > 0;
}

}  // namespace cli
