// Strength indices, rates of change, differences of averages and smoothed changes, on numbers worked
// out by hand and against plain loops over the S&P 500.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

void expectNear(const Items& actual, const Items& expected, double tolerance = 1e-12) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], tolerance) << i;
}

struct Momentum : testing::Test {
  Array out, second, third, fourth, fifth;
};

// ---- Strength indices ---------------------------------------------------------------------------

TEST_F(Momentum, RSIWeighsRisesAgainstFalls) {
  // Moves 6 -2 2 -1. Seed: up 6/2, down 2/2. Then up (3+2)/2, down 1/2; up 2.5/2, down (0.5+1)/2.
  const Array in({99, 10, 16, 14, 16, 15}, 1);
  ASSERT_EQ(qvRSI(&in, &out, 2, 0), 0);
  expectNear(out.items(), {0, 0, 0, 75, 250.0 / 3, 62.5});
  EXPECT_EQ(out.firstValid, 3);
}

TEST_F(Momentum, RMITakesMovesOfSeveralBars) {
  // Moves of two bars: 6 -2 0 8. An unmoved bar lets both averages shrink alike.
  const Array in{10, 11, 16, 9, 16, 17};
  ASSERT_EQ(qvRMI(&in, &out, 2, 2, 0), 0);
  expectNear(out.items(), {0, 0, 0, 75, 75, 100 * 4.75 / 5});
  EXPECT_EQ(out.firstValid, 3);
  ASSERT_EQ(qvRMI(&in, &out, 2, 1, 1), 0);
  ASSERT_EQ(qvRSI(&in, &second, 2, 1), 0);
  EXPECT_EQ(out.items(), second.items());
}

TEST_F(Momentum, ShortSeriesHaveOneStrengthAtTheirEnd) {
  const Array in{10, 16, 14};
  ASSERT_EQ(qvRSI(&in, &out, 5, 0), 0);
  expectNear(out.items(), {0, 0, 75});
  EXPECT_EQ(out.firstValid, 5);
  ASSERT_EQ(qvRSI(&in, &out, 5, 2), 0);  // no move at all
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
  // Divided by the two moves that exist, not by five.
  ASSERT_EQ(qvUpAverage(&in, &out, 5, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 3}));
  ASSERT_EQ(qvDownAverage(&in, &out, 5, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 1}));
  EXPECT_EQ(out.firstValid, 5);
}

TEST_F(Momentum, UpAndDownAveragesAreWildersAverages) {
  const Array in({99, 10, 16, 14, 18, 15}, 1);
  ASSERT_EQ(qvUpAverage(&in, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 3, 3.5, 1.75}));
  ASSERT_EQ(qvDownAverage(&in, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 1, 0.5, 1.75}));
  EXPECT_EQ(out.firstValid, 3);
}

TEST_F(Momentum, AMarketThatStandsStillHasNoStrength) {
  const Array flat(Items(20, 42.125));
  for (auto f : {qvRSI, qvUpAverage, qvDownAverage, qvMomentum}) {
    ASSERT_EQ(f(&flat, &out, 5, 0), 0);
    EXPECT_EQ(out.items(), Items(20, 0.0));
  }
  ASSERT_EQ(qvTSI(&flat, &out, 5, 3, 0), 0);
  EXPECT_EQ(out.items(), Items(20, 0.0));
  // Its range is flat too, which reads fully overbought.
  ASSERT_EQ(qvStochRSI(&flat, &out, 5, 0), 0);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(out[i], i < 9 ? 0.0 : 100.0);
}

TEST_F(Momentum, StochRSIPlacesTheStrengthInItsRange) {
  const Array in(shaped(Shape::Walk, 80), 3);
  ASSERT_EQ(qvStochRSI(&in, &out, 7, 2), 0);
  ASSERT_EQ(qvRSI(&in, &second, 7, 2), 0);
  EXPECT_EQ(out.firstValid, 3 + 14 - 1);
  for (int i = out.firstValid; i < out.size; ++i) {
    const auto [low, high] = std::minmax_element(second.data + i - 6, second.data + i + 1);
    EXPECT_NEAR(out[i], (second[i] - *low) * 100 / (*high - *low), 1e-9);
  }
}

