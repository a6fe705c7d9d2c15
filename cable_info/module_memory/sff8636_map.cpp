// The memory map of SFF-8636 rev 2.11. It also fits SFF-8436 rev 4.9, which reserves the fields
// that it does not have.

#include <iterator>

#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/samples.h"
#include "cable_info/module_memory/sff_codes.h"
#include "cable_info/phy_registers.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

namespace {

constexpr Page kLower = Page::kLower;
constexpr Page kPage00 = Page::k00;
constexpr Page kPage02 = Page::k02;
constexpr Page kPage03 = Page::k03;
constexpr Page kPage20 = Page::k20;

constexpr unsigned kLanes = 4;
constexpr unsigned kOldQsfp = 0x0C;
constexpr unsigned kMicroQsfp = 0x17;

// ---------------------------------------------------------------------------------------------
// What advertises fields
// ---------------------------------------------------------------------------------------------

constexpr unsigned kFirstSff8636 = 0x03;  // revision codes in byte 1
constexpr unsigned kRevision20 = 0x06;
constexpr unsigned kRevision25 = 0x07;
constexpr unsigned kRevision28 = 0x08;

unsigned RevisionCode(const ModuleImage& image) { return image.At(kLower, 1).value_or(0); }

// The technology, bits 7..4 of byte 147; none when it was not read.
std::optional<unsigned> Technology(const ModuleImage& image) {
  const std::optional<std::uint8_t> byte = image.At(kPage00, 147);
  return byte ? std::optional<unsigned>(*byte >> 4U) : std::nullopt;
}

Advertised IsCopper(const ModuleImage& image) {
  const std::optional<unsigned> technology = Technology(image);
  if (!technology) return Advertised::kUnknown;
  return AdvertisedIf(decode::IsCopperTechnology(*technology));
}

Advertised IsOptical(const ModuleImage& image) { return Not(IsCopper(image)); }

// The technologies whose byte 145 is the attenuation at 25.78 GHz.
Advertised HasAttenuation25p8(const ModuleImage& image) {
  const std::optional<unsigned> technology = Technology(image);
  if (!technology) return Advertised::kUnknown;
  return AdvertisedIf(*technology == 10 || *technology == 11 || *technology == 13 ||
                      *technology == 15);
}

// The version of extended rate selection, bits 1..0 of byte 141: 0 is none, 3 is reserved.
Advertised HasRateSelectVersion(const ModuleImage& image) {
  const std::optional<std::uint8_t> byte = image.At(kPage00, 141);
  if (!byte) return Advertised::kUnknown;
  const unsigned version = *byte & 3U;
  return AdvertisedIf(version == 1 || version == 2);
}

Advertised HasRateSelect(const ModuleImage& image) {
  return Both(Both(AskBit(image, kPage00, 195, 5), AskBit(image, kPage00, 221, 3)),
              HasRateSelectVersion(image));
}

Advertised HasHighPowerClass(const ModuleImage& image) {
  return AskBits(image, kPage00, 129, 0x03);
}

Advertised HasExtendedBitrate(const ModuleImage& image) {
  const std::optional<std::uint8_t> rate = image.At(kPage00, 140);
  return rate ? AdvertisedIf(*rate == kSeeExtendedBitrate) : Advertised::kUnknown;
}

Advertised Since(const ModuleImage& image, unsigned revision) {
  const std::optional<std::uint8_t> code = image.At(kLower, 1);
  return code ? AdvertisedIf(*code >= revision) : Advertised::kUnknown;
}
Advertised Since25(const ModuleImage& image) { return Since(image, kRevision25); }
Advertised Since28(const ModuleImage& image) { return Since(image, kRevision28); }

// SFF-8436 reserves bytes 107 to 118. Its modules have revision code 01h or 02h, or none.
Advertised HasProperties(const ModuleImage& image) {
  return RevisionCode(image) == 0 ? Advertised::kYes : Since(image, kFirstSff8636);
}
Advertised HasLowPowerModes(const ModuleImage& image) {
  return RevisionCode(image) == 0 ? AskBits(image, kLower, 110, 0xFF) : Since(image, kFirstSff8636);
}

Advertised HasMaximumDurations(const ModuleImage& image) {
  const bool is_micro = image.At(kLower, 0) == kMicroQsfp || image.At(kPage00, 128) == kMicroQsfp;
  return Both(AdvertisedIf(is_micro), Since28(image));
}

// Byte 227 of page 03h, which older revisions reserve and SFF-8436 leaves to vendors.
template <unsigned kBit>
Advertised HasControl(const ModuleImage& image) {
  return Both(Since28(image), AskBit(image, kPage03, 227, kBit));
}

// No bit advertised the flag before rev 2.5.
Advertised HasInitializationFlag(const ModuleImage& image) {
  const Advertised is_older = Not(Since25(image));
  return Either(AskBit(image, kPage00, 221, 4), Both(is_older, AskBit(image, kLower, 6, 0)));
}

// The mask of that flag, which SFF-8436 has and SFF-8636 reserves.
Advertised HasInitializationMask(const ModuleImage& image) {
  return RevisionCode(image) == 0 ? AskBit(image, kLower, 103, 0)
                                  : Not(Since(image, kFirstSff8636));
}

Advertised IsNotReady(const ModuleImage& image) { return AskBit(image, kLower, 2, 0); }

// A monitor that a bit of byte 220 advertises since a revision. Before, its readings decide, and
// both in modules whose revision code is reserved: some store a wrong one.
Advertised HasMonitor(const ModuleImage& image, unsigned since, unsigned bit, Advertised readings) {
  const unsigned code = RevisionCode(image);
  if (code < since) return readings;
  const Advertised is_advertised = AskBit(image, kPage00, 220, bit);
  return code <= kRevision28 ? is_advertised : Either(is_advertised, readings);
}

// A module without the monitor reads 0000h or FFFFh, and so may an optical one that has no valid
// data yet.
Advertised HasModuleMonitor(const ModuleImage& image, std::size_t byte, unsigned bit) {
  const ModuleImage::Half& half = image.HalfOf(kLower, byte);
  Advertised readings = Advertised::kUnknown;
  if (half.Has(byte, 2)) {
    const std::uint32_t raw = RawNumber(half, byte, kWord);
    const Advertised is_plausible = AdvertisedIf(raw != 0 && raw != 0xFFFF);
    readings = Either(is_plausible, Both(IsOptical(image), IsNotReady(image)));
  }
  // Copper cables without sensors may set the bit.
  if (readings == Advertised::kNo && IsCopper(image) == Advertised::kYes) return readings;
  return HasMonitor(image, kRevision28, bit, readings);
}
Advertised HasTemperature(const ModuleImage& image) { return HasModuleMonitor(image, 22, 5); }
Advertised HasVoltage(const ModuleImage& image) { return HasModuleMonitor(image, 26, 4); }

// Yes if any of the bytes is not 0.
Advertised IsAnySet(const ModuleImage& image, std::size_t first, std::size_t count) {
  const ModuleImage::Half& half = image.HalfOf(kLower, first);
  for (std::size_t byte = first; byte < first + count; ++byte) {
    if (half[byte] != 0) return Advertised::kYes;
  }
  return half.Has(first, count) ? Advertised::kNo : Advertised::kUnknown;
}

constexpr std::size_t kLaneBytes = std::size_t{2} * kLanes;  // a word per lane

// A lane without light reads 0, but raises flags.
Advertised HasRxPower(const ModuleImage& image) {
  const Advertised is_used = Either(IsAnySet(image, 34, kLaneBytes), IsAnySet(image, 9, 2));
  const Advertised is_monitored = Either(AskBit(image, kPage00, 220, 3), is_used);
  return Both(IsOptical(image), Either(is_monitored, IsNotReady(image)));
}

Advertised HasTxPower(const ModuleImage& image) {
  const Advertised readings = Either(IsAnySet(image, 50, kLaneBytes), IsNotReady(image));
  return Both(IsOptical(image), HasMonitor(image, kRevision20, 2, readings));
}

// No bit advertises the bias. A module with flat memory that monitors nothing else has none.
Advertised HasTxBias(const ModuleImage& image) {
  const bool is_flat = AskBit(image, kLower, 2, 2) == Advertised::kYes;
  const bool monitors_nothing = AskBits(image, kPage00, 220, 0x3C) == Advertised::kNo &&
                                HasTemperature(image) == Advertised::kNo &&
                                HasVoltage(image) == Advertised::kNo;
  const bool is_none =
      is_flat && monitors_nothing && IsAnySet(image, 42, kLaneBytes) == Advertised::kNo;
  return Both(IsOptical(image), AdvertisedIf(!is_none));
}

constexpr Advertisement kCopper = By(IsCopper, "copper: 00h:147.7-4 is 10 to 15");
constexpr Advertisement kOptical = By(IsOptical, "optical: 00h:147.7-4 is below 10");
constexpr Advertisement kSince25 = By(Since25, "revision code 07h on");
constexpr Advertisement kSince28 = By(Since28, "revision code 08h on");
constexpr Advertisement kLowPowerModes =
    By(HasLowPowerModes, "revision code 03h on, or 00h and any bit of the byte");
constexpr Advertisement kMaximumDurations =
    By(HasMaximumDurations, "microQSFP (17h), revision code 08h on");

// ---------------------------------------------------------------------------------------------
// The map
// ---------------------------------------------------------------------------------------------

constexpr CodeName kRxPowerTypeNames[] = {{0, "OMA"}, {1, "average power"}};
constexpr CodeTable kRxPowerTypes("SFF-8636 rev 2.11, byte 220", kRxPowerTypeNames);

constexpr CodeName kDetectorNames[] = {{0, "PIN"}, {1, "APD"}};
constexpr CodeTable kDetectors("SFF-8636 rev 2.11, byte 147", kDetectorNames);

constexpr CodeName kFarEndNames[] = {
    {0, "unspecified or separable"},  {1, "one far end with 4 lanes"},
    {2, "one far end with 2 lanes"},  {3, "one far end with 1 lane"},
    {4, "four far ends with 1 lane"}, {5, "two far ends with 2 lanes"},
    {6, "two far ends with 1 lane"},
};
constexpr CodeTable kFarEnds("SFF-8636 rev 2.11, byte 113", kFarEndNames);

constexpr CodeName kSubtypeNames[] = {{1, "Type 1"}, {2, "Type 2"}, {3, "Type 2A"}, {4, "Type 2B"}};
constexpr CodeTable kSubtypes("SFF-8024 rev 4.13, table 4-11", kSubtypeNames);

constexpr CodeName kEmphasisNames[] = {
    {0, "constant peak-to-peak amplitude, or no information"},
    {1, "constant steady-state amplitude"},
    {2, "constant average amplitude"},
};
constexpr CodeTable kEmphasisTypes("SFF-8636 rev 2.11, page 03h byte 225", kEmphasisNames);

constexpr CodeName kLowPowerPinNames[] = {{0, "LPMode"}, {1, "TxDis"}};
constexpr CodeTable kLowPowerPins("SFF-8636 rev 2.11, byte 99", kLowPowerPinNames);
constexpr CodeName kInterruptPinNames[] = {{0, "IntL"}, {1, "RxLOSL"}};
constexpr CodeTable kInterruptPins("SFF-8636 rev 2.11, byte 99", kInterruptPinNames);

// clang-format off
constexpr MapField kFields[] = {
    // field, page, byte, extent, format, what advertises it, first revision
    {Field::kIdentifier,                   kLower,    0, kByte,      kOwn,                             kAlways,                ""},
    {Field::kRevision,                     kLower,    1, kByte,      kOwn,                             kAlways,                ""},
    {Field::kFlatMemory,                   kLower,    2, Bit(2),     kFlag,                            kAlways,                ""},
    {Field::kInterruptAsserted,            kLower,    2, Bit(1),     kInverseFlag,                     kAlways,                ""},
    {Field::kDataNotReady,                 kLower,    2, Bit(0),     kFlag,                            kAlways,                ""},
    {Field::kCoolerReady,                  kLower,    6, Bit(1),     kFlag,                            On(kPage00, 221, 1),    "2.8"},
    {Field::kInitializationComplete,       kLower,    6, Bit(0),     kFlag,                            By(HasInitializationFlag, "00h:221.4; before revision code 07h, when set"), "1.9"},
    {Field::kSoftwareReset,                kLower,   93, Bit(7),     kFlag,                            On(kPage00, 221, 0),    "2.10"},
    {Field::kHighPowerClass8Enable,        kLower,   93, Bit(3),     kFlag,                            On(kPage00, 129, 5),    "2.10"},
    {Field::kHighPowerEnable,              kLower,   93, Bit(2),     kFlag,                            By(HasHighPowerClass, "00h:129.1-0 is not 0"), "1.9"},
    {Field::kLowPowerRequest,              kLower,   93, Bit(1),     kFlag,                            kAlways,                ""},
    {Field::kLowPowerOverride,             kLower,   93, Bit(0),     kFlag,                            kAlways,                ""},
    {Field::kLowPowerPinIsTxDisable,       kLower,   99, Bit(1),     Code(kLowPowerPins),              On(kPage00, 193, 6),    "2.10"},
    {Field::kInterruptPinIsLos,            kLower,   99, Bit(0),     Code(kInterruptPins),             On(kPage00, 193, 5),    "2.10"},
    {Field::kTemperatureMask,              kLower,  103, Bits(7, 4), kNumber,                          By(HasTemperature, "as the temperature"), ""},
    {Field::kCoolerReadyMask,              kLower,  103, Bit(1),     kFlag,                            On(kPage00, 221, 1),    "2.8"},
    {Field::kInitializationCompleteMask,   kLower,  103, Bit(0),     kFlag,                            By(HasInitializationMask, "revision code 01h or 02h; 00h when set"), ""},
    {Field::kVoltageMask,                  kLower,  104, Bits(7, 4), kNumber,                          By(HasVoltage, "as the supply voltage"), ""},
    {Field::kMaxPower,                     kLower,  107, kByte,      kOwn,                             kAlways,                "2.10"},
    {Field::kPropagationDelay,             kLower,  108, kWord,      Number(Times(10)).ZeroIsNone(),   By(HasProperties, "not revision code 01h or 02h"), ""},
    {Field::kAdvancedLowPower,             kLower,  110, Bits(7, 4), kOwn,                             kLowPowerModes,         ""},
    {Field::kFarSideManaged,               kLower,  110, Bit(3),     kFlag,                            kLowPowerModes,         ""},
    {Field::kMinOperatingVoltage,          kLower,  110, Bits(2, 0), kOwn,                             kLowPowerModes,         ""},
    {Field::kFarEnd,                       kLower,  113, Bits(6, 4), Code(kFarEnds),                   kSince25,               "2.5"},
    {Field::kNearEndLanes,                 kLower,  113, Bits(3, 0), kOwn,                             kSince25,               "2.5"},
    {Field::kTxTurnOnTime,                 kLower,  114, Bits(7, 4), kNumber.ZeroIsNone(),             kMaximumDurations,      "2.8"},
    {Field::kDataPathInitTime,             kLower,  114, Bits(3, 0), kNumber.ZeroIsNone(),             kMaximumDurations,      "2.8"},
    {Field::kModselWaitTime,               kLower,  115, kByte,      kOwn,                             kSince28,               "2.10"},
    {Field::kSecondaryExtendedCompliance,  kLower,  116, kByte,      Code(kComplianceCodes).ZeroIsNone(),    kSince28,         "2.10"},
    {Field::kModuleSubtype,                kLower,  117, Bits(7, 4), Code(kSubtypes).ZeroIsNone(),     kSince28,               "2.11"},
    {Field::kFiberFace,                    kLower,  117, Bits(1, 0), Code(kFiberFaces).ZeroIsNone(),   kSince28,               "2.11"},

    {Field::kPowerClass,                   kPage00, 129, kByte,      kOwn,                             kAlways,                ""},
    {Field::kConnector,                    kPage00, 130, kByte,      Code(kConnectors),                kAlways,                ""},
    {Field::kEncoding,                     kPage00, 139, kByte,      Code(kSff8636Encodings),          kAlways,                ""},
    {Field::kNominalBitrate,               kPage00, 140, kByte,      kOwn,                             kAlways,                ""},
    {Field::kRateSelectVersion,            kPage00, 141, Bits(1, 0), kNumber,                          By(HasRateSelectVersion, "00h:141.1-0 is 1 or 2"), ""},
    {Field::kLengthSmf,                    kPage00, 142, kByte,      Number(Times(1000)).ZeroIsNone(), kOptical,               ""},
    {Field::kLengthOm3,                    kPage00, 143, kByte,      Number(Times(2)).ZeroIsNone(),    kOptical,               ""},
    {Field::kLengthOm2,                    kPage00, 144, kByte,      kNumber.ZeroIsNone(),             kOptical,               ""},
    {Field::kLengthOm1,                    kPage00, 145, kByte,      kNumber.ZeroIsNone(),             kOptical,               ""},
    {Field::kAttenuation25p8,              kPage00, 145, kByte,      kNumber.ZeroIsNone(),             By(HasAttenuation25p8, "00h:147.7-4 is 10, 11, 13 or 15"), "2.8"},
    {Field::kLengthCable,                  kPage00, 146, kByte,      kOwn,                             kAlways,                ""},
    {Field::kLengthOm4,                    kPage00, 146, kByte,      kOwn,                             kOptical,               ""},
    {Field::kTechnology,                   kPage00, 147, Bits(7, 4), Code(kSff8636Technologies),       kAlways,                ""},
    {Field::kWavelengthControl,            kPage00, 147, Bit(3),     kFlag,                            kOptical,               ""},
    {Field::kCooledTransmitter,            kPage00, 147, Bit(2),     kFlag,                            kOptical,               ""},
    {Field::kDetector,                     kPage00, 147, Bit(1),     Code(kDetectors),                 kOptical,               ""},
    {Field::kTunableTransmitter,           kPage00, 147, Bit(0),     kFlag,                            kOptical,               ""},
    {Field::kVendor,                       kPage00, 148, Bytes(16),  kText,                            kAlways,                ""},
    {Field::kSpeedMask,                    kPage00, 164, kByte,      kNumber.ZeroIsNone(),             kAlways,                ""},
    {Field::kOui,                          kPage00, 165, Bytes(3),   kOui,                             kAlways,                ""},
    {Field::kPartNumber,                   kPage00, 168, Bytes(16),  kText,                            kAlways,                ""},
    {Field::kVendorRevision,               kPage00, 184, Bytes(2),   kText,                            kAlways,                ""},
    {Field::kWavelength,                   kPage00, 186, kWord,      Number(Per(20)).ZeroIsNone(),     kOptical,               ""},
    {Field::kWavelengthTolerance,          kPage00, 188, kWord,      Number(Per(200)).ZeroIsNone(),    kOptical,               ""},
    {Field::kAttenuation2p5,               kPage00, 186, kByte,      kNumber.ZeroIsNone(),             kCopper,                ""},
    {Field::kAttenuation5,                 kPage00, 187, kByte,      kNumber.ZeroIsNone(),             kCopper,                ""},
    {Field::kAttenuation7,                 kPage00, 188, kByte,      kNumber.ZeroIsNone(),             kCopper,                ""},
    {Field::kAttenuation12p9,              kPage00, 189, kByte,      kNumber.ZeroIsNone(),             kCopper,                ""},
    {Field::kMaxCaseTemperature,           kPage00, 190, kByte,      kOwn,                             kAlways,                ""},
    {Field::kExtendedCompliance,           kPage00, 192, kByte,      Code(kComplianceCodes).ZeroIsNone(),    kAlways,          ""},
    {Field::kSerialNumber,                 kPage00, 196, Bytes(16),  kText,                            kAlways,                ""},
    {Field::kDateCode,                     kPage00, 212, Bytes(6),   kText,                            kAlways,                ""},
    {Field::kLot,                          kPage00, 218, Bytes(2),   kText,                            kAlways,                ""},
    {Field::kRxPowerType,                  kPage00, 220, Bit(3),     Code(kRxPowerTypes),              By(HasRxPower, "as RX power"), ""},
    {Field::kExtendedBitrate,              kPage00, 222, kByte,      Number(Times(kExtendedBitrateUnit)).ZeroIsNone(), By(HasExtendedBitrate, "00h:140 is 255"), "1.5"},

    {Field::kClei,                         kPage02, 128, Bytes(10),  kText,                            On(kPage00, 129, 4),    ""},

    {Field::kMaxTxInputEq,                 kPage03, 224, Bits(7, 4), kNumber,                          On(kPage00, 193, 2),    "1.9"},
    {Field::kMaxRxEmphasis,                kPage03, 224, Bits(3, 0), kNumber,                          On(kPage00, 193, 1),    "1.9"},
    {Field::kRxEmphasisType,               kPage03, 225, Bits(5, 4), Code(kEmphasisTypes),             On(kPage00, 193, 1),    "2.5"},
    {Field::kRxAmplitudes,                 kPage03, 225, Bits(3, 0), kNumber.ZeroIsNone(),             On(kPage00, 193, 0),    "1.9"},
    {Field::kCoolerSettlingTime,           kPage03, 228, kByte,      kNumber.ZeroIsNone(),             kSince28,               "2.8"},
    {Field::kAdaptiveEqSettlingTime,       kPage03, 229, kByte,      Number(Times(100)).ZeroIsNone(),  On(kPage00, 193, 3),    "2.8"},
    {Field::kHostFec,                      kPage03, 230, Bit(7),     kFlag,                            By(HasControl<7>, "03h:227.7, revision code 08h on"),   "2.10"},
    {Field::kMediaFecBit,                  kPage03, 230, Bit(6),     kNumber,                          By(HasControl<6>, "03h:227.6, revision code 08h on"),   "2.10"},
};

constexpr LaneMapField kLaneFields[] = {
    // field, page, byte, extent, order of the lanes, format, what advertises it, first revision
    {LaneField::kTxLos,                kLower,    3, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 195, 1), ""},
    {LaneField::kRxLos,                kLower,    3, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   kAlways,             ""},
    {LaneField::kTxAdaptiveEqFault,    kLower,    4, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 193, 3), "1.9"},
    {LaneField::kTxFault,              kLower,    4, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 195, 3), ""},
    {LaneField::kTxLol,                kLower,    5, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 5), "1.5"},
    {LaneField::kRxLol,                kLower,    5, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 4), "1.5"},
    {LaneField::kTxDisable,            kLower,   86, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 195, 4), ""},
    {LaneField::kRxRateSelect,         kLower,   87, kByte,      LaneOrder::kPairsUp,         kNumber, By(HasRateSelect, "00h:195.5, 221.3, and 141.1-0 is 1 or 2"), ""},
    {LaneField::kTxRateSelect,         kLower,   88, kByte,      LaneOrder::kPairsUp,         kNumber, By(HasRateSelect, "00h:195.5, 221.3, and 141.1-0 is 1 or 2"), ""},
    // Lane 4 comes first.
    {LaneField::kRxApplicationSelect,  kLower,   89, kByte,      LaneOrder::kApart,           kOwn,    On(kPage00, 221, 2), ""},
    {LaneField::kTxApplicationSelect,  kLower,   94, kByte,      LaneOrder::kApart,           kOwn,    On(kPage00, 221, 2), ""},
    {LaneField::kTxCdr,                kLower,   98, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 129, 3), "1.5"},
    {LaneField::kRxCdr,                kLower,   98, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 129, 2), "1.5"},
    {LaneField::kTxLosMask,            kLower,  100, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 195, 1), ""},
    {LaneField::kRxLosMask,            kLower,  100, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   kAlways,             ""},
    {LaneField::kTxAdaptiveEqFaultMask, kLower, 101, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 193, 3), "1.9"},
    {LaneField::kTxFaultMask,          kLower,  101, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 195, 3), ""},
    {LaneField::kTxLolMask,            kLower,  102, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 5), "1.5"},
    {LaneField::kRxLolMask,            kLower,  102, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 4), "1.5"},

    {LaneField::kTxForceSquelch,       kPage03, 231, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   By(HasControl<3>, "03h:227.3, revision code 08h on"), "2.10"},
    {LaneField::kTxAdaptiveEqFreeze,   kPage03, 233, Bits(3, 0), LaneOrder::kBitsDown,        kFlag,   On(kPage00, 193, 4), "2.9"},
    {LaneField::kTxInputEq,            kPage03, 234, kByte,      LaneOrder::kHighNibbleFirst, kNumber, On(kPage00, 193, 2), ""},
    {LaneField::kRxEmphasis,           kPage03, 236, kByte,      LaneOrder::kHighNibbleFirst, kNumber, On(kPage00, 193, 1), ""},
    {LaneField::kRxAmplitude,          kPage03, 238, kByte,      LaneOrder::kHighNibbleFirst, kNumber, On(kPage00, 193, 0), ""},
    {LaneField::kRxSquelchDisable,     kPage03, 240, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 3), ""},
    {LaneField::kTxSquelchDisable,     kPage03, 240, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 1), ""},
    {LaneField::kRxOutputDisable,      kPage03, 241, Bits(7, 4), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 194, 2), ""},
    {LaneField::kTxAdaptiveEq,         kPage03, 241, Bits(3, 0), LaneOrder::kBitsUp,          kFlag,   On(kPage00, 193, 3), ""},
    {LaneField::kRxPowerMask,          kPage03, 242, kByte,      LaneOrder::kHighNibbleFirst, kNumber, By(HasRxPower, "as RX power"), ""},
    {LaneField::kTxBiasMask,           kPage03, 244, kByte,      LaneOrder::kHighNibbleFirst, kNumber, By(HasTxBias, "as TX bias"),   ""},
    {LaneField::kTxPowerMask,          kPage03, 246, kByte,      LaneOrder::kHighNibbleFirst, kNumber, By(HasTxPower, "as TX power"), "1.9"},

    {LaneField::kOpticalLane,          kPage20, 248, kByte,      LaneOrder::kHighNibbleFirst, Code(kOpticalLanes).ZeroIsNone(), On(kPage00, 195, 0), "2.8"},
};

