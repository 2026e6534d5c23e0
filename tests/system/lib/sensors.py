"""The four threshold tables as ipmitool's view of the same controller says that they have to be."""

from dataclasses import dataclass

from hwtools.board import CURRENT, FAN, TEMPERATURE, VOLTAGE
from hwtools.ipmi import convert
from hwtools.mibtable import NO_VALUE, find_object
from lib.states import is_linear, key_of, parse_elist, place_of, practical_status

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


def expected_rows(group, board, seen, said, practical):
    """Rows of one table, {column name: value}, from ipmitool's lines of the board. Only in the practical mode the agent asks
    another LUN than 0; else a sensor there shows what the same number has at LUN 0."""
    lines = {key_of(sensor): line for sensor, line in zip(board.sensors, seen, strict=True)}
    chosen = [sensor for sensor in board.sensors
              if sensor["type"] == group.kind and (not group.linear_only or is_linear(sensor, practical))]
    chosen.sort(key=lambda sensor: place_of(sensor, practical))
    keys = [(sensor["owner"], sensor["lun"] if practical else 0, sensor["number"]) for sensor in chosen]
    make = _practical_row if practical else _plain_row
    return [_whole_row(group, place, name, sensor, *make(group, sensor, lines[key], said[key]))
            for place, (name, sensor, key) in enumerate(zip(shown_names(chosen, group.name_length, practical), chosen, keys), 1)]


def _practical_row(_, sensor, line, said):
    """(reading, bounds, status): what ipmitool says, and sensors of states have no numbers."""
    status = practical_status(sensor, *said)
    return (line.value, line.bounds, status) if sensor["record"] == "full" else (None, dict.fromkeys(BOUNDS), status)


def _plain_row(group, sensor, line, _):
    reading, bounds = line.value, line.bounds
    if reading is None and sensor["known"]:  # ipmitool hides what is not scanned; the agent shows what the BMC gives
        reading = convert(sensor["factors"], sensor["raw"])
    status = expected_status(group.kind, _whole(group, reading), {key: _whole(group, value) for key, value in bounds.items()})
    if group.kind == FAN:  # the outer bounds of fans are the warning bounds
        bounds = {**bounds, "unr": bounds["unc"], "lnr": bounds["lnc"]}
    return reading, bounds, status


def _whole_row(group, place, name, sensor, reading, bounds, status):
    row = {"Index": place, "DeviceId": sensor["number"] << 16 | sensor["owner"] << 8 | sensor["lun"],
           "Description": name, "Status": status, "StatusString": WORD[status],
           "Reading": _unit(group, _whole(group, reading))}
    row.update({COLUMN_OF[key]: _unit(group, _whole(group, value)) for key, value in bounds.items()})
    if not sensor.get("known", True):
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


def compare_tables(test, board, sensor_text, elist, read_rows, practical):
    """Fails `test` for each row of the threshold tables that is not as `ipmitool sensor` has it, in the
    practical mode its state as `ipmitool sdr elist`. `read_rows` gives the
    rows of a MibObject. A voltage or current may differ by one count of its last digit, where a value that binary
    fractions cannot hold was cut."""
    seen, said = parse_ipmitool_sensor(sensor_text), parse_elist(elist, board)
    for group in GROUPS:
        expected = expected_rows(group, board, seen, said, practical)
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
