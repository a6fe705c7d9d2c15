"""Pipes, output files, terminals and signals."""

import os
import pathlib
import pty
import resource
import select
import signal
import subprocess
import time
import unittest

from program import EXPECTED, FABRIC, ProgramTest, program, run

PORT = b'{"port_num":1,"cable":{"VendorName":"vendor"}}\n'


def is_writing(process, folder):
    """True if the program has opened its output file, which has no name yet."""
    try:
        descriptors = [os.readlink(link) for link in pathlib.Path(f"/proc/{process.pid}/fd").iterdir()]
    except FileNotFoundError:
        return False
    return any(path.startswith(f"{folder}/") for path in descriptors)


def wait_until(condition):
    deadline = time.monotonic() + 20
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError
        time.sleep(0.01)


class Pipes(ProgramTest):
    def test_a_closed_pipe_ends_quietly(self):
        many = self.file("many.jsonl", PORT * 20000)
        for command in ("table", "report", "export"):
            process = subprocess.Popen([program(), command, str(many)], stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE)
            process.stdout.read(10)
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")
            process.stderr.close()
            self.assertEqual(process.wait(timeout=60), 0)

    def test_a_full_disk_is_an_error(self):
        for command in ("table", "report", "export", "columns"):
            with open("/dev/full", "wb") as full:
                inputs = [] if command == "columns" else [str(FABRIC)]
                result = subprocess.run([program(), command, *inputs], stdout=full,
                                        stderr=subprocess.PIPE, check=False)
            self.assertEqual(result.returncode, 3, command)
            self.assertIn(b"cableinfo: standard output: No space left on device\n", result.stderr)


class OutputFiles(ProgramTest):
    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_the_file_is_complete_and_no_other_remains(self):
        target = self.folder / "cables.csv"
        result = run("table", FABRIC, "-o", target)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stdout, b"")
        self.assertEqual(target.read_text(), (EXPECTED / "table.csv").read_text())
        self.assertEqual(self.files(), ["cables.csv"])

    def test_permissions_are_those_of_a_new_file_or_the_old_one(self):
        target = self.folder / "cables.csv"
        mask = os.umask(0o027)
        self.addCleanup(os.umask, mask)
        run("table", "-o", target)
        self.assertEqual(target.stat().st_mode & 0o777, 0o640)
        target.chmod(0o604)
        run("table", "-o", target)
        self.assertEqual(target.stat().st_mode & 0o777, 0o604)

    def test_bad_ports_are_left_out(self):
        target = self.folder / "cables.csv"
        result = run("table", "--no-header", "-o", target, stdin=PORT + b"nonsense\n" + PORT)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(target.read_bytes().count(b"\n"), 2)

    def test_a_strict_failure_keeps_the_old_file(self):
        target = self.file("cables.csv", b"old")
        result = run("table", "--strict", "-o", target, stdin=PORT + b"nonsense\n" + PORT)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(target.read_bytes(), b"old")
        self.assertEqual(self.files(), ["cables.csv"])

    def test_a_strict_failure_after_an_unreadable_file_keeps_it_too(self):
        target = self.file("cables.csv", b"old")
        bad = self.file("bad.jsonl", PORT + b"nonsense\n" + PORT)
        result = run("table", "--strict", "-o", target, self.folder / "missing.jsonl", bad)
        self.assertEqual(result.returncode, 3)
        self.assertEqual(target.read_bytes(), b"old")

    def test_a_failed_write_keeps_the_old_file(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100000, 100000))

        target = self.file("cables.csv", b"old")
        result = run("table", "-o", target, stdin=PORT * 5000, preexec_fn=limit)
        self.assert_run(result, 3, f"cableinfo: {target}: File too large\n")
        self.assertEqual(target.read_bytes(), b"old")
        self.assertEqual(self.files(), ["cables.csv"])

    def test_an_impossible_path_is_an_error(self):
        target = self.folder / "missing" / "cables.csv"
        self.assert_run(run("table", "-o", target), 3,
                        f"cableinfo: {target}: No such file or directory\n")

    def test_devices_and_pipes_are_written_in_place(self):
        self.assert_run(run("table", "-o", "/dev/null"))
        self.assertTrue(os.path.exists("/dev/null") and not os.path.isfile("/dev/null"))
        self.assert_run(run("table", "-o", "/dev/full"), 3,
                        "cableinfo: /dev/full: No space left on device\n")

    def test_a_link_stays_a_link(self):
        target = self.file("real.csv", b"old")
        link = self.folder / "link.csv"
        link.symlink_to(target)
        run("table", "-o", link)
        self.assertTrue(link.is_symlink())
        self.assertTrue(target.read_bytes().startswith(b"NodeGuid,"))

    def test_a_signal_leaves_nothing(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGALRM,
                       signal.SIGUSR1, signal.SIGUSR2, signal.SIGXCPU, signal.SIGKILL):
            target = self.folder / "cables.csv"
            process = subprocess.Popen([program(), "table", "-o", str(target)], stdin=subprocess.PIPE,
                                       stderr=subprocess.PIPE)
            wait_until(lambda process=process: is_writing(process, self.folder))
            self.assertEqual(self.files(), [])
            process.send_signal(number)
            self.assertEqual(process.wait(timeout=20), -number)
            process.stdin.close()
            process.stderr.close()
            self.assertEqual(self.files(), [])


    def test_an_ignored_hangup_stays_ignored(self):
        target = self.folder / "cables.csv"
        process = subprocess.Popen([program(), "table", "-o", str(target)], stdin=subprocess.PIPE,
                                   preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        wait_until(lambda: is_writing(process, self.folder))
        process.send_signal(signal.SIGHUP)
        process.communicate(PORT, timeout=20)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(self.files(), ["cables.csv"])


class Terminals(ProgramTest):
    """The progress meter, with a pseudo-terminal as standard error."""

    def meter(self, *arguments, seconds=20, environment=None):
        """What is shown while ports arrive, until something is or this time has passed, and at the end."""
        ours, theirs = pty.openpty()
        process = subprocess.Popen([program(), "table", *arguments], stdin=subprocess.PIPE,
                                   stdout=subprocess.DEVNULL, stderr=theirs,
                                   env={**os.environ, "TERM": "xterm", **(environment or {})})
        os.close(theirs)
        shown = b""
        end = time.monotonic() + seconds
        while not shown and time.monotonic() < end:
            process.stdin.write(PORT * 100)
            process.stdin.flush()
            if select.select([ours], [], [], 0.1)[0]:
                shown += os.read(ours, 65536)
        process.stdin.close()
        try:
            while chunk := os.read(ours, 65536):
                shown += chunk
        except OSError:
            pass  # how a pseudo-terminal ends
        os.close(ours)
        self.assertEqual(process.wait(timeout=20), 0)
        return shown

    def test_a_terminal_shows_a_meter_and_clears_it(self):
        shown = self.meter()
        self.assertRegex(shown, rb"\r\d+ ports, [\d,]+ ports/s\x1b\[K")
        self.assertTrue(shown.endswith(b"\r\x1b[K"))

    def test_other_outputs_show_no_meter(self):
        self.assertEqual(self.meter("-q", seconds=1), b"")
        self.assertEqual(self.meter(seconds=1, environment={"TERM": "dumb"}), b"")

    def test_logs_contain_no_control_characters(self):
        result = run("table", FABRIC)
        self.assertNotIn(b"\x1b", result.stderr + result.stdout)
        self.assertNotIn(b"\r", result.stderr + result.stdout)


if __name__ == "__main__":
    unittest.main()
