// Averages whose speed follows the market: by momentum, and by volume.
#include <cmath>

#include "core/calculation.h"
#include "kernels/guarded.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvVIDYA(const QvArray* in, QvArray* out, int cmoPeriod, int period, int start) noexcept {
  if (cmoPeriod < 1 || period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  Temporary cmo;
  if (const int status = allocArrays(n, {&cmo})) return status;
  int s = firstValidOf(start, {in});
  if (const int status = qvCMO(in, &cmo, cmoPeriod, s)) return status;
  // Nine is the oscillator of the variable average, which has always begun 13 bars late; no other
  // period is shifted.
  if (cmoPeriod == 9) s = saturatingSum(s, 13);
  const int first = saturatingSum(s, cmoPeriod);
  if (first <= n) {
    const double k = qvPeriodToExp(period);
    const double* x = in->data;
    double* y = out->data;
    double average = y[first - 1] = x[first - 1];
    for (int i = first; i < n; ++i) {
      const double a = k * (std::fabs(cmo.data[i]) / 100.0);
      y[i] = average = a * x[i] + (1.0 - a) * average;
    }
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvVariableMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  return qvVIDYA(in, out, 9, period, start);
}

int QVCALL qvVolAdjustedMA(const QvArray* price, const QvArray* volume, QvArray* out, int period,
                           int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {price, volume}, {out});
  if (n < 1) return n;
  Temporary turnover;
  if (const int status = allocArrays(n, {&turnover})) return status;
  const int s = firstValidOf(start, {price, volume});
  const int first = saturatingSum(s, period, -1);
  for (int i = s; i < n; ++i) turnover.data[i] = price->data[i] * volume->data[i];
  const window::Range range{s, n, period};
  if (const int status = window::sum(turnover.data, range, turnover.data)) return status;
  if (const int status = window::sum(volume->data, range, out->data)) return status;
  const double *sumTurnover = turnover.data, *sumVolume = out->data;
  fillGuarded(
      first, n, out->data, [=](int i) { return sumTurnover[i] / sumVolume[i]; },
      [=](int i) { return sumVolume[i] != 0.0; }, 0.0);
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
