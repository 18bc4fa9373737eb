// What a pattern test sees: the bars and candles up to bar i, counted back from it.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "core/calculation.h"
#include "qvlib60/patterns/candles.h"

namespace qv {

// QvCandles has no room for the number of its records: it is kept in the block, in the four bytes
// before the first record, so that every index can be checked.
inline int recordCount(const QvCandles& candles) noexcept {
  if (!candles.records) return 0;
  std::int32_t count;
  std::memcpy(&count, candles.records - 1, sizeof count);
  return count;
}

// |a - b| against a fraction of the first number alone: not symmetric.
inline bool approxEqual(double a, double b, double tolerance) noexcept {
  return a * tolerance > std::fabs(a - b);
}

// open(0) is the open of bar i, open(1) that of the bar before. The caller has checked that the
// bars asked for exist.
class Window {
 public:
  Window(const QvBars& bars, int i) noexcept : bars_(bars), i_(i) {}
  Window(const QvBars& bars, const QvCandles& candles, int i) noexcept
      : bars_(bars), records_(candles.records), tolerance_(candles.dojiFactor), i_(i) {}

  double open(int k) const noexcept { return bars_.open.data[i_ - k]; }
  double high(int k) const noexcept { return bars_.high.data[i_ - k]; }
  double low(int k) const noexcept { return bars_.low.data[i_ - k]; }
  double close(int k) const noexcept { return bars_.close.data[i_ - k]; }
  int shape(int k) const noexcept { return records_[i_ - k].shape; }
  int topShadow(int k) const noexcept { return records_[i_ - k].topShadow; }
  int bottomShadow(int k) const noexcept { return records_[i_ - k].bottomShadow; }

  // Not a number where one end of the body is none.
  double bodyBottom(int k) const noexcept {
    const double lower = open(k) < close(k) ? open(k) : close(k);
    return open(k) == open(k) ? lower : open(k);
  }
  double midpoint(int k) const noexcept { return (open(k) + close(k)) / 2; }
  // Gaps between bar k and the bar before it. Both ends are compared with both ends, so that a price
  // that is not a number makes no gap.
  bool bodyGapUp(int k) const noexcept {
    return open(k) > open(k + 1) && open(k) > close(k + 1) && close(k) > open(k + 1) &&
           close(k) > close(k + 1);
  }
  bool bodyGapDown(int k) const noexcept {
    return open(k) < open(k + 1) && open(k) < close(k + 1) && close(k) < open(k + 1) &&
           close(k) < close(k + 1);
  }
  bool rangeGapUp(int k) const noexcept { return low(k) > high(k + 1); }
  bool rangeGapDown(int k) const noexcept { return high(k) < low(k + 1); }

  bool isNear(double a, double b) const noexcept { return approxEqual(a, b, tolerance_); }

 private:
  const QvBars& bars_;
  const QvCandle* records_ = nullptr;
  double tolerance_ = 0.0;
  int i_;
};

}  // namespace qv
