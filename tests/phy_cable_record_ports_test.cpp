#include "phy_cable_record_ports.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/combined_cable_info.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

struct Port {
  std::string_view name;
  std::unique_ptr<PhyCableRecord> (*make)();
  // Wrapped for readability; begins and ends with a line break, like the report.
  std::string_view row;
  std::string_view report;

  friend void PrintTo(const Port& port, std::ostream* os) { *os << port.name; }
};

constexpr Port kPorts[] = {
    {"ActiveQsfpDd", ports::ActiveQsfpDd, R"(
"PHY","Copperworks, Inc",0xa0b0c0,"CW-400-7M","KS2440CW0815","0-3",0,0,0,0,0,0,71,0x06,"QSFP-DD",
0x23,12,96,"6.9 m","6.9 m","7 m","Copper cable- near and far end limiting active equalizers",
"HDR/NDR","44C",2,53000,"NA",0xff,0x7f,11111111,22222222,"NA",04040404,1f1f1f1f,2.3.17,"NA","NA",
"NA","NA","NA",0,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,
0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,"NA",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,
0,0,0,0,0,0,0,0,0,0,0,0,0,0,"3304500uV",0x0c,0,0,1,1,50,"75C","-5C","NA","NA","3630000uV",
"2970000uV","NA","NA",34674,500,34674,1000,6000,1500,24-10-31,0x0007,"NA","NA","NA","NA","NA",
"NA",1.75 W,11,0
)",
     R"(
Source: PHY
Identifier: QSFP-DD (0x06)
Vendor: Copperworks, Inc
OUI: 0xa0b0c0
PN: CW-400-7M
SN: KS2440CW0815
Rev: 0-3
Length: 6.9 m
Length by PRTL: 6.9 m
Length by Reg: 7 m
Type: Copper cable- near and far end limiting active equalizers
SupportedSpeed: HDR/NDR
Temperature: 44C
PowerClass: 2
NominalBitrate: 53 Gb/s
CDREnableTxRx: 0xff 0x7f
InputEq: 17 17 17 17
OutputAmp: 34 34 34 34
OutputEmp: N/A
FW Version: 2.3.17
Attenuation(5,7,12,25): NA NA NA NA
RX power type: OMA
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: 0.000 mW, -999.999 dBm
RX6 Power: 0.000 mW, -999.999 dBm
RX7 Power: 0.000 mW, -999.999 dBm
RX8 Power: 0.000 mW, -999.999 dBm
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: 0.000 mA
TX6 Bias: 0.000 mA
TX7 Bias: 0.000 mA
TX8 Bias: 0.000 mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: 0.000 mW, -999.999 dBm
TX6 Power: 0.000 mW, -999.999 dBm
TX7 Power: 0.000 mW, -999.999 dBm
TX8 Power: 0.000 mW, -999.999 dBm
CDR Latched TX/RX Loss Indicator: 0x00
Latched Adaptive Equalization Fault: 0x00
Latched  TX / RX LOL Indicator: 0x00
Latched Temperature Alarm and Warning: 0x00
Latched Voltage Alarm and Warning: 0x00
RX Power Alarm and Warning: 0x0000
TX Bias Alarm and Warning:  0x0000
TX Power Alarm and Warning: 0x0000
Supply Voltage Reporting: 3304500uV
Transmitter Technology: 0x0c
Extended Specification Compliance Codes: 0x32
AlarmTemperatureHighThresh: 75C
AlarmTemperatureLowThresh: -5C
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 3630000uV
AlarmVoltageLowThresh: 2970000uV
WarnVoltageHighThresh: N/A
WarnVoltageLowThresh: N/A
RXPowerHighThresh: 34674
RXPowerLowThresh: 500
TXPowerHighThresh: 34674
TXPowerLowThresh: 1000
TXBiasHighThresh: 6000
TXBiasLowThresh: 1500
DateCode: 24-10-31
Lot: 0x0007
TX Adaptive Equalization Freeze: N/A
RX Output Disable: N/A
TX Adaptive Equalization Enable: N/A
OutputPreEmp: 4 4 4 4
OutputPostEmp: 31 31 31 31
)"},
    {"SingleModeQsfp28", ports::SingleModeQsfp28, R"(
"PHY","Acme Optics",0x1b21,"AO-100-LR4","AO2403L0008","AB",10,0,0,0,0,0,0,0x00,"QSFP28",0x07,6,31,
NA,NA,NA,"1310 nm EML","SDR/DDR/QDR/FDR/EDR","-7C",4,25000,"NA",0x0e,0x0f,03030303,02020202,"NA",
01010101,00000000,"NA","NA","NA","NA","NA","NA",1,1.104,1.087,1.132,1.095,0.000,0.000,0.000,0.000,
38.214,37.902,38.550,38.072,0.000,0.000,0.000,0.000,1.412,1.396,1.433,1.401,0.000,0.000,0.000,
0.000,"NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA",
"NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA",
"NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA",
"NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA","NA",
"NA","NA","3287000uV",0x06,1,0,1,1,3,"NA","-5C","NA","NA","3630000uV","2970000uV","NA","NA",34674,
500,34674,1000,6000,1500,24-04-09,0x4142,"NA","NA","NA","NA","NA","NA",3.5 W,2,10000
)",
     R"(
