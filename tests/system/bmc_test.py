"""The controller as the SDK tells it, against ipmitool on the same simulator: itself, chassis, repository, log.

What the simulator refuses (self test, restart cause, power-on hours, policy; the GUID on its serial line) is left to the
engine's files, and so is the power, which it calls on while its serial line is in use and off otherwise."""

import re
import unittest

from hwtools.bench import QUICKSTART, Bench
from lib.bench import ask

FLAGS = {"true": "TRUE", "false": "FALSE", "active": "TRUE", "inactive": "FALSE", "yes": "TRUE", "no": "FALSE"}

# Below which path, ipmitool's command, and for each leaf its line there and what makes our text of it.
ROWS = {
    "/BMC/INFO": ("mc info", {
        "VERSION": ("Firmware Revision", lambda text: text + ".0"),
        "OP_AREA_VERSION": ("Firmware Revision", str),
        "IPMIVERSION": ("IPMI Version", str),
        "ID": ("Product ID", lambda text: text.split()[0]),
        "PRODUCTID": ("Product ID", lambda text: "{1:x}{0:x}".format(*divmod(int(text.split()[0]), 256))),
        "MODE": ("Device Available", {"yes": "OPERATIONAL", "no": "UPDATE"}.get)}),
    "/BMC/CHASSIS/STATUS": ("chassis status", {
        "POWERSTATE/POWEROVERLOAD": ("Power Overload", FLAGS.get),
        "POWERSTATE/INTERLOCK": ("Power Interlock", FLAGS.get),
        "POWERSTATE/POWERFAULT": ("Main Power Fault", FLAGS.get),
        "POWERSTATE/CONTROLFAULT": ("Power Control Fault", FLAGS.get),
        "POWERSTATE/RESTOREPOLICY": ("Power Restore Policy", lambda text: text.upper().replace("-", "_")),
        "MISCSTATE/INTRUSIONACTIVE": ("Chassis Intrusion", FLAGS.get),
        "MISCSTATE/FPLACTIVE": ("Front-Panel Lockout", FLAGS.get),
        "MISCSTATE/DRIVEFAULT": ("Drive Fault", FLAGS.get),
        "MISCSTATE/FANFAULT": ("Cooling/Fan Fault", FLAGS.get)}),
    "/BMC/SEL/INFO": ("sel info", {
        "VERSION": ("Version", lambda text: text.split()[0]),
        "NUM_LOGENTRIES": ("Entries", str),
        "FREE_SPACE": ("Free Space", lambda text: text.split()[0]),
        "RECENT_ADDITION_TIME": ("Last Add Time", lambda text: re.sub(r"(\d+)/(\d+)/(\d+) (\S+) UTC", r"\1/\2/20\3-\4", text)),
        "OVERFLOW": ("Overflow", FLAGS.get),
        "DELETE_SUPPORT": ("Supported Cmds", lambda text: str("'Delete'" in text).upper()),
        "RESERVE_SUPPORT": ("Supported Cmds", lambda text: str("'Reserve'" in text).upper()),
        "PARTIALADD_SUPPORT": ("Supported Cmds", lambda text: str("'Partial Add'" in text).upper()),
        "ALLOCINFO_SUPPORT": ("Supported Cmds", lambda text: str("'Get Alloc Info'" in text).upper())}),
    "/BMC/SDR/INFO": ("sdr info", {
        "VERSION": ("SDR Version", lambda text: "{1}.{0}".format(*text.removeprefix("0x"))),
        "NUMBER": ("Record Count", str),
        "FREESPACE": ("Free Space", lambda text: "65534" if text == "> 64Kb - 2 bytes" else text.split()[0])}),
}


class Controller(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.simulator = cls.enterClassContext(Bench()).simulate(QUICKSTART)

    def ask(self, path):
        """Paths to texts."""
        return {name: " ".join(node) if isinstance(node, list) else node for name, node in ask(self, self.simulator, path).items()}

    def lines(self, *command):
        return dict(re.findall(r"^ *([^:\n]+?) *: (.*?) *$", self.simulator.ipmitool(*command).stdout, re.M))

    def test_leaves_read_as_ipmitool_reads_them(self):
        for path, (command, leaves) in ROWS.items():
            told, shown = self.ask(path), self.lines(*command.split())
            for leaf, (line, ours) in leaves.items():
                with self.subTest(f"{path}/{leaf}"):
                    self.assertEqual(told[f"{path}/{leaf}"], ours(shown[line]))
