"""The preload library against ipmi_sim: what ipmitool says over it is what it says over the simulator's LAN."""

import subprocess
import tempfile
import unittest

from hwtools.bench import BOARDS, QUICKSTART, Simulator, over_the_library

SUBJECTS = (["mc", "info"], ["sdr", "elist"], ["sensor"], ["sel", "elist"], ["fru"])


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