constexpr MapMonitor kMonitors[] = {
    // quantity, name, page, byte, format, thresholds, {flags of lane 1: page, byte, bit, steps to low, warning, lane}, what advertises it, first revision
    {Quantity::kTemperature, "", kLower, 22, kCelsius,      kPage03, 128, {kLower,  6, 7, 1, 2, 0}, By(HasTemperature, "00h:220.5 from revision code 08h on, of copper only if not 0000h or FFFFh; before, not 0000h or FFFFh, or an optical module that is not ready"), ""},
    {Quantity::kVoltage,     "", kLower, 26, kVolts,        kPage03, 144, {kLower,  7, 7, 1, 2, 0}, By(HasVoltage, "00h:220.4 from revision code 08h on, of copper only if not 0000h or FFFFh; before, not 0000h or FFFFh, or an optical module that is not ready"),     ""},
    {Quantity::kRxPower,     "", kLower, 34, kMilliwatts,   kPage03, 176, {kLower,  9, 7, 1, 2, 4}, By(HasRxPower, "optical; 00h:220.3, any lane not 0, any flag, or not ready"),                               ""},
    {Quantity::kTxBias,      "", kLower, 42, kMilliamperes, kPage03, 184, {kLower, 11, 7, 1, 2, 4}, By(HasTxBias, "optical"),                                                              ""},
    {Quantity::kTxPower,     "", kLower, 50, kMilliwatts,   kPage03, 192, {kLower, 13, 7, 1, 2, 4}, By(HasTxPower, "optical; 00h:220.2 from revision code 06h on; before, any lane not 0, or not ready"), "1.9"},
};

