"""Values of SMBIOS structures against dmidecode's reading of the same dump, code by code and version by version."""

import random
import re
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import build_folder
from hwtools.smbios import entry_point

VALUES = build_folder() / "tests" / "protocol" / "smbios_values"
VERSIONS = [(2, 3), (2, 4), (2, 5), (2, 6), (2, 7), (2, 8), (3, 0)]
OUT_OF_SPEC = "<OUT OF SPEC>"
TEXT = object()  # a string field


def dump(version, structures):
    """Entry point and table as `dmidecode --dump-bin` writes them. A structure: type and (width, value) pairs."""
    return image(version, b"".join(laid_out(handle, *each) for handle, each in enumerate(structures)), len(structures))


def laid_out(handle, kind, fields):
    body, strings = b"", b""
    for number, (width, value) in enumerate(fields):
        if width is TEXT:
            strings += (value or f"text {number}").encode() + b"\0"
            value, width = strings.count(b"\0"), 1
        body += (value & (1 << 8 * width) - 1).to_bytes(width, "little")
    return struct.pack("<BBH", kind, 4 + len(body), handle) + body + (strings or b"\0") + b"\0"


def image(version, table, count, wide=False):
    """The same of structures that are bytes, behind an entry point of 32 or 64 bits."""
    return entry_point(version, len(table), count, 32, wide).ljust(32, b"\0") + table


def read_with_dmidecode(path):
    """For each type, a list of {label: text}, the lines of a list joined."""
    found = {}
    output = subprocess.run(["dmidecode", "--from-dump", path], capture_output=True, check=True).stdout.decode("latin-1")
    for block in output.split("Handle 0x")[1:]:
        kind = int(re.search(r"DMI type (\d+)", block)[1])
        labels = re.findall(r"^\t([^\t:]+):(.*(?:\n\t\t.*)*)", block, re.M)
        found.setdefault(kind, []).append({label: text.strip().replace("\n\t\t", "; ") for label, text in labels})
    return found


def read_with_reader(path, *mode):
    output = subprocess.run([VALUES, *mode, path], capture_output=True, check=True).stdout.decode("latin-1")
    return dict(line.split("\t", 1) for line in output.split("\n") if "\t" in line)


SPELLINGS = [("gen ", ""), ("6 and beyond", "6+"), ("- 66mhz capable", "66"), (" slot", ""), ("vl-vesa", "vlb"),
             ("type iii-he", "type iii"), ("non-volatile ram", "non volatile memory"), ("blade enclosing", "blade enclosure"), ("optane dc", "optane")]


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


def unless_unknown(convert):
    return lambda text: text if text == "Unknown" else convert(text)


def scaled(scale):
    return unless_unknown(lambda text: round(float(text.split()[0]) * scale))


# How both say the same: what makes a thing to compare of our text, and of dmidecode's.
HOW = {"": (lambda ours: ours or "Not Specified", str),
       "~": (plain, plain),
       "#": (int, first_number),
       "@hex": (int, lambda theirs: int(theirs, 0)),
       "@id": (lambda ours: ours[2:].upper(), lambda theirs: theirs.replace(" ", "")),
       "@kilobytes": (kilobytes, kilobytes),
       "@capacity": (int, kilobytes),
       "@bytes": (lambda ours: int(ours) >> 10, kilobytes),
       "@portion": (unless_unknown(lambda ours: int(ours) << 10),
                    unless_unknown(lambda theirs: 0 if theirs == "None" else kilobytes(theirs))),
       "@voltage": (first_number, scaled(1000)),
       "@thousandths": (unless_unknown(int), scaled(1000)),
       "@tenths": (unless_unknown(int), scaled(10)),
       "@speed": (lambda ours: 0 if ours == "Unknown" else int(ours), first_number),
       "@last": (plain, lambda theirs: plain(theirs.split(", ")[-1])),
       "@mode": (lambda ours: ours == "Supported", lambda theirs: "Volatile memory" in theirs)}


def pairs(text):
    """(field, label, the two of HOW) of a list of fields with the mark of HOW in front. Labels are the names of the fields
    in words unless another one stands behind "="."""
    for item in re.split(", ", " ".join(text.split())):
        how, field, label = re.fullmatch(r"(~|#|@\w+(?= )|) ?([^=]+)=?(.*)", item).groups()
        words = re.sub("(?<=[a-z])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", " ", field.rsplit("/", 1)[-1])
        yield field, label or words, HOW[how]


