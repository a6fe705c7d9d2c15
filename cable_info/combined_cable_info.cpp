#include "cable_info/combined_cable_info.h"

#include <cmath>
#include <ostream>
#include <utility>

#include "cable_info/cable_output.h"
#include "cable_info/phy_output.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

using text::TextBuffer;
using text::ToText;

namespace {

constexpr std::string_view kMetres = " m";

}  // namespace

CombinedCableInfo::~CombinedCableInfo() {
  delete cable_record_;
  delete phy_cable_record_;
}

void CombinedCableInfo::AttachCableRecord(std::unique_ptr<CableRecord> record) {
  delete std::exchange(cable_record_, record.release());
}

void CombinedCableInfo::AttachPhyCableRecord(std::unique_ptr<PhyCableRecord> record) {
  delete std::exchange(phy_cable_record_, record.release());
}

// ---------------------------------------------------------------------------------------------
// Outputs
// ---------------------------------------------------------------------------------------------

std::string CombinedCableInfo::GetCSVHeader() {
  return ToText([](TextBuffer& out) {
    for (const CsvColumn& column : kCsvColumns) out.Append(column.name).Append(',');
    out.Truncate(out.size() - 1);  // the last name's comma
    out.Append('\n');
  });
}

void CombinedCableInfo::ToCSVStream(std::ostream& os) const {
  if (cable_record_ != nullptr) return cable_record_->ToCSVStream(os);
  if (phy_cable_record_ != nullptr) return phy_cable_record_->ToCSVStream(os);
  os.width(0);
  os << std::endl;
}

void CombinedCableInfo::VisitCells(CellSink& sink) const {
  if (cable_record_ != nullptr) return cable::VisitCells(sink, *cable_record_);
  if (phy_cable_record_ != nullptr) return phy::VisitCells(sink, *phy_cable_record_);
  for (int cell = 0; cell < kRecordColumnCount; ++cell) sink.Missing();
}

std::vector<std::string> CombinedCableInfo::Cells() const {
  std::vector<std::string> cells;
  cells.reserve(kCsvColumns.size());
  if (cable_record_ != nullptr) {
    cable::AppendCells(cells, *cable_record_);
  } else if (phy_cable_record_ != nullptr) {
    phy::AppendCells(cells, *phy_cable_record_);
  }
  return cells;
}

void CombinedCableInfo::ToFileStream(std::ostream& os) const {
  if (cable_record_ != nullptr) return cable_record_->ToFileStream(os);
  if (phy_cable_record_ != nullptr) return phy_cable_record_->ToFileStream(os);
  os.width(0);
}

bool CombinedCableInfo::ExportData(cable_record_data_t* data) {
  if (cable_record_ == nullptr) return false;
  cable_record_->ExportData(data);
  return true;
}

// ---------------------------------------------------------------------------------------------
// Identification
// ---------------------------------------------------------------------------------------------

cable_id_t CombinedCableInfo::GetIdObj() const {
  if (cable_record_ != nullptr) return cable_record_->GetIdObj();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetIdObj();
  return {};
}

std::string CombinedCableInfo::GetUniqueKey() const {
  if (cable_record_ != nullptr || phy_cable_record_ == nullptr) return {};
  return phy_cable_record_->GetUniqueKey();
}

std::string CombinedCableInfo::GetPNVendor() const {
  if (cable_record_ != nullptr) return std::string(Trimmed(cable_record_->GetPNVendor()));
  if (phy_cable_record_ != nullptr) return std::string(Trimmed(phy_cable_record_->GetPNVendor()));
  return {};
}

fw_version_obj_t CombinedCableInfo::GetFWObj() const {
  if (cable_record_ != nullptr) return cable_record_->GetFWObj();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetFWObj();
  return {};
}

std::uint32_t CombinedCableInfo::GetCDRVendor() const {
  return phy_cable_record_ != nullptr ? phy_cable_record_->GetCDRVendor() : kNoRecord;
}

bool CombinedCableInfo::IsOpticCable() const {
  if (cable_record_ != nullptr) return cable_record_->IsOpticCable();
  return phy_cable_record_ != nullptr && phy_cable_record_->IsOpticCable();
}

// ---------------------------------------------------------------------------------------------
// Temperature
// ---------------------------------------------------------------------------------------------

std::uint32_t CombinedCableInfo::GetTemperatureAlarms() const {
  if (cable_record_ != nullptr) return cable_record_->GetTemperatureAlarms();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetTemperatureAlarms();
  return kNoRecord;
}

std::uint32_t CombinedCableInfo::GetTemperatureErrorsByTreshold() const {
  if (cable_record_ != nullptr) return cable_record_->GetTemperatureErrorsByTreshold();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetTemperatureErrorsByTreshold();
  return kNoRecord;
}

std::string CombinedCableInfo::GetTemperatureStr() const {
  if (cable_record_ != nullptr) return cable_record_->GetTemperatureStr();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetTemperatureStr();
  return std::string(kReportNa);
}

std::string CombinedCableInfo::GetHighTemperatureThresholdStr() const {
  if (cable_record_ != nullptr) return cable_record_->GetHighTemperatureThresholdStr();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetHighTemperatureThresholdStr();
  return std::string(kReportNa);
}

std::string CombinedCableInfo::GetLowTemperatureThresholdStr() const {
  if (cable_record_ != nullptr) return cable_record_->GetLowTemperatureThresholdStr();
  if (phy_cable_record_ != nullptr) return phy_cable_record_->GetLowTemperatureThresholdStr();
  return std::string(kReportNa);
}

// ---------------------------------------------------------------------------------------------
// Length by round-trip latency
// ---------------------------------------------------------------------------------------------

bool CombinedCableInfo::SetMeasuredLength(float metres) {
  if (cable_record_ == nullptr && phy_cable_record_ == nullptr) return false;
  if (!std::isfinite(metres) || metres < 0) return false;
  SetPrtlLength(metres);
  return true;
}

void CombinedCableInfo::SetPrtlLength(float length) {
  SetPrtlLength(_to_string(static_cast<double>(length)).append(kMetres));
}

void CombinedCableInfo::SetPrtlLength(std::string text) {
  if (cable_record_ != nullptr) {
    cable_record_->PrtlLengthText = std::move(text);
  } else if (phy_cable_record_ != nullptr) {
    phy_cable_record_->prtl_length = std::move(text);
  }
}

// ---------------------------------------------------------------------------------------------
// Decoders that need no record
// ---------------------------------------------------------------------------------------------

std::string CombinedCableInfo::CableTypeToStr(std::uint8_t technology,
                                              const std::string& fallback) {
  return cable_info::CableTypeToStr(technology, fallback);
}

std::string CombinedCableInfo::SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback) {
  return cable_info::SupportedSpeedToStr(mask, fallback);
}

std::string CombinedCableInfo::TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                                                const std::string& fallback) {
  return cable_info::TemperatureToStr(technology, temperature, fallback);
}

std::string CombinedCableInfo::VoltageToStr(std::uint16_t raw) {
  return cable_info::VoltageToStr(raw);
}

bool CombinedCableInfo::IsOpticCable(std::uint8_t technology) {
  return cable_info::IsOpticCable(technology);
}

}  // namespace cable_info
