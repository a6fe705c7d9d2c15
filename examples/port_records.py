#!/usr/bin/env python3
"""Writes port records from registers that an application has read by its own means.

    python3 examples/port_records.py | cableinfo check

Each line is one JSON object; docs/port.schema.json describes all keys. A key that is left out is
zero or empty, an unknown one is an error. Here one port has the registers of its PHY, one the raw
memory of its module, and one has no module.
"""

import json


def phy_port(node_guid, number):
    """A port whose adapter decodes the module and offers its values as registers."""
    return {
        "node_guid": f"0x{node_guid:016x}",
        "port_guid": f"0x{node_guid + number:016x}",
        "port_num": number,
        "label": f"switch-1 port {number}",
        "phy": {
            "source": "PHY",
            "module": {
                "cable_identifier": 8,          # OSFP
                "vendor_name": "Acme Optics",
                "vendor_pn": "AO-800-DR8",
                "vendor_sn": "AO2408X0001",
                "temperature": 45 * 256,        # 1/256 degrees Celsius
                "voltage": 33012,               # 100 uV
                "rx_power": [11021, 11034, 10987, 11102, 10894, 11045, 11011, 10976],  # 0.1 uW, lanes 1 to 8
                "power_unit_flag": 1,
            },
            "latched_flags": {"latched_rx_los": 0b00000010},  # lane 2
        },
    }


def memory_port(node_guid, number, pages):
    """A port whose application reads the memory of the module page by page."""
    return {
        "node_guid": f"0x{node_guid:016x}",
        "port_guid": f"0x{node_guid + number:016x}",
        "port_num": number,
        "label": f"switch-1 port {number}",
        "module_memory": {"pages": {name: content.hex() for name, content in pages.items()}},
    }


def copper_cable():
    """What the bus returned for a copper cable with the memory map of SFF-8636, which is flat."""
    lower, upper = bytearray(128), bytearray(128)
    lower[0] = upper[0] = 0x11  # QSFP28
    lower[2] = 0x04             # flat memory: no page but 00h
    upper[130 - 128] = 0x23     # no separable connector
    upper[146 - 128] = 3        # metres
    upper[147 - 128] = 0xA0     # copper cable, unequalized
    upper[148 - 128:164 - 128] = b"Copperworks".ljust(16)
    upper[168 - 128:184 - 128] = b"CW-Q28-3M".ljust(16)
    upper[196 - 128:212 - 128] = b"CW23110077".ljust(16)
    upper[191 - 128] = sum(upper[:191 - 128]) & 0xFF
    upper[223 - 128] = sum(upper[192 - 128:223 - 128]) & 0xFF
    return {"lower": bytes(lower), "00": bytes(upper)}


def main():
    node_guid = 0xA0B1C20000F00000
    for port in (phy_port(node_guid, 1), memory_port(node_guid, 2, copper_cable()),
                 {"node_guid": f"0x{node_guid:016x}", "port_num": 3, "label": "switch-1 port 3"}):
        print(json.dumps(port))


if __name__ == "__main__":
    main()
