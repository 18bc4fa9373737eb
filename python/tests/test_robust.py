"""Whatever is passed: a result or an exception that an argument explains, never anything else."""
import datetime
import decimal
import os

import numpy as np
import pandas as pd
import pytest
from hypothesis import given, settings, strategies as st
from hypothesis.extra import numpy as arrays

import qvlib60 as qv

ALLOWED = (TypeError, ValueError, KeyError, IndexError, OSError)
NAMES = [entry.name for entry in qv.calculations()]
# The same examples each time; QV_EXAMPLES=1000 looks for others.
quick = settings(max_examples=int(os.environ.get("QV_EXAMPLES", 100)), derandomize="QV_EXAMPLES" not in os.environ,
                 deadline=None)

floats = st.floats(allow_nan=True, allow_infinity=True)
series = st.one_of(
    arrays.arrays(st.sampled_from([np.float64, np.float32, np.float16, np.int8, np.uint64, np.bool_, ">f8", "<i2"]),
                  st.integers(0, 40)),
    arrays.arrays(np.float64, arrays.array_shapes(min_dims=0, max_dims=3, max_side=6)),
    arrays.arrays(np.float64, 40).map(lambda a: a[::3]),
    arrays.arrays(np.float64, 40).map(lambda a: a[::-1]),
    # Not aligned.
    arrays.arrays(np.float64, 30).map(
        lambda a: np.frombuffer(b"\0" + a.tobytes(), np.uint8)[1:].view(np.float64)),
    st.lists(floats, max_size=20),
    st.lists(floats, max_size=20).map(lambda items: pd.Series(items, dtype=float)),
    st.sampled_from([None, "close", b"x", 3, 1.5, object(), {}, set(), [[1, 2], [3]], ["a"], [None], [1, "b"],
                     np.array(["2020-01-01"], "M8[D]"), np.array([1j]), np.array([b"x"]), pd.Series([], dtype=object),
                     np.zeros(3, [("a", float)]), [decimal.Decimal("1.5")] * 3, np.ma.masked_all(4)]),
)
numbers = st.one_of(st.integers(), st.integers(-3, 60), floats, st.text(max_size=8),
                    st.sampled_from([None, [], True, np.int8(3), np.float32(2), np.array(3), np.array([3]), 2**31, -2**31,
                                     2**63, 1e308, decimal.Decimal(3), datetime.date(2020, 1, 1)]))


def survives(call, *arguments, **named):
    try:
        return call(*arguments, **named)
    except ALLOWED as error:
        assert str(error)
    return None


@quick
@given(st.sampled_from(NAMES), st.lists(series, max_size=4), st.lists(numbers, max_size=6),
       st.dictionaries(st.sampled_from(["p", "start", "out", "method", "series", "bars", "k", "x"]), numbers, max_size=2))
def test_calculations(name, data, given_numbers, named):
    survives(getattr(qv, name), *data, *given_numbers, **named)


@quick
@given(st.sampled_from(NAMES), st.integers(0, 30), st.lists(numbers, max_size=5), series)
def test_calculations_over_bars(name, size, given_numbers, out):
    walk = np.arange(float(size)) + 1
    bars = qv.Bars(open=walk, high=walk, low=walk, close=walk, volume=walk, open_interest=walk)
    sets = [bars] * max(qv.info(name).bars, 1)
    survives(getattr(qv, name), *sets, *given_numbers)
    survives(getattr(qv, name), *sets, out=out)


@quick
@given(st.dictionaries(st.sampled_from(["date", "open", "high", "low", "close", "volume", "symbol", "frame"]), series,
                       max_size=4), numbers, numbers)
def test_bars(columns, key, other):
    bars = survives(qv.Bars, **columns)
    if bars is not None:
        survives(bars.__getitem__, key)
        survives(bars.__getitem__, slice(key, other))
        for call in (bars.weekly, bars.to_frame, bars.__repr__, lambda: bars.dates,
                     lambda: qv.atr(bars), lambda: qv.eval("weekly(rsi(2)) + volume", bars),
                     lambda: qv.patterns(bars), lambda: qv.pnf(bars), lambda: qv.chart(bars, "sma(3)").svg(),
                     lambda: qv.backtest(bars, "close > sma(2)", "close < sma(2)", stop="atr(2)").equity,
                     lambda: qv.sweep(bars, "close > sma($n)", parameters={"n": [1, 2]}, walk="5d/5d", threads=1)):
            survives(call)


