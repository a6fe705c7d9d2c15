"""Runs the commands of docs/tour.md in order and compares what they write with the document."""

import os
import pathlib
import re
import subprocess
import unittest

from program import ROOT, ProgramTest, program

TOUR = ROOT / "docs" / "tour.md"


def steps(text):
    """The commands of the document, each with the output that follows it."""
    for block in re.findall(r"^```console\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        for step in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]:
            command = re.match(r"(?:.*\\\n)*.*\n", step)[0]
            yield command, step[len(command):]


class Tour(ProgramTest):
    def test_shows_what_the_commands_write(self):
        (self.folder / "examples").symlink_to(ROOT / "examples")
        tools = self.folder / "bin"
        tools.mkdir()
        (tools / "cableinfo").symlink_to(pathlib.Path(program()).resolve())
        environment = dict(os.environ, PATH=f"{tools}:{os.environ['PATH']}", LC_ALL="C.UTF-8")
        count = 0
        for command, expected in steps(TOUR.read_text()):
            result = subprocess.run(["bash", "-c", command], cwd=self.folder, env=environment, timeout=60,
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            self.assertEqual(result.stdout.decode(), expected, command)
            count += 1
        self.assertGreaterEqual(count, 12)


if __name__ == "__main__":
    unittest.main()
