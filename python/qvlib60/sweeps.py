"""Sweeps: a backtest for every combination of parameters and every security, and walks forward."""
from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Callable, Mapping, Optional

import numpy as np

from . import _core, dates as _dates
from ._arrays import frame
from ._settings import Sets, rule_texts, sets_of, settings_of, threads_of
from .sources import sources_of

__all__ = ["Sweep", "Walk", "figures", "sweep"]

Progress = Optional[Callable[[float], Any]]


@dataclass
class Sweep:
    """The rows of a sweep: a DataFrame of file, parameters and figures, the best first where a figure ranks them."""

    rows: Any
    #: By combination, over the files; empty for one file.
    medians: Any
    #: A message for each file that could not be run.
    failed: list[str]

    def __str__(self) -> str:
        return str(self.rows.to_string(index=False))


@dataclass
class Walk:
    """The rows of a walk forward: what was best on each stretch, and what it did on the bars behind."""

    rows: Any
    failed: list[str]

    @property
    def median(self) -> Any:
        """Of the tested figures, over all rows."""
        return self.rows[[figure[0] for figure in _core.figure_list()]].median()

    def __str__(self) -> str:
        return str(self.rows.to_string(index=False))


def figures() -> dict[str, str]:
    """The figures that rows have and can be ranked by, and what they are.

    >>> figures()["sharpe"]
    'Sharpe ratio'
    """
    return {name: what for name, _, what, _ in _core.figure_list()}


def value_columns(sets: Sets, combinations: Any) -> dict[str, Any]:
    """The parameters' values of combinations by number, the last set changing fastest."""
    columns, stride = {}, 1
    for name, values in reversed(sets):
        columns[name] = np.asarray(values)[np.asarray(combinations, np.int64) // stride % len(values)]
        stride *= len(values)
    return {name: columns[name] for name, _ in sets}


def table_of(raw: dict[str, Any], names: list[str], sets: Sets) -> Any:
    """A DataFrame of raw rows, with the files' names and the parameters' values in the place of numbers."""
    columns: dict[str, Any] = {}
    if "source" in raw:
        columns["file"] = [names[k] for k in raw["source"]]
    stretches = [name for name in raw if name.endswith(("_from", "_to"))]
    columns.update({name: _dates.datetime64(raw[name]) for name in stretches if name.startswith("tuned")})
    columns.update(value_columns(sets, raw["combination"]))
    columns.update({name: raw[name] for name in raw if name.startswith("tuned_") and name not in stretches})
    columns.update({name: _dates.datetime64(raw[name]) for name in stretches if name.startswith("tested")})
    columns.update({name: raw[name] for name in raw if name not in columns and name not in ("source", "combination")})
    return frame(columns)


def sweep(
    data: Any,
    long: Optional[str] = None,
    exit: Optional[str] = None,
    short: Optional[str] = None,
    cover: Optional[str] = None,
    stop: Optional[str] = None,
    *,
    parameters: Mapping[str, Any],
    rank: str = "",
    walk: str = "",
    threads: Optional[int] = None,
    progress: Progress = None,
    adjusted: bool = False,
    **settings: Any,
) -> Any:
    """Tests a trading system with every combination of its parameters: {"fast": range(5, 50, 5), "slow": [100, 200]}
    or {"fast": "5:50:5"}, with both ends.

    data: bars, files, directories, a list of any, or a dictionary of bars by name. rank: the figure by which rows are
    ordered, of figures(). walk: "5y/1y" tunes on five years, tests on the next one, and moves on by a year. Settings as
    for backtest(). progress is called now and then with the part that is done; what it raises ends the run. Rows do not
    depend on the number of threads.
    """
    sources = sources_of(data)
    texts = rule_texts({"long": long, "exit": exit, "short": short, "cover": cover, "stop": stop})
    sets, checked = sets_of(parameters), settings_of(**settings)
    names = [name for name, _ in sources]
    if progress is not None and not callable(progress):
        raise TypeError(f"progress: a function is wanted, {type(progress).__name__} is given")
    if walk:
        raw = _core.walk(sources, texts, sets, checked, rank or "sharpe", adjusted, walk, threads_of(threads), progress)
        return Walk(table_of(raw["rows"], names, sets), raw["failed"])
    raw = _core.sweep(sources, texts, sets, checked, rank, adjusted, threads_of(threads), progress)
    return Sweep(table_of(raw["rows"], names, sets), table_of(raw["medians"], names, sets), raw["failed"])
