"""Dates as the library counts them: days since 30 December 1899, the time of day as a fraction.

>>> from qvlib60 import dates
>>> dates.number("2020-04-17 16:00")
43938.666666666664
>>> dates.datetime64(43938.5)
numpy.datetime64('2020-04-17T12:00:00')
"""
from __future__ import annotations

import datetime
from typing import Any

import numpy as np
from numpy.typing import NDArray

from ._arrays import Doubles, doubles, pandas_types

__all__ = ["number", "numbers", "datetime64"]

_DAY_0 = np.datetime64("1899-12-30", "D")
_SECONDS = 86400.0


def numbers(values: Any) -> Doubles:
    """Date numbers of a DatetimeIndex, an array of datetime64, dates or texts as 2020-04-17 16:00. Numbers are taken
    for date numbers. A date with a time zone counts as the clock showed it there; one that is missing is
    not-a-number."""
    if isinstance(values, pandas_types("PeriodIndex")):
        values = values.to_timestamp(how="end").floor("S")
    if isinstance(values, pandas_types("Series", "Index")):
        # pandas' dates with a zone are of a type of their own.
        if getattr(values.dtype, "tz", None) is not None:
            local = values.dt if isinstance(values, pandas_types("Series")) else values
            values = local.tz_localize(None)
        values = values.to_numpy()
    array = np.asarray(values)
    if array.dtype.kind in "OUS" and array.ndim == 1 and array.size:
        array = _parsed(array)
    if array.dtype.kind != "M":
        return doubles(array, "date")
    if array.ndim != 1:
        raise ValueError(f"date: one dimension is wanted, it has {array.ndim}")
    days = array.astype("datetime64[D]")
    missing = np.isnat(array)
    whole = (days - _DAY_0).astype(np.float64)
    nanoseconds = (array.astype("datetime64[ns]") - days.astype("datetime64[ns]")).astype(np.float64)
    fraction = nanoseconds / 1e9 / _SECONDS
    # Before day 0 the time of day is taken off.
    result = np.where(whole < 0, whole - fraction, whole + fraction)
    result[missing] = np.nan
    return result


def _parsed(array: NDArray[Any]) -> NDArray[Any]:
    def without_zone(value: Any) -> Any:
        if isinstance(value, (int, float, np.number)):
            raise TypeError("date: numbers and other things are mixed")
        if isinstance(value, bytes):
            value = value.decode()
        if isinstance(value, datetime.datetime):
            return value.replace(tzinfo=None)
        return value

    if all(isinstance(value, (int, float, np.number)) for value in array):
        return array.astype(np.float64)
    try:
        return np.array([np.datetime64(without_zone(value), "us") for value in array])
    except (TypeError, ValueError, OverflowError) as error:
        raise ValueError(f"date: dates are wanted, as 2020-04-17 or 2020-04-17 16:00: {error}") from None


def number(value: Any) -> float:
    """The date number of one date: a text, a date or datetime, a datetime64, or a date number.

    >>> number("1900-01-01"), number(2.0)
    (2.0, 2.0)
    """
    is_number = isinstance(value, (int, float)) and not isinstance(value, bool)
    result = doubles([value], "date") if is_number else numbers([value])
    if not np.isfinite(result[0]):
        raise ValueError(f"date: {value!r} is no date")
    return float(result[0])


def datetime64(values: Any) -> Any:
    """The dates of date numbers, to the second; NaT for not-a-number."""
    given = np.asarray(values, dtype=np.float64)
    one = np.atleast_1d(given)
    known = np.isfinite(one) & (np.abs(one) < 3e6)
    safe = np.where(known, one, 0.0)
    days = np.trunc(safe)
    # A whole second that was stored comes back as that second.
    seconds = np.ceil(np.abs(safe - days) * _SECONDS - 1e-4)
    result = _DAY_0.astype("datetime64[s]") + (days * _SECONDS + seconds).astype("timedelta64[s]")
    result[~known] = np.datetime64("NaT")
    return result.reshape(given.shape)[()]
