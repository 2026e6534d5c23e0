"""Numbers and texts of IPMI 2.0 records: type/length strings, SDR factors, linearisation."""

import math
from fractions import Fraction

THRESHOLDS = ("lnc", "lc", "lnr", "unc", "uc", "unr")  # bit order of every threshold mask
UNITS = {"unspecified": 0, "degrees C": 1, "degrees F": 2, "degrees K": 3, "Volts": 4, "Amps": 5, "Watts": 6, "RPM": 18}
SIX_BIT = "".join(map(chr, range(0x20, 0x60)))
BCD_PLUS = "0123456789 -."
UNSIGNED, ONES, TWOS = 0, 1, 2  # analog data formats of sensor units 1, bits 7:6

# Linearisation codes of IPMI 2.0, table 43-1, byte 24; 70h and above are known to the controller alone.
LINEARISATION = {
    0: lambda y: y, 1: math.log, 2: math.log10, 3: math.log2, 4: math.exp, 5: lambda y: 10.0 ** y, 6: lambda y: 2.0 ** y,
    7: lambda y: 1 / y, 8: lambda y: y * y, 9: lambda y: y ** 3, 10: math.sqrt,
    11: lambda y: math.copysign(abs(y) ** (1 / 3), y),
}


def little_endian(value, count):
    return [value >> 8 * i & 0xFF for i in range(count)]


def checksum(data):
    """The byte that makes the sum of all a multiple of 256."""
    return -sum(data) & 0xFF


def type_length(text, coding="ascii"):
    """Type/length byte and bytes of a text in 8-bit ASCII, packed 6-bit ASCII or BCD plus (IPMI 2.0, 43.15)."""
    if coding == "ascii":
        body = list(text.encode("latin-1"))
        return [0xC0 | len(body)] + body
    if coding == "6bit":
        bits = sum(SIX_BIT.index(c) << 6 * i for i, c in enumerate(text))
        body = little_endian(bits, (6 * len(text) + 7) // 8)
        return [0x80 | len(body)] + body
    if coding == "bcd":
        digits = [BCD_PLUS.index(c) for c in text + " " * (len(text) % 2)]
        body = [high << 4 | low for high, low in zip(digits[::2], digits[1::2])]
        return [0x40 | len(body)] + body
    raise ValueError("unknown text coding " + coding)


def shown_text(text, coding="ascii"):
    """What a reader of type_length(text, coding) shows: the packed forms come padded to whole groups."""
    if coding == "6bit":
        return text + " " * ((6 * len(text) + 7) // 8 * 8 // 6 - len(text))
    return text + " " * (len(text) % 2) if coding == "bcd" else text


def signed_raw(raw, data_format):
    if data_format == TWOS and raw > 127:
        return raw - 256
    if data_format == ONES and raw > 127:
        return -(~raw & 0xFF)
    return raw


def convert(factors, raw):
    """y = L[(M x + B 10^K1) 10^K2] of IPMI 2.0, 36.3; None where it has no value."""
    linear = (factors["m"] * signed_raw(raw, factors["format"]) + factors["b"] * Fraction(10) ** factors["b_exp"]) \
        * Fraction(10) ** factors["r_exp"]
    if factors["linearisation"] not in LINEARISATION:
        return None
    try:
        return float(LINEARISATION[factors["linearisation"]](linear if factors["linearisation"] == 0 else float(linear)))
    except (ValueError, ZeroDivisionError, OverflowError):
        return None
