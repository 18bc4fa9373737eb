// The averages over a window, and the dispatcher over all averages.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>

#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;
using Average = int (*)(const QvArray*, QvArray*, int, int) noexcept;

double at(const Items& x, int i) {
  return x[static_cast<size_t>(i)];
}

// The obvious value of each average for the window of p items that ends at i.
using Window = double (*)(const Items& x, int i, int p);

double plainSum(const Items& x, int i, int p) {
  double sum = 0;
  for (int j = i - p + 1; j <= i; ++j) sum += at(x, j);
  return sum;
}
double mean(const Items& x, int i, int p) {
  return plainSum(x, i, p) / p;
}
double weighted(const Items& x, int i, int p) {
  double sum = 0, weights = 0;
  for (int j = 1; j <= p; ++j) {
    sum += j * at(x, i - p + j);
    weights += j;
  }
  return sum / weights;
}
double forecast(const Items& x, int i, int p) {
  const double y = mean(x, i, p), middle = (p + 1) / 2.0;
  double xy = 0, xx = 0;
  for (int j = 1; j <= p; ++j) {
    xy += (j - middle) * (at(x, i - p + j) - y);
    xx += (j - middle) * (j - middle);
  }
  return p == 1 ? y : y + xy / xx * (p + 1 - middle);
}
double triangular(const Items& x, int i, int p) {
  const int p1 = p % 2 ? (p + 1) / 2 : p / 2, p2 = p % 2 ? p1 : p1 + 1;
  double sum = 0;
  for (int j = i - p2 + 1; j <= i; ++j) sum += mean(x, j, p1);
  return sum / p2;
}

// Agreement to a few roundings of the window's largest item; a not-a-number only for one.
void expectNear(double actual, double expected, double scale, const std::string& where) {
  if (expected != expected) {
    EXPECT_NE(actual, actual) << where;
  } else {
    EXPECT_LE(std::fabs(actual - expected), 1e-12 * scale) << where << ": " << actual << " for " << expected;
  }
}

double largest(const Items& x, int i, int p) {
  double scale = 0;
  for (int j = i - p + 1; j <= i; ++j) scale = std::max(scale, std::fabs(at(x, j)));
  return scale;
}

TEST(WindowAverages, EqualTheObviousValueOfEveryWindow) {
  const struct {
    const char* name;
    Average average;
    Window obvious;
    bool sums;
  } members[] = {{"sum", qvMovingSum, plainSum, true},
                 {"simple", qvSimpleMA, mean, false},
                 {"weighted", qvWeightedMA, weighted, false},
                 {"forecast", qvLstSqrMA, forecast, false},
                 {"triangular", qvTriangularMA, triangular, false}};
  const int n = 200, start = 5;
  for (const auto& member : members) {
    for (Shape shape : kShapes) {
      Items x = shaped(shape, n);
      x[60] = 1e200;  // forgotten when the window has passed it
      x[130] = kNaN;
      const Array in(x, 3);
      for (int p : {1, 2, 3, 4, 7, 50, n - start, n}) {
        Array out;
        ASSERT_EQ(member.average(&in, &out, p, start), 0);
        EXPECT_EQ(out.firstValid, start + p - 1);
        for (int i = start + p - 1; i < n; ++i)
          expectNear(out[i], member.obvious(x, i, p), largest(x, i, p) * (member.sums ? p : 1),
                     std::string(member.name) + " shape " + std::to_string(static_cast<int>(shape)) + " p " +
                         std::to_string(p) + " item " + std::to_string(i));
        if (HasFailure()) return;
      }
    }
  }
}

TEST(WindowAverages, GiveTheSameInPlace) {
  for (Average average : {qvSimpleMA, qvMovingSum}) {
    for (int p : {1, 4, 55, 60, 90}) {
      const Items walk = shaped(Shape::Walk, 60);
      Array series(walk), separate;
      ASSERT_EQ(average(&series, &separate, p, 5), 0);
      ASSERT_EQ(average(&series, &series, p, 5), 0);
      EXPECT_EQ(series.firstValid, separate.firstValid);
      for (int i = 0; i < 60; ++i) EXPECT_EQ(series[i], i < 5 ? at(walk, i) : separate[i]) << p << " " << i;
    }
  }
}

TEST(WindowAverages, AlwaysWriteTheLastItem) {
  // Below the first valid index: the items that exist over the whole period.
  Array in{3, 5, 7}, average, sum;
  ASSERT_EQ(qvSimpleMA(&in, &average, 5, 0), 0);
  EXPECT_EQ(average.items(), (Items{0, 0, 3}));
  EXPECT_EQ(average.firstValid, 4);
  ASSERT_EQ(qvMovingSum(&in, &sum, INT_MAX, 1), 0);
  EXPECT_EQ(sum.items(), (Items{0, 0, 12}));
  EXPECT_EQ(sum.firstValid, INT_MAX);
  // Nothing to sum.
  ASSERT_EQ(qvMovingSum(&in, &in, 2, 3), 0);
  EXPECT_EQ(in.items(), (Items{3, 5, 0}));
  EXPECT_EQ(in.firstValid, 4);
}

