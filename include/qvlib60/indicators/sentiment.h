/* Sentiment and ray indicators. Each refuses a period (for qvSONAR the sum of its two) that is not
   below the number of bars by returning that number, which is positive and no error code, with the
   output left cleared: treat any result but 0 as a refusal. A period below 1 is -1 with nothing written.
   Members on bar sets count from start, qvSONAR from f, the larger of start and the series' first valid
   index. */
#ifndef QVLIB60_INDICATORS_SENTIMENT_H
#define QVLIB60_INDICATORS_SENTIMENT_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Popularity ratio, in percent: the bars' reach above their opens over that below; 0.0 where the
   latter is zero. The sums hold bar start for good and the p - 1 newest bars. First valid
   start + p - 1.
   Source: no published source known. */
QVAPI int QVCALL qvAR(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Willingness ratio, in percent: reach above over reach below the previous close, over the p - 1 newest
   bars; 0.0 where the latter is zero. First valid start + p.
   Source: no published source known. */
QVAPI int QVCALL qvBR(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* Elder ray, in price units: the high (bull power) or the low (bear power) less the p-period
   exponential average of the closes (usually 13 bars). First valid start.
   Source: Alexander Elder, Trading for a Living, 1993. */
QVAPI int QVCALL qvERAYBull(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;
QVAPI int QVCALL qvERAYBear(const QvBars* bars, QvArray* out, int p, int start) QVNOEXCEPT;

/* The change over `lag` bars, in percent, of the p-period exponential average; 0.0 where its base is
   zero. A lag below 0 is -1. First valid f + p + lag.
   Source: Okamoto; no publication known. */
QVAPI int QVCALL qvSONAR(const QvArray* in, QvArray* out, int p, int lag, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
