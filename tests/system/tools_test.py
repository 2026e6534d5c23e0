"""The Python tools: what a board's records and a walk's output are taken for."""

import json
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import HWQUERY, QUICKSTART, ROOT, Bench, over_the_library
from hwtools.mibtable import NO_VALUE, find_object
from hwtools.tables import parse_walk, printed, rows, trouble


class TranslationSources(unittest.TestCase):
    """A mistake in a source is told with its place."""

    def run_on(self, file, before, after, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            for part in ("tools/mktranslations", "share/translations"):
                place = Path(folder, part)
                place.parent.mkdir()
                (shutil.copytree if (ROOT / part).is_dir() else shutil.copy)(ROOT / part, place)
            source = Path(folder, "share/translations", file)
            self.assertIn(before, source.read_text())
            source.write_text(source.read_text().replace(before, after, 1))
            done = subprocess.run([Path(folder, "tools/mktranslations"), *(arguments or [Path(folder, "made")])], cwd=folder,
                                  capture_output=True, text=True)
            return done.returncode, done.stderr, sorted(p.name for p in Path(folder).iterdir())

    def test_mistakes_are_told_by_file_table_and_key(self):
        mistakes = (
            ("english.toml", '"00" = ["U", "U", "", "it is idle', '"00" = ["X", "U", "", "it is idle', '[generic.02] "00"'),
            ("english.toml", "||it is no longer idle", "", "deassertion"),
            ("english.toml", '["W", "I", "predictive", "it is about', '["W", "I", "predict", "it is about', "no action 'predict'"),
            ("english.toml", '"00" = ["U", "U", "", "it is idle||it is no longer idle"]', '"00" = 3', '[generic.02] "00"'),
            ("english.toml", '"00" = ["U", "U", "", "it is idle', '"G0" = ["U", "U", "", "it is idle', "'G0'"),
            ("english.toml", "07/{restart}", "07/{restarts}", '[specific.1D] "07/{restarts}"'),
            ("english.toml", "{text}%Codes%", "{txt}%Codes%", "txt"),
            ("english.toml", '20 = "Integrated BMC"', '2X = "Integrated BMC"', "[devices] 2X"),
            ("english.toml", "\n[phrases]\n", "\n[phrase]\n", "[phrase]"),
            ("english.toml", "[lists.restart]", "[lists.restart", "line"),
            ("de_DE.toml", '"00" = "untätig', '"0F" = "untätig', "[generic.02] has no 0F"),
            ("de_DE.toml", "untätig||nicht mehr untätig", 'unt^ätig||nicht', '[generic.02] "00"'),
            ("alder.toml", '"00" = ["W", "I", "memory-correctable"', '"00" = ["W", "I", "memory-corrected"', "[platform."))
        for file, before, after, place in mistakes:
            with self.subTest(after=after):
                status, said, _ = self.run_on(file, before, after)
                self.assertEqual(status, 1)
                self.assertRegex(said, f"^mktranslations: {re.escape(file)}: .*{re.escape(place)}")
                self.assertEqual(said.count("\n"), 1, said)

    def test_options_make_no_folder(self):
        for option, status in (("--help", 0), ("-x", 2), ("--folder", 2)):
            with self.subTest(option=option):
                self.assertEqual(self.run_on("english.toml", "", "", option)[::2], (status, ["share", "tools"]))


class Queries(unittest.TestCase):
    """hwquery on the quick start's board."""

    @classmethod
    def setUpClass(cls):
        cls.environment = over_the_library(cls.enterClassContext(Bench()).simulate(QUICKSTART))

    def run_get(self, *words):
        done = subprocess.run([HWQUERY, "get", *words], capture_output=True, text=True,
                              env=self.environment)
        return done.returncode, done.stdout, done.stderr

    def test_answers(self):
        for words, status, answer, said in (
                (["/"], 0, r"/: .*/BMC /BMC/CHANNEL .*/BMC/SENSOR/DISPLAY .*", ""),
                (["/BMC/INFO/VERSION"], 0, r"/BMC/INFO/VERSION = 1\.20\.0", ""),
                (["--json", "/BMC/INFO/VERSION"], 0, r'\{\n  "nodes": \{\n    "/BMC/INFO/VERSION": \{\n      "values": \[\n        "1\.20\.0"[^"]*"failures": \[\]\n\}', ""),
                (["/BMC/SENSOR[200]/VALUE"], 1, "", r"/BMC/SENSOR\[200\]/VALUE: an empty answer"),
                (["/BMC/NONSENSE", "/BMC/INFO/VERSION"], 1, "/BMC/INFO/VERSION = .*", r"/BMC/NONSENSE: 1001 Invalid Query .*")):
            with self.subTest(words=words):
                done, shown, told = self.run_get(*words)
                self.assertEqual(done, status)
                self.assertRegex(shown, rf"\A{answer}\n?\Z")
                self.assertRegex(told, rf"\A{said}\n?\Z")

    def test_the_page_of_queries_is_current(self):
        made = subprocess.run([HWQUERY, "list", "--markdown"], capture_output=True, text=True)
        self.assertEqual(made.stdout, (ROOT / "docs" / "queries.md").read_text(), "hwquery list --markdown > docs/queries.md")

    def test_numbers_in_paths_are_in_their_order(self):
        paths = list(json.loads(self.run_get("--json", "/BMC/SENSOR/DISPLAY")[1])["nodes"])
        numbers = [int(number) for path in paths for number in re.findall(r"\[(\d+)\]$", path)]
        self.assertEqual((numbers[:8], numbers), ([1, 2, 3, 4, 5, 6, 7, 16], sorted(numbers)))

    def test_a_refusal_without_root_says_so_beside_the_answers(self):
        with tempfile.TemporaryDirectory() as folder:
            Path(folder).chmod(0o755)
            program = shutil.copy(HWQUERY, folder)
            done = subprocess.run([program, "get", "--json", "/BMC/INFO/VERSION"], capture_output=True, text=True, user="nobody",
                                  env={}, cwd="/")
        self.assertEqual((done.returncode, json.loads(done.stdout)["nodes"]), (1, {}))
        self.assertRegex(done.stderr, r"OpenIPMI driver is disabled(.|\n)*\nhwquery: run as root")


class Walks(unittest.TestCase):
    def test_rows_of_a_walk_and_what_a_person_sees(self):
        base = ".1.3.6.1.4.1.44444.2.10.3.5.600.40.1"
        text = "\n".join((f"{base}.1.1 = INTEGER: 1", f'{base}.3.1 = STRING: "Inlet \\"A\\""', f'{base}.4.1 = STRING: "two',
                          f'lines"', f"{base}.5.1 = INTEGER: 3", f"{base}.6.1 = INTEGER: -55", f"{base}.7.1 = INTEGER: {NO_VALUE}",
                          ".1.3.6.1.4.1.44444.2.10.3.5.700.10.1.1.1 = INTEGER: 1"))
        thing = find_object("temperatureProbeTable")
        found = rows(thing, parse_walk(text, thing.oid))
        self.assertEqual(found, [{"temperatureIndex": 1, "temperatureDescription": 'Inlet "A"',
                                  "temperatureStatusString": "two\nlines", "temperatureStatus": 3,
                                  "temperatureReading": -55, "temperatureUpperNonRecoverableThreshold": NO_VALUE}])
        self.assertRegex("\n".join(printed(thing, found)), r'row +description +status +reading\n +1 +Inlet "A" +two\nlines +-5\.5 °C$')
        self.assertEqual(trouble([(thing, found)]), 'In trouble: warning: Inlet "A"')

    def test_what_is_too_wide_is_folded(self):
        thing = find_object("physicalMemoryDeviceTable")
        row = {c.name: "word " * 5 if c.kind == "text" else 3 for c in thing.columns}
        lines = printed(thing, [row, row])
        self.assertLessEqual(max(map(len, lines)), 80)
        self.assertEqual(sum(line.startswith("  row 3") for line in lines), 2)
        self.assertIn("size 0.00292969 GB", " ".join(lines))
