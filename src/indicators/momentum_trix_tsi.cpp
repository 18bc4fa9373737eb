// Oscillators of smoothed changes.
#include "indicators/momentum_trix_tsi.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvTRIX(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::TRIX>({in}, {out}, start, p);
}

int QVCALL qvTSI(const QvArray* in, QvArray* out, int r, int s, int start) noexcept {
  if (r < 1 || s < 1) return QV_INVALID_PARM;
  return calculate<chain::TSI>({in}, {out}, start, r, s);
}

}  // extern "C"
