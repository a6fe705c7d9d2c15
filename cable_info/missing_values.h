#pragma once

/// \file
/// The texts written for a missing value. The row and the report use different ones, and scripts
/// compare them literally.

#include <string_view>

namespace cable_info {

/// The missing value without quotes.
inline constexpr std::string_view kBareNa = "NA";
/// The missing value of a CSV cell, with its double quotes. The spelling is part of the interface;
/// do not correct it.
inline constexpr std::string_view na_val = "\"NA\"";
/// The missing value of the text report.
inline constexpr std::string_view kReportNa = "N/A";
/// The missing value of the text report for a value of two parts.
inline constexpr std::string_view kReportTwoNa = "N/A N/A";
/// The missing value of the text report for a power.
inline constexpr std::string_view kReportNoPower = kReportTwoNa;

/// The missing value of the CSV row (`csv` true) or of the text report.
constexpr std::string_view MissingValue(bool csv) { return csv ? na_val : kReportNa; }

/// The same without quotes, for a text that the caller puts between quotes if `csv` is true.
constexpr std::string_view UnquotedMissingValue(bool csv) { return csv ? kBareNa : kReportNa; }

}  // namespace cable_info