# Per type: the fields that make a structure for code c, and what both say of them.
SHAPES = {
    0: (lambda c: [(TEXT, 0), (TEXT, 0), (2, 0xE000), (TEXT, 0), (1, c), (8, 8), (1, 0), (1, 0), (1, c), (1, 7), (1, c), (1, 3), (2, 16)], """
        Vendor, BIOSVersion=Version, BIOSReleaseDate=Release Date, @kilobytes BIOSRomSize=ROM Size"""),
    1: (lambda c: [(TEXT, 0), (TEXT, 0), (TEXT, 0), (TEXT, 0), (16, int.from_bytes(bytes(range(c % 200, c % 200 + 16)), "big")),
                   (1, c % 9), (TEXT, 0), (TEXT, 0)], """
        Manufacturer, ProductName, SerialNo=Serial Number, UUID, ~WakeUpType=Wake-up Type, SKUNumber, Family"""),
    2: (lambda c: [(TEXT, 0)] * 5 + [(1, c), (TEXT, 0), (2, c), (1, c), (1, 0)], """
        Product=Product Name, AssetTag, LocationInChassis, ~BoardType=Type, @hex ChassisHandle"""),
    3: (lambda c: [(TEXT, 0), (1, c), (TEXT, 0), (TEXT, 0), (TEXT, 0), (1, c), (1, c), (1, c), (1, c), (4, c << 20),
                   (1, c | 1), (1, c | 1), (1, 1), (1, 3), (3, 0x8A), (TEXT, 0)], """
        Manufacturer, ~ChassisType=Type, ChassisLock=Lock, AssetTagNo=Asset Tag, ~BootupState=Boot-up State, ~ThermalState,
        ~PowerSupplyState, ~SecurityStatus, @hex OEMDefined=OEM Information, #Height, #NumOfPowerCords=Number Of Power Cords,
        SKUNumber"""),
    4: (lambda c: [(TEXT, 0), (1, c), (1, c), (TEXT, 0), (8, 0x1122334455667700 | c), (TEXT, 0), (1, c | 0x80), (2, c + 1),
                   (2, 9 * c + 1), (2, 8 * c + 1), (1, c), (1, c), (2, 0xFFFF), (2, 0xFFFF), (2, 0xFFFF), (TEXT, 0), (TEXT, 0),
                   (TEXT, 0), *[(1, c | 1)] * 3, (2, c << 2), (2, 0x100 + c), *[(2, c | 1)] * 3], """
        SocketDesignation, ~ProcessorType=Type, ~ProcessorFamily=Family, ProcessorManufacturer=Manufacturer, @id
        ProcessorId=ID, @voltage VoltageCapability=Voltage, #ClockFrequency=External Clock, #MaxSpeed, #CurrentSpeed, ~Status,
        ~Upgrade, AssetTag, PartNumber, #CoreCount, #CoreEnabled, #ThreadCount"""),
    7: (lambda c: [(TEXT, 0), (2, c << 2 | 1), (2, (c & 0x80) << 8 | c << 2), (2, c << 4 | 1), (2, 1), (2, 2),
                   (1, c | 1), (1, c), (1, c), (1, c), (4, (c & 0x80) << 24 | c << 2), (4, c << 4 | 1)], """
        SocketDesignation, ~CacheConfiguration/OperationalMode, ~CacheConfiguration/Location, @kilobytes InstalledSize,
        @kilobytes MaximumCacheSize=Maximum Size, #CacheSpeed=Speed, ~ErrorCorrectionType, ~SystemCacheType=System Type,
        ~Associativity"""),
    8: (lambda c: [(TEXT, 0), (1, c), (TEXT, 0), (1, c), (1, c)], """
        InternalReferenceDesignator, ~InternalConnectorType, ~ExternalConnectorType, ~PortType"""),
    9: (lambda c: [(TEXT, 0), (1, c), (1, 2), (1, c), (1, c), (2, c), (1, 4), (1, 1), (2, 0), (1, c), (1, 8)], """
        SlotDesignation=Designation, ~SlotType=Type, ~CurrentUsage"""),
    16: (lambda c: [(1, c), (1, c), (1, c), (4, c + 1 << 10), (2, 0xFFFE), (2, c)], """
        ~Location, ~Use, ~MemoryErrorCorrection=Error Correction Type, @capacity MaxCapacity=Maximum Capacity,
        #NumMemoryDevices=Number Of Devices"""),
    17: (lambda c: [(2, 0x1000), (2, 0xFFFE), (2, 72), (2, 64), (2, 0x7FFF if c % 2 else c + 1), (1, c), (1, 0), (TEXT, 0), (TEXT, 0),
                    (1, c), (2, c << 1), (2, c + 1), (TEXT, 0), (TEXT, 0), (TEXT, 0), (TEXT, 0), (1, 2), (4, c + 1 << 10), (2, c + 2), (2, 1100), (2, 1200), (2, c + 1),
                    (1, c), (2, c << 1), (TEXT, 0), (8, 0), (8, c << 30), (8, -1), (8, 0), (8, 0), (4, 0), (4, 0)], """
        #TotalWidth, #DataWidth, @portion Size, ~FormFactor, DeviceLocator=Locator, BankLocator, ~MemoryType=Type, #Speed,
        Manufacturer, SerialNo=Serial Number, PartNumber, #Attributes=Rank, #ConfiguredMemoryClockSpeed=Configured Memory
        Speed, @thousandths MinimumVoltage, @thousandths MaximumVoltage, @thousandths ConfiguredVoltage, ~MemoryTechnology,
        FirmwareVersion, @mode OperatingModes/Volatile memory=Memory Operating Mode Capability, @portion
        NonVolatileSize=Non-Volatile Size, @portion VolatileSize, @portion LogicalSize"""),
    18: (lambda c: [(1, c), (1, c), (1, c), (4, 0), (4, c), (4, c), (4, c)], """
        ~ErrorType=Type, ~ErrorGranularity=Granularity, ~ErrorOperation=Operation, @hex MemoryArrayErrorAddress=Memory Array
        Address"""),
    24: (lambda c: [(1, c)], """
        ~HardwareSecuritySettings/PowerOnPassword=Power-On Password Status,
        ~HardwareSecuritySettings/KeyboardPassword=Keyboard Password Status,
        ~HardwareSecuritySettings/AdministratorPassword=Administrator Password Status,
        ~HardwareSecuritySettings/FrontPanelReset=Front Panel Reset Status"""),
    38: (lambda c: [(1, c), (1, 0x15), (1, 0x20), (1, 0xFF), (8, 0xCA3), (1, 0), (1, 0)], """
        ~InterfaceType, IPMISpecRev=Specification Version"""),
}


