#pragma once

// The fields of a CableRecord by type, for tests that fill all of them.

#include <array>
#include <cstdint>
#include <string>

#include "cable_info/cable_record.h"

namespace cable_info::test {

inline auto ByteFields(CableRecord& r) {
  return std::to_array<std::uint8_t*>({&r.QueryStatus,
                                       &r.Identifier,
                                       &r.Connector,
                                       &r.SupportedSpeedMask,
                                       &r.TransmitterTechnologyCode,
                                       &r.LengthSmf,
                                       &r.LengthOm3,
                                       &r.LengthOm2,
                                       &r.LengthOm1,
                                       &r.LengthCopperOrActive,
                                       &r.OpaqueByte1,
                                       &r.NominalBitrate,
                                       &r.PowerClass,
                                       &r.CdrControl,
                                       &r.CdrPresence,
                                       &r.VendorModuleKind,
                                       &r.Attenuation[0],
                                       &r.Attenuation[1],
                                       &r.Attenuation[2],
                                       &r.Attenuation[3],
                                       &r.OpaqueByte2,
                                       &r.ExtSpecCompliance,
                                       &r.OpaqueByte3,
                                       &r.LatchedCdrLos,
                                       &r.LatchedAdaptiveEqFault,
                                       &r.LatchedCdrLol,
                                       &r.LatchedTemperatureAlarms,
                                       &r.LatchedVoltageAlarms,
                                       &r.TransmitterTechnologyRaw,
                                       &r.TxAdaptiveEqFreeze,
                                       &r.RxOutputDisableTxAdaptiveEq});
}

inline auto WordFields(CableRecord& r) {
  return std::to_array<std::uint16_t*>(
      {&r.Temperature, &r.InputEq, &r.OutputAmp, &r.OutputEmp, &r.OpaqueWord1, &r.SupplyVoltage,
       &r.RxPowerAlarms, &r.TxBiasAlarms, &r.TxPowerAlarms, &r.Lot, &r.TempHighAlarmThresh,
       &r.TempHighWarnThresh, &r.TempLowAlarmThresh, &r.TempLowWarnThresh, &r.VoltHighAlarmThresh,
       &r.VoltHighWarnThresh, &r.VoltLowAlarmThresh, &r.VoltLowWarnThresh});
}

inline auto TextFields(CableRecord& r) {
  return std::to_array<std::string*>({&r.VendorName, &r.Oui, &r.PartNumber, &r.SerialNumber,
                                      &r.Revision, &r.LengthText, &r.ExtraText, &r.FwVersionText,
                                      &r.DateCodeText, &r.PrtlLengthText});
}

}  // namespace cable_info::test
