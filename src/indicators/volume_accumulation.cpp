// Accumulation: the line and the Chaikin family.
#include "indicators/volume_accumulation.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/volume.h"

using namespace qv;

extern "C" {

int QVCALL qvAccumDist(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::AccumDist>(bars, {out}, start);
}

int QVCALL qvAccumulate(const QvArray* in, QvArray* out, int start) noexcept {
  return calculate<chain::Accumulate>({in}, {out}, start);
}

int QVCALL qvChaikinMoneyFlow(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::ChaikinMoneyFlow>(bars, {out}, start, p);
}

int QVCALL qvChaikinOscillator(const QvBars* bars, QvArray* out, int fast, int slow, int start) noexcept {
  if (fast < 1 || slow < 1) return QV_INVALID_PARM;
  return calculate<chain::ChaikinOscillator>(bars, {out}, start, fast, slow);
}

int QVCALL qvChaikinVolatility(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::ChaikinVolatility>(bars, {out}, start, p);
}

}  // extern "C"
