"""An artificial sysfs with adapters, interfaces and EEPROM files, which `cableinfo read` finds."""

from program import ProgramTest, run


def qsfp(vendor=b"Acme Optics", identifier=0x11):
    """A QSFP28 module in the linear layout: lower page, 00h to 03h; only its identification."""
    memory = bytearray(640)
    memory[0] = memory[128] = identifier
    memory[148:164] = vendor.ljust(16)
    memory[168:184] = b"AO-Q28-SR4".ljust(16)
    memory[196:212] = b"SN0001".ljust(16)
    memory[191] = sum(memory[128:191]) & 0xFF
    memory[223] = sum(memory[192:223]) & 0xFF
    memory[512:520] = bytes.fromhex("4b00fb0046000000")
    return bytes(memory)


class ReadTest(ProgramTest):
    """A test whose machine is an artificial sysfs."""

    def setUp(self):
        super().setUp()
        self.sys = self.folder / "sys"

    def attribute(self, path, text=""):
        path = self.sys / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text + "\n")

    def adapter(self, device, guid, ports=1, interfaces=()):
        """A device of InfiniBand whose GUIDs follow each other."""
        root = f"class/infiniband/{device}"
        words = f"{guid:016x}"
        self.attribute(f"{root}/node_guid", ":".join(words[i:i + 4] for i in range(0, 16, 4)))
        for port in range(1, ports + 1):
            words = f"{guid + port:016x}"
            gid = "fe80:0000:0000:0000:" + ":".join(words[i:i + 4] for i in range(0, 16, 4))
            self.attribute(f"{root}/ports/{port}/gids/0", gid)
        for name, dev_port in interfaces:
            self.attribute(f"{root}/device/net/{name}/dev_port", str(dev_port))
            self.attribute(f"class/net/{name}/device/infiniband/{device}")

    def interface(self, name, physical=True):
        self.attribute(f"class/net/{name}/{'device/vendor' if physical else 'operstate'}")

    def eeprom(self, device, name, memory):
        self.attribute(f"bus/i2c/devices/{device}/port_name", name)
        path = self.sys / f"bus/i2c/devices/{device}/eeprom"
        path.write_bytes(memory)
        return path

    def read(self, *arguments, **options):
        return run("read", "--sysfs", self.sys, *arguments, **options)
