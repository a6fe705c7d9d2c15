#include "cli/output/terminal_writer.h"

#include <algorithm>
#include <bitset>
#include <ostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "cli/printable.h"

namespace cli {

namespace {

using Texts = std::vector<std::span<char>>;

// The texts of a port that the library writes.
Texts TextsOf(Port& port) {
  Texts texts;
  if (cable_info::CableRecord* const cable = port.cable_record) {
    texts = {cable->VendorName,   cable->Oui,           cable->PartNumber, cable->SerialNumber,
             cable->Revision,     cable->LengthText,    cable->ExtraText,  cable->FwVersionText,
             cable->DateCodeText, cable->PrtlLengthText};
  }
  if (cable_info::PhyCableRecord* const phy = port.phy_cable_record) {
    texts.insert(texts.end(), {phy->source, phy->prtl_length});
    if (phy->module != nullptr) {
      auto& module = *phy->module;
      texts.insert(texts.end(), {module.vendor_name, module.vendor_pn, module.vendor_rev,
                                 module.vendor_sn, module.date_code});
    }
  }
  return texts;
}

// A control character that occurs in none of the texts, nor in what the writers add to them: white
// space if possible, which the writers trim from the ends of texts as they trim newlines.
char UnusedControl(const Texts& texts) {
  std::bitset<0x20> used;
  for (const std::span<char> text : texts) {
    for (const char c : text) {
      if (static_cast<unsigned char>(c) < used.size()) used[static_cast<unsigned char>(c)] = true;
    }
  }
  const auto is_unused = [&used](char c) { return !used[static_cast<unsigned char>(c)]; };
  for (const char c : {'\v', '\f', '\t'}) {
    if (is_unused(c)) return c;
  }
  for (char c = 0x01; c < 0x20; ++c) {
    if (c != '\n' && c != '\r' && is_unused(c)) return c;
  }
  constexpr char kSubstitute = 0x1A;
  return kSubstitute;
}

}  // namespace

// JSON escapes newlines itself, but not all that a terminal must not receive.
void TerminalWriter::WriteJson(std::ostream& os, Port& port) const {
  std::ostringstream written;
  writer_.Write(written, port);
  os << Printable(written.view(), Newlines::kKept, Escapes::kJson);
}

// The fields of the records are too short for escapes, and in the output a newline of a text looks
// like the end of a line. So the newlines of the texts become a character that occurs in none of
// them before the port is written, and an escape after that.
void TerminalWriter::Write(std::ostream& os, Port& port) const {
  if (syntax() == Syntax::kJson) return WriteJson(os, port);
  const Texts texts = TextsOf(port);
  const char newline = UnusedControl(texts);
  for (const std::span<char> text : texts) std::replace(text.begin(), text.end(), '\n', newline);
  std::ostringstream written;
  writer_.Write(written, port);
  const std::string text = written.str();
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(newline, begin), text.size());
    os << Printable(std::string_view(text).substr(begin, end - begin), Newlines::kKept);
    if (end < text.size()) os << "\\x0a";
    begin = end + 1;
  }
}

}  // namespace cli
