"""The preload library against ipmi_sim: what ipmitool says over it is what it says over the simulator's LAN."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import Simulator
from hwtools.processes import wait_until
from lib.bench import BOARDS, QUICKSTART, over_the_library

CLIENT = Path(__file__).with_name("ipmi_client.py")
SUBJECTS = (["mc", "info"], ["sdr", "elist"], ["sensor"], ["sel", "elist"], ["fru"])
COMPLETION_INITIALISING = 0xD2


class IpmitoolOverTheLibrary(unittest.TestCase):
    def test_boards_read_as_over_lan(self):
        for board in (QUICKSTART, BOARDS / "full100.py"):
            with tempfile.TemporaryDirectory() as folder, Simulator(board, folder) as simulator:
                for subject in SUBJECTS:
                    with self.subTest(board=board.name, subject=subject):
                        direct = subprocess.run(["ipmitool", "-I", "open", *subject], capture_output=True, encoding="latin-1",
                                                env=over_the_library(simulator), timeout=60, stdin=subprocess.DEVNULL)
                        self.assertEqual(direct.stdout, simulator.ipmitool(*subject).stdout)
                        self.assertEqual((direct.stderr, direct.returncode), ("", 0))
                        self.assertTrue(direct.stdout.strip())


class ClientOfTheDevice(unittest.TestCase):
    """ipmi_client.py drives the device with ioctls of its own, as the agent does."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.simulator = self.enterContext(Simulator(QUICKSTART, self.folder / "bmc"))

    def start(self, *arguments, **more):
        client = subprocess.Popen([sys.executable, str(CLIENT), *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                  text=True, env=over_the_library(self.simulator, **more))
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
