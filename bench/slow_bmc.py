#!/usr/bin/env python3
"""slow_bmc.py [--machine driver|kcs] [--plain] [--seconds N] [--sensors N...] [--delays S...]: what managers see of a
controller that takes its time.

For each board size and delay (seconds an answer; "silent" for none) it starts agent, master and simulator, asks for one value
each half second and walks the whole tree each five seconds, and prints one line: rows and when the first and the last came,
answers and the slowest of them, walks that lost the tree, exchanges, processor time of the agent in all, and its share of a
processor after the first fifteen seconds. `--plain` leaves the practical mode off. With `--machine` all but the controller is
in the virtual server, where the agent has the kernel's driver or the bare KCS port; else the preload library is its driver."""

import argparse
import contextlib
import json
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from hwtools.bench import COMMUNITY, ENTERPRISE, Agent, MasterAgent, Simulator, build_folder, settings  # noqa: E402
from hwtools.faultline import Fault, FaultLine  # noqa: E402
from hwtools.machine import run_in_machine  # noqa: E402
from hwtools.processes import BenchError  # noqa: E402

HEALTH = ENTERPRISE + ".2.10.3.5.100.1.0"
TREE = ENTERPRISE + ".2.10.3.5"
SETTLING = 15
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


def processor_seconds(processes):
    total = 0
    for pid in processes:
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


def manage(port, seconds, processes):
    """Asks and walks so long, and tells what was seen of the agent, whose processes are those."""
    manager, served, walker = Manager(port), None, None
    end = time.monotonic() + seconds
    settled = None
    while time.monotonic() < end:
        if settled is None and time.monotonic() > manager.began + SETTLING:
            settled = time.monotonic(), processor_seconds(processes())
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
    used = processor_seconds(processes())
    share = (used - settled[1]) / (time.monotonic() - settled[0]) if settled else 0
    return dict(served=served, rows=manager.rows, answers=manager.answers, slowest=manager.slowest, lost=manager.lost,
                cpu=used, share=share)


def manage_here(line, folder, practical, seconds):
    """The agent on this machine, over the preload library."""
    with MasterAgent(folder / "master") as master, \
            Agent(folder / "agent", line, master, settings(practical=int(practical))) as agent:
        return manage(master.port, seconds, agent.processes)


GUEST = f"""
set -e
cmake --install {build_folder()} > /tmp/install.log
cp /share/hwagent.conf /usr/local/hwagent/conf/hwagent.conf
printf 'master agentx\\nagentAddress udp:127.0.0.1:161\\nrocommunity {COMMUNITY}\\n' > /tmp/snmpd.conf
snmpd -C -c /tmp/snmpd.conf -I -smux -Lf /tmp/snmpd.log
sleep 1
/usr/local/hwagent/bin/hwAgent > /tmp/agent.log 2>&1
PYTHONDONTWRITEBYTECODE=1 HWAGENT_BUILD={build_folder()} python3 {Path(__file__).resolve()} --inside SECONDS
"""


def manage_in_machine(line, folder, practical, seconds, driver):
    """The agent in the virtual server."""
    share = folder / "share"
    share.mkdir()
    (share / "hwagent.conf").write_text(settings(practical=int(practical)))
    done = run_in_machine(GUEST.replace("SECONDS", str(seconds)), share, line.serial_port, driver, timeout=seconds * 4 + 420)
    if done.returncode:
        raise BenchError(done.stderr)
    return json.loads(done.stdout)


def manage_inside(seconds):
    """What runs in the virtual server."""
    def agents():
        return [int(path.parent.name) for path in Path("/proc").glob("[0-9]*/comm") if path.read_text().strip() == "hwAgent"]

    print(json.dumps(manage(161, seconds, agents)))


def run(sensors, delay, options):
    with contextlib.ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        (folder / "slow.py").write_text(board_text(sensors))
        simulator = stack.enter_context(Simulator(folder / "slow.py", folder / "bmc"))
        line = stack.enter_context(FaultLine(simulator))
        fault = Fault(drop=True) if delay is None else Fault(delay=delay)
        stack.enter_context(line.faulty(fault))
        what = (line, folder, not options.plain, options.seconds)
        seen = manage_in_machine(*what, options.machine == "driver") if options.machine else manage_here(*what)
    most = max(rows for _, rows in seen["rows"])
    first = next((f"{at:.0f}" for at, rows in seen["rows"] if rows > 0), "-")
    last = next((f"{at:.0f}" for at, rows in seen["rows"] if rows == most), "-") if most else "-"
    served = "-" if seen["served"] is None else f"{seen['served']:.1f}"
    print(f"{options.machine or 'preload':>7} {sensors:>7} {'silent' if delay is None else delay:>7} "
          f"{'plain' if options.plain else 'practical':>9} {served:>7} {most:>5} {first:>6} {last:>6} {seen['answers']:>8} "
          f"{seen['slowest'] * 1000:>8.0f} {seen['lost']:>5} {fault.hits:>9} {seen['cpu']:>6.1f} "
          f"{seen['share'] * 100:>7.1f}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--machine", choices=["driver", "kcs"])
    parser.add_argument("--inside", type=int, help=argparse.SUPPRESS)
    parser.add_argument("--plain", action="store_true")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--sensors", type=int, nargs="+", default=[92, 472])
    parser.add_argument("--delays", nargs="+", default=["0.02", "0.1", "1", "silent"])
    options = parser.parse_args()
    if options.inside:
        return manage_inside(options.inside)
    print("   road sensors   delay      mode served  rows  first   last  answers slowest,ms lost exchanges  cpu,s share,%")
    for sensors in options.sensors:
        for delay in options.delays:
            try:
                run(sensors, None if delay == "silent" else float(delay), options)
            except BenchError as failure:
                print(f"{sensors:>7} {delay:>7}: {failure}", file=sys.stderr)


if __name__ == "__main__":
    main()
