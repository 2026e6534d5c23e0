"""The installed agent in a virtual server: over the kernel's driver, and over the bare KCS port with the driver hidden."""

import tempfile
import unittest
from pathlib import Path

from hwtools.bench import ROOT, Simulator, build_folder
from hwtools.mibtable import BASE, dotted, find_object
from hwtools.tables import WALK_FORM, parse_walk, rows
from lib.firmware import compare_inventory, parse_dmidecode
from lib.machine import run_in_machine
from lib.sensors import compare_tables

BOARD = ROOT / "tests" / "boards" / "full100.py"
INTRUSION, PROCESSOR = 5, 7
HEALTHY, CRITICAL = 2, 4
SMBIOS = ("type=1,manufacturer=Lakeside Works,product=Grebe,serial=GR-1",
          "type=3,manufacturer=Lakeside Works,serial=GR-C-1,asset=RACK-9",
          "type=4,sock_pfx=SKT,manufacturer=Lakeside Silicon,version=Heron 2 GHz,max-speed=3000,current-speed=2000",
          "type=17,loc_pfx=SLOT,bank=BANK 0,manufacturer=Lakeside Memory,serial=00AA11BB,part=LM-1G,speed=1600")

GUEST = f"""
set -e
cmake --install {build_folder()} > /share/install.log
printf 'master agentx\\nagentAddress udp:127.0.0.1:161\\nrocommunity public\\n' > /tmp/snmpd.conf
export MIBS=
snmpd -C -c /tmp/snmpd.conf -I -smux -Lf /share/snmpd.log
sleep 1
/usr/local/hwagent/bin/hwAgent > /share/agent.log 2>&1
i=0
until snmpget -v2c -c public -r0 -t2 127.0.0.1 .{dotted(BASE)}.100.4.0 2> /dev/null | grep -q INTEGER; do
    i=$((i + 1))
    [ $i -lt 200 ]
    sleep 1
done
snmpbulkwalk -v2c -c public {' '.join(WALK_FORM)} -t 10 127.0.0.1 .{dotted(BASE)} > /share/walk.txt
ls /dev/ipmi0 > /share/device.txt 2> /dev/null || true
dmidecode > /share/dmidecode.txt
[ ! -e /dev/ipmi0 ] || ipmitool fru print 0 > /share/fru.txt
kill "$(cat /var/run/hwagentd.pid)"
i=0
while grep -qsx hwAgent /proc/[0-9]*/comm; do
    i=$((i + 1))
    [ $i -lt 20 ]
    sleep 0.5
done
"""


class InstalledAgent(unittest.TestCase):
    def check_server(self, driver):
        with tempfile.TemporaryDirectory() as name, Simulator(BOARD, Path(name) / "bmc") as simulator:
            share = Path(name) / "share"
            share.mkdir()
            done = run_in_machine(GUEST, share, simulator.serial_port, driver, SMBIOS, timeout=280)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(bool((share / "device.txt").read_text()), driver)
            walk = parse_walk((share / "walk.txt").read_text(encoding="latin-1"), BASE)

            def read_rows(thing):
                below = {suffix[len(thing.arc):]: value for suffix, value in walk.items()
                         if suffix[:len(thing.arc)] == thing.arc}
                return rows(thing, below)

            compare_tables(self, simulator.board, simulator.ipmitool("sensor").stdout, read_rows)
            fru = (share / "fru.txt").read_text() if driver else simulator.ipmitool("fru", "print", "0").stdout
            sensors = {kind: [s for s in simulator.board.sensors if s["type"] == kind] for kind in (INTRUSION, PROCESSOR)}
            compare_inventory(self, parse_dmidecode((share / "dmidecode.txt").read_text()), fru,
                              CRITICAL if 0 in sensors[INTRUSION][0]["states"] else HEALTHY,
                              [s["number"] for s in sensors[PROCESSOR]], lambda name: read_rows(find_object(name)))

    def test_over_the_kernel_driver(self):
        self.check_server(driver=True)

    def test_over_the_kcs_port_without_the_driver(self):
        self.check_server(driver=False)


if __name__ == "__main__":
    unittest.main()
