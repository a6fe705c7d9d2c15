"""Faults of amount: no flood of messages, no lack of memory that kills."""

import json
import os
import re
import resource
import time
import unittest

from program import ProgramTest, run, summary

GOOD = b'{"port_num":1,"cable":{"VendorName":"vendor"}}\n'
MANY = 50000


class Memory(ProgramTest):
    def test_little_memory_never_ends_in_a_signal(self):
        seen = set()
        for megabytes in (16, 24, 32, 48, 64, 96, 128, 256, 512):
            limit = lambda size=megabytes << 20: resource.setrlimit(resource.RLIMIT_AS, (size, size))
            if run("--version", preexec_fn=limit).returncode != 0:
                continue  # the system cannot even load it, or a sanitizer needs more
            result = run("table", "--no-header", "-j", "32", stdin=GOOD * 5000, preexec_fn=limit)
            self.assertIn(result.returncode, (0, 4), megabytes)
            if result.returncode == 0:
                self.assertEqual((result.stdout.count(b"\n"), result.stderr), (5000, b""))
            else:
                self.assertEqual(result.stderr, b"cableinfo: out of memory\n")
            seen.add(result.returncode)
        self.assertIn(seen, ({0}, {0, 4}, set()))


class Messages(ProgramTest):
    def test_twenty_of_a_kind_are_shown(self):
        result = run("table", "--no-header", stdin=(b'{"portnum":1}\n{"port_num":-1}\n' + GOOD) * 100)
        self.assertEqual(result.returncode, 1)
        lines = result.stderr.decode().splitlines(keepends=True)
        self.assertEqual(sum("unknown key" in line for line in lines[:-2]), 20)
        self.assertEqual(sum("expected an integer" in line for line in lines[:-2]), 20)
        self.assertEqual(len(lines), 42)
        self.assertEqual(lines[-2], "<stdin>: 160 more messages: 80 unknown keys, 80 values that do not fit "
                         "(--all-messages shows them)\n")
        self.assertEqual(lines[-1], summary(100, 200))

    def test_exactly_twenty_need_no_sum(self):
        self.assertEqual(run("table", stdin=b"bad\n" * 20).stderr.count(b"\n"), 21)
        self.assertIn(b"<stdin>: 1 more message: 1 line that is not JSON (", run("table", stdin=b"bad\n" * 21).stderr)

    def test_messages_are_counted_for_each_input(self):
        first = self.file("first.jsonl", b"bad\n" * 30)
        second = self.file("second.jsonl", b"bad\n" * 30 + GOOD)
        lines = run("table", first, second).stderr.decode().splitlines()
        self.assertEqual(sum(line.startswith(f"{first}:") for line in lines), 21)
        self.assertEqual(sum(line.startswith(f"{second}:") for line in lines), 21)
        self.assertTrue(lines[20].startswith(f"{first}: 10 more messages: "))

    def test_all_of_them_on_demand(self):
        result = run("table", "--all-messages", stdin=b"bad\n" * 500)
        self.assertEqual(result.stderr.count(b"\n"), 501)

    def test_a_flood_of_bad_lines_stays_small_and_fast(self):
        def seconds(line):
            path = self.file("flood.jsonl", line * MANY)
            best = min(self.measure(path) for _ in range(3))
            return best

        good = seconds(GOOD)
        for bad in (b'{"port_num":1,"cable":{"VendorNane":"vendor"}}\n', b'{"prot_num":1}\n'):
            self.assertLess(seconds(bad), 3 * good + 0.05)

    def measure(self, path):
        started = resource.getrusage(resource.RUSAGE_CHILDREN)
        result = run("table", "-j", "1", path)
        ended = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertLess(len(result.stderr), 5000)
        return ended.ru_utime - started.ru_utime

    def test_suggestions_are_fast_in_the_long_run(self):
        path = self.file("flood.jsonl", b'{"port_num":1,"cable":{"VendorNane":"vendor"}}\n' * MANY)
        started = time.monotonic()
        result = run("table", "--all-messages", path)
        self.assertLess(time.monotonic() - started, 20)
        self.assertEqual(result.stderr.count(b'did you mean "VendorName"?'), MANY)


