// Where one series crosses another: shared by the crossover functions and the composite oscillators.
#pragma once

#include "kernels/tiles.h"
#include "qvlib60/core.h"

namespace qv {

// +1.0 where a comes from below b to b or above it, -1.0 where it comes from above to b or below it.
constexpr auto crossingOf = [](double a, double b, double aBefore, double bBefore) {
  const double up = (a >= b) & (aBefore < bBefore) ? 1.0 : 0.0,
               down = (a <= b) & (aBefore > bBefore) ? 1.0 : 0.0;
  return up - down;
};
// At item i >= 1 of two series.
inline int crossing(const double* a, const double* b, int i) noexcept {
  return static_cast<int>(crossingOf(a[i], b[i], a[i - 1], b[i - 1]));
}

namespace chain {

// Signals from the second item on.
class CrossOverFill {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const auto [a, b] = in;
    const double aBefore = a_.take(a, count), bBefore = b_.take(b, count);
    out[0][0] = crossingOf(a[0], b[0], aBefore, bBefore);
    map(count - 1, out[0] + 1, crossingOf, a + 1, b + 1, a, b);
  }
  auto state() noexcept { return std::tie(a_, b_); }

 private:
  Before a_, b_;
};

}  // namespace chain

}  // namespace qv
