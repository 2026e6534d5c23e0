"""The tables of state sensors as ipmitool's view of the same controller says that they have to be."""

from hwtools.board import FAN, SENSOR_SPECIFIC, VOLTAGE
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

# In the practical mode a state means the same in every table, but for the few words that stand behind a kind. Nothing at
# all set is well, unless the sensor could say that its device is there.
PRACTICAL = {
    HEALTHY: """Presence detected|Presence Detected|Present|Drive Present|Device Present|Device Installed|Fully Redundant
        State Deasserted|Limit Not Exceeded|Performance Met|Terminator presence detected|Hot Spare|Spare|Spare Device
        Parity Check In Progress|Log area reset/cleared|PEF Action|Power Button pressed|Sleep Button pressed
        Reset Button pressed|FRU Latch|FRU Service|Ready for Device Installation|Absent|13 Device Absent
        Initiated by power up|Predictive Failure Deasserted|Transition to OK|Transition to Running|Device Enabled|Connected
        S0/G0: working|D0 Power State|Active|boot completed - device not specified""",
    WARNING: """Predictive failure|Predictive Failure|8 Config Error|7 Configuration Error|Redundancy Degraded
        Redundancy Degraded from Fully Redundant|Redundancy Degraded from Non-Redundant|Power off/down|Limit Exceeded
        Performance Lags|Throttled|Correctable ECC|Correctable ECC logging limit reached|Memory Device Disabled
        Rebuild In Progress|System unplugged from LAN|Unauthorized dock|Bus Correctable error|Bus Degraded|37 Disabled|Low
        Timer expired|Timer interrupt|Sensor access degraded or unavailable""",
    CRITICAL: """Failure detected|Power Supply AC lost|AC lost|Soft-power control failure|Redundancy Lost
        Non-Redundant: Sufficient from Redundant|Non-Redundant: Sufficient from Insufficient
        Non-Redundant: Insufficient Resources|2 State Asserted|4 State Asserted|7 State Asserted|IERR|Thermal Trip
        FRB1/BIST failure|FRB2/Hang in POST failure|FRB3/Processor startup/init failure
        SM BIOS Uncorrectable CPU-complex Error|7 Disabled|Uncorrectable ECC|Parity|Memory Scrub Failed
        12 Configuration Error|Drive Fault|In Critical Array|In Failed Array|General Chassis intrusion|Drive Bay intrusion
        I/O Card area intrusion|Processor area intrusion|FAN area intrusion|Unknown Error|NMI/Diag Interrupt|Bus Timeout
        I/O Channel check NMI|Software NMI|PCI PERR|PCI SERR|EISA failsafe timeout|Bus Uncorrectable error|Fatal NMI
        Bus Fatal Error|Fault Status|35 Hard reset|35 Power down|35 Power cycle|Failed"""}
PRACTICAL = {word.strip(): status for status, lines in PRACTICAL.items() for line in lines.splitlines()
             for word in line.split("|")}
LEVELS = {"ok": HEALTHY, "nc": WARNING, "cr": CRITICAL, "nr": CRITICAL, "ns": UNAVAILABLE}
PRESENCE = {0x07: 7, 0x08: 0, 0x0C: 6, 0x0D: 0, 0x21: 2, 0x25: 0, 0x29: 2}  # the state of that type that says so
IN_A_TABLE = {*range(1, 6), *range(7, 14), 15, 16, 18, 19, 20, 21, 22, 24, 33, 35, 37, 40, 41, 0xF3}


def practical_status(sensor, state, words):
    """What the row of a sensor has to say of what ipmitool says of it."""
    if sensor["record"] == "full":
        return LEVELS[state[-2:]]
    if sensor["states"] is None or sensor["events"] >= 0x70 and sensor["events"] != SENSOR_SPECIFIC:
        return UNAVAILABLE
    if not words:
        presence = PRESENCE.get(sensor["type"]) if sensor["events"] == SENSOR_SPECIFIC else None
        return UNAVAILABLE if presence is not None and sensor["mask"] >> presence & 1 else HEALTHY
    return max(PRACTICAL.get(f"{sensor['type']} {word}", PRACTICAL.get(word, UNAVAILABLE)) for word in words.split(", "))


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


