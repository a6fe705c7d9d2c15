"""Modules from dumps of their memory."""

import json
import re
import unittest

import jsonschema

from program import ROOT, ProgramTest, run, summary


def text(value, size):
    return value.encode().ljust(size, b" ")


class Image:
    """A module's memory, initially zero; `at` maps a page to its offset."""

    def __init__(self, size, pages):
        self.bytes = bytearray(size)
        self.pages = pages

    def set(self, page, byte, value):
        begin = self.pages[page] + byte
        value = bytes([value]) if isinstance(value, int) else value
        self.bytes[begin:begin + len(value)] = value
        return self

    def seal(self, page, first, last):
        begin = self.pages[page]
        self.bytes[begin + last + 1] = sum(self.bytes[begin + first:begin + last + 1]) & 0xFF
        return self


def qsfp28(size=384):
    image = Image(640 if size == 640 else 384, {"lower": 0, "00": 0, "03": 384 if size == 640 else 128})
    image.set("lower", 0, 0x11).set("00", 128, 0x11)
    image.set("lower", 22, b"\x1a\x80").set("lower", 26, (32989).to_bytes(2, "big"))
    image.set("lower", 34, (4643).to_bytes(2, "big"))
    image.set("00", 130, 0x0C).set("00", 140, 255).set("00", 222, 103).set("00", 143, 35)
    image.set("00", 148, text("Acme Optics", 16)).set("00", 168, text("AO-SR4", 16))
    image.set("00", 184, text("A1", 2)).set("00", 196, text("AO0001", 16))
    image.set("00", 212, text("240315", 6))
    image.set("03", 128, b"\x4b\x00\xfb\x00")
    image.seal("00", 128, 190).seal("00", 192, 222)
    return bytes(image.bytes[:size])


def osfp():
    image = Image(768, {"lower": 0, "00": 0, "01": 128, "02": 256, "10": 384, "11": 512})
    image.set("lower", 0, 0x19).set("lower", 1, 0x50).set("00", 128, 0x19)
    image.set("lower", 14, b"\x2d\x40").set("lower", 86, b"\x32\x00\x00\x00\xff")
    image.set("00", 129, text("Acme Optics", 16)).set("00", 148, text("AO-OSFP", 16))
    image.set("00", 164, text("2", 2)).set("00", 166, text("AO0002", 16)).set("00", 212, 0x06)
    image.set("01", 160, 0x17)  # bias times 4
    image.set("11", 170, (4500).to_bytes(2, "big"))
    image.seal("00", 128, 221).seal("01", 130, 254).seal("02", 128, 254)
    return bytes(image.bytes)


def sfp(size=512):
    image = Image(512, {"a0": 0, "a2": 256})
    image.set("a0", 0, 3).set("a0", 2, 7).set("a0", 12, 103).set("a0", 60, (1310).to_bytes(2, "big"))
    image.set("a0", 20, text("Acme Optics", 16)).set("a0", 40, text("AO-LR", 16))
    image.set("a0", 56, text("B4", 4)).set("a0", 68, text("AO0003", 16)).set("a0", 92, 0x68)
    image.set("a2", 96, b"\x22\x8a")
    image.seal("a0", 0, 62).seal("a0", 64, 94).seal("a2", 0, 94)
    return bytes(image.bytes[:size])


def rows(data, size=16):
    return [(i, data[i:i + size]) for i in range(0, len(data), size)]


def shown(data):
    return "".join(chr(b) if 32 <= b < 127 else "." for b in data)


def xxd(data):
    return "".join(f"{at:08x}: {row.hex(' ', 2):39}  {shown(row)}\n" for at, row in rows(data))


def hexdump_c(data):
    lines, last, starred = [], None, False
    for at, row in rows(data):
        if row == last:
            lines += [] if starred else ["*"]
            starred = True
            continue
        starred = False
        last = row
        lines.append(f"{at:08x}  {row[:8].hex(' ')}  {row[8:].hex(' ')}  |{shown(row)}|")
    return "\n".join(lines) + f"\n{len(data):08x}\n"


def i2cdump(data):
    head = "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n"
    return head + "".join(f"{at:02x}: {row.hex(' ')}    {shown(row)}\n" for at, row in rows(data))


def kernel_tool(data):
    head = "Offset\t\tValues\n------\t\t------\n"
    return head + "".join(f"0x{at:04x}:\t\t{row.hex(' ')} \n" for at, row in rows(data))


