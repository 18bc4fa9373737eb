// A candlestick pattern over candles that are classified against the bodies before them.
#pragma once

#include <limits>

#include "kernels/extremes.h"
#include "kernels/sums.h"
#include "qvlib60/patterns/candles.h"

namespace qv::chain {

// Open, high, low and close in. The average body is that of qvCandleConstructTrailing.
class CandleSignals {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  CandleSignals(int pattern, int period) noexcept;  // of candlePatterns
  int lead() const noexcept { return lead_; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept;
  auto state() noexcept { return std::tie(sums_, shortest_, average_, prices_, candles_); }

 private:
  static constexpr int kMostBars = 5;

  int pattern_, lead_;
  Sliding<Sums<1>> sums_[2];  // of bodies and of their number
  Sliding<HighestLowest> shortest_;
  double average_ = std::numeric_limits<double>::quiet_NaN();  // for the bar that comes
  double prices_[4][kMostBars]{}, candles_[kMostBars]{};       // of the last bars, the newest last
};

}  // namespace qv::chain