def probe(unit):
    return (lambda c: [(TEXT, 0), (1, c), (2, c << 7), (2, c << 8), (2, c), (2, c + 1), (2, c + 2), (4, c), (2, c << 6)], f"""
        Description, ~Location, ~Status, @{unit} MaximumValue, @{unit} MinimumValue, @{unit} NominalValue, @{unit} Tolerance""")


# What only the practical mode tells.
NEWER = {
    26: probe("thousandths"),
    27: (lambda c: [(2, c), (1, c), (1, c + 1), (4, c), (2, c << 8), (TEXT, 0)], """
        ~DeviceType=Type, ~Status, @speed NominalSpeed, Description"""),
    28: probe("tenths"),
    29: probe("thousandths"),
    32: (lambda c: [(6, 0), (1, c % 9)], """
        ~BootStatus=Status"""),
    39: (lambda c: [(1, c + 1), *[(TEXT, 0)] * 7, (2, (c << 8) + 1), (2, c << 7 | c << 3 & 0x78 | 2 | c % 2 << 2)], """
        Location, DeviceName=Name, Manufacturer, SerialNo=Serial Number, AssetTag, ModelPartNumber, RevisionLevel=Revision,
        #MaxPowerCapacity, @last Status, ~SupplyType=Type, ~InputVoltageRangeSwitching"""),
    41: (lambda c: [(TEXT, 0), (1, c), (1, c), (2, c), (1, c), (1, 9)], """
        ReferenceDesignation, ~DeviceType=Type, DeviceStatus=Status, #DeviceTypeInstance=Type Instance"""),
    43: (lambda c: [(4, 0x004D5441 + c % 8), (1, 2), (1, 0), (4, c), (4, 0), (TEXT, 0), (8, 8), (4, 0)], """
        VendorID, Description"""),
    45: (lambda c: [(TEXT, 0), (TEXT, 0), (1, 0), (TEXT, 0), (1, 0), *[(TEXT, 0)] * 3, (8, c + 1 << 10), (2, c), (1, c), (1, 0)], """
        ComponentName=Firmware Component Name, Version=Firmware Version, FirmwareID, ReleaseDate, Manufacturer,
        LowestSupportedVersion=Lowest Supported Firmware Version, ~State, @bytes ImageSize"""),
}
ALL_SHAPES = {kind: (build, list(pairs(text))) for kind, (build, text) in (SHAPES | NEWER).items()}
# Codes that the older catalogues leave as bytes are words in dmidecode, which knows no versions.
NEWEST = (2, 7)

