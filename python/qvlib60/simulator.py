"""The trading-system simulator for steps that are written in Python."""
from __future__ import annotations

from typing import Any, Callable, NamedTuple, Optional

import numpy as np

from . import _core, dates as _dates
from ._arrays import frame
from ._settings import number_of, settings_of
from .backtests import Figures
from .bars import Bars

__all__ = ["Order", "Position", "Simulator", "simulate"]

_TYPES = {"market": 1, "stop": 2, "limit": 3, "close": 4}
_TIMES = {"day": 1, "gtc": 2}
_SETTINGS = ("tick_size", "tick_value", "slippage", "commission", "deduction_rate", "margin_percent", "gap_fills",
             "reverse_on_entry", "pyramiding")


class Position(NamedTuple):
    """An entry that is still open."""

    name: str
    side: str
    bar: int
    date: np.datetime64
    price: float
    volume: int
    remaining: int


class Order(NamedTuple):
    """An order that waits."""

    name: str
    action: str
    side: str
    volume: int
    price: float
    type: str
    time: str


class Simulator:
    """Orders over bars, a bar at a time: next() moves on and fills what waits, then orders can be placed, which may
    fill from the next bar on. A stop or limit order fills at its price, or at the open of a bar that opens beyond it.

    Settings: tick_size and tick_value (prices are left alone unless given), slippage and commission in money,
    deduction_rate, margin_percent, gap_fills, reverse_on_entry, pyramiding.

    >>> import qvlib60 as qv
    >>> bars = qv.Bars(open=[1.0, 2.0, 3.0], high=[2.0, 3.0, 4.0], low=[1.0, 2.0, 3.0], close=[2.0, 3.0, 4.0])
    >>> sim = Simulator(bars)
    >>> while sim.next():
    ...     if not sim.position:
    ...         sim.buy_to_open(volume=10)
    >>> sim.position, sim.average_price
    (10, 2.0)
    """

    def __init__(self, bars: Any, *, name: str = "", **settings: float) -> None:
        self.bars = bars if isinstance(bars, Bars) else Bars(bars)
        self._system = _core.simulator(self.bars, name or self.bars.symbol or "system")
        for key, value in settings.items():
            if key not in _SETTINGS:
                raise TypeError(f"there is no setting {key}: there are {', '.join(_SETTINGS)}")
            number = float(value)
            if not np.isfinite(number) or (key == "tick_size" and number <= 0):
                raise ValueError(f"{key}: a finite number is wanted, {value!r} is given")
            self._system.set(key, number)

    # ---- Where it stands ------------------------------------------------------------------------------

    def next(self) -> bool:
        """Moves to the next bar, the first one first, and fills orders; False where there is none."""
        return self._system.next()

    @property
    def bar(self) -> int:
        """The number of the current bar; -1 before the first."""
        return self._system.bar

    @property
    def position(self) -> int:
        """Contracts held: below 0 a short position."""
        return self._system.long_contracts - self._system.short_contracts

    @property
    def average_price(self) -> float:
        """Of the entries that are open."""
        return self._system.average_price

    @property
    def bars_in_position(self) -> int:
        """Since the first open entry, both ends counted."""
        return self._system.bars_in_position

    @property
    def positions(self) -> list[Position]:
        """The entries that are open, the oldest first."""
        return [Position(name, ("long", "short")[side - 1], bar, _dates.datetime64(date), price, volume, remaining)
                for name, side, bar, date, price, volume, remaining in self._system.positions()]

    @property
    def orders(self) -> list[Order]:
        """The orders that wait."""
        types, times = {v: k for k, v in _TYPES.items()}, {v: k for k, v in _TIMES.items()}
        return [Order(name, ("exit", "entry")[action - 1], ("buy", "sell")[side - 1], volume, price, types[kind],
                      times[time]) for name, action, side, volume, price, kind, time in self._system.pending()]

    # ---- Orders ---------------------------------------------------------------------------------------

    def buy_to_open(self, name: str = "long", volume: int = 1, price: Optional[float] = None, type: str = "market",
                    time: str = "day") -> None:
        """Opens a long position. type: market, stop, limit or close; time: day or gtc (until cancelled)."""
        self._system.buy_to_open(name, *_order(volume, price, type, time))

    def sell_to_open(self, name: str = "short", volume: int = 1, price: Optional[float] = None, type: str = "market",
                     time: str = "day") -> None:
        """Opens a short position."""
        self._system.sell_to_open(name, *_order(volume, price, type, time))

    def sell_to_close(self, name: str = "exit", volume: int = 1, price: Optional[float] = None, type: str = "market",
                      time: str = "day", entry: str = "") -> None:
        """Closes contracts of long positions, the oldest first: those of the entry of that name, or of any."""
        self._system.sell_to_close(name, entry, *_order(volume, price, type, time))

    def buy_to_close(self, name: str = "cover", volume: int = 1, price: Optional[float] = None, type: str = "market",
                     time: str = "day", entry: str = "") -> None:
        """Closes contracts of short positions."""
        self._system.buy_to_close(name, entry, *_order(volume, price, type, time))

    def cancel(self, name: str = "") -> None:
        """Withdraws the orders of that name, or all."""
        self._system.cancel(name)

    # ---- What came of it ------------------------------------------------------------------------------

    @property
    def trades(self) -> Any:
        """The closed trades as a DataFrame."""
        columns = self._system.trades()
        for name in ("entered", "left"):
            columns[name] = _dates.datetime64(columns[name])
        return frame(columns)

    def equity(self, capital: float = 10000.0, cost: float = 0.0) -> Any:
        """The equity at every bar's close until now; cost is a fraction of the traded value of each fill."""
        checked = settings_of(cost, capital=capital)
        return self._system.equity(checked["capital"], checked["cost"])

    def figures(self, capital: float = 10000.0, cost: float = 0.0, rate: float = 0.0) -> Figures:
        """Growth, risk and exposure, as those of a backtest."""
        checked = settings_of(cost, capital=capital, rate=rate)
        equity, trades = self._system.figures(checked["capital"], checked["cost"], checked["rate"])
        return Figures({**equity, **trades})

    @property
    def statistics(self) -> Figures:
        """The simulator's statistics of all trades."""
        return Figures(self._system.statistics()[0])

    def __str__(self) -> str:
        return self._system.report()

    def __repr__(self) -> str:
        return f"<Simulator: bar {self.bar} of {len(self.bars)}, position {self.position}>"


