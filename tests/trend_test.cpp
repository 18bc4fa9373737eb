// Trend and directional indicators.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

TEST(TrueRange, TakesGapsIntoAccount) {
  // Gap up: 15 - 11; gap down: 12.5 - 8; inside bar: its own height.
  Bars bars{{10, 12, 9, 11}, {14, 15, 13, 12.5}, {9, 10, 8, 9}, {9, 9.5, 8.5, 9}};
  Array out;
  ASSERT_EQ(qvTR(&bars, &out, 0), 0);
  expectItems(out, {3, 4, 4.5, 1});
  ASSERT_EQ(qvTR(&bars, &out, 2), 0);
  expectItems(out, {0, 0, 2, 1});  // the first bar asked for has no previous close
  // Welles average of 3, 4, 4.5, 1 over 2: seed 3.5, then (3.5 + 4.5) / 2 and (4 + 1) / 2.
  ASSERT_EQ(qvATR(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 3.5, 4, 2.5});
  EXPECT_EQ(out.firstValid, 1);
}

TEST(Directional, MovementTakesTheLargerSide) {
  // up 2 / down -1; both negative (inside); equal 1 / 1 (outside); down 3 over up 1.
  Bars bars{{0, 10, 5, 7}, {0, 12, 6, 8}, {0, 11, 7, 9}, {0, 12, 6, 9}, {0, 13, 3, 9}};
  Array plus, minus;
  ASSERT_EQ(qvDMIx(&bars, &plus, &minus, 0), 0);
  expectItems(plus, {0, 2, 0, 0, 0});
  expectItems(minus, {0, 0, 0, 0, 3});
  EXPECT_EQ(plus.firstValid, 1);
}

// Wilder's system written out as in his book, sums and all.
struct Wilder {
  std::vector<double> plus, minus, dx, adx;
  Wilder(const QvBars& b, int p, int q) {
    const int n = b.barsize;
    const auto count = static_cast<std::size_t>(n);
    plus.resize(count), minus.resize(count), dx.resize(count), adx.resize(count);
    const double *h = b.high.data, *l = b.low.data, *c = b.close.data;
    auto range = [&](int i) {
      return i == 0 ? h[0] - l[0]
                    : std::max({h[i] - l[i], std::fabs(h[i] - c[i - 1]), std::fabs(l[i] - c[i - 1])});
    };
    double sumPlus = 0, sumMinus = 0, sumRange = 0;
    for (int i = 0; i < n; ++i) {
      const auto k = static_cast<std::size_t>(i);
      const double up = i ? h[i] - h[i - 1] : 0, down = i ? l[i - 1] - l[i] : 0;
      const double dmPlus = up > down && up > 0 ? up : 0, dmMinus = down > up && down > 0 ? down : 0;
      sumRange += range(i) - (i >= p ? sumRange / p : 0);
      sumPlus += dmPlus - (i > p ? sumPlus / p : 0);
      sumMinus += dmMinus - (i > p ? sumMinus / p : 0);
      if (i < p) continue;
      plus[k] = 100 * sumPlus / sumRange;
      minus[k] = 100 * sumMinus / sumRange;
      dx[k] = plus[k] == minus[k] ? 0 : 100 * std::fabs(plus[k] - minus[k]) / (plus[k] + minus[k]);
      const int seeded = p + q - 1;
      if (i == seeded)
        for (int j = p; j <= i; ++j) adx[k] += dx[static_cast<std::size_t>(j)] / q;
      if (i > seeded) adx[k] = (adx[k - 1] * (q - 1) + dx[k]) / q;
    }
  }
};

