// Stochastics: where the close stands within the range of the last bars.
#pragma once

#include "core/calculation.h"
#include "indicators/averages.h"
#include "kernels/bar_extremes.h"
#include "kernels/extremes.h"

namespace qv {

// The close's distance from the middle of a range, and the range's height.
constexpr auto fromMiddleOf = [](double close, double highest, double lowest) {
  return close - (highest + lowest) / 2.0;
};
constexpr auto heightOf = [](double highest, double lowest) { return highest - lowest; };

namespace chain {

// %K of the close within the highest high and the lowest low.
class RawK {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit RawK(int period) noexcept : percent_(period) {}
  int lead() const noexcept { return percent_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept { percent_.run(in, count, out); }
  auto state() noexcept { return std::tie(percent_); }

 private:
  Sliding<PercentWithin> percent_;
};

class FastD {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  FastD(int k, int d) noexcept : raw_(k), average_(raw_.lead(), shareOf(d)) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    raw_.run(in, count, out);
    average_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(raw_, average_); }

 private:
  RawK raw_;
  After<Exponential> average_;
};

class SlowD {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  SlowD(int k, int d1, int d2) noexcept : fast_(k, d1), average_(fast_.lead(), shareOf(d2)) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    fast_.run(in, count, out);
    average_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(fast_, average_); }

 private:
  FastD fast_;
  After<Exponential> average_;
};

// %K of a series within its own range.
class Stochastic {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit Stochastic(int period) noexcept : percent_(period) {}
  int lead() const noexcept { return percent_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    percent_.run({in[0], in[0], in[0]}, count, out);
  }
  auto state() noexcept { return std::tie(percent_); }

 private:
  Sliding<PercentWithin> percent_;
};

// %K of the close within all prices, and its average.
class StochasticFast {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 2;

  StochasticFast(int method, int k, int d) noexcept : raw_(k), average_(raw_.lead(), method, d) {}
  int lead(int output) const noexcept { return output == 0 ? raw_.lead() : average_.lead(); }
  void run(Inputs<4> in, int count, Outputs<2> out) noexcept {
    raw_.run(in, count, {out[0]});
    average_.run({out[0]}, count, {out[1]});
  }
  void endShort(int items, Outputs<2> last) const noexcept { average_.endShort(items, {last[1]}); }
  auto state() noexcept { return std::tie(raw_, average_); }

 private:
  SlidingBars<PercentWithinPrices> raw_;
  After<MovingAverage> average_;
};

// The average of that %K, and the average of the average.
class StochasticOscillator {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 2;

  StochasticOscillator(int method, int k, int slowing, int d) noexcept
      : raw_(k), slow_(raw_.lead(), method, slowing), average_(slow_.lead(), method, d) {}
  int lead(int output) const noexcept { return output == 0 ? slow_.lead() : average_.lead(); }
  void run(Inputs<4> in, int count, Outputs<2> out) noexcept {
    Tile raw;
    raw_.run(in, count, {raw});
    slow_.run({raw}, count, {out[0]});
    average_.run({out[0]}, count, {out[1]});
  }
  void endShort(int items, Outputs<2> last) const noexcept {
    slow_.endShort(items, {last[0]});
    average_.endShort(items, {last[1]});
  }
  auto state() noexcept { return std::tie(raw_, slow_, average_); }

 private:
  SlidingBars<PercentWithinPrices> raw_;
  After<MovingAverage> slow_, average_;
};

// 0 at the high, 100 at the low: not negated.
class WilliamsR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit WilliamsR(int period) noexcept : percent_(period) {}
  int lead() const noexcept { return percent_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept { percent_.run(in, count, out); }
  auto state() noexcept { return std::tie(percent_); }

 private:
  Sliding<PercentBelow> percent_;
};

// The close's distance from the middle of its range and the range's height, both smoothed twice; and its
// signal line.
class SMI {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 2;

  SMI(int period, int r, int s, int signal)
  noexcept
      : range_(period),
        distance_(lead(), shareOf(r)),
        distance2_(lead(), shareOf(s)),
        height_(lead(), shareOf(r)),
        height2_(lead(), shareOf(s)),
        signal_(lead(), shareOf(signal)) {}
  int lead() const noexcept { return range_.lead(); }
  void run(Inputs<3> in, int count, Outputs<2> out) noexcept {
    Tile highest, lowest, distance, height;
    range_.run({in[0], in[1]}, count, {highest, lowest});
    map(count, distance, fromMiddleOf, in[2], highest, lowest);
    map(count, height, heightOf, highest, lowest);
    distance_.run({distance}, count, {distance});
    distance2_.run({distance}, count, {distance});
    height_.run({height}, count, {height});
    height2_.run({height}, count, {height});
    const auto indexOf = [](double from, double of) {
      const double index = 100.0 * from / (of / 2.0);
      return of != 0.0 ? index : 0.0;
    };
    map(count, out[0], indexOf, distance, height);
    signal_.run({out[0]}, count, {out[1]});
  }
  auto state() noexcept { return std::tie(range_, distance_, distance2_, height_, height2_, signal_); }

 private:
  Sliding<HighestLowest> range_;
  After<ExponentialAboutZero> distance_, distance2_, height_, height2_;
  After<Exponential> signal_;
};

}  // namespace chain
}  // namespace qv
