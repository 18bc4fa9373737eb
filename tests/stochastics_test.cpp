// Closes within their range: the %K family, %R, the stochastic momentum index and the commodity channel
// index, on bars worked out by hand, against plain loops on data of many shapes, and on the S&P 500.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "support/series.h"
#include "support/spx.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

void expectNear(const Items& actual, const Items& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-12) << i;
}

void expectSame(double actual, double expected) {
  EXPECT_TRUE(actual == expected || (std::isnan(actual) && std::isnan(expected)))
      << actual << " for " << expected;
}

struct Stochastics : testing::Test {
  // Over three bars from bar 2 on: highest 12 14, lowest 7 7.
  const Bars bars{{9, 10, 8, 9}, {9, 12, 9, 11}, {9, 11, 7, 8}, {9, 14, 10, 13}};
  const Bars flat{{5, 5, 5, 5}, {5, 5, 5, 5}, {5, 5, 5, 5}};
  Array out, second;
};

TEST_F(Stochastics, RawKPlacesTheCloseInItsRange) {
  ASSERT_EQ(qvRawK(&bars, &out, 3, 0), 0);
  expectNear(out.items(), {0, 0, 20, 600.0 / 7});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvRawK(&bars, &out, 3, 1), 0);
  expectNear(out.items(), {0, 0, 0, 600.0 / 7});
  EXPECT_EQ(out.firstValid, 3);
}

TEST_F(Stochastics, SmoothedFormsAreExponentialAverages) {
  ASSERT_EQ(qvFastD(&bars, &out, 3, 3, 0), 0);
  const double fast = (20 + 600.0 / 7) / 2;
  expectNear(out.items(), {0, 0, 20, fast});
  ASSERT_EQ(qvSlowD(&bars, &out, 3, 3, 1, 0), 0);
  expectNear(out.items(), {0, 0, 20, fast});
  ASSERT_EQ(qvSlowD(&bars, &out, 3, 3, 3, 0), 0);
  expectNear(out.items(), {0, 0, 20, (20 + fast) / 2});
  EXPECT_EQ(out.firstValid, 2);
}

TEST_F(Stochastics, WilliamsRCountsFromTheHigh) {
  ASSERT_EQ(qvWilliamsR(&bars, &out, 3, 0), 0);
  expectNear(out.items(), {0, 0, 80, 100.0 / 7});
  EXPECT_EQ(out.firstValid, 2);
}

TEST_F(Stochastics, SMIComparesTheDistanceFromTheMiddle) {
  // Distances -1.5 2.5, ranges 5 7; the first smoothings 0.5 and 6 at bar 3.
  ASSERT_EQ(qvSMI(&bars, &out, &second, 3, 3, 1, 3, 0), 0);
  expectNear(out.items(), {0, 0, -60, 100 * 0.5 / 3});
  expectNear(second.items(), {0, 0, -60, (100 * 0.5 / 3 - 60) / 2});
  // Smoothed again: -0.5 over 5.5.
  ASSERT_EQ(qvSMI(&bars, &out, &second, 3, 3, 3, 3, 0), 0);
  expectNear(out.items(), {0, 0, -60, -50 / 2.75});
  EXPECT_EQ(out.firstValid, 2);
  EXPECT_EQ(second.firstValid, 2);
}

