#include "cable_record_ports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

#include "test_support.h"

namespace cable_info::test {
namespace {

// A row is listed on several lines, its cells in groups.
std::string OneLine(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return text + '\n';
}

constexpr char kHomeCopperRow[] = R"(
"CABLE","Kestrel",0x5a1,"KC7-N01A5","KS2513VS08812","B3",
0,"NA","NA",0,0,0,2,
0x1e,"QSFP_CMIS",0x23,10,127,
"1.5 m","NA","1.5 m","Copper cable- unequalized","SDR/DDR/QDR/FDR/EDR/HDR/NDR","NA",
1,53,
"NA","NA","NA",
"NA","NA","NA","NA","NA",
"NA",
4,6,8,13,"NA",
0,
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
"0uV",
0x0a,0,0,0,0,
64,
"NA","NA","NA","NA",
"0uV","0uV","0uV","0uV",
"NA","NA","NA","NA","NA","NA",
25-03-27,0x3937,
0,0,0,0,
0x0,0x0,
"NA","NA","NA")";

constexpr char kHomeCopperBlock[] = R"(Source: CABLE
Identifier: QSFP_CMIS (0x1e)
Vendor: Kestrel
OUI: 0x5a1
PN: KC7-N01A5
SN: KS2513VS08812
Rev: B3
Length: 1.5 m
Length by PRTL: NA
 Length by Reg: 1.5 m
Type: Copper cable- unequalized
SupportedSpeed: SDR/DDR/QDR/FDR/EDR/HDR/NDR
Temperature: N/A
PowerClass: 1
NominalBitrate: 53 Gb/s
CDREnableTxRx: N/A N/A
InputEq: N/A
OutputAmp: N/A
OutputEmp: N/A
FW Version: N/A
Attenuation(2.5,5,7,12): 4 6 8 13
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x00
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning: 0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 0uV
Transmitter Technology: 0xa0
Extended Specification Compliance Codes: 0x40
AlarmTemperatureHighThresh: N/A
AlarmTemperatureLowThresh: N/A
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 0uV
AlarmVoltageLowThresh: 0uV
WarnVoltageHighThresh: 0uV
WarnVoltageLowThresh: 0uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 25-03-27
Lot: 0x3937
TX Adaptive Equalization Freeze: 0x00
RX Output Disable: 0x0
TX Adaptive Equalization Enable: 0x0
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kForeignCopperRow[] = R"(
"CABLE","Harbour Cable Co",0x2c7a9,"HC-DD-3M","HC98-00417","NA",
0,"NA","NA",0,0,0,3,
0x18,"QSFP-DD",0x21,10,60,
"2.8 m","2.8 m","3 m","Copper cable- unequalized","QDR/FDR/EDR/HDR","NA",
1,103,
"NA","NA","NA",
"NA","NA","NA","NA","NA",
"NA",
7,10,12,17,"NA",
0,
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
"0uV",
0x0a,0,0,0,0,
13,
"NA","NA","NA","NA",
"0uV","0uV","0uV","0uV",
"NA","NA","NA","NA","NA","NA",
N/A,0x0000,
0,0,0,0,
0x0,0x0,
"NA","NA","NA")";

constexpr char kForeignCopperBlock[] = R"(Source: CABLE
Identifier: QSFP-DD (0x18)
Vendor: Harbour Cable Co
OUI: 0x2c7a9
PN: HC-DD-3M
SN: HC98-00417
Rev: NA
Length: 2.8 m
Length by PRTL: 2.8 m
 Length by Reg: 3 m
