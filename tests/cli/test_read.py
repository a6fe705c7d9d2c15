"""Reading the modules of a machine: ports of an artificial sysfs, EEPROM files, and the kernel's answer for lo."""

import json
import os
import re
import signal
import socket
import subprocess
import unittest

from machine import ReadTest, qsfp
from program import program, run

HOST = socket.gethostname()


class Scan(ReadTest):
    def rows(self, *arguments):
        result = self.read("--scan", *arguments)
        self.assert_run(result)
        lines = [re.split(" {2,}", line) for line in result.stdout.decode().splitlines()]
        self.assertEqual(lines[0], ["NAME", "DEVICE", "NODE GUID", "PORT GUID", "EEPROM FILE"])
        return lines[1:]

    def test_ports_of_one_device(self):
        self.adapter("dual0", 0xA0B1C20000D4E500, ports=2, interfaces=[("ib0", 0), ("ib1", 1)])
        self.assertEqual(self.rows(), [
            ["ib0", "dual0/1", "0xa0b1c20000d4e500", "0xa0b1c20000d4e501", "-"],
            ["ib1", "dual0/2", "0xa0b1c20000d4e500", "0xa0b1c20000d4e502", "-"]])

    def test_a_device_for_each_port(self):
        self.adapter("hca0", 0x1000, interfaces=[("ibs1f0", 0)])
        self.adapter("hca1", 0x2000, interfaces=[("ibs1f1", 0)])
        self.assertEqual([row[:2] for row in self.rows()], [["ibs1f0", "hca0/1"], ["ibs1f1", "hca1/1"]])

    def test_a_port_without_interface_has_the_name_of_its_device(self):
        self.adapter("hca0", 0x1000)
        self.assertEqual([row[:2] for row in self.rows()], [["hca0/1", "hca0/1"]])

    def test_the_interface_that_the_gid_names_goes_first(self):
        self.adapter("hca0", 0x1000, interfaces=[("eth1", 0), ("eth2", 0)])
        self.attribute("class/infiniband/hca0/ports/1/gid_attrs/ndevs/0", "eth2")
        self.assertEqual([row[0] for row in self.rows()], ["eth2"])

    def test_children_and_representors_are_no_ports(self):
        self.adapter("hca0", 0x1000, interfaces=[("a.8001", 0), ("b_rep", 0), ("ib0", 0)])
        self.attribute("class/infiniband/hca0/device/net/a.8001/parent", "ib0")
        self.attribute("class/infiniband/hca0/device/net/b_rep/phys_port_name", "pf0vf3")
        self.assertEqual([row[0] for row in self.rows()], ["ib0"])

    def test_virtual_functions_share_the_module_of_their_physical_one(self):
        self.adapter("hca0", 0x1000, interfaces=[("ib0", 0)])
        self.adapter("hca2", 0x3000, interfaces=[("ib2", 0)])
        self.attribute("class/infiniband/hca2/device/physfn/vendor")
        self.assertEqual([row[0] for row in self.rows()], ["ib0"])

    def test_network_interfaces_of_devices(self):
        self.interface("lo", physical=False)
        self.interface("br0", physical=False)
        self.interface("eth0")
        self.assertEqual(self.rows(), [["eth0", "-", "-", "-", "-"]])

    def test_eeprom_files_of_named_ports(self):
        self.interface("swp1")
        one = self.eeprom("3-0050", "swp1", qsfp())
        two = self.eeprom("4-0050", "port2", qsfp())
        self.attribute("bus/i2c/devices/5-0050/eeprom", "of a memory bank")
        self.assertEqual([[row[0], row[4]] for row in self.rows()], [["swp1", str(one)], ["port2", str(two)]])

    def test_names_select(self):
        self.adapter("dual0", 0x1000, ports=2, interfaces=[("ib0", 0), ("ib1", 1)])
        self.adapter("hca1", 0x2000, interfaces=[("ib2", 0)])
        for names, expected in ((["ib1"], ["ib1"]), (["dual0"], ["ib0", "ib1"]), (["dual0/2"], ["ib1"]),
                                (["ib2", "dual0", "ib0"], ["ib2", "ib0", "ib1"])):
            self.assertEqual([row[0] for row in self.rows(*names)], expected)

    def test_an_eeprom_file_names_a_port_of_a_device(self):
        self.adapter("hca0", 0x1000)
        path = self.eeprom("3-0050", "hca0/1", qsfp())
        ports = self.read("--scan").stdout.decode().splitlines()[1:]
        self.assertEqual(len(ports), 1, ports)
        self.assertTrue(ports[0].startswith("hca0/1") and ports[0].endswith(str(path)), ports)
        self.assert_run(self.read("hca0/1", "-q"))

    def test_a_file_in_the_folder_needs_a_slash(self):
        self.file("module.bin", qsfp())
        result = run("read", "module.bin", cwd=self.folder)
        self.assert_run(result, 2, 'cableinfo: no port or EEPROM file "module.bin"; '
                                   "for the file in this folder, write ./module.bin\n")

    def test_an_output_that_is_also_an_input_is_refused(self):
        path = self.file("module.bin", qsfp())
        self.assert_run(run("read", path, "-o", path), 2, f"cableinfo: --output: {path} is also an input\n")
        self.assertEqual(path.read_bytes(), qsfp())
        self.assertEqual(run("read", path, "-o", "").returncode, 2)

    def test_a_missing_sysfs_is_a_missing_file(self):
        self.assert_run(run("read", "--sysfs", "/nowhere"), 3, "cableinfo: /nowhere: No such file or directory\n")

    def test_unknown_names_are_answered_with_the_known_ones(self):
        self.adapter("hca0", 0x1000, interfaces=[("ib0", 0)])
        self.assert_run(self.read("--scan", "ib7"), 2, 'cableinfo: no port or EEPROM file "ib7"; the ports are ib0\n')
        for name in ("..", ".", "", "/no/such/file"):
            self.assertEqual(self.read("--scan", name).returncode, 2, name)

    def test_strange_attributes_are_no_guids(self):
        self.adapter("hca0", 0x1000, interfaces=[("ib0", 0)])
        for text in ("", "fe80::1", "x" * 39, "zzzz:" * 8, "\0" * 50):
            self.attribute("class/infiniband/hca0/node_guid", text)
            self.assertEqual(self.rows()[0][2], "0x0000000000000000")

    def test_folders_that_are_no_ports(self):
        for name in ("0", "-1", "x", "1x", "4294967296"):
            self.attribute(f"class/infiniband/hca0/ports/{name}/state")
        self.assertEqual(self.rows(), [])


