"""The metrics, as a monitoring system reads them."""

import functools
import http.server
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import threading
import time
import unittest
import urllib.parse
import urllib.request

from program import FABRIC, ROOT, ProgramTest, run

NODE, GUID = "0xa0b1c20000d4e500", "0xa0b1c20000d4e501"
HOSTILE = 'a"b\\c\nd\té\0'

SAMPLE = re.compile(r'([a-z_]+)\{((?:[a-z_]+="(?:[^"\\\n]|\\["\\n])*",?)*)\} (\S+)')
LABEL = re.compile(r'([a-z_]+)="((?:[^"\\\n]|\\["\\n])*)"')


def parse(text):
    """The samples of a text: {(family, labels as sorted pairs): value}."""
    samples = {}
    for line in text.split("\n"):
        if not line or line.startswith("#"):
            continue
        match = SAMPLE.fullmatch(line)
        assert match, line
        labels = tuple(sorted(LABEL.findall(match[2])))
        assert (match[1], labels) not in samples, line
        samples[match[1], labels] = float(match[3])
    return samples


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def needs(command):
    return unittest.skipUnless(shutil.which(command), f"{command} is not installed")


class MetricsTest(ProgramTest):
    def metrics(self, *arguments, **options):
        result = run("metrics", "-q", *arguments, **options)
        self.assert_run(result)
        return result.stdout.decode()

    def values(self, samples, family, **labels):
        """The values of a family whose labels include the given ones, by lane."""
        found = {}
        for (name, pairs), value in samples.items():
            given = dict(pairs)
            if name == family and labels.items() <= given.items():
                found[given.get("lane")] = value
        return found


