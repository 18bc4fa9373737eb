// Relative strength: the share of the rises in a series' recent moves, both smoothed as Wilder does.
#pragma once

#include "kernels/exponential.h"
#include "kernels/extremes.h"

namespace qv {

// The move from `before` to `now` as a rise and a fall, one of them 0. What does not fall or stand still
// counts as a rise, not-a-number included.
inline constexpr auto riseOf = [](double now, double before) { return now <= before ? 0.0 : now - before; };
inline constexpr auto fallOf = [](double now, double before) { return now <= before ? before - now : 0.0; };
inline constexpr auto strengthOf = [](double up, double down) {
  const double total = up + down, share = 100.0 * up / total;
  return total != 0.0 ? share : 0.0;
};

// Out of the moves' rises and falls. The sums are as good as the averages: a ratio is wanted.
class Strength {
 public:
  explicit Strength(int period) noexcept : up_(period), down_(period) {}
  int lead() const noexcept { return up_.lead(); }
  // rises and falls are overwritten.
  void run(double* rises, double* falls, int count, double* out) noexcept {
    up_.run({rises}, count, {rises});
    down_.run({falls}, count, {falls});
    map(count, out, strengthOf, rises, falls);
  }
  double soFar() const noexcept { return strengthOf(up_.sumSoFar(), down_.sumSoFar()); }
  auto state() noexcept { return std::tie(up_, down_); }

 private:
  WilderSum up_, down_;
};

namespace chain {

// A series too short for the seed has one value, at its last item.
class RMI {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  RMI(int period, int momentum) noexcept : momentum_(momentum), strength_(period) {}
  int lead() const noexcept { return saturatingSum(momentum_.lead(), strength_.lead()); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile rises, falls;
    const int none = momentum_.over(x, count, [&](int at, int items, const double* before) {
      map(items, rises + at, riseOf, x + at, before);
      map(items, falls + at, fallOf, x + at, before);
    });
    std::fill_n(out[0], none, 0.0);
    strength_.run(rises + none, falls + none, count - none, out[0] + none);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items > momentum_.lead()) *last[0] = strength_.soFar();
  }
  auto state() noexcept { return std::tie(momentum_, strength_); }

 private:
  Delay momentum_;
  Strength strength_;
};

class RSI : public RMI {
 public:
  explicit RSI(int period) noexcept : RMI(period, 1) {}
};

// Where the strength stands within its own range; 100 where that is flat.
class StochRSI {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit StochRSI(int period) noexcept : rsi_(period), percent_(rsi_.lead(), period) {}
  int lead() const noexcept { return percent_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile strength;
    rsi_.run(in, count, {strength});
    percent_.run({strength, strength, strength}, count, out);
  }
  auto state() noexcept { return std::tie(rsi_, percent_); }

 private:
  RSI rsi_;
  After<Sliding<PercentWithin>> percent_;
};

// Wilder's average of gain(now, before). The seed of a short series is divided by the moves that exist, not
// by the period.
template <typename Gain>
class AverageMove {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit AverageMove(int period) noexcept : average_(1, period) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile gains;
    gains[0] = Gain{}(x[0], before_.take(x, count));
    map(count - 1, gains + 1, Gain{}, x + 1, x);
    average_.run({gains}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items > 1) *last[0] = average_.stage().sumSoFar() / (items - 1);
  }
  auto state() noexcept { return std::tie(before_, average_); }

 private:
  Before before_;
  After<WilderMean> average_;
};

struct UpwardGain {
  double operator()(double now, double before) const noexcept { return now > before ? now - before : 0.0; }
};
struct DownwardGain {
  double operator()(double now, double before) const noexcept { return now < before ? before - now : 0.0; }
};
using UpAverage = AverageMove<UpwardGain>;
using DownAverage = AverageMove<DownwardGain>;

}  // namespace chain
}  // namespace qv
