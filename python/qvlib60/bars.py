"""Price bars: seven series of one length, from arrays, a DataFrame or a file."""
from __future__ import annotations

import os
from typing import Any, Iterator, NamedTuple, Optional, Sequence, Union, overload

import numpy as np

from . import _core, dates as _dates
from ._arrays import Doubles, doubles, frame, pandas_types

__all__ = ["Bar", "Bars", "LeftOut"]

_NAMES = ("date", "open", "high", "low", "close", "volume", "open_interest")
_FREQUENCIES = {"daily": 2, "weekly": 3, "monthly": 4, "quarterly": 5, "yearly": 6}
_FREQUENCY_NAMES = ("", "intraday", "daily", "weekly", "monthly", "quarterly", "yearly")
_SECONDS = {"s": 1, "sec": 1, "m": 60, "min": 60, "h": 3600, "hour": 3600}


class Bar(NamedTuple):
    """One bar. What the bars do not hold is None."""

    date: np.datetime64
    open: Optional[float]
    high: Optional[float]
    low: Optional[float]
    close: Optional[float]
    volume: Optional[float]
    open_interest: Optional[float]


class LeftOut(NamedTuple):
    """A row of a file that became no bar."""

    line: int
    why: str


class Bars:
    """Price bars over the caller's arrays, which are used as they are where they hold contiguous doubles.

    `date` takes what `qvlib60.dates.numbers` takes; without dates bars are numbered from 1. An index of pandas is
    kept: results are series over it. Items that are not numbers at the beginning of a column have no value.

    >>> import qvlib60 as qv
    >>> bars = qv.Bars(close=[1.0, 2.0, 3.0], high=[2.0, 3.0, 4.0], low=[0.0, 1.0, 2.0])
    >>> len(bars), bars[1:].close
    (3, array([2., 3.]))
    """

    __slots__ = ("_set", "index", "left_out", "layout")
    _set: _core.BarSet
    #: The index of pandas that the bars came with, or None.
    index: Any
    #: Rows of the file that became no bars.
    left_out: tuple[LeftOut, ...]
    #: How a CSV file was read, in words.
    layout: str

    def __init__(
        self,
        frame: Any = None,
        *,
        date: Any = None,
        open: Any = None,
        high: Any = None,
        low: Any = None,
        close: Any = None,
        volume: Any = None,
        open_interest: Any = None,
        symbol: str = "",
        adjusted: bool = False,
    ) -> None:
        given = {"open": open, "high": high, "low": low, "close": close, "volume": volume,
                 "open_interest": open_interest}
        self.index, self.left_out, self.layout = None, (), ""
        if frame is not None:
            if any(values is not None for values in given.values()):
                raise TypeError("give a DataFrame or columns, not both")
            given, date_column = _columns_of(frame, adjusted)
            self.index = frame.index
            if date is None:
                date = date_column
        elif adjusted:
            raise TypeError("adjusted: only for a DataFrame, which has the column Adj Close")
        for values in given.values():
            if self.index is None and isinstance(values, pandas_types("Series")):
                self.index = values.index
                if date is None and isinstance(self.index, pandas_types("DatetimeIndex", "PeriodIndex")):
                    date = self.index
        columns = [None if date is None else _dates.numbers(date)]
        columns += [None if values is None else doubles(values, name) for name, values in given.items()]
        self._set = _core.bar_set(columns, 0)
        if symbol:
            self._set.symbol = symbol

    @classmethod
    def _of(cls, bar_set: _core.BarSet, index: Any = None) -> Bars:
        self = cls.__new__(cls)
        self._set, self.index, self.left_out, self.layout = bar_set, index, (), ""
        return self

    # ---- Columns ------------------------------------------------------------------------------------

    def _column(self, name: str) -> Any:
        array = self._set.column(name)
        if array is None or self.index is None:
            return array
        import pandas

        return pandas.Series(array, index=self.index, name=name, copy=False)

    open = property(lambda self: self._column("open"), doc="The opens: an array, or a series over the index.")
    high = property(lambda self: self._column("high"), doc="The highs.")
    low = property(lambda self: self._column("low"), doc="The lows.")
    close = property(lambda self: self._column("close"), doc="The closes.")
    volume = property(lambda self: self._column("volume"), doc="The volumes, or None.")
    open_interest = property(lambda self: self._column("open_interest"), doc="The open interest, or None.")

    @property
    def date_numbers(self) -> Doubles:
        """Days since 30 December 1899, the time of day as a fraction."""
        array = self._set.column("date")
        assert array is not None
        return array

    @property
    def dates(self) -> Any:
        """The dates as datetime64, to the second."""
        return _dates.datetime64(self.date_numbers)

    @property
    def symbol(self) -> str:
        """The ticker symbol, as the file has it."""
        return self._set.symbol

    @property
    def description(self) -> str:
        """The security's long name, as the file has it."""
        return self._set.description

    @property
    def frequency(self) -> str:
        """daily, weekly .., or nothing where it is not known."""
        known = 0 < self._set.frequency < len(_FREQUENCY_NAMES)
        return _FREQUENCY_NAMES[self._set.frequency] if known else ""

    # ---- Parts --------------------------------------------------------------------------------------

    def __len__(self) -> int:
        return len(self._set)

    @overload
    def __getitem__(self, key: int) -> Bar: ...
    @overload
    def __getitem__(self, key: str) -> Any: ...
    @overload
    def __getitem__(self, key: Union[slice, Sequence[Any]]) -> Bars: ...

    def __getitem__(self, key: Any) -> Any:
        """A bar by its number, a column by its name, or the bars of a slice, a mask or a list of numbers. A slice may
        be of dates, both ends included: bars["2001":"2003"]."""
        if isinstance(key, str):
            if key not in _NAMES:
                raise KeyError(f"{key}: there are {', '.join(_NAMES)}")
            return self.date_numbers if key == "date" else self._column(key)
        if isinstance(key, (int, np.integer)) and not isinstance(key, (bool, np.bool_)):
            return self._bar(int(key))
        if isinstance(key, slice):
            key = self._places(key)
        else:
            key = np.asarray(key)
            if key.size == 0:
                key = key.astype(np.int64)
            if key.dtype.kind not in "biu" or key.ndim != 1:
                raise TypeError("bars: a number, a name, a slice, a mask or a list of numbers is wanted")
        columns = [None if column is None else np.ascontiguousarray(column[key]) for column in self._set.columns()]
        part = _core.bar_set(columns, self._set.unknown)
        part.described_as(self._set)
        return Bars._of(part, None if self.index is None else self.index[key])

    def _bar(self, i: int) -> Bar:
        if not -len(self) <= i < len(self):
            raise IndexError(f"bars: there are {len(self)}, {i} is asked for")
        values = [self._set.column(name) for name in _NAMES]
        numbers = [None if column is None else float(column[i]) for column in values]
        return Bar(_dates.datetime64(numbers[0]), *numbers[1:])

    def _places(self, part: slice) -> slice:
        def is_date(end: Any) -> bool:
            return end is not None and not hasattr(end, "__index__")

        if not is_date(part.start) and not is_date(part.stop):
            return part
        days = self.date_numbers
        first = 0 if part.start is None else int(np.searchsorted(days, _dates.number(part.start), "left"))
        last = len(self) if part.stop is None else int(np.searchsorted(days, end_of(part.stop), "left"))
        return slice(first, last, part.step)

    def __iter__(self) -> Iterator[Bar]:
        return (self._bar(i) for i in range(len(self)))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Bars):
            return NotImplemented
        pairs = zip(self._set.columns(), other._set.columns())
        return len(self) == len(other) and all(
            a is b if a is None or b is None else np.array_equal(a, b, equal_nan=True) for a, b in pairs)

    __hash__ = None  # type: ignore[assignment]

    def __reduce__(self) -> Any:
        state = (self._set.columns(), self._set.unknown, self.index, self.symbol)
        return _restored, state

    def __repr__(self) -> str:
        name = f"{self.symbol}, " if self.symbol else ""
        if not len(self):
            return f"<Bars: {name}none>"
        first, last = self.dates[0], self.dates[-1]
        return f"<Bars: {name}{len(self)}, {str(first)[:10]} to {str(last)[:10]}>"

    # ---- Longer bars --------------------------------------------------------------------------------

    def compress(self, every: str) -> Bars:
        """Longer bars: daily, weekly, monthly, quarterly, yearly, or a time as 5min or 1h. Each is dated by its last
        bar."""
        digits = every.rstrip("abcdefghijklmnopqrstuvwxyz")
        unit = every[len(digits):]
        seconds = _SECONDS.get(unit, 0) * (int(digits) if digits.isdecimal() else 0)
        frequency = _FREQUENCIES.get(every, 0)
        if not frequency and not 0 < seconds <= 86400:
            raise ValueError(f"every: weekly, monthly, quarterly, yearly or a time as 5min is wanted, not {every!r}")
        if not len(self):
            return self
        longer = self._set.compressed(frequency, float(seconds))
        index = None
        if self.index is not None:
            index = self.index[np.searchsorted(self.date_numbers, longer.columns()[0], "right") - 1]
        return Bars._of(longer, index)

    def weekly(self) -> Bars:
        """Weekly bars, Monday to Sunday."""
        return self.compress("weekly")

    def monthly(self) -> Bars:
        """Monthly bars."""
        return self.compress("monthly")

    def quarterly(self) -> Bars:
        """Quarterly bars."""
        return self.compress("quarterly")

    def yearly(self) -> Bars:
        """Yearly bars."""
        return self.compress("yearly")

    # ---- Out ----------------------------------------------------------------------------------------

    def to_frame(self) -> Any:
        """A DataFrame with the columns that there are, over the index, or else over the dates."""
        columns = {name: self._set.column(name) for name in _NAMES[1:]}
        present = {name: column for name, column in columns.items() if column is not None}
        if self.index is not None:
            return frame(present, self.index)
        import pandas

        return frame(present, pandas.DatetimeIndex(self.dates, name="date"))

    def write(self, path: Union[str, os.PathLike[str]]) -> None:
        """Writes a text file, and beside it the layout file txtinfo.txt."""
        self._set.write(os.fspath(path))


