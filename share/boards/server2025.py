"""A server of 2025 in which all is well: two sockets of 64 cores, twelve fans, two supplies, hot-swap bays and NVMe slots
behind two satellites, a sensor of each discrete type that is common. The only thing that is missing is a drive in the last
NVMe slot. Names have sixteen characters, and some have them all alike."""

from hwtools.board import CURRENT, FAN, TEMPERATURE, VOLTAGE, Board

DIGITAL, PREDICTIVE, LIMIT, PERFORMANCE, SEVERITY, PRESENCE, ENABLED, AVAILABILITY, REDUNDANCY, POWER_STATE = (
    0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C)
SPECIFIC = 0x6F
BACKPLANE, RISER = 0x24, 0x26
BOARD, CPU, BAY, SUPPLY, MEMORY, FAN_ENTITY, NVME = 7, 3, 4, 10, 32, 29, 11

board = Board("server2025", firmware=(3, 0x12), product=0x0725)
board.satellite(BACKPLANE)
board.satellite(RISER)
for address, name in ((0x20, "Osprey BMC"), (BACKPLANE, "Front Backplane"), (RISER, "Riser Control")):
    board.controller_locator(address, name)
board.fru_locator(0, "Osprey Mainboard")

numbers = {owner: iter(range(1, 255)) for owner in (0x20, BACKPLANE, RISER)}


def analog(kind, name, raw, unit, limits, entity, owner=0x20, **factors):
    board.analog(next(numbers[owner]), kind, name, raw, unit, thresholds=limits, entity=entity, owner=owner, **factors)


def discrete(kind, name, states, events=SPECIFIC, entity=(BOARD, 1), owner=0x20, mask=0x7FFF):
    board.discrete(next(numbers[owner]), kind, name, states, events=events, entity=entity, owner=owner, mask=mask)


HOT = dict(unc=85, uc=95)
for place, (name, raw) in enumerate((("Inlet Temp", 22), ("Outlet Temp", 38), ("PCH Temp", 47), ("BMC Temp", 44)), 1):
    analog(TEMPERATURE, name, raw, "degrees C", HOT, (55, place))
for socket in (1, 2):
    analog(TEMPERATURE, f"CPU{socket} Temp", 60 + socket, "degrees C", HOT, (CPU, socket))
    for place, bank in enumerate("ABCDEFGH", 8 * socket - 7):
        analog(TEMPERATURE, f"P{socket} DIMM{bank} Temp", 40, "degrees C", HOT, (MEMORY, place))
    for place in (1, 2, 3):
        analog(TEMPERATURE, "CPU VRM Temp", 50 + place, "degrees C", HOT, (BOARD, 3 * socket + place))
for place, (name, raw, factor, low, high) in enumerate((
        ("12V Main Standby", 200, 60, 180, 220), ("5V Standby Rail", 200, 25, 180, 220), ("3.3V Standby AUX", 194, 17, 180, 210),
        ("RTC Battery Cell", 176, 17, 150, 210)), 1):
    analog(VOLTAGE, name, raw, "Volts", dict(lc=low, uc=high), (BOARD, place), m=factor, r_exp=-3)
for place in range(1, 5):  # alike but for the entity's instance
    analog(VOLTAGE, "MB 1.35 P1 LOW A", 135, "Volts", dict(lc=125, uc=145), (BOARD, 0x10 + place), m=10, r_exp=-3)
for socket in (1, 2):
    for rail, raw in (("VCORE Phase Sum", 95), ("VDDQ CH ABCDEF", 110), ("VCCIN AUX Input", 180), ("VNN PCIe Lane", 100)):
        analog(VOLTAGE, f"{rail}{socket}", raw, "Volts", dict(lc=raw - 10, uc=raw + 10), (CPU, socket), m=10, r_exp=-3)
for supply in (1, 2):
    analog(TEMPERATURE, f"PSU{supply} Temp", 41, "degrees C", HOT, (SUPPLY, supply))
    analog(VOLTAGE, f"PSU{supply} Input Volt", 230, "Volts", dict(lc=180, uc=250), (SUPPLY, supply))
    analog(CURRENT, f"PSU{supply} Output Amp", 42, "Amps", dict(unc=160, uc=180), (SUPPLY, supply))
    analog(0x0B, f"PSU{supply} Input Power", 90, "Watts", dict(unc=230), (SUPPLY, supply), m=5)
    discrete(0x08, f"PSU{supply} Status", [0], entity=(SUPPLY, supply))
for fan in range(1, 13):
    analog(FAN, f"SYS FAN {fan}", 120 + fan, "RPM", dict(lnc=30, lc=20), (FAN_ENTITY, fan), m=70)
    discrete(FAN, f"SYS FAN {fan} Here", [1], PRESENCE, (FAN_ENTITY, fan), mask=3)
discrete(0x0A, "Fan Redundancy", [0], REDUNDANCY, (30, 1), mask=0xFF)
discrete(0x09, "PSU Redundancy", [0], REDUNDANCY, (19, 1), mask=0xFF)
discrete(0x09, "Power Unit State", [], entity=(19, 1), mask=0x00FF)

