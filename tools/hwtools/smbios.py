"""SMBIOS tables (version 2.7) in an image of the first mebibyte of memory, as firmware leaves them."""

import struct

from .ipmi import checksum

IMAGE_SIZE, ENTRY_POINT, TABLE = 1 << 20, 0xF0000, 0xE0000
VERSION = (2, 7)
MEMORY_ARRAY, END_OF_TABLE = 16, 127


class Tables:
    """Structures in the order in which they are added; a text argument "" stands for a field without a text."""

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
                  upgrade=0x15, serial="", asset="", part="", present=True):
        texts = (socket, maker, version, serial, asset, part)
        s, m, n, r, a, p = self._places(*texts)
        self.add(4, "BBBBQBBHHHBBHHHBBBBBBHH",
                 (s, 3, family, m, identity, n, 0x80 | decivolts if present else 0, clock_mhz, max_mhz, mhz if present else 0,
                  0x41 if present else 0, upgrade, 0xFFFF, 0xFFFF, 0xFFFF, r, a, p, 8, 8, 16, 0x04, family), texts)

    def memory_array(self, kilobytes, devices, correction=6, location=3, use=3):
        """Returns the handle that its modules name."""
        return self.add(MEMORY_ARRAY, "BBBIHH", (location, use, correction, kilobytes, 0xFFFE, devices))

    def memory_module(self, array, place, bank, megabytes, maker="", serial="", asset="", part="", kind=0x18, mhz=1600, form=9,
                      detail=0x80):
        """An empty place has no megabytes."""
        texts = (place, bank, maker, serial, asset, part)
        d, b, m, s, a, p = self._places(*texts)
        size, extended = (megabytes, 0) if megabytes < 0x7FFF else (0x7FFF, megabytes)
        self.add(17, "HHHHHBBBBBHHBBBBBIH",
                 (array, 0xFFFE, 72 if megabytes else 0, 64 if megabytes else 0, size, form, 0, d, b, kind if megabytes else 2,
                  detail, mhz if megabytes else 0, m, s, a, p, 2 if megabytes else 0, extended, mhz if megabytes else 0), texts)

    def hardware_security(self, settings=0x00):
        """Two bits each, from the top: power-on password, keyboard password, administrator password, front panel reset;
        0 disabled, 1 enabled, 2 not implemented, 3 unknown."""
        self.add(24, "B", (settings,))

    def image(self):
        """The mebibyte, with the end-of-table structure behind what was added."""
        table = self.data + struct.pack("<BBHH", END_OF_TABLE, 4, END_OF_TABLE << 8, 0)
        longest = len(table)  # an upper bound of the longest structure
        middle = b"_DMI_" + struct.pack("<BHIHB", 0, len(table), TABLE, self.count + 1, VERSION[0] << 4 | VERSION[1])
        middle = middle[:5] + bytes([checksum(middle)]) + middle[6:]
        head = b"_SM_" + struct.pack("<BBBBHB5s", 0, 0x1F, *VERSION, longest, 0, bytes(5))
        head = head[:4] + bytes([checksum(head + middle)]) + head[5:]
        memory = bytearray(IMAGE_SIZE)
        memory[ENTRY_POINT:ENTRY_POINT + len(head + middle)] = head + middle
        memory[TABLE:TABLE + len(table)] = table
        return bytes(memory)
