"""`cableinfo check`: verdicts, forms of output, settings and exit statuses; and which ports a run selects."""

import json
import os
import pathlib
import pty
import re
import subprocess
import unittest

from program import FABRIC, FAULTS, ROOT, ProgramTest, program, run

DOCS = ROOT / "docs"
OK, UNKNOWN, WARNING, CRITICAL = "ok", "unknown", "warning", "critical"


def optic(**fields):
    """A healthy module of four lanes on the cable pages."""
    return {"Identifier": 0x11, "Connector": 0x0C, "Temperature": 40 << 8, "SupplyVoltage": 33000,
            "TempHighAlarmThresh": 75 << 8, "TempHighWarnThresh": 70 << 8, "TempLowAlarmThresh": 0xFB00,
            "RxPower": [1, 1, 1, 1], "TxPower": [1, 1, 1, 1], "TxBias": [7, 7, 7, 7], **fields}


def port(number, guid=0x10, **fields):
    return {"node_guid": 0x1, "port_guid": guid, "port_num": number, "cable": optic(**fields)}


GOOD = port(1)
HOT = port(2, Temperature=76 << 8, PartNumber="P", SerialNumber="S")
WARM = port(3, Temperature=71 << 8)
EMPTY = {"port_num": 4}


def check(ports, *options, **more):
    return run("check", *options, stdin=ports, **more)


def lines(ports, *options):
    return [json.loads(line) for line in check(ports, "--json", *options).stdout.splitlines()]


def rules(ports, *options):
    """The rules that found something, port by port."""
    return [[finding["rule"] for finding in line["findings"]] for line in lines(ports, *options)[:-1]]


class Verdicts(ProgramTest):
    def test_the_worst_verdict_is_the_exit_status(self):
        for ports, status in (([GOOD], 0), ([], 0), ([EMPTY, GOOD], 0), ([GOOD, WARM], 5), ([WARM, HOT, GOOD], 6)):
            for form in ((), ("--json",)):
                self.assertEqual(check(ports, *form).returncode, status)

    def test_the_highest_status_applies(self):
        self.assertEqual(check([GOOD, {"x": 1}]).returncode, 1)
        self.assertEqual(check([WARM, {"x": 1}]).returncode, 5)
        self.assertEqual(run("check", self.file("ports", json.dumps(HOT).encode()), "/nowhere").returncode, 6)
        self.assertEqual(run("check", "/nowhere").returncode, 3)

    def test_fabric_wide_rules(self):
        def far(number):
            return {"peer": {"port_guid": 0x20, "port_num": number}}

        weak = [0.25] * 4  # 6.02 dB below 1 mW
        self.assertEqual(rules([{**port(1, RxPower=weak), **far(1)}, port(1, 0x20)]), [["link-loss"], []])
        self.assertEqual(rules([{**port(1, RxPower=[0.252] * 4), **far(1)}, port(1, 0x20)]), [[], []])
        cable = {"Connector": 0x23, "PartNumber": "P", "SerialNumber": "S"}
        other = {**cable, "SerialNumber": "T"}
        self.assertEqual(rules([port(1, 0x20, **cable), {**port(1, **other), **far(1)}]), [[], ["end-mismatch"]])
        self.assertEqual(rules([port(1, 0x20, **cable), {**port(1, **cable), **far(1)}]), [[], []])
        group = [port(number, PartNumber="P") for number in range(7)]
        self.assertEqual(rules([*group, port(8, PartNumber="P", RxPower=[0.5] * 4)])[-1], ["outlier"])
        self.assertEqual(rules([*group, port(8, PartNumber="P", RxPower=[0.51] * 4)])[-1], [])
        self.assertEqual(rules([*group[1:], port(8, PartNumber="P", RxPower=[0.5] * 4)])[-1], [])

    def test_sources_do_not_matter_to_the_fabric(self):
        module = {"power_unit_flag": 1, "rx_power": [2500] * 4, "tx_power": [10000] * 4, "tx_bias": [3500] * 4}
        peer = {"port_guid": 0x10, "port_num": 1}
        phy = {"port_guid": 0x20, "port_num": 1, "peer": peer, "phy": {"module": module}}
        self.assertEqual(rules([GOOD, phy]), [[], ["link-loss"]])

    def test_a_wrong_checksum_is_a_finding(self):
        memory = bytearray(256)
        memory[0] = memory[128] = 0x11
        memory[130], memory[220] = 0x0C, 0
        memory[191] = sum(memory[128:191]) & 0xFF
        memory[223] = sum(memory[192:223]) & 0xFF
        good = {"module_memory": {"hex": memory.hex(" ")}}
        memory[223] ^= 1
        bad = {"module_memory": {"hex": memory.hex(" ")}}
        self.assertEqual(rules([good, bad]), [[], ["checksum"]])
        dump = self.file("bad.bin", bytes(memory))
        result = run("check", "--json", "--module", dump)
        found = json.loads(result.stdout.splitlines()[0])
        self.assertEqual((found["label"], [finding["rule"] for finding in found["findings"]]), ("bad.bin", ["checksum"]))
        self.assertEqual(result.returncode, 5)

    def test_jobs_do_not_matter(self):
        ports = [port(number, PartNumber="P", Temperature=(40 + number % 37) << 8) for number in range(3000)]
        outputs = {check(ports, "-j", str(jobs)).stdout for jobs in (1, 2, 7)}
        self.assertEqual(len(outputs), 1)


