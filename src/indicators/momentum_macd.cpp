// Differences of averages: MACD and its variant with free periods, oscillators of two series, price
// oscillators, and the detrended price.
#include "indicators/momentum_macd.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

namespace {

template <typename Oscillator>
int ofAverages(const QvArray* in, QvArray* out, int p1, int p2, int method, int start) noexcept {
  if (p1 < 1 || p2 < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  return calculate<Oscillator>({in}, {out}, start, p1, p2, method, itemsBehind(in, start));
}

}  // namespace

extern "C" {

int QVCALL qvMACD(const QvArray* in, QvArray* out, QvArray* outSignal, int signal, int start) noexcept {
  if (signal < 1) return QV_INVALID_PARM;
  return calculate<chain::MACD>({in}, {out, outSignal}, start, signal);
}

int QVCALL qvMACDx(const QvArray* in, QvArray* outFast, QvArray* outSlow, QvArray* outMACD,
                   QvArray* outSignal, QvArray* outCross, int p1, int p2, int signal, int start) noexcept {
  if (p1 < 1 || p2 < 1 || signal < 1) return QV_INVALID_PARM;
  const int status =
      calculate<chain::MACDx>({in}, {outFast, outSlow, outMACD, outSignal, outCross}, start, p1, p2, signal);
  if (status) return status;
  // The last bar is left out, and reads no crossing.
  int n = in->size;
  for (const QvArray* out : {outFast, outSlow, outMACD, outSignal, outCross}) n = std::min(n, out->size);
  if (n > 0) outCross->data[n - 1] = 0.0;
  return QV_OK;
}

int QVCALL qvOscillator(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  return calculate<chain::Oscillator>({a, b}, {out}, start);
}

int QVCALL qvOscillatorPct(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  return calculate<chain::OscillatorPct>({a, b}, {out}, start);
}

int QVCALL qvPriceOscillator(const QvArray* in, QvArray* out, int p1, int p2, int method,
                             int start) noexcept {
  return ofAverages<chain::PriceOscillator>(in, out, p1, p2, method, start);
}

int QVCALL qvPriceOscillatorPct(const QvArray* in, QvArray* out, int p1, int p2, int method,
                                int start) noexcept {
  return ofAverages<chain::PriceOscillatorPct>(in, out, p1, p2, method, start);
}

// No chain: a bar's value is known only when the window that it is compared with has ended, later.
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
  const int full = saturatingSum(f, std::max(p, 2));
  if (full < n) {
    const double* x = in->data;
    const double more = p == 1 ? x[f] : 0.0;  // a period of 1 sums two items at first, and keeps one of them
    const int first = std::max(full - 1, shift);
    chain::SimpleMA window(p);
    overTiles(f, n, [&](int at, int count) {
      Tile mean;
      window.run({x + at}, count, {mean});
      const int from = std::clamp(first - at, 0, count);
      map(
          count - from, out->data + (at + from - shift),
          [more](double price, double average) { return price - (average + more); }, x + (at + from - shift),
          mean + from);
    });
    if (!isOk(window)) return QV_MALLOC;
  }
  out->size = n - shift;
  qvSetFirstValid(out, std::max(0, saturatingSum(f, p, -shift, -1)));
  return QV_OK;
}

}  // extern "C"
