"""The release executable under snmpd, over the simulated controller: every value of the threshold tables against
ipmitool."""

import contextlib
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import ROOT, Agent, MasterAgent, Simulator
from hwtools.tables import read_object
from lib.sensors import compare_tables


class Bench(unittest.TestCase):
    """Simulator, snmpd and agent for the tests of a class."""
    board = ROOT / "tests" / "boards" / "full100.py"

    @classmethod
    def setUpClass(cls):
        with contextlib.ExitStack() as bench:
            folder = Path(bench.enter_context(tempfile.TemporaryDirectory()))
            cls.simulator = bench.enter_context(Simulator(cls.board, folder / "bmc"))
            cls.master = bench.enter_context(MasterAgent(folder / "master"))
            cls.agent = bench.enter_context(Agent(folder / "agent", cls.simulator, cls.master))
            cls.agent.wait_served()
            cls.address = f"127.0.0.1:{cls.master.port}"
            cls.addClassCleanup(bench.pop_all().close)


class ThresholdTables(Bench):
    def test_every_value_of_the_full_board_is_as_ipmitool_has_it(self):
        compare_tables(self, self.simulator.board, self.simulator.ipmitool("sensor").stdout,
                       lambda thing: read_object(self.address, thing))


class QuickStartTables(Bench):
    board = ROOT / "share" / "boards" / "quickstart.py"

    def test_every_value_of_the_quick_start_board_is_as_ipmitool_has_it(self):
        compare_tables(self, self.simulator.board, self.simulator.ipmitool("sensor").stdout,
                       lambda thing: read_object(self.address, thing))


if __name__ == "__main__":
    unittest.main()
