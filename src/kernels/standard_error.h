// Standard error of estimate over a window.
//
// On a trend the residuals are tiny beside the squares of the prices, and any difference of such sums drowns
// them. So the residual squares themselves are carried: item by item through the error of the running line's
// forecast, and where the end of one block and the beginning of the next meet (see sliding.h) through the
// disagreement of their lines. All these terms are squares; they only ever add.
#pragma once

#include "kernels/tiles.h"

namespace qv {

// The least-squares line through the items taken so far, one step apart. It is held as the change that it
// expects to the next item: on a steep trend its height would swamp the scatter around it.
struct RunningLine {
  double last = 0.0;      // the item taken last
  double expected = 0.0;  // the line's value one step on, less that item
  double slope = 0.0;
  double residual = 0.0;  // sum of squared distances from the line

  // n items have been taken before.
  auto state() noexcept { return std::tie(last, expected, slope, residual); }
  void take(double y, double n) noexcept {
    const double weight = 1.0 / ((n + 1.0) * (n + 2.0)), error = n > 0.0 ? (y - last) - expected : 0.0;
    residual += error * error * (n * (n - 1.0) * weight);
    expected = slope - error * (1.0 - 4.0 * (n + 2.0) * weight);
    slope += error * (6.0 * weight);
    last = y;
  }
  double mean(double n, double anchor) const noexcept {
    return (last - anchor) + (expected - slope * ((n + 1.0) / 2.0));
  }
};

// 0.0 where the variance is not above zero, and for fewer than three items.
class StandardError {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;  // see calculate.h

  explicit StandardError(int period) noexcept : period_(period), missing_(period - 1) {}
  bool ok() const noexcept { return !failed_ && (place_ == 0 || block_.ok()) && (!begun_ || suffix_.ok()); }
  int lead() const noexcept { return period_ - 1; }

  [[gnu::noinline]] void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const int incomplete = std::min(missing_, count);
    for (int at = 0; at < count;) {
      if (ok() && place_ == period_) beginBlock();
      const int items = std::min({count - at, period_ - place_, kTile});
      failed_ = !ok() || !block_.grow(static_cast<std::size_t>(place_) + static_cast<std::size_t>(items));
      if (failed_) return std::fill_n(out[0], count, 0.0), void();
      take(in[0] + at, items, out[0] + at);
      at += items;
    }
    std::fill_n(out[0], period_ < 3 ? count : incomplete, 0.0);
    missing_ -= incomplete;
  }

  bool reserve(int count) noexcept {
    const int items = saturatingSum(place_, count);
    if (items > period_ && !suffix_.ok())
      suffix_ = memory::Buffer<double>(3 * static_cast<std::size_t>(period_));
    return block_.grow(static_cast<std::size_t>(std::min(items, period_))) &&
           (items <= period_ || suffix_.ok());
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(missing_, 0, period_ - 1);
    v.within(place_, 0, period_);
    v(begun_, anchor_, prefix_);
    v.buffer(block_, place_);
    v.buffer(suffix_, begun_ ? 3 * static_cast<std::size_t>(period_) : 0);
  }

 private:
  double* slopes() noexcept { return suffix_.data(); }
  double* means() noexcept { return slopes() + period_; }
  double* residuals() noexcept { return means() + period_; }

  // Lines through what the windows that end in the next block have of this one, in front of each place.
  void beginBlock() noexcept {
    const auto items = static_cast<std::size_t>(period_);
    if (!suffix_.ok()) suffix_ = memory::Buffer<double>(3 * items);
    begun_ = true;
    place_ = 0;
    if (!suffix_.ok()) return;
    anchor_ = block_[items - 1];
    prefix_ = {};
    RunningLine line;  // runs towards the start: its slope has the other sign
    for (int j = period_ - 1, taken = 0; j > 0; --j, ++taken) {
      line.take(block_[static_cast<std::size_t>(j)], taken);
      slopes()[j - 1] = -line.slope;
      means()[j - 1] = line.mean(taken + 1.0, anchor_);
      residuals()[j - 1] = line.residual;
    }
  }
  void take(const double* x, int count, double* out) noexcept {
    Tile slope, mean, residual;
    for (int i = 0; i < count; ++i) {
      const double n = place_ + i;
      prefix_.take(x[i], n);
      slope[i] = prefix_.slope;
      mean[i] = prefix_.mean(n + 1.0, anchor_);
      residual[i] = prefix_.residual;
    }
    std::copy_n(x, count, block_.data() + place_);
    const int first = place_;
    place_ += count;
    const double last = errorOf(residual[count - 1]);  // of the window that is the whole block
    if (begun_) join(first, count, slope, mean, residual, out);
    if (place_ == period_) out[count - 1] = last;
  }
  // Each part's slope and the slope between their means vote for the common slope.
  void join(int first, int count, const double* slopeB, const double* meanB, const double* residualB,
            double* out) noexcept {
    const double *slopeA = slopes() + first, *meanA = means() + first, *residualA = residuals() + first;
    const double p = period_, perStep = 2.0 / p, perSpread = 1.0 / spreadOf(p);
    each(count, [=, this](int j) QV_LAMBDA {
      const double b = first + j + 1.0, a = p - b;
      const double between = (meanB[j] - meanA[j]) * perStep;
      const double weightA = spreadOf(a), weightB = spreadOf(b), weightBetween = a * b * p / 4.0;
      const double slope = (weightA * slopeA[j] + weightB * slopeB[j] + weightBetween * between) * perSpread;
      const double da = slopeA[j] - slope, db = slopeB[j] - slope, dc = between - slope;
      const double disagreement = weightA * da * da + weightB * db * db + weightBetween * dc * dc;
      out[j] = errorOf(residualA[j] + residualB[j] + disagreement);
    });
  }
  // Sum of squared distances of n items' positions from their centre.
  static QV_INLINE double spreadOf(double n) noexcept { return n * (n * n - 1.0) / 12.0; }
  QV_INLINE double errorOf(double residual) const noexcept {
    const double variance = residual / (period_ - 2.0), error = root(variance);
    return variance > 0.0 ? error : 0.0;
  }

  int period_, missing_, place_ = 0;
  bool begun_ = false, failed_ = false;
  double anchor_ = 0.0;  // the item before the block
  RunningLine prefix_;
  memory::Buffer<double> block_, suffix_;
};

}  // namespace qv
