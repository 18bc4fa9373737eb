"""Formulas bar by bar: the bits of the whole call, at the cost of one bar. docs/streams.md has the rules."""
from __future__ import annotations

from typing import Any, Optional, Union

import numpy as np

from . import _core, dates as _dates
from ._arrays import Doubles, doubles
from .bars import Bars
from .formulas import Formula, open_formula

__all__ = ["Stream"]

_NAMES = ("date", "open", "high", "low", "close", "volume", "open_interest")


class Stream:
    """A formula that takes one bar, or some, at a time. Numbers give a number, columns and bars an array;
    not-a-number where nothing is known yet. Streams can be copied and pickled in their state.

    >>> import qvlib60 as qv
    >>> stream = qv.Stream("sma($n)", n=2)
    >>> stream.update(close=1.0), stream.update(close=[2.0, 4.0])
    (nan, array([1.5, 3. ]))
    >>> stream.peek(close=6.0), stream.replace_last(close=0.0), len(stream)
    (5.0, 1.0, 3)
    """

    __slots__ = ("formula", "_state")
    formula: Formula

    def __init__(self, formula: Any, /, **values: float) -> None:
        self.formula = open_formula(formula, values)
        self._state = _core.stream(self.formula._open)

    def update(self, bars: Optional[Bars] = None, **columns: Any) -> Any:
        """Takes new bars: date, open, high, low, close, volume and open_interest by name, or a bar set."""
        return self._taken(self._state.update, bars, columns)

    def peek(self, **columns: Any) -> Any:
        """The value if the forming bar closed as it stands; the bar is not kept."""
        return self._taken(self._state.peek, None, columns)

    def replace_last(self, **columns: Any) -> Any:
        """Corrects the last bar and gives its value anew."""
        return self._taken(self._state.replace_last, None, columns)

    def _taken(self, step: Any, bars: Optional[Bars], columns: dict[str, Any]) -> Union[float, Doubles]:
        unknown = columns.keys() - set(_NAMES)
        if unknown or (bars is not None and columns):
            raise TypeError(f"give a bar set, or columns by name: {', '.join(_NAMES)}")
        if bars is not None:
            if not isinstance(bars, Bars):
                raise TypeError(f"bars: qvlib60.Bars are wanted, {type(bars).__name__} is given")
            values: Doubles = step(bars._set.columns())
            return values
        one = all(np.ndim(value) == 0 for value in columns.values())
        given = [None if columns.get(name) is None else self._column(name, columns[name], one) for name in _NAMES]
        values = step(given)
        return float(values[0]) if one else values

    @staticmethod
    def _column(name: str, value: Any, one: bool) -> Doubles:
        if name == "date":
            return np.array([_dates.number(value)]) if one else _dates.numbers(value)
        return doubles([value] if one else value, name)

    def __len__(self) -> int:
        """The bars so far."""
        return self._state.bars

    def copy(self) -> Stream:
        """A second stream in the same state."""
        return _in_state(self.formula, self._state.copy(self.formula._open))

    __copy__ = copy

    def __deepcopy__(self, memo: Any) -> Stream:
        return self.copy()

    def __reduce__(self) -> Any:
        return _loaded, (self.formula, self._state.save())

    def __repr__(self) -> str:
        return f"<Stream: {self.formula.text}, {len(self)} bars>"


def _in_state(formula: Formula, state: _core.Stream) -> Stream:
    stream = Stream.__new__(Stream)
    stream.formula, stream._state = formula, state
    return stream


def _loaded(formula: Formula, block: bytes) -> Stream:
    return _in_state(formula, _core.load_stream(formula._open, block))