Source: PHY
Identifier: QSFP28 (0x00)
Vendor: Acme Optics
OUI: 0x1b21
PN: AO-100-LR4
SN: AO2403L0008
Rev: AB
Length: NA
Length by PRTL: NA
Length by Reg: NA
Type: 1310 nm EML
SupportedSpeed: SDR/DDR/QDR/FDR/EDR
Temperature: -7C
PowerClass: 4
NominalBitrate: 25 Gb/s
CDREnableTxRx: 0x0e N/A
InputEq: 3 3 3 3
OutputAmp: 2 2 2 2
OutputEmp: N/A
FW Version: N/A
Attenuation(5,7,12,25): NA NA NA NA
RX power type: Average Power
RX1 Power: 1.104 mW, 0.430 dBm
RX2 Power: 1.087 mW, 0.362 dBm
RX3 Power: 1.132 mW, 0.538 dBm
RX4 Power: 1.095 mW, 0.394 dBm
RX5 Power: 0.000 mW, -999.999 dBm
RX6 Power: 0.000 mW, -999.999 dBm
RX7 Power: 0.000 mW, -999.999 dBm
RX8 Power: 0.000 mW, -999.999 dBm
TX1 Bias: 38.214 mA
TX2 Bias: 37.902 mA
TX3 Bias: 38.550 mA
TX4 Bias: 38.072 mA
TX5 Bias: 0.000 mA
TX6 Bias: 0.000 mA
TX7 Bias: 0.000 mA
TX8 Bias: 0.000 mA
TX1 Power: 1.412 mW, 1.498 dBm
TX2 Power: 1.396 mW, 1.449 dBm
TX3 Power: 1.433 mW, 1.562 dBm
TX4 Power: 1.401 mW, 1.464 dBm
TX5 Power: 0.000 mW, -999.999 dBm
TX6 Power: 0.000 mW, -999.999 dBm
TX7 Power: 0.000 mW, -999.999 dBm
TX8 Power: 0.000 mW, -999.999 dBm
CDR Latched TX/RX Loss Indicator: N/A
Latched Adaptive Equalization Fault: N/A
Latched  TX / RX LOL Indicator: N/A
Latched Temperature Alarm and Warning: N/A
Latched Voltage Alarm and Warning: N/A
RX Power Alarm and Warning: N/A
TX Bias Alarm and Warning:  N/A
TX Power Alarm and Warning: N/A
Supply Voltage Reporting: 3287000uV
Transmitter Technology: 0x6d
Extended Specification Compliance Codes: 0x03
AlarmTemperatureHighThresh: N/A
AlarmTemperatureLowThresh: -5C
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 3630000uV
AlarmVoltageLowThresh: 2970000uV
WarnVoltageHighThresh: N/A
WarnVoltageLowThresh: N/A
RXPowerHighThresh: 34674
RXPowerLowThresh: 500
TXPowerHighThresh: 34674
TXPowerLowThresh: 1000
TXBiasHighThresh: 6000
TXBiasLowThresh: 1500
DateCode: 24-04-09
Lot: 0x4142
TX Adaptive Equalization Freeze: N/A
RX Output Disable: N/A
TX Adaptive Equalization Enable: N/A
OutputPreEmp: 1 1 1 1
OutputPostEmp: 0 0 0 0
)"},
    {"DarkOsfp", ports::DarkOsfp, R"(
"","",0x0,"NA","NA","NA",0,0,0,0,0,0,192,0x08,"OSFP",0x0c,16,128,NA,NA,NA,"NA","NA","NA",4,0,"NA",
0x0f,0x0f,03030303,02020202,"NA",01010101,00000000,"NA","NA","NA","NA","NA","NA",1,0.000,0.000,
0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,0.000,
0.000,0.000,0.000,0.000,0.000,0.000,0,0,0,0,1,1,0,1,1,0,0,1,1,1,1,0,0,1,1,1,1,0,1,0,"NA",0,1,0,1,
0,1,0,1,0,1,0,1,0,1,0,1,0,1,0,1,0,0,0,0,0,1,0,0,0,1,0,0,0,0,0,0,1,0,0,0,0,0,0,0,0,1,0,0,0,1,0,1,
"2899900uV",0x10,0,0,0,0,0,"75C","-5C","NA","NA","3630000uV","2970000uV","NA","NA",34674,500,
34674,1000,6000,1500,N/A,0x4142,"NA","NA","NA","NA","NA","NA","NA",2,0
)",
     R"(