// ---- Rates of change ----------------------------------------------------------------------------

TEST_F(Momentum, RatesCompareWithThePast) {
  const Array in({7, 4, 0, 5, 3}, 1);
  ASSERT_EQ(qvMomentum(&in, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 1, 3}));
  EXPECT_EQ(out.firstValid, 3);
  ASSERT_EQ(qvRateOfChange(&in, &out, 100, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 25, 0}));  // the base of the last item is zero
  EXPECT_FALSE(std::signbit(out[4]));
  ASSERT_EQ(qvRateOfChange(&in, &out, -1, 2, 0), 0);
  EXPECT_EQ(out[3], -0.25);
  EXPECT_FALSE(std::signbit(out[4]));
  ASSERT_EQ(qvRateOfChange(&in, &out, 0, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 1, 3}));

  EXPECT_EQ(qvROC(&in, 3, 2, 100), 25);
  EXPECT_EQ(qvROC(&in, 4, 2, 100), 0);  // zero base
  EXPECT_EQ(qvROC(&in, 4, 2, 0), 3);    // the plain difference needs no base
  EXPECT_EQ(qvROC(&in, 2, 2, 1), 0);    // base below the first valid index
  EXPECT_EQ(qvROC(&in, 5, 2, 1), 0);    // past the end
}

TEST(ROC, IsZeroForAnythingOutside) {
  Array in{1, kNaN, 3};
  EXPECT_EQ(qvROC(&in, 2, 1, 1), 0);
  EXPECT_TRUE(std::isnan(qvROC(&in, 2, 1, 0)));
  for (int index : {INT_MIN, -1, 0, 3, INT_MAX})
    for (int p : {INT_MIN, -1, 0, 1, 3, INT_MAX}) EXPECT_EQ(qvROC(&in, index, p, 1), 0);
  in.firstValid = -5;
  EXPECT_EQ(qvROC(&in, 1, 3, 0), 0);
  EXPECT_EQ(qvROC(nullptr, 0, 0, 1), 0);
  const Array empty;
  EXPECT_EQ(qvROC(&empty, 0, 0, 1), 0);
}

TEST_F(Momentum, RatioLooksAtTheFirstArraysStartOnly) {
  const Array a({6, 6, 6, 6}, 1), b({4, 3, 0, 2}, 3);
  ASSERT_EQ(qvRatio(&a, &b, &out, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 2, 0, 3}));
  EXPECT_EQ(out.firstValid, 1);
}

TEST_F(Momentum, RSICIsTheRateOfChangeOfTheRelativeStrength) {
  std::vector<Bar> a(4), b(3);
  for (std::size_t i = 0; i < 4; ++i) a[i].date = 36526.0 + static_cast<double>(i);
  for (std::size_t i = 0; i < 3; ++i) b[i].date = 36527.0 + static_cast<double>(i);
  const Items closes = {5, 8, 12, 30};
  for (std::size_t i = 0; i < 4; ++i) a[i].close = closes[i];
  for (std::size_t i = 0; i < 3; ++i) b[i].close = 4;
  Bars bars1(a), bars2(b);  // strength from bar 1 on: 2 3 7.5
  ASSERT_EQ(qvRSIC(&bars1, &bars2, &out, 1, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0.5, 1.5}));
  EXPECT_EQ(out.firstValid, 2);
  // No bar after the start date: no strength, no rate, no error.
  ASSERT_EQ(qvRSIC(&bars1, &bars2, &out, 1, 1e6), 0);
  EXPECT_EQ(out.items(), Items(4, 0.0));
}

// ---- Differences of averages --------------------------------------------------------------------

