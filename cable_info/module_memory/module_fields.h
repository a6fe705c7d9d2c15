#pragma once

/// \file
/// The names of all values of module memory: one vocabulary for all families.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cable_info {

class CodeTable;

/// The kind of a field's value.
enum class FieldKind : std::uint8_t {
  kText,
  kNumber,  ///< in the field's unit
  kCode,    ///< a number of a code table, with its name
  kFlag,    ///< true or false
};

/// Groups of fields, as in data sheets.
enum class FieldGroup : std::uint8_t {
  kModule,
  kIdentity,
  kPower,
  kMedia,
  kStatus,
  kCapabilities,
  kControls,
  kCalibration,
};

/// The fields of a module as a whole. `DescribeField` has the key, name and unit of each.
enum class Field : std::uint8_t {
  kRevision,
  kFlatMemory,
  kIdentifier,
  kState,
  kVendor,
  kOui,
  kPartNumber,
  kVendorRevision,
  kSerialNumber,
  kDateCode,
  kLot,
  kClei,
  kFirmwareActive,
  kFirmwareInactive,
  kHardware,
  kPowerClass,
  kMaxPower,
  kConnector,
  kMediaType,
  kTechnology,
  kWavelength,
  kWavelengthTolerance,
  kLengthSmf,
  kLengthOm5,
  kLengthOm4,
  kLengthOm3,
  kLengthOm2,
  kLengthOm1,
  kLengthCable,
  kAttenuation2p5,
  kAttenuation5,
  kAttenuation7,
  kAttenuation12p9,
  kAttenuation25p8,
  kAttenuation53p1,
  kEncoding,
  kNominalBitrate,
  kInterruptAsserted,
  kDataNotReady,
  kInitializationComplete,
  kCoolerReady,
  kTxDisablePin,
  kRs0Pin,
  kRs1Pin,
  kPowerLevelState,
  kPam4ModeTx,
  kPam4ModeRx,
  kExtendedIdentifier,
  kSpeedMask,
  kExtendedBitrate,
  kExtendedCompliance,
  kSecondaryExtendedCompliance,
  kModuleSubtype,
  kFiberFace,
  kFarEnd,
  kNearEndLanes,
  kPropagationDelay,
  kTunableTransmitter,
  kWavelengthControl,
  kCooledTransmitter,
  kDetector,
  kRxPowerType,
  kMaxCaseTemperature,
  kMinCaseTemperature,
  kMinOperatingVoltage,
  kAdvancedLowPower,
  kFarSideManaged,
  kModselWaitTime,
  kTxTurnOnTime,
  kDataPathInitTime,
  kRateSelectVersion,
  kRateIdentifier,
  kBitrateMax,
  kBitrateMin,
  kCalibration,
  kAddressChange,
  kMaxTxInputEq,
  kMaxRxEmphasis,
  kMaxRxPreCursor,
  kMaxRxPostCursor,
  kRxEmphasisType,
  kRxAmplitudes,
  kCoolerSettlingTime,
  kAdaptiveEqSettlingTime,
  kLowPowerOverride,
  kLowPowerRequest,
  kHighPowerEnable,
  kHighPowerClass8Enable,
  kSoftwareReset,
  kLowPowerPinIsTxDisable,
  kInterruptPinIsLos,
  kHostFec,
  kMediaFecBit,
  kSoftTxDisable,
  kSoftRs0,
  kSoftRs1,
  kRsPinIgnore,
  kPowerLevel4Enable,
  kPowerLevelSelect,
  kMode64gfc,
  kTxInputEqHigh,
  kRxEmphasisHigh,
  kTxInputEqLow,
  kRxEmphasisLow,
  kRxPowerCalibration4,
  kRxPowerCalibration3,
  kRxPowerCalibration2,
  kRxPowerCalibration1,
  kRxPowerCalibration0,
  kTxBiasSlope,
  kTxBiasOffset,
  kTxPowerSlope,
  kTxPowerOffset,
  kTemperatureSlope,
  kTemperatureOffset,
  kVoltageSlope,
  kVoltageOffset,
  // CMIS
  kSteppedConfigOnly,
  kManagementSpeed,
  kAutoCommissioning,
  kModuleStateChanged,
  kModuleFirmwareError,
  kDataPathFirmwareError,
  kAbnormalFirmware,
  kCdb1Complete,
  kCdb2Complete,
  kFaultCause,
  kBankBroadcast,
  kLowPowerPinEnabled,
  kTxSquelch,
  kStateMachines,
  kFunctionType,
  kHeatsink,
  kLowPowerRestrictions,
  kBanks,
  kTxInputClocking,
  kTxSquelchMethods,
  kRxOutputEqControls,
  kCdrPowerSaved,
  kCdbInstances,
  kNadBanks,
  kTxBiasMultiplier,
  kTemperatureMask,
  kVoltageMask,
  kDataPathDeinitTime,
  kModulePowerUpTime,
  kModulePowerDownTime,
  kTxTurnOffTime,
  kPageChangeTime,
  kVdmGroups,
  kVdmInterval,
  kVdmFrozen,
  kGrid3p125Lowest,
  kGrid3p125Highest,
  kGrid6p25Lowest,
  kGrid6p25Highest,
  kGrid12p5Lowest,
  kGrid12p5Highest,
  kGrid25Lowest,
  kGrid25Highest,
  kGrid50Lowest,
  kGrid50Highest,
  kGrid100Lowest,
  kGrid100Highest,
  kGrid33Lowest,
  kGrid33Highest,
  kGrid75Lowest,
  kGrid75Highest,
  kGrid150Lowest,
  kGrid150Highest,
  kGrid300Lowest,
  kGrid300Highest,
  kFineTuningResolution,
  kFineTuningLowest,
  kFineTuningHighest,
  kOutputPowerLowest,
  kOutputPowerHighest,
  kGatingSupport,
  kHostGeneratorPatterns,
  kMediaGeneratorPatterns,
  kHostCheckerPatterns,
  kMediaCheckerPatterns,
  kDiagnosticsSelector,
  kReferenceClockLost,
  kCount,
};
/// The number of fields of a module.
inline constexpr std::size_t kFieldCount = static_cast<std::size_t>(Field::kCount);