Source: 
Identifier: OSFP (0x08)
Vendor: 
OUI: 0x0
PN: NA
SN: NA
Rev: NA
Length: NA
Length by PRTL: NA
Length by Reg: NA
Type: N/A
SupportedSpeed: N/A
Temperature: N/A
PowerClass: 4
NominalBitrate: 0 Gb/s
CDREnableTxRx: N/A N/A
InputEq: 3 3 3 3
OutputAmp: 2 2 2 2
OutputEmp: N/A
FW Version: N/A
Attenuation(5,7,12,25): NA NA NA NA
RX power type: Average Power
RX1 Power: 0.000 mW, -999.999 dBm
RX2 Power: 0.000 mW, -999.999 dBm
RX3 Power: 0.000 mW, -999.999 dBm
RX4 Power: 0.000 mW, -999.999 dBm
RX5 Power: 0.000 mW, -999.999 dBm
RX6 Power: 0.000 mW, -999.999 dBm
RX7 Power: 0.000 mW, -999.999 dBm
RX8 Power: 0.000 mW, -999.999 dBm
TX1 Bias: 0.000 mA
TX2 Bias: 0.000 mA
TX3 Bias: 0.000 mA
TX4 Bias: 0.000 mA
TX5 Bias: 0.000 mA
TX6 Bias: 0.000 mA
TX7 Bias: 0.000 mA
TX8 Bias: 0.000 mA
TX1 Power: 0.000 mW, -999.999 dBm
TX2 Power: 0.000 mW, -999.999 dBm
TX3 Power: 0.000 mW, -999.999 dBm
TX4 Power: 0.000 mW, -999.999 dBm
TX5 Power: 0.000 mW, -999.999 dBm
TX6 Power: 0.000 mW, -999.999 dBm
TX7 Power: 0.000 mW, -999.999 dBm
TX8 Power: 0.000 mW, -999.999 dBm
CDR Latched TX/RX Loss Indicator: 0xb0
Latched Adaptive Equalization Fault: 0x09
Latched  TX / RX LOL Indicator: 0xe7
Latched Temperature Alarm and Warning: 0x05
Latched Voltage Alarm and Warning: 0x0a
RX Power Alarm and Warning: 0x5555
TX Bias Alarm and Warning:  0x0440
TX Power Alarm and Warning: 0x8045
Supply Voltage Reporting: 2899900uV
Transmitter Technology: 0x10
Extended Specification Compliance Codes: 0x00
AlarmTemperatureHighThresh: 75C
AlarmTemperatureLowThresh: -5C
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 3630000uV
AlarmVoltageLowThresh: 2970000uV
WarnVoltageHighThresh: N/A
WarnVoltageLowThresh: N/A
RXPowerHighThresh: 34674
RXPowerLowThresh: 500
TXPowerHighThresh: 34674
TXPowerLowThresh: 1000
TXBiasHighThresh: 6000
TXBiasLowThresh: 1500
DateCode: N/A
Lot: 0x4142
TX Adaptive Equalization Freeze: N/A
RX Output Disable: N/A
TX Adaptive Equalization Enable: N/A
OutputPreEmp: 1 1 1 1
OutputPostEmp: 0 0 0 0
)"},
    {"AllBitsSet", ports::AllBitsSet, R"(
"ones","ABCDEFGHIJKLMNOPQ",0xffffffff,"abcdefghijklmnopq","0123456789012345"","VWXYZ",65535,255,
255,255,255,255,255,0xff,"NA",0xff,15,255,"255 m",NA,"255 m",
"Copper cable- linear active equalizers","SDR/DDR/QDR/FDR/EDR/HDR/NDR","-1C",255,63000,"NA",0xff,
0xff,ffffffff,ffffffff,"NA",ffffffff,ffffffff,255.255.65535,"NA","NA","NA","NA","NA",255,6.554,
6.554,6.554,6.554,6.554,6.554,6.554,6.554,131.070,131.070,131.070,131.070,131.070,131.070,131.070,
131.070,6.554,6.554,6.554,6.554,6.554,6.554,6.554,6.554,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,
1,1,1,"NA",1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,
1,1,1,1,1,1,1,1,1,"6553500uV",0x0f,1,1,1,1,255,"-1C","-1C","NA","NA","6553500uV","6553500uV","NA",
"NA",65535,65535,65535,65535,65535,65535,N/A,0xffff,"NA","NA","NA","NA","NA","NA",63.75 W,255,
65535
)",
     R"(
