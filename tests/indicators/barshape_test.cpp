// Shapes of bars, forecasts and trends taken out.
#include <gtest/gtest.h>

#include <climits>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct BarShape : testing::Test {
  const Bars bodies{{5, 0, 0, 7}, {6, 0, 0, 6}, {9, 0, 0, 5}, {1, 0, 0, 2}};
  const Bars heights{{0, 1, 0, 0, 5}, {0, 2, 0, 0, 6}, {0, 2, 0, 0, 9}};
  const Array line{9, 1, 4, 7, 10, 0};
  Array out, second;
};

TEST_F(BarShape, BOP) {
  // Bar 1: (12 - 9) / 4; bar 2: no height; bar 3: (8 - 12) / 8. Averages of one bar.
  const Bars power{{9, 11, 8, 10}, {10, 13, 9, 12}, {12, 12, 12, 12}, {11, 14, 6, 8}};
  expectNear(qvBOP(&power, &out, 2, 1, 0), out, {0, 0.75, 0, -0.5}, 1);
  // A period that does not fit is judged before the method.
  EXPECT_EQ(qvBOP(&power, &out, 99, 4, 0), 4);
  EXPECT_EQ(qvBOP(&power, &out, 99, 3, 0), -1);
}

TEST_F(BarShape, Qstick) {
  expectNear(qvQstick(&bodies, &out, 3, 0), out, {2, 1, -1.5, -0.25}, 0);  // of 2, 0, -4, 1 with k = 1/2
}

TEST_F(BarShape, IMI) {
  expectNear(qvIMI(&bodies, &out, 2, 0), out, {0, 100, 0, 20}, 1);
  expectNear(qvIMI(&bodies, &out, 9, 0), out, {0, 0, 0, 300.0 / 7}, 8);  // fewer bars: the last one
  const Bars level(closingAt(Items(4, 5.0)));
  expectGives(qvIMI(&level, &out, 3, 0), out, {0, 0, 0, 0}, 2);
}

TEST_F(BarShape, MassIndex) {
  // Heights 1, 2, 2: e1 = 1, 1.2, 1.36; e2 = 1, 1.04, 1.104.
  expectNear(qvMassIndex(&heights, &out, 2, 0), out, {0, 0, 1.2 / 1.04 + 1.36 / 1.104}, 2);
}

TEST_F(BarShape, PVO) {
  expectNear(qvPVO(&heights, &out, 1, 2, 2, 0), out, {0, 50 / 5.5, 150 / 7.5}, 1);
  EXPECT_EQ(qvPVO(&heights, &out, 1, 2, 77, 0), -1);
}

TEST_F(BarShape, ForecastOscillator) {
  // Two points forecast the third: 6 for 6, 8 for 7, 8 for 9; signal with k = 1/2.
  const Array in{2, 4, 6, 7, 9};
  expectNear(qvForecastOscillator(&in, &out, &second, 2, 3, 0), out, {0, 0, 0, -100.0 / 7, 100.0 / 9}, 2);
  expectNear(0, second, {0, 0, 0, -50.0 / 7, -25.0 / 7 + 50.0 / 9}, 2);
}

TEST_F(BarShape, DeTrend) {
  expectNear(qvDeTrend(&line, &out, 1, 4), out, {0, 3, 3, 3, 3, 0}, 1);  // one slope is left on every value
  expectGives(qvDeTrend(&line, &out, 3, 1), out, Items(6, 0.0), 3);
  expectGives(qvDeTrend(&line, &out, 2, 2), out, Items(6, 0.0), 2);  // a single item is its own line
  ASSERT_EQ(qvDeTrend(&line, &out, INT_MIN, INT_MAX), 0);
  EXPECT_NE(out[5], 0.0);
}

}  // namespace
}  // namespace qvtest
