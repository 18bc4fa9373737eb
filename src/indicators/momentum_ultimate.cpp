// The ultimate oscillator.
#include "indicators/momentum_ultimate.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvUltimateOsc(const QvBars* bars, QvArray* out, int p1, int p2, int p3, int start) noexcept {
  if (p1 < 1 || p2 < 1 || p3 < 1) return QV_INVALID_PARM;
  if (const int status = calculate<chain::UltimateOsc>(bars, {out}, start, p1, p2, p3)) return status;
  if (hasNoRoom(out)) return QV_OK;
  std::fill_n(out->data, std::min(out->firstValid, out->size), 0.0);
  return QV_OK;
}

}  // extern "C"
