#!/usr/bin/env python3
"""snmp_bench.py [--requests N] [--rounds N] [--soak GETS]: the agent under snmpd against a subagent of constant answers.

Both serve the same number of objects, columns and rows, each behind a master agent of its own; they are asked in turn, so
that what else the machine does hits both alike. Printed are the rates' ratio (median of the rounds) and the ratio of the
slowest requests of all rounds, then resident memory and its growth. --soak also sends that many GETs and restarts the master 20 times.
HWAGENT_BUILD names the build folder (default build/release)."""

import argparse
import contextlib
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from hwtools.bench import ENTERPRISE, Agent, MasterAgent, Simulator, build_folder  # noqa: E402
from hwtools.processes import end, spawn, wait_until  # noqa: E402
from hwtools.mibtable import OBJECTS
from hwtools.tables import read_object  # noqa: E402

BASE = ENTERPRISE + ".2.10.3.5"
TEMPERATURE = BASE + ".600.40.1"


class ConstantAgent:
    """bench/constant_agent in the shape of what the real one serves."""

    def __init__(self, folder, master, shape):
        self.folder, self.master, self.shape = Path(folder), master, shape

    def __enter__(self):
        self.folder.mkdir(parents=True)
        (self.folder / "hwAgent.conf").write_text(f"agentXSocket unix:{self.master.agentx}\n")
        self.process = spawn([build_folder() / "bench" / "constant_agent", *self.shape], self.folder / "log",
                             env={"SNMPCONFPATH": str(self.folder), "SNMP_PERSISTENT_DIR": str(self.folder), "MIBS": ""})
        return self

    def __exit__(self, *_):
        end(self.process)


def load(master, operation, count, oids, seconds=60):
    """One run of snmp_load: its figures by name."""
    out = subprocess.run([build_folder() / "bench" / "snmp_load", f"udp:127.0.0.1:{master.port}", operation, str(count),
                          str(seconds), *oids], check=True, capture_output=True, text=True).stdout
    return {name: float(value) for name, value in re.findall(r"(\w+) ([\d.]+)", out)}


def compare(real, constant, operation, oids, requests, rounds):
    """Runs of both in turn; medians of the ratios of rate and of the slowest request."""
    rates, slowest = [], []
    for _ in range(rounds):
        ours = load(real, operation, requests, oids)
        theirs = load(constant, operation, requests, oids)
        rates.append((ours["rate"], theirs["rate"]))
        slowest.append((ours["slowest_us"], theirs["slowest_us"], ours["p999_us"], theirs["p999_us"]))
    ratio = statistics.median(a / b for a, b in rates)
    return ratio, statistics.median(a for a, _ in rates), slowest


def resident_kb(pid):
    return int(re.search(r"VmRSS:\s+(\d+)", Path(f"/proc/{pid}/status").read_text()).group(1))


def soak(agent, master, oids, gets):
    """Resident memory after a warm-up, after `gets` GETs, and after 20 restarts of the master."""
    load(master, "get", 2000, oids)
    warm = resident_kb(agent.pid)
    load(master, "get", gets, oids, seconds=600)
    asked = resident_kb(agent.pid)
    for _ in range(20):
        master.stop()
        master.start()
        agent.wait_served()
    load(master, "get", 2000, oids)
    print(f"memory: {warm} kB warm, {asked} kB after {gets} GETs, {resident_kb(agent.pid)} kB after 20 master restarts")


def shape_of(address):
    """OBJECT:KINDS:ROWS of everything the real agent serves."""
    shape = []
    for thing in OBJECTS:
        suffix = ".".join(map(str, thing.oid[BASE.count(".") + 1:]))
        kinds = "".join("s" if column.kind == "text" else "i" for column in thing.columns)
        shape.append(f"{suffix}:{kinds}:{'-' if thing.scalar else len(read_object(address, thing))}")
    return shape


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--requests", type=int, default=20000)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--soak", type=int, default=0)
    arguments = parser.parse_args()

    # all on one processor: a rate then is the sum of what client, master and subagent cost, and not of where they woke up
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    with contextlib.ExitStack() as bench:
        folder = Path(bench.enter_context(tempfile.TemporaryDirectory()))
        simulator = bench.enter_context(Simulator(ROOT / "share" / "boards" / "full100.py", folder / "bmc"))
        real = bench.enter_context(MasterAgent(folder / "real"))
        agent = bench.enter_context(Agent(folder / "agent", simulator, real))
        agent.wait_served()
        shape = shape_of(f"127.0.0.1:{real.port}")
        constant = bench.enter_context(MasterAgent(folder / "constant"))
        bench.enter_context(ConstantAgent(folder / "stand-in", constant, shape))
        wait_until(lambda: agent_serves(constant), 30, "the constant subagent")
        print("objects:", *shape)

        readings = [f"{TEMPERATURE}.6.{row}" for row in range(1, 4)]
        columns = [f"{TEMPERATURE}.{column}" for column in range(1, 16)] + [f"{BASE}.400.30.1.{c}" for c in range(1, 6)]
        for name, operation, oids, share in (("GET 1 column", "get", readings[:1], 1), ("GETNEXT 1 column", "getnext", columns[:1], 1),
                                             ("GETNEXT 20 columns", "getnext", columns, 0.2), ("GETBULK 10", "bulk10", columns[5:6], 0.3)):
            load(real, operation, 200, oids)
            ratio, rate, slowest = compare(real, constant, operation, oids, int(arguments.requests * share), arguments.rounds)
            ours, theirs = max(s[0] for s in slowest), max(s[1] for s in slowest)
            print(f"{name}: {ratio:.3f} of the constant subagent's rate ({rate:.0f}/s); slowest request "
                  f"{ours / theirs:.2f} times its ({ours:.0f} to {theirs:.0f} us), 99.9th percentile "
                  f"{statistics.median(s[2] / s[3] for s in slowest):.2f} times")
        print(f"memory: {resident_kb(agent.pid)} kB resident")
        if arguments.soak:
            soak(agent, real, readings, arguments.soak)


def agent_serves(master):
    answer = subprocess.run(["snmpget", "-v2c", "-c", "public", "-r0", "-t1", "-On", f"127.0.0.1:{master.port}",
                             f"{TEMPERATURE}.6.1"], capture_output=True, text=True)
    return answer.returncode == 0 and "No Such" not in answer.stdout


if __name__ == "__main__":
    main()