/// The fields of a lane, in addition to its monitors.
enum class LaneField : std::uint8_t {
  kRxLos,
  kTxLos,
  kRxLol,
  kTxLol,
  kTxFault,
  kTxAdaptiveEqFault,
  kTxDisable,
  kRxOutputDisable,
  kTxCdr,
  kRxCdr,
  kTxInputEq,
  kRxPreCursor,
  kRxPostCursor,
  kRxAmplitude,
  kDataPathState,
  kRxForceSquelch,
  kTxSquelchDisable,
  kRxSquelchDisable,
  kTxForceSquelch,
  kTxAdaptiveEq,
  kTxAdaptiveEqFreeze,
  kRxEmphasis,
  kTxRateSelect,
  kRxRateSelect,
  kRxLosMask,
  kTxLosMask,
  kRxLolMask,
  kTxLolMask,
  kTxFaultMask,
  kTxAdaptiveEqFaultMask,
  kRxPowerMask,
  kTxBiasMask,
  kTxPowerMask,
  // CMIS
  kTxPolarityFlip,
  kRxPolarityFlip,
  kTxWavelengthNumber,
  kTxFiberNumber,
  kRxWavelengthNumber,
  kRxFiberNumber,
  kRxLatency,
  kTxLatency,
  kRxOutputValid,
  kTxOutputValid,
  kRxOutputStatusChanged,
  kDataPathStateChanged,
  kDataPathDeinit,
  kDataPathInitPending,
  kConfigStatus,
  kApplication,
  kDataPathFirstLane,
  kExplicitControl,
  kTxEqRecalledBuffer,
  kDataPathStateMask,
  kRxOutputStatusMask,
  kGrid,
  kFineTuning,
  kChannel,
  kFineTuningOffset,
  kLaserFrequency,
  kTargetPower,
  kTuningInProgress,
  kWavelengthUnlocked,
  kTargetPowerOutOfRange,
  kFineTuningOutOfRange,
  kTuningNotAccepted,
  kInvalidChannel,
  kWavelengthUnlockedLatched,
  kTuningComplete,
  kHostGenerator,
  kHostGeneratorPattern,
  kHostGeneratorLol,
  kHostChecker,
  kHostCheckerPattern,
  kHostCheckerLol,
  kHostOutputLoopback,
  kHostInputLoopback,
  kHostBer,
  kHostSnr,
  kHostErrors,
  kHostBits,
  kMediaGenerator,
  kMediaGeneratorPattern,
  kMediaGeneratorLol,
  kMediaChecker,
  kMediaCheckerPattern,
  kMediaCheckerLol,
  kMediaOutputLoopback,
  kMediaInputLoopback,
  kMediaBer,
  kMediaSnr,
  kMediaErrors,
  kMediaBits,
  kCount,
};
/// The number of fields of a lane.
inline constexpr std::size_t kLaneFieldCount = static_cast<std::size_t>(LaneField::kCount);
/// The first fields of a lane are its flags, up to this one.
inline constexpr LaneField kLastLaneFlag = LaneField::kTxAdaptiveEqFault;

/// Objects of the JSON that are null when a module, or a lane, has none of their fields.
inline constexpr std::string_view kOptionalObjects[] = {"attenuation_db", "data_path",
                                                        "diagnostics", "tuning"};

/// The names and the kind of a field.
struct FieldInfo {
  Field field;             ///< the field
  std::string_view key;    ///< path in JSON: "identity.vendor"
  std::string_view label;  ///< in data sheets: "Vendor"
  FieldKind kind;          ///< text, number, code or flag
  std::string_view unit;   ///< of a number: "W"; empty for none
  FieldGroup group;        ///< its group in data sheets
};

/// The names and the kind of a field of a lane.
struct LaneFieldInfo {
  LaneField field;                   ///< the field
  std::string_view key;              ///< within the lane: "flags.rx_los"
  std::string_view label;            ///< in data sheets: "RX LOS"
  FieldKind kind;                    ///< number, code or flag
  std::string_view unit;             ///< of a number; empty for none
  const CodeTable* codes = nullptr;  ///< the names of codes
};

/// All fields of a module, in the order of `Field`.
const std::array<FieldInfo, kFieldCount>& ModuleFields();
/// All fields of a lane, in the order of `LaneField`.
const std::array<LaneFieldInfo, kLaneFieldCount>& LaneFields();

/// The names and the kind of a field of a module.
inline const FieldInfo& DescribeField(Field field) {
  return ModuleFields()[static_cast<std::size_t>(field)];
}
/// The names and the kind of a field of a lane.
inline const LaneFieldInfo& DescribeField(LaneField field) {
  return LaneFields()[static_cast<std::size_t>(field)];
}

}  // namespace cable_info
