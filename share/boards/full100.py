"""A hundred sensors that differ in all that a reader of SDRs can get wrong: data formats, negative factors, exponents,
linearisations, thresholds that are missing or only readable, discrete families, sensors that do not read, long names,
packed names, a second controller, and records of other kinds between them."""

from hwtools.board import (ACCESS_READABLE, CURRENT, FAN, TEMPERATURE, VOLTAGE, Board)
from hwtools.ipmi import ONES, TWOS

WATTS_KIND, OTHER_UNITS = 0x0B, 0x0B
SATELLITE = 0x24

board = Board("full100", firmware=(2, 0x45), product=0x0102)
board.satellite(SATELLITE)
board.controller_locator(0x20, "Grebe BMC")
board.controller_locator(SATELLITE, "Grebe Satellite", capabilities=0x21)
board.fru_locator(0, "Grebe Mainboard")

# ---- temperatures: data formats and factors
TEMPERATURES = (  # name, raw, factors, raw thresholds
    ("Plain", 45, {}, dict(lnc=5, lc=3, lnr=1, unc=80, uc=90, unr=100)),
    ("At upper bound", 80, {}, dict(unc=80, uc=90)),
    ("Above warning", 81, {}, dict(unc=80, uc=90)),
    ("Above critical", 95, {}, dict(unc=80, uc=90, unr=120)),
    ("Above all", 130, {}, dict(unc=80, uc=90, unr=120)),
    ("Below all", 1, {}, dict(lnc=10, lc=8, lnr=5)),
    ("Zero", 0, {}, dict(unc=80)),
    ("Full scale", 255, {}, {}),
    ("Twos negative", 0xE2, dict(format=TWOS), dict(lnc=0xD8, unc=0x32)),
    ("Twos minus one", 0xFF, dict(format=TWOS), dict(unc=0x32)),
    ("Twos lowest", 0x80, dict(format=TWOS), {}),
    ("Twos highest", 0x7F, dict(format=TWOS), dict(unc=0x7E)),
    ("Ones negative", 0xE1, dict(format=ONES), dict(lnc=0xD7, unc=0x32)),
    ("Ones minus zero", 0xFF, dict(format=ONES), dict(unc=0x32)),
    ("Ones positive", 0x2A, dict(format=ONES), dict(unc=0x32)),
    ("Half degrees", 91, dict(m=5, r_exp=-1), dict(unc=160, uc=180)),
    ("Negative slope", 60, dict(m=-1, b=100), {}),
    ("Negative offset", 120, dict(b=-55), dict(unc=150, uc=160)),
    ("Offset exponent", 70, dict(m=65, b=-4, b_exp=1, r_exp=-2), dict(unc=125)),
    ("Offset fraction", 50, dict(m=2, b=125, b_exp=-2, r_exp=-1), dict(unc=200)),
    ("Largest factors", 12, dict(m=511, b=-512, r_exp=-2), {}),
    ("Smallest factors", 3, dict(m=-512, b=511, b_exp=1, r_exp=-2), {}),
    ("Tens of degrees", 4, dict(r_exp=1), dict(unc=8, uc=9)),
    ("Only readable", 33, dict(access=ACCESS_READABLE), dict(unc=60, uc=70)),
    ("No thresholds", 34, {}, {}))
for place, (name, raw, factors, limits) in enumerate(TEMPERATURES, 1):
    board.analog(place, TEMPERATURE, name, raw, "degrees C", thresholds=limits, entity=(7, place), **factors)

# ---- linearisations, among voltages, currents and fans, where such rows are left out of the analog tables
CURVES = ((1, "Curve ln", VOLTAGE, "Volts"), (2, "Curve log10", VOLTAGE, "Volts"), (3, "Curve log2", CURRENT, "Amps"),
          (4, "Curve e", VOLTAGE, "Volts"), (7, "Curve inverse", FAN, "RPM"), (8, "Curve square", CURRENT, "Amps"),
          (9, "Curve cube", CURRENT, "Amps"), (10, "Curve root", VOLTAGE, "Volts"), (11, "Curve cube root", FAN, "RPM"))
for code, name, kind, unit in CURVES:
    board.analog(0x20 + code, kind, name, 9, unit, linearisation=code, m=1, r_exp=-1 if code == 4 else 0)

# ---- voltages; nine characters of a name are what a manager sees
for place in range(14):
    board.analog(0x30 + place, VOLTAGE, f"V{place:02d} Rail Of Board", 150 + 5 * place, "Volts", m=6 + place, r_exp=-3,
                 tolerance=place, thresholds=dict(list(dict(lnc=140, lc=130, unc=215, uc=230, unr=240).items())[:place % 6]))
