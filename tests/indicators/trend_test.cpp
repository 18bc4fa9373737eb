// Trend and directional indicators.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

struct Directional : testing::Test {
  // Gap up: 15 - 11; gap down: 12.5 - 8; inside bar: its own height. The first has no previous close.
  const Bars gaps{{10, 12, 9, 11}, {14, 15, 13, 12.5}, {9, 10, 8, 9}, {9, 9.5, 8.5, 9}};
  // The larger side counts: up 2 / down -1; both negative (inside); equal 1 / 1 (outside); down 3 over up 1.
  // True ranges 5 6 4 6 10, over 2: at bar 2 the sums 11 / 2 + 4 and 2 / 2, at bar 3 9.5 / 2 + 6 ...
  const Bars bars{{0, 10, 5, 7}, {0, 12, 6, 8}, {0, 11, 7, 9}, {0, 12, 6, 9}, {0, 13, 3, 9}};
  const Bars flat{closingAt(Items(5, 5.0))};
  Array out, second;
};

TEST_F(Directional, TR) {
  expectGives(qvTR(&gaps, &out, 0), out, {3, 4, 4.5, 1}, 0);
  expectGives(qvTR(&gaps, &out, 2), out, {0, 0, 2, 1}, 2);
}

TEST_F(Directional, ATR) {
  // Averages of 3, 4, 4.5, 1 over 2: seed 3.5, then (3.5 + 4.5) / 2 and (4 + 1) / 2.
  expectGives(qvATR(&gaps, &out, 2, 0), out, {0, 3.5, 4, 2.5}, 1);
}

TEST_F(Directional, DMIx) {
  expectGives(qvDMIx(&bars, &out, &second, 0), out, {0, 2, 0, 0, 0}, 1);
  expectGives(0, second, {0, 0, 0, 0, 3}, 1);
}

TEST_F(Directional, DI) {
  expectNear(qvDI(&bars, &out, &second, 2, 0), out, {0, 0, 200 / 9.5, 100 / 10.75, 50 / 15.375}, 2);
  expectNear(0, second, {0, 0, 0, 0, 300 / 15.375}, 2);
  // Too short for the period: the partial sum of the movement stays at the last item.
  expectGives(qvDI(&bars, &out, &second, 7, 0), out, {0, 0, 0, 0, 2}, 7);
  expectGives(qvDI(&flat, &out, &second, 2, 0), out, Items(5, 0.0), 2);
  bars.high.data[0] = kNaN;
  ASSERT_EQ(qvDI(&bars, &out, &second, 2, 0), 0);
  EXPECT_TRUE(out[1] == 0 && second[1] == 0) << "the range, a bar before the first value, is no number";
}

TEST_F(Directional, DX) {
  expectNear(qvDX(&bars, &out, 2, 0), out, {0, 0, 100, 100, 250 / 3.5}, 2);
  expectGives(qvDX(&flat, &out, 2, 0), out, Items(5, 0.0), 2);
}

TEST_F(Directional, ADX) {
  expectNear(qvADX(&bars, &out, 2, 2, 0), out, {0, 0, 0, 100, (100 + 250 / 3.5) / 2}, 3);
}

TEST_F(Directional, ADXR) {
  expectNear(qvADXR(&bars, &out, 2, 2, 1, 0), out, {0, 0, 0, 0, (300 + 250 / 3.5) / 4}, 4);
  EXPECT_EQ(qvADXR(&bars, &out, 2, 2, -1, 0), -1);
}

