#include "cable_info/module_memory/sff8024.h"

#include <algorithm>

namespace cable_info {

namespace {

// clang-format off
constexpr CodeName kIdentifiersEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "GBIC"},
    {0x02, "Module soldered to motherboard (SFF-8472)"},
    {0x03, "SFP/SFP+/SFP28 and later (SFF-8472)"},
    {0x04, "300 pin XBI"},
    {0x05, "XENPAK"},
    {0x06, "XFP"},
    {0x07, "XFF"},
    {0x08, "XFP-E"},
    {0x09, "XPAK"},
    {0x0A, "X2"},
    {0x0B, "DWDM-SFP/SFP+ (not SFF-8472)"},
    {0x0C, "QSFP"},
    {0x0D, "QSFP+ or later (SFF-8636/8436)"},
    {0x0E, "CXP or later"},
    {0x0F, "Shielded Mini Multilane HD 4X"},
    {0x10, "Shielded Mini Multilane HD 8X"},
    {0x11, "QSFP28 or later (SFF-8636)"},
    {0x12, "CXP2/CXP28 or later"},
    {0x13, "CDFP Style 1/2"},
    {0x14, "Shielded Mini Multilane HD 4X Fanout"},
    {0x15, "Shielded Mini Multilane HD 8X Fanout"},
    {0x16, "CDFP Style 3"},
    {0x17, "microQSFP"},
    {0x18, "QSFP-DD"},
    {0x19, "OSFP"},
    {0x1A, "SFP-DD (SFP-DD MIS)"},
    {0x1B, "DSFP"},
    {0x1C, "x4 MiniLink/OcuLink"},
    {0x1D, "x8 MiniLink"},
    {0x1E, "QSFP+ or later with CMIS"},
    {0x1F, "SFP-DD with CMIS"},
    {0x20, "SFP+ and later with CMIS"},
    {0x21, "OSFP-XD with CMIS"},
    {0x22, "OIF-ELSFP with CMIS"},
    {0x23, "CDFP x4 PCIe with CMIS"},
    {0x24, "CDFP x8 PCIe with CMIS"},
    {0x25, "CDFP x16 PCIe with CMIS"},
    {0x26, "XPO"},
};

constexpr CodeName kSff8472EncodingsEntries[] = {
    {0x00, "Unspecified"},
    {0x01, "8B/10B"},
    {0x02, "4B/5B"},
    {0x03, "NRZ"},
    {0x04, "Manchester"},
    {0x05, "SONET Scrambled"},
    {0x06, "64B/66B"},
    {0x07, "256B/257B"},
    {0x08, "PAM4"},
};

constexpr CodeName kSff8636EncodingsEntries[] = {
    {0x00, "Unspecified"},
    {0x01, "8B/10B"},
    {0x02, "4B/5B"},
    {0x03, "NRZ"},
    {0x04, "SONET Scrambled"},
    {0x05, "64B/66B"},
    {0x06, "Manchester"},
    {0x07, "256B/257B"},
    {0x08, "PAM4"},
};

constexpr CodeName kConnectorsEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "SC"},
    {0x02, "FC Style 1 copper"},
    {0x03, "FC Style 2 copper"},
    {0x04, "BNC/TNC"},
    {0x05, "FC coax headers"},
    {0x06, "Fiber Jack"},
    {0x07, "LC"},
    {0x08, "MT-RJ"},
    {0x09, "MU"},
    {0x0A, "SG"},
    {0x0B, "Optical pigtail"},
    {0x0C, "MPO 1x12"},
    {0x0D, "MPO 2x16"},
    {0x20, "HSSDC II"},
    {0x21, "Copper pigtail"},
    {0x22, "RJ45"},
    {0x23, "No separable connector"},
    {0x24, "MXC 2x16"},
    {0x25, "CS"},
    {0x26, "SN"},
    {0x27, "MPO 2x12"},
    {0x28, "MPO 1x16"},
};

