#include "indicators/bar_ranges.h"

#include "core/numbers.h"
#include "core/window_extremes.h"

namespace qv {

namespace {

using window::Highest;
using window::Lowest;

bool counts(double price, Lowest) noexcept {
  return isNonZero(price);
}
bool counts(double price, Highest) noexcept {
  return price == price;
}

// A bar counts as the extreme of its prices, taken in the order open, high, low, close.
template <typename Order>
struct BarPrices {
  const double *open, *high, *low, *close;

  double start(int i) const noexcept { return close[i]; }
  double counted(int i) const noexcept {
    double extreme = Order::kNone;
    for (const double price : {open[i], high[i], low[i], close[i]})
      extreme = Order::of(extreme, counts(price, Order{}) ? price : Order::kNone);
    return extreme;
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
