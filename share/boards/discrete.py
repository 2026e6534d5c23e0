"""Sensors that report states, of every family that has a table: each state of each family by itself, no state, and the
pairs that mean more than their parts."""

from hwtools.board import FAN, SENSOR_SPECIFIC, VOLTAGE, Board

STATE, LIMIT, PERFORMANCE, PRESENCE, REDUNDANCY = 0x03, 0x05, 0x06, 0x08, 0x0B
PROCESSOR, SUPPLY, POWER_UNIT, COOLING_UNIT, MEMORY, DRIVE = 0x07, 0x08, 0x09, 0x0A, 0x0C, 0x0D

board = Board("discrete")

FAMILIES = (  # name, sensor type, reading type, states that the sensors have
    ("Supply", SUPPLY, SENSOR_SPECIFIC, ([], [0], [1], [2], [3], [6], [0, 1], [0, 2], [0, 3], [1, 3])),
    ("Unit", POWER_UNIT, REDUNDANCY, ([], *([bit] for bit in range(8)), [1, 3], [1, 5], [0, 2])),
    ("Unit Event", POWER_UNIT, SENSOR_SPECIFIC, ([0], [4])),
    ("Fans", COOLING_UNIT, REDUNDANCY, ([], *([bit] for bit in range(8)), [1, 3], [1, 5])),
    ("VR Hot", VOLTAGE, STATE, ([0], [1])),
    ("VR Limit", VOLTAGE, LIMIT, ([0], [1])),
    ("VR Work", VOLTAGE, PERFORMANCE, ([0], [1])),
    ("Fan There", FAN, PRESENCE, ([0], [1])),
    ("Fan Work", FAN, PERFORMANCE, ([0], [1])),
    ("Fan State", FAN, STATE, ([0], [1])),
    ("Fan Red", FAN, REDUNDANCY, ([0], [1], [2], [1, 3], [1, 5])),
    ("Bay", DRIVE, SENSOR_SPECIFIC, ([], *([bit] for bit in range(8)), [0, 1], [0, 3])),
    ("Bay There", DRIVE, PRESENCE, ([0], [1])),
    ("Socket", PROCESSOR, SENSOR_SPECIFIC, ([], *([bit] for bit in range(11)), [1, 7], [7, 10])),
    ("Socket Hot", PROCESSOR, STATE, ([0], [1])),
    ("Module", MEMORY, SENSOR_SPECIFIC, ([], *([bit] for bit in range(9)), [0, 8], [8])),
    ("Lid", 0x05, SENSOR_SPECIFIC, ([], *([bit] for bit in range(7)))),
    ("Other", 0x0B, STATE, ([0], [1])),
    ("Firmware", 0x0F, SENSOR_SPECIFIC, ([0],)),
    ("Log", 0x10, SENSOR_SPECIFIC, ([2],)),
    ("System", 0x12, SENSOR_SPECIFIC, ([4],)),
    ("Bus", 0x13, SENSOR_SPECIFIC, ([], *([bit] for bit in range(12)), [4, 7])),
    ("Button", 0x14, SENSOR_SPECIFIC, tuple([bit] for bit in range(5))),
    ("Card", 0x15, STATE, ([0],)),
    ("Controller", 0x16, STATE, ([0],)),
    ("Chassis", 0x18, STATE, ([1],)),
    ("Slot", 0x21, SENSOR_SPECIFIC, ([0], [2], [3], [9])),
    ("Watchdog", 0x23, SENSOR_SPECIFIC, ([0], [1], [2], [3], [8])),
    ("Entity", 0x25, SENSOR_SPECIFIC, ([0], [1], [2])),
    ("Subsystem", 0x28, SENSOR_SPECIFIC, ([0],)),
    ("Cell", 0x29, SENSOR_SPECIFIC, ([0], [1], [2], [0, 2])),
    ("Private", 0xF3, STATE, ([0], [1])),
    ("No Table", 0x1D, SENSOR_SPECIFIC, ([0],)))

number = 0
for name, kind, events, sensors in FAMILIES:
    for place, states in enumerate(sensors):
        number += 1
        board.discrete(number, kind, f"{name} {place}", states, events=events, entity=(7, number % 0x60))
# a record whose 24th byte says "linear" has its place among the readings
board.discrete(number + 1, FAN, "Fan In Readings", [1], events=PERFORMANCE, share=0)
