"""The four threshold tables as ipmitool's view of the same controller says that they have to be."""

from dataclasses import dataclass

from hwtools.board import CURRENT, FAN, TEMPERATURE, VOLTAGE
from hwtools.ipmi import convert
from hwtools.mibtable import NO_VALUE, find_object

BOUNDS = ("lnr", "lc", "lnc", "unc", "uc", "unr")  # ipmitool's order of columns
COLUMN_OF = {"unr": "UpperNonRecoverableThreshold", "uc": "UpperCriticalThreshold", "unc": "UpperNonCriticalThreshold",
             "lnc": "LowerNonCriticalThreshold", "lc": "LowerCriticalThreshold", "lnr": "LowerNonRecoverableThreshold"}
UNAVAILABLE, HEALTHY, WARNING, CRITICAL = 1, 2, 3, 4
WORD = {UNAVAILABLE: "Unavailable", HEALTHY: "Healthy", WARNING: "Warning", CRITICAL: "Critical"}


@dataclass
class Seen:
    """One line of `ipmitool sensor`; None is its "na"."""
    name: str
    value: float
    bounds: dict


def parse_ipmitool_sensor(text):
    """The lines of `ipmitool sensor`, in the order of the SDRs."""
    def number(cell):
        return None if cell == "na" or cell.startswith("0x") else float(cell)

    seen = []
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.split("|")]
        if len(cells) == 10:
            seen.append(Seen(cells[0], number(cells[1]), dict(zip(BOUNDS, map(number, cells[4:])))))
    return seen


@dataclass
class Group:
    table: str
    prefix: str
    kind: int
    factor: int       # of the value before it is cut to a whole number
    unit: int         # of the whole number when it is shown
    name_length: int
    linear_only: bool


GROUPS = (Group("voltageProbeTable", "voltage", VOLTAGE, 1000, 1, 9, True),
          Group("currentProbeTable", "current", CURRENT, 1000, 1, 511, True),
          Group("temperatureProbeTable", "temperature", TEMPERATURE, 1, 10, 511, False),
          Group("coolingDeviceTable", "coolingDevice", FAN, 1, 1, 511, True))


def shown_names(sensors, length, practical):
    """The names of a table's rows. In the practical mode they are whole, and equal ones have the entity behind them."""
    names = [sensor["name"] for sensor in sensors]
    if not practical:
        return [name[:length] for name in names]
    return [name if names.count(name) == 1 else "{} ({}.{})".format(name, *sensor["entity"])
            for name, sensor in zip(names, sensors)]


def expected_rows(group, board, seen, practical):
    """Rows of one table, {column name: value}, from ipmitool's lines of the board. Only in the practical mode the agent asks
    another LUN than 0; else a sensor there shows what the same number has at LUN 0."""
    lines = {(s["owner"], s["lun"], s["number"]): line for s, line in zip(board.sensors, seen, strict=True)}
    chosen = [(sensor, lines[sensor["owner"], sensor["lun"] if practical else 0, sensor["number"]])
              for sensor in board.sensors
              if sensor["type"] == group.kind and (not group.linear_only or _linear(sensor))]
    # rows come in the order of the record names as texts, where SDR[10] stands before SDR[2]
    chosen.sort(key=lambda pair: f"SDR[{pair[0]['record_id']}]")
    names = shown_names([sensor for sensor, _ in chosen], group.name_length, practical)
    return [_expected_row(group, place, name, *pair) for place, (name, pair) in enumerate(zip(names, chosen), 1)]


def _linear(sensor):
    return sensor["record"] == "full" and sensor["factors"]["linearisation"] == 0


def _expected_row(group, place, name, sensor, line):
    reading = line.value
    if reading is None and sensor["known"]:  # ipmitool hides what is not scanned; the agent shows what the BMC gives
        reading = convert(sensor["factors"], sensor["raw"])
    whole = {key: _whole(group, value) for key, value in line.bounds.items()}
    whole_reading = _whole(group, reading)
    shown = dict(whole)
    if group.kind == FAN:  # the outer bounds of fans are the warning bounds
        shown["unr"], shown["lnr"] = whole["unc"], whole["lnc"]
    status = expected_status(group.kind, whole_reading, whole)
    row = {"Index": place, "DeviceId": sensor["number"] << 16 | sensor["owner"] << 8 | sensor["lun"],
           "Description": name, "Status": status, "StatusString": WORD[status],
           "Reading": _unit(group, whole_reading)}
    row.update({COLUMN_OF[key]: _unit(group, value) for key, value in shown.items()})
    if not sensor["known"]:
        del row["Reading"]  # the controller refuses it: nothing is promised but the state
    return {group.prefix + column: value for column, value in row.items()}


def _whole(group, value):
    return None if value is None else int(round(value * group.factor, 6))


def _unit(group, whole):
    return NO_VALUE if whole is None else whole * group.unit


def expected_status(kind, reading, bounds):
    """State of a sensor by its reading and bounds; a value on a bound is inside of it."""
    usable = {key: value for key, value in bounds.items()
              if value is not None and not (kind == TEMPERATURE and key.startswith("l"))}

    def outside(*keys):
        return any(key in usable and (reading > usable[key] if key.startswith("u") else reading < usable[key]) for key in keys)

    if reading is None or not usable:
        return UNAVAILABLE
    if kind == FAN and outside("unc", "lnc"):  # stands for the outer bounds too, which come first
        return WARNING
    if outside("unr", "lnr", "uc", "lc"):
        return CRITICAL
    return WARNING if outside("unc", "lnc") else HEALTHY


def compare_tables(test, board, sensor_text, read_rows, practical):
    """Fails `test` for each row of the threshold tables that is not as `ipmitool sensor` has it. `read_rows` gives the
    rows of a MibObject. A voltage or current may differ by one count of its last digit, where a value that binary
    fractions cannot hold was cut."""
    seen = parse_ipmitool_sensor(sensor_text)
    for group in GROUPS:
        expected = expected_rows(group, board, seen, practical)
        found = read_rows(find_object(group.table))
        test.assertGreater(len(expected), 0)
        test.assertEqual([row[group.prefix + "DeviceId"] for row in found],
                         [row[group.prefix + "DeviceId"] for row in expected], group.table)
        slack = 1 if group.factor > 1 else 0
        for want, got in zip(expected, found):
            for column, value in want.items():
                with test.subTest(table=group.table, sensor=want[group.prefix + "Description"], column=column):
                    if isinstance(value, str):
                        test.assertEqual(got[column].rstrip(), value.rstrip())
                    else:
                        exact = column.endswith(("Index", "DeviceId", "Status")) or value == NO_VALUE
                        test.assertAlmostEqual(got[column], value, delta=0 if exact else slack)
