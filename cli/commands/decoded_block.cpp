#include "cli/commands/decoded_block.h"

#include <ostream>
#include <streambuf>
#include <utility>

#include "cli/input/input_name.h"
#include "cli/split_path.h"

namespace cli {

namespace {

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

// The folder of the file at `path`; empty for the current one.
std::string FolderOf(const std::string& path) {
  return IsStandardInput(path) ? std::string() : Split(path).folder;
}

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

Message LineTooLong() {
  return {MessageKind::kLongLine,
          "expected a line of at most " + std::to_string(LineReader::kMaxLine) +
              " bytes, found a longer one",
          {},
          {}};
}

// Writes the port of a line; false if the line is bad. `messages` receives the error or the
// remarks.
bool DecodeLine(const LineBlock::Line& line, PortReader& reader, const Selection& selection,
                const PortWriter& writer, std::ostream& os, DecodedBlock& decoded,
                std::vector<Message>& messages) {
  messages.clear();
  if (line.too_long) {
    messages.push_back(LineTooLong());
    return false;
  }
  if (IsBlank(line.text)) return true;
  Port port;
  if (!reader.Read(line.text, port, messages)) return false;
  if (!selection.Selects(port)) {
    messages.clear();
    return true;
  }
  for (Message& remark : messages) remark.text.insert(0, PortName(port) + ": ");
  if (!messages.empty()) ++decoded.counts.remarked;
  if (!writer.Writes(port)) return true;
  if (decoded.counts.written > 0) os << writer.Separator();
  writer.Write(os, port);
  ++decoded.counts.written;
  return true;
}

}  // namespace

void DecodeBlock(const LineBlock& block, PortReader& reader, const Selection& selection,
                 const PortWriter& writer, OnBadPort on_bad_port, DecodedBlock& decoded) {
  decoded.text.clear();
  decoded.messages.clear();
  decoded.counts = {};
  reader.SetFolder(FolderOf(block.path()));
  StringAppender appender(decoded.text);
  std::ostream os(&appender);
  os.exceptions(std::ios::badbit);  // out of memory must not look like a short port
  std::vector<Message> messages;
  for (std::size_t i = 0; i < block.size(); ++i) {
    const LineBlock::Line line = block[i];
    const bool is_good = DecodeLine(line, reader, selection, writer, os, decoded, messages);
    for (Message& message : messages) {
      decoded.messages.push_back({line.number, std::move(message)});
    }
    if (is_good) continue;
    ++decoded.counts.left_out;
    if (on_bad_port == OnBadPort::kStop) return;
  }
}

}  // namespace cli