class Sample(ProgramTest):
    """examples/faults.jsonl has ports with faults of each kind; their labels name the rules that find them."""

    def test_each_port_has_the_faults_that_its_label_names(self):
        *ports, summary = map(json.loads, run("check", "-q", "--json", FAULTS).stdout.splitlines())
        for port in ports:
            expected = set() if port["label"] == "ok" else set(port["label"].split())
            self.assertEqual({finding["rule"] for finding in port["findings"]}, expected, port)
        self.assertEqual(summary["summary"]["ports"], len(ports))

    def test_dark_lanes_are_critical(self):
        ports = {port["label"]: port for port in
                 map(json.loads, run("check", "-q", "--json", FAULTS).stdout.splitlines()[:-1])}
        self.assertEqual(ports["rx-los"]["verdict"], WARNING)
        self.assertEqual(ports["rx-los lane-imbalance"]["verdict"], CRITICAL)
        self.assertEqual(ports["tx-fault"]["verdict"], CRITICAL)


class Forms(ProgramTest):
    def test_text(self):
        result = check([GOOD, WARM, EMPTY, {**HOT, "label": "rack 7"}], "-q")
        self.assertEqual(result.stdout.decode(), """\
critical  0x0000000000000010/2 "rack 7"  P  S
  critical  temperature-high-alarm    The temperature is 76 C, above the high alarm limit of 75 C.
  warning   temperature-high-warning  The temperature is 76 C, above the high warning limit of 70 C.

warning  0x0000000000000010/3
  warning   temperature-high-warning  The temperature is 71 C, above the high warning limit of 70 C.

unknown  0x0000000000000000/4
  unknown   no-data  Nothing was read from the port's cable.

4 ports: 1 critical, 1 warning, 1 unknown, 1 ok
  temperature-high-warning  2
  no-data                   1
  temperature-high-alarm    1
""")

    def test_text_of_no_findings(self):
        self.assertEqual(check([GOOD]).stdout, b"1 port: 0 critical, 0 warning, 0 unknown, 1 ok\n")

    def test_foreign_text_cannot_command_the_terminal(self):
        result = check([{**port(1, Temperature=76 << 8, SerialNumber="a\u001b[31m\nb"), "label": "\u001b]0;x\u0007"}])
        self.assertNotIn(b"\x1b", result.stdout)
        self.assertEqual(len(result.stdout.splitlines()), 7)

    def test_json(self):
        first, second, summary = lines([GOOD, {**HOT, "label": "caf\u00e9"}])
        self.assertEqual(first, {
            "format_version": 1, "node_guid": "0x0000000000000001", "port_guid": "0x0000000000000010", "port_num": 1,
            "label": None, "part_number": None, "serial_number": None, "verdict": "ok", "findings": []})
        self.assertEqual((second["label"], second["part_number"], second["serial_number"]), ("caf\u00e9", "P", "S"))
        self.assertEqual(second["verdict"], "critical")
        self.assertEqual(second["findings"][0], {
            "rule": "temperature-high-alarm", "severity": "critical", "lane": None, "value": 76, "limit": 75, "unit": "C",
            "message": "The temperature is 76 C, above the high alarm limit of 75 C."})
        self.assertEqual(summary, {"format_version": 1, "summary": {
            "verdict": "critical", "ports": 2, "verdicts": {"critical": 1, "warning": 0, "unknown": 0, "ok": 1},
            "rules": {"temperature-high-alarm": 1, "temperature-high-warning": 1}}})

    def test_json_names_lanes(self):
        finding = lines([port(1, RxPower=[1, 0.5, 1, 1])])[0]["findings"][0]
        self.assertEqual((finding["rule"], finding["lane"], finding["unit"], finding["limit"]),
                         ("lane-imbalance", 2, "dB", 3))
        self.assertAlmostEqual(finding["value"], 3.0103, 4)

    def test_plugin(self):
        for ports, status, state in (([GOOD], 0, "OK"), ([GOOD, WARM], 1, "WARNING"), ([HOT, EMPTY, WARM], 2, "CRITICAL"),
                                     ([GOOD, EMPTY], 3, "UNKNOWN")):
            result = check(ports, "--plugin")
            counts = [len([p for p in ports if p is kind]) for kind in (HOT, WARM, EMPTY, GOOD)]
            self.assertEqual(result.stdout.decode(), "CABLES {} - {} port{}, {} critical, {} warning, {} unknown, {} ok "
                             "| ports={} critical={} warning={} unknown={} ok={}\n".format(
                                 state, len(ports), "" if len(ports) == 1 else "s", *counts, len(ports), *counts))
            self.assertEqual(result.returncode, status)

    def test_a_plugin_that_could_not_read_everything_is_unknown_unless_critical(self):
        self.assertEqual(check([GOOD, {"x": 1}], "--plugin").returncode, 3)
        self.assertEqual(run("check", "--plugin", "/nowhere").returncode, 3)
        self.assertEqual(check([HOT, {"x": 1}], "--plugin").returncode, 2)

    def test_the_word_of_a_plugin_is_its_status(self):
        for result, state in ((check([], "--plugin"), "UNKNOWN"), (check([GOOD, {"x": 1}], "--plugin"), "UNKNOWN"),
                              (check([GOOD], "--plugin", "--label", "nowhere"), "UNKNOWN"),
                              (run("check", "--plugin", "/nowhere"), "UNKNOWN"),
                              (check([HOT, {"x": 1}], "--plugin"), "CRITICAL")):
            self.assertTrue(result.stdout.startswith(f"CABLES {state} - ".encode()), result.stdout)
            self.assertEqual(result.returncode, 3 if state == "UNKNOWN" else 2)
        self.assertEqual(check([GOOD], "--plugin", "--set", "nothing=1").returncode, 3)
        for arguments in (("--bogus",), ("--jobs", "0"), ("--lable", "x")):
            wrong = check([GOOD], "--plugin", *arguments)
            self.assertEqual((wrong.returncode, wrong.stdout, wrong.stderr.count(b"\n")), (3, b"", 1), arguments)
        self.assertEqual(check([GOOD], "--bogus").returncode, 2)

    def test_powers_have_no_negative_limits(self):
        for name in ("rx-power-low-alarm", "tx-power-high-warning", "tx-bias-high-alarm", "voltage-low-alarm"):
            self.assertEqual(check([GOOD], "--set", f"{name}=-3").returncode, 2, name)
        self.assertEqual(check([GOOD], "--set", "temperature-low-alarm=-40").returncode, 0)

    def test_the_list_of_rules_can_be_written_to_a_file(self):
        output = self.folder / "rules.txt"
        self.assert_run(run("check", "--rules", "-o", output))
        self.assertEqual(output.read_bytes(), run("check", "--rules").stdout)

    def test_a_configuration_may_begin_with_a_byte_order_mark(self):
        config = self.file("rules", b"\xef\xbb\xbftemperature-high-alarm=off\n")
        self.assertEqual(check([GOOD], "--config", str(config)).returncode, 0)
        self.assertEqual(check([GOOD], "--config", "").returncode, 3)

    def test_a_file_is_written_whole(self):
        output = self.folder / "findings.txt"
        self.assertEqual(check([HOT], "-o", output).returncode, 6)
        self.assertEqual(output.read_bytes(), check([HOT]).stdout)