TEST(Directional, AgreesWithWildersSystem) {
  const Bars& bars = spx();
  const int n = bars.barsize, p = 14, q = 10, lag = 5;
  const Wilder wanted(bars, p, q);
  Array plus, minus, dx, adx, adxr;
  ASSERT_EQ(qvDI(&bars, &plus, &minus, p, 0), 0);
  ASSERT_EQ(qvDX(&bars, &dx, p, 0), 0);
  ASSERT_EQ(qvADX(&bars, &adx, p, q, 0), 0);
  ASSERT_EQ(qvADXR(&bars, &adxr, p, q, lag, 0), 0);
  EXPECT_EQ(plus.firstValid, p);
  EXPECT_EQ(dx.firstValid, p);
  EXPECT_EQ(adx.firstValid, p + q - 1);
  EXPECT_EQ(adxr.firstValid, p + q + lag - 1);
  for (int i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    EXPECT_NEAR(plus[i], wanted.plus[k], 1e-9) << i;
    EXPECT_NEAR(minus[i], wanted.minus[k], 1e-9) << i;
    EXPECT_NEAR(dx[i], wanted.dx[k], 1e-9) << i;
    EXPECT_NEAR(adx[i], wanted.adx[k], 1e-9) << i;
    EXPECT_NEAR(adxr[i], i < adxr.firstValid ? 0 : (wanted.adx[k] + wanted.adx[k - lag]) / 2, 1e-9) << i;
  }
}

TEST(Directional, FlatAndShortData) {
  Bars flat(std::vector<Bar>(30, {5, 5, 5, 5}));
  Array plus, minus, dx;
  ASSERT_EQ(qvDI(&flat, &plus, &minus, 5, 0), 0);
  ASSERT_EQ(qvDX(&flat, &dx, 5, 0), 0);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(plus[i] + minus[i] + dx[i], 0.0);
  // Too short for the period: the partial sum of the movement stays at the last item.
  Bars rising{{0, 2, 1, 2}, {0, 4, 2, 3}, {0, 7, 3, 4}};
  ASSERT_EQ(qvDI(&rising, &plus, &minus, 5, 0), 0);
  expectItems(plus, {0, 0, 5});
  EXPECT_EQ(plus.firstValid, 5);
  // The first valid index of a used output must not delay its smoothing.
  Bars bars(walkBars(40));
  Array fresh, freshMinus, used, usedMinus;
  Array::fill(used, 40, 1.0);
  used.firstValid = 30;
  ASSERT_EQ(qvDI(&bars, &fresh, &freshMinus, 5, 0), 0);
  ASSERT_EQ(qvDI(&bars, &used, &usedMinus, 5, 0), 0);
  EXPECT_EQ(used.items(), fresh.items());
  EXPECT_EQ(qvADXR(&bars, &fresh, 5, 5, -1, 0), -1);
}

TEST(StopAndReverse, FollowsAndReverses) {
  // Long (10.5 above 10) with stop and extreme at the lower low, 9. Bar 2: high 13 beyond 9, so the
  // acceleration is 0.2 and the next stop 9 + 0.2 * (13 - 9) = 9.8. Bar 3: high 14, acceleration at
  // its maximum 0.3, 9.8 + 0.3 * (14 - 9.8) = 11.06, held at the low 11 of the bar before. Bar 4
  // closes on 11 and reverses: the short side's stop is the extreme 14, its own extreme the bar's high
  // 13.5, and the next stop 14 + 0.1 * (13.5 - 14) = 13.95, held at the high 14 of the bar before.
  Bars bars{{0, 11, 9, 10},  {0, 12, 10, 10.5}, {0, 13, 11, 12},
            {0, 14, 12, 13}, {0, 13.5, 10, 11}, {0, 12, 9, 10}};
  Array sar, direction;
  ASSERT_EQ(qvSAR(&bars, &sar, &direction, 0.1, 0.3, 0), 0);
  EXPECT_EQ(sar.firstValid, 2);
  expectItems(direction, {0, 0, 1, 1, -1, -1});
  expectItems(sar, {0, 0, 9, 9.8, 14, 14});
  Array turned, turnedDirection;
  Bars mirrored;
  qvCopyBars(&bars, &mirrored);
  for (int i = 0; i < 6; ++i) {
    mirrored.high.data[i] = -bars.low.data[i];
    mirrored.low.data[i] = -bars.high.data[i];
    mirrored.close.data[i] = -bars.close.data[i];
  }
  ASSERT_EQ(qvSAR(&mirrored, &turned, &turnedDirection, 0.1, 0.3, 0), 0);
  for (int i = 2; i < 6; ++i) {
    EXPECT_NEAR(turned[i], -sar[i], 1e-12);
    EXPECT_EQ(turnedDirection[i], -direction[i]);
  }
  Bars flat(std::vector<Bar>(3, {5, 6, 4, 5}));
  ASSERT_EQ(qvSAR(&flat, &sar, &direction, 0.02, 0.2, 0), 0);
  EXPECT_EQ(direction[2], -1.0) << "a flat second close starts short";
  EXPECT_EQ(sar[2], 6.0);
}

