// The moving forms of the statistics: one value for every window of p items.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/calculation.h"
#include "core/numbers.h"
#include "kernels/window.h"
#include "qvlib60/indicators/statistics.h"

namespace {

using namespace qv;

// kernel(range, out) over every window of the inputs, from s on.
template <typename Kernel>
int slide(std::initializer_list<const QvArray*> inputs, QvArray* out, int p, int start,
          Kernel kernel) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, inputs, {out});
  if (n < 1) return n;
  const int s = firstValidOf(start, inputs);
  if (const int status = kernel(window::Range{s, n, p}, out->data)) return status;
  qvSetFirstValid(out, saturatingSum(s, p, -1));
  return QV_OK;
}

void squareItems(QvArray* a) noexcept {
  for (int i = 0; i < a->size; ++i) a->data[i] *= a->data[i];
}

// The logarithms' windows are one item shorter than the prices'; they stand in the output until they
// are summed up.
int slideDispersion(const double* x, window::Range r, double* out) noexcept {
  const int valid = saturatingSum(r.first, r.period, -1);
  if (r.period == 1) {  // no ratio at all: 0 / 0
    for (int i = r.first; i < r.end; ++i) out[i] = std::numeric_limits<double>::quiet_NaN();
    return QV_OK;
  }
  for (int i = saturatingSum(r.first, 1); i < r.end; ++i) out[i] = std::fabs(std::log(x[i] / x[i - 1]));
  const double ratios = r.period - 1.0;
  if (const int status = window::sum(out, {saturatingSum(r.first, 1), r.end, r.period - 1}, out))
    return status;
  for (int i = r.first; i < std::min(valid, r.end); ++i) out[i] = 0.0;
  for (int i = valid; i < r.end; ++i) out[i] = std::sqrt(out[i] / ratios);
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvStdDevMv(const QvArray* in, QvArray* out, int sample, int p, int start) noexcept {
  return slide({in}, out, p, start,
               [=](window::Range r, double* y) { return window::deviation(in->data, r, sample != 0, y); });
}

int QVCALL qvStdErrMv(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return slide({in}, out, p, start,
               [=](window::Range r, double* y) { return window::standardError(in->data, r, y); });
}

int QVCALL qvDispersionMv(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return slide({in}, out, p, start,
               [=](window::Range r, double* y) { return slideDispersion(in->data, r, y); });
}

int QVCALL qvCovarianceMv(const QvArray* a, const QvArray* b, QvArray* out, int p, int start) noexcept {
  return slide({a, b}, out, p, start,
               [=](window::Range r, double* y) { return window::covariance(a->data, b->data, r, y); });
}

int QVCALL qvCorCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                       int start) noexcept {
  return slide({a, b}, out, p, start, [=](window::Range r, double* y) {
    return window::correlation(a->data, b->data, r, sample != 0, y);
  });
}

int QVCALL qvRSquaredCoef(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                          int start) noexcept {
  if (const int status = qvCorCoefMv(a, b, out, sample, p, start)) return status;
  squareItems(out);
  return QV_OK;
}

int QVCALL qvRSquared(const QvArray* in, QvArray* out, int p, int start) noexcept {
  return slide({in}, out, p, start, [=](window::Range r, double* y) {
    Temporary index;
    if (const int status = allocArrays(r.end, {&index})) return status;
    for (int i = 0; i < r.end; ++i) index.data[i] = i;
    if (const int status = window::correlation(index.data, in->data, r, true, y)) return status;
    for (int i = 0; i < r.end; ++i) y[i] *= y[i];
    return int{QV_OK};
  });
}

int QVCALL qvBetaCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                        int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {a, b}, {out});
  if (n < 1) return n;
  Temporary dispersion;
  if (const int status = allocArrays(n, {&dispersion})) return status;
  if (const int status = qvDispersionMv(a, &dispersion, p, start)) return status;
  const int s = firstValidOf(start, {a, b, &dispersion});
  if (const int status = qvCorCoefMv(a, b, out, sample, p, s)) return status;
  for (int i = 0; i < out->size; ++i)
    out->data[i] = isNonZero(dispersion.data[i]) ? out->data[i] / dispersion.data[i] : 0.0;
  return QV_OK;
}

int QVCALL qvRegressionLineMv(const QvArray* in, QvArray* slopeOut, QvArray* interceptOut, int p, int start,
                              int end) noexcept {
  if (p < 1 || !in) return QV_INVALID_PARM;
  const int s = firstValidOf(start, {in});
  if (end < std::int64_t{s} + p) return QV_INVALID_PARM;
  const int n = prepareOutputs({}, {in}, {slopeOut, interceptOut});
  if (n < 1) return n;
  const window::Range r{s, std::min(n, saturatingSum(end, 1)), p};
  if (const int status = window::regressionLine(in->data, r, slopeOut->data, interceptOut->data))
    return status;
  for (QvArray* out : {slopeOut, interceptOut}) qvSetFirstValid(out, saturatingSum(s, p, -1));
  return QV_OK;
}

}  // extern "C"
