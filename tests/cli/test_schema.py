"""The schema of port records accepts exactly what the program accepts."""

import json
import unittest

import jsonschema

from program import ROOT, ProgramTest, run

SCHEMA = json.loads((ROOT / "docs" / "port.schema.json").read_text())
FLOAT_MAX = "3.4028234663852886e38"
# A copper cable with the memory map of SFF-8636 that is flat: the lower page and page 00h.
COPPER = ("110004" + "00" * 125 + "11" + "00" * 127)


def integers(bits):
    """Values that fit an unsigned field with this number of bits, and values that do not, as JSON."""
    highest, digits = 2**bits - 1, bits // 4
    good = ["0", "1", "7.0", "2e1", "-0", "-0.0", str(highest), '"0x0"', '"0xA"', f'"0x{"f" * digits}"',
            f'"0x{"0" * 30}{"F" * digits}"', "null"]
    bad = ["-1", str(highest + 1), str(highest + 1) + ".0", "1.5", "1e-1", "1e30", "1e400", "true", "[]", "{}", '""',
           '"1"', '"0x"', '"0X1"', '"0xg"', '" 0x1"', '"0x1 "', '"0x1\\n"', '"-0x1"', f'"0x1{"0" * digits}"',
           '"\\u0660x1"']
    return good, bad


FLOATS = (["0", "-1.5", "1e-400", FLOAT_MAX, f"-{FLOAT_MAX}", str(2**70), "1e38", '"nan"', '"inf"', '"-inf"', "null"],
          ["3.4028234663852888e38", "-3.4028235e38", "1e39", "1e400", "-1e400", "9" * 400, '"NaN"', '"+inf"', '"1"',
           "true", "[]", '"nan\\n"'])
TEXTS = (['""', '"a\\u0000b"', '"caf\\u00e9"', "null"], ["1", "true", "[]", "{}"])


def arrays(count, item):
    return ["[]", f"[{item}]", f"[null,{item}]", f"[{','.join([item] * count)}]", "null"], [
        f"[{','.join([item] * (count + 1))}]", item, '[{}]', "[true]", "{}", '"text"']


def short_texts(size):
    return ['""', f'"{"x" * size}"', '"\\u0000"', "null"], [f'"{"x" * (size + 1)}"', "1", "[]"]


