// Price moves weighed by volume or open interest.
#pragma once

#include <cmath>

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "indicators/averages.h"
#include "kernels/balances.h"

namespace qv {

// What a bar adds to a running total, out of its close and volume and those of the bar before: volume on
// balance, price-volume trend, and relative changes on bars whose volume fell or rose.
struct OnBalance {
  double operator()(double close, double before, double amount, double) const noexcept {
    const double bought = close > before ? amount : 0.0, sold = close < before ? amount : 0.0;
    return bought - sold;
  }
};
struct VolumeTimesChange {
  double operator()(double close, double before, double volume, double) const noexcept {
    return (close - before) * volume / before;
  }
};
struct ChangeOnLessVolume {
  double operator()(double close, double before, double volume, double volumeBefore) const noexcept {
    const double change = (close - before) / before;
    return volume < volumeBefore ? change : 0.0;
  }
};
struct ChangeOnMoreVolume {
  double operator()(double close, double before, double volume, double volumeBefore) const noexcept {
    const double change = (close - before) / before;
    return volume > volumeBefore ? change : 0.0;
  }
};
namespace chain {

// The running total of steps from bar to bar.
template <typename Step>
class TotalOfSteps {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 1;

  int lead() const noexcept { return total_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const auto [close, volume] = in;
    Tile steps;
    steps[0] = Step{}(close[0], close_.take(close, count), volume[0], volume_.take(volume, count));
    map(count - 1, steps + 1, Step{}, close + 1, close, volume + 1, volume);
    total_.run({steps}, count, out);
  }
  auto state() noexcept { return std::tie(close_, volume_, total_); }

 private:
  Before close_, volume_;
  After<Total> total_{1};
};
using OBV = TotalOfSteps<OnBalance>;
using PVT = TotalOfSteps<VolumeTimesChange>;
using NVI = TotalOfSteps<ChangeOnLessVolume>;
using PVI = TotalOfSteps<ChangeOnMoreVolume>;

// The first value reads 0.0 where its falling flow is no number. A series too short for it has one value, at
// its last item.
class MoneyFlowIndex {
 public:
  static constexpr unsigned kSeries = kHighLowClose | kVolume;
  static constexpr int kInputs = 4, kOutputs = 1;

  explicit MoneyFlowIndex(int period) noexcept : first_(saturatingSum(period, 1)), index_(1, period) {}
  int lead() const noexcept { return index_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile typical, flow, rising, falling;
    map(count, typical, comparedPriceOf, in[0], in[1], in[2]);
    map(
        count, flow, [](double price, double volume) { return price * volume; }, typical, in[3]);
    const double before = typical_.take(typical, count);
    rising[0] = risingOf(flow[0], typical[0], before);
    falling[0] = fallingOf(flow[0], typical[0], before);
    map(count - 1, rising + 1, risingOf, flow + 1, typical + 1, typical);
    map(count - 1, falling + 1, fallingOf, flow + 1, typical + 1, typical);
    index_.run({rising, falling}, count, out);
    if (const int seeds = first_.pass(count)) {
      for (int j = 0; j < seeds; ++j) {
        risingSoFar_ += rising[j];
        fallingSoFar_ += falling[j];
      }
      if (!isNonZero(fallingSoFar_)) out[0][seeds - 1] = 0.0;
    }
  }
  void endShort(int, Outputs<1> last) const noexcept {
    if (isNonZero(fallingSoFar_)) *last[0] = moneyFlowIndexOf(risingSoFar_, fallingSoFar_);
  }
  auto state() noexcept { return std::tie(typical_, first_, risingSoFar_, fallingSoFar_, index_); }

 private:
  // The typical price, by division: bars are told apart by it.
  static constexpr auto comparedPriceOf = [](double high, double low, double close) {
    return (high + low + close) / 3.0;
  };
  static constexpr auto risingOf = [](double flow, double now, double before) {
    return now > before ? flow : 0.0;
  };
  static constexpr auto fallingOf = [](double flow, double now, double before) {
    return now < before ? flow : 0.0;
  };

  Before typical_;
  Lead first_;  // the bars of the first value
  double risingSoFar_ = 0.0, fallingSoFar_ = 0.0;
  After<Sliding<MoneyFlow>> index_;
};

// The average's changes are the average of the changes.
class ForceIndex {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit ForceIndex(int period) noexcept : average_(shareOf(period)) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const auto [close, volume] = in;
    Tile changes;
    changes[0] = close[0] - close_.take(close, count);
    map(count - 1, changes + 1, std::minus<>{}, close + 1, close);
    average_.run({changes}, count, {changes});
    map(count, out[0], std::multiplies<>{}, changes, volume);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(close_, average_, begin_); }

 private:
  Before close_;
  ExponentialAboutZero average_;
  Lead begin_{1};
};

// Ease of movement. What the average holds before the first valid index stays.
class EMV {
 public:
  static constexpr unsigned kSeries = kHighLow | kVolume;
  static constexpr int kInputs = 3, kOutputs = 1;

