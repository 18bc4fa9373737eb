/* Moving averages and smoothing sums of one series.

   Common to all: s = the larger of start and the input's first valid index, p = the period. Values are
   in the input's unit. A period below 1 (or not a number) is -1 with nothing written. Periods longer than
   the series are fine: there is no value then but the ones that a function names. Functions that run in
   place (output and input the same block) leave the items below s as they are; into another output these
   are 0.0.

   The exponential averages start at the first item itself. Charts whose averages start with the mean of
   the first p items show other values at first and the same ones later on. */
#ifndef QVLIB60_INDICATORS_AVERAGES_H
#define QVLIB60_INDICATORS_AVERAGES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- Averages by method ---------------------------------------------------------------------- */

/* The average of a method code: QV_MA_EXPONENTIAL (0) qvExpMA, QV_MA_LEAST_SQUARES (1) qvLstSqrMA,
   QV_MA_SIMPLE (2) qvSimpleMA, QV_MA_WEIGHTED (3) qvWeightedMA, QV_MA_WILDER (4) qvWellesMA,
   QV_MA_TRIANGULAR (5) qvTriangularMA, QV_MA_VARIABLE (6) qvVariableMA, QV_MA_ZERO_LAG (7)
   qvZeroLagExpMA. First valid, results and running in place are the chosen average's. Another code is -1
   with nothing written.
   Source: that of the average. */
QVAPI int QVCALL qvMovingAverage(const QvArray* in, QvArray* out, int method, int period,
                                 int start) QVNOEXCEPT;

/* ---- Averages over the last p items ---------------------------------------------------------- */

/* Simple average. First valid s + p - 1. When fewer than p items exist, their sum divided by p stands
   in the last item; with a start beyond the end that item is 0.0, in place too. Runs in place.
   Source: no published source known. */
QVAPI int QVCALL qvSimpleMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Running sum. First valid s + p - 1. When fewer than p items exist, their sum stands in the last item;
   with a start beyond the end that item is 0.0, in place too. Runs in place.
   Source: no published source known. */
QVAPI int QVCALL qvMovingSum(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Linearly weighted average: the newest item weighs p, the oldest 1. First valid s + p - 1.
   Source: no published source known. */
QVAPI int QVCALL qvWeightedMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Least-squares forecast: the window's regression line one bar beyond its end. (Charts that show the line
   at the window's last bar itself differ by its slope.) First valid s + p - 1.
   Source: no published source known. */
QVAPI int QVCALL qvLstSqrMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Simple average of a simple average: over (p + 1) / 2 items twice when p is odd, over p / 2 and then
   p / 2 + 1 when it is even. First valid s + p - 1; the last item holds what the second average leaves
   there also when fewer than p items exist.
   Source: no published source known. */
QVAPI int QVCALL qvTriangularMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* ---- Exponential smoothing ------------------------------------------------------------------- */

/* Exponential average, smoothing constant 2 / (p + 1), seeded with the first input. First valid s.
   Runs in place.
   Source: Robert G. Brown, Statistical Forecasting for Inventory Control, 1959, for the smoothing. */
QVAPI int QVCALL qvExpMA(const QvArray* in, QvArray* out, double period, int start) QVNOEXCEPT;

/* Exponential average of in[i] + (in[i] - in[i - L]), L = (p - 1) / 2 truncated and at least 1, which
   makes up for the average's lag. Seeded with in[s]; first valid s + L - 1. (Elsewhere the seed is the
   item of that bar, in[s + L - 1], or a simple average.)
   Source: John F. Ehlers and Ric Way, "Zero Lag (Well, Almost)", Technical Analysis of Stocks &
   Commodities, 2010. */
QVAPI int QVCALL qvZeroLagExpMA(const QvArray* in, QvArray* out, double period, int start) QVNOEXCEPT;

/* Double exponential average 2 e1 - e2, where e2 smooths e1 from the same bar on. First valid s + 1; item
   s holds the seed in[s]. (Charts that start e2 p - 1 bars later differ at first.)
   Source: Patrick G. Mulloy, "Smoothing Data with Faster Moving Averages", Technical Analysis of Stocks &
   Commodities, 1994. */
QVAPI int QVCALL qvDEMA(const QvArray* in, QvArray* out, double period, int start) QVNOEXCEPT;

/* Triple exponential average 3 e1 - 3 e2 + e3, started as qvDEMA. First valid s + 1; item s holds the seed
   in[s].
   Source: Patrick G. Mulloy, "Smoothing Data with Faster Moving Averages", Technical Analysis of Stocks &
   Commodities, 1994. */
QVAPI int QVCALL qvTEMA(const QvArray* in, QvArray* out, double period, int start) QVNOEXCEPT;

/* Generalised double smoothing (1 + v) e1 - v e2, applied `passes` times over (the T3 average has 3 passes
   and v = 0.7). volumeFactor v is kept within 0 .. 1 (not a number counts as 0): 0 is the exponential
   average, 1 the double exponential one. passes below 1 counts as 1, above 10,000 as 10,000. First
   valid s.
   Source: Tim Tillson, "Smoothing Techniques for More Accurate Signals", Technical Analysis of Stocks &
   Commodities, 1998. */
QVAPI int QVCALL qvT3(const QvArray* in, QvArray* out, double period, double volumeFactor, int passes,
                      int start) QVNOEXCEPT;

/* Wilder's average: the plain average of the first p items, then ((p - 1) * previous + in[i]) / p. First
   valid s + p - 1. When fewer than p items exist, their sum divided by p stands in the last item. Runs in
   place.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvWellesMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Wilder's smoothed sum: the plain sum of the first p items, then previous - previous / p + in[i]. First
   valid s + p - 1. When fewer than p items exist, their sum stands in the last item. Runs in place.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvWellesSum(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* One step of exponential smoothing: previous + 2 / (period + 1) * (value - previous); the period is not
   checked. */
QVAPI double QVCALL qvEMA(double previous, double value, double period) QVNOEXCEPT;

/* The smoothing constant of a period, 2 / (period + 1), and the period of a smoothing constant,
   (2 - exponent) / exponent; neither argument is checked. */
QVAPI double QVCALL qvPeriodToExp(double period) QVNOEXCEPT;
QVAPI double QVCALL qvExpToPeriod(double exponent) QVNOEXCEPT;

/* ---- Averages that follow the market --------------------------------------------------------- */

/* Variable index dynamic average: an exponential average whose constant is multiplied by the absolute
   value of the Chande momentum oscillator (qvCMO, of plain sums) as a fraction. First valid
   m = s + cmoPeriod, 13 bars more when cmoPeriod is exactly 9; item m - 1 holds the seed in[m - 1]. A
   cmoPeriod below 1 is -1. Averages by an oscillator that is smoothed as Wilder does differ.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvVIDYA(const QvArray* in, QvArray* out, int cmoPeriod, int period, int start) QVNOEXCEPT;

/* qvVIDYA with an oscillator of 9 bars. First valid s + 22; item s + 21 holds the seed.
   Source: Tushar S. Chande and Stanley Kroll, The New Technical Trader, 1994. */
QVAPI int QVCALL qvVariableMA(const QvArray* in, QvArray* out, int period, int start) QVNOEXCEPT;

/* Average of the prices weighted with their volumes; 0.0 where the window has no volume. First valid
   s + p - 1, s over both inputs.
   Source: no published source known. */
QVAPI int QVCALL qvVolAdjustedMA(const QvArray* price, const QvArray* volume, QvArray* out, int period,
                                 int start) QVNOEXCEPT;

QV_END_DECLS

#endif
