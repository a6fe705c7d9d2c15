"""The manual pages and completions are those that scripts/command_files.py writes, the pages have no
mistakes of form, and what they refer to exists."""

import re
import subprocess
import sys
import unittest

from program import ROOT, ProgramTest, program, run

MANUAL = ROOT / "docs" / "man"


def pages():
    return sorted(MANUAL.glob("*.1"))


def commands():
    return re.findall(r"^  ([a-z]+) ", run("--help").stdout.decode().partition("Subcommands:")[2],
                      re.MULTILINE)


class Manual(ProgramTest):
    def test_agrees_with_the_help_of_the_program(self):
        result = subprocess.run([sys.executable, "-B", ROOT / "scripts" / "command_files.py", "--check", program()],
                                capture_output=True, check=False)
        self.assertEqual(result.stderr.decode(), "")
        self.assertEqual(result.returncode, 0)

    def test_has_a_page_for_the_program_and_each_command(self):
        expected = {"cableinfo.1"} | {f"cableinfo-{command}.1" for command in commands()}
        self.assertEqual({page.name for page in pages()}, expected)

    def test_has_every_option_of_each_command(self):
        for command in commands():
            page = (MANUAL / f"cableinfo-{command}.1").read_text().replace("\\-", "-")
            for option in re.findall(r"--[a-z0-9-]+", run(command, "--help").stdout.decode()):
                self.assertRegex(page, rf"Fl {option[1:]}\b", f"{command} {option}")

    def test_pages_have_no_mistakes_of_form(self):
        # In their folder mandoc finds the pages that they refer to.
        result = subprocess.run(["mandoc", "-T", "lint", *[page.name for page in pages()]], cwd=MANUAL,
                                capture_output=True, check=False)
        self.assertEqual(result.stdout.decode(), "")
        self.assertEqual(result.returncode, 0)

    def test_examples_can_be_copied(self):
        for command in commands():
            page = MANUAL / f"cableinfo-{command}.1"
            shown = subprocess.run(["mandoc", "-T", "utf8", page], capture_output=True, check=True)
            lines = {line.strip() for line in shown.stdout.decode().splitlines()}
            examples = run(command, "--help").stdout.decode().partition("Examples:\n")[2]
            for line in examples.partition("Exit status:")[0].splitlines():
                self.assertIn(line.strip(), lines, page.name)

    def test_references_of_the_pages_exist(self):
        main = (MANUAL / "cableinfo.1").read_text()
        for command in commands():
            self.assertEqual(main.count(f".Xr cableinfo-{command} 1"), 2, f"{command}: listed, and in SEE ALSO")
        for page in pages():
            text = page.read_text()
            for name in re.findall(r"^\.Xr (\S+) 1", text, re.MULTILINE):
                self.assertTrue((MANUAL / f"{name}.1").is_file(), f"{page.name}: {name}")
            for name in re.findall(r"[\w.]+\.(?:md|schema\.json)", text):
                self.assertTrue((ROOT / "docs" / name).is_file(), f"{page.name}: {name}")


if __name__ == "__main__":
    unittest.main()
