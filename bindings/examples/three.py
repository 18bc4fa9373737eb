"""Reads the bundled prices and shows the last values of three indicators, through the generated declarations."""
import sys
from ctypes import byref

import qvlib60_ctypes as qv


def check(status, what):
    if status < 0:
        sys.exit(f"{what}: {status}")


def show(name, series):
    print(f"{name} {series.data[series.size - 1]:.6f}")


bars, average, strength, range_ = qv.QvBars(), qv.QvArray(), qv.QvArray(), qv.QvArray()
check(qv.qvFILEread(b"TXT", byref(bars), sys.argv[1].encode(), b"SPX.CSV", 0, -1), "read")
check(qv.qvSimpleMA(byref(bars.close), byref(average), 200, 0), "average")
check(qv.qvRSI(byref(bars.close), byref(strength), 14, 0), "strength")
check(qv.qvATR(byref(bars), byref(range_), 14, 0), "range")
show("sma(200)", average)
show("rsi(14)", strength)
show("atr(14)", range_)
for series in (range_, strength, average):
    qv.qvFreeArray(byref(series))
qv.qvFreeBars(byref(bars))
