// Swings: Wilder's swing index, its running sum, and the zigzag line.
#include "indicators/trend_swing.h"

#include "kernels/calculate.h"
#include "qvlib60/core/arrays.h"
#include "qvlib60/indicators/trend.h"

using namespace qv;

extern "C" {

int QVCALL qvSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) noexcept {
  return calculate<chain::SwingIndex>(bars, {out}, start, limitMove);
}

int QVCALL qvAccumSwingIndex(const QvBars* bars, QvArray* out, double limitMove, int start) noexcept {
  return calculate<chain::AccumSwingIndex>(bars, {out}, start, limitMove);
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
