// The memory map of SFF-8472 rev 12.4.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/sff8472_rules.h"
#include "cable_info/module_memory/sff_codes.h"
#include "cable_info/phy_registers.h"

namespace cable_info::module_memory {

namespace {

constexpr Page kA0 = Page::kA0;
constexpr Page kA2 = Page::kA2;

constexpr unsigned kCopperPigtail = 0x21;  // in byte 2
constexpr unsigned kRj45 = 0x22;

// ---------------------------------------------------------------------------------------------
// What advertises fields
// ---------------------------------------------------------------------------------------------

constexpr unsigned kRevision114 = 0x07;  // codes in byte 94; 11.9 has that of 11.4
constexpr unsigned kRevision124 = 0x09;

Advertised Since(const ModuleImage& image, unsigned revision) {
  const std::optional<std::uint8_t> code = image.At(kA0, 94);
  return code ? AdvertisedIf(*code >= revision) : Advertised::kUnknown;
}
Advertised Since124(const ModuleImage& image) { return Since(image, kRevision124); }

Advertised IsCable(const ModuleImage& image) { return AskBits(image, kA0, 8, 0x0C); }

// The extended compliance codes (SFF-8024, table 4-4) of BASE-T modules.
bool IsBaseTCode(unsigned code) {
  return code == 0x16 || code == 0x1C || code == 0x1D || code == 0x1E;
}

// BASE-T, and other copper modules that are not cables.
Advertised IsCopperModule(const ModuleImage& image) {
  const std::optional<std::uint8_t> connector = image.At(kA0, 2);
  const std::optional<std::uint8_t> compliance = image.At(kA0, 36);
  // NOLINTNEXTLINE(misc-redundant-expression): these are two codes
  if (connector == kRj45 || connector == kCopperPigtail ||
      (compliance && IsBaseTCode(*compliance))) {
    return Advertised::kYes;
  }
  return Both(AskBit(image, kA0, 6, 3), Not(IsCable(image)));
}

Advertised IsOptical(const ModuleImage& image) {
  return Both(Not(IsCable(image)), Not(IsCopperModule(image)));
}

// The extended compliance codes of active optical cables.
bool IsOpticalCableCode(unsigned code) {
  return code == 0x01 || code == 0x18 || code == 0x31 || code == 0x33;
}

// Cables whose bytes 14 and 15 are attenuations: copper, rev 12.4 on.
Advertised HasAttenuation(const ModuleImage& image) {
  if (IsOpticalCableCode(image.At(kA0, 36).value_or(0))) return Advertised::kNo;
  return Both(IsCable(image), Since124(image));
}

Advertised HasExtendedBitrate(const ModuleImage& image) {
  const std::optional<std::uint8_t> rate = image.At(kA0, 12);
  return rate ? AdvertisedIf(*rate == kSeeExtendedBitrate) : Advertised::kUnknown;
}
Advertised HasUpperRateMargin(const ModuleImage& image) { return Not(HasExtendedBitrate(image)); }

Advertised HasCalibration(const ModuleImage& image) {
  return Both(HasDiagnostics(image), IsCalibratedExternally(image));
}
Advertised HasEnhancedFeatures(const ModuleImage& image) {
  return Both(HasDiagnostics(image), Both(Not(IsCalibratedExternally(image)), Since124(image)));
}

template <unsigned kBit>
Advertised HasStatus(const ModuleImage& image) {  // by the enhanced options
  return Both(HasDiagnostics(image), AskBit(image, kA0, 93, kBit));
}
Advertised HasRateSelectPin(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AskBits(image, kA0, 93, 0x0A));
}
Advertised HasEqualizers(const ModuleImage& image) {
  return Both(HasDiagnostics(image), Since(image, kRevision114));
}
Advertised HasCdr(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AskBit(image, kA0, 64, 3));
}
Advertised HasPowerLevels(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AskBits(image, kA0, 64, 0x62));
}
Advertised HasPowerLevels2And3(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AskBits(image, kA0, 64, 0x22));
}
Advertised HasPowerLevel4(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AskBit(image, kA0, 64, 6));
}
Advertised Has64gfc(const ModuleImage& image) {
  return Both(HasDiagnostics(image), Both(AskBit(image, kA0, 10, 1), AskBit(image, kA0, 62, 0)));
}

// The extended compliance codes of 50 Gb/s Ethernet on one lane.
Advertised HasPam4(const ModuleImage& image) {
  const unsigned code = image.At(kA0, 36).value_or(0);
  const bool is_50g =
      code == 0x39 || (code >= 0x40 && code <= 0x42) || code == 0x45 || code == 0x4A;
  return Either(Has64gfc(image), Both(HasDiagnostics(image), AdvertisedIf(is_50g)));
}

Advertised HasOpticalDiagnostics(const ModuleImage& image) {
  return Both(HasDiagnostics(image), AdvertisedIf(MayHaveOptics(Sff8472MediumOf(image))));
}

// A module with valid data whose supply voltage reads 0 does not monitor it.
Advertised HasVoltage(const ModuleImage& image) {
  const ModuleImage::Half& a2 = image.HalfOf(kA2, 98);
  const bool is_zero = a2.Has(98, 2) && RawNumber(a2, 98, kWord) == 0;
  const bool is_none = is_zero && IsNotReady(image) != Advertised::kYes;
  return Both(HasDiagnostics(image), AdvertisedIf(!is_none));
}

template <unsigned kByteNumber, unsigned kBit>
Advertised HasFeature(const ModuleImage& image) {  // by the enhanced features
  return Both(HasEnhancedFeatures(image), AskBit(image, kA2, kByteNumber, kBit));
}

Advertised HasSquelchChoice(const ModuleImage& image) {
  const std::optional<std::uint8_t> byte = image.At(kA2, 56);
  if (!byte) return Both(HasEnhancedFeatures(image), Advertised::kUnknown);
  constexpr unsigned kSelectable = 3;
  return Both(HasEnhancedFeatures(image), AdvertisedIf((*byte >> 2U & 3U) == kSelectable));
}

Advertised HasRxCursors(const ModuleImage& image) {
  return Both(HasEnhancedFeatures(image), AskBits(image, kA2, 62, 0x06));
}

