/* Price transforms, simple changes, and comparisons of two securities by date.

   The comparisons match the bars of two sets by their dates, both ascending. They begin at the first
   bar of bars1 at or after startDate and bars2's first date; when there is none, or bars2 lacks its
   date, they return -9. Values begin at that bar, which is the output's first valid index, and end
   where bars2 runs out; later items are 0.0. The output is as long as bars1. They read both sets' dates
   and closes; dates that do not ascend find no match. */
#ifndef QVLIB60_INDICATORS_TRANSFORMS_H
#define QVLIB60_INDICATORS_TRANSFORMS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* (open + high + low + close) / 4 of each bar, (high + low + close) / 3 where the open is exactly 0.
   In price units. First valid start.
   Source: no published source known. */
QVAPI int QVCALL qvAvgPrices(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* (high + low) / 2 of each bar, in price units. First valid start.
   Source: Steven B. Achelis, Technical Analysis from A to Z, 1995. */
QVAPI int QVCALL qvMedianPrices(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* (high + low + close) / 3 of each bar, in price units. First valid start.
   Source: Achelis, 1995. */
QVAPI int QVCALL qvTypicalPrices(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* (high + low + 2 * close) / 4 of each bar, in price units. First valid start.
   Source: Achelis, 1995. */
QVAPI int QVCALL qvWeightedCloses(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Change since item f in percent of it, unguarded against an item f of 0; f is the larger of start and the
   series' first valid index. First valid f.
   Source: Achelis, 1995. */
QVAPI int QVCALL qvPerformancePct(const QvArray* in, QvArray* out, int start) QVNOEXCEPT;

/* in[i] - in[i - p] from f + p on, f as above. First valid p, whatever f is; items p .. f + p - 1 are 0.0.
   A period below 1 is -1 with nothing written.
   Source: no published source known. */
QVAPI int QVCALL qvDiffValue(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* Comparative strength: bars1's close divided by bars2's, unguarded; at dates that bars2 lacks the last
   value is carried forward. First valid the first matched bar.
   Source: Achelis, 1995. */
QVAPI int QVCALL qvCompStrength(const QvBars* bars1, const QvBars* bars2, QvArray* out,
                                double startDate) QVNOEXCEPT;

/* Comparative strength relative to its value r0 at the first matched bar: (strength - r0) / r0 + 1,
   1.0 at that bar; -1.0 at dates that bars2 lacks. First valid the first matched bar.
   Source: no published source known. */
QVAPI int QVCALL qvCompPerformance(const QvBars* bars1, const QvBars* bars2, QvArray* out,
                                   double startDate) QVNOEXCEPT;

/* w1 * bars1's close - w2 * bars2's; at dates that bars2 lacks the last value is carried forward. First
   valid the first matched bar.
   Source: no published source known. */
QVAPI int QVCALL qvSpread(const QvBars* bars1, const QvBars* bars2, QvArray* out, double w1, double w2,
                          double startDate) QVNOEXCEPT;

QV_END_DECLS

#endif
