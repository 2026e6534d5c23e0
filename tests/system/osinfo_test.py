"""The host's own view of this machine against /proc, ip and df."""

import json
import subprocess
import unittest
from pathlib import Path

from hwtools.bench import build_folder


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env={"LC_ALL": "C", "PATH": "/usr/sbin:/usr/bin:/sbin:/bin"}).stdout


class ThisMachine(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        lines = run(build_folder() / "tests" / "osinfo" / "osinfo_values").splitlines()
        cls.values = [line.split("\t") for line in lines]

    def of(self, kind):
        return [row[1:] for row in self.values if row[0] == kind]

    def test_memory_is_what_proc_says(self):
        proc = dict(line.split(":") for line in Path("/proc/meminfo").read_text().splitlines())
        self.assertEqual(self.of("memory"), [[proc["MemTotal"].split()[0], proc["SwapTotal"].split()[0]]])

    def test_interfaces_are_those_of_ip(self):
        links = [link for link in json.loads(run("ip", "-j", "link")) if link["ifname"] not in ("lo", "sit0")]
        expected = [[link["ifname"], link["address"] if link["link_type"] == "ether" else None,
                     "UP" if "UP" in link["flags"] else "DOWN"] for link in links]
        found = [[name, mac if link[1] else None, state] for (name, mac, state), link in zip(self.of("interface"), expected)]
        self.assertEqual(sorted(found, key=str), sorted(expected, key=str))
        self.assertEqual(len(self.of("interface")), len(expected))

    def test_file_systems_are_those_of_df(self):
        df = [line.split() for line in run("df", "-k").splitlines()[1:]]
        self.assertTrue(df)
        self.assertEqual(sorted(self.of("drive")), sorted([row[5], row[1]] for row in df))