def parse_elist(text, board):
    """What `ipmitool sdr elist` says of a board's sensors, (state, words) by owner, LUN and number. Several controllers
    have sensors of one number; they are in the order of the records in both."""
    lines = [[cell.strip() for cell in line.split("|")] for line in text.splitlines()]
    said = {}
    for sensor in board.sensors:
        same = [(cells[2], cells[4]) for cells in lines if cells[1] == f"{sensor['number']:02X}h"]
        said[key_of(sensor)] = same[sum(sensor["number"] == number for _, _, number in said)]
    return said


def key_of(sensor):
    return sensor["owner"], sensor["lun"], sensor["number"]


def expected_rows(board, said, prefix, kinds, meaning, extra, practical):
    """Rows of one table, {column name: value}. `said`: what ipmitool says of each sensor."""
    chosen = []
    others = {s["type"] for s in board.sensors} - IN_A_TABLE if practical and prefix == "miscellaneousSensor" else ()
    for types in [*({kind} for kind in kinds), others]:
        same = [s for s in board.sensors if s["type"] in types and not (s["type"] in (VOLTAGE, FAN) and is_linear(s, practical))]
        chosen += sorted(same, key=lambda s: place_of(s, practical))
    if practical:
        chosen.sort(key=lambda s: place_of(s, practical))
    rows = [_expected_row(prefix, sensor, *said[key_of(sensor)], meaning, extra, practical) for sensor in chosen]
    return [{prefix + "Index": place, **row} for place, row in enumerate(rows, 1)]


def place_of(sensor, practical):
    """Rows come in the order of the record names as texts, where SDR[10] stands before SDR[2]; in the practical mode in that
    of the records, in which they are read."""
    return sensor["record_id"] if practical else f"SDR[{sensor['record_id']}]"


def is_linear(sensor, practical):
    """Whether the record's 24th byte says so, which in a compact record is something else. In the practical mode a full
    record has a reading with any curve."""
    if sensor["record"] == "full":
        return practical or not sensor["factors"]["linearisation"]
    return not sensor["share"]


def _expected_row(prefix, sensor, state, words, meaning, extra, practical):
    row = {"DeviceId": sensor["number"] << 16 | sensor["owner"] << 8 | sensor["lun"]}
    if sensor["record"] == "full" and not practical:
        return {prefix + column: content for column, content in row.items()}  # a reading may be here too, but no state
    if practical:
        status, value = practical_status(sensor, state, words), meaning.get(words, (0, None))[1] if extra else None
        value = 6 if extra and meaning is REDUNDANCY and SUFFICIENT in words else value
    else:
        status, value = meaning[words] if extra else (meaning[words], None)
    row |= {"Description": sensor["name"]} if not practical else {}
    row |= {"StatusString": WORD[status], "Status": status}
    row |= {extra: value} if value is not None and words else {}
    row |= {"Caption": "Group for cooling unit table"} if prefix == "coolingUnit" else {}
    return {prefix + column: content for column, content in row.items()}


def compare_states(test, board, elist, read_rows, practical):
    """Fails `test` for each row of the tables of states that is not as `ipmitool sdr elist` has it. `read_rows` gives the
    rows of a MibObject."""
    said = parse_elist(elist, board)
    for table, prefix, kinds, meaning, extra in TABLES:
        expected = expected_rows(board, said, prefix, kinds, meaning, extra, practical)
        found = read_rows(find_object(table))
        test.assertGreater(len(expected), 0, table)
        test.assertEqual(len(found), len(expected), table)
        for want, got in zip(expected, found):
            with test.subTest(table=table, sensor=got[prefix + "Description"]):
                test.assertEqual({column: got.get(column) for column in want}, want)