constexpr CodeName kExtendedComplianceEntries[] = {
    {0x00, "Unspecified"},
    {0x01, "100G AOC retimed or 25GAUI C2M AOC (BER 5e-5)"},
    {0x02, "100GBASE-SR4 or 25GBASE-SR"},
    {0x03, "100GBASE-LR4 or 25GBASE-LR"},
    {0x04, "100GBASE-ER4 or 25GBASE-ER"},
    {0x05, "100GBASE-SR10"},
    {0x06, "100G CWDM4"},
    {0x07, "100G PSM4 Parallel SMF"},
    {0x08, "100G ACC retimed or 25GAUI C2M ACC (BER 5e-5)"},
    {0x09, "Obsolete (100G CWDM4 without FEC)"},
    {0x0B, "100GBASE-CR4, 25GBASE-CR CA-25G-L or 50GBASE-CR2 RS-FEC"},
    {0x0C, "25GBASE-CR CA-25G-S or 50GBASE-CR2 BASE-R FEC"},
    {0x0D, "25GBASE-CR CA-25G-N or 50GBASE-CR2 no FEC"},
    {0x0E, "10 Mb/s Single Pair Ethernet"},
    {0x10, "40GBASE-ER4"},
    {0x11, "4 x 10GBASE-SR"},
    {0x12, "40G PSM4 Parallel SMF"},
    {0x13, "G959.1 P1I1-2D1"},
    {0x14, "G959.1 P1S1-2D2"},
    {0x15, "G959.1 P1L1-2D2"},
    {0x16, "10GBASE-T with SFI"},
    {0x17, "100G CLR4"},
    {0x18, "100G AOC retimed or 25GAUI C2M AOC (BER 1e-12)"},
    {0x19, "100G ACC retimed or 25GAUI C2M ACC (BER 1e-12)"},
    {0x1A, "100GE-DWDM2"},
    {0x1B, "100G 1550nm WDM"},
    {0x1C, "10GBASE-T Short Reach"},
    {0x1D, "5GBASE-T"},
    {0x1E, "2.5GBASE-T"},
    {0x1F, "40G SWDM4"},
    {0x20, "100G SWDM4"},
    {0x21, "100G PAM4 BiDi"},
    {0x22, "4WDM-10 MSA"},
    {0x23, "4WDM-20 MSA"},
    {0x24, "4WDM-40 MSA"},
    {0x25, "100GBASE-DR, CAUI-4"},
    {0x26, "100G-FR or 100GBASE-FR1, CAUI-4"},
    {0x27, "100G-LR or 100GBASE-LR1, CAUI-4"},
    {0x28, "100GBASE-SR1, CAUI-4"},
    {0x29, "100GBASE-SR1, 200GBASE-SR2 or 400GBASE-SR4"},
    {0x2A, "100GBASE-FR1 or 400GBASE-DR4-2"},
    {0x2B, "100GBASE-LR1"},
    {0x2C, "100G-LR1-20, CAUI-4"},
    {0x2D, "100G-ER1-30, CAUI-4"},
    {0x2E, "100G-ER1-40, CAUI-4"},
    {0x2F, "100G-LR1-20"},
    {0x30, "ACC 50GAUI/100GAUI-2/200GAUI-4 C2M (BER 1e-6)"},
    {0x31, "AOC 50GAUI/100GAUI-2/200GAUI-4 C2M (BER 1e-6)"},
    {0x32, "ACC 50GAUI/100GAUI-2/200GAUI-4 C2M (BER 2.6e-4)"},
    {0x33, "AOC 50GAUI/100GAUI-2/200GAUI-4 C2M (BER 2.6e-4)"},
    {0x34, "100G-ER1-30"},
    {0x35, "100G-ER1-40"},
    {0x36, "100GBASE-VR1, 200GBASE-VR2 or 400GBASE-VR4"},
    {0x37, "10GBASE-BR"},
    {0x38, "25GBASE-BR"},
    {0x39, "50GBASE-BR"},
    {0x3A, "100GBASE-VR1, CAUI-4"},
    {0x3F, "100GBASE-CR1, 200GBASE-CR2 or 400GBASE-CR4"},
    {0x40, "50GBASE-CR, 100GBASE-CR2 or 200GBASE-CR4"},
    {0x41, "50GBASE-SR, 100GBASE-SR2 or 200GBASE-SR4"},
    {0x42, "50GBASE-FR or 200GBASE-DR4"},
    {0x43, "200GBASE-FR4"},
    {0x44, "200G 1550nm PSM4"},
    {0x45, "50GBASE-LR"},
    {0x46, "200GBASE-LR4"},
    {0x47, "400GBASE-DR4, 400GAUI-4 C2M"},
    {0x48, "400GBASE-FR4"},
    {0x49, "400GBASE-LR4-6"},
    {0x4A, "50GBASE-ER"},
    {0x4B, "400G-LR4-10"},
    {0x4C, "400GBASE-ZR (obsolete)"},
    {0x7F, "256GFC-SW4"},
    {0x80, "64GFC"},
    {0x81, "128GFC"},
};

