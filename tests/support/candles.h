// Candle sets that free themselves, and the classification of a bar written as plainly as possible.
#pragma once

#include <cmath>
#include <vector>

#include "support/series.h"

namespace qvtest {

struct Candles : QvCandles {
  Candles() : QvCandles{} {}
  explicit Candles(const QvBars& bars) : QvCandles{} { qvCandleConstruct(&bars, this); }
  Candles(const Candles&) = delete;
  Candles& operator=(const Candles&) = delete;
  ~Candles() { qvCandleFree(this); }
};

// Colour, shape, top and bottom shadow of each bar, by the default factors.
inline std::vector<std::vector<int>> naiveCandles(const std::vector<Bar>& bars) {
  double sum = 0, count = 0;
  for (const Bar& b : bars) {
    if (b.open == b.close) continue;
    sum += std::fabs(b.open - b.close);
    count += 1;
  }
  const double average = sum / count;
  std::vector<std::vector<int>> candles;
  for (const Bar& b : bars) {
    if (b.open != b.open || b.close != b.close) {  // every comparison is false
      candles.push_back({0, 1, 1, 1});
      continue;
    }
    int colour = 0, shape = 1;
    if (b.open > b.close) colour = 1;
    if (b.open < b.close) colour = 2;
    const double top = std::max(b.open, b.close), bottom = std::min(b.open, b.close);
    if (bottom * 0.005 >= top - bottom) shape = 0;
    if (top - bottom > average) shape = 3;
    const double reference = colour == 0 ? top * 0.005 : top - bottom;
    const auto shadow = [reference](double length) {
      if (length > reference * 2.0) return 3;
      return reference * 0.75 <= length ? 2 : 1;
    };
    candles.push_back({colour, shape, shadow(b.high - top), shadow(bottom - b.low)});
  }
  return candles;
}

}  // namespace qvtest
