#!/usr/bin/env python3
"""Draws a few pictures with qv and compares them with those of tests/cli/pictures, which somebody has looked at.

usage: pictures.py [--update] QV

The elements must be the same, numbers may differ by TOLERANCE units.
"""
import itertools
import re
import subprocess
import sys
import tempfile
from pathlib import Path

TOLERANCE = 0.5
FOLDER = Path(__file__).parent / "pictures"
SPX = "data/text/SPX.CSV"
PICTURES = {
    "candles": ["chart", SPX, "--to", "2019-12-31", "--last", "40", "--size", "480x360", "--volume", "bollinger(2,20)",
                "rsi(14)", "macd(12,26,9)", "close crosses above sma(10)", "-o"],
    "months": ["chart", "data/computrac/SPXM", "--log", "--kind", "area", "--theme", "dark", "--size", "300x200", "sma(12)",
               "-o"],
    "points": ["pnf", SPX, "--box", "50", "--from", "2015-01-01", "--size", "480x360", "-o"],
    "trades": ["backtest", SPX, "--long", "sma(10) crosses above sma(30)", "--exit", "sma(10) crosses below sma(30)",
               "--from", "2019-01-01", "--chart-size", "480x360", "--chart"],
}
NUMBER = re.compile(r"-?\d+(?:\.\d+)?")


def difference(expected, drawn):
    """The first one, or None. Colours are no numbers, nor are the digits of texts."""
    for line, (old, new) in enumerate(itertools.zip_longest(expected.splitlines(), drawn.splitlines()), 1):
        if old is None or new is None:
            return f"line {line}: the pictures are not of one length"
        parts = [[re.split(r'(#[0-9a-f]{6}|>[^<]*<)', text) for text in (old, new)]]
        for a, b in zip(*parts[0]) if len(parts[0][0]) == len(parts[0][1]) else [(old, "")]:
            numbers = [[float(n) for n in NUMBER.findall(text)] for text in (a, b)]
            is_text = a[:1] in "#>" and a
            if (is_text and a != b) or NUMBER.sub("", a) != NUMBER.sub("", b) or len(numbers[0]) != len(numbers[1]):
                return f"line {line}: {a[:100]} became {b[:100]}"
            if any(abs(x - y) > TOLERANCE for x, y in zip(*numbers)):
                return f"line {line}: another place: {a[:100]} became {b[:100]}"
    return None


def main():
    update, tool = sys.argv[1] == "--update", sys.argv[-1]
    wrong = 0
    with tempfile.TemporaryDirectory() as scratch:
        for name, arguments in PICTURES.items():
            drawn = (FOLDER if update else Path(scratch)) / f"{name}.svg"
            subprocess.run([tool, *arguments, drawn], check=True, stdout=subprocess.DEVNULL)
            found = difference((FOLDER / drawn.name).read_text(), drawn.read_text())
            if found:
                print(f"{name}: {found}")
                wrong += 1
    return wrong


sys.exit(main())
