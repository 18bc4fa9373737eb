/* The equity of a trading system at every bar, and what follows from it: growth, risk, drawdown, exposure. */
#ifndef QVLIB60_TRADESIM_EQUITY_H
#define QVLIB60_TRADESIM_EQUITY_H

#include "qvlib60/tradesim/records.h"

QV_BEGIN_DECLS

#pragma pack(push, 4)

/* What a series of equities tells. Percentages are 0 .. 100. */
typedef struct QvEquityFigures {
  double first;
  double last;
  double totalGrowth;             /* percent: 100 * (last / first - 1) */
  double annualGrowth;            /* percent a year, compounded: 100 * ((last / first) ^ (1 / years) - 1) */
  double sharpe;                  /* a year's */
  double sortino;                 /* a year's */
  double greatestDrawdown;        /* money, zero or positive */
  double greatestDrawdownPercent; /* of the equity it fell from; 100 and above where nothing was left */
  double barsPerYear;             /* by which the figures above are a year's */
  int32_t greatestDrawdownBars;   /* the longest way back to an earlier equity, or to the end without */
  int32_t bars;                   /* items that the figures are made of */
} QvEquityFigures;

/* What the closed trades tell, long and short together. */
typedef struct QvTradeFigures {
  double grossProfit;  /* sum of the results above 0 */
  double grossLoss;    /* sum of the results below 0, zero or negative */
  double profitFactor; /* grossProfit / -grossLoss; infinite without a losing trade, 0 without any */
  double expectancy;   /* mean result of a closed trade */
  double exposure;     /* percent of the bars at whose close a position was open */
  int32_t trades;      /* closed ones; two exits of one position are two */
  int32_t barsHeld;    /* bars at whose close a position was open */
} QvTradeFigures;

#pragma pack(pop)

/* The equity at every bar's close: `capital`, the results of the trades closed until then, and the
   positions still open valued as if they were closed at that close, which is what qvOpenPosRpt1 prints. All
   costs of a position are taken from its entry's bar on: slippage per contract, commission for both
   sides, the deduction rate, and `costRate`, a further cost as a fraction of the traded value (price *
   contracts
   * tickValue / tickSize) of every fill, which the statistics and the reports do not know: 0.0005 is five
   basis points a side. The value at a bar depends on no later bar.
   `out` is treated as the outputs of calculations are, but ends with the current bar: in the middle of a run
   it holds the bars until then. 0; -1 for missing closes, an output that is a series of the bars, or before
   the first bar; -3. */
QVAPI int QVCALL qvEquity(const QvOrderSystem* sys, double capital, double costRate, QvArray* out) QVNOEXCEPT;

/* The figures of a series of equities from its first valid item on. Handed the closes it gives those of
   buying at the first close and holding.

   A bar's return is equity / equity before - 1. `rate` is the yearly return that costs no risk (0.02: 2 %);
   its part of one bar is (1 + rate) ^ (1 / barsPerYear) - 1, and what a bar returns above that is its excess.
   Sharpe ratio: mean excess / standard deviation of the excess (divisor n - 1), times the root of
   barsPerYear. Sortino ratio: mean excess / root of the mean squared excess of the bars below 0 (divisor: all
   n), times the root of barsPerYear. The root takes the returns of different bars for independent.
   A drawdown lasts from a highest equity until that is reached again; the greatest in money, in percent and
   in bars need not be the same one.

   `barsPerYear` 0 takes it from `dates`, the date numbers of the same bars: intervals between the first and
   the last bar over the years of 365.25 days between them. With another value dates may be null.

   0 stands for what can't be told: all that is a year's for a single bar or where no time passes; growth and
   drawdown percent from an equity of 0 or below; Sharpe where the excess does not vary, as on a flat equity;
   Sortino where no excess is below 0. An equity that ends at 0 or below has an annual growth of -100.
   Returns end with the first equity of 0 or below, whose own return counts.
   0; -1 for null records, no valid item, a rate of -1 or below, neither dates nor barsPerYear.
   Source: William F. Sharpe, The Sharpe Ratio, Journal of Portfolio Management, 1994; Frank A. Sortino and
   Lee N. Price, Performance Measurement in a Downside Risk Framework, Journal of Investing, 1994; Malik
   Magdon-Ismail and Amir F. Atiya, Maximum Drawdown, Risk, 2004. */
QVAPI int QVCALL qvEquityFigures(const QvArray* equity, const QvArray* dates, double barsPerYear, double rate,
                                 QvEquityFigures* figures) QVNOEXCEPT;

/* The figures of the closed trades, costs as in qvEquity, and the exposure. Other than the net profit
   factor of the statistics, which adds those of both sides, this one is that of all trades. A system that has
   not reached its first bar has figures of 0. 0; -1 for null records; -3.
   Source: Van K. Tharp, Trade Your Way to Financial Freedom, 1998, for the expectancy. */
QVAPI int QVCALL qvTradeFigures(const QvOrderSystem* sys, double costRate,
                                QvTradeFigures* figures) QVNOEXCEPT;

QV_END_DECLS

#endif
