"""Commands of the documents and scripts for Slurm, run by a shell with stand-ins for what a test lacks."""

import json
import os
import re
import subprocess
import unittest

import jsonschema

from machine import ReadTest, qsfp
from program import FABRIC, ROOT, program, run

# Stand-ins for programs that a test cannot run. `cableinfo read` finds the artificial sysfs, a watch ends after its
# first record, and the jobs of Slurm run one after the other.
STAND_INS = {
    "cableinfo": """[ "$1" = read ] || exec "$CABLEINFO_PROGRAM" "$@"
shift
[[ " $* " == *" --watch "* ]] || exec "$CABLEINFO_PROGRAM" read --sysfs "$SYS" "$@"
exec 3< <(exec "$CABLEINFO_PROGRAM" read --sysfs "$SYS" "$@")
IFS= read -r record <&3 && printf '%s\\n' "$record"
kill "$!" && cat <&3 && wait "$!"
""",
    "sudo": 'exec "$@"\n',
    "setcap": "",
    "ethtool": """case "$*" in
  '-m eth0 raw on') exec cat "$SYS/bus/i2c/devices/3-0050/eeprom" ;;
  '-m eth0 hex on')
    printf 'Offset\\t\\tValues\\n------\\t\\t------\\n'
    od -A x -v -t x1 "$SYS/bus/i2c/devices/3-0050/eeprom" |
      sed -n 's/^00\\(....\\) \\(..*\\)/0x\\1:\\t\\t\\2/p'
    exit ;;
esac
exit 1
""",
    "sinfo": 'for node in $NODES; do echo "$node"; done\n',
    "srun": """nodes=
while [[ $1 == -* ]]; do
  [[ $1 != --nodelist=* ]] || nodes=${1#*=}
  shift
done
for node in ${nodes//,/ }; do
  [ "$node" = "${LOST:-}" ] || SLURMD_NODENAME=$node "$@" || status=1
done
exit "${status:-0}"
""",
    "sbatch": """while [[ $1 == -* ]]; do
  [[ $1 != --array=* ]] || array=${1#*=}
  [[ $1 != --output=* ]] || output=${1#*=}
  shift
done
for part in ${array//,/ }; do
  [ "$part" = "${LOST:-}" ] || SLURM_ARRAY_TASK_ID=$part "$@" >"${output/\\%a/$part}" 2>&1 || status=1
done
exit "${status:-0}"
""",
}


class Stage(ReadTest):
    """A folder in which the commands of the documents run."""

    def setUp(self):
        super().setUp()
        for name, script in STAND_INS.items():
            path = self.folder / "bin" / name
            path.parent.mkdir(exist_ok=True)
            path.write_text("#!/bin/bash\n" + script)
            path.chmod(0o755)
        self.stage = self.folder / "stage"
        self.stage.mkdir()
        (self.stage / "examples").symlink_to(ROOT / "examples")
        (self.stage / "yesterday.jsonl").write_text("")
        (self.stage / "archive.jsonl").write_bytes(FABRIC.read_bytes())
        self.adapter("hca0", 0xA0B1C20000D4E500, interfaces=[("ib0", 0)])
        self.adapter("hca1", 0xA0B1C20000D4E600, interfaces=[("ib1", 0)])
        self.eeprom("3-0050", "ib0", qsfp())
        self.eeprom("4-0050", "ib1", qsfp(b"Copperworks"))

    def shell(self, command, **environment):
        return subprocess.run(
            ["bash", "-c", command], cwd=self.stage, capture_output=True, timeout=60, check=False,
            env={**os.environ, "PATH": f"{self.folder}/bin:{os.environ['PATH']}", "SYS": str(self.sys),
                 "CABLEINFO_PROGRAM": program(), "NODES": "n1 n2 n3", "CABLEINFO": "cableinfo", **environment})


