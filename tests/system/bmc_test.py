"""The controller as the SDK tells it, against ipmitool on the same simulator: itself, chassis, repository, log, sensors.

What the simulator refuses (self test, restart cause, power-on hours, policy; the GUID on its serial line) is left to the
engine's files, and so is the power, which it calls on while its serial line is in use and off otherwise."""

import re
import unittest

from hwtools.bench import QUICKSTART, Bench
from lib.bench import ask

FLAGS = {"true": "TRUE", "false": "FALSE", "active": "TRUE", "inactive": "FALSE", "yes": "TRUE", "no": "FALSE"}
THRESHOLDS = ("LOWER_NONCRITICAL", "LOWER_CRITICAL", "LOWER_NONRECOVERABLE", "UPPER_NONCRITICAL", "UPPER_CRITICAL",
              "UPPER_NONRECOVERABLE")
EVENTS = ("STATUS", "LOWER_ASSERTION", "UPPER_ASSERTION", "LOWER_DEASSERTION", "UPPER_DEASSERTION")

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

    def raw(self, *request):
        return bytes.fromhex(self.simulator.ipmitool("raw", *map(str, request)).stdout)

    def test_leaves_read_as_ipmitool_reads_them(self):
        for path, (command, leaves) in ROWS.items():
            told, shown = self.ask(path), self.lines(*command.split())
            for leaf, (line, ours) in leaves.items():
                with self.subTest(f"{path}/{leaf}"):
                    self.assertEqual(told[f"{path}/{leaf}"], ours(shown[line]))

    def test_sensors_read_as_ipmitool_reads_them(self):
        told = self.ask("/BMC/SENSOR/DISPLAY")
        columns = [[column.strip() for column in line.split("|")]
                   for line in self.simulator.ipmitool("sensor").stdout.splitlines()]
        shown = {row[0]: row for row in columns if row[2] != "discrete"}
        sensors = {told[path + "/NAME"]: path for path in told["/BMC/SENSOR/DISPLAY"]["children"]}
        self.assertLessEqual(set(shown), set(sensors))
        for name, row in shown.items():
            path = sensors[name]
            with self.subTest(name):
                value = told[path + "/VALUE"]
                self.assertEqual("na" if value == "READING_UNAVAILABLE" else f"{float(value):.3f}", row[1])
                if told[path + "/OWNER"] == "32":
                    self.compare_raw(path, told)

    def compare_raw(self, path, told):
        number = int(told[path + "/NUMBER"])
        mask, *places = self.raw(0x04, 0x27, number)
        self.assertEqual([told[f"{path}/THRESHOLD/{name}"] for name in THRESHOLDS],
                         [str(place) if mask >> bit & 1 else "NOT SUPPORTED" for bit, place in enumerate(places)])

    def test_event_enables_are_those_of_the_raw_command(self):
        sensors = [name for name, node in self.ask("/BMC/SENSOR/DISPLAY").items() if name.endswith("/NUMBER")][:5]
        for name in sensors:
            path = name.removesuffix("/NUMBER")
            number = int(re.search(r"\[(\d+)\]", path)[1])
            told = self.ask(f"/BMC/SENSOR[{number}]/EVENT")
            self.assertEqual([int(told[f"/BMC/SENSOR[{number}]/EVENT/{event}"], 16) for event in EVENTS],
                             list(self.raw(0x04, 0x29, number)))
