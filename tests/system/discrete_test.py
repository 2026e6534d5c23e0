"""The tables of state sensors from the controller's state bits to the columns: what the agent shows of each sensor,
against what ipmitool says of the same bits."""

import contextlib
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import ROOT, Agent, MasterAgent, Simulator
from hwtools.mibtable import find_object
from hwtools.tables import read_object
from lib.states import compare_states


class DiscreteTables(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with contextlib.ExitStack() as bench:
            folder = Path(bench.enter_context(tempfile.TemporaryDirectory()))
            board = ROOT / "tests" / "boards" / "discrete.py"
            cls.simulator = bench.enter_context(Simulator(board, folder / "bmc"))
            master = bench.enter_context(MasterAgent(folder / "master"))
            bench.enter_context(Agent(folder / "agent", cls.simulator, master)).wait_served()
            cls.address = f"127.0.0.1:{master.port}"
            cls.addClassCleanup(bench.pop_all().close)

    def test_every_sensor_shows_the_state_that_ipmitool_reads(self):
        compare_states(self, self.simulator.board, self.simulator.ipmitool("sdr", "elist").stdout,
                       lambda thing: read_object(self.address, thing))

    def test_a_fan_whose_record_says_linear_is_among_the_fans_with_readings(self):
        fans = read_object(self.address, find_object("coolingDeviceTable"))
        self.assertEqual([row["coolingDeviceDescription"] for row in fans], ["Fan In Readings"])


if __name__ == "__main__":
    unittest.main()
