"""A storm of traps while managers walk: the agent's own loop in a program of its own, which a sanitizer can be built into."""

import contextlib
import os
import unittest

from hwtools.bench import COMMUNITY, ENTERPRISE, Bench, MasterAgent, build_folder
from hwtools.processes import end, spawn
from hwtools.traps import TrapReceiver

BASE = ENTERPRISE + ".2.10.3.5"
SYSTEM_SEVERITY = BASE + ".100.1.0"


class Storm(unittest.TestCase):
    """A thousand events while managers walk, with the pauses between traps cut short, and with a pace instead."""

    EVENTS, WALKERS = 1000, 3

    def test_traps_and_walks_do_not_disturb_each_other(self):
        for mode in ((), ("paced",)):
            with self.subTest(mode):
                self.check(*mode)

    def check(self, *mode):
        with Bench() as bench:
            folder = bench.folder
            receiver = bench.enter_context(TrapReceiver(folder / "manager"))
            master = bench.enter_context(MasterAgent(folder / "master", receiver.sink))
            for name in ("hwAgent", "hwSubgent"):
                (folder / f"{name}.conf").write_text(f"agentXSocket unix:{master.agentx}\n")
            environment = dict(os.environ, MIBS="", SNMPCONFPATH=str(folder), SNMP_PERSISTENT_DIR=str(folder))
            storm = spawn([build_folder() / "tests" / "system" / "hw_trap_storm", str(self.EVENTS), *mode], folder / "storm.log",
                          env=environment)
            bench.callback(end, storm)
            walkers = [bench.enter_context(self.walker(master, folder / f"walk{n}.log")) for n in range(self.WALKERS)]
            expected = [f"undetermined system hardware failure {n}" for n in range(self.EVENTS)]
            receiver.wait_for(2 * self.EVENTS + 1, 120)  # the first one changes the health too
            for walker in walkers:
                walker.terminate()
            storm.terminate()
            self.assertEqual(storm.wait(20), 0, (folder / "storm.log").read_text()[-4000:])
            told = [values[0][1] for name, values in receiver.traps() if name == "90.3"]
            self.assertEqual(told, expected)
            log = (folder / "master" / "snmpd.log").read_text()
            self.assertNotIn("disconnected", log)
            for n in range(self.WALKERS):
                self.assertGreater((folder / f"walk{n}.log").read_text().count(SYSTEM_SEVERITY), 1)

    @staticmethod
    @contextlib.contextmanager
    def walker(master, log):
        walk = f"snmpbulkwalk -v2c -c {COMMUNITY} -On -t2 127.0.0.1:{master.port} {BASE}"
        walker = spawn(["sh", "-c", f"while :; do {walk}; done"], log, env=dict(os.environ, MIBS=""))
        try:
            yield walker
        finally:
            end(walker)
