// Strength indices, rates of change, differences of averages and smoothed changes, on numbers worked
// out by hand and against plain loops over the S&P 500.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

struct Momentum : testing::Test {
  // Moves 6 -2 2 -1. Seed over two: up 6/2, down 2/2. Then up (3+2)/2, down 1/2; up 2.5/2, down (0.5+1)/2.
  // A series that is too short has one value at its end; the averages divide by the moves that exist.
  const Array in{{99, 10, 16, 14, 16, 15}, 1}, few{10, 16, 14}, flat{Items(11, 42.125)};
  const Items zeros = Items(11, 0.0);  // a market that stands still has no strength
  Array out, second, third;
};

TEST_F(Momentum, RSI) {
  expectNear(qvRSI(&in, &out, 2, 0), out, {0, 0, 0, 75, 250.0 / 3, 62.5}, 3);
  expectNear(qvRSI(&few, &second, 5, 0), second, {0, 0, 75}, 5);
  expectGives(qvRSI(&flat, &third, 5, 0), third, zeros, 5);
  const double* close = spx().close.data;
  WilderMean gain{14}, loss{14};
  const auto strength = [&](int i) {
    gain.add(std::fmax(close[i] - close[i - 1], 0));
    loss.add(std::fmax(close[i - 1] - close[i], 0));
    return 100 - 100 / (1 + gain.mean / loss.mean);
  };
  for (int i = 1; i < 14; ++i) strength(i);
  expectEach(qvRSI(&spx().close, out.fresh(), 14, 0), out, 14, 1e-11, strength);
}

TEST_F(Momentum, UpAverage) {
  expectGives(qvUpAverage(&in, &out, 2, 0), out, {0, 0, 0, 3, 2.5, 1.25}, 3);
  expectGives(qvUpAverage(&few, &second, 5, 0), second, {0, 0, 3}, 5);
  expectGives(qvUpAverage(&flat, &third, 5, 0), third, zeros, 5);
}

TEST_F(Momentum, DownAverage) {
  expectGives(qvDownAverage(&in, &out, 2, 0), out, {0, 0, 0, 1, 0.5, 0.75}, 3);
  expectGives(qvDownAverage(&few, &second, 5, 0), second, {0, 0, 1}, 5);
  expectGives(qvDownAverage(&flat, &third, 5, 0), third, zeros, 5);
}

TEST_F(Momentum, StochRSI) {
  expectNear(qvStochRSI(&in, &out, 2, 0), out, {0, 0, 0, 0, 100, 0}, 4);
  // Without strength its range is flat, too, which reads fully overbought.
  expectGives(qvStochRSI(&flat, &third, 5, 0), third, {0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 100}, 9);
}

TEST_F(Momentum, RMI) {
  // Moves of two bars: 6 -2 0 8. An unmoved bar lets both averages shrink alike.
  const Array of2{10, 11, 16, 9, 16, 17};
  expectNear(qvRMI(&of2, &out, 2, 2, 0), out, {0, 0, 0, 75, 75, 95}, 3);
}

TEST_F(Momentum, CMO) {
  // Moves +3 -1 0 +2 -2, period 3: (3 - 1) / 4, (2 - 1) / 3, (2 - 2) / 4.
  const Array x{5, 8, 7, 7, 9, 7};
  expectNear(qvCMO(&x, &out, 3, 0), out, {0, 0, 0, 50, 100.0 / 3, 0}, 3);
  const auto expectChande = [](const Array& series, int p) {
    const auto balance = [&](int i) {
      double up = 0, down = 0;
      for (int j = i - p + 1; j <= i; ++j) {
        const double change = series[j] - series[j - 1];
        (change > 0 ? up : down) += change == change ? std::fabs(change) : 0;
      }
      return up + down > 0 ? (up - down) / (up + down) * 100 : 0;
    };
    Array cmo;
    expectEach(qvCMO(&series, &cmo, p, 0), cmo, p, 1e-9, balance);
  };
  for (Shape shape : kShapes)
    for (int p : {1, 5, 60}) expectChande(Array(shaped(shape, 200)), p);
  expectChande(Array(itemsOf(spx().close)), 20);
  // Moves that are not exact in binary leave rounding errors in a rolled sum; a market that does not
  // trade for a while has no momentum all the same.
  Items prices = shaped(Shape::Walk, 60);
  std::fill(prices.begin() + 40, prices.end(), prices[39]);
  const Array still(prices);
  ASSERT_EQ(qvCMO(&still, &second, 10, 0), 0);
  for (int i = 49; i < 60; ++i) EXPECT_EQ(second[i], 0.0) << i;
}

