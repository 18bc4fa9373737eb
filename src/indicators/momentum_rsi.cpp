// Relative strength and its kin.
#include "indicators/momentum_rsi.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/stochastics.h"

using namespace qv;

extern "C" {

int QVCALL qvRMI(const QvArray* in, QvArray* out, int p, int m, int start) noexcept {
  if (p < 1 || m < 1) return QV_INVALID_PARM;
  return calculate<chain::RMI>({in}, {out}, start, p, m);
}

int QVCALL qvRSI(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RSI>({in}, {out}, start, p);
}

int QVCALL qvUpAverage(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::UpAverage>({in}, {out}, start, p);
}

int QVCALL qvDownAverage(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::DownAverage>({in}, {out}, start, p);
}

int QVCALL qvStochRSI(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::StochRSI>({in}, {out}, start, p);
}

}  // extern "C"
