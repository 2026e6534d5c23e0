"""Inventory devices as the SDK tells them, against ipmitool on the same simulator: whole images, and damaged ones."""

import os
import random
import re
import tempfile
import unittest
from datetime import datetime
from unittest.mock import patch

from hwtools.bench import QUICKSTART, Simulator
from hwtools.ipmi import checksum, type_length
from lib.bench import ask

AREAS = {"Chassis": "CHASSISAREA", "Board": "BOARDAREA", "Product": "PRODUCTAREA"}
# What ipmitool calls a field behind the name of its area, in the order of the area.
FIELDS = {"Chassis": {"Type": "TYPE", "Part Number": "PART_NUMBER", "Serial": "SERIAL_NUMBER"},
          "Board": {"Mfg Date": "MFG_DATE", "Mfg": "MANUFACTURER", "Product": "PRODUCT_NAME", "Serial": "SERIAL_NUMBER",
                    "Part Number": "PART_NUMBER", "FRU ID": "FRU_FILE_ID"},
          "Product": {"Manufacturer": "MANUFACTURER", "Name": "PRODUCT_NAME", "Part Number": "PART_NUMBER",
                      "Version": "VERSION", "Serial": "SERIAL_NUMBER", "Asset Tag": "ASSET_TAG", "FRU ID": "FRU_FILE_ID"}}
OWN_WORDS = {"SubChassis": "Sub Chassis", "LapTop": "Laptop", "All in One": "All In One"}
CODINGS = {"6bit": " !#()*+,-./0123456789:;<=>?@ABCXYZ[]^_", "bcd": "0123456789-. ", "ascii": "Abc xyz.019\xe4\xe9\xdf~|"}


def area(head, fields, end=True):
    """Version, length, head, fields of (text, coding), end mark, padding, checksum."""
    body = [1, 0, *head]
    for text, coding in fields:
        body += type_length(text, coding) if text else [0xC0]
    body += [0xC1] if end else []
    body += [0] * (-(len(body) + 1) % 8)
    body[1] = (len(body) + 1) // 8
    return body + [checksum(body)]


