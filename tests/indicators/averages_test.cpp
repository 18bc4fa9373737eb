// The averages over a window, those that remember, those that momentum and volume adapt, and the dispatcher
// over all. Prices are exact in binary where values are compared exactly.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <string>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct WindowAverage {
  const char* name;
  int (*average)(const QvArray*, QvArray*, int, int) noexcept;
  double (*weight)(double j, double p);  // of the j-th of p items, the first the oldest
};

void PrintTo(const WindowAverage& average, std::ostream* os) {
  *os << average.name;
}

struct WindowAverages : testing::TestWithParam<WindowAverage> {};

TEST_P(WindowAverages, EqualTheWeighedSumOfEveryWindow) {
  const int n = 200, start = 5;
  Array out;
  for (Shape shape : kShapes) {
    Array x(shaped(shape, n), 3);
    x.data[60] = 1e200;  // forgotten when the window has passed it
    x.data[130] = kNaN;
    for (int p : {1, 2, 3, 4, 7, 50, n - start, n}) {
      ASSERT_EQ(GetParam().average(&x, out.fresh(), p, start), 0);
      EXPECT_EQ(out.firstValid, start + p - 1);
      for (int i = start + p - 1; i < n; ++i) {
        double sum = 0, largest = 0, weights = 0;
        for (int j = 1; j <= p; ++j) {
          const double weight = GetParam().weight(j, p);
          sum += weight * x[i - p + j];
          weights += weight;
          largest = std::max(largest, std::fabs(x[i - p + j]));
        }
        ASSERT_TRUE(sum != sum ? out[i] != out[i] : std::fabs(out[i] - sum) <= 1e-12 * weights * largest)
            << "shape " << static_cast<int>(shape) << " p " << p << " item " << i;
      }
    }
  }
}

const WindowAverage kWindowAverages[] = {
    {"MovingSum", qvMovingSum, [](double, double) { return 1.0; }},
    {"SimpleMA", qvSimpleMA, [](double, double p) { return 1 / p; }},
    {"WeightedMA", qvWeightedMA, [](double j, double p) { return j / (p * (p + 1) / 2); }},
    // The line of least squares one bar on.
    {"LstSqrMA", qvLstSqrMA,
     [](double j, double p) { return p == 1 ? 1 : (1 + 6 * (j - (p + 1) / 2) / (p - 1)) / p; }},
    // Sums of p1 over sums of p2: how many of them hold the item.
    {"TriangularMA", qvTriangularMA,
     [](double j, double p) {
       const double p1 = std::floor((p + 1) / 2), p2 = std::floor(p / 2) + 1;
       return std::min({j, p + 1 - j, p1}) / (p1 * p2);
     }},
};
INSTANTIATE_TEST_SUITE_P(, WindowAverages, testing::ValuesIn(kWindowAverages),
                         [](const auto& row) { return std::string(row.param.name); });

struct Averages : testing::Test {
  // Three items are below the first valid index of longer periods: the last one has what exists.
  const Array in{8, 16, 0}, late{{99, 8, 16}, 1}, six{2, 8, 4, 10, 2, 9}, walk{shaped(Shape::Walk, 60)};
  Array few{3, 5, 7}, out, second;
};

TEST_F(Averages, SimpleMA) {
  expectGives(qvSimpleMA(&few, &out, 5, 0), out, {0, 0, 3}, 4);
}

TEST_F(Averages, MovingSum) {
  expectGives(qvMovingSum(&few, &out, INT_MAX, 1), out, {0, 0, 12}, INT_MAX);
  expectGives(qvMovingSum(&few, &few, 2, 3), few, {3, 5, 0}, 4);
}

TEST_F(Averages, TriangularMA) {
  // 2 over 3: two averages exist, 4 and 6. Where the first pass has no window the second has nothing to sum.
  expectGives(qvTriangularMA(&few, &out, 4, 0), out, {0, 0, 10.0 / 3}, 3);
  expectGives(qvTriangularMA(&few, &out, INT_MAX, 0), out, {0, 0, 0}, INT_MAX - 1);
}