def _order(volume: int, price: Optional[float], type: str, time: str) -> tuple[int, float, int, int]:
    if isinstance(volume, bool) or not isinstance(volume, (int, np.integer)) or not 1 <= volume <= 10**9:
        raise ValueError(f"volume: a whole number from 1 to 1,000,000,000 is wanted, {volume!r} is given")
    if type not in _TYPES:
        raise ValueError(f"type: market, stop, limit or close is wanted, not {type!r}")
    if time not in _TIMES:
        raise ValueError(f"time: day or gtc is wanted, not {time!r}")
    waits = type in ("stop", "limit")
    return int(volume), number_of("price", price, -np.inf) if waits else 0.0, _TYPES[type], _TIMES[time]


def simulate(bars: Any, step: Callable[[Simulator], Any], **settings: Any) -> Simulator:
    """Calls step(simulator) at every bar, after its orders have been filled, and returns the simulator.

    >>> import qvlib60 as qv
    >>> bars = qv.Bars(open=[1.0, 2.0], high=[2.0, 3.0], low=[1.0, 2.0], close=[2.0, 3.0])
    >>> simulate(bars, lambda sim: sim.buy_to_open()).position
    1
    """
    if not callable(step):
        raise TypeError(f"step: a function is wanted, {type(step).__name__} is given")
    simulator = Simulator(bars, **settings)
    while simulator.next():
        step(simulator)
    return simulator
