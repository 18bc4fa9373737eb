// Bands and envelopes around averages, price channels, the Ichimoku lines and Fibonacci levels.
#include <algorithm>
#include <cstdint>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "indicators/bar_ranges.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/bands.h"
#include "qvlib60/indicators/statistics.h"
#include "qvlib60/indicators/transforms.h"

using namespace qv;

namespace {

// upper = k * width + middle and lower = middle - k * width from `first` on.
void bandsAround(const double* middle, const double* width, double k, int first, int n, QvArray* upper,
                 QvArray* lower) noexcept {
  for (int i = first; i < n; ++i) {
    upper->data[i] = k * width[i] + middle[i];
    lower->data[i] = middle[i] - k * width[i];
  }
  qvSetFirstValid(upper, first);
  qvSetFirstValid(lower, first);
}

// The population deviation of the typical price over p bars; the typical prices too.
int typicalDeviation(const QvBars* bars, int p, int s, Temporary& typical, Temporary& deviation) noexcept {
  if (const int status = qvTypicalPrices(bars, &typical, 0)) return status;
  return qvStdDevMv(&typical, &deviation, 0, p, s);
}

// The middle of the highest high and the lowest low of the last q bars, or of those that exist.
int rangeMiddle(const QvBars& bars, int q, int n, Temporary& lowest, double* middle) noexcept {
  const window::Range range{0, n, q, true};
  if (const int status = window::maximum(bars.high.data, range, middle)) return status;
  if (const int status = window::minimum(bars.low.data, range, lowest.data)) return status;
  for (int i = 0; i < n; ++i) middle[i] = (middle[i] + lowest.data[i]) / 2.0;
  return QV_OK;
}

// Stores v at index i when the output has room there: the leading spans run ahead of the last bar.
void storeAhead(QvArray* out, std::int64_t i, double v) noexcept {
  if (i >= 0 && i < out->capacity) out->data[i] = v;
}

}  // namespace

extern "C" {

int QVCALL qvBollinger(const QvBars* bars, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower, double k,
                       int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {outUpper, outMiddle, outLower});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary typical, deviation;
  if (const int status = typicalDeviation(bars, p, s, typical, deviation)) return status;
  if (const int status = qvSimpleMA(&typical, outMiddle, p, s)) return status;
  bandsAround(outMiddle->data, deviation.data, k, saturatingSum(s, p, -1), n, outUpper, outLower);
  return QV_OK;
}

int QVCALL qvBollingerWidth(const QvBars* bars, QvArray* out, double k, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary typical, deviation;
  if (const int status = typicalDeviation(bars, p, s, typical, deviation)) return status;
  const int first = saturatingSum(s, p, -1);
  for (int i = first; i < n; ++i) out->data[i] = 2.0 * k * deviation.data[i];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvEnvelope(const QvArray* a, const QvArray* w, QvArray* outUpper, QvArray* outLower, double k,
                      int start) noexcept {
  const int n = prepareOutputs({}, {a, w}, {outUpper, outLower});
  if (n < 1) return n;
  bandsAround(a->data, w->data, k, firstValidOf(start, {a, w}), n, outUpper, outLower);
  return QV_OK;
}

int QVCALL qvEnvelopePct(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k,
                         int start) noexcept {
  return qvEnvelope(in, in, outUpper, outLower, k, start);
}

int QVCALL qvMAEnvelope(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k, int method, int p,
                        int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {outUpper, outLower});
  if (n < 1) return n;
  Temporary average;
  if (const int status = qvMovingAverage(in, &average, method, p, start)) return status;
  return qvEnvelopePct(&average, outUpper, outLower, k, start);
}

int QVCALL qvMAHighLow(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int method, int p,
                       int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {outHigh, outLow});
  if (n < 1) return n;
  if (const int status = qvMovingAverage(&bars->high, outHigh, method, p, start)) return status;
  return qvMovingAverage(&bars->low, outLow, method, p, start);
}