TEST_F(Averages, WeightedMA) {
  const Array x{6, 0, 2, 6}, flat(Items(70001, 8.5));
  expectNear(qvWeightedMA(&x, &out, 3, 0), out, {0, 0, 2, 22.0 / 6}, 2);  // (1*6 + 2*0 + 3*2) / 6 ...
  // The weights add up to 2,450,035,000, more than an integer holds.
  ASSERT_EQ(qvWeightedMA(&flat, out.fresh(), 70000, 0), 0);
  EXPECT_NEAR(out[70000], 8.5, 1e-12);
}

TEST_F(Averages, LstSqrMA) {
  // A line goes on as it was; 1 4 1 has slope 0 around 2; 4 1 4 around 3.
  const Array line{2, 4, 6, 8}, zigzag{1, 4, 1, 4};
  expectGives(qvLstSqrMA(&line, &out, 3, 0), out, {0, 0, 8, 10}, 2);
  expectGives(qvLstSqrMA(&zigzag, &out, 3, 0), out, {0, 0, 2, 3}, 2);
}

TEST_F(Averages, VolAdjustedMA) {
  // (10*1 + 20*3) / 4 = 17.5; (20*3 + 40*0) / 3 = 20; no volume in the next window; then the last price.
  const Array price{10, 20, 40, 50, 60}, volume{1, 3, 0, 0, 8}, volumes({1, 3, 0, 0, 8}, 1);
  expectGives(qvVolAdjustedMA(&price, &volume, &out, 2, 0), out, {0, 17.5, 20, 0, 60}, 1);
  expectGives(qvVolAdjustedMA(&price, &volumes, &out, 2, 0), out, {0, 0, 20, 0, 60}, 2);
}

// Period 4: 24 / 4 = 6; (3*6 + 2) / 4 = 5; (3*5 + 9) / 4 = 6. The last item is written where there is
// something to smooth.
TEST_F(Averages, WellesMA) {
  expectGives(qvWellesMA(&six, &out, 4, 0), out, {0, 0, 0, 6, 5, 6}, 3);
  expectGives(qvWellesMA(&few, &second, 4, 1), second, {0, 0, 3}, 4);
  expectGives(qvWellesMA(&few, &few, 2, 3), few, {3, 5, 7}, 4);
}

TEST_F(Averages, WellesSum) {  // 24; 24 - 6 + 2; 20 - 5 + 9
  expectGives(qvWellesSum(&six, &out, 4, 0), out, {0, 0, 0, 24, 20, 24}, 3);
  expectGives(qvWellesSum(&few, &second, INT_MAX, 2), second, {0, 0, 7}, INT_MAX);
}

TEST(ExponentialFactor, OfAPeriodAndBack) {
  EXPECT_EQ(qvPeriodToExp(3), 0.5);
  EXPECT_EQ(qvExpToPeriod(0.5), 3);
  EXPECT_EQ(qvEMA(10, 14, 3), 12);  // half of the way
}

// Period 3: e1 = 8, 12, 6; e2 = 8, 10, 8; e3 = 8, 9, 8.5.
TEST_F(Averages, ExpMA) {
  expectGives(qvExpMA(&in, &out, 3, 0), out, {8, 12, 6}, 0);
  expectGives(qvExpMA(&late, &out, 3, 0), out, {0, 8, 12}, 1);  // seeded with the first valid item
  expectGives(qvExpMA(&in, &out, 1, 0), out, in.items(), 0);
}

TEST_F(Averages, DEMA) {
  expectGives(qvDEMA(&in, &out, 3, 0), out, {8, 14, 4}, 1);
}

TEST_F(Averages, TEMA) {
  expectGives(qvTEMA(&in, &out, 3, 0), out, {8, 15, 2.5}, 1);
}

TEST_F(Averages, T3) {
  // Factor 1/2 gives 1.5 e1 - 0.5 e2; below 0 it counts as 0, above 1 as 1.
  expectGives(qvT3(&in, &out, 3, 0.5, 1, 0), out, {8, 13, 5}, 0);
  for (double none : {0.0, -3.0, kNaN}) expectGives(qvT3(&in, &out, 3, none, 1, 0), out, {8, 12, 6}, 0);
  expectGives(qvT3(&in, &out, 3, 7, 1, 0), out, {8, 14, 4}, 0);
  // A second pass smooths 8, 12, 6 again; fewer than one pass counts as one.
  expectGives(qvT3(&in, &out, 3, 0, 2, 0), out, {8, 10, 8}, 0);
  expectGives(qvT3(&in, &out, 3, 0, INT_MIN, 0), out, {8, 12, 6}, 0);
  expectGives(qvT3(&in, &out, 3, 0, INT_MAX, 0), out, {8, 8, 8}, 0);  // only the seed is left
  ASSERT_EQ(qvT3(&walk, out.fresh(), 6, 0.7, 1, 4), 0);
  for (int passes = 2; passes <= 7; ++passes) {
    const Array last(out.items(), 4);
    ASSERT_EQ(qvT3(&last, &out, 6, 0.7, 1, 0), 0);
    expectNear(qvT3(&walk, &second, 6, 0.7, passes, 4), second, out.items(), 4);
  }
}

