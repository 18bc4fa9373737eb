"""Formulas over many securities in one call, in threads of its own."""
from __future__ import annotations

from typing import Any, Optional, Union

import numpy as np

from . import _core
from ._arrays import Doubles
from ._settings import threads_of
from .bars import Bars
from .formulas import open_formulas

__all__ = ["batch"]


def batch(bars: Any, formulas: Any, *, threads: Optional[int] = None, out: Optional[Doubles] = None,
          **values: float) -> dict[str, Union[Doubles, list[Doubles]]]:
    """The formulas over every bar set of a list, or over every row of a 2-d array, which are closes then.

    Gives by formula one array with a row for each security, where all have as many bars; else a list of arrays. `out`,
    of the shape (formulas, securities, bars), is used again. All cores unless `threads` says otherwise; Python's other
    threads go on meanwhile.

    >>> import qvlib60 as qv
    >>> qv.batch(np.array([[1.0, 2.0, 3.0], [3.0, 2.0, 1.0]]), "sma(2)")
    {'sma(2)': array([[nan, 1.5, 2.5],
           [nan, 2.5, 1.5]])}
    """
    sets = _sets_of(bars)
    opened = open_formulas(formulas, values)
    sizes = {len(bar_set) for bar_set in sets}
    if len(sizes) > 1:
        if out is not None:
            raise ValueError("out: the securities have different numbers of bars")
        rows: Any = [[np.empty(len(bar_set)) for bar_set in sets] for _ in opened]
    else:
        shape = (len(opened), len(sets), sizes.pop() if sizes else 0)
        rows = _block(out, shape)
    _core.batch(sets, [formula._open for formula in opened], [list(row) for row in rows], out is not None,
                threads_of(threads))
    return {formula.text: row for formula, row in zip(opened, rows)}


def _block(out: Optional[Doubles], shape: tuple[int, int, int]) -> Doubles:
    if out is None:
        return np.empty(shape)
    fits = isinstance(out, np.ndarray) and out.dtype == np.float64 and out.shape == shape
    if not fits or not out.flags.c_contiguous or not out.flags.writeable:
        raise ValueError(f"out: a contiguous writeable array of float64 of the shape {shape} is wanted")
    return out


def _sets_of(bars: Any) -> list[_core.BarSet]:
    if isinstance(bars, np.ndarray):
        if bars.ndim != 2 or bars.dtype.kind not in "biuf":
            raise TypeError("bars: a 2-d array of closes or a list of bars is wanted")
        closes = np.require(bars, np.float64, ["C", "A"])
        dates = np.arange(1.0, closes.shape[1] + 1)
        rest = [None, None, None], [None, None]
        return [_core.bar_set([dates, *rest[0], row, *rest[1]], 0) for row in closes]
    if isinstance(bars, (str, bytes, dict, Bars)):
        raise TypeError("bars: a list of bars or a 2-d array is wanted")
    return [each._set if isinstance(each, Bars) else Bars(each)._set for each in bars]
