"""The packages of build/package, as scripts/package makes them, in a root of Debian's own packages alone: what they bring and
take away, and the service in the virtual server with systemd as first process, over the kernel's driver, as a user without rights
over it, and over the bare KCS port."""

import json
import re
import shutil
import subprocess
import tempfile
import textwrap
import threading
import unittest
from pathlib import Path

from hwtools.bench import ROOT, Simulator
from hwtools.machine import newest_kernel, run_in_machine
from hwtools.processes import tail, wait_until

PACKAGES = ROOT / "build" / "package"
NAMES = ("hwagent", "hwagent-common", "hwagent-mibs", "hwquery")
CLEAN = PACKAGES / "root"  # made once, for its time
IN_CLEAN = "snmpd,snmp,snmptrapd,systemd,kmod,busybox-static"
BOARD = ROOT / "share" / "boards" / "quickstart.py"
SMBIOS = ("type=4,sock_pfx=SKT,manufacturer=Lakeside Silicon,version=Heron 2 GHz,max-speed=3000,current-speed=2000",)
# the die of socket 0 passes its upper critical bound
EVENT = "0x20 2 0 0 0 0 0x20 0 4 0x01 0x03 0x01 0x59 98 96"


def sh(command, **keys):
    done = subprocess.run(["sh", "-ec", command], capture_output=True, text=True, **keys)
    if done.returncode:
        raise AssertionError(f"{command}\n{done.stdout}{done.stderr}")
    return done.stdout


def clean_root():
    """Debian's packages alone, and of the host the driver for the kernel that the virtual server runs."""
    if not CLEAN.exists():
        sh(f"rm -rf {CLEAN}.new; debootstrap --variant=minbase --include={IN_CLEAN} bookworm {CLEAN}.new; mv {CLEAN}.new {CLEAN}")
    sh(f"rm -rf {CLEAN}/usr/lib/modules; mkdir {CLEAN}/usr/lib/modules; cd /lib/modules; "
       f"cp -r --parents {newest_kernel()}/modules.* {newest_kernel()}/kernel/drivers/char/ipmi {CLEAN}/usr/lib/modules")
    return CLEAN


def packages_only(_, names):
    return [name for name in names if not name.endswith(".deb")]


def second_version(folder):
    """The packages once more, with a higher version and another hwagent.conf."""
    folder.mkdir()
    for package in sorted(PACKAGES.glob("*.deb")):
        tree = folder / "tree"
        sh(f"dpkg-deb -R {package} {tree}")
        control = tree / "DEBIAN" / "control"
        control.write_text(re.sub(r"^Version: (\S+)$|(?<=\(= )\S+(?=\))", lambda found: found[0] + "+second",
                                  control.read_text(), flags=re.M))
        configuration = tree / "etc/hwagent/hwagent.conf"
        if configuration.exists():
            configuration.write_text(configuration.read_text() + "# of the second version\n")
        sh(f"dpkg-deb -b {tree} {folder}; rm -r {tree}")


def steps_of_the_readme():
    """What README.md has an administrator do once the packages are built."""
    return textwrap.dedent((ROOT / "README.md").read_text().split("    scripts/package\n")[1].split("\n\n")[0]) + "\n"


