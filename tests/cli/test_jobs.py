"""Any number of threads writes the same as one, in the same order."""

import json
import os
import random
import re
import resource
import sqlite3
import unittest

from program import FABRIC, FAULTS, ProgramTest, run, summary

JOBS = (2, 3, 8, 32)
LINES = 3000  # several times what is decoded at once


def lines():
    """Port records of very different lengths, with bad and blank lines among them."""
    noise = random.Random(2026)
    for number in range(LINES):
        kind = noise.randrange(12)
        if kind == 0:
            yield "   " if number % 2 else ""
        elif kind == 1:
            yield noise.choice(['{"port_num":-1}', "{", '{"cable":{"Temprature":1}}', "x" * 5000])
        elif kind == 2:
            # Registers from which no length can be computed give a remark.
            end = {"latency_res": 1, "round_trip_latency": 0xFFFFFF}
            yield json.dumps({"port_num": number, "prtl": {"local": end, "remote": end}})
        else:
            text = "v" * noise.choice([0, 3, 40, 20000 if number % 50 == 0 else 7])
            key = noise.choice(["cable", "phy", "none"])
            port = {"port_num": number}
            if key == "cable":
                port["cable"] = {"VendorName": text, "RxPower": [noise.random()]}
            elif key == "phy":
                port["phy"] = {"source": text, "module": {"rx_power": [noise.randrange(65536)]}}
            yield json.dumps(port)