Type: Copper cable- unequalized
SupportedSpeed: QDR/FDR/EDR/HDR
Temperature: N/A
PowerClass: 1
NominalBitrate: 103 Gb/s
CDREnableTxRx: N/A N/A
InputEq: N/A
OutputAmp: N/A
OutputEmp: N/A
FW Version: N/A
Attenuation(2.5,5,7,12): 7 10 12 17
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x00
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning: 0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 0uV
Transmitter Technology: 0xa0
Extended Specification Compliance Codes: 0x0d
AlarmTemperatureHighThresh: N/A
AlarmTemperatureLowThresh: N/A
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 0uV
AlarmVoltageLowThresh: 0uV
WarnVoltageHighThresh: 0uV
WarnVoltageLowThresh: 0uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: N/A
Lot: 0x0000
TX Adaptive Equalization Freeze: 0x00
RX Output Disable: 0x0
TX Adaptive Equalization Enable: 0x0
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kActiveCableRow[] = R"(
"CABLE","Norden Links",0x90d1b,"NL-ACC-15","NL15A2207","02",
0,"NA","NA",0,0,0,15,
0x11,"QSFP28",0x23,12,31,
"15 m","NA","15 m","Copper cable- near and far end limiting active equalizers",
"SDR/DDR/QDR/FDR/EDR","38C",
2,26,
0xf7,"NA","NA",
5566,1223,0180,"NA","NA",
"NA",
"NA","NA","NA","NA","NA",
0,
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
1.500,1.250,1.750,1.625,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
"3241000uV",
0x0c,0,0,0,0,
8,
"75C","-10C","70C","-5C",
"3600000uV","3000000uV","3500000uV","3100000uV",
"NA","NA","NA","NA","NA","NA",
23-11-09,0x0007,
0,0,1,0,
0x0,0xf,
"NA","NA","NA")";

constexpr char kActiveCableBlock[] = R"(Source: CABLE
Identifier: QSFP28 (0x11)
Vendor: Norden Links
OUI: 0x90d1b
PN: NL-ACC-15
SN: NL15A2207
Rev: 02
Length: 15 m
Length by PRTL: NA
 Length by Reg: 15 m
Type: Copper cable- near and far end limiting active equalizers
SupportedSpeed: SDR/DDR/QDR/FDR/EDR
Temperature: 38C
PowerClass: 2
NominalBitrate: 26 Gb/s
CDREnableTxRx: 0xf N/A
InputEq: 5 5 6 6
OutputAmp: 1 2 2 3
OutputEmp: 0 1 8 0
FW Version: N/A
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 1.500 mA
TX2 Bias: 1.250 mA
TX3 Bias: 1.750 mA
TX4 Bias: 1.625 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x00
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning: 0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 3241000uV
Transmitter Technology: 0xc0
Extended Specification Compliance Codes: 0x08
AlarmTemperatureHighThresh: 75C
AlarmTemperatureLowThresh: -10C
WarnTemperatureHighThresh: 70C
WarnTemperatureLowThresh: -5C
AlarmVoltageHighThresh: 3600000uV
AlarmVoltageLowThresh: 3000000uV
WarnVoltageHighThresh: 3500000uV
WarnVoltageLowThresh: 3100000uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 23-11-09
Lot: 0x0007
TX Adaptive Equalization Freeze: 0x02
RX Output Disable: 0x0
TX Adaptive Equalization Enable: 0xf
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kHomeMultiModeRow[] = R"(
"CABLE","Kestrel",0x5a1,"KM2-H50","KS2451FT10093","A4",
0,"NA","NA",35,20,11,50,
0x11,"QSFP28",0x0c,0,48,
"27.4 m","27.4 m","50 m","850 nm VCSEL","EDR/HDR","49C",
5,53,
0xff,"NA","NA",
2a2b,3132,0102,"NA","NA",
38.100.121,
"NA","NA","NA","NA","NA",
1,
1.000,0.812,0.042,1.188,"NA","NA","NA","NA",
6.750,6.875,6.500,7.000,"NA","NA","NA","NA",
0.938,1.062,0.875,1.250,"NA","NA","NA","NA",
1,0,0,0,0,1,0,0,
0,0,0,1,
0,0,1,0,1,0,0,0,
0,0,0,0,1,
0,0,0,0,
0,0,0,0,0,0,0,1,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
"3310400uV",
0x00,0,0,1,0,
2,
"80C","-5C","76C","0C",
"3500000uV","3100000uV","3450000uV","3150000uV",
"NA","NA","NA","NA","NA","NA",
24-12-18,0xbeef,
0,0,0,0,
0x1,0xe,
"NA","NA","NA")";