TEST_F(Momentum, MACDHasFixedSmoothings) {
  // e1 100 115 127.75, e2 100 107.5 114.4375.
  const Array in({1, 100, 200, 200}, 1);
  ASSERT_EQ(qvMACD(&in, &out, &second, 3, 0), 0);
  expectNear(out.items(), {0, 0, 7.5, 13.3125});
  expectNear(second.items(), {0, 0, 7.5, 10.40625});
  EXPECT_EQ(out.firstValid, 2);
  EXPECT_EQ(second.firstValid, 2);
}

TEST_F(Momentum, MACDxCrossesItsSignalButNotOnTheLastBar) {
  // Periods 1 and 3: fast is the series, slow 8 12 8 14 9 6.5.
  const Array in{8, 16, 4, 20, 4, 4};
  for (const auto& [p1, p2] : {std::pair{1, 3}, std::pair{3, 1}}) {
    ASSERT_EQ(qvMACDx(&in, &out, &second, &third, &fourth, &fifth, p1, p2, 3, 0), 0);
    EXPECT_EQ(out.items(), in.items());
    EXPECT_EQ(second.items(), (Items{8, 12, 8, 14, 9, 6.5}));
    EXPECT_EQ(third.items(), (Items{0, 4, -4, 6, -5, -2.5}));
    EXPECT_EQ(fourth.items(), (Items{0, 4, 0, 3, -1, -1.75}));
    EXPECT_EQ(fifth.items(), (Items{0, 0, 0, 1, -1, 0}));
    EXPECT_EQ(third.firstValid, 0);
    EXPECT_EQ(fourth.firstValid, 1);
    EXPECT_EQ(fifth.firstValid, 1);
  }
  const Array cut{8, 16, 4, 20, 4};  // the last crossing falls on the last bar
  ASSERT_EQ(qvMACDx(&cut, &out, &second, &third, &fourth, &fifth, 1, 3, 3, 0), 0);
  EXPECT_EQ(fifth.items(), (Items{0, 0, 0, 1, 0}));
}

TEST_F(Momentum, OscillatorsOfTwoSeries) {
  const Array a({9, 0, 4, 4, -3}, 1), b{9, 5, 2, 0, 2};
  ASSERT_EQ(qvOscillator(&a, &b, &out, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, -5, 2, 4, -5}));
  ASSERT_EQ(qvOscillatorPct(&b, &a, &second, 0), 0);
  EXPECT_EQ(second.firstValid, 1);
  EXPECT_EQ(second[1], kInf);  // the guard looks at the wrong operand, and is kept
  ASSERT_EQ(qvOscillatorPct(&a, &b, &out, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 100, kInf, -250}));
  const Array zero{0}, minusOne{-1};
  ASSERT_EQ(qvOscillatorPct(&zero, &minusOne, &out, 0), 0);
  EXPECT_EQ(out.size, 1);
  EXPECT_EQ(out[0], 0);
}

TEST_F(Momentum, PriceOscillatorsBeginWithTheLongerAverage) {
  const Array in{2, 4, 6, 14, 10};  // averages of 2: 3 5 10 12, of 3: 4 8 10
  ASSERT_EQ(qvPriceOscillator(&in, &out, 2, 3, 2, 0), 0);
  expectNear(out.items(), {0, 0, 1, 2, 2});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvPriceOscillatorPct(&in, &out, 3, 2, 2, 0), 0);
  expectNear(out.items(), {0, 0, -20, -20, -100.0 / 6});
  // Exponential averages begin at once, yet the period counts; and the averages may begin later.
  const Array late(shaped(Shape::Walk, 40), 4);
  ASSERT_EQ(qvPriceOscillator(&in, &out, 2, 3, 0, 1), 0);
  EXPECT_EQ(out.firstValid, 3);
  ASSERT_EQ(qvPriceOscillator(&late, &out, 2, 3, 2, 1), 0);
  EXPECT_EQ(out.firstValid, 4 + 2);
  ASSERT_EQ(qvPriceOscillator(&late, &out, 2, 3, 6, 1), 0);
  EXPECT_EQ(out.firstValid, 4 + 22);
  for (int method : {-1, 8, INT_MAX}) {
    Array untouched;
    EXPECT_EQ(qvPriceOscillator(&in, &untouched, 2, 3, method, 0), -1);
    EXPECT_EQ(untouched.data, nullptr);
  }
}

