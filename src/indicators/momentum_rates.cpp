// Rates of change: a series against its own past, against another series, and one security against
// another.
#include <algorithm>

#include "core/calculation.h"
#include "kernels/guarded.h"
#include "core/numbers.h"
#include "qvlib60/indicators/momentum.h"
#include "qvlib60/indicators/transforms.h"

using namespace qv;

extern "C" {

int QVCALL qvMomentum(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return qvRateOfChange(in, out, 0.0, p, start);
}

int QVCALL qvRateOfChange(const QvArray* in, QvArray* out, double scale, int p, int start) noexcept {
  if (p < 1 || !in || !out || (in->data && sharesBlock(in, out))) return QV_INVALID_PARM;
  int f;
  const int n = prepareOverwritten(in, out, start, &f);
  if (n < 1) return n;
  const int first = saturatingSum(f, p);
  const double* x = in->data;
  double* y = out->data;
  std::fill(y + std::min(f, n), y + std::min(first, n), 0.0);
  if (scale == 0.0) {
    for (int i = first; i < n; ++i) y[i] = x[i] - x[i - p];
  } else {
    fillGuarded(
        first, n, y, [=](int i) { return (x[i] - x[i - p]) / x[i - p] * scale; },
        [=](int i) { return x[i - p] != 0.0; }, 0.0);
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

double QVCALL qvROC(const QvArray* in, int index, int p, double scale) noexcept {
  if (!in || !in->data || p < 1 || index < p || index >= in->size) return 0.0;
  if (index - p < in->firstValid) return 0.0;
  const double base = in->data[index - p], difference = in->data[index] - base;
  if (scale == 0.0) return difference;
  return isNonZero(base) ? difference / base * scale : 0.0;
}

int QVCALL qvRatio(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {a});  // b's first valid index does not count
  const double *x = a->data, *y = b->data;
  fillGuarded(
      f, n, out->data, [=](int i) { return x[i] / y[i]; }, [=](int i) { return y[i] != 0.0; }, 0.0);
  qvSetFirstValid(out, f);
  return QV_OK;
}

int QVCALL qvRSIC(const QvBars* bars1, const QvBars* bars2, QvArray* out, int p, double startDate) noexcept {
  if (p < 1) return QV_INVALID_PARM;
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