// True if the bytes are all 00h or all FFh.
bool IsFilled(const ModuleImage::Half& half, std::size_t first, std::size_t count) {
  const auto is_same = [&half, first](std::uint8_t byte) { return byte == half[first]; };
  const bool is_filler = half[first] == 0x00 || half[first] == 0xFF;
  return is_filler && half.Has(first, count) &&
         std::all_of(half.From(first), half.From(first) + count, is_same);
}

// Laser temperature and TEC current: internal calibration and a cooled laser only. No bit
// advertises them; a module without one has neither a value nor thresholds there.
template <std::size_t kValue, std::size_t kThresholds>
Advertised HasLaserMonitor(const ModuleImage& image) {
  const ModuleImage::Half& a2 = image.HalfOf(kA2, 0);
  const bool is_none = IsFilled(a2, kValue, 2) && IsFilled(a2, kThresholds, 2 * kAlarmLevels) &&
                       IsNotReady(image) != Advertised::kYes;
  const Advertised is_possible =
      Both(AskBit(image, kA0, 64, 2), Not(IsCalibratedExternally(image)));
  return Both(HasDiagnostics(image), Both(is_possible, AdvertisedIf(!is_none)));
}

constexpr Advertisement kOptical =
    By(IsOptical, "neither a cable (8.3-2) nor for copper (2, 6.3, 36)");
constexpr Advertisement kDiagnostics = By(HasDiagnostics, "A0h:92.6");
constexpr Advertisement kCalibration = By(HasCalibration, "A0h:92.6 and 92.4");
constexpr Advertisement kEnhanced = By(HasEnhancedFeatures, "A0h:92.6, not 92.4, 94 from 09h on");
constexpr Advertisement kTxDisableStatus = By(HasStatus<6>, "A0h:92.6 and 93.6");
constexpr Advertisement kTxFaultStatus = By(HasStatus<5>, "A0h:92.6 and 93.5");
constexpr Advertisement kRxLosStatus = By(HasStatus<4>, "A0h:92.6 and 93.4");
constexpr Advertisement kRateSelectStatus = By(HasStatus<3>, "A0h:92.6 and 93.3");
constexpr Advertisement kRateSelectPin = By(HasRateSelectPin, "A0h:92.6, 93.3 or 93.1");
constexpr Advertisement kEqualizers = By(HasEqualizers, "A0h:92.6, 94 from 07h on");
constexpr Advertisement kCdr = By(HasCdr, "A0h:92.6 and 64.3");
constexpr Advertisement kPam4 =
    By(HasPam4, "A0h:92.6; 10.1 and 62.0, or 36 is of 50 Gb/s Ethernet");
constexpr Advertisement k64gfc = By(Has64gfc, "A0h:92.6, 10.1 and 62.0");
constexpr Advertisement kVoltageMonitor = By(HasVoltage, "A0h:92.6; not 0, or A2h:110.0");
constexpr Advertisement kOpticalDiagnostics = By(
    HasOpticalDiagnostics, "A0h:92.6; neither a passive cable (8.2) nor for copper (2, 6.3, 36)");
constexpr std::string_view kLaserWords =
    "A0h:92.6, 64.2, not 92.4; a value or thresholds, or A2h:110.0";
constexpr Advertisement kLaserTemperature = By(HasLaserMonitor<106, 40>, kLaserWords);
constexpr Advertisement kTecCurrent = By(HasLaserMonitor<108, 48>, kLaserWords);

// ---------------------------------------------------------------------------------------------
// The map
// ---------------------------------------------------------------------------------------------

constexpr CodeName kRxPowerTypeNames[] = {{0, "OMA"}, {1, "average power"}};
constexpr CodeTable kRxPowerTypes("SFF-8472 rev 12.4, A0h byte 92", kRxPowerTypeNames);

constexpr CodeName kCalibrationNames[] = {{1, "external"}, {2, "internal"}, {3, "both"}};
constexpr CodeTable kCalibrations("SFF-8472 rev 12.4, A0h byte 92", kCalibrationNames);

constexpr CodeName kEmphasisNames[] = {
    {0, "constant peak-to-peak amplitude, or none"},
    {1, "constant steady-state amplitude"},
    {2, "constant average amplitude"},
};
constexpr CodeTable kEmphasisTypes("SFF-8472 rev 12.4, A2h byte 62", kEmphasisNames);

constexpr CodeName kSquelchNames[] = {{0, "reduces OMA"}, {1, "reduces average power"}};
constexpr CodeTable kSquelches("SFF-8472 rev 12.4, A2h byte 74", kSquelchNames);
constexpr CodeName kSquelchMethodNames[] = {
    {0, "none"}, {1, "reduces OMA"}, {2, "reduces average power"}, {3, "selected by the host"}};
constexpr CodeTable kSquelchMethods("SFF-8472 rev 12.4, A2h byte 56", kSquelchMethodNames);

