"""The tables of state sensors as ipmitool's view of the same controller says that they have to be."""

from hwtools.board import FAN, VOLTAGE
from hwtools.mibtable import find_object

UNAVAILABLE, HEALTHY, WARNING, CRITICAL = 1, 2, 3, 4
WORD = {UNAVAILABLE: "Unavailable", HEALTHY: "Healthy", WARNING: "Warning", CRITICAL: "Critical"}
MET, LAGGING = 1, 2
PRESENT, ABSENT = "Device Inserted/Present", "Device Removed/Absent"

SUPPLY = {"": UNAVAILABLE, "Presence detected": HEALTHY, "Failure detected": CRITICAL, "Predictive failure": WARNING,
          "Power Supply AC lost": WARNING, "Config Error": WARNING,
          "Presence detected, Failure detected": CRITICAL, "Presence detected, Predictive failure": WARNING,
          "Presence detected, Power Supply AC lost": WARNING,
          "Failure detected, Power Supply AC lost": WARNING}  # the input comes last and overwrites

SUFFICIENT, INSUFFICIENT = "Non-Redundant: Sufficient from Redundant", "Non-Redundant: Insufficient Resources"
REDUNDANCY = {"": (UNAVAILABLE, 2), "Fully Redundant": (HEALTHY, 3), "Redundancy Lost": (CRITICAL, 5),
              "Redundancy Degraded": (WARNING, 4), SUFFICIENT: (UNAVAILABLE, 2),  # its text is in no list of words
              "Non-Redundant: Sufficient from Insufficient": (CRITICAL, 6), INSUFFICIENT: (CRITICAL, 6),
              "Redundancy Degraded from Fully Redundant": (WARNING, 4),
              "Redundancy Degraded from Non-Redundant": (WARNING, 4),
              f"Redundancy Lost, {SUFFICIENT}": (WARNING, 5), f"Redundancy Lost, {INSUFFICIENT}": (CRITICAL, 6),
              "Fully Redundant, Redundancy Degraded": (WARNING, 4),
              "Power off/down": (UNAVAILABLE, 2), "AC lost": (UNAVAILABLE, 2),
              "Soft-power control failure": (UNAVAILABLE, 2)}

REGULATOR = {"State Deasserted": (HEALTHY, MET), "State Asserted": (CRITICAL, LAGGING),
             "Limit Not Exceeded": (HEALTHY, MET), "Limit Exceeded": (CRITICAL, LAGGING),
             "Performance Met": (HEALTHY, MET), "Performance Lags": (CRITICAL, LAGGING)}

# a fan by itself is never critical: only the loss of a group's redundancy is
FAN_STATE = {"Device Absent": (HEALTHY, LAGGING), "Device Present": (HEALTHY, MET), "Performance Met": (HEALTHY, MET),
             "Performance Lags": (HEALTHY, LAGGING), "State Deasserted": (HEALTHY, MET),
             "State Asserted": (HEALTHY, LAGGING), "Fully Redundant": (HEALTHY, MET),
             "Redundancy Lost": (HEALTHY, LAGGING), "Redundancy Degraded": (WARNING, MET),
             f"Redundancy Lost, {SUFFICIENT}": (WARNING, LAGGING), f"Redundancy Lost, {INSUFFICIENT}": (CRITICAL, LAGGING)}

BAY = {"": (UNAVAILABLE, WORD[UNAVAILABLE]), "Drive Present": (HEALTHY, PRESENT), "Drive Present, Drive Fault": (CRITICAL, PRESENT),
       "Drive Present, Hot Spare": (HEALTHY, PRESENT), "Device Absent": (HEALTHY, ABSENT), "Device Present": (HEALTHY, PRESENT),
       "Predictive Failure": (UNAVAILABLE, WORD[UNAVAILABLE])}  # its text speaks of power supplies
BAY |= {word: (HEALTHY, WORD[UNAVAILABLE]) for word in ("Hot Spare", "Parity Check In Progress")}
BAY |= {word: (CRITICAL, WORD[UNAVAILABLE]) for word in ("Drive Fault", "In Critical Array", "In Failed Array",
                                                         "Rebuild In Progress")}

# Most states of processors and memory have texts that their lists of words do not know: no status, and a word behind
# them that is known decides alone.
PROCESSOR = {word: UNAVAILABLE for word in ("", "IERR", "Thermal Trip", "FRB1/BIST failure", "FRB2/Hang in POST failure",
                                            "FRB3/Processor startup/init failure", "Configuration Error",
                                            "SM BIOS Uncorrectable CPU-complex Error", "Disabled",
                                            "Terminator presence detected", "State Asserted")}
PROCESSOR |= {word: HEALTHY for word in ("Presence detected", "Throttled", "Thermal Trip, Presence detected",
                                         "Presence detected, Throttled", "State Deasserted")}
MEMORY = {word: UNAVAILABLE for word in ("", "Correctable ECC", "Uncorrectable ECC", "Parity", "Memory Scrub Failed",
                                         "Memory Device Disabled", "Correctable ECC logging limit reached",
                                         "Presence Detected", "Correctable ECC, Presence Detected",
                                         "Configuration Error")}
