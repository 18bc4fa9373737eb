// Bar shape, counting, sentiment, range and relative volatility.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(BarShape, BalanceOfPower) {
  // Bar 1: (12 - 9) / 4; bar 2: no height; bar 3: (8 - 12) / 8. Averages of one bar.
  Bars bars{{9, 11, 8, 10}, {10, 13, 9, 12}, {12, 12, 12, 12}, {11, 14, 6, 8}};
  Array out;
  ASSERT_EQ(qvBOP(&bars, &out, 2, 1, 0), 0);
  expectItems(out, {0, 0.75, 0, -0.5});
  EXPECT_EQ(out.firstValid, 1);
  EXPECT_EQ(qvBOP(&bars, &out, 99, 4, 0), 4) << "a period that does not fit is judged before the method";
  EXPECT_EQ(qvBOP(&bars, &out, 99, 3, 0), -1);
}

TEST(BarShape, QstickAndIntradayMomentum) {
  Bars bars{{5, 0, 0, 7}, {6, 0, 0, 6}, {9, 0, 0, 5}, {1, 0, 0, 2}};  // bodies 2, 0, -4, 1
  Array out;
  ASSERT_EQ(qvQstick(&bars, &out, 3, 0), 0);  // k = 1/2
  expectItems(out, {2, 1, -1.5, -0.25});
  ASSERT_EQ(qvIMI(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 100, 0, 20});
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvIMI(&bars, &out, 9, 0), 0);  // fewer bars: the last one
  expectItems(out, {0, 0, 0, 300.0 / 7});
  Bars level(std::vector<Bar>(6, {5, 6, 4, 5}));
  ASSERT_EQ(qvIMI(&level, out.fresh(), 3, 0), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0});
}

TEST(BarShape, MassIndexAndVolumeOscillator) {
  // Heights 1, 2, 2: e1 = 1, 1.2, 1.36; e2 = 1, 1.04, 1.104.
  Bars bars{{0, 1, 0, 0, 5}, {0, 2, 0, 0, 6}, {0, 2, 0, 0, 9}};
  Array out;
  ASSERT_EQ(qvMassIndex(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 0, 1.2 / 1.04 + 1.36 / 1.104});
  EXPECT_EQ(out.firstValid, 2);
  Array wanted;
  ASSERT_EQ(qvPriceOscillatorPct(&bars.volume, &wanted, 1, 2, 2, 0), 0);
  ASSERT_EQ(qvPVO(&bars, &out, 1, 2, 2, 0), 0);
  EXPECT_EQ(out.items(), wanted.items());
  EXPECT_EQ(out[2], (9 - 7.5) * 100 / 7.5);
  EXPECT_EQ(qvPVO(&bars, &out, 1, 2, 77, 0), -1);
}

TEST(Regression, ForecastAndDetrend) {
  Array in{2, 4, 6, 7, 9}, out, signal;
  // Two points forecast the third: 6 for 6, 8 for 7, 8 for 9; signal with k = 1/2.
  ASSERT_EQ(qvForecastOscillator(&in, &out, &signal, 2, 3, 0), 0);
  expectItems(out, {0, 0, 0, -100.0 / 7, 100.0 / 9});
  expectItems(signal, {0, 0, 0, -50.0 / 7, -25.0 / 7 + 50.0 / 9});
  EXPECT_EQ(out.firstValid, 2);
  EXPECT_EQ(signal.firstValid, 2);

  Array line{9, 1, 4, 7, 10, 0};
  ASSERT_EQ(qvDeTrend(&line, out.fresh(), 1, 4), 0);
  expectItems(out, {0, 3, 3, 3, 3, 0});  // one slope is left on every value
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvDeTrend(&line, &out, 3, 1), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0});
  ASSERT_EQ(qvDeTrend(&line, &out, 2, 2), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0});  // a single item: its line is the item itself
  ASSERT_EQ(qvDeTrend(&line, &out, INT_MIN, INT_MAX), 0);
  EXPECT_NE(out[5], 0.0);
}

TEST(Counting, PsychologyLine) {
  Array rising{1, 2, 3, 4, 5}, out;
  ASSERT_EQ(qvPsychologyLine(&rising, &out, 2, 0), 0);
  expectItems(out, {0, 0, 0, 100, 100});
  EXPECT_EQ(out.firstValid, 2);
  Array mixed({9, 1, 2, 2, 1, 3, 4}, 1);
  ASSERT_EQ(qvPsychologyLine(&mixed, out.fresh(), 2, 0), 0);  // rises at 2, 5 and 6
  expectItems(out, {0, 0, 0, 0, 0, 50, 100});
  ASSERT_EQ(qvPsychologyLine(&mixed, &out, 5, 0), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0, 0});
}

