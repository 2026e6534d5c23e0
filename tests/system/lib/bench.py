"""Set-ups that several system tests share."""

import contextlib
import json
import os
import subprocess
import tempfile
from pathlib import Path

from hwtools.bench import ROOT, Agent, MasterAgent, Simulator, build_folder
from hwtools.mibtable import find_object
from hwtools.tables import read_object

BOARDS = ROOT / "share" / "boards"
QUICKSTART = BOARDS / "quickstart.py"
PRACTICAL = os.environ.get("HWAGENT_PRACTICAL") == "1"
HWQUERY = build_folder() / "tools" / "hwquery" / "hwquery"
LIBRARY = build_folder() / "tools" / "ipmi-preload" / "libhwagent-preload.so"


@contextlib.contextmanager
def agent_on(board, prepare=lambda simulator: None):
    """A running agent on a board: its simulator, and a function that reads the rows of an object, by name or whole."""
    with contextlib.ExitStack() as bench:
        folder = Path(bench.enter_context(tempfile.TemporaryDirectory()))
        simulator = bench.enter_context(Simulator(board, folder / "bmc"))
        prepare(simulator)
        master = bench.enter_context(MasterAgent(folder / "master"))
        bench.enter_context(Agent(folder / "agent", simulator, master)).wait_served()
        yield simulator, lambda thing: read_object(f"127.0.0.1:{master.port}",
                                                   find_object(thing) if isinstance(thing, str) else thing)


def over_the_library(simulator, **more):
    """The environment of a program whose /dev/ipmi0 is the simulator."""
    return dict(os.environ, LD_PRELOAD=str(LIBRARY), HWAGENT_PRELOAD_BMC=f"127.0.0.1:{simulator.serial_port}", **more)


def ask(test, simulator, path, *options):
    """What hwquery answers, which says nothing else: paths to lists of values or to {"children": [...]}."""
    done = subprocess.run([str(HWQUERY), "get", "--json", *options, path], capture_output=True, encoding="utf-8", timeout=60,
                          env=over_the_library(simulator, HRS_PATH_QL=str(build_folder() / "translations")))
    test.assertEqual((done.returncode, done.stderr), (0, ""))
    return {name: node.get("values", node) for name, node in json.loads(done.stdout)["nodes"].items()}
