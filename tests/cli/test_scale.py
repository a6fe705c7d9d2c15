"""Runs the commands of docs/scale.md that split a table between machines, with this machine in their place."""

import re
import shutil
import subprocess
import unittest

from program import FABRIC, ROOT, ProgramTest, run


@unittest.skipUnless(shutil.which("parallel"), "GNU parallel is not installed")
class Parallel(ProgramTest):
    def test_the_parts_make_up_the_table_of_one_process(self):
        ports = self.file("fabric.jsonl", FABRIC.read_bytes() * 40)
        table = run("table", ports).stdout
        commands = re.findall(r"^```\n(\{\n.*?)^```$", (ROOT / "docs" / "scale.md").read_text(), re.MULTILINE | re.DOTALL)
        self.assertEqual(len(commands), 2)
        for command in commands:
            for documented, here in (("1/node1,1/node2", "2/:"), ("64M", "64k"), ("collect", "cat fabric.jsonl")):
                command = command.replace(documented, here)
            result = self.bash(command, capture_output=True)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual((self.folder / "cables.csv").read_bytes(), table, command)


if __name__ == "__main__":
    unittest.main()
