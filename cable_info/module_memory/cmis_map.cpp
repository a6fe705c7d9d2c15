// The memory map of CMIS 3.0 to 5.x. Columns: field, page, byte, bits or bytes, meaning, what
// advertises it, and the standard's first revision that has it.

#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/sff8024.h"

namespace cable_info::module_memory {

namespace {

// ---------------------------------------------------------------------------------------------
// Codes
// ---------------------------------------------------------------------------------------------

using Entry = cable_info::CodeName;

// clang-format off
constexpr Entry kCommissioningEntries[] = {{0, "none"}, {1, "regular"}, {2, "hot"}};
constexpr Entry kFaultEntries[] = {
    {0, "none"}, {1, "TEC runaway"}, {2, "data memory corrupted"}, {3, "program memory corrupted"},
    {4, "transmitter fault"}, {5, "receiver fault"}, {6, "temperature fault"}};
constexpr Entry kStateMachineEntries[] = {
    {0, "undefined"}, {1, "none"}, {2, "module"}, {3, "module and data path"},
    {4, "module, data path and network path"}};
constexpr Entry kFunctionEntries[] = {{0, "transmission module"}, {1, "external laser source"}};
constexpr Entry kSquelchEntries[] = {{0, "reduces OMA"}, {1, "reduces average power"}};
constexpr Entry kSquelchMethodEntries[] = {
    {0, "none"}, {1, "reduces OMA"}, {2, "reduces average power"}, {3, "selected by the host"}};
constexpr Entry kDetectorEntries[] = {{0, "PIN"}, {1, "APD"}};
constexpr Entry kRxPowerEntries[] = {{0, "OMA"}, {1, "average power"}};
constexpr Entry kRxEqTypeEntries[] = {
    {0, "peak-to-peak amplitude stays constant, or not known"}, {1, "steady state amplitude stays constant"},
    {2, "average of both amplitudes stays constant"}};
constexpr Entry kRxEqControlEntries[] = {
    {0, "none"}, {1, "pre-cursor"}, {2, "post-cursor"}, {3, "pre-cursor and post-cursor"}};
constexpr Entry kInputClockingEntries[] = {
    {0, "lanes 1-8 together"}, {1, "lanes 1-4 and 5-8"}, {2, "pairs of lanes"}, {3, "each lane"}};
constexpr Entry kDurationEntries[] = {
    {0, "< 1 ms"}, {1, "< 5 ms"}, {2, "< 10 ms"}, {3, "< 50 ms"}, {4, "< 100 ms"},
    {5, "< 500 ms"}, {6, "< 1 s"}, {7, "< 5 s"}, {8, "< 10 s"}, {9, "< 1 min"}, {10, "< 5 min"},
    {11, "< 10 min"}, {12, "< 50 min"}, {13, ">= 50 min"}};
constexpr Entry kFarEndEntries[] = {
    {0, "separable"}, {1, "eight ends of 1 lane"}, {2, "one end of 8 lanes"},
    {3, "two ends of 4 lanes"}, {12, "four ends of 2 lanes"}, {27, "one end of 16 lanes"}};
constexpr Entry kCdbStatusEntries[] = {
    {0x01, "done"}, {0x03, "aborted"}, {0x41, "failed: unknown command"},
    {0x42, "failed: parameter"}, {0x43, "failed: not aborted"}, {0x44, "failed: time-out"},
    {0x45, "failed: check code"}, {0x46, "failed: password"}, {0x47, "failed: wrong state"},
    {0x81, "busy: captured"}, {0x82, "busy: checking"}, {0x83, "busy: executing"}};
constexpr Entry kPasswordEntries[] = {
    {0, "not supported"}, {1, "module password accepted"}, {2, "host password accepted"},
    {3, "refused"}, {8, "in progress"}};
constexpr Entry kSupportEntries[] = {{0, "unknown"}, {1, "not supported"}, {2, "supported"}};
constexpr Entry kGateTimeEntries[] = {{0, "none"}, {1, "5 s"}, {2, "10 s"}, {3, "30 s"},
    {4, "60 s"}, {5, "120 s"}, {6, "300 s"}, {7, "custom"}};
constexpr Entry kUpdateEntries[] = {{0, "1 s"}, {1, "5 s"}};
constexpr Entry kGatingEntries[] = {{0, "none"}, {1, "<= 2 ms"}, {2, "<= 20 ms"}, {3, "> 20 ms"}};
constexpr Entry kCdbEntries[] = {{0, "none"}, {1, "one"}, {2, "two"}};
// clang-format on

constexpr CodeTable kCommissioning("CMIS 5.3, byte 2", kCommissioningEntries);
constexpr CodeTable kFaults("CMIS 5.3, byte 41", kFaultEntries);
constexpr CodeTable kStateMachines("CMIS 5.3, byte 56", kStateMachineEntries);
constexpr CodeTable kFunctions("CMIS 5.3, byte 57", kFunctionEntries);
constexpr CodeTable kSquelch("CMIS 4.0, byte 26", kSquelchEntries);
constexpr CodeTable kSquelchMethods("CMIS 4.0, 01h byte 155", kSquelchMethodEntries);
constexpr CodeTable kDetectors("CMIS 4.0, 01h byte 151", kDetectorEntries);
constexpr CodeTable kRxPowerTypes("CMIS 4.0, 01h byte 151", kRxPowerEntries);
constexpr CodeTable kRxEqTypes("CMIS 4.0, 01h byte 151", kRxEqTypeEntries);
constexpr CodeTable kRxEqControls("CMIS 4.0, 01h byte 162", kRxEqControlEntries);
constexpr CodeTable kInputClockings("CMIS 4.0, 01h byte 145", kInputClockingEntries);
constexpr CodeTable kDurations("CMIS 4.0, 01h byte 144", kDurationEntries);
constexpr CodeTable kFarEnds("CMIS 4.0, 00h byte 211", kFarEndEntries);
constexpr CodeTable kCdbStatuses("CMIS 4.0, bytes 37-38", kCdbStatusEntries);
constexpr CodeTable kPasswordResults("CMIS 5.3, byte 42", kPasswordEntries);
constexpr CodeTable kSupports("CMIS 5.3, 01h byte 251", kSupportEntries);
constexpr CodeTable kGateTimes("CMIS 4.0, 13h byte 177", kGateTimeEntries);
constexpr CodeTable kUpdateIntervals("CMIS 4.0, 13h byte 177", kUpdateEntries);
constexpr CodeTable kGatings("CMIS 4.0, 13h byte 129", kGatingEntries);
constexpr CodeTable kCdbInstances("CMIS 4.0, 01h byte 163", kCdbEntries);

// ---------------------------------------------------------------------------------------------
// Advertisements
// ---------------------------------------------------------------------------------------------

constexpr Advertisement kPaged = By(IsPaged, "paged memory: byte 2, bit 7 clear");
constexpr Advertisement kSince50 = By(PagedSince<0x50>, "CMIS 5.0 or later, paged memory");
constexpr Advertisement kSince53 = By(Since<0x53>, "CMIS 5.3 or later");
constexpr Advertisement kSince54 = By(Since<0x54>, "CMIS 5.4 or later");
constexpr Advertisement kAttenuation =
    By(HasAttenuation, "passive copper; from CMIS 5.3 on linear active copper");
constexpr Advertisement kCdb1 = By(HasCdb<1>, "01h:163.7-6 is 1 or more, CMIS 4.0 or later");
constexpr Advertisement kCdb2 = By(HasCdb<2>, "01h:163.7-6 is 2 or more, CMIS 4.0 or later");
constexpr Advertisement kRelativeThresholds =
    By(HasGrid<196, 6, 0x54>, "01h:155.6 and 04h:196.6, CMIS 5.4 or later");
constexpr Advertisement kFirmwareA =
    By(HasFirmware<0>, "01h:173.6 and 0Dh:128.0, CMIS 5.4 or later");
constexpr Advertisement kFirmwareB =
    By(HasFirmware<1>, "01h:173.6 and 0Dh:128.1, CMIS 5.4 or later");
constexpr Advertisement kFirmwareFixed =
    By(HasFirmware<2>, "01h:173.6 and 0Dh:128.2, CMIS 5.4 or later");

// ---------------------------------------------------------------------------------------------
// The module
// ---------------------------------------------------------------------------------------------

constexpr Page kLow = Page::kLower;

// clang-format off
constexpr MapField kFields[] = {
    // Lower page
    {Field::kIdentifier, kLow, 0, kByte, kOwn, kAlways, "4.0"},
    {Field::kRevision, kLow, 1, kByte, kOwn, kAlways, "4.0"},
    {Field::kFlatMemory, kLow, 2, Bit(7), kFlag, kAlways, "4.0"},
    {Field::kSteppedConfigOnly, kLow, 2, Bit(6), kFlag, kSince50, "5.0"},
    {Field::kManagementSpeed, kLow, 2, Bits(5, 2), kOwn, kAlways, "5.3; before, bits 3-2"},
    {Field::kAutoCommissioning, kLow, 2, Bits(1, 0), Code(kCommissioning), By(HasAutoCommissioning, "2.6, CMIS 5.3 or later"), "5.3"},
    {Field::kState, kLow, 3, Bits(3, 1), Code(kModuleStates), By(HasModuleState, "paged memory, or a state other than 0"), "4.0"},
    {Field::kInterruptAsserted, kLow, 3, Bit(0), kInverseFlag, kPaged, "4.0"},
    {Field::kFlagSummary0, kLow, 4, kByte, kOwn, kPaged, "4.0; by lane before 5.0"},
    {Field::kFlagSummary1, kLow, 5, kByte, kOwn, By(HasBank<1>, "paged memory, two banks or more"), "4.0; by lane before 5.0"},
    {Field::kFlagSummary2, kLow, 6, kByte, kOwn, By(HasBank<2>, "paged memory, three banks or more"), "4.0; by lane before 5.0"},
    {Field::kFlagSummary3, kLow, 7, kByte, kOwn, By(HasBank<3>, "paged memory, four banks or more"), "4.0; by lane before 5.0"},
    {Field::kCdb2Complete, kLow, 8, Bit(7), kFlag, kCdb2, "4.0"},
    {Field::kCdb1Complete, kLow, 8, Bit(6), kFlag, kCdb1, "4.0"},
    {Field::kAbnormalFirmware, kLow, 8, Bit(3), kFlag, By(PagedSince<0x54>, "CMIS 5.4 or later, paged memory"), "5.4"},
    {Field::kDataPathFirmwareError, kLow, 8, Bit(2), kFlag, kPaged, "4.0"},
    {Field::kModuleFirmwareError, kLow, 8, Bit(1), kFlag, kPaged, "4.0"},
    {Field::kModuleStateChanged, kLow, 8, Bit(0), kFlag, kPaged, "4.0"},
    {Field::kBankBroadcast, kLow, 26, Bit(7), kFlag, By(BitSince<Page::k01, 156, 7, 0x52>, "01h:156.7, CMIS 5.2 or later"), "5.2"},
    {Field::kLowPowerPinEnabled, kLow, 26, Bit(6), kFlag, By(PagedSince<0x40>, "CMIS 4.0 or later, paged memory"), "4.0"},
    {Field::kTxSquelch, kLow, 26, Bit(5), Code(kSquelch), By(HostSelectsSquelch, "01h:155.5-4 is 3"), "4.0"},
    {Field::kLowPowerRequest, kLow, 26, Bit(4), kFlag, kPaged, "4.0"},
    {Field::kSoftwareReset, kLow, 26, Bit(3), kFlag, kPaged, "4.0"},
    {Field::kCdb2CompleteMask, kLow, 31, Bit(7), kFlag, kCdb2, "4.0"},
    {Field::kCdb1CompleteMask, kLow, 31, Bit(6), kFlag, kCdb1, "4.0"},
    {Field::kAbnormalFirmwareMask, kLow, 31, Bit(3), kFlag, By(PagedSince<0x54>, "CMIS 5.4 or later, paged memory"), "5.4"},
    {Field::kDataPathFirmwareMask, kLow, 31, Bit(2), kFlag, kPaged, "4.0"},
    {Field::kModuleFirmwareMask, kLow, 31, Bit(1), kFlag, kPaged, "4.0"},
    {Field::kModuleStateMask, kLow, 31, Bit(0), kFlag, kPaged, "4.0"},
    {Field::kTemperatureMask, kLow, 32, Bits(3, 0), kOwn, On(Page::k01, 159, 0), "4.0"},
    {Field::kVoltageMask, kLow, 32, Bits(7, 4), kOwn, On(Page::k01, 159, 1), "4.0"},
    {Field::kAux1Mask, kLow, 33, Bits(3, 0), kOwn, On(Page::k01, 159, 2), "4.0"},
    {Field::kAux2Mask, kLow, 33, Bits(7, 4), kOwn, On(Page::k01, 159, 3), "4.0"},
    {Field::kAux3Mask, kLow, 34, Bits(3, 0), kOwn, On(Page::k01, 159, 4), "4.0"},
    {Field::kCustomMonitorMask, kLow, 34, Bits(7, 4), kOwn, On(Page::k01, 159, 5), "4.0"},
    {Field::kCdb1Status, kLow, 37, kByte, Code(kCdbStatuses), kCdb1, "4.0"},
    {Field::kCdb2Status, kLow, 38, kByte, Code(kCdbStatuses), kCdb2, "4.0"},
    {Field::kFirmwareActive, kLow, 39, kWord, kVersion, kAlways, "4.0"},
    {Field::kFaultCause, kLow, 41, kByte, Code(kFaults), By(PagedSince<0x50>, "CMIS 5.0 or later, paged memory"), "5.0"},
    {Field::kPasswordResult, kLow, 42, Bits(3, 0), Code(kPasswordResults), By(HasPasswordResult, "01h:251.3-2 is 2, CMIS 5.3 or later"), "5.3"},
    {Field::kStateMachines, kLow, 56, kByte, Code(kStateMachines), kSince53, "5.3"},
    {Field::kFunctionType, kLow, 57, kByte, Code(kFunctions), kSince53, "5.3"},
    {Field::kModuleSubtype, kLow, 60, Bits(3, 0), kOwn, kSince53, "5.3"},
    {Field::kHeatsink, kLow, 61, Bits(7, 4), Code(kHeatsinks), kSince54, "5.4"},
    {Field::kFiberFace, kLow, 61, Bits(1, 0), Code(kFiberFaces), kSince53, "5.3"},
    {Field::kLowPowerRestrictions, kLow, 62, Bits(3, 0), kNumber, By(BitSince<kLow, 62, 7, 0x53>, "62.7, CMIS 5.3 or later"), "5.3"},
    {Field::kMediaType, kLow, 85, kByte, Code(kMediaTypes), kAlways, "4.0"},

    // Page 00h
    {Field::kVendor, Page::k00, 129, Bytes(16), kText, kAlways, "4.0"},
    {Field::kOui, Page::k00, 145, Bytes(3), kOui, kAlways, "4.0"},
    {Field::kPartNumber, Page::k00, 148, Bytes(16), kText, kAlways, "4.0"},
    {Field::kVendorRevision, Page::k00, 164, Bytes(2), kText, kAlways, "4.0"},
    {Field::kSerialNumber, Page::k00, 166, Bytes(16), kText, kAlways, "4.0"},
    {Field::kDateCode, Page::k00, 182, Bytes(6), kText, kAlways, "4.0"},
    {Field::kLot, Page::k00, 188, Bytes(2), kText, kAlways, "4.0"},
    {Field::kClei, Page::k00, 190, Bytes(10), kText, kAlways, "4.0"},
    {Field::kPowerClass, Page::k00, 200, Bits(7, 5), kOwn, kAlways, "4.0"},
    {Field::kMaxPower, Page::k00, 201, kByte, Number(Per(4)), kAlways, "4.0"},
    {Field::kLengthCable, Page::k00, 202, kByte, kOwn, kAlways, "4.0"},
    {Field::kConnector, Page::k00, 203, kByte, Code(kConnectors), kAlways, "4.0"},
    {Field::kAttenuation5, Page::k00, 204, kByte, kNumber.ZeroIsNone(), kAttenuation, "4.0"},
    {Field::kAttenuation7, Page::k00, 205, kByte, kNumber.ZeroIsNone(), kAttenuation, "4.0"},
    {Field::kAttenuation12p9, Page::k00, 206, kByte, kNumber.ZeroIsNone(), kAttenuation, "4.0"},
    {Field::kAttenuation25p8, Page::k00, 207, kByte, kNumber.ZeroIsNone(), kAttenuation, "4.0"},
    {Field::kAttenuation53p1, Page::k00, 208, kByte, kNumber.ZeroIsNone(), By(HasAttenuationSince53, "passive or linear active copper, CMIS 5.3 or later"), "5.3"},
    {Field::kFarEnd, Page::k00, 211, Bits(4, 0), Code(kFarEnds), kAlways, "4.0"},
    {Field::kTechnology, Page::k00, 212, kByte, Code(kMediaTechnologies), kAlways, "4.0"},

    // Page 01h
    {Field::kFirmwareInactive, Page::k01, 128, kWord, kVersion, kAlways, "4.0"},
    {Field::kHardware, Page::k01, 130, kWord, kVersion, kAlways, "4.0"},
    {Field::kLengthSmf, Page::k01, 132, kByte, kOwn, kAlways, "4.0; 137 since 5.3"},
    {Field::kLengthOm5, Page::k01, 133, kByte, Number(Times(2)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kLengthOm4, Page::k01, 134, kByte, Number(Times(2)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kLengthOm3, Page::k01, 135, kByte, Number(Times(2)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kLengthOm2, Page::k01, 136, kByte, kNumber.ZeroIsNone(), kAlways, "4.0"},
    {Field::kWavelength, Page::k01, 138, kWord, Number(Per(20)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kWavelengthTolerance, Page::k01, 140, kWord, Number(Per(200)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kBanks, Page::k01, 142, Bits(1, 0), kOwn, kAlways, "4.0, more by 174 CMIS 5.4"},
    {Field::kModselWaitTime, Page::k01, 143, kByte, kOwn, kAlways, "4.0"},
    {Field::kDataPathDeinitTime, Page::k01, 144, Bits(7, 4), Code(kDurations), kAlways, "4.0"},
    {Field::kDataPathInitTime, Page::k01, 144, Bits(3, 0), Code(kDurations), kAlways, "4.0"},
    {Field::kCooledTransmitter, Page::k01, 145, Bit(7), kFlag, kAlways, "4.0"},
    {Field::kTxInputClocking, Page::k01, 145, Bits(6, 5), Code(kInputClockings), kAlways, "4.0"},
    {Field::kMaxCaseTemperature, Page::k01, 146, kByte, Signed(Times(1)), By(HasCaseTemperatures, "01h:146-147 not 0"), "4.0"},
    {Field::kMinCaseTemperature, Page::k01, 147, kByte, Signed(Times(1)), By(HasCaseTemperatures, "01h:146-147 not 0"), "4.0"},
    {Field::kPropagationDelay, Page::k01, 148, kWord, Number(Times(10)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kMinOperatingVoltage, Page::k01, 150, kByte, Number(Per(50)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kDetector, Page::k01, 151, Bit(7), Code(kDetectors), kAlways, "4.0"},
    {Field::kRxEmphasisType, Page::k01, 151, Bits(6, 5), Code(kRxEqTypes), kAlways, "4.0"},
    {Field::kRxPowerType, Page::k01, 151, Bit(4), Code(kRxPowerTypes), kAlways, "4.0"},
    {Field::kCdrPowerSaved, Page::k01, 152, kByte, Number(Per(100)).ZeroIsNone(), kAlways, "4.0"},
    {Field::kRxAmplitudes, Page::k01, 153, Bits(7, 4), kNumber, On(Page::k01, 162, 2), "4.0"},
    {Field::kMaxTxInputEq, Page::k01, 153, Bits(3, 0), kNumber, On(Page::k01, 161, 2), "4.0"},
    {Field::kMaxRxPostCursor, Page::k01, 154, Bits(7, 4), kNumber, On(Page::k01, 162, 4), "4.0"},
    {Field::kMaxRxPreCursor, Page::k01, 154, Bits(3, 0), kNumber, On(Page::k01, 162, 3), "4.0"},
    {Field::kWavelengthControl, Page::k01, 155, Bit(7), kFlag, kAlways, "4.0"},
    {Field::kTunableTransmitter, Page::k01, 155, Bit(6), kFlag, kAlways, "4.0"},
    {Field::kTxSquelchMethods, Page::k01, 155, Bits(5, 4), Code(kSquelchMethods), kAlways, "4.0"},
    {Field::kTxBiasMultiplier, Page::k01, 160, Bits(4, 3), kOwn, On(Page::k01, 160, 0), "4.0"},
    {Field::kTxEqBuffers, Page::k01, 161, Bits(6, 5), kNumber, kAlways, "4.0"},
    {Field::kRxOutputEqControls, Page::k01, 162, Bits(4, 3), Code(kRxEqControls), kAlways, "4.0"},
    {Field::kCdbInstances, Page::k01, 163, Bits(7, 6), Code(kCdbInstances), kAlways, "4.0"},
    {Field::kCdbEplPages, Page::k01, 163, Bits(3, 0), kOwn, kCdb1, "4.0"},
    {Field::kCdbAccessSize, Page::k01, 164, kByte, kOwn, kCdb1, "4.0"},
    {Field::kModulePowerDownTime, Page::k01, 167, Bits(7, 4), Code(kDurations), kAlways, "4.0"},
    {Field::kModulePowerUpTime, Page::k01, 167, Bits(3, 0), Code(kDurations), kAlways, "4.0"},
    {Field::kTxTurnOffTime, Page::k01, 168, Bits(7, 4), Code(kDurations), kAlways, "4.0"},
    {Field::kTxTurnOnTime, Page::k01, 168, Bits(3, 0), Code(kDurations), kAlways, "4.0"},
    {Field::kPageChangeTime, Page::k01, 169, Bits(3, 0), kOwn, kSince53, "5.3"},
    {Field::kNadBanks, Page::k01, 175, kByte, kOwn, kSince53, "5.3; bits 3-0 in 5.3"},
    {Field::kScratchPad, Page::k01, 251, Bits(7, 6), Code(kSupports), kSince53, "5.3"},
    {Field::kPasswordEntry, Page::k01, 251, Bits(5, 4), Code(kSupports), kSince53, "5.3"},
    {Field::kPasswordEntryResult, Page::k01, 251, Bits(3, 2), Code(kSupports), kSince53, "5.3"},
    {Field::kFullPageRead, Page::k01, 251, Bits(1, 0), Code(kSupports), kSince53, "5.3"},

    // Page 04h
    {Field::kGrid3p125Lowest, Page::k04, 130, kWord, Signed(Times(1)), By(HasGrid<128, 0>, "01h:155.6 and 04h:128.0"), "4.0"},
    {Field::kGrid3p125Highest, Page::k04, 132, kWord, Signed(Times(1)), By(HasGrid<128, 0>, "01h:155.6 and 04h:128.0"), "4.0"},
    {Field::kGrid6p25Lowest, Page::k04, 134, kWord, Signed(Times(1)), By(HasGrid<128, 1>, "01h:155.6 and 04h:128.1"), "4.0"},
    {Field::kGrid6p25Highest, Page::k04, 136, kWord, Signed(Times(1)), By(HasGrid<128, 1>, "01h:155.6 and 04h:128.1"), "4.0"},
    {Field::kGrid12p5Lowest, Page::k04, 138, kWord, Signed(Times(1)), By(HasGrid<128, 2>, "01h:155.6 and 04h:128.2"), "4.0"},
    {Field::kGrid12p5Highest, Page::k04, 140, kWord, Signed(Times(1)), By(HasGrid<128, 2>, "01h:155.6 and 04h:128.2"), "4.0"},
    {Field::kGrid25Lowest, Page::k04, 142, kWord, Signed(Times(1)), By(HasGrid<128, 3>, "01h:155.6 and 04h:128.3"), "4.0"},
    {Field::kGrid25Highest, Page::k04, 144, kWord, Signed(Times(1)), By(HasGrid<128, 3>, "01h:155.6 and 04h:128.3"), "4.0"},
    {Field::kGrid50Lowest, Page::k04, 146, kWord, Signed(Times(1)), By(HasGrid<128, 4>, "01h:155.6 and 04h:128.4"), "4.0"},
    {Field::kGrid50Highest, Page::k04, 148, kWord, Signed(Times(1)), By(HasGrid<128, 4>, "01h:155.6 and 04h:128.4"), "4.0"},
    {Field::kGrid100Lowest, Page::k04, 150, kWord, Signed(Times(1)), By(HasGrid<128, 5>, "01h:155.6 and 04h:128.5"), "4.0"},
    {Field::kGrid100Highest, Page::k04, 152, kWord, Signed(Times(1)), By(HasGrid<128, 5>, "01h:155.6 and 04h:128.5"), "4.0"},
    {Field::kGrid33Lowest, Page::k04, 154, kWord, Signed(Times(1)), By(HasGrid<128, 6>, "01h:155.6 and 04h:128.6"), "4.0"},
    {Field::kGrid33Highest, Page::k04, 156, kWord, Signed(Times(1)), By(HasGrid<128, 6>, "01h:155.6 and 04h:128.6"), "4.0"},
    {Field::kGrid75Lowest, Page::k04, 158, kWord, Signed(Times(1)), By(HasGrid<128, 7>, "01h:155.6 and 04h:128.7"), "4.0"},
    {Field::kGrid75Highest, Page::k04, 160, kWord, Signed(Times(1)), By(HasGrid<128, 7>, "01h:155.6 and 04h:128.7"), "4.0"},
    {Field::kGrid150Lowest, Page::k04, 162, kWord, Signed(Times(1)), By(HasGrid<129, 6, 0x53>, "01h:155.6 and 04h:129.6, CMIS 5.3 or later"), "5.3"},
    {Field::kGrid150Highest, Page::k04, 164, kWord, Signed(Times(1)), By(HasGrid<129, 6, 0x53>, "01h:155.6 and 04h:129.6, CMIS 5.3 or later"), "5.3"},
    {Field::kGrid300Lowest, Page::k04, 166, kWord, Signed(Times(1)), By(HasGrid<129, 5, 0x54>, "01h:155.6 and 04h:129.5, CMIS 5.4 or later"), "5.4"},
    {Field::kGrid300Highest, Page::k04, 168, kWord, Signed(Times(1)), By(HasGrid<129, 5, 0x54>, "01h:155.6 and 04h:129.5, CMIS 5.4 or later"), "5.4"},
    {Field::kFineTuningResolution, Page::k04, 190, kWord, Number(Per(1000)), By(HasGrid<129, 7>, "01h:155.6 and 04h:129.7"), "4.0"},
    {Field::kFineTuningLowest, Page::k04, 192, kWord, Signed(Per(1000)), By(HasGrid<129, 7>, "01h:155.6 and 04h:129.7"), "4.0"},
    {Field::kFineTuningHighest, Page::k04, 194, kWord, Signed(Per(1000)), By(HasGrid<129, 7>, "01h:155.6 and 04h:129.7"), "4.0"},
    {Field::kOutputPowerLowest, Page::k04, 198, kWord, Signed(Per(100)), By(HasGrid<196, 7>, "01h:155.6 and 04h:196.7"), "4.0"},
    {Field::kOutputPowerHighest, Page::k04, 200, kWord, Signed(Per(100)), By(HasGrid<196, 7>, "01h:155.6 and 04h:196.7"), "4.0"},

    // Pages 0Ch and 0Dh
    {Field::kPagesSupported, kPage0C, 128, Bytes(32), kOwn, kPageMap, "5.4"},
    {Field::kFirmwareAState, kPage0D, 136, Bits(2, 0), kOwn, kFirmwareA, "5.4"},
    {Field::kFirmwareBState, kPage0D, 136, Bits(6, 4), kOwn, kFirmwareB, "5.4"},
    {Field::kFirmwareA, kPage0D, 148, Bytes(4), kOwn, kFirmwareA, "5.4"},
    {Field::kFirmwareAText, kPage0D, 152, Bytes(32), kText, kFirmwareA, "5.4"},
    {Field::kFirmwareB, kPage0D, 184, Bytes(4), kOwn, kFirmwareB, "5.4"},
    {Field::kFirmwareBText, kPage0D, 188, Bytes(32), kText, kFirmwareB, "5.4"},
    {Field::kFirmwareFixed, kPage0D, 220, Bytes(4), kOwn, kFirmwareFixed, "5.4"},
    {Field::kFirmwareFixedText, kPage0D, 224, Bytes(32), kText, kFirmwareFixed, "5.4"},

    // Pages 1Dh and 6Dh
    {Field::kHostLaneSwitchingTime, kPage1D, 128, Bits(7, 4), Code(kDurations), kHostLaneSwitching, "5.3"},
    {Field::kHostLaneSwitching, kPage1D, 152, Bit(0), kFlag, kHostLaneSwitching, "5.3"},
    {Field::kMediaLaneSwitchingTime, kPage6D, 128, Bits(7, 4), Code(kDurations), kMediaLaneSwitching, "5.4"},
    {Field::kMediaLaneSwitching, kPage6D, 152, Bit(0), kFlag, kMediaLaneSwitching, "5.4"},

    // Pages 13h and 14h
    {Field::kGatingSupport, Page::k13, 129, Bits(7, 6), Code(kGatings), kDiagnostics, "4.0"},
    {Field::kHostGeneratorPatterns, Page::k13, 132, kWord, kOwn, kDiagnostics, "4.0"},
    {Field::kMediaGeneratorPatterns, Page::k13, 134, kWord, kOwn, kDiagnostics, "4.0"},
    {Field::kHostCheckerPatterns, Page::k13, 136, kWord, kOwn, kDiagnostics, "4.0"},
    {Field::kMediaCheckerPatterns, Page::k13, 138, kWord, kOwn, kDiagnostics, "4.0"},
    {Field::kUserPatternSize, Page::k13, 140, Bits(3, 0), kOwn, kDiagnostics, "4.0"},
    {Field::kAutoRestart, Page::k13, 177, Bit(4), kFlag, By(HasDiagnosticsBit<129, 2>, "01h:142.5 and 13h:129.2"), "4.0"},
    {Field::kGateTime, Page::k13, 177, Bits(3, 1), Code(kGateTimes), By(HasGating, "01h:142.5, 13h:129.7-6 not 0"), "4.0"},
    {Field::kUpdateInterval, Page::k13, 177, Bit(0), Code(kUpdateIntervals), By(HasDiagnosticsBit<129, 4>, "01h:142.5 and 13h:129.4"), "4.0"},
    {Field::kReferenceClockMask, Page::k13, 206, Bit(7), kFlag, kDiagnostics, "4.0"},
    {Field::kDiagnosticsSelector, Page::k14, 128, kByte, kNumber, kDiagnostics, "4.0"},
    {Field::kReferenceClockLost, Page::k14, 132, Bit(7), kFlag, kDiagnostics, "4.0"},

    // Page 2Fh
    {Field::kVdmGroups, kPage2F, 128, Bits(1, 0), kOwn, kVdm, "4.0"},
    {Field::kVdmInterval, kPage2F, 129, kWord, Number(Per(10)).ZeroIsNone(), kVdm, "4.0"},
    {Field::kVdmFreezeRequested, kPage2F, 144, Bit(7), kFlag, kVdm, "4.0"},
    {Field::kVdmPowerSaving, kPage2F, 144, Bit(6), kFlag, By(HasVdmBit<2, 0x53>, "01h:142.6 and 2Fh:128.2, CMIS 5.3 or later"), "5.3"},
    {Field::kVdmDutyCycle, kPage2F, 144, Bits(5, 2), Number(Times(10)), By(HasVdmBit<3, 0x54>, "01h:142.6 and 2Fh:128.3, CMIS 5.4 or later"), "5.4"},
    {Field::kVdmFrozen, kPage2F, 145, Bit(7), kFlag, kVdm, "4.0"},
    {Field::kVdmUnfrozen, kPage2F, 145, Bit(6), kFlag, kVdm, "4.0"},
};

// ---------------------------------------------------------------------------------------------
// The lanes
// ---------------------------------------------------------------------------------------------

constexpr auto kByLane = LaneOrder::kBitsUp;
constexpr auto kNibbles = LaneOrder::kLowNibbleFirst;
constexpr auto kApart = LaneOrder::kApart;
constexpr auto kQuads = LaneOrder::kQuads;
constexpr auto kOfAll = LaneOrder::kModule;
constexpr auto kHost = LaneSide::kHost;
constexpr auto kMedia = LaneSide::kMedia;

constexpr LaneMapField kLaneFields[] = {
    // Page 01h
    {LaneField::kTxDefaultInverted, Page::k01, 171, kByte, kByLane, kFlag, kSince54, "5.4", kHost},
    {LaneField::kRxDefaultInverted, Page::k01, 172, kByte, kByLane, kFlag, kSince54, "5.4", kHost},
    // Page 10h
    {LaneField::kDataPathDeinit, Page::k10, 128, kByte, kByLane, kOwn, kAlways, "4.0; inverted in 3.0", kHost},
    {LaneField::kTxPolarityFlip, Page::k10, 129, kByte, kByLane, kFlag, On(Page::k01, 155, 0), "4.0", kHost},
    {LaneField::kTxAdaptiveEqFreeze, Page::k10, 134, kByte, kByLane, kFlag, On(Page::k01, 161, 4), "4.0", kHost},
    {LaneField::kRxPolarityFlip, Page::k10, 137, kByte, kByLane, kFlag, On(Page::k01, 156, 0), "4.0", kHost},
    {LaneField::kRxOutputDisable, Page::k10, 138, kByte, kByLane, kFlag, On(Page::k01, 156, 1), "4.0", kHost},
    {LaneField::kRxSquelchDisable, Page::k10, 139, kByte, kByLane, kFlag, On(Page::k01, 156, 2), "4.0", kHost},
    {LaneField::kDataPathStateMask, Page::k10, 213, kByte, kByLane, kFlag, kAlways, "4.0", kHost},
    {LaneField::kTxLosMask, Page::k10, 215, kByte, kByLane, kFlag, On(Page::k01, 157, 1), "4.0", kHost},
    {LaneField::kTxLolMask, Page::k10, 216, kByte, kByLane, kFlag, On(Page::k01, 157, 2), "4.0", kHost},
    {LaneField::kTxAdaptiveEqFaultMask, Page::k10, 217, kByte, kByLane, kFlag, On(Page::k01, 157, 3), "4.0", kHost},
    {LaneField::kRxOutputStatusMask, Page::k10, 232, kByte, kByLane, kFlag, kSince50, "5.0", kHost},
    {LaneField::kTxDisable, Page::k10, 130, kByte, kByLane, kFlag, On(Page::k01, 155, 1), "4.0", kMedia},
    {LaneField::kTxSquelchDisable, Page::k10, 131, kByte, kByLane, kFlag, On(Page::k01, 155, 2), "4.0", kMedia},
    {LaneField::kTxForceSquelch, Page::k10, 132, kByte, kByLane, kFlag, On(Page::k01, 155, 3), "4.0", kMedia},
    {LaneField::kTxFaultMask, Page::k10, 214, kByte, kByLane, kFlag, On(Page::k01, 157, 0), "4.0", kMedia},
    {LaneField::kTxPowerMask, Page::k10, 218, kByte, kByLane, kOwn, On(Page::k01, 160, 1), "4.0", kMedia},
    {LaneField::kTxBiasMask, Page::k10, 222, kByte, kByLane, kOwn, On(Page::k01, 160, 0), "4.0", kMedia},
    {LaneField::kRxLosMask, Page::k10, 226, kByte, kByLane, kFlag, On(Page::k01, 158, 1), "4.0", kMedia},
    {LaneField::kRxLolMask, Page::k10, 227, kByte, kByLane, kFlag, On(Page::k01, 158, 2), "4.0", kMedia},
    {LaneField::kRxPowerMask, Page::k10, 228, kByte, kByLane, kOwn, On(Page::k01, 160, 2), "4.0", kMedia},
    // Page 11h
    {LaneField::kDataPathState, Page::k11, 128, kByte, kNibbles, Code(kDataPathStates), kAlways, "4.0", kHost},
    {LaneField::kRxOutputValid, Page::k11, 132, kByte, kByLane, kFlag, kSince50, "5.0", kHost},
    {LaneField::kDataPathStateChanged, Page::k11, 134, kByte, kByLane, kFlag, kAlways, "4.0", kHost},
    {LaneField::kTxLos, Page::k11, 136, kByte, kByLane, kFlag, On(Page::k01, 157, 1), "4.0", kHost},
    {LaneField::kTxLol, Page::k11, 137, kByte, kByLane, kFlag, On(Page::k01, 157, 2), "4.0", kHost},
    {LaneField::kTxAdaptiveEqFault, Page::k11, 138, kByte, kByLane, kFlag, On(Page::k01, 157, 3), "4.0", kHost},
    {LaneField::kRxOutputStatusChanged, Page::k11, 153, kByte, kByLane, kFlag, kSince50, "5.0", kHost},
    {LaneField::kConfigStatus, Page::k11, 202, kByte, kNibbles, Code(kConfigStatuses), kAlways, "4.0", kHost},
    {LaneField::kApplication, Page::k11, 206, Bits(7, 4), kApart, kNumber, kAlways, "4.0", kHost},
    {LaneField::kDataPathFirstLane, Page::k11, 206, Bits(3, 1), kApart, kOwn, kAlways, "4.0", kHost},
    {LaneField::kExplicitControl, Page::k11, 206, Bit(0), kApart, kFlag, kAlways, "4.0", kHost},
    {LaneField::kTxAdaptiveEq, Page::k11, 214, kByte, kByLane, kFlag, On(Page::k01, 161, 3), "4.0", kHost},
    {LaneField::kTxEqRecalledBuffer, Page::k11, 215, kByte, LaneOrder::kPairsUp, kNumber, By(HasEqBuffers, "01h:161.6-5 not 0"), "4.0", kHost},
    {LaneField::kTxInputEq, Page::k11, 217, kByte, kNibbles, kNumber, On(Page::k01, 161, 2), "4.0", kHost},
    {LaneField::kTxCdr, Page::k11, 221, kByte, kByLane, kOwn, On(Page::k01, 161, 0), "4.0", kHost},
    {LaneField::kRxCdr, Page::k11, 222, kByte, kByLane, kOwn, On(Page::k01, 162, 0), "4.0", kHost},
    {LaneField::kRxPreCursor, Page::k11, 223, kByte, kNibbles, kOwn, On(Page::k01, 162, 3), "4.0", kHost},
    {LaneField::kRxPostCursor, Page::k11, 227, kByte, kNibbles, kNumber, On(Page::k01, 162, 4), "4.0", kHost},
    {LaneField::kRxAmplitude, Page::k11, 231, kByte, kNibbles, kNumber, On(Page::k01, 162, 2), "4.0", kHost},
    {LaneField::kDataPathInitPending, Page::k11, 235, kByte, kByLane, kFlag, kSince50, "5.0", kHost},
    {LaneField::kTxOutputValid, Page::k11, 133, kByte, kByLane, kFlag, kSince50, "5.0", kMedia},
    {LaneField::kTxFault, Page::k11, 135, kByte, kByLane, kFlag, On(Page::k01, 157, 0), "4.0", kMedia},
    {LaneField::kRxLos, Page::k11, 147, kByte, kByLane, kFlag, On(Page::k01, 158, 1), "4.0", kMedia},
    {LaneField::kRxLol, Page::k11, 148, kByte, kByLane, kFlag, On(Page::k01, 158, 2), "4.0", kMedia},
    {LaneField::kTxWavelengthNumber, Page::k11, 240, Bits(7, 4), kApart, kNumber.ZeroIsNone(), kAlways, "4.0", kMedia},
    {LaneField::kTxFiberNumber, Page::k11, 240, Bits(3, 0), kApart, kNumber.ZeroIsNone(), kAlways, "4.0", kMedia},
    {LaneField::kRxWavelengthNumber, Page::k11, 248, Bits(7, 4), kApart, kNumber.ZeroIsNone(), kAlways, "4.0", kMedia},
    {LaneField::kRxFiberNumber, Page::k11, 248, Bits(3, 0), kApart, kNumber.ZeroIsNone(), kAlways, "4.0", kMedia},
    // Page 12h
    {LaneField::kGrid, Page::k12, 128, Bits(7, 4), kApart, kOwn, kTunable, "4.0; codes 6 and 7 swapped in 5.0", kMedia},
    {LaneField::kRelativeThresholds, Page::k12, 128, Bit(1), kApart, kFlag, kRelativeThresholds, "5.4", kMedia},
    {LaneField::kFineTuning, Page::k12, 128, Bit(0), kApart, kFlag, By(HasGrid<129, 7>, "01h:155.6 and 04h:129.7"), "4.0", kMedia},
    {LaneField::kChannel, Page::k12, 136, kWord, kApart, Signed(Times(1)), kTunable, "4.0", kMedia},
    {LaneField::kChannelFrequency, Page::k12, 136, kWord, kApart, kOwn, kTunable, "4.0; from grid and channel", kMedia},
    {LaneField::kFineTuningOffset, Page::k12, 152, kWord, kApart, Signed(Per(1000)), By(HasGrid<129, 7>, "01h:155.6 and 04h:129.7"), "4.0", kMedia},
    {LaneField::kLaserFrequency, Page::k12, 168, Bytes(4), kApart, Number(Per(1000000)).ZeroIsNone(), kTunable, "4.0", kMedia},
    {LaneField::kTargetPower, Page::k12, 200, kWord, kApart, Signed(Per(100)), By(HasGrid<196, 7>, "01h:155.6 and 04h:196.7"), "4.0", kMedia},
    {LaneField::kRelativeHighAlarm, Page::k12, 216, Bits(7, 4), kOfAll, kOwn, kRelativeThresholds, "5.4", kMedia},
    {LaneField::kRelativeHighWarning, Page::k12, 216, Bits(3, 0), kOfAll, kOwn, kRelativeThresholds, "5.4", kMedia},
    {LaneField::kRelativeLowAlarm, Page::k12, 217, Bits(7, 4), kOfAll, kOwn, kRelativeThresholds, "5.4", kMedia},
    {LaneField::kRelativeLowWarning, Page::k12, 217, Bits(3, 0), kOfAll, kOwn, kRelativeThresholds, "5.4", kMedia},
    {LaneField::kTuningInProgress, Page::k12, 222, Bit(1), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kWavelengthUnlocked, Page::k12, 222, Bit(0), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kTargetPowerOutOfRange, Page::k12, 231, Bit(5), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kFineTuningOutOfRange, Page::k12, 231, Bit(4), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kTuningNotAccepted, Page::k12, 231, Bit(3), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kInvalidChannel, Page::k12, 231, Bit(2), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kWavelengthUnlockedLatched, Page::k12, 231, Bit(1), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kTuningComplete, Page::k12, 231, Bit(0), kApart, kFlag, kTunable, "4.0", kMedia},
    {LaneField::kTuningMask, Page::k12, 239, Bits(5, 0), kApart, kNumber, kTunable, "4.0", kMedia},
    // Page 15h
    {LaneField::kRxLatency, kPage15, 224, kWord, kApart, kNumber, kTiming, "5.0", kHost},
    {LaneField::kTxLatency, kPage15, 240, kWord, kApart, kNumber, kTiming, "5.0", kHost},
    // Pages 16h and 17h
    {LaneField::kNetworkPathDeinit, kPage16, 160, kByte, kByLane, kFlag, kNetworkPath, "5.4", kHost},
    {LaneField::kNetworkPathState, kPage16, 200, kByte, kNibbles, Code(kDataPathStates), kNetworkPath, "5.4", kHost},
    {LaneField::kNetworkPathInitPending, kPage16, 204, kByte, kByLane, kFlag, kNetworkPath, "5.4", kHost},
    {LaneField::kNetworkPathStateChanged, kPage17, 128, kByte, kByLane, kFlag, kNetworkPath, "5.4", kHost},
    {LaneField::kNetworkPathStateMask, kPage17, 192, kByte, kByLane, kFlag, kNetworkPath, "5.4", kHost},
    // Page 19h
    {LaneField::kProvisionedTxApplication, kPage19, 128, Bits(7, 4), kApart, kNumber, kUnidirectional, "5.2", kHost},
    {LaneField::kProvisionedTxFirstLane, kPage19, 128, Bits(3, 1), kApart, kOwn, kUnidirectional, "5.2", kHost},
    {LaneField::kProvisionedRxApplication, kPage19, 136, Bits(7, 4), kApart, kNumber, kUnidirectional, "5.2", kHost},
    {LaneField::kProvisionedRxFirstLane, kPage19, 136, Bits(3, 1), kApart, kOwn, kUnidirectional, "5.2", kHost},
    {LaneField::kApplicationBlock, kPage19, 144, kByte, kApart, kNumber, kApplicationBlocks, "5.3", kHost},
    // Pages 1Dh and 6Dh
    {LaneField::kSwitchedHostLane, kPage1D, 136, kByte, kApart, kNumber, kHostLaneSwitching, "5.3", kHost},
    {LaneField::kSwitchedMediaLane, kPage6D, 136, kByte, kApart, kNumber, kMediaLaneSwitching, "5.4", kMedia},
    // Page 60h
    {LaneField::kTxInverted, kPage60, 128, kByte, kByLane, kFlag, kLaneExtensions, "5.4", kHost},
    {LaneField::kRxInverted, kPage60, 129, kByte, kByLane, kFlag, kLaneExtensions, "5.4", kHost},
    // Pages 61h and 62h
    {LaneField::kTxHostAcquisitions, kPage61, 128, kWord, kApart, kNumber, kAcquisitionCounters, "5.4", kHost},
    {LaneField::kRxMediaAcquisitions, kPage61, 144, kWord, kApart, kNumber, kAcquisitionCounters, "5.4", kMedia},
    {LaneField::kTxDataPathAcquisitions, kPage61, 160, kWord, kApart, kNumber, kAcquisitionCounters, "5.4", kHost},
    {LaneField::kRxDataPathAcquisitions, kPage61, 176, kWord, kApart, kNumber, kAcquisitionCounters, "5.4", kHost},
    {LaneField::kTxPowerHighAlarm, kPage62, 128, kWord, kQuads, Signed(Per(100)), kLaneThresholds, "5.4", kMedia},
    {LaneField::kTxPowerLowAlarm, kPage62, 130, kWord, kQuads, Signed(Per(100)), kLaneThresholds, "5.4", kMedia},
    {LaneField::kTxPowerHighWarning, kPage62, 132, kWord, kQuads, Signed(Per(100)), kLaneThresholds, "5.4", kMedia},
    {LaneField::kTxPowerLowWarning, kPage62, 134, kWord, kQuads, Signed(Per(100)), kLaneThresholds, "5.4", kMedia},
    // Pages 13h and 14h
    {LaneField::kHostGenerator, Page::k13, 144, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostGeneratorInverted, Page::k13, 145, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 0>, "01h:142.5 and 13h:141.0"), "4.0", kHost},
    {LaneField::kHostGeneratorSwapped, Page::k13, 146, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 1>, "01h:142.5 and 13h:141.1"), "4.0", kHost},
    {LaneField::kHostGeneratorPattern, Page::k13, 148, kByte, kNibbles, Code(kTestPatterns), kDiagnostics, "4.0", kHost},
    {LaneField::kHostChecker, Page::k13, 160, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostCheckerInverted, Page::k13, 161, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 2>, "01h:142.5 and 13h:141.2"), "4.0", kHost},
    {LaneField::kHostCheckerSwapped, Page::k13, 162, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 3>, "01h:142.5 and 13h:141.3"), "4.0", kHost},
    {LaneField::kHostCheckerPattern, Page::k13, 164, kByte, kNibbles, Code(kTestPatterns), kDiagnostics, "4.0", kHost},
    {LaneField::kHostOutputLoopback, Page::k13, 182, kByte, kByLane, kFlag, By(HasDiagnosticsBit<128, 2>, "01h:142.5 and 13h:128.2"), "4.0", kHost},
    {LaneField::kHostInputLoopback, Page::k13, 183, kByte, kByLane, kFlag, By(HasDiagnosticsBit<128, 3>, "01h:142.5 and 13h:128.3"), "4.0", kHost},
    {LaneField::kHostGatingMask, Page::k13, 208, kByte, kByLane, kFlag, By(HasGating, "01h:142.5, 13h:129.7-6 not 0"), "4.0", kHost},
    {LaneField::kHostGeneratorLolMask, Page::k13, 210, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostCheckerLolMask, Page::k13, 212, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostGatingComplete, Page::k14, 134, kByte, kByLane, kFlag, By(HasGating, "01h:142.5, 13h:129.7-6 not 0"), "4.0", kHost},
    {LaneField::kHostGeneratorLol, Page::k14, 136, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostCheckerLol, Page::k14, 138, kByte, kByLane, kFlag, kDiagnostics, "4.0", kHost},
    {LaneField::kHostBer, Page::k14, 192, kWord, kApart, kOwn, By(HasDiagnosticsBit<130, 0>, "01h:142.5 and 13h:130.0"), "4.0, selector 01h or 11h", kHost},
    {LaneField::kHostSnr, Page::k14, 208, kWord, kApart, kOwn, By(HasDiagnosticsBit<130, 4>, "01h:142.5 and 13h:130.4"), "4.0, selector 06h, little-endian", kHost},
    {LaneField::kHostErrors, Page::k14, 192, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 02h, 03h, little-endian", kHost},
    {LaneField::kHostBits, Page::k14, 200, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 02h, 03h, little-endian", kHost},
    {LaneField::kHostSyncLost, Page::k14, 200, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 02h, 03h: odd number of bits", kHost},
    {LaneField::kMediaGenerator, Page::k13, 152, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaGeneratorInverted, Page::k13, 153, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 4>, "01h:142.5 and 13h:141.4"), "4.0", kMedia},
    {LaneField::kMediaGeneratorSwapped, Page::k13, 154, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 5>, "01h:142.5 and 13h:141.5"), "4.0", kMedia},
    {LaneField::kMediaGeneratorPattern, Page::k13, 156, kByte, kNibbles, Code(kTestPatterns), kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaChecker, Page::k13, 168, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaCheckerInverted, Page::k13, 169, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 6>, "01h:142.5 and 13h:141.6"), "4.0", kMedia},
    {LaneField::kMediaCheckerSwapped, Page::k13, 170, kByte, kByLane, kFlag, By(HasDiagnosticsBit<141, 7>, "01h:142.5 and 13h:141.7"), "4.0", kMedia},
    {LaneField::kMediaCheckerPattern, Page::k13, 172, kByte, kNibbles, Code(kTestPatterns), kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaOutputLoopback, Page::k13, 180, kByte, kByLane, kFlag, By(HasDiagnosticsBit<128, 0>, "01h:142.5 and 13h:128.0"), "4.0", kMedia},
    {LaneField::kMediaInputLoopback, Page::k13, 181, kByte, kByLane, kFlag, By(HasDiagnosticsBit<128, 1>, "01h:142.5 and 13h:128.1"), "4.0", kMedia},
    {LaneField::kMediaGatingMask, Page::k13, 209, kByte, kByLane, kFlag, By(HasGating, "01h:142.5, 13h:129.7-6 not 0"), "4.0", kMedia},
    {LaneField::kMediaGeneratorLolMask, Page::k13, 211, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaCheckerLolMask, Page::k13, 213, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaGatingComplete, Page::k14, 135, kByte, kByLane, kFlag, By(HasGating, "01h:142.5, 13h:129.7-6 not 0"), "4.0", kMedia},
    {LaneField::kMediaGeneratorLol, Page::k14, 137, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaCheckerLol, Page::k14, 139, kByte, kByLane, kFlag, kDiagnostics, "4.0", kMedia},
    {LaneField::kMediaBer, Page::k14, 208, kWord, kApart, kOwn, By(HasDiagnosticsBit<130, 0>, "01h:142.5 and 13h:130.0"), "4.0, selector 01h or 11h", kMedia},
    {LaneField::kMediaSnr, Page::k14, 240, kWord, kApart, kOwn, By(HasDiagnosticsBit<130, 5>, "01h:142.5 and 13h:130.5"), "4.0, selector 06h, little-endian", kMedia},
    {LaneField::kMediaErrors, Page::k14, 192, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 04h, 05h, little-endian", kMedia},
    {LaneField::kMediaBits, Page::k14, 200, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 04h, 05h, little-endian", kMedia},
    {LaneField::kMediaSyncLost, Page::k14, 200, Bytes(8), kApart, kOwn, By(HasDiagnosticsBit<130, 1>, "01h:142.5 and 13h:130.1"), "4.0, selectors 04h, 05h: odd number of bits", kMedia},
};

// ---------------------------------------------------------------------------------------------
// The monitors
// ---------------------------------------------------------------------------------------------

// The four flags of a module's quantity follow each other from its lowest bit up; those of the lanes
// have one byte per level with one bit per lane.
constexpr FlagPlaces InByte(std::uint8_t byte, std::uint8_t bit) { return {kLow, byte, bit, -1, -2, 0}; }
constexpr FlagPlaces FromByte(std::uint8_t byte) { return {Page::k11, byte, 0, 8, 16, -1}; }

constexpr Format kTecCurrent = {RawType::kSigned, 100, 32767};
constexpr Format kRaw = Signed(Times(1));

constexpr MapMonitor kMonitors[] = {
    {Quantity::kTemperature, "", kLow, 14, kCelsius, Page::k02, 128, InByte(9, 0), On(Page::k01, 159, 0), "4.0"},
    {Quantity::kVoltage, "", kLow, 16, kVolts, Page::k02, 136, InByte(9, 4), On(Page::k01, 159, 1), "4.0"},
    {Quantity::kAux, "tec_current_percent", kLow, 18, kTecCurrent, Page::k02, 144, InByte(10, 0), By(HasAux<2, 0, 1>, "01h:159.2 and 01h:145.0"), "4.0"},
    {Quantity::kAux, "aux1_custom", kLow, 18, kRaw, Page::k02, 144, InByte(10, 0), By(HasAux<2, 0, 0>, "01h:159.2, 01h:145.0 clear"), "4.0"},
    {Quantity::kAux, "laser_temperature_c", kLow, 20, kCelsius, Page::k02, 152, InByte(10, 4), By(HasAux<3, 1, 0>, "01h:159.3, 01h:145.1 clear"), "4.0"},
    {Quantity::kAux, "tec_current_percent", kLow, 20, kTecCurrent, Page::k02, 152, InByte(10, 4), By(HasAux<3, 1, 1>, "01h:159.3 and 01h:145.1"), "4.0"},
    {Quantity::kAux, "laser_temperature_c", kLow, 22, kCelsius, Page::k02, 160, InByte(11, 0), By(HasAux<4, 2, 0>, "01h:159.4, 01h:145.2 clear"), "4.0"},
    {Quantity::kAux, "vcc2_v", kLow, 22, kVolts, Page::k02, 160, InByte(11, 0), By(HasAux<4, 2, 1>, "01h:159.4 and 01h:145.2"), "4.0"},
    {Quantity::kAux, "custom", kLow, 24, kRaw, Page::k02, 168, InByte(11, 4), On(Page::k01, 159, 5), "4.0"},
    {Quantity::kTxPower, "", Page::k11, 154, kMilliwatts, Page::k02, 176, FromByte(139), On(Page::k01, 160, 1), "4.0"},
    {Quantity::kTxBias, "", Page::k11, 170, kMilliamperes, Page::k02, 184, FromByte(143), On(Page::k01, 160, 0), "4.0"},
    {Quantity::kRxPower, "", Page::k11, 186, kMilliwatts, Page::k02, 192, FromByte(149), On(Page::k01, 160, 2), "4.0"},
};

constexpr NamedBit kOptions[] = {
    {Page::k01, 142, 7, "Network path pages", 0x51},
    {Page::k01, 142, 6, "Versatile diagnostics monitoring (VDM)", 0x40},
    {Page::k01, 142, 5, "Diagnostic pages 13h, 14h", 0x40},
    {Page::k01, 142, 4, "Coherent pages", 0x53},
    {Page::k01, 142, 3, "Page 05h", 0x52},
    {Page::k01, 142, 2, "User page 03h"},
    {Page::k01, 145, 4, "ePPS", 0x50},
    {Page::k01, 145, 3, "Timing page 15h", 0x50},
    {Page::k01, 151, 3, "RX LOS on average power"},
    {Page::k01, 151, 2, "Fast RX LOS"},
    {Page::k01, 151, 1, "Fast TX disable"},
    {Page::k01, 151, 0, "TX disable of the whole module"},
    {Page::k01, 155, 7, "Wavelength control"},
    {Page::k01, 155, 6, "Tunable transmitter", 0x40},
    {Page::k01, 155, 3, "TX forced squelch"},
    {Page::k01, 155, 2, "TX squelch disable"},
    {Page::k01, 155, 1, "TX disable"},
    {Page::k01, 155, 0, "TX polarity flip"},
    {Page::k01, 156, 7, "Bank broadcast", 0x52},
    {Page::k01, 156, 2, "RX squelch disable"},
    {Page::k01, 156, 1, "RX output disable"},
    {Page::k01, 156, 0, "RX polarity flip"},
    {Page::k01, 157, 3, "TX adaptive equalization fault flag"},
    {Page::k01, 157, 2, "TX LOL flag"},
    {Page::k01, 157, 1, "TX LOS flag"},
    {Page::k01, 157, 0, "TX fault flag"},
    {Page::k01, 158, 2, "RX LOL flag"},
    {Page::k01, 158, 1, "RX LOS flag"},
    {Page::k01, 159, 5, "Custom monitor"},
    {Page::k01, 159, 4, "Auxiliary monitor 3"},
    {Page::k01, 159, 3, "Auxiliary monitor 2"},
    {Page::k01, 159, 2, "Auxiliary monitor 1"},
    {Page::k01, 159, 1, "Supply voltage monitor"},
    {Page::k01, 159, 0, "Temperature monitor"},
    {Page::k01, 160, 2, "RX power monitor"},
    {Page::k01, 160, 1, "TX power monitor"},
    {Page::k01, 160, 0, "TX bias monitor"},
    {Page::k01, 161, 4, "TX adaptive equalization freeze"},
    {Page::k01, 161, 3, "TX adaptive equalization"},
    {Page::k01, 161, 2, "TX input equalization control"},
    {Page::k01, 161, 1, "TX CDR bypass"},
    {Page::k01, 161, 0, "TX CDR"},
    {Page::k01, 162, 7, "Versatile control sets", 0x53},
    {Page::k01, 162, 6, "Unidirectional reconfiguration", 0x52},
    {Page::k01, 162, 5, "Staged control set 1"},
    {Page::k01, 162, 4, "RX post-cursor control"},
    {Page::k01, 162, 3, "RX pre-cursor control"},
    {Page::k01, 162, 2, "RX amplitude control"},
    {Page::k01, 162, 1, "RX CDR bypass"},
    {Page::k01, 162, 0, "RX CDR"},
    {Page::k01, 163, 5, "CDB in the background", 0x40},
    {Page::k01, 163, 4, "CDB automatic paging", 0x40},
    {Page::k01, 173, 7, "Page map 0Ch", 0x54},
    {Page::k01, 173, 6, "Firmware management page 0Dh", 0x54},
    {Page::k01, 174, 7, "Lane extensions page 60h", 0x54},
    {Page::k01, 174, 6, "Acquisition counters page 61h", 0x54},
    {Page::k01, 174, 5, "Lane power thresholds page 62h", 0x54},
    {Page::k01, 252, 7, "Host lane switching", 0x53},
    {Page::k01, 252, 6, "Link training", 0x53},
    {Page::k01, 252, 5, "Media lane switching", 0x54},
    {Page::k04, 196, 7, "Output power per lane"},
    {Page::k04, 196, 6, "Power thresholds relative to the target", 0x54},
    {kPage0D, 128, 7, "Firmware download by CDB", 0x54},
    {kPage0D, 128, 3, "Traffic with the fixed firmware", 0x54},
    {Page::k13, 128, 6, "Host and media side loopback at once"},
    {Page::k13, 128, 5, "Loopback per media lane"},
    {Page::k13, 128, 4, "Loopback per host lane"},
    {Page::k13, 128, 3, "Host side input loopback"},
    {Page::k13, 128, 2, "Host side output loopback"},
    {Page::k13, 128, 1, "Media side input loopback"},
    {Page::k13, 128, 0, "Media side output loopback"},
    {Page::k13, 129, 5, "Gated diagnostics results"},
    {Page::k13, 129, 4, "Periodic updates of diagnostics"},
    {Page::k13, 129, 3, "Diagnostics timers per lane"},
    {Page::k13, 129, 2, "Automatic restart of diagnostics"},
    {Page::k13, 130, 7, "Media side FEC error information"},
    {Page::k13, 130, 6, "Host side FEC error information"},
    {Page::k13, 130, 5, "Media side SNR"},
    {Page::k13, 130, 4, "Host side SNR"},
    {Page::k13, 130, 1, "Bit and error counters"},
    {Page::k13, 130, 0, "Bit error ratio"},
    {Page::k13, 131, 7, "Media side generator before FEC"},
    {Page::k13, 131, 6, "Media side generator after FEC"},
    {Page::k13, 131, 5, "Media side checker before FEC"},
    {Page::k13, 131, 4, "Media side checker after FEC"},
    {Page::k13, 131, 3, "Host side generator before FEC"},
    {Page::k13, 131, 2, "Host side generator after FEC"},
    {Page::k13, 131, 1, "Host side checker before FEC"},
    {Page::k13, 131, 0, "Host side checker after FEC"},
    {Page::k13, 140, 5, "Reference clock for patterns"},
    {Page::k13, 141, 7, "Media side checker swap"},
    {Page::k13, 141, 6, "Media side checker inversion"},
    {Page::k13, 141, 5, "Media side generator swap"},
    {Page::k13, 141, 4, "Media side generator inversion"},
    {Page::k13, 141, 3, "Host side checker swap"},
    {Page::k13, 141, 2, "Host side checker inversion"},
    {Page::k13, 141, 1, "Host side generator swap"},
    {Page::k13, 141, 0, "Host side generator inversion"},
    {Page::k13, 142, 7, "Media side checker enable per lane"},
    {Page::k13, 142, 6, "Media side checker pattern per lane"},
    {Page::k13, 142, 5, "Media side generator enable per lane"},
    {Page::k13, 142, 4, "Media side generator pattern per lane"},
    {Page::k13, 142, 3, "Host side checker enable per lane"},
    {Page::k13, 142, 2, "Host side checker pattern per lane"},
    {Page::k13, 142, 1, "Host side generator enable per lane"},
    {Page::k13, 142, 0, "Host side generator pattern per lane"},
    {kPage2F, 128, 3, "VDM duty cycle", 0x54},
    {kPage2F, 128, 2, "VDM power saving", 0x53},
};

// The first two bytes of page 01h, the inactive firmware's, may change while a module runs.
constexpr Checksum kChecksums[] = {
    {Page::k00, 128, 221, 222},
    {Page::k01, 130, 254, 255},
    {Page::k02, 128, 254, 255},
    {Page::k04, 128, 254, 255},
};
// clang-format on

}  // namespace

const MemoryMap& CmisMap() {
  static constexpr MemoryMap kMap = {kFields, kLaneFields, kMonitors, {}, kOptions, kChecksums};
  return kMap;
}

}  // namespace cable_info::module_memory