TEST(Aroon, CountsTheAgeOfExtremes) {
  Bars bars{{0, 5, 1, 0}, {0, 9, 2, 0}, {0, 9, 1, 0}, {0, 8, 3, 0}, {0, 7, 4, 0}};
  Array up, down, oscillator;
  ASSERT_EQ(qvAroon(&bars, &up, &down, 2, 0), 0);
  // The earlier of the two nines and of the two ones counts: ages 1, 2, 2 and 2, 1, 2.
  expectItems(up, {0, 0, 50, 0, 0});
  expectItems(down, {0, 0, 0, 50, 0});
  ASSERT_EQ(qvAroonOscillator(&bars, &oscillator, 2, 0), 0);
  expectItems(oscillator, {0, 0, 50, -50, 0});

  const Bars& prices = spx();
  ASSERT_EQ(qvAroon(&prices, up.fresh(), down.fresh(), 25, 3), 0);
  for (int i = 28; i < prices.barsize; ++i) {
    const double *h = prices.high.data, *l = prices.low.data;
    const auto highest = std::max_element(h + i - 25, h + i + 1) - h;
    const auto lowest = std::min_element(l + i - 25, l + i + 1) - l;
    EXPECT_EQ(up[i], (25.0 - static_cast<double>(i - highest)) / 25 * 100);
    EXPECT_EQ(down[i], (25.0 - static_cast<double>(i - lowest)) / 25 * 100);
  }
}

TEST(VerticalHorizontalFilter, RangeOverRelativeChanges) {
  // Relative changes 1/2, 1/4, 1/5, then 1/2 down; ranges of the last two items 0.75, 0.75, 2.25.
  Array in{2, 3, 3.75, 4.5, 2.25}, out;
  ASSERT_EQ(qvVHF(&in, &out, 2, 0), 0);
  expectItems(out, {0, 0, 0.75 / 0.75, 0.75 / 0.45, 2.25 / 0.7});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvVHF(&in, &out, 9, 0), 0);  // its only value at the last bar, over the bars that exist
  expectItems(out, {0, 0, 0, 0, 2.25 / (0.5 + 0.25 + 0.2 + 0.5)});
  Array zero{0, 0, 0, 1, 1, 1, 1};
  ASSERT_EQ(qvVHF(&zero, &out, 1, 0), 0);
  EXPECT_TRUE(std::isnan(out[1])) << "0 / 0 is not guarded while seeding";
}

