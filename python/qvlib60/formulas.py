"""Formulas: rules and values over bars, written as text. docs/formulas.md has the language."""
from __future__ import annotations

import builtins
from functools import lru_cache
from typing import Any, NamedTuple, Optional, Sequence

from . import _core

__all__ = ["Formula", "Need", "eval", "need"]


class Need(NamedTuple):
    """How many bars a formula needs. `settled` is None where its values never forget where the data began."""

    #: Bars to the first value.
    first: int
    #: Bars until the value no longer depends on where the data began: the history to load.
    settled: Optional[int]
    #: Looks at later bars: not for a backtest.
    repaints: bool


class Formula:
    """A formula that is opened once and evaluated over any number of bars, on any threads.

    >>> import qvlib60 as qv
    >>> rule = qv.Formula("close > sma($n)", n=2)
    >>> rule(qv.Bars(close=[1.0, 2.0, 1.0]))
    array([nan,  1.,  0.])
    """

    __slots__ = ("_open", "text", "values")

    def __init__(self, text: str, /, **values: float) -> None:
        if not isinstance(text, str):
            raise TypeError(f"formula: a text is wanted, {type(text).__name__} is given")
        self.text, self.values = text, {name: float(value) for name, value in values.items()}
        self._open = _core.formula(text, self.values)

    def __call__(self, bars: Any, *, out: Any = None) -> Any:
        """The value at every bar, not-a-number where it is not known; rules are 1 or 0."""
        return self._open.evaluate(bars, out)

    def need(self, tolerance: float = 1e-3) -> Need:
        """How many bars it takes."""
        first, settled, repaints, _ = self._open.needs(tolerance)
        return Need(first + 1, settled + 1 if settled >= 0 else None, repaints)

    @staticmethod
    def parameters(text: str) -> list[str]:
        """The names of a text's parameters, without $."""
        return _core.parameters(text)

    def __repr__(self) -> str:
        return f"Formula({self.text!r}" + "".join(f", {name}={value:g}" for name, value in self.values.items()) + ")"

    def __reduce__(self) -> Any:
        return _restored, (self.text, self.values)


def _restored(text: str, values: dict[str, float]) -> Formula:
    return Formula(text, **values)


@lru_cache(maxsize=512)
def _opened(text: str, values: tuple[tuple[str, float], ...]) -> Formula:
    return Formula(text, **dict(values))


def open_formula(text: Any, values: dict[str, float]) -> Formula:
    """An opened formula, taken from those of late where it can be."""
    if isinstance(text, Formula):
        if values:
            raise TypeError("an opened formula has its values already")
        return text
    if not isinstance(text, str):
        raise TypeError(f"formula: a text is wanted, {type(text).__name__} is given")
    return _opened(text, tuple(sorted(values.items())))


def open_formulas(texts: Any, values: dict[str, float]) -> list[Formula]:
    """The formulas of a text or of several, each with those of the values that it has parameters for."""
    given: Sequence[Any] = [texts] if isinstance(texts, (str, Formula)) else list(texts)
    opened, used = [], builtins.set()
    for text in given:
        names = builtins.set() if isinstance(text, Formula) else {n.lower() for n in Formula.parameters(text)}
        opened.append(open_formula(text, {n: v for n, v in values.items() if n.lower() in names}))
        used |= names
    for name in values:
        if name.lower() not in used:
            raise TypeError(f"no formula has a parameter ${name}")
    return opened


def eval(text: Any, bars: Any, *, out: Any = None, **values: float) -> Any:
    """A formula's value at every bar: an array, or a series over the bars' index. Parameters $name are given by name.

    >>> import qvlib60 as qv
    >>> qv.eval("highest(close, $n)", qv.Bars(close=[1.0, 3.0, 2.0]), n=2)
    array([nan,  3.,  3.])
    """
    return open_formula(text, values)(bars, out=out)


def need(text: Any, tolerance: float = 1e-3, **values: float) -> Need:
    """How many bars a formula takes to its first value, and until it no longer depends on where the data began.

    >>> need("macd(12,26,9)")
    Need(first=1, settled=167, repaints=False)
    """
    return open_formula(text, values).need(tolerance)