// Bit 7 of byte 131 and bit 1 of byte 138 refer to byte 192.
constexpr NamedBit kCompliance[] = {
    {kPage00, 131, 6, "10GBASE-LRM"}, {kPage00, 131, 5, "10GBASE-LR"}, {kPage00, 131, 4, "10GBASE-SR"},
    {kPage00, 131, 3, "40GBASE-CR4"}, {kPage00, 131, 2, "40GBASE-SR4"}, {kPage00, 131, 1, "40GBASE-LR4"},
    {kPage00, 131, 0, "40G Active Cable (XLPPI)"},
    {kPage00, 132, 3, "40G OTN (OTU3B/OTU3C)"},
    {kPage00, 132, 2, "OC-48, long reach"}, {kPage00, 132, 1, "OC-48, intermediate reach"}, {kPage00, 132, 0, "OC-48, short reach"},
    {kPage00, 133, 7, "SAS 24.0 Gb/s"}, {kPage00, 133, 6, "SAS 12.0 Gb/s"}, {kPage00, 133, 5, "SAS 6.0 Gb/s"}, {kPage00, 133, 4, "SAS 3.0 Gb/s"},
    {kPage00, 134, 3, "1000BASE-T"}, {kPage00, 134, 2, "1000BASE-CX"}, {kPage00, 134, 1, "1000BASE-LX"}, {kPage00, 134, 0, "1000BASE-SX"},
    {kPage00, 135, 7, "FC very long distance (V)"}, {kPage00, 135, 6, "FC short distance (S)"}, {kPage00, 135, 5, "FC intermediate distance (I)"},
    {kPage00, 135, 4, "FC long distance (L)"}, {kPage00, 135, 3, "FC medium distance (M)"},
    {kPage00, 135, 1, "FC longwave laser (LC)"}, {kPage00, 135, 0, "FC electrical inter-enclosure (EL)"},
    {kPage00, 136, 7, "FC electrical intra-enclosure"}, {kPage00, 136, 6, "FC shortwave laser without OFC (SN)"},
    {kPage00, 136, 5, "FC shortwave laser with OFC (SL)"}, {kPage00, 136, 4, "FC longwave laser (LL)"},
    {kPage00, 137, 7, "FC twin axial pair (TW)"}, {kPage00, 137, 6, "FC shielded twisted pair (TP)"}, {kPage00, 137, 5, "FC miniature coax (MI)"},
    {kPage00, 137, 4, "FC video coax (TV)"}, {kPage00, 137, 3, "FC multi-mode 62.5 um (M6)"}, {kPage00, 137, 2, "FC multi-mode 50 um (M5)"},
    {kPage00, 137, 1, "FC multi-mode 50 um (OM3)"}, {kPage00, 137, 0, "FC single mode (SM)"},
    {kPage00, 138, 7, "FC 1200 MB/s per lane"}, {kPage00, 138, 6, "FC 800 MB/s"}, {kPage00, 138, 5, "FC 1600 MB/s per lane"},
    {kPage00, 138, 4, "FC 400 MB/s"}, {kPage00, 138, 3, "FC 3200 MB/s per lane"}, {kPage00, 138, 2, "FC 200 MB/s"}, {kPage00, 138, 0, "FC 100 MB/s"},
};