class Samples(MetricsTest):
    def test_values_are_in_base_units(self):
        port = {"node_guid": NODE, "port_guid": GUID, "port_num": 2, "label": "leaf 1", "cable": {
            "Identifier": 0x11, "TransmitterTechnologyCode": 0, "Temperature": 41 << 8, "SupplyVoltage": 32950,
            "RxPower": [0.871, 1, 0, 0.001], "TxPower": [0.9, 1, 1, 1], "TxBias": [6.75, 7, 7, 7],
            "TempHighAlarmThresh": 75 << 8, "TempLowAlarmThresh": 0xFB00, "VendorName": "Acme",
            "PartNumber": "P1", "SerialNumber": "S1", "Revision": "A"}}
        samples = parse(self.metrics(stdin=[port]))
        mine = {"node_guid": NODE, "port_guid": GUID, "port_num": "2", "label": "leaf 1"}
        for family, expected in {
                "temperature_celsius": {None: 41}, "voltage_volts": {None: 3.295},
                "rx_power_watts": {"1": 0.000871, "2": 0.001, "3": 0, "4": 0.000001},
                "rx_power_dbm": {"1": -0.5998, "2": 0, "4": -30},
                "tx_bias_amperes": {"1": 0.00675, "2": 0.007, "3": 0.007, "4": 0.007}}.items():
            found = self.values(samples, f"cableinfo_{family}", **mine)
            self.assertEqual(set(found), set(expected), family)
            for lane, value in expected.items():
                self.assertAlmostEqual(found[lane], value, 4 if "dbm" in family else 9, msg=family)
        self.assertEqual(self.values(samples, "cableinfo_temperature_threshold_celsius", bound="high_alarm"), {None: 75})
        self.assertEqual(self.values(samples, "cableinfo_temperature_threshold_celsius", bound="low_alarm"), {None: -5})
        self.assertEqual(self.values(samples, "cableinfo_module_info", vendor="Acme", part_number="P1",
                                     serial_number="S1", revision="A", form_factor="QSFP28", type="850 nm VCSEL"),
                         {None: 1})

    def test_only_raised_flags_have_samples(self):
        port = {"cable": {"Identifier": 0x11, "TransmitterTechnologyCode": 0, "RxPower": [1, 1, 1, 1],
                          "LatchedCdrLos": 4, "RxPowerAlarms": 0x4000}}
        samples = parse(self.metrics(stdin=[port]))
        self.assertEqual(self.values(samples, "cableinfo_lane_flag_raised"), {"3": 1})
        self.assertEqual(self.values(samples, "cableinfo_lane_flag_raised", flag="rx_los"), {"3": 1})
        self.assertEqual(self.values(samples, "cableinfo_flag_raised", quantity="rx_power", bound="low_alarm"), {"1": 1})

    def test_verdicts_depend_on_the_settings(self):
        port = {"port_guid": GUID, "cable": {"Identifier": 0x11, "Temperature": 41 << 8, "SupplyVoltage": 33000}}
        for options, verdict in (((), 0), (("--set", "temperature-high-warning=40"), 2),
                                 (("--set", "temperature-high-alarm=40"), 3)):
            samples = parse(self.metrics(*options, stdin=[port]))
            self.assertEqual(self.values(samples, "cableinfo_verdict"), {None: verdict}, options)
        self.assertEqual(run("metrics", "--set", "x=1", stdin=[port]).returncode, 2)

    def test_verdicts_are_those_of_check(self):
        names = ["ok", "unknown", "warning", "critical"]
        samples = parse(self.metrics(FABRIC))
        judged = [json.loads(line) for line in run("check", "--json", "-q", FABRIC).stdout.splitlines()]
        ports = [line for line in judged if "port_guid" in line]
        self.assertGreater(len(ports), 20)
        for port in ports:
            found = self.values(samples, "cableinfo_verdict", port_guid=port["port_guid"],
                                port_num=str(port["port_num"]))
            self.assertEqual(found, {None: names.index(port["verdict"])})
        for name in names:
            self.assertEqual(samples["cableinfo_ports", (("verdict", name),)],
                             sum(port["verdict"] == name for port in ports))

    def test_label_values_are_escaped(self):
        port = {"label": HOSTILE, "cable": {"VendorName": HOSTILE, "Identifier": 0x11}}
        text = self.metrics(stdin=[port])
        info = next(line for line in text.split("\n") if line.startswith("cableinfo_module_info"))
        self.assertIn('label="a\\"b\\\\c\\nd\té\u2400"', info)
        self.assertIn('vendor="a\\"b\\\\c\\nd\tÃ©', info)

    def test_labels_that_are_not_utf8_are_transcribed(self):
        hostile = {
            "lone continuation": b"\x80", "cut off": b"\xe2\x82", "never used": b"\xfe\xff",
            "overlong, 2 bytes": b"\xc1\xbf", "overlong, 3 bytes": b"\xe0\x80\x80",
            "overlong, 4 bytes": b"\xf0\x80\x80\x80", "surrogate": b"\xed\xa0\x80",
            "beyond U+10FFFF": b"\xf4\x90\x80\x80", "beyond any lead byte": b"\xf5\x80\x80\x80"}
        for case, name in hostile.items():
            with self.subTest(case):
                path = os.fsencode(self.folder / "x") + name
                with open(path, "wb") as dump:
                    dump.write(b"\x11" + bytes(255))
                text = self.metrics("--module", os.fsdecode(path))  # fails for text that is not UTF-8
                labels = {dict(pairs)["label"] for _, pairs in parse(text) if "port_guid" in dict(pairs)}
                self.assertEqual(labels, {"x" + name.decode("latin-1")})

    def test_a_repeated_port_is_written_once(self):
        port = {"port_guid": GUID, "port_num": 1, "cable": {"Identifier": 0x11, "Temperature": 0x1900}}
        self.assertEqual(self.metrics(stdin=[port, port]), self.metrics(stdin=[port]))
        self.assert_run(run("metrics", stdin=[port, port]), 0,
                        "cableinfo: 1 port left out: others have the same GUID and number (and label, if they have no GUID)\n")

    def test_families_are_whole_and_in_order(self):
        families, declared = [], set()
        for line in self.metrics(FABRIC).splitlines():
            if line.startswith("# TYPE "):
                declared.add(line.split(" ")[2])
            elif not line.startswith("#"):
                families.append(line.split("{")[0])
        runs = [name for i, name in enumerate(families) if i == 0 or families[i - 1] != name]
        self.assertEqual(len(runs), len(set(runs)))
        self.assertEqual(set(runs), declared)

    def test_text_ends_as_openmetrics_wants(self):
        self.assertTrue(self.metrics(FABRIC).endswith("\n# EOF\n"))
        self.assertTrue(self.metrics(stdin=[]).endswith("# EOF\n"))

    def test_any_number_of_threads_writes_the_same(self):
        self.assertEqual(self.metrics("-j", "1", FABRIC), self.metrics("-j", "4", FABRIC))

    def test_document_lists_all_families(self):
        text = (ROOT / "docs" / "monitoring.md").read_text()
        written = set(re.findall("^# TYPE (cableinfo_[a-z_]+)", self.metrics(FABRIC), re.MULTILINE))
        self.assertEqual(written - set(re.findall("`(cableinfo_[a-z_]+)`", text)), set())


