"""A manager that takes traps: snmptrapd on loopback."""

import os
import socket
from pathlib import Path

from .processes import BenchError, end, free_port, spawn, tail, wait_until


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
