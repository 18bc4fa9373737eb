// Accumulation: volume weighed by where the close lies in its bar, and the Chaikin family.
#pragma once

#include <functional>

#include "core/calculation.h"
#include "indicators/averages_exponential.h"
#include "indicators/momentum_rates.h"
#include "kernels/sums.h"

namespace qv {

// -1 at the low, +1 at the high. A bar without height counts as bought in full unless its close fell.
constexpr auto closeLocationOf = [](double high, double low, double close, double closeBefore) {
  const double location = ((close - low) - (high - close)) / (high - low),
               flat = close < closeBefore ? -1.0 : 1.0;
  return high != low ? location : flat;
};
constexpr auto flowOf = [](double high, double low, double close, double closeBefore, double volume) {
  return closeLocationOf(high, low, close, closeBefore) * volume;
};

// What each bar accumulates.
class Flow {
 public:
  // high, low, close, volume
  void run(const Inputs<4>& in, int count, double* out) noexcept {
    const auto [high, low, close, volume] = in;
    out[0] = flowOf(high[0], low[0], close[0], close_.take(close, count), volume[0]);
    map(count - 1, out + 1, flowOf, high + 1, low + 1, close + 1, close, volume + 1);
  }
  auto state() noexcept { return std::tie(close_); }

 private:
  Before close_;
};

namespace chain {

class AccumDist {
 public:
  static constexpr unsigned kSeries = kHighLowClose | kVolume;
  static constexpr int kInputs = 4, kOutputs = 1;

  int lead() const noexcept { return 0; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    flow_.run(in, count, out[0]);
    total_.run({out[0]}, count, out);
  }
  auto state() noexcept { return std::tie(flow_, total_); }

 private:
  Flow flow_;
  Total total_;
};

class Accumulate : public Total {
 public:
  static constexpr bool kWhole = true;
};

class ChaikinMoneyFlow {
 public:
  static constexpr unsigned kSeries = kHighLowClose | kVolume;
  static constexpr int kInputs = 4, kOutputs = 1;

  explicit ChaikinMoneyFlow(int period) noexcept : perVolume_(period) {}
  int lead() const noexcept { return perVolume_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile flow;
    flow_.run(in, count, flow);
    perVolume_.run({flow, in[3]}, count, out);
  }
  auto state() noexcept { return std::tie(flow_, perVolume_); }

 private:
  Flow flow_;
  Sliding<RatioOfSums> perVolume_;
};

class ChaikinOscillator {
 public:
  static constexpr unsigned kSeries = kHighLowClose | kVolume;
  static constexpr int kInputs = 4, kOutputs = 1;

  ChaikinOscillator(int fast, int slow) noexcept : averages_(shareOf(fast), shareOf(slow)) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile line;
    line_.run(in, count, {line});
    averages_.apart(line, count, out[0]);
  }
  auto state() noexcept { return std::tie(line_, averages_); }

 private:
  AccumDist line_;
  ExponentialPair averages_;
};

// The rate of change of the average height.
class ChaikinVolatility {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit ChaikinVolatility(int period) noexcept : average_(shareOf(period)), change_(100.0, period) {}
  int lead() const noexcept { return change_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile heights;
    map(count, heights, std::minus<>{}, in[0], in[1]);
    average_.run({heights}, count, {heights});
    change_.run({heights}, count, out);
  }
  auto state() noexcept { return std::tie(average_, change_); }

 private:
  ExponentialAboutZero average_;
  RateOfChange change_;
};

}  // namespace chain
}  // namespace qv
