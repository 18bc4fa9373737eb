// Strength indices, rates of change, differences of averages and smoothed changes, on numbers worked
// out by hand and against plain loops over the S&P 500.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

struct Momentum : testing::Test {
  Array out, second, third, fourth, fifth;
};

TEST_F(Momentum, StrengthWeighsRisesAgainstFalls) {
  // Moves 6 -2 2 -1. Seed: up 6/2, down 2/2. Then up (3+2)/2, down 1/2; up 2.5/2, down (0.5+1)/2.
  const Array in({99, 10, 16, 14, 16, 15}, 1), of2{10, 11, 16, 9, 16, 17}, few{10, 16, 14};
  expectNear(qvRSI(&in, &out, 2, 0), out, {0, 0, 0, 75, 250.0 / 3, 62.5}, 3);
  expectGives(qvUpAverage(&in, &out, 2, 0), out, {0, 0, 0, 3, 2.5, 1.25}, 3);
  expectGives(qvDownAverage(&in, &out, 2, 0), out, {0, 0, 0, 1, 0.5, 0.75}, 3);
  expectNear(qvStochRSI(&in, &out, 2, 0), out, {0, 0, 0, 0, 100, 0}, 4);
  // Moves of two bars: 6 -2 0 8. An unmoved bar lets both averages shrink alike.
  expectNear(qvRMI(&of2, &out, 2, 2, 0), out, {0, 0, 0, 75, 75, 95}, 3);
  // A series that is too short has one value at its end; the averages divide by the moves that exist.
  expectNear(qvRSI(&few, &second, 5, 0), second, {0, 0, 75}, 5);
  expectGives(qvUpAverage(&few, &second, 5, 0), second, {0, 0, 3}, 5);
  expectGives(qvDownAverage(&few, &second, 5, 0), second, {0, 0, 1}, 5);
  // A market that stands still has no strength, but its range is flat too, which reads fully overbought.
  const Array flat(Items(11, 42.125));
  for (auto f : {qvRSI, qvUpAverage, qvDownAverage, qvMomentum})
    expectGives(f(&flat, third.fresh(), 5, 0), third, Items(11, 0.0), 5);
  expectGives(qvTSI(&flat, &third, 5, 3, 0), third, Items(11, 0.0), 1);
  expectGives(qvStochRSI(&flat, &third, 5, 0), third, {0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 100}, 9);
}

TEST_F(Momentum, RatesCompareWithThePast) {
  const Array in({7, 4, 0, 5, 3}, 1), wild{1, kNaN, 3}, early({1, 2, 3}, -5), empty;
  expectGives(qvMomentum(&in, &out, 2, 0), out, {0, 0, 0, 1, 3}, 3);
  expectGives(qvRateOfChange(&in, &out, 100, 2, 0), out, {0, 0, 0, 25, 0}, 3);  // base 0 reads 0
  expectGives(qvRateOfChange(&in, &out, -1, 2, 0), out, {0, 0, 0, -0.25, 0}, 3);
  EXPECT_FALSE(std::signbit(out[4]));
  EXPECT_EQ(qvROC(&in, 3, 2, 100), 25);
  EXPECT_EQ(qvROC(&in, 4, 2, 100), 0);  // zero base
  EXPECT_EQ(qvROC(&in, 4, 2, 0), 3);    // the plain difference needs no base
  EXPECT_EQ(qvROC(&in, 2, 2, 1), 0);    // base below the first valid index
  EXPECT_EQ(qvROC(&wild, 2, 1, 1), 0);
  EXPECT_TRUE(std::isnan(qvROC(&wild, 2, 1, 0)));
  for (int index : {INT_MIN, -1, 0, 3, INT_MAX})
    for (int p : {INT_MIN, -1, 0, 1, 3, INT_MAX})
      for (const Array* x : {&early, &empty}) EXPECT_EQ(qvROC(x, index, p, 1), 0);
  EXPECT_EQ(qvROC(nullptr, 0, 0, 1), 0);
  const Array a({6, 6, 6, 6}, 1), b({4, 3, 0, 2}, 3);  // the start of the second does not count
  expectGives(qvRatio(&a, &b, &second, 0), second, {0, 2, 0, 3}, 1);
  // Relative strength from bar 1 on: 2 3 7.5.
  const Bars one(closingAt({5, 8, 12, 30}, {}, {1, 2, 3, 4})), two(closingAt({4, 4, 4}, {}, {2, 3, 4}));
  expectGives(qvRSIC(&one, &two, &second, 1, 0), second, {0, 0, 0.5, 1.5}, 2);
  expectGives(qvRSIC(&one, &two, &second, 1, 9), second, Items(4, 0.0));  // no bar after the start date
}

