// A small application: fills a record of each kind, measures a length, writes the table and the
// report.

#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include "cable_info/combined_cable_info.h"
#include "cable_info/prtl_record.h"

namespace {

// A 100G multi-mode transceiver, as read from the cable-information pages.
std::unique_ptr<cable_info::CableRecord> Transceiver() {
  auto record = std::make_unique<cable_info::CableRecord>();
  record->Identifier = 0x11;
  record->Connector = 0x0C;
  record->SupportedSpeedMask = 0x10;
  record->NominalBitrate = 25;
  record->VendorName = "Acme Optics";
  record->PartNumber = "AO-100-SR4";
  record->SerialNumber = "AO2415X0042";
  record->LengthText = "70 m";
  record->DateCodeText = "24031501";
  record->Temperature = 41 << 8;
  record->SupplyVoltage = 32950;  // 3.295 V
  for (float& milliwatts : record->RxPower) milliwatts = 0.871F;
  return record;
}

// A 3 m copper cable, as read from the PHY's registers.
std::unique_ptr<cable_info::PhyCableRecord> CopperCable() {
  auto record = std::make_unique<cable_info::PhyCableRecord>();
  record->source = "PHY";
  record->SetModule(std::make_unique<cable_info::PhyCableRecord::ModuleRecord>());
  record->module->power_unit_flag = 1;
  record->module->cable_technology = 0xA0;
  record->module->cable_length = 3;
  record->module->ib_compliance_code = 0x30;
  std::strcpy(record->module->vendor_name, "Acme Copper");
  std::strcpy(record->module->vendor_pn, "AC-200-3M");
  record->module->SetDateCode("240102");
  return record;
}

}  // namespace

int main() {
  cable_info::CombinedCableInfo ports[2];
  ports[0].AttachCableRecord(Transceiver());
  ports[1].AttachPhyCableRecord(CopperCable());

  cable_info::PrtlRecord local;
  cable_info::PrtlRecord remote;
  local.latency_res = 1;
  local.round_trip_latency = 129;
  local.local_phy_latency = remote.local_phy_latency = 50;
  std::string error;
  const float length = local.CalculateLength(remote, error);
  if (!ports[1].SetMeasuredLength(length)) std::cerr << error << '\n';

  std::cout << cable_info::CombinedCableInfo::GetCSVHeader();
  int number = 0;
  for (const auto& port : ports) {
    ++number;
    std::cout << "0xa0b1c20000d4e500,0xa0b1c20000d4e50" << number << ',' << number << ',';
    port.ToCSVStream(std::cout);
  }
  for (const auto& port : ports) {
    std::cout << '\n';
    port.ToFileStream(std::cout);
  }
  return std::cout.good() ? 0 : 1;
}
