#pragma once

/// \file
/// Codes of SFF-8024 and of the memory maps by name.
///
/// A code that a table does not list has no name; readers keep its number.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cable_info {

/// A code and its name in the standard.
struct CodeName {
  std::uint8_t code;      ///< the code
  std::string_view name;  ///< its name, shortened where the standard has a sentence
};

/// A table of codes in ascending order. The entries are static.
class CodeTable {
 public:
  /// `entries` must be static.
  template <std::size_t N>
  constexpr CodeTable(std::string_view source, const CodeName (&entries)[N])
      : source_(source), entries_(entries), size_(N) {}

  /// The standard, its revision and the table or byte that lists the codes.
  constexpr std::string_view source() const { return source_; }
  /// The number of codes.
  constexpr std::size_t size() const { return size_; }
  /// The first entry.
  constexpr const CodeName* begin() const { return entries_; }
  /// The end of the entries.
  constexpr const CodeName* end() const { return entries_ + size_; }

  /// The name of `code`; empty for reserved, vendor specific and unknown codes.
  std::string_view Name(unsigned code) const;

 private:
  std::string_view source_;
  const CodeName* entries_;
  std::size_t size_;
};

/// Kinds of modules (26h: rev 4.14): byte 0 of every map.
extern const CodeTable kIdentifiers;
/// Encodings of SFF-8472: A0h byte 11.
extern const CodeTable kSff8472Encodings;
/// Encodings of SFF-8436 and SFF-8636, whose codes 4 to 6 differ from SFF-8472: 00h byte 139.
extern const CodeTable kSff8636Encodings;
/// Connectors: SFF-8472 A0h byte 2, SFF-8636 00h byte 130, CMIS 00h byte 203.
extern const CodeTable kConnectors;
/// Extended specification compliance: SFF-8472 A0h byte 36, SFF-8636 00h byte 192 and byte 116.
extern const CodeTable kComplianceCodes;
/// Host electrical interfaces of CMIS applications (98h to 9Bh, BEh: rev 4.14).
extern const CodeTable kHostInterfaces;
/// Media interfaces of CMIS media type 1 (BEh: rev 4.14).
extern const CodeTable kMmfInterfaces;
/// Media interfaces of CMIS media type 2 (8Fh to 93h, BEh: rev 4.14).
extern const CodeTable kSmfInterfaces;
/// Media interfaces of CMIS media type 3.
extern const CodeTable kPassiveCopperInterfaces;
/// Media interfaces of CMIS media type 4.
extern const CodeTable kActiveCableInterfaces;
/// Media interfaces of CMIS media type 5.
extern const CodeTable kBaseTInterfaces;
/// Types of QSFP+ modules: CMIS lower byte 60.
extern const CodeTable kQsfpSubtypes;
/// Types of QSFP-DD modules.
extern const CodeTable kQsfpDdSubtypes;
/// Types of SFP-DD modules.
extern const CodeTable kSfpDdSubtypes;
/// Types of OSFP modules.
extern const CodeTable kOsfpSubtypes;
/// Types of OSFP-XD modules.
extern const CodeTable kOsfpXdSubtypes;
/// Fiber faces: CMIS lower byte 61, bits 1..0.
extern const CodeTable kFiberFaces;
/// Heatsinks: CMIS lower byte 61, bits 7..4.
extern const CodeTable kHeatsinks;
/// Media types: CMIS lower byte 85, which selects the table of media interfaces.
extern const CodeTable kMediaTypes;
/// Media interface technologies of CMIS.
extern const CodeTable kMediaTechnologies;
/// Device technologies of SFF-8636: bits 7..4.
extern const CodeTable kSff8636Technologies;
/// The optical lane that carries each electrical lane, SFF-8636 20h bytes 248-249, one nibble per
/// lane. Where PAM4 combines two electrical lanes into one optical lane, one of them carries the
/// most significant bits (MSB).
extern const CodeTable kOpticalLanes;
/// Module states of CMIS: bits 3..1.
extern const CodeTable kModuleStates;
/// Data path states of CMIS, one nibble per lane; CMIS 5.x shortens the names to DPActivated etc.
extern const CodeTable kDataPathStates;
/// Results of the last configuration command of CMIS, one nibble per lane.
extern const CodeTable kConfigStatuses;
/// Frequency grids of tunable CMIS modules, 12h bytes 128-135 bits 7..4, with the codes of CMIS 5.0
/// and later; before that, 6 and 7 were swapped.
extern const CodeTable kFrequencyGrids;
/// Highest speeds of the I2C management interface of CMIS, lower byte 2.
extern const CodeTable kManagementSpeeds;
/// Test patterns of CMIS, by their numbers on page 13h.
extern const CodeTable kTestPatterns;
/// Extended identifiers of SFF-8472.
extern const CodeTable kSff8472ExtendedIdentifiers;
/// Rate identifiers of SFF-8472.
extern const CodeTable kSff8472RateIdentifiers;

/// The table that names the media interfaces of CMIS `media_type` (lower byte 85), Tables 4-6 to
/// 4-10; null for media types without one.
const CodeTable* MediaInterfacesOf(unsigned media_type);

/// The table that names the types (Table 4-11) of modules with `identifier`; null for those
/// without one.
const CodeTable* SubtypesOf(unsigned identifier);

/// The InfiniBand speed of a host electrical interface (Table 4-5): "SDR" to "XDR"; empty for
/// interfaces that are not InfiniBand's.
std::string_view InfiniBandSpeedOf(unsigned host_interface);

}  // namespace cable_info
