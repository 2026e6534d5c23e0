"""Reads the agent's tables with Debian's snmpbulkwalk and prints them for a person."""

import os
import subprocess

from .mibtable import NO_VALUE, OBJECTS, STATUS, dotted

# what a printed number is divided by, its form, and the unit behind it
SCALE = {"mV": (1000, ".3f", "V"), "mA": (1000, ".3f", "A"), "0.1 degrees C": (10, ".1f", "°C"), "MB": (1 << 10, "g", "GB"),
         "kB": (1 << 20, "g", "GB")}
SHORT = {"UpperNonRecoverableThreshold": "unr", "UpperCriticalThreshold": "uc", "UpperNonCriticalThreshold": "unc",
         "LowerNonCriticalThreshold": "lnc", "LowerCriticalThreshold": "lc", "LowerNonRecoverableThreshold": "lnr",
         "StatusString": "status", "Status": "no.", "Index": "row"}
STATUS_COLUMN = 5  # of every table, behind the state in a word
# of use to programs, or what the description says too; a walk shows them
LEFT_OUT = ("DeviceId", "Resolution", "Tolerance", "Accuracy", "Handle", "SocketDesignation", "Locator")
WALK_FORM = ("-On", "-Oe", "-OU", "-Ot")  # numbers only, no units


class SnmpError(Exception):
    """The master agent gave no answer; the text is the command's own."""


def walk(address, oid, community="public", timeout=5):
    """All values below `oid` as {tuple of sub-identifiers below it: int or str}."""
    command = ["snmpbulkwalk", "-v2c", "-c", community, *WALK_FORM, "-Cr25", "-r1", f"-t{timeout}", address, dotted(oid)]
    done = subprocess.run(command, capture_output=True, encoding="latin-1", env=dict(os.environ, MIBS=""))
    if done.returncode:
        raise SnmpError(done.stderr.strip() or done.stdout.strip())
    return parse_walk(done.stdout, oid)


def parse_walk(text, oid):
    """The values of a walk's output, in WALK_FORM, as walk() gives them; lines outside of `oid` are left out."""
    values = {}
    for line in joined(text):
        name, _, value = line.partition(" = ")
        full = tuple(map(int, name.lstrip(".").split(".")))
        if full[:len(oid)] == oid and len(full) > len(oid) and not value.startswith("No "):
            values[full[len(oid):]] = parsed(value)
    return values


def joined(text):
    """Lines of the walk, with texts that go over several lines in one."""
    line = None
    for part in text.splitlines():
        if part.startswith(".1.") and " = " in part:
            if line is not None:
                yield line
            line = part
        elif line is not None:
            line += "\n" + part
    if line is not None:
        yield line


def parsed(value):
    kind, _, rest = value.partition(": ")
    if kind == "INTEGER":
        return int(rest)
    if kind == "Hex-STRING":
        return bytes.fromhex(rest.replace("\n", " ")).decode("latin-1")
    if kind == "STRING":
        return rest[1:-1].replace('\\"', '"').replace("\\\\", "\\")
    return value.strip('"')


def rows(thing, values):
    """Rows of one object from its walk: [{column name: value}]; a scalar group is one row."""
    names = {c.suffix: c.name for c in thing.columns}
    found = {}
    for suffix, value in values.items():
        column, row = (suffix[0], 0) if thing.scalar else (suffix[1], suffix[2])
        found.setdefault(row, {})[names[column]] = value
    return [found[row] for row in sorted(found)]


def read_object(address, thing, **options):
    return rows(thing, walk(address, thing.oid, **options))


def common_prefix(thing):
    """What the columns' names begin with."""
    return os.path.commonprefix([c.name for c in thing.columns])


def shown(column, value):
    """A value for a person; a state is a number where its word stands beside it."""
    if value is None:
        return ""
    if isinstance(value, str):
        return value
    if value == NO_VALUE:
        return "-"
    if column.units in SCALE:
        divisor, form, unit = SCALE[column.units]
        return f"{value / divisor:{form}} {unit}"
    if value in column.values and not (column.values == STATUS and column.suffix == STATUS_COLUMN):
        return f"{column.values[value]}({value})"
    return f"{value} {column.units}".rstrip()


def printed(thing, found):
    """The lines that show one object."""
    heading = f"{thing.name}  .{dotted(thing.oid)}  {thing.title}"
    prefix = common_prefix(thing)
    if thing.scalar:
        width = max(len(c.name) for c in thing.columns) - len(prefix)
        lines = [f"  {c.name.removeprefix(prefix):{width}}  {shown(c, row.get(c.name))}" for row in found for c in thing.columns]
        return [heading, *lines]
    columns = [c for c in thing.columns if c.name.removeprefix(prefix) not in LEFT_OUT
               and not (c.kind == "text" and found and all(row.get(c.name) == "" for row in found))]
    table = [[SHORT.get(n, n[0].lower() + n[1:]) for n in (c.name.removeprefix(prefix) for c in columns)]]
    table += [[shown(c, row.get(c.name)) for c in columns] for row in found]
    widths = [max(map(len, cells)) for cells in zip(*table)]
    right = [c.kind != "text" for c in columns]
    return [heading] + ["  " + "  ".join(cell.rjust(w) if r else cell.ljust(w) for cell, w, r in zip(line, widths, right)).rstrip()
                        for line in table]


def print_tables(address, names=(), everything=False):
    """Prints the objects named, or all that have rows; returns how many rows there were."""
    count = 0
    for thing in OBJECTS:
        if names and thing.name not in names:
            continue
        found = read_object(address, thing)
        if found or everything:
            print("\n".join(printed(thing, found)), end="\n\n")
        count += len(found)
    return count
