#!/usr/bin/env python3
"""Writes data/computrac, data/dowjones, data/telechart and data/techtools from data/text/SPX.CSV.

Each file is put together byte by byte. Volumes are in thousands of shares, for two of the formats have
no room for more.
"""

import datetime
import math
import pathlib
import struct

DATA = pathlib.Path(__file__).resolve().parent.parent / "data"
EPOCH = datetime.date(1899, 12, 30)  # date number 0


class Bar:
    def __init__(self, date, open_, high, low, close, volume):
        self.date, self.open, self.high, self.low, self.close = date, open_, high, low, close
        self.volume = volume

    def day_number(self):
        return (self.date - EPOCH).days

    def digits(self):
        """(year - 1900) * 10000 + month * 100 + day"""
        return (self.date.year - 1900) * 10000 + self.date.month * 100 + self.date.day


def read_text():
    bars = []
    for line in (DATA / "text" / "SPX.CSV").read_text().splitlines()[1:]:
        date, *numbers = line.split(",")
        open_, high, low, close, volume = map(float, numbers)
        bars.append(Bar(datetime.date.fromisoformat(date), open_, high, low, close, round(volume / 1000)))
    return bars


def grouped(bars, key):
    """One bar per week or month, dated by its last day."""
    groups = []
    for bar in bars:
        if groups and key(groups[-1][-1].date) == key(bar.date):
            groups[-1].append(bar)
        else:
            groups.append([bar])
    return [
        Bar(g[-1].date, g[0].open, max(b.high for b in g), min(b.low for b in g), g[-1].close,
            sum(b.volume for b in g))
        for g in groups
    ]


def mbf(value):
    """Microsoft Binary Format: mantissa without its leading 1, sign, exponent with a bias of 128."""
    if value == 0:
        return bytes(4)
    fraction, exponent = math.frexp(abs(value))
    mantissa = round(fraction * 2**24)
    if mantissa == 2**24:
        mantissa, exponent = 2**23, exponent + 1
    sign = 0x80 if value < 0 else 0
    return bytes([mantissa & 0xFF, mantissa >> 8 & 0xFF, mantissa >> 16 & 0x7F | sign, exponent + 128])


def record(size, *fields):
    data = bytearray(size)
    for offset, value in fields:
        data[offset:offset + len(value)] = value
    return bytes(data)


def text(value, width):
    return value.encode("ascii").ljust(width)


def write(folder, name, *parts):
    path = DATA / folder
    path.mkdir(exist_ok=True)
    (path / name).write_bytes(b"".join(parts))


# ---- CompuTrac ------------------------------------------------------------------------------------

FIELDS = {
    "DATE": Bar.digits,
    "OPEN": lambda b: b.open,
    "HIGH": lambda b: b.high,
    "LOW": lambda b: b.low,
    "CLOSE": lambda b: b.close,
    "VOL": lambda b: b.volume,
    "OI": lambda b: 0,
}


def computrac_bars(bars, names):
    header = record(4 * len(names), (2, struct.pack("<h", len(bars) + 1)))
    return header + b"".join(mbf(FIELDS[name](bar)) for bar in bars for name in names)


def write_computrac(days, weeks, months):
    usual5 = ["DATE", "HIGH", "LOW", "CLOSE", "VOL"]
    usual7 = ["DATE", "OPEN", "HIGH", "LOW", "CLOSE", "VOL", "OI"]
    ordered = ["CLOSE", "DATE", "VOL", "LOW", "HIGH", "OPEN"]
    listed = [
        (1, "SPX", "S&P 500 daily", "D", days, usual7),
        (2, "SPX HLC", "S&P no open", "D", days, usual5),
        (3, "SPXW", "S&P 500 weekly", "W", weeks, ordered),
    ]
    master = record(53, (0, struct.pack("<h", len(listed))))
    for number, symbol, name, period, bars, fields in listed:
        master += record(53, (0, bytes([number])), (4, bytes([len(fields)])), (7, text(name, 16)),
                         (25, mbf(bars[0].digits())), (29, mbf(bars[-1].digits())), (33, text(period, 1)),
                         (36, text(symbol, 16)))
        write("computrac", f"F{number}.DAT", computrac_bars(bars, fields))
    write("computrac", "MASTER", master)
    lines = "".join(f'"{name}",10,{0 if name in ("DATE", "VOL") else 2}\r\n' for name in ordered)
    write("computrac", "F3.DOP", lines.encode("ascii"), b"\x1a")

    flags = 1 << 4 | 1 << 0 | 1 << 1 | 1 << 2 | 1 << 3 | 1 << 5  # all but time and open interest
    xmaster = record(150, (10, struct.pack("<h", 1)))
    xmaster += record(150, (1, text("SPXM", 15)), (16, text("S&P 500 monthly, 2000 to 2019", 45)),
                      (62, b"M"), (65, struct.pack("<h", 256)), (70, bytes([flags])),
                      (108, struct.pack("<i", months[0].digits() + 19000000)),
                      (116, struct.pack("<i", months[-1].digits() + 19000000)))
    write("computrac", "XMASTER", xmaster)
    write("computrac", "F256.MWD", computrac_bars(months, usual7[:6]))


