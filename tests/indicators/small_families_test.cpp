// Bar shape, counting, sentiment, range and relative volatility.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct SmallFamilies : testing::Test {
  const Array walk{shaped(Shape::Walk, 80, 3), 2};
  Array out, second, third, fourth;
};

TEST_F(SmallFamilies, BarShapeAndRegression) {
  // Bar 1: (12 - 9) / 4; bar 2: no height; bar 3: (8 - 12) / 8. Averages of one bar.
  const Bars power{{9, 11, 8, 10}, {10, 13, 9, 12}, {12, 12, 12, 12}, {11, 14, 6, 8}};
  expectNear(qvBOP(&power, &out, 2, 1, 0), out, {0, 0.75, 0, -0.5}, 1);
  const Bars bodies{{5, 0, 0, 7}, {6, 0, 0, 6}, {9, 0, 0, 5}, {1, 0, 0, 2}}, level(closingAt(Items(4, 5.0)));
  expectNear(qvQstick(&bodies, &out, 3, 0), out, {2, 1, -1.5, -0.25}, 0);  // of 2, 0, -4, 1 with k = 1/2
  expectNear(qvIMI(&bodies, &out, 2, 0), out, {0, 100, 0, 20}, 1);
  expectNear(qvIMI(&bodies, &out, 9, 0), out, {0, 0, 0, 300.0 / 7}, 8);  // fewer bars: the last one
  expectGives(qvIMI(&level, &out, 3, 0), out, {0, 0, 0, 0}, 2);
  // Heights 1, 2, 2: e1 = 1, 1.2, 1.36; e2 = 1, 1.04, 1.104.
  const Bars heights{{0, 1, 0, 0, 5}, {0, 2, 0, 0, 6}, {0, 2, 0, 0, 9}};
  expectNear(qvMassIndex(&heights, &second, 2, 0), second, {0, 0, 1.2 / 1.04 + 1.36 / 1.104}, 2);
  expectNear(qvPVO(&heights, &second, 1, 2, 2, 0), second, {0, 50 / 5.5, 150 / 7.5}, 1);
  EXPECT_EQ(qvPVO(&heights, &second, 1, 2, 77, 0), -1);
  // Two points forecast the third: 6 for 6, 8 for 7, 8 for 9; signal with k = 1/2.
  const Array in{2, 4, 6, 7, 9}, line{9, 1, 4, 7, 10, 0};
  expectNear(qvForecastOscillator(&in, out.fresh(), second.fresh(), 2, 3, 0), out,
             {0, 0, 0, -100.0 / 7, 100.0 / 9}, 2);
  expectNear(0, second, {0, 0, 0, -50.0 / 7, -25.0 / 7 + 50.0 / 9}, 2);
  expectNear(qvDeTrend(&line, &third, 1, 4), third, {0, 3, 3, 3, 3, 0},
             1);  // one slope is left on every value
  expectGives(qvDeTrend(&line, &third, 3, 1), third, Items(6, 0.0), 3);
  expectGives(qvDeTrend(&line, &third, 2, 2), third, Items(6, 0.0), 2);  // a single item is its own line
  ASSERT_EQ(qvDeTrend(&line, &third, INT_MIN, INT_MAX), 0);
  EXPECT_NE(third[5], 0.0);
}

TEST_F(SmallFamilies, CountingAndSentiment) {
  const Array rising{1, 2, 3, 4, 5, 6, 7}, mixed({9, 1, 2, 2, 1, 3, 4}, 1);  // mixed rises at 2, 5 and 6
  expectGives(qvPsychologyLine(&rising, &out, 2, 0), out, {0, 0, 0, 100, 100, 100, 100}, 2);
  expectGives(qvPsychologyLine(&mixed, &out, 2, 0), out, {0, 0, 0, 0, 0, 50, 100}, 3);
  expectGives(qvPsychologyLine(&mixed, &out, 5, 0), out, Items(7, 0.0), 6);
  // Up: 12 - min(9, 10) = 3; down: max(11, 12) - 8 = 4; equal; up with a gap: 12 - min(10, 8) = 4.
  const Bars ranks{{0, 0, 0, 10, 5}, {0, 13, 9, 12, 5},  {0, 11, 7, 8, 9},
                   {0, 9, 7, 8, 3},  {0, 13, 10, 12, 2}, {0, 9, 8, 8, 1}};
  expectGives(qvWilliamsAD(&ranks, &second, 0), second, {0, 3, -1, -1, 3, -1}, 1);
  expectGives(qvPVrank(&ranks, &second, 0), second, {0, 1, 4, 2, 2, 3}, 1);
  const Array a({9, 2, 4, 8}, 1), b{1, 1, 2, 4}, flat(Items(4, 3.0)), moved({0, 0, 10, 16, 14}, 2);
  expectGives(qvLineOsc(&a, &b, &third, 2, 0), third, {0, 0, 1.5, 3}, 2);
  // Strength 100 and 0, stretched from bar 2 on whatever the first valid index.
  expectGives(qvNMO(&moved, &fourth, 1, 1), fourth, {0, 0, -100, 100, -100}, 3);
  expectGives(qvNMO(&flat, &third, 2, 0), third, {0, 0, -100, -100}, 2);
  // Above the open 1 2 3 4, below it 2 2 1 3. p = 2: bars 0 1, then 0 2, then 0 3: the first bar stays.
  const Bars opens{{10, 11, 8, 0}, {10, 12, 8, 0}, {10, 13, 9, 0}, {10, 14, 7, 0}};
  expectNear(qvAR(&opens, out.fresh(), 2, 0), out, {0, 75, 400.0 / 3, 100}, 1);
  expectGives(qvAR(&opens, &out, 3, 2), out, {0, 0, 0, 0}, 4);
  // Above the previous close 2 3 1 4, below it 1 2 2 1. p = 3: the two newest bars from bar 3 on.
  const Bars closes{{0, 0, 0, 10}, {0, 12, 9, 10}, {0, 13, 8, 10}, {0, 11, 8, 10}, {0, 14, 9, 10}};
  expectNear(qvBR(&closes, second.fresh(), 3, 0), second, {0, 0, 0, 100, 500.0 / 3}, 3);
  const Bars rays{{0, 5, 1, 4}, {0, 9, 3, 8}, {0, 8, 2, 2}, {0, 8, 2, 2}};  // averages (k = 1/2): 4 6 4 3
  expectNear(qvERAYBull(&rays, &out, 3, 0), out, {1, 3, 4, 5}, 0);
  expectNear(qvERAYBear(&rays, &out, 3, 1), out, {0, -5, -3, -1.5}, 1);  // begun at bar 1: 8 5 3.5
  const Array in{4, 8, 2, 2, 0, 0, 0};                                   // averages (p = 1): the items
  expectNear(qvSONAR(&in, third.fresh(), 1, 2, 0), third, {0, 0, 0, -75, -100, -100, 0}, 3);
  expectGives(qvSONAR(&in, &third, 3, 0, 0), third, Items(7, 0.0), 3);
  EXPECT_EQ(qvSONAR(&in, &third, 4, 3, 0), 7);
  EXPECT_EQ(qvSONAR(&in, &third, 4, -1, 0), -1);
}