# A line with "@" in the place of a value, and values that are valid there and that are not.
CASES = [
    ('@', (["{}"], ["null", "1", '"text"', "[]", "true"])),
    ('{"format_version":@}', (["1", "1.0", "1e0", "null"], ["0", "2", '"1"', "true", "1.5", "[]"])),
    ('{"node_guid":@}', integers(64)),
    ('{"port_guid":@}', integers(64)),
    ('{"port_num":@}', integers(32)),
    ('{"label":@}', TEXTS),
    ('{"cable":@}', (["{}", "null"], ["1", "[]", '"text"', '{"unknown":1}'])),
    ('{"cable":{"Identifier":@}}', integers(8)),
    ('{"cable":{"Temperature":@}}', integers(16)),
    ('{"cable":{"OpaqueDword1":@}}', integers(32)),
    ('{"cable":{"Attenuation":@}}', arrays(4, "255")),
    ('{"cable":{"RxPowerIsAverage":@}}', (["true", "false", "0", "1", "1.0", "0.0", "null"],
                                          ["2", "-1", '"true"', '"0x1"', "[]", "0.5"])),
    ('{"cable":{"RxPower":@}}', arrays(4, "1.5")),
    ('{"cable":{"RxPower":[0,@]}}', FLOATS),
    ('{"cable":{"VendorName":@}}', TEXTS),
    ('{"phy":@}', (["{}", "null"], ["1", "[]", '{"unknown":1}'])),
    ('{"phy":{"source":@}}', TEXTS),
    ('{"phy":{"module":@}}', (["{}", "null"], ["1", "[]", '{"unknown":1}'])),
    ('{"phy":{"module":{"cable_identifier":@}}}', integers(8)),
    ('{"phy":{"module":{"rx_power":@}}}', arrays(8, "65535")),
    ('{"phy":{"module":{"rx_power_raw":[@]}}}', integers(16)),
    ('{"phy":{"module":{"attenuation":@}}}', arrays(4, "255")),
    ('{"phy":{"module":{"vendor_name":@}}}', short_texts(17)),
    ('{"phy":{"module":{"vendor_rev":@}}}', short_texts(5)),
    ('{"phy":{"module":{"date_code":@}}}', short_texts(6)),
    ('{"phy":{"latched_flags":@}}', (["{}", "null", "[]", f"[{','.join(['255'] * 22)}]"],
                                     ["1", '"text"', f"[{','.join(['0'] * 23)}]", "[256]", '{"unknown":1}'])),
    ('{"phy":{"latched_flags":{"latched_rx_los":@}}}', integers(8)),
    ('{"module_memory":@}', (["null"], ["1", "[]", "{}", '{"hex":null}', '{"file":null}', '{"hex":1}', '{"file":""}',
                                        '{"file":"-"}', '{"hex":"00","file":"x"}', '{"other":"00"}'])),
    (f'{{"module_memory":{{"pages":{{"lower":"{COPPER[:256]}","00":"{COPPER[256:]}",@:"00"}}}}}}',
     (['"01"', '"ff"', '"11.1"', '"11.10"', '"2f.255"', '"a1"'],
      ['"upper"', '""', '"1"', '"001"', '"0x01"', '"01h"', '"FF"', '"Lower"', '"11.0"', '"11.01"', '"11.256"', '"11."',
       '"11.-1"', '"a0.1"', '"a2.1"', '"01\\n"'])),
    (f'{{"module_memory":{{"pages":{{"00":"{COPPER[256:]}","lower":@}}}}}}',
     ([f'"{COPPER[:256]}"'], ["null", "1", "[]", "{}"])),
    ('{"module_memory":{"pages":@}}', ([], ["null", "1", "[]", "{}", '"00"'])),
    ('{"taken_at":@}', (['"2026-01-31T12:00:00Z"', "null"],
                        ["1", '""', '"2026-01-31"', '"2026-01-31T12:00:00"', '"2026-01-31T12:00:00z"',
                         '"2026-01-31T12:00:00Z\\n"', '"2026-01-31T12:00:0\\u0660Z"', "{}"])),
    ('{"prtl":@}', (["{}", "null", '{"local":null}'], ["1", "[]", '{"middle":{}}'])),
    ('{"prtl":{"local":@}}', (["{}", "null"], ["1", "[]", '{"unknown":1}'])),
    ('{"prtl":{"local":{"latency_res":@}}}', integers(8)),
    ('{"prtl":{"remote":{"round_trip_latency":@}}}', integers(32)),
    ('{"prtl_length":@}', (["0", "-2.5", str(2**70), FLOAT_MAX, '"about 9"', '"nan"', "null"],
                           ["true", "[]", "{}", "1e39", "1e400"])),
    ('{"unknown":@}', ([], ["1", "null"])),
]


MARK = "0xfeedfeedfeedfeed"


class Schema(ProgramTest):
    def test_both_accept_and_refuse_the_same_lines(self):
        lines = [(template.replace("@", value), value in good)
                 for template, (good, bad) in CASES for value in good + bad]
        # A port with the GUID MARK after each line shows which of them have a row.
        ports = "".join(f'{line}\n{{"node_guid":"{MARK}"}}\n' for line, _ in lines)
        result = run("table", "-q", "-j", "1", "--columns", "NodeGuid", stdin=ports.encode())
        self.assertEqual(result.returncode, 1, result.stderr)
        rows = result.stdout.decode().partition("\n")[2]
        accepted = [part != "" for part in rows.split(f"{MARK}\n")[:-1]]
        self.assertEqual(len(accepted), len(lines), result.stderr)
        validator = jsonschema.Draft202012Validator(SCHEMA)
        for (line, is_valid), is_accepted in zip(lines, accepted):
            with self.subTest(line):
                self.assertEqual(validator.is_valid(json.loads(line)), is_valid, "schema")
                self.assertEqual(is_accepted, is_valid, "program")


if __name__ == "__main__":
    unittest.main()