constexpr CodeName kHostInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "1000BASE-CX"},
    {0x02, "XAUI"},
    {0x03, "XFI"},
    {0x04, "SFI"},
    {0x05, "25GAUI C2M"},
    {0x06, "XLAUI C2M"},
    {0x07, "XLPPI"},
    {0x08, "LAUI-2 C2M"},
    {0x09, "50GAUI-2 C2M"},
    {0x0A, "50GAUI-1 C2M"},
    {0x0B, "CAUI-4 C2M"},
    {0x0C, "100GAUI-4 C2M"},
    {0x0D, "100GAUI-2 C2M"},
    {0x0E, "200GAUI-8 C2M"},
    {0x0F, "200GAUI-4 C2M"},
    {0x10, "400GAUI-16 C2M"},
    {0x11, "400GAUI-8 C2M"},
    {0x13, "10GBASE-CX4"},
    {0x14, "25GBASE-CR CA-25G-L"},
    {0x15, "25GBASE-CR or CR-S CA-25G-S"},
    {0x16, "25GBASE-CR or CR-S CA-25G-N"},
    {0x17, "40GBASE-CR4"},
    {0x18, "50GBASE-CR"},
    {0x19, "100GBASE-CR10"},
    {0x1A, "100GBASE-CR4"},
    {0x1B, "100GBASE-CR2"},
    {0x1C, "200GBASE-CR4"},
    {0x1D, "400G CR8"},
    {0x1E, "200GBASE-CR1"},
    {0x1F, "400GBASE-CR2"},
    {0x20, "LEI-100G-PAM4-1"},
    {0x21, "LEI-200G-PAM4-2"},
    {0x22, "LEI-400G-PAM4-4"},
    {0x23, "LEI-800G-PAM4-8"},
    {0x25, "8GFC"},
    {0x26, "10GFC"},
    {0x27, "16GFC"},
    {0x28, "32GFC"},
    {0x29, "64GFC"},
    {0x2A, "128GFC (FC-PI-6P)"},
    {0x2B, "256GFC"},
    {0x2C, "IB SDR"},
    {0x2D, "IB DDR"},
    {0x2E, "IB QDR"},
    {0x2F, "IB FDR"},
    {0x30, "IB EDR"},
    {0x31, "IB HDR"},
    {0x32, "IB NDR"},
    {0x33, "CPRI E.96"},
    {0x34, "CPRI E.99"},
    {0x35, "CPRI E.119"},
    {0x36, "CPRI E.238"},
    {0x37, "OTL3.4"},
    {0x38, "OTL4.10"},
    {0x39, "OTL4.4"},
    {0x3A, "OTLC.4"},
    {0x3B, "FOIC1.4-MFI"},
    {0x3C, "FOIC1.2-MFI"},
    {0x3D, "FOIC2.8-MFI"},
    {0x3E, "FOIC2.4-MFI"},
    {0x3F, "FOIC4.16-MFI"},
    {0x40, "FOIC4.8-MFI"},
    {0x41, "CAUI-4 C2M without FEC"},
    {0x42, "CAUI-4 C2M with RS(528,514) FEC"},
    {0x43, "50GBASE-CR2 with RS FEC"},
    {0x44, "50GBASE-CR2 with BASE-R FEC"},
    {0x45, "50GBASE-CR2 with no FEC"},
    {0x46, "100GBASE-CR1"},
    {0x47, "200GBASE-CR2"},
    {0x48, "400GBASE-CR4"},
    {0x49, "800G-ETC-CR8 or 800GBASE-CR8"},
    {0x4A, "128GFC (FC-PI-8)"},
    {0x4B, "100GAUI-1-S C2M"},
    {0x4C, "100GAUI-1-L C2M"},
    {0x4D, "200GAUI-2-S C2M"},
    {0x4E, "200GAUI-2-L C2M"},
    {0x4F, "400GAUI-4-S C2M"},
    {0x50, "400GAUI-4-L C2M"},
    {0x51, "800GAUI-8-S C2M"},
    {0x52, "800GAUI-8-L C2M"},
    {0x53, "OTL4.2"},
    {0x55, "1.6TAUI-16-S C2M"},
    {0x56, "1.6TAUI-16-L C2M"},
    {0x57, "800GBASE-CR4"},
    {0x58, "1.6TBASE-CR8"},
    {0x70, "PCIe 4.0"},
    {0x71, "PCIe 5.0"},
    {0x72, "PCIe 6.0"},
    {0x73, "PCIe 7.0"},
    {0x74, "CEI-112G-LINEAR-PAM4"},
    {0x80, "200GAUI-1 C2M"},
    {0x81, "400GAUI-2 C2M"},
    {0x82, "800GAUI-4 C2M"},
    {0x83, "1.6TAUI-8 C2M"},
    {0x90, "EEI-100G-RTLR-1-S"},
    {0x91, "EEI-100G-RTLR-1-L"},
    {0x92, "EEI-200G-RTLR-2-S"},
    {0x93, "EEI-200G-RTLR-2-L"},
    {0x94, "EEI-400G-RTLR-4-S"},
    {0x95, "EEI-400G-RTLR-4-L"},
    {0x96, "EEI-800G-RTLR-8-S"},
    {0x97, "EEI-800G-RTLR-8-L"},
    {0x98, "EEI-200G-RTLR-1"},
    {0x99, "EEI-400G-RTLR-2"},
    {0x9A, "EEI-800G-RTLR-4"},
    {0x9B, "EEI-1.6T-RTLR-8"},
    {0xA0, "IB XDR"},
    {0xB0, "FOIC1.1-MFI"},
    {0xB1, "FOIC4.4-MFI"},
    {0xB2, "FOIC8.8-MFI"},
    {0xB3, "FOIC1e.1-MFI"},
    {0xB4, "FOIC4e.4-MFI"},
    {0xB5, "FOIC1o.1-MFI"},
    {0xB6, "FOIC4o.4-MFI"},
    {0xB7, "ITU-T G.9804.3"},
    {0xBE, "Interface Unique ID escape"},
    {0xBF, "Escape to overflow area (reserved)"},
    {0xFF, "End of list"},
};

