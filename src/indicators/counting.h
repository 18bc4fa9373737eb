// Counts and sums of bar-to-bar changes.
#pragma once

#include "core/calculation.h"
#include "indicators/averages.h"
#include "indicators/momentum_rsi.h"

namespace qv {

// Of the bar's move what buyers took (from its true low) or sellers (from its true high).
inline constexpr auto williamsFlowOf = [](double close, double high, double low, double closeBefore) {
  const double bought = close - (closeBefore < low ? closeBefore : low);
  const double sold = (high < closeBefore ? closeBefore : high) - close;
  return close > closeBefore ? bought : close < closeBefore ? -sold : 0.0;
};
// 1 both up, 2 price up, 3 both down, 4 volume up.
inline constexpr auto rankOf = [](double close, double volume, double closeBefore, double volumeBefore) {
  const bool priceUp = close >= closeBefore, volumeUp = volume >= volumeBefore;
  const double rising = volumeUp ? 1.0 : 2.0, falling = volumeUp ? 4.0 : 3.0;
  return priceUp ? rising : falling;
};

namespace chain {

// The first valid bar itself is 0.0: what counts begins one bar later.
class PsychologyLine {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit PsychologyLine(int period) noexcept
      : period_(period), rises_(1, period), begin_(saturatingSum(period, 1)) {}
  int lead() const noexcept { return rises_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    const auto rose = [](double now, double before) { return now > before ? 1.0 : 0.0; };
    Tile rises;
    rises[0] = rose(x[0], before_.take(x, count));
    map(count - 1, rises + 1, rose, x + 1, x);
    rises_.run({rises}, count, out);
    map(
        count, out[0], [p = period_](double rising) { return rising / p * 100.0; }, out[0]);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(before_, rises_, begin_); }

 private:
  int period_;
  Before before_;
  After<Sliding<Sums<1>>> rises_;
  Lead begin_;
};

class WilliamsAD {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  int lead() const noexcept { return 1; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const double *high = in[0], *low = in[1], *close = in[2];
    Tile flow;
    flow[0] = williamsFlowOf(close[0], high[0], low[0], before_.take(close, count));
    map(count - 1, flow + 1, williamsFlowOf, close + 1, high + 1, low + 1, close);
    total_.run({flow}, count, out);
  }
  auto state() noexcept { return std::tie(before_, total_); }

 private:
  Before before_;
  Total total_;
};

class PVrank {
 public:
  static constexpr unsigned kSeries = kClose | kVolume;
  static constexpr int kInputs = 2, kOutputs = 1;

  int lead() const noexcept { return 1; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const double *close = in[0], *volume = in[1];
    const double closeBefore = close_.take(close, count), volumeBefore = volume_.take(volume, count);
    out[0][0] = rankOf(close[0], volume[0], closeBefore, volumeBefore);
    map(count - 1, out[0] + 1, rankOf, close + 1, volume + 1, close, volume);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(close_, volume_, begin_); }

 private:
  Before close_, volume_;
  Lead begin_{1};
};

class LineOsc {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit LineOsc(int period) noexcept : means_(period, Means<2>(period)) {}
  int lead() const noexcept { return means_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile a, b;
    means_.run(in, count, {a, b});
    map(
        count, out[0], [](double first, double second) { return first - second; }, a, b);
  }
  auto state() noexcept { return std::tie(means_); }

 private:
  Sliding<Means<2>> means_;
};

// The relative strength on a scale of -100 to 100.
class NMO {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit NMO(int period) noexcept : rsi_(period), begin_(rsi_.lead()) {}
  int lead() const noexcept { return rsi_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    rsi_.run(in, count, out);
    map(count, out[0], balanced, out[0]);
    begin_.pass(count, out[0]);
  }
  void endShort(int items, Outputs<1> last) const noexcept { rsi_.endShort(items, last); }

  static constexpr auto balanced = [](double strength) { return 2.0 * strength - 100.0; };
  auto state() noexcept { return std::tie(rsi_, begin_); }

 private:
  RSI rsi_;
  Lead begin_;
};

}  // namespace chain
}  // namespace qv
