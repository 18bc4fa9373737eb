// Wilder's swing index and its running sum.
#pragma once

#include <cmath>

#include "core/calculation.h"
#include "kernels/exponential.h"

namespace qv {

// A bar's move in relation to its reach, measured from the bar before.
constexpr auto swingOf = [](double open, double high, double low, double close, double openBefore,
                            double closeBefore, double limitMove) {
  const double a = std::fabs(high - closeBefore), b = std::fabs(low - closeBefore);
  const double d = std::fabs(closeBefore - openBefore), g = high - low;
  const double upward = a - 0.5 * b + 0.25 * d, downward = b - 0.5 * a + 0.25 * d, within = g + 0.25 * d;
  const double reach = (a >= b) & (a >= g) ? upward : (b >= a) & (b >= g) ? downward : within;
  const double change = close - closeBefore + 0.5 * (close - open) + 0.25 * (closeBefore - openBefore);
  const double further = a > b ? a : b, swing = change / reach * 50.0 * further / limitMove;
  return reach != 0.0 ? swing : 0.0;
};

namespace chain {

class SwingIndex {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 1;

  explicit SwingIndex(double limitMove) noexcept : limitMove_(limitMove) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    const double *open = in[0], *high = in[1], *low = in[2], *close = in[3];
    const double openBefore = open_.take(open, count), closeBefore = close_.take(close, count);
    const double limit = limitMove_;
    out[0][0] = swingOf(open[0], high[0], low[0], close[0], openBefore, closeBefore, limit);
    map(
        count - 1, out[0] + 1,
        [limit](double o, double h, double l, double c, double ob, double cb) {
          return swingOf(o, h, l, c, ob, cb, limit);
        },
        open + 1, high + 1, low + 1, close + 1, open, close);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(open_, close_, begin_); }

 private:
  double limitMove_;
  Before open_, close_;
  Lead begin_{1};
};

class AccumSwingIndex {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 1;

  explicit AccumSwingIndex(double limitMove) noexcept : swing_(limitMove) {}
  int lead() const noexcept { return swing_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    swing_.run(in, count, out);
    sum_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(swing_, sum_); }

 private:
  SwingIndex swing_;
  Total sum_;
};

}  // namespace chain
}  // namespace qv
