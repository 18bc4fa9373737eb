// The commodity channel index.
#include "indicators/stochastics_cci.h"
#include "kernels/calculate.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

extern "C" {

int QVCALL qvCCI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::CCI>(bars, {out}, start, p);
}

}  // extern "C"
