"""Snapshots in an SQLite file."""

import contextlib
import json
import os
import re
import signal
import sqlite3
import subprocess
import tempfile
import threading
import time
import unittest

from program import FABRIC, ROOT, ProgramTest, program, run

GUID = "0xa0b1c20000d4e500"
# Ports of which one is changed, one is replaced and one disappears.
BEFORE = [
    {"port_guid": GUID, "port_num": 10, "label": "leaf", "cable": {
        "Identifier": 0x11, "TransmitterTechnologyCode": 0, "VendorName": "Acme", "PartNumber": "P1", "SerialNumber": "S1",
        "Temperature": 41 << 8, "TempHighWarnThresh": 70 << 8, "TempHighAlarmThresh": 75 << 8, "SupplyVoltage": 33000,
        "RxPower": [0.871, 0.9, 0.9, 0.9], "TxPower": [1, 1, 1, 1], "TxBias": [6.75, 7, 7, 7]}},
    {"port_guid": GUID, "port_num": 11, "phy": {"source": "PHY", "module": {
        "cable_identifier": 0, "cable_technology": 0, "vendor_pn": "P2", "vendor_sn": "S2", "fw_version": 0x01020003}}},
    {"port_guid": GUID, "port_num": 12, "phy": {"source": "PHY", "module": {
        "cable_identifier": 0, "cable_technology": 0, "vendor_pn": "P2", "vendor_sn": "S4", "fw_version": 0x01020004}}},
    {"port_guid": GUID, "port_num": 13, "cable": {"PartNumber": "P3"}},
]
AFTER = [json.loads(json.dumps(port)) for port in BEFORE[:3]]
AFTER[0]["cable"].update(RxPower=[0.4, 0.9, 0.9, 0.9], RxPowerAlarms=0x4000, Temperature=80 << 8)
AFTER[1]["phy"]["module"]["vendor_sn"] = "S3"


class StoreTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.path = self.folder / "fabric.db"

    def store(self, *arguments, status=0, stderr=b"", **options):
        self.assert_run(run("store", self.path, *arguments, **options), status, stderr)

    def query(self, statement, *parameters):
        connection = sqlite3.connect(self.path)
        try:
            return connection.execute(statement, parameters).fetchall()
        finally:
            connection.close()

    def dump(self):
        connection = sqlite3.connect(self.path)
        try:
            return list(connection.iterdump())
        finally:
            connection.close()


class Names(StoreTest):
    def test_names_that_keep_nothing_are_refused(self):
        for name in ("", "-"):
            result = run("store", name, FABRIC)
            self.assertEqual((result.returncode, result.stderr.count(b"\n")), (2, 1), name)

    def test_every_name_is_that_of_a_file(self):
        for name in (":memory:", "file:x.db", "file:x.db?mode=memory", "file::memory:", "%41?b#c.db"):
            with tempfile.TemporaryDirectory(dir=self.folder) as folder:
                self.assertEqual(run("store", "-q", name, FABRIC, cwd=folder).returncode, 0)
                self.assertEqual(os.listdir(folder), [name])
                self.assertEqual(run("store", "-q", name, f"{name}@1", cwd=folder).returncode, 2)
                for path in (name, f"{folder}/{name}"):
                    stored = run("table", "-q", path, cwd=folder)
                    self.assertEqual(stored.stdout, run("table", "-q", FABRIC).stdout, path)

    def test_standard_input_is_no_store(self):
        self.store("-q", FABRIC)
        self.path.rename(self.folder / "-")
        result = run("table", "--no-header", "-", stdin=b'{"port_num":1}\n', cwd=self.folder)
        self.assertEqual(result.stdout.count(b"\n"), 1)

    def test_long_records_can_be_read_again(self):
        self.file("eeprom", bytes([0x11]) + bytes(255))
        record = {"port_num": 1, "label": "x" * 131000, "module_memory": {"file": "eeprom"}}
        ports = self.file("ports.jsonl", json.dumps(record).encode() + b"\n")
        self.assertEqual(run("store", "-q", self.path, ports).returncode, 0)
        self.assertEqual(run("table", "-q", "--no-header", self.path).stdout.count(b"\n"), 1)

    def test_days_that_a_month_does_not_have_are_refused(self):
        for time_text in ("2026-02-30", "2026-04-31T10:00:00", "2025-02-29T10:00"):
            self.assertEqual(run("store", self.path, "--taken-at", time_text, FABRIC).returncode, 2, time_text)
        self.assertFalse(self.path.exists())


