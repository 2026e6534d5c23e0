"""A manager that takes traps: snmptrapd on loopback."""

import os
import re
import socket
from pathlib import Path

from .bench import ENTERPRISE
from .processes import BenchError, end, free_port, spawn, tail, wait_until

TRAPS = ENTERPRISE + ".2.10.3.5.1000"
TRAP_NAME = "1.3.6.1.6.3.1.1.4.1.0"
# How an snmptrapd has to print for parse_traps(): its -F, and options.
FORM = "%V|%v\n"
NUMBERS = ("-On", "-OQ")


class TrapDaemon:
    """Debian's snmptrapd on a free port. `form` is how it prints a trap (its -F), `options` and `environment` are further
    ones; `sink` is the line that makes an snmpd send to it, `log` the file it prints to."""

    def __init__(self, folder, form, *options, environment=None):
        self.folder, self.form, self.options = Path(folder), form, options
        self.environment = {"SNMP_PERSISTENT_DIR": str(folder), **(environment or {})}
        self.port = free_port(socket.SOCK_DGRAM)
        self.sink = f"trap2sink 127.0.0.1:{self.port} public\n"
        self.log = self.folder / "traps.log"
        self.process = None

    def __enter__(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        configuration = self.folder / "snmptrapd.conf"
        configuration.write_text("disableAuthorization yes\ndoNotLogTraps no\n")
        self.process = spawn(["snmptrapd", "-f", "-C", "-c", configuration, *self.options, "-t", "-Lo", "-F", self.form,
                              f"udp:127.0.0.1:{self.port}"], self.log, env={**os.environ, **self.environment})
        try:
            wait_until(lambda: self.process.poll() is not None or "NET-SNMP" in self.printed(), 10, "snmptrapd's start")
            if self.process.poll() is not None:
                raise BenchError("snmptrapd does not start:\n" + tail(self.log))
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.process:
            end(self.process)

    def printed(self):
        """All that it has printed so far."""
        return self.log.read_text(encoding="latin-1")


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