TEST(WeightedAverage, WeighsTheNewestMost) {
  // (1*6 + 2*0 + 3*2) / 6 = 2, (1*0 + 2*2 + 3*6) / 6 = 22 / 6.
  Array in{6, 0, 2, 6}, out;
  ASSERT_EQ(qvWeightedMA(&in, &out, 3, 0), 0);
  EXPECT_EQ(out[2], 2);
  EXPECT_NEAR(out[3], 22.0 / 6, 1e-15);
}

TEST(WeightedAverage, SurvivesPeriodsWhoseWeightsExceedAnInteger) {
  const int p = 70000;  // the weights add up to 2,450,035,000
  Array flat(Items(p + 1, 8.5)), out;
  ASSERT_EQ(qvWeightedMA(&flat, &out, p, 0), 0);
  EXPECT_NEAR(out[p], 8.5, 1e-12);
}

TEST(LeastSquaresAverage, ForecastsTheNextBar) {
  // A line goes on as it was; 1 4 1 has slope 0 around 2; 4 1 4 around 3.
  Array line{2, 4, 6, 8}, zigzag{1, 4, 1, 4}, out;
  ASSERT_EQ(qvLstSqrMA(&line, &out, 3, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 8, 10}));
  ASSERT_EQ(qvLstSqrMA(&zigzag, &out, 3, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 2, 3}));
}

TEST(TriangularAverage, LeavesThePartialAveragesOfItsPasses) {
  // Period 4 is 2 over 3. Two averages of three exist: 3 and 5, a partial sum of 8 over 3.
  Array in{2, 4, 6}, out;
  ASSERT_EQ(qvTriangularMA(&in, &out, 4, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 8.0 / 3}));
  EXPECT_EQ(out.firstValid, 3);
  // The first pass has no complete window: the second has nothing to sum.
  ASSERT_EQ(qvTriangularMA(&in, &out, INT_MAX, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
  EXPECT_EQ(out.firstValid, INT_MAX - 1);
}

TEST(VolumeAdjustedAverage, WeighsPricesWithTheirVolume) {
  // (10*1 + 20*3) / 4 = 17.5; (20*3 + 40*0) / 3 = 20; no volume in the next window; then the last price.
  Array price{10, 20, 40, 50, 60}, volume{1, 3, 0, 0, 8}, out;
  ASSERT_EQ(qvVolAdjustedMA(&price, &volume, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 17.5, 20, 0, 60}));
  EXPECT_EQ(out.firstValid, 1);
}

TEST(VolumeAdjustedAverage, EqualsTheSumsOverEachWindow) {
  const int n = 150;
  for (Shape shape : kShapes) {
    const Items price = shaped(Shape::Walk, n, 3), volume = shaped(shape, n, 4);
    const Array in(price, 2), weights(volume, 6);
    for (int p : {1, 5, 40}) {
      Array out;
      ASSERT_EQ(qvVolAdjustedMA(&in, &weights, &out, p, 0), 0);
      EXPECT_EQ(out.firstValid, 6 + p - 1);
      for (int i = 6 + p - 1; i < n; ++i) {
        double turnover = 0, total = 0, size = 0;
        for (int j = i - p + 1; j <= i; ++j) {
          turnover += at(price, j) * at(volume, j);
          total += at(volume, j);
          size += std::fabs(at(price, j) * at(volume, j));
        }
        expectNear(out[i], total == 0 ? 0.0 : turnover / total, total == 0 ? 0.0 : std::fabs(size / total),
                   "shape " + std::to_string(static_cast<int>(shape)) + " p " + std::to_string(p) + " item " +
                       std::to_string(i));
      }
    }
  }
}

TEST(Dispatcher, ChoosesTheAverageByItsCode) {
  const Array walk(shaped(Shape::Walk, 60));
  const Average byCode[] = {
      [](auto in, auto out, int p, int s) noexcept { return qvExpMA(in, out, p, s); },
      qvLstSqrMA,
      qvSimpleMA,
      qvWeightedMA,
      qvWellesMA,
      qvTriangularMA,
      qvVariableMA,
      [](auto in, auto out, int p, int s) noexcept { return qvZeroLagExpMA(in, out, p, s); }};
  for (int method = 0; method < 8; ++method) {
    Array dispatched, direct;
    ASSERT_EQ(qvMovingAverage(&walk, &dispatched, method, 6, 4), 0);
    ASSERT_EQ(byCode[method](&walk, &direct, 6, 4), 0);
    EXPECT_EQ(dispatched.items(), direct.items()) << method;
    EXPECT_EQ(dispatched.firstValid, direct.firstValid) << method;
  }
  for (int method : {-1, 8, INT_MIN, INT_MAX}) {
    Array out;
    EXPECT_EQ(qvMovingAverage(&walk, &out, method, 6, 4), -1) << method;
    EXPECT_EQ(out.data, nullptr);
  }
}

}  // namespace
}  // namespace qvtest
