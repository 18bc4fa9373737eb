/* Stochastic oscillators and their kin: closes within their range.

   Common to all: p, k = the bars of a window, the current one included. Functions of a bar set begin at
   start as given (the series' first valid indices do not count); f = the larger of start and the input
   series' first valid index. A period below 1 (or an unknown method of averaging) is -1 with nothing
   written. The methods are those of qvMovingAverage.

   %K = (close - lowest) * 100 / (highest - lowest), 0 at the window's low and 100 at its high. A window
   without a range reads 100.0: fully overbought. */
#ifndef QVLIB60_INDICATORS_STOCHASTICS_H
#define QVLIB60_INDICATORS_STOCHASTICS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* %K of the close within the highest high and the lowest low, 0 .. 100. Reads high, low and close. First
   valid start + p - 1.
   Source: George C. Lane, "Lane's Stochastics", Technical Analysis of Stocks & Commodities, 1984. */
QVAPI int QVCALL qvRawK(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* The exponential average over d bars of qvRawK, 0 .. 100. First valid start + k - 1.
   Source: Lane, 1984, whose averages are simple ones. */
QVAPI int QVCALL qvFastD(const QvBars* bars, QvArray* out, int k, int d, int start) QVNOEXCEPT;

/* The exponential average over d2 bars of qvFastD, 0 .. 100. First valid start + k - 1.
   Source: Lane, 1984, whose averages are simple ones. */
QVAPI int QVCALL qvSlowD(const QvBars* bars, QvArray* out, int k, int d1, int d2, int start) QVNOEXCEPT;

/* %K of a series within its own highest and lowest item, 0 .. 100. First valid f + p - 1.
   Source: after Lane, 1984. */
QVAPI int QVCALL qvStochastic(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* %K of the close within the highest and lowest of all four prices (qvBarStats: zero prices do not count
   as lows), and its average over d bars by `method`. First valid start + k - 1; outD where the average
   begins from there.
   Source: Lane, 1984. */
QVAPI int QVCALL qvStochasticFast(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k, int d,
                                  int start) QVNOEXCEPT;

/* The same %K, averaged over `slowing` bars by `method`, and the average of that over d bars. The
   averages are started at start + k - 1; each begins where its own rules say.
   Source: Lane, 1984. */
QVAPI int QVCALL qvStochasticOscillator(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k,
                                        int slowing, int d, int start) QVNOEXCEPT;

/* Stochastic momentum index: 100 * the close's distance from the middle of its range over half the range,
   both smoothed exponentially over r and then s bars, -100 .. 100, 0.0 without a range; and its
   exponential average over `signal` bars. Reads high, low and close. First valid start + p - 1 for both.
   Source: William Blau, "Stochastic Momentum", Technical Analysis of Stocks & Commodities, 1993. */
QVAPI int QVCALL qvSMI(const QvBars* bars, QvArray* out, QvArray* outSignal, int p, int r, int s, int signal,
                       int start) QVNOEXCEPT;

/* Williams' %R as a positive number: (highest high - close) * 100 / range, 0 at the high, 100 at the low,
   0.0 without a range. (Charts that print it from -100 to 0 show the same number negated.) Reads high,
   low and close. First valid start + p - 1.
   Source: Larry R. Williams, How I Made One Million Dollars ... Last Year ... Trading Commodities, 1973. */
QVAPI int QVCALL qvWilliamsR(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Commodity channel index: the typical price less its average over p bars, divided by 0.015 times the
   mean absolute deviation of the p prices from that average; 0.0 where there is none. Mostly within
   -100 .. 100, not limited to it. (Charts that measure each deviation against the average of its own bar
   differ.) Reads high, low and close. First valid start + p - 1.
   Source: Donald R. Lambert, "Commodity Channel Index", Commodities, 1980. */
QVAPI int QVCALL qvCCI(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