TEST_F(Stochastics, AFlatRangeIsFullyOverboughtForKAndZeroElsewhere) {
  const Array closes({5, 5, 5});
  for (auto k : {qvRawK, qvWilliamsR, qvCCI}) {
    ASSERT_EQ(k(&flat, &out, 2, 0), 0);
    const double value = k == qvRawK ? 100 : 0;
    EXPECT_EQ(out.items(), (Items{0, value, value}));
  }
  ASSERT_EQ(qvStochastic(&closes, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 100, 100}));
  ASSERT_EQ(qvStochasticFast(&flat, &out, &second, 0, 2, 3, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 100, 100}));
  ASSERT_EQ(qvStochasticOscillator(&flat, &out, &second, 0, 2, 3, 3, 0), 0);
  EXPECT_EQ(second.items(), (Items{0, 100, 100}));
  ASSERT_EQ(qvSMI(&flat, &out, &second, 2, 3, 3, 3, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
}

TEST_F(Stochastics, TheFastOscillatorReadsAllPricesButNoZeroLows) {
  // An open above the high counts; a low of zero does not. Lowest and highest of two bars: 7 and 15,
  // then 8 and 15, then 8 and 12.
  const Bars odd{{9, 10, 7, 9}, {15, 12, 0, 11}, {9, 11, 8, 9}, {9, 12, 8, 11}};
  ASSERT_EQ(qvStochasticFast(&odd, &out, &second, 2, 2, 2, 0), 0);
  const double k1 = 50, k2 = 100.0 / 7, k3 = 75;
  expectNear(out.items(), {0, k1, k2, k3});
  EXPECT_EQ(out.firstValid, 1);
  expectNear(second.items(), {0, 0, (k1 + k2) / 2, (k2 + k3) / 2});
  EXPECT_EQ(second.firstValid, 2);
}

TEST_F(Stochastics, TheOscillatorSmoothsWithEveryMethod) {
  const Bars walk(walkBars(80));
  Array raw, d, smoothed, expected;
  for (int method = 0; method < 8; ++method) {
    ASSERT_EQ(qvStochasticOscillator(&walk, &out, &second, method, 5, 3, 4, 2), 0);
    ASSERT_EQ(qvStochasticFast(&walk, &raw, &d, method, 5, 3, 2), 0);
    ASSERT_EQ(qvMovingAverage(&d, &expected, method, 4, 6), 0);
    EXPECT_EQ(out.items(), d.items()) << method;
    EXPECT_EQ(second.items(), expected.items()) << method;
    EXPECT_EQ(out.firstValid, d.firstValid) << method;
    EXPECT_EQ(second.firstValid, expected.firstValid) << method;
  }
  for (int method : {-1, 8}) {
    Array k, untouched;
    EXPECT_EQ(qvStochasticOscillator(&walk, &k, &untouched, method, 5, 3, 4, 0), -1);
    EXPECT_EQ(qvStochasticFast(&walk, &k, &untouched, method, 5, 3, 0), -1);
    EXPECT_EQ(k.data, nullptr);
  }
}

TEST_F(Stochastics, SeriesBeginAtTheirFirstValidItem) {
  const Array in({50, 4, 8, 6, 6}, 1);
  ASSERT_EQ(qvStochastic(&in, &out, 3, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 50, 0}));
  EXPECT_EQ(out.firstValid, 3);
  ASSERT_EQ(qvStochastic(&in, &out, 9, 0), 0);
  EXPECT_EQ(out.items(), Items(5, 0.0));
  EXPECT_EQ(out.firstValid, 9);
}

TEST_F(Stochastics, TheFamilyEqualsPlainLoops) {
  for (Shape shape : kShapes) {
    const int n = 150, start = 2;
    const Items closes = shaped(shape, n, 5), spread = shaped(Shape::Integers, n, 6);
    std::vector<Bar> prices;
    for (std::size_t i = 0; i < closes.size(); ++i)
      prices.push_back(
          {closes[i], closes[i] + std::fabs(spread[i]), closes[i] - std::fabs(spread[i]) / 2, closes[i]});
    const Bars b(prices);
    for (int p : {1, 2, 7, 60}) {
      Array k, r;
      ASSERT_EQ(qvRawK(&b, &k, p, start), 0);
      ASSERT_EQ(qvWilliamsR(&b, &r, p, start), 0);
      for (int i = start + p - 1; i < n; ++i) {
        double high = b.high.data[i - p + 1], low = b.low.data[i - p + 1];
        for (int j = i - p + 2; j <= i; ++j) {
          if (b.high.data[j] >= high) high = b.high.data[j];
          if (b.low.data[j] <= low) low = b.low.data[j];
        }
        const double c = b.close.data[i], range = high - low;
        expectSame(k[i], range != 0 ? (c - low) * 100 / range : 100);
        expectSame(r[i], range != 0 ? (high - c) * 100 / range : 0);
      }
    }
  }
}

// ---- Commodity channel index --------------------------------------------------------------------

// The definition, window by window.
double channelIndex(const QvBars& b, int i, int p) {
  const auto price = [&](int j) {
    const double sum = b.high.data[j] + b.low.data[j] + b.close.data[j];
    return static_cast<long double>(sum);
  };
  long double mean = 0,
              deviation = 0;  // as distances from the last price, so that large prices keep their cents
  for (int j = i - p + 1; j <= i; ++j) mean += price(j) - price(i);
  mean /= p;
  for (int j = i - p + 1; j <= i; ++j) deviation += std::fabs(price(j) - price(i) - mean);
  return deviation != 0 ? static_cast<double>(-mean / (deviation / p * 0.015L)) : 0.0;
}

void expectChannelIndex(const Bars& b, int p, int start, int step, const char* what) {
  Array cci;
  ASSERT_EQ(qvCCI(&b, &cci, p, start), 0);
  EXPECT_EQ(cci.firstValid, start + p - 1);
  for (int i = std::min(start + p - 1, cci.size) - 1; i >= 0; --i) ASSERT_EQ(cci[i], 0.0);
  for (int i = start + p - 1; i < cci.size; i += step) {
    const double value = channelIndex(b, i, p);
    if (std::isnan(value)) {
      ASSERT_TRUE(std::isnan(cci[i])) << what << " period " << p << " bar " << i;
    } else {
      ASSERT_NEAR(cci[i], value, 1e-10 * (1 + std::fabs(value))) << what << " period " << p << " bar " << i;
    }
  }
}

