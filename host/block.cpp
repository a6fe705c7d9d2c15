#include "host/block.h"

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <utility>

namespace host {

namespace {

// A block's bounds. Even lines that hold next to nothing may have reports of kilobytes.
constexpr std::size_t kMostLines = 256;
constexpr std::size_t kMostBytes = 256U << 10;

// Appends what is written to it to a string.
class StringAppender : public std::streambuf {
 public:
  explicit StringAppender(std::string& text) : text_(text) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    text_.append(text, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) text_ += traits_type::to_char_type(c);
    return traits_type::not_eof(c);
  }

 private:
  std::string& text_;
};

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

}  // namespace

void Block::Restart(const std::string& input) {
  input_ = input;
  bytes_.clear();
  lines_.clear();
  input_error.clear();
  text.clear();
  messages.clear();
  ports = 0;
  status = ExitStatus::kGood;
}

void Block::Add(const LineReader::Line& line, std::uint64_t number) {
  if (lines_.empty()) first_number_ = number;
  const std::string_view kept = line.too_long ? std::string_view() : line.text;
  lines_.push_back({bytes_.size(), kept.size(), line.too_long});
  bytes_ += kept;
}

bool Block::IsFull() const { return lines_.size() >= kMostLines || bytes_.size() >= kMostBytes; }

void Block::Decode(PortReader& reader, const PortWriter& writer, bool strict) {
  bytes_.append(LineReader::kPadding, ' ');
  StringAppender appender(text);
  std::ostream os(&appender);
  for (const Line& line : lines_) {
    try {
      DecodeLine(line, reader, writer, os);
    } catch (const BadPort& bad) {
      Say(line, bad.what());
      status = ExitStatus::kBadPorts;
      if (strict) return;
    }
  }
}

void Block::DecodeLine(const Line& line, PortReader& reader, const PortWriter& writer,
                       std::ostream& os) {
  if (line.too_long) {
    throw BadPort("expected a line of at most " + std::to_string(LineReader::kLongestLine) +
                  " bytes, found a longer one");
  }
  const std::string_view json = std::string_view(bytes_).substr(line.begin, line.size);
  if (IsBlank(json)) return;
  Port port;
  for (const std::string& remark : reader.Read(json, port)) {
    Say(line,
        "port " + GuidText(port.port_guid) + '/' + std::to_string(port.number) + ": " + remark);
  }
  if (ports > 0) os << writer.Separator();
  writer.Write(os, port);
  ++ports;
}

void Block::Say(const Line& line, const std::string& message) {
  const auto index = static_cast<std::uint64_t>(&line - lines_.data());
  messages.push_back(input_ + ':' + std::to_string(first_number_ + index) + ": " + message);
}

bool BlockReader::Next(Block& block) {
  while (lines_ || next_ < inputs_.size()) {
    const std::string& input = inputs_[lines_ ? next_ - 1 : next_];
    block.Restart(input == "-" ? "<stdin>" : input);
    block.input_bytes = bytes_before_;
    try {
      if (!lines_) {
        ++next_;
        lines_.emplace(input);
      }
      if (Fill(block)) return true;
    } catch (const std::system_error& error) {
      lines_.reset();
      block.input_error = error.code();
      return true;
    }
  }
  return false;
}

// False when the input has no lines left.
bool BlockReader::Fill(Block& block) {
  do {
    const std::optional<LineReader::Line> line = lines_->Next();
    if (!line) {
      bytes_before_ += lines_->bytes();
      lines_.reset();
      break;
    }
    block.Add(*line, lines_->number());
  } while (!block.IsFull() && lines_->HasNext());
  block.input_bytes = bytes_before_ + (lines_ ? lines_->bytes() : 0);
  return block.HasLines();
}

}  // namespace host