board.analog(0x3F, VOLTAGE, "Minus 12 Volts", 0x9C, "Volts", m=12, r_exp=-2, format=TWOS, thresholds=dict(lnc=0x90, unc=0xA8))
board.analog(0x40, VOLTAGE, "P1V8 OFF", 0, "Volts", m=98, r_exp=-4, coding="6bit", thresholds=dict(lnc=160, lc=150))

# ---- currents
for place in range(8):
    board.analog(0x44 + place, CURRENT, f"Phase {place}", 20 * place, "Amps", m=3, b=place - 4, r_exp=-2,
                 accuracy=100 + place, thresholds=dict(unc=120, uc=150) if place % 2 else {})

# ---- fans
for place in range(8):
    board.analog(0x50 + place, FAN, f"Blower {place}", 20 + 10 * place, "RPM", m=78, r_exp=place % 2,
                 thresholds=dict(lnc=40, lc=30), entity=(29, place + 1))
board.discrete(0x58, FAN, "Blower 0 Present", [1], events=0x08, entity=(29, 1))
board.discrete(0x59, FAN, "Blower 1 Present", [0], events=0x08, entity=(29, 2))

# ---- sensors without a reading
board.analog(0x5C, TEMPERATURE, "Not scanned", 50, "degrees C", thresholds=dict(unc=80), scanned=False)
board.analog(0x5D, VOLTAGE, "V Unscanned", 50, "Volts", r_exp=-2, thresholds=dict(unc=80), scanned=False)
board.analog(0x5E, TEMPERATURE, "Unknown to BMC", 50, "degrees C", thresholds=dict(unc=80), known=False)
board.analog(0x5F, FAN, "Absent Blower", 50, "RPM", m=60, thresholds=dict(lnc=8), known=False)

# ---- a second controller, a non-zero LUN, other analog kinds
board.analog(0x01, TEMPERATURE, "Riser Inlet", 29, "degrees C", thresholds=dict(unc=50, uc=60), owner=SATELLITE)
board.analog(0x02, VOLTAGE, "Riser 12 V", 120, "Volts", r_exp=-1, thresholds=dict(lc=110, uc=130), owner=SATELLITE)
board.analog(0x05, TEMPERATURE, "Second LUN", 37, "degrees C", thresholds=dict(unc=70), lun=1)
board.analog(0x60, WATTS_KIND, "Input Power", 55, "Watts", m=4, thresholds=dict(uc=200), entity=(10, 1))
board.oem_record([1, 2, 3, 4])

# ---- discrete families
for place, (name, kind, events, states) in enumerate((
        ("Supply 0", 0x08, 0x6F, [0]), ("Supply 1", 0x08, 0x6F, [0, 1]), ("Supply 2", 0x08, 0x6F, [0, 2]),
        ("Supply 3", 0x08, 0x6F, []), ("Unit Redundancy", 0x09, 0x0B, [0]), ("Unit Degraded", 0x09, 0x0B, [2]),
        ("Unit Faults", 0x09, 0x6F, [5]), ("Cooling Full", 0x0A, 0x0B, [0]), ("Cooling Lost", 0x0A, 0x0B, [1, 3]),
        ("VTT Good", VOLTAGE, 0x03, [0]), ("VDDQ Bad", VOLTAGE, 0x03, [1]), ("Socket 0", 0x07, 0x6F, [7]),
        ("Socket 1", 0x07, 0x6F, [1, 7]), ("Module 0", 0x0C, 0x6F, [6]), ("Module 1", 0x0C, 0x6F, [0, 6]),
        ("Bay 0", 0x0D, 0x6F, [0]), ("Bay 1", 0x0D, 0x6F, [0, 1]), ("Bay 2", 0x0D, 0x6F, []), ("Lid", 0x05, 0x6F, [0]),
        ("Log", 0x10, 0x6F, [2]), ("Buttons", 0x14, 0x6F, []), ("Watchdog", 0x23, 0x6F, [1]), ("Cell", 0x29, 0x6F, [0]),
        ("Private", 0xF3, 0x03, [0]), ("Last State", 0x13, 0x6F, [4])), 0x70):
    board.discrete(place, kind, name, states, events=events)
board.event_only(0x90, 0x13, "Event Only")

board.fru(0, chassis=(0x17, "GR-CH-1", "GR-C-1"), board=(1, "Lakeside Works", "GR-MB", "GR-B-1", ("GR-1", "6bit"), ""),
          product=("Lakeside Works", "Grebe", "GR", "B2", ("0815-4711", "bcd"), "", ""))
for number in range(40):
    board.threshold_event(1714550400 + 60 * number, 1 + number % 25, TEMPERATURE, 7, 90, 80, deassertion=number % 3 == 2)
board.oem_event(1714560000, 0xC1, [1, 2, 3, 4, 5, 6])
