#pragma once

#include "cli/output/port_writer.h"

namespace cli {

/// How the contents of a module's memory are written.
enum class ModuleForm { kText, kJson };

/// The contents of module memories: data sheets with empty lines between them, or one JSON
/// object on a line per module. A port without a module's memory has none.
class ModuleWriter : public PortWriter {
 public:
  explicit ModuleWriter(ModuleForm form) : form_(form) {}

  ModuleUse module_use() const override { return ModuleUse::kInfo; }
  Syntax syntax() const override {
    return form_ == ModuleForm::kJson ? Syntax::kJson : Syntax::kText;
  }
  bool Writes(const Port& port) const override { return port.module != nullptr; }
  std::string_view Separator() const override { return form_ == ModuleForm::kText ? "\n" : ""; }
  void Write(std::ostream& os, Port& port) const override;

 private:
  ModuleForm form_;
};

}  // namespace cli