constexpr char kHomeMultiModeBlock[] = R"(Source: CABLE
Identifier: QSFP28 (0x11)
Vendor: Kestrel
OUI: 0x5a1
PN: KM2-H50
SN: KS2451FT10093
Rev: A4
Length: 27.4 m
Length by PRTL: 27.4 m
 Length by Reg: 50 m
Type: 850 nm VCSEL
SupportedSpeed: EDR/HDR
Temperature: 49C
PowerClass: 5
NominalBitrate: 53 Gb/s
CDREnableTxRx: 0xf 0xf
InputEq: 2 10 2 11
OutputAmp: 3 1 3 2
OutputEmp: 0 1 0 2
FW Version: 38.100.121
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: Average Power
RX1 Power: 1.000 mW, 0.000 dBm
RX2 Power: 0.812 mW, -0.902 dBm
RX3 Power: 0.042 mW, -13.799 dBm
RX4 Power: 1.188 mW, 0.746 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 6.750 mA
TX2 Bias: 6.875 mA
TX3 Bias: 6.500 mA
TX4 Bias: 7.000 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.938 mW, -0.280 dBm
TX2 Power: 1.062 mW, 0.263 dBm
TX3 Power: 0.875 mW, -0.580 dBm
TX4 Power: 1.250 mW, 0.969 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x21
Latched Adaptive Equalization Fault: 0x80
Latched  TX / RX LOL Indicator: 0x14
Latched Temperature Alarm and Warning: 0x01
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0100
TX Bias Alarm and Warning: 0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 3310400uV
Transmitter Technology: 0x02
Extended Specification Compliance Codes: 0x02
AlarmTemperatureHighThresh: 80C
AlarmTemperatureLowThresh: -5C
WarnTemperatureHighThresh: 76C
WarnTemperatureLowThresh: 0C
AlarmVoltageHighThresh: 3500000uV
AlarmVoltageLowThresh: 3100000uV
WarnVoltageHighThresh: 3450000uV
WarnVoltageLowThresh: 3150000uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 24-12-18
Lot: 0xbeef
TX Adaptive Equalization Freeze: 0x00
RX Output Disable: 0x1
TX Adaptive Equalization Enable: 0xe
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kForeignSingleModeRow[] = R"(
"CABLE","Fjord Photonics",0x5A1,"FP-800-FR4","FP0099137","1C",
10,"NA","NA",0,0,0,0,
0x19,"OSFP",0x07,6,96,
"10 km","NA","10 km","1310 nm EML","HDR/NDR","-3C",
7,106,
0xc,"NA","NA",
0000,ffff,7008,"NA","NA",
"NA",
"NA","NA","NA","NA","NA",
0,
0.250,0.312,0.200,0.400,"NA","NA","NA","NA",
61.500,59.875,60.250,62.125,"NA","NA","NA","NA",
2.000,2.500,1.600,3.200,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
0,0,0,1,1,
0,1,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,1,0,0,0,
"3002000uV",
0x06,1,1,0,1,
37,
"78C","-8C","71C","-1C",
"3650000uV","3003000uV","3490000uV","3110000uV",
"NA","NA","NA","NA","NA","NA",
24-07-,0x0a0b,
1,1,0,0,
0xa,0x0,
"NA","NA","NA")";

constexpr char kForeignSingleModeBlock[] = R"(Source: CABLE
Identifier: OSFP (0x19)
Vendor: Fjord Photonics
OUI: 0x5A1
PN: FP-800-FR4
SN: FP0099137
Rev: 1C
Length: 10 km
Length by PRTL: NA
 Length by Reg: 10 km
