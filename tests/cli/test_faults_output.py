"""Faults of the output: no old file is lost, no partial one passes for a whole one."""

import os
import resource
import signal
import subprocess
import unittest

from program import FABRIC, ProgramTest, program, run, summary

PORT = b'{"port_num":1,"cable":{"VendorName":"vendor"}}\n'
OLD = b"old content\n"


def shell(script, *arguments, **options):
    """Runs a shell script in which "$0" is the program."""
    return subprocess.run(["bash", "-c", script, program(), *map(str, arguments)], capture_output=True,
                          timeout=60, check=False, **options)


class FaultTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.target = self.file("cables.csv", OLD)
        self.input = self.file("ports.jsonl", PORT * 3)

    def assert_kept(self, *others):
        """The old file is unchanged, and there are no other files than the given ones."""
        self.assertEqual(self.target.read_bytes(), OLD)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         sorted(["cables.csv", "ports.jsonl", *others]))

    def not_written(self, reason):
        return f"cableinfo: {self.target}: not written: {reason}\n"


class Descriptors(FaultTest):
    def test_messages_never_land_in_the_output(self):
        result = shell('"$0" table -o "$1" "$2" 2>&-', self.target, self.file("mixed.jsonl", PORT + b"bad\n"))
        self.assertEqual(result.returncode, 1)
        content = self.target.read_text()
        self.assertTrue(content.startswith("NodeGuid,"))
        self.assertEqual(content.count("\n"), 2)
        self.assertNotIn("JSON", content)

    def test_a_closed_input_is_an_error(self):
        result = shell('"$0" table -o "$1" <&-', self.target)
        self.assert_run(result, 3, "cableinfo: <stdin>: Bad file descriptor\n" +
                        self.not_written("an input could not be read") + summary(0, 0, unread=1))
        self.assert_kept()

    def test_a_closed_output_is_an_error(self):
        for command in ("table", "report", "export"):
            result = shell('"$0" "$1" "$2" >&-', command, self.input)
            self.assert_run(result, 3, "cableinfo: standard output: Bad file descriptor\n")

    def test_all_closed_is_an_error(self):
        self.assertEqual(shell('"$0" table <&- >&- 2>&-').returncode, 3)


class KeptFiles(FaultTest):
    MISSING = "No such file or directory"

    def assert_refused(self, status, message, reason, counts, *arguments, others=()):
        result = run("table", "-o", self.target, *arguments)
        self.assert_run(result, status, message + self.not_written(reason) + counts)
        self.assert_kept(*others)

    def test_a_missing_input(self):
        missing = self.folder / "missing.jsonl"
        for inputs, written in (([missing], 0), ([self.input, missing], 3), ([missing, self.input], 3)):
            self.assert_refused(3, f"cableinfo: {missing}: {self.MISSING}\n", "an input could not be read",
                                summary(written, 0, unread=1), *inputs)

    def test_a_missing_input_of_a_strict_run(self):
        missing = self.folder / "missing.jsonl"
        self.assert_refused(3, f"cableinfo: {missing}: {self.MISSING}\n", "an input could not be read",
                            summary(3, 0, unread=1), "--strict", self.input, missing)

    def test_a_missing_dump(self):
        missing = self.folder / "missing.bin"
        self.assert_refused(3, f"cableinfo: {missing}: {self.MISSING}\n", "an input could not be read",
                            summary(0, 0, unread=1), "--module", missing)

    def test_a_folder_as_input(self):
        (self.folder / "folder").mkdir()
        self.assert_refused(3, f"cableinfo: {self.folder / 'folder'}: Is a directory\n",
                            "an input could not be read", summary(3, 0, unread=1), self.input,
                            self.folder / "folder", others=["folder"])

    def test_an_input_that_fails_half_way(self):
        # A process may read its own memory from some addresses only.
        result = run("table", "-o", self.target, self.input, "/proc/self/mem")
        self.assert_run(result, 3, "cableinfo: /proc/self/mem: Input/output error\n" +
                        self.not_written("an input could not be read") + summary(3, 0, unread=1))
        self.assert_kept()

    def test_not_one_good_port(self):
        bad = self.file("bad.jsonl", b"bad\n" * 2)
        result = run("table", "-o", self.target, bad)
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr.decode().endswith(self.not_written("no port could be decoded") +
                                                        summary(0, 2)))
        self.assert_kept("bad.jsonl")

    def test_not_one_good_dump(self):
        bad = self.file("bad.bin", bytes(256))
        result = run("report", "-o", self.target, "--module", bad)
        self.assertEqual(result.returncode, 1)
        self.assert_kept("bad.bin")

    def test_no_file_appears_either(self):
        for arguments in ((self.folder / "missing",), (self.file("bad.jsonl", b"bad\n"),)):
            run("table", "-o", self.folder / "new.csv", *arguments)
            self.assertFalse((self.folder / "new.csv").exists())

    def test_bad_ports_among_good_ones_do_replace_it(self):
        mixed = self.file("mixed.jsonl", PORT + b"bad\n")
        self.assertEqual(run("table", "-o", self.target, mixed).returncode, 1)
        self.assertTrue(self.target.read_bytes().startswith(b"NodeGuid,"))

    def test_an_empty_input_does_replace_it(self):
        self.assert_run(run("table", "-o", self.target, stdin=b""))
        self.assertTrue(self.target.read_bytes().startswith(b"NodeGuid,"))


