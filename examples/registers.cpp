// Fills a PHY's record from its registers, as a whole or lane by lane.
// Returns 1 if a text is not the expected one.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "cable_info/combined_cable_info.h"

namespace {

using cable_info::PhyCableRecord;

// `module` and `flags` are registers unpacked to the layout of the records, with words in the byte
// order of the machine.
std::unique_ptr<PhyCableRecord> FromRegister(const void* module, const void* flags) {
  auto record = std::make_unique<PhyCableRecord>();
  record->source = "PHY";
  if (module != nullptr) {  // null: the register was not read
    record->SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
    std::memcpy(record->module, module, sizeof(*record->module));
  }
  if (flags != nullptr) {
    record->SetLatchedFlags(std::make_unique<PhyCableRecord::LatchedFlagsPage>());
    std::memcpy(record->latched_flags, flags, sizeof(*record->latched_flags));
  }
  return record;
}

// Lane 1..8 of an array that holds lanes 2, 1, 4, 3, 6, 5, 8, 7 in this order.
std::uint16_t& Lane(std::uint16_t (&lanes)[8], int lane) { return lanes[(lane - 1) ^ 1]; }

PhyCableRecord::ModuleRecord Module() {
  PhyCableRecord::ModuleRecord module;
  module.power_unit_flag = 1;               // units of 0.1 uW
  Lane(module.rx_power, 1) = 8710;          // 0.871 mW
  Lane(module.rx_power, 2) = 9020;          // 0.902 mW
  module.SetDateCode("240315");             // YYMMDD
  std::strcpy(module.vendor_name, "Acme");  // 16 characters and a NUL
  return module;
}

bool IsAsExpected() {
  const PhyCableRecord::ModuleRecord module = Module();
  const std::unique_ptr<PhyCableRecord> record = FromRegister(&module, nullptr);
  constexpr bool kCsv = true;
  if (record->RX1PowerToStr(kCsv) != "0.871" || record->RX2PowerToStr(kCsv) != "0.902")
    return false;
  if (record->module->rx_power[1] != 8710) return false;
  if (record->DateCodeToStr(kCsv) != "24-03-15") return false;
  if (std::string(record->module->date_code, 6) != "513042") return false;
  return record->LatchedTxRxIndicatorToStr() == "N/A";  // no page of latched flags
}

}  // namespace

int main() { return IsAsExpected() ? 0 : 1; }
