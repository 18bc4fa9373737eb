// The candlestick patterns by name, in the order in which they are listed: the one table for the
// fills and for whoever lists the patterns.
#pragma once

#include <array>

#include "qvlib60/patterns/candle_patterns.h"

namespace qv {

struct NamedCandlePattern {
  const char* name;
  int bars;  // that it looks at, the last one included
  int(QVCALL* endsAt)(const QvBars* bars, const QvCandles* candles, int i);
};

#define NAMED(pattern, bars) \
  { #pattern, bars, pattern }

inline constexpr std::array<NamedCandlePattern, 42> candlePatterns = {{
    NAMED(qvAbandonedBabyBottom, 3),  NAMED(qvAbandonedBabyTop, 3), NAMED(qvAdvanceBlock, 3),
    NAMED(qvBeltHoldLineBear, 1),     NAMED(qvBeltHoldLineBull, 1), NAMED(qvCounterAttackBear, 2),
    NAMED(qvCounterAttackBull, 2),    NAMED(qvDarkCloudCover, 2),   NAMED(qvEngulfingLineBear, 2),
    NAMED(qvEngulfingLineBull, 2),    NAMED(qvEveningDojiStar, 3),  NAMED(qvEveningStar, 3),
    NAMED(qvFalling3Method, 5),       NAMED(qvGravestoneDoji, 1),   NAMED(qvHammer, 1),
    NAMED(qvHangingman, 1),           NAMED(qvHaramiBlack, 2),      NAMED(qvHaramiCrossBlack, 2),
    NAMED(qvHaramiCrossWhite, 2),     NAMED(qvHaramiWhite, 2),      NAMED(qvHighWave, 1),
    NAMED(qvInNeckLine, 2),           NAMED(qvInvertedHammer, 1),   NAMED(qvLongLeggedDoji, 1),
    NAMED(qvMatHoldPattern, 5),       NAMED(qvMorningDojiStar, 3),  NAMED(qvMorningStar, 3),
    NAMED(qvPiercingLine, 2),         NAMED(qvRising3Method, 5),    NAMED(qvSeperatingLineBear, 2),
    NAMED(qvSeperatingLineBull, 2),   NAMED(qvShootingStar, 1),     NAMED(qvSideBySideWhiteGapDn, 3),
    NAMED(qvSideBySideWhiteGapUp, 3), NAMED(qvStalledPattern, 2),   NAMED(qvTasukiDownsideGap, 3),
    NAMED(qvTasukiUpsideGap, 3),      NAMED(qvThreeGapsUp, 4),      NAMED(qvThreeGapsDown, 4),
    NAMED(qvThreeWhiteSoldiers, 3),   NAMED(qvThrustingLine, 2),    NAMED(qvUpsideGap2Crows, 3),
}};

#undef NAMED

}  // namespace qv