TEST_F(Momentum, DPOComparesWithTheAverageOfLaterBars) {
  struct Case {
    int p, first;
    Items in, out;
    int outFirst;
  };
  const Case cases[] = {
      {4, 0, {2, 4, 8, 2, 6, 4}, {2 - 4, 4 - 5, 8 - 5}, 0},
      {3, 1, {99, 3, 6, 9, 6, 12}, {0, 3 - 6, 6 - 7, 9 - 9}, 1},
      {5, 0, {1, 2, 3, 4, 5, 6, 7}, {0, 2 - 3, 3 - 4, 4 - 5}, 1},
      // One bar sums two at first: 8, then 8 + 9 - 5.
      {1, 0, {3, 5, 9}, {3 - 8, 5 - 12}, 0},
      // Two bars: the first value would fall before the series; with a later start it is written.
      {2, 0, {3, 5, 9}, {3 - 7}, 0},
      {2, 1, {9, 3, 5, 9}, {9 - 4, 3 - 7}, 0},
      {4, 0, {1, 2, 3, 4}, {0}, 0},  // the window ends with the series: no value
      {4, 0, {1, 2, 3}, {}, 0},
      {4, 0, {1, 2}, {}, 0},
      {1000, 0, {1, 2}, {}, 0},
  };
  for (const Case& c : cases) {
    const Array in(c.in, c.first);
    Array dpo;
    ASSERT_EQ(qvDPO(&in, &dpo, c.p, 0), 0);
    EXPECT_EQ(dpo.items(), c.out) << "period " << c.p;
    EXPECT_EQ(dpo.firstValid, c.outFirst) << "period " << c.p;
  }
}

// ---- Smoothed changes ---------------------------------------------------------------------------

TEST_F(Momentum, TRIXIsInPercentOfTheNewAverage) {
  // Triple average 8 9 10.5.
  const Array in({99, 8, 16, 16}, 1);
  ASSERT_EQ(qvTRIX(&in, &out, 3, 0), 0);
  expectNear(out.items(), {0, 0, 100.0 / 9, 150 / 10.5});
  EXPECT_EQ(out.firstValid, 2);
  const Array zeros{0, 0, 8};  // not guarded
  ASSERT_EQ(qvTRIX(&zeros, &out, 3, 0), 0);
  EXPECT_TRUE(std::isnan(out[1]));
  EXPECT_EQ(out[2], 100);
}

TEST_F(Momentum, TSIIsTheRatioOfSmoothedMoves) {
  // Moves 4 -2 1: smoothed 4 1 1 over 4 3 2; and smoothed again 4 2.5 1.75 over 4 3.5 2.75.
  const Array in({99, 0, 4, 2, 3}, 1);
  ASSERT_EQ(qvTSI(&in, &out, 3, 1, 0), 0);
  expectNear(out.items(), {0, 0, 1, 1.0 / 3, 0.5});
  ASSERT_EQ(qvTSI(&in, &out, 3, 3, 0), 0);
  expectNear(out.items(), {0, 0, 1, 2.5 / 3.5, 1.75 / 2.75});
  EXPECT_EQ(out.firstValid, 2);
}

