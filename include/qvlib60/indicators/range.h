/* Range, efficiency and volatility-system indicators. A period below 1 is -1 with nothing written. Members
   on bar sets read high, low and close. */
#ifndef QVLIB60_INDICATORS_RANGE_H
#define QVLIB60_INDICATORS_RANGE_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Range indicator, 0 .. 100: the stochastic over p bars of the true range (per point of advance on bars
   whose close rose), smoothed by an exponential average. First valid start + p.
   Source: Jack Weinberg, "The Range Indicator", Technical Analysis of Stocks & Commodities, 1995. */
QVAPI int QVCALL qvRangeIndicator(const QvBars* bars, QvArray* out, int p, int smoothing,
                                  int start) QVNOEXCEPT;

/* Polarized fractal efficiency, -100 .. 100: the straight way over the last p items in percent of the
   way travelled, negative when it leads down, smoothed by an exponential average. First valid f + p
   with f the larger of start and the series' first valid index; below it the sums of the ways remain
   when f is above 0, and a series of up to p items keeps a partial sum at its last.
   Source: Hans Hannula, "Polarized Fractal Efficiency", Technical Analysis of Stocks & Commodities,
   1994. */
QVAPI int QVCALL qvPFE(const QvArray* in, QvArray* out, int p, int smoothing, int start) QVNOEXCEPT;

/* Wilder's volatility system: outSIC the significant close (the highest while long, the lowest while
   short), outARC the average true range over p bars times the constant, outStop the stop in force, from
   the previous bar's range, outSignal +1.0 / -1.0 on bars that turn long / short and 0.0 on others; prices
   but for the signal. Usually 7 bars and a constant of 3. The system starts short. With
   m = max(start + p - 2, 0), first valid m, start + p - 1, m + 1, m + 1.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvWellesVolatility(const QvBars* bars, QvArray* outSIC, QvArray* outARC, QvArray* outStop,
                                    QvArray* outSignal, double constant, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
