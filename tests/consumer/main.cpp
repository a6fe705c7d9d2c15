// An external project that uses the library: fills a record and writes its row.

#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "cable_info/combined_cable_info.h"
#include "cable_info/version.h"

int main() {
  auto record = std::make_unique<cable_info::CableRecord>();
  record->VendorName = "Acme Optics";
  record->Oui = "0x2c99";
  record->PartNumber = "AO-100-SR4";
  record->SerialNumber = "AO2415X0042";
  record->Revision = "A1";
  cable_info::CombinedCableInfo port;
  port.AttachCableRecord(std::move(record));

  std::ostringstream out;
  port.ToCSVStream(out);
  const std::string row = out.str();
  std::cout << "cable_info " << cable_info::LibraryVersion() << '\n' << row;

  // The texts of this record hold no commas: 174 cells, and a newline at the end.
  const bool is_whole = std::count(row.begin(), row.end(), ',') == 173 && row.back() == '\n';
  const bool is_ours =
      row.rfind(R"("CABLE","Acme Optics",0x2c99,"AO-100-SR4","AO2415X0042","A1",)", 0) == 0;
  return is_whole && is_ours && cable_info::LibraryVersion() == cable_info::kVersion ? 0 : 1;
}
