// Stochastics: where the close stands within the range of the last bars. %K and its smoothed forms,
// Williams' %R, and the stochastic momentum index.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "indicators/averages.h"
#include "indicators/bar_ranges.h"
#include "kernels/guarded.h"
#include "kernels/window.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

namespace {

// The highest high and the lowest low of each window.
int highLowRange(const QvBars* bars, window::Range r, double* lowest, double* highest) noexcept {
  if (const int status = window::minimum(bars->low.data, r, lowest)) return status;
  return window::maximum(bars->high.data, r, highest);
}

// %K of value[i] for the windows of p bars that end at i = s + p - 1 .. n - 1, into out. `range` fills
// in the lowest and the highest price of each window. A flat range reads 100: fully overbought.
template <typename RangeOf>
int percentK(const double* value, window::Range r, QvArray* out, RangeOf range) noexcept {
  const int first = saturatingSum(r.first, r.period, -1);
  if (first < r.end) {
    Temporary lows;
    if (const int status = allocArrays(r.end, {&lows})) return status;
    double *low = lows.data, *high = out->data;
    if (const int status = range(r, low, high)) return status;
    fillGuarded(
        first, r.end, out->data, [=](int i) { return (value[i] - low[i]) * 100.0 / (high[i] - low[i]); },
        [=](int i) { return high[i] != low[i]; }, 100.0);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

// %K of the close within the highest high and the lowest low.
int closeWithinHighLow(const QvBars* bars, window::Range r, QvArray* out) noexcept {
  return percentK(bars->close.data, r, out, [bars](window::Range w, double* low, double* high) {
    return highLowRange(bars, w, low, high);
  });
}

// %K of the close within all four prices of the bars; prices of zero do not count as lows.
int closeWithinPrices(const QvBars* bars, window::Range r, QvArray* out) noexcept {
  return percentK(bars->close.data, r, out, [bars](window::Range w, double* low, double* high) {
    return slidingBarRange(bars, w, low, high);
  });
}

}  // namespace

extern "C" {

int QVCALL qvRawK(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  return closeWithinHighLow(bars, {firstValidOf(start, {}), n, p}, out);
}

int QVCALL qvFastD(const QvBars* bars, QvArray* out, int k, int d, int start) noexcept {
  if (d < 1) return QV_INVALID_PARM;
  if (const int status = qvRawK(bars, out, k, start); status || hasNoRoom(out)) return status;
  return qvExpMA(out, out, d, out->firstValid);
}

int QVCALL qvSlowD(const QvBars* bars, QvArray* out, int k, int d1, int d2, int start) noexcept {
  if (d2 < 1) return QV_INVALID_PARM;
  if (const int status = qvFastD(bars, out, k, d1, start); status || hasNoRoom(out)) return status;
  return qvExpMA(out, out, d2, out->firstValid);
}

int QVCALL qvStochastic(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const double* x = in->data;
  const window::Range r{firstValidOf(start, {in}), n, p};
  return percentK(x, r, out, [x](window::Range w, double* low, double* high) {
    if (const int status = window::minimum(x, w, low)) return status;
    return window::maximum(x, w, high);
  });
}

int QVCALL qvStochasticFast(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k, int d,
                            int start) noexcept {
  if (k < 1 || d < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kPrices}}, {}, {outK, outD});
  if (n < 1) return n;
  const window::Range r{firstValidOf(start, {}), n, k};
  if (const int status = closeWithinPrices(bars, r, outK)) return status;
  return qvMovingAverage(outK, outD, method, d, outK->firstValid);
}

int QVCALL qvStochasticOscillator(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k,
                                  int slowing, int d, int start) noexcept {
  if (k < 1 || slowing < 1 || d < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kPrices}}, {}, {outK, outD});
  if (n < 1) return n;
  const window::Range r{firstValidOf(start, {}), n, k};
  Temporary raw;  // some averages do not run in place
  if (const int status = allocArrays(outK->size, {&raw})) return status;
  if (const int status = closeWithinPrices(bars, r, &raw)) return status;
  const int first = raw.firstValid;
  if (const int status = qvMovingAverage(&raw, outK, method, slowing, first)) return status;
  return qvMovingAverage(outK, outD, method, d, first);
}

int QVCALL qvWilliamsR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, -1);
  if (first < n) {
    Temporary lows;
    if (const int status = allocArrays(n, {&lows})) return status;
    double *low = lows.data, *high = out->data;
    if (const int status = highLowRange(bars, {s, n, p}, low, high)) return status;
    const double* close = bars->close.data;
    // 0 at the high, 100 at the low: not negated.
    fillGuarded(
        first, n, out->data, [=](int i) { return (high[i] - close[i]) * 100.0 / (high[i] - low[i]); },
        [=](int i) { return high[i] - low[i] != 0.0; }, 0.0);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvSMI(const QvBars* bars, QvArray* out, QvArray* outSignal, int p, int r, int s, int signal,
                 int start) noexcept {
  if (p < 1 || r < 1 || s < 1 || signal < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out, outSignal});
  if (n < 1) return n;
  const int begin = firstValidOf(start, {});
  const int first = saturatingSum(begin, p, -1);
  if (first < n) {
    Temporary lows;
    if (const int status = allocArrays(n, {&lows})) return status;
    double *low = lows.data, *smi = out->data;
    if (const int status = highLowRange(bars, {begin, n, p}, low, smi)) return status;

    const double* close = bars->close.data;
    const double kr = qvPeriodToExp(r), ks = qvPeriodToExp(s);
    double c1 = close[first] - (smi[first] + low[first]) / 2.0, h1 = smi[first] - low[first];
    double c2 = c1, h2 = h1;
    for (int i = first; i < n; ++i) {
      if (i > first) {
        const double distance = close[i] - (smi[i] + low[i]) / 2.0, range = smi[i] - low[i];
        c1 = c1 + kr * (distance - c1);
        h1 = h1 + kr * (range - h1);
      }
      c2 = c2 + ks * (c1 - c2);
      h2 = h2 + ks * (h1 - h2);
      smi[i] = h2 != 0.0 ? 100.0 * c2 / (h2 / 2.0) : 0.0;
    }
  }
  qvSetFirstValid(out, first);
  return qvExpMA(out, outSignal, signal, first);
}

}  // extern "C"
