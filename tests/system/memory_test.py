"""The agent's memory: a start, a walk and a stop under valgrind, in both modes."""

import contextlib
import os
import signal
import unittest

from hwtools.bench import ENTERPRISE, QUICKSTART, Bench, build_folder, settings
from hwtools.processes import is_running, wait_until
from hwtools.tables import walk

VALGRIND = ("valgrind", "--quiet", "--leak-check=full", "--show-leak-kinds=definite", "--errors-for-leak-kinds=definite")
TREE = tuple(map(int, ENTERPRISE.split(".")))


def under_valgrind(folder):
    """An executable that runs the agent under valgrind, with a report for each process in `folder`."""
    script = folder / "hwAgent"
    command = (*VALGRIND, f"--log-file={folder}/report.%p", str(build_folder() / "api-netsnmp" / "hwAgent"))
    script.write_text(f"#!/bin/sh\nexec {' '.join(command)}\n")
    script.chmod(0o755)
    return script


def stopped(pid):
    """Asks for a stop, again at each call, for one that comes before the agent's loop may be lost."""
    with contextlib.suppress(ProcessLookupError):
        os.kill(pid, signal.SIGTERM)
    return not is_running(pid)


class Memory(unittest.TestCase):
    def check(self, practical):
        """Runs the agent in the mode, and fails for what valgrind has to say."""
        bench = self.enterContext(Bench())
        bench.simulate(QUICKSTART)
        agent = bench.start_agent(settings(practical=practical), executable=under_valgrind(bench.folder))
        agent.wait_served(300)
        wait_until(lambda: len(walk(f"127.0.0.1:{bench.master.port}", TREE, timeout=30)) > 400, 120, "the tables", step=1)
        daemon = agent.pid
        wait_until(lambda: stopped(daemon), 60, "the daemon's end", step=1)
        reports = {path.name: path.read_text() for path in bench.folder.glob("report.*")}
        self.assertEqual(reports.get(f"report.{daemon}"), "")
        self.assertEqual("".join(reports.values()), "")

    def test_nothing_is_used_out_of_place_or_lost_in_the_practical_mode(self):
        self.check(practical=1)

    def test_nothing_is_used_out_of_place_or_lost_without_it(self):
        self.check(practical=0)
