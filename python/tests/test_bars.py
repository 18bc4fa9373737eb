"""Bar sets: where they come from, their parts, what pandas keeps."""
import copy
import gc
import pickle
import weakref

import numpy as np
import pandas as pd
import pytest

import qvlib60 as qv
from conftest import bars_of, random_columns


def table(**index):
    columns = random_columns(100)
    dates = pd.date_range("2020-01-01 10:00", periods=100, **index)
    return pd.DataFrame(dict(zip(["Open", "HIGH", "low", "Close", "Volume"], columns[1:6])), index=dates)


def test_a_data_frame_keeps_its_index_and_zone():
    for index in ({}, {"tz": "America/New_York"}):
        frame = table(**index)
        bars = qv.Bars(frame)
        rsi = qv.rsi(bars, 9)
        assert isinstance(rsi, pd.Series) and rsi.index is frame.index and rsi.name == "rsi"
        assert bars.dates[0] == np.datetime64("2020-01-01T10:00")
        assert qv.atr(frame, 5).index is frame.index and qv.atr(frame, 5).equals(qv.atr(bars, 5))
        assert qv.eval("sma(3)", frame).index is frame.index
        assert qv.bollinger(frame).upper.name == "upper"
        again = bars.to_frame()
        assert again.index is frame.index and np.array_equal(again.close, frame.Close)
    # Both sides of the end of summer time.
    frame = table(freq="H", tz="Europe/Berlin").tz_convert("UTC")
    assert qv.sma(frame.Close, 3).index.tz is frame.index.tz


def test_adjusted_prices_and_columns_that_are_not_there():
    frame = table().rename(columns={"low": "Low"})
    frame["Adj Close"] = frame.Close / 2
    assert qv.Bars(frame, adjusted=True).close.equals((frame.Close * (frame["Adj Close"] / frame.Close)).rename("close"))
    assert qv.Bars(frame).close.equals(frame.Close.rename("close"))
    with pytest.raises(ValueError, match="no column close"):
        qv.Bars(frame[["Open"]])
    with pytest.raises(ValueError, match="no column Adj Close"):
        qv.Bars(table(), adjusted=True)
    with pytest.raises(ValueError, match="high has|open has|close: 5 items"):
        qv.Bars(high=np.ones(4), close=np.ones(5))
    with pytest.raises(ValueError, match="the bars have no high, low"):
        qv.atr(qv.Bars(close=np.ones(50)))
    with pytest.raises(ValueError, match="the bars have no volume"):
        qv.eval("volume", qv.Bars(close=np.ones(50)))


def test_memory_is_used_as_it_is_and_stays_while_it_is_used():
    close, owner = np.arange(10.0), np.arange(10.0)
    bars = qv.Bars(close=close, high=owner[:])
    assert bars.close is close
    alive = weakref.ref(owner)
    del owner
    gc.collect()
    assert alive() is not None and bars.high[9] == 9.0
    column = qv.Bars(close=[1.0, 2.0]).close
    gc.collect()
    assert column.tolist() == [1.0, 2.0]


def test_files_of_every_kind(data, tmp_path):
    spx = qv.read(data / "text/SPX.CSV")
    assert (len(spx), spx.symbol, spx.open_interest) == (5105, "SPX", None)
    for directory in ("computrac", "techtools"):
        source = qv.list_files(data / directory)[0]
        bars = qv.read(source.file)
        assert len(bars) > 100 and bars.symbol == source.symbol and not bars.close.flags.writeable
    file = tmp_path / "a.csv"
    file.write_text("Date,Close\n03.01.2020,10\n06.01.2020,11\nx,12\n")
    bars = qv.read(file, dates="dmy")
    assert bars.close.tolist() == [10, 11] and bars.left_out[0].line == 4 and bars.volume is None
    assert [finding.place for finding in qv.check(file, dates="dmy")] == ["line 4"]
    with pytest.raises(ValueError, match="a.csv"):
        qv.read(file)
    with pytest.raises(FileNotFoundError, match="no-such"):
        qv.read("no-such.csv")
    with pytest.raises(ValueError, match="dates: one of dmy"):
        qv.read(file, dates="xyz")
    # Written and read again.
    spx[-50:].write(tmp_path / "SPX.CSV")
    with pytest.raises(FileExistsError):
        spx.write(tmp_path / "SPX.CSV")
    assert np.allclose(qv.read(tmp_path / "SPX.CSV").close, spx.close[-50:])


