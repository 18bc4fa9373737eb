// Statistics of stretches of series and bars, and of the window before every bar.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <tuple>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

using std::sqrt;

Items statsOf(const QvArray& a, int from, int to, int skipZeros = 0) {
  Items stats(4, -7.0);
  EXPECT_EQ(qvArrayStats(&a, &stats[0], &stats[1], &stats[2], &stats[3], from, to, skipZeros), 0);
  return stats;
}

struct Stretch : testing::Test {
  const Array four{1, 2, 3, 4}, bent{1, 3, 2}, even{2, 4, 6};
};

TEST_F(Stretch, ArrayStats) {
  const Array zeros{0, 5, 0, 3}, negative{-2, 0, -1};
  EXPECT_EQ(statsOf(zeros, 0, 3, 1), (Items{0, 5, 4, 8}));  // the minimum begins at a zero
  EXPECT_EQ(statsOf(zeros, 0, 3), (Items{0, 5, 2, 8}));
  EXPECT_EQ(statsOf(zeros, 3, 1, 1), (Items{3, 5, 4, 8}));          // swapped; starts at the 5
  EXPECT_EQ(statsOf(negative, 0, 2, 1), (Items{-2, 0, -1.5, -3}));  // the maximum never skips zeros
  EXPECT_TRUE(std::isnan(statsOf(Array{0, 0}, 0, 1, 1)[2]));
}

TEST_F(Stretch, ArrayStatsPos) {
  const Array peaks{2, 7, 7, 1}, lows{3, 0, 2, 0};
  EXPECT_EQ(bothOf<int>(qvArrayStatsPos, peaks, 0, 3, 0), Pair(3, 1));
  EXPECT_EQ(bothOf<int>(qvArrayStatsPos, lows, 0, 3, 1), Pair(2, 0));
  EXPECT_EQ(bothOf<int>(qvArrayStatsPos, lows, 3, 1, 1), Pair(1, 2));  // begins at a zero: nothing is below
  EXPECT_EQ(qvArrayStatsPos(&lows, nullptr, nullptr, 0, 3, 0), 0);
}

TEST_F(Stretch, StdDev) {
  const Array flat(Items(50, 0.1));
  EXPECT_DOUBLE_EQ(qvStdDev(&four, 0, 0, 3), sqrt(1.25));  // squares 2.25 .25 .25 2.25
  EXPECT_DOUBLE_EQ(qvStdDev(&four, 1, 3, 0), sqrt(5.0 / 3.0));
  EXPECT_TRUE(std::isnan(qvStdDev(&four, 1, 2, 2)));
  EXPECT_EQ(qvStdDev(&flat, 0, 0, 49), 0.0);
}

TEST_F(Stretch, StdErr) {
  // Line through 1, 3, 2: mean 2, slope 1/2, residuals -1/2, 1, -1/2, squares 3/2 over N - 2 = 1.
  EXPECT_DOUBLE_EQ(qvStdErr(&bent, 0, 2), sqrt(1.5));
  EXPECT_EQ(qvStdErr(&four, 0, 3), 0.0);
  EXPECT_EQ(qvStdErr(&bent, 0, 1), 0.0);
}

TEST_F(Stretch, Dispersion) {
  const Array doubled{8, 4, 16};  // ln 2 and ln 4 = 2 ln 2, on average 1.5 ln 2
  EXPECT_DOUBLE_EQ(qvDispersion(&doubled, 0, 2), sqrt(1.5 * std::log(2.0)));
}

TEST_F(Stretch, RegressionLine) {
  EXPECT_EQ(bothOf(qvRegressionLine, even, 0, 2), Pair(2, 0));
  EXPECT_EQ(bothOf(qvRegressionLine, even, 2, 1), Pair(2, 2));
  EXPECT_EQ(bothOf(qvRegressionLine, even, 1, 1), Pair(0, 4));
}

