"""Every function of the catalogue: the bits of the C call, whatever the arrays are like."""
import copy
import inspect
import pickle
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import c_interface
import qvlib60 as qv
from conftest import bars_of, random_columns

ENTRIES = qv.calculations()
function = pytest.mark.parametrize("entry", ENTRIES, ids=lambda entry: entry.name)


def outputs_of(result):
    return list(result) if isinstance(result, tuple) else [result]


def data_for(entry, size, seed=1):
    """Bar sets and series for a calculation, and the arguments that stand for them."""
    sets = [random_columns(size, seed + k) for k in range(entry.bars)]
    inputs = [random_columns(size, seed + k)[4 if k % 2 == 0 else 5].copy() for k in range(len(entry.inputs))]
    return sets, inputs


def assert_same_bits(entry, sets, inputs, arguments, start=0):
    expected = c_interface.call(entry, sets, inputs, start)
    got = outputs_of(getattr(qv, entry.name)(*arguments, start=start))
    for a, b in zip(got, expected):
        assert np.array_equal(np.isnan(a), np.isnan(b))
        assert np.array_equal(a[~np.isnan(a)].view(np.int64), b[~np.isnan(b)].view(np.int64))


@function
@pytest.mark.parametrize("size", [1, 2, 30, 400])
def test_same_bits_as_the_c_call(entry, size):
    sets, inputs = data_for(entry, size)
    assert_same_bits(entry, sets, inputs, [*map(bars_of, sets), *inputs])
    assert_same_bits(entry, sets, inputs, [*map(bars_of, sets), *inputs], start=7)
    # Values that are not numbers: at the beginning, and anywhere.
    for columns in [*sets, inputs]:
        for column in columns:
            if column[0] != 40000.0:  # the dates
                column[: min(3, size - 1)] = np.nan
    assert_same_bits(entry, sets, inputs, [*map(bars_of, sets), *inputs])
    for column in [*inputs, *(column for columns in sets for column in columns[1:])]:
        column[size // 2 :: 17] = np.nan
    assert_same_bits(entry, sets, inputs, [*map(bars_of, sets), *inputs])


@function
def test_any_kind_and_stride_of_numbers(entry):
    sets, inputs = data_for(entry, 120)
    whole = [[np.floor(column) for column in columns] for columns in [*sets, inputs]]
    plain_sets, plain_inputs = whole[: len(sets)], whole[-1]
    for convert in (lambda a: a.astype(np.int32), lambda a: a.astype(">f8"), lambda a: a.astype(np.longdouble),
                    lambda a: a.astype(np.uint64), lambda a: np.repeat(a, 3)[::3], lambda a: a[::-1].copy()[::-1],
                    lambda a: a.tolist(), lambda a: a.astype(object)):
        arguments = [bars_of([convert(column) for column in columns]) for columns in plain_sets]
        assert_same_bits(entry, plain_sets, plain_inputs, arguments + [convert(column) for column in plain_inputs])


@function
def test_out_is_filled_and_never_shared(entry):
    sets, inputs = data_for(entry, 60)
    arguments = [*map(bars_of, sets), *inputs]
    call = getattr(qv, entry.name)
    expected = outputs_of(call(*arguments))
    outs = [np.full(60, 7.0) for _ in entry.outputs]
    result = call(*arguments, out=outs[0] if len(outs) == 1 else tuple(outs))
    for given, got, wanted in zip(outs, outputs_of(result), expected):
        assert got is given and np.array_equal(got, wanted, equal_nan=True)
    shared = arguments[0].close if entry.bars else np.concatenate([inputs[0], inputs[0]])
    if not entry.bars:
        arguments[0], shared = shared[:60], shared[1:61]
    with pytest.raises(ValueError, match="overlap"):
        call(*arguments, out=[shared] * len(outs))


@function
def test_signature_and_text_are_those_of_the_catalogue(entry):
    call = getattr(qv, entry.name)
    parameters = inspect.signature(call).parameters
    assert [p for p in parameters if p not in ("start", "out")] == [
        *(["bars", "other"][: entry.bars]), *entry.inputs, *(p.name for p in entry.parameters)]
    assert all(parameters[p.name].default == p.default for p in entry.parameters)
    assert entry.title in call.__doc__ and entry.source in call.__doc__
    assert pickle.loads(pickle.dumps(call)) is call and copy.deepcopy(call) is call
    # By name, as the signature says.
    sets, inputs = data_for(entry, 40)
    named = dict(zip(parameters, [*map(bars_of, sets), *inputs]), **{p.name: p.default for p in entry.parameters})
    for a, b in zip(outputs_of(call(**named)), outputs_of(call(*map(bars_of, sets), *inputs))):
        assert np.array_equal(a, b, equal_nan=True)


def test_bars_stand_for_the_series_that_one_usually_passes(spx):
    assert np.array_equal(qv.rsi(spx, 9), qv.rsi(spx.close, 9), equal_nan=True)
    assert np.array_equal(qv.vwma(spx, 9), qv.vwma(spx.close, spx.volume, 9), equal_nan=True)
    with pytest.raises(TypeError, match="adv is nothing that bars hold"):
        qv.adline(spx)


def test_several_outputs_are_a_named_tuple(spx):
    bands = qv.bollinger(spx, 2, 20)
    assert bands._fields == ("upper", "middle", "lower")
    again = pickle.loads(pickle.dumps(bands))
    assert type(again) is type(bands) and np.array_equal(again.upper, bands.upper, equal_nan=True)
    assert qv.di(spx).plus_di is not None


def test_in_place_where_the_catalogue_says_so():
    values = random_columns(50)[4]
    expected = qv.sum(values)
    assert qv.sum(values, out=values) is values and np.array_equal(values, expected, equal_nan=True)


def test_values_of_values_begin_where_they_are_known(spx):
    smooth = qv.sma(qv.rsi(spx.close, 14), 9)
    assert np.isnan(smooth[:22]).all() and not np.isnan(smooth[22:]).any()
    assert np.array_equal(smooth, qv.eval("sma(rsi(14), 9)", spx), equal_nan=True)


def test_the_same_from_eight_threads(spx):
    def work(_):
        return [qv.bollinger(spx, 2, 20).upper, qv.rsi(spx, 14), qv.eval("weekly(sma(10)) + atr(14)", spx)]

    expected = work(0)
    with ThreadPoolExecutor(8) as pool:
        for got in pool.map(work, range(64)):
            assert all(np.array_equal(a, b, equal_nan=True) for a, b in zip(got, expected))


@pytest.mark.parametrize("arguments, named, message", [
    ((0,), {}, "p must be 1 or more, it is 0"),
    ((-5,), {}, "p must be 1 or more, it is -5"),
    ((14.5,), {}, "rsi: p: a whole number"),
    ((10**30,), {}, "rsi: p: a whole number below"),
    ((), {"perod": 3}, "no argument perod"),
    ((14, 3), {}, "takes 2 arguments"),
    ((), {"p": "many"}, "rsi: p: a whole number is wanted"),
    ((), {"out": np.empty(3)}, "out: 50 items are wanted, it has 3"),
    ((), {"out": np.empty(50, np.float32)}, "out: a numpy array of float64"),
    ((), {"start": 1e99}, "start: a whole number"),
])
def test_exceptions_say_what_would_be_right(arguments, named, message):
    with pytest.raises((TypeError, ValueError), match=message):
        qv.rsi(random_columns(50)[4], *arguments, **named)


def test_choices_are_given_by_name():
    values = random_columns(50)[4]
    assert np.array_equal(qv.ma(values, "wilder", 5), qv.ma(values, 4, 5), equal_nan=True)
    with pytest.raises(ValueError, match="did you mean 'simple'"):
        qv.ma(values, "simpel", 5)
