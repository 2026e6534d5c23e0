"""HWAGENT-MIB as the programs of a manager read it."""

import os
import subprocess
import unittest

from hwtools.bench import ROOT
from hwtools.mibtable import OBJECTS, dotted

MIBS = ROOT / "share" / "mibs"
FOLDERS = f"{MIBS}:{MIBS / 'minimal'}"


class Module(unittest.TestCase):
    def test_the_file_is_what_the_table_makes(self):
        done = subprocess.run([ROOT / "tools" / "mkmib", "--check"], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_smilint_finds_nothing(self):
        done = subprocess.run(["smilint", "-l", "4", str(MIBS / "HWAGENT-MIB.txt")], capture_output=True, text=True,
                              env=dict(os.environ, SMIPATH=str(MIBS / "minimal")))
        self.assertEqual(done.stdout + done.stderr, "")

    def test_every_column_is_found_by_its_oid_and_by_its_name(self):
        columns = [(c.name + ".7", dotted(o.column_oid(c) + (7,))) for o in OBJECTS for c in o.columns]
        self.assertEqual(len(columns), 187)
        names = self.translate([oid for _, oid in columns])
        self.assertEqual(names, ["HWAGENT-MIB::" + name for name, _ in columns])
        oids = self.translate(["HWAGENT-MIB::" + name for name, _ in columns], "-On")
        self.assertEqual(oids, ["." + oid for _, oid in columns])

    def translate(self, names, *options):
        done = subprocess.run(["snmptranslate", "-M", FOLDERS, "-m", "HWAGENT-MIB", *options, *names], capture_output=True,
                              text=True)
        self.assertEqual(done.stderr, "")
        return done.stdout.split()


if __name__ == "__main__":
    unittest.main()
