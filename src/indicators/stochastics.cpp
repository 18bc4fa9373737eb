// Stochastics: %K and its smoothed forms, Williams' %R, and the stochastic momentum index.
#include "indicators/stochastics.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

extern "C" {

int QVCALL qvRawK(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RawK>(bars, {out}, start, p);
}

int QVCALL qvFastD(const QvBars* bars, QvArray* out, int k, int d, int start) noexcept {
  if (k < 1 || d < 1) return QV_INVALID_PARM;
  return calculate<chain::FastD>(bars, {out}, start, k, d);
}

int QVCALL qvSlowD(const QvBars* bars, QvArray* out, int k, int d1, int d2, int start) noexcept {
  if (k < 1 || d1 < 1 || d2 < 1) return QV_INVALID_PARM;
  return calculate<chain::SlowD>(bars, {out}, start, k, d1, d2);
}

int QVCALL qvStochastic(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::Stochastic>({in}, {out}, start, p);
}

int QVCALL qvStochasticFast(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k, int d,
                            int start) noexcept {
  if (k < 1 || d < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  return calculate<chain::StochasticFast>(bars, {outK, outD}, start, method, k, d);
}

int QVCALL qvStochasticOscillator(const QvBars* bars, QvArray* outK, QvArray* outD, int method, int k,
                                  int slowing, int d, int start) noexcept {
  if (k < 1 || slowing < 1 || d < 1 || !isAverageMethod(method)) return QV_INVALID_PARM;
  return calculate<chain::StochasticOscillator>(bars, {outK, outD}, start, method, k, slowing, d);
}

int QVCALL qvWilliamsR(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::WilliamsR>(bars, {out}, start, p);
}

int QVCALL qvSMI(const QvBars* bars, QvArray* out, QvArray* outSignal, int p, int r, int s, int signal,
                 int start) noexcept {
  if (p < 1 || r < 1 || s < 1 || signal < 1) return QV_INVALID_PARM;
  return calculate<chain::SMI>(bars, {out, outSignal}, start, p, r, s, signal);
}

}  // extern "C"