TEST_F(Directional, SystemOfTheIndexIsWilders) {
  const Bars& bars = spx();
  const double *h = bars.high.data, *l = bars.low.data, *c = bars.close.data;
  const int p = 14, q = 10, lag = 5, n = bars.barsize;
  Array plus, minus, dx, adx, adxr, atr;
  ASSERT_EQ(qvDI(&bars, &plus, &minus, p, 0) | qvDX(&bars, &dx, p, 0) | qvADX(&bars, &adx, p, q, 0), 0);
  ASSERT_EQ(qvADXR(&bars, &adxr, p, q, lag, 0) | qvATR(&bars, &atr, p, 0), 0);
  EXPECT_EQ(adxr.firstValid, p + q + lag - 1);
  WilderMean range{p}, plusDM{p}, minusDM{p}, index{q};
  range.add(h[0] - l[0]);
  for (int i = 1; i < n; ++i) {
    const double up = h[i] - h[i - 1], down = l[i - 1] - l[i];
    range.add(std::max(h[i], c[i - 1]) - std::min(l[i], c[i - 1]));
    plusDM.add(up > down && up > 0 ? up : 0);
    minusDM.add(down > up && down > 0 ? down : 0);
    if (i < p) continue;
    ASSERT_NEAR(atr[i], range.mean, 1e-9) << i;
    ASSERT_NEAR(plus[i], 100 * plusDM.mean / range.mean, 1e-9) << i;
    ASSERT_NEAR(minus[i], 100 * minusDM.mean / range.mean, 1e-9) << i;
    const double x = 100 * std::fabs(plusDM.mean - minusDM.mean) / (plusDM.mean + minusDM.mean);
    ASSERT_NEAR(dx[i], x, 1e-9) << i;
    index.add(x);
    if (i < p + q - 1) continue;
    ASSERT_NEAR(adx[i], index.mean, 1e-9) << i;
    if (i < adxr.firstValid) continue;
    ASSERT_NEAR(adxr[i], (adx[i] + adx[i - lag]) / 2, 1e-9) << i;
  }
}

struct Trend : testing::Test {
  Array out, second;
};

TEST_F(Trend, SAR) {
  // Long (10.5 above 10) with stop and extreme at the lower low, 9. Bar 2: high 13 beyond 9, so the
  // acceleration is 0.2 and the next stop 9 + 0.2 * (13 - 9) = 9.8. Bar 3: high 14, acceleration at
  // its maximum 0.3, 9.8 + 0.3 * (14 - 9.8) = 11.06, held at the low 11 of the bar before. Bar 4
  // closes on 11 and reverses: the short side's stop is the extreme 14, its own extreme the bar's high
  // 13.5, and the next stop 14 + 0.1 * (13.5 - 14) = 13.95, held at the high 14 of the bar before.
  const auto expectBothWays = [&](std::vector<Bar> prices, Items stops, Items sides) {
    for (int turn = 0; turn < 2; ++turn) {
      const Bars bars(prices);
      expectNear(qvSAR(&bars, out.fresh(), second.fresh(), 0.1, 0.3, 0), out, stops, 2);
      expectGives(0, second, sides, 2);
      for (Bar& b : prices) b = {0, -b.low, -b.high, -b.close};
      for (Items* items : {&stops, &sides})
        for (double& x : *items) x = -x;
    }
  };
  expectBothWays({{0, 11, 9, 10},
                  {0, 12, 10, 10.5},
                  {0, 13, 11, 12},
                  {0, 14, 12, 13},
                  {0, 13.5, 10, 11},
                  {0, 12, 9, 10}},
                 {0, 0, 9, 9.8, 14, 14}, {0, 0, 1, 1, -1, -1});
  // The extreme of bar 3 is no new one: 20 + 0.2 * (8 - 20) = 17.6.
  expectBothWays({{0, 20, 10, 15}, {0, 20, 10, 14}, {0, 12, 8, 10}, {0, 12, 8, 10}, {0, 12, 9, 10}},
                 {0, 0, 20, 20, 17.6}, {0, 0, -1, -1, -1});
  const Bars level{{0, 6, 4, 5}, {0, 6, 4, 5}, {0, 6, 4, 5.5}};
  expectGives(qvSAR(&level, out.fresh(), second.fresh(), 0.02, 0.2, 0), out, {0, 0, 6}, 2);
  EXPECT_EQ(second[2], -1.0) << "a flat second close starts short";
}

struct AroonAges : Trend {
  // The earlier of the two nines and of the two ones counts: ages 1, 2, 2 and 2, 1, 2.
  const Bars bars{{0, 5, 1, 0}, {0, 9, 2, 0}, {0, 9, 1, 0}, {0, 8, 3, 0}, {0, 7, 4, 0}};
};