Source: ones
Identifier: NA (0xff)
Vendor: ABCDEFGHIJKLMNOPQ
OUI: 0xffffffff
PN: abcdefghijklmnopq
SN: 0123456789012345"
Rev: VWXYZ
Length: 255 m
Length by PRTL: NA
Length by Reg: 255 m
Type: Copper cable- linear active equalizers
SupportedSpeed: SDR/DDR/QDR/FDR/EDR/HDR/NDR
Temperature: -1C
PowerClass: 255
NominalBitrate: 63 Gb/s
CDREnableTxRx: 0xff 0xff
InputEq: 255 255 255 255
OutputAmp: 255 255 255 255
OutputEmp: N/A
FW Version: 255.255.65535
Attenuation(5,7,12,25): NA NA NA NA
RX power type: Average Power
RX1 Power: 6.554 mW, 8.165 dBm
RX2 Power: 6.554 mW, 8.165 dBm
RX3 Power: 6.554 mW, 8.165 dBm
RX4 Power: 6.554 mW, 8.165 dBm
RX5 Power: 6.554 mW, 8.165 dBm
RX6 Power: 6.554 mW, 8.165 dBm
RX7 Power: 6.554 mW, 8.165 dBm
RX8 Power: 6.554 mW, 8.165 dBm
TX1 Bias: 131.070 mA
TX2 Bias: 131.070 mA
TX3 Bias: 131.070 mA
TX4 Bias: 131.070 mA
TX5 Bias: 131.070 mA
TX6 Bias: 131.070 mA
TX7 Bias: 131.070 mA
TX8 Bias: 131.070 mA
TX1 Power: 6.554 mW, 8.165 dBm
TX2 Power: 6.554 mW, 8.165 dBm
TX3 Power: 6.554 mW, 8.165 dBm
TX4 Power: 6.554 mW, 8.165 dBm
TX5 Power: 6.554 mW, 8.165 dBm
TX6 Power: 6.554 mW, 8.165 dBm
TX7 Power: 6.554 mW, 8.165 dBm
TX8 Power: 6.554 mW, 8.165 dBm
CDR Latched TX/RX Loss Indicator: 0xff
Latched Adaptive Equalization Fault: 0x0f
Latched  TX / RX LOL Indicator: 0xff
Latched Temperature Alarm and Warning: 0xff
Latched Voltage Alarm and Warning: 0xff
RX Power Alarm and Warning: 0xffff
TX Bias Alarm and Warning:  0xffff
TX Power Alarm and Warning: 0xffff
Supply Voltage Reporting: 6553500uV
Transmitter Technology: 0xff
Extended Specification Compliance Codes: 0xff
AlarmTemperatureHighThresh: -1C
AlarmTemperatureLowThresh: -1C
WarnTemperatureHighThresh: N/A
WarnTemperatureLowThresh: N/A
AlarmVoltageHighThresh: 6553500uV
AlarmVoltageLowThresh: 6553500uV
WarnVoltageHighThresh: N/A
WarnVoltageLowThresh: N/A
RXPowerHighThresh: 65535
RXPowerLowThresh: 65535
TXPowerHighThresh: 65535
TXPowerLowThresh: 65535
TXBiasHighThresh: 65535
TXBiasLowThresh: 65535
DateCode: N/A
Lot: 0xffff
TX Adaptive Equalization Freeze: N/A
RX Output Disable: N/A
TX Adaptive Equalization Enable: N/A
OutputPreEmp: 255 255 255 255
OutputPostEmp: 255 255 255 255
)"},
};

class PhyCableRecordPortTest : public testing::TestWithParam<Port> {
 protected:
  // Without the line breaks of the source file.
  static std::string ExpectedRow() {
    std::string row;
    for (const char c : GetParam().row) {
      if (c != '\n') row += c;
    }
    return row + '\n';
  }

  static std::string ExpectedReport() { return std::string(GetParam().report.substr(1)); }
};

TEST_P(PhyCableRecordPortTest, HasItsRow) {
  const auto record = GetParam().make();
  EXPECT_EQ(Written([&](std::ostream& os) { record->ToCSVStream(os); }), ExpectedRow());
}

TEST_P(PhyCableRecordPortTest, HasItsReport) {
  const auto record = GetParam().make();
  EXPECT_EQ(Written([&](std::ostream& os) { record->ToFileStream(os); }), ExpectedReport());
}

TEST_P(PhyCableRecordPortTest, ReadsTheSameThroughItsPort) {
  CombinedCableInfo port;
  port.AttachPhyCableRecord(GetParam().make());
  EXPECT_EQ(Written([&](std::ostream& os) { port.ToCSVStream(os); }), ExpectedRow());
  EXPECT_EQ(Written([&](std::ostream& os) { port.ToFileStream(os); }), ExpectedReport());
}

INSTANTIATE_TEST_SUITE_P(Fabric, PhyCableRecordPortTest, testing::ValuesIn(kPorts),
                         [](const auto& port) { return std::string(port.param.name); });

}  // namespace
}  // namespace cable_info::test
