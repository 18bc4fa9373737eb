// Volume and money flow.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct OnBalance : testing::Test {
  Bars bars{closingAt({5, 6, 6, 4, 5}, {100, 10, 20, 30, 40})};
  Array out, second, third;
  OnBalance() {
    for (int i = 0; i < 5; ++i) bars.openInterest.data[i] = 10 * bars.volume.data[i];
  }
};

TEST_F(OnBalance, OBV) {
  expectGives(qvOBV(&bars, &out, 0), out, {0, 10, 10, -20, 20}, 1);
}

TEST_F(OnBalance, OBVolMv) {
  expectGives(qvOBVolMv(&bars, &out, 2, 0), out, {0, 0, 10, -30, 10}, 2);  // two changes
}

TEST_F(OnBalance, OBOiMv) {
  // The first bar's interest, then one change.
  expectGives(qvOBOiMv(&bars, &out, 2, 0), out, {0, 1100, 100, -100, 700}, 1);
  expectGives(qvOBOiMv(&bars, &out, 1, 2), out, {0, 0, 200, 300, 400}, 2);
}

TEST_F(OnBalance, OBVol) {
  EXPECT_EQ(qvOBVol(&bars, 1, 3), -30);
  EXPECT_EQ(qvOBVol(&bars, -5, 1000), 20);
  EXPECT_EQ(qvOBVol(&bars, INT_MAX, INT_MAX), 0);
  EXPECT_EQ(qvOBVol(nullptr, 0, 1), 0);
}

TEST_F(OnBalance, OBOi) {
  EXPECT_EQ(qvOBOi(&bars, 1, 3), 100 - 300);
  EXPECT_EQ(qvOBOi(&bars, 5, 70), 0);
  EXPECT_EQ(qvOBOi(nullptr, 0, 1), 0);
}

TEST_F(OnBalance, OBVolExp) {
  // Swings are known p bars later. Unit volumes: on balance the closes walk 0 1 2 1 0 1 2 3 2 1 2 3 4 with
  // swings, at strength 2, of high 2 (known at bar 4), low 0 (6), high 3 (9) - the newer high above the
  // older: up -, low 1 (11).
  const Items walk{0, 1, 2, 1, 0, 1, 2, 3, 2, 1, 2, 3, 4};
  const Bars swings(closingAt(walk, Items(13, 1.0)));
  expectGives(qvOBVolExp(&swings, &out, &second, &third, 2, 0), out, walk, 1);
  // Bars 6 and 7 reach or pass the high 2, bars 11 and 12 the high 3; bar 6 records the low 0 only.
  expectGives(0, second, {0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 1, 1}, 1);
  expectGives(0, third, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1}, 1);
  // Upside down every sign turns.
  const Items low{0, -1, -2, -1, 0, -1, -2, -3, -2, -1, -2, -3, -4};
  const Bars turned(closingAt(low, Items(13, 1.0)));
  expectGives(qvOBVolExp(&turned, &out, &second, &third, 2, 0), out, low, 1);
  expectGives(0, second, {0, 0, 0, 0, 0, 0, -1, -1, -1, 0, 0, -1, -1}, 1);
  expectGives(0, third, {0, 0, 0, 0, 0, 0, 0, 0, 0, -1, -1, -1, -1}, 1);
}

struct Accumulation : testing::Test {
  // At the low -100, three quarters up 0.5 * 40, flat after a fall -30, flat and unchanged +20.
  Bars bars{{0, 10, 8, 8, 100}, {0, 12, 8, 11, 40}, {0, 9, 9, 9, 30}, {0, 9, 9, 9, 20}};
  Array out;
};

TEST_F(Accumulation, AccumDist) {
  expectGives(qvAccumDist(&bars, &out, 0), out, {-100, -80, -110, -90}, 0);
  expectGives(qvAccumDist(&bars, &out, 2), out, {0, 0, 30, 50}, 2);  // no previous close at the start
}

