"""A manager that takes traps: snmptrapd, and what it printed taken apart."""

import os
import re
import socket

from hwtools.bench import ENTERPRISE
from hwtools.processes import end, free_port, spawn, wait_until

TRAPS = ENTERPRISE + ".2.10.3.5.1000"
TRAP_NAME = "1.3.6.1.6.3.1.1.4.1.0"


class TrapReceiver:
    """snmptrapd on loopback; `sink` is the line that makes an snmpd send to it."""

    def __init__(self, folder):
        self.folder = folder
        self.port = free_port(socket.SOCK_DGRAM)
        self.sink = f"trap2sink 127.0.0.1:{self.port} public\n"
        self.log = folder / "traps.log"
        self.process = None

    def __enter__(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        configuration = self.folder / "snmptrapd.conf"
        configuration.write_text("disableAuthorization yes\ndoNotLogTraps no\n")
        self.process = spawn(["snmptrapd", "-f", "-C", "-c", configuration, "-On", "-OQ", "-t", "-Lo", "-F", "%V|%v\n",
                              f"udp:127.0.0.1:{self.port}"], self.log,
                             env=dict(os.environ, MIBS="", SNMP_PERSISTENT_DIR=str(self.folder)))
        wait_until(lambda: self.process.poll() is not None or b"NET-SNMP" in self.log.read_bytes(), 10, "snmptrapd")
        return self

    def __exit__(self, *_):
        if self.process:
            end(self.process)

    def traps(self):
        """The agent's traps so far: [(trap below the traps' arc, [(object, value), ...]), ...], the two standard objects
        left out."""
        taken = []
        for line in self.log.read_text(encoding="latin-1").splitlines():
            objects = re.findall(r"\.([\d.]+) = ([^|]*)(?:\||$)", line)
            names = [value.lstrip(".") for name, value in objects if name == TRAP_NAME]
            if names and names[0].startswith(TRAPS + "."):
                taken.append((names[0][len(TRAPS) + 1:], [(name, value.strip().strip('"')) for name, value in objects[2:]]))
        return taken

    def wait_for(self, count, seconds):
        """The first `count` traps, once they are there."""
        wait_until(lambda: len(self.traps()) >= count, seconds, f"{count} traps", 0.1)
        return self.traps()[:count]
