"""Options and bonds."""
from __future__ import annotations

import math
from typing import Any, NamedTuple, Optional, Sequence, Union

from . import _core, dates as _dates

__all__ = ["Bond", "OptionProfile", "bond", "option"]


class OptionProfile(NamedTuple):
    """The risk of a position of two options at expiry. What is unlimited is infinite; moves are fractions of the
    underlying's price."""

    premiums: tuple[float, float]
    max_profit: float
    max_loss: float
    lower_breakeven: float
    upper_breakeven: float
    lower_move: float
    upper_move: float


def _positive(**numbers: Any) -> None:
    for name, value in numbers.items():
        if not math.isfinite(value) or value <= 0:
            raise ValueError(f"{name}: a number above 0 is wanted, {value!r} is given")


def option(position: str, *, underlying: float, strike: Union[float, Sequence[float]], days: float = 0.0,
           rate: float = 0.0, volatility: float = 0.0,
           premium: Union[float, Sequence[float]] = ()) -> Union[float, OptionProfile]:
    """The value of a call or a put, or the profile of a position: bull-call, bull-put, bear-call, bear-put,
    long-straddle, short-straddle, long-strangle, short-strangle.

    rate and volatility in percent a year, years of 360 days. Spreads take two strikes (lower, higher), strangles those
    of call and put. Premiums are values where days and volatility tell them, unless they are given.

    >>> round(option("call", underlying=100, strike=105, days=90, rate=5, volatility=20), 4)
    2.4779
    >>> option("long-strangle", underlying=100, strike=[105, 95], premium=[2.5, 1.8]).upper_breakeven
    109.3
    """
    strikes = [float(x) for x in (strike if isinstance(strike, Sequence) else [strike])]
    premiums = [float(x) for x in (premium if isinstance(premium, Sequence) else [premium])]
    _positive(underlying=underlying, **{"strike": min(strikes, default=0.0)})
    if position in ("call", "put"):
        if len(strikes) != 1:
            raise ValueError(f"strike: one strike for a {position}")
        _positive(days=days, volatility=volatility)
        return _core.option_value(position == "call", underlying, strikes[0], days, rate, volatility)
    return OptionProfile(**_core.option_profile(position, underlying, days, rate, volatility, strikes, premiums))


class Bond(NamedTuple):
    """A bond's price and what follows from it. Yields in percent a year, the duration in years."""

    price: float
    yield_to_maturity: float
    current_yield: float
    duration: float


def bond(*, coupon: float, maturity: Any, settlement: Any, yield_: Optional[float] = None,
         price: Optional[float] = None, face: float = 100.0, payments: int = 2) -> Bond:
    """A bond at a yield or at a price; coupon and yield in percent a year.

    >>> b = bond(face=1000, coupon=5, maturity="2030-04-17", settlement="2020-04-17", yield_=4)
    >>> round(b.price, 2)
    1085.12
    """
    if (yield_ is None) == (price is None):
        raise TypeError("give one of yield_ and price")
    days = _dates.number(maturity), _dates.number(settlement)
    if days[0] <= days[1]:
        raise ValueError("maturity: a date after settlement is wanted")
    if not 1 <= payments <= 12:
        raise ValueError(f"payments: 1 to 12 a year are wanted, {payments!r} is given")
    _positive(face=face, **({"price": price} if price is not None else {}))
    nothing = math.nan
    return Bond(**_core.bond(face, coupon, payments, *days, nothing if yield_ is None else yield_,
                             nothing if price is None else price))
