// The Chande momentum oscillator has a source of its own because the averages that adapt to momentum stand
// on it.
#include "indicators/momentum_cmo.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvCMO(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  return calculate<chain::CMO>({in}, {out}, start, period);
}

}  // extern "C"
