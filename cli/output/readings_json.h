#pragma once

#include <string>

#include "cable_info/readings/readings.h"
#include "cli/json_text.h"

namespace cli {

/// \name Parts of the readings as members of a JSON object
/// Each function writes its keys whatever the port has; what is absent is null.
/// @{

/// "identifier", "connector", "technology", "compliance", "medium" and "cdr_vendor".
void WriteCodes(JsonText& json, const cable_info::Readings& port);
/// "supported_speeds" and "nominal_bitrate_gbps".
void WriteSpeeds(JsonText& json, const cable_info::Readings& port);
/// "power".
void WritePower(JsonText& json, const cable_info::Readings& port);
/// "length_m".
void WriteLengths(JsonText& json, const cable_info::Lengths& lengths);
/// "attenuation_db".
void WriteAttenuation(JsonText& json, const cable_info::Attenuation& attenuation);
/// "rx_power_type".
void WritePowerType(JsonText& json, const cable_info::Readings& port);
/// "controls" of a lane from 1.
void WriteControls(JsonText& json, const cable_info::Controls& controls, int lane);
/// @}

/// The key of a lane flag, such as "rx_los": the name of its rule with '_' in place of '-'.
const std::string& LaneFlagKey(cable_info::LaneFlag flag);

}  // namespace cli