TEST(Counting, WilliamsAccumulationAndRank) {
  // Up: 12 - min(9, 10) = 3; down: max(11, 12) - 8 = 4; equal; up with a gap: 12 - min(10, 8) = 4.
  Bars bars{{0, 0, 0, 10, 5}, {0, 13, 9, 12, 5},  {0, 11, 7, 8, 9},
            {0, 9, 7, 8, 3},  {0, 13, 10, 12, 2}, {0, 9, 8, 8, 1}};
  Array out;
  ASSERT_EQ(qvWilliamsAD(&bars, &out, 0), 0);
  expectItems(out, {0, 3, -1, -1, 3, -1});
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvPVrank(&bars, &out, 0), 0);
  expectItems(out, {0, 1, 4, 2, 2, 3});
}

TEST(Counting, LineOscillatorAndStretchedStrength) {
  Array a({9, 2, 4, 8}, 1), b{1, 1, 2, 4}, out, strength;
  ASSERT_EQ(qvLineOsc(&a, &b, &out, 2, 0), 0);
  expectItems(out, {0, 0, 1.5, 3});
  EXPECT_EQ(out.firstValid, 2);

  const std::vector<double> x = shaped(Shape::Walk, 30);
  Array in(x, 5);
  ASSERT_EQ(qvRSI(&in, &strength, 4, 0), 0);
  ASSERT_EQ(qvNMO(&in, out.fresh(), 4, 0), 0);
  EXPECT_EQ(out.firstValid, 9);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(out[i], i < 4 ? 0.0 : i < 9 ? -100.0 : 2 * strength[i] - 100) << i;
  Array flat(std::vector<double>(8, 3.0));
  ASSERT_EQ(qvNMO(&flat, out.fresh(), 4, 0), 0);
  expectItems(out, {0, 0, 0, 0, -100, -100, -100, -100});
}

TEST(Sentiment, PopularityKeepsItsFirstBar) {
  // Above the open 1 2 3 4, below it 2 2 1 3. p = 2: bars 0 1, then 0 2, then 0 3.
  Bars bars{{10, 11, 8, 0}, {10, 12, 8, 0}, {10, 13, 9, 0}, {10, 14, 7, 0}};
  Array out;
  ASSERT_EQ(qvAR(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 75, 400.0 / 3, 100});
  EXPECT_EQ(out.firstValid, 1);
  EXPECT_EQ(qvAR(&bars, &out, 4, 0), 4);
  expectItems(out, {0, 0, 0, 0});
  ASSERT_EQ(qvAR(&bars, &out, 3, 2), 0);
  expectItems(out, {0, 0, 0, 0});
}

TEST(Sentiment, WillingnessOverTheNewestBars) {
  // Above the previous close 2 3 1 4, below it 1 2 2 1. p = 3: the two newest bars from bar 3 on.
  Bars bars{{0, 0, 0, 10}, {0, 12, 9, 10}, {0, 13, 8, 10}, {0, 11, 8, 10}, {0, 14, 9, 10}};
  Array out;
  ASSERT_EQ(qvBR(&bars, &out, 3, 0), 0);
  expectItems(out, {0, 0, 0, 100, 500.0 / 3});
  EXPECT_EQ(out.firstValid, 3);
  EXPECT_EQ(qvBR(&bars, &out, 5, 0), 5);
}