// clang-format off
constexpr MapField kFields[] = {
    // field, page, byte, extent, format, what advertises it, first revision
    {Field::kIdentifier,                  kA0,   0, kByte,      kOwn,                                  kAlways,          ""},
    {Field::kExtendedIdentifier,          kA0,   1, kByte,      Code(kSff8472ExtendedIdentifiers),     kAlways,          ""},
    {Field::kConnector,                   kA0,   2, kByte,      Code(kConnectors),                     kAlways,          ""},
    {Field::kEncoding,                    kA0,  11, kByte,      Code(kSff8472Encodings),               kAlways,          ""},
    {Field::kNominalBitrate,              kA0,  12, kByte,      kOwn,                                  kAlways,          ""},
    {Field::kRateIdentifier,              kA0,  13, kByte,      Code(kSff8472RateIdentifiers),         kAlways,          ""},
    {Field::kLengthSmf,                   kA0,  14, Bytes(2),   kOwn,                                  kOptical,         ""},
    {Field::kAttenuation12p9,             kA0,  14, kByte,      kNumber.ZeroIsNone(),                  By(HasAttenuation, "a cable (8.3-2) that 36 does not call optical, 94 from 09h on"), "12.4"},
    {Field::kAttenuation25p8,             kA0,  15, kByte,      kNumber.ZeroIsNone(),                  By(HasAttenuation, "a cable (8.3-2) that 36 does not call optical, 94 from 09h on"), "12.4"},
    {Field::kLengthOm2,                   kA0,  16, kByte,      Number(Times(10)).ZeroIsNone().HighestIsMore(), kOptical, ""},
    {Field::kLengthOm1,                   kA0,  17, kByte,      Number(Times(10)).ZeroIsNone().HighestIsMore(), kOptical, ""},
    {Field::kLengthOm4,                   kA0,  18, kByte,      Number(Times(10)).ZeroIsNone().HighestIsMore(), kOptical, "11.3"},
    {Field::kLengthCable,                 kA0,  18, kByte,      kOwn,                                  kAlways,          ""},
    {Field::kLengthOm3,                   kA0,  19, kByte,      Number(Times(10)).ZeroIsNone().HighestIsMore(), kOptical, ""},
    {Field::kVendor,                      kA0,  20, Bytes(16),  kText,                                 kAlways,          ""},
    {Field::kExtendedCompliance,          kA0,  36, kByte,      Code(kComplianceCodes).ZeroIsNone(),    kAlways,         "11.9"},
    {Field::kOui,                         kA0,  37, Bytes(3),   kOui,                                  kAlways,          ""},
    {Field::kPartNumber,                  kA0,  40, Bytes(16),  kText,                                 kAlways,          ""},
    {Field::kVendorRevision,              kA0,  56, Bytes(4),   kText,                                 kAlways,          ""},
    {Field::kWavelength,                  kA0,  60, kWord,      kOwn,                                  kOptical,         ""},
    {Field::kPowerClass,                  kA0,  64, kByte,      kOwn,                                  kAlways,          ""},
    {Field::kCooledTransmitter,           kA0,  64, Bit(2),     kFlag,                                 kOptical,         ""},
    {Field::kTunableTransmitter,          kA0,  65, Bit(6),     kFlag,                                 kOptical,         ""},
    {Field::kExtendedBitrate,             kA0,  66, kByte,      Number(Times(kExtendedBitrateUnit)).ZeroIsNone(), By(HasExtendedBitrate, "A0h:12 is 255"), ""},
    {Field::kBitrateMax,                  kA0,  66, kByte,      kNumber.ZeroIsNone(),                  By(HasUpperRateMargin, "A0h:12 is not 255"), ""},
    {Field::kBitrateMax,                  kA0,  67, kByte,      kNumber.ZeroIsNone(),                  By(HasExtendedBitrate, "A0h:12 is 255"), ""},
    {Field::kBitrateMin,                  kA0,  67, kByte,      kNumber.ZeroIsNone(),                  kAlways,          ""},
    {Field::kSerialNumber,                kA0,  68, Bytes(16),  kText,                                 kAlways,          ""},
    {Field::kDateCode,                    kA0,  84, Bytes(6),   kText,                                 kAlways,          ""},
    {Field::kLot,                         kA0,  90, Bytes(2),   kText,                                 kAlways,          ""},
    {Field::kCalibration,                 kA0,  92, Bits(5, 4), kOwn,                                  kDiagnostics,     ""},
    {Field::kRxPowerType,                 kA0,  92, Bit(3),     Code(kRxPowerTypes),                   kDiagnostics,     ""},
    {Field::kAddressChange,               kA0,  92, Bit(2),     kFlag,                                 kAlways,          ""},
    {Field::kRevision,                    kA0,  94, kByte,      kOwn,                                  kAlways,          ""},

    {Field::kRxPowerCalibration4,         kA2,  56, Bytes(4),   kSingle,                               kCalibration,     ""},
    {Field::kRxPowerCalibration3,         kA2,  60, Bytes(4),   kSingle,                               kCalibration,     ""},
    {Field::kRxPowerCalibration2,         kA2,  64, Bytes(4),   kSingle,                               kCalibration,     ""},
    {Field::kRxPowerCalibration1,         kA2,  68, Bytes(4),   kSingle,                               kCalibration,     ""},
    {Field::kRxPowerCalibration0,         kA2,  72, Bytes(4),   kSingle,                               kCalibration,     ""},
    {Field::kTxBiasSlope,                 kA2,  76, kWord,      Number(Per(256)),                      kCalibration,     ""},
    {Field::kTxBiasOffset,                kA2,  78, kWord,      Signed(Times(1)),                      kCalibration,     ""},
    {Field::kTxPowerSlope,                kA2,  80, kWord,      Number(Per(256)),                      kCalibration,     ""},
    {Field::kTxPowerOffset,               kA2,  82, kWord,      Signed(Times(1)),                      kCalibration,     ""},
    {Field::kTemperatureSlope,            kA2,  84, kWord,      Number(Per(256)),                      kCalibration,     ""},
    {Field::kTemperatureOffset,           kA2,  86, kWord,      Signed(Times(1)),                      kCalibration,     ""},
    {Field::kVoltageSlope,                kA2,  88, kWord,      Number(Per(256)),                      kCalibration,     ""},
    {Field::kVoltageOffset,               kA2,  90, kWord,      Signed(Times(1)),                      kCalibration,     ""},

    {Field::kTxSquelchMethods,            kA2,  56, Bits(3, 2), Code(kSquelchMethods),                 kEnhanced,        "12.4"},
    {Field::kAdaptiveEqSettlingTime,      kA2,  61, kByte,      Number(Times(100)).ZeroIsNone(),       kEnhanced,        "12.4"},
    {Field::kRxEmphasisType,              kA2,  62, Bits(4, 3), Code(kEmphasisTypes),                  kEnhanced,        "12.4"},
    {Field::kRxAmplitudes,                kA2,  63, Bits(7, 4), kNumber.ZeroIsNone(),                  kEnhanced,        "12.4"},
    {Field::kMaxTxInputEq,                kA2,  63, Bits(3, 0), kNumber,                               kEnhanced,        "12.4"},
    {Field::kMaxRxPostCursor,             kA2,  64, Bits(7, 4), kNumber,                               kEnhanced,        "12.4"},
    {Field::kMaxRxPreCursor,              kA2,  64, Bits(3, 0), kNumber,                               kEnhanced,        "12.4"},
    {Field::kMaxPower,                    kA2,  66, kByte,      kOwn,                                  kAlways,          "12.4"},
    {Field::kSecondaryExtendedCompliance, kA2,  67, kByte,      Code(kComplianceCodes).ZeroIsNone(),    kEnhanced,       "12.4"},
    {Field::kTxEqRecall,                  kA2,  71, Bit(3),     kFlag,                                 By(HasFeature<60, 3>, "enhanced features and A2h:60.3"), "12.4"},
    {Field::kTxEqStore,                   kA2,  71, Bit(2),     kFlag,                                 By(HasFeature<60, 3>, "enhanced features and A2h:60.3"), "12.4"},
    {Field::kRxCursorsUsed,               kA2,  72, Bit(4),     kFlag,                                 By(HasRxCursors, "enhanced features and A2h:62.2 or 62.1"), "12.4"},
    {Field::kRsPinIgnore,                 kA2,  73, Bit(4),     kFlag,                                 By(HasFeature<56, 4>, "enhanced features and A2h:56.4"), "12.4"},
    {Field::kTxSquelch,                   kA2,  74, Bit(2),     Code(kSquelches),                      By(HasSquelchChoice, "enhanced features and A2h:56.3-2 is 3"), "12.4"},

    {Field::kTxDisablePin,                kA2, 110, Bit(7),     kFlag,                                 kTxDisableStatus, ""},
    {Field::kSoftTxDisable,               kA2, 110, Bit(6),     kFlag,                                 kTxDisableStatus, ""},
    {Field::kRs1Pin,                      kA2, 110, Bit(5),     kFlag,                                 kRateSelectPin,   ""},
    {Field::kRs0Pin,                      kA2, 110, Bit(4),     kFlag,                                 kRateSelectPin,   ""},
    {Field::kSoftRs0,                     kA2, 110, Bit(3),     kFlag,                                 kRateSelectStatus, ""},
    {Field::kDataNotReady,                kA2, 110, Bit(0),     kFlag,                                 kDiagnostics,     ""},
    {Field::kTxInputEqHigh,               kA2, 114, Bits(7, 4), kNumber.ZeroIsNone(),                  kEqualizers,      "11.9"},
    {Field::kTxInputEqLow,                kA2, 114, Bits(3, 0), kNumber.ZeroIsNone(),                  kEqualizers,      "11.9"},
    {Field::kRxEmphasisHigh,              kA2, 115, Bits(7, 4), kNumber.ZeroIsNone(),                  kEqualizers,      "11.9"},
    {Field::kRxEmphasisLow,               kA2, 115, Bits(3, 0), kNumber.ZeroIsNone(),                  kEqualizers,      "11.9"},
    {Field::kSoftRs1,                     kA2, 118, Bit(3),     kFlag,                                 kRateSelectPin,   "10.2"},
    {Field::kPowerLevel4Enable,           kA2, 118, Bit(2),     kFlag,                                 By(HasPowerLevel4, "A0h:92.6 and 64.6"), "12.4"},
    {Field::kPowerLevelState,             kA2, 118, Bit(1),     kFlag,                                 By(HasPowerLevels, "A0h:92.6; 64.1, 64.5 or 64.6"), "10.3"},
    {Field::kPowerLevelSelect,            kA2, 118, Bit(0),     kFlag,                                 By(HasPowerLevels2And3, "A0h:92.6; 64.1 or 64.5"), "10.3"},
    {Field::kPam4ModeTx,                  kA2, 119, Bit(4),     kFlag,                                 kPam4,            "12.3"},
    {Field::kPam4ModeRx,                  kA2, 119, Bit(3),     kFlag,                                 kPam4,            "12.3"},
    {Field::kMode64gfc,                   kA2, 119, Bit(2),     kFlag,                                 k64gfc,           "12.3"},
};