@needs("promtool")
class Promtool(MetricsTest):
    def promtool(self, *arguments, **options):
        return subprocess.run(["promtool", *map(str, arguments)], capture_output=True, timeout=60, check=False, **options)

    def assert_accepted(self, text):
        result = self.promtool("check", "metrics", input=text.encode())
        self.assertEqual((result.returncode, result.stdout + result.stderr), (0, b""))

    def test_sample_fabric(self):
        self.assert_accepted(self.metrics(FABRIC))

    def test_hostile_texts(self):
        self.assert_accepted(self.metrics(stdin=[{"label": HOSTILE, "cable": {"VendorName": HOSTILE}}]))

    def rules(self):
        text = (ROOT / "docs" / "monitoring.md").read_text()
        return self.file("rules.yml", re.search("^```yaml\n(.*?)^```", text, re.MULTILINE | re.DOTALL)[1].encode())

    def test_alert_rules_are_valid(self):
        result = self.promtool("check", "rules", self.rules())
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_alert_rules_fire(self):
        self.rules()
        port = 'node_guid="1",port_guid="2",port_num="3"'
        labels = {"node_guid": "1", "port_guid": "2", "port_num": "3"}

        def series(name, values):
            return {"series": f"{name.replace('}', ',' + port + '}') if '{' in name else name + '{' + port + '}'}",
                    "values": values}

        def alert(time_, name, severity=None, **more):
            # Without a severity the alert must not fire.
            fired = [] if severity is None else [{"exp_labels": {**labels, **more, "severity": severity}}]
            return {"eval_time": time_, "alertname": name, "exp_alerts": fired}

        def case(inputs, alerts):
            return {"interval": "1m", "input_series": inputs, "alert_rule_test": alerts}

        low = 'cableinfo_rx_power_threshold_watts{lane="1",bound="low_alarm"}'
        hot = 'cableinfo_temperature_threshold_celsius{bound="high_warning"}'
        tests = [
            case([series("cableinfo_verdict", "0x5 3x20")],
                 [alert("4m", "CableCritical"), alert("20m", "CableCritical", "critical"), alert("20m", "CableWarning")]),
            case([series("cableinfo_verdict", "2x30")],
                 [alert("10m", "CableWarning"), alert("20m", "CableWarning", "warning")]),
            case([series('cableinfo_rx_power_watts{lane="1"}', "0.0005x10 0.00001x20"), series(low, "0.00005x40")],
                 [alert("9m", "ReceivePowerBelowAlarm"),
                  alert("25m", "ReceivePowerBelowAlarm", "critical", lane="1")]),
            case([series('cableinfo_rx_power_dbm{lane="1"}', "-1x1450 -4x100")],
                 [alert("24h", "ReceivePowerFalls"),
                  alert("1500m", "ReceivePowerFalls", "warning", lane="1")]),
            case([series("cableinfo_temperature_celsius", "50x10 67x20"), series(hot, "70x40")],
                 [alert("9m", "ModuleHot"), alert("25m", "ModuleHot", "warning")]),
            case([series('cableinfo_lane_flag_raised{flag="rx_los",lane="2"}', "1x20")],
                 [alert("10m", "LossOfSignal", "warning", lane="2", flag="rx_los")]),
        ]
        # The texts of the annotations are not compared.
        for test in tests:
            for expected in test["alert_rule_test"]:
                expected["exp_alerts"] = [{**one, "exp_annotations": {"summary": self.summary(expected, one)}}
                                          for one in expected["exp_alerts"]]
        self.file("tests.yml", json.dumps({"rule_files": ["rules.yml"], "evaluation_interval": "1m",
                                           "tests": tests}).encode())
        result = self.promtool("test", "rules", "tests.yml", cwd=self.folder)
        self.assertEqual(result.returncode, 0, (result.stdout + result.stderr).decode())

    def summary(self, expected, fired):
        text = (self.folder / "rules.yml").read_text().split(f"alert: {expected['alertname']}\n")[1]
        summary = re.search('summary: "(.*)"', text)[1]
        return re.sub(r"\{\{ \$labels\.(\w+) \}\}", lambda match: fired["exp_labels"][match[1]], summary)


