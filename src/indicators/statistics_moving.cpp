// The moving forms of the statistics.
#include "indicators/statistics_moving.h"

#include "kernels/calculate.h"
#include "qvlib60/indicators/statistics.h"

using namespace qv;

extern "C" {

int QVCALL qvStdDevMv(const QvArray* in, QvArray* out, int sample, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::StdDevMv>({in}, {out}, start, sample != 0, p);
}

int QVCALL qvStdErrMv(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::StdErrMv>({in}, {out}, start, p);
}

int QVCALL qvDispersionMv(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::DispersionMv>({in}, {out}, start, p);
}

int QVCALL qvCovarianceMv(const QvArray* a, const QvArray* b, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::CovarianceMv>({a, b}, {out}, start, p);
}

int QVCALL qvCorCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                       int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::CorCoefMv>({a, b}, {out}, start, sample != 0, p);
}

int QVCALL qvRSquaredCoef(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                          int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RSquaredCoef>({a, b}, {out}, start, sample != 0, p);
}

int QVCALL qvRSquared(const QvArray* in, QvArray* out, int p, int start) noexcept {
  if (p < 1) return QV_INVALID_PARM;
  return calculate<chain::RSquared>({in}, {out}, start, p);
}

int QVCALL qvBetaCoefMv(const QvArray* a, const QvArray* b, QvArray* out, int sample, int p,
                        int start) noexcept {
  if (p < 1 || !a || !b) return QV_INVALID_PARM;
  // The dispersion does not wait for the second series.
  const int dispersion = saturatingSum(firstValidOf(start, {a}), p, -1), both = firstValidOf(start, {a, b});
  return calculate<chain::BetaCoefMv>({a, b}, {out}, start, sample != 0, p, std::max(0, dispersion - both));
}

int QVCALL qvRegressionLineMv(const QvArray* in, QvArray* slopeOut, QvArray* interceptOut, int p, int start,
                              int end) noexcept {
  if (p < 1 || !in || end < std::int64_t{firstValidOf(start, {in})} + p) return QV_INVALID_PARM;
  return calculate<chain::RegressionLineMv>({in}, {slopeOut, interceptOut}, {start, saturatingSum(end, 1)},
                                            p);
}

}  // extern "C"
