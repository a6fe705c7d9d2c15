#pragma once

/// \file
/// All that is known about the cable in one port, and the table of all cables.

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

#include "cable_info/cable_record.h"
#include "cable_info/cell_sink.h"
#include "cable_info/csv_columns.h"
#include "cable_info/phy_cable_record.h"
#include "cable_info/prtl_record.h"
#include "cable_info/value_format.h"

namespace cable_info {

/// The one object a host holds for a port. It owns at most one record of each kind and answers
/// every question from one of them: from the `CableRecord` when there is one, else from the
/// `PhyCableRecord`, else with a fixed value. Where an operation does otherwise, it says so.
///
/// Distinct objects may be used from different threads; one object, by one thread at a time.
class CombinedCableInfo {
 public:
  /// What the 32-bit queries return when there is no record.
  static constexpr std::uint32_t kNoRecord = 0xFFFFFFFF;

  CombinedCableInfo() = default;
  CombinedCableInfo(const CombinedCableInfo&) = delete;
  CombinedCableInfo& operator=(const CombinedCableInfo&) = delete;
  CombinedCableInfo(CombinedCableInfo&&) = delete;
  CombinedCableInfo& operator=(CombinedCableInfo&&) = delete;
  ~CombinedCableInfo();

  /// \name Handing over a record
  /// Replaces and frees the one held before; null detaches.
  /// @{

  /// What the cable-information pages tell.
  void AttachCableRecord(std::unique_ptr<CableRecord> record);
  /// What the PHY's registers tell.
  void AttachPhyCableRecord(std::unique_ptr<PhyCableRecord> record);
  /// @}

  /// \name The records held
  /// The object keeps owning them; a pointer is valid until another record is attached.
  /// @{

  /// The record of the cable-information pages; null when there is none.
  const CableRecord* cable_record() const { return cable_record_; }
  /// The record of the PHY's registers; null when there is none.
  const PhyCableRecord* phy_cable_record() const { return phy_cable_record_; }
  /// @}

  /// The table's header line: the 177 column names joined by commas, and a newline.
  static std::string GetCSVHeader();

  /// Writes the port's row from the fourth column (Source) on; the host has written the first
  /// three cells, each with its comma. Without records only a newline and a flush. Leaves the
  /// stream's width at 0, as any formatted output does.
  void ToCSVStream(std::ostream& os) const;
  /// Hands the same cells to `sink`, typed: always 174, all of them missing without records. Values
  /// and units are those of `kCsvColumns`, but for NominalBitrate, which is in Gb/s whatever the
  /// source, and a length, which is in metres. A text that is empty, "NA" or "N/A" is a missing
  /// value, and so are NaN, infinities and a power that cannot be represented.
  void VisitCells(CellSink& sink) const;
  /// Writes the port's block of the text report; nothing without records. Leaves the stream's width
  /// at 0.
  void ToFileStream(std::ostream& os) const;

  /// All empty without records.
  cable_id_t GetIdObj() const;
  /// Part number, identifier and revision joined by "_". Only a `PhyCableRecord` that stands alone
  /// has one; empty otherwise.
  std::string GetUniqueKey() const;
  /// Fills `*data`, which must not be null, from the `CableRecord`; false when there is none.
  bool ExportData(cable_record_data_t* data);
  /// The part number, trimmed; empty when it is not known.
  std::string GetPNVendor() const;
  /// Only a `PhyCableRecord` that stands alone has one; all zero otherwise.
  fw_version_obj_t GetFWObj() const;
  /// The CDR chip's vendor, always asked of the `PhyCableRecord`: 0 when it has no module,
  /// `kNoRecord` when there is none.
  std::uint32_t GetCDRVendor() const;
  /// False without records.
  bool IsOpticCable() const;
  /// Bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning; `kNoRecord` without records.
  std::uint32_t GetTemperatureAlarms() const;
  /// Bit 0: above the high alarm threshold, bit 1: below the low one; `kNoRecord` without records.
  std::uint32_t GetTemperatureErrorsByTreshold() const;
  /// Degrees Celsius with "C", or N/A (as the next two).
  std::string GetTemperatureStr() const;
  /// The high alarm threshold.
  std::string GetHighTemperatureThresholdStr() const;
  /// The low alarm threshold.
  std::string GetLowTemperatureThresholdStr() const;

  /// \name The length measured by round-trip latency
  /// Kept by the record that answers for the port; dropped when there is none.
  /// @{

  /// Metres; shown with at most six significant digits and " m". No value is special.
  void SetPrtlLength(float length);
  /// As it stands; an empty text clears the length.
  void SetPrtlLength(std::string text);
  /// @}

  /// \name Decoders that need no record
  /// See the functions of the same names in value_format.h.
  /// @{

  /// The technology of a 4-bit code.
  static std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback);
  /// The speeds of a mask.
  static std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback);
  /// Degrees Celsius with "C".
  static std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                                      const std::string& fallback);
  /// Microvolts with "uV", from units of 100 uV.
  static std::string VoltageToStr(std::uint16_t raw);
  /// True for the optical ones among the 4-bit codes.
  static bool IsOpticCable(std::uint8_t technology);
  /// @}

 private:
  CableRecord* cable_record_ = nullptr;
  PhyCableRecord* phy_cable_record_ = nullptr;
};

}  // namespace cable_info