TEST_F(AroonAges, Aroon) {
  expectGives(qvAroon(&bars, &out, &second, 2, 0), out, {0, 0, 50, 0, 0}, 2);
  expectGives(0, second, {0, 0, 0, 50, 0}, 2);
  const double *h = spx().high.data, *l = spx().low.data;
  const auto percent = [](auto age) { return 100 - 4.0 * static_cast<double>(age); };  // of 25 bars
  expectEach(qvAroon(&spx(), out.fresh(), second.fresh(), 25, 3), out, 28, 1e-15,
             [=](int i) { return percent(h + i - std::max_element(h + i - 25, h + i + 1)); });
  expectEach(0, second, 28, 1e-15,
             [=](int i) { return percent(l + i - std::min_element(l + i - 25, l + i + 1)); });
}

TEST_F(AroonAges, AroonOscillator) {
  expectGives(qvAroonOscillator(&bars, &out, 2, 0), out, {0, 0, 50, -50, 0}, 2);
}

TEST_F(Trend, VHF) {
  // Relative changes 1/2, 1/4, 1/5, then 1/2 down; ranges of the last two items 0.75, 0.75, 2.25.
  const Array in{2, 3, 3.75, 4.5, 2.25}, zero{0, 0, 0, 1, 1}, flat{5, 5, 5}, through{1, 2, 1, 0, 4, 4, 8};
  expectNear(qvVHF(&in, &out, 2, 0), out, {0, 0, 0.75 / 0.75, 0.75 / 0.45, 2.25 / 0.7}, 2);
  expectNear(qvVHF(&in, &out, 9, 0), out, {0, 0, 0, 0, 2.25 / 1.45}, 9);  // over the bars that exist
  // 0 / 0 is not guarded in the first window, and goes with it.
  expectGives(qvVHF(&zero, &out, 1, 0), out, {0, kNaN, 0, 0, 0}, 1);
  expectGives(qvVHF(&flat, out.fresh(), 1, 0), out, {0, 0, 0}, 1);
  // Later a change from zero does not count, nor leave: sums 1.5, 1.5, 1, 0, 1.
  expectNear(qvVHF(&through, out.fresh(), 2, 0), out, {0, 0, 1 / 1.5, 1 / 1.5, 4, 0, 4}, 2);
}

TEST_F(Trend, TrendScore) {
  // + + - | + - - | - - +, and - - + of the bars that exist.
  const Array moves{5, 5, 6, 4, 3, 7};
  expectGives(qvTrendScore(&moves, &out, 3, 0), out, {0, 0, 0, 1, -1, -1}, 3);
  expectGives(qvTrendScore(&moves, &out, 9, 2), out, {0, 0, 0, 0, 0, -1}, 11);
}

TEST_F(Trend, RWI) {
  // The best look-back of a random walk. Ranges 2; 1.5, the gap above 10 does not count; 2.5, the gap below
  // 11 does. Means of the last two and of all: 2 and 2. Up 3 / (2 sqrt 2) beats 1 / (2 sqrt 3), down 2.5 / (2
  // sqrt 3) beats 1 / (2 sqrt 2).
  const Bars bars{{0, 11, 9, 10}, {0, 12, 10.5, 11}, {0, 10.5, 8.5, 9}, {0, 11.5, 9.5, 10}};
  expectNear(qvRWI(&bars, &out, &second, 3, 0), out, {0, 0, 0, 3 / std::sqrt(8)}, 3);
  expectNear(0, second, {0, 0, 0, 2.5 / std::sqrt(12)}, 3);
  // Where nothing moved in the look-back the term of the bar before stands: 1 / (1.5 sqrt 2).
  const Bars still{{0, 14, 11, 12}, {0, 12, 12, 12}, {0, 13, 13, 13}, {0, 13, 13, 13}};
  const double term = std::sqrt(2) / 3;
  expectNear(qvRWI(&still, &out, &second, 2, 0), out, {0, 0, term, term}, 2);
  // Also where only the mean range is too small for a number.
  const Bars faint{{}, {}, {0, 5e-324, 0, 0}, {0, 1, 1, 1}};
  expectGives(qvRWI(&faint, out.fresh(), second.fresh(), 2, 0), out, Items(4, 0.0), 2);
}

