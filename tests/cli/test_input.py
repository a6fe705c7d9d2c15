"""The input that the program accepts, and its messages about input that it refuses."""

import json
import unittest

from program import ProgramTest, run, summary

GOOD = {"port_num": 1, "cable": {"PartNumber": "GOOD"}}
MAX_LINE = 128 << 10


def numbers(result):
    """The port numbers of a table without header."""
    return [int(line.split(",")[2]) for line in result.stdout.decode().splitlines()]


def cell(port, column):
    """One cell of the port's row."""
    header, row = run("table", stdin=[port]).stdout.decode().splitlines()
    return row.split(",")[header.split(",").index(column)]


class Values(ProgramTest):
    def test_codes_may_be_numbers_or_hexadecimal(self):
        for code in (17, "0x11", "0x0011", "0X11".lower()):
            self.assertEqual(cell({"cable": {"Identifier": code}}, "IdentifierStr"), '"QSFP28"')

    def test_floats_may_be_any_number_nan_or_infinite(self):
        for value, text in ((1, "1.000"), (0.25, "0.250"), (-1e3, "-1000.000"), ("nan", "nan"),
                            ("inf", "inf"), ("-inf", "-inf"), (2.0**70, "1180591620717411303424.000")):
            self.assertEqual(cell({"cable": {"RxPower": [value]}}, "RX1Power"), text)

    def test_null_and_absent_are_zero_or_empty(self):
        empty = run("table", stdin=[{"cable": {}}]).stdout
        null = {"VendorName": None, "Identifier": None, "RxPower": [None, None], "Attenuation": None}
        self.assertEqual(run("table", stdin=[{"cable": null}]).stdout, empty)
        self.assertEqual(run("table", "--no-header", stdin=[{"cable": None, "phy": None, "prtl": None,
                                                            "prtl_length": None, "node_guid": None}]).stdout,
                         b"0x0000000000000000,0x0000000000000000,0,\n")

    def test_lanes_are_in_order_unless_raw(self):
        lanes = [10000, 20000, 30000, 40000, 50000, 60000, 1000, 2000]
        for key, first, second, last in (("rx_power", "1.000", "2.000", "0.200"),
                                         ("rx_power_raw", "2.000", "1.000", "0.100")):
            port = {"phy": {"module": {"power_unit_flag": 1, key: lanes}}}
            self.assertEqual(cell(port, "RX1Power"), first)
            self.assertEqual(cell(port, "RX2Power"), second)
            self.assertEqual(cell(port, "RX8Power"), last)

    def test_flags_may_be_named_or_bytes(self):
        page = [0] * 22
        page[17] = 5
        named = run("table", stdin=[{"phy": {"latched_flags": {"latched_rx_los": 5}}}]).stdout
        self.assertEqual(run("table", stdin=[{"phy": {"latched_flags": page}}]).stdout, named)

    def test_date_is_in_reading_order(self):
        self.assertEqual(cell({"phy": {"module": {"date_code": "240315"}}}, "DateCode"), "24-03-15")

    def test_average_power_is_a_boolean(self):
        for value, text in ((True, "1"), (1, "1"), (False, "0"), (0, "0")):
            self.assertEqual(cell({"cable": {"RxPowerIsAverage": value}}, "RXPowerType"), text)

    def test_measured_length_is_stored(self):
        for value, text in ((9.5, '"9.5 m"'), ("about 9", '"about 9"'), ("", '"NA"')):
            self.assertEqual(cell({"cable": {}, "prtl_length": value}, "LengthDescByPRTL"), text)

    def test_length_is_computed_from_both_ends(self):
        local = {"latency_res": 1, "round_trip_latency": 600, "local_mod_dp_latency": 20,
                 "local_phy_latency": 30}
        both = {"local": local, "remote": local}
        self.assertEqual(cell({"phy": {}, "prtl": both}, "LengthDescByPRTL"), '"50 m"')
        self.assertEqual(cell({"phy": {}, "prtl": {"local": local}}, "LengthDescByPRTL"), "NA")
        self.assertEqual(cell({"phy": {}, "prtl": both, "prtl_length": 3}, "LengthDescByPRTL"), '"3 m"')

    def test_a_missing_length_is_a_remark_and_the_port_is_written(self):
        port = {"port_guid": "0x1f", "port_num": 7, "cable": {},
                "prtl": {"local": {"round_trip_latency": "0xffffff"}, "remote": {}}}
        result = run("table", "--no-header", stdin=[port])
        self.assert_run(result, 0, "<stdin>:1: port 0x000000000000001f/7: "
                        "The PRTL round trip latency exceeds its maximal possible value.\n")
        self.assertEqual(numbers(result), [7])


