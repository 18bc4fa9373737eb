"""Backtests of trading systems by rules. docs/backtests.md says how orders are filled."""
from __future__ import annotations

from typing import Any, Optional

from . import _core, dates as _dates
from ._arrays import frame
from ._settings import rule_texts, settings_of
from .bars import Bars
from .charts import THEMES, Chart, choice

__all__ = ["Backtest", "Figures", "backtest"]


class Figures:
    """Numbers by name, as attributes and as a dictionary with vars()."""

    def __init__(self, values: dict[str, Any]) -> None:
        self.__dict__.update(values)

    def __getattr__(self, name: str) -> Any:
        raise AttributeError(f"there is no {name}: there are {', '.join(vars(self))}")

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Figures) and vars(self) == vars(other)

    def __repr__(self) -> str:
        return f"Figures({', '.join(f'{name}={value:g}' for name, value in vars(self).items())})"


def _dated(columns: dict[str, Any], *names: str) -> Any:
    for name in names:
        columns[name] = _dates.datetime64(columns[name])
    return frame(columns)


class Backtest(Figures):
    """What came of a backtest. Its figures are attributes: final_equity, total_growth, annual_growth, sharpe, sortino,
    greatest_drawdown, greatest_drawdown_percent, longest_drawdown, bars_per_year, exposure, profit_factor, expectancy,
    gross_profit, gross_loss, trade_count, bars_held. print(result) prints the report.
    """

    #: The figures of buying at the first close and holding.
    hold: Figures
    #: The simulator's statistics of all, long and short trades.
    net: Figures
    long: Figures
    short: Figures

    def __init__(self, run: _core.Backtest, bars: Any) -> None:
        equity, trades, hold = run.figures()
        super().__init__({**equity, **trades})
        self._run, self._bars = run, bars
        self.hold = Figures(hold)
        self.net, self.long, self.short = map(Figures, run.statistics())

    @property
    def trades(self) -> Any:
        """The trades as a DataFrame, one that is still open last."""
        return _dated(self._run.trades(), "entered", "left")

    @property
    def orders(self) -> Any:
        """The orders and what became of them, as a DataFrame."""
        return _dated(self._run.orders(), "placed", "filled")

    @property
    def equity(self) -> Any:
        """Position, equity and that of holding at every bar's close, over the bars' index or dates."""
        import pandas

        index = self._bars.index
        if index is None:
            index = pandas.DatetimeIndex(self._bars.dates, name="date")
        return frame(self._run.equity(), index)

    def chart(self, *, title: Optional[str] = None, theme: str = "light", width: float = 900,
              height: float = 600) -> Chart:
        """The prices with the trades, the equity beside that of holding, and the drawdown."""
        graph = self._run.chart(self._bars.symbol if title is None else title, choice("theme", theme, THEMES))
        return Chart(graph, width, height)

    def __repr__(self) -> str:
        return (f"<Backtest: {self.trade_count} trades, growth {self.total_growth:.2f} %, "
                f"Sharpe ratio {self.sharpe:.3f}>")

    def __str__(self) -> str:
        return self._run.report()


def backtest(
    bars: Any,
    long: Optional[str] = None,
    exit: Optional[str] = None,
    short: Optional[str] = None,
    cover: Optional[str] = None,
    stop: Optional[str] = None,
    *,
    cost: float = 0.0,
    slip: float = 0.0,
    fixed: float = 0.0,
    capital: float = 10000.0,
    size: int = 1,
    rate: float = 0.0,
    tick: float = 0.0,
    **parameters: float,
) -> Backtest:
    """Tests a trading system by rules: formulas that are known at a bar's close, whose orders are filled at the next
    open.

    long buys, exit sells what was bought; short sells short, cover buys back. stop is the distance of a protective
    stop. cost and slip are fractions of the traded value of each fill (0.0005: five basis points), fixed is money for
    each fill; rate is the yearly return that costs no risk (0.02). Parameters $name of the rules are given by name.
    """
    if not isinstance(bars, Bars):
        bars = Bars(bars)
    rules = rule_texts({"long": long, "exit": exit, "short": short, "cover": cover, "stop": stop})
    settings = settings_of(cost, slip, fixed, capital, size, rate, tick)
    values = {name.lower(): float(value) for name, value in parameters.items()}
    return Backtest(_core.backtest(bars, bars.symbol or "system", rules, values, settings), bars)
