"""Snapshots of a store as the input of every command."""

import json
import os
import sqlite3
import subprocess
import unittest

from program import FABRIC, FAULTS, ProgramTest, program, run

COMMANDS = (("table",), ("table", "--json"), ("report",), ("export",), ("check", "--json"), ("check",), ("metrics",))


def port(number, guid=0x10, **fields):
    cable = {"Identifier": 0x11, "Connector": 0x0C, "Temperature": 40 << 8, "SupplyVoltage": 33000,
             "RxPower": [1, 1, 1, 1], "TxPower": [1, 1, 1, 1], "TxBias": [7, 7, 7, 7], "SerialNumber": "S", **fields}
    return {"node_guid": 1, "port_guid": guid, "port_num": number, "cable": cable}


def module():
    """The memory of a QSFP28 module whose second checksum is wrong."""
    memory = bytearray(256)
    memory[0] = memory[128] = 0x11
    memory[130] = 0x0C
    memory[196:200] = b"SN-1"
    memory[191] = sum(memory[128:191]) & 0xFF
    memory[223] = sum(memory[192:223]) + 1 & 0xFF
    return bytes(memory)


class SnapshotTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.path = self.folder / "fabric.db"

    def store(self, *arguments, **options):
        self.assertEqual(run("store", self.path, "-q", *arguments, **options).returncode, 0)

    def snapshot(self, number):
        return f"{self.path}@{number}"

    def assert_same(self, arguments, from_original, from_store):
        original = run(*arguments, "-q", *from_original)
        stored = run(*arguments, "-q", *from_store)
        self.assertEqual(stored.returncode, original.returncode, arguments)
        self.assertNotEqual(original.stdout, b"")
        self.assertEqual(stored.stdout, original.stdout, arguments)