TEST_F(Momentum, SmoothedSeriesAndChanges) {
  // The smoothings are fixed: e1 100 115 127.75, e2 100 107.5 114.4375.
  const Array in({1, 100, 200, 200}, 1), x{8, 16, 4, 20, 4, 24};
  expectNear(qvMACD(&in, &out, &second, 3, 0), out, {0, 0, 7.5, 13.3125}, 2);
  expectNear(0, second, {0, 0, 7.5, 10.40625}, 2);
  // Here they are free: 1 and 3, in either order. A crossing on the last bar does not count.
  for (const auto& [p1, p2] : {std::pair{1, 3}, std::pair{3, 1}}) {
    const int status = qvMACDx(&x, out.fresh(), second.fresh(), &third, &fourth, &fifth, p1, p2, 3, 0);
    expectGives(status, out, x.items(), 0);
    expectGives(status, second, {8, 12, 8, 14, 9, 16.5}, 0);
    expectGives(status, third, {0, 4, -4, 6, -5, 7.5}, 0);
    expectGives(status, fourth, {0, 4, 0, 3, -1, 3.25}, 1);
    expectGives(status, fifth, {0, 0, 0, 1, -1, 0}, 1);
  }
  const Array late({99, 8, 16, 16}, 1), zeros{0, 0, 8};  // triple average 8 9 10.5
  expectNear(qvTRIX(&late, out.fresh(), 3, 0), out, {0, 0, 100.0 / 9, 150 / 10.5}, 2);
  expectGives(qvTRIX(&zeros, fourth.fresh(), 3, 0), fourth, {0, kNaN, 100}, 1);  // not guarded
  // Moves 4 -2 0.5: smoothed 4 1 0.75 over 4 3 1.75; and smoothed again 4 2.5 1.625 over 4 3.5 2.625.
  const Array moved({99, 0, 4, 2, 2.5}, 1);
  expectNear(qvTSI(&moved, fifth.fresh(), 3, 1, 0), fifth, {0, 0, 1, 1.0 / 3, 0.75 / 1.75}, 2);
  expectNear(qvTSI(&moved, &fifth, 3, 3, 0), fifth, {0, 0, 1, 2.5 / 3.5, 1.625 / 2.625}, 2);
}

