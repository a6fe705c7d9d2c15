"""Faults of streams: ports are written as soon as they are read; limits do not depend on delivery."""

import json
import os
import pty
import selectors
import signal
import subprocess
import tempfile
import time
import unittest

from program import ProgramTest, program, run, summary

PORT = b'{"port_num":1,"cable":{"VendorName":"vendor"}}\n'
MAX_LINE = 128 << 10


class LiveProgram:
    """The program with its input open, and its output in a pipe or a file."""

    def __init__(self, *arguments, output=subprocess.PIPE):
        self.process = subprocess.Popen([program(), *arguments], stdin=subprocess.PIPE, stdout=output,
                                        stderr=subprocess.PIPE, bufsize=0)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        for pipe in (self.process.stdin, self.process.stdout, self.process.stderr):
            if pipe:
                pipe.close()

    def send(self, data):
        self.process.stdin.write(data)

    def lines(self, count):
        """The next lines of the output; fails when they do not come."""
        found = b""
        with selectors.DefaultSelector() as selector:
            selector.register(self.process.stdout, selectors.EVENT_READ)
            while found.count(b"\n") < count:
                if not selector.select(timeout=20):
                    raise TimeoutError(found)
                found += os.read(self.process.stdout.fileno(), 65536)
        return found.splitlines()


class AtOnce(ProgramTest):
    def test_a_port_is_written_while_the_input_stays_open(self):
        for command in (("table", "--no-header"), ("export",), ("table", "--no-header", "-j", "1")):
            with LiveProgram(*command) as live:
                for _ in range(3):
                    live.send(PORT)
                    self.assertEqual(len(live.lines(1)), 1)

    def test_a_part_of_the_next_line_does_not_hold_it_back(self):
        with LiveProgram("table", "--no-header") as live:
            live.send(PORT + PORT[:10])
            live.lines(1)
            live.send(PORT[10:] + PORT + PORT[:1])
            live.lines(2)

    def test_a_report_is_whole(self):
        with LiveProgram("report") as live:
            live.send(PORT)
            self.assertEqual(len(live.lines(79)), 79)

    def test_a_kill_loses_nothing_of_it(self):
        with tempfile.TemporaryFile() as output:
            with LiveProgram("table", "--no-header", output=output) as live:
                live.send(PORT * 5)
                deadline = time.monotonic() + 20
                while os.fstat(output.fileno()).st_size == 0 and time.monotonic() < deadline:
                    time.sleep(0.01)
                live.process.send_signal(signal.SIGKILL)
                live.process.wait()
            output.seek(0)
            self.assertEqual(output.read().count(b"\n"), 5)

    def test_messages_are_written_with_their_ports(self):
        with LiveProgram("table", "--no-header") as live:
            live.send(b"bad\n" + PORT)
            live.lines(1)
            self.assertTrue(os.read(live.process.stderr.fileno(), 1000).startswith(b"<stdin>:1: not valid JSON"))


class Delivery(ProgramTest):
    """The limit of a line counts its text, however it is delivered."""

    def deliver(self, pieces):
        with LiveProgram("table", "--no-header") as live:
            for piece in pieces:
                live.send(piece)
                time.sleep(0.05)
            out, err = live.process.communicate(timeout=20)
            return live.process.returncode, out.count(b"\n"), err.decode()

    def test_the_limit_is_the_same_for_all_line_ends_and_pieces(self):
        for size, is_good in ((MAX_LINE, True), (MAX_LINE + 1, False)):
            text = PORT[:-1] + b" " * (size - len(PORT) + 1)
            self.assertEqual(len(text), size)
            for end in (b"\n", b"\r\n", b""):
                for mark in (b"", b"\xef\xbb\xbf"):
                    line = mark + text + end
                    for cuts in ((), (MAX_LINE,), (len(line) - 1,), (len(mark) + MAX_LINE + 1,), (1000, MAX_LINE - 1)):
                        places = [0, *cuts, len(line)]
                        pieces = [line[a:b] for a, b in zip(places, places[1:]) if a < b]
                        with self.subTest(size=size, end=end, mark=mark, cuts=cuts):
                            status, rows, err = self.deliver(pieces)
                            if is_good:
                                self.assertEqual((status, rows, err), (0, 1, ""))
                            else:
                                self.assertEqual((status, rows, err), (
                                    1, 0, f"<stdin>:1: expected a line of at most {MAX_LINE} bytes, "
                                    "found a longer one\n" + summary(0, 1)))


