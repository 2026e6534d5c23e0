"""Starting, watching and ending the processes of a test bench, so that none outlives it."""

import ctypes
import os
import signal
import socket
import subprocess
import time
from pathlib import Path

PR_SET_PDEATHSIG, PR_SET_CHILD_SUBREAPER = 1, 36

os.environ["PATH"] += ":/usr/sbin:/sbin"  # snmpd is there, and only root's PATH names it


class BenchError(Exception):
    """A part of the bench did not come up; the text says which and what it printed."""


def adopt_orphans():
    """Makes this process the parent of daemons that its children leave behind, so that it can end and reap them."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)


def _end_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def spawn(command, log, **options):
    """Starts `command` with both outputs in the file `log`; it ends when this process does."""
    with open(log, "ab") as output:
        return subprocess.Popen(list(map(str, command)), stdout=output, stderr=output, preexec_fn=_end_with_parent,
                                **{"stdin": subprocess.DEVNULL, **options})


def end(process, patience=5):
    """Ends a process of spawn() with SIGTERM, after `patience` seconds with SIGKILL."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            process.kill()
    return process.wait()


def wait_until(condition, seconds, what, step=0.05):
    """The first true result of `condition`; BenchError naming `what` when there is none in time."""
    limit = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > limit:
            raise BenchError(f"{what} did not happen within {seconds} s")
        time.sleep(step)


def free_port(kind=socket.SOCK_STREAM):
    with socket.socket(socket.AF_INET, kind) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def tail(path, lines=20):
    path = Path(path)
    return "\n".join(path.read_text(errors="replace").splitlines()[-lines:]) if path.exists() else ""


def parent_of(pid):
    """Parent process id of `pid`, or None when it is gone."""
    try:
        return int(Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[1])
    except (FileNotFoundError, ProcessLookupError):
        return None


def is_running(pid):
    """Whether `pid` exists and is not a zombie."""
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def find_by_environment(entry):
    """Process ids, without zombies, of all processes that were started with `entry` ("NAME=value") in their environment."""
    found = []
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            if entry.encode() in (folder / "environ").read_bytes().split(b"\0"):
                found.append(int(folder.name))
        except OSError:
            continue  # gone, or not ours to read
    return [pid for pid in found if is_running(pid)]


def reap_orphans():
    """Takes the ends of adopted children; those of spawn() are left to end()."""
    mine = str(os.getpid())
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            state, parent = (folder / "stat").read_text().rpartition(")")[2].split()[:2]
            name = (folder / "comm").read_text().strip()
            if (state, parent, name) == ("Z", mine, "hwAgent"):
                os.waitpid(int(folder.name), os.WNOHANG)
        except (OSError, ChildProcessError):
            continue