class Inputs(SnapshotTest):
    def test_every_command_reads_the_stored_records(self):
        self.store(FABRIC)
        self.store(FAULTS)
        for command in COMMANDS:
            self.assert_same(command, [FABRIC], [self.snapshot(1)])
            self.assert_same(command, [FAULTS], [self.snapshot(2)])

    def test_module_decodes_the_memories_of_a_snapshot(self):
        self.store(FABRIC)
        self.store(FAULTS)
        for command in (("module",), ("module", "--json")):
            self.assert_same(command, [FAULTS], [self.path])
            self.assert_same(command, [FAULTS], [self.snapshot(2)])

    def test_settings_apply_to_a_snapshot(self):
        self.store(FAULTS)
        options = ("check", "--json", "--set", "lane-imbalance=2.5", "--set", "rx-power-low-alarm=0.85")
        self.assert_same(options, [FAULTS], [self.path])
        self.assertNotEqual(run(*options, "-q", self.path).stdout, run("check", "--json", "-q", self.path).stdout)

    def test_findings_of_the_store_are_those_of_check(self):
        for number, source in enumerate((FABRIC, FAULTS), start=1):
            self.store(source)
            expected = []
            for line in run("check", "--json", "-q", self.snapshot(number)).stdout.splitlines()[:-1]:
                judged = json.loads(line)
                for finding in judged["findings"]:
                    expected.append((judged["node_guid"], judged["port_guid"], judged["port_num"], judged["label"],
                                     finding["rule"], finding["severity"], finding["lane"] or 0, finding["value"],
                                     finding["limit"], finding["message"]))
            with sqlite3.connect(self.path) as connection:
                stored = connection.execute(
                    "SELECT node_guid, port_guid, port_num, label, rule, severity, lane, value, limit_value, sentence "
                    "FROM finding WHERE snapshot_id = ?", (number,)).fetchall()
            connection.close()
            self.assertGreater(len(expected), 5)
            self.assertEqual(sorted(stored, key=repr), sorted(expected, key=repr))

    def test_the_latest_snapshot_is_the_newest_by_time(self):
        self.store("--taken-at", "2026-01-02", stdin=[port(1)])
        self.store("--taken-at", "2026-01-01", stdin=[port(2)])
        for name, number in ((self.path, 1), (self.snapshot(1), 1), (self.snapshot(2), 2)):
            self.assertEqual([json.loads(line)["port_num"] for line in run("export", name).stdout.splitlines()], [number])

    def test_several_inputs(self):
        self.store(stdin=[port(1)])
        self.store(stdin=[port(2)])
        more = self.file("more.jsonl", json.dumps(port(3)).encode())
        found = run("export", self.snapshot(2), more, self.snapshot(1)).stdout.splitlines()
        self.assertEqual([json.loads(line)["port_num"] for line in found], [2, 3, 1])

    def test_selection(self):
        self.store(stdin=[port(1), port(2)])
        found = run("export", "--port", "2", self.path).stdout.splitlines()
        self.assertEqual([json.loads(line)["port_num"] for line in found], [2])

    def test_only_selected_ports_are_stored(self):
        self.store("--port", "2", stdin=[port(1), port(2)])
        self.assertEqual(len(run("export", self.path).stdout.splitlines()), 1)

    def test_many_ports_by_many_threads(self):
        ports = [port(number, LatchedCdrLos=number % 16) for number in range(2000)]
        self.store(stdin=ports)
        original = self.file("ports.jsonl", b"".join(json.dumps(p).encode() + b"\n" for p in ports))
        self.assert_same(("check", "--json", "-j4"), [original], [self.path])

    def test_ports_without_guids(self):
        ports = [{**port(1, 0), "label": "a"}, {**port(1, 0, LatchedCdrLos=1), "label": "b"}, port(2, 0)]
        self.store(stdin=ports)
        original = self.file("ports.jsonl", b"".join(json.dumps(p).encode() + b"\n" for p in ports))
        for command in COMMANDS:
            self.assert_same(command, [original], [self.path])

    def test_a_copy_of_a_snapshot(self):
        self.store(FAULTS)
        copy = self.folder / "copy.db"
        self.assertEqual(run("store", copy, "-q", self.snapshot(1)).returncode, 0)
        self.assert_same(("check",), [self.path], [copy])

    def test_peers_are_stored(self):
        ports = [{**port(1), "peer": {"port_guid": 0x11, "port_num": 1}}, port(1, 0x11, TxPower=[9, 9, 9, 9])]
        self.store(stdin=ports)
        self.assertIn(b"link-loss", run("check", self.path).stdout)


class Dumps(SnapshotTest):
    def test_the_store_holds_the_dump_of_a_file(self):
        dump = self.file("module.bin", module())
        records = self.file("ports.jsonl", json.dumps({
            "label": "é", "port_num": 3, "prtl_length": 12.5, "module_memory": {"file": "module.bin"}}).encode() + b"\n")
        expected = [run(*command, "-q", records).stdout for command in COMMANDS]
        self.store(records)
        dump.unlink()
        self.assertEqual([run(*command, "-q", "--no-files", self.path).stdout for command in COMMANDS], expected)
        self.assertIn(b'"rule": "checksum"'.replace(b" ", b""), expected[4])

    def test_modules(self):
        dumps = [self.file(name, module()) for name in ("a.bin", 'b "é\\.bin')]
        self.store("--module", *dumps)
        for command in COMMANDS:
            self.assert_same(command, ["--module", *dumps], [self.path])

    def test_modules_page_by_page(self):
        lower = self.file("lower.bin", module()[:128])
        upper = self.file("00.bin", module()[128:])
        partial = self.file("03.txt", b"00: 11 22 XX 33\n20: XX 44\n")
        pages = [f"lower:{lower}", f"00:{upper}", f"03:{partial}"]
        self.store("--module", *pages)
        for command in COMMANDS:
            self.assert_same(command, ["--module", *pages], [self.path])
        record = json.loads(self.record())
        self.assertEqual(record["module_memory"]["pages"]["00"], module()[128:].hex())

    def test_a_damaged_module_page_by_page(self):
        for name, size in (("a0", 256), ("a2", 100)):
            self.file(name, bytes([3]) + bytes(size - 1))
        pages = [f"{name}:{self.folder / name}" for name in ("a0", "a2")]
        self.store("--module", *pages)
        for command in COMMANDS:
            self.assert_same(command, ["--module", *pages], [self.path])

    def record(self):
        connection = sqlite3.connect(self.path)
        ((record,),) = connection.execute("SELECT record FROM port_record").fetchall()
        connection.close()
        return record

    def test_bytes_that_could_not_be_read_stay_unknown(self):
        memory = module()
        cells = [f"{byte:02x}" for byte in memory]
        cells[148:164] = ["XX"] * 16
        cells[255] = "XX"
        text = "".join(f"{row:02x}: " + " ".join(cells[row:row + 16]) + "\n" for row in range(0, 256, 16))
        gaps = "".join(f"0x{row:04x}:\t" + " ".join(cells[row:row + 16]) + "\n" for row in range(0, 240, 16) if row != 144)
        short = "".join(cells[:140])
        for number, listing in enumerate((text, gaps.replace("XX", ""), short), start=1):
            records = self.file("ports.jsonl", json.dumps({"module_memory": {"file": "dump.txt"}}).encode() + b"\n")
            self.file("dump.txt", listing.encode())
            self.store(records)
            for command in COMMANDS:
                self.assert_same(command, [records], [self.snapshot(number)])


