// Volume and money flow.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

// Closes with their volumes and open interests; bars one point high around the close.
Bars* closesAndVolumes(Bars& out, const std::vector<double>& closes, const std::vector<double>& volumes) {
  qvAllocBars(&out, static_cast<int>(closes.size()));
  for (int i = 0; i < out.barsize; ++i) {
    const auto k = static_cast<std::size_t>(i);
    out.close.data[i] = closes[k];
    out.high.data[i] = closes[k] + 0.5;
    out.low.data[i] = closes[k] - 0.5;
    out.volume.data[i] = volumes[k];
    out.openInterest.data[i] = 10 * volumes[k];
  }
  return &out;
}

TEST(OnBalance, AddsRisesAndSubtractsFalls) {
  Bars bars;
  closesAndVolumes(bars, {5, 6, 6, 4, 5}, {100, 10, 20, 30, 40});
  Array out;
  ASSERT_EQ(qvOBV(&bars, &out, 0), 0);
  expectItems(out, {0, 10, 10, -20, 20});
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvOBVolMv(&bars, &out, 2, 0), 0);  // two changes
  expectItems(out, {0, 0, 10, -30, 10});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvOBOiMv(&bars, &out, 2, 0), 0);  // the first bar's interest, then one change
  expectItems(out, {0, 1100, 100, -100, 700});
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvOBOiMv(&bars, &out, 1, 2), 0);
  expectItems(out, {0, 0, 200, 300, 400});
}

TEST(OnBalance, StretchesAgreeWithMovingForms) {
  Bars bars(walkBars(60));
  Array volume, interest;
  ASSERT_EQ(qvOBVolMv(&bars, &volume, 7, 3), 0);
  ASSERT_EQ(qvOBOiMv(&bars, &interest, 7, 3), 0);
  for (int i = 10; i < 60; ++i) EXPECT_EQ(volume[i], qvOBVol(&bars, i - 7, i));
  for (int i = 9; i < 60; ++i) EXPECT_EQ(interest[i], qvOBOi(&bars, i - 6, i));
  EXPECT_EQ(qvOBVol(&bars, 50, 1000), qvOBVol(&bars, 50, 59));
  EXPECT_EQ(qvOBVol(&bars, -5, 3), qvOBVol(&bars, 0, 3));
  EXPECT_EQ(qvOBOi(&bars, 60, 70), 0.0);
  EXPECT_EQ(qvOBVol(&bars, 2147483647, 2147483647), 0.0);
  EXPECT_EQ(qvOBVol(nullptr, 0, 1) + qvOBOi(nullptr, 0, 1), 0.0);
}

TEST(OnBalance, SwingsAreKnownPBarsLater) {
  // Unit volumes: on balance the closes walk 0 1 2 1 0 1 2 3 2 1 2 3 4 with swings, at strength 2, of
  // high 2 (known at bar 4), low 0 (6), high 3 (9) - the newer high above the older: up -, low 1 (11).
  const std::vector<double> walk = {0, 1, 2, 1, 0, 1, 2, 3, 2, 1, 2, 3, 4};
  Bars bars;
  closesAndVolumes(bars, walk, std::vector<double>(walk.size(), 1.0));
  Array volume, breakout, trend;
  ASSERT_EQ(qvOBVolExp(&bars, &volume, &breakout, &trend, 2, 0), 0);
  expectItems(volume, walk);
  // Bars 6 and 7 reach or pass the high 2, bars 11 and 12 the high 3; bar 6 records the low 0 only.
  expectItems(breakout, {0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 1, 1});
  expectItems(trend, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1});
  for (const Array* out : {&volume, &breakout, &trend}) EXPECT_EQ(out->firstValid, 1);

  // Nothing uses bars after its own: a longer history changes no earlier value.
  Bars all(walkBars(200)), part(walkBars(150));
  Array v1, b1, t1, v2, b2, t2;
  ASSERT_EQ(qvOBVolExp(&all, &v1, &b1, &t1, 3, 5), 0);
  ASSERT_EQ(qvOBVolExp(&part, &v2, &b2, &t2, 3, 5), 0);
  for (int i = 0; i < 150; ++i) {
    EXPECT_EQ(b1[i], b2[i]);
    EXPECT_EQ(t1[i], t2[i]);
  }
}

