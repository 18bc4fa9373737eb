// The ultimate oscillator: buying pressure over true range, over three periods at once.
#include <algorithm>

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "kernels/guarded.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvUltimateOsc(const QvBars* bars, QvArray* out, int p1, int p2, int p3, int start) noexcept {
  if (p1 < 1 || p2 < 1 || p3 < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  Temporary pressure, range, averagePressure, averageRange;
  if (const int status = allocArrays(n, {&pressure, &range, &averagePressure, &averageRange})) return status;

  const int s = firstValidOf(start, {});
  const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
  for (int i = s; i < n; ++i) {
    const double bottom = trueLow(low, close, i);
    pressure.data[i] = close[i] - bottom;
    range.data[i] = trueHigh(high, close, i) - bottom;
  }

  struct Term {
    int period;
    double weight;
  };
  double* y = out->data;
  bool isFirst = true;
  for (const Term term : {Term{p1, 4.0}, Term{p2, 2.0}, Term{p3, 1.0}}) {
    int status = qvSimpleMA(&pressure, &averagePressure, term.period, s);
    if (!status) status = qvSimpleMA(&range, &averageRange, term.period, s);
    if (status) {
      std::fill_n(y, n, 0.0);
      return status;
    }
    const double *bp = averagePressure.data, *tr = averageRange.data;
    const auto share = [=](int i) { return term.weight * (term.period * bp[i] / (term.period * tr[i])); };
    // A bar that one term leaves at zero stays there.
    fillGuarded(
        s, n, y, [=](int i) { return y[i] + share(i); },
        [=](int i) { return (tr[i] != 0.0) & (isFirst | (y[i] != 0.0)); }, 0.0);
    isFirst = false;
  }
  for (int i = s; i < n; ++i) y[i] = y[i] / 7.0;

  // The longest period alone, wherever the values begin.
  const int first = std::max({p1, p2, p3});
  if (s < std::min(first, n)) std::fill(y + s, y + std::min(first, n), 0.0);
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