class Places(FaultTest):
    def test_a_dash_is_standard_output(self):
        expected = run("table", self.input).stdout
        result = run("table", self.input, "-o", "-", cwd=self.folder)
        self.assert_run(result)
        self.assertEqual(result.stdout, expected)
        self.assert_kept()

    def test_an_empty_name_is_a_usage_error(self):
        for arguments in (("-o", ""), ("--output=",)):
            result = run("table", self.input, *arguments)
            self.assertEqual((result.returncode, result.stdout), (2, b""), arguments)
            self.assertIn(b"--output", result.stderr)

    def test_names_of_descriptors_write_at_their_position(self):
        rows = run("table", "--no-header", self.input).stdout
        link = self.folder / "link"
        link.symlink_to("/dev/stdout")
        for name in ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1", link):
            self.target.write_bytes(b"")
            result = shell('{ echo before; "$0" table --no-header -o "$1" "$2"; echo after; } >"$3"',
                           name, self.input, self.target)
            self.assert_run(result)
            self.assertEqual(self.target.read_bytes(), b"before\n" + rows + b"after\n", name)

    def test_another_descriptor_is_written_too(self):
        rows = run("table", "--no-header", self.input).stdout
        result = shell('"$0" table --no-header -o /dev/fd/5 "$1" 5>>"$2"', self.input, self.target)
        self.assert_run(result)
        self.assertEqual(self.target.read_bytes(), OLD + rows)

    def test_an_input_is_never_the_output(self):
        link = self.folder / "link.jsonl"
        link.symlink_to(self.input)
        hard = self.folder / "hard.jsonl"
        os.link(self.input, hard)
        before = self.input.read_bytes()
        for output in (self.input, link, hard):
            result = run("table", self.input, "-o", output)
            self.assert_run(result, 2, f"cableinfo: --output: {output} is also an input ({self.input})\n")
            result = shell('"$0" table -o "$1" <"$2"', output, self.input)
            self.assert_run(result, 2, f"cableinfo: --output: {output} is also an input (<stdin>)\n")
        self.assertEqual(run("table", "--module", f"lower:{self.input}", "-o", link).returncode, 2)
        self.assertEqual(self.input.read_bytes(), before)
        self.assert_kept("link.jsonl", "hard.jsonl")

    def test_a_link_that_leads_nowhere_is_an_error(self):
        link, loop = self.folder / "link", self.folder / "loop"
        link.symlink_to(self.folder / "missing" / "file")
        loop.symlink_to(loop)
        for name, message in ((link, "No such file or directory"),
                              (loop, "Too many levels of symbolic links")):
            self.assert_run(run("table", self.input, "-o", name), 3, f"cableinfo: {name}: {message}\n")
            self.assertTrue(name.is_symlink())
        self.assert_kept("link", "loop")

    def test_a_long_name(self):
        name = self.folder / ("n" * 250)
        self.assert_run(run("table", self.input, "-o", name))
        self.assertTrue(name.read_bytes().startswith(b"NodeGuid,"))
        too_long = self.folder / ("n" * 300)
        self.assert_run(run("table", self.input, "-o", too_long), 3,
                        f"cableinfo: {too_long}: File name too long\n")
        self.assert_kept(name.name)

    def test_a_folder_is_an_error(self):
        for name in (self.folder, f"{self.folder}/"):
            self.assert_run(run("table", self.input, "-o", name), 3, f"cableinfo: {name}: Is a directory\n")
        self.assert_kept()


class Limits(FaultTest):
    def test_a_limit_of_file_sizes_is_an_error(self):
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))
        many = self.file("many.jsonl", PORT * 5000)
        result = run("table", many, "-o", self.target, preexec_fn=limit)
        self.assert_run(result, 3, f"cableinfo: {self.target}: File too large\n")
        self.assert_kept("many.jsonl")

    def test_help_to_a_full_or_closed_device_is_an_error(self):
        for option in ("--help", "--version", "table --help"):
            for place, message in ((">/dev/full", "No space left on device"), (">&-", "Bad file descriptor")):
                result = shell(f'"$0" {option} {place}')
                self.assert_run(result, 3, f"cableinfo: standard output: {message}\n")


class Signals(FaultTest):
    ENDING = [signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGALRM, signal.SIGUSR1,
              signal.SIGUSR2, signal.SIGXCPU, signal.SIGVTALRM, signal.SIGPROF, signal.SIGABRT, signal.SIGKILL]

    def test_no_signal_leaves_a_file(self):
        for number in self.ENDING:
            process = subprocess.Popen([program(), "table", "-o", str(self.target)], stdin=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL)
            process.stdin.write(PORT * 2000)
            process.stdin.flush()
            process.send_signal(number)
            self.assertEqual(process.wait(timeout=20), -number)
            process.stdin.close()
            self.assert_kept()

    def test_a_limit_of_file_sizes_does_not_kill(self):
        process = subprocess.Popen([program(), "table"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        process.send_signal(signal.SIGXFSZ)
        process.communicate(PORT, timeout=20)
        self.assertIn(process.returncode, (0, -signal.SIGXFSZ))  # the latter before it had started


class Samples(FaultTest):
    def test_the_sample_is_written_whole(self):
        self.assertEqual(run("table", FABRIC, "-o", self.target).returncode, 0)
        self.assertEqual(self.target.read_bytes(), run("table", FABRIC).stdout)


if __name__ == "__main__":
    unittest.main()
