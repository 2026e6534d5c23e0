"""A bench without hardware: ipmi_sim as the controller, a private snmpd, the unmodified agent under the preload library.

Each part is a context manager that keeps all its files in the folder it is given and binds 127.0.0.1 only."""

import contextlib
import csv
import os
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import time
from pathlib import Path

from . import simfiles
from .board import load_board
from .mibtable import find_object
from .processes import (BenchError, adopt_orphans, end, find_by_environment, free_port, parent_of, reap_orphans, spawn, tail,
                        wait_until)
from .tables import read_object

ROOT = Path(__file__).resolve().parents[2]
BOARDS = ROOT / "share" / "boards"
QUICKSTART = BOARDS / "quickstart.py"
AGENT_HOME = "/usr/local/hwagent"
TRANSLATIONS = "/usr/local/share/morvandale"
PID_FILE = "/var/run/hwagentd.pid"
LOCK_FILE = "/var/run/hwagentd.lock"
STATE_FOLDER = "/var/lib/hwagent"
CACHE_FOLDER = "/var/cache/hwagent"
RUN_FOLDER = "/run/hwagent"
SEL_MARK = STATE_FOLDER + "/sel-mark"
COMMUNITY = "public"
UNAVAILABLE = "1"  # systemHealthStatus
ENTERPRISE = "1.3.6.1.4.1.44444"


def build_folder():
    """Where the executables under test are: HWAGENT_BUILD, or the release build."""
    return Path(os.environ.get("HWAGENT_BUILD", ROOT / "build" / "release"))


HWQUERY = build_folder() / "tools" / "hwquery" / "hwquery"
LIBRARY = build_folder() / "tools" / "ipmi-preload" / "libhwagent-preload.so"


def over_the_library(simulator, **more):
    """The environment of a program whose /dev/ipmi0 is the simulator."""
    return dict(os.environ, LD_PRELOAD=str(LIBRARY), HWAGENT_PRELOAD_BMC=f"127.0.0.1:{simulator.serial_port}", **more)


def settings(**keys):
    """The shipped hwagent.conf with other values for some keys. Without `practical` among them the plain mode, or what
    HWAGENT_PRACTICAL says: the tests that hold for both modes run in both."""
    text = (ROOT / "packaging" / "hwagent.conf").read_text()
    for key, value in {"practical": os.environ.get("HWAGENT_PRACTICAL", "0"), **keys}.items():
        text, found = re.subn(rf"^{key} = .*$", f"{key} = {value}", text, flags=re.MULTILINE)
        if found != 1:
            raise BenchError(f"no key {key} in hwagent.conf")
    return text


