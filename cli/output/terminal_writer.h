#pragma once

#include "cli/output/port_writer.h"

namespace cli {

/// Makes the output of another writer safe for a terminal: control characters of a port's texts
/// become escapes, and a newline in a text does not begin a line. JSON stays JSON with the same
/// data.
class TerminalWriter : public PortWriter {
 public:
  /// `writer` must outlive this one.
  explicit TerminalWriter(const PortWriter& writer) : writer_(writer) {}
  ModuleUse module_use() const override { return writer_.module_use(); }
  bool needs_record() const override { return writer_.needs_record(); }
  Syntax syntax() const override { return writer_.syntax(); }
  bool Writes(const Port& port) const override { return writer_.Writes(port); }
  void Begin(std::ostream& os) const override { writer_.Begin(os); }
  std::string_view Separator() const override { return writer_.Separator(); }
  void Write(std::ostream& os, Port& port) const override;

 private:
  void WriteJson(std::ostream& os, Port& port) const;

  const PortWriter& writer_;
};

}  // namespace cli
