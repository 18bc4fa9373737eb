// Swings: Wilder's swing index, its running sum, and the zigzag line.
#include <cmath>

#include "core/calculation.h"
#include "core/numbers.h"
#include "qvlib60/core/arrays.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) noexcept {
  const int n = prepareOutputs({{bars, kPrices}}, {}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {});
  const double *open = bars->open.data, *high = bars->high.data, *low = bars->low.data,
               *close = bars->close.data;
  for (int i = saturatingSum(s, 1); i < n; ++i) {
    const double a = std::fabs(high[i] - close[i - 1]);
    const double b = std::fabs(low[i] - close[i - 1]);
    const double d = std::fabs(close[i - 1] - open[i - 1]);
    const double g = high[i] - low[i];
    double r;
    if (a >= b && a >= g)
      r = a - 0.5 * b + 0.25 * d;
    else if (b >= a && b >= g)
      r = b - 0.5 * a + 0.25 * d;
    else
      r = g + 0.25 * d;
    const double k = a > b ? a : b;
    const double change =
        close[i] - close[i - 1] + 0.5 * (close[i] - open[i]) + 0.25 * (close[i - 1] - open[i - 1]);
    out->data[i] = r != 0.0 ? change / r * 50.0 * k / limitMove : 0.0;
  }
  qvSetFirstValid(out, saturatingSum(s, 1));
  return QV_OK;
}

int QVCALL qvAccumSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) noexcept {
  if (const int status = qvSwingIndex(bars, out, limitMove, start)) return status;
  const int first = saturatingSum(firstValidOf(start, {}), 1);
  for (int i = saturatingSum(first, 1); i < out->size; ++i) out->data[i] += out->data[i - 1];
  return QV_OK;
}

int QVCALL qvZigZag(const QvArray* in, QvArray* out, double threshold, int mode, int start) noexcept {
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int f = firstValidOf(start, {in});
  Temporary marks;
  if (const int status = allocArrays(n, {&marks})) return status;
  if (mode == 1) threshold /= 100.0;

  if (f < n) marks.data[f] = 1.0;
  double extreme = 0.0;
  int at = f, direction = 0;
  for (int i = f; i < n - 1; ++i) {
    const double x = in->data[i];
    if (x >= (1.0 + threshold) * extreme) {
      if (direction == -1) marks.data[at] = 1.0;
      at = i;
      direction = 1;
    }
    if (x <= (1.0 - threshold) * extreme) {
      if (direction == 1) marks.data[at] = 1.0;
      at = i;
      direction = -1;
    }
    if ((direction == 1 && x > extreme) || (direction == -1 && x < extreme)) {
      extreme = x;
      at = i;
    }
  }
  marks.data[n - 1] = 1.0;
  return qvFillInterval(in, &marks, out, f);
}

}  // extern "C"
