"""The output of all commands for the sample fabric, also as other programs read it."""

import csv
import io
import json
import re
import sqlite3
import subprocess
import unittest

import jsonschema

from program import EXPECTED, FABRIC, ROOT, ProgramTest, program, run

HEADER_COLUMNS = 177
# The remarks on links of the sample whose length cannot be computed.
PRTL_REMARKS = (
    f"{FABRIC}:28: port 0xa0b1c200001a7700/3: "
    "The PRTL round trip latency exceeds its maximal possible value.\n"
    f"{FABRIC}:29: port 0xa0b1c200001a7700/4: "
    "The cable's length is below latency resolution. PRTL registers details: "
    "local=(round_trip_latency=40, latency_res=1, local_mod_dp_latency=20, local_phy_latency=30)"
    " and "
    "remote=(round_trip_latency=0, latency_res=0, local_mod_dp_latency=20, local_phy_latency=30)\n")


def ports():
    return [json.loads(line) for line in FABRIC.read_text().splitlines()]


class WholeOutputs(ProgramTest):
    def assert_output(self, command, expected):
        result = run(command, FABRIC)
        self.assert_run(result, stderr=PRTL_REMARKS)
        self.assertEqual(result.stdout.decode(), (EXPECTED / expected).read_text())

    def test_table(self):
        self.assert_output("table", "table.csv")

    def test_report(self):
        self.assert_output("report", "report.txt")

    def test_export(self):
        self.assert_output("export", "export.jsonl")

    def test_table_without_header(self):
        result = run("table", "--no-header", FABRIC)
        rows = (EXPECTED / "table.csv").read_text().split("\n", 1)[1]
        self.assertEqual(result.stdout.decode(), rows)

    def test_sample_is_a_small_fabric(self):
        self.assertGreaterEqual(len(ports()), 24)