constexpr NamedBit kOptions[] = {
    {kPage00, 129, 4, "CLEI code"}, {kPage00, 129, 3, "TX CDR"}, {kPage00, 129, 2, "RX CDR"},
    {kPage00, 193, 6, "LPMode/TxDis pin configurable"}, {kPage00, 193, 5, "IntL/RxLOSL pin configurable"},
    {kPage00, 193, 4, "TX adaptive equalization freeze"}, {kPage00, 193, 3, "TX adaptive equalization"},
    {kPage00, 193, 2, "TX input equalization programmable"}, {kPage00, 193, 1, "RX output emphasis programmable"},
    {kPage00, 193, 0, "RX output amplitude programmable"},
    {kPage00, 194, 7, "TX CDR on/off control"}, {kPage00, 194, 6, "RX CDR on/off control"},
    {kPage00, 194, 5, "TX CDR loss of lock flag"}, {kPage00, 194, 4, "RX CDR loss of lock flag"},
    {kPage00, 194, 3, "RX squelch disable"}, {kPage00, 194, 2, "RX output disable"}, {kPage00, 194, 1, "TX squelch disable"}, {kPage00, 194, 0, "TX squelch"},
    {kPage00, 195, 7, "Page 02h"}, {kPage00, 195, 6, "Page 01h"}, {kPage00, 195, 5, "Rate select"}, {kPage00, 195, 4, "TX disable"},
    {kPage00, 195, 3, "TX fault flag"}, {kPage00, 195, 2, "TX squelch reduces average power"}, {kPage00, 195, 1, "TX LOS flag"}, {kPage00, 195, 0, "Pages 20h and 21h"},
    {kPage00, 221, 4, "Initialization complete flag"}, {kPage00, 221, 3, "Extended rate select"}, {kPage00, 221, 2, "Application select"},
    {kPage00, 221, 1, "Cooler readiness flag"}, {kPage00, 221, 0, "Software reset"},
};