constexpr CodeName kMmfInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "10GBASE-SW"},
    {0x02, "10GBASE-SR"},
    {0x03, "25GBASE-SR"},
    {0x04, "40GBASE-SR4"},
    {0x05, "40GE SWDM4"},
    {0x06, "40GE BiDi"},
    {0x07, "50GBASE-SR"},
    {0x08, "100GBASE-SR10"},
    {0x09, "100GBASE-SR4"},
    {0x0A, "100GE SWDM4"},
    {0x0B, "100GE BiDi"},
    {0x0C, "100GBASE-SR2"},
    {0x0D, "100GBASE-SR1"},
    {0x0E, "200GBASE-SR4"},
    {0x0F, "400GBASE-SR16"},
    {0x10, "400GBASE-SR8"},
    {0x11, "400GBASE-SR4"},
    {0x12, "800GBASE-SR8"},
    {0x13, "8GFC-MM"},
    {0x14, "10GFC-MM"},
    {0x15, "16GFC-MM"},
    {0x16, "32GFC-MM"},
    {0x17, "64GFC-MM"},
    {0x18, "128GFC-MM4"},
    {0x19, "256GFC-MM4"},
    {0x1A, "400GBASE-SR4.2"},
    {0x1B, "200GBASE-SR2"},
    {0x1C, "128GFC-MM"},
    {0x1D, "100GBASE-VR1"},
    {0x1E, "200GBASE-VR2"},
    {0x1F, "400GBASE-VR4"},
    {0x20, "800GBASE-VR8"},
    {0x21, "800G-VR4.2"},
    {0x22, "800G-SR4.2"},
    {0x23, "1.6T-VR8.2"},
    {0x24, "1.6T-SR8.2"},
    {0xBE, "Interface Unique ID escape"},
};

