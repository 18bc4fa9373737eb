// Averages whose speed follows the market: by momentum, and by volume.
#pragma once

#include "indicators/averages_exponential.h"
#include "indicators/momentum_cmo.h"

namespace qv::chain {

// An exponential average whose share is scaled by the strength of the momentum. The seed stands one bar
// before the first valid index.
class VIDYA {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  // Nine is the oscillator of the variable average, which begins 13 bars late; no other period is
  // shifted.
  VIDYA(int momentumPeriod, int period)
  noexcept
      : first_(saturatingSum(momentumPeriod, momentumPeriod == 9 ? 13 : 0)),
        seed_(first_ - 1),
        share_(shareOf(period)),
        momentum_(momentumPeriod) {}
  int lead() const noexcept { return first_; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    double* y = out[0];
    Tile shares;
    momentum_.run(in, count, {shares});
    map(
        count, shares, [k = share_](double cmo) { return k * (std::fabs(cmo) / 100.0); }, shares);
    int i = seed_.pass(count, y);
    double average = average_;
    if (i < count && !begun_) {
      begun_ = true;
      y[i] = average = x[i];
      ++i;
    }
    for (; i < count; ++i) y[i] = average = shares[i] * x[i] + (1.0 - shares[i]) * average;
    average_ = average;
  }
  auto state() noexcept { return std::tie(seed_, momentum_, average_, begun_); }

 private:
  int first_;
  Lead seed_;
  double share_;
  CMO momentum_;
  double average_ = 0.0;
  bool begun_ = false;
};

class VariableMA : public VIDYA {
 public:
  explicit VariableMA(int period) noexcept : VIDYA(9, period) {}
};

// The mean weighed by volume; 0.0 where there is none.
class VolAdjustedMA : public Sliding<MeanByWeight> {
 public:
  using Sliding::Sliding;
};

}  // namespace qv::chain