// From revision code 08h on.
constexpr NamedBit kNewerOptions[] = {
    {kPage03, 227, 7, "Host-side FEC control"}, {kPage03, 227, 6, "Media-side FEC control"}, {kPage03, 227, 3, "TX forced squelch"},
    {kPage03, 227, 2, "RxLOSL fast mode"}, {kPage03, 227, 1, "TxDis fast mode"},
};

constexpr Checksum kChecksums[] = {
    {kPage00, 128, 190, 191},
    {kPage00, 192, 222, 223},
};
// clang-format on

constexpr MemoryMap kMap = {kFields, kLaneFields, kMonitors, kCompliance, kOptions, kChecksums};

// ---------------------------------------------------------------------------------------------
// Fields that several bytes make up
// ---------------------------------------------------------------------------------------------

// Byte 1.
std::string_view RevisionName(unsigned code) {
  constexpr std::string_view kNames[] = {
      "", "SFF-8436 4.8", "SFF-8436 4.8", "1.3", "1.4", "1.5", "2.0", "2.5", "2.8",
  };
  return code < std::size(kNames) ? kNames[code] : std::string_view();
}

void DecodeRevision(Decoding& to) {
  const std::optional<std::uint8_t> code = to.image.At(kLower, 1);
  if (!code) return to.info.SetState(Field::kRevision, FieldState::kNotRead);
  const std::string_view name = RevisionName(*code);
  if (!name.empty()) return to.info.SetText(Field::kRevision, name);
  if (*code != 0) to.Warn("byte 1 is " + HexText(*code) + ", which is not the code of a revision");
}

