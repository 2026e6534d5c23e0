"""A controller that is dead, slow or lies: what its faults cost, and that the agent goes on and comes back.

What a row shows while its reading fails is the reading of the start: rows keep that one, and each request starts from it."""

import threading
import time
import unittest
from concurrent.futures import ThreadPoolExecutor

from hwtools.bench import UNAVAILABLE, Bench, settings
from hwtools.board import BMC_ADDRESS
from hwtools.faultline import Fault, FaultLine
from hwtools.mibtable import NO_VALUE
from hwtools.processes import BenchError, wait_until

SENSOR, GET_READING = 0x04, 0x2D
OK, BUSY, _, TIMEOUT, *_ = CODES = (0, 0xC0, 0xC1, 0xC3, 0xC5, 0xC9, 0xCB, 0xCC, 0xD2, 0xFF)
SENSORS = range(1, 15)
SCANNED = 0xC0
HEALTHY = "2"
BACK = 15        # seconds for the next refresh and what is left of this one

BOARD = """from hwtools.board import TEMPERATURE, Board
board = Board("faulty")
for number in {}:
    board.analog(number, TEMPERATURE, f"Probe {{number}}", number, "degrees C", thresholds=dict(unc=200))
"""


def reading_fault(number, **deed):
    return Fault(SENSOR, GET_READING, (number,), **deed)