class Diffs(SnapshotTest):
    BEFORE = [port(1), port(2), port(3)]
    AFTER = [port(1), port(2, SerialNumber="T"), port(4)]
    LAST = [port(1), port(2, SerialNumber="T", LatchedCdrLos=1), port(4)]

    def setUp(self):
        super().setUp()
        for day, ports in enumerate((self.BEFORE, self.AFTER, self.LAST), start=1):
            self.store("--taken-at", f"2026-01-0{day}", stdin=ports)

    def diff(self, *inputs):
        result = run("diff", "--json", *inputs)
        self.assert_run(result)
        return [(line["port_num"], line["presence"], [change["what"] for change in line["changes"]])
                for line in map(json.loads, result.stdout.splitlines()[:-1])]

    def test_the_last_two_snapshots(self):
        self.assertEqual(self.diff(self.path), [(2, "changed", ["verdict", "rx_los"])])

    def test_ports_with_the_same_label(self):
        ports = [{**port(number, 0), "label": "a"} for number in (1, 2)]
        for day, second in ((4, ports[1]), (5, {**port(2, 0, SerialNumber="T"), "label": "a"})):
            self.store("--taken-at", f"2026-01-0{day}", stdin=[ports[0], second])
        self.assertEqual(self.diff(self.path), [(2, "changed", ["serial_number"])])

    def test_two_given_snapshots(self):
        self.assertEqual(self.diff(self.snapshot(1), self.snapshot(3)),
                         [(2, "changed", ["serial_number", "verdict", "rx_los"]), (3, "gone", []), (4, "appeared", [])])
        self.assertEqual(self.diff(self.snapshot(3), self.snapshot(2)), [(2, "changed", ["verdict", "rx_los"])])

    def test_a_snapshot_and_the_one_before(self):
        self.assertEqual(self.diff(self.snapshot(2)),
                         [(2, "changed", ["serial_number"]), (3, "gone", []), (4, "appeared", [])])

    def test_a_snapshot_and_a_file(self):
        records = self.file("now.jsonl", b"".join(json.dumps(p).encode() + b"\n" for p in self.AFTER))
        self.assertEqual(self.diff(self.snapshot(2), records), [])
        self.assertEqual(self.diff(records, self.path), [(2, "changed", ["verdict", "rx_los"])])

    def test_the_first_snapshot_has_no_predecessor(self):
        self.assert_run(run("diff", self.snapshot(1)), 3,
                        f"cableinfo: {self.snapshot(1)}: there is no snapshot before it\n")

    def test_one_file_is_no_comparison(self):
        for path in (FABRIC, "/nowhere"):
            self.assert_run(run("diff", path), 2, "cableinfo: NEW is missing; only a snapshot of a store has another one "
                                                  "before it\n")