constexpr CodeName kSmfInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "10GBASE-LW"},
    {0x02, "10GBASE-EW"},
    {0x03, "10G-ZW"},
    {0x04, "10GBASE-LR"},
    {0x05, "10GBASE-ER"},
    {0x06, "10G-ZR"},
    {0x07, "25GBASE-LR"},
    {0x08, "25GBASE-ER"},
    {0x09, "40GBASE-LR4"},
    {0x0A, "40GBASE-FR"},
    {0x0B, "50GBASE-FR"},
    {0x0C, "50GBASE-LR"},
    {0x0D, "100GBASE-LR4"},
    {0x0E, "100GBASE-ER4"},
    {0x0F, "100G PSM4"},
    {0x10, "100G CWDM4"},
    {0x11, "100G 4WDM-10"},
    {0x12, "100G 4WDM-20"},
    {0x13, "100G 4WDM-40"},
    {0x14, "100GBASE-DR"},
    {0x15, "100G-FR/100GBASE-FR1"},
    {0x16, "100G-LR/100GBASE-LR1"},
    {0x17, "200GBASE-DR4"},
    {0x18, "200GBASE-FR4"},
    {0x19, "200GBASE-LR4"},
    {0x1A, "400GBASE-FR8"},
    {0x1B, "400GBASE-LR8"},
    {0x1C, "400GBASE-DR4"},
    {0x1D, "400G-FR4/400GBASE-FR4"},
    {0x1E, "400G-LR4-10"},
    {0x1F, "8GFC-SM"},
    {0x20, "10GFC-SM"},
    {0x21, "16GFC-SM"},
    {0x22, "32GFC-SM"},
    {0x23, "64GFC-SM"},
    {0x24, "128GFC-PSM4"},
    {0x26, "128GFC-CWDM4"},
    {0x2C, "4I1-9D1F"},
    {0x2D, "4L1-9C1F"},
    {0x2E, "4L1-9D1F"},
    {0x2F, "C4S1-9D1F"},
    {0x30, "C4S1-4D1F"},
    {0x31, "4I1-4D1F"},
    {0x32, "8R1-4D1F"},
    {0x33, "8I1-4D1F"},
    {0x34, "100G CWDM4-OCP"},
    {0x35, "ZR400-OFEC-16QAM-HA"},
    {0x36, "ZR400-OFEC-16QAM-HB"},
    {0x37, "ZR400-OFEC-8QAM-HA"},
    {0x38, "CPRI 10G-SR"},
    {0x39, "CPRI 10G-LR"},
    {0x3A, "CPRI 25G-SR"},
    {0x3B, "CPRI 25G-LR"},
    {0x3C, "CPRI 10G-LR-BiDi"},
    {0x3D, "CPRI 25G-LR-BiDi"},
    {0x3E, "400ZR DWDM amplified"},
    {0x3F, "400ZR single wavelength unamplified"},
    {0x40, "50GBASE-ER"},
    {0x41, "200GBASE-ER4"},
    {0x42, "400GBASE-ER8"},
    {0x43, "400GBASE-LR4-6"},
    {0x44, "100GBASE-ZR"},
    {0x45, "128GFC-SM"},
    {0x46, "ZR400-OFEC-16QAM"},
    {0x47, "ZR300-OFEC-8QAM"},
    {0x48, "ZR200-OFEC-QPSK"},
    {0x49, "ZR100-OFEC-QPSK"},
    {0x4A, "100G-LR1-20"},
    {0x4B, "100G-ER1-30"},
    {0x4C, "100G-ER1-40"},
    {0x4D, "400GBASE-ZR"},
    {0x4E, "10GBASE-BR"},
    {0x4F, "25GBASE-BR"},
    {0x50, "50GBASE-BR"},
    {0x51, "FOIC1.4-DO"},
    {0x52, "FOIC2.8-DO"},
    {0x53, "FOIC4.8-DO"},
    {0x54, "FOIC2.4-DO"},
    {0x55, "400GBASE-DR4-2"},
    {0x56, "800GBASE-DR8"},
    {0x57, "800GBASE-DR8-2"},
    {0x58, "ZR400-OFEC-8QAM-HB"},
    {0x59, "ZR300-OFEC-8QAM-HA"},
    {0x5A, "ZR300-OFEC-8QAM-HB"},
    {0x5B, "ZR200-OFEC-QPSK-HA"},
    {0x5C, "ZR200-OFEC-QPSK-HB"},
    {0x5D, "ZR100-OFEC-QPSK-HA"},
    {0x5E, "ZR100-OFEC-QPSK-HB"},
    {0x5F, "FLEXO-4-DO-16QAM/FOIC4.8-DO"},
    {0x60, "FLEXO-3-DO-8QAM/FOIC3.6-DO"},
    {0x61, "FLEXO-2-DO-QPSK/FOIC2.4-DO"},
    {0x62, "FLEXO-2-DO-16QAM/FOIC2.8-DO"},
    {0x63, "FLEXO-1-DO-QPSK/FOIC1.4-DO"},
    {0x64, "FLEXO-4e-DO-QPSK/FOIC4e.4-DO"},
    {0x65, "FLEXO-4-DO-QPSK/FOIC4.4-DO"},
    {0x66, "FLEXO-8e-DO-16QAM/FOIC8e.8-DO"},
    {0x67, "FLEXO-8-DO-16QAM/FOIC8.8-DO"},
    {0x68, "FLEXO-8e-DPO-16QAM/FOIC8e.8-DPO"},
    {0x69, "FLEXO-8-DPO-16QAM/FOIC8.8-DPO"},
    {0x6A, "FLEXO-6e-DPO-16QAM/FOIC6e.8-DPO"},
    {0x6B, "FLEXO-6-DPO-16QAM/FOIC6.8-DPO"},
    {0x6C, "800ZR-A"},
    {0x6D, "800ZR-B"},
    {0x6E, "800ZR-C"},
    {0x6F, "400G-ER4-30"},
    {0x70, "1I1-5D1F"},
    {0x71, "1R1-5D1F"},
    {0x72, "FOIC1.1-RS"},
    {0x73, "200GBASE-DR1"},
    {0x74, "200GBASE-DR1-2"},
    {0x75, "400GBASE-DR2"},
    {0x76, "400GBASE-DR2-2"},
    {0x77, "800GBASE-DR4"},
    {0x78, "800GBASE-DR4-2"},
    {0x79, "800GBASE-FR4-500"},
    {0x7A, "800GBASE-FR4"},
    {0x7B, "800GBASE-LR4"},
    {0x7C, "800GBASE-LR1"},
    {0x7D, "800GBASE-ER1-20"},
    {0x7E, "800GBASE-ER1"},
    {0x7F, "1.6TBASE-DR8"},
    {0x80, "1.6TBASE-DR8-2"},
    {0x81, "XR400-16QAM"},
    {0x82, "XR300-8QAM"},
    {0x83, "XR200-QPSK"},
    {0x84, "XR200-16QAM"},
    {0x85, "XR100-QPSK"},
    {0x86, "XR100-16QAM"},
    {0x87, "XR400-WS-16QAM"},
    {0x88, "XR200-WS-QPSK"},
    {0x89, "XR200-WS-16QAM"},
    {0x8A, "XR100-WS-QPSK"},
    {0x8B, "XR100-WS-16QAM"},
    {0x8C, "XR200-WS-BIDI-16QAM"},
    {0x8D, "XR100-WS-BIDI-QPSK"},
    {0x8E, "XR100-WS-BIDI-16QAM"},
    {0x8F, "100G-DR1-LPO"},
    {0x90, "200G-DR2-LPO"},
    {0x91, "400G-DR4-LPO"},
    {0x92, "800G-DR8-LPO"},
    {0x93, "400G-FR4-LPO"},
    {0xBE, "Interface Unique ID escape"},
};

