"""The preload library against ipmi_sim: what ipmitool says over it is what it says over the simulator's LAN."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import ROOT, Simulator, build_folder
from hwtools.processes import wait_until

LIBRARY = build_folder() / "tools" / "ipmi-preload" / "libhwagent-preload.so"
CLIENT = Path(__file__).with_name("ipmi_client.py")
SUBJECTS = (["mc", "info"], ["sdr", "elist"], ["sensor"], ["sel", "elist"], ["fru"])
COMPLETION_INITIALISING = 0xD2


def environment(simulator, **more):
    return dict(os.environ, LD_PRELOAD=str(LIBRARY), HWAGENT_PRELOAD_BMC=f"127.0.0.1:{simulator.serial_port}", **more)


class IpmitoolOverTheLibrary(unittest.TestCase):
    def check_board(self, board):
        with tempfile.TemporaryDirectory() as folder, Simulator(board, folder) as simulator:
            for subject in SUBJECTS:
                with self.subTest(subject=subject):
                    direct = subprocess.run(["ipmitool", "-I", "open", *subject], capture_output=True, encoding="latin-1",
                                            env=environment(simulator), timeout=60, stdin=subprocess.DEVNULL)
                    over_lan = simulator.ipmitool(*subject)
                    self.assertEqual(direct.stdout, over_lan.stdout)
                    self.assertEqual((direct.stderr, direct.returncode), ("", 0))
                    self.assertTrue(direct.stdout.strip())

    def test_the_quick_start_board_reads_as_over_lan(self):
        self.check_board(ROOT / "share" / "boards" / "quickstart.py")

    def test_a_hundred_sensors_and_a_bridged_controller_read_as_over_lan(self):
        self.check_board(ROOT / "tests" / "boards" / "full100.py")


class ClientOfTheDevice(unittest.TestCase):
    """ipmi_client.py drives the device with ioctls of its own, as the agent does."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.simulator = Simulator(ROOT / "share" / "boards" / "quickstart.py", self.folder / "bmc")
        self.simulator.__enter__()
        self.addCleanup(self.simulator.stop)

    def start(self, *arguments, **more):
        client = subprocess.Popen([sys.executable, str(CLIENT), *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                  text=True, env=environment(self.simulator, **more))
        self.addCleanup(client.wait, 10)
        self.addCleanup(client.stdout.close)
        self.addCleanup(client.stdin.close)
        self.addCleanup(client.kill)
        return client

    def ask(self, client, order):
        client.stdin.write(order + "\n")
        client.stdin.flush()
        return json.loads(client.stdout.readline())

    def test_a_grandchild_has_the_device_that_its_grandparent_opened(self):
        client = self.start("--forks", "2")
        self.assertEqual(self.ask(client, "exchange 6 1")[0:2], [0, 0x20])

    def test_thousands_of_exchanges_a_second(self):
        client = self.start()
        rate = self.ask(client, "rate 4000")
        print(f"preload library: {rate:.0f} exchanges a second")
        self.assertGreater(rate, 2000)

    def test_answers_carry_their_message_ids_in_any_order_of_asking(self):
        client = self.start()
        self.assertEqual(sorted(self.ask(client, "burst 20")), list(range(20)))

    def test_the_device_answers_again_after_the_simulator_started_again(self):
        client = self.start()
        self.assertEqual(self.ask(client, "exchange 6 1")[0], 0)
        self.simulator.stop()
        self.assertEqual(self.ask(client, "exchange 6 1"), [COMPLETION_INITIALISING])
        self.simulator.start()
        wait_until(lambda: self.ask(client, "exchange 6 1")[0] == 0, 10, "an answer of the new simulator")

    def test_misuse_fails_as_with_the_kernel(self):
        client = self.start()
        for order, error in (("receive", "EAGAIN"), ("exchange 7 1", "EINVAL"), ("exchange 6 52 0", "EINVAL"),
                             ("option 0x6999", "ENOTTY")):
            with self.subTest(order=order):
                self.assertEqual(self.ask(client, order), error)

    def test_paths_are_served_from_the_folder_only_where_it_has_them(self):
        placed = self.folder / "root" / "etc" / "hostname"
        placed.parent.mkdir(parents=True)
        placed.write_text("placed\n")
        client = self.start(HWAGENT_PRELOAD_ROOT=str(self.folder / "root"))
        self.assertEqual(self.ask(client, "read /etc/hostname"), "placed\n")
        self.assertEqual(self.ask(client, "read /etc/debian_version"), Path("/etc/debian_version").read_text())


if __name__ == "__main__":
    unittest.main()