TEST(RandomWalkIndex, TakesTheBestOfItsLookBacks) {
  Bars bars(walkBars(80));
  const double *h = bars.high.data, *l = bars.low.data, *c = bars.close.data;
  const int p = 6, s = 2;
  Array high, low;
  ASSERT_EQ(qvRWI(&bars, &high, &low, p, s), 0);
  EXPECT_EQ(high.firstValid, s + p);
  auto range = [&](int i) { return i > s ? std::max(h[i] - l[i], c[i - 1] - l[i]) : h[i] - l[i]; };
  for (int i = s + p; i < 80; ++i) {
    double bestHigh = 0, bestLow = 0;
    for (int j = 1; j < p; ++j) {
      double mean = 0;
      for (int k = i - j - 1; k < i; ++k) mean += range(k) / (j + 1);
      bestHigh = std::max(bestHigh, (h[i] - l[i - j]) / (std::sqrt(j + 1.0) * mean));
      bestLow = std::max(bestLow, (h[i - j] - l[i]) / (std::sqrt(j + 1.0) * mean));
    }
    EXPECT_NEAR(high[i], bestHigh, 1e-12) << i;
    EXPECT_NEAR(low[i], bestLow, 1e-12) << i;
  }
  Bars flat(std::vector<Bar>(10, {5, 5, 5, 5}));
  ASSERT_EQ(qvRWI(&flat, &high, &low, 3, 0), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(high[i] + low[i], 0.0);
}

TEST(ZigZag, DrawsLinesBetweenSwings) {
  // Swings of ten percent: up to 12, down to 9, then the last leg to the last bar.
  Array in{10, 11, 12, 11.5, 10, 9, 10, 9.8}, out;
  ASSERT_EQ(qvZigZag(&in, &out, 10.0, 1, 0), 0);
  expectItems(out, {10, 11, 12, 11, 10, 9, 9.4, 9.8});
  Array fraction;
  ASSERT_EQ(qvZigZag(&in, &fraction, 0.1, 0, 0), 0);
  EXPECT_EQ(fraction.items(), out.items());
  EXPECT_EQ(out.firstValid, 0);
}

TEST(SwingIndex, WeighsTheMoveAgainstTheLimit) {
  // Bar 1: A = 4, B = 0, D = 1, G = 4: R = 4 - 0 + 0.25; change 3 + 0.5 * 2 + 0.25 * 1 = 4.25;
  // 4.25 / 4.25 * 50 * 4 / 8 = 25. Bar 2: A = 1, B = 5, D = 2, G = 4 (gap down): R = 5 - 0.5 + 0.5 = 5;
  // change -4 + 0.5 * (-1) + 0.25 * 2 = -4; -4 / 5 * 50 * 5 / 8 = -25.
  Bars bars{{9, 11, 8, 10}, {11, 14, 10, 13}, {10, 12, 8, 9}};
  Array out;
  ASSERT_EQ(qvSwingIndex(&bars, &out, 8.0, 0), 0);
  expectItems(out, {0, 25, -25});
  ASSERT_EQ(qvAccumSwingIndex(&bars, &out, 8.0, 0), 0);
  expectItems(out, {0, 25, 0});
  EXPECT_EQ(out.firstValid, 1);
  Bars flat(std::vector<Bar>(3, {5, 5, 5, 5}));
  ASSERT_EQ(qvSwingIndex(&flat, &out, 8.0, 0), 0);
  expectItems(out, {0, 0, 0});
}

TEST(TrendScore, CountsTiesAsRises) {
  Array in{5, 5, 6, 4, 3, 7}, out;
  ASSERT_EQ(qvTrendScore(&in, &out, 3, 0), 0);
  expectItems(out, {0, 0, 0, 1, -1, -1});  // + + - | + - - | - - +
  EXPECT_EQ(out.firstValid, 3);
  ASSERT_EQ(qvTrendScore(&in, &out, 9, 1), 0);
  expectItems(out, {0, 0, 0, 0, 0, 0});  // + - - + of the bars that exist
}

TEST(DynamicMomentum, ShortensItsLookBack) {
  Array flat(std::vector<double>(40, 7.0)), out;
  ASSERT_EQ(qvDMI(&flat, &out, 0), 0);
  EXPECT_EQ(out.firstValid, 30);
  for (int i = 0; i < 40; ++i) EXPECT_EQ(out[i], 0.0);

  // Equal look-backs give equal values: here every deviation is the same.
  std::vector<double> periodic;
  for (int i = 0; i < 60; ++i)
    periodic.push_back(std::vector<double>{1, 4, 2, 5, 3}[static_cast<std::size_t>(i % 5)]);
  Array waves(periodic);
  ASSERT_EQ(qvDMI(&waves, out.fresh(), 0), 0);
  for (int i = 35; i < 60; ++i) EXPECT_NEAR(out[i], out[i - 5], 1e-12) << i;

  const std::vector<double> x = shaped(Shape::Walk, 120);
  Array in(x, 4), index;
  ASSERT_EQ(qvDMI(&in, &index, 0), 0);
  EXPECT_EQ(index.firstValid, 34);
  for (int i = 34; i < 120; ++i) {
    double mean = 0;
    for (int j = i - 9; j <= i; ++j) mean += qvStdDev(&in, 1, j - 4, j) / 10;
    const int t = std::clamp(static_cast<int>(std::floor(14 / (qvStdDev(&in, 1, i - 4, i) / mean))), 3, 30);
    double up = 0, all = 0;
    for (int j = i - t + 1; j <= i; ++j) {
      up += std::max(in[j] - in[j - 1], 0.0);
      all += std::fabs(in[j] - in[j - 1]);
    }
    EXPECT_NEAR(index[i], 100 * up / all, 1e-9) << i;
  }
}

}  // namespace
}  // namespace qvtest
