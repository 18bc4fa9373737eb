// Oscillators built from the shape of each bar, and two that measure the distance from a regression
// line.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/barshape.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/statistics.h"

using namespace qv;

extern "C" {

int QVCALL qvBOP(const QvBars* bars, QvArray* out, int method, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kPrices}}, {}, {out});
  if (n < 1 || p >= n) return n;
  const int s = firstValidOf(start, {});
  Temporary power;
  if (const int status = allocArrays(n, {&power})) return status;
  for (int i = std::max(s, 1); i < n; ++i) {
    const double height = bars->high.data[i] - bars->low.data[i];
    // The previous bar's open, not the bar's own.
    power.data[i] = height != 0.0 ? (bars->close.data[i] - bars->open.data[i - 1]) / height : 0.0;
  }
  if (const int status = qvMovingAverage(&power, out, method, p, s)) return status;
  qvSetFirstValid(out, saturatingSum(s, p));
  return QV_OK;
}

int QVCALL qvQstick(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kOpen | kClose}}, {}, {out});
  if (n < 1) return n;
  if (const int status = qvOscillator(&bars->close, &bars->open, out, start)) return status;
  return qvExpMA(out, out, p, start);
}

int QVCALL qvIMI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kOpen | kClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const int first = saturatingSum(s, p, -1);
  double white = 0.0, black = 0.0;
  auto add = [&](int i, double sign) {
    const double body = bars->close.data[i] - bars->open.data[i];
    if (bars->close.data[i] <= bars->open.data[i])
      black -= sign * body;
    else
      white += sign * body;
  };
  for (int i = s; i < n; ++i) {
    if (i > first) add(i - p, -1.0);
    add(i, 1.0);
    if ((i >= first || i == n - 1) && white + black != 0.0) out->data[i] = 100.0 * white / (white + black);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvMassIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const double *high = bars->high.data, *low = bars->low.data;
  double e1 = s < n ? high[s] - low[s] : 0.0;
  double e2 = e1;
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    e1 = 0.2 * (high[i] - low[i]) + 0.8 * e1;
    e2 = 0.2 * e1 + 0.8 * e2;
    out->data[i] = e2 != 0.0 ? e1 / e2 : 0.0;
  }
  qvSetFirstValid(out, saturatingSum(s, 1));
  return qvMovingSum(out, out, p, s);
}

int QVCALL qvPVO(const QvBars* bars, QvArray* out, int p1, int p2, int method, int start) noexcept {
  if (p1 < 1 || p2 < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kVolume}}, {}, {out});
  if (n < 1) return n;
  return qvPriceOscillatorPct(&bars->volume, out, p1, p2, method, start);
}

int QVCALL qvForecastOscillator(const QvArray* in, QvArray* out, QvArray* outSignal, int p, int signalPeriod,
                                int start) noexcept {
  if (p < 1 || signalPeriod < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out, outSignal});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, p);
  Temporary slope, intercept;
  if (const int status = allocArrays(n, {&slope, &intercept})) return status;
  // The line that ends at bar i - 1 makes the forecast of bar i.
  if (const int status = window::regressionLine(in->data, {f, n - 1, p}, slope.data + 1, intercept.data + 1))
    return status;
  for (int i = first; i < n; ++i) {
    const double forecast = (p + 1.0) * slope.data[i] + intercept.data[i];
    out->data[i] = (in->data[i] - forecast) * 100.0 / in->data[i];
  }
  qvSetFirstValid(out, first);
  return qvExpMA(out, outSignal, signalPeriod, first);
}

int QVCALL qvDeTrend(const QvArray* in, QvArray* out, int start, int end) noexcept {
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int last = std::min(end, n - 1);
  if (f <= last) {
    double slope, intercept;
    qvRegressionLine(in, &slope, &intercept, f, last);
    for (int i = f; i <= last; ++i) out->data[i] = in->data[i] - ((i - f) * slope + intercept);
  }
  qvSetFirstValid(out, f);
  return QV_OK;
}

}  // extern "C"