struct Rates : Momentum {
  const Array base{{7, 4, 0, 5, 3}, 1};
};

TEST_F(Rates, Momentum) {
  expectGives(qvMomentum(&base, &out, 2, 0), out, {0, 0, 0, 1, 3}, 3);
}

TEST_F(Rates, RateOfChange) {
  expectGives(qvRateOfChange(&base, &out, 100, 2, 0), out, {0, 0, 0, 25, 0}, 3);  // base 0 reads 0
  expectGives(qvRateOfChange(&base, &out, -1, 2, 0), out, {0, 0, 0, -0.25, 0}, 3);
  EXPECT_FALSE(std::signbit(out[4]));
}

TEST_F(Rates, ROC) {
  const Array wild{1, kNaN, 3}, early({1, 2, 3}, -5), empty;
  EXPECT_EQ(qvROC(&base, 3, 2, 100), 25);
  EXPECT_EQ(qvROC(&base, 4, 2, 100), 0);  // zero base
  EXPECT_EQ(qvROC(&base, 4, 2, 0), 3);    // the plain difference needs no base
  EXPECT_EQ(qvROC(&base, 2, 2, 1), 0);    // base below the first valid index
  EXPECT_EQ(qvROC(&wild, 2, 1, 1), 0);
  EXPECT_TRUE(std::isnan(qvROC(&wild, 2, 1, 0)));
  for (int index : {INT_MIN, -1, 0, 3, INT_MAX})
    for (int p : {INT_MIN, -1, 0, 1, 3, INT_MAX})
      for (const Array* x : {&early, &empty}) EXPECT_EQ(qvROC(x, index, p, 1), 0);
  EXPECT_EQ(qvROC(nullptr, 0, 0, 1), 0);
}

TEST_F(Rates, Ratio) {
  const Array a({6, 6, 6, 6}, 1), b({4, 3, 0, 2}, 3);  // the start of the second does not count
  expectGives(qvRatio(&a, &b, &out, 0), out, {0, 2, 0, 3}, 1);
}

TEST_F(Rates, RSIC) {
  // Relative strength from bar 1 on: 2 3 7.5.
  const Bars one(closingAt({5, 8, 12, 30}, {}, {1, 2, 3, 4})), two(closingAt({4, 4, 4}, {}, {2, 3, 4}));
  expectGives(qvRSIC(&one, &two, &out, 1, 0), out, {0, 0, 0.5, 1.5}, 2);
  expectGives(qvRSIC(&one, &two, &out, 1, 9), out, Items(4, 0.0));  // no bar after the start date
}

TEST_F(Momentum, MACD) {
  // The smoothings are fixed: e1 100 115 127.75, e2 100 107.5 114.4375.
  const Array jump({1, 100, 200, 200}, 1);
  expectNear(qvMACD(&jump, &out, &second, 3, 0), out, {0, 0, 7.5, 13.3125}, 2);
  expectNear(0, second, {0, 0, 7.5, 10.40625}, 2);
  // Cents are exact at large prices: the differences are those of the same moves about zero.
  const Items moves{0, 0.25, -0.5, 0.75, 0.5, 0.125};
  Items high = moves;
  for (double& price : high) price += 1e8;
  const Array low(moves), far(high);
  Array small;
  EXPECT_EQ(qvMACD(&low, &small, second.fresh(), 3, 0), 0);
  EXPECT_EQ(qvMACD(&far, out.fresh(), second.fresh(), 3, 0), 0);
  for (std::size_t i = 0; i < moves.size(); ++i) EXPECT_EQ(out.data[i], small.data[i]) << i;
  // Both lines begin as one, so that nothing crosses there.
  const Array walk(shaped(Shape::Walk, 9));
  for (int signal = 1; signal < 300; ++signal) {
    EXPECT_EQ(qvMACD(&walk, out.fresh(), second.fresh(), signal, 0), 0);
    EXPECT_EQ(out.data[1], second.data[1]) << signal;
  }
}

