// The shortest application: one port, the header and its row, and its block of the report.

#include <iostream>
#include <memory>
#include <utility>

#include "cable_info/combined_cable_info.h"

int main() {
  cable_info::CombinedCableInfo port;
  auto record = std::make_unique<cable_info::CableRecord>();
  record->Identifier = 0x11;
  record->VendorName = "Acme Optics";
  port.AttachCableRecord(std::move(record));

  std::cout << cable_info::CombinedCableInfo::GetCSVHeader();
  std::cout << "0xa0b1c20000d4e500,0xa0b1c20000d4e501,1,";  // the host's three cells
  port.ToCSVStream(std::cout);                              // the other 174
  port.ToFileStream(std::cout);                             // the block of the text report
  return std::cout.good() ? 0 : 1;
}
