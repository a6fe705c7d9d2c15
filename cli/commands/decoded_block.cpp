#include "cli/commands/decoded_block.h"

#include <ostream>
#include <streambuf>

#include "cli/input/input_name.h"

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

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

void AddMessage(const LineBlock& block, const LineBlock::Line& line, const std::string& message,
                DecodedBlock& decoded) {
  decoded.messages.push_back(InputName(block.path()) + ':' + std::to_string(line.number) + ": " +
                             message);
}

void DecodeLine(const LineBlock& block, const LineBlock::Line& line, PortReader& reader,
                const PortWriter& writer, std::ostream& os, DecodedBlock& decoded) {
  if (line.too_long) {
    throw BadPort("expected a line of at most " + std::to_string(LineReader::kMaxLine) +
                  " bytes, found a longer one");
  }
  if (IsBlank(line.text)) return;
  Port port;
  for (const std::string& remark : reader.Read(line.text, port)) {
    AddMessage(
        block, line,
        "port " + GuidText(port.port_guid) + '/' + std::to_string(port.number) + ": " + remark,
        decoded);
  }
  if (decoded.ports > 0) os << writer.Separator();
  writer.Write(os, port);
  ++decoded.ports;
}

}  // namespace

void DecodeBlock(const LineBlock& block, PortReader& reader, const PortWriter& writer,
                 OnBadPort on_bad_port, DecodedBlock& decoded) {
  decoded.text.clear();
  decoded.messages.clear();
  decoded.ports = 0;
  decoded.status = ExitStatus::kGood;
  StringAppender appender(decoded.text);
  std::ostream os(&appender);
  for (std::size_t i = 0; i < block.size(); ++i) {
    const LineBlock::Line line = block[i];
    try {
      DecodeLine(block, line, reader, writer, os, decoded);
    } catch (const BadPort& bad) {
      AddMessage(block, line, bad.what(), decoded);
      decoded.status = ExitStatus::kBadPorts;
      if (on_bad_port == OnBadPort::kStop) return;
    }
  }
}

}  // namespace cli