class Summary(ProgramTest):
    NO_LENGTH = {"port_num": 3, "cable": {}, "prtl": {"local": {"round_trip_latency": "0xffffff"}, "remote": {}}}

    def test_it_ends_a_run_that_left_something_out(self):
        result = run("table", stdin=[{"port_num": 1}, {"x": 1}, self.NO_LENGTH])
        self.assertTrue(result.stderr.decode().endswith("\n" + summary(2, 1, 1)))

    def test_a_complete_run_has_no_summary(self):
        self.assert_run(run("table", stdin=[{"port_num": 1}]))
        result = run("table", stdin=[self.NO_LENGTH])
        self.assertEqual((result.returncode, result.stderr.count(b"\n")), (0, 1))

    def test_quiet_silences_remarks_and_the_summary_only(self):
        result = run("table", "-q", stdin=[{"port_num": 1}, {"x": 1}, self.NO_LENGTH])
        self.assert_run(result, 1, "<stdin>:2: x: unknown key\n")
        result = run("table", "-q", self.folder / "missing")
        self.assert_run(result, 3, f"cableinfo: {self.folder / 'missing'}: No such file or directory\n")

    def test_quiet_silences_remarks_on_dumps(self):
        from test_modules import qsfp28
        data = bytearray(qsfp28())
        data[191] ^= 0x0F
        dump = self.file("dump", bytes(data))
        self.assertEqual(run("table", "--module", dump).stderr.count(b"\n"), 1)
        self.assert_run(run("table", "-q", "--module", dump))


class Labels(ProgramTest):
    def test_a_label_is_shown_in_the_head_line_and_in_messages(self):
        port = {"port_num": 4, "label": "leaf 3/4", "cable": {}, **{"prtl": Summary.NO_LENGTH["prtl"]}}
        result = run("report", stdin=[port, {"label": "leaf 3/5", "portnum": 1}])
        self.assertTrue(result.stdout.startswith(
            b"NodeGuid: 0x0000000000000000, PortGuid: 0x0000000000000000, PortNum: 4, Label: leaf 3/4\n"))
        lines = result.stderr.decode().splitlines()
        self.assertTrue(lines[0].startswith('<stdin>:1: port 0x0000000000000000/4 "leaf 3/4": The PRTL '))
        self.assertEqual(lines[1], '<stdin>:2: port "leaf 3/5": portnum: unknown key; did you mean "port_num"?')

    def test_an_empty_label_is_no_label(self):
        for label in ("", None):
            self.assertEqual(run("report", stdin=[{"label": label}]).stdout, run("report", stdin=[{}]).stdout)

    def test_dumps_keep_their_numbers_and_names(self):
        from test_modules import osfp, qsfp28, sfp
        first = self.file("first.bin", qsfp28())
        bad = self.file("bad.bin", bytes(256))
        missing = self.folder / "missing.bin"
        (self.folder / "inner").mkdir()
        last = self.file("inner/last.bin", osfp())
        lower = self.file("lower.bin", sfp()[:256])
        result = run("report", "--module", first, bad, missing, last, f"a0:{lower}")
        self.assertEqual(result.returncode, 3)
        heads = re.findall("^NodeGuid.*PortNum: (.*)$", result.stdout.decode(), re.MULTILINE)
        self.assertEqual(heads, ["1, Label: first.bin", "4, Label: last.bin", "5, Label: lower.bin"])


class RepeatedKeys(ProgramTest):
    def test_a_key_given_twice_is_an_error(self):
        for line, path in ((b'{"port_num":1,"port_num":2}', "port_num"),
                           (b'{"port_num":1,"port_num":null}', "port_num"),
                           (b'{"port_num":1,"port\\u005fnum":1}', "port_num"),
                           (b'{"cable":{"Lot":1,"Temperature":2,"Lot":1}}', "cable.Lot"),
                           (b'{"phy":{"module":{"lot":1,"lot":1}}}', "phy.module.lot"),
                           (b'{"cable":{},"cable":{}}', "cable")):
            self.assert_run(run("table", "--no-header", stdin=line + b"\n"), 1,
                            f"<stdin>:1: {path}: key given more than once\n" + summary(0, 1))

    def test_the_same_key_in_other_objects_is_allowed(self):
        end = {"latency_res": 1}
        self.assertEqual(run("table", stdin=[{"prtl": {"local": end, "remote": end}}]).returncode, 0)


class Numbers(ProgramTest):
    CASES = [
        ('{"port_guid":18446744073709551616}',
         "port_guid: expected an integer from 0 to 18446744073709551615, found 1.8446744073709552e+19"),
        ('{"port_num":1e400}', "port_num: expected an integer from 0 to 4294967295, found a number beyond "
         "the range of a 64-bit float"),
        ('{"cable":{"RxPower":[0,-1e400]}}', "cable.RxPower[1]: expected a number within the range of a "
         "32-bit float, found a number beyond the range of a 64-bit float"),
        ('{"cable":{"VendorName":1e999}}', "cable.VendorName: expected a text, found a number beyond the "
         "range of a 64-bit float"),
        ('{"port_num":99999999999999999999,"x":"99999999999999999999"}',
         "port_num: expected an integer from 0 to 4294967295, found 1e+20"),
    ]

    def test_large_numbers_are_out_of_range(self):
        for line, message in self.CASES:
            self.assert_run(run("table", "--no-header", stdin=line.encode() + b"\n"), 1,
                            f"<stdin>:1: {message}\n" + summary(0, 1))

    def test_texts_are_untouched_by_that(self):
        line = b'{"cable":{"VendorName":"1e400 \\" 1e400","RxPower":[18446744073709551616]}}\n'
        result = run("table", "--no-header", stdin=line)
        self.assert_run(result)
        self.assertIn(b'"1e400 " 1e400"', result.stdout)
        self.assertIn(b",18446744073709551616.000,", result.stdout)

    def test_numbers_that_are_no_json_stay_so(self):
        for number in ("01", "1.", ".5", "+1", "1e", "--1", "1e400e1", "0x10", "18446744073709551616x"):
            result = run("table", stdin=b'{"port_num":%s}\n' % number.encode())
            self.assertIn(b"<stdin>:1: not valid JSON", result.stderr, number)