class CleanRoot(unittest.TestCase):
    """What the packages bring and take away, told by the whole tree of files."""

    def setUp(self):
        folder = Path(tempfile.mkdtemp(prefix="root."))
        self.addCleanup(shutil.rmtree, folder)
        self.root = folder / "root"
        sh(f"cp -a {clean_root()} {self.root}")
        shutil.copytree(PACKAGES, self.root / "packages", ignore=packages_only)
        second_version(self.root / "second")

    def run_inside(self, command):
        return sh(f"chroot {self.root} sh -ec '{command}'",
                  env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive"})

    def files(self):
        passing = ("/var/lib/dpkg/", "/var/lib/apt/", "/var/lib/snmp/", "/var/lib/systemd/deb-systemd-helper", "/var/cache/apt",
                   "/var/cache/debconf", "/var/cache/ldconfig", "/var/log/apt", "/var/log/dpkg.log", "/var/log/alternatives.log",
                   "/proc/", "/sys/")
        found = self.run_inside("find / -xdev -not -type d; find / -xdev -type d").splitlines()
        return {name for name in found if not name.startswith(passing)}

    def test_from_the_install_to_the_purge(self):
        bare = self.files()
        self.run_inside("apt-get install -y --no-install-recommends /packages/*.deb")
        brought = self.files() - bare
        self.assertFalse([name for name in brought if "/local/" in name])
        self.assertTrue({"/usr/sbin/hwAgent", "/usr/bin/hwquery", "/etc/hwagent/hwagent.conf", "/usr/share/hwagent/hrs_enu.ini",
                         "/lib/systemd/system/hwagent.service"} <= brought | {name.removeprefix("/usr") for name in brought})
        for program in ("/usr/sbin/hwAgent", "/usr/bin/hwquery"):
            self.assertNotIn(b"/usr/local", (self.root / program.lstrip("/")).read_bytes())
        self.assertEqual(self.run_inside("snmptranslate -m HWAGENT-MIB -On HWAGENT-MIB::systemHealthStatus.0"),
                         ".1.3.6.1.4.1.44444.2.10.3.5.100.1.0\n")
        self.assertIn("/BMC", self.run_inside("hwquery list / || true"))
        self.assertEqual(self.run_inside("stat -c %a:%G /etc/snmp/snmpd.conf.d/hwagent.conf"), "640:Debian-snmp\n")

        # the administrator's edits outlive upgrade and removal; what the agent writes outlives the removal
        self.run_inside("echo trapsEnabled = 1 >> /etc/hwagent/hwagent.conf; mkdir -p /var/cache/hwagent /var/log/Morvandale;"
                        "mkdir -m 700 -p /var/lib/hwagent; touch /var/lib/hwagent/sel-mark /run/hwagentd.pid")
        edited = self.run_inside("cat /etc/hwagent/hwagent.conf")
        self.run_inside("dpkg --force-confold -i /second/*.deb")
        self.assertIn("+second", self.run_inside("dpkg-query -W -f \"\\${Version}\" hwagent"))
        self.assertEqual(self.run_inside("cat /etc/hwagent/hwagent.conf"), edited)
        self.run_inside(f"dpkg -r {' '.join(NAMES)}")
        self.assertEqual(self.run_inside("cat /etc/hwagent/hwagent.conf; ls /var/lib/hwagent"), edited + "sel-mark\n")
        self.run_inside(f"dpkg -P {' '.join(NAMES)}")
        self.assertEqual(self.files() - bare, set())


GUEST = r"""
set -e
exec 2>&1
as() { "$1" -v3 -l authPriv -u monitor -a SHA-256 -A $auth -x AES -X $priv -m HWAGENT-MIB -r0 -t 10 "$2" 127.0.0.1 "$3"; }
get() { as snmpget -Oqv "$@"; }
walk() { as snmpbulkwalk -Oq "$@"; }
# within SECONDS COMMAND: waits for the command to hold
within() {
    end=$(($(date +%s) + $1))
    shift
    until "$@" > /dev/null 2>&1; do
        [ "$(date +%s)" -lt $end ] || { echo "in vain: $*"; journalctl --no-pager | tail -n 40; exit 1; }
        sleep 1
    done
}
known() { get systemHealthStatus.0 | grep -qE 'healthy|warning|critical|nonCritical'; }
daemon() { head -n 1 /run/hwagentd.pid; }
shown() { systemctl status --no-pager hwagent | grep -q 'Status: "Connected to snmpd, health [a-z]*, [1-9][0-9]* rows'; }
# tell NAME: what root is told, what another is, and what the service's manager says
tell() {
    within 60 shown
    hwquery status --json > "/share/$1.json" || true
    setpriv --reuid=65534 --regid=65534 --clear-groups hwquery status > "/share/$1.refused" || true
    systemctl status --no-pager hwagent > "/share/$1.unit"
}
# exposed TENTHS: what systemd thinks of the unit as it is now, which fails when it is more
exposed() {
    systemd-analyze security --no-pager --offline=yes --threshold="$1" /lib/systemd/system/hwagent.service > /tmp/exposed
    tail -n 1 /tmp/exposed
}
replaced() { [ "$(daemon)" != "$old" ] && known; }
gone() { ! grep -qsx hwAgent /proc/[0-9]*/comm; }
told() { grep -q "$1" /tmp/traps.txt; }
leftovers() {
    find /etc /run /var /usr/bin /usr/sbin /usr/lib/systemd /usr/share/snmp /usr/share/hwagent /usr/share/doc /usr/share/man \
        -name '*hw[aAq]*' -o -name Morvandale 2> /dev/null | grep -v -e /var/lib/dpkg -e /run/systemd/units -e hwSubgent || true
}
[ "$DRIVER" = 0 ] || modprobe -r ipmi_devintf # the unit loads it again
leftovers > /tmp/before

echo "== install, as README.md says"
cd /share
. /share/steps
sed -i 's/^trapsEnabled = 0/trapsEnabled = 1/' /etc/hwagent/hwagent.conf
# the drop-in's example of informs, to a manager that takes them from that user alone
sed -i "/^#trapsess -Ci/{s/#//; s/AUTHPASSWORD/$auth/; s/PRIVPASSWORD/$priv/; s/manager.example.org/127.0.0.1:1162/}" \
    /etc/snmp/snmpd.conf.d/hwagent.conf
printf 'createUser monitor SHA-256 %s AES %s\nauthUser log monitor priv\n' $auth $priv > /tmp/snmptrapd.conf
SNMP_PERSISTENT_DIR=/tmp/snmptrapd snmptrapd -C -c /tmp/snmptrapd.conf -m HWAGENT-MIB:SNMPv2-MIB -Lf /tmp/traps.txt udp:127.0.0.1:1162
systemctl restart snmpd hwagent
within 120 known
[ -e /dev/ipmi0 ] && echo "device: yes" || echo "device: no"
walk temperatureProbeTable > /share/temperatures.txt
within 60 test -e /var/lib/hwagent/sel-mark
within 60 eval 'walk processorDeviceTable | grep -q Lakeside'
walk processorDeviceTable > /share/processors.txt
tell root
exposed 35
: > /share/ready
within 90 told "Socket 0 Die"
hwquery test-trap
within 30 told "TEST, nothing has happened: trapSysReconfig"
journalctl -t hwAgent --no-pager -o json --output-fields=PRIORITY,MESSAGE > /share/journal
echo "== crash"
old=$(daemon)
kill -SEGV "$old"
within 60 replaced

echo "== upgrade"
old=$(daemon)
dpkg --force-confold -i /share/second/*.deb
within 120 replaced
grep '^trapsEnabled' /etc/hwagent/hwagent.conf
systemctl is-active hwagent

if [ "$DRIVER" = 1 ]; then
    echo "== without root"
    sed -n 's/^#   //p' /usr/share/doc/hwagent/examples/hwagent-kernel.conf > /tmp/steps
    install -D -m 644 /usr/share/doc/hwagent/examples/hwagent-kernel.conf /etc/systemd/system/hwagent.service.d/kernel.conf
    old=$(daemon)
    sh -e /tmp/steps
    within 120 replaced
    echo "user: $(stat -c %U /proc/$(daemon))"
    grep -E 'CapBnd|CapEff' /proc/$(daemon)/status
    within 60 eval 'walk processorDeviceTable | grep -q Lakeside'
    walk temperatureProbeTable > /share/again.txt
    tell user
    exposed 20
    hwquery test-trap trapTUpCri
    within 30 told "TEST, nothing has happened: trapTUpCri"
    rm -r /etc/systemd/system/hwagent.service.d
    systemctl daemon-reload
    systemctl restart hwagent
    within 60 known
    userdel hwagent
else
    echo "== tables out of /dev/mem"
    sed -i 's/^practical = 1/practical = 0/' /etc/hwagent/hwagent.conf
    systemctl restart hwagent
    within 240 eval 'walk processorDeviceTable | grep -q Lakeside'
    walk temperatureProbeTable > /share/again.txt
    hwquery status --json > /share/plain.json || true
fi

echo "== remove"
dpkg -r hwagent hwquery hwagent-mibs hwagent-common
within 30 gone
test -e /etc/hwagent/hwagent.conf
echo "== purge"
dpkg -P hwagent hwquery hwagent-mibs hwagent-common
leftovers | diff /tmp/before -
"""


class Server(unittest.TestCase):
    """A service that systemd starts, a manager by SNMPv3 that knows names, a trap, an upgrade, the end."""

    def check_server(self, driver):
        with tempfile.TemporaryDirectory() as name, Simulator(BOARD, Path(name) / "bmc") as simulator:
            share = Path(name) / "share"
            shutil.copytree(PACKAGES, share / "build" / "package", ignore=packages_only)
            (share / "steps").write_text(steps_of_the_readme())
            second_version(share / "second")
            over = threading.Event()

            def add():
                wait_until(lambda: over.is_set() or (share / "ready").exists(), 900, "the guest's word")
                simulator.say(f"sel_add {EVENT}")

            adding = threading.Thread(target=add)
            adding.start()
            try:
                done = run_in_machine(f"DRIVER={int(driver)}\n{GUEST}", share, simulator.serial_port, driver, SMBIOS, timeout=1800,
                                      systemd=True, root=clean_root())
            finally:
                over.set()
                adding.join()
            print(done.stdout)
            self.assertEqual(done.returncode, 0)
            self.assertIn(f"device: {'yes' if driver else 'no'}", done.stdout)
            self.check_journal((share / "journal").read_text(), "driver, /dev/ipmi0" if driver else "KCS port")
            for step in ("root", *(["user"] if driver else [])):
                self.check_told(share / step, "driver, /dev/ipmi0$" if driver else "^KCS port, without")
            rows, again = (set((share / name).read_text().splitlines()) for name in ("temperatures.txt", "again.txt"))
            self.assertGreater(len(rows), 7 * 10)
            if driver:
                self.assertIn("user: hwagent", done.stdout)
                self.assertIn("CapEff:\t0000000000000000", done.stdout)
                self.assertEqual(rows, again)
            else:
                plain = "temperature(Index|DeviceId|Description|Reading)"
                self.assertEqual(*({row for row in each if re.match(plain, row)} for each in (rows, again)))
                self.assertEqual(self.findings(share / "plain")["daemon"][0], "note")

    def findings(self, place):
        told = json.loads(place.with_suffix(".json").read_text())["status"]
        return {row["check"]: (row["state"], row["finding"]) for row in told}

    def check_journal(self, text, way):
        """All that one has to know stands in it, with its gravity, and nothing twice."""
        lines = [(line["PRIORITY"], line["MESSAGE"]) for line in map(json.loads, text.splitlines())]
        for gravity, words in (("5", "started"), ("5", rf"the way to the BMC: .*{way}.*"), ("5", "connected to the master agent"),
                               ("5", "rows: .*temperatureProbe 7.*"), ("5", "the event log is followed from .*"),
                               ("5", r"trap trapTUp\w+.*record [0-9a-fA-F]{4}.*"), ("5", "trap trapSysReconfig.*TEST.*")):
            self.assertTrue([line for line in lines if line[0] == gravity and re.fullmatch(words, line[1])], (words, lines))
        self.assertLess(len(lines), 40)

    def check_told(self, place, way):
        found = self.findings(place)
        self.assertNotIn("BAD", {state for state, _ in found.values()}, found)
        for check, words in (("daemon", r"^process \d+, for "), ("master", "^connected"), ("tree", "^seen with community public"),
                             ("transport", way), ("controller", "^answers"), ("rows", r"\btemperatureProbe 7\b")):
            self.assertRegex(found[check][1], words)
        self.assertRegex(place.with_suffix(".refused").read_text(), r"(?m)^daemon +BAD +not to be asked by you$")
        self.assertRegex(place.with_suffix(".unit").read_text(), r"Active: active \(running\)")

    def test_over_the_kernel_driver(self):
        self.check_server(driver=True)

    def test_over_the_kcs_port_without_the_driver(self):
        self.check_server(driver=False)


if __name__ == "__main__":
    unittest.main()