class Tables(StoreTest):
    def test_cells_are_those_of_the_json_table(self):
        self.store("-q", FABRIC)
        connection = sqlite3.connect(self.path)
        connection.row_factory = sqlite3.Row
        rows = [dict(row) for row in connection.execute("SELECT * FROM cable ORDER BY rowid")]
        connection.close()
        expected = [json.loads(line) for line in run("table", "--json", "-q", FABRIC).stdout.splitlines()]
        self.assertEqual(len(rows), len(expected))
        for row, values in zip(rows, expected):
            self.assertEqual(list(row)[2:], list(values))
            self.assertEqual({name: row[name] for name in values}, values)

    def test_types(self):
        self.store(stdin=BEFORE)
        for column, expected in {"Temperature": "integer", "RX1Power": "real", "Identifier": "text", "PortNum": "integer",
                                 "HighTemperatureAlarm": "integer", "SupplyVoltageReporting": "integer",
                                 "MaxPower": "null", "PortGuid": "text", "TX1Bias": "real", "LengthOM3": "integer"}.items():
            self.assertEqual(self.query(f'SELECT typeof("{column}") FROM cable WHERE PortNum = 10'), [(expected,)], column)

    def test_readings(self):
        self.store(stdin=AFTER)
        self.assertEqual(
            self.query("SELECT * FROM reading WHERE quantity IN ('temperature', 'rx_power') AND port_num = 10 "
                       "AND lane < 2 ORDER BY lane"),
            [(1, "0x0000000000000000", GUID, 10, "leaf", "temperature", 0, 80, "C", 75, 0, 70, 0, 0),
             (1, "0x0000000000000000", GUID, 10, "leaf", "rx_power", 1, 0.4, "mW", None, None, None, None, 2)])
        self.assertEqual(self.query("SELECT value FROM reading WHERE quantity = 'tx_bias' AND port_num = 10"),
                         [(6.75,), (7,), (7,), (7,)])

    def test_findings_are_those_of_check(self):
        self.store("-q", FABRIC)
        judged = [json.loads(line) for line in run("check", "--json", "-q", FABRIC).stdout.splitlines()]
        expected = sorted((port["port_guid"], port["port_num"], finding["rule"], finding["severity"])
                          for port in judged if "port_guid" in port for finding in port["findings"])
        self.assertGreater(len(expected), 5)
        self.assertEqual(sorted(self.query("SELECT port_guid, port_num, rule, severity FROM finding")), expected)

    def test_snapshot(self):
        self.store("-q", "--taken-at", "2026-01-31T13:00:00+01:00", FABRIC)
        self.store(stdin=BEFORE)
        (first, second) = self.query("SELECT * FROM snapshot")
        version = run("--version").stdout.decode().split()[1]
        self.assertEqual(first, (1, "2026-01-31T12:00:00Z", str(FABRIC), version))
        self.assertEqual((second[0], second[2]), (2, "<stdin>"))
        self.assertRegex(second[1], r"^20\d\d-\d\d-\d\dT\d\d:\d\d:\d\dZ$")

    def test_file_is_sound(self):
        self.store(stdin=BEFORE)
        self.store("--keep", "1", stdin=AFTER)
        self.assertEqual(self.query("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(self.query("PRAGMA foreign_key_check"), [])
        self.assertEqual(self.query("PRAGMA journal_mode"), [("wal",)])
        self.assertEqual(self.query("PRAGMA user_version"), [(1,)])

    def test_hostile_texts(self):
        text = "a'\"); DROP TABLE cable; --\né\0x"
        self.store(stdin=[{"label": "it's", "cable": {"VendorName": text}}])
        self.assertEqual(self.query("SELECT label, Vendor FROM cable"),
                         [("it's", text.encode().decode("latin-1").replace("\0", "\u2400"))])

    def test_names_that_are_not_utf8_are_transcribed(self):
        path = os.fsencode(self.folder / "é") + b"\xff\xed\xa0\x80"
        dump = bytearray(256)
        dump[0] = dump[128] = 0x11
        dump[22], dump[26] = 80, 0x80  # degrees; about 3.3 V
        with open(path, "wb") as file:
            file.write(dump)
        self.store("-q", "--set", "temperature-high-warning=40", "--module", os.fsdecode(path))
        name = "é\xff\xed\xa0\x80"
        for table in ("cable", "reading", "finding"):
            self.assertEqual(self.query(f"SELECT DISTINCT label FROM {table}"), [(name,)], table)
        self.assertEqual(self.query("SELECT input FROM snapshot"), [(str(self.folder / name),)])

    def test_repeated_ports_are_stored_once(self):
        self.store(stdin=BEFORE + BEFORE[:1],
                   stderr="cableinfo: 1 port left out: others have the same GUID and number (and label, if they have no GUID)\n")
        self.assertEqual(self.query("SELECT count(*) FROM cable"), [(4,)])

    def test_ports_without_guids_are_distinguished_by_their_labels(self):
        self.store(stdin=[{"label": "a", "cable": {"Temperature": 10 << 8}}, {"label": "b"}, {"label": "a"}, {"port_num": 1}],
                   stderr="cableinfo: 1 port left out: others have the same GUID and number (and label, if they have no GUID)\n")
        self.assertEqual(self.query("SELECT label, PortNum FROM cable"), [("a", 0), ("b", 0), (None, 1)])

    def test_findings_depend_on_the_settings(self):
        self.store("--set", "temperature-high-alarm=off", "--set", "temperature-high-warning=critical", stdin=AFTER)
        self.assertEqual(self.query("SELECT rule, severity FROM finding WHERE rule LIKE 'temperature%'"),
                         [("temperature-high-warning", "critical")])
        config = self.file("limits", b"temperature-high-alarm = xyz\n")
        self.assert_run(run("store", self.path, "--config", config, stdin=AFTER), 2,
                        f'cableinfo: {config}:1: temperature-high-alarm: "xyz" is neither a severity (off, unknown, warning, '
                        "critical) nor a limit of this rule\n".replace("cableinfo: ", "", 1))

    def test_modules(self):
        dump = self.file("empty.bin", bytes([0x11]) + bytes(255))
        self.store("--module", dump, "-q")
        self.assertEqual(self.query("SELECT label, PortNum FROM cable"), [("empty.bin", 1)])
        self.assertEqual(self.query("SELECT input FROM snapshot"), [(str(dump),)])


class Snapshots(StoreTest):
    def test_keep(self):
        for day in (3, 1, 2):
            self.store("--taken-at", f"2026-01-0{day}", stdin=AFTER)
        self.store("--taken-at", "2026-01-04", "--keep", "2", stdin=AFTER)
        self.assertEqual(self.query("SELECT id, taken_at FROM snapshot"),
                         [(1, "2026-01-03T00:00:00Z"), (4, "2026-01-04T00:00:00Z")])
        for table in ("cable", "reading", "finding", "port_record"):
            self.assertEqual(self.query(f"SELECT DISTINCT snapshot_id FROM {table} ORDER BY 1"), [(1,), (4,)])

    def test_latest_is_by_time(self):
        self.store("--taken-at", "2026-01-02", stdin=BEFORE)
        self.store("--taken-at", "2026-01-01", stdin=AFTER)
        self.assertEqual(self.query("SELECT id FROM latest_snapshot"), [(1,)])
        self.assertEqual(self.query("SELECT * FROM snapshot_pair ORDER BY id"), [(1, 2), (2, None)])

    def test_change(self):
        self.store(stdin=BEFORE)
        self.store(stdin=AFTER)
        changed = self.query("SELECT port_num, quantity, lane, previous_value, value FROM reading_change WHERE change != 0 "
                             "ORDER BY quantity")
        self.assertEqual(changed, [(10, "rx_power", 1, 0.871, 0.4), (10, "temperature", 0, 41, 80)])

    def test_bad_times(self):
        for text in ("yesterday", "now", "12", "2026-13-01", "2026-01-01T25:00", "2026-01-01x"):
            self.assertEqual(run("store", self.path, "--taken-at", text, stdin=BEFORE).returncode, 2, text)
        self.assertFalse(self.path.exists())


class Faults(StoreTest):
    def test_a_file_of_another_kind_stays(self):
        self.path.write_bytes(b"no database, but long enough to be none\n" * 40)
        self.store(status=3, stdin=BEFORE, stderr=f"cableinfo: {self.path}: file is not a database\n")
        self.assertTrue(self.path.read_bytes().startswith(b"no database"))

    def test_a_database_of_another_program_stays(self):
        with sqlite3.connect(self.path) as connection:
            connection.execute("CREATE TABLE mine (x)")
        before = self.dump()
        self.store(status=3, stdin=BEFORE,
                   stderr=f"cableinfo: {self.path}: the file is a database of another program\n")
        self.assertEqual(self.dump(), before)

    def test_an_unreadable_input_adds_nothing(self):
        self.store(stdin=BEFORE)
        before = self.dump()
        missing = self.folder / "missing.jsonl"
        result = run("store", self.path, FABRIC, missing, "-q")
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"not changed: an input could not be read", result.stderr)
        self.assertEqual(self.dump(), before)

    def test_no_good_port_adds_nothing(self):
        self.assertEqual(run("store", self.path, stdin=b"{\n").returncode, 1)
        self.assertFalse(self.path.exists())

    def test_strict_adds_nothing_after_a_bad_port(self):
        self.assertEqual(run("store", self.path, "--strict", stdin=json.dumps(BEFORE[0]).encode() + b"\n{\n").returncode, 1)
        self.assertEqual(self.query("SELECT count(*) FROM sqlite_master"), [(0,)])

    def test_a_folder_that_is_not_there(self):
        result = run("store", self.folder / "none" / "fabric.db", stdin=BEFORE)
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"unable to open database file", result.stderr)

    def is_being_written(self):
        """True while a transaction that writes is open."""
        with contextlib.closing(sqlite3.connect(self.path, timeout=0, isolation_level=None)) as database:
            try:
                database.execute("BEGIN IMMEDIATE")
            except sqlite3.OperationalError:
                return True
            database.execute("ROLLBACK")
            return False

    def test_a_killed_run_does_not_change_the_file(self):
        self.store(stdin=BEFORE)
        before = self.dump()
        process = subprocess.Popen([program(), "store", self.path, "-q"], stdin=subprocess.PIPE)
        lines = b"".join(json.dumps({**BEFORE[0], "port_num": number}).encode() + b"\n" for number in range(5000))
        process.stdin.write(lines)
        process.stdin.flush()
        deadline = time.monotonic() + 60
        while not self.is_being_written():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.01)
        process.send_signal(signal.SIGKILL)  # the input has not ended, so nothing is committed
        process.wait()
        process.stdin.close()
        self.assertEqual(self.dump(), before)
        self.store(stdin=AFTER)
        self.assertEqual(self.query("SELECT count(*) FROM snapshot"), [(2,)])

    def test_two_writers_wait_for_each_other(self):
        ports = [{**BEFORE[0], "port_num": number} for number in range(1000)]
        results = []
        threads = [threading.Thread(target=lambda: results.append(run("store", self.path, stdin=ports))) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual([(result.returncode, result.stderr) for result in results], [(0, b"")] * 4)
        self.assertEqual(self.query("SELECT snapshot_id, count(*) FROM cable GROUP BY 1"),
                         [(number, 1000) for number in (1, 2, 3, 4)])


class Queries(StoreTest):
    """The queries of docs/store.md find what their headings name."""

    def test_queries(self):
        self.store("--taken-at", "2026-01-01", stdin=BEFORE)
        self.store("--taken-at", "2026-01-02", stdin=AFTER)
        text = (ROOT / "docs" / "store.md").read_text()
        queries = dict(re.findall(r"^([A-Z][^\n]*(?:\n[^\n]+)*):\n\n```sql\n(.*?)^```", text, re.MULTILINE | re.DOTALL))
        self.assertGreaterEqual(len(queries), 10)
        found = {title: self.query(query) for title, query in queries.items()}
        self.assertIn((GUID, 10, "leaf"), [row[:3] for row in found["The ports with critical findings"]])
        self.assertIn(("2026-01-02T00:00:00Z", "temperature-high-alarm", 1),
                      found["The number of ports with findings of each rule, now and before"])
        weakest = found["The ten weakest receivers"][0]
        self.assertEqual(weakest[:4], (GUID, 10, 1, 0.4))
        self.assertAlmostEqual(weakest[4], -3.979, 3)
        self.assertEqual(found["Lanes that lost more than 2 dB since the snapshot before"], [(GUID, 10, 1, 0.871, 0.4)])
        self.assertIn(("2026-01-01T00:00:00Z", "temperature", 0, 41, "C"), found["The history of one port"])
        self.assertEqual(found["The hottest modules, and their distance from the limit"][0], (GUID, 10, 80, -10))
        self.assertEqual(found["Readings with a raised alarm flag"], [(GUID, 10, "rx_power", 1, 0.4)])
        self.assertEqual(found["Installed modules by vendor and part number"][0], (None, "P2", 2))
        self.assertEqual(found["Firmware versions that differ among modules of the same part number"],
                         [("P2", "1.2.3,1.2.4")])
        self.assertEqual(found["Modules that were replaced since the snapshot before"], [(GUID, 11, "S2", "S3")])
        self.assertEqual(found["Ports that disappeared"], [(GUID, 13, None)])

    def test_every_query_was_expected(self):
        text = (ROOT / "docs" / "store.md").read_text()
        self.assertEqual(text.count("```sql"), 11)


if __name__ == "__main__":
    unittest.main()
