"""The shell completions offer exactly the commands and options of the program."""

import re
import subprocess
import unittest

from program import ROOT, ProgramTest, run

COMPLETIONS = ROOT / "cli" / "completions"
COMMANDS = {"table", "report", "export", "module", "check", "diff", "metrics", "page", "store", "columns"}


def help_options(*command):
    return set(re.findall(r"--[a-z0-9-]+", run(*command, "--help").stdout.decode()))


def shell(*arguments):
    return subprocess.run(arguments, capture_output=True, check=True, timeout=20).stdout.decode()


def bash(*words):
    script = ('source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _cableinfo;'
              'printf "%s\\n" "${COMPREPLY[@]}"')
    return set(shell("bash", "-c", script, str(COMPLETIONS / "cableinfo.bash"), *words).split())


def zsh(*words):
    """The arguments of zsh's own completion of options."""
    script = ('fpath=("$0"); autoload -Uz _cableinfo; _arguments() { print -rl -- "$@" };'
              'words=("$@"); CURRENT=$#; _cableinfo')
    return shell("zsh", "-f", "-c", script, str(COMPLETIONS), *words)


class Bash(ProgramTest):
    def test_commands(self):
        self.assertEqual(bash("cableinfo", ""), COMMANDS | {"--help", "--version"})

    def test_options(self):
        for command in COMMANDS:
            self.assertEqual(bash("cableinfo", command, "--"), help_options(command), command)


class Zsh(ProgramTest):
    def test_commands(self):
        offered = zsh("cableinfo", "")
        self.assertEqual(set(re.findall(r"(\w+)\\:", offered)), COMMANDS)
        self.assertEqual(set(re.findall("--[a-z0-9-]+", offered)), {"--help", "--version"})

    def test_options(self):
        for command in COMMANDS:
            offered = zsh("cableinfo", command, "--")
            self.assertEqual(set(re.findall("--[a-z0-9-]+", offered)), help_options(command), command)

    def test_files_are_offered_for_commands_that_read_ports(self):
        for command in COMMANDS:
            files = re.findall(r"^\*:.*:_files$", zsh("cableinfo", command, ""), re.MULTILINE)
            self.assertEqual(len(files), 0 if command == "columns" else 1, command)


if __name__ == "__main__":
    unittest.main()