class Mistakes(ProgramTest):
    def assert_hint(self, result, hint, status=1):
        self.assertEqual(result.returncode, status)
        self.assertEqual(result.stderr.decode().count("\n"), 2, result.stderr)
        self.assertIn(hint, result.stderr.decode())

    def test_unknown_commands_are_named(self):
        listed = run("--help").stdout.decode().split("Subcommands:\n")[1].split("\n\n")[0]
        commands = ", ".join(re.findall(r"^ {2}(\w+)", listed, re.MULTILINE))
        self.assertTrue(commands.startswith("table, report, export, "), commands)
        for word, hint in (("tabel", 'did you mean "table"?'), ("colums", 'did you mean "columns"?'),
                           ("xyzxyz", f"the commands are {commands}"), ("raw", f"the commands are {commands}")):
            result = run(word, "file")
            self.assertEqual((result.returncode, result.stdout), (2, b""))
            self.assertIn(f'cableinfo: unknown command "{word}"; {hint}', result.stderr.decode())

    def test_a_dump_without_module(self):
        from test_modules import LISTINGS, osfp, qsfp28, sfp
        for data in (osfp(), qsfp28(), sfp(), *(LISTINGS[name](qsfp28()).encode() for name in LISTINGS)):
            self.assert_hint(run("table", self.file("dump", data)),
                             "dump: looks like a dump of a module's memory, not like port records; "
                             "give it with --module\n")

    def test_a_record_file_with_module(self):
        for content in (GOOD, b"\xef\xbb\xbf\n" + GOOD, GOOD * 50000):
            self.assert_hint(run("table", "--module", self.file("ports.jsonl", content)),
                             "ports.jsonl: looks like port records, not like a dump; give it without --module\n")

    def test_pretty_printed_ports_are_reported_once(self):
        ports = [{"port_num": n, "cable": {"RxPower": [1, 2]}} for n in range(50)]
        for indent in (2, 4, "\t"):
            text = "\n".join(json.dumps(port, indent=indent) for port in ports)
            self.assert_hint(run("table", stdin=text.encode()), "<stdin>: expected one object per line, found "
                             "objects spread over several lines; convert them, for example with jq -c .\n")

    def test_arrays_of_ports_are_reported_once(self):
        ports = [{"port_num": n} for n in range(20000)]
        lines = ",\n".join(json.dumps(port) for port in ports)
        for text in (json.dumps(ports), json.dumps(ports, indent=1), f"[{lines}]", f"[\n{lines}\n]"):
            self.assert_hint(run("table", stdin=text.encode()), "<stdin>: expected one object per line, found "
                             "an array of objects; convert it, for example with jq -c .[]\n")

    def test_other_inputs_are_read_all_the_same(self):
        array = self.file("array.json", b'[{"port_num":1}]')
        result = run("table", "--no-header", array, "-", stdin=GOOD)
        self.assertEqual((result.returncode, result.stdout.count(b"\n")), (1, 1))
        self.assertEqual(run("table", "--no-header", "--strict", array, "-", stdin=GOOD).stdout, b"")

    def test_one_bad_line_at_the_beginning_is_one_bad_line(self):
        for first in (b"{\n", b"[\n", b"{\n\n", b'{"port_num":1,\n'):
            result = run("table", "--no-header", stdin=first + GOOD * 3)
            if first != b"[\n":
                self.assertEqual((result.returncode, result.stdout.count(b"\n")), (1, 3), first)

    def test_an_unknown_page_lists_the_known_ones(self):
        for name in ("lowr", "0g", "100", "page0", "a3x"):
            result = run("table", "--module", f"{name}:file.bin")
            self.assert_run(result, 2, f'cableinfo: --module: unknown page "{name}" in {name}:file.bin; '
                            "the pages are lower, 00 to ff, with a bank as in 11.1, and a0 and a2 of SFP modules\n")
        from test_modules import qsfp28
        self.file("lowr:file.bin", qsfp28())
        self.assert_run(run("table", "--module", "lowr:file.bin", cwd=self.folder))


if __name__ == "__main__":
    unittest.main()