// The class and its power. Class 8 requires a maximum power in byte 107: older revisions reserve
// the bit, and some modules set it.
void DecodePower(Decoding& to) {
  constexpr double kWattsOfClass[] = {1.5, 2.0, 2.5, 3.5, 4.0, 4.5, 5.0};
  constexpr double kTenths = 10.0;
  const std::optional<std::uint8_t> identifier = to.image.At(kPage00, 129);
  const unsigned maximum = to.image.At(kLower, 107).value_or(0);
  if (!identifier) {
    to.info.SetState(Field::kPowerClass, FieldState::kNotRead);
  } else {
    to.info.SetNumber(Field::kPowerClass, Sff8636PowerClass(*identifier, maximum));
  }
  const unsigned power_class = to.info[Field::kPowerClass].code();
  const bool has_maximum = maximum != 0 && RevisionCode(to.image) >= kRevision28;
  if (has_maximum || power_class == 8) {
    to.info.SetNumber(Field::kMaxPower, maximum / kTenths);
  } else if (power_class != 0) {
    to.info.SetNumber(Field::kMaxPower, kWattsOfClass[power_class - 1]);
  } else {
    to.info.SetState(Field::kMaxPower, FieldState::kNotRead);
  }
}

// Byte 146: OM4 in units of 2 m for separable 850 nm modules, the length of a cable for all others.
void DecodeCableLength(Decoding& to) {
  constexpr unsigned kMore = 255;
  const std::optional<std::uint8_t> length = to.image.At(kPage00, 146);
  const std::optional<unsigned> technology = Technology(to.image);
  const std::optional<std::uint8_t> connector = to.image.At(kPage00, 130);
  if (!length || !technology || !connector) {
    to.info.SetState(Field::kLengthOm4, FieldState::kNotRead);
    return to.info.SetState(Field::kLengthCable, FieldState::kNotRead);
  }
  if (*length == 0) return;
  const bool is_om4 = *technology == 0 && *connector != kNoSeparableConnector;
  const Field field = is_om4 ? Field::kLengthOm4 : Field::kLengthCable;
  const double metres = is_om4 ? 2.0 : 1.0;
  if (*length == kMore) return WarnMoreThan(to, field, (kMore - 1) * metres);
  to.info.SetNumber(field, *length * metres);
}