@quick
@given(st.one_of(st.text(max_size=30), st.lists(st.sampled_from(
    ["rsi", "sma", "(", ")", "close", "14", "$n", "<", "and", "not", "[", "]", ",", "weekly(", "'", "-", "."]),
    max_size=14).map(" ".join)), numbers)
def test_formulas(text, value):
    bars = qv.Bars(close=np.arange(20.0))
    survives(qv.eval, text, bars, n=value)
    survives(qv.need, text)
    survives(qv.backtest, bars, text, text, n=value)
    survives(qv.batch, [bars], [text, value], threads=2)
    survives(qv.screen, text, text)
    survives(qv.sweep, bars, text, parameters={"n": value, text[:3]: [value]})


@quick
@given(numbers, numbers, numbers, numbers)
def test_numbers_of_all_kinds(a, b, c, d):
    survives(qv.option, a, underlying=b, strike=c, volatility=d, days=a, premium=b)
    survives(qv.option, "call", underlying=b, strike=c, volatility=d, days=a)
    survives(qv.bond, coupon=a, maturity=b, settlement=c, yield_=d)
    survives(qv.dates.number, a)
    survives(qv.dates.datetime64, b)
    survives(qv.info, c)
    survives(qv.read, d)
    survives(qv.sweep, a, b, parameters=c, rank=d)
    survives(qv.backtest, a, b, cost=c, size=d)
    survives(qv.batch, np.ones((2, 9)), "sma(3)", threads=a, out=b)
    survives(qv.pnf, qv.Bars(close=np.arange(9.0)), a, b)
    survives(qv.chart, qv.Bars(close=np.arange(9.0)), "rsi(2)", last=a, since=b, until=c, width=d)
    sim = qv.Simulator(qv.Bars(open=np.ones(9), high=np.ones(9), low=np.ones(9), close=np.ones(9)))
    while sim.next():
        survives(sim.buy_to_open, "x", a, b, time="gtc")
        survives(sim.sell_to_close, "y", c, d, type="stop")
        survives(sim.sell_to_open, a, 3, b, type="limit")
    survives(sim.equity, a, b)
    sim.trades, sim.positions, sim.orders, str(sim)


class Lying:
    """Says that it is longer than it is."""

    def __len__(self):
        return 1000

    def __getitem__(self, i):
        if i > 3:
            raise IndexError(i)
        return float(i)


class LyingArray:
    def __init__(self, answer):
        self.answer = answer

    def __array__(self, dtype=None):
        return self.answer


@pytest.mark.parametrize("value", [Lying(), LyingArray(3), LyingArray(np.zeros((2, 2))), LyingArray("abc"),
                                   memoryview(b"12345678"), range(5), iter([1.0, 2.0]), np.float64(3), np.zeros(0)])
def test_objects_that_lie(value):
    survives(qv.sma, value, 2)
    survives(qv.Bars, close=value)
    survives(qv.sma, np.arange(3.0), 2, out=value)
    survives(qv.eval, "close", value)
    survives(qv.batch, value, "close")


def test_handles_cannot_be_made_or_changed():
    bars = qv.Bars(close=[1.0])
    handle = type(bars._set)
    for make in (handle, lambda: handle.__new__(handle), lambda: object.__new__(handle),
                 lambda: type("Own", (handle,), {}), lambda: type(qv.rsi.__self__)(), lambda: qv.rsi.__self__.x):
        with pytest.raises((TypeError, AttributeError)):
            make()
    empty = qv.Bars.__new__(qv.Bars)
    for call in (qv.rsi, qv.atr, lambda b: qv.eval("close", b), len):
        with pytest.raises((TypeError, AttributeError)):
            call(empty)
    empty._set, empty.index = 3, None
    with pytest.raises((TypeError, RuntimeError)):
        qv.rsi(empty)


def test_arrays_that_change_hands_in_an_input(spx):
    """The items of a read-only or shared array are read, never written."""
    frozen = spx.close
    before = frozen.copy()
    for name in NAMES:
        entry = qv.info(name)
        if not entry.bars and len(entry.inputs) == 1:
            getattr(qv, name)(frozen)
    assert np.array_equal(frozen, before) and not frozen.flags.writeable
    with pytest.raises(TypeError, match="writeable"):
        qv.sma(before, 3, out=frozen)
