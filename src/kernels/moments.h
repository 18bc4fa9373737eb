// Deviations, covariances and least-squares lines over a window.
//
// The sums run over distances from an item of the window, the anchor. So nothing large is ever squared and
// cancelled, and a window of equal items has zero sums.
#pragma once

#include "kernels/sums.h"

namespace qv {

// Square root of the mean squared distance from the window's mean; divided by period - 1 when `sample`.
struct Deviation : Adding {
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = false;
  using Corrected = CorrectedSums<Deviation>;
  static constexpr int kInputs = 1, kRows = 2, kOutputs = 1;
  double items, perPair;

  Deviation(double period, bool sample) noexcept
      : items(period), perPair(1.0 / (period * (period - (sample ? 1.0 : 0.0)))) {}
  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> terms(const Items& x, const Items& anchors, Number) const noexcept {
    const Number distance = x[0] - anchors[0];
    return {distance, distance * distance};
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE Rows moved(const Rows& rows, const Items& from, const Items& to, Number) noexcept {
    const auto way = from[0] - to[0], sum = rows[0] + way * 4.0;
    return {sum, rows[1] + way * (rows[0] + sum)};
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items&, Number,
                                    const Items&) const noexcept {
    return {root(notNegative(sums[1] * items - sums[0] * sums[0]) * perPair)};
  }
};

// The mean, and `k` deviations above and below it: above, mean, below.
struct DeviationBands : Deviation {
  using Corrected = CorrectedSums<DeviationBands>;
  static constexpr int kOutputs = 3;
  double k, perItem;

  DeviationBands(double times, double period) noexcept
      : Deviation(period, false), k(times), perItem(1.0 / period) {}
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 3> finish(const Group<Number, 2>& sums, const Items& anchors, Number place,
                                    const Items& x) const noexcept {
    const Number width = Deviation::finish(sums, anchors, place, x)[0] * k,
                 mean = anchors[0] + sums[0] * perItem;
    return {width + mean, mean, mean - width};
  }
};

// Sum of products of the distances from the means, divided by period - 1.
struct Covariance : Adding {
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = false;
  using Corrected = CorrectedSums<Covariance>;
  static constexpr int kInputs = 2, kRows = 3, kOutputs = 1;
  double items, perPair;

  explicit Covariance(double period) noexcept : items(period), perPair(1.0 / (period * (period - 1.0))) {}
  template <typename Items, typename Number>
  QV_INLINE Group<Number, 3> terms(const Items& x, const Items& anchors, Number) const noexcept {
    const Number a = x[0] - anchors[0], b = x[1] - anchors[1];
    return {a, b, a * b};
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE Rows moved(const Rows& rows, const Items& from, const Items& to, Number) noexcept {
    const auto wayA = from[0] - to[0], wayB = from[1] - to[1], sumA = rows[0] + wayA * 4.0;
    return {sumA, rows[1] + wayB * 4.0, rows[2] + wayA * rows[1] + wayB * sumA};
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 3>& sums, const Items&, Number,
                                    const Items&) const noexcept {
    return {(sums[2] * items - sums[0] * sums[1]) * perPair};
  }
};

// Covariance divided by the product of both deviations (which follow `sample`, unlike the covariance); 0.0
// where that product is zero or not a number.
struct Correlation : Adding {
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = false;
  using Corrected = CorrectedSums<Correlation>;
  static constexpr int kInputs = 2, kRows = 5, kOutputs = 1;
  double items, scale;

  Correlation(double period, bool sample) noexcept
      : items(period), scale((period - (sample ? 1.0 : 0.0)) / (period - 1.0)) {}
  template <typename Items, typename Number>
  QV_INLINE Group<Number, 5> terms(const Items& x, const Items& anchors, Number) const noexcept {
    const Number a = x[0] - anchors[0], b = x[1] - anchors[1];
    return {a, b, a * a, b * b, a * b};
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE Rows moved(const Rows& rows, const Items& from, const Items& to, Number) noexcept {
    const auto wayA = from[0] - to[0], wayB = from[1] - to[1];
    const auto sumA = rows[0] + wayA * 4.0, sumB = rows[1] + wayB * 4.0;
    return {sumA, sumB, rows[2] + wayA * (rows[0] + sumA), rows[3] + wayB * (rows[1] + sumB),
            rows[4] + wayA * rows[1] + wayB * sumA};
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 5>& sums, const Items&, Number,
                                    const Items&) const noexcept {
    const Number deviations = root(notNegative(sums[2] * items - sums[0] * sums[0])) *
                              root(notNegative(sums[3] * items - sums[1] * sums[1]));
    const Number r = (sums[4] * items - sums[0] * sums[1]) * scale / deviations;
    return {magnitude(r) < all<Number>(kInfinity) ? r : all<Number>(0.0)};
  }
};

// Least-squares line through (1, oldest) .. (period, newest).
struct Line : Distances {
  double half, perItem, perSpread;

  explicit Line(double period) noexcept
      : half((period - 1.0) / 2.0),
        perItem(1.0 / period),
        perSpread(period > 1.0 ? 12.0 / (period * (period * period - 1.0)) : 1.0) {}
  template <typename Number>
  QV_INLINE Number slope(const Group<Number, 2>& sums, Number k) const noexcept {
    return (sums[1] - (k - half) * sums[0]) * perSpread;
  }
};

// Its slope and its value at 0, one bar before the window.
struct SlopeIntercept : Line {
  using Corrected = CorrectedSums<SlopeIntercept>;
  static constexpr int kOutputs = 2;

  using Line::Line;
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 2> finish(const Group<Number, 2>& sums, const Items& anchors, Number k,
                                    const Items&) const noexcept {
    const Number rise = slope(sums, k);
    return {rise, anchors[0] + (sums[0] * perItem - rise * (half + 1.0))};
  }
};

// Its value one bar behind the window: the mean and the slope's (period + 1) / 2 fold, collected by sums.
struct Forecast : Line {
  using Corrected = CorrectedSums<Forecast>;
  static constexpr int kOutputs = 1;
  double ahead, share;

  explicit Forecast(double period) noexcept
      : Line(period), ahead(perSpread * (half + 1.0)), share(perItem + half * ahead) {}
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items& anchors, Number k,
                                    const Items&) const noexcept {
    return {anchors[0] + (sums[1] * ahead + sums[0] * (share - k * ahead))};
  }
};

}  // namespace qv