class Colours(ProgramTest):
    def on_a_terminal(self, *options, **environment):
        ours, theirs = pty.openpty()
        with subprocess.Popen([program(), "check", *options, self.file("ports", json.dumps(HOT).encode())],
                              stdout=theirs, stderr=subprocess.DEVNULL,
                              env={**{k: v for k, v in os.environ.items() if k != "NO_COLOR"}, **environment}) as process:
            os.close(theirs)
            output = b""
            try:
                while piece := os.read(ours, 65536):
                    output += piece
            except OSError:
                pass  # how a pseudo-terminal ends
            process.wait(timeout=20)
        os.close(ours)
        return output

    def test_only_a_terminal_is_coloured(self):
        self.assertIn(b"\x1b[1;31mcritical\x1b[0m", self.on_a_terminal())
        self.assertNotIn(b"\x1b", check([HOT]).stdout)

    def test_no_color_is_respected(self):
        self.assertNotIn(b"\x1b", self.on_a_terminal(NO_COLOR="1"))
        self.assertIn(b"\x1b", self.on_a_terminal(NO_COLOR=""))

    def test_json_is_never_coloured(self):
        self.assertNotIn(b"\x1b", self.on_a_terminal("--json"))


class Settings(ProgramTest):
    def test_limits_and_severities(self):
        tilted = port(1, RxPower=[1, 0.55, 1, 1])  # 2.6 dB
        self.assertEqual(rules([tilted]), [[]])
        self.assertEqual(rules([tilted], "--set", "lane-imbalance=2.5"), [["lane-imbalance"]])
        self.assertEqual(check([tilted], "--set", "lane-imbalance=2.5", "--set", "lane-imbalance=critical").returncode, 6)
        self.assertEqual(rules([WARM], "--set", "temperature-high-warning=off"), [[]])
        self.assertEqual(rules([GOOD], "--set", "temperature-high-warning=39"), [["temperature-high-warning"]])

    def test_a_file_of_settings(self):
        config = self.file("limits.conf", b"# our limits\n\n lane-imbalance = 2.5  # dB\r\nno-data=critical\n")
        tilted = port(1, RxPower=[1, 0.55, 1, 1])
        self.assertEqual(rules([tilted, EMPTY], "--config", config), [["lane-imbalance"], ["no-data"]])
        self.assertEqual(rules([tilted], "--config", config, "--set", "lane-imbalance=3"), [[]])
        self.assertEqual(check([EMPTY], "--config", config).returncode, 6)

    def test_errors_in_a_file(self):
        config = self.file("limits.conf", b"lane-imbalance=2\nlane-imbalnce=2\nchecksum 3\n")
        self.assert_run(check([], "--config", config), 2,
                        f"{config}:2: unknown rule \"lane-imbalnce\"; did you mean \"lane-imbalance\"?\n"
                        f"{config}:3: expected RULE=VALUE, found \"checksum 3\"\n")
        self.assert_run(check([], "--config", "/nowhere"), 3, "cableinfo: /nowhere: No such file or directory\n")

    def test_errors_in_a_setting(self):
        for setting, problem in (("lane-imbalanc=2", 'unknown rule "lane-imbalanc"; did you mean "lane-imbalance"?'),
                                 ("xyzzyxyzzy=2", 'unknown rule "xyzzyxyzzy"; cableinfo check --rules lists all of them'),
                                 ("checksum", 'expected RULE=VALUE, found "checksum"'),
                                 ("x" * 41, f'expected RULE=VALUE, found "{"x" * 40}..."'),
                                 ("checksum=2", 'checksum: "2" is neither a severity (off, unknown, warning, critical) '
                                                'nor a limit of this rule')):
            self.assert_run(check([HOT], "--set", setting), 2, f"cableinfo: --set: {problem}\n")


