#!/usr/bin/env python3
"""slow_bmc.py [--plain] [--seconds N] [--sensors N...] [--delays S...]: what managers see of a controller that takes its time.

For each board size and delay (seconds an answer; "silent" for none) it starts agent, master and simulator, asks for one value
each half second and walks the whole tree each five seconds, and prints one line: rows and when the first and the last came,
answers and the slowest of them, walks that lost the tree, exchanges, processor time of the agent. `--plain` leaves the
practical mode off."""

import argparse
import contextlib
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))

from hwtools.bench import COMMUNITY, ENTERPRISE, Agent, MasterAgent, Simulator, settings  # noqa: E402
from hwtools.faultline import Fault, FaultLine  # noqa: E402
from hwtools.processes import BenchError  # noqa: E402

HEALTH = ENTERPRISE + ".2.10.3.5.100.1.0"
TREE = ENTERPRISE + ".2.10.3.5"
TICKS = os.sysconf("SC_CLK_TCK")
# Readings of the three tables that have a value.
READING = re.compile(r"\.(?:400\.30|600\.20|600\.40)\.1\.6\.\d+ (?!2147483647$)", re.MULTILINE)


def board_text(sensors):
    """A third each of temperatures, voltages and fans, with two bounds each."""
    return f"""from hwtools.board import FAN, TEMPERATURE, VOLTAGE, Board
board = Board("slow")
kinds = [(TEMPERATURE, "degrees C"), (VOLTAGE, "Volts"), (FAN, "RPM")]
for number in range({sensors}):
    kind, unit = kinds[number % 3]
    board.analog(number % 250 + 1, kind, f"S {{number}}", 20 + number % 40, unit, lun=number // 250,
                 thresholds=dict(unc=200, uc=220))
"""


def processor_seconds(agent):
    total = 0
    for pid in agent.processes():
        with contextlib.suppress(OSError):
            total += sum(int(field) for field in Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[11:13])
    return total / TICKS


class Manager:
    """Asks as a monitoring system does, and notes what it gets."""

    def __init__(self, port):
        self.address = f"127.0.0.1:{port}"
        self.answers, self.slowest, self.lost, self.rows = 0, 0.0, 0, []
        self.began = time.monotonic()

    def call(self, program, *arguments):
        command = [program, "-v2c", "-c", COMMUNITY, "-t10", "-r0", "-Onq", self.address, *arguments]
        start = time.monotonic()
        done = subprocess.run(command, capture_output=True, text=True, env=dict(os.environ, MIBS=""))
        return done, time.monotonic() - start

    def get(self):
        done, took = self.call("snmpget", HEALTH)
        self.slowest = max(self.slowest, took)
        if done.returncode or "No Such" in done.stdout:
            self.lost += 1
        else:
            self.answers += 1

    def walk(self):
        """A walk without the scalars has lost the tree."""
        done, _ = self.call("snmpbulkwalk", TREE)
        if done.stdout.count("\n") < 10:
            self.lost += 1
        self.rows.append((time.monotonic() - self.began, len(READING.findall(done.stdout))))


def run(sensors, delay, seconds, practical):
    with contextlib.ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        (folder / "slow.py").write_text(board_text(sensors))
        simulator = stack.enter_context(Simulator(folder / "slow.py", folder / "bmc"))
        line = stack.enter_context(FaultLine(simulator))
        fault = Fault(drop=True) if delay is None else Fault(delay=delay)
        stack.enter_context(line.faulty(fault))
        master = stack.enter_context(MasterAgent(folder / "master"))
        agent = Agent(folder / "agent", line, master, settings(practical=int(practical)))
        manager = Manager(master.port)
        stack.enter_context(agent)
        served = None
        walker = None
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            manager.get()
            if manager.answers and served is None:
                served = time.monotonic() - manager.began
                manager.lost, manager.slowest = 0, 0.0
            if served is not None and (walker is None or not walker.is_alive()) and time.monotonic() % 5 < 0.5:
                walker = threading.Thread(target=manager.walk)
                walker.start()
            time.sleep(0.5)
        if walker:
            walker.join()
        manager.walk()
        most = max(rows for _, rows in manager.rows)
        first = next((f"{at:.0f}" for at, rows in manager.rows if rows > 0), "-")
        last = next((f"{at:.0f}" for at, rows in manager.rows if rows == most), "-") if most else "-"
        print(f"{sensors:>7} {'silent' if delay is None else delay:>7} {'practical' if practical else 'plain':>9} "
              f"{'-' if served is None else f'{served:.1f}':>7} {most:>5} {first:>6} {last:>6} {manager.answers:>8} "
              f"{manager.slowest * 1000:>8.0f} {manager.lost:>5} {fault.hits:>9} {processor_seconds(agent):>6.1f}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--plain", action="store_true")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--sensors", type=int, nargs="+", default=[92, 472])
    parser.add_argument("--delays", nargs="+", default=["0.02", "0.1", "1", "silent"])
    options = parser.parse_args()
    print("sensors   delay      mode served  rows  first   last  answers slowest,ms lost exchanges  cpu,s")
    for sensors in options.sensors:
        for delay in options.delays:
            try:
                run(sensors, None if delay == "silent" else float(delay), options.seconds, not options.plain)
            except BenchError as failure:
                print(f"{sensors:>7} {delay:>7}: {failure}", file=sys.stderr)


if __name__ == "__main__":
    main()
