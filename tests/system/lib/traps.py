"""Traps as they arrive, beside what the MIB says of them."""

import re

from hwtools.mibtable import BASE, OBJECTS, STATUS, TRAP_ARC, TRAP_OBJECT_ARC, TRAP_OBJECTS, TRAPS, dotted


def check_traps(test, traps):
    """Fails `test` for a trap without the objects that the MIB names, in their order, or with a severity that it does not."""
    columns = {c.name: dotted(o.column_oid(c)) for o in OBJECTS for c in o.columns}
    columns |= {c.name: dotted((*BASE, TRAP_ARC, TRAP_OBJECT_ARC, c.suffix)) for c in TRAP_OBJECTS}
    known = {dotted(trap.arc[1:]): trap for trap in TRAPS}
    for name, values in traps:
        trap = known[name]
        for promised, (sent, _) in zip(trap.carries, values, strict=True):
            test.assertRegex(sent, re.escape(columns[promised]) + r"(\.\d+){0,2}$", name)
        if trap.severity != "any":
            test.assertIn(STATUS[int(values[1][1])], trap.severity.split(" or "), (trap.name, values))
