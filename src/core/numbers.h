// Integer and floating steps that must not overflow whatever the caller passes.
#pragma once

#include <climits>
#include <cstdint>

namespace qv {

constexpr int saturate(std::int64_t v) noexcept {
  return v > INT_MAX ? INT_MAX : v < INT_MIN ? INT_MIN : static_cast<int>(v);
}

// Sums of indices and periods: `saturatingSum(s, p, -1)`.
template <typename... Ints>
constexpr int saturatingSum(Ints... terms) noexcept {
  return saturate((std::int64_t{0} + ... + static_cast<std::int64_t>(terms)));
}

// Truncation toward zero; numbers too large for an int saturate, not-a-number gives 0.
constexpr int truncatedInt(double v) noexcept {
  if (v != v) return 0;
  if (v >= 2147483647.0) return INT_MAX;
  if (v <= -2147483648.0) return INT_MIN;
  return static_cast<int>(v);
}

// The same for the widest printed integer.
constexpr std::int64_t truncatedInt64(double v) noexcept {
  if (v != v) return 0;
  if (v >= 9223372036854775807.0) return INT64_MAX;
  if (v <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<std::int64_t>(v);
}

// "Is not zero" where a not-a-number counts as zero: the guard of several divisions.
constexpr bool isNonZero(double v) noexcept {
  return v < 0.0 || v > 0.0;
}

}  // namespace qv
