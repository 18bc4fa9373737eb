/* Bar-shape and regression oscillators. Members on bar sets count from start, members on series from
   f, the larger of start and the series' first valid index. A period below 1 is -1 with nothing written. */
#ifndef QVLIB60_INDICATORS_BARSHAPE_H
#define QVLIB60_INDICATORS_BARSHAPE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Balance of power: (close - previous bar's open) / (high - low), 0.0 on bars without height and on
   bar 0, smoothed by the average of the given method (see qvMovingAverage; its error is returned).
   (Elsewhere it is the bar's own open.) First valid start + p; what the average holds before that stays. A
   period that is not below the number of bars is refused by returning that number, with the output left
   cleared.
   Source: after Igor Livshin, "Balance of Market Power", Technical Analysis of Stocks & Commodities,
   2001. */
QVAPI int QVCALL qvBOP(const QvBars* bars, QvArray* out, int method, int p, int start) QVNOEXCEPT;

/* Qstick: the p-period exponential average of close - open (elsewhere the simple one), in price units.
   First valid start.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvQstick(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Intraday momentum index, 0 .. 100: white bodies over all bodies of the last p bars; 0.0 without
   bodies. First valid start + p - 1; fewer bars give one value at the last of them.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvIMI(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Mass index: the sum over p bars (usually 25) of the bars' smoothed height over its own smoothing, both
   exponential averages of 9 bars that start at bar start; around p. (Charts that start the second average
   8 bars later differ at first.) First valid start + p; with fewer bars the last item keeps the partial
   sum.
   Source: Donald Dorsey, "The Mass Index", Technical Analysis of Stocks & Commodities, 1992. */
QVAPI int QVCALL qvMassIndex(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Percentage volume oscillator: qvPriceOscillatorPct of the volume. First valid start + max(p1, p2) - 1, or
   where the averages begin if that is later.
   Source: no published source known. */
QVAPI int QVCALL qvPVO(const QvBars* bars, QvArray* out, int p1, int p2, int method, int start) QVNOEXCEPT;

/* Forecast oscillator, in percent of the item: the item less the value forecast for it by the
   least-squares line through the p items before; no guard against an item of zero. First valid f + p;
   outSignal is its exponential average, first valid f + p.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvForecastOscillator(const QvArray* in, QvArray* out, QvArray* outSignal, int p,
                                      int signalPeriod, int start) QVNOEXCEPT;

/* The items f .. end less one least-squares line through all of them (an end past the series counts as
   its last item). The line is read one step behind its fit, so every value carries one extra slope:
   a straight line of slope g gives g. It looks ahead: every value hangs on all items up to `end`, so it is
   no signal in a backtest. First valid f.
   Source: no published source known. */
QVAPI int QVCALL qvDeTrend(const QvArray* in, QvArray* out, int start, int end) QVNOEXCEPT;

QV_END_DECLS

#endif