class BadPorts(ProgramTest):
    CASES = [
        ({"cable": {"Temperature": 70000}},
         "cable.Temperature: expected an integer from 0 to 65535, found 70000"),
        ({"cable": {"Identifier": -1}}, "cable.Identifier: expected an integer from 0 to 255, found -1"),
        ({"cable": {"Identifier": 1.5}}, "cable.Identifier: expected an integer from 0 to 255, found 1.5"),
        ({"cable": {"Identifier": "0x100"}},
         'cable.Identifier: expected an integer from 0 to 255, found "0x100"'),
        ({"cable": {"Identifier": "17"}},
         'cable.Identifier: expected an integer from 0 to 255, found "17"'),
        ({"cable": {"Identifier": "0x"}},
         'cable.Identifier: expected an integer from 0 to 255, found "0x"'),
        ({"cable": {"Identifier": "0x1g"}},
         'cable.Identifier: expected an integer from 0 to 255, found "0x1g"'),
        ({"cable": {"Identifier": "0x-1"}},
         'cable.Identifier: expected an integer from 0 to 255, found "0x-1"'),
        ({"node_guid": "0x1ffffffffffffffff"},
         'node_guid: expected an integer from 0 to 18446744073709551615, found "0x1ffffffffffffffff"'),
        ({"port_num": True}, "port_num: expected an integer from 0 to 4294967295, found true"),
        ({"cable": {"RxPower": [0, 0, True]}}, "cable.RxPower[2]: expected a number, found true"),
        ({"cable": {"RxPower": ["NaN"]}}, 'cable.RxPower[0]: expected a number, found "NaN"'),
        ({"cable": {"RxPower": [1e39]}},
         "cable.RxPower[0]: expected a number within the range of a 32-bit float, found 1e+39"),
        ({"cable": {"RxPower": [0] * 5}},
         "cable.RxPower: expected an array of at most 4 elements, found [0,0,0,0,0]"),
        ({"cable": {"RxPower": 1}}, "cable.RxPower: expected an array of at most 4 elements, found 1"),
        ({"cable": {"RxPowerIsAverage": 2}}, "cable.RxPowerIsAverage: expected true or false, found 2"),
        ({"cable": {"VendorName": 5}}, "cable.VendorName: expected a text, found 5"),
        ({"cable": []}, "cable: expected an object, found []"),
        ({"phy": {"module": {"vendor_rev": "123456"}}},
         'phy.module.vendor_rev: expected a text of at most 5 bytes, found "123456"'),
        ({"phy": {"module": {"date_code": "2403155"}}},
         'phy.module.date_code: expected a text of at most 6 bytes, found "2403155"'),
        ({"phy": {"module": {"rx_power": [0, 65536]}}},
         "phy.module.rx_power[1]: expected an integer from 0 to 65535, found 65536"),
        ({"phy": {"latched_flags": 3}}, "phy.latched_flags: expected an object or an array, found 3"),
        ({"phy": {"latched_flags": [0] * 23}},
         "phy.latched_flags: expected an array of at most 22 elements, "
         "found [0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0..."),
        ({"prtl": {"local": {"latency_res": 256}}},
         "prtl.local.latency_res: expected an integer from 0 to 255, found 256"),
        ({"prtl_length": []}, "prtl_length: expected a number or a text, found []"),
        ({"format_version": 2}, "format_version: expected 1, found 2"),
        ({"cable": {"Temprature": 1}},
         'cable.Temprature: unknown key; did you mean "Temperature"?'),
        ({"cable": {"vendorname": ""}}, 'cable.vendorname: unknown key; did you mean "VendorName"?'),
        ({"phy": {"module": {"vendor_serial_number": ""}}},
         "phy.module.vendor_serial_number: unknown key"),
        ({"portnum": 1}, 'portnum: unknown key; did you mean "port_num"?'),
        ({"a\nb": 1}, "a\\x0ab: unknown key"),
        ([1, 2], "expected an object, found [1,2]"),
        ("text", 'expected an object, found "text"'),
        (5, "expected an object, found 5"),
        ({"port_num": 123456789012345678901234567890},
         "port_num: expected an integer from 0 to 4294967295, found 1.2345678901234568e+29"),
    ]

    def test_each_costs_one_message(self):
        for port, message in self.CASES:
            with self.subTest(message):
                result = run("table", "--no-header", stdin=[GOOD, port, GOOD])
                self.assert_run(result, 1, f"<stdin>:2: {message}\n" + summary(2, 1))
                self.assertEqual(numbers(result), [1, 1])

    def test_a_line_that_is_not_json_costs_one_message(self):
        for line in (b"{", b'{"port_num":1', b'{"port_num":1}}', b'{"port_num":1} {}', b"nonsense",
                     b'{"port_num":01}', b"{'port_num':1}", b'{"a":"\xff"}', b'{"port_num":1,}'):
            with self.subTest(line):
                result = run("table", "--no-header", stdin=b'{"port_num":8}\n' + line + b'\n{"port_num":9}\n')
                self.assertEqual(result.returncode, 1)
                self.assertEqual(numbers(result), [8, 9])
                self.assertRegex(result.stderr.decode(), "\\A<stdin>:2: not valid JSON: [^\n]+\n" + summary(2, 1) + "\\Z")

    def test_all_commands_continue(self):
        for command in ("table", "report", "export"):
            result = run(command, stdin=[GOOD, {"x": 1}, GOOD])
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stdout.count(b"GOOD"), {"export": 4}.get(command, 2))

    def test_strict_stops_at_the_first_bad_port(self):
        ports = [{"port_num": 1}, {"x": 1}, {"port_num": 2}, {"y": 1}]
        result = run("table", "--no-header", "--strict", stdin=ports)
        self.assert_run(result, 1, "<stdin>:2: x: unknown key\n" + summary(1, 1))
        self.assertEqual(numbers(result), [1])

    def test_a_long_value_is_abbreviated(self):
        result = run("table", stdin=[{"port_num": "\u00e9" * 100}])
        found = result.stderr.decode().split("found ")[1].split("\n")[0]
        self.assertTrue(found.endswith("..."))
        self.assertLess(len(found), 50)