LISTINGS = {
    "plain hexadecimal": lambda data: data.hex(),
    "plain hexadecimal in lines": lambda data: "\n".join(row.hex(" ") for _, row in rows(data)),
    "xxd": xxd,
    "hexdump -C": hexdump_c,
    "the kernel's tool": kernel_tool,
}


def lines(result):
    """The lines of a report as a dictionary."""
    return dict(re.findall(r"^ ?([^:\n]+): +(.*)$", result.stdout.decode(), re.MULTILINE))


class Modules(ProgramTest):
    def dump(self, content, name="dump"):
        return self.file(name, content.encode() if isinstance(content, str) else content)

    def report(self, *dumps):
        result = run("report", "--module", *dumps)
        self.assert_run(result)
        return lines(result)

    def test_a_100g_optic(self):
        report = self.report(self.dump(qsfp28()))
        for label, value in (("Source", "CABLE"), ("Identifier", "QSFP28 (0x11)"),
                             ("Vendor", "Acme Optics"), ("PN", "AO-SR4"), ("Length", "70 m"),
                             ("Type", "850 nm VCSEL"), ("Temperature", "26C"),
                             ("NominalBitrate", "25 Gb/s"), ("DateCode", "24-03-15"),
                             ("RX1 Power", "0.464 mW, -3.332 dBm"),
                             ("Supply Voltage Reporting", "3298900uV"),
                             ("AlarmTemperatureHighThresh", "75C"),
                             ("AlarmTemperatureLowThresh", "-5C")):
            self.assertEqual(report[label], value, label)

    def test_a_400g_optic(self):
        report = self.report(self.dump(osfp()))
        for label, value in (("Source", "MODULE"), ("Identifier", "OSFP (0x08)"),
                             ("Vendor", "Acme Optics"), ("PN", "AO-OSFP"), ("Type", "1310 nm EML"),
                             ("SupportedSpeed", "NDR"), ("Temperature", "45C"),
                             ("TX1 Bias", "36.000 mA")):
            self.assertEqual(report[label], value, label)

    def test_an_sfp(self):
        report = self.report(self.dump(sfp()))
        for label, value in (("Source", "MODULE"), ("Identifier", "SFP28/SFP+ (0x02)"),
                             ("Vendor", "Acme Optics"), ("PN", "AO-LR"), ("Type", "1310 nm DFB"),
                             ("Temperature", "34C"), ("NominalBitrate", "10 Gb/s")):
            self.assertEqual(report[label], value, label)
        self.assertEqual(self.report(self.dump(sfp(256)))["Temperature"], "N/A")

    def test_every_listing_reads_like_the_image(self):
        for data in (qsfp28(), qsfp28(640), osfp(), sfp()):
            expected = run("table", "--module", self.dump(data, "image")).stdout
            for name, listing in LISTINGS.items():
                for newline in ("\n", "\r\n"):
                    dump = self.dump(listing(data).replace("\n", newline), "listing")
                    result = run("table", "--module", dump)
                    self.assert_run(result)
                    self.assertEqual(result.stdout, expected, name)

    def test_an_i2cdump_has_the_first_256_bytes(self):
        expected = run("table", "--module", self.dump(qsfp28(256), "image")).stdout
        result = run("table", "--module", self.dump(i2cdump(qsfp28(256)), "listing"))
        self.assert_run(result)
        self.assertEqual(result.stdout, expected)

    def test_unreadable_bytes_of_an_i2cdump_are_missing(self):
        listing = i2cdump(qsfp28(256)).splitlines()
        self.assertEqual(listing[2][:3], "10:")
        listing[2] = "10:" + " XX" * 16 + "    XXXXXXXXXXXXXXXX"
        self.assertEqual(self.report(self.dump("\n".join(listing)))["Temperature"], "N/A")

    def test_a_dump_may_be_read_from_a_pipe(self):
        result = run("report", "--module", "-", stdin=qsfp28())
        self.assert_run(result)
        self.assertEqual(lines(result)["Vendor"], "Acme Optics")

    def test_page_by_page(self):
        data = osfp()
        pages = [f"{name}:{self.dump(data[at:at + 128], 'page' + name)}"
                 for name, at in (("lower", 0), ("00", 128), ("01", 256), ("02", 384), ("11", 640))]
        expected = run("table", "--module", self.dump(data)).stdout
        result = run("table", "--module", *pages)
        self.assert_run(result)
        self.assertEqual(result.stdout, expected)

    def test_pages_may_be_listings_with_their_own_offsets(self):
        data = qsfp28()
        third = "".join(f"0x{128 + at:04x}:\t\t{row.hex(' ')}\n" for at, row in rows(data[256:]))
        report = self.report(f"00:{self.dump(i2cdump(data[:256]), 'first')}",
                             f"03h:{self.dump(third, 'third')}")
        self.assertEqual(report["Vendor"], "Acme Optics")
        self.assertEqual(report["Temperature"], "26C")
        self.assertEqual(report["AlarmTemperatureHighThresh"], "75C")

    def test_modules_are_ports_in_order(self):
        lower, upper = self.dump(qsfp28()[:128], "lower"), self.dump(qsfp28()[128:256], "upper")
        result = run("table", "--no-header", "--module", self.dump(sfp(), "sfp"), f"lower:{lower}",
                     f"00:{upper}", f"lower:{lower}", f"00:{upper}", self.dump(osfp(), "osfp"))
        self.assert_run(result)
        cells = [row.split(",") for row in result.stdout.decode().splitlines()]
        self.assertEqual([(row[2], row[6]) for row in cells],
                         [("1", '"AO-LR"'), ("2", '"AO-SR4"'), ("3", '"AO-SR4"'), ("4", '"AO-OSFP"')])
        self.assertEqual({row[0] for row in cells}, {"0x0000000000000000"})

    def test_export(self):
        result = run("export", "--module", self.dump(sfp(), "sfp"), self.dump(qsfp28(), "qsfp"))
        self.assert_run(result)
        first, second = map(json.loads, result.stdout.splitlines())
        self.assertEqual((first["source"], first["record"]), ("MODULE", None))
        self.assertAlmostEqual(first["monitors"]["temperature_c"]["value"], 0x228A / 256, 5)
        self.assertEqual((second["source"], second["record"]["vendor"]), ("CABLE", "Acme Optics"))

    def test_a_wrong_checksum_is_a_warning(self):
        data = bytearray(qsfp28())
        data[191] ^= 0x0F
        dump = self.dump(bytes(data))
        warning = ("page 00h: the checksum of bytes 128 to 190 is "
                   f"0x{data[191] ^ 0x0F:02x}, but byte 191 is 0x{data[191]:02x}\n")
        result = run("report", "--module", dump)
        self.assert_run(result, 0, f"{dump}: warning: {warning}")
        self.assertEqual(lines(result)["Vendor"], "Acme Optics")
        target = self.file("old.txt", b"old")
        self.assert_run(run("report", "--strict", "-o", target, "--module", dump), 1,
                        f"{dump}: {warning}cableinfo: {target}: not written: "
                        "the run stopped at a bad port\n" + summary(0, 1))
        self.assertEqual(target.read_bytes(), b"old")

    def test_bad_dumps_are_left_out(self):
        good = self.dump(qsfp28(), "good")
        for content, problem in (
                (b"", "the dump is empty"),
                (b"\n", "the listing holds no bytes"),
                (b"\x07" + bytes(255), "unknown module identifier: byte 0 is 0x07, byte 128 is 0x00"),
                (qsfp28() + b"\0", "an image of 385 bytes is not the memory of a QSFP28 module; "
                 "valid sizes are 256, 384, 640"),
                (bytes(5000), "an image of 5000 bytes is not the memory of a module"),
                (bytes(300000), "a file of more than 262144 bytes is not the memory of a module"),
                (b"Vendor: Acme\n",
                 'line 1 of the listing: expected bytes in hexadecimal, found "Vendor:"')):
            bad = self.dump(content, "bad")
            result = run("table", "--no-header", "--module", bad, good)
            self.assert_run(result, 1, f"{bad}: {problem}\n" + summary(1, 1))
            self.assertEqual(result.stdout.count(b"\n"), 1)
            self.assertEqual(run("table", "--no-header", "--strict", "--module", bad, good).stdout, b"")

    def test_unreadable_files_are_errors(self):
        missing = self.folder / "missing"
        for dump in (missing, f"lower:{missing}"):
            result = run("table", "--no-header", "--module", dump, self.dump(qsfp28()))
            self.assert_run(result, 3, f"cableinfo: {missing}: No such file or directory\n" + summary(1, 0, unread=1))
            self.assertEqual(result.stdout.count(b"\n"), 1)
        self.assert_run(run("table", "--module", self.folder), 3,
                        f"cableinfo: {self.folder}: Is a directory\n" + summary(0, 0, unread=1))

    def test_an_endless_file_is_rejected(self):
        self.assert_run(run("table", "--no-header", "--module", "/dev/zero"), 1,
                        "/dev/zero: a file of more than 262144 bytes is not the memory of a module\n" + summary(0, 1))

    def test_modules_and_port_records_exclude_each_other(self):
        result = run("table", "ports.jsonl", "--module", self.dump(qsfp28()))
        self.assertEqual(result.returncode, 2)


