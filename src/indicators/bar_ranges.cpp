#include "indicators/bar_ranges.h"

#include "kernels/window_extremes.h"

namespace qv {

namespace {

using window::Highest;
using window::Lowest;

double counting(double price, Lowest) noexcept {
  return price == 0.0 ? Lowest::kNone : price;
}
double counting(double price, Highest) noexcept {
  return price;
}

// A bar counts as the extreme of its prices, taken in the order open, high, low, close.
template <typename Order>
struct BarPrices {
  static constexpr bool kSeveralSteps = true;
  const double *open, *high, *low, *close;

  double start(int i) const noexcept { return close[i]; }
  double counted(int i) const noexcept {
    return taken(taken(taken(taken(Order::kNone, open[i]), high[i]), low[i]), close[i]);
  }
  static double taken(double extreme, double price) noexcept {
    const double x = counting(price, Order{});
    return Order::reaches(x, extreme) ? x : extreme;
  }
};

template <typename Order>
int slide(const QvBars& b, const window::Range& r, double* out) noexcept {
  const BarPrices<Order> prices{b.open.data, b.high.data, b.low.data, b.close.data};
  return out ? window::slidingExtreme<Order>(prices, r, out) : int{QV_OK};
}

}  // namespace

int slidingBarRange(const QvBars* bars, window::Range r, double* min, double* max) noexcept {
  if (const int status = slide<Lowest>(*bars, r, min)) return status;
  return slide<Highest>(*bars, r, max);
}

}  // namespace qv