TEST_F(Stretch, SlopeArrayPts) {
  EXPECT_EQ(qvSlopeArrayPts(&even, 2, 0), 2.0);
  EXPECT_EQ(qvSlopeArrayPts(&even, 1, INT_MIN), 4.0 / 2147483649.0);  // outside reads 0.0
}

TEST_F(Stretch, SlopePts) {
  EXPECT_EQ(qvSlopePts(1, 2, 4, -4), -2.0);
  EXPECT_EQ(qvSlopePts(1, 2, 1, 3), kInf);
}

struct StretchOfAPair : testing::Test {
  // Means 2 and 3; products 1, 0, 2 over N - 1; deviations sqrt(2/3) and sqrt(14/3).
  const Array a{1, 2, 3}, b{2, 1, 6, 9}, flat{5, 5, 5};
};

TEST_F(StretchOfAPair, Covariance) {
  EXPECT_DOUBLE_EQ(qvCovariance(&a, &b, 0, 9), 2.0);
  EXPECT_TRUE(std::isnan(qvCovariance(&a, &b, 1, 1)));
}

TEST_F(StretchOfAPair, CorCoef) {
  EXPECT_DOUBLE_EQ(qvCorCoef(&a, &b, 0, 0, 2), 2.0 / sqrt(2.0 / 3.0 * 14.0 / 3.0));
  EXPECT_DOUBLE_EQ(qvCorCoef(&a, &b, 1, 0, 2), 2.0 / sqrt(7.0));
  EXPECT_EQ(qvCorCoef(&a, &flat, 1, 0, 2), 0.0);
  EXPECT_EQ(qvCorCoef(&a, &b, 1, 1, 1), 0.0);
}

TEST(BarStretch, BarStats) {
  Bars bars{{0, 0, 0, 5}, {4, 9, 0, 6}, {0, kNaN, 3, 7}, {-1, 8, 2, 4}};
  EXPECT_EQ(bothOf(qvBarStats, bars, 0, 2), Pair(3, 9));  // zeros don't lower
  EXPECT_EQ(bothOf(qvBarStats, bars, INT_MAX, 2), Pair(-1, 8));
  EXPECT_EQ(bothOf(qvBarStats, bars, INT_MIN, -1), Pair(0, 0));  // nothing left
  EXPECT_EQ(qvBarStats(&bars, nullptr, nullptr, 0, 2), 0);
  qvFreeArray(&bars.low);
  EXPECT_EQ(qvBarStats(&bars, nullptr, nullptr, 0, 2), -1);
  EXPECT_EQ(qvBarStats(nullptr, nullptr, nullptr, 0, 5), -1);
}

TEST(BarStretch, AvgPrice) {
  const Bars bars{{0, 0, 0, 5}, {4, 9, 0, 6}};
  EXPECT_DOUBLE_EQ(qvAvgPrice(&bars, 0), 5.0 / 3.0);  // no open
  EXPECT_EQ(qvAvgPrice(&bars, 1), 19.0 / 4.0);
  for (int i : {-1, 4}) EXPECT_EQ(qvAvgPrice(&bars, i), 0.0);
}

