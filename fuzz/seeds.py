#!/usr/bin/env python3
"""Writes the inputs that fuzzing begins with, out of the bundled data.
   usage: fuzz/seeds.py DIRECTORY      (one folder for each target is made in it)"""
import itertools
import pathlib
import re
import struct
import sys

root = pathlib.Path(__file__).resolve().parent.parent
data = root / "data"
out = pathlib.Path(sys.argv[1])


def seed(target, name, content):
    (out / target).mkdir(parents=True, exist_ok=True)
    (out / target / name).write_bytes(content)


def head(path, size):
    return (data / path).read_bytes()[:size]


def vendor_files(vendor, security, files):
    body = b"".join(struct.pack("<H", len(f)) + f for f in files[:-1]) + files[-1]
    for start, count in ((0, 1), (2, 2), (1, 1)):
        header = bytes([vendor, security, start, count, 0, 0, 144, 38, 4, 2, 0, 0])
        yield header + body


formats = {
    "computrac": (0, 0, [head("computrac/MASTER", 212), head("computrac/XMASTER", 300), head("computrac/F1.DAT", 168),
                         head("computrac/F3.DOP", 78), head("computrac/F256.MWD", 240)]),
    "computrac-x": (0, 1, [head("computrac/MASTER", 212), head("computrac/XMASTER", 300), b"", b"",
                           head("computrac/F256.MWD", 480)]),
    "dowjones": (1, 0, [head("dowjones/MAPINFO.DAT", 781), head("dowjones/SPX0.XQD", 180), head("dowjones/SPX8.XQW", 130)]),
    "dowjones-w": (1, 1, [head("dowjones/MAPINFO.DAT", 781), b"", head("dowjones/SPX8.XQW", 260)]),
    "telechart": (2, 0, [head("telechart/SPX.NDX", 240), head("telechart/SPXM.NDX", 144)]),
    "techtools": (3, 0, [head("techtools/SPX.TTD", 160), head("techtools/SPXQ.TTD", 96)]),
    "text": (4, 0, [head("text/txtinfo.txt", 145), head("text/SPX.CSV", 400), b"1/3/2000 1 2 3 4\n"]),
}
for name, (vendor, security, files) in formats.items():
    for i, content in enumerate(vendor_files(vendor, security, files)):
        seed("datafiles", f"{name}-{i}", content)

layout = head("text/txtinfo.txt", 145).decode("latin-1").replace("\\", "\\\\").encode("latin-1")
seed("layout", "bundled", layout + b"\\ " + head("text/SPX.CSV", 500) + bytes(24))

dates = ["2024-02-29 13:45:59", "2/29/2024", "29.2.24 1:02 PM", "20240229", "240229", "3 Jan 2000", "Jan 3, 2000 11am",
         "YYYY-MM-DD HH:NN:SS", "M/D/YY H:NN AM/PM", "d.m.yy A/P", "", "12", "1230115 093015", "Y M D H N S"]
for i, text in enumerate(dates):
    seed("dates", f"text-{i}", b"-\\ :\\ " + text.encode() + bytes(16))

formulas = set(re.findall(r"^    (\S.*)$", (root / "docs/formulas.md").read_text(), re.M))
for i, text in enumerate(sorted(formulas)):
    seed("formula", f"docs-{i:02}", text.encode() + bytes(8))

csv = {
    "yahoo": b"Date,Open,High,Low,Close,Adj Close,Volume\n2024-01-02,1.5,2,1.25,1.75,1.7,100\n2024-01-03,2,3,1,2.5,2.4,50\n",
    "euro": b"Datum;Er\xc3\xb6ffnung;Hoch;Tief;Schluss;Volumen\n02.01.2024;1,5;2;1,25;1,75;1.000\n03.01.2024;2;3;1;2,5;50\n",
    "quoted": b'"Date","Close/Last","Volume","Open","High","Low"\r\n"01/16/2024","$1,002.50","1,200","$1","$2","$1"\r\n',
    "epoch": b"time,open,high,low,close\n1704153600,1,2,1,2\n1704240000,2,3,2,3\n",
    "time": b"<DATE>\t<TIME>\t<OPEN>\t<HIGH>\t<LOW>\t<CLOSE>\t<TICKVOL>\n2024.01.02\t00:05:00\t1\t2\t1\t1.5\t7\n",
    "bundled": head("text/SPX.CSV", 300),
}
for name, content in csv.items():
    seed("csv", name, content + bytes(4))

# Programs for the targets that take nothing but numbers: enough bytes to choose from.
steps = bytes((i * 37 + 11) % 256 for i in range(400))
for target, k in itertools.product(("calculations", "functions", "patterns", "trading", "painter", "stream"), range(4)):
    seed(target, f"bytes-{k}", steps[k * 50:k * 50 + 60 + 80 * k])
