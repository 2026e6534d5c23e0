"""Processors, memory and chassis from the firmware's tables and the FRU inventory to SNMP, against dmidecode and ipmitool on
the same images."""

import subprocess
import tempfile
import unittest

from hwtools.bench import BOARDS, Bench, settings
from hwtools.processes import wait_until
from hwtools.smbios import KERNEL
from lib.bench import PRACTICAL, agent_on
from lib.firmware import compare_inventory, parse_dmidecode

UNAVAILABLE, HEALTHY, CRITICAL = 1, 2, 4
BARE = "from hwtools.board import Board\nboard = Board('bare')\n"
PROCESSOR = 7


def firmware_of(board):
    memory, entry, table = (board.smbios.files().get(path, b"") for path in ("/dev/mem", KERNEL + "smbios_entry_point", KERNEL + "DMI"))
    with tempfile.NamedTemporaryFile() as image:
        image.write(memory or entry.ljust(32, b"\0") + table)
        image.flush()
        source = ["--no-sysfs", "-d"] if memory else ["--from-dump"]
        shown = subprocess.run(["/usr/sbin/dmidecode", *source, image.name], capture_output=True, text=True, check=True)
    return parse_dmidecode(shown.stdout)


class InventoryTables(unittest.TestCase):
    def check(self, path, chassis_status):
        with agent_on(path) as (simulator, read_rows):
            board = simulator.board
            sensors = [s["number"] for s in board.sensors if s["type"] == PROCESSOR]
            wait_until(lambda: read_rows("chassisInformationGroup")[0]["chassisStatus"] != UNAVAILABLE, 20, "the lid's first reading")
            compare_inventory(self, firmware_of(board), simulator.ipmitool("fru", "print", "0").stdout, chassis_status, sensors,
                              read_rows, PRACTICAL)

    def test_sockets_modules_and_places_of_every_kind(self):
        self.check(BOARDS / "inventory.py", CRITICAL)  # its lid is open

    def test_the_server_of_2025_tells_its_inventory_in_the_mode(self):
        if PRACTICAL:
            return self.check(BOARDS / "server2025.py", HEALTHY)
        with agent_on(BOARDS / "server2025.py") as (_, read_rows):
            self.assertEqual(read_rows("processorDeviceTable"), [])


class BareMachine(unittest.TestCase):
    def test_a_machine_without_tables_and_inventory_has_none_and_still_serves(self):
        def wipe(simulator):
            simulator.board.smbios.image = lambda: bytes(1 << 20)

        with agent_on(BARE, wipe) as (_, read_rows):
            for table in ("processorDeviceTable", "physicalMemoryArrayTable", "physicalMemoryDeviceTable"):
                self.assertEqual(read_rows(table), [])
            chassis = read_rows("chassisInformationGroup")[0]
            self.assertEqual([chassis["chassis" + column] for column in (
                "Status", "ContainerType", "SerialNumber", "SecurityState", "BootState", "LockState", "PowerOnPasswordStatus")],
                [HEALTHY, 2, "", 0, 1, 0, 2])
            self.assertEqual(read_rows("systemManagementSoftwareGroup")[0]["systemHealthStatus"], HEALTHY)

    def test_without_records_of_sensors_the_firmware_still_tells_in_the_mode(self):
        with Bench() as bench:
            bench.simulate(BARE + "board.smbios.processor('Socket 0', 'Lakeside Silicon', 'K8', 1)\n"
                                  "board.smbios.chassis(0x17, 'Lakeside Works', 'A1', 'C-7741', 'RACK-7')\n")
            agent = bench.start_agent(settings(practical=1))

            def first_row(table):
                return (bench.read(table) or [{}])[0]

            wait_until(lambda: first_row("chassisInformationGroup").get("chassisSerialNumber") == "C-7741", 30, "the enclosure")
            self.assertEqual(first_row("processorDeviceTable")["processorDescription"], "Socket 0 (8 cores, 16 threads)")
            self.assertEqual(agent.health(), str(UNAVAILABLE))