// A number that a code stands for; codes after the end of the table are undefined.
template <std::size_t N>
void DecodeByTable(Decoding& to, Field field, std::optional<unsigned> code,
                   const double (&numbers)[N]) {
  if (!code) return to.info.SetState(field, FieldState::kNotRead);
  if (*code < N) to.info.SetNumber(field, numbers[*code]);
}

// Byte 110.
void DecodeLowPowerModes(Decoding& to) {
  constexpr double kLowPowers[] = {1.5, 1.0, 0.75, 0.5};
  constexpr double kVoltages[] = {3.3, 2.5, 1.8};
  if (HasLowPowerModes(to.image) == Advertised::kNo) return;
  const std::optional<std::uint8_t> byte = to.image.At(kLower, 110);
  const auto bits = [&byte](unsigned low, unsigned mask) {
    return byte ? std::optional<unsigned>(*byte >> low & mask) : std::nullopt;
  };
  DecodeByTable(to, Field::kAdvancedLowPower, bits(4, 0xF), kLowPowers);
  DecodeByTable(to, Field::kMinOperatingVoltage, bits(0, 7), kVoltages);
}

// Byte 113: the lanes that are not implemented, as bits. All four set is ignored.
std::uint64_t AbsentLanes(const ModuleImage& image) {
  constexpr unsigned kAll = 0xF;
  const unsigned lanes = image.At(kLower, 113).value_or(0) & kAll;
  return lanes == kAll || Since25(image) != Advertised::kYes ? 0 : lanes;
}

void DecodeNearEndLanes(Decoding& to) {
  constexpr unsigned kAll = 0xF;
  if (Since25(to.image) == Advertised::kNo) return;
  const std::optional<std::uint8_t> byte = to.image.At(kLower, 113);
  if (!byte) return to.info.SetState(Field::kNearEndLanes, FieldState::kNotRead);
  if ((*byte & kAll) == kAll) {
    return to.Warn("byte 113 states that the module has none of its four lanes; it is ignored");
  }
  unsigned implemented = kLanes;
  for (std::uint64_t absent = AbsentLanes(to.image); absent != 0; absent >>= 1U) {
    implemented -= absent & 1U;
  }
  to.info.SetNumber(Field::kNearEndLanes, implemented);
}

// Byte 115.
void DecodeModselWaitTime(Decoding& to) {
  if (Since28(to.image) == Advertised::kNo) return;
  const std::optional<std::uint8_t> wait = to.image.At(kLower, 115);
  if (!wait) return to.info.SetState(Field::kModselWaitTime, FieldState::kNotRead);
  const std::optional<double> time = ModselWaitTimeOf(*wait);
  if (time) to.info.SetNumber(Field::kModselWaitTime, *time);
}

// Byte 190; 0 is the ordinary maximum.
void DecodeMaxCaseTemperature(Decoding& to) {
  constexpr double kUnspecified = 70.0;
  const std::optional<std::uint8_t> celsius = to.image.At(kPage00, 190);
  if (!celsius) return to.info.SetState(Field::kMaxCaseTemperature, FieldState::kNotRead);
  to.info.SetNumber(Field::kMaxCaseTemperature, *celsius == 0 ? kUnspecified : *celsius);
}

void AddCompliance(Decoding& to) {
  AddNames(to.image, kCompliance, to.info.compliance);
  for (const Field field : {Field::kExtendedCompliance, Field::kSecondaryExtendedCompliance}) {
    const std::string_view name = to.info[field].text;
    if (!name.empty()) to.info.compliance.push_back(name);
  }
}

void AddOptions(Decoding& to) {
  AddNames(to.image, kOptions, to.info.options);
  if (Since28(to.image) == Advertised::kYes) AddNames(to.image, kNewerOptions, to.info.options);
}

void AddSpeeds(Decoding& to) {
  constexpr std::string_view kSpeeds[] = {"SDR", "DDR", "QDR", "FDR", "EDR", "HDR"};
  const unsigned mask = to.image.At(kPage00, 164).value_or(0);
  for (std::size_t bit = 0; bit < std::size(kSpeeds); ++bit) {
    if ((mask >> bit & 1U) != 0) to.info.supported_speeds.push_back(kSpeeds[bit]);
  }
}

// ---------------------------------------------------------------------------------------------
// Monitors and lanes
// ---------------------------------------------------------------------------------------------

// A CDR that cannot be bypassed is on.
void DecodeCdr(const ModuleImage& image, LaneField field, unsigned control_bit, Lane& lane) {
  const bool is_fixed = AskBit(image, kPage00, 194, control_bit) == Advertised::kNo;
  if (lane[field].IsPresent() && is_fixed) lane.Set(field, {FieldState::kPresent, 1.0});
}

// The fields with a byte per lane, that of lane 4 first.
void DecodeLanesDownwards(Decoding& to) {
  const std::uint64_t absent = AbsentLanes(to.image);
  for (const LaneMapField& line : kLaneFields) {
    if (line.format.type != RawType::kOwn) continue;
    const Advertised advertised = Ask(to.image, line.advertised);
    const ModuleImage::Half& half = to.image.HalfOf(line.page, line.byte);
    for (Lane& lane : to.info.lanes) {
      if ((absent >> (lane.number - 1) & 1U) != 0) continue;
      lane.Set(line.field, ReadLaneField(half, line, advertised, kLanes + 1 - lane.number));
    }
  }
}