# Machines of three generations: year, version, the form of the entry point, then type and formatted area of each structure,
# numbers by their count of digits and texts in quotes.
GENERATIONS = (
    ("2007", (2, 4), False, """
     4 'CPU 1' 03 B3 'Lakeside Silicon' BFEBFBFF000006F6 'K4 3.0GHz' 8C 014D 0BB8 0BB8 41 14 0700 FFFF FFFF 00 00 'LK4'
     7 'L2' 0181 1000 1000 0002 0002 00 05 05 08
     16 03 03 06 02000000 FFFE 0008
     17 1000 FFFE 0048 0040 0800 09 01 'A 1' 'Branch 0' 13 0080 029B 'Lakeside Memory' '0001' 'T1' 'LM-2G'"""),
    ("2018", (3, 2), True, """
     4 'CPU 1' 03 FE 'Lakeside Silicon' 178BFBFF00830F10 'K8 2.2GHz' 8B 0064 0D16 08CA 41 37 0700 0701 0702 00 00 'LK8' 40 40 80
         00FC 006B 0040 0040 0080
     7 'L3' 0182 FFFF FFFF 0001 0001 00 06 05 08 80040000 80040000
     16 03 03 06 80000000 FFFE 0020 0000080000000000
     17 1000 FFFE 0048 0040 7FFF 09 01 'P0 A' 'Node 0' 1A 2080 0C80 'Lakeside Memory' '0004' 'T4' 'LM-64G' 02 00010000 0BA6 04B0
         04B0 04B0 03 0008 'F1' CE80 0000 0000 0000 *8 0000001000000000 *8 *8
     17 1000 FFFE 0048 0040 7FFF 09 01 'P0 B' 'Node 0' 1F 3080 0A66 'Lakeside Memory' '0005' 'T5' 'LM-NV' 01 0001F800 0A66 04B0
         04B0 04B0 07 0018 'F2' 8980 0000 8980 0000 0000001F80000000 *8 *8 0000001F80000000"""),
    ("2025", (3, 7), True, """
     0 'Lakeside' 'F7' 0000 '01/02/2025' FF 0000000000000008 03 0D 07 01 FF FF 0020
     4 'CPU 1' 03 FE 'Lakeside Silicon' BFEBFBFF000C06F2 'K9 2.4GHz' 8B 0064 0ED8 0960 41 3F 0700 0701 0702 00 00 'LK9' FF FF FF
         00FC 0101 0120 0120 0240 0240
     7 'L3' 0182 FFFF FFFF 0001 0001 00 06 05 0D 00780000 00780000
     9 'NVMe 1' BF 02 04 05 0001 04 09 0000 21 00 0B 00
     16 03 03 06 80000000 FFFE 0020 0000100000000000
     17 1000 FFFE 0050 0040 7FFF 09 01 'P0 A' 'Node 0' 22 2080 FFFF 'Lakeside Memory' '0006' 'T6' 'LM-256G' 02 00040000 FFFF
         044C 044C 044C 03 0008 'F3' CE80 0000 0000 0000 *8 0000004000000000 *8 *8 00012110 00011F40 CE80 0001 CE80 0002
     17 1000 FFFE 0400 0400 4000 10 01 'HBM 0' 'Node 0' 21 0080 0C80 'Lakeside Memory' '0007' 'T7' 'LM-HBM' 01 00000000 0C80
         04B0 04B0 04B0 03 0008 00 CE80 0000 0000 0000 *8 0000000400000000 *8 *8 00000000 00000000"""))


