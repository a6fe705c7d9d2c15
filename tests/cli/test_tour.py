"""Runs the commands of docs/tour.md in order and compares their output with the document."""

import re
import subprocess
import unittest

from program import ROOT, ProgramTest

TOUR = ROOT / "docs" / "tour.md"


def steps(text):
    """The commands of the document, each with the output that follows it."""
    for block in re.findall(r"^```console\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        for step in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]:
            command = re.match(r"(?:.*\\\n)*.*\n", step)[0]
            yield command, step[len(command):]


class Tour(ProgramTest):
    def test_shows_the_output_of_the_commands(self):
        (self.folder / "examples").symlink_to(ROOT / "examples")
        count = 0
        for command, expected in steps(TOUR.read_text()):
            result = self.bash(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            self.assertEqual(result.stdout.decode(), expected, command)
            count += 1
        self.assertGreaterEqual(count, 12)


if __name__ == "__main__":
    unittest.main()
