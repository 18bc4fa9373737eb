/* Bar formations, crossovers and turns: signals of one bar, and series of such signals.

   Signals are +1 (bullish, upward), -1 (bearish, downward) and 0; series hold them as doubles.
   Comparisons are strict, so equal prices never make a formation. The single-bar tests compare bar i
   with the bar before: 0 at bar 0 and wherever there is no such bar or a series is missing; -1 for a
   null record.

   The fill functions clear or allocate their output as the indicators do (indicators.h), and return -1 for
   missing data (the dates, too, for a bar set) or an output that shares an input's block, -3 when memory
   runs out. */
#ifndef QVLIB60_PATTERNS_FORMATIONS_H
#define QVLIB60_PATTERNS_FORMATIONS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Close-price reversal: an outside bar that closes above the previous high (+1) or below the previous
   low (-1).
   Source: no published source known. */
QVAPI int QVCALL qvCPR(const QvBars* b, int i) QVNOEXCEPT;

/* A low above the previous high (+1), a high below the previous low (-1).
   Source: Robert D. Edwards and John Magee, Technical Analysis of Stock Trends, 1948. */
QVAPI int QVCALL qvGap(const QvBars* b, int i) QVNOEXCEPT;

/* A downward gap whose bar closes more than 0.7 of its range above its low (+1); an upward gap whose
   bar closes more than 0.7 of its range below its high (-1).
   Source: after Edwards and Magee, 1948, whose island lies between two gaps. */
QVAPI int QVCALL qvIslandReversal(const QvBars* b, int i) QVNOEXCEPT;

/* A lower high and a higher low (1).
   Source: no published source known. */
QVAPI int QVCALL qvInsideBar(const QvBars* b, int i) QVNOEXCEPT;

/* A lower low and a higher close (+1); failing that, a higher high and a lower close (-1).
   Source: Edwards and Magee, 1948. */
QVAPI int QVCALL qvKeyReversal(const QvBars* b, int i) QVNOEXCEPT;

/* A higher high and a lower low (1).
   Source: no published source known. */
QVAPI int QVCALL qvOutsideBar(const QvBars* b, int i) QVNOEXCEPT;

/* The signals of bars first .. last (both inclusive; last is limited to the last bar) of the formation
   named: "qvCPR", "qvGap", "qvGapDown" (1 on a downward gap), "qvGapUp", "qvIslandReversal",
   "qvInsideBar", "qvKeyReversal" or "qvOutsideBar", in any case. Returns the number of bars that
   signal; -1 for an unknown name, with the output cleared. First valid: first (below 0 counts as 0).
   Source: that of the formation. */
QVAPI int QVCALL qvFormationFill(const QvBars* bars, QvArray* out, const char* name, int first,
                                 int last) QVNOEXCEPT;

/* a comes from below b to b or above it (+1), from above b to b or below it (-1), at item i; 0 at item
   0 and outside either series, -1 for a null record. Equal series never cross. (Elsewhere a has to come out
   on the other side; here it is enough to meet b.)
   Source: no published source known. */
QVAPI int QVCALL qvCrossOver(const QvArray* a, const QvArray* b, int i) QVNOEXCEPT;

/* qvCrossOver of items f + 1 .. end - 1 with f the larger of start and both inputs' first valid
   indices: `end` is exclusive. First valid f, whose own item is 0.0.
   Source: no published source known. */
QVAPI int QVCALL qvCrossOverFill(const QvArray* a, const QvArray* b, QvArray* out, int start,
                                 int end) QVNOEXCEPT;

/* Item i lies above a lower item i - 1 (a trough, +1) or below a higher one (a peak, -1): the item
   between its neighbours is the extreme. 0 at items 0 and 1, outside the series and at flat pairs; -1
   for a null record.
   Source: no published source known. */
QVAPI int QVCALL qvTurn(const QvArray* a, int i) QVNOEXCEPT;

/* qvTurn of items f + 2 .. end with f the larger of start and the input's first valid index: `end` is
   inclusive. First valid f; items f and f + 1 are 0.0.
   Source: no published source known. */
QVAPI int QVCALL qvTurnFill(const QvArray* in, QvArray* out, int start, int end) QVNOEXCEPT;

QV_END_DECLS

#endif