TEST_F(Stretch, StaysInsideTheSeries) {
  const Array a(shaped(Shape::Walk, 10), 4), shorter(shaped(Shape::Offset, 8), 2), empty,
      beyond(shaped(Shape::Walk, 10), INT_MAX);
  for (int from : {INT_MIN, 3})
    for (int to : {9, 10, INT_MAX}) {
      EXPECT_EQ(statsOf(a, from, to), statsOf(a, 4, 9));
      EXPECT_EQ(qvStdErr(&a, to, from), qvStdErr(&a, 4, 9));
      EXPECT_EQ(qvCovariance(&a, &shorter, from, to), qvCovariance(&a, &shorter, 7, 4));
    }
  // Nothing is left: before the first valid item, past the end.
  const std::tuple<const Array&, int, int> nothing[] = {{a, -5, 3}, {beyond, 0, INT_MAX}};
  for (const auto& [none, from, to] : nothing) {
    const Items stats = statsOf(none, from, to);
    EXPECT_EQ(stats[0] + stats[1] + stats[3], 0.0);
    EXPECT_EQ(bothOf<int>(qvArrayStatsPos, none, from, to, 0), Pair(-1, -1));
    EXPECT_EQ(bothOf(qvRegressionLine, none, from, to), Pair(0, 0));
    for (const double value : {stats[2], qvStdDev(&none, 1, from, to), qvCovariance(&none, &a, from, to),
                               qvDispersion(&none, from, to), qvStdDev(&empty, 0, 0, 5)})
      EXPECT_TRUE(std::isnan(value));
    for (const double value :
         {qvStdErr(&none, from, to), qvCorCoef(&a, &none, 0, from, to), qvStdDev(nullptr, 0, 0, 5),
          qvStdErr(nullptr, 0, 5), qvDispersion(nullptr, 0, 5), qvCovariance(&a, nullptr, 0, 5),
          qvCorCoef(nullptr, &a, 0, 0, 5), qvSlopeArrayPts(nullptr, 0, 5)})
      EXPECT_EQ(value, 0.0);
  }
  double slope;
  EXPECT_EQ(qvRegressionLine(&a, &slope, nullptr, 0, 9), -1);
  EXPECT_EQ(qvArrayStats(&a, nullptr, nullptr, nullptr, nullptr, 0, 9, 0), 0);
  EXPECT_EQ(qvArrayStats(&empty, nullptr, nullptr, nullptr, nullptr, 0, 5, 0), -1);
  EXPECT_EQ(qvArrayStatsPos(nullptr, nullptr, nullptr, 0, 5, 0), -1);
}

// The moving forms are their stretch of every window. The kernels under them have finer tests of their own.
struct Moving : testing::Test {
  struct Run {  // of one shape of data, for one period
    const Array &a, &b, &index;
    int sample, p;
  };
  using Call = std::function<int(const Run&, QvArray*)>;
  using Stretch = std::function<double(const Run&, int from, int to)>;

  // `wait` bars after the first window, times the period less one.
  static void expectMoving(const Call& call, const Stretch& stretch, int wait = 0) {
    Array index(Items(80, 0.0)), out;
    for (int i = 0; i < 80; ++i) index.data[i] = i;
    for (Shape shape : {Shape::Walk, Shape::Flat, Shape::Integers, Shape::NaNs})
      for (int sample : {0, 1})
        for (int p : {1, 2, 5, 78}) {
          SCOPED_TRACE(testing::Message() << "shape " << static_cast<int>(shape) << " p " << p);
          const Array a(shaped(shape, 80, 3), 2), b(shaped(shape, 90, 4));
          const Run run{a, b, index, sample, p};
          expectEach(call(run, &out), out, p + 1 + wait * (p - 1), 1e-12,
                     [&](int i) { return stretch(run, i - p + 1, i); });
          EXPECT_EQ(out.size, 80);
        }
  }
  static double correlation(const Run& r, int from, int to) {
    return qvCorCoef(&r.a, &r.b, r.sample, from, to);
  }
  static double dispersion(const Run& r, int from, int to) { return qvDispersion(&r.a, from, to); }
};

TEST_F(Moving, CorCoefMv) {
  expectMoving([](auto& r, auto* out) { return qvCorCoefMv(&r.a, &r.b, out, r.sample, r.p, 1); },
               correlation);
}

TEST_F(Moving, RSquaredCoef) {
  expectMoving([](auto& r, auto* out) { return qvRSquaredCoef(&r.a, &r.b, out, r.sample, r.p, 1); },
               [](auto& r, int from, int to) { return std::pow(correlation(r, from, to), 2); });
}

