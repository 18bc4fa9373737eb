/* Array utilities: scaling, shifting, division, interpolation, look-ups and per-bar price formulas.
   Included by core.h, which defines the records.

   The functions with an output behave as the indicators do: s is the larger of start (below 0 counts
   as 0) and the inputs' first valid indices, an empty output is allocated, another is cleared and
   reused up to its room (indicators.h); -1 for missing data or an output that shares an input's block
   (unless the function may run in place), -3 when memory runs out. All this is arithmetic: a source is
   told only where there is one. */
#ifndef QVLIB60_CORE_ARRAYS_H
#define QVLIB60_CORE_ARRAYS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Maps oldMin .. oldMax linearly onto newMin ..: out = (in - oldMin) * ratio + newMin from s on, with
   ratio = |newMax - newMin| / |oldMax - oldMin|, so that a reversed target range is not flipped. When
   oldMin and oldMax are both 0 (or not a number) they become the minimum and maximum of in from s to its
   end, which looks ahead; skipZeros passes over zeros in the search for the minimum (the item at s
   excepted). A range of no width divides by zero: not-a-number or infinities throughout, not-a-number for a
   constant series that is scaled by its own bounds. May run in place. The first valid index of out is not
   set. */
QVAPI int QVCALL qvScaleArray(const QvArray* in, QvArray* out, double oldMin, double oldMax, double newMin,
                              double newMax, int skipZeros, int start) QVNOEXCEPT;

/* Moves the items by k places within the block. Towards the end (k > 0) the size grows up to the
   capacity, items beyond it are lost and the freed places become 0.0; towards the start (k < 0) the
   first items are lost and the size shrinks. firstValid moves along within 0 .. capacity. */
QVAPI void QVCALL qvShiftArray(QvArray* a, int k) QVNOEXCEPT;

/* out = mult * in + add from s on. May run in place. The first valid index of out is not set. */
QVAPI int QVCALL qvMultAddArray(const QvArray* in, QvArray* out, double mult, double add,
                                int start) QVNOEXCEPT;

/* out = a / b * factor, 0.0 where b is 0. First valid s. */
QVAPI int QVCALL qvDivide(const QvArray* a, const QvArray* b, QvArray* out, double factor,
                          int start) QVNOEXCEPT;

/* The values at the marked items (marks not 0) and at the last item, joined by straight lines. The
   first line starts at item 0 also when s is later; out[0] is then 0.0, and the items of that line
   below s are written. A line needs its end, so every value looks ahead to the next mark. First valid s. */
QVAPI int QVCALL qvFillInterval(const QvArray* values, const QvArray* marks, QvArray* out,
                                int start) QVNOEXCEPT;

/* The first bar whose date is at or after `date`, barsize when there is none; -1 for a null record or
   a bar set without dates. */
QVAPI int QVCALL qvFindDate(const QvBars* b, double date) QVNOEXCEPT;

/* The first item from firstValid on that is not 0.0; 0 when there is none, -1 for a null record. */
QVAPI int QVCALL qvFirstNonZeroItem(const QvArray* a) QVNOEXCEPT;

/* The sum of the `count` items that end at index, as far as they lie at or above firstValid; items
   past the end count as 0.0. */
QVAPI double QVCALL qvSumPrev(const QvArray* a, int count, int index) QVNOEXCEPT;

/* The fraction of |x| as an integer of `digits` decimal digits: qvDecimals(12.5, 2) is 50. Truncated,
   so a fraction stored a hair below its decimal value loses one in the last digit; a fraction of at
   most the machine epsilon is 0. */
QVAPI int QVCALL qvDecimals(double x, int digits) QVNOEXCEPT;

/* Prices of bar i; 0.0 when i is outside 0 .. barsize - 1 or a series that is read is missing.
   The true high is the larger of the high and the previous close, the true low the smaller of the low
   and the previous close; bar 0 has its own high and low.
   Source: J. Welles Wilder Jr., New Concepts in Technical Trading Systems, 1978. */
QVAPI double QVCALL qvTrueHigh(const QvBars* b, int i) QVNOEXCEPT;
QVAPI double QVCALL qvTrueLow(const QvBars* b, int i) QVNOEXCEPT;
/* True high less true low.
   Source: Wilder, 1978. */
QVAPI double QVCALL qvTrueRange(const QvBars* b, int i) QVNOEXCEPT;
/* (high + low + close) / 3 */
QVAPI double QVCALL qvTypicalPrice(const QvBars* b, int i) QVNOEXCEPT;
/* (high + low + 2 * close) / 4 */
QVAPI double QVCALL qvWeightedClose(const QvBars* b, int i) QVNOEXCEPT;
/* (high + low) / 2 */
QVAPI double QVCALL qvMedianPrice(const QvBars* b, int i) QVNOEXCEPT;

QV_END_DECLS

#endif