TEST_F(Accumulation, ChaikinMoneyFlow) {
  expectNear(qvChaikinMoneyFlow(&bars, &out, 2, 0), out, {0, -80.0 / 140, -10.0 / 70, -10.0 / 50}, 1);
  for (int i = 0; i < 4; ++i) bars.volume.data[i] = 0.0;
  expectGives(qvChaikinMoneyFlow(&bars, &out, 2, 0), out, {0, 0, 0, 0}, 1);
}

TEST_F(Accumulation, ChaikinOscillator) {
  // Lines -100 -80 -110 -90: with k = 1 the line, with k = 1/2 -100 -90 -100 -95.
  expectGives(qvChaikinOscillator(&bars, &out, 1, 3, 0), out, {0, 10, -10, 5}, 0);
}

TEST_F(Accumulation, ChaikinVolatility) {
  // Heights 1, 3, 5 with k = 1/2 (p = 3): averages 1, 2, 3.5, 3.5: after 3 bars 250 percent up.
  const Bars heights{{0, 1, 0, 0}, {0, 3, 0, 0}, {0, 5, 0, 0}, {0, 3.5, 0, 0}};
  expectNear(qvChaikinVolatility(&heights, &out, 3, 0), out, {0, 0, 0, 250}, 3);
}

TEST_F(Accumulation, Accumulate) {
  const Array in({7, 1, 2, 3}, 1);
  expectGives(qvAccumulate(&in, &out, 0), out, {0, 1, 3, 6}, 1);
}

struct Volume : testing::Test {
  const Bars four{closingAt({10, 12, 9, 9}, {100, 50, 60, 60})};
  // Bar 1: midpoint 12, less high 11 plus low 9 = 10; box 40 / 2 = 20: 0.5. Bar 2: flat: 0 (40 / 0 is
  // infinite, the quotient 0). Bar 3: no volume: 0. By midpoints 10 to 12 over (40 / 10) / 2.
  const Bars boxes{{0, 11, 9, 0, 30}, {0, 13, 11, 0, 40}, {0, 12, 12, 0, 40}, {0, 13, 11, 0}, {0, 13, 13, 0}};
  Array out, second;
};

TEST_F(Volume, MoneyFlowIndex) {
  // Typical prices 10 11 9 9 12, volumes 1 to 5. p = 2: bars 1, 2: +22 -27; bars 2, 3: -27; bars 3, 4: +60.
  const Bars prices(closingAt({10, 11, 9, 9, 12}, {1, 2, 3, 4, 5}));
  const double first = 100 - 100 / (22.0 / 27 + 1);
  expectNear(qvMoneyFlowIndex(&prices, &out, 2, 0), out, {0, 0, first, 0, 0},
             2);  // only rises: 0, not 100
  expectNear(qvMoneyFlowIndex(&prices, &out, 9, 0), out, {0, 0, 0, 0, 100 - 100 / (82.0 / 27 + 1)}, 9);
  // What the window has passed, a fall of a huge volume or one that is no number, is forgotten.
  for (const double wild : {1e25, std::nan("")}) {
    const Bars passed(closingAt({10, 9, 10, 11, 12}, {1, wild, 2, 3, 4}));
    EXPECT_EQ(qvMoneyFlowIndex(&passed, out.fresh(), 2, 0), 0);
    EXPECT_EQ(out.data[3], 0);
    EXPECT_EQ(out.data[4], 0);
  }
}

TEST_F(Volume, TotalsStayWhereNothingIsAdded) {
  Items closes, volumes;
  for (int i = 0; i < 50; ++i) {
    closes.push_back(10 + std::sin(0.3 * i));
    volumes.push_back(i % 3 ? 7.0 + i : 1.0);
  }
  const Bars bars(closingAt(closes, volumes));
  EXPECT_EQ(qvPVI(&bars, &out, 0), 0);
  for (std::size_t i = 1; i < closes.size(); ++i)
    EXPECT_EQ(out.data[i] == out.data[i - 1], volumes[i] <= volumes[i - 1]) << i;
}

