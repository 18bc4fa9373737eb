// The candlestick patterns by name, in the order in which they are listed: the one table for the
// fills and for whoever lists the patterns.
#pragma once

#include <array>

#include "qvlib60/patterns/candle_patterns.h"

namespace qv {

struct NamedCandlePattern {
  const char* name;
  int(QVCALL* endsAt)(const QvBars* bars, const QvCandles* candles, int i);
};

#define NAMED(pattern) \
  { #pattern, pattern }

inline const std::array<NamedCandlePattern, 42> candlePatterns = {{
    NAMED(qvAbandonedBabyBottom),  NAMED(qvAbandonedBabyTop), NAMED(qvAdvanceBlock),
    NAMED(qvBeltHoldLineBear),     NAMED(qvBeltHoldLineBull), NAMED(qvCounterAttackBear),
    NAMED(qvCounterAttackBull),    NAMED(qvDarkCloudCover),   NAMED(qvEngulfingLineBear),
    NAMED(qvEngulfingLineBull),    NAMED(qvEveningDojiStar),  NAMED(qvEveningStar),
    NAMED(qvFalling3Method),       NAMED(qvGravestoneDoji),   NAMED(qvHammer),
    NAMED(qvHangingman),           NAMED(qvHaramiBlack),      NAMED(qvHaramiCrossBlack),
    NAMED(qvHaramiCrossWhite),     NAMED(qvHaramiWhite),      NAMED(qvHighWave),
    NAMED(qvInNeckLine),           NAMED(qvInvertedHammer),   NAMED(qvLongLeggedDoji),
    NAMED(qvMatHoldPattern),       NAMED(qvMorningDojiStar),  NAMED(qvMorningStar),
    NAMED(qvPiercingLine),         NAMED(qvRising3Method),    NAMED(qvSeperatingLineBear),
    NAMED(qvSeperatingLineBull),   NAMED(qvShootingStar),     NAMED(qvSideBySideWhiteGapDn),
    NAMED(qvSideBySideWhiteGapUp), NAMED(qvStalledPattern),   NAMED(qvTasukiDownsideGap),
    NAMED(qvTasukiUpsideGap),      NAMED(qvThreeGapsUp),      NAMED(qvThreeGapsDown),
    NAMED(qvThreeWhiteSoldiers),   NAMED(qvThrustingLine),    NAMED(qvUpsideGap2Crows),
}};

#undef NAMED

}  // namespace qv
