// Wilder's ranges and directional system: true range, directional movement, +DI and -DI, DX, ADX.
#include <algorithm>
#include <cmath>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

namespace {

// +DM and -DM from bar s + 1 on.
void directionalMovement(const QvBars& bars, int s, int n, double* plus, double* minus) noexcept {
  const double *high = bars.high.data, *low = bars.low.data;
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    const double up = high[i] - high[i - 1];
    const double down = low[i - 1] - low[i];
    const bool none = (up < 0.0 && down < 0.0) || up == down;
    plus[i] = none || up < down ? 0.0 : up;
    minus[i] = none || !(up < down) ? 0.0 : down;
  }
}

}  // namespace

extern "C" {

int QVCALL qvTR(const QvBars* bars, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const double *high = bars->high.data, *low = bars->low.data, *close = bars->close.data;
  double* tr = out->data;
  if (s < n) tr[s] = std::fabs(high[s] - low[s]);
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    const double height = std::fabs(high[i] - low[i]);
    const double up = std::fabs(high[i] - close[i - 1]);
    const double down = std::fabs(low[i] - close[i - 1]);
    tr[i] = std::max(std::max(height, up), down);
  }
  qvSetFirstValid(out, s);
  return QV_OK;
}

int QVCALL qvATR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (const int status = qvTR(bars, out, start); status || hasNoRoom(out)) return status;
  return qvWellesMA(out, out, p, start);
}

int QVCALL qvDMIx(const QvBars* bars, QvArray* outPlusDM, QvArray* outMinusDM, int start) noexcept {
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {outPlusDM, outMinusDM});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  directionalMovement(*bars, s, n, outPlusDM->data, outMinusDM->data);
  qvSetFirstValid(outPlusDM, saturatingSum(s, 1));
  qvSetFirstValid(outMinusDM, saturatingSum(s, 1));
  return QV_OK;
}

int QVCALL qvDI(const QvBars* bars, QvArray* outPlusDI, QvArray* outMinusDI, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {outPlusDI, outMinusDI});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary range;
  if (const int status = qvTR(bars, &range, s)) return status;
  if (const int status = qvWellesSum(&range, &range, p, s)) return status;

  double *plus = outPlusDI->data, *minus = outMinusDI->data;
  directionalMovement(*bars, s, n, plus, minus);
  for (QvArray* movement : {outPlusDI, outMinusDI}) {
    qvSetFirstValid(movement, saturatingSum(s, 1));
    if (const int status = qvWellesSum(movement, movement, p, saturatingSum(s, 1))) return status;
  }
  const int first = saturatingSum(s, p);
  for (int i = first; i < n; ++i) {
    const bool moved = range.data[i] != 0.0;
    plus[i] = moved ? 100.0 * plus[i] / range.data[i] : 0.0;
    minus[i] = moved ? 100.0 * minus[i] / range.data[i] : 0.0;
  }
  qvSetFirstValid(outPlusDI, first);
  qvSetFirstValid(outMinusDI, first);
  return QV_OK;
}

int QVCALL qvDX(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary plus, minus;
  if (const int status = qvDI(bars, &plus, &minus, p, s)) return status;
  const int first = saturatingSum(s, p);
  for (int i = first; i < n; ++i) {
    const double up = plus.data[i], down = minus.data[i];
    out->data[i] = up == down ? 0.0 : std::fabs(up - down) * 100.0 / (up + down);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvADX(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int start) noexcept {
  if (adxPeriod < 1) return QV_INVALID_PARM;
  if (const int status = qvDX(bars, out, dxPeriod, start); status || hasNoRoom(out)) return status;
  return qvWellesMA(out, out, adxPeriod, saturatingSum(firstValidOf(start, {}), dxPeriod));
}

int QVCALL qvADXR(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int lag,
                  int start) noexcept {
  if (dxPeriod < 1 || adxPeriod < 1 || lag < 0) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLowClose}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  Temporary adx;
  if (const int status = qvADX(bars, &adx, dxPeriod, adxPeriod, s)) return status;
  const int first = saturatingSum(s, dxPeriod, adxPeriod, lag, -1);
  for (int i = first; i < n; ++i) out->data[i] = (adx.data[i] + adx.data[i - lag]) / 2.0;
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
