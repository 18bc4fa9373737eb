"""Price files of any kind: reading and checking them, and what there is in a directory."""
from __future__ import annotations

import os
from typing import Any, NamedTuple, Union

from . import _core, dates as _dates
from .bars import Bars, LeftOut

__all__ = ["Finding", "Source", "check", "list_files", "read"]


def _checked(type: str, dates: str, decimal: str) -> tuple[str, str, str]:
    kinds = ("", "csv", "txt", "ct", "dj", "tc", "tt")
    for name, value, choices in (("type", type, kinds), ("dates", dates, ("", "dmy", "mdy", "ymd")),
                                 ("decimal", decimal, ("", "point", "comma"))):
        if value.lower() not in choices:
            raise ValueError(f"{name}: one of {', '.join(choices[1:])} is wanted, not {value!r}")
    return type.upper(), dates.lower(), decimal.lower()


def read(path: Union[str, os.PathLike[str]], *, type: str = "", dates: str = "", decimal: str = "",
         adjusted: bool = False) -> Bars:
    """The bars of a price file of any kind: a CSV file of a data site, a text file with a layout file, or DIR/NAME, a
    security of a vendor's directory.

    type: csv, txt, ct, dj, tc or tt; found out unless given. dates: dmy, mdy or ymd, and decimal: point or comma, for
    CSV files that do not settle it. adjusted: prices as the column Adj Close says.
    """
    kind, order, sign = _checked(type, dates, decimal)
    try:
        bar_set, _, layout, left_out = _core.read(os.fspath(path), kind, order, sign, adjusted)
    except ValueError as error:
        raise ValueError(str(error).replace(": give --", ": give ")) from None
    bars = Bars._of(bar_set)
    bars.layout, bars.left_out = layout, tuple(LeftOut(*row) for row in left_out)
    return bars


class Finding(NamedTuple):
    """What is wrong at a place of a price file."""

    place: str
    date: Any
    what: str


def check(path: Union[str, os.PathLike[str]], *, type: str = "", dates: str = "", decimal: str = "",
          adjusted: bool = False) -> list[Finding]:
    """What is wrong with a price file: rows that are left out, impossible bars, gaps, dates out of order."""
    kind, order, sign = _checked(type, dates, decimal)
    found = _core.findings(os.fspath(path), kind, order, sign, adjusted)
    return [Finding(place, _dates.datetime64(date) if date else None, what) for place, date, what in found]


class Source(NamedTuple):
    """A file or a security of a directory; `file` is what `read` takes."""

    file: str
    type: str
    symbol: str
    description: str
    frequency: str
    first: str
    last: str


def list_files(directory: Union[str, os.PathLike[str]], *, type: str = "") -> list[Source]:
    """What there is to read in a directory: price files, or a vendor's securities."""
    kind, _, _ = _checked(type, "", "")
    return [Source(*source) for source in _core.sources(os.fspath(directory), kind)]