class Jobs(ProgramTest):
    def setUp(self):
        super().setUp()
        all_lines = list(lines())
        self.first = self.file("first.jsonl", "\n".join(all_lines[:1000]).encode())
        self.second = self.file("second.jsonl", "\n".join(all_lines[1000:]).encode())
        self.missing = self.folder / "missing.jsonl"

    def run_at_any_time(self, *arguments, **options):
        """Runs the program; a page has no time of its writing."""
        result = run(*arguments, **options)
        result.stdout = re.sub(rb'"written_at":"[^"]*"', b"", result.stdout, count=1)
        return result

    def assert_same(self, command, *arguments, status, **options):
        alone = self.run_at_any_time(command, "-j", "1", *arguments, **options)
        self.assertEqual(alone.returncode, status, alone.stderr[:500])
        for jobs in JOBS:
            together = self.run_at_any_time(command, "--jobs", str(jobs), *arguments, **options)
            self.assertEqual(together.returncode, status)
            self.assertEqual(together.stdout, alone.stdout, (command, jobs))
            self.assertEqual(together.stderr, alone.stderr, (command, jobs))
        default = self.run_at_any_time(command, *arguments, **options)
        self.assertEqual((default.stdout, default.stderr), (alone.stdout, alone.stderr))
        return alone

    def test_all_outputs_are_the_same(self):
        for command in ("table", "report", "export"):
            result = self.assert_same(command, "--all-messages", self.first, self.second, status=1)
            self.assertGreater(result.stderr.count(b"\n"), 300)
            self.assertGreater(result.stdout.count(b"\n"), 2000)

    def many_ports(self):
        samples = [json.loads(line) for path in (FABRIC, FAULTS) for line in path.read_bytes().splitlines()]
        ports = [{**samples[number % len(samples)], "port_num": number} for number in range(1500)]
        return self.file("ports.jsonl", b"".join(json.dumps(port).encode() + b"\n" for port in ports))

    def test_every_command_writes_the_same(self):
        path = self.many_ports()
        for command, *options in (("module",), ("module", "--json"), ("check",), ("check", "--json"),
                                  ("diff", FABRIC), ("metrics",), ("page",)):
            result = self.assert_same(command, *options, path, status=6 if command == "check" else 0)
            self.assertGreater(result.stdout.count(b"\n"), 20, command)

    def test_stores_and_their_snapshots_are_the_same(self):
        path = self.many_ports()
        dumps = []
        for jobs in (1, *JOBS):
            store = self.folder / f"{jobs}.db"
            for taken_at, source in (("2026-01-01T00:00:00Z", path), ("2026-01-02T00:00:00Z", FABRIC)):
                result = run("store", "-q", "-j", str(jobs), "--taken-at", taken_at, store, source)
                self.assert_run(result)
            connection = sqlite3.connect(store)
            dumps.append(list(connection.iterdump()))
            connection.close()
        self.assertGreater(len(dumps[0]), 3000)
        for dump in dumps[1:]:
            self.assertEqual(dump, dumps[0])
        self.assert_same("check", f"{self.folder}/1.db@1", status=6)
        self.assert_same("page", f"{self.folder}/1.db", status=0)

    def test_messages_are_limited_alike(self):
        self.assert_same("table", status=1, stdin=(b'{"portnum":1}\n' * 3 + b'{"port_num":1}\n') * 3000)

    def test_ports_keep_the_order_of_the_input(self):
        table = self.assert_same("table", "--no-header", self.first, self.second, status=1)
        numbers = [int(row.split(b",")[2]) for row in table.stdout.splitlines()]
        self.assertEqual(numbers, sorted(numbers))
        self.assertGreater(len(numbers), 2000)

    def test_messages_give_line_numbers(self):
        result = self.assert_same("table", "-", status=1,
                                  stdin=b'{"port_num":1}\n' * 2000 + b"{\n" + b'{"port_num":2}\n' * 500)
        self.assertRegex(result.stderr.decode(), r"\A<stdin>:2001: not valid JSON: .*\n" + summary(2500, 1) + r"\Z")
        self.assertEqual(result.stdout.count(b"\n"), 2501)

    def test_an_unreadable_input_is_reported_in_order(self):
        result = self.assert_same("table", self.first, self.missing, self.second, status=3)
        *messages, _ = result.stderr.splitlines()  # the last line is the summary
        places = [line.split(b":")[0] for line in messages]
        self.assertEqual(places.count(b"cableinfo"), 1)
        missing = places.index(b"cableinfo")
        self.assertEqual(set(places[:missing]), {str(self.first).encode()})
        self.assertEqual(set(places[missing + 1:]), {str(self.second).encode()})

    def test_a_strict_run_stops_at_the_same_port(self):
        good = b'{"port_num":1}\n'
        for before in (0, 10, 255, 256, 257, 5000):
            result = self.assert_same("table", "--strict", "--no-header", status=1,
                                      stdin=good * before + b"{}{\n" + good * 3000)
            self.assertEqual(result.stdout.count(b"\n"), before)
            self.assertEqual(result.stderr.count(b"\n"), 2)
            self.assertTrue(result.stderr.decode().endswith(summary(before, 1)))

    def test_reports_are_separated_by_one_empty_line(self):
        ports = [{"port_num": n} for n in range(1000)]
        result = self.assert_same("report", status=0, stdin=ports)
        headings = result.stdout.split(b"\n\n")
        self.assertEqual(len(headings), 1000)
        for number, heading in enumerate(headings):
            self.assertTrue(heading.rstrip().endswith(b"PortNum: %d" % number), heading)

    def test_a_run_goes_on_with_the_threads_that_it_gets(self):
        ports = b'{"port_num":1}\n' * 5000
        if os.getuid() == 0:
            # The limit does not hold for root; another user can do without permissions here.
            def become_nobody():
                resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))
                os.setgid(65534)
                os.setuid(65534)
        else:
            def become_nobody():
                resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))
        # At its end the address sanitizer would search for leaks in a process that it cannot create.
        environment = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}
        try:
            result = run("table", "--no-header", "-j", "32", stdin=ports, preexec_fn=become_nobody,
                         env=environment)
        except PermissionError:
            self.skipTest("another user may not run the program where it is")
        self.assert_run(result)
        self.assertEqual(result.stdout.count(b"\n"), 5000)

    def test_the_number_of_threads_is_limited(self):
        for jobs in ("0", "33", "-1", "two", ""):
            result = run("table", "-j", jobs, stdin=b"")
            self.assertEqual((result.returncode, result.stdout), (2, b""), jobs)
            self.assertIn(b"--jobs", result.stderr)


if __name__ == "__main__":
    unittest.main()
