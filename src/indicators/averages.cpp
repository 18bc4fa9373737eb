// Averages and sums over a window of the last p items, and the dispatcher over all averages.
#include <algorithm>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/averages.h"

using namespace qv;

namespace {

using Kernel = int (*)(const double* in, window::Range, double* out) noexcept;

// The sums or means of the windows within x[s .. n - 1] into y, which may be x; items of y from s on that
// end no window are 0.0, those below s are left alone. The last item is written in any case: where no
// window fits it is the sum of the items that exist, divided by `divisor`.
int slide(Kernel kernel, const double* x, int s, int n, int period, double divisor, double* y) noexcept {
  const int first = saturatingSum(s, period, -1);
  if (first < n) {
    if (const int status = kernel(x, {s, n, period}, y)) return status;
  } else {
    double partial = 0.0;
    for (int i = n - 1; i >= s; --i) partial += x[i];
    y[n - 1] = partial / divisor;
  }
  std::fill(y + std::min(s, n - 1), y + std::min(first, n - 1), 0.0);
  return QV_OK;
}

int slidingMean(const double* x, int s, int n, int period, double* y) noexcept {
  return slide(window::mean, x, s, n, period, period, y);
}

}  // namespace

extern "C" {

int QVCALL qvMovingAverage(const QvArray* in, QvArray* out, int method, int period, int start) noexcept {
  switch (method) {
    case 0:
      return qvExpMA(in, out, period, start);
    case 1:
      return qvLstSqrMA(in, out, period, start);
    case 2:
      return qvSimpleMA(in, out, period, start);
    case 3:
      return qvWeightedMA(in, out, period, start);
    case 4:
      return qvWellesMA(in, out, period, start);
    case 5:
      return qvTriangularMA(in, out, period, start);
    case 6:
      return qvVariableMA(in, out, period, start);
    case 7:
      return qvZeroLagExpMA(in, out, period, start);
    default:
      return QV_INVALID_PARM;
  }
}

int QVCALL qvSimpleMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  int s;
  const int n = prepareOverwritten(in, out, start, &s);
  if (n < 1) return n;
  if (const int status = slidingMean(in->data, s, n, period, out->data)) return status;
  qvSetFirstValid(out, saturatingSum(s, period, -1));
  return QV_OK;
}

int QVCALL qvMovingSum(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  int s;
  const int n = prepareOverwritten(in, out, start, &s);
  if (n < 1) return n;
  if (const int status = slide(window::sum, in->data, s, n, period, 1.0, out->data)) return status;
  qvSetFirstValid(out, saturatingSum(s, period, -1));
  return QV_OK;
}

int QVCALL qvWeightedMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  const int first = saturatingSum(s, period, -1);
  if (const int status = window::weightedSum(in->data, {s, n, period}, out->data)) return status;
  const double weights = static_cast<double>(std::int64_t{period} * (std::int64_t{period} + 1) / 2);
  for (int i = first; i < n; ++i) out->data[i] /= weights;
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvLstSqrMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  Temporary intercept;
  if (const int status = allocArrays(n, {&intercept})) return status;
  const int s = firstValidOf(start, {in});
  const int first = saturatingSum(s, period, -1);
  const window::Range range{s, n, period};
  if (const int status = window::regressionLine(in->data, range, out->data, intercept.data)) return status;
  const double next = period + 1.0;
  for (int i = first; i < n; ++i) out->data[i] = next * out->data[i] + intercept.data[i];
  qvSetFirstValid(out, first);
  return QV_OK;
}

int QVCALL qvTriangularMA(const QvArray* in, QvArray* out, int period, int start) noexcept {
  if (period < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, {in});
  // (p + 1) / 2 twice when p is odd, p / 2 and p / 2 + 1 when it is even.
  const int p1 = period - period / 2, p2 = period / 2 + 1;
  const int second = saturatingSum(s, p1, -1);
  if (const int status = slidingMean(in->data, s, n, p1, out->data)) return status;
  if (const int status = slidingMean(out->data, second, n, p2, out->data)) return status;
  qvSetFirstValid(out, saturatingSum(s, period, -1));
  return QV_OK;
}

}  // extern "C"
