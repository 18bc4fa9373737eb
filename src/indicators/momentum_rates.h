// Rates of change: a series against its own past, and against another series.
#pragma once

#include "indicators/momentum_cmo.h"

namespace qv {

// 0.0 where the base is.
inline constexpr auto ratioOf = [](double x, double base) {
  const double ratio = x / base;
  return base != 0.0 ? ratio : 0.0;
};

// For Delay: to y, the rates of the items x.
inline auto ratesTo(double* y, const double* x, double scale) noexcept {
  const auto rateOf = [scale](double now, double before) {
    const double rate = (now - before) / before * scale;
    return before != 0.0 ? rate : 0.0;
  };
  return [=](int at, int items, const double* before) {
    if (scale == 0.0)
      map(items, y + at, changeOf, x + at, before);
    else
      map(items, y + at, rateOf, x + at, before);
  };
}

namespace chain {

// In parts of what stood p bars before, times `scale`; the plain difference where that is zero.
class RateOfChange {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  RateOfChange(double scale, int period) noexcept : scale_(scale), past_(period) {}
  int lead() const noexcept { return past_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    std::fill_n(out[0], past_.over(in[0], count, ratesTo(out[0], in[0], scale_)), 0.0);
  }
  void runAll(Inputs<1> in, int count, Outputs<1> out) noexcept {
    std::fill_n(out[0], past_.overAll(in[0], count, ratesTo(out[0], in[0], scale_)), 0.0);
  }
  auto state() noexcept { return std::tie(past_); }

 private:
  double scale_;
  Delay past_;
};

class Momentum : public RateOfChange {
 public:
  explicit Momentum(int period) noexcept : RateOfChange(0.0, period) {}
};

// From the first series' first valid index on; the second's does not count.
class Ratio {
 public:
  static constexpr int kInputs = 2, kOutputs = 1, kStarts = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept { map(count, out[0], ratioOf, in[0], in[1]); }
};

}  // namespace chain
}  // namespace qv