# One of each common kind. An empty list: all is well, and no state says so.
for name, kind, events, states, mask in (
        ("CPU1 Status", 0x07, SPECIFIC, [7], 0x7FF), ("CPU2 Status", 0x07, SPECIFIC, [7], 0x7FF),
        ("CPU1 Prochot", 0x07, DIGITAL, [0], 3), ("CPU2 Prochot", 0x07, DIGITAL, [0], 3),
        ("CPU CATERR", 0x07, DIGITAL, [0], 3), ("CPU1 Therm Trip", 0x01, DIGITAL, [0], 3),
        ("Air Flow Limit", 0x01, LIMIT, [0], 3), ("VR Watchdog", VOLTAGE, LIMIT, [0], 3),
        ("VR Power Good", VOLTAGE, DIGITAL, [0], 3), ("VR Working", VOLTAGE, PERFORMANCE, [0], 3),
        ("P1 Memory ECC", 0x0C, SPECIFIC, [], 0x3F), ("P2 Memory ECC", 0x0C, SPECIFIC, [], 0x3F),
        ("P1 DIMM Thermal", 0x0C, LIMIT, [0], 3), ("Chassis Lid", 0x05, SPECIFIC, [], 0x7F),
        ("Secure Mode", 0x06, SPECIFIC, [], 0x3F), ("POST Error", 0x0F, SPECIFIC, [], 0x07),
        ("System Event Log", 0x10, SPECIFIC, [], 0x3F), ("System Event", 0x12, SPECIFIC, [], 0x3F),
        ("Critical NMI", 0x13, SPECIFIC, [], 0x7FF), ("Front Button", 0x14, SPECIFIC, [], 0x1F),
        ("Riser Card", 0x15, DIGITAL, [0], 3), ("Micro Controller", 0x16, AVAILABILITY, [0], 0x1FF),
        ("Add In Card", 0x17, ENABLED, [1], 3), ("Chip Set", 0x19, SPECIFIC, [], 3), ("Data Cable", 0x1B, SPECIFIC, [0], 3),
        ("Restart Cause", 0x1D, SPECIFIC, [], 0xFF), ("Boot Error", 0x1E, SPECIFIC, [], 0x1F),
        ("OS Boot", 0x1F, SPECIFIC, [6], 0x3FF), ("OS Stop", 0x20, SPECIFIC, [], 0x3F),
        ("ACPI State", 0x22, SPECIFIC, [0], 0x7FFF), ("Host Watchdog", 0x23, SPECIFIC, [], 0x10F),
        ("Platform Alert", 0x24, SPECIFIC, [], 0x0F), ("Riser Presence", 0x25, SPECIFIC, [0], 7),
        ("LAN Heartbeat", 0x27, SPECIFIC, [], 3), ("BMC Health", 0x28, SPECIFIC, [], 0x3F),
        ("Clock Battery", 0x29, SPECIFIC, [2], 7), ("Session Audit", 0x2A, SPECIFIC, [], 0x0F),
        ("Version Change", 0x2B, SPECIFIC, [], 0xFF), ("Module FRU State", 0x2C, SPECIFIC, [4], 0xFF),
        ("Node Sleep State", 0x09, POWER_STATE, [0], 0x0F), ("Drive Predict", 0x0D, PREDICTIVE, [0], 3),
        ("Cooling Severity", 0x0A, SEVERITY, [0], 0x1FF),
        ("Maker Own State", 0xC3, 0x72, [], 3)):
    discrete(kind, name, states, events, mask=mask)

for bay in range(1, 9):
    discrete(0x0D, f"Front Bay {bay}", [0], entity=(BAY, bay), owner=BACKPLANE, mask=0x1FF)
for place in (1, 2):
    analog(TEMPERATURE, "Backplane Air", 27, "degrees C", HOT, (15, place), owner=BACKPLANE)
for slot in range(1, 9):
    discrete(0x0D, f"NVMe Slot {slot}", [0] if slot < 8 else [], entity=(NVME, slot), owner=RISER, mask=0x1FF)
    discrete(0x21, f"NVMe Lane {slot}", [2] if slot < 8 else [], entity=(NVME, slot), owner=RISER, mask=0x3FF)
    if slot < 8:
        analog(TEMPERATURE, f"NVMe {slot} Temp", 35 + slot, "degrees C", HOT, (NVME, slot), owner=RISER)

firmware = board.smbios
firmware.version = (3, 7)
firmware.firmware("Lakeside Works", "OS.7.25.1", "02/14/2025")
firmware.system("Lakeside Works", "Osprey 225", "A1", "OS-P-4711", family="Osprey")
firmware.board("Lakeside Works", "OS-MB-225", "A", "OS-B-0815")
firmware.chassis(0x17, "Lakeside Works", "A1", "OS-C-7741", "RACK-09-U14")
for socket in (1, 2):
    firmware.processor(f"CPU {socket}", "Lakeside Silicon", "Lakeside K9 64C 2.4GHz", 0xBFEBFBFF000C06F2, family=0xB3,
                       max_mhz=3800, mhz=2400, upgrade=0x3F, part="LK9-6424", cores=64, threads=128)
array = firmware.memory_array(kilobytes=1 << 30, devices=32)
for place in range(32):  # every second place is empty, the last module is not plain memory
    firmware.memory_module(array, f"P{place // 16 + 1} DIMM {'ABCDEFGH'[place // 2 % 8]}{place % 2 + 1}", f"Node {place // 16}",
                           0 if place % 2 else 65536, "Lakeside Memory", f"LM-{place:04}", part="LM-64G-5600", mhz=5600,
                           kind=0x1F if place == 30 else 0x22, technology=6 if place == 30 else 3)
firmware.hardware_security(0b10_10_10_10)

board.fru(0, chassis=(0x17, "OS-CH-225", "OS-C-7741"),
          board=(15000000, "Lakeside Works", "OS-MB-225", "OS-B-0815", "OS-225-3", ""),
          product=("Lakeside Works", "Osprey 225", "OS-225", "A1", "OS-P-4711", "RACK-09-U14", ""))
