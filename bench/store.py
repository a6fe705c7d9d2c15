"""Compares `cableinfo store` with `sqlite3 .import` of the same tables, in processor time.

usage: bench/store.py FABRIC
"""

import os
import pathlib
import resource
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
PROGRAM = os.environ.get("CABLEINFO", str(ROOT / "build" / "release" / "cli" / "cableinfo"))
TABLES = ("cable", "reading", "finding", "port_record")


def processor_time(*command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(list(map(str, command)), check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def output(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True).stdout


def main():
    fabric = sys.argv[1]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        store = folder / "store.db"
        stored = min(processor_time(PROGRAM, "store", folder / f"store{i}.db", "-q", fabric) for i in range(2))
        (folder / "store0.db").rename(store)
        schema = folder / "schema.sql"
        schema.write_bytes(output("sqlite3", store, ".schema --nosys"))
        total = 0.0
        print("| table | rows | `.import` |\n|---|---|---|")
        for table in TABLES:
            rows = int(output("sqlite3", store, f"SELECT count(*) FROM {table}"))
            (folder / "rows.csv").write_bytes(output("sqlite3", "-csv", store, f"SELECT * FROM {table}"))
            copy = folder / f"{table}.db"
            subprocess.run(["sqlite3", copy, f".read {schema}"], check=True)
            seconds = processor_time("sqlite3", copy, f".import --csv {folder / 'rows.csv'} {table}")
            total += seconds
            print(f"| `{table}` | {rows:,} | {seconds:.2f} s |")
        print(f"| all of them | | {total:.2f} s |")
        print(f"| `cableinfo store` of {fabric_size(store):,} ports | | {stored:.2f} s, {stored / total:.2f} times |")


def fabric_size(store):
    return int(output("sqlite3", store, "SELECT count(*) FROM port_record"))


if __name__ == "__main__":
    main()
