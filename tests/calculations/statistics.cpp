#include "support/calculations.h"

namespace qvtest {

// The end index stands behind the start index: here it takes the place of an ordinary parameter.
static int regressionLineUpTo(const QvArray* in, QvArray* slope, QvArray* intercept, int p, int end,
                              int start) noexcept {
  return qvRegressionLineMv(in, slope, intercept, p, start, end);
}

static const Register rows({
    calculation("qvStdDevMv", qvStdDevMv, {0, 14}).refusesPeriods({1}),
    calculation("qvStdErrMv", qvStdErrMv, {14}).refusesPeriods({0}),
    calculation("qvDispersionMv", qvDispersionMv, {14}).refusesPeriods({0}),
    calculation("qvCovarianceMv", qvCovarianceMv, {14}).refusesPeriods({0}),
    calculation("qvCorCoefMv", qvCorCoefMv, {0, 14}).refusesPeriods({1}),
    calculation("qvRSquaredCoef", qvRSquaredCoef, {1, 14}).refusesPeriods({1}),
    calculation("qvRSquared", qvRSquared, {14}).refusesPeriods({0}),
    calculation("qvBetaCoefMv", qvBetaCoefMv, {1, 14}).refusesPeriods({1}),
    calculation("qvRegressionLineMv", regressionLineUpTo, {14, 119}).refusesPeriods({0}),
});

}  // namespace qvtest
