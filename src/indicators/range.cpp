// Range indicator, polarized fractal efficiency, Wilder's volatility system.
#include <algorithm>
#include <cmath>

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/range.h"
#include "qvlib60/indicators/stochastics.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvRangeIndicator(const QvBars* bars, QvArray* out, int p, int smoothing, int start) noexcept {
  if (p < 1 || smoothing < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
  Temporary ranges;
  if (const int status = allocArrays(n, {&ranges})) return status;
  for (int i = first; i < n; ++i) {
    const double range = trueRange(high, low, close, i);
    ranges.data[i] = close[i] > close[i - 1] ? range / (close[i] - close[i - 1]) : range;
  }
  qvSetFirstValid(&ranges, first);
  if (const int status = qvStochastic(&ranges, out, p, 1)) return status;
  return qvExpMA(out, out, smoothing, p);
}

int QVCALL qvPFE(const QvArray* in, QvArray* out, int p, int smoothing, int start) noexcept {
  if (p < 1 || smoothing < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, p);
  const double* x = in->data;
  for (int i = saturatingSum(f, 1); i < n; ++i) {
    const double d = x[i] - x[i - 1];
    out->data[i] = std::sqrt(d * d + 1.0);
  }
  out->firstValid = 0;  // a used output's must not delay the sums
  if (const int status = qvMovingSum(out, out, p, 1)) return status;
  const double length = static_cast<double>(p) * p;
  for (int i = first; i < n; ++i) {
    const double d = x[i] - x[i - p + 1];
    const double efficiency = std::sqrt(d * d + length) * 100.0 / out->data[i];
    out->data[i] = x[i] < x[i - p + 1] ? -efficiency : efficiency;
  }
  qvSetFirstValid(out, first);
  return qvExpMA(out, out, smoothing, p);
}

int QVCALL qvWellesVolatility(const QvBars* bars, QvArray* outSIC, QvArray* outARC, QvArray* outStop,
                              QvArray* outSignal, double constant, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {outSIC, outARC, outStop, outSignal});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  if (const int status = qvATR(bars, outARC, p, s)) return status;
  for (int i = saturatingSum(s, p, -1); i < outARC->size; ++i) outARC->data[i] *= constant;

  const int m = std::max(saturatingSum(s, p, -2), 0);
  const double* close = bars->close.data;
  double significant = m < n ? close[m] : 0.0;
  if (m < n) outSIC->data[m] = significant;
  bool isLong = false;
  for (int i = saturatingSum(m, 1); i < n; ++i) {
    const double reach = outARC->data[i - 1];
    const double stop = isLong ? significant - reach : significant + reach;
    outStop->data[i] = stop;
    significant = isLong ? std::max(significant, close[i]) : std::min(significant, close[i]);
    if (isLong ? close[i] < stop : close[i] > stop) {
      significant = close[i];
      isLong = !isLong;
      outSignal->data[i] = isLong ? 1.0 : -1.0;
    }
    outSIC->data[i] = significant;
  }
  qvSetFirstValid(outSIC, m);
  qvSetFirstValid(outStop, saturatingSum(m, 1));
  qvSetFirstValid(outSignal, saturatingSum(m, 1));
  return QV_OK;
}

}  // extern "C"
