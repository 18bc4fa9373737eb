// Oscillators of smoothed changes: the rate of change of a triple average, and the true strength index.
#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/indicators/averages.h"
#include "qvlib60/indicators/momentum.h"

using namespace qv;

extern "C" {

int QVCALL qvTRIX(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  if (f < n) {
    const double* x = in->data;
    const double k = qvPeriodToExp(p), rest = 1.0 - k;
    double e1 = x[f], e2 = x[f], e3 = x[f];
    for (int i = f + 1; i < n; ++i) {
      const double before = e3;
      e1 = k * x[i] + rest * e1;
      e2 = k * e1 + rest * e2;
      e3 = k * e2 + rest * e3;
      out->data[i] = (e3 - before) * 100.0 / e3;  // of the new average, and zero is not guarded
    }
  }
  qvSetFirstValid(out, saturatingSum(f, 1));
  return QV_OK;
}

int QVCALL qvTSI(const QvArray* in, QvArray* out, int r, int s, int start) noexcept {
  if (r < 1 || s < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  Temporary moves, sizes;
  if (const int status = allocArrays(n, {&moves, &sizes})) return status;
  const int first = saturatingSum(firstValidOf(start, {in}), 1);
  const double* x = in->data;
  for (int i = first; i < n; ++i) {
    const double move = x[i] - x[i - 1];
    moves.data[i] = move;
    sizes.data[i] = move < 0.0 ? -1.0 * move : move;
  }
  for (QvArray* series : {&moves, &sizes})
    for (int period : {r, s})
      if (const int status = qvExpMA(series, series, period, first)) return status;
  return qvRatio(&moves, &sizes, out, first);
}

}  // extern "C"
