"""From a record in the event log to a trap at a manager: the agent under a real snmpd, a real snmptrapd behind it."""

import os
import signal
import time
import unittest

from hwtools.bench import BOARDS, ENTERPRISE, QUICKSTART, Bench, settings
from hwtools.processes import wait_until
from hwtools.traps import TrapReceiver
from lib.traps import check_traps

BASE = ENTERPRISE + ".2.10.3.5"
TEXT, SEVERITY = BASE + ".1000.10.1", BASE + ".1000.10.2"
SYSTEM_SEVERITY = BASE + ".100.1.0"
HEALTHY, WARNING, CRITICAL = "2", "3", "4"

TEMPERATURE, INTRUSION, POWER_UNIT, PROCESSOR, MEMORY = 0x01, 0x05, 0x09, 0x07, 0x0C
SOCKET_0_DIE, SUPPLY_REDUND, LID, SOCKET_1, SLOT_B0 = 0x03, 0x32, 0x33, 0x35, 0x37  # sensors of the quick start's board
PLAIN = dict(trapsEnabled=1, debugEnabled=1)
PRACTICAL = dict(PLAIN, practical=1, refreshPeriod=1, trapBurst=5, trapsPerSecond=2)
POLL_SECONDS, TRAP_SECONDS = 10, 3


def device_id(sensor, owner=0x20):
    return str(sensor << 16 | owner << 8)


def objects(table, row, text, severity, description, sensor):
    """What a trap about a row carries behind its name."""
    return [(TEXT, text), (f"{BASE}.{table}.1.5.{row}", severity), (f"{BASE}.{table}.1.3.{row}", description),
            (f"{BASE}.{table}.1.2.{row}", device_id(sensor))]


def health(before, after, severity):
    return [(TEXT, f"System health was changed from {before} to {after}."), (SYSTEM_SEVERITY, severity)]


class Followed(unittest.TestCase):
    """A manager, a simulator, a master agent, and an agent that follows the event log, for the tests of a class; each looks
    at what has come since it began."""

    BOARD, SETTINGS = QUICKSTART, PLAIN

    @classmethod
    def setUpClass(cls):
        cls.bench = bench = cls.enterClassContext(Bench())
        cls.receiver = bench.enter_context(TrapReceiver(bench.folder / "manager"))
        cls.simulator = bench.simulate(cls.BOARD)
        cls.agent = bench.start_agent(settings(**cls.SETTINGS), cls.receiver.sink)
        cls.master = bench.master
        cls.agent.wait_served()
        wait_until(cls.agent.knows_log, 30, "the first poll")

    def setUp(self):
        self.traps_before, self.said_before = len(self.receiver.traps()), len(self.agent_log())

    def traps(self):
        return self.receiver.traps()[self.traps_before:]

    def wait_for(self, count, seconds):
        wait_until(lambda: len(self.traps()) >= count, seconds, f"{count} traps", 0.1)
        return self.traps()

    def agent_log(self):
        return (self.agent.folder / "agent.log").read_text(encoding="latin-1")

    def diagnostics(self):
        return self.agent_log()[self.said_before:]

    def lose_master(self):
        self.master.process.kill()
        self.master.process.wait()

    def log(self, sensor_type, sensor, trigger, *data):
        """Appends a record to the controller's event log, as firmware would."""
        self.simulator.ipmitool("raw", "0x0a", "0x44", *(hex(byte) for byte in (
            0, 0, 2, 0, 0, 0, 0, 0x20, 0, 4, sensor_type, sensor, trigger, *data)))

    def row_of(self, table, sensor):
        """The row of a table whose first columns are index and device id."""
        return next(row[0] for row in map(list, map(dict.values, self.bench.read(table))) if str(row[1]) == device_id(sensor))


class Traps(Followed):
    def test_a_loss_of_the_master_is_told_once_while_events_are_kept_track_of(self):
        self.lose_master()
        for _ in range(2):
            self.log(TEMPERATURE, SOCKET_0_DIE, 0x01, 0x59, 97, 96)
        wait_until(lambda: "SEL End" in self.diagnostics(), POLL_SECONDS + TRAP_SECONDS * 4, "the records' end")
        time.sleep(0.5)
        self.assertEqual(self.diagnostics().count("traps are lost until it is back"), 1)
        self.master.start()
        self.agent.wait_served(30)
        self.assertEqual(self.agent.health(), CRITICAL)
        self.log(TEMPERATURE, SOCKET_0_DIE, 0x81, 0x59, 90, 96)
        self.assertEqual([name for name, _ in self.wait_for(2, POLL_SECONDS + TRAP_SECONDS * 3)], ["70.16", "20.3"])

    def test_events_become_traps_and_the_health_follows_them(self):
        hot, unit = self.row_of("temperatureProbeTable", SOCKET_0_DIE), self.row_of("powerUnitTable", SUPPLY_REDUND)
        for record in ((TEMPERATURE, SOCKET_0_DIE, 0x01, 0x59, 97, 96), (POWER_UNIT, SUPPLY_REDUND, 0x0B, 0x01, 0xFF, 0xFF),
                       (INTRUSION, LID, 0x6F, 0x00, 0xFF, 0xFF), (PROCESSOR, SOCKET_1, 0x6F, 0x01, 0xFF, 0xFF),
                       (MEMORY, SLOT_B0, 0x6F, 0x00, 0xFF, 0xFF), (TEMPERATURE, SOCKET_0_DIE, 0x81, 0x59, 90, 96)):
            self.log(*record)
        expected = [
            ("70.18", objects("600.40", hot, "Status is Upper Critical", CRITICAL, "Socket 0 Die", SOCKET_0_DIE)),
            ("20.5", health("ok", "critical", CRITICAL)),
            ("50.3", objects("400.10", unit, "Supply Redund reports Redundancy Lost. Status is Critical", CRITICAL, "Supply Redund", SUPPLY_REDUND)),
            ("30.2", [(TEXT, "Lid reports there has been a chassis intrusion. Status is Critical"), (SEVERITY, CRITICAL)]),
            ("40.2", objects("300.10", 2, "Socket 1 reports Thermal Trip. Status is Critical", CRITICAL, "Socket 1", SOCKET_1)),
            ("60.1", objects("500.20", 2, "SLOT B0 reports a correctable ECC error of the memory. Watch the module; replace it "
                             "if more errors come. Status is Non-Critical", WARNING, "Slot B0", SLOT_B0)),
            ("70.16", objects("600.40", hot, "Status is OK", HEALTHY, "Socket 0 Die", SOCKET_0_DIE))]
        self.maxDiff = None
        self.wait_for(len(expected), POLL_SECONDS + TRAP_SECONDS * 10)
        time.sleep(TRAP_SECONDS + 1)
        self.assertEqual(self.traps(), expected)
        check_traps(self, expected)
        self.assertEqual(self.agent.health(), CRITICAL)


