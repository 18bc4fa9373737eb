// The ultimate oscillator: buying pressure over true range, over three periods at once.
#pragma once

#include <limits>
#include <numeric>

#include "core/calculation.h"
#include "kernels/sums.h"

namespace qv {

// What a bar closed above its true low, and from there to its true high. A bar without one before it has
// not-a-number for its close: its true low and high are its own.
struct Pressure {
  double pressure, extent;
};
constexpr auto pressureOf = [](double high, double low, double close, double closeBefore) {
  const double trueLow = low >= closeBefore ? closeBefore : low,
               trueHigh = high <= closeBefore ? closeBefore : high;
  return Pressure{close - trueLow, trueHigh - trueLow};
};

// The sums of pressures and extents over one of the periods; out of those of the period before it where it is
// twice as long, as in the usual 7, 14, 28.
class PressureSums {
 public:
  PressureSums(int skip, int periodBefore, int period) noexcept
      : doubles_(Doubled::fits(periodBefore, period)),
        own_(skip, period),
        pressures_(periodBefore, skip),
        extents_(periodBefore, skip),
        lead_(saturatingSum(skip, period - 1)) {}
  bool ok() const noexcept { return doubles_ ? isOk(pressures_) && isOk(extents_) : isOk(own_); }
  int lead() const noexcept { return lead_; }
  // pressures, extents
  void run(Inputs<2> bars, Inputs<2> sumsBefore, int count, Outputs<2> out) noexcept {
    if (!doubles_) return own_.run(bars, count, out);
    pressures_.run({sumsBefore[0]}, count, {out[0]});
    extents_.run({sumsBefore[1]}, count, {out[1]});
  }
  template <typename V>
  void fields(V& v) noexcept {
    if (doubles_)
      v(pressures_, extents_);
    else
      v(own_);
  }

 private:
  using Doubled = OfHalves<false>;
  bool doubles_;
  After<Sliding<Sums<2>>> own_;
  Doubled pressures_, extents_;
  int lead_;
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
        sums_{PressureSums(barBefore, 0, p1), PressureSums(barBefore, p1, p2),
              PressureSums(barBefore, p2, p3)},
        missing_(lead()) {}
  bool ok() const noexcept { return isOk(sums_); }
  int lead() const noexcept { return std::max({sums_[0].lead(), sums_[1].lead(), sums_[2].lead()}); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const double *const high = in[0], *const low = in[1], *const close = in[2];
    const double before = close_.take(close, count);
    Tile pressures, extents, pressed[3], extended[3];
    const auto put = [p = pressures, e = extents](int j, const Pressure& of) QV_LAMBDA {
      p[j] = of.pressure;
      e[j] = of.extent;
    };
    put(0, pressureOf(high[0], low[0], close[0], before));
    each(count - 1,
         [=](int j) QV_LAMBDA { put(j + 1, pressureOf(high[j + 1], low[j + 1], close[j + 1], close[j])); });
    for (std::size_t k = 0; k < 3; ++k) {
      const std::size_t half = k > 0 ? k - 1 : 0;
      sums_[k].run({pressures, extents}, {pressed[half], extended[half]}, count, {pressed[k], extended[k]});
      last_[k] = {pressed[k][count - 1], extended[k][count - 1]};
    }
    map(count, out[0], oscillatorOf, pressed[0], extended[0], pressed[1], extended[1], pressed[2],
        extended[2]);
    addUp(pressures, extents, count);
    missing_.pass(count, out[0]);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    auto sums = last_;
    for (std::size_t k = 0; k < 3; ++k)
      if (items <= sums_[k].lead()) sums[k] = soFar_;
    *last[0] = oscillatorOf(sums[0][0], sums[0][1], sums[1][0], sums[1][1], sums[2][0], sums[2][1]);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(close_, sums_, soFar_, last_, missing_);
    v.within(skip_, 0, 1);
  }

 private:
  // A bar that one term leaves at zero stays there, and one whose window has no range at all.
  static constexpr auto oscillatorOf = [](double pressure1, double extent1, double pressure2, double extent2,
                                          double pressure3, double extent3) {
    const double first = pressure1 * 4.0 / extent1, two = first + pressure2 * 2.0 / extent2,
                 all = (two + pressure3 / extent3) * (1.0 / 7.0);
    const bool none = (extent1 == 0.0) | (extent2 == 0.0) | (extent3 == 0.0) | (first == 0.0) | (two == 0.0);
    return none ? 0.0 : all;
  };
  // A window that is not complete holds all bars so far.
  void addUp(const double* pressures, const double* extents, int count) noexcept {
    const int items = std::min(missing_.left(), count), skipped = std::min(skip_, items);
    skip_ -= skipped;
    soFar_[0] = std::accumulate(pressures + skipped, pressures + items, soFar_[0]);
    soFar_[1] = std::accumulate(extents + skipped, extents + items, soFar_[1]);
  }

  int skip_;
  Before close_{std::numeric_limits<double>::quiet_NaN()};
  std::array<PressureSums, 3> sums_;
  std::array<double, 2> soFar_{};                // pressure, extent
  std::array<std::array<double, 2>, 3> last_{};  // at the last bar
  Lead missing_;
};

}  // namespace chain
}  // namespace qv