Bars* closesOnly(Bars& b, const Items& closes) {
  qvAllocBars(&b, static_cast<int>(closes.size()));
  for (QvArray* series : {&b.high, &b.low, &b.close}) std::copy(closes.begin(), closes.end(), series->data);
  return &b;
}

TEST_F(Stochastics, CCICountsInMeanDeviations) {
  // Sums of prices 27 33 30 36: means of three 30 and 33, mean deviations 2 and 2.
  const Bars b{{0, 10, 8, 9}, {0, 12, 10, 11}, {0, 11, 9, 10}, {0, 13, 11, 12}};
  ASSERT_EQ(qvCCI(&b, &out, 3, 0), 0);
  expectNear(out.items(), {0, 0, 0, 100});
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvCCI(&b, &out, 1, 0), 0);  // one bar is its own mean
  EXPECT_EQ(out.items(), Items(4, 0.0));
  ASSERT_EQ(qvCCI(&b, &out, 5, 0), 0);
  EXPECT_EQ(out.items(), Items(4, 0.0));
}

TEST_F(Stochastics, CCIEqualsItsDefinitionOnAnyData) {
  for (Shape shape : kShapes) {
    Bars b;
    closesOnly(b, shaped(shape, 1500, 11));
    const std::string name = "shape " + std::to_string(static_cast<int>(shape));
    for (int p : {1, 2, 5, 14, 69, 70, 71, 200, 700})
      expectChannelIndex(b, p, 3, p < 100 ? 7 : 31, name.c_str());
  }
}

TEST_F(Stochastics, CCIOfDataThatCrowdsAroundItsMean) {
  // Half of the items or more lie among the means of neighbouring windows: tiny noise, and large spikes
  // that move the mean to and fro. And a quiet market with single ticks.
  std::mt19937 random(3);
  std::uniform_real_distribution<double> unit(0, 1);
  Items spikes, ticks;
  for (int i = 0; i < 5000; ++i) {
    const bool rare = unit(random) < 0.1;
    spikes.push_back(100 + 0.01 * unit(random) + (rare ? i % 2 ? 1000 : -1000 : 0));
    ticks.push_back(rare ? i % 2 ? 10.2 : 10.0 : 10.1);
  }
  Bars crowd, quiet;
  closesOnly(crowd, spikes);
  closesOnly(quiet, ticks);
  for (int p : {50, 300, 1100, 2400}) {
    expectChannelIndex(crowd, p, 0, 97, "spikes");
    expectChannelIndex(quiet, p, 0, 97, "ticks");
  }
}

TEST_F(Stochastics, CCIForgetsWildPricesAndSeesFlatWindows) {
  const int n = 900;
  for (double wild : {kNaN, kInf, -kInf, 1e300}) {
    for (int p : {3, 20, 150}) {
      Items closes = shaped(Shape::Walk, n, 4);
      std::fill(closes.begin() + 500, closes.end(), 100.1);  // a sum that does not divide evenly
      closes[100] = closes[333] = wild;
      Bars b;
      closesOnly(b, closes);
      ASSERT_EQ(qvCCI(&b, &out, p, 0), 0);
      for (int i = p - 1; i < n; ++i) {
        const bool holdsWild = (i >= 100 && i < 100 + p) || (i >= 333 && i < 333 + p);
        if (holdsWild && wild != 1e300) {
          ASSERT_TRUE(std::isnan(out[i])) << wild << " bar " << i;
        } else if (i >= 500 + p - 1) {
          ASSERT_EQ(out[i], 0.0) << wild << " bar " << i;
        } else if (!holdsWild && i < 500) {
          ASSERT_NEAR(out[i], channelIndex(b, i, p), 1e-8) << wild << " bar " << i;
        }
      }
    }
  }
}

// ---- The S&P 500 --------------------------------------------------------------------------------

TEST_F(Stochastics, TheIndexReadsAsDefined) {
  const Bars& b = spx();
  expectChannelIndex(b, 20, 0, 1, "S&P 500");
  ASSERT_EQ(qvWilliamsR(&b, &out, 14, 0), 0);
  ASSERT_EQ(qvRawK(&b, &second, 14, 0), 0);
  for (int i = 13; i < b.barsize; ++i) {
    const double high = *std::max_element(b.high.data + i - 13, b.high.data + i + 1);
    const double low = *std::min_element(b.low.data + i - 13, b.low.data + i + 1);
    ASSERT_NEAR(out[i], 100 * (high - b.close.data[i]) / (high - low), 1e-10);
    ASSERT_NEAR(out[i] + second[i], 100, 1e-10);
  }
}

}  // namespace
}  // namespace qvtest