Type: 1310 nm EML
SupportedSpeed: HDR/NDR
Temperature: -3C
PowerClass: 7
NominalBitrate: 106 Gb/s
CDREnableTxRx: N/A 0xc
InputEq: 0 0 0 0
OutputAmp: 15 15 15 15
OutputEmp: 7 0 0 8
FW Version: N/A
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: OMA
RX1 Power: 0.250 mW, -6.021 dBm
RX2 Power: 0.312 mW, -5.051 dBm
RX3 Power: 0.200 mW, -6.990 dBm
RX4 Power: 0.400 mW, -3.979 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 61.500 mA
TX2 Bias: 59.875 mA
TX3 Bias: 60.250 mA
TX4 Bias: 62.125 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 2.000 mW, 3.010 dBm
TX2 Power: 2.500 mW, 3.979 dBm
TX3 Power: 1.600 mW, 2.041 dBm
TX4 Power: 3.200 mW, 5.051 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x11
Latched Voltage Alarm and Warning: 0x40
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning: 0x4000
TX Power Alarm and Warning: 0x0008
Supply Voltage Reporting: 3002000uV
Transmitter Technology: 0x6d
Extended Specification Compliance Codes: 0x25
AlarmTemperatureHighThresh: 78C
AlarmTemperatureLowThresh: -8C
WarnTemperatureHighThresh: 71C
WarnTemperatureLowThresh: -1C
AlarmVoltageHighThresh: 3650000uV
AlarmVoltageLowThresh: 3003000uV
WarnVoltageHighThresh: 3490000uV
WarnVoltageLowThresh: 3110000uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 24-07-
Lot: 0x0a0b
TX Adaptive Equalization Freeze: 0x0c
RX Output Disable: 0xa
TX Adaptive Equalization Enable: 0x0
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kDarkModuleRow[] = R"(
"CABLE","Meridian Photonics and Fibre Works",0xc0ffee,"MPF-100G-ER4-EXTENDED-TEMPERATURE",
"MPF2409B0001733-CALIBRATED-AT-SITE","1A",
40,"NA","NA",0,0,0,0,
0x11,"QSFP28",0x0c,7,127,
"40 km","NA","40 km","1550 nm EML","SDR/DDR/QDR/FDR/EDR/HDR/NDR","23C",
6,103,
0x0,"NA","NA",
fedc,ba98,7654,"NA","NA",
"NA",
"NA","NA","NA","NA","NA",
0,
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
1,1,1,1,1,1,1,1,
1,1,1,1,
1,1,1,1,1,1,1,1,
0,1,0,1,1,
1,0,0,1,
0,1,0,1,0,1,0,1,0,1,0,1,0,1,0,1,
0,1,0,1,0,1,0,1,0,1,0,0,0,1,0,1,
0,1,0,1,0,1,0,1,0,0,0,1,0,1,0,1,
"2965000uV",
0x07,1,0,1,0,
0,
"125C","-40C","NA","NA",
"3640000uV","2970000uV","3470000uV","3130000uV",
"NA","NA","NA","NA","NA","NA",
24-09-12,0x2b2c,
0,1,1,0,
0xf,0x0,
"NA","NA","NA")";

constexpr char kDarkModuleBlock[] = R"(Source: CABLE
Identifier: QSFP28 (0x11)
Vendor: Meridian Photonics and Fibre Works
OUI: 0xc0ffee
PN: MPF-100G-ER4-EXTENDED-TEMPERATURE
SN: MPF2409B0001733-CALIBRATED-AT-SITE
Rev: 1A
Length: 40 km
Length by PRTL: NA
 Length by Reg: 40 km