// A share too small to tell from nothing leaves the average where it began.
TEST(EndlessAverages, ExpMAOfAnEndlessPeriodStays) {
  const Array walk(shaped(Shape::Walk, 3000));
  Array average;
  expectEach(qvExpMA(&walk, &average, 1e300, 0), average, 0, 1e-12, [&](int) { return walk[0]; });
}

TEST_F(Averages, ZeroLagExpMA) {
  // Period 5: L = 2, k = 1/3. Seed x[0] at index 1; then 2/3 of the last + (2 x[i] - x[i-2]) / 3:
  // (12 + 2*9 - 6) / 3 = 8, (16 + 2*12 - 13) / 3 = 9.
  const Array x{6, 13, 9, 12};
  expectNear(qvZeroLagExpMA(&x, &out, 5, 0), out, {0, 6, 8, 9}, 1);
  // Period 4: L = 1, k = 2/5; period 1 knows the last two items only.
  expectNear(qvZeroLagExpMA(&x, &out, 4, 0), out, {6, 11.6, 8.96, 11.376}, 0);
  expectGives(qvZeroLagExpMA(&x, &out, 1, 0), out, {6, 2 * 13 - 6, 2 * 9 - 13, 2 * 12 - 9}, 0);
  expectGives(qvZeroLagExpMA(&x, &out, kInf, 0), out, Items(4, 0.0), INT_MAX - 1);  // the seed lies beyond
}

TEST_F(Averages, VIDYA) {
  // Oscillator of 2 bars on 8 8 8 12 12 10: from index 2 on 0, 100, 100, -100. Period 3, k = 1/2:
  // seed 8 at index 1; 8; 10; 11; 10.5.
  const Array x{8, 8, 8, 12, 12, 10}, start{2, 8, 4};
  expectGives(qvVIDYA(&x, &out, 2, 3, 0), out, {0, 8, 8, 10, 11, 10.5}, 2);
  expectGives(qvVIDYA(&start, &second, 3, 2, 0), second, {0, 0, 4}, 3);  // the seed alone
  expectGives(qvVIDYA(&start, &second, 4, 2, 0), second, {0, 0, 0}, 4);
  for (auto [period, first] : {std::pair{8, 11}, {10, 13}, {9, 25}}) {  // nine begins thirteen bars late
    ASSERT_EQ(qvVIDYA(&walk, out.fresh(), period, 20, 3), 0);
    EXPECT_EQ(out.firstValid, first);
    EXPECT_EQ(out[first - 1], walk[first - 1]) << "the seed";
    EXPECT_EQ(out[first - 2], 0.0);
  }
}

TEST_F(Averages, VariableMA) {
  qvVIDYA(&walk, &second, 9, 20, 3);
  expectGives(qvVariableMA(&walk, &out, 20, 3), out, second.items(), 25);
}

TEST_F(Averages, MovingAverage) {
  const std::function<int(const QvArray*, QvArray*, int, int)> byCode[] = {
      qvExpMA,    qvLstSqrMA,     qvSimpleMA,   qvWeightedMA,
      qvWellesMA, qvTriangularMA, qvVariableMA, qvZeroLagExpMA};
  for (int method = 0; method < 8; ++method) {
    ASSERT_EQ(byCode[method](&walk, &second, 6, 4), 0);
    expectGives(qvMovingAverage(&walk, &out, method, 6, 4), out, second.items(), second.firstValid);
  }
  Array none;
  for (int method : {-1, 8}) EXPECT_EQ(qvMovingAverage(&walk, &none, method, 6, 4), -1);
  EXPECT_EQ(none.data, nullptr);
}

}  // namespace
}  // namespace qvtest
