// The relative volatility index and the inertia built on it.
#include "indicators/rvi.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/rvi.h"

using namespace qv;

extern "C" {

int QVCALL qvRVIoriginal(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RVIoriginal>({in}, {out}, start, p);
}

int QVCALL qvRVI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RVI>(bars, {out}, startOf(bars, kHighLow, start), p);
}

int QVCALL qvInertia(const QvBars* bars, QvArray* out, int p, int q, int start) noexcept {
  if (p < 1 || q < 1) return QV_INVALID_PARM;
  return calculate<chain::Inertia>(bars, {out}, startOf(bars, kHighLow, start), p, q);
}

}  // extern "C"