class PracticalHealth(Followed):
    BOARD, SETTINGS = BOARDS / "server2025.py", PRACTICAL

    def test_it_follows_what_is_there_and_a_recovery_from_one_state_tells_the_one_that_still_holds(self):
        at = {s["name"]: f"{s['owner']:#x} {s['lun']} {s['number']:#x}" for s in self.simulator.board.sensors}

        def texts():
            return [values[0][1] for name, values in self.traps() if name.startswith("70.")]

        expected = []
        for command, reading, health_then, *traps in (
                ("bit", f"{at['Power Unit State']} 6 1 0", CRITICAL),  # a failure that no event tells
                ("bit", f"{at['Power Unit State']} 6 0 0", HEALTHY),
                ("bit", f"{at['Chassis Lid']} 0 1 1", CRITICAL), ("bit", f"{at['Chassis Lid']} 0 0 0", HEALTHY),
                ("value", f"{at['CPU1 Temp']} 97 1", CRITICAL, "Status is Upper Non-Critical", "Status is Upper Critical"),
                ("value", f"{at['CPU1 Temp']} 88 1", WARNING, "Status is Upper Non-Critical"),
                ("value", f"{at['CPU1 Temp']} 60 1", HEALTHY, "Status is OK")):
            with self.subTest(sensor=reading):
                self.simulator.say(f"sensor_set_{command} {reading}")
                expected += traps
                wait_until(lambda health=health_then: self.agent.health() == health and len(texts()) >= len(expected), 60,
                           "health and traps", 0.2)
                self.assertEqual(texts(), expected)


class PracticalTraps(Followed):
    """The log is followed over whatever happens to it and to the agent; a record is told once."""

    SETTINGS = PRACTICAL

    def add(self, *errors):
        """Correctable errors of a module, which have no say in the health; what tells them apart is their first byte."""
        for number in errors:
            self.log(MEMORY, SLOT_B0, 0x6F, 0x00, 0xFF, number)

    def told(self):
        return [name for name, _ in self.traps()].count("60.1")

    def expect(self, count, seconds=3 * POLL_SECONDS, most=None):
        """Waits for so many traps about modules in all; a moment later there are no more, or at most `most`."""
        wait_until(lambda: self.told() >= count, seconds, f"{count} traps, not {self.told()}", 0.1)
        time.sleep(1)
        self.assertIn(self.told(), range(count, (most or count) + 1))

    def test_a_cleared_log_a_restart_and_a_master_that_is_gone_or_stalled_cost_nothing(self):
        self.add(1)
        self.expect(1)
        self.simulator.ipmitool("sel", "clear")
        self.add(2, 3, 4)
        self.expect(4)
        self.agent.stop()
        self.simulator.ipmitool("sel", "clear")
        self.add(5, 6)
        self.agent.start()
        self.agent.wait_served()
        self.expect(6)
        self.lose_master()
        self.add(7, 8)
        time.sleep(POLL_SECONDS + 2)
        self.master.start()
        self.agent.wait_served(30)
        self.expect(8)
        self.add(*range(9, 17))
        wait_until(lambda: self.told() >= 9, 2 * POLL_SECONDS, "the first of the burst", 0.02)
        self.master.process.send_signal(signal.SIGSTOP)
        time.sleep(2.5)  # longer than the library waits for an answer, not so long that the session ends
        self.master.process.send_signal(signal.SIGCONT)
        self.expect(16)
        self.master.process.send_signal(signal.SIGSTOP)
        self.add(17, 18)
        time.sleep(POLL_SECONDS + 2)
        self.master.process.send_signal(signal.SIGCONT)
        self.agent.wait_served(20)
        wait_until(lambda: self.told() >= 18, 2 * POLL_SECONDS, "the traps of the stall", 0.1)
        before = self.told()
        self.master.process.send_signal(signal.SIGSTOP)
        self.add(19, 20)
        time.sleep(POLL_SECONDS + 2)
        self.lose_master()  # with the notifications unread
        self.master.start()
        self.agent.wait_served(30)
        wait_until(lambda: self.told() >= before + 2, 2 * POLL_SECONDS, "the traps that nobody had read", 0.1)

    def test_what_a_killed_agent_had_not_told_is_told_by_the_next(self):
        self.add(*range(15))
        wait_until(lambda: self.told() >= 6, 3 * POLL_SECONDS, "the first of the traps", 0.02)
        os.kill(self.agent.pid, signal.SIGKILL)
        self.expect(15, 60, most=16)  # killed between a trap and its note, it tells that one again
