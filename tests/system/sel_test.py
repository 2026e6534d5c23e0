"""The event log as the SDK tells it, against ipmitool on the same simulator: bytes, ids, times, names, erasure."""

import os
import unittest
from unittest.mock import patch

from hwtools.bench import QUICKSTART, Bench
from lib.bench import ask

# Record types and all behind them; 0xDC is a start of the system. The maker's id behind the time reads the same both
# ways, for ipmitool writes it reversed.
MAKERS = [[0xC7, 1, 2, 3, 4, 0x57, 0x01, 0x57, 9, 8, 7, 6, 5, 4], [0xF3, *range(0x10, 0x1D)],
          [0xDC, 0, 0, 0, 0x60, 0x12, 0x34, 0x12, *range(6)]]


class EventLog(unittest.TestCase):
    def setUp(self):
        self.enterContext(patch.dict(os.environ, TZ="UTC"))  # of ipmitool's times
        self.bench = self.enterContext(Bench())
        self.simulator = self.bench.simulate(QUICKSTART)

    def ask(self, path, *options):
        """The answer's nodes below `path`, by their names behind it."""
        return {name.removeprefix(path): node for name, node in ask(self, self.simulator, path, *options).items()}

    def translated(self, *options):
        answer = self.ask("/BMC/SEL/TRANSLATED", *options)
        return [{field.rsplit("/", 1)[1]: " ".join(answer[field.removeprefix("/BMC/SEL/TRANSLATED")])
                 for field in answer[record.removeprefix("/BMC/SEL/TRANSLATED")]["children"]}
                for record in answer[""]["children"]]

    def listed(self):
        return [[column.strip() for column in line.split("|")]
                for line in self.simulator.ipmitool("sel", "elist").stdout.splitlines()]

    def add_events(self, count):
        events = self.bench.folder / "events"
        events.write_text("".join(f"0x04 0x01 0x02 0x{1 if i % 3 else 0x81:02x} 0x57 0x{i % 256:02x} 0x46 # warm\n"
                                  for i in range(count)))
        self.simulator.ipmitool("sel", "add", str(events))

    def test_records_are_those_that_ipmitool_lists(self):
        for record in MAKERS:
            self.simulator.ipmitool("raw", "0x0a", "0x44", "0", "0", *map(str, record))
        self.add_events(5)
        written = self.bench.folder / "raw"
        self.simulator.ipmitool("sel", "writeraw", str(written))
        records, listed = self.translated(), self.listed()
        self.assertEqual(bytes.fromhex("".join(record["RAW"] for record in records)), written.read_bytes())
        self.assertEqual([record["NEXT_SEL_RECORD_ID"] for record in records],
                         [f"{int(line[0], 16):04X}" for line in listed[1:]] + ["FFFF"])
        compared = 0
        for record, line in zip(records, listed):
            if record["RAW"][6:8] != "02":
                self.assertEqual(record["SENSOR_NAME"], "OEM Event")
                continue
            day, hour = record["TIMESTAMP"].split("-")
            self.assertEqual((day[:6] + day[8:], hour), (line[1], line[2].removesuffix(" UTC")))
            if record["GENERATOR_ID"] == "Integrated BMC":
                self.assertEqual((line[3].startswith(record["SENSOR_TYPE"]), line[3].endswith(" " + record["SENSOR_NAME"])),
                                 (True, True), (record, line))
                self.assertTrue(record["DESCR"].startswith(record["SENSOR_NAME"] + " reports"), record["DESCR"])
                compared += 1
        self.assertGreater(compared, 5)
        self.assertIn("Operating system bootup.", [record["DESCR"] for record in records])

    def test_another_language_has_the_same_records_and_the_english_text_beside(self):
        self.add_events(3)
        english, german = self.translated(), self.translated("--locale", "de_DE.UTF-8")
        self.assertEqual([record["ENGLISH"] for record in german], [record["DESCR"] for record in english])
        self.assertEqual([record["RAW"] for record in german], [record["RAW"] for record in english])
        self.assertIn(f"{german[-1]['SENSOR_NAME']} meldet: Messwert", german[-1]["DESCR"])
