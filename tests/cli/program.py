"""Runs the program at the path in the environment variable CABLEINFO."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
FABRIC = ROOT / "examples" / "fabric.jsonl"
FAULTS = ROOT / "examples" / "faults.jsonl"
EXPECTED = pathlib.Path(__file__).resolve().parent / "expected"


def program():
    path = os.environ.get("CABLEINFO")
    if not path:
        raise RuntimeError("the environment variable CABLEINFO must name the program to test")
    return path


def run(*arguments, stdin=b"", **options):
    """Runs the program; stdin may be bytes or a list of ports."""
    if isinstance(stdin, list):
        stdin = b"".join(json.dumps(port).encode() + b"\n" for port in stdin)
    return subprocess.run([program(), *map(str, arguments)], input=stdin, capture_output=True,
                          timeout=60, check=False, **options)


def summary(written, left_out, remarked=0, unread=0):
    """The summary line of a run that left something out."""
    line = f"cableinfo: {written} port{'' if written == 1 else 's'} written, {left_out} left out, {remarked} remarked on"
    if unread:
        line += f"; {unread} input{'' if unread == 1 else 's'} not read to the end"
    return line + "\n"


class ProgramTest(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def bash(self, command, **options):
        """Runs a command of a document in the test's folder, with the program as `cableinfo`."""
        tools = self.folder / "bin"
        if not tools.exists():
            tools.mkdir()
            (tools / "cableinfo").symlink_to(pathlib.Path(program()).resolve())
        environment = dict(os.environ, PATH=f"{tools}:{os.environ['PATH']}", LC_ALL="C.UTF-8")
        return subprocess.run(["bash", "-c", command], cwd=self.folder, env=environment, timeout=60, check=False,
                              **options)

    def assert_run(self, result, status=0, stderr=b""):
        self.assertEqual(result.stderr.decode(), stderr if isinstance(stderr, str) else stderr.decode())
        self.assertEqual(result.returncode, status)
