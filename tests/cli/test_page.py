"""The HTML page: one file that holds its data, its scripts and a policy that allows nothing else."""

import base64
import hashlib
import json
import re
import unittest

from program import FABRIC, FAULTS, ProgramTest, run

HOSTILE = "</script><img src=x onerror=alert(1)>&<!--\u2028\u2029"

OPTIC = {"Identifier": 0x11, "VendorName": "Acme", "PartNumber": "P1", "SerialNumber": "S1",
         "TransmitterTechnologyCode": 0, "Temperature": 0x2900, "SupplyVoltage": 33000,
         "RxPower": [0.5, 0.25, 1, 2], "TxPower": [1, 1, 1, 1], "TxBias": [7, 7, 7, 7],
         "TempHighAlarmThresh": 0x4B00, "TempHighWarnThresh": 0x4600, "TempLowAlarmThresh": 0xFB00,
         "TempLowWarnThresh": 0}


def data_of(page):
    return json.loads(re.search(r'<script id="data" type="application/json">(.*?)</script>', page, re.S)[1])


def page(*arguments, **options):
    result = run("page", "-q", *arguments, **options)
    assert result.returncode == 0, result.stderr
    return result.stdout.decode()


class Data(ProgramTest):
    def test_readings_of_a_port(self):
        data = data_of(page(stdin=[{"port_guid": "0x2a", "port_num": 7, "label": "leaf 1", "cable": OPTIC}]))
        [port] = data["ports"]
        model = data["models"][port["model"]]
        self.assertEqual((port["guid"], port["number"], port["label"]), ("0x000000000000002a", 7, "leaf 1"))
        readings = port["readings"]
        self.assertEqual((readings["temperature"], readings["voltage"]), (41, 3.3))
        self.assertEqual(readings["rx_power"], [0.5, 0.25, 1, 2])
        self.assertEqual(readings["tx_bias"], [7, 7, 7, 7])
        self.assertEqual(readings["used"], 0b1111)
        self.assertEqual(readings["serial_number"], "S1")
        self.assertEqual((model["vendor"], model["part_number"]), ("Acme", "P1"))
        self.assertEqual(model["identifier"], {"code": 0x11, "name": "QSFP28"})
        self.assertEqual(model["thresholds"], {"temperature": [75, -5, 70, 0]})

    def test_limits_are_those_of_the_program(self):
        data = data_of(page(stdin=[]))
        options = {"power": "power_db", "temperature": "temperature_c", "bias": "bias_percent"}
        described = " ".join(run("diff", "--help").stdout.decode().split())
        for option, key in options.items():
            default = re.search(rf"--{option}-tolerance .*?\(default: (\d+)\)", described)[1]
            self.assertEqual(data["tolerances"][key], float(default), option)
        self.assertEqual(data["dark_dbm"], -40)  # 0.1 uW, the resolution of the registers

    def test_the_other_end(self):
        data = data_of(page(stdin=[{"port_num": 1, "peer": {"port_guid": "0x2b", "port_num": 4}}]))
        self.assertEqual(data["ports"][0]["peer"], "0x000000000000002b/4")

    def test_ports_share_equal_parts(self):
        ports = [{"port_num": n, "cable": {**OPTIC, "SerialNumber": f"S{n}"}} for n in range(20)]
        data = data_of(page(stdin=ports))
        self.assertEqual([port["readings"]["serial_number"] for port in data["ports"]],
                         [f"S{n}" for n in range(20)])
        self.assertEqual([len(data[key]) for key in ("models", "flags", "controls")], [1, 1, 1])

    def test_findings_are_those_of_check(self):
        files = [FABRIC, FAULTS]
        data = data_of(page(*files))
        lines = [json.loads(line) for line in run("check", "-q", "--json", *files).stdout.splitlines()]
        *ports, summary = lines
        self.assertEqual(len(data["ports"]), len(ports))
        severities = ["off", "unknown", "warning", "critical"]
        found = {}
        for port, rule, severity, lane, sentence in data["findings"]:
            found.setdefault(port, []).append(
                (data["rules"][rule]["name"], severities[severity], lane or None, sentence))
        for index, port in enumerate(ports):
            expected = [(f["rule"], f["severity"], f["lane"], f["message"]) for f in port["findings"]]
            self.assertEqual(found.get(index, []), expected)
        self.assertGreater(summary["summary"]["verdicts"]["critical"], 5)

    def test_settings_of_rules(self):
        one = {"cable": OPTIC}
        self.assertEqual(data_of(page("--set", "lane-imbalance=10", stdin=[one]))["findings"], [])
        config = self.file("limits.conf", b"lane-imbalance = critical\n")
        [[_, rule, severity, *_]] = data_of(page("--config", config, stdin=[one]))["findings"]
        self.assertEqual(severity, 3)

    def test_a_wrong_setting(self):
        result = run("page", "--set", "lane-imbalanc=3", FABRIC)
        self.assertEqual(result.returncode, 2)
        self.assertIn(b'did you mean "lane-imbalance"', result.stderr)
        self.assertEqual(result.stdout, b"")

    def test_selection(self):
        data = data_of(page("--port", "1", "--port", "3", FABRIC))
        self.assertEqual({port["number"] for port in data["ports"]}, {1, 3})

    def test_dumps(self):
        memory = bytearray(256)
        memory[0] = memory[128] = 0x11
        memory[148:152] = b"Acme"
        dump = self.file("qsfp.bin", bytes(memory))
        data = data_of(page("--module", dump))
        self.assertEqual(data["ports"][0]["label"], "qsfp.bin")
        self.assertEqual(data["models"][0]["vendor"], "Acme")

    def test_no_ports(self):
        data = data_of(page(stdin=b""))
        self.assertEqual((data["ports"], data["findings"], data["input"]), ([], [], "<stdin>"))

    def test_a_bad_port_is_left_out(self):
        output = self.folder / "out.html"
        result = run("page", "-q", "-o", output, stdin=b'{"port_num": 1}\n{"port_nam": 2}\n')
        self.assertEqual(result.returncode, 1)
        self.assertEqual(len(data_of(output.read_text())["ports"]), 1)


