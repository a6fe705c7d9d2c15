#pragma once

/// \file
/// The cable data of one port, from whichever source, and the header of the cable table.
///
/// \code
/// cable_info::CombinedCableInfo port;
/// auto record = std::make_unique<cable_info::CableRecord>();
/// record->VendorName = "Acme Optics";
/// port.AttachCableRecord(std::move(record));
///
/// std::cout << cable_info::CombinedCableInfo::GetCSVHeader();
/// std::cout << "0xa0b1c20000d4e500,0xa0b1c20000d4e501,1,";  // NodeGuid, PortGuid, PortNum
/// port.ToCSVStream(std::cout);                              // the other 174 cells
/// \endcode

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/cell_sink.h"
#include "cable_info/csv_columns.h"
#include "cable_info/phy_cable_record.h"
#include "cable_info/prtl_record.h"
#include "cable_info/value_format.h"

namespace cable_info {

/// The object that a host keeps for a port. It owns at most one record of each kind. Every
/// operation uses the `CableRecord` if there is one, otherwise the `PhyCableRecord`; without
/// records it returns a fixed value. Exceptions are stated at the operation.
///
/// Distinct objects may be used from different threads; an object, by one thread at a time.
///
/// The spelling of `GetTemperatureErrorsByTreshold` is part of the interface; do not correct it.
class CombinedCableInfo {
 public:
  /// The result of the 32-bit queries of a port without records.
  static constexpr std::uint32_t kNoRecord = 0xFFFFFFFF;

  CombinedCableInfo() = default;
  CombinedCableInfo(const CombinedCableInfo&) = delete;
  CombinedCableInfo& operator=(const CombinedCableInfo&) = delete;
  CombinedCableInfo(CombinedCableInfo&&) = delete;
  CombinedCableInfo& operator=(CombinedCableInfo&&) = delete;
  ~CombinedCableInfo();

  /// \name Attaching records
  /// The port takes ownership, and deletes the record of that kind attached before. Null detaches.
  /// @{

  /// Attaches the record of the cable-information pages.
  void AttachCableRecord(std::unique_ptr<CableRecord> record);
  /// Attaches the record of the PHY's registers.
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

  /// The header line of the table: the 177 names of `kCsvColumns` joined by commas, and a newline.
  static std::string GetCSVHeader();

  /// Writes the row of the port from the fourth column (Source) on, and flushes. The host writes
  /// the first three cells before, each followed by a comma. Without records, the row is only a
  /// newline. Leaves the stream with width 0, as any formatted output does.
  void ToCSVStream(std::ostream& os) const;
  /// Passes the same cells to `sink` as typed values: always 174, all of them missing without
  /// records. Values and units are those of `kCsvColumns`, except NominalBitrate, which is in Gb/s
  /// for both sources. LengthDesc, LengthDescByPRTL and LengthDescByReg are in metres; the other
  /// lengths are codes, as in the row. A text that is empty, "NA" or "N/A" is a missing value, and
  /// so are NaN, infinities and a power that cannot be represented.
  void VisitCells(CellSink& sink) const;
  /// The cells of that row, in the order of the columns from Source on: each with the quotes that
  /// it has there, but without the comma. None without records.
  std::vector<std::string> Cells() const;
  /// Writes the block of the port in the text report; nothing without records. Leaves the stream
  /// with width 0.
  void ToFileStream(std::ostream& os) const;

  /// The identification of the cable; all empty without records.
  cable_id_t GetIdObj() const;
  /// Part number, identifier code and revision joined by "_", from a `PhyCableRecord` without a
  /// `CableRecord`; empty otherwise.
  std::string GetUniqueKey() const;
  /// Sets `*data`, which must not be null, from the `CableRecord`; returns false, with `*data`
  /// unchanged, if there is none.
  bool ExportData(cable_record_data_t* data);
  /// The part number, trimmed; empty if it is unknown.
  std::string GetPNVendor() const;
  /// The firmware version, from a `PhyCableRecord` without a `CableRecord`; all zero otherwise.
  fw_version_obj_t GetFWObj() const;
  /// The vendor code of the CDR chip, always from the `PhyCableRecord`: 0 if it has no module
  /// record, `kNoRecord` if there is no `PhyCableRecord`.
  std::uint32_t GetCDRVendor() const;
  /// True if the technology is optical; false without records.
  bool IsOpticCable() const;
  /// The latched temperature flags: bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning;
  /// `kNoRecord` without records.
  std::uint32_t GetTemperatureAlarms() const;
  /// Compares the temperature with its alarm thresholds: bit 0 is set above the high one, bit 1
  /// below the low one; `kNoRecord` without records. The spelling is part of the interface.
  std::uint32_t GetTemperatureErrorsByTreshold() const;
  /// The temperature in whole degrees Celsius with "C", or N/A.
  std::string GetTemperatureStr() const;
  /// The high alarm threshold in the same form.
  std::string GetHighTemperatureThresholdStr() const;
  /// The low alarm threshold in the same form.
  std::string GetLowTemperatureThresholdStr() const;

  /// \name The length measured by round-trip latency
  /// Stored in the `CableRecord` if there is one, otherwise in the `PhyCableRecord`. It is not
  /// transferred to a record that is attached later.
  /// @{

  /// Stores a length in metres, shown with at most six significant digits and " m". Returns false,
  /// with nothing changed, if the port has no record, or if `metres` is not a length: negative, as
  /// `PrtlRecord::kNoLength` is, infinite or NaN.
  [[nodiscard]] bool SetMeasuredLength(float metres);
  /// The same without checks: any number is shown, -1 as "-1 m". Does nothing without records.
  void SetPrtlLength(float length);
  /// A length as text, shown verbatim; an empty text clears it. Does nothing without records.
  void SetPrtlLength(std::string text);
  /// @}

  /// \name Decoders that need no record
  /// See the functions of the same names in value_format.h.
  /// @{

  /// The name of a technology code.
  static std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback);
  /// The InfiniBand speeds of a mask.
  static std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback);
  /// A temperature in degrees Celsius with "C".
  static std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                                      const std::string& fallback);
  /// A voltage, given in units of 100 uV, in microvolts with "uV".
  static std::string VoltageToStr(std::uint16_t raw);
  /// True for the optical technology codes.
  static bool IsOpticCable(std::uint8_t technology);
  /// @}

 private:
  CableRecord* cable_record_ = nullptr;
  PhyCableRecord* phy_cable_record_ = nullptr;
};

}  // namespace cable_info
