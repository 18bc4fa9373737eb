/* Trend and directional indicators. Members on bar sets count from start, members on a series from f, the
   larger of start and the series' first valid index. A period below 1 is -1 with nothing written.
   Divisions without a guard give the floating-point result as it comes. All members on bar sets read high
   and low, all but qvDMIx and the two of Aroon also the close, the swing indices the open too.

   Wilder's sums and averages begin at the first bar that has a value: true ranges at bar start, movements
   at bar start + 1. Published tables that leave the first bar's range out, or begin the movements a bar
   earlier with 0, show other values at first and the same ones later on. */
#ifndef QVLIB60_INDICATORS_TREND_H
#define QVLIB60_INDICATORS_TREND_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* True range: the largest of high - low, |high - previous close| and |low - previous close|; on the
   first bar the height of the bar. In price units. First valid start.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvTR(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Average true range: the true range smoothed by qvWellesMA over p bars, in price units. First valid
   start + p - 1; with fewer bars the last item keeps the partial sum over p.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvATR(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Directional movement of each bar, in price units: how far its range reaches above (plus) or below
   (minus) the previous one, the larger of the two only; both 0.0 on inside bars and on equal
   movements. First valid start + 1.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvDMIx(const QvBars* bars, QvArray* outPlusDM, QvArray* outMinusDM, int start) QVNOEXCEPT;

/* Directional indicators +DI and -DI, 0 .. 100: the movements smoothed by qvWellesSum over p bars, as
   a percentage of the true range smoothed alike (whose sum begins one bar earlier); 0.0 where that is
   zero. First valid start + p. With fewer bars the last item keeps the partial sum of the movement.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvDI(const QvBars* bars, QvArray* outPlusDI, QvArray* outMinusDI, int p,
                      int start) QVNOEXCEPT;

/* Directional movement index, 0 .. 100: |+DI - -DI| as a percentage of their sum; 0.0 where they are
   equal. First valid start + p.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvDX(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Average directional movement index, 0 .. 100: qvDX smoothed by qvWellesMA. First valid
   start + dxPeriod + adxPeriod - 1; with fewer bars the last item keeps the partial sum over adxPeriod.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvADX(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int start) QVNOEXCEPT;

/* Directional movement rating, 0 .. 100: the mean of qvADX and of its value lag bars before. A lag
   below 0 is -1. First valid start + dxPeriod + adxPeriod + lag - 1.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvADXR(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int lag,
                        int start) QVNOEXCEPT;

/* Dynamic momentum index, 0 .. 100: a relative strength of plain sums whose look-back of 3 .. 30 bars
   shortens as the 5-bar deviation rises above its 10-bar mean; 0.0 where nothing moved. First valid f + 30.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvDMI(const QvArray* in, QvArray* out, int start) QVNOEXCEPT;

/* Parabolic stop-and-reverse. outSAR is the stop in force when the bar opened, on a reversal bar the
   new side's first stop, in price units; outDirection is +1.0 (long) or -1.0 (short) after the bar.
   Reversals are decided on the close, and a close on the stop reverses (in Wilder's own rule the bar's
   range has to touch the stop); the new side's extreme begins at the reversal bar's near end. step and
   maximum govern the acceleration (Wilder: 0.02 and 0.2). First valid start + 2 for both.
   Source: after Wilder, 1978. */
QVAPI int QVCALL qvSAR(const QvBars* bars, QvArray* outSAR, QvArray* outDirection, double step,
                       double maximum, int start) QVNOEXCEPT;

/* Aroon up and down, 0 .. 100: how recently the highest high and the lowest low of the last p + 1 bars
   were made, 100 on the bar itself; the earliest of equal extremes counts (elsewhere the latest). First
   valid start + p.
   Source: Tushar S. Chande, "A Time Price Oscillator", Technical Analysis of Stocks & Commodities,
   1995. */
QVAPI int QVCALL qvAroon(const QvBars* bars, QvArray* outUp, QvArray* outDown, int p, int start) QVNOEXCEPT;

/* Aroon up minus Aroon down, -100 .. 100. First valid start + p.
   Source: Chande, 1995. */
QVAPI int QVCALL qvAroonOscillator(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Vertical horizontal filter: the range of the last p items over the sum of their relative changes (a
   price distance over a pure number, so the level of the series matters; elsewhere the changes are
   absolute ones); 0.0 where the sum is zero. First valid f + p; a shorter series gets its value at the
   last item.
   Source: Adam White, in Futures, 1991. */
QVAPI int QVCALL qvVHF(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* Random walk index of the highs and of the lows: the largest, over look-backs of 2 .. p bars, of the
   distance travelled over what a random walk of that many average ranges would have travelled; never
   below 0. The ranges are those of the bars before, averaged plainly, and a gap above the previous close
   does not widen them (elsewhere they reach up to the bar itself and are averaged as Wilder does). Costs p
   steps per bar. First valid start + p.
   Source: E. Michael Poulos, "Of Trends and Random Walks", Technical Analysis of Stocks &
   Commodities, 1991. */
QVAPI int QVCALL qvRWI(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int p, int start) QVNOEXCEPT;

/* Zigzag: straight lines between the swings of the series that exceed the threshold, a percentage when
   mode is QV_ZIGZAG_PERCENT (1), else a fraction. It looks ahead: a line is known when the swing at its
   end is, so it is no signal in a backtest. The last leg runs to the last item whatever its size. First
   valid f; as lines are drawn from the first item of the series on, items between it and f are filled too.
   Source: Arthur A. Merrill, Filtered Waves: Basic Theory, 1977. */
QVAPI int QVCALL qvZigZag(const QvArray* in, QvArray* out, double threshold, int mode, int start) QVNOEXCEPT;

/* Swing index, -100 .. 100 on a limited market: the bar's change from the previous one, weighed
   against the limit move (in price units; a limit of 0 divides by zero); 0.0 on a bar that did not move
   at all. First valid start + 1.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) QVNOEXCEPT;

/* Running sum of qvSwingIndex. First valid start + 1.
   Source: Wilder, 1978. */
QVAPI int QVCALL qvAccumSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) QVNOEXCEPT;

/* Trend score, -p .. p: rises (ties included) less falls over the last p items. First valid f + p; a
   shorter series gets its score at the last item.
   Source: Tushar S. Chande, "Rating Trend Strength", Technical Analysis of Stocks & Commodities,
   1993. */
QVAPI int QVCALL qvTrendScore(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
