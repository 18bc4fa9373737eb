// Moving statistics against two passes over each window in long double: the worst error of each, printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

#include "support/spx.h"

namespace qvtest {
namespace {

// What two passes over p items at a and b (b may be the items' numbers) come to.
struct Exact {
  long double meanA = 0, meanB = 0, squaresA = 0, squaresB = 0, products = 0;

  template <typename B>
  Exact(const double* a, B b, int p) {
    for (int i = 0; i < p; ++i) meanA += a[i], meanB += b(i);
    meanA /= p, meanB /= p;
    for (int i = 0; i < p; ++i) {
      const long double x = a[i] - meanA, y = b(i) - meanB;
      squaresA += x * x, squaresB += y * y, products += x * y;
    }
  }
};

// The worst error of a statistic relative to its size; for those that may cancel to nothing (a covariance, a
// slope) relative to the size that they would have if the series moved together.
class Worst {
 public:
  // Every window that ends in an item whose number `step` divides.
  void over(const std::string& data, const Array& a, const Array& b, int p, int step) {
    Array deviation, correlation, covariance, slope, intercept, forecast, error, fit;
    ASSERT_EQ(qvStdDevMv(&a, &deviation, 0, p, 0), 0);
    ASSERT_EQ(qvCorCoefMv(&a, &b, &correlation, 1, p, 0), 0);
    ASSERT_EQ(qvCovarianceMv(&a, &b, &covariance, p, 0), 0);
    ASSERT_EQ(qvRegressionLineMv(&a, &slope, &intercept, p, 0, a.size - 1), 0);
    ASSERT_EQ(qvLstSqrMA(&a, &forecast, p, 0), 0);
    ASSERT_EQ(qvStdErrMv(&a, &error, p, 0), 0);
    ASSERT_EQ(qvRSquared(&a, &fit, p, 0), 0);
    for (int i = p - 1; i < a.size; i += step) {
      const double* window = a.data + i - p + 1;
      const Exact pair(
          window, [&](int k) { return b.data[i - p + 1 + k]; }, p);
      const Exact line(
          window, [](int k) { return k + 1.0; }, p);
      const long double spread = std::sqrt(line.squaresA), together = spread * std::sqrt(pair.squaresB),
                        tilt = line.products / line.squaresB, steepest = spread / std::sqrt(line.squaresB),
                        residual = line.squaresA - tilt * line.products;
      note(data, "deviation", deviation[i], spread / std::sqrt(static_cast<long double>(p)));
      note(data, "correlation", correlation[i], pair.products / together, 1);
      note(data, "covariance", covariance[i], pair.products / (p - 1), together / (p - 1));
      note(data, "slope", slope[i], tilt, steepest);
      note(data, "intercept", intercept[i], line.meanA - tilt * line.meanB,
           std::fabs(line.meanA) + steepest * line.meanB);
      note(data, "forecast", forecast[i], line.meanA + tilt * (p + 1 - line.meanB),
           std::fabs(line.meanA) + steepest * line.meanB);
      note(data, "fit", fit[i], line.products * line.products / line.squaresA / line.squaresB, 1);
      if (residual > 1e-6L * line.squaresA)  // below, the input's own rounding is the error
        note(data, "standard error", error[i], std::sqrt(residual / (p - 2)));
    }
  }
  ~Worst() {
    for (const auto& [what, worst] : worst_) {
      std::printf("%-45s %.1e\n", what.c_str(), worst);
      EXPECT_LE(worst, 1e-10) << what;
    }
  }

 private:
  void note(const std::string& data, const char* name, double value, long double exact,
            long double size = 0) {
    const long double scale = std::max(std::fabs(exact), size);
    if (scale == 0) return;
    double& worst = worst_[data + ", " + name];
    const double off = static_cast<double>(std::fabs(value - exact) / scale);
    if (!(off <= worst)) worst = off;  // not-a-number counts
  }
  std::map<std::string, double> worst_;
};

TEST(Accuracy, OfMovingStatisticsAgainstTwoPasses) {
  Worst worst;
  const Array close(itemsOf(spx().close)), volume(itemsOf(spx().volume));
  for (const int p : {3, 5, 14, 200, 2000}) worst.over("S&P 500", close, volume, p, p < 1000 ? 1 : 37);
  for (const int p : {3, 14, 200, 5000})
    worst.over("1e8 +- cents", Array(shaped(Shape::Offset, 12'000)), Array(shaped(Shape::Walk, 12'000)), p,
               p < 1000 ? 1 : 101);

  const Items walk = shaped(Shape::Walk, 1'000'000);
  Items rising = walk, falling = walk;
  for (std::size_t i = 0; i < walk.size(); ++i)
    rising[i] += 0.01 * static_cast<double>(i), falling[i] += 2e4 - 0.01 * static_cast<double>(i);
  for (const int p : {14, 200, 5000}) {
    worst.over("trend of a million bars", Array(rising), Array(falling), p, 9973);
    worst.over("trend of a million bars", Array(falling), Array(rising), p, 9973);
  }
}

TEST(Accuracy, WithAnOutlierAtEveryPlaceOfTheWindow) {
  Worst worst;
  for (const int p : {5, 14, 200})
    for (int place = 0; place < p; ++place) {
      Items a = shaped(Shape::Walk, 3 * p, 5);
      a[static_cast<std::size_t>(p + place)] += 1e6;
      worst.over("an outlier, window " + std::to_string(p), Array(a), Array(shaped(Shape::Walk, 3 * p, 6)), p,
                 1);
    }
  for (const int place : {0, 1, 63, 64, 2500, 4998, 4999}) {
    Items a = shaped(Shape::Walk, 15'000, 5);
    a[static_cast<std::size_t>(5000 + place)] += 1e6;
    worst.over("an outlier, window 5000", Array(a), Array(shaped(Shape::Walk, 15'000, 6)), 5000, 47);
  }
}

}  // namespace
}  // namespace qvtest
