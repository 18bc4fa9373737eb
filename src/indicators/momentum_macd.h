// Differences of averages: MACD and its variant with free periods, and oscillators of two series.
#pragma once

#include <functional>

#include "core/calculation.h"
#include "indicators/averages.h"
#include "indicators/crossing.h"

namespace qv {

// The guard is on a: a zero in b divides by zero. Both are less `from`.
constexpr double percentApart(double from, double a, double b) noexcept {
  const double percent = (a - b) * 100.0 / (from + b);
  return from + a != 0.0 ? percent : 0.0;
}

// Two averages of one series by one method, as distances from an item of it where both are exponential.
class AveragePair {
 public:
  AveragePair(int method, int p1, int p2) noexcept
      : exponential_(method == 0), pair_(shareOf(p1), shareOf(p2)), averages_(method, p1, p2) {}
  int lead() const noexcept { return averages_.lead(); }
  // body(at, items, from, first, second): pieces of the averages, both less `from`.
  template <typename Body>
  void run(const double* x, int count, Body body) noexcept {
    if (exponential_) return pair_.run(x, count, body);
    Tile first, second;
    averages_.run({x}, count, {first, second});
    body(0, count, 0.0, first, second);
  }
  // out[i] = first[i] - second[i].
  void apart(const double* x, int count, double* out) noexcept {
    if (exponential_) return pair_.apart(x, count, out);
    run(x, count, [out](int at, int items, double, const double* first, const double* second) {
      map(items, out + at, std::minus<>{}, first, second);
    });
  }
  auto state() noexcept { return std::tie(pair_, averages_); }

 private:
  bool exponential_;
  ExponentialPair pair_;
  TwoAverages averages_;
};

namespace chain {

// The smoothing constants are fixed. The seeds' difference is no value yet.
class MACD {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  explicit MACD(int signal) noexcept : averages_(0.15, 0.075), signal_(1, shareOf(signal)) {}
  int lead() const noexcept { return signal_.lead(); }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept {
    averages_.apart(in[0], count, out[0]);
    begin_.pass(count, out[0]);
    signal_.run({out[0]}, count, {out[1]});
  }
  auto state() noexcept { return std::tie(averages_, signal_, begin_); }

 private:
  ExponentialPair averages_;
  After<ExponentialAboutZero> signal_;
  Lead begin_{1};
};

// Fast and slow average, their difference, its signal line and the crossings of these.
class MACDx {
 public:
  static constexpr int kInputs = 1, kOutputs = 5;

  MACDx(int p1, int p2, int signal) noexcept
      : averages_(shareOf(std::min(p1, p2)), shareOf(std::max(p1, p2))), signal_(1, shareOf(signal)) {}
  int lead(int output) const noexcept { return output < 3 ? 0 : 1; }
  void run(Inputs<1> in, int count, Outputs<5> out) noexcept {
    double *fast = out[0], *slow = out[1], *macd = out[2], *signal = out[3], *cross = out[4];
    averages_.run(in[0], count,
                  [&](int at, int items, double from, const double* first, const double* second) {
                    const auto average = [from](double distance) { return from + distance; };
                    map(items, fast + at, average, first);
                    map(items, slow + at, average, second);
                    map(items, macd + at, std::minus<>{}, first, second);
                  });
    signal_.run({macd}, count, {signal});
    const double macdBefore = macd_.take(macd, count), signalBefore = signalLine_.take(signal, count);
    cross[0] = crossingOf(macd[0], signal[0], macdBefore, signalBefore);
    map(count - 1, cross + 1, crossingOf, macd + 1, signal + 1, macd, signal);
    const int none = noCrossing_.pass(count);
    std::fill_n(cross, none, 0.0);
  }
  auto state() noexcept { return std::tie(averages_, signal_, macd_, signalLine_, noCrossing_); }

 private:
  ExponentialPair averages_;
  After<ExponentialAboutZero> signal_;
  Before macd_, signalLine_;
  Lead noCrossing_{2};
};

class Oscillator {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    map(count, out[0], std::minus<>{}, in[0], in[1]);
  }
};

class OscillatorPct {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    map(
        count, out[0], [](double a, double b) { return percentApart(0.0, a, b); }, in[0], in[1]);
  }
};

// Of two averages, from where the longer one would begin by its period. `late`: where the series begins so
// many bars behind the start, that is counted from the start all the same.
template <bool kPercent>
class OfAverages {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  OfAverages(int p1, int p2, int method, int late = 0) noexcept
      : averages_(method, p1, p2),
        lead_(std::max(averages_.lead(), std::max(p1, p2) - 1 - late)),
        missing_(lead_) {}
  int lead() const noexcept { return lead_; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    if constexpr (kPercent)
      averages_.run(in[0], count,
                    [&](int at, int items, double from, const double* first, const double* second) {
                      map(
                          items, out[0] + at, [from](double a, double b) { return percentApart(from, a, b); },
                          first, second);
                    });
    else
      averages_.apart(in[0], count, out[0]);
    missing_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(averages_, missing_); }

 private:
  AveragePair averages_;
  int lead_;
  Lead missing_;
};
using PriceOscillator = OfAverages<false>;
using PriceOscillatorPct = OfAverages<true>;
class PVO : public PriceOscillatorPct {
 public:
  static constexpr unsigned kSeries = kVolume;

  using OfAverages::OfAverages;
};

}  // namespace chain
}  // namespace qv
