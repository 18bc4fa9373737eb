// Aroon, vertical horizontal filter, random walk index, trend score, dynamic momentum index.
#include "indicators/trend.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvAroon(const QvBars* bars, QvArray* outUp, QvArray* outDown, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::Aroon>(bars, {outUp, outDown}, start, p);
}

int QVCALL qvAroonOscillator(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::AroonOscillator>(bars, {out}, start, p);
}

int QVCALL qvVHF(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::VHF>({in}, {out}, start, p);
}

int QVCALL qvRWI(const QvBars* bars, QvArray* outHigh, QvArray* outLow, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RWI>(bars, {outHigh, outLow}, start, p);
}

int QVCALL qvTrendScore(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::TrendScore>({in}, {out}, start, p);
}

int QVCALL qvDMI(const QvArray* in, QvArray* out, int start) noexcept {
  return calculate<chain::DMI>({in}, {out}, start);
}

}  // extern "C"