def _restored(columns: list[Any], unknown: int, index: Any, symbol: str) -> Bars:
    bars = Bars._of(_core.bar_set(columns, unknown), index)
    if symbol:
        bars._set.symbol = symbol
    return bars


def end_of(date: Any) -> float:
    """The date number that all of the day, month or year lies below."""
    if isinstance(date, str) and len(date) <= 10:
        date = np.datetime64(date)
        return _dates.number((date + 1).astype("datetime64[D]"))
    number = _dates.number(date)
    return number + 1.0 if number == int(number) else float(np.nextafter(number, np.inf))


def _columns_of(table: Any, adjusted: bool) -> tuple[dict[str, Any], Any]:
    if not isinstance(table, pandas_types("DataFrame")):
        raise TypeError(f"bars: a DataFrame is wanted, {type(table).__name__} is given")
    known = {name.replace("_", ""): name for name in _NAMES}
    known.update(adjclose="adj_close", adjustedclose="adj_close", vol="volume", datetime="date", timestamp="date")
    found: dict[str, Any] = {}
    for place, label in enumerate(table.columns):
        plain = "".join(c for c in str(label).lower() if c.isalnum())
        name = known.get(plain)
        if name is None:
            continue
        if name in found:
            raise ValueError(f"bars: two columns are the {name}: rename one")
        found[name] = table.iloc[:, place]
    if "close" not in found:
        raise ValueError(f"bars: no column close among {list(map(str, table.columns))}")
    date = found.pop("date", None)
    if date is None and isinstance(table.index, pandas_types("DatetimeIndex", "PeriodIndex")):
        date = table.index
    adjusted_close = found.pop("adj_close", None)
    columns: dict[str, Any] = {name: found.get(name) for name in _NAMES[1:]}
    if adjusted:
        if adjusted_close is None:
            raise ValueError("adjusted: there is no column Adj Close")
        factor = doubles(adjusted_close, "Adj Close") / doubles(found["close"], "close")
        for name in ("open", "high", "low", "close"):
            if columns[name] is not None:
                columns[name] = doubles(columns[name], name) * factor
    return columns, date


def of_frame(value: Any) -> Optional[Bars]:
    """The bars of a DataFrame; None for anything else."""
    return Bars(value) if isinstance(value, pandas_types("DataFrame")) else None
