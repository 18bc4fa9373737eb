// The ultimate oscillator.
#include "indicators/momentum_ultimate.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvUltimateOsc(const QvBars* bars, QvArray* out, int p1, int p2, int p3, int start) noexcept {
  if (p1 < 1 || p2 < 1 || p3 < 1) return QV_INVALID_PARM;
  const int status = calculate<chain::UltimateOsc>(bars, {out}, start, p1, p2, p3);
  const int first = std::max({p1, p2, p3});  // the longest period alone, wherever the values begin
  if (Opening* opening = openingOf(out)) opening->firstValid[0] = first;
  if (status || hasNoRoom(out)) return status;
  std::fill_n(out->data, std::min(first, out->size), 0.0);
  qvSetFirstValid(out, first);
  return QV_OK;
}

}  // extern "C"
