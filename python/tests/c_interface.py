"""The library's flat interface by ctypes: what the package must agree with, bit for bit."""
import ctypes as c
from pathlib import Path

import numpy as np

import qvlib60

library = c.CDLL(str(Path(qvlib60.__file__).parent / "libQVLIB60.so.0"))


class Array(c.Structure):
    _fields_ = [("data", c.POINTER(c.c_double)), ("size", c.c_int32), ("capacity", c.c_int32), ("first", c.c_int32)]


class BarSet(c.Structure):
    _fields_ = [("series", Array * 7), ("barsize", c.c_int32), ("datasize", c.c_int32),
                ("rest", c.c_byte * (576 - 7 * 24 - 8))]


library.qvCatalogueFind.argtypes = [c.c_char_p]
library.qvCatalogueFind.restype = c.c_void_p
library.qvCatalogueCall.argtypes = [c.c_void_p, c.c_void_p, c.c_void_p, c.c_void_p, c.c_void_p, c.c_int]


def array(values):
    """A record over the values' memory; not-a-numbers at the beginning are below its first valid index."""
    known = np.flatnonzero(~np.isnan(values))
    first = int(known[0]) if len(known) else len(values)
    return Array(values.ctypes.data_as(c.POINTER(c.c_double)), len(values), len(values), first)


def bar_set(columns):
    bars = BarSet(barsize=len(columns[0]), datasize=len(columns[0]))
    for k, column in enumerate(columns):
        bars.series[k] = array(column)
    return bars


def call(entry, sets, inputs, start):
    """The outputs of a calculation with its usual numbers, not-a-number where nothing is known."""
    size = len((sets[0] if sets else inputs)[0])
    outs = [np.empty(size) for _ in entry.outputs]
    bars = [bar_set(columns) for columns in sets]
    series, outputs = [array(values) for values in inputs], [array(np.zeros(size)) for _ in outs]
    for out, record in zip(outs, outputs):
        record.data = out.ctypes.data_as(c.POINTER(c.c_double))

    def pointers(records):
        return (c.c_void_p * max(len(records), 1))(*[c.addressof(record) for record in records])

    read = [k for k, name in enumerate(["date", "open", "high", "low", "close", "volume", "open_interest"])
            if name in entry.series]
    begin = max([bars[0].series[k].first for k in read], default=0) if bars else 0
    begin = max([begin, *(record.first for record in series)])
    status = library.qvCatalogueCall(library.qvCatalogueFind(entry.name.encode()), pointers(bars), pointers(series),
                                     pointers(outputs), None, max(start, begin if bars else 0))
    assert status >= 0
    for out, record in zip(outs, outputs):
        out[: size if status > 0 else max(record.first, begin)] = np.nan
        out[record.size :] = np.nan
    return outs
