// Price transforms and simple changes.
#pragma once

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "indicators/momentum_cmo.h"

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

 private:
  double base_ = 0.0;
  bool begun_ = false;
};

// The change over p bars.
class DiffValue {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;
  static constexpr bool kWhole = true;

  explicit DiffValue(int period) noexcept : past_(period) {}
  bool ok() const noexcept { return past_.ok(); }
  int lead() const noexcept { return past_.lead(); }
  // The period itself, wherever the values begin.
  int firstValid(int) const noexcept { return past_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    double* y = out[0];
    const int none = past_.over(x, count, [=](int at, int items, const double* before) {
      map(items, y + at, changeOf, x + at, before);
    });
    std::fill_n(y, none, 0.0);
  }

 private:
  Delay past_;
};

}  // namespace qv::chain