Type: 1550 nm EML
SupportedSpeed: SDR/DDR/QDR/FDR/EDR/HDR/NDR
Temperature: 23C
PowerClass: 6
NominalBitrate: 103 Gb/s
CDREnableTxRx: 0x0 0x0
InputEq: 15 14 13 12
OutputAmp: 11 10 9 8
OutputEmp: 7 6 5 4
FW Version: N/A
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0xff
Latched Adaptive Equalization Fault: 0xf0
Latched  TX / RX LOL Indicator: 0xff
Latched Temperature Alarm and Warning: 0x51
Latched Voltage Alarm and Warning: 0x90
RX Power Alarm and Warning: 0x5555
TX Bias Alarm and Warning: 0x5545
TX Power Alarm and Warning: 0x5515
Supply Voltage Reporting: 2965000uV
Transmitter Technology: 0x7a
Extended Specification Compliance Codes: 0x00
AlarmTemperatureHighThresh: 125C
AlarmTemperatureLowThresh: -40C
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 3640000uV
AlarmVoltageLowThresh: 2970000uV
WarnVoltageHighThresh: 3470000uV
WarnVoltageLowThresh: 3130000uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 24-09-12
Lot: 0x2b2c
TX Adaptive Equalization Freeze: 0x06
RX Output Disable: 0xf
TX Adaptive Equalization Enable: 0x0
OutputPreEmp: N/A
OutputPos)";

constexpr char kFailedQueryRow[] = R"(
"CABLE","NA",NA,"NA","NA","NA",
0,"NA","NA",0,0,0,0,
0x00,"NA",0x00,0,0,
"NA","NA","NA","NA - Address / size  is invalid. ((addr+size)>255) or size>48 or size==0","NA",
"0C",
0,0,
0x0,"NA","NA",
0000,0000,0000,"NA","NA",
"NA",
"NA","NA","NA","NA","NA",
0,
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0.000,0.000,0.000,0.000,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
"0uV",
0x00,0,0,0,0,
0,
"0C","0C","0C","0C",
"0uV","0uV","0uV","0uV",
"NA","NA","NA","NA","NA","NA",
N/A,0x0000,
0,0,0,0,
0x0,0x0,
"NA","NA","NA")";

constexpr char kFailedQueryBlock[] = R"(Source: CABLE
Identifier: NA (0x00)
Vendor: NA
OUI: NA
PN: NA
SN: NA
Rev: NA
Length: NA
Length by PRTL: NA
 Length by Reg: NA
Type: NA - Address / size  is invalid. ((addr+size)>255) or size>48 or size==0
SupportedSpeed: NA
Temperature: 0C
PowerClass: 0
NominalBitrate: 0 Gb/s
CDREnableTxRx: N/A N/A
InputEq: 0 0 0 0
OutputAmp: 0 0 0 0
OutputEmp: 0 0 0 0
FW Version: N/A
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x00
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning: 0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 0uV
Transmitter Technology: 0x00
Extended Specification Compliance Codes: 0x00
AlarmTemperatureHighThresh: 0C
AlarmTemperatureLowThresh: 0C
WarnTemperatureHighThresh: 0C
WarnTemperatureLowThresh: 0C
AlarmVoltageHighThresh: 0uV
AlarmVoltageLowThresh: 0uV
WarnVoltageHighThresh: 0uV
WarnVoltageLowThresh: 0uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: N/A
Lot: 0x0000
TX Adaptive Equalization Freeze: 0x00
RX Output Disable: 0x0
TX Adaptive Equalization Enable: 0x0
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

constexpr char kHotModuleRow[] = R"(
"CABLE","Sable Photon",0x77e0d,"SP-FDR-SR4","KS7XY7","C",
0,"NA","NA",0,82,33,0,
0x0d,"QSFP+",0x0c,3,15,
"82 m","NA","82 m","1310 nm FP","SDR/DDR/QDR/FDR","93C",
3,14,
0x30,"NA","NA",
000f,00f0,0f00,"NA","NA",
"NA",
"NA","NA","NA","NA","NA",
0,
5.000,0.500,0.625,0.700,"NA","NA","NA","NA",
9.250,131.000,9.500,9.375,"NA","NA","NA","NA",
0.750,0.700,6.250,10.000,"NA","NA","NA","NA",
0,0,0,0,0,0,0,0,
0,0,0,0,
0,0,0,0,0,0,0,0,
1,0,1,0,1,
1,0,1,0,
1,0,1,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,1,0,1,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,1,0,1,0,0,0,0,1,
"3750000uV",
0x03,0,1,0,1,
1,
"92C","-30C","85C","-20C",
"3700000uV","2900000uV","3600000uV","3050000uV",
"NA","NA","NA","NA","NA","NA",
16-06-30,0x0012,
0,0,0,1,
0x3,0xc,
"NA","NA","NA")";

