"""Settings of the controller, by hwquery and by ipmitool on one simulator: what one writes the other reads, and what the
controller says of itself reads alike. docs/testing.md has the table of what was compared."""

import os
import pty
import subprocess
import tempfile
import unittest

from hwtools.bench import HWQUERY, QUICKSTART, Bench, over_the_library
from lib.bench import ask

# ipmi_sim asks a program for what a chassis remembers.
CHASSIS = """#!/bin/sh
case "$2 $3" in
'get boot') echo "boot:$(cat {folder}/boot 2> /dev/null || echo none)" ;;
'set boot') echo "$4" > {folder}/boot ;;
esac
"""

# What ipmitool writes, and what a path reads then.
WRITTEN_BY_IPMITOOL = (
    ("lan set 1 ipsrc dhcp", "/BMC/LAN[1]/IPTYPE", "DHCP"),
    ("lan set 1 ipaddr 10.1.2.3", "/BMC/LAN[1]/IP", "10.1.2.3"),
    ("lan set 1 netmask 255.255.254.0", "/BMC/LAN[1]/SUBNETMASK", "255.255.254.0"),
    ("lan set 1 defgw ipaddr 10.1.2.1", "/BMC/LAN[1]/DEFAULTGATEWAYIP", "10.1.2.1"),
    ("lan set 1 defgw macaddr 00:11:22:33:44:5a", "/BMC/LAN[1]/DEFAULTGATEWAYMAC", "00:11:22:33:44:5A"),
    ("lan set 1 bakgw ipaddr 10.1.2.9", "/BMC/LAN[1]/BACKUPGATEWAYIP", "10.1.2.9"),
    ("lan set 1 bakgw macaddr 00:11:22:33:44:5b", "/BMC/LAN[1]/BACKUPGATEWAYMAC", "00:11:22:33:44:5B"),
    ("user set name 5 fritz", "/BMC/USER[5]/NAME", "fritz"),
    ("user priv 5 3 1", "/BMC/USER[5]/CHANNEL[1]/PRIVILEGE", "OPERATOR"),
    ("raw 6 0x43 0xd1 5 2", "/BMC/USER[5]/CHANNEL[1]/CALLBACK", "ENABLE"),
    ("raw 6 0x43 0xd1 5 2", "/BMC/USER[5]/CHANNEL[1]/IPMI_AUTHENTICATION", "ENABLE"),
    ("raw 6 0x43 0x81 5 2", "/BMC/USER[5]/CHANNEL[1]/IPMI_AUTHENTICATION", "DISABLE"),
    ("sol set enabled false 1", "/BMC/SOL/CHANNEL[1]/ENABLEUSER", "DISABLE"),
    ("sol set non-volatile-bit-rate 38.4 1", "/BMC/SOL/CHANNEL[1]/BAUDRATESERIAL", "38400"),
    ("raw 4 0x12 6 3 0x80 1 0 4 0x10 0 0 7 0xff 0xff" + " 0" * 10, "/BMC/PEF/FILTER[3]/STATUS", "ENABLE"),
    ("raw 4 0x12 6 3 0x80 1 0 4 0x10 0 0 7 0xff 0xff" + " 0" * 10, "/BMC/PEF/FILTER[3]/EVENT_SEVERITY", "OK"),
    ("pef policy enable 2", "/BMC/PEF/POLICY[2]/STATUS", "ENABLE"),
)