TEST(Accumulation, WeighsVolumeByTheCloseInItsBar) {
  // At the low -100, three quarters up 0.5 * 40, flat after a fall -30, flat and unchanged +20.
  Bars bars{{0, 10, 8, 8, 100}, {0, 12, 8, 11, 40}, {0, 9, 9, 9, 30}, {0, 9, 9, 9, 20}};
  Array out;
  ASSERT_EQ(qvAccumDist(&bars, &out, 0), 0);
  expectItems(out, {-100, -80, -110, -90});
  ASSERT_EQ(qvAccumDist(&bars, &out, 2), 0);
  EXPECT_EQ(out[2], 30.0) << "the first bar asked for has no previous close";
  ASSERT_EQ(qvChaikinMoneyFlow(&bars, &out, 2, 0), 0);
  expectItems(out, {0, -80.0 / 140, -10.0 / 70, -10.0 / 50});
  EXPECT_EQ(out.firstValid, 1);
  for (int i = 0; i < 4; ++i) bars.volume.data[i] = 0.0;
  ASSERT_EQ(qvChaikinMoneyFlow(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 0, 0, 0});

  Array in({7, 1, 2, 3}, 1);
  ASSERT_EQ(qvAccumulate(&in, &out, 0), 0);
  expectItems(out, {0, 1, 3, 6});
  EXPECT_EQ(out.firstValid, 1);
}

TEST(Accumulation, ChaikinAverages) {
  Bars bars(walkBars(50));
  Array line, fast, slow, out;
  qvAccumDist(&bars, &line, 4);
  qvExpMA(&line, &fast, 3, 4);
  qvExpMA(&line, &slow, 10, 4);
  ASSERT_EQ(qvChaikinOscillator(&bars, &out, 3, 10, 4), 0);
  EXPECT_EQ(out.firstValid, 4);
  for (int i = 4; i < 50; ++i) EXPECT_EQ(out[i], fast[i] - slow[i]);

  // Heights 1, 3, 5 with k = 1/2 (p = 3): averages 1, 2, 3.5, 3.5: after 3 bars 250 percent up.
  Bars heights{{0, 1, 0, 0}, {0, 3, 0, 0}, {0, 5, 0, 0}, {0, 3.5, 0, 0}};
  ASSERT_EQ(qvChaikinVolatility(&heights, &out, 3, 0), 0);
  expectItems(out, {0, 0, 0, 250});
  EXPECT_EQ(out.firstValid, 3);
}

TEST(MoneyFlow, Index) {
  // Typical prices 10 11 9 9 12, volumes 1 2 3 4 5. p = 2: bars 1, 2: +22 -27; bars 2, 3: -27; bars 3, 4:
  // +60.
  Bars bars{{0, 10, 10, 10, 1}, {0, 11, 11, 11, 2}, {0, 9, 9, 9, 3}, {0, 9, 9, 9, 4}, {0, 12, 12, 12, 5}};
  Array out;
  ASSERT_EQ(qvMoneyFlowIndex(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 0, 100 - 100 / (22.0 / 27 + 1), 0, 0});  // only rises: 0, not 100
  ASSERT_EQ(qvMoneyFlowIndex(&bars, &out, 9, 0), 0);
  expectItems(out, {0, 0, 0, 0, 100 - 100 / (82.0 / 27 + 1)});
  EXPECT_EQ(out.firstValid, 9);
  // Facilitation: the mean of the non-zero volumes is 5; heights 2 and 4.
  Bars heights{{0, 3, 1, 2, 4}, {0, 5, 1, 2, 6}, {0, 5, 1, 2, 0}};
  ASSERT_EQ(qvMFI(&heights, &out, 0), 0);
  expectItems(out, {2.5, 4 * 5.0 / 6, 0});
}