constexpr char kHotModuleBlock[] = R"(Source: CABLE
Identifier: QSFP+ (0x0d)
Vendor: Sable Photon
OUI: 0x77e0d
PN: SP-FDR-SR4
SN: KS7XY7
Rev: C
Length: 82 m
Length by PRTL: NA
 Length by Reg: 82 m
Type: 1310 nm FP
SupportedSpeed: SDR/DDR/QDR/FDR
Temperature: 93C
PowerClass: 3
NominalBitrate: 14 Gb/s
CDREnableTxRx: 0x3 0x0
InputEq: 0 0 0 15
OutputAmp: 0 0 15 0
OutputEmp: 0 15 0 0
FW Version: N/A
Attenuation(2.5,5,7,12): N/A N/A N/A N/A
RX power type: OMA
RX1 Power: 5.000 mW, 6.990 dBm
RX2 Power: 0.500 mW, -3.010 dBm
RX3 Power: 0.625 mW, -2.041 dBm
RX4 Power: 0.700 mW, -1.549 dBm
RX5 Power: N/A N/A
RX6 Power: N/A N/A
RX7 Power: N/A N/A
RX8 Power: N/A N/A
TX1 Bias: 9.250 mA
TX2 Bias: 131.000 mA
TX3 Bias: 9.500 mA
TX4 Bias: 9.375 mA
TX5 Bias: N/A mA
TX6 Bias: N/A mA
TX7 Bias: N/A mA
TX8 Bias: N/A mA
TX1 Power: 0.750 mW, -1.249 dBm
TX2 Power: 0.700 mW, -1.549 dBm
TX3 Power: 6.250 mW, 7.959 dBm
TX4 Power: 10.000 mW, 10.000 dBm
TX5 Power: N/A N/A
TX6 Power: N/A N/A
TX7 Power: N/A N/A
TX8 Power: N/A N/A
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0xa1
Latched Voltage Alarm and Warning: 0xa0
RX Power Alarm and Warning: 0xa000
TX Bias Alarm and Warning: 0x0a00
TX Power Alarm and Warning: 0x00a1
Supply Voltage Reporting: 3750000uV
Transmitter Technology: 0x35
Extended Specification Compliance Codes: 0x01
AlarmTemperatureHighThresh: 92C
AlarmTemperatureLowThresh: -30C
WarnTemperatureHighThresh: 85C
WarnTemperatureLowThresh: -20C
AlarmVoltageHighThresh: 3700000uV
AlarmVoltageLowThresh: 2900000uV
WarnVoltageHighThresh: 3600000uV
WarnVoltageLowThresh: 3050000uV
RXPowerHighThresh: N/A
RXPowerLowThresh: N/A
TXPowerHighThresh: N/A
TXPowerLowThresh: N/A
TXBiasHighThresh: N/A
TXBiasLowThresh: N/A
DateCode: 16-06-30
Lot: 0x0012
TX Adaptive Equalization Freeze: 0x01
RX Output Disable: 0x3
TX Adaptive Equalization Enable: 0xc
OutputPreEmp: N/A
OutputPostEmp: N/A
)";

enum class Kind { kPassiveCable, kActiveCable, kModule };

struct Port {
  const char* name;
  CableRecord (*make)();
  Kind kind;
  bool optic;
  bool home_multi_mode;
  cable_id_t id;
  std::uint32_t temperature_alarms;
  std::uint32_t temperature_errors;
  const char* row;
  const char* block;
};

void PrintTo(const Port& port, std::ostream* os) { *os << port.name; }

namespace ports = cable_record_ports;

