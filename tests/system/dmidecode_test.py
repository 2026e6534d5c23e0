"""Values of SMBIOS structures against dmidecode's reading of the same dump, code by code and version by version."""

import random
import re
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import build_folder

VALUES = build_folder() / "tests" / "protocol" / "smbios_values"
VERSIONS = [(2, 3), (2, 4), (2, 5), (2, 6), (2, 7), (2, 8), (3, 0)]
OUT_OF_SPEC = "<OUT OF SPEC>"
TEXT = object()  # a string field


def dump(version, structures):
    """Entry point and table as `dmidecode --dump-bin` writes them. A structure: type and (width, value) pairs."""
    table = b""
    for handle, (kind, fields) in enumerate(structures):
        body, strings = b"", b""
        for number, (width, value) in enumerate(fields):
            if width is TEXT:
                strings += f"text {number}\0".encode()
                value, width = strings.count(b"\0"), 1
            body += (value & (1 << 8 * width) - 1).to_bytes(width, "little")
        table += struct.pack("<BBH", kind, 4 + len(body), handle) + body + (strings or b"\0") + b"\0"
    entry = bytearray(b"_SM_\0\x1f" + bytes(version) + bytes(8) + b"_DMI_\0"
                      + struct.pack("<HIHB", len(table), 32, len(structures), version[0] << 4 | version[1]))
    entry[21] = -sum(entry[16:]) & 0xFF
    entry[4] = -sum(entry) & 0xFF
    return bytes(entry) + b"\0" + table


def read_with_dmidecode(path):
    """For each type, a list of {label: text}, the lines of a list joined."""
    found = {}
    output = subprocess.run(["dmidecode", "--from-dump", path], capture_output=True, check=True).stdout.decode("latin-1")
    for block in output.split("Handle 0x")[1:]:
        kind = int(re.search(r"DMI type (\d+)", block)[1])
        labels = re.findall(r"^\t([^\t:]+):(.*(?:\n\t\t.*)*)", block, re.M)
        found.setdefault(kind, []).append({label: text.strip().replace("\n\t\t", "; ") for label, text in labels})
    return found


def read_with_reader(path):
    output = subprocess.run([VALUES, path], capture_output=True, check=True).stdout.decode("latin-1")
    return dict(line.split("\t", 1) for line in output.split("\n") if "\t" in line)


SPELLINGS = [("gen ", ""), ("6 and beyond", "6+"), ("- 66mhz capable", "66"), (" slot", ""), ("vl-vesa", "vlb"),
             ("type iii-he", "type iii"), ("non-volatile ram", "non volatile memory"), ("blade enclosing", "blade enclosure")]


def plain(text):
    """Words without case, marks, explanations and the spellings in which both differ on purpose."""
    text = re.sub(r" ?\(.*\)|:.*", "", text.lower())
    for one, other in SPELLINGS:
        text = text.replace(one, other)
    return re.sub(r"[^a-z0-9+]", "", text)


def first_number(text):
    return int(re.search(r"\d+", text)[0]) if re.search(r"\d", text) else 0


def kilobytes(text):
    number, unit = text.split()[:2]
    return int(number) << {"bytes": -10, "kB": 0, "KB": 0, "MB": 10, "GB": 20, "TB": 30}[unit]