def image(*areas, gap=0):
    """Header and the areas of chassis, board and product, None for one that is not there; `gap` units between them."""
    header, body = [1, 0], []
    for one in areas:
        header.append(1 + len(body) // 8 if one else 0)
        body += one + [0xEE] * 8 * gap if one else []
    header += [0, 0]
    return header + [checksum(header)] + body


def made_up(dice):
    """A sound image of random fields in all codings."""
    def fields(count):
        made = []
        for _ in range(count + dice.randrange(4)):
            coding = dice.choice(list(CODINGS))
            length = dice.choice([0, 2, 3, 17, 40])
            text = "".join(dice.choice(CODINGS[coding]) for _ in range(length))
            made.append((text and text[:-1] + "X"[:coding != "bcd"] + "7"[:coding == "bcd"], coding))
        return made

    minutes = dice.randrange(1, 1 << 24)
    return image(area([dice.randrange(1, 0x18)], fields(2)),
                 area([dice.choice([0, 25]), minutes & 0xFF, minutes >> 8 & 0xFF, minutes >> 16], fields(5)),
                 area([dice.choice([0, 25])], fields(7)), gap=dice.randrange(3))


CHASSIS = area([0x17], [("CH-1", "ascii"), ("SN-1", "ascii"), ("more", "ascii")])
BOARD = area([25, 1, 2, 3], [(text, "ascii") for text in ("Maker", "Board", "SN-2", "PN-2", "file")])
PRODUCT = area([25], [(text, "ascii") for text in ("Maker", "Box", "PN-3", "V1", "SN-3", "TAG-3", "file")])


def changed(data, at, value):
    return data[:at] + [value] + data[at + 1:]


# What is wrong, and the areas of which nothing is to be believed.
DAMAGED = {
    "chassis, wrong sum": (image(changed(CHASSIS, 5, 0x41), BOARD, PRODUCT), ["Chassis"]),
    "chassis, of a later version": (image(changed(changed(CHASSIS, 0, 2), len(CHASSIS) - 1, CHASSIS[-1] - 1), BOARD, PRODUCT), ["Chassis"]),
    "board, length 0": (image(CHASSIS, changed(BOARD, 1, 0), PRODUCT), ["Board"]),
    "product, length FFh": (image(CHASSIS, BOARD, changed(PRODUCT, 1, 0xFF)), ["Product"]),
    "chassis, no end mark": (image(area([0x17], [("CH-1", "ascii"), ("SN-1x", "ascii")], end=False), BOARD, PRODUCT), []),
    "blank": ([0xFF] * 64, list(AREAS)),
    "header, wrong sum": (changed(image(CHASSIS, BOARD, PRODUCT), 7, 0), list(AREAS)),
    "zeros": ([0] * 64, list(AREAS)),
    "board beyond the end": ([1, 0, 1, 200, 0, 0, 0, 0x100 - 202, *CHASSIS], ["Board"]),
    "of eight bytes": (image(None, None, None), []),
}


class Inventory(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.enterClassContext(patch.dict(os.environ, TZ="UTC"))  # of ipmitool's dates
        cls.simulator = Simulator(QUICKSTART, cls.enterClassContext(tempfile.TemporaryDirectory()))
        dice = random.Random(1996)
        cls.sound = {"board's own": 0}
        cls.damaged = {}
        images = {f"made up {i}": made_up(dice) for i in range(12)}
        images |= {"product alone": image(None, None, PRODUCT), "one per end": image(CHASSIS, None, PRODUCT, gap=9)}
        for number, (name, data) in enumerate(images.items(), 1):
            cls.add(number, data)
            cls.sound[name] = number
        for number, (name, (data, lost)) in enumerate(DAMAGED.items(), 100):
            cls.add(number, data)
            cls.damaged[name] = number, lost
        cls.enterClassContext(cls.simulator)

    @classmethod
    def add(cls, number, data):
        cls.simulator.board.frus[number] = dict(size=len(data), data=data, areas={})

    def told(self, number):
        """Area to {name: text}, as the SDK has them; the makers' own fields as one list, empty ones left out."""
        path = f"/BMC/FRU[{number}]"
        answer = ask(self, self.simulator, path)
        found = {}
        for kind, name in AREAS.items():
            fields = answer[f"{path}/RECORD/DECODED/{name}"]["children"]
            texts = [(field.rsplit("/", 1)[1], "".join(answer[field])) for field in fields]
            found[kind] = {key: text for key, text in texts if text and "[" not in key and key != "LANGUAGE"}
            found[kind]["CUSTOM_FIELD"] = [text for key, text in texts if text and "[" in key]
        return found

    def shown(self, number):
        """The same as ipmitool has it, which pads packed texts and writes dates and one chassis type in its own way."""
        lines = self.simulator.ipmitool("-v", "fru", "print", str(number), check=False).stdout.splitlines()
        found = {kind: {"CUSTOM_FIELD": []} for kind in AREAS}
        for line in lines:
            match = re.fullmatch(r" (Chassis|Board|Product) ([^:]+?) +: (.*?) *", line)
            if not match or not match[3]:
                continue
            kind, name, text = match.groups()
            if name == "Extra":
                found[kind]["CUSTOM_FIELD"].append(text)
            elif name == "Mfg Date":
                found[kind]["MFG_DATE"] = f"{datetime.strptime(text, '%a %b %d %H:%M:%S %Y UTC'):%m/%d/%Y-%H:%M:%S}"
            else:
                found[kind][FIELDS[kind][name]] = OWN_WORDS.get(text, text)
        return found

    def test_sound_images_read_as_ipmitool_reads_them(self):
        for name, number in self.sound.items():
            with self.subTest(name):
                self.assertEqual(self.told(number), self.shown(number))

    def test_damage_costs_the_area_it_is_in(self):
        for name, (number, lost) in self.damaged.items():
            with self.subTest(name):
                wanted = self.shown(number) | {kind: {"CUSTOM_FIELD": []} for kind in lost}
                self.assertEqual(self.told(number), wanted)