TEST_F(Momentum, OscillatorsBeginWithTheLongerAverage) {
  const Array a({9, 0, 4, 4, -3}, 1), b{9, 5, 2, 0, 2}, late(shaped(Shape::Walk, 40), 4);
  expectGives(qvOscillator(&a, &b, &out, 0), out, {0, -5, 2, 4, -5}, 1);
  expectGives(qvOscillatorPct(&a, &b, &out, 0), out, {0, 0, 100, kInf, -250}, 1);  // the guard is on a
  const Array in{2, 4, 6, 14, 10};  // averages of 2: 3 5 10 12, of 3: 4 8 10
  expectNear(qvPriceOscillator(&in, &out, 2, 3, 2, 0), out, {0, 0, 1, 2, 2}, 2);
  expectNear(qvPriceOscillatorPct(&in, &out, 3, 2, 2, 0), out, {0, 0, -20, -20, -100.0 / 6}, 2);
  // Exponential averages begin at once, yet the period counts; and the averages may begin later.
  for (const auto& [method, first] : {std::pair{0, 5}, {2, 4 + 2}, {6, 4 + 22}}) {
    ASSERT_EQ(qvPriceOscillator(&late, &second, 2, 3, method, 3), 0);
    EXPECT_EQ(second.firstValid, first) << method;
  }
  for (int method : {-1, 8}) EXPECT_EQ(qvPriceOscillator(&in, &third, 2, 3, method, 0), -1);
  EXPECT_EQ(third.data, nullptr) << "written";
  // The detrended price compares with the average of later bars.
  const auto expectDPO = [this](const Array& x, int p, const Items& wanted, int first) {
    expectGives(qvDPO(&x, out.fresh(), p, 0), out, wanted, first);
  };
  expectDPO({2, 4, 8, 2, 6, 4}, 4, {2 - 4, 4 - 5, 8 - 5}, 0);
  expectDPO(Array({99, 3, 6, 9, 6, 12}, 1), 3, {0, 3 - 6, 6 - 7, 9 - 9}, 1);
  expectDPO({3, 5, 9}, 1, {3 - 8, 5 - 12}, 0);  // one bar sums two at first: 8, then 8 + 9 - 5
  // Two bars: the first value would fall before the series; with a later start it is written.
  expectDPO({3, 5, 9}, 2, {3 - 7}, 0);
  expectDPO(Array({9, 3, 5, 9}, 1), 2, {9 - 4, 3 - 7}, 0);
  expectDPO({1, 2, 3, 4}, 4, {0}, 0);  // the window ends with the series: no value
  expectDPO({1, 2}, 4, {}, 0);
}

TEST_F(Momentum, UltimateOscillatorCountsItsPeriodsFromTheFirstBar) {
  // Pressure 1 3 1 0, true range 2 3 2 1. Bar 1 is cleared; bar 2 is (4 * 1/2 + 2 * 1/2 + 4/5) / 7; bar 3
  // has no pressure of its own, and the longer period does not count then.
  const Bars four{{0, 10, 8, 9}, {0, 12, 9, 12}, {0, 13, 11, 12}, {0, 12, 11, 11}}, walk(walkBars(60));
  expectNear(qvUltimateOsc(&four, &out, 1, 1, 2, 0), out, {0, 0, 3.8 / 7, 0}, 2);
  // From bar 40 on nothing is cleared, and averages that fit nowhere leave a partial value in the last bar.
  for (const auto& [start, begin] : {std::pair{10, 37}, {40, 59}}) {
    qvSetMaxFirstValid(0);
    ASSERT_EQ(qvUltimateOsc(&walk, &second, 7, 14, 28, start), 0);
    for (int i = 0; i < 60; ++i) EXPECT_EQ(second[i] != 0, i >= begin) << i;
    EXPECT_EQ(second.firstValid, 28);
    EXPECT_EQ(qvGetMaxFirstValid(), start + 28 - 1);
  }
}

TEST_F(Momentum, OfTheIndexIsAsDefined) {
  const double *high = spx().high.data, *low = spx().low.data, *close = spx().close.data;
  WilderMean gain{14}, loss{14};
  const auto strength = [&](int i) {
    gain.add(std::fmax(close[i] - close[i - 1], 0));
    loss.add(std::fmax(close[i - 1] - close[i], 0));
    return 100 - 100 / (1 + gain.mean / loss.mean);
  };
  for (int i = 1; i < 14; ++i) strength(i);
  expectEach(qvRSI(&spx().close, &out, 14, 0), out, 14, 1e-11, strength);
  const auto ultimate = [=](int i) {
    double value = 0;
    for (const auto& [p, weight] : {std::pair{7, 4.0}, {14, 2.0}, {28, 1.0}}) {
      double pressure = 0, range = 0;
      for (int j = i - p + 1; j <= i; ++j) {
        const double bottom = std::fmin(low[j], close[j - 1]);
        pressure += close[j] - bottom;
        range += std::fmax(high[j], close[j - 1]) - bottom;
      }
      value += weight * pressure / range / 7;
    }
    return value;
  };
  expectEach(qvUltimateOsc(&spx(), &out, 7, 14, 28, 1), out, 28, 1e-11, ultimate);
}

}  // namespace
}  // namespace qvtest