class Faults(SnapshotTest):
    def fails(self, name, reason):
        result = run("check", "-q", name)
        self.assertEqual((result.returncode, result.stderr.decode()), (3, f"cableinfo: {name}: {reason}\n"))

    def test_snapshots_that_are_not_there(self):
        self.store(stdin=[port(1)])
        for number in (2, 9223372036854775807):
            self.fails(self.snapshot(number), "there is no such snapshot")
        for name in (self.snapshot(0), self.snapshot(-1), self.snapshot("x"), self.snapshot(""), self.snapshot("1x"),
                     self.snapshot(92233720368547758080), f"{self.folder}/none.db@1", f"{FABRIC}@1"):
            self.fails(name, "No such file or directory")

    def test_a_file_may_have_such_a_name(self):
        name = self.file("ports.jsonl@1", json.dumps(port(7)).encode())
        self.assertIn(b'"port_num":7', run("export", name).stdout)

    def test_databases_of_others(self):
        connection = sqlite3.connect(self.path)
        connection.execute("CREATE TABLE mine (x)")
        connection.commit()
        self.fails(self.path, "the file is a database of another program")
        connection.execute("PRAGMA application_id = 0x43424C49")
        connection.execute("PRAGMA user_version = 99")
        connection.commit()
        connection.close()
        self.fails(self.path, "the tables were written by another version of this program")

    def test_a_damaged_store(self):
        self.store(FABRIC)
        content = bytearray(self.path.read_bytes())
        for begin in range(4096, len(content), 4096):
            content[begin:begin + 100] = b"\xA5" * 100
        self.path.write_bytes(content)
        self.fails(self.path, "database disk image is malformed")

    def test_hostile_records(self):
        self.store(stdin=[port(1), port(2), port(3), port(4)])
        with sqlite3.connect(self.path) as connection:
            connection.execute("UPDATE port_record SET record = x'00ff00' WHERE id = 2")
            connection.execute("UPDATE port_record SET record = '' WHERE id = 3")
            connection.execute("UPDATE port_record SET record = ? WHERE id = 4", ("x" * 300_000,))
        connection.close()
        result = run("export", self.path)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(len(result.stdout.splitlines()), 1)
        messages = result.stderr.decode().splitlines()
        self.assertTrue(messages[0].startswith(f"{self.path}:2: not valid JSON"), messages)
        self.assertTrue(messages[1].startswith(f"{self.path}:4: expected a line of at most"), messages)

    def test_the_output_is_no_input(self):
        self.store(stdin=[port(1)])
        for name in (self.path, self.snapshot(1)):
            self.assert_run(run("table", name, "-o", self.path), 2,
                            f"cableinfo: --output: {self.path} is also an input ({name})\n")
            self.assert_run(run("store", self.path, name), 2, f"cableinfo: {self.path} is also an input\n")

    def test_a_snapshot_can_be_read_while_another_is_added(self):
        self.store(stdin=[port(1)])
        writer = sqlite3.connect(self.path, isolation_level=None)
        writer.execute("BEGIN IMMEDIATE")
        writer.execute("DELETE FROM snapshot")
        result = run("export", self.path)
        writer.execute("ROLLBACK")
        writer.close()
        self.assert_run(result)
        self.assertIn(b'"port_num":1', result.stdout)

    def test_a_store_that_only_its_owner_may_write(self):
        path = self.folder / "100%#?.db"
        self.assert_run(run("store", path, stdin=[port(1)]))
        self.assertEqual([entry.name for entry in self.folder.iterdir()], [path.name])
        path.chmod(0o444)
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o700)
        nobody = ["setpriv", "--reuid", "65534", "--clear-groups"] if os.geteuid() == 0 else []
        result = subprocess.run([*nobody, program(), "export", path], capture_output=True, check=False)
        self.assert_run(result)
        self.assertIn(b'"port_num":1', result.stdout)


if __name__ == "__main__":
    unittest.main()