class PortRecords(ProgramTest):
    def test_memory_may_be_a_file_or_hexadecimal(self):
        expected = run("report", "--module", self.file("dump", qsfp28())).stdout.replace(b", Label: dump\n", b"\n")
        for memory in ({"file": str(self.folder / "dump")}, {"hex": qsfp28().hex()},
                       {"hex": xxd(qsfp28())}):
            result = run("report", stdin=[{"port_num": 1, "module_memory": memory}])
            self.assert_run(result)
            self.assertEqual(result.stdout, expected)

    def test_a_length_is_measured_for_it(self):
        port = {"module_memory": {"hex": osfp().hex()}, "prtl_length": 9.5}
        self.assertEqual(lines(run("report", stdin=[port]))["Length"], "9.5 m")

    def test_it_may_accompany_the_record_of_the_other_kind(self):
        port = {"module_memory": {"hex": osfp().hex()}, "cable": {"VendorName": "Both"}}
        self.assertEqual(lines(run("report", stdin=[port]))["Vendor"], "Both")

    def test_a_wrong_checksum_is_a_remark(self):
        data = bytearray(qsfp28())
        data[191] = (data[191] + 1) & 0xFF
        port = {"port_guid": "0x1f", "port_num": 7, "module_memory": {"hex": data.hex()}}
        remark = ("page 00h: the checksum of bytes 128 to 190 is "
                  f"0x{(data[191] - 1) & 0xFF:02x}, but byte 191 is 0x{data[191]:02x}\n")
        result = run("table", "--no-header", stdin=[port])
        self.assert_run(result, 0, "<stdin>:1: port 0x000000000000001f/7: " + remark)
        self.assertEqual(result.stdout.count(b"\n"), 1)
        self.assert_run(run("table", "--no-header", "--strict", stdin=[port]), 1,
                        "<stdin>:1: module_memory: " + remark + summary(0, 1))

    def test_each_mistake_has_its_message(self):
        missing = str(self.folder / "missing")
        sample = qsfp28().hex()
        for port, problem in (
                ({"module_memory": {"hex": ""}}, "module_memory.hex: the listing holds no bytes"),
                ({"module_memory": {"hex": "0x0g"}}, "module_memory.hex: line 1 of the listing: "
                 'expected bytes in hexadecimal, found "0x0g"'),
                ({"module_memory": {"hex": 17}}, "module_memory.hex: expected a text, found 17"),
                ({"module_memory": {"hex": "07"}}, "module_memory: unknown module identifier: "
                 "byte 0 is 0x07, byte 128 is missing"),
                ({"module_memory": {"file": "-"}},
                 'module_memory.file: expected the name of a file, found "-"'),
                ({"module_memory": {}}, 'module_memory: expected one of "file", "hex" and "pages", found {}'),
                ({"module_memory": {"hax": "00"}},
                 'module_memory.hax: unknown key; did you mean "hex"?'),
                ({"module_memory": 5}, "module_memory: expected an object, found 5"),
                ({"module_memory": {"hex": sample}, "cable": {}}, 'module_memory: the line must not '
                 'also have "cable", which the memory of this module fills')):
            self.assert_run(run("table", "--no-header", stdin=[port]), 1, f"<stdin>:1: {problem}\n" + summary(0, 1))
        result = run("table", "--no-header", stdin=[{"module_memory": {"file": missing}}])
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"<stdin>:1: module_memory.file: cannot read ", result.stderr)


