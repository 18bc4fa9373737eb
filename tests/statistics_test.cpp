#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <string>
#include <utility>

#include "indicators/bar_ranges.h"
#include "support/series.h"

namespace qvtest {
namespace {

using std::sqrt;

struct Stats {
  double min = -7, max = -7, avg = -7, sum = -7;
  int status;
  Stats(const Array& a, int from, int to, int skipZeros = 0)
      : status(qvArrayStats(&a, &min, &max, &avg, &sum, from, to, skipZeros)) {}
};

TEST(Statistics, StretchOfOneSeries) {
  const Array zeros{0, 5, 0, 3};
  const Stats skipped(zeros, 0, 3, 1), all(zeros, 0, 3);
  EXPECT_EQ(skipped.min, 0.0);  // the starting value, though a zero
  EXPECT_EQ(skipped.max, 5.0);
  EXPECT_EQ(skipped.avg, 4.0);
  EXPECT_EQ(skipped.sum, 8.0);
  EXPECT_EQ(all.avg, 2.0);
  EXPECT_EQ(Stats(zeros, 3, 1, 1).min, 3.0);  // swapped; starts at the 5
  const Array negative{-2, 0, -1};
  EXPECT_EQ(Stats(negative, 0, 2, 1).max, 0.0);  // zeros are never skipped here
  EXPECT_EQ(Stats(negative, 0, 2, 1).avg, -1.5);
  EXPECT_TRUE(std::isnan(Stats(Array{0, 0}, 0, 1, 1).avg));
  EXPECT_EQ(qvArrayStats(&zeros, nullptr, nullptr, nullptr, nullptr, 0, 3, 0), 0);

  const Array peaks{2, 7, 7, 1}, lows{3, 0, 2, 0};
  int lowest = -7, highest = -7;
  EXPECT_EQ(qvArrayStatsPos(&peaks, &lowest, &highest, 0, 3, 0), 0);
  EXPECT_EQ(std::pair(lowest, highest), std::pair(3, 1));
  qvArrayStatsPos(&lows, &lowest, nullptr, 0, 3, 1);
  EXPECT_EQ(lowest, 2);
  qvArrayStatsPos(&lows, &lowest, nullptr, 3, 1, 1);  // begins at a zero: nothing positive is below it
  EXPECT_EQ(lowest, 1);

  const Array four{1, 2, 3, 4};
  EXPECT_DOUBLE_EQ(qvStdDev(&four, 0, 0, 3), sqrt(1.25));  // squares 2.25 .25 .25 2.25
  EXPECT_DOUBLE_EQ(qvStdDev(&four, 1, 3, 0), sqrt(5.0 / 3.0));
  EXPECT_TRUE(std::isnan(qvStdDev(&four, 1, 2, 2)));
  EXPECT_EQ(qvStdDev(&four, 0, 2, 2), 0.0);
  // Line through 1, 3, 2: mean 2, slope 1/2, residuals -1/2, 1, -1/2, squares 3/2 over N - 2 = 1.
  const Array bent{1, 3, 2};
  EXPECT_DOUBLE_EQ(qvStdErr(&bent, 0, 2), sqrt(1.5));
  EXPECT_EQ(qvStdErr(&four, 0, 3), 0.0);
  EXPECT_EQ(qvStdErr(&bent, 0, 1), 0.0);
  // ln 2 and ln 4 = 2 ln 2, on average 1.5 ln 2.
  const Array doubled{8, 4, 16};
  EXPECT_DOUBLE_EQ(qvDispersion(&doubled, 0, 2), sqrt(1.5 * std::log(2.0)));

  double slope = -7, intercept = -7;
  const Array even{2, 4, 6};
  EXPECT_EQ(qvRegressionLine(&even, &slope, &intercept, 0, 2), 0);
  EXPECT_EQ(std::pair(slope, intercept), std::pair(2.0, 0.0));
  qvRegressionLine(&even, &slope, &intercept, 2, 1);
  EXPECT_EQ(std::pair(slope, intercept), std::pair(2.0, 2.0));
  qvRegressionLine(&even, &slope, &intercept, 1, 1);
  EXPECT_EQ(std::pair(slope, intercept), std::pair(0.0, 4.0));
  EXPECT_EQ(qvSlopeArrayPts(&even, 2, 0), 2.0);
  EXPECT_EQ(qvSlopeArrayPts(&even, 1, INT_MAX), -4.0 / (INT_MAX - 1.0));  // outside reads 0.0
  EXPECT_EQ(qvSlopeArrayPts(&even, 1, INT_MIN), 4.0 / 2147483649.0);
  EXPECT_EQ(qvSlopePts(1, 2, 4, -4), -2.0);
  EXPECT_EQ(qvSlopePts(1, 2, 1, 3), kInf);
}

TEST(Statistics, StretchOfAPair) {
  // Means 2 and 3; products 1, 0, 2 over N - 1; deviations sqrt(2/3) and sqrt(14/3).
  const Array a{1, 2, 3}, b{2, 1, 6, 9};
  EXPECT_DOUBLE_EQ(qvCovariance(&a, &b, 0, 9), 2.0);
  EXPECT_DOUBLE_EQ(qvCorCoef(&a, &b, 0, 0, 2), 2.0 / sqrt(2.0 / 3.0 * 14.0 / 3.0));
  EXPECT_DOUBLE_EQ(qvCorCoef(&a, &b, 1, 0, 2), 2.0 / sqrt(7.0));
  const Array walk(shaped(Shape::Walk, 50)), flat(std::vector<double>(50, 0.1));
  EXPECT_NEAR(qvCorCoef(&walk, &walk, 0, 0, 49), 50.0 / 49.0, 1e-14);
  EXPECT_NEAR(qvCorCoef(&walk, &walk, 1, 0, 49), 1.0, 1e-14);
  EXPECT_EQ(qvCorCoef(&walk, &flat, 1, 0, 49), 0.0);
  EXPECT_EQ(qvCorCoef(&walk, &walk, 1, 7, 7), 0.0);
  EXPECT_TRUE(std::isnan(qvCovariance(&walk, &walk, 7, 7)));
  EXPECT_EQ(qvStdDev(&flat, 0, 0, 49), 0.0);
}

TEST(Statistics, BarsInTheOrderOfTheirPrices) {
  const Bars bars{{0, 0, 0, 5}, {4, 9, 0, 6}, {0, kNaN, 3, 7}, {-1, 8, 2, 4}};
  double low = -7, high = -7;
  EXPECT_EQ(qvBarStats(&bars, &low, &high, 0, 2), 0);
  EXPECT_EQ(std::pair(low, high), std::pair(3.0, 9.0));  // zeros don't lower
  qvBarStats(&bars, &low, nullptr, INT_MAX, 2);
  EXPECT_EQ(low, -1.0);
  qvBarStats(&bars, &low, &high, INT_MIN, -1);  // nothing left
  EXPECT_EQ(std::pair(low, high), std::pair(0.0, 0.0));
  EXPECT_EQ(qvAvgPrice(&bars, 0), 5.0 / 3.0);  // no open
  EXPECT_EQ(qvAvgPrice(&bars, 1), 19.0 / 4.0);
  EXPECT_EQ(qvAvgPrice(&bars, 4), 0.0);
  EXPECT_EQ(qvAvgPrice(&bars, -1), 0.0);
}

TEST(Statistics, StretchesStayInsideTheSeries) {
  const Array a(shaped(Shape::Walk, 10), 4), shorter(shaped(Shape::Offset, 8), 2);
  for (int from : {INT_MIN, -1, 0, 3}) {
    for (int to : {9, 10, INT_MAX}) {
      EXPECT_EQ(Stats(a, from, to).sum, Stats(a, 4, 9).sum);
      EXPECT_EQ(qvStdErr(&a, to, from), qvStdErr(&a, 4, 9));
      EXPECT_EQ(qvCovariance(&a, &shorter, from, to), qvCovariance(&a, &shorter, 7, 4));
    }
  }
  Array beyond(shaped(Shape::Walk, 10), INT_MAX), empty;
  for (const Array* series : std::initializer_list<const Array*>{
           &a, &beyond}) {  // nothing left: before the first valid item, past the end
    const int from = series == &a ? -5 : 0, to = series == &a ? 3 : INT_MAX;
    const Stats stats(*series, from, to);
    EXPECT_EQ(stats.status, 0);
    EXPECT_EQ(stats.min + stats.max + stats.sum, 0.0);
    EXPECT_TRUE(std::isnan(stats.avg));
    int lowest = -7, highest = -7;
    EXPECT_EQ(qvArrayStatsPos(series, &lowest, &highest, from, to, 0), 0);
    EXPECT_EQ(std::pair(lowest, highest), std::pair(-1, -1));
    EXPECT_TRUE(std::isnan(qvStdDev(series, 1, from, to)));
    EXPECT_TRUE(std::isnan(qvCovariance(series, &a, from, to)));
    EXPECT_TRUE(std::isnan(qvDispersion(series, from, to)));
    EXPECT_EQ(qvStdErr(series, from, to), 0.0);
    EXPECT_EQ(qvCorCoef(&a, series, 0, from, to), 0.0);
    double slope = -7, intercept = -7;
    EXPECT_EQ(qvRegressionLine(series, &slope, &intercept, from, to), 0);
    EXPECT_EQ(std::pair(slope, intercept), std::pair(0.0, 0.0));
    EXPECT_EQ(qvRegressionLine(series, nullptr, &intercept, from, to), -1);
  }
  EXPECT_EQ(qvArrayStats(&empty, nullptr, nullptr, nullptr, nullptr, 0, 5, 0), -1);
  EXPECT_EQ(qvArrayStatsPos(nullptr, nullptr, nullptr, 0, 5, 0), -1);
  EXPECT_EQ(qvBarStats(nullptr, nullptr, nullptr, 0, 5), -1);
  EXPECT_TRUE(std::isnan(qvStdDev(&empty, 0, 0, 5)));
  EXPECT_EQ(qvStdDev(nullptr, 0, 0, 5), 0.0);
  EXPECT_EQ(qvCovariance(&a, nullptr, 0, 5), 0.0);
  EXPECT_EQ(qvSlopeArrayPts(nullptr, 0, 5), 0.0);
}

// ---- Moving forms against their stretch functions on every window ---------------------------------

using Moving = std::function<int(const Array& a, const Array& b, Array& out, int p, int start)>;
using Stretch = std::function<double(const Array& a, const Array& b, int from, int to)>;

// `loss` tells the absolute error to allow for a value that is a difference of larger ones.
void compareWindows(
    const char* name, const Moving& moving, const Stretch& stretch,
    const Stretch& loss = [](const Array&, const Array&, int, int) { return 0.0; }, int delayed = 0) {
  for (Shape shape : kShapes) {
    const Array a(shaped(shape, 80, 3), 2), b(shaped(shape, 90, 4));
    for (int p : {1, 2, 3, 5, 14, 77, 78, 79}) {
      Array out;
      ASSERT_EQ(moving(a, b, out, p, 1), 0);
      const int valid = 2 + p - 1 + delayed * (p - 1);
      ASSERT_EQ(out.firstValid, valid) << name;
      ASSERT_EQ(out.size, 80) << name;
      for (int i = 0; i < 80; ++i) {
        const double expected = i < valid ? 0.0 : stretch(a, b, i - p + 1, i);
        const double allowed = i < valid ? 0.0 : loss(a, b, i - p + 1, i);
        SCOPED_TRACE(std::string(name) + " shape " + std::to_string(static_cast<int>(shape)) + " period " +
                     std::to_string(p) + " item " + std::to_string(i));
        if (expected != expected) {
          ASSERT_NE(out[i], out[i]);
        } else if (std::isinf(expected)) {
          ASSERT_EQ(out[i], expected);
        } else {
          ASSERT_NEAR(out[i], expected, 1e-10 * std::fabs(expected) + (allowed == allowed ? allowed : 0.0));
        }
      }
    }
  }
}

double rounding(const Array& a, const Array&, int from, int to) {  // of the window's range
  const Stats stats(a, from, to);
  return 1e-14 * (stats.max - stats.min);
}

TEST(Statistics, MovingFormsOfOneSeries) {
  for (int sample : {0, 1}) {
    compareWindows(
        "qvStdDevMv",
        [=](auto& a, auto&, auto& out, int p, int start) { return qvStdDevMv(&a, &out, sample, p, start); },
        [=](auto& a, auto&, int from, int to) { return qvStdDev(&a, sample, from, to); });
  }
  compareWindows(
      "qvStdErrMv",
      [](auto& a, auto&, auto& out, int p, int start) { return qvStdErrMv(&a, &out, p, start); },
      [](auto& a, auto&, int from, int to) { return qvStdErr(&a, from, to); }, rounding);
  compareWindows(
      "qvDispersionMv",
      [](auto& a, auto&, auto& out, int p, int start) { return qvDispersionMv(&a, &out, p, start); },
      [](auto& a, auto&, int from, int to) { return qvDispersion(&a, from, to); });
  compareWindows(
      "qvRSquared",
      [](auto& a, auto&, auto& out, int p, int start) { return qvRSquared(&a, &out, p, start); },
      [](auto& a, auto&, int from, int to) {
        Array index(std::vector<double>(80));
        for (int i = 0; i < 80; ++i) index.data[i] = i;
        const double r = qvCorCoef(&index, &a, 1, from, to);
        return r * r;
      },
      [](auto&, auto&, int, int) { return 1e-13; });
}

TEST(Statistics, MovingFormsOfAPair) {
  const auto unit = [](auto&, auto&, int, int) { return 1e-13; };
  compareWindows(
      "qvCovarianceMv",
      [](auto& a, auto& b, auto& out, int p, int start) { return qvCovarianceMv(&a, &b, &out, p, start); },
      [](auto& a, auto& b, int from, int to) { return qvCovariance(&a, &b, from, to); },
      [](auto& a, auto& b, int from, int to) {
        return 1e-13 * qvStdDev(&a, 0, from, to) * qvStdDev(&b, 0, from, to);
      });
  for (int sample : {0, 1}) {
    compareWindows(
        "qvCorCoefMv",
        [=](auto& a, auto& b, auto& out, int p, int start) {
          return qvCorCoefMv(&a, &b, &out, sample, p, start);
        },
        [=](auto& a, auto& b, int from, int to) { return qvCorCoef(&a, &b, sample, from, to); }, unit);
    compareWindows(
        "qvRSquaredCoef",
        [=](auto& a, auto& b, auto& out, int p, int start) {
          return qvRSquaredCoef(&a, &b, &out, sample, p, start);
        },
        [=](auto& a, auto& b, int from, int to) {
          const double r = qvCorCoef(&a, &b, sample, from, to);
          return r * r;
        },
        unit);
    compareWindows(
        "qvBetaCoefMv",
        [=](auto& a, auto& b, auto& out, int p, int start) {
          return qvBetaCoefMv(&a, &b, &out, sample, p, start);
        },
        [=](auto& a, auto& b, int from, int to) {
          const double dispersion = qvDispersion(&a, from, to);
          return dispersion > 0.0 ? qvCorCoef(&a, &b, sample, from, to) / dispersion : 0.0;
        },
        [](auto& a, auto&, int from, int to) { return 1e-13 / qvDispersion(&a, from, to); }, 1);
  }
}

TEST(Statistics, BetaWaitsForTheDispersionOfTheFirstSeries) {
  const Array a(shaped(Shape::Walk, 60), 3), b(shaped(Shape::Walk, 60, 2), 20);
  Array out;
  ASSERT_EQ(qvBetaCoefMv(&a, &b, &out, 1, 5, 0), 0);
  EXPECT_EQ(out.firstValid, 24);  // the dispersion is there at 7, b at 20
  EXPECT_EQ(out[23], 0.0);
  ASSERT_EQ(qvBetaCoefMv(&b, &a, &out, 1, 5, 0), 0);
  EXPECT_EQ(out.firstValid, 28);  // the dispersion is there at 24
  EXPECT_DOUBLE_EQ(out[28], qvCorCoef(&b, &a, 1, 24, 28) / qvDispersion(&b, 24, 28));
}

TEST(Statistics, MovingRegressionLine) {
  const int from = 3, p = 9;
  for (Shape shape : kShapes) {
    const Array in(shaped(shape, 60, 8), from);
    for (int end : {12, 40, 59, INT_MAX}) {
      Array slopes, intercepts;
      ASSERT_EQ(qvRegressionLineMv(&in, &slopes, &intercepts, p, 0, end), 0);
      EXPECT_EQ(slopes.firstValid, 11);
      EXPECT_EQ(intercepts.firstValid, 11);
      for (int i = 0; i < 60; ++i) {
        double slope = 0.0, intercept = 0.0;
        if (i >= 11 && i <= end) qvRegressionLine(&in, &slope, &intercept, i - p + 1, i);
        if (slope != slope) {
          ASSERT_NE(slopes[i], slopes[i]);
          ASSERT_NE(intercepts[i], intercepts[i]);
        } else {
          ASSERT_NEAR(slopes[i], slope, 1e-10 * std::fabs(slope) + 1e-14) << i;
          ASSERT_NEAR(intercepts[i], intercept, 1e-12 * std::fabs(intercept) + 1e-13) << i;
        }
      }
    }
  }
  const Array in(shaped(Shape::Walk, 60), from);
  Array slopes, intercepts;
  EXPECT_EQ(qvRegressionLineMv(&in, &slopes, &intercepts, p, 0, from + p - 1), -1);
  EXPECT_EQ(slopes.data, nullptr);
  EXPECT_EQ(qvRegressionLineMv(&in, &slopes, nullptr, p, 0, 59), -1);
  EXPECT_EQ(qvRegressionLineMv(nullptr, &slopes, &intercepts, p, 0, 59), -1);
  EXPECT_EQ(qvRegressionLineMv(&in, &slopes, &intercepts, 1, 0, 59), 0);  // each item its own line
  EXPECT_EQ(slopes.items(), std::vector<double>(60, 0.0));
  EXPECT_EQ(intercepts[30], in[30]);
}

TEST(Statistics, SlidingBarRangeIsExact) {
  for (const double odd : {0.0, -0.0, kNaN, 100.0}) {
    std::vector<Bar> bars = walkBars(70, 5);
    for (std::size_t i = 0; i < bars.size(); i += 3) {
      (i % 2 ? bars[i].low : bars[i].close) = odd;
      if (i % 5 == 0) bars[i].open = bars[i].high = -odd;
    }
    const Bars set(bars);
    for (const int period : {1, 2, 3, 8, 70}) {
      for (const bool cut : {false, true}) {
        std::vector<double> low(70, -7.0), high(70, -7.0);
        ASSERT_EQ(qv::slidingBarRange(&set, {1, 69, period, cut}, low.data(), high.data()), 0);
        for (int i = 1; i < 69; ++i) {
          double min = -7.0, max = -7.0;
          if (cut || i >= period) qvBarStats(&set, &min, &max, std::max(i - period + 1, 1), i);
          const auto k = static_cast<std::size_t>(i);
          ASSERT_TRUE(min == low[k] || (min != min && low[k] != low[k])) << i << " of " << period;
          ASSERT_TRUE(max == high[k] || (max != max && high[k] != high[k])) << i << " of " << period;
          ASSERT_EQ(std::signbit(min), std::signbit(low[k])) << i;
          ASSERT_EQ(std::signbit(max), std::signbit(high[k])) << i;
        }
        EXPECT_EQ(qv::slidingBarRange(&set, {1, 69, period, cut}, nullptr, high.data()), 0);
      }
    }
  }
}

}  // namespace
}  // namespace qvtest
