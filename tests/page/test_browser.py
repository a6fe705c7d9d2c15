"""The page in a real browser: figures, plots, search, sorting, details, and nothing else happens."""

import json
import os
import pathlib
import subprocess
import tempfile
import time
import unittest

from browser import Browser, is_installed

ROOT = pathlib.Path(__file__).resolve().parents[2]
FILES = [ROOT / "examples" / "fabric.jsonl", ROOT / "examples" / "faults.jsonl"]
HOSTILE = "</script><img src=x onerror='window.attacked=1'><script>window.attacked=1</script>"
ENTER, ESCAPE, TAB = "\ue007", "\ue00c", "\ue004"


def run(*arguments, **options):
    return subprocess.run([os.environ["CABLEINFO"], *map(str, arguments)], capture_output=True, timeout=60,
                          check=False, **options)


def checked(*files):
    """The lines of `check --json` on the ports, and its summary."""
    *ports, last = map(json.loads, run("check", "-q", "--json", *files).stdout.splitlines())
    return ports, last["summary"]


def name_of(port):
    return port["label"] or f"{port['port_guid']}/{port['port_num']}"


@unittest.skipUnless(is_installed(), "chromium and chromium-driver are not installed")
class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.browser = cls.enterClassContext(Browser())
        cls.page = cls.write(*FILES)
        cls.ports, cls.summary = checked(*FILES)

    @classmethod
    def write(cls, *arguments, name="page.html", **options):
        page = cls.folder / name
        result = run("page", "-q", "-o", page, *arguments, **options)
        assert result.returncode == 0, result.stderr
        return page

    def setUp(self):
        self.browser.resize(1280)
        self.browser.media(prefers_color_scheme="light")
        self.browser.open(self.page)
        self.addCleanup(lambda: self.assertEqual(self.browser.console(), []))

    def texts(self, selector):
        return self.browser.script(
            "return [...document.querySelectorAll(arguments[0])].map((e) => e.textContent)", selector)

    def text(self, selector):
        [text] = self.texts(selector)
        return text

    def click(self, selector, number=0):
        self.browser.script("document.querySelectorAll(arguments[0])[arguments[1]].click()", selector, number)

    def search(self, text, expected):
        self.browser.script("""const search = document.getElementById("search"); search.value = arguments[0];
                               search.dispatchEvent(new Event("input"))""", text)
        self.wait(lambda: self.text("#selected") == expected)

    def wait(self, condition):
        for _ in range(100):
            if condition():
                return
            time.sleep(0.05)
        self.fail(f"selected: {self.text('#selected')}")

    def first_cells(self, column):
        return self.texts(f"#ports tbody td:nth-child({column})")

    def test_figures(self):
        counts = self.summary["verdicts"]
        self.assertEqual(self.texts("#verdicts button"),
                         [f"{counts[v]}{v}" for v in ("critical", "warning", "unknown", "ok")])
        bad = counts["critical"] + counts["warning"]
        self.assertEqual(self.text("#about"), f"{self.summary['ports']} ports, {bad} with something wrong.")

    def test_worst_ports_come_first_with_their_reasons(self):
        names = {name_of(port): port for port in self.ports}
        cards = self.texts("#worst .link")
        self.assertEqual([names[card]["verdict"] for card in cards], ["critical"] * 8)
        worst = names[cards[0]]
        self.assertIn(worst["findings"][0]["message"], self.texts("#worst li:first-child .why"))
        self.click("#more")
        self.assertEqual(len(self.texts("#worst li")), sum(bool(port["findings"]) for port in self.ports))

    def test_plots_are_drawn(self):
        drawn = self.browser.script("""
            return [...document.querySelectorAll("canvas")].map((canvas) => {
              const pixels = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data;
              const colours = new Set();
              for (let i = 0; i < pixels.length; i += 4)
                if (pixels[i + 3] > 0) colours.add(pixels.slice(i, i + 3).join());
              return [canvas.getAttribute("aria-label").split(":")[0], colours.size];
            })""")
        self.assertEqual([name for name, _ in drawn],
                         ["RX power", "TX power", "TX bias", "Temperature", "Measured and stated length"])
        for name, colours in drawn:
            self.assertGreater(colours, 5, name)

    def test_plots_count_what_they_show(self):
        one = self.write(name="one.html", input=json.dumps({
            "cable": {"Identifier": 17, "RxPower": [1, 0.5, 0.1, 0], "TxPower": [1, 1, 1, 1],
                      "TxBias": [5, 6, 7, 8], "Temperature": 0x2900, "SupplyVoltage": 33000}}).encode())
        self.browser.open(one)
        self.assertIn("4 lanes, no light to 0.00 dBm", self.text("#plot-rx_power figcaption"))
        self.assertIn("4 lanes, 5.00 to 8.00 mA", self.text("#plot-tx_bias figcaption"))
        self.assertIn("1 port, 41.0 to 41.0 °C", self.text("#plot-temperature figcaption"))

    def test_search(self):
        serial = next(port["serial_number"] for port in self.ports if port["serial_number"])
        expected = [port for port in self.ports if serial in (port["serial_number"] or "")]
        self.search(serial.lower(), f"{len(expected)} of {len(self.ports)} ports")
        self.assertEqual(self.first_cells(4), [port["serial_number"] for port in expected])
        self.search("no such cable", f"0 of {len(self.ports)} ports")
        self.assertEqual(self.first_cells(1), [])
        self.assertEqual(self.texts("canvas"), [])

    def test_filter_by_verdict(self):
        count = self.summary["verdicts"]["warning"]
        self.click("#verdicts button", 1)
        self.assertEqual(self.first_cells(1), ["warning"] * count)
        self.assertEqual(self.text("#selected"), f"{count} of {len(self.ports)} ports")
        self.click("#chips button")
        self.assertEqual(self.text("#selected"), f"{len(self.ports)} ports")

    def test_filter_by_rule_and_by_part(self):
        rule = self.texts("#rules button span:first-child")[0]
        self.click("#rules button")
        having = [p for p in self.ports if any(f["rule"] == rule for f in p["findings"])]
        self.assertEqual(self.text("#selected"), f"{len(having)} of {len(self.ports)} ports")
        self.click("#chips button")
        part = self.texts("#counts div:nth-child(2) button span:first-child")[0]
        self.click("#counts div:nth-child(2) button")
        having = [p for p in self.ports if p["part_number"] == part]
        self.assertEqual(self.text("#selected"), f"{len(having)} of {len(self.ports)} ports")

    def test_sorting(self):
        self.assertEqual(self.text("#ports th[aria-sort=descending]"), "Verdict")
        for direction, reverse in (("ascending", False), ("descending", True)):
            self.click("#ports th:nth-child(6) button")
            self.assertEqual(self.text(f"#ports th[aria-sort={direction}]"), "°C")
            shown = [float(t.replace("−", "-")) for t in self.first_cells(6) if t != "–"]
            self.assertGreater(len(set(shown)), 5)
            self.assertEqual(shown, sorted(shown, reverse=reverse))

    def test_pages_of_the_table(self):
        self.assertEqual(len(self.first_cells(1)), 50)
        self.click("#pages button", 1)
        self.assertEqual(len(self.first_cells(1)), len(self.ports) - 50)

    def test_everything_known_about_a_port(self):
        serials = [p["serial_number"] for p in self.ports]
        port = next(p for p in self.ports if len(p["findings"]) > 1 and serials.count(p["serial_number"]) == 1)
        self.search(port["serial_number"], f"1 of {len(self.ports)} ports")
        self.click("#ports .link")
        self.assertEqual(self.text("#port-title"), name_of(port))
        shown = self.text("#port")
        for text in [port["port_guid"], port["part_number"], *(f["message"] for f in port["findings"]),
                     *(f["rule"] for f in port["findings"])]:
            self.assertIn(text, shown)
        rows = self.texts("#port tbody th")
        self.assertIn("Temperature", rows)
        self.assertIn("RX power, lane 4", rows)

    def test_keyboard(self):
        self.browser.script("document.getElementById('verdicts').firstChild.focus()")
        self.browser.keys([ENTER])
        self.assertEqual(self.first_cells(1), ["critical"] * self.summary["verdicts"]["critical"])
        self.assertTrue(self.browser.script("return document.activeElement.matches('#verdicts button')"))
        self.browser.script("document.querySelector('#ports .link').focus()")
        self.browser.keys([ENTER])
        self.assertTrue(self.browser.script("return document.getElementById('port').open"))
        self.browser.keys([ESCAPE])
        self.assertFalse(self.browser.script("return document.getElementById('port').open"))
        self.assertTrue(self.browser.script("return document.activeElement.matches('#ports .link')"))
        self.browser.keys([TAB])
        self.assertNotEqual(self.browser.script("return getComputedStyle(document.activeElement).outlineStyle"),
                            "none")

    def test_changes_since_the_snapshot_before(self):
        database = self.folder / "fabric.db"
        cable = {"Identifier": 17, "SerialNumber": "S1", "TxPower": [1] * 4, "TxBias": [5] * 4,
                 "SupplyVoltage": 33000, "Temperature": 0x2900}
        for day, powers, second in ((1, [1, 1, 1, 1], "S2"), (2, [1, 1, 0.5, 1], "S3")):
            cable["SupplyVoltage"] = 32000 + 500 * day
            ports = [{"port_guid": "0x2a", "port_num": 1, "label": "leaf 1", "cable": {**cable, "RxPower": powers}},
                     {"port_guid": "0x2a", "port_num": 2, "cable": {**cable, "SerialNumber": second}}]
            run("store", database, "--taken-at", f"2026-01-0{day}", input="\n".join(map(json.dumps, ports)).encode())
        self.browser.open(self.write(database, name="snapshot.html"))
        self.assertEqual(self.texts("#moved li"), ["leaf 1 RX power, lane 3: −3.01 dB (0.00 to −3.01 dBm)"])
        about = self.text("#changes-about")
        self.assertIn("Since 2026-01-01 00:00:00 UTC: 1 port changed", about)
        self.assertIn("1 module swapped, 0 ports appeared, 0 ports gone", about)
        self.click("#moved .link")
        rows = {row[0]: row[1:3] for row in self.browser.script("""
            return [...document.querySelectorAll("#port tr")].map((row) => [...row.cells].map((c) => c.textContent))""")}
        self.assertEqual(rows["RX power, lane 3"], ["−3.01 dBm", "−3.01 dB"])
        self.assertEqual(rows["RX power, lane 2"], ["0.00 dBm", "0.00 dB"])
        self.assertEqual(rows["Supply voltage"], ["3.300 V", "+0.050 V"])

    def test_hostile_texts(self):
        cable = {"Identifier": 17, "VendorName": "<img src=x>", "PartNumber": "<b>P</b>", "SerialNumber": "<i>",
                 "RxPower": [0.1, 1, 1, 1], "TxPower": [1, 1, 1, 1], "TxBias": [5, 5, 5, 5], "SupplyVoltage": 33000}
        lines = [{"port_num": n, "label": HOSTILE, "cable": cable} for n in (1, 2)]
        page = self.write(name="hostile.html", input="\n".join(map(json.dumps, lines)).encode())
        self.browser.open(page)
        self.click("#ports .link")
        self.assertEqual(self.text("#port-title"), HOSTILE)
        self.assertEqual(self.texts("img, b, dialog i"), [])
        self.assertIsNone(self.browser.script("return window.attacked ?? null"))

    def test_nothing_is_requested(self):
        self.browser.requests()
        self.browser.open(self.page)
        self.click("#ports .link")
        requests = [url for url in self.browser.requests() if not url.startswith("data:")]
        self.assertEqual(requests, [self.page.resolve().as_uri()])

    def test_dark(self):
        colours = "const s = getComputedStyle(document.body); return [s.backgroundColor, s.color]"
        light = self.browser.script(colours)
        pixels = "return document.querySelector('canvas').toDataURL()"
        drawn = self.browser.script(pixels)
        self.browser.media(prefers_color_scheme="dark")
        dark = self.browser.script(colours)
        self.assertNotEqual(light[0], dark[0])
        self.assertGreater(self.brightness(light[0]), self.brightness(light[1]))
        self.assertLess(self.brightness(dark[0]), self.brightness(dark[1]))
        self.wait(lambda: self.browser.script(pixels) != drawn)

    @staticmethod
    def brightness(colour):
        return sum(map(int, colour.removeprefix("rgb(").removesuffix(")").split(",")))

    def test_narrow_and_wide(self):
        for width in (320, 390, 768, 1280, 1920):
            self.browser.resize(width)
            self.assertEqual(self.browser.script("return document.documentElement.scrollWidth"), width)

    def test_print(self):
        self.browser.pdf(self.folder / "page.pdf")
        self.assertTrue((self.folder / "page.pdf").read_bytes().startswith(b"%PDF"))
        self.assertEqual(len(self.first_cells(1)), 50)  # as before

    def test_no_ports(self):
        self.browser.open(self.write(name="none.html", input=b""))
        self.assertEqual(self.texts("#verdicts strong"), ["0"] * 4)
        self.assertEqual(self.text("#selected"), "0 ports")

    def test_many_ports(self):
        sample = [json.loads(line) for file in FILES for line in file.read_text().splitlines()]
        lines = [json.dumps({**sample[n % len(sample)], "port_num": n}) for n in range(5000)]
        page = self.write(name="many.html", input="\n".join(lines).encode())
        self.browser.open(page)
        self.assertEqual(self.text("#selected"), "5,000 ports")
        elapsed = self.browser.script(
            "return performance.timing.loadEventEnd - performance.timing.navigationStart")
        print(f"5,000 ports, {page.stat().st_size} bytes: open in {elapsed} ms")


if __name__ == "__main__":
    unittest.main()
