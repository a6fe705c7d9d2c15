"""The forms of the table for other readers, as Python, SQLite, Miller and pandas read them."""

import csv
import io
import json
import shutil
import sqlite3
import subprocess
import unittest

from program import EXPECTED, FABRIC, ProgramTest, run

COLUMNS = 177

# Texts that break a reader which takes CSV apart carelessly, one port each.
HOSTILE = ['A","B', '"', '""', '"quoted"', ",", 'a,b,"c"\r\nd"', "a\nb", "\n", "\r", "a\r\nb", "x\ry", " padded ", "tab\t",
           "=1+1", "\x1b[31m", "\x01\x7f", "'", ";", "\\", "\\N", "-", "é", "\u4e2d", "a\0b", "\0"]


def hostile_ports():
    return [{"port_num": number, "cable": {"VendorName": text, "PartNumber": text, "LengthText": text}}
            for number, text in enumerate(HOSTILE)]


def as_csv(text):
    """A text of the input as it is in the CSV: bytes as code points, a NUL as its symbol."""
    return text.encode().decode("latin-1").replace("\0", "\u2400")


def exact_rows():
    """The exact table of the sample, whose texts hold neither commas nor line breaks."""
    header, *rows = (EXPECTED / "table.csv").read_text().splitlines()
    for row in rows:
        yield dict(zip(header.split(","), row.split(",")))


NO_NUMBERS = {"-999.999", "nan", "-nan", "inf", "-inf"}
LENGTHS = {"LengthDesc", "LengthDescByPRTL", "LengthDescByReg"}
CODED_TEXTS = {"InputEq", "OutputAmp", "OutputEmp", "OutputPreEmp", "OutputPostEmp", "FWVersion", "DateCode", "OUI"}


def typed(column, cell, source):
    """The value that a cell of the exact table shows."""
    quoted = cell.startswith('"')
    text = cell.strip('"')
    if text in ("", "NA", "N/A") or cell in NO_NUMBERS:
        return None
    if column in LENGTHS:
        number, unit, *rest = text.split(" ")
        return text if rest else float(number) * {"m": 1, "km": 1000}[unit]
    if column.endswith(("Thresh", "Temperature", "SupplyVoltageReporting")) and quoted:
        return int(text.removesuffix("uV").removesuffix("C"))
    if column == "MaxPower":
        return float(text.removesuffix(" W"))
    if quoted or text.startswith("0x") or column in CODED_TEXTS:
        return text
    if column == "NominalBitrate" and source == "PHY":
        return int(text) // 1000
    return float(text)


class TableTest(ProgramTest):
    def rfc4180(self, *arguments, **options):
        result = run("table", "--rfc4180", "-q", *arguments, **options)
        self.assert_run(result)
        path = self.file("table.csv", result.stdout)
        with path.open(newline="", encoding="utf-8") as file:
            return path, list(csv.reader(file, strict=True))

    def json(self, *arguments, **options):
        result = run("table", "--json", "-q", *arguments, **options)
        self.assert_run(result)
        return [json.loads(line) for line in result.stdout.splitlines()]


