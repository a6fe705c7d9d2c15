"""`cableinfo diff`: what changed between two states of the same ports."""

import copy
import json
import unittest

from program import ProgramTest, run


def port(number, guid=0x10, **fields):
    cable = {"Identifier": 0x11, "Connector": 0x0C, "Temperature": 40 << 8, "SupplyVoltage": 33000,
             "RxPower": [1, 1, 1, 1], "TxPower": [1, 1, 1, 1], "TxBias": [7, 7, 7, 7], "SerialNumber": "S", **fields}
    return {"node_guid": 1, "port_guid": guid, "port_num": number, "cable": cable}


class Diff(ProgramTest):
    def inputs(self, before, after):
        return [self.file(name, b"".join(json.dumps(p).encode() + b"\n" for p in ports))
                for name, ports in (("old", before), ("new", after))]

    def diff(self, before, after, *options):
        result = run("diff", "--json", *options, *self.inputs(before, after))
        self.assert_run(result)
        *lines, summary = map(json.loads, result.stdout.splitlines())
        self.assertEqual(set(summary["summary"]), {"appeared", "gone", "changed"})
        return lines, summary["summary"]

    def changes(self, before, after, *options):
        lines, _ = self.diff([before], [after], *options)
        return [(change["what"], change["lane"], change["old"], change["new"]) for line in lines
                for change in line["changes"]]

    def test_nothing_changed(self):
        ports = [port(1), port(2)]
        self.assertEqual(self.diff(ports, ports[::-1]), ([], {"appeared": 0, "gone": 0, "changed": 0}))

    def test_ports_that_appeared_and_went(self):
        lines, summary = self.diff([port(1), port(2)], [port(2), port(3)])
        self.assertEqual([(line["port_num"], line["presence"]) for line in lines], [(1, "gone"), (3, "appeared")])
        self.assertEqual(summary, {"appeared": 1, "gone": 1, "changed": 0})

    def test_a_swapped_module(self):
        self.assertEqual(self.changes(port(1), port(1, SerialNumber="T", RxPower=[0.7] * 4)),
                         [("serial_number", None, "S", "T")])

    def test_firmware(self):
        home = {"Oui": "0x5a1", "VendorModuleKind": 14}
        self.assertEqual(self.changes(port(1, FwVersionText="1.0", **home), port(1, FwVersionText="1.1", **home)),
                         [("firmware", None, "1.0", "1.1")])

    def test_flags_and_verdicts(self):
        self.assertEqual(self.changes(port(1), port(1, LatchedCdrLos=0x02, RxPowerAlarms=0x0400)),
                         [("verdict", None, "ok", "warning"), ("rx_power_low_alarm", 2, "clear", "raised"),
                          ("rx_los", 2, "clear", "raised")])
        self.assertEqual(self.changes(port(1, LatchedCdrLol=0x80), port(1)),
                         [("verdict", None, "warning", "ok"), ("tx_lol", 4, "raised", "clear")])

    def test_readings_move_beyond_a_tolerance(self):
        self.assertEqual(self.changes(port(1), port(1, RxPower=[0.8, 1, 1, 1])), [])  # 0.97 dB
        self.assertEqual(self.changes(port(1), port(1, RxPower=[0.79, 1, 1, 1])), [("rx_power", 1, 1, 0.79)])  # 1.02 dB
        self.assertEqual(self.changes(port(1), port(1, TxPower=[1, 1, 1, 1.3])), [("tx_power", 4, 1, 1.3)])
        self.assertEqual(self.changes(port(1), port(1, Temperature=50 << 8)), [])
        self.assertEqual(self.changes(port(1), port(1, Temperature=51 << 8)), [("temperature", None, 40, 51)])
        self.assertEqual(self.changes(port(1), port(1, TxBias=[7, 7.69, 7, 7])), [])
        self.assertEqual(self.changes(port(1), port(1, TxBias=[7, 7.71, 7, 7])), [("tx_bias", 2, 7, 7.71)])

    def test_tolerances_can_be_set(self):
        before, after = port(1), port(1, RxPower=[0.79, 1, 1, 1], Temperature=45 << 8, TxBias=[7.5, 7, 7, 7])
        self.assertEqual(self.changes(before, after, "--power-tolerance", "1.1"), [])
        self.assertEqual([change[0] for change in self.changes(before, after, "--temperature-tolerance", "4",
                                                               "--bias-tolerance", "5")],
                         ["temperature", "rx_power", "tx_bias"])
        for option in ("--power-tolerance", "--temperature-tolerance", "--bias-tolerance"):
            for value in ("-1", "nan", "x"):
                self.assert_run(run("diff", option, value, "a", "b"), 2,
                                f'cableinfo: {option}: expected a number of at least 0, found "{value}"; '
                                "see cableinfo diff --help\n")

    def test_ports_without_guid_are_matched_by_label(self):
        before = [{**port(1, 0), "label": "a"}, {**port(2, 0), "label": "b"}]
        after = copy.deepcopy(before)[::-1]
        after[1]["port_num"] = 7
        after[0]["cable"]["SerialNumber"] = "T"
        lines, _ = self.diff(before, after)
        self.assertEqual([(line["label"], line["presence"]) for line in lines], [("b", "changed")])

    def test_ports_without_guid_are_matched_by_label_and_number(self):
        before = [{**port(1, 0), "label": "a"}, {**port(2, 0), "label": "a"}]
        after = [before[1], {**port(1, 0, SerialNumber="T"), "label": "a"}]
        lines, summary = self.diff(before, after)
        self.assertEqual([(line["port_num"], line["presence"], [change["what"] for change in line["changes"]])
                          for line in lines], [(1, "changed", ["serial_number"])])
        self.assertEqual(summary, {"appeared": 0, "gone": 0, "changed": 1})

    def test_a_label_of_several_ports_does_not_match_other_numbers(self):
        one, two, three = ({**port(number, 0), "label": "a"} for number in (1, 2, 3))
        for before, after in (([one, two], [three]), ([three], [one, two])):
            lines, summary = self.diff(before, after)
            self.assertEqual((len(lines), summary["changed"]), (3, 0))
        self.assertEqual(self.diff([one], [{**one, "label": "b"}])[1], {"appeared": 1, "gone": 1, "changed": 0})
        guid = {**port(1, 0x10), "label": "a"}
        self.assertEqual(self.diff([guid], [{**guid, "port_num": 2}])[1], {"appeared": 1, "gone": 1, "changed": 0})

    def test_repeated_ports_are_reported(self):
        inputs = self.inputs([port(1), port(1)], [port(1)] * 3)
        result = run("diff", *inputs)
        self.assert_run(result, 0, "cableinfo: 3 ports left out: others have the same GUID and number (and label, if they have no GUID)\n")
        self.assertEqual(result.stdout, b"0 appeared, 0 gone, 0 changed\n")
        self.assert_run(run("diff", "-q", *inputs))

    def test_dumps(self):
        memory = bytearray(256)
        memory[0] = memory[128] = 0x11
        memory[130], memory[196:200] = 0x0C, b"SN-1"
        old = self.folder / "old"
        new = self.folder / "new"
        for folder, serial in ((old, b"SN-1"), (new, b"SN-2")):
            folder.mkdir()
            memory[196:200] = serial
            (folder / "module.bin").write_bytes(memory)
        result = run("diff", "-q", "--json", old / "module.bin", new / "module.bin")
        line = json.loads(result.stdout.splitlines()[0])
        self.assertEqual((line["label"], line["presence"]), ("module.bin", "changed"))
        self.assertIn({"what": "serial_number", "lane": None, "old": "SN-1", "new": "SN-2", "unit": None}, line["changes"])

    def test_dumps_of_one_module_with_different_names(self):
        memory = bytearray(256)
        memory[0] = memory[128] = 0x11
        before = self.file("before.bin", bytes(memory))
        memory[196:200] = b"SN-2"
        after = self.file("after.bin", bytes(memory))
        *lines, summary = map(json.loads, run("diff", "-q", "--json", before, after).stdout.splitlines())
        self.assertEqual([(line["label"], line["presence"]) for line in lines], [("after.bin", "changed")])
        self.assertEqual(summary["summary"], {"appeared": 0, "gone": 0, "changed": 1})

    def test_pipes(self):
        before, after = self.inputs([port(1), port(2)], [port(2), port(3)])
        for command in (f"cableinfo diff <(cat {before}) <(cat {after})", f"cableinfo diff {before} <(cat {after})",
                        f"cableinfo diff - {after} < {before}"):
            result = self.bash(command, capture_output=True)
            self.assertEqual(result.stdout.decode().splitlines()[-1], "1 appeared, 1 gone, 0 changed", command)

    def test_standard_input_is_read_once(self):
        self.assert_run(run("diff", "-", "-", stdin=[port(1)]), 2,
                        "cableinfo: OLD and NEW are both standard input, which can be read only once\n")

    def test_ports_of_an_input_that_was_not_read_are_not_gone(self):
        good = self.file("good", json.dumps(port(1)).encode() + b"\n")
        bad = self.file("bad", b"{\n" + json.dumps(port(1)).encode() + b"\n")
        dump = bytes([0x11]) + bytes(255)
        for arguments, options, status in (((good, "/nowhere"), {}, 3), (("/nowhere", good), {}, 3),
                                           ((good, "-"), {"stdin": dump}, 1), (("-", good), {"stdin": dump}, 1),
                                           (("--strict", good, bad), {}, 1), (("--strict", bad, good), {}, 1)):
            for form in ((), ("--json",)):
                result = run("diff", *form, *arguments, **options)
                self.assertEqual((result.returncode, result.stdout), (status, b""), arguments)
        output = self.file("old.txt", b"old")
        run("diff", "--strict", bad, good, "-o", output)
        self.assertEqual(output.read_bytes(), b"old")

    def test_text(self):
        result = run("diff", *self.inputs([port(1), port(2)], [{**port(1, RxPower=[0.5, 1, 1, 1]), "label": "x"}]))
        self.assertEqual(result.stdout.decode(), """\
changed  0x0000000000000010/1 "x"  S
  verdict: ok -> warning
  rx_power of lane 1: 1 mW -> 0.5 mW

gone  0x0000000000000010/2  S

0 appeared, 1 gone, 1 changed
""")

    def test_selection(self):
        lines = run("diff", "--json", "--port", "2", *self.inputs([port(1), port(2)], [])).stdout.splitlines()
        self.assertEqual([json.loads(line)["port_num"] for line in lines[:-1]], [2])

    def test_inputs_that_cannot_be_read(self):
        self.assertEqual(run("diff", "/nowhere", "/nowhere").returncode, 3)
        self.assertEqual(run("diff", "/nowhere").returncode, 2)


if __name__ == "__main__":
    unittest.main()