TEST_F(Trend, ZigZag) {
  // Swings of ten percent: up to 12, down to 9, then the last leg to the last bar.
  const Array in{10, 11, 12, 11.5, 10, 9, 10, 9.8};
  const Items lines{10, 11, 12, 11, 10, 9, 9.4, 9.8};
  expectNear(qvZigZag(&in, &out, 10.0, 1, 0), out, lines, 0);
  expectNear(qvZigZag(&in, &out, 0.1, 0, 0), out, lines, 0);
  const Array late{10, 12, 9};  // a swing is known on the bar after it, and there is none after the last
  expectNear(qvZigZag(&late, second.fresh(), 10.0, 1, 0), second, {10, 9.5, 9}, 0);
  const Array just{8, 4, 6, 5, 6};  // a half of 8 and half as much again as 4 are swings already
  expectNear(qvZigZag(&just, out.fresh(), 50, 1, 0), out, {8, 4, 14.0 / 3, 16.0 / 3, 6}, 0);
}

// Bar 1: A = 4, B = 0, D = 1, G = 4: R = 4 - 0 + 0.25; change 3 + 0.5 * 2 + 0.25 * 1 = 4.25;
// 4.25 / 4.25 * 50 * 4 / 8 = 25. Bar 2: A = 1, B = 5, D = 2, G = 4 (gap down): R = 5 - 0.5 + 0.5 = 5;
// change -4 + 0.5 * (-1) + 0.25 * 2 = -4; -4 / 5 * 50 * 5 / 8 = -25. Inside their height G = 3: R = 3 +
// 0.25, change -0.25, K = 2; and R = 3, change 1 + 0.5, K = 2.
struct Swings : Trend {
  const Bars bars{{9, 11, 8, 10}, {11, 14, 10, 13}, {10, 12, 8, 9}, {9, 10, 7, 9}, {9, 11, 8, 10}};
  const double inside = -0.25 / 3.25 * 12.5;
};

TEST_F(Swings, SwingIndex) {
  const Bars flat(closingAt({5, 5, 5}));
  expectNear(qvSwingIndex(&bars, &out, 8.0, 0), out, {0, 25, -25, inside, 6.25}, 1);
  expectGives(qvSwingIndex(&flat, out.fresh(), 8.0, 0), out, {0, 0, 0}, 1);
}

TEST_F(Swings, AccumSwingIndex) {
  expectNear(qvAccumSwingIndex(&bars, &out, 8.0, 0), out, {0, 25, 0, inside, inside + 6.25}, 1);
}

TEST_F(Trend, DMI) {
  // Moves of one up and down, and of 51 at bar 33: there the deviation is ten times its mean, so that the
  // last three moves count, +1 -1 +51; from bar 38 on it is far below it: 30 moves, 65 up and 15 down.
  Items x(39);
  for (std::size_t i = 0; i < 39; ++i) x[i] = (i < 33 ? 0 : 50) + static_cast<double>(i % 2);
  const Array flat(Items(32, 7.0)), jump(x), in(shaped(Shape::Walk, 120), 4);
  expectGives(qvDMI(&flat, &out, 0), out, Items(32, 0.0), 30);
  ASSERT_EQ(qvDMI(&jump, &second, 0), 0);
  EXPECT_NEAR(second[33], 5200.0 / 53, 1e-12);
  EXPECT_NEAR(second[38], 81.25, 1e-12);
  const auto index = [&](int i) {
    double mean = 0;
    for (int j = i - 9; j <= i; ++j) mean += qvStdDev(&in, 1, j - 4, j) / 10;
    const int t = std::clamp(static_cast<int>(std::floor(14 / (qvStdDev(&in, 1, i - 4, i) / mean))), 3, 30);
    double up = 0, all = 0;
    for (int j = i - t + 1; j <= i; ++j) {
      up += std::max(in[j] - in[j - 1], 0.0);
      all += std::fabs(in[j] - in[j - 1]);
    }
    return 100 * up / all;
  };
  expectEach(qvDMI(&in, out.fresh(), 0), out, 34, 1e-11, index);
}

}  // namespace
}  // namespace qvtest