class Schemas(ProgramTest):
    def assert_valid(self, schema, lines):
        schema = json.loads((ROOT / "docs" / schema).read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        for line in lines:
            validator.validate(json.loads(line))

    def test_sample_is_valid_input(self):
        self.assert_valid("port.schema.json", FABRIC.read_text().splitlines())

    def test_export_is_valid(self):
        lines = run("export", FABRIC).stdout.decode().splitlines()
        self.assertEqual(len(lines), len(ports()))
        self.assert_valid("export.schema.json", lines)

    def test_schema_knows_every_key_that_the_program_knows(self):
        schema = json.loads((ROOT / "docs" / "port.schema.json").read_text())["properties"]
        pages = schema["phy"]["properties"]["latched_flags"]["anyOf"][0]["properties"]
        samples = {
            "cable": {key: None for key in schema["cable"]["properties"]},
            "phy": {"source": None, "prtl_length": None, "latched_flags": {key: None for key in pages},
                    "module": {key: None for key in schema["phy"]["properties"]["module"]["properties"]}},
            "prtl": {"local": {key: None for key in
                               schema["prtl"]["properties"]["local"].get("properties", {})}},
        }
        self.assert_run(run("export", stdin=[{**{key: None for key in schema}, **samples}]))


class Export(ProgramTest):
    def test_keys_never_depend_on_what_is_present(self):
        def keys(value):
            return {key: keys(inner) for key, inner in value.items()} if isinstance(value, dict) else None

        lines = [json.loads(line) for line in run("export", FABRIC).stdout.splitlines()]
        for line in lines:
            for optional in ("record", "query_status", "identifier", "connector", "technology", "compliance"):
                line[optional] = None
            for readings in (line["monitors"], *line["lanes"]):
                for reading in readings.values():
                    if isinstance(reading, dict) and "state" in reading:
                        reading.update(thresholds=None, flags=None)
        self.assertEqual([keys(line) for line in lines], [keys(lines[0])] * len(lines))
        lanes = [keys(lane) for line in lines for lane in line["lanes"]]
        self.assertEqual(lanes, [lanes[0]] * len(lanes))

    def test_every_source_gives_the_same_values(self):
        """A module of four lanes, as the cable pages and as the PHY's registers report it."""
        pages = {"Identifier": 0x11, "Connector": 0x0C, "TransmitterTechnologyCode": 4, "SupportedSpeedMask": 0x30,
                 "Temperature": 41 << 8, "SupplyVoltage": 32950, "PowerClass": 4, "NominalBitrate": 25, "LengthSmf": 2,
                 "RxPower": [0.871, 0.902, 0.856, 0.893], "TxPower": [0.9, 1, 1.1, 1.2], "TxBias": [7, 7.1, 7.2, 7.3],
                 "LatchedCdrLos": 0x24, "RxPowerAlarms": 0x4001, "VendorName": "Acme", "PartNumber": "P",
                 "SerialNumber": "S", "Revision": "A", "Oui": "0x1b21", "DateCodeText": "240409", "RxPowerIsAverage": 1}
        module = {"cable_identifier": 0, "connector_type": 0x0C, "cable_technology": 0x40, "ib_compliance_code": 0x30,
                  "temperature": 41 << 8, "voltage": 32950, "power_class": 4, "nominal_bitrate": 250, "smf_length": 2,
                  "power_unit_flag": 1, "rx_power": [8710, 9020, 8560, 8930], "tx_power": [9000, 10000, 11000, 12000],
                  "tx_bias": [3500, 3550, 3600, 3650], "vendor_name": " Acme", "vendor_pn": "P", "vendor_sn": "S",
                  "vendor_rev": "A", "vendor_oui": 0x1B21, "date_code": "240409", "rx_power_type": 1}
        flags = {"latched_rx_los": 4, "latched_tx_los": 2, "latched_rx_power_low_alarm": 1,
                 "latched_rx_power_low_warning": 8}
        result = run("export", stdin=[{"cable": pages}, {"phy": {"module": module, "latched_flags": flags}}])
        first, second = map(json.loads, result.stdout.splitlines())
        for port in first, second:
            self.assertEqual(port["identity"], {
                "vendor": "Acme", "oui": "001b21", "part_number": "P", "revision": "A", "serial_number": "S",
                "vendor_code": None, "date_code": "240409", "lot": 0,
                "unique_key": "P_0x00_A" if port is second else None})
            self.assertEqual(port["identifier"]["name"], "QSFP28")
            self.assertEqual(port["technology"], {"code": 4, "name": "1310 nm DFB"})
            self.assertEqual((port["medium"], port["supported_speeds"], port["nominal_bitrate_gbps"]),
                             ("optical", ["EDR", "HDR"], 25))
            self.assertEqual((port["length_m"]["smf"], port["power"]["class"], port["rx_power_type"]),
                             (2000, 4, "average"))
            self.assertEqual(port["monitors"]["temperature_c"]["value"], 41)
            self.assertEqual(port["monitors"]["voltage_v"]["value"], 3.295)
            lanes = port["lanes"]
            self.assertEqual([lane["lane"] for lane in lanes], [1, 2, 3, 4])
            self.assertEqual([lane["rx_power_mw"]["value"] for lane in lanes], [0.871, 0.902, 0.856, 0.893])
            self.assertEqual([lane["tx_power_mw"]["value"] for lane in lanes], [0.9, 1, 1.1, 1.2])
            self.assertEqual([lane["tx_bias_ma"]["value"] for lane in lanes], [7, 7.1, 7.2, 7.3])
            self.assertEqual([lane["tx_power_mw"]["dbm"] for lane in lanes], [-0.458, 0, 0.414, 0.792])
            self.assertEqual([lane["flags"]["rx_los"] for lane in lanes], [False, False, True, False])
            self.assertEqual([lane["flags"]["tx_los"] for lane in lanes], [False, True, False, False])
            self.assertEqual([lane["rx_power_mw"]["flags"]["low_alarm"] for lane in lanes], [True, False, False, False])
            self.assertEqual([lane["rx_power_mw"]["flags"]["low_warning"] for lane in lanes],
                             [False, False, False, True])

    def test_thresholds_have_the_unit_of_their_value(self):
        module = {"power_unit_flag": 1, "rx_power": [4030], "tx_bias": [3500], "rx_power_high_threshold": 46774,
                  "rx_power_low_threshold": 500, "tx_bias_high_threshold": 6000, "tx_bias_low_threshold": 1500}
        lane = json.loads(run("export", stdin=[{"phy": {"module": module}}]).stdout)["lanes"][0]
        self.assertEqual(lane["rx_power_mw"]["value"], 0.403)
        self.assertEqual(lane["rx_power_mw"]["thresholds"],
                         {"high_alarm": 4.6774, "low_alarm": 0.05, "high_warning": None, "low_warning": None})
        self.assertEqual(lane["tx_bias_ma"]["thresholds"],
                         {"high_alarm": 12, "low_alarm": 3, "high_warning": None, "low_warning": None})

    def test_texts_of_any_bytes_are_ascii(self):
        text = "caf\u00e9 \u4e2d\t\"\\\u0001\u007f"
        result = run("export", stdin=[{"cable": {"VendorName": text, "ExtraText": "a\u0000b"}}])
        self.assert_run(result)
        self.assertTrue(result.stdout.isascii())
        record = json.loads(result.stdout)["record"]
        self.assertEqual(record["vendor"], text.encode().decode("latin-1"))
        self.assertEqual(record["extra"], "a")

    def test_a_text_cut_inside_a_character_is_valid(self):
        result = run("export", stdin=[{"cable": {"VendorName": "x" * 31 + "\u00e9"}}])
        self.assertEqual(json.loads(result.stdout)["record"]["vendor"], "x" * 31 + "\u00c3")

    def test_numbers_that_are_not_finite_are_null(self):
        result = run("export", stdin=[{"cable": {"RxPower": ["nan", "inf", "-inf", 0.1]}}])
        self.assertEqual(json.loads(result.stdout)["record"]["monitors"][:4], [None, None, None, 0.1])

    def test_guids_keep_all_their_bits(self):
        result = run("export", stdin=[{"node_guid": 2**64 - 1, "port_guid": "0xFFFFFFFFFFFFFFFE"}])
        port = json.loads(result.stdout)
        self.assertEqual(port["node_guid"], "0xffffffffffffffff")
        self.assertEqual(port["port_guid"], "0xfffffffffffffffe")


class Report(ProgramTest):
    def test_a_cut_block_ends_its_line(self):
        long = {"cable": {"VendorName": "v" * 3000}}
        lines = run("report", stdin=[long, {"port_num": 2}]).stdout.decode().split("\n")
        self.assertEqual(len("\n".join(lines[1:-3])), 2047)
        self.assertEqual(lines[-3:], [
            "", "NodeGuid: 0x0000000000000000, PortGuid: 0x0000000000000000, PortNum: 2", ""])


class OtherReaders(ProgramTest):
    """The table, read by other programs."""

    def rows_by_csv_module(self):
        text = run("table", FABRIC).stdout.decode()
        return list(csv.reader(io.StringIO(text, newline="")))

    def test_python_finds_every_cell_under_its_column(self):
        header, *rows = self.rows_by_csv_module()
        self.assertEqual(len(header), HEADER_COLUMNS)
        for port, row in zip(ports(), rows, strict=True):
            has_record = "cable" in port or "phy" in port
            self.assertEqual(len(row), HEADER_COLUMNS if has_record else 4)
            cells = dict(zip(header, row))
            self.assertEqual(cells["NodeGuid"], port["node_guid"])
            self.assertEqual(cells["PortNum"], str(port["port_num"]))
            if "cable" in port:
                self.assertEqual(cells["Source"], "CABLE")
                self.assertEqual(cells["Vendor"], port["cable"].get("VendorName", ""))
                self.assertEqual(cells["SN"], port["cable"].get("SerialNumber", ""))
            elif port.get("phy", {}).get("module"):
                self.assertEqual(cells["Source"], "PHY")
                self.assertEqual(cells["PN"], port["phy"]["module"]["vendor_pn"].replace(",", "-"))
                self.assertEqual(cells["CdrVendor"], str(port["phy"]["module"]["cdr_vendor"]))

    def test_python_sees_the_doubled_quotes_of_a_missing_module(self):
        header, *rows = self.rows_by_csv_module()
        for port, row in zip(ports(), rows):
            if "phy" in port and "cable" not in port and "module" not in port["phy"]:
                self.assertEqual(row[header.index("IdentifierStr")], 'NA""')

    def test_sqlite_finds_every_cell_under_its_column(self):
        table = self.folder / "cables.csv"
        database = self.folder / "cables.db"
        # Rows of ports without a record are too short for sqlite to import.
        lines = run("table", FABRIC).stdout.decode().splitlines(keepends=True)
        table.write_text("".join(line for line in lines if line.count(",") > 3))
        subprocess.run(["sqlite3", str(database), f".import --csv {table} cables"], check=True,
                       capture_output=True)
        with sqlite3.connect(database) as connection:
            connection.row_factory = sqlite3.Row
            rows = connection.execute("select * from cables").fetchall()
        expected = [port for port in ports() if "cable" in port or "phy" in port]
        self.assertEqual(len(rows), len(expected))
        for port, row in zip(expected, rows):
            self.assertEqual(len(row.keys()), HEADER_COLUMNS)
            self.assertEqual(row["PortGuid"], port["port_guid"])
            if "cable" in port:
                self.assertEqual(row["PN"], port["cable"].get("PartNumber", ""))
                self.assertEqual(row["MaxFiberLength"], "NA")
            elif "module" in port["phy"]:
                self.assertEqual(row["MaxFiberLength"],
                                 str(port["phy"]["module"].get("max_fiber_length", 0)))


class Columns(ProgramTest):
    def names(self):
        header = (EXPECTED / "table.csv").read_text().split("\n", 1)[0]
        return header.split(",")

    def test_text_lists_number_name_and_meaning(self):
        result = run("columns")
        self.assert_run(result)
        self.assertEqual(result.stdout.decode(), (EXPECTED / "columns.txt").read_text())

    def test_json_lists_the_same_columns(self):
        lines = [json.loads(line) for line in run("columns", "--json").stdout.splitlines()]
        self.assertEqual([line["name"] for line in lines], self.names())
        self.assertEqual([line["number"] for line in lines], list(range(1, HEADER_COLUMNS + 1)))
        text = (EXPECTED / "columns.txt").read_text().splitlines()[1:]
        self.assertEqual([line["meaning"] for line in lines],
                         [re.split("  +", line.strip())[2] for line in text])
        for line in lines:
            self.assertEqual(list(line), ["format_version", "number", "name", "meaning", "unit", "forms"])
            self.assertEqual(list(line["forms"]), ["cable_pages", "phy"])
            self.assertEqual(line["format_version"], 1)

    def test_json_gives_unit_and_forms(self):
        columns = {}
        for line in run("columns", "--json").stdout.splitlines():
            column = json.loads(line)
            columns[column["name"]] = (column["unit"], column["forms"]["cable_pages"], column["forms"]["phy"])
        for name, expected in {
            "NodeGuid": (None, "guid", "guid"),
            "Vendor": (None, "text", "text"),
            "OUI": (None, "bare text", "hex 1"),
            "LengthOM5": ("coded", "missing", "decimal"),
            "Identifier": (None, "hex 2", "hex 2"),
            "Temperature": ("C", "celsius", "celsius"),
            "NominalBitrate": ("Gb/s; PHY: Mb/s", "decimal", "decimal"),
            "CDREnableTxRx": (None, "hex 1", "missing"),
            "InputEq": (None, "4 nibbles", "4 bytes"),
            "FWVersion": (None, "bare text", "version"),
            "Attenuation25G": ("dB", "missing", "decimal"),
            "RX1Power": ("mW", "fixed 3", "fixed 3"),
            "TX8Bias": ("mA", "missing", "fixed 3"),
            "RX1CDRLOL": (None, "flag", "flag"),
            "SupplyVoltageReporting": ("uV", "microvolts", "microvolts"),
            "RXPowerHighThresh": ("0.1 uW or dBm", "missing", "decimal"),
            "TXBiasLowThresh": ("2 uA", "missing", "decimal"),
            "DateCode": (None, "bare text", "date"),
            "Lot": (None, "hex 4", "hex 4"),
            "MaxPower": ("W", "missing", "watts"),
        }.items():
            self.assertEqual(columns[name], expected, name)


class Help(ProgramTest):
    def test_version(self):
        header = (ROOT / "cable_info" / "version.h").read_text()
        version = re.search(r'"(\d+\.\d+\.\d+)"', header).group(1)
        result = run("--version")
        self.assert_run(result)
        self.assertEqual(result.stdout.decode(), f"cableinfo {version}\n")

    def test_every_command_shows_examples(self):
        self.assertIn("Exit status:", run("--help").stdout.decode())
        for command in ("table", "report", "export", "columns"):
            result = run(command, "--help")
            self.assert_run(result)
            self.assertIn("Examples:", result.stdout.decode())
            self.assertIn(f"cableinfo {command}", result.stdout.decode())


if __name__ == "__main__":
    unittest.main()
