"""Candlestick patterns, bar formations, point and figure."""
from __future__ import annotations

import re
from dataclasses import dataclass
from functools import lru_cache
from typing import Any

import numpy as np

from . import _core, catalogue
from ._arrays import Doubles, frame
from .bars import Bars
from .batches import batch

__all__ = ["PointAndFigure", "pattern_names", "patterns", "pnf"]


@lru_cache(maxsize=None)
def _formulas() -> dict[str, tuple[str, str]]:
    """By pattern, "Belt Hold Line Bull" for BeltHoldLineBull: its kind and its formula."""
    return {re.sub("(?<=[a-z])(?=[A-Z0-9])|(?<=[0-9])(?=[A-Z])", " ", name): (kind, f'{kind}("{name}")')
            for kind in ("formation", "candle") for name in catalogue.info(kind).parameters[0].choices}


def pattern_names() -> list[str]:
    """The patterns that are known."""
    return list(_formulas())


def patterns(bars: Any, name: str = "") -> Any:
    """The patterns that end at each bar, as a DataFrame: the bar's number, its date, pattern, kind, and the signal (1,
    or -1 for the contrary one). name: only patterns that begin so, in any case."""
    if not isinstance(bars, Bars):
        bars = Bars(bars)

    def plain(text: str) -> str:
        return text.replace(" ", "").lower()

    chosen = {n: f for n, f in _formulas().items() if plain(n).startswith(plain(name))}
    if not chosen:
        raise ValueError(f"name: no pattern begins with {name!r}: pattern_names() has them all")
    if not name:
        chosen.pop("Gap", None)  # its ups and downs have names of their own
    signals = batch([bars], [formula for _, formula in chosen.values()], threads=1)
    found = np.array([row[0] for row in signals.values()]).T
    places, which = np.nonzero(np.nan_to_num(found))
    names, kinds = list(chosen), [kind for kind, _ in chosen.values()]
    return frame({"bar": places, "date": bars.dates[places], "pattern": [names[k] for k in which],
                  "kind": [kinds[k] for k in which], "signal": found[places, which].astype(int)})


@dataclass
class PointAndFigure:
    """A point-and-figure chart; print it to see it."""

    #: The columns as bars: high and low are the boxes' ends; volume, their number; open_interest, 1 X or -1 O.
    columns: Bars
    #: The column that each bar fell into.
    column_of: Doubles
    box: float
    text: str

    def __str__(self) -> str:
        return self.text


def pnf(bars: Any, box: float = 0.0, reversal: float = 3.0, *, hilo: bool = False) -> PointAndFigure:
    """A point-and-figure chart by closes, or by highs and lows. The box is about a hundredth of the price unless
    given."""
    if not box >= 0 or not np.isfinite(box):
        raise ValueError(f"box: a number above 0 is wanted, {box!r} is given")
    if not reversal > 0 or not np.isfinite(reversal):
        raise ValueError(f"reversal: a number above 0 is wanted, {reversal!r} is given")
    columns, column_of, used, text = _core.pnf(bars, float(box), float(reversal), hilo)
    return PointAndFigure(Bars._of(columns), column_of, used, text)
