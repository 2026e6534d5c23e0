"""All tables of sensors beside FreeIPMI's view of the same controller: a second opinion, of gravity too."""

from lib.sensors import GROUPS
from lib.states import TABLES, WORD

STATUS = {"N/A": 1, "Nominal": 2, "Warning": 3, "Critical": 4}
ANALOG = {group.prefix: group for group in GROUPS}
PREFIXES = {group.table: group.prefix for group in GROUPS} | {row[0]: row[1] for row in TABLES}

# Where the gravity is another one on purpose: FreeIPMI's, ours, its words. What may fail later or is switched off is no
# failure yet; who opens a latch or removes a drive means to; a sensor that could say "present" and does not has no device.
ELSEWISE = """
Critical Warning  Predictive Failure|Presence detected' 'Predictive Failure|Configuration error|Configuration Error|Limit Exceeded|Performance Lags
Critical Warning  Memory Device Disabled|LAN Leash Lost|Unauthorized dock|Entity Disabled|sensor access degraded or unavailable
Critical Healthy  Device Removed/Device Absent|Terminator Presence Detected|Entity Absent
Critical Unavailable  Device Removed/Device Absent
Warning Critical  State Asserted|Software NMI
Warning Healthy  FRU latch open|FRU service request button|boot completed - boot device not specified
Nominal Warning  Power Off/Power Down|Rebuild/Remap in progress
Nominal Unavailable  OK|OEM Event = 0000h
"""


def _elsewise():
    return {(theirs, ours, word) for line in ELSEWISE.strip().splitlines() for theirs, ours, words in [line.split(maxsplit=2)]
            for word in words.split("|")}


def compare_opinions(test, simulator, read_rows):
    """Fails `test` for a reading that FreeIPMI has otherwise, and for a status other than its own that is not listed above;
    of what it does not judge, the agent may say more."""
    said = simulator.ipmi_sensors()
    record = {sensor["number"] << 16 | sensor["owner"] << 8 | sensor["lun"]: sensor["record_id"] for sensor in simulator.board.sensors}
    rows = 0
    for table, prefix in PREFIXES.items():
        for row in read_rows(table):
            state, reading, words = said[record[row[prefix + "DeviceId"]]]
            status = row[prefix + "Status"]
            with test.subTest(table=table, sensor=row[prefix + "Description"]):
                if STATUS[state] not in (1, status):
                    test.assertIn((state, WORD[status], words), _elsewise())
                if prefix in ANALOG and reading is not None:
                    scale = ANALOG[prefix].factor * ANALOG[prefix].unit
                    test.assertAlmostEqual(row[prefix + "Reading"] / scale, reading, delta=0.005 + 1 / ANALOG[prefix].factor)
            rows += 1
    test.assertGreater(rows, 0)
