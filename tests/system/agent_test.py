"""The release executable under snmpd, over the simulated controller: every value of the threshold tables against
ipmitool."""

import unittest

from lib.bench import BOARDS, PRACTICAL, QUICKSTART, agent_on
from lib.sensors import compare_tables


class ThresholdTables(unittest.TestCase):
    def test_every_value_is_as_ipmitool_has_it(self):
        for board in (BOARDS / "full100.py", QUICKSTART):
            with self.subTest(board=board.name), agent_on(board) as (simulator, read_rows):
                compare_tables(self, simulator.board, simulator.ipmitool("sensor").stdout, read_rows, PRACTICAL)


if __name__ == "__main__":
    unittest.main()
