// Where the values of a calculation begin, and how much history a recursive one needs: the weight that the
// bars before the data's beginning would have had, out of the smoothing constants.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/numbers.h"
#include "qvlib60/codes.h"

namespace qv::catalogue {

// The parameters of a call as the calculation reads them.
struct Numbers {
  const double* values;
  std::int64_t operator[](int i) const noexcept { return truncatedInt(values[i]); }
};

// Where the values of one output begin: numbers are read as the calculation reads them.
struct Valid : Numbers {
  std::int64_t start;
  int output;
};
// The bars that a zero-lag average looks back, and where the average of a method code begins.
inline std::int64_t lagOf(double period) noexcept {
  return truncatedInt(std::max(1.0, (period - 1) / 2));
}
inline std::int64_t averageBegins(std::int64_t method, std::int64_t period) noexcept {
  switch (method) {
    case QV_MA_EXPONENTIAL:
      return 0;
    case QV_MA_VARIABLE:
      return 22;
    case QV_MA_ZERO_LAG:
      return lagOf(static_cast<double>(period)) - 1;
    default:
      return period - 1;
  }
}

// Answers count bars from the data's beginning to the first one whose value has settled.
struct History : Numbers {
  static constexpr std::int64_t kNever = -1;

  double tolerance;

  // Smoothings one behind the other that each keep 1 - share of the value before: the share of the
  // slowest, their number, and how much larger than the series' own size a difference of theirs weighs
  // in the output (a difference of two averages is a small part of a price).
  //
  // What stood before n bars weighs as much as the chance of fewer than `stages` hits in n trials of
  // probability `share`, which Chernoff's bound gives in closed form; it is exact for one smoothing.
  std::int64_t smoothed(double share, int stages = 1, double weight = 1) const noexcept {
    const double kept = std::fabs(1 - share);
    if (!(kept < 1) || !(tolerance > 0)) return kNever;
    if (tolerance >= 1) return 0;
    if (kept == 0) return stages - 1;
    const double wanted = std::log(tolerance / weight), lnKept = std::log1p(-std::min(share, 2 - share));
    const auto lnWeight = [&](double n) {
      const double hits = (stages - 1) / n;
      if (hits == 0) return n * lnKept;
      if (hits >= 1 - kept) return 0.0;
      return -n * (hits * std::log(hits / (1 - kept)) + (1 - hits) * (std::log1p(-hits) - lnKept));
    };
    double low = 0, high = 1;
    while (high < INT32_MAX && lnWeight(high) > wanted) low = high, high *= 2;
    while (high - low > 0.5) (lnWeight((low + high) / 2) > wanted ? low : high) = (low + high) / 2;
    return truncatedInt(std::ceil(high));
  }

  // Exponential averages of a period, and Wilder's, whose first value is a plain average of the period.
  std::int64_t exponential(double period, int stages = 1, double weight = 1) const noexcept {
    return smoothed(2 / (period + 1), stages, weight);
  }
  std::int64_t wilder(std::int64_t period, int stages = 1, double weight = 1) const noexcept {
    return later(smoothed(1 / static_cast<double>(period), stages, weight), period - 1);
  }
  // The average of a method code.
  std::int64_t average(std::int64_t method, std::int64_t period, double weight = 1) const noexcept {
    const auto p = static_cast<double>(period);
    switch (method) {
      case QV_MA_EXPONENTIAL:
        return exponential(p, 1, weight);
      case QV_MA_WILDER:
        return wilder(period, 1, weight);
      case QV_MA_ZERO_LAG:
        return later(exponential(p, 1, weight), lagOf(p) - 1);
      case QV_MA_VARIABLE:
        return kNever;
      default:
        return 0;
    }
  }

  static std::int64_t later(std::int64_t bars, std::int64_t more) noexcept {
    return bars == kNever ? kNever : bars + more;
  }
  static std::int64_t latest(std::int64_t a, std::int64_t b) noexcept {
    return std::min(a, b) == kNever ? kNever : std::max(a, b);
  }
};

// Of the difference of two averages, parameters 0 and 1, by the method of parameter 2: it is a small part of
// a price.
inline std::int64_t pairSettles(const History& h) noexcept {
  return History::latest(h.average(h[2], h[0], 10), h.average(h[2], h[1], 10));
}
inline std::int64_t pairBegins(const Valid& v) noexcept {
  const std::int64_t first = std::max(averageBegins(v[2], v[0]), averageBegins(v[2], v[1]));
  return v.start + std::max({v[0] - 1, v[1] - 1, first});
}

}  // namespace qv::catalogue
