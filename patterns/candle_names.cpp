#include "patterns/candle_names.h"

#include "platform/names.h"

namespace qv {

#define NAMED(pattern) \
  { #pattern, pattern }

const std::array<NamedCandlePattern, 42> candlePatterns = {{
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

const NamedCandlePattern* findCandlePattern(const char* name) noexcept {
  for (const NamedCandlePattern& pattern : candlePatterns)
    if (platform::compareNoCase(name, pattern.name) == 0) return &pattern;
  return nullptr;
}

}  // namespace qv
