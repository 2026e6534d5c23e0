"""Reads the agent's tables with Debian's snmpbulkwalk and prints them for a person."""

import os
import subprocess
import sys
import textwrap

from .mibtable import NO_VALUE, OBJECTS, STATUS, dotted

# what a printed number is divided by, its form, and the unit behind it
SCALE = {"mV": (1000, ".3f", "V"), "mA": (1000, ".3f", "A"), "0.1 degrees C": (10, ".1f", "°C"), "MB": (1 << 10, "g", "GB"),
         "kB": (1 << 20, "g", "GB")}
SHORT = {"UpperNonRecoverableThreshold": "unr", "UpperCriticalThreshold": "uc", "UpperNonCriticalThreshold": "unc",
         "LowerNonCriticalThreshold": "lnc", "LowerCriticalThreshold": "lc", "LowerNonRecoverableThreshold": "lnr",
         "StatusString": "status", "Index": "row"}
BOUNDS = ("unr, uc, unc: upper bounds, non-recoverable, critical, non-critical;\n"
          "lnc, lc, lnr: lower bounds; in the unit of the reading")
# of use to programs, or what another column says too; a walk shows them
LEFT_OUT = ("DeviceId", "Status", "Resolution", "Tolerance", "Accuracy", "Handle", "SocketDesignation", "Locator")
WIDTH = 80
COLOURS = {"warning": "33", "critical": "31"}
WALK_FORM = ("-On", "-Oe", "-OU", "-Ot")  # numbers only, no units


class SnmpError(Exception):
    """The master agent gave no answer; the text is the command's own."""


def walk(address, oid, community="public", timeout=5, access=None):
    """All values below `oid` as {tuple of sub-identifiers below it: int or str}. `access`: snmpbulkwalk's options that say
    who asks, in place of version 2c and the community."""
    command = ["snmpbulkwalk", *(access or ("-v2c", "-c", community)), *WALK_FORM, "-Cr25", "-r1", f"-t{timeout}", address, dotted(oid)]
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
    """A value for a person; bounds go without their unit, which stands behind the reading."""
    if value is None:
        return ""
    if isinstance(value, str):
        return value
    if value == NO_VALUE:
        return "-"
    if value in column.values:
        return f"{column.values[value]}({value})"
    divisor, form, unit = SCALE.get(column.units, (1, ".0f", column.units))
    number = f"{value / divisor:{form}}"
    return number if column.writable else f"{number} {unit}".rstrip()


def printed(thing, found):
    """The lines that show one object; columns that tell nothing are left out."""
    heading = f"{thing.name} ({dotted(thing.arc)}): {thing.title}"
    prefix = common_prefix(thing)
    if thing.scalar:
        width = max(len(c.name) for c in thing.columns) - len(prefix)
        lines = [f"  {c.name.removeprefix(prefix):{width}}  {shown(c, row.get(c.name))}".rstrip()
                 for row in found for c in thing.columns]
        return [heading, *lines]
    columns = []
    for column in thing.columns:
        name = column.name.removeprefix(prefix)
        cells = [shown(column, row.get(column.name)) for row in found]
        if name not in LEFT_OUT and not set(cells) <= {"", "-"}:
            columns.append((SHORT.get(name, name[0].lower() + name[1:]), cells, column.kind == "text"))
    lines = in_columns(columns)
    if columns and max(map(len, lines)) > WIDTH:
        lines = folded(columns)
    return [heading, *lines]


def in_columns(columns):
    """One line of names and one for each row; `columns` are names, their cells, and whether they stand at the left."""
    padded = []
    for name, cells, left in columns:
        width = max(map(len, [name, *cells]))
        padded.append([cell.ljust(width) if left else cell.rjust(width) for cell in [name, *cells]])
    return ["  " + "  ".join(line).rstrip() for line in zip(*padded)]


def folded(columns):
    """Rows that are too wide for one line each: what they have, name by name, over as many lines as it takes."""
    lines = []
    for cells in zip(*(cells for _, cells, _ in columns)):
        parts = [f"{name} {cell}".replace(" ", "\0") for (name, _, _), cell in zip(columns, cells) if cell not in ("", "-")]
        filled = textwrap.wrap(", ".join(parts), WIDTH, initial_indent="  ", subsequent_indent=" " * 6, break_long_words=False,
                               break_on_hyphens=False)
        lines += [line.replace("\0", " ") for line in filled]
    return lines


def trouble(objects):
    """Names what is not well, the worst first; `objects` are pairs of an object and its rows."""
    parts = {"critical": [], "warning": []}
    for thing, found in objects:
        prefix = common_prefix(thing)
        for row in found:
            state = STATUS.get(row.get(prefix + ("HealthStatus" if prefix == "system" else "Status")))
            if state in parts:
                parts[state].append(row.get(prefix + "Description", prefix))
    told = "; ".join(f"{state}: {', '.join(names)}" for state, names in parts.items() if names)
    unread = any(row.get("systemHealthStatus") == 1 for _, found in objects for row in found)
    calm = "Nothing is in trouble." if not unread else "The health is unavailable: no sensor has told its state."
    return textwrap.fill(f"In trouble: {told}" if told else calm, WIDTH, subsequent_indent="  ")


def coloured(line, wanted):
    """The line in the colour of the state that it tells."""
    words = line.lower().replace(",", " ").split()
    colour = next((code for state, code in COLOURS.items() if wanted and line.startswith("  ") and state in words), None)
    return f"\033[{colour}m{line}\033[0m" if colour else line


def print_tables(address, names=(), everything=False, access=None):
    """Prints the objects named, or all that have rows, behind a line that says what is in trouble; returns how many rows
    there were."""
    wanted = sys.stdout.isatty() and not os.environ.get("NO_COLOR")
    objects = [(thing, read_object(address, thing, access=access)) for thing in OBJECTS if not names or thing.name in names]
    count = sum(len(found) for _, found in objects)
    if count:
        print(trouble(objects), end="\n\n")
    bounds = any(c.writable for thing, found in objects if found for c in thing.columns)
    for thing, found in objects:
        if found or everything:
            print("\n".join(coloured(line, wanted) for line in printed(thing, found)), end="\n\n")
    if bounds:
        print(BOUNDS)
    return count