class Spoilt(Bench):
    """A running agent on a line that can be spoilt."""

    def begin(self, *faults, configuration=None, sensors=SENSORS):
        self.sensors = sensors
        self.simulate(BOARD.format(sensors))
        self.line = self.enter_context(FaultLine(self.simulator))
        self.enter_context(self.line.faulty(*faults))
        self.start_agent(configuration, line=self.line)
        if configuration:
            wait_until(self.agent.health, 5, "the agent's registration")
        else:
            self.agent.wait_served()
        self.pid = self.agent.pid
        self.raised = 0
        return self

    def readings(self):
        """Degrees by number of the sensor; in the order of the rows. One that comes meanwhile lacks the first columns."""
        found = [row for row in self.read("temperatureProbeTable") if "temperatureDescription" in row]
        numbers = [int(row["temperatureDescription"].split()[1]) for row in found]
        return dict(zip(numbers, (row["temperatureReading"] // 10 for row in found)))

    def raise_all(self):
        self.raised += 20
        for number in self.sensors:
            self.simulator.say(f"sensor_set_value {BMC_ADDRESS:#x} 0 {number:#x} {number + self.raised} 0")

    def wait_shown(self, seconds=BACK, changed=None):
        """Waits until all rows show the present values, but for those of `changed`."""
        want = {number: number + self.raised for number in self.sensors} | (changed or {})
        found = {}

        def shown():
            found.clear()
            found.update(self.readings())
            return found == want

        try:
            wait_until(shown, seconds, "a refresh to these values", 0.25)
        except BenchError as failure:
            wrong = {n: (found.get(n), value) for n, value in want.items() if found.get(n) != value}
            raise AssertionError(f"{failure}: {{sensor: (shown, wanted)}} {wrong}") from failure


class RunningAgent(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.bench = cls.enterClassContext(Spoilt()).begin()
        cls.bench.raise_all()
        cls.bench.wait_shown()

    def tearDown(self):
        self.assertEqual(self.bench.agent.pid, self.bench.pid)
        self.assertIn(self.bench.pid, self.bench.agent.processes())

    def spoil(self, cases, seconds=BACK):
        """All deeds at once, each on a sensor of its own; the others go on, and all are right afterwards. `cases`: deed, and
        what the row shows meanwhile (None: the present value)."""
        self.bench.raise_all()
        changed = {n: n + self.bench.raised if shown is None else shown for n, (_, shown) in enumerate(cases, 1)}
        with self.bench.line.faulty(*(reading_fault(n, **deed) for n, (deed, _) in enumerate(cases, 1))):
            self.bench.wait_shown(seconds, changed)
        self.bench.wait_shown()

    def test_refusals_and_short_answers_cost_the_readings_that_they_answer_and_late_ones_nothing(self):
        # a short one is taken as far as it goes; what is too long for the driver counts as an answer without data
        self.spoil([(dict(code=code), n) for n, code in enumerate(CODES[1:], 1)] + [
            (dict(delay=2), None), (dict(answer=bytes((OK,))), 0), (dict(answer=bytes((OK, 99))), 99),
            (dict(answer=bytes((OK, 97, SCANNED)) + bytes(253)), 97), (dict(append=bytes(500)), 0)])

    def test_a_controller_that_resets_in_a_walk_is_found_again(self):
        over = threading.Event()

        def walk():
            while not over.wait(0.05):
                self.bench.readings()

        with ThreadPoolExecutor(1) as pool:
            walks = pool.submit(walk)
            try:
                self.bench.simulator.process.kill()
                self.bench.simulator.stop()
                self.bench.wait_shown(BACK, {number: number for number in SENSORS})
                self.bench.simulator.start()
                self.bench.raise_all()
                self.bench.wait_shown()
            finally:
                over.set()
            walks.result()


class StartingAgent(unittest.TestCase):
    def test_senseless_answers_at_the_start_leave_tables_empty_and_the_rest_serves(self):
        for answer in (bytes((OK,)), bytes((OK,)) + bytes((0xFF,)) * 255):
            with self.subTest(answer[:2]), Spoilt() as bench:
                bench.begin(Fault(answer=answer))
                self.assertEqual(bench.readings(), {})
                self.assertEqual(bench.read("systemManagementSoftwareGroup")[0]["systemProductName"], "hwAgent")
                self.assertEqual(bench.agent.pid, bench.pid)


class BusyController(unittest.TestCase):
    """In the practical mode."""

    def test_one_that_is_busy_or_silent_for_long_costs_no_row_and_no_answer(self):
        with Spoilt() as bench:
            bench.begin(Fault(code=BUSY), configuration=settings(practical=1, refreshPeriod=2, exchangeBudget=500))

            def hold(seconds, shown):
                """Whether that is so in the end; each second without an answer fails."""
                limit = time.monotonic() + seconds
                while time.monotonic() < limit:
                    found = (bench.agent.health(), set(bench.readings().values()))
                    self.assertIn(found[0], (UNAVAILABLE, HEALTHY))
                    time.sleep(0.25)
                self.assertEqual(found, shown)

            hold(8, (UNAVAILABLE, set()))
            with bench.line.faulty(Fault(drop=True)):
                hold(8, (UNAVAILABLE, set()))
            with bench.line.faulty():
                bench.wait_shown(60)
            with bench.line.faulty(Fault(code=TIMEOUT)):
                hold(20, (UNAVAILABLE, {NO_VALUE // 10}))
            bench.raise_all()
            bench.wait_shown(30)
            wait_until(lambda: bench.agent.health() == HEALTHY, 10, "the health")
            self.assertEqual(bench.agent.pid, bench.pid)


class SlowController(unittest.TestCase):
    """In the practical mode, with a board of ninety-two sensors."""

    def test_its_rows_come_and_follow_at_any_pace_and_every_request_is_answered(self):
        bench = self.enterContext(Spoilt())
        bench.begin(Fault(delay=1), configuration=settings(practical=1, refreshPeriod=1, debugEnabled=1), sensors=range(1, 93))

        def right():
            """How many rows have a reading, each of them the board's."""
            self.assertIn(bench.agent.health(), (UNAVAILABLE, HEALTHY))
            found = {n: value for n, value in bench.readings().items() if value != NO_VALUE // 10}
            self.assertEqual(found, {n: n + bench.raised for n in found})
            return len(found)

        wait_until(right, 90, "the first row at a second an answer", 0.25)
        with bench.line.faulty(Fault(delay=0.1)):
            wait_until(lambda: right() == len(bench.sensors), 120, "all rows at a tenth", 0.25)
        with bench.line.faulty(Fault(delay=0.02)):
            bench.raise_all()
            bench.wait_shown(60)
        self.assertEqual((bench.agent.folder / "agent.log").read_text(encoding="latin-1").count("subagent connected"), 1)
