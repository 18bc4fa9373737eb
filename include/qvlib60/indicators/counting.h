/* Counting and accumulation indicators. Members on bar sets count from start, members on series from
   f, the larger of start and the inputs' first valid indices. A period below 1 is -1 with nothing
   written. */
#ifndef QVLIB60_INDICATORS_COUNTING_H
#define QVLIB60_INDICATORS_COUNTING_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Psychological line, 0 .. 100: the share of rises among the last p changes. First valid f + p, which
   holds 0.0 itself: the values begin one bar later.
   Source: no published source known. */
QVAPI int QVCALL qvPsychologyLine(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

/* Williams' accumulation/distribution, in price units: the running sum of how far the close stands
   above the true low on rises, or below the true high on falls. 0.0 at start, first valid start + 1.
   Source: Larry R. Williams, How I Made One Million Dollars ... Last Year ... Trading Commodities, 1973. */
QVAPI int QVCALL qvWilliamsAD(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* Price-volume rank: 1.0 price and volume up, 2.0 price up on falling volume, 3.0 both down, 4.0 price
   down on rising volume; ties count as rises. First valid start + 1.
   Source: Anthony J. Macek, "Price and Volume Rank", Technical Analysis of Stocks & Commodities,
   1994. */
QVAPI int QVCALL qvPVrank(const QvBars* bars, QvArray* out, int start) QVNOEXCEPT;

/* The simple average of a less that of b over p bars, in the inputs' unit. First valid f + p - 1.
   Source: no published source known. */
QVAPI int QVCALL qvLineOsc(const QvArray* a, const QvArray* b, QvArray* out, int p, int start) QVNOEXCEPT;

/* qvRSI stretched to -100 .. 100. First valid as qvRSI; items from start + p (the caller's start) on
   are stretched, so on a series that becomes valid later some items below the first valid index hold
   -100.0.
   Source: after J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI int QVCALL qvNMO(const QvArray* in, QvArray* out, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
