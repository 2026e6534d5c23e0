"""hwquery status, test-trap and check-config, with the agent they ask, snmpd and a manager."""

import contextlib
import json
import os
import shutil
import signal
import stat
import subprocess
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import HWQUERY, QUICKSTART, RUN_FOLDER, Agent, MasterAgent, Simulator, settings
from hwtools.mibtable import TRAPS, dotted
from hwtools.processes import wait_until
from hwtools.traps import TrapReceiver
from lib.traps import check_traps

NARROW = "view narrow included .1.3.6.1.2.1.1\nrocommunity narrow 127.0.0.1 -V narrow\n"
PLACES = 8  # of trap texts shown


class Status(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with contextlib.ExitStack() as bench:
            folder = Path(bench.enter_context(tempfile.TemporaryDirectory()))
            cls.receiver = bench.enter_context(TrapReceiver(folder / "manager"))
            cls.simulator = simulator = bench.enter_context(Simulator(QUICKSTART, folder / "bmc"))
            cls.master = bench.enter_context(MasterAgent(folder / "master", cls.receiver.sink + NARROW))
            cls.agent = bench.enter_context(Agent(folder / "agent", simulator, cls.master,
                                                  settings(practical=1, trapsEnabled=1, exchangeBudget=1000)))
            cls.agent.wait_served()
            cls.addClassCleanup(bench.pop_all().close)

    def run_query(self, *words, **environment):
        return subprocess.run([HWQUERY, *words], capture_output=True, text=True, env=self.agent.environment() | environment,
                              timeout=60)

    def findings(self, *words, status=0, **environment):
        """State and text of each check, and what to do."""
        done = self.run_query("status", "--json", "--agent", f"127.0.0.1:{self.master.port}", *words, **environment)
        self.assertEqual((done.returncode, done.stderr), (status, ""), done.stdout)
        told = json.loads(done.stdout)
        self.assertEqual(told["failures"], [])
        for row in told["status"]:
            self.assertEqual(row["state"] == "ok", not row["advice"], row)
        return {row["check"]: (row["state"], row["finding"], row["advice"]) for row in told["status"]}, told["groups"]

    def check(self, found, check, state, words, advice=""):
        self.assertEqual(found[check][0], state, found)
        self.assertRegex(found[check][1], words)
        self.assertIn(advice, found[check][2])

    def test_all_is_told_of_an_agent_that_serves(self):
        wait_until(lambda: "refresh" in self.findings()[0], 20, "the first refresh")
        found, groups = self.findings()
        for check, state, words in (("daemon", "ok", rf"^process {self.agent.pid}, for \d+ s"), ("master", "ok", "^connected"),
                                    ("tree", "ok", "^seen with community public"), ("transport", "ok", "driver, /dev/ipmi0$"),
                                    ("controller", "ok", "^answers$"), ("records", "ok", r"^read \(\d+ s ago\)$"),
                                    ("refresh", "ok", r"^in [\d.]+ s, again in [\d.]+ s \(\d+ s ago\)$"),
                                    ("rows", "ok", "temperatureProbe 7, "), ("health", "note", "^critical$"),
                                    ("event", "ok", "^behind record 0007 "), ("config", "ok", "hwagent.conf$")):
            self.check(found, check, state, words)
        self.assertIn({"group": "driveSlot", "rows": "8", "silent": ""}, groups)

    def test_why_the_tree_is_not_seen(self):
        for words, state, why in ((["--community", "narrow"], "BAD", "^the view hides it from community narrow"),
                                  (["--community", "wrong"], "BAD", "^no answer with community wrong"),
                                  (["--snmp=-v3 -u nobody -l noAuthNoPriv"], "BAD", "Unknown user name"),
                                  (["--snmp=-v1 -c narrow"], "BAD", "^the view hides it from the options given"),
                                  (["--snmp=-v1 -c public"], "ok", "^seen with the options given")):
            with self.subTest(words=words):
                self.check(self.findings(*words, status=state == "BAD")[0], "tree", state, why)

    def test_a_test_trap_arrives_as_one_and_changes_nothing(self):
        before = self.findings()[0]
        for words, arc, objects in ([[], "90.1", 2], [["trapTUpCri"], "70.18", 4]):
            count = len(self.receiver.traps())
            done = self.run_query("test-trap", *words)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertRegex(done.stdout, r"^sent = trap\w+\n$")
            name, carried = self.receiver.wait_for(count + 1, 20)[-1]
            self.assertEqual((name, len(carried), carried[0][1][:PLACES]), (arc, objects, "TEST, no"))
        after = self.findings()[0]
        self.assertEqual((after["health"], after["event"][1][:18]), (before["health"], before["event"][1][:18]))
        self.check(after, "traps", "ok", r"^last trapTUpCri: TEST, nothing has happened: trapTUpCri \(\d+ s ago\)$")
        done = self.run_query("test-trap", "trapNonsense")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no trap of that name", done.stderr)

    def test_every_trap_of_the_mib_can_be_tried_and_is_as_the_mib_says(self):
        before = len(self.receiver.traps())
        for trap in TRAPS:
            self.assertEqual(self.run_query("test-trap", trap.name).stdout, f"sent = {trap.name}\n")
        arrived = self.receiver.wait_for(before + len(TRAPS), 30)[before:]
        self.assertEqual([(name, values[0][1]) for name, values in arrived],
                         [(dotted(trap.arc[1:]), f"TEST, nothing has happened: {trap.name}") for trap in TRAPS])
        check_traps(self, arrived)

    def test_what_keeps_the_controller_from_being_asked(self):
        with tempfile.TemporaryDirectory() as alone:
            for words, found, without_driver in (("none [integrity] confidentiality", "integrity", "BAD"),
                                                 ("[none] integrity confidentiality", "none", "ok")):
                for root in (self.agent.root, Path(alone)):
                    locked = root / "sys/kernel/security/lockdown"
                    locked.parent.mkdir(parents=True, exist_ok=True)
                    locked.write_text(words + "\n")
                self.check(self.findings()[0], "lockdown", "ok", f"^{found}$")
                told = self.findings(status=1, HWAGENT_PRELOAD_ROOT=alone)[0]
                self.check(told, "daemon", "BAD", "^not running$", "systemctl start hwagent")
                self.check(told, "lockdown", without_driver, f"^{found}$", "only its driver" if without_driver == "BAD" else "")
        self.simulator.process.send_signal(signal.SIGSTOP)
        try:
            wait_until(lambda: self.run_query("status").returncode == 1, 60, "word of the silence", 1)
            self.check(self.findings(status=1)[0], "controller", "BAD", r"^no answer since \d\d:\d\d:\d\d$",
                       "ipmitool mc info")
        finally:
            self.simulator.process.send_signal(signal.SIGCONT)
        wait_until(lambda: self.run_query("status").returncode == 0, 60, "an answer", 1)
        self.check(self.findings()[0], "controller", "ok", r"^answers \(\d+ s ago\)$")

    def test_the_socket_is_roots_and_a_dead_daemons_is_none(self):
        folder = self.agent.root / RUN_FOLDER.lstrip("/")
        self.assertEqual([stat.S_IMODE(os.stat(place).st_mode) for place in (folder, folder / "status")], [0o700, 0o600])
        with tempfile.TemporaryDirectory() as open_folder:
            Path(open_folder).chmod(0o755)
            program = shutil.copy(HWQUERY, open_folder)
            for place in (self.agent.root, *self.agent.root.relative_to("/tmp").parents):
                Path("/tmp", place).chmod(0o755 if place != Path(".") else 0o1777)
            found = subprocess.run([program, "status"], capture_output=True, text=True, user="nobody", cwd="/",
                                   env={"HWAGENT_PRELOAD_ROOT": str(self.agent.root)}).stdout
        self.assertRegex(found, "(?m)^daemon +BAD +not (running|to be asked)")
        killed = self.agent.pid
        os.kill(self.agent.watcher, signal.SIGKILL)
        os.kill(killed, signal.SIGKILL)
        wait_until(lambda: not self.agent.processes(), 10, "the end")
        self.assertTrue((folder / "status").is_socket())
        self.check(self.findings(status=1)[0], "daemon", "BAD", "^not running$")
        self.agent.start()
        self.agent.wait_served()
        self.check(self.findings()[0], "daemon", "ok", f"^process {self.agent.pid}, ")

    def test_the_shipped_configuration_has_nothing_odd(self):
        done = self.run_query("check-config")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        with tempfile.NamedTemporaryFile("w", suffix=".conf") as file:
            file.write("practical = 1\ntrapEnabled = 1\n")
            file.flush()
            done = self.run_query("check-config", file.name)
        self.assertEqual((done.returncode, done.stderr), (1, f'{file.name}:2: unknown key "trapenabled"\n'))


if __name__ == "__main__":
    unittest.main()