constexpr LaneMapField kLaneFields[] = {
    // field, page, byte, extent, order of the lanes, format, what advertises it, first revision
    {LaneField::kRxLos,              kA2, 110, Bit(1),     LaneOrder::kModule, kFlag,   kRxLosStatus,     ""},
    {LaneField::kTxFault,            kA2, 110, Bit(2),     LaneOrder::kModule, kFlag,   kTxFaultStatus,   ""},
    {LaneField::kTxLol,              kA2, 119, Bit(1),     LaneOrder::kModule, kFlag,   kCdr,             "11.4"},
    {LaneField::kRxLol,              kA2, 119, Bit(0),     LaneOrder::kModule, kFlag,   kCdr,             "11.4"},
    {LaneField::kTxAdaptiveEqFault,  kA2, 118, Bit(4),     LaneOrder::kModule, kFlag,   By(HasFeature<58, 0>, "enhanced features and A2h:58.0"), "12.4"},
    {LaneField::kTxDisable,          kA2, 110, Bits(7, 6), LaneOrder::kModule, kFlag,   kTxDisableStatus, ""},
    {LaneField::kTxAdaptiveEqFreeze, kA2,  71, Bit(1),     LaneOrder::kModule, kFlag,   By(HasFeature<60, 2>, "enhanced features and A2h:60.2"), "12.4"},
    {LaneField::kTxAdaptiveEq,       kA2,  71, Bit(0),     LaneOrder::kModule, kFlag,   By(HasFeature<60, 1>, "enhanced features and A2h:60.1"), "12.4"},
    {LaneField::kRxPreCursor,        kA2,  72, Bits(7, 5), LaneOrder::kModule, kNumber, By(HasFeature<62, 1>, "enhanced features and A2h:62.1"), "12.4"},
    {LaneField::kRxPostCursor,       kA2,  72, Bits(3, 0), LaneOrder::kModule, kNumber, By(HasFeature<62, 2>, "enhanced features and A2h:62.2"), "12.4"},
    {LaneField::kRxAmplitude,        kA2,  73, Bits(3, 0), LaneOrder::kModule, kNumber, By(HasFeature<62, 0>, "enhanced features and A2h:62.0"), "12.4"},
    {LaneField::kRxSquelchDisable,   kA2,  74, Bit(4),     LaneOrder::kModule, kFlag,   By(HasFeature<57, 0>, "enhanced features and A2h:57.0"), "12.4"},
    {LaneField::kRxForceSquelch,     kA2,  74, Bit(5),     LaneOrder::kModule, kFlag,   By(HasFeature<57, 1>, "enhanced features and A2h:57.1"), "12.4"},
    {LaneField::kTxForceSquelch,     kA2,  74, Bit(1),     LaneOrder::kModule, kFlag,   By(HasFeature<56, 1>, "enhanced features and A2h:56.1"), "12.4"},
    {LaneField::kTxSquelchDisable,   kA2,  74, Bit(0),     LaneOrder::kModule, kFlag,   By(HasFeature<56, 0>, "enhanced features and A2h:56.0"), "12.4"},
};

