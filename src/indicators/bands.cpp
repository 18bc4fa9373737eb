// Bands and envelopes around averages, price channels, the Ichimoku lines and Fibonacci levels.
#include "indicators/bands.h"

#include <cstdint>

#include "kernels/calculate.h"
#include "qvlib60/indicators/bands.h"

using namespace qv;

namespace {

// Stores v at index i when the output has room there: the leading spans run ahead of the last bar.
void storeAhead(QvArray* out, std::int64_t i, double v) noexcept {
  if (i >= 0 && i < out->capacity) out->data[i] = v;
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
  if (p < 1) return QV_INVALID_PARM;
  const int s = std::max(start, 0);
  if (!isAverageMethod(method)) {
    const int n = prepareOutputs({{bars, kHighLow}}, {}, {outHigh, outLow});
    return n < 1 ? n : int{QV_INVALID_PARM};
  }
  return calculate<chain::MAHighLow>(bars, {outHigh, outLow}, s, method, p, startOf(bars, kHigh, s) - s,
                                     startOf(bars, kLow, s) - s);
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
  if (bars && !hasSeries({bars, kHighLowClose})) return QV_INVALID_PARM;
  const int s = std::max(start, 0);
  if (const int status = calculate<chain::IchimokuKinkoHyo>(
          bars, {outConversion, outBase, outSpanA, outSpanB, outLagging}, 0, p1, p2, p3, s))
    return status;
  int n = bars->barsize;
  for (const QvArray* out : {outConversion, outBase, outSpanA, outSpanB, outLagging})
    n = std::min(n, out->size);
  if (n < 1) return QV_OK;

  // What the spans have for the bars that are still to come.
  const std::int64_t ahead = std::int64_t{p2} - 1;
  const int begin = static_cast<int>(std::max<std::int64_t>(0, n - ahead));
  for (int i = std::max(begin, chain::IchimokuKinkoHyo::spanAFrom(p1, p2, s)); i < n; ++i)
    storeAhead(outSpanA, i + ahead, (outConversion->data[i] + outBase->data[i]) / 2.0);
  const int back = std::max(0, saturatingSum(begin, -std::int64_t{p3}, 1));
  chain::RangeMiddle window(p3);
  overTiles(back, n, [&](int at, int count) {
    Tile middle;
    window.run(bars->high.data + at, bars->low.data + at, count, middle);
    for (int i = std::max({at, begin, chain::IchimokuKinkoHyo::spanBFrom(p3, s)}); i < at + count; ++i)
      storeAhead(outSpanB, i + ahead, middle[i - at]);
  });
  if (!window.ok()) return QV_MALLOC;

  int lag = s;
  for (; lag < n && std::int64_t{lag} + shift - 1 < n; ++lag) {
    const std::int64_t later = std::int64_t{lag} + shift - 1;
    outLagging->data[lag] = later >= 0 ? bars->close.data[later] : 0.0;
  }
  outLagging->size = std::min(lag, n);
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