TEST_F(Moving, RSquared) {
  expectMoving([](auto& r, auto* out) { return qvRSquared(&r.a, out, r.p, 1); },
               [](auto& r, int from, int to) { return std::pow(qvCorCoef(&r.index, &r.a, 1, from, to), 2); });
}

TEST_F(Moving, CovarianceMv) {
  expectMoving([](auto& r, auto* out) { return qvCovarianceMv(&r.a, &r.b, out, r.p, 1); },
               [](auto& r, int from, int to) { return qvCovariance(&r.a, &r.b, from, to); });
}

TEST_F(Moving, StdDevMv) {
  expectMoving([](auto& r, auto* out) { return qvStdDevMv(&r.a, out, r.sample, r.p, 1); },
               [](auto& r, int from, int to) { return qvStdDev(&r.a, r.sample, from, to); });
}

TEST_F(Moving, StdErrMv) {
  expectMoving([](auto& r, auto* out) { return qvStdErrMv(&r.a, out, r.p, 1); },
               [](auto& r, int from, int to) { return qvStdErr(&r.a, from, to); });
}

TEST_F(Moving, DispersionMv) {
  expectMoving([](auto& r, auto* out) { return qvDispersionMv(&r.a, out, r.p, 1); }, dispersion);
}

TEST_F(Moving, BetaCoefMv) {  // waits for its dispersion
  expectMoving([](auto& r, auto* out) { return qvBetaCoefMv(&r.a, &r.b, out, r.sample, r.p, 1); },
               [](auto& r, int from, int to) {
                 const double d = dispersion(r, from, to);
                 return d > 0 ? correlation(r, from, to) / d : 0;
               },
               1);
  const Array a(shaped(Shape::Walk, 60), 3), b(shaped(Shape::Walk, 60, 2), 20);
  Array out;
  ASSERT_EQ(qvBetaCoefMv(&a, &b, &out, 1, 5, 0), 0);
  EXPECT_EQ(out.firstValid, 24);  // the dispersion of the first series is there at 7, b at 20
}

TEST_F(Moving, RegressionLineMv) {
  const Array a(shaped(Shape::Walk, 60), 3);
  Array slopes, intercepts;
  EXPECT_EQ(qvRegressionLineMv(&a, &slopes, &intercepts, 9, 0, 11), -1);  // one end short of 3 + 9
  EXPECT_EQ(slopes.data, nullptr);
  for (int end : {12, 40, INT_MAX}) {
    ASSERT_EQ(qvRegressionLineMv(&a, slopes.fresh(), intercepts.fresh(), 9, 0, end), 0);
    EXPECT_EQ(Pair(slopes.firstValid, intercepts.firstValid), Pair(11, 11));
    for (int i = 0; i < 60; ++i) {
      const Pair line = i >= 11 && i <= end ? bothOf(qvRegressionLine, a, i - 8, i) : Pair(0, 0);
      ASSERT_TRUE(std::fabs(slopes[i] - line.first) < 1e-12 && std::fabs(intercepts[i] - line.second) < 1e-11)
          << i;
    }
  }
}

// qvReSizeArray stores any size below 0.
TEST(Statistics, TakeASeriesOfASizeBelowZeroForAnEmptyOne) {
  Array a{1, 2, 3};
  Bars bars(walkBars(3));
  qvReSizeArray(&a, INT_MIN);
  bars.barsize = bars.volume.size = INT_MIN;
  QvEquityFigures figures;
  EXPECT_EQ(Items({qvStdErr(&a, 0, 2), qvSumPrev(&a, 3, 2), qvOBVol(&bars, 0, 2)}), Items(3));
  EXPECT_EQ(qvEquityFigures(&a, nullptr, 252, 0, &figures), -1);
  EXPECT_EQ(qvBarStats(&bars, nullptr, nullptr, 0, 2), 0);
  bars.barsize = 3;
  EXPECT_EQ(qvMFI(&bars, Array().fresh(), 0), 0);
}

}  // namespace
}  // namespace qvtest
