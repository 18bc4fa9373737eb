// Closes within their range: the %K family, %R, the stochastic momentum index and the commodity channel
// index, on bars worked out by hand, against plain loops on data of many shapes, and on the S&P 500.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

struct Stochastics : testing::Test {
  // Over three bars from bar 2 on: highest 12 14, lowest 7 7.
  const Bars bars{{9, 10, 8, 9}, {9, 12, 9, 11}, {9, 11, 7, 8}, {9, 14, 10, 13}};
  const Bars flat{closingAt({5, 5, 5})}, walk{walkBars(80)};
  const double k2 = 20, k3 = 600.0 / 7, fast = (k2 + k3) / 2;
  Array out, second, third, fourth;
};

// From the top of the range of fourteen bars.
double percentR(int i) {
  const double *high = spx().high.data, *low = spx().low.data, *close = spx().close.data;
  const double top = *std::max_element(high + i - 13, high + i + 1);
  return 100 * (top - close[i]) / (top - *std::min_element(low + i - 13, low + i + 1));
}

// A flat range is fully overbought for K and zero elsewhere.
TEST_F(Stochastics, RawK) {
  expectNear(qvRawK(&bars, &out, 3, 0), out, {0, 0, k2, k3}, 2);
  expectGives(qvRawK(&flat, &out, 2, 0), out, {0, 100, 100}, 1);
  expectEach(qvRawK(&spx(), out.fresh(), 14, 0), out, 13, 1e-12, [&](int i) { return 100 - percentR(i); });
}

TEST_F(Stochastics, WilliamsR) {
  expectNear(qvWilliamsR(&bars, &out, 3, 0), out, {0, 0, 80, 100.0 / 7}, 2);
  expectGives(qvWilliamsR(&flat, &out, 2, 0), out, {0, 0, 0}, 1);
  expectEach(qvWilliamsR(&spx(), out.fresh(), 14, 0), out, 13, 1e-12, percentR);
}

TEST_F(Stochastics, FastD) {
  expectNear(qvFastD(&bars, &out, 3, 3, 0), out, {0, 0, k2, fast}, 2);
}

TEST_F(Stochastics, SlowD) {
  expectNear(qvSlowD(&bars, &out, 3, 3, 3, 0), out, {0, 0, k2, (k2 + fast) / 2}, 2);
}

TEST_F(Stochastics, Stochastic) {
  const Array in({50, 4, 8, 6, 6}, 1);
  expectGives(qvStochastic(&in, &out, 3, 0), out, {0, 0, 0, 50, 0}, 3);
  expectGives(qvStochastic(&in, &out, 9, 0), out, Items(5, 0.0), 9);
  expectGives(qvStochastic(&flat.close, &out, 2, 0), out, {0, 100, 100}, 1);
}

TEST_F(Stochastics, SMI) {
  // Distances from the middle -1.5 2.5, ranges 5 7; at bar 3 smoothed 0.5 and 6, smoothed twice -0.5 and 5.5.
  expectNear(qvSMI(&bars, &out, &third, 3, 3, 1, 3, 0), out, {0, 0, -60, 100 * 0.5 / 3}, 2);
  expectNear(0, third, {0, 0, -60, (100 * 0.5 / 3 - 60) / 2}, 2);
  expectNear(qvSMI(&bars, &out, &third, 3, 3, 3, 3, 0), out, {0, 0, -60, -50 / 2.75}, 2);
  expectGives(qvSMI(&flat, &out, &third, 2, 3, 3, 3, 0), out, {0, 0, 0}, 1);
}

TEST_F(Stochastics, StochasticFast) {
  // An open above the high counts; a low of zero does not. Lowest and highest of two bars: 7 and 15,
  // then 8 and 15, then 8 and 12.
  const Bars odd{{9, 10, 7, 9}, {15, 12, 0, 11}, {9, 11, 8, 9}, {9, 12, 8, 11}};
  const double fast1 = 50, fast2 = 100.0 / 7, fast3 = 75;
  expectNear(qvStochasticFast(&odd, &out, &second, 2, 2, 2, 0), out, {0, fast1, fast2, fast3}, 1);
  expectNear(0, second, {0, 0, (fast1 + fast2) / 2, (fast2 + fast3) / 2}, 2);
  for (int method : {-1, 8}) EXPECT_EQ(qvStochasticFast(&walk, &third, &fourth, method, 5, 3, 0), -1);
  EXPECT_EQ(third.data, nullptr);
}

