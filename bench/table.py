"""Measures cableinfo table with one and more threads, compared with parsing the input only; fails if
the outputs differ or the memory exceeds its limit."""

import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path("build/release")
REPETITIONS = 5
MOST_MEMORY = 200  # MB


def measure(command):
    """Wall time in seconds and peak memory in MB."""
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.monotonic() - start
    if status != 0:
        sys.exit(f"{command}: status {status}")
    return seconds, usage.ru_maxrss / 1000


def table(jobs, fabric, output="/dev/null"):
    return [str(BUILD / "cli/cableinfo"), "table", "-q", "-j", str(jobs), "-o", output, fabric]


def digest(jobs, fabric):
    with tempfile.TemporaryDirectory(dir="build") as folder:
        path = pathlib.Path(folder) / "table.csv"
        measure(table(jobs, fabric, str(path)))
        with open(path, "rb") as file:
            return hashlib.file_digest(file, "sha256").hexdigest()


def main():
    fabric = sys.argv[1]
    jobs = sorted({1, 2, os.cpu_count()})
    floor = str(BUILD / "bench/parse_floor")
    commands = {"parsing alone, line by line": [floor, "lines", fabric],
                "parsing alone, loaded whole": [floor, "whole", fabric]}
    commands |= {f"table -j {n}": table(n, fabric) for n in jobs}
    runs = {name: [] for name in commands}
    for _ in range(REPETITIONS):  # in turn, so that all see the machine's good and bad moments
        for name, command in commands.items():
            runs[name].append(measure(command))

    megabytes = os.path.getsize(fabric) / 1e6
    lines, whole = list(commands)[:2]
    print(f"| {megabytes:,.0f} MB of port records | wall time | to lines | to whole | to -j 1 | memory |")
    print("|---|---|---|---|---|---|")
    best = {name: min(seconds for seconds, _ in results) for name, results in runs.items()}
    too_much = False
    for name, results in runs.items():
        memory = max(megabytes for _, megabytes in results)
        is_table = name.startswith("table")
        too_much = too_much or (is_table and memory > MOST_MEMORY)
        speed = f"{best['table -j 1'] / best[name]:.2f} x faster" if is_table else "-"
        print(f"| {name} | {best[name]:.2f} s | {best[name] / best[lines]:.2f} x "
              f"| {best[name] / best[whole]:.2f} x | {speed} | {memory:.0f} MB |")
    if len({digest(n, fabric) for n in jobs}) != 1:
        sys.exit("the tables differ")
    print(f"\nThe tables of {', '.join(map(str, jobs))} threads are the same, byte for byte.")
    if too_much:
        sys.exit(f"more than {MOST_MEMORY} MB of memory")


if __name__ == "__main__":
    main()
