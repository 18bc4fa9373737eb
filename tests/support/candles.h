// Candle sets that free themselves.
#pragma once

#include "support/series.h"

namespace qvtest {

struct Candles : QvCandles {
  Candles() : QvCandles{} {}
  explicit Candles(const QvBars& bars) : QvCandles{} { qvCandleConstruct(&bars, this); }
  Candles(const Candles&) = delete;
  Candles& operator=(const Candles&) = delete;
  ~Candles() { qvCandleFree(this); }
};

}  // namespace qvtest
