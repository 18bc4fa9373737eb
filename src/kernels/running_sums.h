// Running sums of a block of items from either end. Four items cost one addition that waits for the last.
#pragma once

namespace qv::window {

// Sums of x[0 .. i] added to `before`, for every i. Returns the last.
inline double prefixSums(const double* x, int count, double before, double* sums) noexcept {
  double s = before;
  int i = 0;
  for (; i + 4 <= count; i += 4) {
    const double two = x[i] + x[i + 1], three = two + x[i + 2], four = two + (x[i + 2] + x[i + 3]);
    sums[i] = s + x[i];
    sums[i + 1] = s + two;
    sums[i + 2] = s + three;
    sums[i + 3] = s = s + four;
  }
  for (; i < count; ++i) sums[i] = s = s + x[i];
  return s;
}

// Sums of x[i .. count - 1].
inline void suffixSums(const double* x, int count, double* sums) noexcept {
  double s = 0.0;
  int i = count;
  for (; i >= 4; i -= 4) {
    const double two = x[i - 1] + x[i - 2], three = two + x[i - 3], four = two + (x[i - 3] + x[i - 4]);
    sums[i - 1] = s + x[i - 1];
    sums[i - 2] = s + two;
    sums[i - 3] = s + three;
    sums[i - 4] = s = s + four;
  }
  for (; i > 0; --i) sums[i - 1] = s = s + x[i - 1];
}

}  // namespace qv::window