def test_parts(spx):
    assert spx[-1].close == spx.close[-1] and spx[10:20].dates[0] == spx.dates[10]
    assert np.array_equal(spx[::2].close, spx.close[::2]) and len(spx[spx.close > 3000]) == (spx.close > 3000).sum()
    assert spx["2001":"2001"].dates[[0, -1]].astype(str).tolist() == ["2001-01-02T00:00:00", "2001-12-31T00:00:00"]
    assert spx["close"] is spx.close and spx[5:6].symbol == "SPX" and len(spx[[]]) == 0
    assert pickle.loads(pickle.dumps(spx)) == spx == copy.deepcopy(spx) and spx != spx[1:]
    for key, error in ((5105, IndexError), ("closes", KeyError), (1.5, TypeError), ([[1]], TypeError)):
        with pytest.raises(error):
            spx[key]


def test_longer_bars(spx):
    weekly = spx.weekly()
    frame = spx.to_frame()
    by_pandas = frame.resample("W").agg({"open": "first", "high": "max", "low": "min", "close": "last",
                                         "volume": "sum"}).dropna()
    assert np.array_equal(weekly.to_frame().drop(columns="open_interest", errors="ignore"), by_pandas)
    of_frame = qv.Bars(frame).monthly()
    assert of_frame.index.equals(frame.index[frame.index.to_period("M") != np.roll(frame.index.to_period("M"), -1)])
    with pytest.raises(ValueError, match="every: weekly"):
        spx.compress("fortnightly")
    assert len(qv.Bars(date=40000 + np.arange(600) / 1440, close=np.ones(600)).compress("5min")) == 120


def test_dates():
    numbers = qv.dates.numbers(["1899-12-29 06:00", "1899-12-31", "2020-04-17 16:00:01"])
    assert numbers.tolist() == [-1.25, 1.0, 43938 + 57601 / 86400]
    assert qv.dates.datetime64(numbers).astype(str).tolist() == [
        "1899-12-29T06:00:00", "1899-12-31T00:00:00", "2020-04-17T16:00:01"]
    assert np.isnan(qv.dates.numbers(pd.to_datetime(["2020-01-01", None]))[1])
    assert np.isnat(qv.dates.datetime64([np.nan, np.inf, 1e300])).all()
    for wrong in ("yesterday", [], None, float("nan"), "NaT"):
        with pytest.raises((TypeError, ValueError)):
            qv.dates.number(wrong) if wrong == wrong else qv.dates.number([wrong])


def test_series_of_pandas():
    close = table().Close
    for other in (close.astype("Float64"), close.astype("float32").astype(float), close.iloc[::-1].iloc[::-1]):
        assert isinstance(qv.rsi(other), pd.Series)
    with_missing = close.astype("Float64")
    with_missing.iloc[0] = pd.NA
    assert qv.sma(with_missing, 3).isna().sum() == 3
    values = close.to_numpy().copy()
    values.flags.writeable = False
    assert np.array_equal(qv.sma(values, 3), qv.sma(close, 3), equal_nan=True)
    with pytest.raises(ValueError, match="different indexes"):
        qv.correlation2(close, close.shift(freq="D"))
    with pytest.raises(TypeError, match="numbers are wanted"):
        qv.sma(pd.Series(["a", "b"]), 1)
    with pytest.raises(TypeError, match="numbers are wanted"):
        qv.sma(np.array(["1", "2"]), 1)
    masked = np.ma.masked_array([1.0, 2.0, 3.0, 4.0], [True, False, False, False])
    assert np.array_equal(qv.sma(masked, 2), [np.nan, np.nan, 2.5, 3.5], equal_nan=True)
