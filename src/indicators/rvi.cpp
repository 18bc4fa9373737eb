// The relative volatility index and the inertia built on it.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/rvi.h"

using namespace qv;

namespace {
constexpr int kDeviationPeriod = 10;
}

extern "C" {

int QVCALL qvRVIoriginal(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  const int begin = saturatingSum(f, kDeviationPeriod, -1);
  const int first = saturatingSum(begin, p, -1);
  const double* x = in->data;
  Temporary deviation;
  if (const int status = allocArrays(n, {&deviation})) return status;
  if (const int status = window::deviation(x, {f, n, kDeviationPeriod}, true, deviation.data)) return status;

  double up = 0.0, down = 0.0;
  for (int i = begin; i < n; ++i) {
    const double u = x[i] > x[i - 1] ? deviation.data[i] : 0.0;
    const double d = x[i] < x[i - 1] ? deviation.data[i] : 0.0;
    if (i <= first) {  // the seed: plain sums, divided at its last bar
      up += u;
      down += d;
      if (i < first && i < n - 1) continue;
      up /= p;
      down /= p;
    } else {
      up = ((p - 1.0) * up + u) / p;
      down = ((p - 1.0) * down + d) / p;
    }
    out->data[i] = up + down != 0.0 ? 100.0 * up / (up + down) : 0.0;
  }
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvRVI(const QvBars* bars, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {out});
  if (n < 1) return n;
  Temporary highs;
  if (const int status = qvRVIoriginal(&bars->high, &highs, p, start)) return status;
  if (const int status = qvRVIoriginal(&bars->low, out, p, start)) return status;
  const int first = saturatingSum(firstValidOf(start, {}), p, kDeviationPeriod - 2);
  for (int i = first; i < n; ++i) out->data[i] = (highs.data[i] + out->data[i]) / 2.0;
  return QV_OK;
}

int QVCALL qvInertia(const QvBars* bars, QvArray* out, int p, int q, int start) noexcept {
  if (p < 1 || q < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({{bars, kHighLow}}, {}, {out});
  if (n < 1) return n;
  Temporary index;
  if (const int status = qvRVI(bars, &index, p, start)) return status;
  return qvLstSqrMA(&index, out, q, saturatingSum(firstValidOf(start, {}), p, kDeviationPeriod - 2));
}

}  // extern "C"
