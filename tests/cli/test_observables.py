"""Auxiliary monitors of a module, in every output that has readings."""

import json
import sqlite3
import unittest

from program import ProgramTest, run
from test_metrics import parse
from test_modules import sfp


def cooled_sfp():
    """An SFP+ with laser temperature and TEC current (SFF-8472 rev 12.4 tables 4-5, 4-9, 4-11 and 4-12)."""
    memory = bytearray(sfp())
    memory[64] |= 0x04  # cooled
    memory[93] |= 0x80  # alarm and warning flags
    memory[95] = sum(memory[64:95]) & 0xFF
    a2 = 256
    for i, degrees in enumerate((55, 35, 50, 40)):  # high and low alarm, high and low warning
        memory[a2 + 40 + 2 * i] = degrees
    memory[a2 + 106:a2 + 108] = b"\x32\x80"  # 50.5 C
    memory[a2 + 108:a2 + 110] = (1234).to_bytes(2, "big")  # 123.4 mA
    memory[a2 + 117] = 0x20  # laser temperature high warning
    memory[a2 + 95] = sum(memory[a2:a2 + 95]) & 0xFF
    return bytes(memory)


class Observables(ProgramTest):
    def setUp(self):
        super().setUp()
        self.dump = self.file("sfp.bin", cooled_sfp())

    def test_export(self):
        result = run("export", "--module", self.dump)
        self.assert_run(result)
        laser, cooler = json.loads(result.stdout)["observables"]
        self.assertEqual((laser["name"], laser["place"], laser["unit"], laser["value"], laser["state"]),
                         ("laser_temperature_c", None, "C", 50.5, "present"))
        self.assertEqual(laser["thresholds"], {"high_alarm": 55, "low_alarm": 35, "high_warning": 50, "low_warning": 40})
        self.assertEqual([level for level, is_raised in laser["flags"].items() if is_raised], ["high_warning"])
        self.assertEqual((cooler["name"], cooler["unit"], cooler["value"], cooler["thresholds"]),
                         ("tec_current_ma", "mA", 123.4, None))

    def test_export_of_a_record(self):
        result = run("export", stdin=[{"port_num": 4, "module_memory": {"hex": cooled_sfp().hex()}}])
        self.assertEqual([observable["value"] for observable in json.loads(result.stdout)["observables"]], [50.5, 123.4])

    def test_store(self):
        path = self.folder / "fabric.db"
        self.assert_run(run("store", path, "--module", self.dump))
        connection = sqlite3.connect(path)
        rows = connection.execute(
            "SELECT quantity, lane, value, unit, high_alarm, low_alarm, high_warning, low_warning, flags FROM reading "
            "WHERE quantity LIKE 'laser%' OR quantity LIKE 'tec%' ORDER BY quantity").fetchall()
        connection.close()
        self.assertEqual(rows, [("laser_temperature_c", 0, 50.5, "C", 55, 35, 50, 40, 4),
                                ("tec_current_ma", 0, 123.4, "mA", None, None, None, None, 0)])

    def test_metrics(self):
        result = run("metrics", "--module", self.dump)
        self.assert_run(result)
        samples = {}
        for (family, labels), value in parse(result.stdout.decode()).items():
            names = dict(labels)
            if "observable" in names or names.get("quantity") == "laser_temperature_c":
                samples[family, names.get("observable", "-"), names.get("bound")] = value
        self.assertEqual(samples, {
            ("cableinfo_observable_celsius", "laser_temperature_c", None): 50.5,
            ("cableinfo_observable_amperes", "tec_current_ma", None): 0.1234,
            ("cableinfo_observable_threshold_celsius", "laser_temperature_c", "high_alarm"): 55,
            ("cableinfo_observable_threshold_celsius", "laser_temperature_c", "low_alarm"): 35,
            ("cableinfo_observable_threshold_celsius", "laser_temperature_c", "high_warning"): 50,
            ("cableinfo_observable_threshold_celsius", "laser_temperature_c", "low_warning"): 40,
            ("cableinfo_flag_raised", "-", "high_warning"): 1})


if __name__ == "__main__":
    unittest.main()
