// The ultimate oscillator: buying pressure over true range, over three periods at once.
#pragma once

#include <limits>
#include <numeric>

#include "core/calculation.h"
#include "kernels/sums.h"

namespace qv {

// A bar without one before it has not-a-number for its close: its true low and high are its own.
constexpr auto pressureOf = [](double low, double close, double closeBefore) {
  return close - (low >= closeBefore ? closeBefore : low);
};
constexpr auto extentOf = [](double high, double low, double closeBefore) {
  return (high <= closeBefore ? closeBefore : high) - (low >= closeBefore ? closeBefore : low);
};

namespace chain {

// The values begin where the longest window is complete. A series that ends before
// that has one at its last item, out of the bars that exist.
class UltimateOsc {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;
  static constexpr bool kBarBefore = true;

  UltimateOsc(bool barBefore, int p1, int p2, int p3) noexcept
      : skip_(barBefore),
        shares_{Share(skip_, p1, RatioOfSums(4.0, kNone)), Share(skip_, p2, RatioOfSums(2.0, kNone)),
                Share(skip_, p3, RatioOfSums(1.0, kNone))},
        missing_(lead()) {}
  bool ok() const noexcept { return shares_[0].ok() && shares_[1].ok() && shares_[2].ok(); }
  int lead() const noexcept { return std::max({shares_[0].lead(), shares_[1].lead(), shares_[2].lead()}); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const auto [high, low, close] = in;
    const double before = close_.take(close, count);
    Tile pressures, extents, first, second, third;
    pressures[0] = pressureOf(low[0], close[0], before);
    extents[0] = extentOf(high[0], low[0], before);
    map(count - 1, pressures + 1, pressureOf, low + 1, close + 1, close);
    map(count - 1, extents + 1, extentOf, high + 1, low + 1, close);
    shares_[0].run({pressures, extents}, count, {first});
    shares_[1].run({pressures, extents}, count, {second});
    shares_[2].run({pressures, extents}, count, {third});
    map(count, out[0], oscillatorOf, first, second, third);
    missing_.pass(count, out[0]);
    last_ = {first[count - 1], second[count - 1], third[count - 1]};
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    std::array<double, 3> shares = last_;
    for (std::size_t k = 0; k < 3; ++k)
      if (items <= shares_[k].lead())
        shares[k] = shareSoFar(shares_[k].stage(), k == 0 ? 4.0 : k == 1 ? 2.0 : 1.0);
    *last[0] = oscillatorOf(shares[0], shares[1], shares[2]);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(close_, shares_, last_, missing_);
  }

 private:
  using Share = After<Sliding<RatioOfSums>>;
  static constexpr double kNone = -std::numeric_limits<double>::infinity();  // a window without any range
  // A bar that one term leaves at zero stays there.
  static constexpr auto oscillatorOf = [](double first, double second, double third) {
    const double two = first + second, all = (two + third) * (1.0 / 7.0);
    const bool none = (first == kNone) | (second == kNone) | (third == kNone) | (first == 0.0) | (two == 0.0);
    return none ? 0.0 : all;
  };
  static double shareSoFar(const Sliding<RatioOfSums>& share, double weight) noexcept {
    const auto pressures = share.itemsSoFar(0), extents = share.itemsSoFar(1);
    const double extent = std::accumulate(extents.rbegin(), extents.rend(), 0.0);
    return extent != 0.0 ? std::accumulate(pressures.rbegin(), pressures.rend(), 0.0) * weight / extent
                         : kNone;
  }

  int skip_;
  Before close_{std::numeric_limits<double>::quiet_NaN()};
  std::array<Share, 3> shares_;
  std::array<double, 3> last_{};
  Lead missing_;
};

}  // namespace chain
}  // namespace qv
