"""HWAGENT-MIB as the programs of a manager read it."""

import os
import re
import subprocess
import tempfile
import unittest
from collections import Counter
from pathlib import Path

from hwtools.bench import BOARDS, ROOT, Bench, settings
from hwtools.mibtable import BASE, OBJECTS, TRAP_ARC, TRAP_OBJECT_ARC, TRAP_OBJECTS, TRAPS, dotted

MIBS = ROOT / "share" / "mibs"
FOLDERS = f"{MIBS}:{MIBS / 'minimal'}"


class Module(unittest.TestCase):
    def test_the_file_is_what_the_table_makes(self):
        done = subprocess.run([ROOT / "tools" / "mkmib", "--check"], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_wrong_word_writes_nothing(self):
        for word, status in (("chek", 2), ("--help", 0)):
            written = (MIBS / "HWAGENT-MIB.txt").stat().st_mtime_ns
            done = subprocess.run([ROOT / "tools" / "mkmib", word], capture_output=True, text=True)
            self.assertEqual((done.returncode, (done.stdout + done.stderr).split()[0]), (status, "usage:"))
            self.assertEqual((MIBS / "HWAGENT-MIB.txt").stat().st_mtime_ns, written)

    def test_smilint_finds_nothing_but_what_the_identifiers_force(self):
        """Columns that are their rows' index, and traps whose last number but one is not 0. A standard module that is not found
        is a remark too."""
        done = subprocess.run(["smilint", "-s", "-m", "-l", "6", str(MIBS / "HWAGENT-MIB.txt")], capture_output=True, text=True,
                              env=dict(os.environ, SMIPATH=str(MIBS / "minimal")))
        remarks = Counter(re.sub(r".*\{([a-z0-9-]+)\}.*", r"\1", line) for line in (done.stdout + done.stderr).splitlines())
        self.assertEqual(remarks, {"index-element-accessible": sum(not thing.scalar for thing in OBJECTS),
                                   "notification-not-reversible": len(TRAPS)})

    def test_every_column_is_found_by_its_oid_and_by_its_name(self):
        columns = [(c.name + ".7", dotted(o.column_oid(c) + (7,))) for o in OBJECTS for c in o.columns]
        self.assertEqual(len(columns), 187)
        self.check_both_ways(columns)

    def test_every_trap_and_its_objects_are_found_by_oid_and_by_name(self):
        objects = [(c.name, dotted((*BASE, TRAP_ARC, TRAP_OBJECT_ARC, c.suffix))) for c in TRAP_OBJECTS]
        self.check_both_ways([(trap.name, dotted(trap.oid)) for trap in TRAPS] + objects)
        masters = ["1.3.6.1.6.3.1.1.5.1", "1.3.6.1.6.3.1.1.4.3.0"]  # of the first trap that a manager sees
        self.assertEqual(self.translate(masters, "-m", "SNMPv2-MIB"), ["SNMPv2-MIB::coldStart", "SNMPv2-MIB::snmpTrapEnterprise.0"])

    def check_both_ways(self, names):
        self.assertEqual(self.translate([oid for _, oid in names]), ["HWAGENT-MIB::" + name for name, _ in names])
        self.assertEqual(self.translate(["HWAGENT-MIB::" + name for name, _ in names], "-On"), ["." + oid for _, oid in names])

    def translate(self, names, *options):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "cert_indexes").mkdir()  # a program of Net-SNMP says so when it is the first to make it
            done = subprocess.run(["snmptranslate", "-M", FOLDERS, "-m", "HWAGENT-MIB", *options, *names], text=True,
                                  capture_output=True, env=dict(os.environ, SNMP_PERSISTENT_DIR=folder))
        self.assertEqual(done.stderr, "")
        return done.stdout.split()


class LiveWalk(unittest.TestCase):
    FORMS = {"text": '(STRING: .{0,511}|"")', "index": r"INTEGER: [1-9]\d*", "number": r"INTEGER: -?\d+"}
    OF_LABELS = r"INTEGER: \w+\(\d+\)"

    def test_every_instance_is_in_the_mib_with_its_syntax(self):
        columns = {c.name: (thing.scalar, self.OF_LABELS if c.values else self.FORMS[c.kind]) for thing in OBJECTS for c in thing.columns}
        with Bench() as bench:
            bench.simulate(BOARDS / "server2025.py")
            bench.start_agent(settings(practical=1)).wait_served()
            walked = subprocess.run(["snmpbulkwalk", "-v2c", "-c", "public", "-M", FOLDERS, "-m", "HWAGENT-MIB", "-OU",
                                     f"127.0.0.1:{bench.master.port}", dotted(BASE)], capture_output=True, text=True,
                                    env=dict(os.environ, SNMP_PERSISTENT_DIR=str(bench.folder))).stdout
        for line in walked.splitlines():
            name, instance, value = re.fullmatch(r"HWAGENT-MIB::(\w+)\.(\d+) = (.*)", line).groups()
            is_scalar, form = columns[name]
            self.assertRegex(value, rf"\A{form}\Z", line)
            self.assertEqual(instance == "0", is_scalar, line)
        self.assertGreater(walked.count("\n"), 1500)
