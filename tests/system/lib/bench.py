"""Set-ups that several system tests share."""

import contextlib
import json
import os
import subprocess

from hwtools.bench import HWQUERY, Bench, build_folder, over_the_library

PRACTICAL = os.environ.get("HWAGENT_PRACTICAL") == "1"


@contextlib.contextmanager
def agent_on(board, prepare=lambda simulator: None):
    """A running agent on a board: its simulator, and a function that reads the rows of an object, by name or whole."""
    with Bench() as bench:
        prepare(bench.simulate(board))
        bench.start_agent().wait_served()
        yield bench.simulator, bench.read


def ask(test, simulator, path, *options):
    """What hwquery answers, which says nothing else: paths to lists of values or to {"children": [...]}."""
    done = subprocess.run([str(HWQUERY), "get", "--json", *options, path], capture_output=True, encoding="utf-8", timeout=60,
                          env=over_the_library(simulator, HRS_PATH_QL=str(build_folder() / "translations")))
    test.assertEqual((done.returncode, done.stderr), (0, ""))
    return {name: node.get("values", node) for name, node in json.loads(done.stdout)["nodes"].items()}