class Documents(Stage):
    def commands(self, path, begin="", end="$^"):
        text = path.read_text()
        text = text[text.index(begin):]
        text = text[:re.search(end, text).start() if re.search(end, text) else None]
        for language, block in re.findall("^```(\\w*)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
            if not language and not block.startswith("NAME "):
                yield from block.splitlines()

    def assert_work(self, commands):
        for command in commands:
            with self.subTest(command):
                result = self.shell(command.replace("/sys/", f"{self.sys}/"))
                # Findings of the sample are no failures; neither are its bad ports.
                self.assertIn(result.returncode, (0, 5, 6), result.stderr.decode())

    def test_getting_started(self):
        commands = list(self.commands(ROOT / "README.md", "## Getting started", "\n## Program"))
        self.assertEqual(len(commands), 5)
        self.assert_work(commands)

    def test_reading(self):
        commands = list(self.commands(ROOT / "docs" / "reading.md"))
        self.assertGreater(len(commands), 10)
        self.assert_work(commands)

    def test_slurm(self):
        commands = list(self.commands(ROOT / "docs" / "scale.md", "## A cluster with Slurm",
                                      "\n## Several machines with GNU"))
        self.assertEqual(len(commands), 5)
        self.assert_work(commands)

    def test_scan_looks_as_documented(self):
        self.interface("eth0")
        for device in ("3-0050", "4-0050"):
            (self.sys / f"bus/i2c/devices/{device}/port_name").unlink()
        shown = re.search("^```\n(NAME .*?)^```", (ROOT / "docs" / "reading.md").read_text(),
                          re.MULTILINE | re.DOTALL).group(1)
        rows = [line.split() for line in shown.splitlines()]
        self.assertEqual([line.split() for line in self.read("--scan").stdout.decode().splitlines()], rows)

    def test_the_example_program_writes_valid_records(self):
        schema = json.loads((ROOT / "docs" / "port.schema.json").read_text())
        result = self.shell("python3 examples/port_records.py")
        records = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual(len(records), 3)
        for record in records:
            jsonschema.validate(record, schema)
        exported = [json.loads(line) for line in run("export", stdin=result.stdout).stdout.splitlines()]
        self.assertEqual([record["label"] for record in exported], [f"switch-1 port {n}" for n in (1, 2, 3)])
        self.assertIn(b"Copperworks", run("report", stdin=result.stdout).stdout)

    def test_records_that_are_read_follow_the_schema(self):
        schema = json.loads((ROOT / "docs" / "port.schema.json").read_text())
        for record in (self.shell("cableinfo read --watch 0.2; cableinfo read ib0").stdout).splitlines():
            jsonschema.validate(json.loads(record), schema)


class SlurmScripts(Stage):
    COLLECT = "examples/slurm/collect.sh fabric.jsonl parts"
    DECODE = "examples/slurm/decode.sh archive.jsonl cables.csv parts 4 -- table"

    def test_collect_joins_the_nodes_in_order(self):
        result = self.shell(self.COLLECT)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual((self.stage / "fabric.jsonl").read_bytes(), 3 * self.read().stdout)

    def test_lost_nodes_are_named_and_read_by_a_second_run(self):
        result = self.shell(self.COLLECT, LOST="n2")
        self.assertEqual((result.returncode, result.stderr), (1, b"collect.sh: no modules of these nodes: n2\n"))
        self.assertEqual((self.stage / "fabric.jsonl").read_bytes(), 2 * self.read().stdout)
        (self.stage / "parts" / "n1.jsonl").write_text("kept\n")
        self.assertEqual(self.shell(self.COLLECT).returncode, 0)
        self.assertEqual((self.stage / "fabric.jsonl").read_bytes(), b"kept\n" + 2 * self.read().stdout)

    def test_the_table_of_an_array_is_that_of_one_process(self):
        expected = run("table", FABRIC).stdout
        self.assertEqual(self.shell(self.DECODE).returncode, 0)
        self.assertEqual((self.stage / "cables.csv").read_bytes(), expected)
        for command in ("export", "check --json"):
            self.shell(f"examples/slurm/decode.sh archive.jsonl out 'parts of {command}' 3 -- {command}")
            whole = run(*command.split(), FABRIC).stdout.splitlines()
            if command == "export":
                self.assertEqual((self.stage / "out").read_bytes().splitlines(), whole)
            else:
                self.assertEqual(len((self.stage / "out").read_bytes().splitlines()), len(whole) - 1)

    def test_parts_that_fail_are_named_and_run_again(self):
        result = self.shell(self.DECODE, LOST="3")
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.endswith(b"decode.sh: cables.csv is not written; these parts failed: 3\n"))
        self.assertFalse((self.stage / "cables.csv").exists())
        self.assertEqual(self.shell(self.DECODE).returncode, 0)
        self.assertEqual((self.stage / "cables.csv").read_bytes(), run("table", FABRIC).stdout)

    def test_a_part_of_an_unreadable_input_is_not_complete(self):
        result = self.shell("examples/slurm/decode.sh missing.jsonl cables.csv parts 2 -- table")
        self.assertEqual(result.returncode, 1)
        self.assertFalse((self.stage / "cables.csv").exists())
        self.assertEqual(list((self.stage / "parts").glob("[0-9]")), [])

    def test_bad_ports_are_reported_with_their_part(self):
        lines = FABRIC.read_bytes().splitlines(keepends=True)
        (self.stage / "archive.jsonl").write_bytes(b"".join(lines[:-1]) + b'{"bad": 1}\n')
        result = self.shell(self.DECODE)
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stderr.decode(), r"part 4: <stdin>:\d+: bad: unknown key")


if __name__ == "__main__":
    unittest.main()