int QVCALL qvPriceChannels(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                           int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kPrices}}, {}, {outUpper, outLower});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  // The window that ends at bar i is the channel of bar i + 1.
  if (const int status = slidingBarRange(bars, {s, n - 1, p}, outLower->data + 1, outUpper->data + 1))
    return status;
  qvSetFirstValid(outUpper, saturatingSum(s, p));
  qvSetFirstValid(outLower, saturatingSum(s, p));
  return QV_OK;
}

int QVCALL qvStdErrBands(const QvArray* in, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower,
                         double k, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {outUpper, outMiddle, outLower});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  if (const int status = qvLstSqrMA(in, outMiddle, p, 0)) return status;
  Temporary error;
  if (const int status = qvStdErrMv(in, &error, p, f)) return status;
  bandsAround(outMiddle->data, error.data, k, saturatingSum(f, p, -1), n, outUpper, outLower);
  return QV_OK;
}

int QVCALL qvIchimokuKinkoHyo(const QvBars* bars, QvArray* outConversion, QvArray* outBase, QvArray* outSpanA,
                              QvArray* outSpanB, QvArray* outLagging, int p1, int p2, int p3, int shift,
                              int reserved, int start) noexcept {
  static_cast<void>(reserved);
  if (p1 < 1 || p2 < 1 || p3 < 1) return QV_INVALID_PARM;
  const int n =
      prepareOutputs({{bars, kHighLowClose}}, {}, {outConversion, outBase, outSpanA, outSpanB, outLagging});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary middle, lowest;
  if (const int status = allocArrays(n, {&middle, &lowest})) return status;
  const double* m = middle.data;
  const int longer = std::max(p1, p2);
  const std::int64_t ahead = std::int64_t{p2} - 1;

  if (const int status = rangeMiddle(*bars, p1, n, lowest, middle.data)) return status;
  for (int i = saturatingSum(s, p1, -1); i < n; ++i) outConversion->data[i] = m[i];
  if (const int status = rangeMiddle(*bars, p2, n, lowest, middle.data)) return status;
  for (int i = std::max(0, saturatingSum(s, p2, -2)); i < n; ++i) outBase->data[i] = m[i];
  for (int i = std::max(0, saturatingSum(s, longer, -2)); i < n; ++i)
    storeAhead(outSpanA, i + ahead, (outConversion->data[i] + outBase->data[i]) / 2.0);
  if (const int status = rangeMiddle(*bars, p3, n, lowest, middle.data)) return status;
  for (int i = std::max(0, saturatingSum(s, p3, -2)); i < n; ++i) storeAhead(outSpanB, i + ahead, m[i]);

  int lag = s;
  for (; lag < n && std::int64_t{lag} + shift - 1 < n; ++lag) {
    const std::int64_t later = std::int64_t{lag} + shift - 1;
    outLagging->data[lag] = later >= 0 ? bars->close.data[later] : 0.0;
  }
  outLagging->size = std::min(lag, n);

  qvSetFirstValid(outConversion, saturatingSum(s, p1, -1));
  qvSetFirstValid(outBase, saturatingSum(s, p2, -1));
  qvSetFirstValid(outSpanA, saturatingSum(s, longer, p2, -2));
  qvSetFirstValid(outSpanB, saturatingSum(s, p3, p2, -2));
  qvSetFirstValid(outLagging, s);
  return QV_OK;
}

int QVCALL qvFibonacciProject(double a, double b, double* r1, double* r2, double* r3) noexcept {
  if (!r1 || !r2 || !r3) return QV_INVALID_PARM;
  const double d = b - a;
  const bool moved = a != b;
  *r1 = moved ? b + 1.618 * d : a;
  *r2 = moved ? b + 2.618 * d : a;
  *r3 = moved ? b + 4.236 * d : a;
  return QV_OK;
}

int QVCALL qvFibonacciRetrace(double a, double b, double* r1, double* r2, double* r3) noexcept {
  if (!r1 || !r2 || !r3) return QV_INVALID_PARM;
  const double d = b - a;
  const bool moved = a != b;
  *r1 = moved ? b - 0.382 * d : a;
  *r2 = moved ? b - 0.5 * d : a;
  *r3 = moved ? b - 0.618 * d : a;
  return QV_OK;
}

}  // extern "C"
