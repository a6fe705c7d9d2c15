// Queries single values of a port, with and without records.
// Returns 1 if a result is not the expected one.

#include <memory>
#include <string>
#include <utility>

#include "cable_info/combined_cable_info.h"
#include "cable_info/prtl_record.h"

namespace {

using cable_info::CableRecord;
using cable_info::CombinedCableInfo;
using cable_info::PhyCableRecord;

bool NothingIsKnown() {
  CombinedCableInfo port;
  if (port.GetTemperatureStr() != "N/A") return false;
  if (port.GetTemperatureAlarms() != CombinedCableInfo::kNoRecord) return false;
  return port.GetPNVendor().empty();
}

bool TheCableRecordAnswers() {
  CombinedCableInfo port;
  auto phy = std::make_unique<PhyCableRecord>();
  phy->SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
  phy->module->temperature = 40 << 8;
  port.AttachPhyCableRecord(std::move(phy));
  if (port.GetTemperatureStr() != "40C") return false;

  auto pages = std::make_unique<CableRecord>();
  pages->Temperature = 41 << 8;
  CableRecord* const attached = pages.get();  // valid until another record is attached
  port.AttachCableRecord(std::move(pages));
  if (port.GetTemperatureStr() != "41C") return false;

  attached->Temperature = 42 << 8;
  if (port.GetTemperatureStr() != "42C") return false;

  port.AttachCableRecord(nullptr);  // frees the record; the PHY's is used again
  return port.GetTemperatureStr() == "40C";
}

bool AnyCodeHasAText() {
  CableRecord record;
  record.Identifier = 0xEE;
  record.TransmitterTechnologyCode = 0xEE;
  if (record.ConvertCableIdentifierToStr() != "NA") return false;
  return record.ConvertCableTypeToStr() == "NA";
}

bool ALengthIsMeasured() {
  CombinedCableInfo port;
  auto record = std::make_unique<CableRecord>();
  const CableRecord& attached = *record;
  if (port.SetMeasuredLength(3)) return false;  // no record to store it in
  port.AttachCableRecord(std::move(record));

  cable_info::PrtlRecord local;
  cable_info::PrtlRecord remote;
  local.latency_res = 1;
  local.round_trip_latency = 130;
  local.local_phy_latency = remote.local_phy_latency = 50;
  std::string error;
  const float length = local.CalculateLength(remote, error);
  if (!port.SetMeasuredLength(length)) return false;  // `error` has the reason
  return attached.ConvertLengthToStr() == "3 m";
}

}  // namespace

int main() {
  const bool is_good =
      NothingIsKnown() && TheCableRecordAnswers() && AnyCodeHasAText() && ALengthIsMeasured();
  return is_good ? 0 : 1;
}
