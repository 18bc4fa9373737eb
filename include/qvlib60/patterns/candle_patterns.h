/* Forty-two candlestick patterns. Each function tells whether its pattern ends at bar i: 1 or 0.

   Candles are those that qvCandleConstruct or, without looking ahead, qvCandleConstructTrailing made of the
   same bar set. The answer is 0 where a bar that the pattern compares lies before the series or past its
   end, and where a record or a price series is missing. "Near" and "nearly equal" is qvApproxEqual with the
   set's dojiFactor. Bar i is the last bar named.

   Small and long are measured against the other bars (see candles.h): the textbook's own examples of two or
   three bars often fail, taken alone.

   The sources are Steve Nison, Japanese Candlestick Charting Techniques, 1991; the exact conditions are
   this library's own. */
#ifndef QVLIB60_PATTERNS_CANDLE_PATTERNS_H
#define QVLIB60_PATTERNS_CANDLE_PATTERNS_H

#include "qvlib60/patterns/candles.h"

QV_BEGIN_DECLS

/* ---- One bar --------------------------------------------------------------------------------- */

/* White long body that opens at its low exactly.
   Source: Nison, 1991. */
QVAPI int QVCALL qvBeltHoldLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body that opens at its high exactly.
   Source: Nison, 1991. */
QVAPI int QVCALL qvBeltHoldLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black, body not long, short top shadow, long bottom shadow. (This library tells the hammer
   and the hanging man apart by their colour alone.)
   Source: Nison, 1991. */
QVAPI int QVCALL qvHammer(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same in white.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHangingman(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White, body not long, long top shadow, short bottom shadow.
   Source: Nison, 1991. */
QVAPI int QVCALL qvInvertedHammer(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White small body, long top shadow, short bottom shadow.
   Source: Nison, 1991. */
QVAPI int QVCALL qvShootingStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji whose low is the lower end of its body; the upper shadow is not tested.
   Source: Nison, 1991. */
QVAPI int QVCALL qvGravestoneDoji(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji with two long shadows.
   Source: Nison, 1991. */
QVAPI int QVCALL qvLongLeggedDoji(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body with at least one long shadow.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHighWave(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Two bars -------------------------------------------------------------------------------- */

/* White long body around the black small body before it.
   Source: Nison, 1991. */
QVAPI int QVCALL qvEngulfingLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body around the white small body before it.
   Source: Nison, 1991. */
QVAPI int QVCALL qvEngulfingLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body of any colour inside a black long body.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHaramiBlack(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji inside a black long body.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHaramiCrossBlack(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body of any colour inside a white long body.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHaramiWhite(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji inside a white long body.
   Source: Nison, 1991. */
QVAPI int QVCALL qvHaramiCrossWhite(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white long body a black one that opens above its high and closes below its middle.
   Source: Nison, 1991. */
QVAPI int QVCALL qvDarkCloudCover(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black long body a white one, no doji, that opens below its close and closes above its
   middle.
   Source: Nison, 1991. */
QVAPI int QVCALL qvPiercingLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body a white one that closes above its close, but below its middle.
   Source: Nison, 1991. */
QVAPI int QVCALL qvThrustingLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body, no doji, a white small one that closes near its low, but above it.
   Source: Nison, 1991. */
QVAPI int QVCALL qvInNeckLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body a white one, neither a doji, that opens as far below its close, or farther, as that
   body is long, and closes near that close.
   Source: Nison, 1991. */
QVAPI int QVCALL qvCounterAttackBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white body a black one, neither a doji, that opens as far above its close, or farther, as that
   body is long, and closes near that close.
   Source: Nison, 1991. */
QVAPI int QVCALL qvCounterAttackBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White body that opens exactly where the black one before it opened, neither a doji.
   Source: Nison, 1991. */
QVAPI int QVCALL qvSeperatingLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black body that opens exactly where the white one before it opened, neither a doji.
   Source: Nison, 1991. */
QVAPI int QVCALL qvSeperatingLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white long body a white small one that opens near its close.
   Source: Nison, 1991. */
QVAPI int QVCALL qvStalledPattern(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies, no dojis, of equal shape and nearly equal close, the first of which gapped down.
   Source: Nison, 1991. */
QVAPI int QVCALL qvSideBySideWhiteGapDn(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies, no dojis, of equal shape and nearly equal close, the first of which gapped up.
   Source: Nison, 1991. */
QVAPI int QVCALL qvSideBySideWhiteGapUp(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Three bars ------------------------------------------------------------------------------ */

/* Black long body, small body that gaps down, white body, no doji, that opens higher and closes
   above the middle of the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvMorningStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same around a doji.
   Source: Nison, 1991. */
QVAPI int QVCALL qvMorningDojiStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, small body that gaps up, black body that closes below the middle of the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvEveningStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same around a doji.
   Source: Nison, 1991. */
QVAPI int QVCALL qvEveningDojiStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body, doji with its whole range below its neighbours', white body that closes above
   the middle of the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvAbandonedBabyBottom(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, doji with its whole range above its neighbours', black body that closes below
   the middle of the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvAbandonedBabyTop(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three white bodies with rising closes that either shrink from bar to bar, or of which the last
   two, but not the first, have long top shadows.
   Source: Nison, 1991. */
QVAPI int QVCALL qvAdvanceBlock(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three white bodies with rising highs and short top shadows that close near their highs.
   Source: Nison, 1991. */
QVAPI int QVCALL qvThreeWhiteSoldiers(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, black body that gaps up, black body that opens higher and closes lower than it.
   Source: Nison, 1991. */
QVAPI int QVCALL qvUpsideGap2Crows(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies, the second opening above the first's close, then a black one of the second's
   shape that opens below its close and closes between it and the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvTasukiUpsideGap(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The mirror: two black bodies, then a white one of the second's shape that closes between them.
   Source: Nison, 1991. */
QVAPI int QVCALL qvTasukiDownsideGap(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three body gaps up in a row; 0 below bar 3.
   Source: Nison, 1991. */
QVAPI int QVCALL qvThreeGapsUp(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three body gaps down in a row; 0 below bar 3.
   Source: Nison, 1991. */
QVAPI int QVCALL qvThreeGapsDown(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Five bars ------------------------------------------------------------------------------- */

/* Black long body, three white small ones that climb no higher than the open of the first or of the
   last bar, black long body that closes below the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvFalling3Method(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The mirror: white long body, three black small ones that sink, white long body that closes
   above the first.
   Source: Nison, 1991. */
QVAPI int QVCALL qvRising3Method(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, gap up to three black small ones that open lower and lower, gap up to a white
   body, no doji.
   Source: Nison, 1991. */
QVAPI int QVCALL qvMatHoldPattern(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

QV_END_DECLS

#endif