def structures(text):
    """The structures of a generation as the fields of `dump`."""
    for line in re.split(r"\n {5}(?! )", text.strip()):
        words = re.findall(r"'[^']*'|\S+", line)
        yield int(words[0]), [(TEXT, word.strip("'")) if "'" in word else (int(word[1:]), 0) if word[0] == "*"
                              else (len(word) // 2, int(word, 16)) for word in words[1:]]


class ValuesAgainstDmidecode(unittest.TestCase):
    def read_both(self, content, *mode):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "dump")
            path.write_bytes(content)
            return read_with_dmidecode(path), read_with_reader(path, *mode)

    def compare(self, version, kind, codes, *mode):
        """Returns how many values were compared."""
        theirs, ours = self.read_both(dump(version, [(kind, ALL_SHAPES[kind][0](code)) for code in codes]), *mode)
        self.assertEqual(len(theirs[kind]), len(codes))
        return self.compare_values(version, kind, theirs[kind], ours, mode)

    def compare_values(self, version, kind, theirs, ours, mode):
        compared = 0
        for number, block in enumerate(theirs, 1):
            for field, label, (of_ours, of_theirs) in ALL_SHAPES[kind][1]:
                name = f"/SMBIOS/Type{kind}[{number}]/{field}" if len(theirs) > 1 else f"/SMBIOS/Type{kind}/{field}"
                expected, value = block.get(label), ours.get(name)
                if value is None or expected is None:
                    continue  # test_every_pair_is_told holds both to telling it
                with self.subTest(version=version, mode=mode, path=name, dmidecode=expected, value=value):
                    if OUT_OF_SPEC in expected:
                        if not mode:  # there are newer words than dmidecode's
                            self.assertRegex(value, "^0X|Unknown|Reserved")
                    elif not (version < NEWEST and value.startswith("0X") and of_theirs is plain):
                        self.assertEqual(of_ours(value), of_theirs(expected))
                        compared += 1
        return compared

    def test_every_code_of_the_newest_catalogues(self):
        for version, shapes, mode in (((3, 0), SHAPES, ()), ((3, 7), ALL_SHAPES, ("practical",))):
            for kind in shapes:
                self.assertGreater(self.compare(version, kind, range(256), *mode), 250)

    def test_every_version(self):
        for version in VERSIONS:
            for kind in SHAPES:
                self.assertGreater(self.compare(version, kind, [1, 3, 4, 0x42]), 0)

    def test_machines_of_three_generations(self):
        for year, version, wide, text in GENERATIONS:
            table = [laid_out(0x1000 if kind == 16 else 0x700 + i, kind, fields)
                     for i, (kind, fields) in enumerate(structures(text))]
            theirs, ours = self.read_both(image(version, b"".join(table), len(table), wide), "practical")
            compared = sum(self.compare_values(version, kind, blocks, ours, "practical") for kind, blocks in theirs.items())
            told = sum(label in block for kind, blocks in theirs.items() for block in blocks for _, label, _ in ALL_SHAPES[kind][1])
            self.assertEqual(compared, told, year)

    def test_spoilt_tables_are_walked_in_step(self):
        """Structures behind a spoilt one are lost only where dmidecode loses them too; a last one that is cut off may stay."""
        for seed in range(60):
            spoil = random.Random(seed)
            kinds = spoil.choices(list(SHAPES), k=30)
            table = bytearray(dump((2, 7), [(kind, SHAPES[kind][0](seed)) for kind in kinds]))
            for _ in range(1 + seed % 4):
                place = spoil.randrange(32, len(table))
                table[place] = 0 if seed % 2 else spoil.randrange(256)
            theirs, ours = self.read_both(table)
            for kind in SHAPES:
                several = [name for name in ours if re.fullmatch(rf"/SMBIOS/Type{kind}\[\d+\]", name)]
                with self.subTest(seed=seed, type=kind):
                    count, blocks = len(several) or int(f"/SMBIOS/Type{kind}" in ours), theirs.get(kind, [])
                    self.assertIn(count, (len(blocks), len([b for b in blocks if b])))

    def test_every_pair_is_told(self):
        for kind, (build, pairs) in ALL_SHAPES.items():
            theirs, ours = self.read_both(dump((3, 7), [(kind, build(0x41))]), "practical")
            for field, label, _ in pairs:
                self.assertIn(label, theirs[kind][0])
                self.assertIn(f"/SMBIOS/Type{kind}/{field}", ours)
