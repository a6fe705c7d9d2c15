#pragma once

// The labels of the text report's lines, in line order. A label with "#" stands for eight lines,
// one for each lane. Scripts compare the lines literally, irregular blanks included.
//
// Internal; not installed.

#include <string_view>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] label {

inline constexpr std::string_view kSource = "Source: ";
inline constexpr std::string_view kIdentifier = "Identifier: ";
inline constexpr std::string_view kVendor = "Vendor: ";
inline constexpr std::string_view kOui = "OUI: ";
inline constexpr std::string_view kPn = "PN: ";
inline constexpr std::string_view kSn = "SN: ";
inline constexpr std::string_view kRev = "Rev: ";
inline constexpr std::string_view kLength = "Length: ";
inline constexpr std::string_view kLengthByPrtl = "Length by PRTL: ";
inline constexpr std::string_view kLengthByReg = "Length by Reg: ";
// The cable pages' line begins with a blank. It has always been written so, and readers of the
// report match it: do not tidy.
inline constexpr std::string_view kCableLengthByReg = " Length by Reg: ";
inline constexpr std::string_view kType = "Type: ";
inline constexpr std::string_view kSupportedSpeed = "SupportedSpeed: ";
inline constexpr std::string_view kTemperature = "Temperature: ";

inline constexpr std::string_view kPowerClass = "PowerClass: ";
inline constexpr std::string_view kNominalBitrate = "NominalBitrate: ";
inline constexpr std::string_view kCdrEnableTxRx = "CDREnableTxRx: ";
inline constexpr std::string_view kInputEq = "InputEq: ";
inline constexpr std::string_view kOutputAmp = "OutputAmp: ";
inline constexpr std::string_view kOutputEmp = "OutputEmp: ";
inline constexpr std::string_view kFwVersion = "FW Version: ";
// The two sources have the attenuation at different frequencies.
inline constexpr std::string_view kCableAttenuation = "Attenuation(2.5,5,7,12): ";
inline constexpr std::string_view kPhyAttenuation = "Attenuation(5,7,12,25): ";

inline constexpr std::string_view kRxPowerType = "RX power type: ";
inline constexpr std::string_view kRxPower = "RX# Power: ";
inline constexpr std::string_view kTxBias = "TX# Bias: ";
inline constexpr std::string_view kTxPower = "TX# Power: ";

inline constexpr std::string_view kLoss = "CDR Latched TX/RX Loss Indicator: ";
inline constexpr std::string_view kAdaptiveEqFault = "Latched Adaptive Equalization Fault: ";
// Two blanks after "Latched", from both sources; readers of the report match them: do not tidy.
inline constexpr std::string_view kLossOfLock = "Latched  TX / RX LOL Indicator: ";
inline constexpr std::string_view kTemperatureFlags = "Latched Temperature Alarm and Warning: ";
inline constexpr std::string_view kVoltageFlags = "Latched Voltage Alarm and Warning: ";
inline constexpr std::string_view kRxPowerFlags = "RX Power Alarm and Warning: ";
inline constexpr std::string_view kTxBiasFlags = "TX Bias Alarm and Warning: ";
// The PHY's line has two blanks before its value; readers of the report match them: do not tidy.
inline constexpr std::string_view kPhyTxBiasFlags = "TX Bias Alarm and Warning:  ";
inline constexpr std::string_view kTxPowerFlags = "TX Power Alarm and Warning: ";

inline constexpr std::string_view kSupplyVoltage = "Supply Voltage Reporting: ";
inline constexpr std::string_view kTransmitterTechnology = "Transmitter Technology: ";
inline constexpr std::string_view kExtendedCompliance = "Extended Specification Compliance Codes: ";

inline constexpr std::string_view kAlarmTemperatureHigh = "AlarmTemperatureHighThresh: ";
inline constexpr std::string_view kAlarmTemperatureLow = "AlarmTemperatureLowThresh: ";
inline constexpr std::string_view kWarnTemperatureHigh = "WarnTemperatureHighThresh: ";
inline constexpr std::string_view kWarnTemperatureLow = "WarnTemperatureLowThresh: ";
inline constexpr std::string_view kAlarmVoltageHigh = "AlarmVoltageHighThresh: ";
inline constexpr std::string_view kAlarmVoltageLow = "AlarmVoltageLowThresh: ";
inline constexpr std::string_view kWarnVoltageHigh = "WarnVoltageHighThresh: ";
inline constexpr std::string_view kWarnVoltageLow = "WarnVoltageLowThresh: ";
inline constexpr std::string_view kRxPowerHigh = "RXPowerHighThresh: ";
inline constexpr std::string_view kRxPowerLow = "RXPowerLowThresh: ";
inline constexpr std::string_view kTxPowerHigh = "TXPowerHighThresh: ";
inline constexpr std::string_view kTxPowerLow = "TXPowerLowThresh: ";
inline constexpr std::string_view kTxBiasHigh = "TXBiasHighThresh: ";
inline constexpr std::string_view kTxBiasLow = "TXBiasLowThresh: ";

inline constexpr std::string_view kDateCode = "DateCode: ";
inline constexpr std::string_view kLot = "Lot: ";
inline constexpr std::string_view kTxAdaptiveEqFreeze = "TX Adaptive Equalization Freeze: ";
inline constexpr std::string_view kRxOutputDisable = "RX Output Disable: ";
inline constexpr std::string_view kTxAdaptiveEqEnable = "TX Adaptive Equalization Enable: ";
inline constexpr std::string_view kOutputPreEmp = "OutputPreEmp: ";
inline constexpr std::string_view kOutputPostEmp = "OutputPostEmp: ";

}  // namespace label
}  // namespace cable_info
