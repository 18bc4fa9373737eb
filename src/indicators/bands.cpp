// Bands and envelopes around averages, price channels, the Ichimoku lines and Fibonacci levels.
#include "indicators/bands.h"

#include <cstdint>

#include "kernels/calculate.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/bands.h"

using namespace qv;

namespace {

int rangeMiddle(const QvBars& bars, int q, int n, double* middle) noexcept {
  chain::RangeMiddle window(q);
  overTiles(0, n, [&](int at, int count) {
    window.run(bars.high.data + at, bars.low.data + at, count, middle + at);
  });
  return isOk(window) ? QV_OK : QV_MALLOC;
}

// Stores v at index i when the output has room there: the leading spans run ahead of the last bar.
void storeAhead(QvArray* out, std::int64_t i, double v) noexcept {
  if (i < out->capacity) out->data[i] = v;
}

}  // namespace

extern "C" {

int QVCALL qvBollinger(const QvBars* bars, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower, double k,
                       int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::Bollinger>(bars, {outUpper, outMiddle, outLower}, start, k, p);
}

int QVCALL qvBollingerWidth(const QvBars* bars, QvArray* out, double k, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::BollingerWidth>(bars, {out}, start, k, p);
}

int QVCALL qvEnvelope(const QvArray* a, const QvArray* w, QvArray* outUpper, QvArray* outLower, double k,
                      int start) noexcept {
  return calculate<chain::Envelope>({a, w}, {outUpper, outLower}, start, k);
}

int QVCALL qvEnvelopePct(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k,
                         int start) noexcept {
  return calculate<chain::EnvelopePct>({in}, {outUpper, outLower}, start, k);
}

int QVCALL qvMAEnvelope(const QvArray* in, QvArray* outUpper, QvArray* outLower, double k, int method, int p,
                        int start) noexcept {
  if (p < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  return calculate<chain::MAEnvelope>({in}, {outUpper, outLower}, start, k, method, p);
}

int QVCALL qvMAHighLow(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int method, int p,
                       int start) noexcept {
  if (p < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  if (Opening* opening = openingOf(outHigh))
    return open<chain::MAHighLow>(*opening, bars, {}, start, method, p);
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {outHigh, outLow});
  if (n < 1) return n;
  if (const int status = qvMovingAverage(&bars->high, outHigh, method, p, start)) return status;
  return qvMovingAverage(&bars->low, outLow, method, p, start);
}

int QVCALL qvPriceChannels(const QvBars* bars, QvArray* outUpper, QvArray* outLower, int p,
                           int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::PriceChannels>(bars, {outUpper, outLower}, start, p);
}

int QVCALL qvStdErrBands(const QvArray* in, QvArray* outUpper, QvArray* outMiddle, QvArray* outLower,
                         double k, int p, int start) noexcept {
  if (p < 1 || !in) return QV_INVALID_PARM;
  // The line begins with the series, the bands at `start`.
  const int after = firstValidOf(start, {in}) - firstValidOf(0, {in});
  return calculate<chain::StdErrBands>({in}, {outUpper, outMiddle, outLower}, 0, k, p, after);
}

int QVCALL qvIchimokuKinkoHyo(const QvBars* bars, QvArray* outConversion, QvArray* outBase, QvArray* outSpanA,
                              QvArray* outSpanB, QvArray* outLagging, int p1, int p2, int p3, int shift,
                              int reserved, int start) noexcept {
  static_cast<void>(reserved);
  if (p1 < 1 || p2 < 1 || p3 < 1) return QV_INVALID_PARM;
  if (Opening* opening = openingOf(outConversion))
    return open<chain::IchimokuKinkoHyo>(*opening, bars, {}, 0, p1, p2, p3, std::max(start, 0));
  const int n =
      prepareOutputs({{bars, kHighLowClose}}, {}, {outConversion, outBase, outSpanA, outSpanB, outLagging});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary middle;
  if (const int status = allocArrays(n, {&middle})) return status;
  const double* m = middle.data;
  const std::int64_t ahead = std::int64_t{p2} - 1;

  if (const int status = rangeMiddle(*bars, p1, n, middle.data)) return status;
  for (int i = saturatingSum(s, p1, -1); i < n; ++i) outConversion->data[i] = m[i];
  if (const int status = rangeMiddle(*bars, p2, n, middle.data)) return status;
  for (int i = std::max(0, saturatingSum(s, p2, -2)); i < n; ++i) outBase->data[i] = m[i];
  for (int i = chain::IchimokuKinkoHyo::spanAFrom(p1, p2, s); i < n; ++i)
    storeAhead(outSpanA, i + ahead, (outConversion->data[i] + outBase->data[i]) / 2.0);
  if (const int status = rangeMiddle(*bars, p3, n, middle.data)) return status;
  for (int i = chain::IchimokuKinkoHyo::spanBFrom(p3, s); i < n; ++i) storeAhead(outSpanB, i + ahead, m[i]);

  int lag = s;
  for (; lag < n && std::int64_t{lag} + shift - 1 < n; ++lag) {
    const std::int64_t later = std::int64_t{lag} + shift - 1;
    outLagging->data[lag] = later >= 0 ? bars->close.data[later] : 0.0;
  }
  outLagging->size = std::min(lag, n);

  const auto first = chain::IchimokuKinkoHyo::firstValidFrom(p1, p2, p3, s);
  QvArray* const outputs[] = {outConversion, outBase, outSpanA, outSpanB, outLagging};
  for (std::size_t k = 0; k < first.size(); ++k) qvSetFirstValid(outputs[k], first[k]);
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
