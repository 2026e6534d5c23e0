"""The server of the quick start: two sockets, five blowers, two supplies, eight drive bays. Most of it is well; an air
duct runs warm, a blower slow, one supply has lost its mains and one bay reports a fault."""

from hwtools.board import CURRENT, FAN, TEMPERATURE, TWOS, VOLTAGE, Board

INTRUSION, PROCESSOR, SUPPLY, POWER_UNIT, COOLING_UNIT, MEMORY, DRIVE_BAY = 5, 7, 8, 9, 10, 12, 13
EVENT_LOG, CRITICAL_INTERRUPT, BUTTON, WATCHDOG, BATTERY = 16, 19, 20, 35, 41
DIGITAL, PERFORMANCE, PRESENCE, REDUNDANCY = 0x03, 0x06, 0x08, 0x0B  # generic event types

board = Board("quickstart")
board.controller_locator(0x20, "Heron BMC")
board.fru_locator(0, "Heron Mainboard")

# temperatures, one count a degree
for number, name, raw, limits, entity in (
        (0x01, "Inlet Air", 23, dict(lnc=6, lc=2, unc=38, uc=43), (55, 1)),
        (0x02, "Outlet Air", 74, dict(unc=70, uc=80), (55, 2)),  # above its warning bound
        (0x03, "Socket 0 Die", 58, dict(unc=88, uc=96), (3, 1)),
        (0x04, "Socket 1 Die", 61, dict(unc=88, uc=96), (3, 2)),
        (0x05, "Memory Bank A", 41, dict(unc=82, uc=90, unr=100), (32, 1)),
        (0x06, "Memory Bank B", 43, dict(unc=82, uc=90, unr=100), (32, 2))):
    board.analog(number, TEMPERATURE, name, raw, "degrees C", thresholds=limits, entity=entity)
board.analog(0x07, TEMPERATURE, "Dock Air", 0xF5, "degrees C", m=5, r_exp=-1, format=TWOS,  # -5.5 degrees
             thresholds=dict(lnc=0xE0, unc=0x3C), entity=(7, 2))

# voltages in millivolts a count
for number, name, raw, m, limits in (
        (0x10, "P12V Main", 187, 64, dict(lnc=175, lc=171, unc=200, uc=204)),
        (0x11, "P5V Logic", 200, 25, dict(lnc=188, lc=184, unc=212, uc=216)),
        (0x12, "P3V3 Stby", 194, 17, dict(lnc=185, lc=180, unc=204, uc=209)),
        (0x13, "P1V05 Core", 105, 10, dict(lc=98, uc=112)),
        (0x14, "P3V Cell", 176, 17, dict(lnc=165, lc=153))):
    board.analog(number, VOLTAGE, name, raw, "Volts", m=m, r_exp=-3, thresholds=limits)
board.discrete(0x15, VOLTAGE, "VTT Good", [0], events=DIGITAL)

# currents, a tenth of an ampere a count
board.analog(0x18, CURRENT, "Supply A Output", 64, "Amps", r_exp=-1, thresholds=dict(unc=180, uc=190), entity=(10, 1))
board.analog(0x19, CURRENT, "Supply B Output", 0, "Amps", r_exp=-1, thresholds=dict(unc=180, uc=190), entity=(10, 2))

# blowers, 60 revolutions a minute a count; the fourth runs below its warning bound
for place, raw in enumerate((88, 90, 87, 28, 91), 1):
    board.analog(0x20 + place, FAN, f"Blower {place}", raw, "RPM", m=60, thresholds=dict(lnc=30, lc=20), entity=(29, place))
board.discrete(0x28, FAN, "Blower 5 Present", [1], events=PRESENCE, entity=(29, 5))
board.discrete(0x29, COOLING_UNIT, "Blower Redund", [0], events=REDUNDANCY, entity=(30, 1))

# states
board.discrete(0x30, SUPPLY, "Supply A", [0], entity=(10, 1))
board.discrete(0x31, SUPPLY, "Supply B", [0, 3], entity=(10, 2))
board.discrete(0x32, POWER_UNIT, "Supply Redund", [1], events=REDUNDANCY, entity=(19, 1))
board.discrete(0x33, INTRUSION, "Lid", [])
board.discrete(0x34, PROCESSOR, "Socket 0", [7], entity=(3, 1))
board.discrete(0x35, PROCESSOR, "Socket 1", [7], entity=(3, 2))
board.discrete(0x36, MEMORY, "SLOT A0", [6], entity=(32, 1))
board.discrete(0x37, MEMORY, "SLOT B0", [6], entity=(32, 2))
for bay in range(8):
    board.discrete(0x40 + bay, DRIVE_BAY, f"Bay {bay}", [0, 1] if bay == 3 else [0], entity=(4, bay + 1))
board.discrete(0x50, EVENT_LOG, "Event Log", [])
board.discrete(0x51, BUTTON, "Front Buttons", [])
board.discrete(0x52, WATCHDOG, "Host Watchdog", [])
board.discrete(0x53, BATTERY, "Clock Cell", [2], entity=(40, 1))
board.event_only(0x54, CRITICAL_INTERRUPT, "Bus Faults")

board.fru(0, chassis=(0x11, "HN-CH-200", "HN-C-7741"),
          board=(13140000, "Lakeside Works", "HN-MB-200", "HN-B-0815", ("HN-200-3", "6bit"), ""),
          product=("Lakeside Works", "Heron 200", "HN-200", "A1", "HN-P-4711", "RACK-07-U12", ""))

firmware = board.smbios
firmware.firmware("Lakeside Works", "HN.2.04", "03/18/2024")
firmware.system("Lakeside Works", "Heron 200", "A1", "HN-P-4711", family="Heron")
firmware.board("Lakeside Works", "HN-MB-200", "A", "HN-B-0815")
firmware.chassis(0x17, "Lakeside Works", "A1", "HN-C-7741", "RACK-07-U12")
for socket in (0, 1):
    firmware.processor(f"Socket {socket}", "Lakeside Silicon", "Lakeside K8 2.0GHz", 0xBFEBFBFF000306F2 + socket,
                       part="LK8-2000")
array = firmware.memory_array(kilobytes=64 << 20, devices=4)
for place, megabytes in (("A0", 16384), ("A1", 0), ("B0", 16384), ("B1", 0)):
    firmware.memory_module(array, f"Slot {place}", f"Bank {place[0]}", megabytes, "Lakeside Memory", f"LM-00{place}", "M-" + place,
                           "LM-16G-1600")
firmware.hardware_security(0b00_01_00_10)

MORNING = 1714550400  # 2024-05-01 08:00 UTC
board.threshold_event(MORNING, 0x02, TEMPERATURE, 7, 71, 70)
board.threshold_event(MORNING + 90, 0x24, FAN, 0, 29, 30)
board.event(MORNING + 100, 0x31, SUPPLY, 3)
board.event(MORNING + 101, 0x32, POWER_UNIT, 1, events=REDUNDANCY)
board.event(MORNING + 200, 0x33, INTRUSION, 0)
board.event(MORNING + 260, 0x33, INTRUSION, 0, deassertion=True)
board.event(MORNING + 300, 0x43, DRIVE_BAY, 1)