class Terminals(ProgramTest):
    """Foreign texts on a terminal, and in files and pipes."""

    HOSTILE = ("\x1b[31mred\x07\x7f\u0085\u009b2J\u202eabc\u2066\nNodeGuid: forged\r\t")
    SHOWN = (r"\x1b[31mred\x07\x7f\x85\x9b2J\u202eabc\u2066\x0aNodeGuid: forged\x0d\x09")

    def on_terminal(self, *arguments, stdin=b"", stderr=subprocess.DEVNULL):
        ours, theirs = pty.openpty()
        process = subprocess.Popen([program(), *arguments], stdin=subprocess.PIPE, stdout=theirs, stderr=stderr)
        os.close(theirs)
        process.stdin.write(stdin)
        process.stdin.close()
        shown = b""
        try:
            while chunk := os.read(ours, 65536):
                shown += chunk
        except OSError:
            pass  # how a pseudo-terminal ends
        os.close(ours)
        process.wait(timeout=20)
        return shown.replace(b"\r\n", b"\n").decode()

    def hostile_port(self):
        return json.dumps({"cable": {"VendorName": self.HOSTILE}, "label": "a\x1b\nb"}).encode() + b"\n"

    def test_a_terminal_gets_escapes(self):
        for command in ("table", "report", "export", "metrics"):
            shown = self.on_terminal(command, stdin=self.hostile_port())
            controls = {c for c in shown if c != "\n" and (ord(c) < 32 or 127 <= ord(c) < 160 or c in "\u202e\u2066")}
            self.assertEqual(controls, set(), command)
        self.assertIn("Vendor: " + self.SHOWN + "\n", self.on_terminal("report", stdin=self.hostile_port()))

    def test_a_terminal_gets_the_memory_of_a_module(self):
        from test_modules import qsfp28
        records = json.dumps({"module_memory": {"hex": qsfp28().hex()}}).encode() + b'\n{"port_num": 2}\n'
        dump = str(self.file("dump", qsfp28()))
        for command in (["module"], ["module", "--json"], ["export"], ["module", dump], ["export", "--module", dump]):
            written = run(*command, stdin=records).stdout.decode()
            self.assertIn("Acme Optics", written)
            self.assertEqual(self.on_terminal(*command, stdin=records), written)

    def test_a_newline_forges_no_line_of_a_report(self):
        shown = self.on_terminal("report", stdin=self.hostile_port())
        self.assertEqual([line for line in shown.split("\n") if line.startswith("NodeGuid: ")],
                         ["NodeGuid: 0x0000000000000000, PortGuid: 0x0000000000000000, PortNum: 0, "
                          r"Label: a\x1b\x0ab"])
        self.assertEqual(shown.count("\n"), 79)

    def test_registers_are_made_safe_too(self):
        port = b'{"phy":{"source":"S\\nT","module":{"vendor_name":"A\\u001b\\nB","vendor_sn":"\\u0001\\n\\u0002"}}}\n'
        shown = self.on_terminal("report", stdin=port)
        self.assertIn("Source: S\\x0aT\n", shown)
        self.assertIn("A\\x1b\\x0aB", shown)
        self.assertIn("\\x01\\x0a\\x02\n", shown)

    def test_files_and_pipes_stay_exact(self):
        for command in ("table", "report"):
            self.assertIn(self.HOSTILE.encode(), run(command, stdin=self.hostile_port()).stdout)

    def test_plain_output_is_the_same_on_a_terminal(self):
        for command in ("table", "report", "export"):
            self.assertEqual(self.on_terminal(command, stdin=PORT * 2),
                             run(command, stdin=PORT * 2).stdout.decode())

    def test_json_has_the_same_texts_on_a_terminal(self):
        texts = {"VendorName": "Ac\nme\n", "Oui": "\v\f\t\r", "PartNumber": "".join(map(chr, range(1, 16))),
                 "SerialNumber": "\x1b[2J\x7f\u0085", "FwVersionText": "\u202e\n"}
        phy = {"source": "S\nT", "module": {"vendor_name": "Acme\n", "vendor_sn": "\x01\x02\n"}}
        ports = [{"label": self.HOSTILE, "cable": texts}, {"label": "a\nb", "phy": phy}]
        records = b"".join(json.dumps(port).encode() + b"\n" for port in ports)
        for command in (("export",), ("table", "--json"), ("table", "--json", "--columns", "Vendor,PN,SN")):
            written = run(*command, stdin=records).stdout.decode()
            self.assertEqual(written.count("\n"), 2)
            self.assertEqual(self.on_terminal(*command, stdin=records), written, command)

    def test_json_of_a_module_with_hostile_texts_on_a_terminal(self):
        from test_modules import qsfp28
        memory = bytearray(qsfp28())
        memory[148:164] = b"Ac\nme\x1b[2J\x7f\x9b\x85\v\f\t\xe4"
        records = json.dumps({"label": self.HOSTILE, "module_memory": {"hex": memory.hex()}}).encode() + b"\n"
        for command in (("module", "--json"), ("export",), ("table", "--json")):
            shown = self.on_terminal(*command, stdin=records)
            self.assertEqual({c for c in shown if ord(c) < 32 or 127 <= ord(c) < 160 or c in "\u202e\u2066"}, {"\n"}, command)
            self.assertEqual(json.loads(shown), json.loads(run(*command, stdin=records).stdout), command)

    def test_a_vendor_is_trimmed_on_a_terminal_too(self):
        port = b'{"phy":{"source":"S","module":{"vendor_name":"\\nAcme\\n","vendor_sn":"A\\nB"}}}\n'
        columns = ("table", "--columns", "Vendor,SN")
        self.assertEqual(run(*columns, stdin=port).stdout, b'Vendor,SN\n"Acme","A\nB"\n')
        self.assertEqual(self.on_terminal(*columns, stdin=port), 'Vendor,SN\n"Acme","A\\x0aB"\n')
        with_blanks = port.replace(b"A\\nB", b"A\\u000b\\n\\tB\\n")
        self.assertIn('"Acme","A\\x0b\\x0a\\x09B"\n', self.on_terminal(*columns, stdin=with_blanks))

    def test_messages_are_always_safe(self):
        hostile = self.HOSTILE.encode()
        listing = self.file("listing", b"00 11\n\x1b[2Jzz\n".replace(b"\x1b", b"zz"))
        name = self.folder / "\x1b[2J\n.jsonl"
        for arguments, stdin in ((("table",), b'{"\x1b[2J":1}\n'), (("table",), '{"\u202e\\u001b\\n":1}\n'.encode()),
                                 (("table",), '{"port_num":"\u009b\u202e"}\n'.encode()),
                                 (("table", str(name)), b""), (("table", "--module", str(listing)), b""),
                                 (("table", "--module", str(name)), b""), (("x" + self.HOSTILE,), b""),
                                 (("table", "--nonsense" + self.HOSTILE), b""),
                                 (("table", "-o", str(name / "x")), b""), (("table",), hostile)):
            err = run(*arguments, stdin=stdin).stderr.decode()
            self.assertNotEqual(err, "")
            controls = {c for c in err if c != "\n" and (ord(c) < 32 or 127 <= ord(c) < 160 or c in "\u202e\u2066")}
            self.assertEqual(controls, set(), arguments)

    def test_a_message_is_one_line(self):
        result = run("table", stdin=b'{"a\\nforged:1: b": 1}\n')
        self.assert_run(result, 1, "<stdin>:1: a\\x0aforged:1: b: unknown key\n" + summary(0, 1))


