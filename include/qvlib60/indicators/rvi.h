/* The relative volatility index: the relative strength index with the ten-bar deviation in place of the
   day's move. f is the larger of start and the series' first valid index. A period below 1 is -1 with
   nothing written. */
#ifndef QVLIB60_INDICATORS_RVI_H
#define QVLIB60_INDICATORS_RVI_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* The index of one series, 0 .. 100; 0.0 where no deviation was counted. First valid f + p + 8; fewer
   items give one value at the last of them.
   Source: Donald Dorsey, "The Relative Volatility Index", Technical Analysis of Stocks & Commodities,
   1993. */
QVAPI int QVCALL qvRVIoriginal(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* The mean of the indices of the highs and of the lows, 0 .. 100. First valid as that of the lows,
   start + p + 8 in a whole bar set.
   Source: Donald Dorsey, "Refining the Relative Volatility Index", Technical Analysis of Stocks &
   Commodities, 1995. */
QVAPI int QVCALL qvRVI(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Inertia: qvLstSqrMA of qvRVI over q bars, around 50. First valid start + p + q + 7.
   Source: Dorsey, 1995. */
QVAPI int QVCALL qvInertia(const QvBars* bars, QvArray* out, int p, int q, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
