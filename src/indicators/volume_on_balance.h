// On balance: volume or open interest added on rising closes and subtracted on falling ones.
#pragma once

#include <functional>

#include "core/calculation.h"
#include "indicators/volume.h"
#include "kernels/extremes.h"

namespace qv {

// Amounts on balance; that of the first bar is 0.0.
class AmountsOnBalance {
 public:
  void run(const double* close, const double* amount, int count, double* out) noexcept {
    const auto onBalanceOf = [](double now, double before, double of) {
      return OnBalance{}(now, before, of, of);
    };
    out[0] = onBalanceOf(close[0], close_.take(close, count), amount[0]);
    map(count - 1, out + 1, onBalanceOf, close + 1, close, amount + 1);
  }
  auto state() noexcept { return std::tie(close_); }

 private:
  Before close_;
};

// The last three recorded swings of either kind, newest first.
class Swings {
 public:
  void record(double value, bool high) noexcept {
    last_[2] = last_[1];
    last_[1] = last_[0];
    last_[0] = {value, high};
    if (count_ < 3) ++count_;
  }

  // +1.0 when the values of each kind rise, -1.0 when they fall; with three swings of two kinds
  // there is always a pair to compare.
  double trend() const noexcept {
    if (count_ < 3) return 0.0;
    bool rising = true, falling = true;
    for (int later = 0; later < 2; ++later)
      for (int earlier = later + 1; earlier < 3; ++earlier) {
        const Swing &a = last_[static_cast<std::size_t>(earlier)],
                    &b = last_[static_cast<std::size_t>(later)];
        if (a.high != b.high) continue;
        rising = rising && b.value > a.value;
        falling = falling && b.value < a.value;
      }
    return rising ? 1.0 : falling ? -1.0 : 0.0;
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(last_);
    v.within(count_, 0, 3);
  }

 private:
  struct Swing {
    double value;
    bool high;
    auto state() noexcept { return std::tie(value, high); }
  };
  std::array<Swing, 3> last_{};
  int count_ = 0;
};

namespace chain {

// The sum of the `period` changes that end at each bar.
class OBVolMv {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit OBVolMv(int period) noexcept : sum_(1, period) {}
  int lead() const noexcept { return sum_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile amounts;
    amounts_.run(in[0], in[1], count, amounts);
    sum_.run({amounts}, count, out);
  }
  auto state() noexcept { return std::tie(amounts_, sum_); }

 private:
  AmountsOnBalance amounts_;
  After<Sliding<Sums<1>>> sum_;
};

// One change fewer, and the open interest of the bar before the first of them.
class OBOiMv {
 public:
  static constexpr unsigned kSeries = kClose | kOpenInterest;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit OBOiMv(int period) noexcept : begin_(period - 1), sum_(std::max(1, period - 1)) {}
  int lead() const noexcept { return begin_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile begin;
    begin_.run({in[1]}, count, {begin});
    if (begin_.lead() == 0) return void(std::copy_n(begin, count, out[0]));
    Tile sum;
    sum_.run(in, count, {sum});
    map(count, out[0], std::plus<>{}, sum, begin);
  }
  auto state() noexcept { return std::tie(begin_, sum_); }

 private:
  Delay begin_;
  OBVolMv sum_;
};

// With its swings: the bar `period` before is one when it is the extreme of the 2 * period + 1 bars up to
// now.
class OBVolExp {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 3;

  explicit OBVolExp(int period) noexcept : range_(saturatingSum(period, period, 1)), middle_(period) {}
  bool ok() const noexcept { return isOk(range_) && isOk(middle_); }
  int lead() const noexcept { return 1; }
  void run(Inputs<2> in, int count, Outputs<3> out) noexcept {
    const auto [volume, breakout, trend] = out;
    Tile amounts, highest, lowest, middle;
    amounts_.run(in[0], in[1], count, amounts);
    for (int j = 0; j < count; ++j) volume[j] = total_ += amounts[j];  // in this order: swings are compared
    range_.run({volume, volume}, count, {highest, lowest});
    middle_.run({volume}, count, {middle});
    const int none = lead_.pass(count, breakout, trend);
    for (int j = none; j < count; ++j) {
      record(middle[j], highest[j], lowest[j]);
      const bool high = anyHigh_ && volume[j] >= lastHigh_, low = anyLow_ && volume[j] <= lastLow_;
      breakout[j] = high ? 1.0 : low ? -1.0 : 0.0;
      trend[j] = trend_;
    }
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(amounts_, total_, range_, middle_, lead_, swings_, lastHigh_, lastLow_, trend_);
    v(anyHigh_, anyLow_, wasHigh_, wasLow_);
  }

 private:
  void record(double middle, double highest, double lowest) noexcept {
    const bool isHigh = middle == highest, isLow = middle == lowest;
    // After another one it is the same: each is the extreme of bars that hold the other.
    if (isHigh && !wasHigh_) {
      swings_.record(middle, true);
      lastHigh_ = middle;
      anyHigh_ = true;
      trend_ = swings_.trend();
    }
    if (isLow && !wasLow_) {
      swings_.record(middle, false);
      lastLow_ = middle;
      anyLow_ = true;
      trend_ = swings_.trend();
    }
    wasHigh_ = isHigh;
    wasLow_ = isLow;
  }

  AmountsOnBalance amounts_;
  double total_ = 0.0;
  Sliding<HighestLowest> range_;
  Delay middle_;
  Lead lead_{range_.lead()};
  Swings swings_;
  double lastHigh_ = 0.0, lastLow_ = 0.0, trend_ = 0.0;
  bool anyHigh_ = false, anyLow_ = false, wasHigh_ = false, wasLow_ = false;
};

}  // namespace chain
}  // namespace qv