# ---- Dow Jones ------------------------------------------------------------------------------------

DOW_JONES_FORMATS = ["VHLC", "C", "VC", "HLC", "VHLC", "HLCO", "IHLCO", "VHLCO", "IVHLCO", "IV"]
DOW_JONES_FIELDS = {
    "O": lambda b: struct.pack("<f", b.open),
    "H": lambda b: struct.pack("<f", b.high),
    "L": lambda b: struct.pack("<f", b.low),
    "C": lambda b: struct.pack("<f", b.close),
    "V": lambda b: struct.pack("<i", b.volume),
    "I": lambda b: struct.pack("<i", 0),
}


def write_dow_jones(days, weeks):
    entries = b""
    for number, fields in enumerate(DOW_JONES_FORMATS):
        period, bars = ("W", weeks) if number == 8 else ("D", days)
        stored = [struct.pack("<H", b.day_number() - 7305) + b"".join(DOW_JONES_FIELDS[f](b) for f in fields)
                  for b in bars]
        write("dowjones", f"SPX{number}.XQ{period}", *stored)
        entries += record(71, (0, text(f"SPX{number}", 8)), (8, b"X"), (10, str(number).encode()),
                          (12, struct.pack("<HH", bars[0].day_number() - 7305, bars[-1].day_number() - 7305)),
                          (20, text(f"S&P format {number}", 15)), (45, struct.pack("<h", len(bars))),
                          (47, period.encode()), (61, text("", 9)))
    write("dowjones", "MAPINFO.DAT", record(71, (45, struct.pack("<h", len(DOW_JONES_FORMATS)))), entries)


# ---- TeleChart and TechTools ----------------------------------------------------------------------


def write_telechart(days, weeks, months):
    for name, title, bars in [("SPX", "S&P 500 daily", days), ("SPXM", "S&P 500 monthly", months),
                              ("SPXW", "S&P 500 weekly", weeks)]:
        stored = [b"".join(map(mbf, (b.digits(), b.high, b.low, b.close, b.volume, b.open))) for b in bars]
        write("telechart", name + ".NDX", record(48, (0, text(title, 22))), *stored)


def write_techtools(days, weeks):
    """Prices to the nearest tick. XSP is the index of a tenth of the size."""
    for name, code, bars, encode in [
        ("SPX", 1, days, lambda p: round(p * 10)),  # tenths
        ("SPXW", 0, weeks, round),  # points
        ("SPXQ", -2, days, lambda p: round(p * 4) // 4 * 10 + round(p * 4) % 4),  # quarters
        ("SPXN", -22, days, lambda p: round(p * 20)),  # twentieths
        ("XSP", 2, days, lambda p: round(p * 10)),  # hundredths of a tenth
    ]:
        stored = [struct.pack("<5H", b.day_number(), *map(encode, (b.open, b.high, b.low, b.close))) +
                  struct.pack("<I", b.volume)[:3] + bytes(3) for b in bars]
        write("techtools", name + ".TTD", record(16, (0, struct.pack("<h", code))), *stored)


def main():
    every_day = read_text()
    days = [b for b in every_day if b.date.year == 2000]
    weeks = grouped([b for b in every_day if b.date.year <= 2002], lambda d: d.isocalendar()[:2])
    months = grouped([b for b in every_day if b.date.year <= 2019], lambda d: (d.year, d.month))
    write_computrac(days, weeks, months)
    write_dow_jones(days, weeks)
    write_telechart(days, weeks, months)
    write_techtools(days, weeks)


if __name__ == "__main__":
    main()