class ModuleFiles(ProgramTest):
    """Files that port records name."""

    def setUp(self):
        super().setUp()
        (self.folder / "inner").mkdir()

    def read(self, name, *options, folder="inner"):
        path = self.folder / folder / "ports.jsonl"
        path.write_text('{"port_num":1,"module_memory":{"file":"%s"}}\n' % name)
        return run("table", "--no-header", *options, path)

    def test_names_are_relative_to_the_record(self):
        from test_modules import qsfp28
        (self.folder / "inner" / "dump.bin").write_bytes(qsfp28())
        self.assert_run(self.read("dump.bin"))
        self.assert_run(self.read(str(self.folder / "inner" / "dump.bin")))
        self.assert_run(self.read("inner/dump.bin", folder="."))
        line = b'{"module_memory":{"file":"inner/dump.bin"}}\n'
        self.assert_run(run("table", stdin=line, cwd=self.folder))
        self.assertEqual(run("table", stdin=line, cwd=self.folder / "inner").returncode, 1)

    def test_only_regular_files_are_read_and_nothing_hangs(self):
        os.mkfifo(self.folder / "inner" / "fifo")
        for name in ("fifo", "/dev/zero", "/dev/tty", ".", "/dev/stdin", "missing"):
            result = self.read(name)
            self.assertEqual((result.returncode, result.stdout), (1, b""), name)
            self.assertIn(b":1: module_memory.file: ", result.stderr)

    def test_their_content_stays_out_of_messages(self):
        secrets = (b"Secret: word\n", b"5ecret", b"\x53ecret" + bytes(200), b"0x53 zz\n")
        for content in secrets:
            secret = self.folder / "secret"
            secret.write_bytes(content)
            result = self.read(str(secret))
            self.assertEqual(result.returncode, 1)
            message = result.stderr.decode().replace(str(self.folder), "")
            self.assertIn("/secret is not a regular file with a dump of a module's memory\n", message)
            for part in ("Secret", "word", "0x53", "53", "zz", "5ecret"):
                self.assertNotIn(part, message.split("\n")[0].replace("/secret", ""))

    def test_their_size_is_limited(self):
        large = self.folder / "large"
        with large.open("wb") as file:
            file.truncate(1 << 40)
        started = time.monotonic()
        self.assertEqual(self.read(str(large)).returncode, 1)
        self.assertLess(time.monotonic() - started, 10)

    def test_they_can_be_refused(self):
        from test_modules import qsfp28
        (self.folder / "inner" / "dump.bin").write_bytes(qsfp28())
        result = self.read("dump.bin", "--no-files")
        path = self.folder / "inner" / "ports.jsonl"
        self.assert_run(result, 1, f"{path}:1: module_memory.file: files are refused by --no-files\n" + summary(0, 1))
        line = b'{"module_memory":{"hex":"' + qsfp28().hex().encode() + b'"}}\n'
        self.assert_run(run("table", "--no-files", stdin=line))


if __name__ == "__main__":
    unittest.main()
