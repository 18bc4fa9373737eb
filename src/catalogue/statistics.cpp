// Moving statistics.
#include "catalogue/entry.h"
#include "catalogue/sources.h"

namespace qv::catalogue {
namespace {

constexpr std::array<QvCatalogueInput, 4> kPair = {{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}};

int QVCALL regressionLine(const QvArray* in, QvArray* slope, QvArray* intercept, int p, int start) noexcept {
  return qvRegressionLineMv(in, slope, intercept, p, start, INT32_MAX);
}

// clang-format off
constexpr Row kRows[] = {
    ENTRY(qvStdDevMv, "stdev", "Standard Deviation", "The standard deviation of the last items.")
        .params(choice("sample", kOffOn, 0), period("p", 20, 2)).gives(panel()).valid<-1, 1>()
        .note("Divided by the number of items; with sample on, by one less."),
    ENTRY(qvStdErrMv, "stderror", "Standard Error", "The standard error of estimate of the least-squares line through the last items.")
        .params(period("p", 20, 3)).gives(panel()).valid<-1, 0>(),
    ENTRY(qvDispersionMv, "dispersion", "Dispersion", "The square root of the average absolute logarithm of the ratio of neighbouring items.")
        .params(period("p", 20, 2)).gives(panel()).valid<-1, 0>(),
    ENTRY(qvCovarianceMv, "covariance", "Covariance", "The covariance of the last items of two series.")
        .takes(kPair).params(period("p", 20, 2)).gives(panel()).valid<-1, 0>(),
    ENTRY(qvCorCoefMv, "correlation", "Correlation", "The coefficient of correlation of the last items of two series.")
        .takes(kPair).params(choice("sample", kOffOn, 1), period("p", 20, 2)).gives(panel().range(-1, 1)).valid<-1, 1>()
        .note("Only the deviations follow sample: with sample off the result is p / (p - 1) times the usual coefficient."),
    ENTRY(qvRSquaredCoef, "correlation2", "Squared Correlation", "The square of the coefficient of correlation of two series.")
        .takes(kPair).params(choice("sample", kOffOn, 1), period("p", 20, 2)).gives(panel().range(0, 1)).valid<-1, 1>(),
    ENTRY(qvRSquared, "rsquared", "R-Squared", "How well a straight line fits the last items: 1 on a straight trend, 0 without any.")
        .params(period("p", 14, 2)).gives(panel().range(0, 1)).valid<-1, 0>(),
    ENTRY(qvBetaCoefMv, "beta", "Beta", "The correlation of two series over the dispersion of the first.")
        .takes(kPair).params(choice("sample", kOffOn, 1), period("p", 20, 2)).gives(panel()).valid<-2, 1, 1>()
        .note("A definition of its own: other charts divide the covariance by the variance of the market."),
    ADAPTED(qvRegressionLineMv, regressionLine, "regression", "Regression Line", "Slope and intercept of the least-squares line through the last items.")
        .params(period("p", 20, 2)).gives(panel("slope"), over("intercept")).valid<-1, 0>(),
};
// clang-format on

constexpr auto kItems = items<kRows>("Statistics");

}  // namespace

constinit const Family statistics{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