# Per type: the fields that make a structure for code c, and what both say: field, label, how the two are compared.
SAME = (lambda ours: ours, lambda theirs: theirs)
WORDS = (plain, plain)
NUMBER = (int, first_number)
KILOBYTES = (kilobytes, kilobytes)
SHAPES = {
    0: (lambda c: [(TEXT, 0), (TEXT, 0), (2, 0xE000), (TEXT, 0), (1, c), (8, 8), (1, 0), (1, 0), (1, c), (1, 7), (1, c), (1, 3)],
        [("Vendor", "Vendor", SAME), ("BIOSVersion", "Version", SAME), ("BIOSReleaseDate", "Release Date", SAME),
         ("BIOSRomSize", "ROM Size", KILOBYTES)]),
    1: (lambda c: [(TEXT, 0), (TEXT, 0), (TEXT, 0), (TEXT, 0), (16, int.from_bytes(bytes(range(c % 200, c % 200 + 16)), "big")),
                   (1, c % 9), (TEXT, 0), (TEXT, 0)],
        [("Manufacturer", "Manufacturer", SAME), ("ProductName", "Product Name", SAME), ("SerialNo", "Serial Number", SAME),
         ("UUID", "UUID", SAME), ("WakeUpType", "Wake-up Type", WORDS), ("SKUNumber", "SKU Number", SAME),
         ("Family", "Family", SAME)]),
    2: (lambda c: [(TEXT, 0)] * 5 + [(1, c), (TEXT, 0), (2, c), (1, c), (1, 0)],
        [("Product", "Product Name", SAME), ("AssetTag", "Asset Tag", SAME), ("LocationInChassis", "Location In Chassis", SAME),
         ("BoardType", "Type", WORDS), ("ChassisHandle", "Chassis Handle", (int, lambda text: int(text, 0)))]),
    3: (lambda c: [(TEXT, 0), (1, c), (TEXT, 0), (TEXT, 0), (TEXT, 0), (1, c), (1, c), (1, c), (1, c), (4, c << 20),
                   (1, c | 1), (1, c | 1), (1, 1), (1, 3), (3, 0x8A), (TEXT, 0)],
        [("Manufacturer", "Manufacturer", SAME), ("ChassisType", "Type", WORDS), ("ChassisLock", "Lock", SAME),
         ("AssetTagNo", "Asset Tag", SAME), ("BootupState", "Boot-up State", WORDS), ("ThermalState", "Thermal State", WORDS),
         ("PowerSupplyState", "Power Supply State", WORDS), ("SecurityStatus", "Security Status", WORDS),
         ("OEMDefined", "OEM Information", (int, lambda text: int(text, 0))), ("Height", "Height", NUMBER),
         ("NumOfPowerCords", "Number Of Power Cords", NUMBER), ("SKUNumber", "SKU Number", SAME)]),
    4: (lambda c: [(TEXT, 0), (1, c), (1, c), (TEXT, 0), (8, 0x1122334455667700 | c), (TEXT, 0), (1, c | 0x80), (2, c + 1),
                   (2, 9 * c + 1), (2, 8 * c + 1), (1, c), (1, c), (2, 0xFFFF), (2, 0xFFFF), (2, 0xFFFF), (TEXT, 0), (TEXT, 0),
                   (TEXT, 0), (1, c | 1), (1, c | 1), (1, c | 1), (2, c << 2), (2, 0x100 + c)],
        [("SocketDesignation", "Socket Designation", SAME), ("ProcessorType", "Type", WORDS), ("ProcessorFamily", "Family", WORDS),
         ("ProcessorManufacturer", "Manufacturer", SAME),
         ("ProcessorId", "ID", (lambda ours: ours[2:].upper(), lambda text: text.replace(" ", ""))),
         ("VoltageCapability", "Voltage", (first_number, lambda text: round(float(text.split()[0]) * 1000))),
         ("ClockFrequency", "External Clock", NUMBER), ("MaxSpeed", "Max Speed", NUMBER), ("CurrentSpeed", "Current Speed", NUMBER),
         ("Status", "Status", WORDS), ("Upgrade", "Upgrade", WORDS), ("AssetTag", "Asset Tag", SAME),
         ("PartNumber", "Part Number", SAME), ("CoreCount", "Core Count", NUMBER), ("CoreEnabled", "Core Enabled", NUMBER),
         ("ThreadCount", "Thread Count", NUMBER)]),
    7: (lambda c: [(TEXT, 0), (2, c << 2 | 1), (2, (c & 0x80) << 8 | c << 2), (2, c << 4 | 1), (2, 1), (2, 2),
                   (1, c | 1), (1, c), (1, c), (1, c)],
        [("SocketDesignation", "Socket Designation", SAME), ("CacheConfiguration/OperationalMode", "Operational Mode", WORDS),
         ("CacheConfiguration/Location", "Location", WORDS), ("InstalledSize", "Installed Size", KILOBYTES),
         ("MaximumCacheSize", "Maximum Size", KILOBYTES), ("CacheSpeed", "Speed", NUMBER),
         ("ErrorCorrectionType", "Error Correction Type", WORDS), ("SystemCacheType", "System Type", WORDS),
         ("Associativity", "Associativity", WORDS)]),
    8: (lambda c: [(TEXT, 0), (1, c), (TEXT, 0), (1, c), (1, c)],
        [("InternalReferenceDesignator", "Internal Reference Designator", SAME),
         ("InternalConnectorType", "Internal Connector Type", WORDS), ("ExternalConnectorType", "External Connector Type", WORDS),
         ("PortType", "Port Type", WORDS)]),
    9: (lambda c: [(TEXT, 0), (1, c), (1, 2), (1, c), (1, c), (2, c), (1, 4), (1, 1), (2, 0), (1, c), (1, 8)],
        [("SlotDesignation", "Designation", SAME), ("SlotType", "Type", WORDS), ("CurrentUsage", "Current Usage", WORDS)]),
    16: (lambda c: [(1, c), (1, c), (1, c), (4, c + 1 << 10), (2, 0xFFFE), (2, c)],
         [("Location", "Location", WORDS), ("Use", "Use", WORDS), ("MemoryErrorCorrection", "Error Correction Type", WORDS),
          ("MaxCapacity", "Maximum Capacity", (int, kilobytes)), ("NumMemoryDevices", "Number Of Devices", NUMBER)]),
    17: (lambda c: [(2, 0x1000), (2, 0xFFFE), (2, 72), (2, 64), (2, 0x7FFF if c % 2 else c + 1), (1, c), (1, 0), (TEXT, 0), (TEXT, 0),
                    (1, c), (2, c << 1), (2, c + 1), (TEXT, 0), (TEXT, 0), (TEXT, 0), (TEXT, 0), (1, 2), (4, c + 1 << 10), (2, c + 2)],
         [("TotalWidth", "Total Width", NUMBER), ("DataWidth", "Data Width", NUMBER),
          ("Size", "Size", (lambda ours: int(ours) << 10, kilobytes)), ("FormFactor", "Form Factor", WORDS),
          ("DeviceLocator", "Locator", SAME), ("BankLocator", "Bank Locator", SAME), ("MemoryType", "Type", WORDS),
          ("Speed", "Speed", NUMBER), ("Manufacturer", "Manufacturer", SAME), ("SerialNo", "Serial Number", SAME),
          ("PartNumber", "Part Number", SAME), ("Attributes", "Rank", NUMBER)]),
    18: (lambda c: [(1, c), (1, c), (1, c), (4, 0), (4, c), (4, c), (4, c)],
         [("ErrorType", "Type", WORDS), ("ErrorGranularity", "Granularity", WORDS), ("ErrorOperation", "Operation", WORDS),
          ("MemoryArrayErrorAddress", "Memory Array Address", (int, lambda text: int(text, 0)))]),
    24: (lambda c: [(1, c)],
         [("HardwareSecuritySettings/PowerOnPassword", "Power-On Password Status", WORDS),
          ("HardwareSecuritySettings/KeyboardPassword", "Keyboard Password Status", WORDS),
          ("HardwareSecuritySettings/AdministratorPassword", "Administrator Password Status", WORDS),
          ("HardwareSecuritySettings/FrontPanelReset", "Front Panel Reset Status", WORDS)]),
    38: (lambda c: [(1, c), (1, 0x15), (1, 0x20), (1, 0xFF), (8, 0xCA3), (1, 0), (1, 0)],
         [("InterfaceType", "Interface Type", WORDS), ("IPMISpecRev", "Specification Version", SAME)]),
}
# Codes that the older catalogues leave as bytes are words in dmidecode, which knows no versions.
NEWEST = (2, 7)


