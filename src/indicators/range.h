// Range indicator, polarized fractal efficiency, Wilder's volatility system.
#pragma once

#include <cmath>

#include "core/calculation.h"
#include "indicators/averages.h"
#include "indicators/trend_directional.h"
#include "kernels/extremes.h"

namespace qv {

// The length of a step from one bar to the next.
constexpr auto stepOf = [](double now, double before) {
  const double d = now - before;
  return std::sqrt(d * d + 1.0);
};

namespace chain {

// Where the true range, in terms of the close's rise where it rose, stands in its own range; smoothed.
class RangeIndicator {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  RangeIndicator(int period, int smoothing) noexcept
      : percent_(1, period), average_(percent_.lead(), smoothing) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile ranges, percent;
    const double before = close_.take(in[2], count);
    range_.run(in[0], in[1], in[2], count, ranges);
    ranges[0] = perRise(ranges[0], in[2][0], before);
    map(count - 1, ranges + 1, perRise, ranges + 1, in[2] + 1, in[2]);
    percent_.run({ranges, ranges, ranges}, count, {percent});
    average_.run({percent}, count, out);
  }
  auto state() noexcept { return std::tie(range_, close_, percent_, average_); }

 private:
  static constexpr auto perRise = [](double range, double close, double before) {
    const double share = range / (close - before);
    return close > before ? share : range;
  };

  TrueRange range_;
  Before close_;
  After<Sliding<PercentWithin>> percent_;
  After<ExpMA> average_;
};

// The straight way over a period in terms of the steps that were taken; smoothed.
class PFE {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  PFE(int period, int smoothing)
  noexcept
      : far_(static_cast<double>(period) * period),
        then_(period - 1),
        way_(1, period),
        average_(period, smoothing) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile steps, way, efficiency;
    steps[0] = stepOf(x[0], before_.take(x, count));
    map(count - 1, steps + 1, stepOf, x + 1, x);
    way_.run({steps}, count, {way});
    then_.over(x, count, [&, far = far_](int at, int items, const double* then) {
      map(
          items, efficiency + at,
          [far](double now, double before, double taken) {
            const double d = now - before, share = std::sqrt(d * d + far) * 100.0 / taken;
            return now < before ? -share : share;
          },
          x + at, then, way + at);
    });
    average_.run({efficiency}, count, out);
  }
  auto state() noexcept { return std::tie(before_, then_, way_, average_); }

 private:
  double far_;
  Before before_;
  Delay then_;
  After<Sliding<Sums<1>>> way_;
  After<ExpMA> average_;
};

// Stays with the highest or lowest close of its side until the close stands more than the scaled range of the
// bar before away from it. It begins one bar before the range's first value, with a period of 1 one bar
// before the start.
class WellesVolatility {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 4;  // significant close, range, stop, signal
  static constexpr bool kBarBefore = true;

  WellesVolatility(bool before, double constant, int period) noexcept
      : constant_(constant),
        first_(std::max(saturatingSum(before, period, -2), 0)),
        begin_(first_),
        scaled_(saturatingSum(before, period, -1)),
        range_(before, period) {}
  int lead(int output) const noexcept {
    return output == 0 ? first_ : output == 1 ? range_.lead() : saturatingSum(first_, 1);
  }
  void run(Inputs<3> in, int count, Outputs<4> out) noexcept {
    const auto [significant, range, stop, signal] = out;
    range_.run(in, count, {range});
    const int unscaled = scaled_.pass(count);
    map(
        count - unscaled, range + unscaled, [k = constant_](double r) { return r * k; }, range + unscaled);

    int i = begin_.pass(count, significant, stop, signal);
    if (i < count && !begun_) {
      begun_ = true;
      significant[i] = significant_ = in[2][i];
      stop[i] = signal[i] = 0.0;
      reach_ = range[i++];
    }
    for (; i < count; ++i) follow(in[2][i], range[i], &significant[i], &stop[i], &signal[i]);
  }
  void endShort(int items, Outputs<4> last) const noexcept {
    if (items <= range_.lead()) range_.endShort(items, {last[1]});
  }
  auto state() noexcept { return std::tie(begin_, scaled_, range_, begun_, isLong_, significant_, reach_); }

 private:
  void follow(double close, double range, double* significant, double* stop, double* signal) noexcept {
    const double level = isLong_ ? significant_ - reach_ : significant_ + reach_;
    significant_ = isLong_ ? std::max(significant_, close) : std::min(significant_, close);
    const bool turns = isLong_ ? close < level : close > level;
    if (turns) {
      significant_ = close;
      isLong_ = !isLong_;
    }
    *significant = significant_;
    *stop = level;
    *signal = !turns ? 0.0 : isLong_ ? 1.0 : -1.0;
    reach_ = range;
  }

  double constant_;
  int first_;
  Lead begin_, scaled_;
  After<ATR> range_;
  bool begun_ = false, isLong_ = false;
  double significant_ = 0.0, reach_ = 0.0;
};

}  // namespace chain
}  // namespace qv
