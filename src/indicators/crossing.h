// Where one series crosses another: shared by the crossover functions and the composite oscillators.
#pragma once

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

// The calculation of qvCrossOverFill: signals from f + 1 up to, not including, `end`; f is the larger
// of start and the inputs' first valid indices, and the first valid index of out.
int fillCrossings(const QvArray* a, const QvArray* b, QvArray* out, int start, int end) noexcept;

}  // namespace qv
