"""A server's management controller as data: sensors with their SDRs, FRU areas, event log.

A board file is a Python file that makes one Board with the name `board` and fills it. Board keeps the records as bytes,
the commands that put ipmi_sim in the same state, and what a correct reader of that controller has to find."""

import runpy

from .ipmi import (THRESHOLDS, UNITS, TWOS, UNSIGNED, checksum, convert, little_endian, shown_text, signed_raw, type_length)
from .smbios import Tables

BMC_ADDRESS = 0x20
THRESHOLD_EVENTS = 0x01
SENSOR_SPECIFIC = 0x6F
TEMPERATURE, VOLTAGE, CURRENT, FAN = 1, 2, 3, 4
ACCESS_NONE, ACCESS_READABLE, ACCESS_SETTABLE = 0, 1, 2
ACCESS_WORD = ("none", "readable", "settable")
SDR_VERSION = 0x51
ALL_STATES = 0x7FFF


def load_board(path):
    """The Board that the board file at `path` makes."""
    return runpy.run_path(path)["board"]


class Board:
    def __init__(self, name, firmware=(1, 0x20), manufacturer=0x00A1B2, product=0x0101):
        self.name = name
        self.identity = dict(device_id=0x20, device_revision=1, firmware="%d.%02x" % firmware, support=0x9F,
                             manufacturer=manufacturer, product=product)
        self.controllers = [f"mc_add {BMC_ADDRESS:#x} 0x20 no-device-sdrs 1 {firmware[0]:#x} {firmware[1]:#x} 0x9f "
                            f"{manufacturer:#x} {product:#x}"]
        self.owners = {BMC_ADDRESS}
        self.records, self.sensors, self.commands, self.events, self.frus = [], [], [], [], {}
        self.smbios = Tables()

    def satellite(self, address, product=0x0102):
        """A further controller on IPMB that owns sensors."""
        self.controllers.append(f"mc_add {address:#x} 0x21 no-device-sdrs 1 1 0 0x21 "
                                f"{self.identity['manufacturer']:#x} {product:#x}")
        self.owners.add(address)

    # ------------------------------------------------------------------ sensors
    def analog(self, number, kind, name, raw, unit, m=1, b=0, r_exp=0, b_exp=0, linearisation=0, format=UNSIGNED,
               tolerance=0, accuracy=0, thresholds=None, access=None, owner=BMC_ADDRESS, lun=0, entity=(7, 1),
               coding="ascii", scanned=True, known=True):
        """Full record and sensor with threshold events. `thresholds`: raw values by name, all of them readable;
        `scanned` False: the controller says that it does not scan it; `known` False: an SDR without a sensor."""
        thresholds = thresholds or {}
        mask = sum(1 << i for i, key in enumerate(THRESHOLDS) if key in thresholds)
        access = (ACCESS_SETTABLE if mask else ACCESS_NONE) if access is None else access
        values = {key: thresholds.get(key, 0) & 0xFF for key in THRESHOLDS}
        low = mask & 7
        high = mask >> 3
        low_mask = low << 12 | sum(1 << 2 * i for i in range(3) if low >> i & 1)
        high_mask = high << 12 | sum(1 << 2 * i + 7 for i in range(3) if high >> i & 1)
        self._record([1, owner, lun, number, *entity, 0x7F, 0x40 | access << 2, kind, THRESHOLD_EVENTS,
                      *little_endian(low_mask, 2), *little_endian(high_mask, 2),
                      mask, mask if access == ACCESS_SETTABLE else 0, format << 6, UNITS[unit], 0, linearisation,
                      m & 0xFF, m >> 2 & 0xC0 | tolerance, b & 0xFF, b >> 2 & 0xC0 | accuracy & 0x3F, accuracy >> 6 << 4,
                      (r_exp & 15) << 4 | b_exp & 15, 0, 0, 0, 0, 0x7F if format else 0xFF, 0x80 if format else 0,
                      *(values[key] for key in ("unr", "uc", "unc", "lnr", "lc", "lnc")), 2, 2, 0, 0, 0,
                      *type_length(name, coding)])
        factors = dict(m=m, b=b, r_exp=r_exp, b_exp=b_exp, linearisation=linearisation, format=format)
        readable = scanned and known
        x = signed_raw(raw, format)
        crossed = [key for i, key in enumerate(THRESHOLDS) if key in thresholds and
                   (x <= signed_raw(values[key], format) if i < 3 else x >= signed_raw(values[key], format))]
        self._sensor(number, kind, name, coding, owner, lun, entity, record="full", events=THRESHOLD_EVENTS,
                     scanned=scanned, known=known, factors=factors, raw=raw, unit=unit, tolerance=tolerance, accuracy=accuracy,
                     value=convert(factors, raw) if readable else None, crossed=crossed if readable else [],
                     thresholds={key: convert(factors, values[key]) for key in THRESHOLDS if key in thresholds})
        if not known or owner not in self.owners:
            return
        at = f"{owner:#x} {lun} {number:#x}"
        enabled = f"{(low_mask | high_mask) & 0xFFF:015b}"
        bits = "".join("1" if mask >> i & 1 else "0" for i in reversed(range(6)))
        self.commands += [
            f"sensor_add {at} {kind:#x} {THRESHOLD_EVENTS:#x}",
            f"sensor_set_threshold {at} {ACCESS_WORD[access]} {bits} "
            + " ".join(str(values[key]) for key in ("unr", "uc", "unc", "lnr", "lc", "lnc")),
            f"sensor_set_event_support {at} enable {'scanning' if scanned else 'no-scanning'} per-state "
            + " ".join([enabled] * 4),
            f"sensor_set_hysteresis {at} settable 2 2",
            f"sensor_set_value {at} {raw} 0"]
        if format != UNSIGNED:  # the simulator compares raw bytes as unsigned ones
            self.commands += [f"sensor_set_bit {at} {i} {int(key in crossed)} 0" for i, key in enumerate(THRESHOLDS)]

    def discrete(self, number, kind, name, states=(), events=SENSOR_SPECIFIC, owner=BMC_ADDRESS, lun=0, entity=(7, 1),
                 share=1, mask=ALL_STATES, coding="ascii", scanned=True):
        """Compact record and sensor with states. `states`: offsets that are set; `share`: byte 24 of the record."""
        self._record([2, owner, lun, number, *entity, 0x67, 0x40, kind, events, *little_endian(mask, 2) * 3, 0xC0, 0, 0,
                      share, 0, 0, 0, 0, 0, 0, 0, *type_length(name, coding)])
        self._sensor(number, kind, name, coding, owner, lun, entity, record="compact", events=events, share=share,
                     mask=mask, value=None, states=sorted(states) if scanned else None)
        at = f"{owner:#x} {lun} {number:#x}"
        self.commands += [
            f"sensor_add {at} {kind:#x} {events:#x}",
            f"sensor_set_event_support {at} enable {'scanning' if scanned else 'no-scanning'} per-state "
            + " ".join([f"{mask:015b}"] * 4)]
        self.commands += [f"sensor_set_bit {at} {state} 1 0" for state in states]

    def event_only(self, number, kind, name, events=SENSOR_SPECIFIC, owner=BMC_ADDRESS, lun=0, entity=(34, 1)):
        """Event-only record (type 3)."""
        self._record([3, owner, lun, number, *entity, kind, events, 1, 0, 0, 0, *type_length(name)])
        at = f"{owner:#x} {lun} {number:#x}"
        self.commands += [f"sensor_add {at} {kind:#x} {events:#x} event-only",
                          f"sensor_set_event_support {at} enable scanning per-state " + " ".join(["1" * 15] * 4)]

    def _sensor(self, number, kind, name, coding, owner, lun, entity, **rest):
        self.sensors.append(dict(record_id=len(self.records), number=number, owner=owner, lun=lun, type=kind,
                                 name=shown_text(name, coding), entity=list(entity), **rest))

    # ------------------------------------------------------------------ other records
    def controller_locator(self, address, name, capabilities=0xDF, entity=(7, 1)):
        self._record([0x12, address, 0, 0, capabilities, 0, 0, 0, *entity, 0, *type_length(name)])

    def fru_locator(self, fru_id, name, entity=(7, 1)):
        self._record([0x11, BMC_ADDRESS, fru_id, 0x80, 0, 0, 0x10, 0, *entity, 0, *type_length(name)])

    def oem_record(self, data):
        self._record([0xC0, *little_endian(self.identity["manufacturer"], 3), *data])

    def _record(self, body):
        """`body`: record type and all that follows the length byte."""
        record = [*little_endian(len(self.records) + 1, 2), SDR_VERSION, body[0], len(body) - 1, *body[1:]]
        self.records.append(record)

    # ------------------------------------------------------------------ FRU inventory
    def fru(self, fru_id, chassis, board, product, size=1024):
        """Chassis (type, part, serial), board (minutes, maker, product, serial, part, file) and product area (maker,
        name, part, version, serial, asset tag, file) of one FRU device; a text or (text, coding) a field."""
        areas = {"chassis": _area([chassis[0]], chassis[1:]),
                 "board": _area([25, *little_endian(board[0], 3)], board[1:]),
                 "product": _area([25], product)}
        header, body = [1, 0], []
        for area in areas.values():
            header.append((8 + len(body)) // 8)
            body += area
        header += [0, 0]
        data = header + [checksum(header)] + body
        plain = [[shown_text(*(t if isinstance(t, tuple) else (t,))) for t in texts]
                 for texts in (chassis[1:], board[1:], product)]
        names = (("part", "serial"), ("maker", "product", "serial", "part", "file"),
                 ("maker", "name", "part", "version", "serial", "asset_tag", "file"))
        found = {area: dict(zip(keys, texts)) for area, keys, texts in zip(areas, names, plain)}
        found["chassis"]["type"] = chassis[0]
        self.frus[fru_id] = dict(size=size, data=data, areas=found)

    # ------------------------------------------------------------------ event log
    def event(self, when, number, kind, offset, events=SENSOR_SPECIFIC, data2=0xFF, data3=0xFF, deassertion=False,
              data1=None):
        """System event record (type 2) of a sensor of the BMC."""
        self._log([2, *little_endian(when, 4), BMC_ADDRESS, 0, 4, kind, number, (0x80 if deassertion else 0) | events,
                   offset if data1 is None else data1, data2, data3])

    def threshold_event(self, when, number, kind, offset, reading, threshold, deassertion=False):
        """Threshold event with the raw reading and the raw threshold."""
        self.event(when, number, kind, offset, THRESHOLD_EVENTS, reading, threshold, deassertion, data1=0x50 | offset)

    def oem_event(self, when, record_type, data):
        """OEM record with a timestamp (types C0h to DFh)."""
        self._log([record_type, *little_endian(when, 4), *little_endian(self.identity["manufacturer"], 3), *data])

    def _log(self, body):
        self.events.append([*little_endian(len(self.events) + 1, 2), *body])


def _area(head, texts):
    """One FRU information area: version, length, head bytes, fields, end mark, padding, checksum."""
    fields = [byte for text in texts for byte in _field(text)]
    area = [1, 0, *head, *fields, 0xC1]
    area += [0] * (-(len(area) + 1) % 8)
    area[1] = (len(area) + 1) // 8
    return area + [checksum(area)]


def _field(text):
    coded = text if isinstance(text, tuple) else (text, "ascii")
    return type_length(*coded) if coded[0] else [0xC0]