constexpr CodeName kPassiveCopperInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "Copper cable"},
    {0xBF, "Passive loopback module"},
    {0xC0, "Linear active copper loopback module"},
};

constexpr CodeName kActiveCableInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "Active cable, BER < 1e-12"},
    {0x02, "Active cable, BER < 5e-5"},
    {0x03, "Active cable, BER < 2.6e-4"},
    {0x04, "Active cable, BER < 1e-6"},
    {0xBF, "Active loopback module"},
};

constexpr CodeName kBaseTInterfacesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "1000BASE-T"},
    {0x02, "2.5GBASE-T"},
    {0x03, "5GBASE-T"},
    {0x04, "10GBASE-T"},
    {0x05, "25GBASE-T"},
    {0x06, "40GBASE-T"},
    {0x07, "50GBASE-T (placeholder)"},
};

constexpr CodeName kQsfpSubtypesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "Type 1"},
    {0x02, "Type 2"},
    {0x03, "Type 2A"},
    {0x04, "Type 2B"},
};

constexpr CodeName kQsfpDdSubtypesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "Type 1"},
    {0x02, "Type 2"},
    {0x03, "Type 2A"},
    {0x04, "Type 2B"},
    {0x05, "Type 2C"},
};

constexpr CodeName kSfpDdSubtypesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "Type 1"},
    {0x02, "Type 2"},
};

constexpr CodeName kOsfpSubtypesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "Type 1"},
    {0x02, "Type 2"},
    {0x03, "Type 3"},
};

constexpr CodeName kOsfpXdSubtypesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "Type 1"},
    {0x02, "Type 2"},
};

constexpr CodeName kFiberFacesEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "PC/UPC"},
    {0x02, "APC"},
};

constexpr CodeName kHeatsinksEntries[] = {
    {0x00, "Unknown or unspecified"},
    {0x01, "RHS riding heatsink"},
    {0x02, "IHS integrated, open top"},
    {0x03, "IHS integrated, closed top"},
};

constexpr CodeName kMediaTypesEntries[] = {
    {0x00, "Undefined"},
    {0x01, "MMF"},
    {0x02, "SMF"},
    {0x03, "Passive and linear active copper"},
    {0x04, "Active cable"},
    {0x05, "BASE-T"},
};

constexpr CodeName kMediaTechnologiesEntries[] = {
    {0x00, "850 nm VCSEL"},
    {0x01, "1310 nm VCSEL"},
    {0x02, "1550 nm VCSEL"},
    {0x03, "1310 nm FP"},
    {0x04, "1310 nm DFB"},
    {0x05, "1550 nm DFB"},
    {0x06, "1310 nm EML"},
    {0x07, "1550 nm EML"},
    {0x08, "Others"},
    {0x09, "1490 nm DFB"},
    {0x0A, "Copper cable, unequalized"},
    {0x0B, "Copper cable, passive equalized"},
    {0x0C, "Copper cable, near and far end limiting active equalizers"},
    {0x0D, "Copper cable, far end limiting active equalizers"},
    {0x0E, "Copper cable, near end limiting active equalizers"},
    {0x0F, "Copper cable, linear active equalizers"},
    {0x10, "C-band tunable laser"},
    {0x11, "L-band tunable laser"},
    {0x12, "Copper cable, near and far end linear active equalizers"},
    {0x13, "Copper cable, far end linear active equalizers"},
    {0x14, "Copper cable, near end linear active equalizers"},
};

constexpr CodeName kSff8636TechnologiesEntries[] = {
    {0x00, "850 nm VCSEL"},
    {0x01, "1310 nm VCSEL"},
    {0x02, "1550 nm VCSEL"},
    {0x03, "1310 nm FP"},
    {0x04, "1310 nm DFB"},
    {0x05, "1550 nm DFB"},
    {0x06, "1310 nm EML"},
    {0x07, "1550 nm EML"},
    {0x08, "Other / undefined"},
    {0x09, "1490 nm DFB"},
    {0x0A, "Copper cable, unequalized"},
    {0x0B, "Copper cable, passive equalized"},
    {0x0C, "Copper cable, near and far end limiting active equalizers"},
    {0x0D, "Copper cable, far end limiting active equalizers"},
    {0x0E, "Copper cable, near end limiting active equalizers"},
    {0x0F, "Copper cable, linear active equalizers"},
};

constexpr CodeName kOpticalLanesEntries[] = {
    {0x00, "Unknown"},
    {0x01, "Lane 1 LSB"},
    {0x02, "Lane 1 MSB"},
    {0x03, "Lane 2 LSB"},
    {0x04, "Lane 2 MSB"},
    {0x05, "Lane 1"},
    {0x06, "Lane 2"},
};

