// The candlestick patterns by name, in the order in which they are listed.
#pragma once

#include <array>

#include "qvlib60/patterns/candle_patterns.h"

namespace qv {

struct NamedCandlePattern {
  const char* name;
  int(QVCALL* endsAt)(const QvBars* bars, const QvCandles* candles, int i);
};

extern const std::array<NamedCandlePattern, 42> candlePatterns;

// Without regard to case; null for an unknown name.
const NamedCandlePattern* findCandlePattern(const char* name) noexcept;

}  // namespace qv