constexpr MapMonitor kMonitors[] = {
    // quantity, name, page, byte, format, thresholds, {flags: page, byte, bit, steps to low, warning, lane}, what advertises it, first revision
    {Quantity::kTemperature, "",                    kA2,  96, kCelsius,         kA2,  0, {kA2, 112, 7, 1, 32, 0}, kDiagnostics, ""},
    {Quantity::kVoltage,     "",                    kA2,  98, kVolts,           kA2,  8, {kA2, 112, 5, 1, 32, 0}, kVoltageMonitor, ""},
    {Quantity::kTxBias,      "",                    kA2, 100, kMilliamperes,    kA2, 16, {kA2, 112, 3, 1, 32, 0}, kOpticalDiagnostics, ""},
    {Quantity::kTxPower,     "",                    kA2, 102, kMilliwatts,      kA2, 24, {kA2, 112, 1, 1, 32, 0}, kOpticalDiagnostics, ""},
    {Quantity::kRxPower,     "",                    kA2, 104, kMilliwatts,      kA2, 32, {kA2, 113, 7, 1, 32, 0}, kOpticalDiagnostics, ""},
    {Quantity::kAux,         "laser_temperature_c", kA2, 106, kCelsius,         kA2, 40, {kA2, 113, 5, 1, 32, 0}, kLaserTemperature, "11.4"},
    {Quantity::kAux,         "tec_current_ma",      kA2, 108, Signed(Per(10)),  kA2, 48, {kA2, 113, 3, 1, 32, 0}, kTecCurrent, "11.4"},
};

// Bytes 3 to 10; bits 4.4 and 4.3 are the reach of SONET together.
constexpr NamedBit kCompliance[] = {
    {kA0, 3, 7, "10GBASE-ER"}, {kA0, 3, 6, "10GBASE-LRM"}, {kA0, 3, 5, "10GBASE-LR"}, {kA0, 3, 4, "10GBASE-SR"},
    {kA0, 3, 3, "InfiniBand 1X SX"}, {kA0, 3, 2, "InfiniBand 1X LX"}, {kA0, 3, 1, "InfiniBand 1X Copper Active"}, {kA0, 3, 0, "InfiniBand 1X Copper Passive"},
    {kA0, 4, 7, "ESCON MMF, 1310 nm LED"}, {kA0, 4, 6, "ESCON SMF, 1310 nm laser"}, {kA0, 4, 5, "OC-192, short reach"},
    {kA0, 4, 2, "OC-48, long reach"}, {kA0, 4, 1, "OC-48, intermediate reach"}, {kA0, 4, 0, "OC-48, short reach"},
    {kA0, 5, 6, "OC-12, single mode, long reach"}, {kA0, 5, 5, "OC-12, single mode, intermediate reach"}, {kA0, 5, 4, "OC-12, short reach"},
    {kA0, 5, 2, "OC-3, single mode, long reach"}, {kA0, 5, 1, "OC-3, single mode, intermediate reach"}, {kA0, 5, 0, "OC-3, short reach"},
    {kA0, 6, 7, "BASE-PX"}, {kA0, 6, 6, "BASE-BX10"}, {kA0, 6, 5, "100BASE-FX"}, {kA0, 6, 4, "100BASE-LX/LX10"},
    {kA0, 6, 3, "1000BASE-T"}, {kA0, 6, 2, "1000BASE-CX"}, {kA0, 6, 1, "1000BASE-LX"}, {kA0, 6, 0, "1000BASE-SX"},
    {kA0, 7, 7, "FC very long distance (V)"}, {kA0, 7, 6, "FC short distance (S)"}, {kA0, 7, 5, "FC intermediate distance (I)"},
    {kA0, 7, 4, "FC long distance (L)"}, {kA0, 7, 3, "FC medium distance (M)"}, {kA0, 7, 2, "FC shortwave laser, linear RX (SA)"},
    {kA0, 7, 1, "FC longwave laser (LC)"}, {kA0, 7, 0, "FC electrical inter-enclosure (EL)"},
    {kA0, 8, 7, "FC electrical intra-enclosure (EL)"}, {kA0, 8, 6, "FC shortwave laser without OFC (SN)"},
    {kA0, 8, 5, "FC shortwave laser with OFC (SL)"}, {kA0, 8, 4, "FC longwave laser (LL)"},
    {kA0, 8, 3, "Active cable"}, {kA0, 8, 2, "Passive cable"},
    {kA0, 9, 7, "FC twin axial pair (TW)"}, {kA0, 9, 6, "FC twisted pair (TP)"}, {kA0, 9, 5, "FC miniature coax (MI)"}, {kA0, 9, 4, "FC video coax (TV)"},
    {kA0, 9, 3, "FC multi-mode 62.5 um (M6)"}, {kA0, 9, 2, "FC multi-mode 50 um (M5, M5E)"}, {kA0, 9, 0, "FC single mode (SM)"},
    {kA0, 10, 7, "FC 1200 MB/s"}, {kA0, 10, 6, "FC 800 MB/s"}, {kA0, 10, 5, "FC 1600 MB/s"}, {kA0, 10, 4, "FC 400 MB/s"},
    {kA0, 10, 3, "FC 3200 MB/s"}, {kA0, 10, 2, "FC 200 MB/s"}, {kA0, 10, 0, "FC 100 MB/s"},
};

// Byte 60 of passive and of active cables.
constexpr NamedBit kPassiveCableCompliance[] = {
    {kA0, 60, 1, "FC-PI-4 appendix H"}, {kA0, 60, 0, "SFF-8431 appendix E"},
};
constexpr NamedBit kActiveCableCompliance[] = {
    {kA0, 60, 3, "FC-PI-4 limiting"}, {kA0, 60, 2, "SFF-8431 limiting"},
    {kA0, 60, 1, "FC-PI-4 appendix H"}, {kA0, 60, 0, "SFF-8431 appendix E"},
};

