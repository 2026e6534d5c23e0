"""The release executable under snmpd, over the simulated controller: every value of the threshold tables against
ipmitool."""

import unittest
from collections import Counter

from hwtools.bench import BOARDS, QUICKSTART
from lib.bench import PRACTICAL, agent_on
from lib.freeipmi import compare_opinions
from lib.sensors import GROUPS, compare_tables
from lib.states import TABLES, compare_states

HEALTHY = 2  # systemHealthStatus
ALL_TABLES = [group.table for group in GROUPS] + [row[0] for row in TABLES]
# statuses of all rows of the server of 2025 by whether the mode is practical, where a drive is missing in a slot with two
# sensors, and one sensor's states are its maker's own
STATUSES = {False: {"Healthy": 122, "Unavailable": 20}, True: {"Healthy": 154, "Unavailable": 3}}


class ThresholdTables(unittest.TestCase):
    def test_every_value_is_as_ipmitool_has_it(self):
        for board in (BOARDS / "full100.py", QUICKSTART):
            with self.subTest(board=board.name), agent_on(board) as (simulator, read_rows):
                compare_tables(self, simulator.board, simulator.ipmitool("sensor").stdout,
                               simulator.ipmitool("sdr", "elist").stdout, read_rows, PRACTICAL)
                states = [value for table in ALL_TABLES[:None if PRACTICAL else len(GROUPS)] for row in read_rows(table)
                          for name, value in row.items() if name.endswith("Status") and not name.endswith("RedundancyStatus")]
                self.assertEqual(read_rows("systemManagementSoftwareGroup")[0]["systemHealthStatus"], max(states))

    def test_all_is_well_on_the_server_of_2025(self):
        """In the practical mode, where each row is as ipmitool has it; in the plain one docs/practical-mode.md counts them."""
        with agent_on(BOARDS / "server2025.py") as (simulator, read_rows):
            elist = simulator.ipmitool("sdr", "elist").stdout
            if PRACTICAL:
                compare_tables(self, simulator.board, simulator.ipmitool("sensor").stdout, elist, read_rows, PRACTICAL)
                compare_states(self, simulator.board, elist, read_rows, PRACTICAL)
                compare_opinions(self, simulator, read_rows)
            words = Counter(value for table in ALL_TABLES for row in read_rows(table) for name, value in row.items()
                            if name.endswith("StatusString") and not name.endswith("PresenceStatusString"))
            self.assertEqual(words, STATUSES[PRACTICAL])
            self.assertEqual(read_rows("systemManagementSoftwareGroup")[0]["systemHealthStatus"], HEALTHY)