# What a path is set to, and which line ipmitool's command shows then.
WRITTEN_BY_HWQUERY = (
    ("/BMC/LAN[1]/IPTYPE", "STATIC", "lan print 1", r"IP Address Source +: Static Address"),
    ("/BMC/LAN[1]/IP", "10.9.8.7", "lan print 1", r"IP Address +: 10\.9\.8\.7"),
    ("/BMC/LAN[1]/SUBNETMASK", "255.255.0.0", "lan print 1", r"Subnet Mask +: 255\.255\.0\.0"),
    ("/BMC/LAN[1]/DEFAULTGATEWAYIP", "10.9.0.1", "lan print 1", r"Default Gateway IP +: 10\.9\.0\.1"),
    ("/BMC/LAN[1]/DEFAULTGATEWAYMAC", "00:1E:67:0A:0B:0C", "lan print 1", "Default Gateway MAC +: 00:1e:67:0a:0b:0c"),
    ("/BMC/LAN[1]/BACKUPGATEWAYIP", "10.9.0.2", "lan print 1", r"Backup Gateway IP +: 10\.9\.0\.2"),
    ("/BMC/USER[6]/NAME", "willi", "user list 1", r"6 +willi "),
    ("/BMC/USER[6]/CHANNEL[1]/PRIVILEGE", "ADMIN", "channel getaccess 1 6", "Privilege Level +: ADMINISTRATOR"),
    ("/BMC/USER[6]/CHANNEL[1]/IPMI_AUTHENTICATION", "ENABLE", "channel getaccess 1 6", "IPMI Messaging +: enabled"),
    ("/BMC/USER[6]/CHANNEL[1]/CALLBACK", "ENABLE", "channel getaccess 1 6", "Access Available +: callback"),
    ("/BMC/SOL/CHANNEL[1]/ENABLEUSER", "ENABLE", "sol info 1", "Enabled +: true"),
    ("/BMC/SOL/CHANNEL[1]/BAUDRATESERIAL", "57600", "sol info 1", r"Non-Volatile Bit Rate \(kbps\) +: 57\.6"),
    ("/BMC/BOOT/TRANSIENTOPTION", "PXE", "chassis bootparam get 5", "Force PXE"),
    ("/BMC/PEF/FILTER[4]/RAW", "80 01 00 01 00 00 00 07 FF FF FF 00 00 00 00 00 00 00 00 00", "pef filter list", r" 4 \| enabled.*\| Alert"),
    ("/BMC/PEF/POLICY[1]", "STATUS=ENABLE NUMBER=3 POLICY_TYPE=STOP", "pef policy list", r" 1 \| 3 \| enabled"),
    ("/BMC/SEL/CLEAR", "", "sel info", "Entries +: 0"),
)

# What both read without a write: a path, its value, ipmitool's command and line.
READ_BY_BOTH = (
    ("/BMC/LAN[1]/AUTHENTICATIONTYPE/ADMIN/MD5", "ENABLE", "lan print 1", "Admin +: NONE MD2 MD5 PASSWORD"),
    ("/BMC/LAN[1]/AUTHENTICATIONTYPE/OEMTYPE/MD5", "DISABLE", "lan print 1", r"OEM +: *\n"),
    ("/BMC/CHANNEL[1]/VOLATILE/ACCESS/PEF_ALERTING", "ENABLE", "channel info 1", r"\(active\) Settings\n +Alerting +: enabled"),
    ("/BMC/LAN[1]/COMMUNITYSTRING", "public", "lan print 1", "SNMP Community String +: public"),
    ("/BMC/LAN[1]/MAC", "00:00:00:00:00:00", "lan print 1", "MAC Address +: 00:00:00:00:00:00"),
    ("/BMC/USER[2]/NAME", "hwuser", "user list 1", "2 +hwuser .*ADMINISTRATOR"),
    ("/BMC/CHANNEL[1]/TYPE", "LAN", "channel info 1", r"Channel Medium Type +: 802\.3 LAN"),
    ("/BMC/CHANNEL[15]/TYPE", "SERIAL", "channel info 15", "Channel Medium Type +: Serial/Modem"),
    ("/BMC/CHANNEL[1]/NONVOLATILE/ACCESS/ACCESS_MODE", "ALWAYS", "channel info 1", "Access Mode +: always available"),
    ("/BMC/PEF/INFO/VERSION", "1.5", "pef info", r"0x51 \|"),
    ("/BMC/PEF/INFO/EVENT_ENTRIES", "16", "pef info", r"\| 16 \| 15 \|"),
    ("/BMC/PEF/ALERT_POLICIES_SUPPORTED", "15", "pef info", r"\| 16 \| 15 \|"),
    ("/BMC/PEF/INFO/SUPPORT/OEM_ACTION", "SUPPORTED", "pef info", "OEM-defined"),
)


