"""What a call costs beside the C call, and beside pandas doing the same; and a batch beside a loop in C.

usage: benchmark.py C_LOOP     (the program qvlib60_c_loop: cmake --build ... --target qvlib60_c_loop)
"""
import subprocess
import sys
import timeit

import numpy as np
import pandas as pd

import qvlib60 as qv

SIZES = (100, 1000, 10000)
ROUNDS = 6
NUMBERS = {"sma": (20,), "rsi": (14,), "atr": (14,), "bollinger": (2, 20), "macd": (12, 26, 9)}
FORMULAS = ["sma(20)", "rsi(14)", "atr(14)", "bollinger(2,20)", "macd(12,26,9)"]


def c_calls(*arguments):
    """Microseconds of the C calls, by calculation and bars."""
    out = subprocess.run([sys.argv[1], *arguments], capture_output=True, text=True, check=True).stdout
    return {(name, int(size)): float(ns) / 1000 for name, size, ns in map(str.split, out.splitlines())}


def aligned(items):
    """A copy that begins at a multiple of 64 bytes: calls on other memory can take twice as long, in C, too."""
    room = np.empty(len(items) + 8)
    first = -room.ctypes.data % 64 // 8
    room[first:first + len(items)] = items
    return room[first:first + len(items)]


def walk(size, seed=1):
    rng = np.random.default_rng(seed)
    close = 100 * np.exp(np.cumsum(rng.normal(0, 0.01, size)))
    open_ = close * np.exp(rng.normal(0, 0.005, size))
    columns = {"date": np.arange(40000.0, 40000.0 + size), "open": open_, "high": np.maximum(open_, close) * 1.01,
            "low": np.minimum(open_, close) * 0.99, "close": close, "volume": rng.uniform(1e3, 1e6, size)}
    return {name: aligned(column) for name, column in columns.items()}


def by_pandas(frame):
    close, high, low = frame.close, frame.high, frame.low

    def wilder(x, p):
        return x.ewm(alpha=1 / p, adjust=False).mean()

    def rsi():
        move = close.diff()
        up = wilder(move.clip(lower=0), 14)
        return 100 * up / (up + wilder(-move.clip(upper=0), 14))

    def atr():
        before = close.shift()
        spans = pd.concat([high - low, (high - before).abs(), (low - before).abs()], axis=1)
        return wilder(spans.max(axis=1), 14)

    def bollinger():
        typical = (high + low + close) / 3
        window = typical.rolling(20)
        middle, deviation = window.mean(), window.std(ddof=0)
        return middle + 2 * deviation, middle, middle - 2 * deviation

    def macd():
        line = close.ewm(span=12, adjust=False).mean() - close.ewm(span=26, adjust=False).mean()
        return line, line.ewm(span=9, adjust=False).mean()

    return {"sma": lambda: close.rolling(20).mean(), "rsi": rsi, "atr": atr, "bollinger": bollinger, "macd": macd}


def best(call, seconds=0.05):
    """Microseconds of a call: the best of many short samples, as short as those in C."""
    sample = 3e-4
    calls = max(1, int(sample / max(timeit.timeit(call, number=3) / 3, 1e-7)))
    samples = max(3, int(seconds / sample))
    return min(timeit.repeat(call, number=calls, repeat=samples)) / calls * 1e6


def calls_of(name, size):
    """The calls of a row: with out=, with a new array, by pandas."""
    columns = walk(size)
    bars = qv.Bars(**columns)
    data = bars if qv.info(name).bars else bars.close
    call, numbers = getattr(qv, name), NUMBERS[name]
    fresh = call(data, *numbers)
    outs = tuple(map(aligned, fresh)) if isinstance(fresh, tuple) else aligned(fresh)
    return ((lambda: call(data, *numbers, out=outs)), (lambda: call(data, *numbers)),
            by_pandas(pd.DataFrame(columns))[name])


def main():
    rows = {(name, size): calls_of(name, size) for name in NUMBERS for size in SIZES}
    costs = {}
    for _ in range(ROUNDS):  # by turns, so that what else goes on meets all of them
        in_c = c_calls()
        for row, calls in rows.items():
            now = in_c[row], *(best(call) for call in calls)
            costs[row] = tuple(map(min, now, costs.get(row, now)))
    print("| calculation | bars | C call | `out=` | new array | pandas |\n|---|---|---|---|---|---|")
    for (name, size), found in costs.items():
        print(f"| {name} | {size:,} | " + " | ".join(f"{cost:.2f}" for cost in found) + " |")
    sets = [qv.Bars(**walk(5000, seed)) for seed in range(500)]
    out = np.empty((5, 500, 5000))
    in_c, times = {}, {1: [], 2: []}
    for _ in range(ROUNDS):
        for key, cost in c_calls("batch").items():
            in_c[key] = min(cost, in_c.get(key, cost))
        for threads, spent in times.items():
            spent += timeit.repeat(lambda: qv.batch(sets, FORMULAS, threads=threads, out=out), number=1, repeat=5)
    times = {threads: min(spent) for threads, spent in times.items()}
    print(f"\nFive calculations over 500 securities of 5,000 bars: C loop {in_c['batch', 1] / 1e3:.1f} ms, "
          f"qv.batch on one thread {times[1] * 1e3:.1f} ms, on two {times[2] * 1e3:.1f} ms")


if __name__ == "__main__":
    main()
