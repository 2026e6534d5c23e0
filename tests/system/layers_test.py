"""What scripts/check-layers refuses, on a small house of two floors and a door; and what the link-time check refuses."""
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from hwtools.bench import ROOT


HOUSE = {
    "src/ground/CMakeLists.txt": "hw_library(hw_ground)\n",
    "src/ground/Bytes.hpp": "#pragma once\n",
    "src/upper/CMakeLists.txt": "hw_library(hw_upper hw_ground Threads::Threads)\n",
    "src/upper/Words.hpp": '#pragma once\n#include "ground/Bytes.hpp"\n#include <string>\n',
    "door/CMakeLists.txt": "hw_library(hw_door MAIN main.cpp hw_upper hw_netsnmp)\n",
    "door/Door.cpp": '#include "upper/Words.hpp"\n#include <net-snmp/net-snmp-config.h>\n',
}

REFUSED = [
    ("upward, in quotes", "src/ground/Bad.cpp", '#include "upper/Words.hpp"\n', "does not name hw_upper"),
    ("upward, in angle brackets", "src/ground/Bad.cpp", "#include <upper/Words.hpp>\n", "does not name hw_upper"),
    ("past the next floor", "door/Bad.cpp", ' #  include "ground/Bytes.hpp"\n', "does not name hw_ground"),
    ("Net-SNMP elsewhere", "src/upper/Bad.hpp", "#include <net-snmp/types.h>\n", "does not name hw_netsnmp"),
    ("without the folder", "src/upper/Bad.cpp", '#include "Words.hpp"\n', "not a header of the house"),
    ("a name that nobody needs", "src/upper/Words.hpp", "#pragma once\n", "names hw_ground and includes nothing"),
    ("a circle", "src/ground/CMakeLists.txt", "hw_library(hw_ground hw_upper)\n", "a circle"),
    ("a figure of another house", "docs/architecture.md", "<!-- rooms -->\n```\nground\n```\n<!-- /rooms -->\n",
     "the figure of rooms"),
]


def check(changes):
    with tempfile.TemporaryDirectory() as root:
        for name, text in {**HOUSE, **changes}.items():
            Path(root, name).parent.mkdir(parents=True, exist_ok=True)
            Path(root, name).write_text(text)
        return subprocess.run([ROOT / "scripts" / "check-layers", root], capture_output=True, text=True, check=False)


class Layers(unittest.TestCase):
    def test_a_house_in_order_passes(self):
        result = check({})
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_what_is_against_the_lists_is_refused(self):
        for circumstance, name, text, complaint in REFUSED:
            with self.subTest(circumstance):
                result = check({name: text})
                self.assertEqual(result.returncode, 1)
                self.assertIn(complaint, result.stderr)


class OneDefinition(unittest.TestCase):
    def test_two_types_of_one_name_do_not_link(self):
        options = re.search(r"target_link_options\(hw_one_definition PRIVATE ([^)]*)\)",
                            (ROOT / "api-netsnmp" / "CMakeLists.txt").read_text()).group(1).split()
        compiler = ["g++", "-x", "c++", "-O2", "-flto", "-ffat-lto-objects", "-c", "-", "-o"]
        with tempfile.TemporaryDirectory() as folder:
            objects = [Path(folder, name) for name in ("first.o", "second.o")]
            for place, field in zip(objects, ("int", "double")):
                other = "int use(S&);\nint main() { S s{}; return use(s); }" if field == "int" else "int use(S& s) { return int(s.a); }"
                subprocess.run([*compiler, place], input=f"struct S {{ {field} a; }};\n{other}\n", text=True, check=True)
            link = subprocess.run(["g++", "-fno-lto", *options, *objects, "-o", Path(folder, "program")],
                                  capture_output=True, text=True, check=False)
        self.assertNotEqual(link.returncode, 0)
        self.assertIn("violates the C++ One Definition Rule", link.stderr)