TEST_F(Stochastics, StochasticOscillator) {  // smooths the fast one with every method
  for (int method = 0; method < 8; ++method) {
    qvStochasticFast(&walk, &third, out.fresh(), method, 5, 3, 2);
    qvMovingAverage(&out, second.fresh(), method, 4, 6);
    const int status = qvStochasticOscillator(&walk, &third, &fourth, method, 5, 3, 4, 2);
    expectGives(status, third, out.items(), out.firstValid);
    expectGives(status, fourth, second.items(), second.firstValid);
  }
  Array k, d;
  for (int method : {-1, 8}) EXPECT_EQ(qvStochasticOscillator(&walk, &k, &d, method, 5, 3, 4, 0), -1);
  EXPECT_EQ(k.data, nullptr);
  expectGives(qvStochasticOscillator(&flat, &k, &d, 0, 2, 3, 3, 0), d, {0, 100, 100}, 1);
}

TEST_F(Stochastics, CCI) {
  // Sums of prices 27 33 30 36: means of three 30 and 33, mean deviations 2 and 2. One bar is its own mean.
  const Bars b{{0, 10, 8, 9}, {0, 12, 10, 11}, {0, 11, 9, 10}, {0, 13, 11, 12}};
  expectNear(qvCCI(&b, &out, 3, 0), out, {0, 0, 0, 100}, 2);
  expectGives(qvCCI(&b, &out, 1, 0), out, Items(4, 0.0), 0);
  expectGives(qvCCI(&b, &out, 5, 0), out, Items(4, 0.0), 4);
  expectGives(qvCCI(&flat, out.fresh(), 2, 0), out, {0, 0, 0}, 1);
}

// The definition, window by window, as distances from the last price so that large prices keep their cents.
double channelIndex(const QvBars& b, int i, int p) {
  const auto price = [&](int j) -> long double { return b.high.data[j] + b.low.data[j] + b.close.data[j]; };
  long double mean = 0, deviation = 0;
  for (int j = i - p + 1; j <= i; ++j) mean += price(j) - price(i);
  mean /= p;
  for (int j = i - p + 1; j <= i; ++j) deviation += std::fabs(price(j) - price(i) - mean);
  return deviation != 0 ? static_cast<double>(-mean / (deviation / p * 0.015L)) : 0.0;
}

void expectChannelIndex(const Bars& b, int p, int start) {
  SCOPED_TRACE(p);
  Array cci;
  expectEach(qvCCI(&b, &cci, p, start), cci, start + p - 1, 1e-10,
             [&](int i) { return channelIndex(b, i, p); });
}

TEST_F(Stochastics, CCIEqualsItsDefinitionOnAnyData) {
  expectChannelIndex(spx(), 20, 0);
  for (Shape shape : kShapes) {
    SCOPED_TRACE(static_cast<int>(shape));
    const Bars b(closingAt(shaped(shape, 1500, 11)));
    for (int p : {1, 2, 5, 14, 56, 57, 200, 257, 700}) expectChannelIndex(b, p, 3);
  }
  // Half of the items or more lie among the means of neighbouring windows: tiny noise, and large spikes
  // that move the mean to and fro. And a quiet market with single ticks.
  std::mt19937 random(3);
  std::uniform_real_distribution<double> unit(0, 1);
  Items spikes, ticks;
  for (int i = 0; i < 3000; ++i) {
    const bool rare = unit(random) < 0.1;
    spikes.push_back(100 + 0.01 * unit(random) + (rare ? i % 2 ? 1000 : -1000 : 0));
    ticks.push_back(rare ? i % 2 ? 10.2 : 10.0 : 10.1);
  }
  const Bars crowd(closingAt(spikes)), quiet(closingAt(ticks));
  for (const Bars* b : {&crowd, &quiet})
    for (int p : {50, 300, 1100, 2400}) expectChannelIndex(*b, p, 0);
}

TEST_F(Stochastics, CCIForgetsWildPricesAndSeesFlatWindows) {
  for (double wild : {kNaN, kInf, -kInf, 1e300}) {
    for (int p : {3, 20, 150}) {
      Items closes = shaped(Shape::Walk, 900, 4);
      std::fill(closes.begin() + 500, closes.end(), 100.1);  // a sum that does not divide evenly
      closes[100] = closes[333] = wild;
      const Bars b(closingAt(closes));
      const auto expected = [&](int i) {
        const bool lost = wild == 1e300 && ((i >= 100 && i < 100 + p) || (i >= 333 && i < 333 + p));
        return lost ? out[i] : channelIndex(b, i, p);
      };
      expectEach(qvCCI(&b, out.fresh(), p, 0), out, p - 1, 1e-10, expected);
      for (int i = 500 + p - 1; i < 900; ++i) ASSERT_EQ(out[i], 0.0) << wild << " bar " << i;
    }
  }
}

}  // namespace
}  // namespace qvtest
