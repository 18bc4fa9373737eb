// Extremes of whole bars over a window, exactly as qvBarStats finds them: both start at the close of the
// window's first bar, and prices of 0.0 never lower the minimum.
#pragma once

#include "kernels/extremes.h"

namespace qv {

// The highest of a bar's prices; the last of equal ones.
template <typename Number>
QV_INLINE Number highestOf(Number open, Number high, Number low, Number close) noexcept {
  const auto taken = [](Number price, Number highest) QV_LAMBDA { return price > highest ? price : highest; };
  return taken(open, taken(high, taken(low, taken(close, all<Number>(-kInfinity)))));
}
// What the lowest is the highest of, negated: prices of zero do not count.
template <typename Number>
QV_INLINE Number asLow(Number price) noexcept {
  return price == all<Number>(0.0) ? all<Number>(-kInfinity) : -price;
}
inline constexpr auto highestPriceOf = [](double open, double high, double low, double close) {
  return highestOf(open, high, low, close);
};
inline constexpr auto lowestPriceOf = [](double open, double high, double low, double close) {
  return -highestOf(asLow(open), asLow(high), asLow(low), asLow(close));
};
// Both of a single bar side by side, the lowest negated.
QV_INLINE Two extremesOf(double open, double high, double low, double close) noexcept {
  const Two first = {open, high}, last = {low, close}, firstAsLow = asLow(first), lastAsLow = asLow(last);
  return highestOf(Two{open, firstAsLow[0]}, Two{high, firstAsLow[1]}, Two{low, lastAsLow[0]},
                   Two{close, lastAsLow[1]});
}

// Of the bars' highest and lowest price and their close, which a window begins with.
struct BarExtremes : Extremes {
  static constexpr int kInputs = 3, kRows = 3;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 3> terms(const Items& x, const Items&, Number) const noexcept {
    return {x[0], -x[1], x[2]};
  }
  template <typename Rows>
  static QV_INLINE Rows numbers(const Rows& x) noexcept {
    return x;  // of a bar's prices those that are none have been passed over
  }
  template <typename Rows>
  static QV_INLINE Rows join(const Rows& earlier, const Rows& later) noexcept {
    return {larger(earlier[0], later[0]), larger(earlier[1], later[1]), later[2]};
  }
  template <typename Rows>
  static QV_INLINE Rows begunWith(const Rows& first, const Rows& rows) noexcept {
    const auto start = first[2];
    return {rows[0] >= start ? rows[0] : start, rows[1] >= -start ? rows[1] : -start, start};
  }
  template <typename Rows>
  static QV_INLINE Rows combine(const Rows& suffix, const Rows& prefix) noexcept {
    return {prefix[0] >= suffix[0] ? prefix[0] : suffix[0], prefix[1] >= suffix[1] ? prefix[1] : suffix[1],
            prefix[2]};
  }
};

// PercentWithin all prices of the bars; those of zero do not count as lows.
struct PercentWithinPrices : BarExtremes {
  static constexpr int kOutputs = 1;

  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 3>& e, const Items& anchors, Number k,
                                    const Items& x) const noexcept {
    return PercentWithin{}.finish(Group<Number, 2>{e[0], e[1]}, anchors, k, x);
  }
};

// A statistic of BarExtremes over bars of four prices, in the order open, high, low, close.
template <typename Statistic>
class SlidingBars {
 public:
  static constexpr int kInputs = 4, kOutputs = Statistic::kOutputs;

  explicit SlidingBars(int period) noexcept : window_(period) {}
  int lead() const noexcept { return window_.lead(); }
  void run(Inputs<4> in, int count, Outputs<kOutputs> out) noexcept {
    if (count != 1) return runMany(in, count, out);
    const Two extremes = extremesOf(*in[0], *in[1], *in[2], *in[3]);  // an update's
    const double top = extremes[0], bottom = -extremes[1];
    window_.run({&top, &bottom, in[3]}, 1, out);
  }
  auto state() noexcept { return std::tie(window_); }

 private:
  [[gnu::noinline]] void runMany(Inputs<4> in, int count, Outputs<kOutputs> out) noexcept {
    for (; count > kTile; in = advanced(in, kTile), out = advanced(out, kTile), count -= kTile)
      runTile(in, kTile, out);
    runTile(in, count, out);
  }
  void runTile(const Inputs<4>& in, int count, const Outputs<kOutputs>& out) noexcept {
    const auto [open, high, low, close] = in;
    Tile highest, lowest;
    map(count, highest, highestPriceOf, open, high, low, close);
    map(count, lowest, lowestPriceOf, open, high, low, close);
    window_.run({highest, lowest, close}, count, out);
  }
  Sliding<Statistic> window_;
};

}  // namespace qv
