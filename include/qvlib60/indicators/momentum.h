/* Momentum oscillators: strength indices, rates of change, differences of averages, smoothed changes.

   Common to all: f = the larger of start and the input series' first valid indices, p = a period. A
   period below 1 (or an unknown method of averaging) is -1 with nothing written. Moving sums and
   smoothings start at f; divisions by zero give 0.0 unless a function says otherwise. The methods are
   those of qvMovingAverage.

   Exponential averages are seeded with the first item (see averages.h), Wilder's with the mean of the
   first p moves. Charts that seed exponential averages with a mean, or start Wilder's from nothing at the
   first bar, show other values at first and the same ones later on. */
#ifndef QVLIB60_INDICATORS_MOMENTUM_H
#define QVLIB60_INDICATORS_MOMENTUM_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Chande momentum oscillator: (rises - falls) / (rises + falls) * 100 over the last p moves from bar
   to bar, -100 .. 100, 0.0 where nothing moved; plain sums, not Wilder's smoothing. First valid
   f + p.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvCMO(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* ---- Strength indices ------------------------------------------------------------------------ */

/* Relative strength index: 100 * up / (up + down) of Wilder's averages of the rises and falls from bar
   to bar, 0 .. 100, 0.0 while nothing has moved. First valid f + p. A series that ends before that has one
   value, at its last item, from the sums over the moves that exist.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvRSI(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* Relative momentum index: the same over moves of m bars, 0 .. 100. An m below 1 is -1. First valid
   f + m + p - 1; a shorter series as qvRSI.
   Source: Roger Altman, "Relative Momentum Index: Modifying RSI", Technical Analysis of Stocks &
   Commodities, 1993. */
QVAPI int QVCALL qvRMI(const QvArray* in, QvArray* out, int p, int m, int start) QVNOEXCEPT;

/* Wilder's averages of the rises and of the falls (as positive numbers) from bar to bar, other bars
   counting as 0; in the input's unit. First valid f + p. A series that ends before that has one value, at
   its last item: the plain average of the moves that exist.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvUpAverage(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;
QVAPI int QVCALL qvDownAverage(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* qvStochastic of qvRSI, both over p bars, 0 .. 100; 100.0 where the index did not move. First valid
   f + 2 p - 1.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvStochRSI(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* ---- Rates of change ------------------------------------------------------------------------- */

/* in[i] - in[i - p], in the input's unit. First valid f + p.
   Source: no published source known. */
QVAPI int QVCALL qvMomentum(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* (in[i] - in[i - p]) / in[i - p] * scale, 0.0 where in[i - p] is zero; with a scale of zero the plain
   difference. Scale 100 gives percent. First valid f + p.
   Source: no published source known. */
QVAPI int QVCALL qvRateOfChange(const QvArray* in, QvArray* out, double scale, int p, int start) QVNOEXCEPT;

/* The rate of change of one item: 0.0 when index - p lies below the first valid index, when index is
   at or past the end, when p is below 1, or when the base is zero or not a number; the plain
   difference (whatever the base is) with a scale of zero.
   Source: no published source known. */
QVAPI double QVCALL qvROC(const QvArray* in, int index, int p, double scale) QVNOEXCEPT;

/* a / b, 0.0 where b is zero. First valid the larger of start and the first valid index of a alone.
   Source: no published source known. */
QVAPI int QVCALL qvRatio(const QvArray* a, const QvArray* b, QvArray* out, int start) QVNOEXCEPT;

/* The rate of change over p bars (a fraction) of the strength of bars1 against bars2 (qvCompStrength)
   from the bars at startDate on. Reads both sets' dates and closes. Sets without a common date give 0.0
   throughout. First valid p bars behind the first bar that both sets have.
   Source: no published source known. */
QVAPI int QVCALL qvRSIC(const QvBars* bars1, const QvBars* bars2, QvArray* out, int p,
                        double startDate) QVNOEXCEPT;

/* ---- Differences of averages ----------------------------------------------------------------- */

/* Moving average convergence-divergence with the fixed smoothing constants 0.15 and 0.075, and its
   exponential average of `signal` bars, in the input's unit. First valid f + 1 for both. (Charts that
   begin the signal line where the longer average has seen its whole period differ at first.)
   Source: Gerald Appel, The Moving Average Convergence-Divergence Method, 1979. */
QVAPI int QVCALL qvMACD(const QvArray* in, QvArray* out, QvArray* outSignal, int signal,
                        int start) QVNOEXCEPT;

/* The same with free periods: the exponential averages of the shorter and the longer of p1 and p2 (in
   either order), their difference, its exponential average of `signal` bars, and the crossings of the
   last two (qvCrossOverFill; 1.0, -1.0, 0.0). The crossings leave out the series' last bar. First valid
   f, f, f, f + 1 and f + 1.
   Source: Gerald Appel, The Moving Average Convergence-Divergence Method, 1979. */
QVAPI int QVCALL qvMACDx(const QvArray* in, QvArray* outFast, QvArray* outSlow, QvArray* outMACD,
                         QvArray* outSignal, QvArray* outCross, int p1, int p2, int signal,
                         int start) QVNOEXCEPT;

/* a - b. First valid f over both inputs.
   Source: no published source known. */
QVAPI int QVCALL qvOscillator(const QvArray* a, const QvArray* b, QvArray* out, int start) QVNOEXCEPT;

/* (a - b) * 100 / b, 0.0 where a is zero; a zero in b under another a divides by zero and gives an
   infinity. First valid f over both inputs.
   Source: no published source known. */
QVAPI int QVCALL qvOscillatorPct(const QvArray* a, const QvArray* b, QvArray* out, int start) QVNOEXCEPT;

/* qvOscillator and qvOscillatorPct of the averages of in over p1 and p2 bars. First valid
   start + max(p1, p2) - 1, or where the averages begin if that is later.
   Source: no published source known. */
QVAPI int QVCALL qvPriceOscillator(const QvArray* in, QvArray* out, int p1, int p2, int method,
                                   int start) QVNOEXCEPT;
QVAPI int QVCALL qvPriceOscillatorPct(const QvArray* in, QvArray* out, int p1, int p2, int method,
                                      int start) QVNOEXCEPT;

/* Detrended price: in[i] less the average of the p items that end k = p / 2 + 1 bars later. It looks
   ahead: a value is known k bars after its own bar, so it is no signal in a backtest. (Other charts
   subtract an average that ended before.) The last k bars have no value: the output is k items shorter
   than the input (of size 0 and first valid 0 when the input has fewer than k). First valid
   f + p - k - 1, at least 0. With a period of 1 the average is the sum of the first item and the one
   that the window ends with.
   Source: no published source known. */
QVAPI int QVCALL qvDPO(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* ---- Smoothed changes ------------------------------------------------------------------------ */

/* The change of a triple exponential average from bar to bar, in percent of its new value (elsewhere of
   the old one), without a guard for zero. First valid f + 1.
   Source: Jack K. Hutson, "Good TRIX", Technical Analysis of Stocks & Commodities, 1983. */
QVAPI int QVCALL qvTRIX(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* True strength index: the moves from bar to bar, smoothed exponentially over r and then s bars, divided
   by their absolute values smoothed alike; -1 .. 1, not scaled by 100. First valid f + 1.
   Source: William Blau, "True Strength Index", Technical Analysis of Stocks & Commodities, 1991. */
QVAPI int QVCALL qvTSI(const QvArray* in, QvArray* out, int r, int s, int start) QVNOEXCEPT;

/* Ultimate oscillator: buying pressure (close less true low) over true range, averaged over p1, p2 and
   p3 bars and weighted 4, 2, 1; p1 is meant to be the shortest. A fraction, 0 .. 1, not a percentage; 0.0
   where one of the three parts is zero. Reads high, low and close. First valid m = max(p1, p2, p3),
   whatever start is: items from start up to there are 0.0. After a start above 0 the values begin at
   start + m - 1; a series that ends before keeps a value of partial sums at its last item.
   Source: Larry Williams, "The Ultimate Oscillator", Technical Analysis of Stocks & Commodities, 1985. */
QVAPI int QVCALL qvUltimateOsc(const QvBars* bars, QvArray* out, int p1, int p2, int p3,
                               int start) QVNOEXCEPT;

QV_END_DECLS

#endif
