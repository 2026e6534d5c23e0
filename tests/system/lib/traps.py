"""What snmptrapd printed of the agent's traps, taken apart."""

import re

from hwtools.bench import ENTERPRISE
from hwtools.processes import wait_until
from hwtools.traps import TrapDaemon

TRAPS = ENTERPRISE + ".2.10.3.5.1000"
TRAP_NAME = "1.3.6.1.6.3.1.1.4.1.0"
FORM = "%V|%v\n"
NUMBERS = ("-On", "-OQ")


def parse_traps(text):
    """The agent's traps in what an snmptrapd printed with FORM and NUMBERS: [(trap below the traps' arc, [(object, value),
    ...]), ...], the two standard objects left out."""
    taken = []
    for line in text.splitlines():
        objects = re.findall(r"\.([\d.]+) = ([^|]*)(?:\||$)", line)
        names = [value.lstrip(".") for name, value in objects if name == TRAP_NAME]
        if names and names[0].startswith(TRAPS + "."):
            taken.append((names[0][len(TRAPS) + 1:], [(name, value.strip().strip('"')) for name, value in objects[2:]]))
    return taken


class TrapReceiver(TrapDaemon):
    """A manager that keeps the traps it gets."""

    def __init__(self, folder):
        super().__init__(folder, FORM, *NUMBERS, environment={"MIBS": ""})

    def traps(self):
        """The agent's traps so far, as parse_traps() has them."""
        return parse_traps(self.printed())

    def wait_for(self, count, seconds):
        """The first `count` traps, once they are there."""
        wait_until(lambda: len(self.traps()) >= count, seconds, f"{count} traps", 0.1)
        return self.traps()[:count]
