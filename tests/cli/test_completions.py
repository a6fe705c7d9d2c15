"""The completions of bash, zsh and fish, in real shells: interactive ones on a terminal for bash and
zsh, fish's own completion engine for fish."""

import os
import pathlib
import pty
import re
import select
import signal
import subprocess
import time
import unittest

from program import ROOT, ProgramTest, program, run

COMPLETIONS = ROOT / "cli" / "completions"


def commands():
    return re.findall(r"^  ([a-z]+) ", run("--help").stdout.decode().partition("Subcommands:")[2],
                      re.MULTILINE)


def help_options(command):
    return set(re.findall(r"--[a-z0-9-]+", run(command, "--help").stdout.decode()))


def columns():
    return [line.split()[1] for line in run("columns").stdout.decode().splitlines()[1:]]


def rules():
    return [line.split()[0] for line in run("check", "--rules").stdout.decode().splitlines()[1:]]


class Terminal:
    """An interactive shell on a separate terminal. `insert` types a line, has the shell insert all
    completions of its last word, and returns the words of the line after that."""

    def __init__(self, folder, arguments, setup, key):
        self.result = folder / "result"
        self.key = key
        environment = {"PATH": f"{folder / 'bin'}:/usr/bin:/bin", "TERM": "dumb", "HOME": str(folder),
                       "LC_ALL": "C.UTF-8"}
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(folder / "work")
            os.execvpe(arguments[0], arguments, environment)
        self.type(setup + f"\necho ready >{self.result}\n")
        self.wait_for_result()

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait_for_result(self):
        end = time.monotonic() + 20
        while time.monotonic() < end:
            # The shell blocks unless its output is read.
            if select.select([self.terminal], [], [], 0.02)[0]:
                os.read(self.terminal, 65536)
            elif self.result.exists() and self.result.read_text().endswith("\n"):
                text = self.result.read_text()
                self.result.unlink()
                return text
        raise TimeoutError("the shell did not answer")

    def insert(self, line):
        # Ctrl-A and Ctrl-E go to the ends of the line.
        self.type(line + self.key + "\x01printf '%s\\n' \x05 >" + str(self.result) + "\n")
        return self.wait_for_result().splitlines()

    def close(self):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)
        os.close(self.terminal)


class Completions:
    """The candidates of every shell. `offered` returns those for the last word of a line."""

    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        (self.folder / "bin" / "cableinfo").symlink_to(pathlib.Path(program()).resolve())
        work = self.folder / "work"
        (work / "memory").mkdir(parents=True)
        for name in ("fabric.jsonl", "faults.jsonl", "memory/lower.bin", "memory/upper.bin"):
            (work / name).touch()

    def assert_offers(self, line, expected):
        self.assertEqual(sorted(self.offered(line)), sorted(expected), line)

    def test_commands(self):
        self.assertEqual(set(self.offered("cableinfo ")) - {"--help", "--version"}, set(commands()))
        self.assert_offers("cableinfo col", ["columns"])

    def test_options_of_each_command(self):
        for command in commands():
            offered = {word for word in self.offered(f"cableinfo {command} --") if word.startswith("--")}
            self.assertEqual({word.rstrip("=") for word in offered}, help_options(command), command)

    def test_files(self):
        self.assert_offers("cableinfo table f", ["fabric.jsonl", "faults.jsonl"])
        self.assert_offers("cableinfo table -o fab", ["fabric.jsonl"])
        self.assert_offers("cableinfo table --output fab", ["fabric.jsonl"])
        self.assert_offers("cableinfo table --output=fab", ["--output=fabric.jsonl"])
        self.assert_offers("cableinfo check --config fa", ["fabric.jsonl", "faults.jsonl"])
        self.assert_offers("cableinfo diff fabric.jsonl fau", ["faults.jsonl"])

    def test_pages(self):
        self.assert_offers("cableinfo module lo", ["lower:"])
        self.assert_offers("cableinfo module lower:memory/lo", ["lower:memory/lower.bin"])
        self.assert_offers("cableinfo report --module a", ["a0:", "a2:"])
        self.assert_offers("cableinfo report --module 00:memory/u", ["00:memory/upper.bin"])
        self.assert_offers("cableinfo report --module fab", ["fabric.jsonl"])

    def test_columns(self):
        self.assert_offers("cableinfo table --columns Temp",
                           [name for name in columns() if name.startswith("Temp")])
        self.assert_offers("cableinfo table --columns PortGuid,NodeG", ["PortGuid,NodeGuid"])
        self.assert_offers("cableinfo table --columns=NodeG", ["--columns=NodeGuid"])

    def test_rules(self):
        self.assert_offers("cableinfo check --set temperature-high",
                           [f"{name}=" for name in rules() if name.startswith("temperature-high")])
        self.assert_offers("cableinfo check --set checksum=c", ["checksum=critical"])

    def test_nothing_is_offered_for_numbers(self):
        self.assertNotIn("fabric.jsonl", self.offered("cableinfo table --jobs "))


class OnATerminal(Completions):
    def offered(self, line):
        if not hasattr(self, "terminal"):
            self.terminal = Terminal(self.folder, *self.SHELL)
            self.addCleanup(self.terminal.close)
        before = line.split()
        inserted = self.terminal.insert(line)
        begun = line[-1] != " "
        self.assertEqual(inserted[:len(before) - begun], before[:len(before) - begun])
        return [word.rstrip(",") if "olumns" in line else word
                for word in inserted[len(before) - begun:]]


class Bash(OnATerminal, ProgramTest):
    # ESC * inserts all completions.
    SHELL = (["bash", "--norc", "-i"], f"source {COMPLETIONS}/cableinfo.bash", "\x1b*")


class Zsh(OnATerminal, ProgramTest):
    SHELL = (["zsh", "-f", "-i"],
             f"fpath=({COMPLETIONS} $fpath); autoload -Uz compinit; compinit -D -u; bindkey -e;"
             "zstyle ':completion:*' completer _all_matches _complete;"
             "zstyle ':completion:*' insert yes; LISTMAX=-1", "\t")


class Fish(Completions, ProgramTest):
    def offered(self, line):
        script = f"source {COMPLETIONS}/cableinfo.fish; complete -C {self.quoted(line)}"
        result = subprocess.run(
            ["fish", "--no-config", "-c", script], capture_output=True, check=True, timeout=20,
            cwd=self.folder / "work",
            env={"PATH": f"{self.folder / 'bin'}:/usr/bin:/bin", "HOME": str(self.folder), "LC_ALL": "C.UTF-8"})
        return [line.split("\t")[0] for line in result.stdout.decode().splitlines()]

    @staticmethod
    def quoted(line):
        return "'" + line.replace("'", "\\'") + "'"

    def test_options_of_each_command(self):
        super().test_options_of_each_command()
        self.assertIn("-o", self.offered("cableinfo table -"))


if __name__ == "__main__":
    unittest.main()
