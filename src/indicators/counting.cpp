// Counts and sums of bar-to-bar changes.
#include "indicators/counting.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/counting.h"

using namespace qv;

extern "C" {

int QVCALL qvPsychologyLine(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::PsychologyLine>({in}, {out}, start, p);
}

int QVCALL qvWilliamsAD(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::WilliamsAD>(bars, {out}, start);
}

int QVCALL qvPVrank(const QvBars* bars, QvArray* out, int start) noexcept {
  return calculate<chain::PVrank>(bars, {out}, start);
}

int QVCALL qvLineOsc(const QvArray* a, const QvArray* b, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::LineOsc>({a, b}, {out}, start, p);
}

int QVCALL qvNMO(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (const int status = calculate<chain::NMO>({in}, {out}, start, p); status || hasNoRoom(out))
    return status;
  // From the caller's start, whatever the series' first valid index.
  const int first = std::min(saturatingSum(firstValidOf(start, {in}), p), out->size);
  for (int i = saturatingSum(std::max(start, 0), p); i < first; ++i)
    out->data[i] = chain::NMO::balanced(out->data[i]);
  return QV_OK;
}

}  // extern "C"