class Snapshots(ProgramTest):
    def store(self, day, *ports):
        result = run("store", self.folder / "fabric.db", "--taken-at", f"2026-01-{day:02}",
                     stdin=[{"port_guid": "0x2a", **port} for port in ports])
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_readings_of_the_snapshot_before(self):
        self.store(1, {"port_num": 1, "cable": OPTIC}, {"port_num": 2}, {"port_num": 3})
        self.store(2, {"port_num": 1, "cable": {**OPTIC, "RxPower": [0.1, 0.25, 1, 2]}}, {"port_num": 2},
                   {"port_num": 4})
        database = self.folder / "fabric.db"
        data = data_of(page(database))
        self.assertEqual((data["taken_at"], data["earlier_taken_at"]),
                         ("2026-01-02T00:00:00Z", "2026-01-01T00:00:00Z"))
        self.assertEqual(data["input"], f"{database}@2")
        first, second, fourth = data["ports"]
        self.assertEqual(first["readings"]["rx_power"], [0.1, 0.25, 1, 2])
        self.assertEqual(first["earlier"]["rx_power"], [0.5, 0.25, 1, 2])
        self.assertIn("earlier", second)
        self.assertNotIn("earlier", fourth)
        self.assertEqual(data["gone"], ["0x000000000000002a/3"])

    def test_ports_without_guid_have_their_label_and_number(self):
        none, label = {"port_guid": 0}, {"port_guid": 0, "label": "a"}
        self.store(1, {**label, "port_num": 1, "cable": OPTIC}, {**label, "port_num": 2}, {**none, "port_num": 1},
                   {**label, "port_num": 4})
        self.store(2, {**label, "port_num": 2}, {**label, "port_num": 1, "cable": OPTIC}, {**none, "port_num": 1},
                   {**label, "port_num": 3})
        data = data_of(page(self.folder / "fabric.db"))
        self.assertEqual(["earlier" in port for port in data["ports"]], [True, True, True, False])
        self.assertEqual([port.get("earlier", {}).get("rx_power") for port in data["ports"]],
                         [None, OPTIC["RxPower"], None, None])
        self.assertEqual(data["gone"], ["a"])

    def test_dumps_at_another_position(self):
        dumps = [self.file(name, bytes([0x11]) + bytes(127) + bytes([0x11]) + bytes(127)) for name in "abc"]
        for day, given in ((1, dumps), (2, dumps[1:])):
            modules = [word for dump in given for word in ("--module", dump)]
            run("store", "-q", self.folder / "fabric.db", "--taken-at", f"2026-01-{day:02}", *modules)
        data = data_of(page("-q", self.folder / "fabric.db"))
        self.assertEqual([(port["label"], "earlier" in port) for port in data["ports"]], [("b", True), ("c", True)])
        self.assertEqual(data["gone"], ["a"])
        self.assertEqual(run("diff", "-q", self.folder / "fabric.db").stdout.splitlines()[-1],
                         b"0 appeared, 1 gone, 0 changed")

    def test_the_first_snapshot_has_no_changes(self):
        self.store(1, {"port_num": 1, "cable": OPTIC})
        self.store(2, {"port_num": 1, "cable": OPTIC})
        data = data_of(page(f"{self.folder / 'fabric.db'}@1"))
        self.assertNotIn("gone", data)
        self.assertIsNone(data["earlier_taken_at"])
        self.assertNotIn("earlier", data["ports"][0])

    def test_a_missing_snapshot(self):
        self.store(1, {"port_num": 1})
        result = run("page", f"{self.folder / 'fabric.db'}@7")
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"there is no such snapshot", result.stderr)