  EMV(int method, int period) noexcept : period_(period), average_(method, period) {}
  int lead() const noexcept { return period_; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const auto [high, low, volume] = in;
    Tile ease;
    ease[0] = easeOf(high[0], low[0], volume[0], high_.take(high, count), low_.take(low, count));
    map(count - 1, ease + 1, easeOf, high + 1, low + 1, volume + 1, high, low);
    if (!begun_) ease[0] = 0.0;
    begun_ = true;
    average_.run({ease}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { average_.endShort(items, last); }
  auto state() noexcept { return std::tie(begun_, high_, low_, average_); }

 private:
  // Less the whole height of the bar before, where ArmsEMV takes its midpoint.
  static constexpr auto easeOf = [](double high, double low, double volume, double highBefore,
                                    double lowBefore) {
    const double box = volume / (high - low), ease = ((high + low) / 2.0 - highBefore + lowBefore) / box;
    return (box < 0.0) | (box > 0.0) ? ease : 0.0;
  };
  int period_;
  bool begun_ = false;
  Before high_, low_;
  MovingAverage average_;
};

class ArmsEMV {
 public:
  static constexpr unsigned kSeries = kHighLow | kVolume;
  static constexpr int kInputs = 3, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit ArmsEMV(int volumeDivisor) noexcept : divisor_(volumeDivisor) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const auto easeOf = [divisor = divisor_](double high, double low, double volume, double highBefore,
                                             double lowBefore) {
      const double box = (volume / divisor) / (high - low);
      const double ease = (medianPrice(high, low) - medianPrice(highBefore, lowBefore)) / box;
      return !(volume > 0.0) | (high == low) ? 0.0 : ease;
    };
    const auto [high, low, volume] = in;
    out[0][0] = easeOf(high[0], low[0], volume[0], high_.take(high, count), low_.take(low, count));
    map(count - 1, out[0] + 1, easeOf, high + 1, low + 1, volume + 1, high, low);
    if (!begun_) out[0][0] = 0.0;
    begun_ = true;
  }
  auto state() noexcept { return std::tie(begun_, high_, low_); }

 private:
  double divisor_;
  bool begun_ = false;
  Before high_, low_;
};

class HerrickPayoffIndex {
 public:
  static constexpr unsigned kSeries = kHighLow | kVolume | kOpenInterest;
  static constexpr int kInputs = 4, kOutputs = 1;

  HerrickPayoffIndex(double multiplier, double smoothing) noexcept
      : multiplier_(multiplier), smoothing_(smoothing) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    const auto [high, low, volume, interest] = in;
    const double highBefore = high_.take(high, count), lowBefore = low_.take(low, count),
                 interestBefore = interest_.take(interest, count);
    for (int j = 0; j < count; ++j) {
      const double earlier = j > 0 ? interest[j - 1] : interestBefore;
      const double change = std::fabs(interest[j] - earlier), smaller = std::min(interest[j], earlier);
      const double before = payoff_;
      double payoff = before;
      if (smaller != 0.0) {
        const double move = medianPrice(high[j], low[j]) - (j > 0 ? medianPrice(high[j - 1], low[j - 1])
                                                                  : medianPrice(highBefore, lowBefore));
        payoff = multiplier_ * volume[j] * (2.0 * change / smaller + 1.0) * move;
      }
      if (passed_ == 0) payoff = 0.0;
      payoff_ = out[0][j] = passed_ < 2 ? payoff : (payoff - before) * smoothing_ + before;
      if (passed_ < 2) ++passed_;
    }
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(passed_, 0, 2);
    v(payoff_, high_, low_, interest_);
  }

 private:
  double multiplier_, smoothing_, payoff_ = 0.0;
  int passed_ = 0;  // bars, up to the second
  Before high_, low_, interest_;
};

// Volume ratio: volume of rising over volume of falling closes; unchanged ones count half on each side.
class VR {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit VR(int period) noexcept : ratio_(1, period, RatioOfSums(100.0)) {}
  int lead() const noexcept { return ratio_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const auto [close, volume] = in;
    const double before = close_.take(close, count);
    Tile up, down;
    up[0] = upOf(close[0], before, volume[0]);
    down[0] = downOf(close[0], before, volume[0]);
    map(count - 1, up + 1, upOf, close + 1, close, volume + 1);
    map(count - 1, down + 1, downOf, close + 1, close, volume + 1);
    ratio_.run({up, down}, count, out);
  }
  auto state() noexcept { return std::tie(close_, ratio_); }

 private:
  static constexpr auto upOf = [](double close, double before, double volume) {
    const double half = volume / 2.0, rest = close < before ? 0.0 : half;
    return close > before ? volume : rest;
  };
  static constexpr auto downOf = [](double close, double before, double volume) {
    const double half = volume / 2.0, rest = close > before ? 0.0 : half;
    return close < before ? volume : rest;
  };
  Before close_;
  After<Sliding<RatioOfSums>> ratio_;
};

// Volume oscillator: the first average less the second one of the bar before. `late`: where the series begins
// so many bars behind the start, the lead is counted from that.
class VOSC {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  VOSC(int p1, int p2, int method, int late = 0)
  noexcept : lead_(std::max(p1, p2) - late), averages_(method, p1, p2), missing_(std::max(0, lead_)) {}
  int lead() const noexcept { return lead_; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile first, second;
    averages_.run(in, count, {first, second});
    out[0][0] = percentOf(first[0], secondBefore_.take(second, count));
    map(count - 1, out[0] + 1, percentOf, first + 1, second);
    missing_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(averages_, secondBefore_, missing_); }

 private:
  static constexpr auto percentOf = [](double first, double secondBefore) {
    const double percent = (first - secondBefore) * 100.0 / first;
    return first != 0.0 ? percent : 0.0;
  };
  int lead_;
  TwoAverages averages_;
  Before secondBefore_{0.0};
  Lead missing_;
};

}  // namespace chain
}  // namespace qv