class Settings(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        bench = cls.enterClassContext(Bench())
        program = bench.folder / "chassis"
        program.write_text(CHASSIS.format(folder=bench.folder))
        program.chmod(0o755)
        line, end = pty.openpty()
        cls.addClassCleanup(os.close, line)
        cls.addClassCleanup(os.close, end)
        cls.simulator = bench.simulate(
            QUICKSTART, f'  chassis_control "{program} 0x20"\n  sol "{os.ttyname(end)}" 115200\n')

    def read(self, path):
        return " ".join(ask(self, self.simulator, path)[path])

    def show(self, command):
        return self.simulator.ipmitool(*command.split(), check=False).stdout

    def write(self, path, value, *options):
        words = value.split() if "=" in value else [value][:bool(value)]
        return subprocess.run([HWQUERY, "set", *options, path, *words], capture_output=True, text=True, timeout=60,
                              stdin=subprocess.DEVNULL, env=over_the_library(self.simulator))

    def test_what_ipmitool_writes_is_read(self):
        for command, path, value in WRITTEN_BY_IPMITOOL:
            with self.subTest(command, path=path):
                self.show(command)
                self.assertEqual(self.read(path), value)

    def test_what_is_written_ipmitool_reads(self):
        for path, value, command, line in WRITTEN_BY_HWQUERY:
            with self.subTest(path, value=value):
                done = self.write(path, value, "--yes")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertRegex(self.show(command), line)

    def test_what_both_read(self):
        for path, value, command, line in READ_BY_BOTH:
            with self.subTest(path):
                self.assertEqual(self.read(path), value)
                self.assertRegex(self.show(command), line)

    def test_as_many_users_and_policies_as_ipmitool_counts(self):
        self.assertIn(f"Maximum IDs\t    : {len(ask(self, self.simulator, '/BMC/USER/@children')['/BMC/USER']['children'])}",
                      self.show("user summary 1"))
        self.assertEqual(len(ask(self, self.simulator, "/BMC/PEF/POLICY/@children")["/BMC/PEF/POLICY"]["children"]),
                         len(self.show("pef policy list").splitlines()))

    def test_a_write_that_cuts_off_needs_consent_and_changes_nothing_without(self):
        before = self.show("lan print 1")
        for path, value, flags, words in (("/BMC/LAN[1]/IP", "10.66.6.6", (), "cut off.*--yes"),
                                          ("/BMC/OEM/BMCSERVICE", "WEB=DISABLE", ("--yes",), "cut off.*--force"),
                                          ("/BMC/FIRMWARE/PROGRAM", "00 00 FF", ("--yes",), "manufacturer.*--force")):
            done = self.write(path, value, *flags)
            self.assertEqual(done.returncode, 3)
            self.assertRegex(done.stderr, words)
        self.assertEqual(self.show("lan print 1"), before)

    def test_a_password_comes_from_a_file_and_lets_its_user_in(self):
        with tempfile.NamedTemporaryFile("w") as file:
            file.write("correct horse\n")
            file.flush()
            done = self.write("/BMC/USER[2]/PASSWORD", "", "--yes", "--password-file", file.name)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.addCleanup(self.write_password_back)
        for password, status in (("correct horse", 0), ("hwpass", 1)):
            done = subprocess.run(["ipmitool", "-I", "lan", "-H", "127.0.0.1", "-p", str(self.simulator.lan_port), "-U", "hwuser",
                                   "-P", password, "-N", "1", "-R", "1", "mc", "info"], capture_output=True, timeout=60)
            self.assertEqual(done.returncode, status)

    def write_password_back(self):
        subprocess.run([HWQUERY, "set", "--yes", "/BMC/USER[2]/PASSWORD"], input="hwpass\n", text=True, check=True,
                       env=over_the_library(self.simulator))
