/* Streams: calculations and formulas that take one bar at a time. What a stream gives is what the same call
   over the whole series gives, bit for bit, at every bar from the first valid index on, however the bars are
   cut into updates. docs/streams.md has the whole story.

   A stream is opened by an entry of the catalogue, or as a formula, and must be closed. Its memory depends on
   the periods, not on the number of bars; an update costs the same whatever the period, but for a short burst
   once in a period. One stream is for one thread at a time; different streams know nothing of each other.

   Values come in as pointers to series: values[0 .. 6] to the dates, opens, highs, lows, closes, volumes and
   open interest of the bar set, where a calculation takes two values[7 .. 13] to those of the second one, and
   behind the bar sets one pointer for each single series. Series that are not read may be null
   (QvCatalogueEntry.series names those of bar sets that are). Outputs are pointers too, one for each output;
   null ones are left out. So a bar of a host's own series goes in by their ends: &close[i], and out
   to &sma[i]. Inputs count as valid from their first bar on.

   Outputs that look at later bars have no value in a stream and are 0.0. Calculations that match two bar sets
   by their dates take bars side by side: with each bar of the first set that of the second of the same date,
   or one of any other date where there is none. */
#ifndef QVLIB60_STREAM_H
#define QVLIB60_STREAM_H

#include "qvlib60/catalogue.h"
#include "qvlib60/formula.h"

QV_BEGIN_DECLS

typedef struct QvStream QvStream;

/* Opens a stream of a calculation: parameters and start as for qvCatalogueCall. -1: null, no entry, or
   parameters that the calculation refuses; -10: every output looks at later bars (QV_CALC_NO_STREAM); -3. The
   stream is null but after 0. */
QVAPI int QVCALL qvStreamOpen(const QvCatalogueEntry* entry, const double* params, int start,
                              QvStream** stream) QVNOEXCEPT;

/* The same for a formula with its parameters as they are set; it has one output, and the formula may be
   closed or changed at once. weekly(...) and the like take their bars as these are complete, never before.
   -1: a parameter without a value, or one that is refused; -10: a part looks at later bars; -3. */
QVAPI int QVCALL qvStreamOpenFormula(const QvFormula* formula, QvStream** stream) QVNOEXCEPT;

/* Takes `count` new bars and gives their values. -1: a null pointer, a count below 0, a series that is read
   is missing; -3: memory ran out, and the stream is as it was. */
QVAPI int QVCALL qvStreamUpdate(QvStream* stream, const double* const* values, int count,
                                double* const* outputs) QVNOEXCEPT;

/* The values if the forming bar closed as it stands: those of one more bar, which is not kept. -1, -3 as
   above. */
QVAPI int QVCALL qvStreamPeek(QvStream* stream, const double* const* values,
                              double* const* outputs) QVNOEXCEPT;

/* Corrects the last bar and gives its values anew. -9 where there is no bar yet; -1, -3 as above. */
QVAPI int QVCALL qvStreamReplaceLast(QvStream* stream, const double* const* values,
                                     double* const* outputs) QVNOEXCEPT;

/* The number of bars so far, those taken back by a correction counted once; INT32_MAX for any more. */
QVAPI int QVCALL qvStreamBars(const QvStream* stream) QVNOEXCEPT;

/* The number of outputs, and the first bar that has a value: the first valid index of the same call over
   inputs that are valid from bar 0. -1 where the data decide (two sets matched by date, weeks of a formula)
   and it has not come yet; INT32_MAX for an output that looks at later bars. */
QVAPI int QVCALL qvStreamOutputCount(const QvStream* stream) QVNOEXCEPT;
QVAPI int QVCALL qvStreamFirstValid(const QvStream* stream, int output) QVNOEXCEPT;

/* A second stream in the same state. -3: memory ran out; `copy` is null but after 0. */
QVAPI int QVCALL qvStreamCopy(QvStream* stream, QvStream** copy) QVNOEXCEPT;

/* Writes the state as a block of bytes, the same on every platform, and answers how many it takes; nothing
   is written where `size` is less (0 asks for the size). -1, -3. */
QVAPI int QVCALL qvStreamSave(QvStream* stream, void* block, int size) QVNOEXCEPT;

/* Opens a stream in the state that was saved; the block is not needed any more. -1: null; -4: the block is
   damaged, in whatever way; -10: it was written by another version; -3; `stream` is null but after 0. */
QVAPI int QVCALL qvStreamLoad(const void* block, int size, QvStream** stream) QVNOEXCEPT;

/* Frees the stream; null is fine. */
QVAPI void QVCALL qvStreamClose(QvStream* stream) QVNOEXCEPT;

QV_END_DECLS

#endif