class Everything(ProgramTest):
    """The output of the command module."""

    def json(self, *arguments, **options):
        result = run("module", "--json", *arguments, **options)
        self.assert_run(result)
        return [json.loads(line) for line in result.stdout.splitlines()]

    def test_json_is_valid(self):
        schema = json.loads((ROOT / "docs" / "module.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        images = [qsfp28(), qsfp28(256), osfp(), sfp(), sfp(256)]
        files = [self.file(f"{i}.bin", image) for i, image in enumerate(images)]
        for module in self.json(*files):
            validator.validate(module)

    def test_json_has_values(self):
        [module] = self.json(self.file("q.bin", qsfp28()))
        self.assertEqual(module["label"], "q.bin")
        self.assertEqual(module["family"], "SFF-8636")
        self.assertEqual(module["identity"]["vendor"], "Acme Optics")
        self.assertEqual(module["monitors"]["temperature_c"]["value"], 26.5)
        self.assertEqual(module["lanes"][0]["rx_power_mw"]["value"], 0.4643)
        self.assertEqual(module["media"]["length_m"]["om3"], 70)
        self.assertEqual(module["pages_read"], ["lower", "00h", "03h"])

    def test_pages_make_one_module(self):
        data = osfp()
        parts = [f"{page}:{self.file(page, data[at:at + 128])}" for page, at in
                 (("lower", 0), ("00", 128), ("01", 256), ("02", 384), ("10", 512), ("11", 640))]
        whole = self.json(self.file("whole", data))
        whole[0]["label"] = "lower"
        self.assertEqual(self.json(*parts), whole)

    def test_ports_with_a_memory_have_values(self):
        lines = [{"port_num": 1}, {"port_num": 2, "module_memory": {"hex": sfp().hex()}}]
        [module] = self.json(stdin=lines)
        self.assertEqual(module["family"], "SFF-8472")
        self.assertEqual(module["media"]["wavelength_nm"], 1310)

    def test_text_is_a_data_sheet(self):
        result = run("module", self.file("q.bin", qsfp28()), self.file("s.bin", sfp()))
        self.assert_run(result)
        text = result.stdout.decode()
        self.assertTrue(text.startswith("q.bin: QSFP28"))
        self.assertIn("\n\ns.bin: SFP", text)
        self.assertRegex(text, r"Temperature +26\.5 C")
        self.assertRegex(text, r"RX power, lane 1 +0\.4643 mW \(-3\.33 dBm\)")

    def test_dumps_and_port_records_are_not_mixed(self):
        ports = self.file("ports.jsonl", b'{"port_num": 1}\n')
        result = run("module", ports, self.file("s.bin", sfp()))
        self.assertEqual(result.returncode, 2)

    def test_modules_without_a_record_are_decoded(self):
        # SFF-8024 table 4-1: microQSFP, SFP-DD with CMIS, and an identifier of a vendor's own.
        for identifier, image, family in ((0x17, qsfp28(), "SFF-8636"), (0x1F, osfp(), "CMIS"),
                                          (0x80, osfp(), "CMIS")):
            image = bytearray(image)
            image[0] = image[128] = identifier
            dump = self.file(f"{identifier:02x}.bin", bytes(image))
            result = run("module", "--json", dump)
            self.assertEqual(result.returncode, 0)
            module = json.loads(result.stdout)
            self.assertEqual(module["family"], family)
            self.assertEqual(module["identifier"]["code"], identifier)
            self.assertEqual(module["identity"]["vendor"], "Acme Optics")
            self.assert_run(run("table", "--no-header", "--module", dump), 1,
                            f"{dump}: unknown module identifier: byte 0 is 0x{identifier:02x}, "
                            f"byte 128 is 0x{identifier:02x}\n" + summary(0, 1))

    def test_unknown_modules_are_bad(self):
        result = run("module", self.file("z.bin", bytes(256)))
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"unknown module identifier", result.stderr)


class Documentation(unittest.TestCase):
    def test_every_field_of_a_record_is_mapped(self):
        schema = json.loads((ROOT / "docs" / "port.schema.json").read_text())["properties"]
        phy = schema["phy"]["properties"]
        names = [*schema["cable"]["properties"], *phy["module"]["properties"],
                 *phy["latched_flags"]["anyOf"][0]["properties"]]
        document = (ROOT / "docs" / "module_memory.md").read_text()
        rows_of_tables = "\n".join(line.split("|")[1] for line in document.splitlines()
                                   if line.startswith("| "))
        for name in names:
            if not name.endswith("_raw"):  # the same field in another order
                self.assertIn(f"`{name}`", rows_of_tables)


class Identifiers(ProgramTest):
    def test_identifiers_that_differ_are_remarked_on_once(self):
        memory = bytearray(256)
        memory[0], memory[128] = 0x0D, 0x11
        path = self.file("module.bin", bytes(memory))
        for command in ("table", "export"):
            self.assertEqual(run(command, "--module", path).stderr.count(b"byte 0 names the module"), 1, command)


class Media(ProgramTest):
    def test_sfp_modules_have_the_medium_of_their_record(self):
        def medium(*settings):
            memory = bytearray(256)
            memory[0] = 3
            for byte, value in settings:
                memory[byte] = value
            path = self.file("module.bin", bytes(memory))
            return json.loads(run("export", "-q", "--module", path).stdout)["medium"]

        self.assertEqual(medium((60, 850 >> 8), (61, 850 & 0xFF)), "optical")
        self.assertEqual(medium((8, 0x04)), "passive_copper")
        self.assertIsNone(medium((8, 0x08)))  # an active cable, of copper or optical


if __name__ == "__main__":
    unittest.main()