TEST_F(Momentum, UltimateOscillatorWeighsItsThreePeriods) {
  // Pressure 1 3 1 0, true range 2 3 2 1.
  const Bars bars{{0, 10, 8, 9}, {0, 12, 9, 12}, {0, 13, 11, 12}, {0, 12, 11, 11}};
  ASSERT_EQ(qvUltimateOsc(&bars, &out, 1, 1, 2, 0), 0);
  // Bar 1 is cleared; bar 2 is (4 * 1/2 + 2 * 1/2 + 4/5) / 7; bar 3 has no pressure of its own, and
  // the longer period does not count then.
  expectNear(out.items(), {0, 0, 3.8 / 7, 0});
  EXPECT_EQ(out.firstValid, 2);
}

TEST_F(Momentum, UltimateOscillatorCountsItsPeriodsFromTheFirstBar) {
  const Bars bars(walkBars(60));
  ASSERT_EQ(qvUltimateOsc(&bars, &out, 2, 4, 8, 10), 0);
  ASSERT_EQ(qvUltimateOsc(&bars, &second, 7, 14, 28, 10), 0);
  for (int i = 0; i < 60; ++i) EXPECT_EQ(second[i] != 0, i >= 37) << i;
  EXPECT_EQ(second.firstValid, 28);
  // Nothing is cleared, and the averages that fit nowhere leave a partial value in the last bar.
  qvSetMaxFirstValid(0);
  ASSERT_EQ(qvUltimateOsc(&bars, &second, 7, 14, 28, 40), 0);
  for (int i = 0; i < 60; ++i) EXPECT_EQ(second[i] != 0, i == 59) << i;
  EXPECT_EQ(second.firstValid, 28);
  EXPECT_EQ(qvGetMaxFirstValid(), 40 + 28 - 1);
}

// ---- Plain loops over the S&P 500 ---------------------------------------------------------------

TEST_F(Momentum, RSIOfTheIndexIsWilders) {
  const QvArray& close = spx().close;
  ASSERT_EQ(qvRSI(&close, &out, 14, 0), 0);
  double gain = 0, loss = 0;
  for (int i = 1; i < close.size; ++i) {
    const double change = close.data[i] - close.data[i - 1];
    const double g = change > 0 ? change : 0, l = change < 0 ? -change : 0;
    gain = i <= 14 ? gain + g / 14 : (gain * 13 + g) / 14;
    loss = i <= 14 ? loss + l / 14 : (loss * 13 + l) / 14;
    if (i < 14) continue;
    ASSERT_NEAR(out[i], 100 - 100 / (1 + gain / loss), 1e-9) << i;
  }
}

TEST_F(Momentum, CMOOfTheIndexIsChandes) {
  const QvArray& close = spx().close;
  ASSERT_EQ(qvCMO(&close, &out, 20, 0), 0);
  for (int i = 20; i < close.size; ++i) {
    double net = 0, path = 0;
    for (int j = i - 19; j <= i; ++j) {
      net += close.data[j] - close.data[j - 1];
      path += std::fabs(close.data[j] - close.data[j - 1]);
    }
    ASSERT_NEAR(out[i], 100 * net / path, 1e-8) << i;
  }
}

TEST_F(Momentum, UltimateOscillatorOfTheIndexIsWilliams) {
  const Bars& b = spx();
  ASSERT_EQ(qvUltimateOsc(&b, &out, 7, 14, 28, 1), 0);
  for (int i = 28; i < b.barsize; ++i) {
    double value = 0;
    for (const auto& [p, weight] : {std::pair{7, 4.0}, std::pair{14, 2.0}, std::pair{28, 1.0}}) {
      double pressure = 0, range = 0;
      for (int j = i - p + 1; j <= i; ++j) {
        const double before = b.close.data[j - 1], bottom = std::fmin(b.low.data[j], before);
        pressure += b.close.data[j] - bottom;
        range += std::fmax(b.high.data[j], before) - bottom;
      }
      value += weight * pressure / range / 7;
    }
    ASSERT_NEAR(out[i], value, 1e-11) << i;
  }
}

}  // namespace
}  // namespace qvtest