class Html(ProgramTest):
    def test_policy_allows_exactly_the_content_of_the_page(self):
        text = page(FABRIC)
        policy = re.search(r'content="(default-src [^"]*)"', text)[1]
        directives = dict(part.strip().split(" ", 1) for part in policy.split(";"))
        self.assertEqual(directives["default-src"], "'none'")
        self.assertEqual(set(directives), {"default-src", "script-src", "style-src", "img-src", "base-uri",
                                           "form-action"})

        def sources(tag):
            return {f"'sha256-{base64.b64encode(hashlib.sha256(code.encode()).digest()).decode()}'"
                    for code in re.findall(rf"<{tag}>(.*?)</{tag}>", text, re.S)}
        self.assertEqual(set(directives["script-src"].split()), sources("script"))
        self.assertEqual(len(sources("script")), 2)
        self.assertEqual(set(directives["style-src"].split()), sources("style"))

    def test_nothing_is_loaded(self):
        markup = re.sub(r"<(script|style|pre)\b.*?</\1>", "", page(FABRIC), flags=re.S)
        self.assertNotRegex(markup, r"\bsrc=|https?:|url\(|@import")
        self.assertEqual(re.findall(r'\bhref="([^"]*)"', markup), ["data:,", "#findings"])

    def test_hostile_texts_stay_in_the_data(self):
        cable = {**OPTIC, "VendorName": "</script><b>", "PartNumber": "<!--", "SerialNumber": "&lt;"}
        text = page(stdin=[{"label": HOSTILE, "cable": cable}])
        harmless = page(stdin=[{"label": "x", "cable": OPTIC}])
        for tag in ("<script", "</script", "<img", "<!--", "<b>"):
            self.assertEqual(text.count(tag), harmless.count(tag), tag)
        block = re.search(r'type="application/json">(.*?)</script>', text, re.S)[1]
        self.assertNotRegex(block, r"[<>&\u2028\u2029]")
        data = data_of(text)
        self.assertEqual(data["ports"][0]["label"], HOSTILE)
        self.assertEqual(data["ports"][0]["readings"]["serial_number"], "&lt;")
        self.assertEqual(data["models"][0]["part_number"], "<!--")

    def test_hostile_file_names(self):
        path = self.file("<script>alert(1).jsonl", b'{"port_num": 1}\n')
        self.assertEqual(data_of(page(path))["input"], str(path))

    def test_licence_of_the_plots(self):
        text = page(FABRIC)
        self.assertIn("Chart.js Contributors", text)
        self.assertIn("Permission is hereby granted, free of charge", text)


if __name__ == "__main__":
    unittest.main()
