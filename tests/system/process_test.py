"""The agent's process and its objects under a real snmpd: registrations, requests, refused sets, stops, crashes, restarts
of the master agent."""

import os
import re
import signal
import subprocess
import time
import unittest
from pathlib import Path

from hwtools.bench import COMMUNITY, ENTERPRISE, PID_FILE, QUICKSTART, Agent, Bench, MasterAgent
from hwtools.faultline import Fault, FaultLine
from hwtools.mibtable import OBJECTS, dotted
from hwtools.processes import is_running, tail, wait_until

BASE = ENTERPRISE + ".2.10.3.5"
REGISTRATIONS = "1.3.6.1.4.1.8072.1.2.1.1.4"  # nsModuleName: who serves which subtree, by its name and priority
PING_SECONDS = 2  # as the bench configures it
PROBE = BASE + ".100.4.0"


def snmp(master, command, *arguments, community=COMMUNITY):
    """Output of a Net-SNMP command against `master`, with both streams in one."""
    done = subprocess.run([command, "-v2c", "-c", community, "-On", "-Oe", "-r0", "-t3", f"127.0.0.1:{master.port}", *arguments],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="latin-1",
                          env=dict(os.environ, MIBS=""))
    return done.stdout


def values(text):
    """{name: value} of a command's output."""
    return dict(re.findall(r"^\.([\d.]+) = (.*)$", text, re.MULTILINE))


def end_by(agent, sign, seconds=5):
    """Sends the daemon a signal, waits for the ends of daemon and watcher, and gives the watcher's exit status."""
    daemon, watcher = agent.pid, agent.watcher
    os.kill(daemon, sign)
    wait_until(lambda: not is_running(daemon) and not is_running(watcher), seconds, "the end of daemon and watcher", 0.01)
    return os.waitstatus_to_exitcode(os.waitpid(watcher, os.WNOHANG)[1])


def thread_names(pid):
    return [(task / "comm").read_text().strip() for task in Path(f"/proc/{pid}/task").iterdir()]


class WithMaster(unittest.TestCase):
    """Simulator and snmpd for a class."""

    @classmethod
    def setUpClass(cls):
        bench = cls.enterClassContext(Bench())
        cls.folder, cls.simulator = bench.folder, bench.simulate(QUICKSTART)
        cls.master = bench.enter_context(MasterAgent(cls.folder / "master"))

    CONFIGURATION = None  # the shipped one

    def prepared(self, name="agent", simulator=None):
        agent = Agent(self.folder / f"{self._testMethodName}-{name}", simulator or self.simulator, self.master, self.CONFIGURATION)
        agent.prepare()
        self.addCleanup(agent.stop)
        return agent

    def start_agent(self, name="agent", served=True):
        agent = self.prepared(name)
        agent.start()
        if served:
            agent.wait_served()
            wait_until(lambda: "sensors_cache" in thread_names(agent.pid), 30, "the agent's loop")
            time.sleep(0.1)  # a stop signal before the loop is lost
        return agent