constexpr NamedBit kOptions[] = {
    {kA0, 64, 6, "Power level 4"}, {kA0, 64, 5, "Power level 3"}, {kA0, 64, 4, "Paging"}, {kA0, 64, 3, "Retimer or CDR"},
    {kA0, 64, 2, "Cooled laser"}, {kA0, 64, 1, "Power level 2"}, {kA0, 64, 0, "Linear receiver output"},
    {kA0, 65, 7, "RX decision threshold"}, {kA0, 65, 6, "Tunable transmitter"}, {kA0, 65, 5, "Rate select pin"}, {kA0, 65, 4, "TX disable pin"},
    {kA0, 65, 3, "TX fault pin"}, {kA0, 65, 2, "RX LOS pin, inverted"}, {kA0, 65, 1, "RX LOS pin"}, {kA0, 65, 0, "More pages"},
    {kA0, 92, 7, "Legacy diagnostics"}, {kA0, 92, 6, "Digital diagnostics"}, {kA0, 92, 5, "Internal calibration"}, {kA0, 92, 4, "External calibration"},
    {kA0, 92, 1, "Remote performance monitoring"},
    {kA0, 93, 7, "Alarm and warning flags"}, {kA0, 93, 6, "Soft TX disable"}, {kA0, 93, 5, "Soft TX fault"}, {kA0, 93, 4, "Soft RX LOS"},
    {kA0, 93, 3, "Soft rate select"}, {kA0, 93, 2, "Application select (SFF-8079)"}, {kA0, 93, 1, "Soft rate select (SFF-8431)"},
};

// A2h with internal calibration, rev 12.4 on.
constexpr NamedBit kEnhancedOptions[] = {
    {kA2, 56, 4, "RS pin ignore"}, {kA2, 56, 1, "TX forced squelch"}, {kA2, 56, 0, "TX squelch disable"},
    {kA2, 57, 1, "RX forced squelch"}, {kA2, 57, 0, "RX squelch disable"}, {kA2, 58, 0, "TX adaptive equalization fault flag"},
    {kA2, 60, 3, "TX equalization store and recall"}, {kA2, 60, 2, "TX adaptive equalization freeze"},
    {kA2, 60, 1, "TX adaptive equalization"}, {kA2, 60, 0, "TX input equalization programmable"},
    {kA2, 62, 2, "RX output post-cursor"}, {kA2, 62, 1, "RX output pre-cursor"}, {kA2, 62, 0, "RX output amplitude programmable"},
};

constexpr Checksum kChecksums[] = {
    {kA0, 0, 62, 63},
    {kA0, 64, 94, 95},
    {kA2, 0, 94, 95},
};
// clang-format on

constexpr MemoryMap kMap = {kFields, kLaneFields, kMonitors, kCompliance, kOptions, kChecksums};

// ---------------------------------------------------------------------------------------------
// Fields that several bytes make up
// ---------------------------------------------------------------------------------------------

// Byte 94.
void DecodeRevision(Decoding& to) {
  constexpr std::string_view kNames[] = {
      "", "9.3", "9.5", "10.2", "10.4", "11.0", "11.3", "11.4", "12.3", "12.4", "12.5",
  };
  const std::optional<std::uint8_t> code = to.image.At(kA0, 94);
  if (!code) return to.info.SetState(Field::kRevision, FieldState::kNotRead);
  if (*code >= std::size(kNames)) {
    return to.Warn("byte 94 of A0h is " + HexText(*code) + ", which is not the code of a revision");
  }
  if (*code != 0) to.info.SetText(Field::kRevision, kNames[*code]);
}

void DecodePower(Decoding& to) {
  constexpr double kWattsOfLevel[] = {1.0, 1.5, 2.0};
  constexpr double kTenths = 10.0;
  const std::optional<std::uint8_t> options = to.image.At(kA0, 64);
  if (!options) {
    to.info.SetState(Field::kPowerClass, FieldState::kNotRead);
    return to.info.SetState(Field::kMaxPower, FieldState::kNotRead);
  }
  const unsigned level = Sff8472PowerLevel(*options);
  to.info.SetNumber(Field::kPowerClass, level);
  if (level <= std::size(kWattsOfLevel)) {
    return to.info.SetNumber(Field::kMaxPower, kWattsOfLevel[level - 1]);
  }
  const Advertised has_maximum = HasEnhancedFeatures(to.image);
  if (has_maximum == Advertised::kNo) return;
  const std::optional<std::uint8_t> maximum = to.image.At(kA2, 66);
  if (!maximum) return to.info.SetState(Field::kMaxPower, FieldState::kNotRead);
  if (*maximum != 0) to.info.SetNumber(Field::kMaxPower, *maximum / kTenths);
}

// Kilometres in byte 14; below one, hundreds of metres in byte 15.
void DecodeSmfLength(Decoding& to) {
  constexpr unsigned kMore = 255;
  if (IsOptical(to.image) == Advertised::kNo) return;
  const std::optional<std::uint8_t> kilometres = to.image.At(kA0, 14);
  const std::optional<std::uint8_t> hundreds = to.image.At(kA0, 15);
  if (!kilometres || !hundreds) {
    return to.info.SetState(Field::kLengthSmf, FieldState::kNotRead);
  }
  if (*kilometres == kMore) return WarnMoreThan(to, Field::kLengthSmf, 254000);
  if (*kilometres != 0) return to.info.SetNumber(Field::kLengthSmf, *kilometres * 1000.0);
  if (*hundreds == kMore) return WarnMoreThan(to, Field::kLengthSmf, 25400);
  if (*hundreds != 0) to.info.SetNumber(Field::kLengthSmf, *hundreds * 100.0);
}

// Metres in byte 18; of cables, rev 12.4 on, also in byte 19.
void DecodeCableLength(Decoding& to) {
  constexpr unsigned kMore = 255;
  if (IsOptical(to.image) == Advertised::kYes) return;
  const std::optional<std::uint8_t> metres = to.image.At(kA0, 18);
  if (!metres) return to.info.SetState(Field::kLengthCable, FieldState::kNotRead);
  const double newer = CableLengthOf(to.image.At(kA0, 19).value_or(0));
  const bool has_newer =
      IsCable(to.image) == Advertised::kYes && newer != 0 && Since124(to.image) == Advertised::kYes;
  if (has_newer) return to.info.SetNumber(Field::kLengthCable, newer);
  if (*metres == kMore) return WarnMoreThan(to, Field::kLengthCable, 254);
  if (*metres != 0) to.info.SetNumber(Field::kLengthCable, *metres);
}

