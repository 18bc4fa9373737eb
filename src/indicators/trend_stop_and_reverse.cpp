// Parabolic stop-and-reverse.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

namespace {

// One side of the market. The other side's rules are the same with the comparisons turned round:
// a long position follows the highs with a stop below the lows, a short one the lows with a stop
// above the highs.
struct Side {
  const double* ahead;   // highs for a long position, lows for a short one
  const double* behind;  // lows for a long position, highs for a short one
  double sign;           // +1.0 long, -1.0 short

  bool beyond(double a, double b) const noexcept { return sign > 0.0 ? a > b : a < b; }
  // The stop may not stand inside the range of this bar or the one before.
  double limited(double stop, int i) const noexcept {
    return sign > 0.0 ? std::min(std::min(stop, behind[i]), behind[i - 1])
                      : std::max(std::max(stop, behind[i]), behind[i - 1]);
  }
};

}  // namespace

extern "C" {

int QVCALL qvSAR(const QvBars* bars, QvArray* outSAR, QvArray* outDirection, double step, double maximum,
                 int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {outSAR, outDirection});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, 2);
  const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
  const Side up{high, low, 1.0}, down{low, high, -1.0};

  if (first < n) {
    // A flat or falling second close starts short.
    Side side = close[s + 1] <= close[s] ? down : up;
    double sar = side.sign > 0.0 ? std::min(low[s], low[s + 1]) : std::max(high[s], high[s + 1]);
    double extreme = sar;
    double acceleration = step;

    for (int i = first; i < n; ++i) {
      const bool reversed = side.sign > 0.0 ? close[i] <= sar : close[i] >= sar;
      if (reversed) {
        side = side.sign > 0.0 ? down : up;
        sar = side.limited(extreme, i);
        outSAR->data[i] = sar;
        // The reversal bar's near end, not its far one, so that the next bar that goes further
        // always counts as a new extreme and raises the acceleration.
        extreme = side.behind[i];
        acceleration = step;
      } else {
        outSAR->data[i] = sar;
        if (side.beyond(side.ahead[i], extreme)) {
          extreme = side.ahead[i];
          acceleration = acceleration + step >= maximum ? maximum : acceleration + step;
        }
      }
      sar = side.limited(sar + acceleration * (extreme - sar), i);
      outDirection->data[i] = side.sign;
    }
  }
  qvSetFirstValid(outSAR, first);
  qvSetFirstValid(outDirection, first);
  return QV_OK;
}

}  // extern "C"
