"""The installed agent in a virtual server, as shipped: over the kernel's driver, and over the bare KCS port with the driver
hidden."""

import contextlib
import tempfile
import threading
import unittest
from pathlib import Path

from hwtools.bench import ROOT, SEL_MARK, Simulator, build_folder
from hwtools.machine import run_in_machine
from hwtools.mibtable import BASE, dotted, find_object
from hwtools.processes import tail, wait_until
from hwtools.tables import WALK_FORM, parse_walk, rows
from hwtools.traps import FORM, NUMBERS, parse_traps
from lib.firmware import compare_inventory, parse_dmidecode
from lib.sensors import compare_tables
from lib.states import compare_states

BOARD = ROOT / "share" / "boards" / "full100.py"
INTRUSION, PROCESSOR = 5, 7
HEALTHY, CRITICAL = 2, 4
CHASSIS = find_object("chassisInformationGroup").oid
READ = (BASE + (100, 1, 0), CHASSIS + (1, 0), CHASSIS + (11, 0))
SMBIOS = ("type=1,manufacturer=Lakeside Works,product=Grebe,serial=GR-1",
          "type=3,manufacturer=Lakeside Works,serial=GR-C-1,asset=RACK-9",
          "type=4,sock_pfx=SKT,manufacturer=Lakeside Silicon,version=Heron 2 GHz,max-speed=3000,current-speed=2000",
          "type=17,loc_pfx=SLOT,bank=BANK 0,manufacturer=Lakeside Memory,serial=00AA11BB,part=LM-1G,speed=1600")
# records for the event log while the agent runs, and what traps tell of them: "Plain" passes its upper critical bound,
# "Cooling Full" loses its redundancy
EVENTS = ("0x20 2 0 0 0 0 0x20 0 4 0x01 0x01 0x01 0x59 95 90", "0x20 2 0 0 0 0 0x20 0 4 0x0a 0x77 0x0b 0x01 0xff 0xff")
HEALTH_ARC = "20"
TRAPS = [("70.18", "Status is Upper Critical"),
         ("70.3", "Cooling Full reports its redundancy has been lost. Find the unit that has failed or is missing, and replace "
                  "it. Status is Critical")]

GUEST = f"""
set -e
# waits COUNT SECONDS COMMAND...: tries the command, so often at most with so long between
waits() {{
    left=$1 pause=$2
    shift 2
    until "$@"; do
        left=$((left - 1))
        [ $left -gt 0 ]
        sleep $pause
    done
}}
# health and the chassis' inventory: the first readings and what is read last
has_read() {{
    snmpget -v2c -c public -Oqv -r0 -t2 127.0.0.1 {' '.join("." + dotted(oid) for oid in READ)} 2> /dev/null > /tmp/read
    [ "$(grep -cE '^([2-9]|[1-9][0-9]+)$' /tmp/read)" = {len(READ)} ]
}}
# and what rows come meanwhile: two walks that are alike but for the time between them
walks_alike() {{
    cp /tmp/walk /tmp/walk.before 2> /dev/null
    snmpbulkwalk -v2c -c public {' '.join(WALK_FORM)} -t 10 127.0.0.1 .{dotted(BASE)} > /tmp/walk
    cmp -s /tmp/walk /tmp/walk.before
}}
knows_log() {{ [ -e {SEL_MARK} ] || grep -q 'Structures related to SEL are initialized' /tmp/agent.log; }}
gone() {{ ! grep -qsx hwAgent /proc/[0-9]*/comm; }}
cmake --install {build_folder()} > /share/install.log
sed -i -E 's/^(trapsEnabled|debugEnabled) = 0$/\\1 = 1/' /usr/local/hwagent/conf/hwagent.conf
printf 'master agentx\\nagentAddress udp:127.0.0.1:161\\nrocommunity public\\ntrap2sink 127.0.0.1:162 public\\n' > /tmp/snmpd.conf
echo 'disableAuthorization yes' > /tmp/snmptrapd.conf
export MIBS=
snmptrapd -C -c /tmp/snmptrapd.conf {' '.join(NUMBERS)} -t -Lf /share/traps.txt -F '{FORM}' udp:127.0.0.1:162
snmpd -C -c /tmp/snmpd.conf -I -smux -Lf /share/snmpd.log
sleep 1
# each line into the shared folder takes a way through the host: the log is copied at the end
trap 'cp /tmp/agent.log /share' EXIT
/usr/local/hwagent/bin/hwAgent > /tmp/agent.log 2>&1
waits 200 1 has_read
waits 50 8 walks_alike
cp /tmp/walk /share/walk.txt
ls /dev/ipmi0 > /share/device.txt 2> /dev/null || true
dmidecode > /share/dmidecode.txt
[ ! -e /dev/ipmi0 ] || ipmitool fru print 0 > /share/fru.txt
waits 60 0.5 knows_log
: > /share/ready
waits 120 0.5 grep -q 'Cooling Full' /share/traps.txt
kill "$(cat /var/run/hwagentd.pid)"
waits 20 0.5 gone
"""


