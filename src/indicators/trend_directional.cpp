// Wilder's ranges and directional system.
#include "indicators/trend_directional.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvTR(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::TR>(bars, {out}, start);
}

int QVCALL qvATR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::ATR>(bars, {out}, start, p);
}

int QVCALL qvDMIx(const QvBars* bars, QvArray* outPlusDM, QvArray* outMinusDM, int start) noexcept {
  return calculate<chain::DMIx>(bars, {outPlusDM, outMinusDM}, start);
}

int QVCALL qvDI(const QvBars* bars, QvArray* outPlusDI, QvArray* outMinusDI, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::DI>(bars, {outPlusDI, outMinusDI}, start, p);
}

int QVCALL qvDX(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::DX>(bars, {out}, start, p);
}

int QVCALL qvADX(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int start) noexcept {
  if (dxPeriod < 1 || adxPeriod < 1) return QV_INVALID_PARM;
  return calculate<chain::ADX>(bars, {out}, start, dxPeriod, adxPeriod);
}

int QVCALL qvADXR(const QvBars* bars, QvArray* out, int dxPeriod, int adxPeriod, int lag,
                  int start) noexcept {
  if (dxPeriod < 1 || adxPeriod < 1 || lag < 0) return QV_INVALID_PARM;
  return calculate<chain::ADXR>(bars, {out}, start, dxPeriod, adxPeriod, lag);
}

}  // extern "C"
