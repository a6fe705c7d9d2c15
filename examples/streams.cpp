// Effects of a row and a report block on the stream that they are written to.
// Returns 1 if they are not the expected ones.

#include <iomanip>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>

#include "cable_info/combined_cable_info.h"

namespace {

using cable_info::CombinedCableInfo;

void AttachPages(CombinedCableInfo& port) {
  port.AttachCableRecord(std::make_unique<cable_info::CableRecord>());
}

// The row does not depend on the stream's formatting. A row of the cable pages changes precision
// and fill.
bool RowsLeavePrecisionAndFill() {
  CombinedCableInfo port;
  AttachPages(port);
  std::ostringstream plain;
  std::ostringstream formatted;
  formatted << std::hex << std::showbase << std::setprecision(9) << std::setfill('*');
  port.ToCSVStream(plain);
  port.ToCSVStream(formatted);
  if (formatted.str() != plain.str()) return false;
  return formatted.precision() == 3 && formatted.fill() == '0';
}

// Writing through a separate stream leaves the formatting of `os` unchanged.
void WriteRow(std::ostream& os, const CombinedCableInfo& port) {
  std::ostream row(os.rdbuf());
  port.ToCSVStream(row);
  if (!row) os.setstate(std::ios_base::badbit);
}

bool RowsMayHaveTheirOwnStream() {
  CombinedCableInfo port;
  AttachPages(port);
  std::ostringstream os;
  os << std::setprecision(9) << std::setfill('*');
  WriteRow(os, port);
  return os.good() && os.precision() == 9 && os.fill() == '*';
}

// A buffer that accepts nothing, like a full disk.
class Full : public std::streambuf {};

bool FailuresShowOnTheStream() {
  CombinedCableInfo port;
  AttachPages(port);
  Full full;
  std::ostream os(&full);
  port.ToCSVStream(os);
  if (os.good()) return false;

  std::ostream throwing(&full);
  throwing.exceptions(std::ios_base::badbit);
  try {
    port.ToCSVStream(throwing);
  } catch (const std::ios_base::failure&) {
    return true;
  }
  return false;
}

// Counts flushes without passing them on.
class Unflushed : public std::stringbuf {
 public:
  int flushes() const { return flushes_; }

 protected:
  int sync() override {
    ++flushes_;
    return 0;
  }

 private:
  int flushes_ = 0;
};

int Flushes(void (*write)(const CombinedCableInfo&, std::ostream&), const CombinedCableInfo& port) {
  Unflushed buffer;
  std::ostream os(&buffer);
  write(port, os);
  return buffer.flushes();
}

void Row(const CombinedCableInfo& port, std::ostream& os) { port.ToCSVStream(os); }
void Block(const CombinedCableInfo& port, std::ostream& os) { port.ToFileStream(os); }

bool RowsAreFlushed() {
  CombinedCableInfo pages;
  AttachPages(pages);
  CombinedCableInfo phy;
  phy.AttachPhyCableRecord(std::make_unique<cable_info::PhyCableRecord>());
  if (Flushes(Row, pages) != 1 || Flushes(Row, phy) != 1) return false;
  return Flushes(Block, pages) == 0 && Flushes(Block, phy) == 78;
}

}  // namespace

int main() {
  const bool is_good = RowsLeavePrecisionAndFill() && RowsMayHaveTheirOwnStream() &&
                       FailuresShowOnTheStream() && RowsAreFlushed();
  return is_good ? 0 : 1;
}
