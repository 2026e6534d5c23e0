"""SMBIOS tables as firmware leaves them: in the first mebibyte of memory, or as the kernel offers them in files."""

import struct

from .ipmi import checksum

IMAGE_SIZE, ENTRY_POINT, TABLE = 1 << 20, 0xF0000, 0xE0000
KERNEL = "/sys/firmware/dmi/tables/"
MEMORY_ARRAY, END_OF_TABLE = 16, 127


def entry_point(version, length, count, address, wide=False):
    """The 31 bytes in front of a table of `length` bytes, or the 24 of the form of 64 bits."""
    if wide:
        entry = b"_SM3_" + struct.pack("<BBBBBBBIQ", 0, 0x18, *version, 0, 1, 0, length, address)
        return entry[:5] + bytes([checksum(entry)]) + entry[6:]
    middle = b"_DMI_" + struct.pack("<BHIHB", 0, length, address, count, version[0] << 4 | version[1])
    middle = middle[:5] + bytes([checksum(middle)]) + middle[6:]
    head = b"_SM_" + struct.pack("<BBBBHB5s", 0, 0x1F, *version, min(length, 0xFFFF), 0, bytes(5))
    return head[:4] + bytes([checksum(head + middle)]) + head[5:] + middle


class Tables:
    """Structures in the order in which they are added; a text argument "" stands for a field without a text. Before the
    first `version` may be set to a later one; from 3.0 on the machine has the form of 64 bits, in the kernel's files
    alone."""

    version = (2, 7)

    def __init__(self):
        self.data, self.count = b"", 0

    def add(self, kind, fields, values, texts=()):
        """One structure: its formatted area behind the header, packed by `fields`; returns its handle."""
        handle = kind << 8 | self.count
        body = struct.pack("<" + fields, *values)
        strings = b"".join(text.encode("latin-1") + b"\0" for text in texts if text)
        self.data += struct.pack("<BBH", kind, 4 + len(body), handle) + body + (strings or b"\0") + b"\0"
        self.count += 1
        return handle

    def _places(self, *texts):
        """String numbers of the texts: 1 upwards, 0 for an empty one."""
        numbers, last = [], 0
        for text in texts:
            last += bool(text)
            numbers.append(last if text else 0)
        return numbers

    def firmware(self, vendor, version, date):
        v, n, d = self._places(vendor, version, date)
        self.add(0, "BBHBBQHBBBB", (v, n, 0xE000, d, 63, 0x08, 0x0003, 1, 2, 255, 255), (vendor, version, date))

    def system(self, maker, product, version, serial, sku="", family=""):
        texts = (maker, product, version, serial, sku, family)
        m, p, n, s, k, f = self._places(*texts)
        self.add(1, "BBBB16sBBB", (m, p, n, s, bytes(range(0x10, 0x20)), 6, k, f), texts)

    def board(self, maker, product, version, serial):
        texts = (maker, product, version, serial)
        self.add(2, "BBBBBBBHBB", (*self._places(*texts), 0, 0x09, 0, 0, 0x0A, 0), texts)

    def chassis(self, kind, maker, version, serial, asset, boot=3, power=3, thermal=3, security=3):
        """States: 1 other, 2 unknown, 3 safe or none, 4 warning, 5 critical, 6 non-recoverable."""
        texts = (maker, version, serial, asset)
        m, n, s, a = self._places(*texts)
        self.add(3, "BBBBBBBBBIBBBB", (m, kind, n, s, a, boot, power, thermal, security, 0, 2, 1, 0, 0), texts)

    def processor(self, socket, maker, version, identity, family=0x01, max_mhz=3000, mhz=2000, clock_mhz=100, decivolts=11,
                  upgrade=0x15, serial="", asset="", part="", present=True, cores=8, threads=16):
        texts = (socket, maker, version, serial, asset, part)
        s, m, n, r, a, p = self._places(*texts)
        counts = (cores, cores, threads) if self.version >= (3, 0) else ()
        self.add(4, "BBBBQBBHHHBBHHHBBBBBBHH" + "H" * len(counts),
                 (s, 3, min(family, 0xFE), m, identity, n, 0x80 | decivolts if present else 0, clock_mhz, max_mhz, mhz if present else 0,
                  0x41 if present else 0, upgrade, 0xFFFF, 0xFFFF, 0xFFFF, r, a, p, min(cores, 0xFF), min(cores, 0xFF),
                  min(threads, 0xFF), 0x04, family, *counts), texts)

    def memory_array(self, kilobytes, devices, correction=6, location=3, use=3):
        """Returns the handle that its modules name."""
        return self.add(MEMORY_ARRAY, "BBBIHH", (location, use, correction, kilobytes, 0xFFFE, devices))

    def memory_module(self, array, place, bank, megabytes, maker="", serial="", asset="", part="", kind=0x18, mhz=1600, form=9,
                      detail=0x80, millivolts=1100, technology=3):
        """An empty place has no megabytes."""
        texts = (place, bank, maker, serial, asset, part)
        d, b, m, s, a, p = self._places(*texts)
        size, extended = (megabytes, 0) if megabytes < 0x7FFF else (0x7FFF, megabytes)
        newer = (millivolts, millivolts, millivolts, technology, 8, 0, 0x2C80, 0, 0, 0, 0, megabytes << 20, 0, 0, 0, 0)
        newer = newer if self.version >= (3, 3) else ()
        self.add(17, "HHHHHBBBBBHHBBBBBIH" + ("HHHBHBHHHHQQQQII" if newer else ""),
                 (array, 0xFFFE, 72 if megabytes else 0, 64 if megabytes else 0, size, form, 0, d, b, kind if megabytes else 2,
                  detail, mhz if megabytes else 0, m, s, a, p, 2 if megabytes else 0, extended, mhz if megabytes else 0, *newer), texts)

    def hardware_security(self, settings=0x00):
        """Two bits each, from the top: power-on password, keyboard password, administrator password, front panel reset;
        0 disabled, 1 enabled, 2 not implemented, 3 unknown."""
        self.add(24, "B", (settings,))

    def table(self):
        """What was added, and the end-of-table structure behind it."""
        return self.data + struct.pack("<BBHH", END_OF_TABLE, 4, END_OF_TABLE << 8, 0)

    def image(self):
        """The mebibyte of a machine with the older entry point."""
        table = self.table()
        memory = bytearray(IMAGE_SIZE)
        for place, content in ((ENTRY_POINT, entry_point(self.version, len(table), self.count + 1, TABLE)), (TABLE, table)):
            memory[place:place + len(content)] = content
        return bytes(memory)

    def files(self):
        """Absolute paths and contents of the files in which a program finds the tables."""
        entry, table = KERNEL + "smbios_entry_point", KERNEL + "DMI"
        if self.version < (3, 0):
            return {"/dev/mem": self.image(), entry: b"", table: b""}  # empty ones hide those of the host
        return {entry: entry_point(self.version, len(self.table()), 0, 32, wide=True), table: self.table()}
