#include "cable_info/prtl_record.h"

#include <string_view>

#include "cable_info/text/text_buffer.h"

namespace cable_info {

using text::TextBuffer;
using text::ToText;

namespace {

constexpr std::string_view kLatencyExceeded =
    "The PRTL round trip latency exceeds its maximal possible value.";
constexpr std::string_view kBelowResolution = "The cable's length is below latency resolution.";
constexpr std::string_view kLocalDetails = " PRTL registers details: local=";
constexpr std::string_view kRemoteDetails = " and remote=";

constexpr float kLatencyUnitsPerMetre = 10.0F;

void AppendRecord(TextBuffer& out, const PrtlRecord& record) {
  out.Append("(round_trip_latency=").AppendDecimal(record.round_trip_latency);
  out.Append(", latency_res=").AppendDecimal(record.latency_res);
  out.Append(", local_mod_dp_latency=").AppendDecimal(record.local_mod_dp_latency);
  out.Append(", local_phy_latency=").AppendDecimal(record.local_phy_latency).Append(')');
}

}  // namespace

float PrtlRecord::CalculateLength(const PrtlRecord& remote) const {
  const auto round_trip = static_cast<float>(latency_res * round_trip_latency);
  const auto data_path = static_cast<float>(local_mod_dp_latency + remote.local_mod_dp_latency);
  const auto phy = static_cast<float>(local_phy_latency + remote.local_phy_latency);
  return ((round_trip - data_path) - phy) / kLatencyUnitsPerMetre;
}

float PrtlRecord::CalculateLength(const PrtlRecord& remote, std::string& error) const {
  if (round_trip_latency == kMaxRoundTripLatency) {
    error = kLatencyExceeded;
    return kNoLength;
  }
  const float length = CalculateLength(remote);
  if (!(length > 0.0F)) {  // also without a round trip
    error = ToText([&](TextBuffer& out) {
      out.Append(kBelowResolution).Append(kLocalDetails);
      AppendRecord(out, *this);
      out.Append(kRemoteDetails);
      AppendRecord(out, remote);
    });
    return kNoLength;
  }
  return length;
}

std::string PrtlRecord::ToString() const { return ToText(AppendRecord, *this); }

}  // namespace cable_info