// Nanometres; DWDM modules keep hundredths in byte 62 unless byte 10 refers to it.
void DecodeWavelength(Decoding& to) {
  constexpr unsigned kHundredths = 100;
  const ModuleImage::Half& half = to.image.HalfOf(kA0, 60);
  const Advertised is_optical = IsOptical(to.image);
  const bool is_known = half.Has(60, 2);
  const unsigned whole = is_known ? RawNumber(half, 60, kWord) : 0;
  const FieldState state = StateOf(is_optical, is_known, whole != 0);
  to.info.SetState(Field::kWavelength, state);
  if (state != FieldState::kPresent) return;
  if (whole == 0) return to.info.SetState(Field::kWavelength, FieldState::kNotImplemented);
  const unsigned fraction = half[62];
  const bool has_fraction =
      fraction != 0 && fraction < kHundredths && AskBit(to.image, kA0, 10, 1) == Advertised::kNo;
  const unsigned hundredths = whole * kHundredths + (has_fraction ? fraction : 0);
  to.info.SetNumber(Field::kWavelength, hundredths / 100.0);
}

void AddCompliance(Decoding& to) {
  constexpr std::string_view kReaches[] = {"", "SONET IR-2/LR-2", "SONET SR-1/IR-1/LR-1",
                                           "SONET LR-3"};
  std::vector<std::string_view>& names = to.info.compliance;
  AddNames(to.image, kCompliance, names);
  const unsigned reach = to.image.At(kA0, 4).value_or(0) >> 3U & 3U;
  if (reach != 0) names.push_back(kReaches[reach]);
  if (AskBit(to.image, kA0, 8, 2) == Advertised::kYes) {
    AddNames(to.image, kPassiveCableCompliance, names);
  } else if (AskBit(to.image, kA0, 8, 3) == Advertised::kYes) {
    AddNames(to.image, kActiveCableCompliance, names);
  }
  if (AskBit(to.image, kA0, 10, 1) == Advertised::kYes &&
      AskBit(to.image, kA0, 62, 0) == Advertised::kYes) {
    names.emplace_back("FC 6400 MB/s (64GFC)");
  }
  for (const Field field : {Field::kExtendedCompliance, Field::kSecondaryExtendedCompliance}) {
    const std::string_view name = to.info[field].text;
    if (!name.empty()) names.push_back(name);
  }
}

void AddOptions(Decoding& to) {
  AddNames(to.image, kOptions, to.info.options);
  if (HasEnhancedFeatures(to.image) == Advertised::kYes) {
    AddNames(to.image, kEnhancedOptions, to.info.options);
  }
}

// ---------------------------------------------------------------------------------------------
// Calibration
// ---------------------------------------------------------------------------------------------

void DecodeCalibrationKind(Decoding& to) {
  const Advertised has_diagnostics = HasDiagnostics(to.image);
  if (has_diagnostics == Advertised::kUnknown) {
    return to.info.SetState(Field::kCalibration, FieldState::kNotRead);
  }
  if (has_diagnostics == Advertised::kNo) return;
  constexpr unsigned kBoth = 3;
  const unsigned kind = to.image.At(kA0, 92).value_or(0) >> 4U & 3U;
  if (kind == 0) {
    return to.Warn("neither internal nor external calibration is set; decoded as internal");
  }
  if (kind == kBoth) {
    to.Warn("both internal and external calibration are set; the constants of A2h are applied");
  }
  to.info.SetCode(Field::kCalibration, kind, kCalibrations.Name(kind));
}

double RxPowerOf(const void* constants, double raw) {
  return static_cast<const Sff8472Calibration*>(constants)->RxPower(raw);
}

double LineOf(const void* constants, double raw) {
  return static_cast<const Sff8472Calibration::Line*>(constants)->At(raw);
}

double LineFromZeroOf(const void* constants, double raw) {
  return std::max(LineOf(constants, raw), 0.0);
}

Conversion ConversionOf(const MapMonitor& line, const Sff8472Calibration& constants) {
  switch (line.quantity) {
    case Quantity::kTemperature:
      return {line.format, LineOf, &constants.temperature};
    case Quantity::kVoltage:
      return {line.format, LineFromZeroOf, &constants.voltage};
    case Quantity::kTxBias:
      return {line.format, LineFromZeroOf, &constants.tx_bias};
    case Quantity::kTxPower:
      return {line.format, LineFromZeroOf, &constants.tx_power};
    case Quantity::kRxPower:
      return {line.format, RxPowerOf, &constants};
    case Quantity::kAux:
      break;
  }
  return {line.format};
}

// The quantity with its article if its constants are invalid, else empty.
std::string_view Uncalibrated(const MapMonitor& line, const Sff8472Calibration& constants) {
  switch (line.quantity) {
    case Quantity::kTemperature:
      return constants.temperature.IsValid() ? "" : "the temperature";
    case Quantity::kVoltage:
      return constants.voltage.IsValid() ? "" : "the supply voltage";
    case Quantity::kTxBias:
      return constants.tx_bias.IsValid() ? "" : "the TX bias";
    case Quantity::kTxPower:
      return constants.tx_power.IsValid() ? "" : "the TX power";
    case Quantity::kRxPower:
      return constants.IsRxPowerValid() ? "" : "the RX power";
    case Quantity::kAux:
      break;
  }
  return "";
}

// ---------------------------------------------------------------------------------------------
// Monitors
// ---------------------------------------------------------------------------------------------

// Without the flags, which byte 93 advertises.
void DropFlags(Monitor& monitor) { monitor.flags = {}; }

void DropFlags(ModuleInfo& info) {
  DropFlags(info.temperature);
  DropFlags(info.voltage);
  for (AuxMonitor& aux : info.aux) DropFlags(aux.monitor);
  for (Lane& lane : info.lanes) {
    DropFlags(lane.rx_power);
    DropFlags(lane.tx_power);
    DropFlags(lane.tx_bias);
  }
}

