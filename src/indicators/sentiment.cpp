// Popularity and willingness ratios, the Elder rays, and the change of a smoothed series. They answer the
// number of bars where their periods do not fit.
#include "indicators/sentiment.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/sentiment.h"

using namespace qv;

namespace {

template <typename Ray>
int ray(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int s = std::max(start, 0);
  return calculate<Ray>(bars, {out}, StartEnd(s).needingMoreThan(p), p, startOf(bars, kClose, s) - s);
}

}  // namespace

extern "C" {

int QVCALL qvAR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::AR>(bars, {out}, StartEnd(start).needingMoreThan(p), p);
}

int QVCALL qvBR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::BR>(bars, {out}, StartEnd(start).needingMoreThan(p), p);
}

int QVCALL qvERAYBull(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return ray<chain::ERAYBull>(bars, out, p, start);
}

int QVCALL qvERAYBear(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  return ray<chain::ERAYBear>(bars, out, p, start);
}

int QVCALL qvSONAR(const QvArray* in, QvArray* out, int p, int lag, int start) noexcept {
  if (p < 1 || lag < 0) return QV_INVALID_PARM;
  const int s = std::max(start, 0);
  // From the caller's start, wherever the series' values begin.
  const StartEnd range = StartEnd(s).needingMoreThan(saturatingSum(p, lag)).from(s);
  return calculate<chain::SONAR>({in}, {out}, range, p, lag, in ? firstValidOf(s, {in}) - s : 0);
}

}  // extern "C"
