/* Bar compression: coarser bars out of finer ones, by calendar period, by time and rolling.
   Included by dates.h.

   An empty output is allocated with the input's capacity (-3 when memory runs out); an output that has
   blocks is reused. One with less room than there are groups gets as many as it holds: look at its barsize.
   Input and output may be the same bar set. All functions return -1 for a null record and for missing
   series; those from bars to bars need all seven in both sets. */
#ifndef QVLIB60_DATES_COMPRESS_H
#define QVLIB60_DATES_COMPRESS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Compresses by calendar period: QV_FREQ_DAILY (2), QV_FREQ_WEEKLY (3, Monday to Sunday), QV_FREQ_MONTHLY
   (4), QV_FREQ_QUARTERLY (5), QV_FREQ_YEARLY (6); any other frequency is -1. Takes the bars from the first
   at or after startDate, which always makes a group, to the last up to endDate (0 = the input's last bar).
   Each group is dated and closed by its last bar; volume and open interest are summed. The bar information
   is copied and its frequency set. When both sets share their blocks, both describe the compressed set
   afterwards. */
QVAPI int QVCALL qvGroupBarsDate(QvBars* in, QvBars* out, int frequency, double startDate,
                                 double endDate) QVNOEXCEPT;

/* The same for groups that last `seconds` from the time of their first bar, or end with the day. A time
   of day counts in whole seconds. The frequency stays as it is. */
QVAPI int QVCALL qvGroupBarsTime(QvBars* in, QvBars* out, double seconds, double startDate,
                                 double endDate) QVNOEXCEPT;

/* Sums a series per calendar period of the bars in `dates` (frequencies as above; any other is -1).
   Items below in's first valid index do not count: groups of nothing else are 0.0, and the first group
   that counts an item is the output's first valid index. May run in place. */
QVAPI int QVCALL qvGroupArray(const QvBars* dates, const QvArray* in, QvArray* out, int frequency) QVNOEXCEPT;

/* Summarises the p bars that end at `index`, or as many as there are: first open, highest high, lowest
   low, last close, sums of volume and open interest. Items of the highs, lows, volumes and open interest
   below their series' first valid index do not count; 0.0 where none is left. -1 for an index outside
   the set, a period below 1 and a null pointer. */
QVAPI int QVCALL qvGroupBars(const QvBars* in, double* open, double* high, double* low, double* close,
                             double* volume, double* openInterest, int p, int index) QVNOEXCEPT;

/* Rolling compression: bar i becomes qvGroupBars of the p bars that end at it, dated as bar i. Bars below
   start stay as they are. -1 for a period below 1. */
QVAPI int QVCALL qvGroupBarsPeriods(const QvBars* in, QvBars* out, int p, int start) QVNOEXCEPT;

/* qvGroupBarsPeriods under a second name. */
QVAPI int QVCALL qvGroupBarsArray(const QvBars* in, QvBars* out, int p, int start) QVNOEXCEPT;

QV_END_DECLS

#endif