class Values(TableTest):
    def test_both_forms_have_the_values_of_the_exact_table(self):
        _, (header, *rows) = self.rfc4180(FABRIC)
        objects = self.json(FABRIC)
        exact = list(exact_rows())
        self.assertEqual(len(rows), len(exact))
        for row, values, cells in zip(rows, objects, exact, strict=True):
            self.assertEqual(len(row), COLUMNS)
            self.assertEqual(list(values), header)
            for column, cell in zip(header, row, strict=True):
                expected = typed(column, cells.get(column, ""), values["Source"])
                self.assertEqual(values[column], expected, column)
                if expected is None:
                    self.assertEqual(cell, "", column)
                else:
                    self.assertEqual(cell if isinstance(expected, str) else float(cell), expected, column)

    def test_header_is_that_of_the_exact_table(self):
        text = run("table", "--rfc4180", FABRIC).stdout
        self.assertEqual(text.split(b"\r\n")[0], (EXPECTED / "table.csv").read_bytes().split(b"\n")[0])

    def test_lines_end_with_cr_lf(self):
        lines = run("table", "--rfc4180", "--no-header", "-q", FABRIC).stdout.split(b"\n")
        self.assertEqual(lines.pop(), b"")
        self.assertEqual(len(lines), len(list(exact_rows())))
        self.assertTrue(all(line.endswith(b"\r") for line in lines))

    def test_values_of_the_cable_pages(self):
        port = {"port_num": 7, "cable": {
            "VendorName": "Acme", "Oui": "0x1b21", "Temperature": 0xE700, "TransmitterTechnologyCode": 0,
            "SupplyVoltage": 30000, "RxPower": [0.8704, 0.0004, -0.5], "TxBias": [6.75], "NominalBitrate": 25,
            "RxPowerIsAverage": 1, "LatchedCdrLos": 2, "LengthText": "2 km", "PrtlLengthText": "9.5 m",
            "Identifier": 0x11}}
        row, = self.json(stdin=[port])
        self.assertEqual(len(row), COLUMNS)
        for column, value in {
                "NodeGuid": "0x0000000000000000", "PortNum": 7, "Source": "CABLE", "Vendor": "Acme", "OUI": "0x1b21",
                "PN": None, "Temperature": -25, "SupplyVoltageReporting": 3000000, "RX1Power": 0.87, "RX2Power": 0,
                "RX3Power": -0.5, "RX5Power": None, "TX1Bias": 6.75, "NominalBitrate": 25, "RXPowerType": 1,
                "RX1LatchedLossIndicator": False, "RX2LatchedLossIndicator": True, "LengthDesc": 9.5,
                "LengthDescByPRTL": 9.5, "LengthDescByReg": 2000, "Identifier": "0x11", "MaxPower": None}.items():
            self.assertEqual(row[column], value, column)
            self.assertIs(type(row[column]) is bool, type(value) is bool, column)

    def test_values_of_the_phy(self):
        module = {"cable_identifier": 8, "cable_technology": 0x40, "nominal_bitrate": 0, "vendor_pn": "X,1",
                  "power_unit_flag": 1, "rx_power": [8710, 65535], "tx_bias": [3375], "temperature": 41 << 8,
                  "max_power": 13, "rx_power_high_threshold": 34674, "lot": 0x3031}
        port = {"phy": {"source": "PHY", "module": module}}
        row, = self.json(stdin=[port])
        for column, value in {
                "PN": "X-1", "RX1Power": 0.871, "RX2Power": 6.554, "TX1Bias": 6.75, "Temperature": 41, "MaxPower": 3.25,
                "RXPowerHighThresh": 34674, "Lot": "0x3031", "HighTemperatureAlarm": None,
                "IdentifierStr": "OSFP"}.items():
            self.assertEqual(row[column], value, column)

    def test_the_bit_rate_has_one_unit(self):
        rows = self.json(stdin=[{"cable": {"NominalBitrate": 25}}, {"phy": {"module": {"nominal_bitrate": 250}}}])
        self.assertEqual([row["NominalBitrate"] for row in rows], [25, 25])

    def test_values_other_than_numbers_are_missing(self):
        rows = self.json(stdin=[{"cable": {"RxPower": ["nan", "inf", "-inf", 0.1]}},
                                {"phy": {"module": {"power_unit_flag": 0, "rx_power": [0]}}}])
        self.assertEqual([rows[0][f"RX{lane}Power"] for lane in (1, 2, 3, 4)], [None, None, None, 0.1])
        self.assertIsNone(rows[1]["RX1Power"])

    def test_a_length_that_is_no_number_stays_a_text(self):
        for text, value in {"50 m or 100 m": "50 m or 100 m", "0.5 km": 500, "0 m": 0, "7": 7, "1e+06 m": 1e6, "N/A": None,
                            "NA": None, "-3 m": "-3 m", "nan m": "nan m", "3 ft": "3 ft", "": None}.items():
            row, = self.json(stdin=[{"cable": {"LengthText": text}}])
            self.assertEqual(row["LengthDescByReg"], value, text)

    def test_a_port_without_record_has_all_cells(self):
        _, (row,) = self.rfc4180("--no-header", stdin=[{"port_num": 3}])
        self.assertEqual(row, ["0x0000000000000000", "0x0000000000000000", "3"] + [""] * 174)
        values, = self.json(stdin=[{"port_num": 3}])
        self.assertEqual(list(values.values())[3:], [None] * 174)

    def test_forms_exclude_each_other(self):
        self.assertEqual(run("table", "--rfc4180", "--json", FABRIC).returncode, 2)