const Port kPorts[] = {
    {"HomeCopper",
     ports::HomeCopper,
     Kind::kPassiveCable,
     false,
     false,
     {"KC7-N01A5", "QSFP_CMIS", "VS", "B3"},
     0,
     0,
     kHomeCopperRow,
     kHomeCopperBlock},
    {"ForeignCopper",
     ports::ForeignCopper,
     Kind::kPassiveCable,
     false,
     false,
     {"HC-DD-3M", "QSFP-DD", "", ""},
     0,
     0,
     kForeignCopperRow,
     kForeignCopperBlock},
    {"ActiveCable",
     ports::ActiveCable,
     Kind::kActiveCable,
     false,
     false,
     {"NL-ACC-15", "QSFP28", "", "02"},
     0,
     0,
     kActiveCableRow,
     kActiveCableBlock},
    {"HomeMultiMode",
     ports::HomeMultiMode,
     Kind::kModule,
     true,
     true,
     {"KM2-H50", "QSFP28", "FT", "A4"},
     0,
     0,
     kHomeMultiModeRow,
     kHomeMultiModeBlock},
    {"ForeignSingleMode",
     ports::ForeignSingleMode,
     Kind::kModule,
     true,
     false,
     {"FP-800-FR4", "OSFP", "", "1C"},
     0b1000,
     0,
     kForeignSingleModeRow,
     kForeignSingleModeBlock},
    {"DarkModule",
     ports::DarkModule,
     Kind::kModule,
     true,
     false,
     {"MPF-100G-ER4-EXTENDED-TEMPERATURE", "QSFP28", "", "1A"},
     0b1010,
     0,
     kDarkModuleRow,
     kDarkModuleBlock},
    {"FailedQuery",
     ports::FailedQuery,
     Kind::kModule,
     false,
     false,
     {"", "", "", ""},
     0,
     0,
     kFailedQueryRow,
     kFailedQueryBlock},
    {"HotModule",
     ports::HotModule,
     Kind::kModule,
     true,
     false,
     {"SP-FDR-SR4", "QSFP+", "XY", "C"},
     0b0101,
     0b01,
     kHotModuleRow,
     kHotModuleBlock},
};

class CableRecordPort : public testing::TestWithParam<Port> {
 protected:
  const CableRecord record_ = GetParam().make();
};

TEST_P(CableRecordPort, HasItsRow) {
  EXPECT_EQ(Written([&](std::ostream& os) { record_.ToCSVStream(os); }), OneLine(GetParam().row));
}

TEST_P(CableRecordPort, HasItsBlock) {
  EXPECT_EQ(Written([&](std::ostream& os) { record_.ToFileStream(os); }), GetParam().block);
}

TEST_P(CableRecordPort, IsOfItsKind) {
  const Kind kind = GetParam().kind;
  EXPECT_EQ(record_.IsPassiveCable(), kind == Kind::kPassiveCable);
  EXPECT_EQ(record_.IsActiveCable(), kind == Kind::kActiveCable);
  EXPECT_EQ(record_.IsModule(), kind == Kind::kModule);
  EXPECT_EQ(record_.IsOpticCable(), GetParam().optic);
  EXPECT_EQ(record_.IsKestMmf(), GetParam().home_multi_mode);
  EXPECT_FALSE(record_.IsKestPsm());
}

TEST_P(CableRecordPort, HasItsIdentity) {
  const cable_id_t id = record_.GetIdObj();
  EXPECT_EQ(id.pn, GetParam().id.pn);
  EXPECT_EQ(id.identifier, GetParam().id.identifier);
  EXPECT_EQ(id.vendor, GetParam().id.vendor);
  EXPECT_EQ(id.revision, GetParam().id.revision);
}

TEST_P(CableRecordPort, ReportsItsTemperatureAlarms) {
  EXPECT_EQ(record_.GetTemperatureAlarms(), GetParam().temperature_alarms);
  EXPECT_EQ(record_.GetTemperatureErrorsByTreshold(), GetParam().temperature_errors);
}

INSTANTIATE_TEST_SUITE_P(Fabric, CableRecordPort, testing::ValuesIn(kPorts),
                         [](const auto& port) { return std::string(port.param.name); });

}  // namespace
}  // namespace cable_info::test
