// Arbitrary lines through the reader of port records, and accepted ones through all three writers.

#include "cli/input/port_reader.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "check.h"
#include "cli/input/line_reader.h"
#include "cli/output/export_writer.h"
#include "cli/output/report_writer.h"
#include "cli/output/table_writer.h"
#include "cli/printable.h"
#include "test_support.h"

namespace {

using cli::Port;
using fuzz::Check;
using fuzz::CheckEqual;

// A line as provided by the line reader; its memory ends with its padding.
class PaddedLine {
 public:
  explicit PaddedLine(std::string_view text)
      : size_(text.size()), bytes_(text.begin(), text.end()) {
    bytes_.resize(size_ + cli::LineReader::kPadding, '"');  // the most misleading character
    bytes_.shrink_to_fit();
  }
  std::string_view text() const { return {bytes_.data(), size_}; }

 private:
  std::size_t size_;
  std::vector<char> bytes_;
};

std::string Written(const cli::PortWriter& writer, Port& port) {
  return cable_info::test::Written([&](std::ostream& os) { writer.Write(os, port); });
}

void CheckTable(Port& port) {
  const cli::TableWriter writer(cli::TableHeader::kOmitted);
  const std::string row = Written(writer, port);
  const std::string host_cells = cli::GuidText(port.node_guid) + ',' +
                                 cli::GuidText(port.port_guid) + ',' + std::to_string(port.number) +
                                 ',';
  Check(row.starts_with(host_cells), "a row starts with the host's cells");
  CheckEqual(row.back(), '\n', "end of a row");
  const bool has_record = port.cable_record != nullptr || port.phy_cable_record != nullptr;
  CheckEqual(row.size() > host_cells.size() + 1, has_record, "a record has cells");
}

void CheckReport(Port& port) {
  const cli::ReportWriter writer;
  const std::string block = Written(writer, port);
  Check(block.starts_with("NodeGuid: " + cli::GuidText(port.node_guid)), "heading of a block");
  CheckEqual(block.back(), '\n', "end of a block");
  CheckEqual(block, Written(writer, port), "a block is the same a second time");
}

void CheckExport(Port& port) {
  const cli::ExportWriter writer;
  const std::string line = Written(writer, port);
  CheckEqual(line.find('\n'), line.size() - 1, "an object is on one line");
  Check(std::all_of(line.begin(), line.end() - 1, [](char c) { return c >= ' ' && c < 0x7F; }),
        "an object is printable ASCII");
  const auto object = nlohmann::json::parse(line, nullptr, false);
  Check(object.is_object(), "an object is JSON");
  CheckEqual(object.size(), 27U, "keys of an object");  // as docs/export.schema.json requires
  CheckEqual(object["record"].is_null(), port.cable_record == nullptr, "a record is exported");
}

void CheckMessage(std::string_view message) {
  Check(!message.empty(), "a refusal says why");
  Check(std::none_of(message.begin(), message.end(),
                     [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }),
        "a refusal is one line of printable characters");
}

void CheckUntouched(const Port& port) {
  Check(port.node_guid == 0 && port.port_guid == 0 && port.number == 0 &&
            port.cable_record == nullptr && port.phy_cable_record == nullptr,
        "a refused port is untouched");
}

void ReadAndWrite(cli::PortReader& reader, std::string_view line) {
  const PaddedLine padded(line);
  Port port;
  std::vector<cli::Message> messages;
  if (!reader.Read(padded.text(), port, messages)) {
    CheckEqual(messages.size(), 1U, "a refused port has one reason");
    CheckMessage(cli::Printable(messages.front().Text()));
    CheckUntouched(port);
    return;
  }
  Check(nlohmann::json::accept(line), "what is accepted is JSON");
  CheckTable(port);
  CheckReport(port);
  CheckExport(port);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cli::PortReader reader;  // one for all lines, as in the program
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const std::string& line : cable_info::test::Split(text, '\n')) ReadAndWrite(reader, line);
  const PaddedLine good(R"({"node_guid": 7, "cable": {"VendorName": "Acme"}})");
  Port port;
  std::vector<cli::Message> messages;
  Check(reader.Read(good.text(), port, messages), "a good port is good");
  CheckEqual(port.node_guid, 7U, "a good port is read after any other");
  CheckEqual(port.cable_record->VendorName, "Acme", "its vendor, too");
  return 0;
}