class HostileTexts(TableTest):
    """All of them, in the readers that people use."""

    def test_python(self):
        _, (header, *rows) = self.rfc4180(stdin=hostile_ports())
        self.assertEqual({len(row) for row in rows}, {COLUMNS})
        for column in ("Vendor", "PN", "LengthDescByReg"):
            self.assertEqual([row[header.index(column)] for row in rows], [as_csv(text) for text in HOSTILE])

    def test_json(self):
        self.assertEqual([row["Vendor"] for row in self.json(stdin=hostile_ports())],
                         [text.encode().decode("latin-1") for text in HOSTILE])
        self.assertTrue(run("table", "--json", stdin=hostile_ports()).stdout.isascii())

    def test_sqlite(self):
        path, _ = self.rfc4180(stdin=hostile_ports())
        database = self.folder / "cables.db"
        result = subprocess.run(["sqlite3", database, f".import --csv {path} cables"], capture_output=True, timeout=60,
                                check=True)
        self.assertEqual(result.stderr, b"")
        with sqlite3.connect(database) as connection:
            rows = connection.execute("select Vendor, PN, MaxFiberLength from cables").fetchall()
        self.assertEqual(rows, [(as_csv(text), as_csv(text), "") for text in HOSTILE])

    def test_miller(self):
        if not shutil.which("mlr"):
            self.skipTest("Miller is not installed")
        path, _ = self.rfc4180(stdin=hostile_ports())
        result = subprocess.run(["mlr", "-S", "--icsv", "--ojson", "cat", path], capture_output=True, timeout=60,
                                check=True)
        rows = json.loads(result.stdout, strict=False)
        self.assertEqual({len(row) for row in rows}, {COLUMNS})
        # Miller reads a CR LF inside a cell as a line feed.
        self.assertEqual([row["Vendor"] for row in rows], [as_csv(text).replace("\r\n", "\n") for text in HOSTILE])

    def test_pandas(self):
        try:
            import pandas
        except ImportError:
            self.skipTest("pandas is not installed")
        path, _ = self.rfc4180(stdin=hostile_ports())
        frame = pandas.read_csv(path, dtype={"Vendor": str}, keep_default_na=False)
        self.assertEqual(frame.shape, (len(HOSTILE), COLUMNS))
        self.assertEqual(list(frame["Vendor"]), [as_csv(text) for text in HOSTILE])
        path = self.file("table.json", run("table", "--json", stdin=hostile_ports()).stdout)
        frame = pandas.read_json(path, lines=True)
        self.assertEqual(frame.shape, (len(HOSTILE), COLUMNS))

    def test_pandas_finds_numbers(self):
        try:
            import pandas
        except ImportError:
            self.skipTest("pandas is not installed")
        path, _ = self.rfc4180(FABRIC)
        frame = pandas.read_csv(path)
        shown = [float(row["RX1Power"]) for row in exact_rows()
                 if row.get("RX1Power", '"NA"') not in {'"NA"'} | NO_NUMBERS]
        self.assertEqual(list(frame["RX1Power"].dropna()), shown)
        for column in ("Temperature", "SupplyVoltageReporting", "MaxPower", "NominalBitrate"):
            self.assertEqual(frame[column].dtype, "float64", column)


if __name__ == "__main__":
    unittest.main()