TEST_F(SmallFamilies, Ranges) {
  // Ranges 4 / 2 (the close rose by 2), 6 (it fell), 3, 8 / 4: 2 6 3 2. Over two bars: 100, 0, 0.
  const Bars bars{{0, 10, 10, 10}, {0, 13, 9, 12}, {0, 12, 6, 8}, {0, 9, 6, 8}, {0, 14, 6, 12}};
  expectNear(qvRangeIndicator(&bars, &out, 2, 1, 0), out, {0, 0, 100, 0, 0}, 2);
  expectNear(qvRangeIndicator(&bars, &out, 2, 3, 0), out, {0, 0, 100, 50, 25}, 2);
  // True ranges 2, 2, 6, 3, 6, 9, scaled by 2. Short from 10 with the stop at 10 + 4, which 15 passes; then
  // long: the stops 15 - 12, 17 - 6 and 17 - 12 stand off the highest close, until 4 falls through.
  const Bars turned{{0, 11, 9, 10},  {0, 11, 9, 10},  {0, 16, 14, 15},
                    {0, 18, 16, 17}, {0, 13, 11, 12}, {0, 5, 3, 4}};
  const int status = qvWellesVolatility(&turned, out.fresh(), &second, &third, &fourth, 2.0, 1, 0);
  expectNear(status, out, {10, 10, 15, 17, 17, 4}, 0);
  expectNear(status, second, {4, 4, 12, 6, 12, 18}, 0);
  expectNear(status, third, {0, 14, 14, 3, 11, 5}, 1);
  expectNear(status, fourth, {0, 0, 1, 0, 0, -1}, 1);
  // Moves 0 1.5 -1.5 over two bars: the straight way spans one of them, and is negative for a fall.
  const Array in{1, 1, 2.5, 1};
  const double way = std::sqrt(3.25), rise = 250 / (1 + way), fall = -250 / (2 * way);
  expectNear(qvPFE(&in, out.fresh(), 2, 1, 0), out, {0, 0, rise, fall}, 2);
  expectNear(qvPFE(&in, &out, 2, 3, 0), out, {0, 0, rise, (rise + fall) / 2}, 2);
}

TEST_F(SmallFamilies, RelativeVolatilitySmoothsTheDeviationsOfRisesAndFalls) {
  const int p = 6, first = 2 + p + 8;
  WilderMean up{p}, down{p};
  const auto volatility = [&](int i) {
    const double s = qvStdDev(&walk, 1, i - 9, i);
    up.add(walk[i] > walk[i - 1] ? s : 0);
    down.add(walk[i] < walk[i - 1] ? s : 0);
    return 100 * up.mean / (up.mean + down.mean);
  };
  for (int i = 2 + 9; i < first; ++i) volatility(i);
  expectEach(qvRVIoriginal(&walk, &out, p, 0), out, first, 1e-11, volatility);
  const Array flat(Items(20, 7.0)), rising(shaped(Shape::Rising, 20));
  expectGives(qvRVIoriginal(&flat, &second, p, 0), second, Items(20, 0.0), 14);
  expectEach(qvRVIoriginal(&rising, &second, p, 0), second, 14, 1e-15, [](int) { return 100.0; });
  ASSERT_EQ(qvRVIoriginal(&rising, &second, 100, 0), 0);
  EXPECT_DOUBLE_EQ(second[19], 100.0) << "fewer items than the seed: one value at the last of them";
  const Bars bars(walkBars(70));
  Array inertia, wanted, highs, lows;
  qvRVIoriginal(&bars.high, &highs, p, 3);
  qvRVIoriginal(&bars.low, &lows, p, 3);
  expectEach(qvRVI(&bars, &third, p, 3), third, 17, 0, [&](int i) { return (highs[i] + lows[i]) / 2; });
  qvLstSqrMA(&third, &wanted, 10, 17);
  expectGives(qvInertia(&bars, &inertia, p, 10, 3), inertia, wanted.items(), 26);
}

}  // namespace
}  // namespace qvtest