class Requests(WithMaster):
    """One agent, asked in every way."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.agent = cls.enterClassContext(Agent(cls.folder / "agent", cls.simulator, cls.master))
        cls.agent.wait_served()
        cls.daemon = cls.agent.pid
        cls.walked = values(snmp(cls.master, "snmpwalk", BASE))

    def instances(self):
        """(column, name of its first instance) of the columns that have one."""
        for thing in OBJECTS:
            for column in thing.columns:
                name = dotted(thing.column_oid(column) + ((0,) if thing.scalar else (1,)))
                if name in self.walked:
                    yield column, name

    def test_every_column_is_registered_once_and_nothing_else(self):
        rows = [line for line in snmp(self.master, "snmpwalk", REGISTRATIONS).splitlines() if "AgentX subagent" in line]
        columns = [dotted(thing.column_oid(column)) for thing in OBJECTS for column in thing.columns]
        self.assertEqual(len(rows), len(columns))
        for column in columns:
            self.assertEqual(sum(f".{column}.127 = " in row for row in rows), 1, column)

    def test_get_next_get_bulk_and_get_agree(self):
        self.assertGreater(len(self.walked), 25)
        self.assertEqual(values(snmp(self.master, "snmpbulkwalk", "-Cr40", BASE)).keys(), self.walked.keys())
        names = list(self.walked)
        for start in range(0, len(names), 40):
            part = names[start:start + 40]
            self.assertEqual(list(values(snmp(self.master, "snmpget", *part))), part)

    def test_a_bulk_request_beyond_all_bounds_leaves_the_agent_serving(self):
        snmp(self.master, "snmpbulkget", "-Cr100000", *[f"{BASE}.{n}" for n in range(100, 160)])
        self.assertIn(PROBE, values(snmp(self.master, "snmpget", PROBE)))

    def test_sets_are_refused(self):
        asked = list(self.instances())
        self.assertTrue(any(column.writable for column, _ in asked))
        for column, name in asked:
            kind, value = ("s", "x") if column.kind == "text" else ("i", "1")
            answer = snmp(self.master, "snmpset", name, kind, value, community="private")
            self.assertIn("Reason: notWritable", answer, column.name)


class Life(WithMaster):
    """Starts and ends of the process, plainly."""

    CONFIGURATION = "practical = 0\n"

    def test_a_stop_signal_ends_daemon_and_watcher_with_status_zero(self):
        for sign in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(sign.name):
                agent = self.start_agent(sign.name)
                self.assertEqual(end_by(agent, sign), 0)
                files = [entry.name for entry in (agent.folder / "snmp").rglob("*") if entry.is_file()]
                self.assertCountEqual(files, ["hwAgent.conf", "hwSubgent.conf"])  # no state is written

    def test_a_crash_brings_up_a_fresh_daemon_and_watcher(self):
        agent = self.start_agent()
        for sign in (signal.SIGSEGV, signal.SIGABRT, signal.SIGBUS):
            with self.subTest(sign.name):
                old = agent.pid
                os.kill(old, sign)
                wait_until(lambda: agent.pid not in (old, None), 10, "a new pid")
                agent.wait_served()
                self.assertTrue(is_running(agent.watcher))
                self.assertIn(f"Caught SIGSEGV, SIGABRT or SIGBUS = {sign}, executing ", tail(agent.folder / "agent.log", 99))

    def test_a_kill_leaves_no_process(self):
        agent = self.start_agent()
        self.assertEqual(end_by(agent, signal.SIGKILL), 0)
        self.assertIn("Killed by 9\n", (agent.folder / "agent.log").read_text())

    def test_closed_descriptors_do_not_reach_a_file(self):
        agent = self.prepared()
        subprocess.run(["sh", "-c", f"exec {agent.executable} <&- >&- 2>&-"], env=agent.environment(), check=True)
        agent.wait_served()
        self.assertEqual((agent.root / PID_FILE.lstrip("/")).read_text(), f"{agent.pid}\n")


class PracticalLife(WithMaster):
    """Starts and ends where the agent is to serve, whatever happens."""

    CONFIGURATION = "practical = 1\ndebugEnabled = 1\n"

    def run_again(self, agent, *prefix, after=()):
        """Starts the same agent another time; (status, what it says)."""
        done = subprocess.run([*prefix, str(agent.executable), *after], env=agent.environment(), stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, timeout=20)
        return done.returncode, done.stderr

    def log(self, agent):
        return (agent.folder / "agent.log").read_text(encoding="latin-1")

    def test_a_stop_at_any_moment_of_a_start_ends_it_within_a_second(self):
        with FaultLine(self.simulator) as line:
            for delay in (0, 0.5):
                for moment in (0, 0.01, 0.05, 0.2, 1):
                    with self.subTest(delay=delay, moment=moment), line.faulty(Fault(delay=delay)):
                        agent = self.prepared(f"{delay}-{moment}", line)
                        agent.start()
                        time.sleep(moment)
                        self.assertEqual(end_by(agent, signal.SIGTERM, 1.5), 0)

    def test_a_second_agent_and_one_that_lacks_something_leave_with_a_message(self):
        agent = self.start_agent()
        daemon = agent.pid
        status, said = self.run_again(agent)
        self.assertEqual((status, said), (1, "hwAgent: another agent runs already\n"))
        self.assertRegex(str(self.run_again(agent, after=["--help"])), r"^\(2, 'usage: hwAgent\\n[^\\]*\\n'\)$")
        self.assertEqual(agent.pid, daemon)
        self.assertIn(PROBE, values(snmp(self.master, "snmpget", PROBE)))
        self.assertEqual(end_by(agent, signal.SIGTERM), 0)
        for limit, said in (("--nofile=8", "too few file descriptors"), ("--as=80000000", "too little memory")):
            with self.subTest(limit):
                status, text = self.run_again(agent, "prlimit", limit)
                self.assertEqual(status, 1)
                self.assertIn(f"hwAgent: {said}: ", text)
                self.assertEqual(agent.processes(), [])

    def test_crashes_and_kills_are_answered_with_growing_pauses_that_a_stop_ends(self):
        agent = self.start_agent()
        for sign, pause in ((signal.SIGKILL, 1), (signal.SIGSEGV, 2)):
            old = agent.pid
            os.kill(old, sign)
            wait_until(lambda: agent.pid != old, pause + 5, "a new pid", 0.02)
            self.assertIn(f"ended by signal {sign}, starts again in {pause} s", self.log(agent))
            agent.wait_served()
        watcher = agent.watcher
        os.kill(agent.pid, signal.SIGABRT)
        wait_until(lambda: "starts again in 4 s" in self.log(agent), 5, "the pause", 0.02)
        os.kill(watcher, signal.SIGTERM)
        wait_until(lambda: not is_running(watcher), 1, "the watcher's end", 0.02)
        self.assertEqual(agent.processes(), [])


class MasterFaults(WithMaster):
    """The master agent comes and goes; the agent stays."""

    def test_restarts_in_the_middle_of_requests_are_survived_and_a_stop_is_clean(self):
        agent = self.start_agent()
        before, daemon = values(snmp(self.master, "snmpwalk", BASE)), agent.pid
        for _ in range(4):
            walkers = [subprocess.Popen(["snmpwalk", "-v2c", "-c", COMMUNITY, "-r0", f"127.0.0.1:{self.master.port}", BASE],
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) for _ in range(3)]
            self.master.process.kill()
            self.master.process.wait()
            self.master.start()
            for walker in walkers:
                walker.wait()
            agent.wait_served(PING_SECONDS + 2)
            self.assertEqual(values(snmp(self.master, "snmpwalk", BASE)).keys(), before.keys())
        self.assertEqual(agent.pid, daemon)
        self.assertEqual(end_by(agent, signal.SIGTERM), 0)

    def test_an_agent_started_first_serves_when_the_master_comes(self):
        self.master.__exit__()
        agent = self.start_agent(served=False)
        time.sleep(1)
        self.assertTrue(is_running(agent.pid))
        self.master.start()
        agent.wait_served(30)

    def test_a_stop_while_the_master_is_stalled_ends_within_five_seconds(self):
        agent = self.start_agent()
        self.master.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.master.process.send_signal, signal.SIGCONT)
        self.assertEqual(end_by(agent, signal.SIGTERM), 0)
