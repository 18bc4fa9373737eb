// Averages and sums over a window of the last p items, and any average by its method.
#pragma once

#include <numeric>
#include <span>
#include <variant>

#include "indicators/averages_adaptive.h"
#include "indicators/averages_exponential.h"
#include "kernels/moments.h"

namespace qv {

inline constexpr int kAverageMethods = 8;

// For calculations that hand a method on and refuse a wrong one before they write anything.
constexpr bool isAverageMethod(int method) noexcept {
  return method >= 0 && method < kAverageMethods;
}

// Newest first.
inline double sumOf(std::span<const double> items) noexcept {
  return std::accumulate(items.rbegin(), items.rend(), 0.0);
}

namespace chain {

// The sum. The last item is written in any case: where no window fits it is the sum of the items that exist,
// of the mean a part of them.
class MovingSum : public Sliding<Sums<1>> {
 public:
  static constexpr bool kInPlace = true;

  explicit MovingSum(int period) noexcept : Sliding(period) {}
  void endShort(int, Outputs<1> last) const noexcept { *last[0] = sumOf(itemsSoFar()); }
};

class SimpleMA : public Sliding<Means<1>> {
 public:
  static constexpr bool kInPlace = true;

  explicit SimpleMA(int period) noexcept : Sliding(period, Means<1>(period)) {}
  void endShort(int, Outputs<1> last) const noexcept { *last[0] = sumOf(itemsSoFar()) / (lead() + 1); }
};

// Linear weights, the newest item the heaviest.
class WeightedMA : public Sliding<WeightedMean> {
 public:
  explicit WeightedMA(int period) noexcept : Sliding(period, WeightedMean(period)) {}
};

// The least-squares line's value one bar on: a forecast by design.
class LstSqrMA : public Sliding<Forecast> {
 public:
  explicit LstSqrMA(int period) noexcept : Sliding(period, Forecast(period)) {}
};

// The mean of means: of (p + 1) / 2 items twice when p is odd, of p / 2 and p / 2 + 1 when it is even.
class TriangularMA {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit TriangularMA(int period) noexcept
      : means_(period - period / 2), meansOfMeans_(means_.lead(), period / 2 + 1) {}
  int lead() const noexcept { return meansOfMeans_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile means;
    means_.run(in, count, {means});
    meansOfMeans_.run({means}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { meansOfMeans_.endShort(items, last); }
  auto state() noexcept { return std::tie(means_, meansOfMeans_); }

 private:
  SimpleMA means_;
  After<SimpleMA> meansOfMeans_;
};

// Any of the averages by its method.
class MovingAverage {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  MovingAverage(int method, int period) noexcept : average_(of(method, period)) {}
  bool ok() const noexcept {
    return std::visit([](const auto& average) { return isOk(average); }, average_);
  }
  int lead() const noexcept {
    return std::visit([](const auto& average) { return average.lead(); }, average_);
  }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    std::visit([&](auto& average) { average.run(in, count, out); }, average_);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    const auto end = [&](const auto& average) {
      if constexpr (requires { average.endShort(items, last); })
        if (items <= average.lead()) average.endShort(items, last);
    };
    std::visit(end, average_);
  }
  auto state() noexcept { return std::tie(average_); }

 private:
  using Any =
      std::variant<ExpMA, LstSqrMA, SimpleMA, WeightedMA, WellesMA, TriangularMA, VariableMA, ZeroLagExpMA>;
  template <std::size_t kMethod = 0>
  static Any of(int method, int period) noexcept {
    if constexpr (kMethod + 1 < std::variant_size_v<Any>)
      if (method != static_cast<int>(kMethod)) return of<kMethod + 1>(method, period);
    return Any(std::in_place_index<kMethod>, period);
  }
  Any average_;
};

}  // namespace chain

// Two averages of one series by one method; the simple one over twice the bars out of the other one.
class TwoAverages {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  TwoAverages(int method, int p1, int p2) noexcept
      : doubles_(method == QV_MA_SIMPLE && Doubled::fits(p1, p2)),
        first_(method, p1),
        second_(method, p2),
        secondOfFirst_(p1) {}
  bool ok() const noexcept { return isOk(first_) && (doubles_ ? isOk(secondOfFirst_) : isOk(second_)); }
  int lead() const noexcept { return std::max(first_.lead(), second_.lead()); }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept {
    first_.run(in, count, {out[0]});
    if (doubles_)
      secondOfFirst_.run({out[0]}, count, {out[1]});
    else
      second_.run(in, count, {out[1]});
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(first_);
    if (doubles_)
      v(secondOfFirst_);
    else
      v(second_);
  }

 private:
  using Doubled = OfHalves<true>;
  bool doubles_;
  chain::MovingAverage first_, second_;
  Doubled secondOfFirst_;
};

}  // namespace qv