constexpr CodeName kModuleStatesEntries[] = {
    {0x01, "ModuleLowPwr"},
    {0x02, "ModulePwrUp"},
    {0x03, "ModuleReady"},
    {0x04, "ModulePwrDn"},
    {0x05, "ModuleFault"},
};

constexpr CodeName kDataPathStatesEntries[] = {
    {0x01, "DataPathDeactivated"},
    {0x02, "DataPathInit"},
    {0x03, "DataPathDeinit"},
    {0x04, "DataPathActivated"},
    {0x05, "DataPathTxTurnOn"},
    {0x06, "DataPathTxTurnOff"},
    {0x07, "DataPathInitialized"},
};

constexpr CodeName kConfigStatusesEntries[] = {
    {0x00, "ConfigUndefined"},
    {0x01, "ConfigSuccess"},
    {0x02, "ConfigRejected"},
    {0x03, "ConfigRejectedInvalidAppSel"},
    {0x04, "ConfigRejectedInvalidDataPath"},
    {0x05, "ConfigRejectedInvalidSI"},
    {0x06, "ConfigRejectedLanesInUse"},
    {0x07, "ConfigRejectedPartialDataPath"},
    {0x08, "ConfigRejectedNoEmulation"},
    {0x0C, "ConfigInProgress"},
};

constexpr CodeName kFrequencyGridsEntries[] = {
    {0, "3.125 GHz"},
    {1, "6.25 GHz"},
    {2, "12.5 GHz"},
    {3, "25 GHz"},
    {4, "50 GHz"},
    {5, "100 GHz"},
    {6, "33 GHz"},
    {7, "75 GHz"},
    {8, "150 GHz"},
    {9, "300 GHz"},
};

constexpr CodeName kManagementSpeedsEntries[] = {
    {0, "400 kHz"},
    {1, "1 MHz"},
    {2, "3.4 MHz"},
};

constexpr CodeName kTestPatternsEntries[] = {
    {0, "PRBS31Q"},
    {1, "PRBS31"},
    {2, "PRBS23Q"},
    {3, "PRBS23"},
    {4, "PRBS15Q"},
    {5, "PRBS15"},
    {6, "PRBS13Q"},
    {7, "PRBS13"},
    {8, "PRBS9Q"},
    {9, "PRBS9"},
    {10, "PRBS7Q"},
    {11, "PRBS7"},
    {12, "SSPRQ"},
    {14, "custom"},
    {15, "user pattern"},
};

constexpr CodeName kSff8472ExtendedIdentifiersEntries[] = {
    {0x00, "GBIC: MOD_DEF not specified"},
    {0x01, "GBIC: MOD_DEF 1"},
    {0x02, "GBIC: MOD_DEF 2"},
    {0x03, "GBIC: MOD_DEF 3"},
    {0x04, "GBIC/SFP: 2-wire interface ID"},
    {0x05, "GBIC: MOD_DEF 5"},
    {0x06, "GBIC: MOD_DEF 6"},
    {0x07, "GBIC: MOD_DEF 7"},
};

constexpr CodeName kSff8472RateIdentifiersEntries[] = {
    {0x00, "Unspecified"},
    {0x01, "SFF-8079 4/2/1G Rate_Select, AS0/AS1"},
    {0x02, "SFF-8431 8/4/2G Rx only"},
    {0x04, "SFF-8431 8/4/2G Tx only"},
    {0x06, "SFF-8431 8/4/2G independent Rx, Tx"},
    {0x08, "FC-PI-5 16/8/4G Rx only"},
    {0x0A, "FC-PI-5 16/8/4G independent Rx, Tx"},
    {0x0C, "FC-PI-6 32/16/8G independent Rx, Tx"},
    {0x0E, "10/8G Rx and Tx"},
    {0x10, "FC-PI-7 64/32/16G independent Rx, Tx"},
    {0x20, "PMD based: A0h byte 36, A2h byte 67"},
};

// clang-format on

}  // namespace

constexpr CodeTable kIdentifiers("SFF-8024 rev 4.13, Table 4-1", kIdentifiersEntries);
constexpr CodeTable kSff8472Encodings("SFF-8024 rev 4.13, Table 4-2", kSff8472EncodingsEntries);
constexpr CodeTable kSff8636Encodings("SFF-8024 rev 4.13, Table 4-2", kSff8636EncodingsEntries);
constexpr CodeTable kConnectors("SFF-8024 rev 4.13, Table 4-3", kConnectorsEntries);
constexpr CodeTable kComplianceCodes("SFF-8024 rev 4.13, Table 4-4", kExtendedComplianceEntries);
constexpr CodeTable kHostInterfaces("SFF-8024 rev 4.13, Table 4-5", kHostInterfacesEntries);
constexpr CodeTable kMmfInterfaces("SFF-8024 rev 4.13, Table 4-6", kMmfInterfacesEntries);
constexpr CodeTable kSmfInterfaces("SFF-8024 rev 4.13, Table 4-7", kSmfInterfacesEntries);
constexpr CodeTable kPassiveCopperInterfaces("SFF-8024 rev 4.13, Table 4-8",
                                             kPassiveCopperInterfacesEntries);