class Quiet(http.server.SimpleHTTPRequestHandler):
    content_type = ""

    def log_message(self, *_):
        pass

    def guess_type(self, _):
        return self.content_type


@needs("prometheus")
class Scrape(MetricsTest):
    """A real server scrapes the file, over the loopback interface."""

    def serve(self, content_type):
        handler = functools.partial(type("Handler", (Quiet,), {"content_type": content_type}), directory=self.folder)
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        return server.server_address[1]

    def query(self, port, expression):
        url = f"http://127.0.0.1:{port}/api/v1/query?" + urllib.parse.urlencode({"query": expression})
        with urllib.request.urlopen(url, timeout=5) as answer:
            return json.load(answer)["data"]["result"]

    def start(self, configuration):
        port = free_port()
        self.file("prometheus.yml", json.dumps(configuration).encode())
        process = subprocess.Popen(
            ["prometheus", "--config.file=prometheus.yml", "--storage.tsdb.path=data",
             f"--web.listen-address=127.0.0.1:{port}"],
            cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)

        def stop():
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()

        self.addCleanup(stop)
        return port

    def test_both_formats_are_scraped(self):
        served = run("metrics", "-q", "-o", self.folder / "cableinfo.prom", FABRIC)
        self.assert_run(served)
        samples = parse((self.folder / "cableinfo.prom").read_text())
        targets = {"text": self.serve("text/plain; version=0.0.4; charset=utf-8"),
                   "openmetrics": self.serve("application/openmetrics-text; version=1.0.0; charset=utf-8")}
        port = self.start({"scrape_configs": [
            {"job_name": name, "scrape_interval": "1s", "metrics_path": "/cableinfo.prom",
             "static_configs": [{"targets": [f"127.0.0.1:{target}"]}]} for name, target in targets.items()]})
        expected = sum(name == "cableinfo_rx_power_watts" for name, _ in samples)
        self.assertGreater(expected, 0)
        found = {}
        deadline = time.monotonic() + 30
        while len(found) < len(targets) and time.monotonic() < deadline:
            try:
                result = self.query(port, "count by (job) (cableinfo_rx_power_watts)")
                found = {one["metric"]["job"]: int(one["value"][1]) for one in result}
            except OSError:
                pass
            time.sleep(0.2)
        self.assertEqual(found, {name: expected for name in targets})
        hottest, = self.query(port, 'topk(1, cableinfo_temperature_celsius{job="text"})')
        self.assertEqual(float(hottest["value"][1]),
                         max(value for (name, _), value in samples.items() if name == "cableinfo_temperature_celsius"))


if __name__ == "__main__":
    unittest.main()