class ValuesAgainstDmidecode(unittest.TestCase):
    def compare(self, version, kind, codes):
        """Returns how many values were compared."""
        build, pairs = SHAPES[kind]
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "dump")
            path.write_bytes(dump(version, [(kind, build(code)) for code in codes]))
            theirs, ours = read_with_dmidecode(path)[kind], read_with_reader(path)
        self.assertEqual(len(theirs), len(codes))
        compared = 0
        for number, code in enumerate(codes):
            for field, label, (of_ours, of_theirs) in pairs:
                name = f"/SMBIOS/Type{kind}[{number + 1}]/{field}" if len(codes) > 1 else f"/SMBIOS/Type{kind}/{field}"
                expected, value = theirs[number].get(label), ours.get(name)
                if value is None or expected is None:
                    continue  # test_every_pair_is_told holds both to telling it
                with self.subTest(version=version, path=name, code=hex(code), dmidecode=expected, value=value):
                    if OUT_OF_SPEC in expected:
                        self.assertRegex(value, "^0X|Unknown|Reserved")
                    elif not (version < NEWEST and value.startswith("0X") and of_theirs is plain):
                        self.assertEqual(of_ours(value), of_theirs(expected))
                        compared += 1
        return compared

    def test_every_code_of_the_newest_catalogue(self):
        for kind in SHAPES:
            self.assertGreater(self.compare((3, 0), kind, range(256)), 250)

    def test_every_version(self):
        for version in VERSIONS:
            for kind in SHAPES:
                self.assertGreater(self.compare(version, kind, [1, 3, 4, 0x42]), 0)

    def test_spoilt_tables_are_walked_in_step(self):
        """Structures behind a spoilt one are lost only where dmidecode loses them too; a last one that is cut off may stay."""
        for seed in range(60):
            spoil = random.Random(seed)
            kinds = spoil.choices(list(SHAPES), k=30)
            table = bytearray(dump((2, 7), [(kind, SHAPES[kind][0](seed)) for kind in kinds]))
            for _ in range(1 + seed % 4):
                place = spoil.randrange(32, len(table))
                table[place] = 0 if seed % 2 else spoil.randrange(256)
            with tempfile.TemporaryDirectory() as folder:
                path = Path(folder, "dump")
                path.write_bytes(table)
                theirs, ours = read_with_dmidecode(path), read_with_reader(path)
            for kind in SHAPES:
                several = [name for name in ours if re.fullmatch(rf"/SMBIOS/Type{kind}\[\d+\]", name)]
                with self.subTest(seed=seed, type=kind):
                    count, blocks = len(several) or int(f"/SMBIOS/Type{kind}" in ours), theirs.get(kind, [])
                    self.assertIn(count, (len(blocks), len([b for b in blocks if b])))

    def test_every_pair_is_told(self):
        for kind, (build, pairs) in SHAPES.items():
            with tempfile.TemporaryDirectory() as folder:
                path = Path(folder, "dump")
                path.write_bytes(dump((2, 7), [(kind, build(0x41))]))
                theirs, ours = read_with_dmidecode(path)[kind][0], read_with_reader(path)
            for field, label, _ in pairs:
                self.assertIn(label, theirs)
                self.assertIn(f"/SMBIOS/Type{kind}/{field}", ours)


if __name__ == "__main__":
    unittest.main()
