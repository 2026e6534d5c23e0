"""The tables of state sensors from the controller's state bits to the columns: what the agent shows of each sensor,
against what ipmitool says of the same bits."""

import unittest

from hwtools.bench import BOARDS
from lib.bench import PRACTICAL, agent_on
from lib.freeipmi import compare_opinions
from lib.states import compare_states


class DiscreteTables(unittest.TestCase):
    def test_every_sensor_shows_the_state_that_ipmitool_reads(self):
        with agent_on(BOARDS / "discrete.py") as (simulator, read_rows):
            compare_states(self, simulator.board, simulator.ipmitool("sdr", "elist").stdout, read_rows, PRACTICAL)
            if PRACTICAL:
                compare_opinions(self, simulator, read_rows)
            # a fan whose record says linear is among the fans with readings
            fans = read_rows("coolingDeviceTable")
            self.assertEqual([row["coolingDeviceDescription"] for row in fans], ["Fan In Readings"])