@contextlib.contextmanager
def adding_events(simulator, share):
    """While it lasts, EVENTS go to the controller's log as soon as the guest says that its agent watches it."""
    over = threading.Event()

    def add():
        wait_until(lambda: over.is_set() or (share / "ready").exists(), 600, "the guest's word")
        for event in () if over.is_set() else EVENTS:
            simulator.say(f"sel_add {event}")

    thread = threading.Thread(target=add)
    thread.start()
    try:
        yield
    finally:
        over.set()
        thread.join()


class InstalledAgent(unittest.TestCase):
    def check_server(self, driver):
        with tempfile.TemporaryDirectory() as name, Simulator(BOARD, Path(name) / "bmc") as simulator:
            share = Path(name) / "share"
            share.mkdir()
            with adding_events(simulator, share):
                done = run_in_machine(GUEST, share, simulator.serial_port, driver, SMBIOS, timeout=280,
                                      entry_point=64 if driver else 32)
            self.assertEqual((done.returncode, done.stderr), (0, ""),
                             "\n" + tail(share / "snmpd.log") + "\n" + tail(share / "agent.log"))
            self.assertEqual(bool((share / "device.txt").read_text()), driver)
            self.assertIn("SMBIOS 3." if driver else "SMBIOS 2.", (share / "dmidecode.txt").read_text())
            walk = parse_walk((share / "walk.txt").read_text(encoding="latin-1"), BASE)

            def read_rows(thing):
                below = {suffix[len(thing.arc):]: value for suffix, value in walk.items()
                         if suffix[:len(thing.arc)] == thing.arc}
                return rows(thing, below)

            elist = simulator.ipmitool("sdr", "elist").stdout
            compare_tables(self, simulator.board, simulator.ipmitool("sensor").stdout, elist, read_rows, True)
            compare_states(self, simulator.board, elist, read_rows, True)
            traps = parse_traps((share / "traps.txt").read_text(encoding="latin-1"))
            # a sensor of the board is beyond critical from the start, which the health may have found out before
            told = [(name, objects[0][1]) for name, objects in traps]
            self.assertEqual([trap for trap in told if trap[0].split(".")[0] != HEALTH_ARC], TRAPS)
            self.assertEqual(walk[(100, 1, 0)], CRITICAL)
            fru = (share / "fru.txt").read_text() if driver else simulator.ipmitool("fru", "print", "0").stdout
            sensors = {kind: [s for s in simulator.board.sensors if s["type"] == kind] for kind in (INTRUSION, PROCESSOR)}
            compare_inventory(self, parse_dmidecode((share / "dmidecode.txt").read_text()), fru,
                              CRITICAL if 0 in sensors[INTRUSION][0]["states"] else HEALTHY,
                              [s["number"] for s in sensors[PROCESSOR]], lambda name: read_rows(find_object(name)), True)

    def test_over_the_kernel_driver(self):
        self.check_server(driver=True)

    def test_over_the_kcs_port_without_the_driver(self):
        self.check_server(driver=False)
