// Oscillators built from the shape of each bar, and two that measure the distance from a regression line.
#include "indicators/barshape.h"

#include "indicators/momentum_macd.h"
#include "kernels/calculate.h"
#include "qvlib60/indicators/barshape.h"
#include "qvlib60/indicators/statistics.h"

using namespace qv;

extern "C" {

int QVCALL qvBOP(const QvBars* bars, QvArray* out, int method, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (!isAverageMethod(method)) return refuseMoreThan(p, {{bars, kPrices}}, {}, {out});
  return calculate<chain::BOP>(bars, {out}, StartEnd(start).needingMoreThan(p), method, p);
}

int QVCALL qvQstick(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::Qstick>(bars, {out}, startOf(bars, kOpen | kClose, start), p);
}

int QVCALL qvIMI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::IMI>(bars, {out}, start, p);
}

int QVCALL qvMassIndex(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::MassIndex>(bars, {out}, start, p);
}

int QVCALL qvPVO(const QvBars* bars, QvArray* out, int p1, int p2, int method, int start) noexcept {
  if (p1 < 1 || p2 < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  return calculate<chain::PVO>(bars, {out}, startOf(bars, kVolume, start), p1, p2, method,
                               bars ? itemsBehind(&bars->volume, start) : 0);
}

int QVCALL qvForecastOscillator(const QvArray* in, QvArray* out, QvArray* outSignal, int p, int signalPeriod,
                                int start) noexcept {
  if (p < 1 || signalPeriod < 1) return QV_INVALID_PARM;
  return calculate<chain::ForecastOscillator>({in}, {out, outSignal}, start, p, signalPeriod);
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
