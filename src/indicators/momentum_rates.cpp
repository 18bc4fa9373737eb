// Rates of change: a series against its own past, against another series, and one security against
// another.
#include "indicators/momentum_rates.h"

#include "core/numbers.h"
#include "indicators/transforms.h"
#include "kernels/calculate.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/transforms.h"

using namespace qv;

extern "C" {

int QVCALL qvMomentum(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::Momentum>({in}, {out}, start, p);
}

int QVCALL qvRateOfChange(const QvArray* in, QvArray* out, double scale, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RateOfChange>({in}, {out}, start, scale, p);
}

double QVCALL qvROC(const QvArray* in, int index, int p, double scale) noexcept {
  if (!in || !in->data || p < 1 || index < p || index >= in->size) return 0.0;
  if (index - p < in->firstValid) return 0.0;
  const double base = in->data[index - p], difference = in->data[index] - base;
  if (scale == 0.0) return difference;
  return isNonZero(base) ? difference / base * scale : 0.0;
}

int QVCALL qvRatio(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  return calculate<chain::Ratio>({a, b}, {out}, start);
}

int QVCALL qvRSIC(const QvBars* bars1, const QvBars* bars2, QvArray* out, int p, double startDate) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  if (Opening* opening = openingOf(out))
    return chain::openComparison(*opening, chain::RSIC(startDate, p), *bars1, *bars2);
  if (!hasSeries({bars2, kDate | kClose}) || !out || sharesSeries(*out, *bars2)) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars1, kDate | kClose}}, {}, {out});
  if (n < 1) return n;
  Temporary strength;
  // Sets without a common date leave the strength at 0.0, and so the rate; that is no failure here.
  const int status = qvCompStrength(bars1, bars2, &strength, startDate);
  if (status == QV_MALLOC) return status;
  return qvRateOfChange(&strength, out, 1.0, p, 0);
}

}  // extern "C"