class Lines(ProgramTest):
    def test_blank_lines_are_skipped_and_line_ends_may_differ(self):
        text = b'\n{"port_num":1}\r\n  \t\n\r\n{"port_num":2}'
        result = run("table", "--no-header", stdin=text)
        self.assert_run(result)
        self.assertEqual(numbers(result), [1, 2])

    def test_line_numbers_count_blank_lines(self):
        self.assert_run(run("table", stdin=b'\n\n{"x":1}\n'), 1, "<stdin>:3: x: unknown key\n" + summary(0, 1))

    def test_a_byte_order_mark_is_skipped(self):
        result = run("table", "--no-header", stdin=b'\xef\xbb\xbf{"port_num":3}\n')
        self.assert_run(result)
        self.assertEqual(numbers(result), [3])

    def test_an_empty_input_gives_only_the_header(self):
        result = run("table", stdin=b"")
        self.assert_run(result)
        self.assertEqual(result.stdout.count(b"\n"), 1)
        self.assertEqual(run("report", stdin=b"").stdout, b"")

    def test_long_lines_are_read(self):
        text = "v" * (MAX_LINE - 100)
        result = run("table", stdin=[{"cable": {"VendorName": text}}, GOOD])
        self.assert_run(result)
        self.assertIn(text.encode(), result.stdout)

    def test_a_line_above_the_limit_is_skipped(self):
        for size in (MAX_LINE + 1, 3 * MAX_LINE):
            result = run("table", "--no-header",
                         stdin=b'{"port_num":1}\n' + b" " * size + b'{"port_num":2}\n{"port_num":3}')
            self.assert_run(result, 1, f"<stdin>:2: expected a line of at most {MAX_LINE} bytes, "
                            "found a longer one\n" + summary(2, 1))
            self.assertEqual(numbers(result), [1, 3])

    def test_lines_across_read_boundaries_are_complete(self):
        ports = [{"port_num": n, "cable": {"VendorName": "v" * (n % 700)}} for n in range(20000)]
        result = run("table", "--no-header", stdin=ports)
        self.assert_run(result)
        self.assertEqual(numbers(result), list(range(20000)))


class Files(ProgramTest):
    def test_several_files_are_read_in_order(self):
        first = self.file("a.jsonl", b'{"port_num":1}\n{"port_num":2}')
        second = self.file("b.jsonl", b'{"port_num":3}\n{"x":1}\n')
        result = run("table", "--no-header", first, "-", second, stdin=b'{"port_num":9}\n')
        self.assert_run(result, 1, f"{second}:2: x: unknown key\n" + summary(4, 1))
        self.assertEqual(numbers(result), [1, 2, 9, 3])

    def test_a_dash_or_no_file_means_standard_input(self):
        for arguments in ((), ("-",)):
            self.assertEqual(numbers(run("table", "--no-header", *arguments, stdin=[GOOD])), [1])

    def test_an_unreadable_file_costs_one_message(self):
        good = self.file("good.jsonl", json.dumps(GOOD).encode())
        missing = self.folder / "missing.jsonl"
        result = run("table", "--no-header", missing, good)
        self.assert_run(result, 3, f"cableinfo: {missing}: No such file or directory\n" + summary(1, 0, unread=1))
        self.assertEqual(numbers(result), [1])
        self.assert_run(run("table", "--no-header", self.folder), 3,
                        f"cableinfo: {self.folder}: Is a directory\n" + summary(0, 0, unread=1))

    def test_usage_errors_have_status_2(self):
        for arguments in ((), ("nonsense",), ("table", "--nonsense"), ("table", "-o"),
                          ("columns", "file"), ("report", "--no-header"),
                          ("table", "--port", "-1"), ("table", "--port", "4294967296"), ("table", "--port", "x")):
            result = run(*arguments)
            self.assertEqual(result.returncode, 2, arguments)
            self.assertEqual(result.stdout, b"")
            self.assertRegex(result.stderr, rb"\Acableinfo: [^\n]+\n\Z")


if __name__ == "__main__":
    unittest.main()