TEST(Sentiment, RaysAndSonar) {
  Bars bars{{0, 5, 1, 4}, {0, 9, 3, 8}, {0, 8, 2, 2}, {0, 8, 2, 2}};  // averages (k = 1/2): 4 6 4 3
  Array out;
  ASSERT_EQ(qvERAYBull(&bars, &out, 3, 0), 0);
  expectItems(out, {1, 3, 4, 5});
  ASSERT_EQ(qvERAYBear(&bars, &out, 3, 1), 0);  // the average begins at bar 1: 8 5 3.5
  expectItems(out, {0, -5, -3, -1.5});
  EXPECT_EQ(qvERAYBull(&bars, &out, 4, 0), 4);
  EXPECT_EQ(qvERAYBear(&bars, &out, 4, 0), 4);

  Array in{4, 8, 2, 2, 0, 0, 0}, sonar;  // averages (p = 1): the items
  ASSERT_EQ(qvSONAR(&in, &sonar, 1, 2, 0), 0);
  expectItems(sonar, {0, 0, 0, -75, -100, -100, 0});
  EXPECT_EQ(sonar.firstValid, 3);
  ASSERT_EQ(qvSONAR(&in, &sonar, 3, 0, 0), 0);
  expectItems(sonar, {0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(qvSONAR(&in, &sonar, 4, 3, 0), 7);
  EXPECT_EQ(qvSONAR(&in, &sonar, 4, -1, 0), -1);
}

TEST(Range, IndicatorFromTheBarsRanges) {
  // Ranges 4 / 2 (the close rose by 2), 6 (it fell), 3, 8 / 4: 2 6 3 2. Over two bars: 100, 0, 0.
  Bars bars{{0, 10, 10, 10}, {0, 13, 9, 12}, {0, 12, 6, 8}, {0, 9, 6, 8}, {0, 14, 6, 12}};
  Array out;
  ASSERT_EQ(qvRangeIndicator(&bars, &out, 2, 1, 0), 0);
  expectItems(out, {0, 0, 100, 0, 0});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvRangeIndicator(&bars, &out, 2, 3, 0), 0);
  expectItems(out, {0, 0, 100, 50, 25});
}

TEST(Range, FractalEfficiency) {
  const std::vector<double> x = shaped(Shape::Walk, 40);
  for (int f : {0, 6}) {
    Array in(x, f), out, used;
    Array::fill(used, 40, 3.0);
    used.firstValid = 33;
    const int p = 5;
    ASSERT_EQ(qvPFE(&in, &out, p, 1, 0), 0);  // a smoothing of 1 leaves the values
    ASSERT_EQ(qvPFE(&in, &used, p, 1, 0), 0);
    EXPECT_EQ(out.firstValid, f + p);
    for (int i = f + p; i < 40; ++i) {
      double way = 0;
      for (int j = i - p + 1; j <= i; ++j) way += std::hypot(in[j] - in[j - 1], 1.0);
      const double straight = 100 * std::hypot(in[i] - in[i - p + 1], static_cast<double>(p)) / way;
      EXPECT_NEAR(out[i], in[i] < in[i - p + 1] ? -straight : straight, 1e-9);
      EXPECT_EQ(out[i], used[i]);
    }
  }
}

TEST(Range, VolatilitySystem) {
  // True ranges 2, 2, 6, 3, 6, scaled by 2. Short from 10 with the stop at 10 + 4, which 15 passes; then
  // long: the stops 15 - 12 = 3 and 17 - 6 = 11 stand off the highest close.
  Bars bars{{0, 11, 9, 10}, {0, 11, 9, 10}, {0, 16, 14, 15}, {0, 18, 16, 17}, {0, 13, 11, 12}};
  Array sic, arc, stop, signal;
  ASSERT_EQ(qvWellesVolatility(&bars, &sic, &arc, &stop, &signal, 2.0, 1, 0), 0);
  expectItems(arc, {4, 4, 12, 6, 12});
  expectItems(sic, {10, 10, 15, 17, 17});
  expectItems(stop, {0, 14, 14, 3, 11});
  expectItems(signal, {0, 0, 1, 0, 0});
  EXPECT_EQ(sic.firstValid, 0);
  EXPECT_EQ(stop.firstValid, 1);
}

TEST(RelativeVolatility, SmoothsTheDeviationsOfRisesAndFalls) {
  const std::vector<double> x = shaped(Shape::Walk, 80, 3);
  Array in(x, 2), out;
  const int p = 6, begin = 2 + 9, first = 2 + p + 8;
  ASSERT_EQ(qvRVIoriginal(&in, &out, p, 0), 0);
  EXPECT_EQ(out.firstValid, first);
  double up = 0, down = 0;
  for (int i = begin; i < 80; ++i) {
    const double s = qvStdDev(&in, 1, i - 9, i), u = in[i] > in[i - 1] ? s : 0, d = in[i] < in[i - 1] ? s : 0;
    up = i <= first ? up + u / p : (up * (p - 1) + u) / p;
    down = i <= first ? down + d / p : (down * (p - 1) + d) / p;
    EXPECT_NEAR(out[i], i < first ? 0 : 100 * up / (up + down), 1e-9) << i;
  }
  Array flat(std::vector<double>(40, 7.0)), rising(shaped(Shape::Rising, 40));
  ASSERT_EQ(qvRVIoriginal(&flat, out.fresh(), 6, 0), 0);
  for (int i = 0; i < 40; ++i) EXPECT_EQ(out[i], 0.0);
  ASSERT_EQ(qvRVIoriginal(&rising, &out, 6, 0), 0);
  for (int i = 14; i < 40; ++i) EXPECT_DOUBLE_EQ(out[i], 100.0);
  ASSERT_EQ(qvRVIoriginal(&rising, &out, 100, 0), 0);
  EXPECT_DOUBLE_EQ(out[39], 100.0) << "fewer items than the seed: one value at the last of them";
}

TEST(RelativeVolatility, OfBarsAndItsInertia) {
  Bars bars(walkBars(70));
  Array highs, lows, out, inertia, wanted;
  qvRVIoriginal(&bars.high, &highs, 6, 3);
  qvRVIoriginal(&bars.low, &lows, 6, 3);
  ASSERT_EQ(qvRVI(&bars, &out, 6, 3), 0);
  EXPECT_EQ(out.firstValid, 17);
  for (int i = 17; i < 70; ++i) EXPECT_EQ(out[i], (highs[i] + lows[i]) / 2);
  ASSERT_EQ(qvInertia(&bars, &inertia, 6, 10, 3), 0);
  qvLstSqrMA(&out, &wanted, 10, 17);
  EXPECT_EQ(inertia.items(), wanted.items());
  EXPECT_EQ(inertia.firstValid, 26);
}

}  // namespace
}  // namespace qvtest
