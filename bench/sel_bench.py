#!/usr/bin/env python3
"""sel_bench.py [--records N] [--rounds N]: reading and translating the event log against `ipmitool sel elist`.

All read the same log of the same simulator in turn: hwquery over the preload library, ipmitool over the same and over the
simulator's LAN. Printed are medians and ratios.
HWAGENT_BUILD names the build folder (default build/release)."""

import argparse
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from hwtools.bench import HWQUERY, QUICKSTART, Bench, build_folder, over_the_library  # noqa: E402

def timed(command, environment):
    start = time.perf_counter()
    subprocess.run(command, env=environment, check=True, capture_output=True)
    return time.perf_counter() - start


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--records", type=int, default=1000)
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    with Bench() as bench:
        simulator = bench.simulate(QUICKSTART)
        simulator.ipmitool("sel", "clear")
        fill(simulator, arguments.records)
        environment = over_the_library(simulator, HRS_PATH_QL=f"{build_folder()}/translations/")
        commands = {"hwquery": [HWQUERY, "get", "/BMC/SEL/TRANSLATED"],
                    "ipmitool, same road": ["ipmitool", "-I", "open", "sel", "elist"],
                    "ipmitool, LAN": simulator.ipmitool("sel", "elist").args}
        times = {name: [] for name in commands}
        for _ in range(arguments.rounds):
            for name, command in commands.items():
                times[name].append(timed(command, environment))
    ours = statistics.median(times.pop("hwquery"))
    print(f"{arguments.records} records: hwquery {ours:.3f} s")
    for name, taken in times.items():
        print(f"{name}: {statistics.median(taken):.3f} s, ratio {ours / statistics.median(taken):.2f}")


def fill(simulator, records):
    """Threshold and power supply events in turn, through the simulator's console."""
    for i in range(records):
        event = "1 1 1 0x57 45 43" if i % 2 else "8 2 0x6f 0x01 0xff 0xff"
        simulator.say(f"sel_add 0x20 2 0 0 0 0 0x20 0 4 {event}")
    limit = time.monotonic() + 60
    while f"{records}" not in simulator.ipmitool("sel", "info").stdout and time.monotonic() < limit:
        time.sleep(0.2)


if __name__ == "__main__":
    main()
