// Differences of averages: MACD and its variant with free periods, oscillators of two series, price
// oscillators, and the detrended price.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "indicators/averages.h"
#include "indicators/crossing.h"
#include "kernels/guarded.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

namespace {

using Difference = int(QVCALL*)(const QvArray*, const QvArray*, QvArray*, int) noexcept;

// `difference` of two averages of in, from where the longer one would begin by its period.
int differenceOfAverages(const QvArray* in, QvArray* out, int p1, int p2, int method, int start,
                         Difference difference) noexcept {
  if (p1 < 1 || p2 < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  Temporary first, second;
  if (const int status = allocArrays(n, {&first, &second})) return status;
  if (const int status = qvMovingAverage(in, &first, method, p1, start)) return status;
  if (const int status = qvMovingAverage(in, &second, method, p2, start)) return status;
  return difference(&first, &second, out, saturatingSum(std::max(start, 0), std::max(p1, p2), -1));
}

}  // namespace

extern "C" {

int QVCALL qvMACD(const QvArray* in, QvArray* out, QvArray* outSignal, int signal, int start) noexcept {
  if (signal < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out, outSignal});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  if (f < n) {
    const double* x = in->data;
    double e1 = x[f], e2 = x[f];
    for (int i = f + 1; i < n; ++i) {
      e1 = 0.15 * x[i] + 0.85 * e1;
      e2 = 0.075 * x[i] + 0.925 * e2;
      out->data[i] = e1 - e2;
    }
  }
  const int first = saturatingSum(f, 1);
  qvSetFirstValid(out, first);
  return qvExpMA(out, outSignal, signal, first);
}

int QVCALL qvMACDx(const QvArray* in, QvArray* outFast, QvArray* outSlow, QvArray* outMACD,
                   QvArray* outSignal, QvArray* outCross, int p1, int p2, int signal, int start) noexcept {
  if (p1 < 1 || p2 < 1 || signal < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {outFast, outSlow, outMACD, outSignal, outCross});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int first = saturatingSum(f, 1);
  if (const int status = qvExpMA(in, outFast, std::min(p1, p2), f)) return status;
  if (const int status = qvExpMA(in, outSlow, std::max(p1, p2), f)) return status;
  if (const int status = qvOscillator(outFast, outSlow, outMACD, f)) return status;
  if (const int status = qvExpMA(outMACD, outSignal, signal, first)) return status;
  // The last bar is left out, and reads no crossing.
  if (const int status = fillCrossings(outMACD, outSignal, outCross, first, n - 1)) return status;
  qvSetFirstValid(outCross, first);
  return QV_OK;
}

int QVCALL qvOscillator(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a, b});
  for (int i = f; i < n; ++i) out->data[i] = a->data[i] - b->data[i];
  qvSetFirstValid(out, f);
  return QV_OK;
}

int QVCALL qvOscillatorPct(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a, b});
  const double *x = a->data, *y = b->data;
  // The guard is on a: a zero in b divides by zero.
  fillGuarded(
      f, n, out->data, [=](int i) { return (x[i] - y[i]) * 100.0 / y[i]; },
      [=](int i) { return x[i] != 0.0; }, 0.0);
  qvSetFirstValid(out, f);
  return QV_OK;
}

int QVCALL qvPriceOscillator(const QvArray* in, QvArray* out, int p1, int p2, int method,
                             int start) noexcept {
  return differenceOfAverages(in, out, p1, p2, method, start, qvOscillator);
}

int QVCALL qvPriceOscillatorPct(const QvArray* in, QvArray* out, int p1, int p2, int method,
                                int start) noexcept {
  return differenceOfAverages(in, out, p1, p2, method, start, qvOscillatorPct);
}

int QVCALL qvDPO(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int shift = p / 2 + 1;
  if (n < shift) {
    out->size = 0;
    qvSetFirstValid(out, 0);
    return QV_OK;
  }
  const int f = firstValidOf(start, {in});
  const int full = saturatingSum(f, std::max(p, 2));  // a period of 1 sums two bars at first
  if (full < n) {
    const double* x = in->data;
    double* y = out->data;
    double sum = 0.0;
    for (int i = f; i < full; ++i) sum += x[i];
    if (full > shift) y[full - 1 - shift] = x[full - 1 - shift] - sum / p;
    for (int i = full; i < n; ++i) {
      sum += x[i] - x[i - p];
      y[i - shift] = x[i - shift] - sum / p;
    }
  }
  out->size = n - shift;
  qvSetFirstValid(out, std::max(0, saturatingSum(f, p, -shift, -1)));
  return QV_OK;
}

}  // extern "C"
