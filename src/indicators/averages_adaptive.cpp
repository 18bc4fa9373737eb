// The averages that adapt to momentum and to volume.
#include "indicators/averages_adaptive.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/averages.h"

using namespace qv;

extern "C" {

int QVCALL qvVIDYA(const QvArray* in, QvArray* out, int cmoPeriod, int period, int start) noexcept {
  if (cmoPeriod < 1 || period < 1) return QV_INVALID_PARM;
  return calculate<chain::VIDYA>({in}, {out}, start, cmoPeriod, period);
}

int QVCALL qvVariableMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::VariableMA>({in}, {out}, start, period);
}

int QVCALL qvVolAdjustedMA(const QvArray* price, const QvArray* volume, QvArray* out, int period,
                           int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::VolAdjustedMA>({price, volume}, {out}, start, period);
}

}  // extern "C"