TEST_F(Momentum, MACDx) {
  // Averages of 1 and 3 bars, in either order. A crossing on the last bar does not count.
  const Array x{8, 16, 4, 20, 4, 24};
  Array average1, average2;
  for (const auto& [p1, p2] : {std::pair{1, 3}, std::pair{3, 1}}) {
    const int status = qvMACDx(&x, &average1, &average2, &out, &second, &third, p1, p2, 3, 0);
    expectGives(status, average1, x.items(), 0);
    expectGives(status, average2, {8, 12, 8, 14, 9, 16.5}, 0);
    expectGives(status, out, {0, 4, -4, 6, -5, 7.5}, 0);
    expectGives(status, second, {0, 4, 0, 3, -1, 3.25}, 1);
    expectGives(status, third, {0, 0, 0, 1, -1, 0}, 1);
  }
}

TEST_F(Momentum, TRIX) {
  const Array late({99, 8, 16, 16}, 1), zero{0, 0, 8};  // triple average 8 9 10.5
  expectNear(qvTRIX(&late, &out, 3, 0), out, {0, 0, 100.0 / 9, 150 / 10.5}, 2);
  expectGives(qvTRIX(&zero, &second, 3, 0), second, {0, kNaN, 100}, 1);  // not guarded
}

TEST_F(Momentum, TSI) {
  // Moves 4 -2 0.5: smoothed 4 1 0.75 over 4 3 1.75; and smoothed again 4 2.5 1.625 over 4 3.5 2.625.
  const Array moved({99, 0, 4, 2, 2.5}, 1);
  expectNear(qvTSI(&moved, &out, 3, 1, 0), out, {0, 0, 1, 1.0 / 3, 0.75 / 1.75}, 2);
  expectNear(qvTSI(&moved, &out, 3, 3, 0), out, {0, 0, 1, 2.5 / 3.5, 1.625 / 2.625}, 2);
  expectGives(qvTSI(&flat, &third, 5, 3, 0), third, zeros, 1);
}

struct Oscillators : Momentum {
  const Array a{{9, 0, 4, 4, -3}, 1}, b{9, 5, 2, 0, 2};
  const Array prices{2, 4, 6, 14, 10};  // averages of 2: 3 5 10 12, of 3: 4 8 10
};

TEST_F(Oscillators, Oscillator) {
  expectGives(qvOscillator(&a, &b, &out, 0), out, {0, -5, 2, 4, -5}, 1);
}

TEST_F(Oscillators, OscillatorPct) {
  expectGives(qvOscillatorPct(&a, &b, &out, 0), out, {0, 0, 100, kInf, -250}, 1);  // the guard is on a
}

TEST_F(Oscillators, PriceOscillator) {
  expectNear(qvPriceOscillator(&prices, &out, 2, 3, 2, 0), out, {0, 0, 1, 2, 2}, 2);
  // Exponential averages begin at once, yet the period counts; and the averages may begin later.
  const Array late(shaped(Shape::Walk, 40), 4);
  for (const auto& [method, first] : {std::pair{0, 5}, {2, 4 + 2}, {6, 4 + 22}}) {
    ASSERT_EQ(qvPriceOscillator(&late, second.fresh(), 2, 3, method, 3), 0);
    EXPECT_EQ(second.firstValid, first) << method;
  }
  for (int method : {-1, 8}) EXPECT_EQ(qvPriceOscillator(&prices, &third, 2, 3, method, 0), -1);
  EXPECT_EQ(third.data, nullptr) << "written";
}

TEST_F(Oscillators, PriceOscillatorPct) {
  expectNear(qvPriceOscillatorPct(&prices, &out, 3, 2, 2, 0), out, {0, 0, -20, -20, -100.0 / 6}, 2);
}

TEST_F(Oscillators, DPO) {
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

TEST_F(Momentum, UltimateOsc) {
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
  const double *high = spx().high.data, *low = spx().low.data, *close = spx().close.data;
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
  expectEach(qvUltimateOsc(&spx(), out.fresh(), 7, 14, 28, 1), out, 28, 1e-11, ultimate);
}

}  // namespace
}  // namespace qvtest