MEMORY |= {word: HEALTHY for word in ("Spare", "Correctable ECC, Spare")}

MISCELLANEOUS = {
    UNAVAILABLE: ("", "State Asserted", "Unknown Error", "Log area reset/cleared", "PEF Action", "Power Button pressed",
                  "Sensor access degraded or unavailable", "I/O Card area intrusion"),
    HEALTHY: ("State Deasserted", "Sleep Button pressed", "Reset Button pressed", "FRU Latch", "FRU Service",
              "Device Installed", "Ready for Device Installation", "Spare Device", "Timer expired", "Hard reset",
              "Power down", "Power cycle", "Timer interrupt", "Present", "Absent", "Disabled", "Presence Detected"),
    WARNING: ("General Chassis intrusion", "Drive Bay intrusion", "Processor area intrusion", "System unplugged from LAN",
              "Unauthorized dock", "FAN area intrusion", "NMI/Diag Interrupt", "Bus Timeout", "I/O Channel check NMI",
              "Software NMI", "EISA failsafe timeout", "Bus Correctable error", "Bus Degraded", "Low",
              "Low, Presence Detected"),
    CRITICAL: ("PCI PERR", "PCI SERR", "Bus Uncorrectable error", "Fatal NMI", "Bus Fatal Error", "Failed", "Fault Status",
               "PCI PERR, Bus Correctable error")}
MISCELLANEOUS = {word: status for status, words in MISCELLANEOUS.items() for word in words}

# table, prefix of its columns, sensor types in the order of the rows, what ipmitool's words mean, name of a fifth column
TABLES = (("powerSupplyTable", "powerSupply", (0x08,), SUPPLY, None),
          ("powerUnitTable", "powerUnit", (0x09,), REDUNDANCY, "RedundancyStatus"),
          ("coolingUnitTable", "coolingUnit", (0x0A,), REDUNDANCY, "RedundancyStatus"),
          ("discreteVoltageProbeTable", "discreteVoltage", (VOLTAGE,), REGULATOR, "Performance"),
          ("discreteCoolingDeviceTable", "discreteCooling", (FAN,), FAN_STATE, "Performance"),
          ("driveSlotPresenceSensorTable", "driveSlot", (0x0D,), BAY, "PresenceStatusString"),
          ("discreteProcessorTable", "discreteProcessor", (0x07,), PROCESSOR, None),
          ("discreteMemoryTable", "discreteMemory", (0x0C,), MEMORY, None),
          ("miscellaneousSensorTable", "miscellaneousSensor",
           (0x05, 0x0B, 0x0F, 0x10, 0x12, 0x13, 0x14, 0x15, 0x16, 0x18, 0x21, 0x23, 0x25, 0x28, 0x29, 0xF3),
           MISCELLANEOUS, None))


def parse_elist(text):
    """The last column of `ipmitool sdr elist`, what it says of a sensor, by the sensor's name."""
    lines = [[cell.strip() for cell in line.split("|")] for line in text.splitlines()]
    return {cells[0]: cells[4] for cells in lines}


def expected_rows(board, words, prefix, kinds, meaning, extra):
    """Rows of one table, {column name: value}. `words`: what ipmitool says of each sensor, by name."""
    rows = []
    for kind in kinds:
        chosen = [s for s in board.sensors if s["type"] == kind and not (kind in (VOLTAGE, FAN) and _is_linear(s))]
        # rows come in the order of the record names as texts, where SDR[10] stands before SDR[2]
        chosen.sort(key=lambda s: f"SDR[{s['record_id']}]")
        rows += [_expected_row(prefix, sensor, words[sensor["name"]], meaning, extra) for sensor in chosen]
    return [{prefix + "Index": place, **row} for place, row in enumerate(rows, 1)]


def _is_linear(sensor):
    """Whether the record's 24th byte says so, which in a compact record is something else."""
    return not (sensor["factors"]["linearisation"] if sensor["record"] == "full" else sensor["share"])


def _expected_row(prefix, sensor, words, meaning, extra):
    row = {"DeviceId": sensor["number"] << 16 | sensor["owner"] << 8 | sensor["lun"], "Description": sensor["name"]}
    if sensor["record"] != "full":  # a reading has its place here too when its kind or its curve wants it, but no state
        status, value = meaning[words] if extra else (meaning[words], None)
        row |= {"StatusString": WORD[status], "Status": status}
        row |= {extra: value} if extra else {}
        row |= {"Caption": "Group for cooling unit table"} if prefix == "coolingUnit" else {}
    return {prefix + column: content for column, content in row.items()}


def compare_states(test, board, elist, read_rows):
    """Fails `test` for each row of the tables of states that is not as `ipmitool sdr elist` has it. `read_rows` gives the
    rows of a MibObject."""
    words = parse_elist(elist)
    for table, prefix, kinds, meaning, extra in TABLES:
        expected = expected_rows(board, words, prefix, kinds, meaning, extra)
        found = read_rows(find_object(table))
        test.assertGreater(len(expected), 0, table)
        test.assertEqual(len(found), len(expected), table)
        for want, got in zip(expected, found):
            with test.subTest(table=table, sensor=want[prefix + "Description"]):
                test.assertEqual({column: got.get(column) for column in want}, want)