void DecodeMonitors(Decoding& to) {
  const bool is_external = HasCalibration(to.image) == Advertised::kYes && to.image.Has(kA2);
  const Sff8472Calibration constants =
      is_external ? Sff8472CalibrationOf(to.image) : Sff8472Calibration();
  const bool is_ready = IsNotReady(to.image) != Advertised::kYes;
  for (const MapMonitor& line : kMonitors) {
    const std::string_view uncalibrated = Uncalibrated(line, constants);
    const Conversion conversion = is_external && uncalibrated.empty()
                                      ? ConversionOf(line, constants)
                                      : Conversion{line.format};
    const Advertised advertised = Ask(to.image, line.advertised);
    DecodeMonitor(to, line, conversion, advertised, {0, is_ready});
    const bool is_shown = advertised != Advertised::kNo;
    if (is_shown && !uncalibrated.empty()) to.Warn(UncalibratedText(uncalibrated));
  }
  if (!is_ready) {
    to.Warn(kNotReadyText);
    return DropFlags(to.info);
  }
  if (AskBit(to.image, kA0, 93, 7) != Advertised::kNo) return;
  if (AskBits(to.image, kA2, 112, 0xFF) == Advertised::kYes ||
      AskBits(to.image, kA2, 113, 0xFC) == Advertised::kYes ||
      AskBits(to.image, kA2, 116, 0xFF) == Advertised::kYes ||
      AskBits(to.image, kA2, 117, 0xFC) == Advertised::kYes) {
    to.Warn("alarm or warning flags are raised, but not advertised");
  }
  DropFlags(to.info);
}

// The values and flags of A2h are ignored.
void SkipMonitors(Decoding& to) {
  for (const MapMonitor& line : kMonitors) {
    if (line.quantity == Quantity::kAux) to.info.aux.push_back({line.name, {}});
  }
  if (AskBit(to.image, kA0, 92, 7) == Advertised::kYes) {
    to.Warn("the module has legacy diagnostics (A0h byte 92 bit 7), which are not decoded");
  }
  if (to.image.Has(kA2)) {
    to.Warn(kA2NotUsedText);
  }
}

// Codes without a meaning in dB.
void DropReservedEqualizers(Decoding& to) {
  for (const Field field : {Field::kMaxTxInputEq, Field::kTxInputEqHigh, Field::kTxInputEqLow}) {
    DropReserved(to, field, kHighestInputEq);
  }
  for (const Field field : {Field::kRxEmphasisHigh, Field::kRxEmphasisLow}) {
    DropReserved(to, field, kHighestEmphasis);
  }
}

void DecodeLane(Decoding& to) {
  to.info.lanes.emplace_back();
  DecodeLanes(to, kLaneFields, 0);
}

}  // namespace

const MemoryMap& Sff8472Map() { return kMap; }

Sff8472Medium Sff8472MediumOf(const ModuleImage& image) {
  if (AskBit(image, kA0, 8, 2) == Advertised::kYes) return Sff8472Medium::kPassiveCable;
  if (AskBit(image, kA0, 8, 3) == Advertised::kYes) return Sff8472Medium::kActiveCable;
  const bool is_copper = IsCopperModule(image) == Advertised::kYes;
  return is_copper ? Sff8472Medium::kCopper : Sff8472Medium::kOptical;
}

unsigned Sff8472PowerLevel(unsigned options) {
  if ((options >> 6U & 1U) != 0) return 4;
  if ((options >> 5U & 1U) != 0) return 3;
  return (options >> 1U & 1U) != 0 ? 2 : 1;
}

std::string UncalibratedText(std::string_view quantity) {
  return "the calibration constants of " + std::string(quantity) +
         " are invalid; it is shown uncalibrated";
}

bool Sff8472Calibration::IsRxPowerValid() const {
  const auto is_finite = [](double coefficient) { return std::isfinite(coefficient); };
  const auto is_zero = [](double coefficient) { return coefficient == 0.0; };
  const double* const constant = std::end(rx_power) - 1;
  return std::all_of(std::begin(rx_power), std::end(rx_power), is_finite) &&
         !std::all_of(std::begin(rx_power), constant, is_zero);
}

double Sff8472Calibration::RxPower(double raw) const {
  double power = 0.0;
  for (const double coefficient : rx_power) power = power * raw + coefficient;
  return std::max(power, 0.0);
}

Sff8472Calibration Sff8472CalibrationOf(const ModuleImage& image) {
  Sff8472Calibration constants;
  const auto set = [&image](Field field, double& constant) {
    constant = ValueOf(image, kMap, field).value_or(constant);
  };
  set(Field::kRxPowerCalibration4, constants.rx_power[0]);
  set(Field::kRxPowerCalibration3, constants.rx_power[1]);
  set(Field::kRxPowerCalibration2, constants.rx_power[2]);
  set(Field::kRxPowerCalibration1, constants.rx_power[3]);
  set(Field::kRxPowerCalibration0, constants.rx_power[4]);
  set(Field::kTxBiasSlope, constants.tx_bias.slope);
  set(Field::kTxBiasOffset, constants.tx_bias.offset);
  set(Field::kTxPowerSlope, constants.tx_power.slope);
  set(Field::kTxPowerOffset, constants.tx_power.offset);
  set(Field::kTemperatureSlope, constants.temperature.slope);
  set(Field::kTemperatureOffset, constants.temperature.offset);
  set(Field::kVoltageSlope, constants.voltage.slope);
  set(Field::kVoltageOffset, constants.voltage.offset);
  return constants;
}

void DecodeSff8472(Decoding& to) {
  DecodeFields(to, kFields);
  DecodeRevision(to);
  DecodePower(to);
  DecodeNominalBitrate(to, to.image.At(kA0, 12), to.image.At(kA0, 66));
  DecodeSmfLength(to);
  DecodeCableLength(to);
  DecodeWavelength(to);
  DecodeCalibrationKind(to);
  AddCompliance(to);
  AddOptions(to);
  DecodeLane(to);
  DropReservedEqualizers(to);
  if (HasDiagnostics(to.image) == Advertised::kNo) {
    SkipMonitors(to);
  } else {
    DecodeMonitors(to);
    WarnOfFlags(to, kLaneFields);
    if (NeedsAddressChange(to.image) == Advertised::kYes) {
      to.Warn("the diagnostics need a change of the address (A0h byte 92 bit 2)");
    }
  }
  AddChecksums(to, kChecksums);
}

}  // namespace cable_info::module_memory