class EepromFiles(ReadTest):
    def records(self, *arguments, status=0, stderr=b""):
        result = self.read(*arguments)
        self.assert_run(result, status, stderr)
        return [json.loads(line) for line in result.stdout.splitlines()]

    def test_record(self):
        memory = qsfp()
        self.eeprom("3-0050", "port1", memory)
        self.assertEqual(self.records(), [{
            "format_version": 1, "label": f"{HOST}:port1",
            "module_memory": {"pages": {"lower": memory[:128].hex(), "00": memory[128:256].hex(),
                                        "03": memory[512:].hex()}}}])

    def test_guids_of_the_port(self):
        self.adapter("hca0", 0xA0B1C20000D4E500, interfaces=[("ib0none", 0)])
        self.eeprom("3-0050", "ib0none", qsfp())
        record, = self.records()
        self.assertEqual((record["node_guid"], record["port_guid"], record["port_num"], record["label"]),
                         ("0xa0b1c20000d4e500", "0xa0b1c20000d4e501", 1, f"{HOST}:ib0none"))

    def test_records_are_input_of_the_other_commands(self):
        self.eeprom("3-0050", "port1", qsfp())
        records = self.read().stdout
        exported = json.loads(run("export", stdin=records).stdout)
        self.assertEqual(exported["label"], f"{HOST}:port1")
        module = json.loads(run("module", "--json", stdin=records).stdout)
        self.assertEqual(module["pages_read"], ["lower", "00h", "03h"])
        self.assertIn(b"Acme Optics", run("report", stdin=records).stdout)
        self.assertIn(run("check", stdin=records).returncode, (0, 5, 6))

    def test_sfp_modules(self):
        memory = bytearray(512)
        memory[0], memory[1], memory[92] = 3, 4, 0x68
        memory[256 + 96] = 0x1A
        self.eeprom("3-0050", "port1", bytes(memory))
        pages = self.records()[0]["module_memory"]["pages"]
        self.assertEqual(pages["a0"][:512], memory[:len(pages["a0"]) // 2].hex())
        self.assertEqual(pages["a2"], memory[256:256 + len(pages["a2"]) // 2].hex())

    def test_paths_are_ports(self):
        path = self.file("eeprom", qsfp())
        record, = self.records(str(path))
        self.assertEqual(record["label"], f"{HOST}:{path}")

    def test_a_file_that_ends_early_gives_the_bytes_that_it_has(self):
        self.eeprom("3-0050", "port1", qsfp()[:300])
        record, = self.records(stderr=f"{HOST}:port1: warning: page 03h cannot be read: the file ends before it\n")
        self.assertEqual(set(record["module_memory"]["pages"]), {"lower", "00"})

    def test_an_empty_cage_is_a_record_without_memory(self):
        self.eeprom("3-0050", "port1", b"\xff" * 640)
        self.assertEqual(self.records(stderr=f"{HOST}:port1: warning: no module: the module does not answer\n"),
                         [{"format_version": 1, "label": f"{HOST}:port1"}])

    def test_a_port_that_fails_costs_its_own_record(self):
        self.eeprom("3-0050", "port1", b"")
        self.eeprom("4-0050", "port2", qsfp())
        result = self.read()
        self.assert_run(result, 1, f"{HOST}:port1: the file ends before it\n"
                                   "cableinfo: 1 port written, 1 left out, 0 remarked on\n")
        self.assertEqual(len(result.stdout.splitlines()), 1)

    def test_nothing_is_opened_for_writing(self):
        path = self.eeprom("3-0050", "port1", qsfp())
        before = path.read_bytes(), path.stat().st_mtime_ns
        path.chmod(0o444)
        self.records()
        self.assertEqual((path.read_bytes(), path.stat().st_mtime_ns), before)

    def test_output_file(self):
        self.eeprom("3-0050", "port1", qsfp())
        output = self.folder / "ports.jsonl"
        self.assert_run(self.read("-o", output))
        self.assertEqual(output.read_bytes(), self.read().stdout)

    def test_an_output_file_is_kept_when_nothing_could_be_read(self):
        self.eeprom("3-0050", "port1", b"")
        output = self.file("ports.jsonl", b"old")
        self.assertEqual(self.read("-q", "-o", output).returncode, 1)
        self.assertEqual(output.read_bytes(), b"old")


class Kernel(ReadTest):
    """The answers of this machine's kernel."""

    def test_the_loopback_interface_has_no_module(self):
        self.interface("lo", physical=False)
        result = self.read("lo")
        self.assertEqual(result.stdout, b"")
        first = result.stderr.decode().splitlines()[0]
        if result.returncode == 3:
            self.assertEqual(first, f"{HOST}:lo: Operation not permitted")
            self.assertIn(b"CAP_NET_ADMIN", result.stderr)
        else:
            self.assertEqual(result.returncode, 1)
            self.assertEqual(first, f"{HOST}:lo: Operation not supported")

    @unittest.skipIf(os.geteuid() != 0, "root can give the privilege up")
    def test_a_missing_privilege_is_named(self):
        self.interface("lo", physical=False)
        self.folder.chmod(0o755)
        result = self.read("lo", user=65534, group=65534, extra_groups=[])
        self.assertEqual(result.returncode, 3, result.stderr)
        self.assertIn("CAP_NET_ADMIN", result.stderr.decode())

    def test_an_interface_that_there_is_not(self):
        self.interface("nosuch0")
        result = self.read("nosuch0")
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(result.stdout, b"")

    def test_ports_of_infiniband_without_memory_are_records(self):
        self.adapter("hca0", 0x1000)
        result = self.read()
        self.assert_run(result, 0, f"{HOST}:hca0/1: warning: no module memory: it has no network interface\n")
        self.assertEqual(json.loads(result.stdout), {
            "format_version": 1,
            "node_guid": "0x0000000000001000", "port_guid": "0x0000000000001001", "port_num": 1,
            "label": f"{HOST}:hca0/1"})

    def test_no_ports(self):
        self.sys.mkdir()
        self.assert_run(self.read(), 1, f"cableinfo: no port was found under {self.sys}\n")


class Watch(ReadTest):
    def start(self, *arguments):
        return subprocess.Popen([program(), "read", "--timeout", "60", "--sysfs", str(self.sys), *arguments],
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def test_one_record_per_port_and_round_until_interrupted(self):
        self.eeprom("3-0050", "port1", qsfp())
        self.eeprom("4-0050", "port2", qsfp(b"Copperworks"))
        for end in (signal.SIGINT, signal.SIGTERM):
            with self.start("--watch", "0.05") as watch:
                lines = [watch.stdout.readline() for _ in range(6)]
                watch.send_signal(end)
                rest, errors = watch.communicate(timeout=20)
                self.assertEqual((errors, watch.returncode), (b"", 0))
            lines += rest.splitlines(keepends=True)
            records = [json.loads(line) for line in lines]
            self.assertEqual({record["label"] for record in records}, {f"{HOST}:port1", f"{HOST}:port2"})
            for record in records:
                self.assertRegex(record["taken_at"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
            self.assertEqual(run("export", stdin=b"".join(lines)).returncode, 0)

    def test_the_status_of_all_rounds_is_kept(self):
        path = self.eeprom("3-0050", "port1", b"")
        with self.start("--watch", "0.05", "-q") as watch:
            error = watch.stderr.readline()
            whole = self.file("whole", qsfp())
            whole.rename(path)
            record = watch.stdout.readline()
            watch.send_signal(signal.SIGINT)
            watch.communicate(timeout=20)
            self.assertEqual(watch.returncode, 1)
        self.assertEqual(error.decode(), f"{HOST}:port1: the file ends before it\n")
        self.assertIn("module_memory", json.loads(record))

    def test_a_named_port_that_goes_away_leaves_the_others(self):
        kept = self.file("kept.bin", qsfp())
        gone = self.file("gone.bin", qsfp())
        with self.start("--watch", "0.05", "-q", str(kept), str(gone)) as watch:
            for _ in range(2):
                watch.stdout.readline()
            gone.unlink()
            labels = [json.loads(watch.stdout.readline())["label"] for _ in range(6)]
            watch.send_signal(signal.SIGINT)
            watch.communicate(timeout=20)
            self.assertEqual(watch.returncode, 1)
        self.assertEqual(labels[-3:], [f"{HOST}:{kept}"] * 3)

    def test_a_reader_that_goes_away_ends_it(self):
        self.eeprom("3-0050", "port1", qsfp())
        with self.start("--watch", "0.05") as watch:
            watch.stdout.readline()
            watch.stdout.close()
            self.assertEqual(watch.wait(timeout=20), 0)

    def test_an_output_file_is_complete_after_the_interruption(self):
        self.eeprom("3-0050", "port1", qsfp())
        self.eeprom("4-0050", "port2", b"\xff" * 640)  # an empty cage, of which each round warns
        output = self.folder / "history.jsonl"
        with self.start("--watch", "0.05", "-o", str(output)) as watch:
            for _ in range(2):
                watch.stderr.readline()
            self.assertFalse(output.exists())
            watch.send_signal(signal.SIGTERM)
            watch.communicate(timeout=20)
            self.assertEqual(watch.returncode, 0)
        labels = [json.loads(line)["label"] for line in output.read_text().splitlines()]
        self.assertEqual(labels[:4], [f"{HOST}:port1", f"{HOST}:port2"] * 2)

    def test_usage(self):
        for arguments in (["--watch", "0"], ["--watch", "-1"], ["--watch", "x"], ["--watch", "nan"], ["--timeout", "0"],
                          ["--timeout", "nan"],
                          ["--scan", "--watch", "1"]):
            self.assertEqual(self.read(*arguments).returncode, 2, arguments)


if __name__ == "__main__":
    unittest.main()