constexpr CodeTable kActiveCableInterfaces("SFF-8024 rev 4.13, Table 4-9",
                                           kActiveCableInterfacesEntries);
constexpr CodeTable kBaseTInterfaces("SFF-8024 rev 4.13, Table 4-10", kBaseTInterfacesEntries);
constexpr CodeTable kQsfpSubtypes("SFF-8024 rev 4.13, Table 4-11", kQsfpSubtypesEntries);
constexpr CodeTable kQsfpDdSubtypes("SFF-8024 rev 4.13, Table 4-11", kQsfpDdSubtypesEntries);
constexpr CodeTable kSfpDdSubtypes("SFF-8024 rev 4.13, Table 4-11", kSfpDdSubtypesEntries);
constexpr CodeTable kOsfpSubtypes("SFF-8024 rev 4.13, Table 4-11", kOsfpSubtypesEntries);
constexpr CodeTable kOsfpXdSubtypes("SFF-8024 rev 4.13, Table 4-11", kOsfpXdSubtypesEntries);
constexpr CodeTable kFiberFaces("SFF-8024 rev 4.13, Table 4-12", kFiberFacesEntries);
constexpr CodeTable kHeatsinks("SFF-8024 rev 4.13, Table 4-13", kHeatsinksEntries);
constexpr CodeTable kMediaTypes("CMIS 5.4, byte 85", kMediaTypesEntries);
constexpr CodeTable kMediaTechnologies("CMIS 5.4, 00h byte 212", kMediaTechnologiesEntries);
constexpr CodeTable kSff8636Technologies("SFF-8636 rev 2.11, byte 147",
                                         kSff8636TechnologiesEntries);
constexpr CodeTable kOpticalLanes("SFF-8636 rev 2.11, 20h bytes 248-249", kOpticalLanesEntries);
constexpr CodeTable kModuleStates("CMIS 5.4, byte 3", kModuleStatesEntries);
constexpr CodeTable kDataPathStates("CMIS 5.0, 11h bytes 128-131", kDataPathStatesEntries);
constexpr CodeTable kConfigStatuses("CMIS 5.4, 11h bytes 202-205", kConfigStatusesEntries);
constexpr CodeTable kFrequencyGrids("CMIS 5.4, 12h bytes 128-135", kFrequencyGridsEntries);
constexpr CodeTable kManagementSpeeds("CMIS 5.3, byte 2", kManagementSpeedsEntries);
constexpr CodeTable kTestPatterns("CMIS 5.4, 13h bytes 132-139", kTestPatternsEntries);
constexpr CodeTable kSff8472ExtendedIdentifiers("SFF-8472 rev 12.4, A0h byte 1",
                                                kSff8472ExtendedIdentifiersEntries);
constexpr CodeTable kSff8472RateIdentifiers("SFF-8472 rev 12.4, A0h byte 13",
                                            kSff8472RateIdentifiersEntries);

std::string_view CodeTable::Name(unsigned code) const {
  // Most codes follow each other.
  if (size_ != 0 && code >= entries_[0].code && code - entries_[0].code < size_) {
    const CodeName& guess = entries_[code - entries_[0].code];
    if (guess.code == code) return guess.name;
  }
  const CodeName* entry = std::lower_bound(
      begin(), end(), code, [](const CodeName& listed, unsigned c) { return listed.code < c; });
  return entry != end() && entry->code == code ? entry->name : std::string_view();
}

const CodeTable* MediaInterfacesOf(unsigned media_type) {
  switch (media_type) {
    case 1:
      return &kMmfInterfaces;
    case 2:
      return &kSmfInterfaces;
    case 3:
      return &kPassiveCopperInterfaces;
    case 4:
      return &kActiveCableInterfaces;
    case 5:
      return &kBaseTInterfaces;
    default:
      return nullptr;
  }
}

const CodeTable* SubtypesOf(unsigned identifier) {
  switch (identifier) {
    case 0x18:
      return &kQsfpDdSubtypes;
    case 0x19:
      return &kOsfpSubtypes;
    case 0x1E:
      return &kQsfpSubtypes;
    case 0x1F:
      return &kSfpDdSubtypes;
    case 0x21:
      return &kOsfpXdSubtypes;
    default:
      return nullptr;
  }
}

std::string_view InfiniBandSpeedOf(unsigned host_interface) {
  constexpr std::string_view kPrefix = "IB ";
  std::string_view name = kHostInterfaces.Name(host_interface);
  if (name.substr(0, kPrefix.size()) != kPrefix) return {};
  name.remove_prefix(kPrefix.size());
  return name;
}

}  // namespace cable_info
