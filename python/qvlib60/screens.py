"""A rule over many securities at once."""
from __future__ import annotations

import math
from dataclasses import dataclass
from typing import Any, Optional

from . import _core, dates as _dates
from ._arrays import frame
from ._settings import threads_of
from .formulas import open_formula
from .sources import sources_of

__all__ = ["Screen", "screen"]


@dataclass
class Screen:
    """What a screen found."""

    #: The securities for which the rule holds: a DataFrame of symbol, date, close and the values that the rule compares.
    matches: Any
    #: Files read, with too few bars, and without a series that the rule needs.
    read: int
    too_short: int
    unknown: int
    #: Bars that the rule's first value takes.
    bars_needed: int
    #: "FILE: why" of those that could not be read.
    unreadable: list[str]

    def __str__(self) -> str:
        counts = f"{self.read} read, {len(self.matches)} match, {self.too_short} too short ({self.bars_needed} bars needed)"
        return f"{self.matches.to_string(index=False)}\n{counts}, {len(self.unreadable)} unreadable"


def screen(data: Any, where: str, *, asof: Any = None, adjusted: bool = False,
           threads: Optional[int] = None) -> Screen:
    """The securities for which a rule holds, on their last bar or on the last one on or before the day `asof`.

    data: files, directories, bars, a list of any, or a dictionary of bars by name.
    """
    open_formula(where, {})
    day = 0.0 if asof is None else math.floor(_dates.number(asof))
    found = _core.screen(sources_of(data, symbols=True), where, day, adjusted, threads_of(threads))
    return screen_of(found)


def screen_of(found: dict[str, Any]) -> Screen:
    """A screen of raw rows."""
    rows = found["rows"]
    rows["date"] = _dates.datetime64(rows["date"])
    return Screen(frame(rows), found["read"], found["too_short"], found["unknown"], found["needed"],
                  found["unreadable"])
