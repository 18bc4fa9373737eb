// Popularity and willingness ratios, the Elder rays, and the change of a smoothed series.
#pragma once

#include "core/calculation.h"
#include "indicators/averages_exponential.h"
#include "kernels/sums.h"

namespace qv {

constexpr auto reachInPercent = [](double above, double below) {
  const double percent = above * 100.0 / below;
  return below != 0.0 ? percent : 0.0;
};

namespace chain {

// What the bars reach above their opens in percent of what they reach below, over the newest period - 1 bars
// and the first of all: the bar period - 1 back goes, not the one period back, and the first stays for good.
class AR {
 public:
  static constexpr unsigned kSeries = kOpen | kHighLow;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit AR(int period) noexcept : first_(period - 1), sums_(1, std::max(1, period - 1)), begin_(first_) {}
  int lead() const noexcept { return first_; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const double *open = in[0], *high = in[1], *low = in[2];
    if (!begun_) {
      begun_ = true;
      above_ = high[0] - open[0];
      below_ = open[0] - low[0];
    }
    Tile above, below, sumAbove, sumBelow;
    if (first_ > 0) {  // else the first bar alone
      map(
          count, above, [](double h, double o) { return h - o; }, high, open);
      map(
          count, below, [](double o, double l) { return o - l; }, open, low);
      sums_.run({above, below}, count, {sumAbove, sumBelow});
    } else {
      std::fill_n(sumAbove, count, 0.0);
      std::fill_n(sumBelow, count, 0.0);
    }
    map(
        count, out[0],
        [a = above_, b = below_](double up, double down) { return reachInPercent(a + up, b + down); },
        sumAbove, sumBelow);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(begun_, above_, below_, sums_, begin_); }

 private:
  int first_;
  bool begun_ = false;
  double above_ = 0.0, below_ = 0.0;  // of the first bar
  After<Sliding<Sums<2>>> sums_;
  Lead begin_;
};

// What the bars reach above the previous close in percent of what they reach below, over the newest period -
// 1 bars.
class BR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit BR(int period) noexcept : period_(period), sums_(1, std::max(1, period - 1)), begin_(period) {}
  int lead() const noexcept { return period_; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const double *high = in[0], *low = in[1], *close = in[2];
    const double before = close_.take(close, count);
    Tile above, below, sumAbove, sumBelow;
    above[0] = high[0] - before;
    below[0] = before - low[0];
    map(
        count - 1, above + 1, [](double h, double c) { return h - c; }, high + 1, close);
    map(
        count - 1, below + 1, [](double c, double l) { return c - l; }, close, low + 1);
    if (period_ > 1) {
      sums_.run({above, below}, count, {sumAbove, sumBelow});
    } else {
      std::fill_n(sumAbove, count, 0.0);
      std::fill_n(sumBelow, count, 0.0);
    }
    map(count, out[0], reachInPercent, sumAbove, sumBelow);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(close_, sums_, begin_); }

 private:
  int period_;
  Before close_;
  After<Sliding<Sums<2>>> sums_;
  Lead begin_;
};

// One side of the bars less the average of their closes, which begins `late` bars after them.
template <unsigned kSide>
class Ray {
 public:
  static constexpr unsigned kSeries = kSide | kClose;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit Ray(int period, int late = 0) noexcept : average_(late, period) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile average;
    average_.run({in[1]}, count, {average});
    map(
        count, out[0], [](double price, double mean) { return price - mean; }, in[0], average);
  }
  auto state() noexcept { return std::tie(average_); }

 private:
  After<ExpMA> average_;
};
using ERAYBull = Ray<kHigh>;
using ERAYBear = Ray<kLow>;

// The average's change over `lag` bars in percent; it begins `late` bars after the start.
class SONAR {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  SONAR(int period, int lag, int late = 0)
  noexcept : first_(saturatingSum(period, lag)), average_(late, period), then_(lag), begin_(first_) {}
  int lead() const noexcept { return first_; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile average;
    average_.run(in, count, {average});
    then_.over(average, count, [&](int at, int items, const double* then) {
      map(items, out[0] + at, changeOf, average + at, then);
    });
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(average_, then_, begin_); }

 private:
  static constexpr auto changeOf = [](double now, double then) {
    const double percent = (now - then) * 100.0 / then;
    return then != 0.0 ? percent : 0.0;
  };

  int first_;
  After<ExpMA> average_;
  Delay then_;
  Lead begin_;
};

}  // namespace chain
}  // namespace qv
