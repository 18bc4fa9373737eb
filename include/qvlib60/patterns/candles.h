/* The candle engine: every bar of a bar set classified once by colour, body and shadows, single
   fields of that classification, body and gap comparisons of neighbouring bars, and a signal series
   of one named pattern. */
#ifndef QVLIB60_PATTERNS_CANDLES_H
#define QVLIB60_PATTERNS_CANDLES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QV_PACK_POINTERS

/* One bar, four bytes. */
typedef struct QvCandle {
  int8_t colour;       /* QV_CANDLE_FLAT 0 (open equals close), QV_CANDLE_BLACK 1 (open above close),
                          QV_CANDLE_WHITE 2 */
  int8_t shape;        /* QV_BODY_DOJI 0, QV_BODY_SMALL 1, QV_BODY_LONG 3 (2 is never produced) */
  int8_t topShadow;    /* QV_SHADOW_SHORT 1, QV_SHADOW_NORMAL 2, QV_SHADOW_LONG 3 */
  int8_t bottomShadow; /* the same */
} QvCandle;

/* The candles of a bar set. Set the factors, or clear them for the defaults, before
   a construction. */
typedef struct QvCandles {
  QvCandle* records;        /* one for each bar; only a block that a construction made, or null */
  double longShadowFactor;  /* a shadow longer than this many bodies is long; 0 means 2.0 */
  double shortShadowFactor; /* a shadow shorter than this many bodies is short; 0 means 0.75 */
  double dojiFactor;        /* a body up to this fraction of its lower end is a doji; 0 means 0.005 */
} QvCandles;

#pragma pack(pop)

/* ---- The set --------------------------------------------------------------------------------- */

/* Classifies every bar (barsize of them, none in an empty set) into a new block of records and
   writes the defaults into factors that were 0. Reads open, high, low and close. A body above the
   average body of the bars whose open differs from their close is long; if all bars are flat none
   is. A body that is not long is a doji up to dojiFactor times its lower end, else small. A shadow is
   compared with its own bar's body, in a flat bar with dojiFactor times the price.
   That average is of the whole set, bars after the classified one included: a bar's shape, and every
   pattern found with it, may change when bars are added, and a backtest over these candles knows the
   future. Backtests and live programs take qvCandleConstructTrailing.
   Records of an earlier construction are not freed: call qvCandleFree first. The records describe
   the bars as they are now; construct again after changing them.
   0; -1 when a price series is missing; -3 (then records is null).
   Source: after Steve Nison, Japanese Candlestick Charting Techniques, 1991. */
QVAPI int QVCALL qvCandleConstruct(const QvBars* bars, QvCandles* candles) QVNOEXCEPT;

/* The same without looking ahead: a body is measured against the average body of the `period` bars
   before its own (its own bar does not count, nor do those whose open equals their close). A bar with
   fewer bars before it is measured against those that there are, and is no long body when none of them
   has a body: shapes mean what they say from bar `period` on. Bars that are added never change the
   candles of earlier ones. A common period is 20.
   0; -1 when a price series is missing or the period is below 1; -3 (then records is null).
   Source: after Nison, 1991. */
QVAPI int QVCALL qvCandleConstructTrailing(const QvBars* bars, QvCandles* candles, int period) QVNOEXCEPT;

/* Frees the records and clears the pointer; the factors stay. 0; -1 for a null set. */
QVAPI int QVCALL qvCandleFree(QvCandles* candles) QVNOEXCEPT;

/* ---- Single fields --------------------------------------------------------------------------- */

/* A field of bar i as listed with QvCandle; 0 when the set has no bar i, -1 for a null set. */
QVAPI int QVCALL qvCandleColor(const QvCandles* candles, int i) QVNOEXCEPT;
QVAPI int QVCALL qvCandleShape(const QvCandles* candles, int i) QVNOEXCEPT;
QVAPI int QVCALL qvCandleTopShadow(const QvCandles* candles, int i) QVNOEXCEPT;
QVAPI int QVCALL qvCandleBotShadow(const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Neighbouring bars ----------------------------------------------------------------------- */

/* (open + close) / 2 of bar i; 0.0 outside the series.
   Source: Nison, 1991. */
QVAPI double QVCALL qvBodyMidpoint(const QvBars* bars, int i) QVNOEXCEPT;

/* 1 when the body of bar i lies wholly above (up) or below (down) the body of bar i - 1 without
   touching it, else 0, also where bar i or bar i - 1 does not exist; -1 for a null set.
   Source: Nison, 1991. */
QVAPI int QVCALL qvBodyGapUp(const QvBars* bars, int i) QVNOEXCEPT;
QVAPI int QVCALL qvBodyGapDn(const QvBars* bars, int i) QVNOEXCEPT;

/* The same for the whole range of the bars, shadows included.
   Source: Robert D. Edwards and John Magee, Technical Analysis of Stock Trends, 1948. */
QVAPI int QVCALL qvWesternGapUp(const QvBars* bars, int i) QVNOEXCEPT;
QVAPI int QVCALL qvWesternGapDn(const QvBars* bars, int i) QVNOEXCEPT;

/* 1 when |a - b| is below a * tolerance, else 0. The tolerance is relative to the first number, so
   the order matters; a tolerance of 0 finds nothing equal, and nothing is equal to an `a` of 0 or below. */
QVAPI int QVCALL qvApproxEqual(double a, double b, double tolerance) QVNOEXCEPT;

/* ---- Signals --------------------------------------------------------------------------------- */

/* out[i] = 1.0 where the named pattern ends at bar i, 0.0 elsewhere, for i from first to last (kept
   within the series; the rest of out is 0.0). The names are those of the functions in
   candle_patterns.h, in any case. Leaves out's first valid index as it was. With the candles of
   qvCandleConstruct the signals know the whole set (see there); with those of
   qvCandleConstructTrailing they know the bars up to i only.
   The number of bars found, -1 (unknown name; missing candles, dates, prices or arguments) or -3. An
   unknown name is found first: nothing is touched.
   Source: that of the pattern. */
QVAPI int QVCALL qvCandleFill(const QvBars* bars, const QvCandles* candles, QvArray* out, const char* name,
                              int first, int last) QVNOEXCEPT;

QV_END_DECLS

#endif
