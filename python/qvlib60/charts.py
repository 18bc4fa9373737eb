"""Charts: prices, formulas, backtests, as pictures that a notebook shows."""
from __future__ import annotations

import os
from typing import Any, Optional, Union

import numpy as np

from . import _core, dates as _dates
from ._settings import number_of
from .bars import Bars, end_of

__all__ = ["Chart", "chart"]

_KINDS = {"candles": 0, "bars": 1, "line": 2, "area": 3, "heikin-ashi": 6}
_SCALES = {"linear": 0, "log": 1, "percent": 2}
THEMES = {"light": False, "dark": True}


class Chart:
    """A picture. A notebook shows it; save() writes it."""

    def __init__(self, graph: _core.Chart, width: float = 900, height: float = 600) -> None:
        self._graph = graph
        self.width, self.height = (number_of(name, x, 1) for name, x in (("width", width), ("height", height)))
        if max(self.width, self.height) > 20000:
            raise ValueError("width, height: up to 20,000 is wanted")

    def svg(self) -> str:
        """The picture as SVG."""
        return self._graph.svg(self.width, self.height)

    def _repr_svg_(self) -> str:
        return self.svg()

    def save(self, path: Union[str, os.PathLike[str]], *, scale: float = 1.0) -> None:
        """Writes .svg, .png (of `scale` pixels to a unit) or .pdf."""
        if not 0.1 <= scale <= 10:
            raise ValueError(f"scale: 0.1 to 10 is wanted, {scale!r} is given")
        self._graph.save(os.fspath(path), self.width, self.height, float(scale))


def choice(name: str, value: Any, choices: dict[str, Any]) -> Any:
    """What stands behind one of the names."""
    if value not in choices:
        raise ValueError(f"{name}: {', '.join(choices)} are known, not {value!r}")
    return choices[value]


def chart(bars: Any, *formulas: str, kind: str = "candles", volume: bool = False, scale: str = "linear",
          title: Optional[str] = None, theme: str = "light", last: Optional[int] = None, since: Any = None,
          until: Any = None, against: Any = None, width: float = 900, height: float = 600) -> Chart:
    """A chart of prices and formulas: what belongs to the prices stands over them, the rest below.

    kind: candles, bars, line, area or heikin-ashi. scale: linear, log or percent. theme: light or dark. last, since and
    until choose the bars that are shown; formulas know all of them. against: the bars that "rsic(14)", "spread(1, 0.5)"
    and the other calculations of two bar sets compare with.
    """
    if not isinstance(bars, Bars):
        bars = Bars(bars)
    if not len(bars):
        raise ValueError("bars: there are none")
    graph = _core.chart(bars, bars.symbol if title is None else title)
    graph.theme(choice("theme", theme, THEMES))
    graph.prices(choice("kind", kind, _KINDS))
    if volume:
        graph.volume()
    other = against if against is None or isinstance(against, Bars) else Bars(against)
    for formula in formulas:
        graph.formula(formula, other)
    graph.scale(choice("scale", scale, _SCALES))
    days = bars.date_numbers
    first = 0 if since is None else int(np.searchsorted(days, _dates.number(since)))
    end = len(bars) if until is None else int(np.searchsorted(days, end_of(until)))
    if last is not None:
        first = max(first, end - int(number_of("last", last, 1)))
    if first >= end:
        raise ValueError("no bars from since to until")
    graph.range(first, end - 1)
    return Chart(graph, width, height)