TEST(PriceAndVolume, RunningSums) {
  Bars bars;
  closesAndVolumes(bars, {10, 12, 9, 9}, {100, 50, 60, 60});
  Array out;
  ASSERT_EQ(qvPVT(&bars, &out, 0), 0);
  expectItems(out, {0, 10, -5, -5});  // 2 * 50 / 10, -3 * 60 / 12
  ASSERT_EQ(qvNVI(&bars, &out, 0), 0);
  expectItems(out, {0, 0.2, 0.2, 0.2});
  ASSERT_EQ(qvPVI(&bars, &out, 0), 0);
  expectItems(out, {0, 0, -0.25, -0.25});
  // Averages with k = 1/2 (p = 3): 10, 11, 10, 9.5.
  ASSERT_EQ(qvForceIndex(&bars, &out, 3, 0), 0);
  expectItems(out, {0, 50, -60, -30});
  EXPECT_EQ(out.firstValid, 1);
}

TEST(PriceAndVolume, PeriodsThatDoNotFitReturnTheNumberOfBars) {
  Bars bars;
  closesAndVolumes(bars, {10, 12, 9, 9}, {100, 50, 60, 60});
  Array out, in{1, 2, 3, 4};
  EXPECT_EQ(qvForceIndex(&bars, &out, 4, 0), 4);
  EXPECT_EQ(qvEMV(&bars, &out, 99, 4, 0), 4) << "the period is judged before the method";
  EXPECT_EQ(qvEMV(&bars, &out, 99, 3, 0), -1);
  EXPECT_EQ(qvVR(&bars, &out, 4, 0), 4);
  EXPECT_EQ(qvVOSC(&in, &out, 1, 4, 99, 0), 4);
  EXPECT_EQ(qvVOSC(&in, &out, 1, 3, 99, 0), -1);
  expectItems(out, {0, 0, 0, 0});
}

TEST(PriceAndVolume, EaseOfMovement) {
  // Bar 1: midpoint 12, less high 11 plus low 9 = 10; box 40 / 2 = 20: 0.5. Bar 2: flat: 0 (40 / 0 is
  // infinite, the quotient 0). Bar 3: no volume: 0.
  Bars bars{
      {0, 11, 9, 10, 30}, {0, 13, 11, 12, 40}, {0, 12, 12, 12, 40}, {0, 13, 11, 12, 0}, {0, 13, 13, 13, 0}};
  Array out;
  ASSERT_EQ(qvEMV(&bars, &out, 2, 1, 0), 0);
  expectItems(out, {0, 0.5, 0, 0, 0});
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvArmsEMV(&bars, &out, 10, 0), 0);  // midpoint 10 to 12 over (40 / 10) / 2
  expectItems(out, {0, 1, 0, 0, 0});
}

TEST(PriceAndVolume, HerrickPayoff) {
  // Bar 1: 100 * 2 * (2 * 10 / 40 + 1) * 1 = 300; bar 2: 100 * 1 * (0 + 1) * -1 = -100, smoothed by a
  // quarter: 300 + (-100 - 300) / 4 = 200; bar 3: no open interest: stays.
  Bars bars{{0, 2, 0, 1, 9, 40}, {0, 3, 1, 2, 2, 50}, {0, 2, 0, 1, 1, 50}, {0, 2, 0, 1, 1, 0}};
  Array out;
  ASSERT_EQ(qvHerrickPayoffIndex(&bars, &out, 100, 0.25, 0), 0);
  expectItems(out, {0, 300, 200, 200});
}

TEST(PriceAndVolume, Ratios) {
  Array in{2, 4, 6, 0, 0}, out;
  // One-bar average less the two-bar average of the bar before.
  ASSERT_EQ(qvVOSC(&in, &out, 1, 2, 2, 0), 0);
  expectItems(out, {0, 0, (6 - 3) * 100.0 / 6, 0, 0});
  EXPECT_EQ(out.firstValid, 2);

  Bars bars;
  closesAndVolumes(bars, {5, 6, 4, 4, 3}, {9, 10, 20, 30, 40});
  // p = 2: 10 / 20; (0 + 15) / (20 + 15); 15 / (15 + 40).
  ASSERT_EQ(qvVR(&bars, &out, 2, 0), 0);
  expectItems(out, {0, 0, 50, 15 * 100.0 / 35, 15 * 100.0 / 55});
  Bars flat;
  closesAndVolumes(flat, {5, 5, 5, 5}, {9, 10, 20, 30});
  ASSERT_EQ(qvVR(&flat, &out, 2, 0), 0);
  expectItems(out, {0, 0, 100, 100});
}

}  // namespace
}  // namespace qvtest
