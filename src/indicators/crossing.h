// Where one series crosses another: shared by the crossover functions and the composite oscillators.
#pragma once

#include "qvlib60/core.h"

namespace qv {

// +1 where a comes from below b to b or above it, -1 where it comes from above to b or below it.
// i >= 1.
inline int crossing(const double* a, const double* b, int i) noexcept {
  const bool up = (a[i] >= b[i]) & (a[i - 1] < b[i - 1]);
  const bool down = (a[i] <= b[i]) & (a[i - 1] > b[i - 1]);
  return up - down;
}

// The calculation of qvCrossOverFill: signals from f + 1 up to, not including, `end`; f is the larger
// of start and the inputs' first valid indices, and the first valid index of out.
int fillCrossings(const QvArray* a, const QvArray* b, QvArray* out, int start, int end) noexcept;

}  // namespace qv