class Document(ProgramTest):
    """docs/check.md agrees with the program."""

    def listed(self, *options):
        text = run("check", "--rules", *options).stdout.decode()
        columns = [0, 34, 44, 54]
        return [[line[begin:end].strip() for begin, end in zip(columns, [*columns[1:], None])]
                for line in text.splitlines()]

    def test_rules(self):
        rows = []
        for line in (DOCS / "check.md").read_text().splitlines():
            cells = [cell.strip().strip("`") for cell in line.split("|")[1:-1]]
            if line.startswith("| `"):
                rows.append(cells)
        self.assertEqual(rows, self.listed()[1:])

    def test_rules_show_their_settings(self):
        listed = self.listed("--set", "lane-imbalance=2.5", "--set", "checksum=off", "--set", "rx-power-low-alarm=0.1")
        self.assertIn("2.5 dB", [row[2] for row in listed if row[0] == "lane-imbalance"])
        self.assertIn("off", [row[1] for row in listed if row[0] == "checksum"])
        self.assertIn("0.1 mW", [row[2] for row in listed if row[0] == "rx-power-low-alarm"])


class Selection(ProgramTest):
    PORTS = [{"node_guid": 1, "port_guid": 0x10, "port_num": 1, "label": "leaf-1/1"},
             {"node_guid": 1, "port_guid": 0x11, "port_num": 2, "label": "leaf-1/2"},
             {"node_guid": 2, "port_guid": 0x20, "port_num": 1, "label": "spine*"},
             {"node_guid": 3, "port_guid": "0xa0b1c20000d4e500", "port_num": 3}]

    def selected(self, *options, command="export"):
        result = run(command, *options, stdin=self.PORTS)
        self.assertEqual(result.stderr, b"")
        numbers = [json.loads(line)["port_guid"] for line in result.stdout.splitlines()]
        return [int(guid, 16) for guid in numbers]

    def test_by_number(self):
        self.assertEqual(self.selected("--port", "1"), [0x10, 0x20])
        self.assertEqual(self.selected("--port", "1", "--port", "3"), [0x10, 0x20, 0xA0B1C20000D4E500])
        self.assertEqual(self.selected("--port", "9"), [])

    def test_by_guid(self):
        self.assertEqual(self.selected("--guid", "0x1"), [0x10, 0x11])
        self.assertEqual(self.selected("--guid", "0xA0B1C20000D4E500"), [0xA0B1C20000D4E500])
        self.assertEqual(self.selected("--guid", "20", "--guid", "0x0000000000000011"), [0x11, 0x20])

    def test_by_label(self):
        for pattern, guids in (("leaf-1/1", [0x10]), ("leaf*", [0x10, 0x11]), ("*2", [0x11]), ("leaf-?/2", [0x11]),
                               ("*[!1]", [0x11, 0x20]), ("leaf-1/[0-1]", [0x10]), (r"spine\*", [0x20]), ("spine", []),
                               ("", [0xA0B1C20000D4E500]), ("*", [0x10, 0x11, 0x20, 0xA0B1C20000D4E500]),
                               ("*1*1", [0x10]), ("[", [])):
            self.assertEqual(self.selected("--label", pattern), guids, pattern)

    def test_patterns_match_characters(self):
        labels = ("xä", "xö", "x€", "x\U0001f50c", "xa", "xab")
        self.PORTS = [{"port_guid": guid, "label": label} for guid, label in enumerate(labels, start=1)]
        for pattern, guids in (("x?", [1, 2, 3, 4, 5]), ("x[!a]", [1, 2, 3, 4]), ("x[ä]", [1]), ("x[äö]", [1, 2]),
                               ("x[!äö]", [3, 4, 5]), ("x[à-ö]", [1, 2]), ("x[a-ö]", [1, 2, 5]), ("x[ö-€]", [2, 3]),
                               ("[x-ö][€-\U0001f50c]", [3, 4]), ("x\\ä", [1]), ("x??", [6]), ("*[ä]", [1]), ("*ö", [2])):
            self.assertEqual(self.selected("--label", pattern), guids, pattern)

    def test_bytes_that_are_not_utf8_are_characters(self):
        names = {name: self.file(os.fsdecode(name), bytes([0x11]) + bytes(255))
                 for name in (b"x\xe4", b"x\xe2\x82", b"x\xc3\xa4")}
        for pattern, labels in ((b"x?", [b"x\xe4", b"x\xc3\xa4"]), (b"x??", [b"x\xe2\x82"]), (b"x\xe4", [b"x\xe4"]),
                                (b"x[\xe4]", [b"x\xe4"]), (b"x[\xc3\xa4]", [b"x\xc3\xa4"]), (b"*\xa4", []),
                                (b"x[!\xc3\xa4]", [b"x\xe4"]), (b"x[a-\xf4\x8f\xbf\xbf]", [b"x\xc3\xa4"]),
                                (b"x[\x80-\xff]*", [b"x\xe4", b"x\xe2\x82"])):
            result = run("export", "-q", "--label", os.fsdecode(pattern), "--module", *names.values())
            found = [int(json.loads(line)["port_num"]) for line in result.stdout.splitlines()]
            self.assertEqual(found, [list(names).index(label) + 1 for label in labels], pattern)

    def test_patterns_never_take_long(self):
        self.PORTS = [{"label": "a" * 2000}]
        self.assertEqual(self.selected("--label", "*a" * 300 + "b"), [])

    def test_conditions_of_two_kinds_must_both_hold(self):
        self.assertEqual(self.selected("--port", "1", "--guid", "1"), [0x10])
        self.assertEqual(self.selected("--label", "leaf*", "--label", "spine*", "--port", "1"), [0x10, 0x20])

    def test_every_command_selects(self):
        for command in ("table", "report", "export", "check"):
            result = run(command, "--port", "8", FABRIC)
            self.assertEqual(result.stderr, b"")
            self.assertIn(b"0xa0b1c20000d4f600", result.stdout)
            self.assertNotIn(b"0xa0b1c200001a7700", result.stdout)

    def test_modules_have_labels_and_numbers(self):
        first, second = (self.file(name, bytes([0x11]) + bytes(255)) for name in ("a.bin", "b.bin"))
        for option in (("--label", "b*"), ("--port", "2")):
            result = run("export", "-q", *option, "--module", first, second)
            self.assertEqual([json.loads(line)["label"] for line in result.stdout.splitlines()], ["b.bin"])

    def test_a_wrong_guid_is_an_error(self):
        for guid in ("xyz", "", "0x", "0x12345678901234567"):
            result = run("export", "--guid", guid, stdin=[])
            self.assertEqual(result.returncode, 2)
            self.assertIn(b"expected a GUID of up to 16 hexadecimal digits", result.stderr)


