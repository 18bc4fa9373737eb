// Price transforms and simple changes.
#pragma once

#include "core/array_formulas.h"
#include "core/bar_prices.h"
#include "core/calculation.h"
#include "indicators/momentum_rates.h"
#include "kernels/live.h"

namespace qv::chain {

// A price of each bar, out of the series that are read.
template <unsigned kReads, int kCount, typename Price>
class PriceOfBars {
 public:
  static constexpr unsigned kSeries = kReads;
  static constexpr int kInputs = kCount, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<kCount> in, int count, Outputs<1> out) noexcept {
    if constexpr (kCount == 2) map(count, out[0], Price{}, in[0], in[1]);
    if constexpr (kCount == 3) map(count, out[0], Price{}, in[0], in[1], in[2]);
    if constexpr (kCount == 4) map(count, out[0], Price{}, in[0], in[1], in[2], in[3]);
  }
};

using AvgPrices = PriceOfBars<kPrices, 4, decltype(averagePrice)>;
using MedianPrices = PriceOfBars<kHighLow, 2, decltype(medianPrice)>;
using TypicalPrices = PriceOfBars<kHighLowClose, 3, decltype(typicalPrice)>;
using WeightedCloses = PriceOfBars<kHighLowClose, 3, decltype(weightedClose)>;

// Since the first item, in percent of it.
class PerformancePct {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    if (!begun_) base_ = in[0][0];
    begun_ = true;
    map(
        count, out[0], [base = base_](double x) { return (x - base) * 100.0 / base; }, in[0]);
  }
  auto state() noexcept { return std::tie(base_, begun_); }

 private:
  double base_ = 0.0;
  bool begun_ = false;
};

// The change over p bars; the first valid index is the period itself, wherever the values begin.
class DiffValue : public Momentum {
 public:
  using Momentum::Momentum;
  int firstValid(int) const noexcept { return lead(); }
};

// ---- Comparisons of two securities: date and close of both, the bars side by side -----------------------

// The rules: what bars of one date give, and what shows where the second security lacks a date.
struct StrengthOf {
  double last = 0.0;
  double operator()(double close1, double close2) noexcept { return last = close1 / close2; }
  double gap() const noexcept { return last; }
  auto state() noexcept { return std::tie(last); }
};
struct SpreadOf {
  double weight1, weight2, last = 0.0;
  double operator()(double close1, double close2) noexcept {
    return last = weight1 * close1 - weight2 * close2;
  }
  double gap() const noexcept { return last; }
  auto state() noexcept { return std::tie(last); }
};
// Relative to the first ratio. A gap marks its bar; the last value is not carried forward.
struct PerformanceOf {
  double first = 0.0;
  bool begun = false;
  double operator()(double close1, double close2) noexcept {
    const double ratio = close1 / close2;
    if (!std::exchange(begun, true)) {
      first = ratio;
      return 1.0;
    }
    return (ratio - first) / first + 1.0;
  }
  double gap() const noexcept { return -1.0; }
  auto state() noexcept { return std::tie(first, begun); }
};

// Begins with the first common date from the start date on.
template <typename Rule>
class Comparison {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  explicit Comparison(double startDate, const Rule& rule = {}) noexcept
      : startDate_(startDate), rule_(rule) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept { runFrom(in, count, out[0]); }
  // The same; the items before the first common date.
  int runFrom(const Inputs<4>& in, int count, double* out) noexcept {
    const auto [date1, close1, date2, close2] = in;
    int i = 0;
    for (; !begun_ && i < count; ++i) {
      begun_ = date1[i] == date2[i] && !(date1[i] < startDate_);
      out[i] = 0.0;
      if (begun_) break;
    }
    const int none = i;
    for (; i < count; ++i) out[i] = date1[i] == date2[i] ? rule_(close1[i], close2[i]) : rule_.gap();
    return none;
  }
  auto state() noexcept { return std::tie(begun_, rule_); }

 private:
  double startDate_;
  bool begun_ = false;
  Rule rule_;
};
template <typename Chain>
int openComparison(Opening& opening, const Chain& chain, const QvBars& bars1, const QvBars& bars2) noexcept {
  opening.firstValid[0] = QV_INVALID_PARM;  // the dates decide
  return opening.take(chain, {&bars1.date, &bars1.close, &bars2.date, &bars2.close}, 0);
}

using CompStrength = Comparison<StrengthOf>;
using CompPerformance = Comparison<PerformanceOf>;
using Spread = Comparison<SpreadOf>;

// The rate of change of the strength.
class RSIC {
 public:
  static constexpr int kInputs = 4, kOutputs = 1;

  RSIC(double startDate, int period) noexcept : strength_(startDate), rate_(1.0, period) {}
  int lead() const noexcept { return rate_.lead(); }
  void run(Inputs<4> in, int count, Outputs<1> out) noexcept {
    Tile strength;
    const int none = strength_.runFrom(in, count, strength);
    std::fill_n(out[0], none, 0.0);
    if (none < count) rate_.run({strength + none}, count - none, {out[0] + none});
  }
  auto state() noexcept { return std::tie(strength_, rate_); }

 private:
  CompStrength strength_;
  RateOfChange rate_;
};

// ---- Steps of arrays

// A formula of each item, 0 where that of the second series is.
class Divide {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit Divide(double factor) noexcept : factor_(factor) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    map(
        count, out[0], [f = factor_](double a, double b) { return quotientOf(a, b, f); }, in[0], in[1]);
  }
  static std::tuple<> state() noexcept { return {}; }

 private:
  double factor_;
};

class MultAddArray {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  MultAddArray(double times, double plus) noexcept : times_(times), plus_(plus) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    map(
        count, out[0], [t = times_, p = plus_](double x) { return multipleOf(x, t, p); }, in[0]);
  }
  static std::tuple<> state() noexcept { return {}; }

 private:
  double times_, plus_;
};

}  // namespace qv::chain
