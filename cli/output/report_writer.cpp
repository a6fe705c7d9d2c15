#include "cli/output/report_writer.h"

#include <ostream>
#include <streambuf>

#include "cable_info/text/text_buffer.h"
#include "cli/printable.h"

namespace cli {

namespace {

// The buffer of a stream for the length of a block: passes on what is written, remembers its last
// character, and ignores the flushes after each line. A string stream in its place would take a
// tenth of the report's time.
class BlockBuffer : public std::streambuf {
 public:
  explicit BlockBuffer(std::ostream& os) : os_(os), to_(*os.rdbuf(this)) {}
  BlockBuffer(const BlockBuffer&) = delete;
  BlockBuffer& operator=(const BlockBuffer&) = delete;
  BlockBuffer(BlockBuffer&&) = delete;
  BlockBuffer& operator=(BlockBuffer&&) = delete;
  ~BlockBuffer() override { os_.rdbuf(&to_); }

  bool EndsWithinLine() const { return last_ != '\n'; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (count > 0) last_ = text[count - 1];
    return to_.sputn(text, count);
  }
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    last_ = traits_type::to_char_type(c);
    return to_.sputc(last_);
  }

 private:
  std::ostream& os_;
  std::streambuf& to_;
  char last_ = '\n';
};

struct BlockEnd {
  std::ios::iostate state;  // of the stream, which forgets it with the buffer
  bool is_within_line;
};

BlockEnd WriteBlock(std::ostream& os, const cable_info::CombinedCableInfo& cable) {
  const BlockBuffer block(os);
  cable.ToFileStream(os);
  return {os.rdstate(), block.EndsWithinLine()};
}

}  // namespace

void ReportWriter::Write(std::ostream& os, Port& port) const {
  cable_info::text::TextBuffer heading;
  heading.Append("NodeGuid: ");
  AppendGuid(heading, port.node_guid);
  heading.Append(", PortGuid: ");
  AppendGuid(heading, port.port_guid);
  heading.Append(", PortNum: ").AppendDecimal(port.number);
  if (!port.label.empty()) heading.Append(", Label: ").Append(Printable(port.label));
  os << heading.Append('\n').view();
  if (!os) return;

  const BlockEnd end = WriteBlock(os, port.cable);
  os.setstate(end.state);
  if (end.is_within_line) os << '\n';  // a long block is cut within a line
}

}  // namespace cli