// Codes without a meaning in dB.
void DropReservedEqualizers(Decoding& to) {
  DropReserved(to, Field::kMaxTxInputEq, kHighestInputEq);
  DropReserved(to, Field::kMaxRxEmphasis, kHighestEmphasis);
  for (Lane& lane : to.info.lanes) {
    const LaneValue emphasis = lane[LaneField::kRxEmphasis];
    const auto code = static_cast<unsigned>(emphasis.number);
    if (!emphasis.IsPresent() || code <= kHighestEmphasis) continue;
    to.Warn(NoDecibelText(DescribeField(LaneField::kRxEmphasis).label, code) + ": lane " +
            std::to_string(lane.number));
    lane.Set(LaneField::kRxEmphasis, {});
  }
}

void DecodeLanes(Decoding& to) {
  constexpr unsigned kTxCdrControl = 7;
  constexpr unsigned kRxCdrControl = 6;
  static const Lane kLane;  // a copy is cheaper than a new one
  to.info.lanes.reserve(kLanes);
  for (unsigned number = 1; number <= kLanes; ++number) {
    to.info.lanes.emplace_back(kLane).number = number;
  }
  module_memory::DecodeLanes(to, kLaneFields, AbsentLanes(to.image));
  for (Lane& lane : to.info.lanes) {
    DecodeCdr(to.image, LaneField::kTxCdr, kTxCdrControl, lane);
    DecodeCdr(to.image, LaneField::kRxCdr, kRxCdrControl, lane);
  }
  WarnOfFlags(to, kLaneFields);
}

void DecodeMonitors(Decoding& to) {
  const bool is_ready = IsNotReady(to.image) != Advertised::kYes;
  const MonitorScope scope = {AbsentLanes(to.image), is_ready};
  for (const MapMonitor& line : kMonitors) {
    DecodeMonitor(to, line, {line.format}, Ask(to.image, line.advertised), scope);
  }
  if (!is_ready) to.Warn(kNotReadyText);
}

// ---------------------------------------------------------------------------------------------
// Pages 20h and 21h, as 195.0 advertises
// ---------------------------------------------------------------------------------------------

constexpr unsigned kParameters = 24;

// Two bytes configure a parameter: the number of its threshold set less 1, whether it is that of a
// lane, the number of that lane less 1; and its type.
void DecodeParameter(Decoding& to, unsigned number, unsigned configuration) {
  constexpr std::size_t kFlags = 128;
  constexpr std::size_t kValues = 152;
  constexpr std::size_t kThresholds = 128;
  constexpr std::size_t kThresholdSetSize = 8;
  const unsigned type = configuration & 0xFFU;
  if (type == 0) return;
  const bool is_of_lane = (configuration >> 10U & 1U) != 0;
  const unsigned lane = is_of_lane ? (configuration >> 8U & 3U) + 1 : 0;
  const unsigned threshold_set = configuration >> 12U;
  const VdmObservable* const observable = FindSff8636Observable(type);
  const ModuleImage::Half& page20 = to.image.HalfOf(Page::k20, kValues);
  const Monitor monitor = ReadSample(
      {page20, kValues + 2 * std::size_t{number}, to.image.HalfOf(Page::k21, kThresholds),
       kThresholds + kThresholdSetSize * threshold_set, page20, kFlags + number / 2,
       number % 2 == 0 ? Nibble::kHigh : Nibble::kLow, FlagOrder::kDown},
      observable != nullptr ? *observable : kUnknownObservable);
  to.info.vdm.push_back(SampleOf(observable, type, lane, monitor));
}

void DecodeParameters(Decoding& to) {
  constexpr std::size_t kConfigurations = 200;
  const ModuleImage::Half& page20 = to.image.HalfOf(Page::k20, kConfigurations);
  if (page20.IsEmpty()) return;
  if (AskBit(to.image, kPage00, 195, 0) == Advertised::kNo) {
    return to.Warn("page 20h was read, but the module does not advertise it");
  }
  for (unsigned number = 0; number < kParameters; ++number) {
    const std::size_t byte = kConfigurations + 2 * std::size_t{number};
    if (page20.Has(byte, 2)) DecodeParameter(to, number, RawNumber(page20, byte, kWord));
  }
}

}  // namespace

const MemoryMap& Sff8636Map() { return kMap; }

unsigned Sff8636PowerClass(unsigned extended_identifier, unsigned maximum_power) {
  constexpr unsigned kClass8 = 8;
  const bool says_class_8 = (extended_identifier >> 5U & 1U) != 0;
  if (says_class_8 && maximum_power != 0) return kClass8;
  const unsigned above_4 = extended_identifier & 3U;
  return above_4 != 0 ? above_4 + 4 : (extended_identifier >> 6U) + 1;
}

namespace {

// Fields on pages that flat memory does not have are not implemented.
void DecodeFlat(Decoding& to) {
  for (const MapField& line : kFields) {
    if (IsUpperPage(line.page) && line.page != kPage00) {
      to.info.SetState(line.field, FieldState::kNotImplemented);
    }
  }
  for (const LaneMapField& line : kLaneFields) {
    if (!IsUpperPage(line.page) || line.page == kPage00) continue;
    for (Lane& lane : to.info.lanes) lane.Set(line.field, {});
  }
}

}  // namespace

void DecodeSff8636(Decoding& to) {
  if (to.info[Field::kIdentifier].code() == kOldQsfp) {
    to.Warn("the identifier is that of INF-8438, whose memory map differs in places");
  }
  DecodeFields(to, kFields);
  DecodeRevision(to);
  DecodePower(to);
  DecodeNominalBitrate(to, to.image.At(kPage00, 140), to.image.At(kPage00, 222));
  DecodeCableLength(to);
  DecodeLowPowerModes(to);
  DecodeNearEndLanes(to);
  DecodeModselWaitTime(to);
  DecodeMaxCaseTemperature(to);
  AddCompliance(to);
  AddSpeeds(to);
  AddOptions(to);
  DecodeLanes(to);
  DecodeLanesDownwards(to);
  DropReservedEqualizers(to);
  DecodeMonitors(to);
  DecodeParameters(to);
  if (AskBit(to.image, kLower, 2, 2) == Advertised::kYes) DecodeFlat(to);
  AddChecksums(to, kChecksums);
}

}  // namespace cable_info::module_memory
