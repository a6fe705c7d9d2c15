// In both writers a sink appends the cells of a row to one text, which stores the end of each, and
// then the selected columns are copied from it, in any order.

#include "cli/output/typed_table_writer.h"

#include <array>
#include <ostream>
#include <string_view>
#include <utility>

#include "cable_info/csv_columns.h"
#include "cable_info/text/text_buffer.h"
#include "cli/json_text.h"
#include "cli/output/utf8_text.h"

namespace cli {

namespace {

using cable_info::CellSink;
using cable_info::kCsvColumns;
using cable_info::text::TextBuffer;

// The texts of the cells of one row.
class RowText {
 public:
  TextBuffer& out() { return out_; }
  void EndCell() { ends_[++cells_] = out_.size(); }

  std::string_view operator[](std::size_t column) const {
    return out_.view().substr(ends_[column], ends_[column + 1] - ends_[column]);
  }

 private:
  TextBuffer out_;
  std::size_t cells_ = 0;
  std::array<std::size_t, kCsvColumns.size() + 1> ends_{};
};

// ---------------------------------------------------------------------------------------------
// RFC 4180
// ---------------------------------------------------------------------------------------------

constexpr std::string_view kCsvLineEnd = "\r\n";

class Rfc4180Cells : public CellSink {
 public:
  void Text(std::string_view text) override {
    const bool is_quoted = text.find_first_of(",\"\r\n") != std::string_view::npos;
    if (is_quoted) row_.out().Append('"');
    for (const char c : text) {
      if (c == '"') row_.out().Append('"');
      AppendByteAsUtf8(row_.out(), static_cast<unsigned char>(c));
    }
    if (is_quoted) row_.out().Append('"');
    row_.EndCell();
  }
  void Integer(std::uint32_t value) override {
    row_.out().AppendDecimal(value);
    row_.EndCell();
  }
  void Number(double value) override {
    AppendShortestFixed(row_.out(), value);
    row_.EndCell();
  }
  void Flag(bool is_set) override {
    row_.out().Append(is_set ? '1' : '0');
    row_.EndCell();
  }
  void Missing() override { row_.EndCell(); }

  const RowText& row() const { return row_; }

 private:
  RowText row_;
};

// ---------------------------------------------------------------------------------------------
// JSON
// ---------------------------------------------------------------------------------------------

class JsonCells : public CellSink {
 public:
  void Text(std::string_view text) override {
    JsonText(row_.out()).Bytes(text);
    row_.EndCell();
  }
  void Integer(std::uint32_t value) override {
    row_.out().AppendDecimal(value);
    row_.EndCell();
  }
  void Number(double value) override {
    AppendShortestFixed(row_.out(), value);
    row_.EndCell();
  }
  void Flag(bool is_set) override {
    JsonText(row_.out()).Bool(is_set);
    row_.EndCell();
  }
  void Missing() override {
    JsonText(row_.out()).Null();
    row_.EndCell();
  }

  const RowText& row() const { return row_; }

 private:
  RowText row_;
};

}  // namespace

void VisitCells(const Port& port, CellSink& sink) {
  TextBuffer guid;
  AppendGuid(guid, port.node_guid);
  sink.Text(guid.view());
  guid.Truncate(0);
  AppendGuid(guid, port.port_guid);
  sink.Text(guid.view());
  sink.Integer(port.number);
  port.cable.VisitCells(sink);
}

Rfc4180Writer::Rfc4180Writer(TableHeader header, ColumnIndices columns)
    : header_(header), columns_(std::move(columns)) {}

void Rfc4180Writer::Begin(std::ostream& os) const {
  if (header_ == TableHeader::kOmitted) return;
  std::string_view separator;
  for (const std::size_t column : columns_) {
    os << std::exchange(separator, ",") << kCsvColumns[column].name;
  }
  os << kCsvLineEnd;
}

void Rfc4180Writer::Write(std::ostream& os, Port& port) const {
  Rfc4180Cells cells;
  VisitCells(port, cells);
  TextBuffer line;
  for (const std::size_t column : columns_) line.Append(cells.row()[column]).Append(',');
  line.Truncate(line.size() - 1);
  if (line.size() == 0) line.Append(R"("")");  // readers skip an empty line
  os << line.Append(kCsvLineEnd).view();
}

JsonTableWriter::JsonTableWriter(ColumnIndices columns) : columns_(std::move(columns)) {}

void JsonTableWriter::Write(std::ostream& os, Port& port) const {
  JsonCells cells;
  VisitCells(port, cells);
  TextBuffer line;
  JsonText json(line);
  json.BeginObject();
  for (const std::size_t column : columns_) {
    json.Key(kCsvColumns[column].name).Verbatim(cells.row()[column]);
  }
  json.EndObject();
  os << line.Append('\n').view();
}

}  // namespace cli
