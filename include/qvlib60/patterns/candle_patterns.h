/* Forty-two candlestick patterns. Each function tells whether its pattern ends at bar i: 1 or 0.

   Candles are those that qvCandleConstruct or, without looking ahead, qvCandleConstructTrailing made of
   the same bar set. The answer is 0 where a bar
   that the pattern compares lies before the series or past its end, and where a record or a price
   series is missing. "Near" and "nearly equal" is qvApproxEqual with the set's dojiFactor. Bar i is
   the last bar named.

   Source of the patterns: Steve Nison, "Japanese Candlestick Charting Techniques" (1991); the exact
   conditions are this library's own. */
#ifndef QVLIB60_PATTERNS_CANDLE_PATTERNS_H
#define QVLIB60_PATTERNS_CANDLE_PATTERNS_H

#include "qvlib60/patterns/candles.h"

QV_BEGIN_DECLS

/* ---- One bar --------------------------------------------------------------------------------- */

/* White long body that opens at its low exactly. */
QVAPI int QVCALL qvBeltHoldLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body that opens at its high exactly. */
QVAPI int QVCALL qvBeltHoldLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black, body not long, short top shadow, long bottom shadow. (This library tells the hammer
   and the hanging man apart by their colour alone.) */
QVAPI int QVCALL qvHammer(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same in white. */
QVAPI int QVCALL qvHangingman(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White, body not long, long top shadow, short bottom shadow. */
QVAPI int QVCALL qvInvertedHammer(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White small body, long top shadow, short bottom shadow. */
QVAPI int QVCALL qvShootingStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji whose low is the lower end of its body; the upper shadow is not tested. */
QVAPI int QVCALL qvGravestoneDoji(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji with two long shadows. */
QVAPI int QVCALL qvLongLeggedDoji(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body with at least one long shadow. */
QVAPI int QVCALL qvHighWave(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Two bars -------------------------------------------------------------------------------- */

/* White long body around the black small body before it. */
QVAPI int QVCALL qvEngulfingLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body around the white small body before it. */
QVAPI int QVCALL qvEngulfingLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body of any colour inside a black long body. */
QVAPI int QVCALL qvHaramiBlack(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji inside a black long body. */
QVAPI int QVCALL qvHaramiCrossBlack(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Small body of any colour inside a white long body. */
QVAPI int QVCALL qvHaramiWhite(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Doji inside a white long body. */
QVAPI int QVCALL qvHaramiCrossWhite(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white long body a black one that opens above its high and closes below its middle. */
QVAPI int QVCALL qvDarkCloudCover(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black long body a white one, no doji, that opens below its close and closes above its
   middle. */
QVAPI int QVCALL qvPiercingLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body a white one that closes above its close, but below its middle. */
QVAPI int QVCALL qvThrustingLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body a white small one that closes just above its low. */
QVAPI int QVCALL qvInNeckLine(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a black body a white one that opens as far below its close, or farther, as that body is
   long, and comes back to that close. */
QVAPI int QVCALL qvCounterAttackBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white body a black one that opens as far above its close, or farther, as that body is
   long, and comes back to that close. */
QVAPI int QVCALL qvCounterAttackBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White body that opens exactly where the black one before it opened. */
QVAPI int QVCALL qvSeperatingLineBull(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black body that opens exactly where the white one before it opened. */
QVAPI int QVCALL qvSeperatingLineBear(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* After a white long body a white small one that opens near its close. */
QVAPI int QVCALL qvStalledPattern(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies of equal shape and nearly equal close, the first of which gapped down. */
QVAPI int QVCALL qvSideBySideWhiteGapDn(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies of equal shape and nearly equal close, the first of which gapped up. */
QVAPI int QVCALL qvSideBySideWhiteGapUp(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Three bars ------------------------------------------------------------------------------ */

/* Black long body, small body that gaps down, white body, no doji, that opens higher and closes
   above the middle of the first. */
QVAPI int QVCALL qvMorningStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same around a doji. */
QVAPI int QVCALL qvMorningDojiStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, small body that gaps up, black body that closes below the middle of the first. */
QVAPI int QVCALL qvEveningStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The same around a doji. */
QVAPI int QVCALL qvEveningDojiStar(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Black long body, doji with its whole range below its neighbours', white body that closes above
   the middle of the first. */
QVAPI int QVCALL qvAbandonedBabyBottom(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, doji with its whole range above its neighbours', black body that closes below
   the middle of the first. */
QVAPI int QVCALL qvAbandonedBabyTop(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three white bodies with rising closes that either shrink from bar to bar, or of which the last
   two, but not the first, have long top shadows. */
QVAPI int QVCALL qvAdvanceBlock(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three white bodies with rising highs and short top shadows that close near their highs. */
QVAPI int QVCALL qvThreeWhiteSoldiers(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, black body that gaps up, black body that opens higher and closes lower than it. */
QVAPI int QVCALL qvUpsideGap2Crows(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Two white bodies, the second opening above the first's close, then a black one of the second's
   shape that opens below its close and closes between it and the first. */
QVAPI int QVCALL qvTasukiUpsideGap(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The mirror: two black bodies, then a white one that closes between them. */
QVAPI int QVCALL qvTasukiDownsideGap(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three body gaps up in a row; 0 below bar 3. */
QVAPI int QVCALL qvThreeGapsUp(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* Three body gaps down in a row; 0 below bar 3. */
QVAPI int QVCALL qvThreeGapsDown(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* ---- Five bars ------------------------------------------------------------------------------- */

/* Black long body, three white small ones that climb no higher than the open of the first or of the
   last bar, black long body that closes below the first. */
QVAPI int QVCALL qvFalling3Method(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* The mirror: white long body, three black small ones that sink, white long body that closes
   above the first. */
QVAPI int QVCALL qvRising3Method(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

/* White long body, gap up to three black small ones that open lower and lower, gap up to a white
   body, no doji. */
QVAPI int QVCALL qvMatHoldPattern(const QvBars* bars, const QvCandles* candles, int i) QVNOEXCEPT;

QV_END_DECLS

#endif