class Columns(ProgramTest):
    def table(self, *options):
        return run("table", *options, FABRIC).stdout.decode().splitlines()

    def test_all_columns_are_those_of_the_table(self):
        names = [json.loads(line)["name"] for line in run("columns", "--json").stdout.splitlines()]
        for whole, picked in zip(self.table(), self.table("--columns", ",".join(names)), strict=True):
            if whole.count(",") == 3:  # a port without records has no further cells in the table
                self.assertEqual(picked, whole[:-1] + "," * 174)
            else:
                self.assertEqual(picked, whole)

    def test_columns_are_written_in_the_order_given(self):
        header, first, *_ = self.table("--columns", "SN,PortNum", "--columns", "PN,SN")
        self.assertEqual(header, "SN,PortNum,PN,SN")
        self.assertEqual(first, '"KS2408VS01234",1,"KC1-E002","KS2408VS01234"')
        self.assertEqual(self.table("--no-header", "--columns", "PortNum")[:3], ["1", "2", "3"])

    def test_cells_keep_their_commas(self):
        ports = [{"cable": {"VendorName": 'a","b', "Oui": "1,2", "PartNumber": "x"}}]
        result = run("table", "--no-header", "--columns", "PN,OUI,Vendor", stdin=ports)
        self.assertEqual(result.stdout.decode(), '"x",1,2,"a","b"\n')

    def test_unknown_columns_are_an_error(self):
        self.assert_run(run("table", "--columns", "PN,Temprature", stdin=[]), 2,
                        'cableinfo: --columns: unknown column "Temprature"; did you mean "Temperature"?\n')
        self.assert_run(run("table", "--columns", "xyzzyxyzzy", stdin=[]), 2,
                        'cableinfo: --columns: unknown column "xyzzyxyzzy"; cableinfo columns lists all of them\n')


if __name__ == "__main__":
    unittest.main()
