// Formations of one bar against the bar before, and where a series turns.
#pragma once

#include "core/calculation.h"
#include "kernels/tiles.h"

namespace qv {

// The rules of formations, of the prices of a bar and of the one before it. All comparisons are strict, so
// equal prices make no formation. Joined by & and not by &&: prices go either way from bar to bar, and a
// mispredicted branch costs more than all the comparisons.
namespace formation {

// +1 for the upward case, else -1 for the downward one.
constexpr double signalOf(bool up, bool down) noexcept {
  return (up ? 1.0 : 0.0) - (down & !up ? 1.0 : 0.0);
}

struct Prices {
  double high, low, close;
};

struct GapUp {
  static constexpr unsigned kSeries = kHighLow;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return now.low > before.high ? 1.0 : 0.0;
  }
};
struct GapDown {
  static constexpr unsigned kSeries = kHighLow;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return now.high < before.low ? 1.0 : 0.0;
  }
};
struct Gap {
  static constexpr unsigned kSeries = kHighLow;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return signalOf(now.low > before.high, now.high < before.low);
  }
};
struct InsideBar {
  static constexpr unsigned kSeries = kHighLow;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return (now.high < before.high) & (now.low > before.low) ? 1.0 : 0.0;
  }
};
struct OutsideBar {
  static constexpr unsigned kSeries = kHighLow;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return (now.high > before.high) & (now.low < before.low) ? 1.0 : 0.0;
  }
};
struct ClosePriceReversal {
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    const bool outside = (now.high > before.high) & (now.low < before.low);
    return signalOf(outside & (now.close > before.high), outside & (now.close < before.low));
  }
};
// A gap whose bar closes in the outer 30 % of its range, against the gap.
struct IslandReversal {
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    const double part = 0.7 * (now.high - now.low);
    return signalOf((now.high < before.low) & (now.close > now.low + part),
                    (now.low > before.high) & (now.close < now.high - part));
  }
};
struct KeyReversal {
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr double of(const Prices& now, const Prices& before) noexcept {
    return signalOf((now.low < before.low) & (now.close > before.close),
                    (now.high > before.high) & (now.close < before.close));
  }
};

}  // namespace formation

namespace chain {

// The signals of a rule; none at the first bar, which has none before it.
template <typename Rule>
class Formation {
 public:
  static constexpr unsigned kSeries = Rule::kSeries;
  static constexpr int kInputs = kSeries == kHighLow ? 2 : 3, kOutputs = 1;
  static constexpr bool kWhole = true, kBarBefore = true;

  explicit Formation(bool before) noexcept : lead_(before) {}
  int lead() const noexcept { return lead_; }
  void run(Inputs<kInputs> in, int count, Outputs<1> out) noexcept {
    const auto signalOf = [](double high, double low, double close, double highBefore, double lowBefore,
                             double closeBefore) {
      return Rule::of({high, low, close}, {highBefore, lowBefore, closeBefore});
    };
    const double *high = in[0], *low = in[1], *close = in[kInputs - 1];
    const double highBefore = high_.take(high, count), lowBefore = low_.take(low, count),
                 closeBefore = close_.take(close, count);
    out[0][0] = signalOf(high[0], low[0], close[0], highBefore, lowBefore, closeBefore);
    map(count - 1, out[0] + 1, signalOf, high + 1, low + 1, close + 1, high, low, close);
    none_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(high_, low_, close_, none_); }

 private:
  int lead_;
  Before high_, low_, close_;
  Lead none_{1};
};

// The item before was a trough (1) or a peak (-1).
class TurnFill {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    const double before = last_.take(x, count), twoBefore = lastButOne_;
    out[0][0] = turnOf(x[0], before, twoBefore);
    if (count > 1) out[0][1] = turnOf(x[1], x[0], before);
    map(std::max(count - 2, 0), out[0] + 2, turnOf, x + 2, x + 1, x);
    lastButOne_ = count > 1 ? x[count - 2] : before;
    none_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(last_, lastButOne_, none_); }

  static constexpr auto turnOf = [](double now, double before, double twoBefore) {
    const double trough = (now > before) & (before < twoBefore) ? 1.0 : 0.0,
                 peak = (now < before) & (before > twoBefore) ? 1.0 : 0.0;
    return trough - peak;
  };

 private:
  Before last_;
  double lastButOne_ = 0.0;
  Lead none_{2};
};

}  // namespace chain
}  // namespace qv
