// Oscillators built from the shape of each bar, and the distance from a regression line's forecast.
#pragma once

#include "core/calculation.h"
#include "indicators/averages.h"
#include "indicators/momentum_rsi.h"

namespace qv {

constexpr auto bodyOf = [](double close, double open) { return close - open; };
// The body's size on its side; what does not fall or stand still counts as white, not-a-number included.
constexpr auto whiteOf = [](double close, double open) { return close <= open ? 0.0 : close - open; };
constexpr auto blackOf = [](double close, double open) { return close <= open ? open - close : 0.0; };
// The move from the previous bar's open in terms of the bar's own height.
constexpr auto powerOf = [](double high, double low, double close, double openBefore) {
  const double height = high - low, power = (close - openBefore) / height;
  return height != 0.0 ? power : 0.0;
};

namespace chain {

// Averaged. The very first bar of all has no power.
class BOP {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 1;
  static constexpr bool kBarBefore = true;

  BOP(bool before, int method, int period)
  noexcept : first_(saturatingSum(before, period)), average_(before, method, period) {}
  int lead() const noexcept { return first_; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    const double *open = in[0], *high = in[1], *low = in[2], *close = in[3];
    Tile power;
    const bool first = isFirst_;
    isFirst_ = false;
    const double before = open_.take(open, count);
    power[0] = first ? 0.0 : powerOf(high[0], low[0], close[0], before);
    map(count - 1, power + 1, powerOf, high + 1, low + 1, close + 1, open);
    average_.run({power}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { average_.endShort(items, last); }
  auto state() noexcept { return std::tie(isFirst_, open_, average_); }

 private:
  int first_;
  bool isFirst_ = true;
  Before open_;
  After<MovingAverage> average_;
};

class Qstick {
 public:
  static constexpr unsigned kSeries = kOpen | kClose;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit Qstick(int period) noexcept : average_(period) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile bodies;
    map(count, bodies, bodyOf, in[1], in[0]);
    average_.run({bodies}, count, out);
  }
  auto state() noexcept { return std::tie(average_); }

 private:
  ExpMA average_;
};

// The share of the white bodies in all. A series that is too short has one value, at its last item.
class IMI {
 public:
  static constexpr unsigned kSeries = kOpen | kClose;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit IMI(int period) noexcept : sums_(period) {}
  int lead() const noexcept { return sums_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile whites, blacks, white, black;
    map(count, whites, whiteOf, in[1], in[0]);
    map(count, blacks, blackOf, in[1], in[0]);
    sums_.run({whites, blacks}, count, {white, black});
    map(count, out[0], strengthOf, white, black);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    const auto white = sums_.itemsSoFar(0), black = sums_.itemsSoFar(1);
    if (items > 0)
      *last[0] = strengthOf(std::accumulate(white.begin(), white.end(), 0.0),
                            std::accumulate(black.begin(), black.end(), 0.0));
  }
  auto state() noexcept { return std::tie(sums_); }

 private:
  Sliding<Sums<2>> sums_;
};

// The sum of the ratio of the bars' smoothed heights to the same smoothed twice. The averages are not
// relative to an origin: in a market that stands still both fade away, and their ratio must not.
class MassIndex {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit MassIndex(int period) noexcept : sum_(1, period) {}
  int lead() const noexcept { return sum_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile once, twiceSmoothed;
    map(
        count, once, [](double high, double low) { return high - low; }, in[0], in[1]);
    smooth(first_, once, count, once);
    smooth(second_, once, count, twiceSmoothed);
    begun_ = true;
    map(count, once, ratioOf, once, twiceSmoothed);
    sum_.run({once}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { sum_.endShort(items, last); }
  auto state() noexcept { return std::tie(first_, second_, begun_, sum_); }

 private:
  static constexpr double kShare = 0.2;
  static constexpr auto ratioOf = [](double once, double twiceSmoothed) {
    const double ratio = once / twiceSmoothed;
    return twiceSmoothed != 0.0 ? ratio : 0.0;
  };
  // The first item is its own average.
  void smooth(Recurrence& average, const double* x, int count, double* y) const noexcept {
    const int first = begun_ ? 0 : 1;
    if (first) y[0] = average.next(x[0]);
    average.run(x + first, count - first, y + first, Times{kShare}, AsItIs{});
  }

  Recurrence first_{1.0 - kShare}, second_{1.0 - kShare};
  bool begun_ = false;
  After<MovingSum> sum_;
};

// The distance from the forecast that the line up to the bar before makes, in percent; and its exponential
// average.
class ForecastOscillator {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;
  static constexpr bool kWhole = true;

  ForecastOscillator(int period, int signalPeriod) noexcept
      : period_(period), signal_(period, signalPeriod) {}
  int lead() const noexcept { return period_; }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept {
    // Eight tiles at a time cut the window's blocks less often; what comes from memory waits for less by one.
    double forecast[8 * kTile];
    const int most = count > kNear ? kTile : 8 * kTile;
    for (int at = 0, items; at < count; at += items) {
      items = std::min(most, count - at);
      const double* x = in[0] + at;
      double *miss = out[0] + at, *signal = out[1] + at;
      line_.run({x}, items, {forecast});
      miss[0] = missOf(x[0], forecast_.take(forecast, items));
      map(items - 1, miss + 1, missOf, x + 1, forecast);
      begin_.pass(items, miss);
      signal_.run({miss}, items, {signal});
    }
  }
  auto state() noexcept { return std::tie(line_, forecast_, begin_, signal_); }

 private:
  static constexpr auto missOf = [](double x, double forecast) { return (x - forecast) * 100.0 / x; };

  int period_;
  Sliding<Forecast> line_{period_, Forecast(period_)};
  Before forecast_;
  Lead begin_{period_};
  After<ExpMA> signal_;
};

}  // namespace chain
}  // namespace qv
