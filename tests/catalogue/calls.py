#!/usr/bin/env python3
"""Calls every function of the catalogue as its header declares it, and through its entry: the same bits.

usage: tests/catalogue/calls.py LIBRARY
"""
import ctypes
import random
import sys
from ctypes import POINTER, byref, c_char_p, c_double, c_int, c_int32, c_void_p, string_at
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))
from make_pages import CHOICE, DATE, METHOD, REAL, SERIES, declarations, load, numbers, record  # noqa: E402

ITEMS, INT_MAX, SIGNALS = 300, 2**31 - 1, 16

Array = record("Array", [("data", POINTER(c_double)), *numbers(c_int32, "size capacity firstValid")])
Bars = record("Bars", [*[(name, Array) for name in SERIES.values()], *numbers(c_int32, "barsize datasize"),
                       ("information", ctypes.c_char * 1000)])
Candles = record("Candles", [("records", c_void_p), ("factors", c_double * 8)])


def series(items, first=0):
    return Array((c_double * len(items))(*items), len(items), len(items), first)


def walk(step):
    items = [100.0]
    while len(items) < ITEMS:
        items.append(max(items[-1] + random.uniform(-step, step), 1.0))
    return items


def bars():
    close = walk(2)
    opens = [c + random.uniform(-1, 1) for c in close]
    columns = {"date": [36526.0 + i + (i % 7 == random.randrange(7)) * 0.5 for i in range(ITEMS)], "open": opens,
               "high": [max(a, b) + random.random() for a, b in zip(opens, close)],
               "low": [min(a, b) - random.random() for a, b in zip(opens, close)], "close": close,
               "volume": [float(random.randrange(1000, 9000)) for _ in close],
               "openInterest": [float(random.randrange(500)) for _ in close]}
    return Bars(*[series(columns[name]) for name in SERIES.values()], ITEMS, ITEMS)


def value(param):
    if param.kind == DATE:
        return float(random.choice([0, 36526, 36600]))
    if param.kind == REAL:
        return random.uniform(param.least, min(param.greatest, 10 * param.defaultValue + 1))
    if param.kind in (METHOD, CHOICE):
        return float(random.randrange(param.choiceCount))
    whole = random.randint(int(param.least), int(min(param.greatest, 60)))
    return float(whole) if param.isInteger else whole + 0.5


def directly(library, declaration, entry, sets, inputs, outputs, params, start):
    """The call as the header's text has it, with what the catalogue gives by itself."""
    candles, arguments = None, []
    sets, inputs, outputs, params = iter(sets), iter(inputs), iter(outputs), iter(zip(entry.params, params))
    for argument in declaration.arguments:
        words, name = argument.rsplit(None, 1)
        if words == "const QvBars*":
            arguments.append(byref(used := next(sets)))
        elif words == "const QvCandles*":
            candles = Candles()
            library.qvCandleConstruct(byref(used), byref(candles))
            arguments.append(byref(candles))
        elif words == "const QvArray*":
            arguments.append(byref(next(inputs)))
        elif words == "QvArray*":
            arguments.append(byref(next(outputs)))
        elif name in ("start", "first", "end", "last", "reserved"):
            arguments.append(c_int({"end": INT_MAX, "last": INT_MAX, "reserved": 0}.get(name, start)))
        else:
            param, number = next(params)
            if words == "const char*":
                arguments.append(c_char_p(b"qv" + param.choices[int(number)]))
            else:
                arguments.append({"int": lambda: c_int(int(number)), "double": lambda: c_double(number)}[words]())
    status = getattr(library, entry.name.decode())(*arguments)
    if candles:
        library.qvCandleFree(byref(candles))
    return 0 if status > 0 and entry.flags & SIGNALS else status


def throughEntry(library, entry, sets, inputs, outputs, params, start):
    def pointers(kind, records):
        return (POINTER(kind) * max(len(records), 1))(*map(ctypes.pointer, records))

    return library.qvCatalogueCall(byref(entry), pointers(Bars, sets), pointers(Array, inputs),
                                   pointers(Array, outputs), (c_double * max(len(params), 1))(*params), c_int(start))


def bits(output):
    return output.size, output.firstValid, string_at(output.data, 8 * output.size) if output.data else b""


def main():
    library, declared = load(sys.argv[1]), declarations()
    random.seed(3)
    computed, faults = 0, []
    for i in range(library.qvCatalogueSize()):
        entry = library.qvCatalogueItem(i).contents
        name = entry.name.decode()
        for trial in range(20):
            sets = [bars() for _ in range(entry.barsCount)]
            inputs = [series(walk(3), random.randrange(4)) for _ in range(entry.inputCount)]
            params = [value(p) if trial else p.defaultValue for p in entry.params[:entry.paramCount]]
            results = []
            for call in (lambda *a: directly(library, declared[name], *a), lambda *a: throughEntry(library, *a)):
                outputs = [Array() for _ in range(entry.outputCount)]
                status = call(entry, sets, inputs, outputs, params, trial % 7)
                results.append((status, [bits(out) for out in outputs]))
                for out in outputs:
                    library.qvFreeArray(byref(out))
            computed += status == 0
            if results[0] != results[1]:
                faults.append(f"{name}{params}: another result through the entry")
                break
    print("\n".join(faults) or f"{library.qvCatalogueSize()} entries, {computed} calls with values: the same bits")
    return bool(faults) or computed < 15 * library.qvCatalogueSize()


sys.exit(main())