TEST_F(Volume, MFI) {
  // The mean of the non-zero volumes is 5; heights 2 and 4.
  const Bars tall{{0, 3, 1, 2, 4}, {0, 5, 1, 2, 6}, {0, 5, 1, 2, 0}};
  expectNear(qvMFI(&tall, &out, 0), out, {2.5, 4 * 5.0 / 6, 0}, 0);
}

TEST_F(Volume, PVT) {
  expectNear(qvPVT(&four, &out, 0), out, {0, 10, -5, -5}, 1);  // 2 * 50 / 10, -3 * 60 / 12
}

TEST_F(Volume, NVI) {
  expectNear(qvNVI(&four, &out, 0), out, {0, 0.2, 0.2, 0.2}, 1);
}

TEST_F(Volume, PVI) {
  expectNear(qvPVI(&four, &out, 0), out, {0, 0, -0.25, -0.25}, 1);
}

TEST_F(Volume, ForceIndex) {
  // Averages with k = 1/2 (p = 3): 10, 11, 10, 9.5.
  expectNear(qvForceIndex(&four, &out, 3, 0), out, {0, 50, -60, -30}, 1);
}

TEST_F(Volume, EMV) {
  expectGives(qvEMV(&boxes, &out, 2, 1, 0), out, {0, 0.5, 0, 0, 0}, 1);
  // A period that does not fit is judged before the method.
  EXPECT_EQ(qvEMV(&four, &out, 99, 4, 0), 4);
  EXPECT_EQ(qvEMV(&four, &out, 99, 3, 0), -1);
}

TEST_F(Volume, ArmsEMV) {
  expectGives(qvArmsEMV(&boxes, &out, 10, 0), out, {0, 1, 0, 0, 0}, 1);
}

TEST_F(Volume, HerrickPayoffIndex) {
  // Bar 1: 100 * 2 * (2 * 10 / 40 + 1) * 1 = 300; bar 2: 100 * 1 * (0 + 1) * -1 = -100, smoothed by a
  // quarter: 300 + (-100 - 300) / 4 = 200; bar 3: no open interest: stays.
  const Bars futures{{0, 2, 0, 1, 9, 40}, {0, 3, 1, 2, 2, 50}, {0, 2, 0, 1, 1, 50}, {0, 2, 0, 1, 1, 0}};
  expectNear(qvHerrickPayoffIndex(&futures, &out, 100, 0.25, 0), out, {0, 300, 200, 200}, 1);
}

TEST_F(Volume, VOSC) {
  const Array in{2, 4, 6, 0, 0};  // ratios: the one-bar average less the two-bar average of the bar before
  expectNear(qvVOSC(&in, &out, 1, 2, 2, 0), out, {0, 0, (6 - 3) * 100.0 / 6, 0, 0}, 2);
  // A series that is valid late: its second average is 0.0 until it is complete, whatever its period.
  Array late{0, 0, 0, 0, 0, 0, 50, 50, 50, 50, 50, 50}, lateOut(Items(12, 7.0));
  late.firstValid = 6;
  expectNear(qvVOSC(&late, &lateOut, 2, 4, 2, 0), lateOut, {0, 0, 0, 0, 0, 0, 0, 100, 100, 100, 0, 0}, 4);
  EXPECT_EQ(qvVOSC(&four.close, &out, 1, 4, 99, 0), 4);
  EXPECT_EQ(qvVOSC(&four.close, &out, 1, 3, 99, 0), -1);
}

TEST_F(Volume, VR) {
  // p = 2: 10 / 20; (0 + 15) / (20 + 15); 15 / (15 + 40). A flat market reads 100.
  const Bars moves(closingAt({5, 6, 4, 4, 3}, {9, 10, 20, 30, 40}));
  const Bars flat(closingAt(Items(4, 5.0), {9, 10, 20, 30}));
  expectNear(qvVR(&moves, &out, 2, 0), out, {0, 0, 50, 1500.0 / 35, 1500.0 / 55}, 2);
  expectGives(qvVR(&flat, &second, 2, 0), second, {0, 0, 100, 100}, 2);
}

}  // namespace
}  // namespace qvtest