class Simulator:
    """ipmi_sim playing a board. `lan_port` is for ipmitool, `serial_port` for the preload library or QEMU; `more` are
    further lines of its configuration (man ipmi_lan)."""

    def __init__(self, board, folder, more=""):
        self.more = more
        self.board = load_board(board)
        self.folder = Path(folder)
        self.process = None

    def __enter__(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        simfiles.write_board(self.board, self.folder)
        self.lan_port, self.serial_port = free_port(socket.SOCK_DGRAM), free_port()
        (self.folder / "lan.conf").write_text(simfiles.lan_conf(self.board.name, self.lan_port, self.serial_port, self.more))
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Starts it, again on the same ports after a stop()."""
        log = self.folder / "simulator.log"
        log.write_bytes(b"")
        self.process = spawn(["ipmi_sim", "-c", "lan.conf", "-f", "board.emu", "-s", "state"], log, cwd=self.folder,
                             stdin=subprocess.PIPE)
        wait_until(lambda: self.process.poll() is not None or self._answers(), 10, "ipmi_sim's first answer")
        refused = [line for line in tail(log, 400).splitlines() if line.startswith("**")]
        if self.process.poll() is not None or refused:
            raise BenchError("ipmi_sim refuses the board:\n" + "\n".join(refused or [tail(log)]))
        now = int(time.time())  # its event log's clock starts at the host's uptime
        self.ipmitool("raw", "0x0a", "0x49", *(str(now >> 8 * i & 0xFF) for i in range(4)))

    def stop(self):
        if self.process:
            self.process.stdin.close()
            end(self.process)

    def _answers(self):
        return self.ipmitool("raw", "6", "1", check=False).returncode == 0

    def ipmitool(self, *arguments, check=True):
        """Runs ipmitool over the simulator's LAN."""
        command = ["ipmitool", "-I", "lan", "-H", "127.0.0.1", "-p", str(self.lan_port), "-U", simfiles.LAN_USER,
                   "-P", simfiles.LAN_PASSWORD, "-N", "1", "-R", "2", *arguments]
        return subprocess.run(command, capture_output=True, encoding="latin-1", check=check, timeout=120)

    def ipmi_sensors(self):
        """FreeIPMI's view of all sensors by record id: (state, reading or None, words)."""
        with tempfile.TemporaryDirectory() as cache:
            said = subprocess.run(["ipmi-sensors", "-D", "LAN", "-h", f"127.0.0.1:{self.lan_port}", "-u", simfiles.LAN_USER,
                                   "-p", simfiles.LAN_PASSWORD, "-l", "ADMIN", "--sdr-cache-directory", cache, "--quiet-cache",
                                   "--bridge-sensors", "--output-sensor-state", "--comma-separated-output", "--no-header-output"],
                                  capture_output=True, encoding="latin-1", check=True, timeout=300).stdout
        return {int(cells[0]): (cells[3], None if cells[4] == "N/A" else float(cells[4]), cells[6].strip("'"))
                for cells in csv.reader(said.splitlines())}

    def say(self, line):
        """One line to the simulator's console (man ipmi_sim_cmd)."""
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()


class MasterAgent:
    """snmpd with a configuration of its own, AgentX on a unix socket. `extra`: further lines of its configuration."""

    def __init__(self, folder, extra=""):
        self.folder, self.extra = Path(folder), extra
        self.port = free_port(socket.SOCK_DGRAM)
        self.agentx = self.folder / "agentx"
        self.process = None

    def __enter__(self):
        (self.folder / "persist").mkdir(parents=True, exist_ok=True)
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        if self.process:
            end(self.process)

    def start(self):
        configuration = self.folder / "snmpd.conf"
        configuration.write_text(f"master agentx\nagentXSocket unix:{self.agentx}\nagentXPerms 0600 0700\n"
                                 f"agentAddress udp:127.0.0.1:{self.port}\nrocommunity {COMMUNITY} 127.0.0.1\n"
                                 f"rwcommunity private 127.0.0.1\n{self.extra}")
        self.agentx.unlink(missing_ok=True)
        environment = dict(os.environ, MIBS="", SNMP_PERSISTENT_DIR=str(self.folder / "persist"))
        self.process = spawn(["snmpd", "-f", "-C", "-c", configuration, "-I", "-smux", "-Lo", "-r"],
                             self.folder / "snmpd.log", env=environment)
        wait_until(lambda: self.process.poll() is not None or self.agentx.exists(), 10, "snmpd's AgentX socket")
        if self.process.poll() is not None:
            raise BenchError("snmpd does not start:\n" + tail(self.folder / "snmpd.log"))


class Agent:
    """The unmodified agent, with /dev/ipmi0 on a simulator and its files in a private folder. It makes a daemon of
    itself; `pid` is the daemon's, `watcher` its parent's."""

    def __init__(self, folder, simulator, master, configuration=None, executable=None):
        self.folder, self.simulator, self.master = Path(folder), simulator, master
        self.root = self.folder / "root"
        self.configuration = configuration or settings()
        self.executable = executable or build_folder() / "api-netsnmp" / "hwAgent"

    def __enter__(self):
        self.prepare()
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def prepare(self):
        """Lays out the files that the agent finds at their absolute paths."""
        def place(path, content):
            target = self.root / path.lstrip("/")
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)

        place(AGENT_HOME + "/conf/hwagent.conf", self.configuration.encode())
        place(PID_FILE, b"")
        place(LOCK_FILE, b"")
        for path, content in self.simulator.board.smbios.files().items():
            place(path, content)
        for folder in (STATE_FOLDER, CACHE_FOLDER, RUN_FOLDER):
            state = self.root / folder.lstrip("/")
            state.mkdir(parents=True, exist_ok=True)
            state.chmod(0o700)
        binary = self.root / (AGENT_HOME + "/bin/hwAgent").lstrip("/")
        binary.parent.mkdir(parents=True, exist_ok=True)
        binary.unlink(missing_ok=True)
        binary.symlink_to(self.executable)
        shutil.copytree(build_folder() / "translations", self.root / TRANSLATIONS.lstrip("/"), dirs_exist_ok=True,
                        ignore=shutil.ignore_patterns("*.stamp"))
        snmp = self.folder / "snmp"
        snmp.mkdir(exist_ok=True)
        for name in ("hwAgent", "hwSubgent"):  # the library reads the one or the other, by the call that asks
            (snmp / f"{name}.conf").write_text(f"agentXSocket unix:{self.master.agentx}\nagentXPingInterval 2\n")

    def environment(self):
        return over_the_library(
            self.simulator, MIBS="", SNMPCONFPATH=str(self.folder / "snmp"),
                    SNMP_PERSISTENT_DIR=str(self.folder / "snmp"),
                    HWAGENT_PRELOAD_ROOT=str(self.root))

    def start(self):
        """Starts it and waits until its daemon runs."""
        adopt_orphans()
        pid_file = self.root / PID_FILE.lstrip("/")
        pid_file.write_text("")
        with open(self.folder / "agent.log", "ab") as log:
            subprocess.run([str(self.executable)], stdin=subprocess.DEVNULL, stdout=log, stderr=log, check=True,
                           env=self.environment(), timeout=30)
        wait_until(lambda: self.pid, 10, "the agent's pid file")

    @property
    def pid(self):
        """The daemon's process id as it wrote it, or None."""
        text = (self.root / PID_FILE.lstrip("/")).read_text().split()
        return int(text[0]) if text else None

    @property
    def watcher(self):
        return parent_of(self.pid)

    def processes(self):
        """All processes of this agent, whoever started them: they carry its folder in their environment."""
        return find_by_environment(f"HWAGENT_PRELOAD_ROOT={self.root}")

    def wait_served(self, seconds=60):
        """Waits until it answers, which it does once all objects are registered, and for the first readings where the mode
        reads behind the registration."""
        wait_until(lambda: self.master_knows(ENTERPRISE + ".2.10.3.5.100.4.0"), seconds, "the agent's registration", 0.2)
        if re.search("^practical = [^0]", self.configuration, re.MULTILINE):
            wait_until(lambda: self.health() != UNAVAILABLE, seconds, "the first readings", 0.2)

    def health(self):
        """The system's health as a number, None without an answer."""
        return self.ask(ENTERPRISE + ".2.10.3.5.100.1.0")

    def knows_log(self):
        """Whether it has taken its place in the event log; the mode tells where."""
        return ((self.root / SEL_MARK.lstrip("/")).exists() or
                "Structures related to SEL are initialized" in (self.folder / "agent.log").read_text(encoding="latin-1"))

    def master_knows(self, oid):
        return self.ask(oid) is not None

    def ask(self, oid):
        """The value of an object as text, None without one."""
        answer = subprocess.run(["snmpget", "-v2c", "-c", COMMUNITY, "-r1", "-t1", "-Oqv", f"127.0.0.1:{self.master.port}",
                                 oid], capture_output=True, text=True, env=dict(os.environ, MIBS=""))
        return answer.stdout.strip() if answer.returncode == 0 and "No Such" not in answer.stdout else None

    def stop(self, patience=5):
        """Ends daemon and watcher, as gently as they let it be done."""
        running = self.processes()
        if self.pid in running:
            os.kill(self.pid, signal.SIGTERM)
        limit = time.monotonic() + patience
        while running and time.monotonic() < limit:
            time.sleep(0.05)
            running = self.processes()
        for pid in running:
            os.kill(pid, signal.SIGKILL)
        reap_orphans()


class Bench(contextlib.ExitStack):
    """Parts that end together, in a folder that is gone then: a simulator, and master agent and agent behind it."""

    def __enter__(self):
        self.folder = Path(self.enter_context(tempfile.TemporaryDirectory()))
        return super().__enter__()

    def simulate(self, board, more=""):
        """The simulator of a board: its file, or the text of one."""
        if isinstance(board, str):
            (self.folder / "board.py").write_text(board)
            board = self.folder / "board.py"
        self.simulator = self.enter_context(Simulator(board, self.folder / "bmc", more))
        return self.simulator

    def start_agent(self, configuration=None, extra="", line=None, executable=None):
        """`extra`: further lines for the master agent; `line`: what stands between simulator and agent."""
        self.master = self.enter_context(MasterAgent(self.folder / "master", extra))
        self.agent = self.enter_context(Agent(self.folder / "agent", line or self.simulator, self.master, configuration, executable))
        return self.agent

    def read(self, thing):
        """Rows of an object of the MIB, by its name or whole."""
        return read_object(f"127.0.0.1:{self.master.port}", find_object(thing) if isinstance(thing, str) else thing)
