// Bands and channels.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(Bollinger, StandOnTheTypicalPrice) {
  // Typical prices 2, 4, 6: averages 3 and 5 over two bars, deviation 1.
  Bars bars{{0, 3, 1, 2}, {0, 6, 2, 4}, {0, 8, 6, 4}};
  Array upper, middle, lower, width;
  ASSERT_EQ(qvBollinger(&bars, &upper, &middle, &lower, 2.0, 2, 0), 0);
  expectItems(middle, {0, 3, 5});
  expectItems(upper, {0, 5, 7});
  expectItems(lower, {0, 1, 3});
  EXPECT_EQ(upper.firstValid, 1);
  ASSERT_EQ(qvBollingerWidth(&bars, &width, 2.0, 2, 0), 0);
  expectItems(width, {0, 4, 4});
  Bars flat(std::vector<Bar>(10, {0, 42.1, 42.1, 42.1}));
  ASSERT_EQ(qvBollingerWidth(&flat, width.fresh(), 2.0, 4, 0), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(width[i], 0.0);
}

TEST(Envelopes, AroundSeriesAndAverages) {
  Array in({50, 100, 20}, 1), w{1, 2, 3}, upper, lower;
  ASSERT_EQ(qvEnvelope(&in, &w, &upper, &lower, 2.0, 0), 0);
  expectItems(upper, {0, 104, 26});
  expectItems(lower, {0, 96, 14});
  in.firstValid = 0;
  ASSERT_EQ(qvEnvelopePct(&in, &upper, &lower, 0.1, 0), 0);
  expectItems(upper, {55, 110, 22});
  expectItems(lower, {45, 90, 18});
  ASSERT_EQ(qvMAEnvelope(&in, &upper, &lower, 0.1, 2, 2, 0), 0);
  expectItems(upper, {0, 82.5, 66});
  EXPECT_EQ(upper.firstValid, 1);
  EXPECT_EQ(qvMAEnvelope(&in, &upper, &lower, 0.1, 8, 2, 0), -1);

  Bars bars{{0, 4, 1, 2}, {0, 6, 3, 4}};
  ASSERT_EQ(qvMAHighLow(&bars, &upper, &lower, 2, 2, 0), 0);
  expectItems(upper, {0, 5});
  expectItems(lower, {0, 2});
  EXPECT_EQ(qvMAHighLow(&bars, &upper, &lower, -1, 2, 0), -1);
}

TEST(PriceChannels, LeaveTheCurrentBarOut) {
  Bars bars{{5, 6, 4, 5}, {5, 9, 0, 5}, {5, 7, 3, 5}, {5, 99, 1, 5}};
  Array upper, lower;
  ASSERT_EQ(qvPriceChannels(&bars, &upper, &lower, 2, 0), 0);
  expectItems(upper, {0, 0, 9, 9});
  expectItems(lower, {0, 0, 4, 3});  // the zero low of bar 1 never counts
  EXPECT_EQ(upper.firstValid, 2);
  Bars walk(walkBars(100));
  ASSERT_EQ(qvPriceChannels(&walk, upper.fresh(), lower.fresh(), 20, 5), 0);
  for (int i = 25; i < 100; ++i) {
    double low, high;
    qvBarStats(&walk, &low, &high, i - 20, i - 1);
    EXPECT_EQ(upper[i], high);
    EXPECT_EQ(lower[i], low);
  }
}

TEST(Projection, AgreesWithAllPProjections) {
  for (Shape shape : kShapes) {
    if (shape == Shape::NaNs) continue;
    const std::vector<double> x = shaped(shape, 150, 9);
    Bars bars(walkBars(150));
    for (int i = 0; i < 150; ++i) {
      bars.low.data[i] = x[static_cast<std::size_t>(i)];
      bars.high.data[i] = bars.low.data[i] + std::fabs(bars.open.data[i] - bars.close.data[i]);
      bars.close.data[i] = (bars.low.data[i] + bars.high.data[i]) / 2;
    }
    for (int p : {1, 2, 3, 14, 40}) {
      const int s = 3, first = s + 2 * p - 2;
      Array upper, lower, width, oscillator;
      ASSERT_EQ(qvProjectionBands(&bars, &upper, &lower, p, s), 0);
      ASSERT_EQ(qvProjectionBandwidth(&bars, &width, p, s), 0);
      ASSERT_EQ(qvProjectionOscillator(&bars, &oscillator, p, 1, s), 0);
      EXPECT_EQ(upper.firstValid, first);
      for (int i = first; i < 150; ++i) {
        double slopeHigh, slopeLow, c, u = bars.high.data[i], d = bars.low.data[i];
        qvRegressionLine(&bars.high, &slopeHigh, &c, i - p + 1, i);
        qvRegressionLine(&bars.low, &slopeLow, &c, i - p + 1, i);
        for (int j = 1; j < p; ++j) {
          u = std::max(u, bars.high.data[i - j] + j * slopeHigh);
          d = std::min(d, bars.low.data[i - j] + j * slopeLow);
        }
        const double scale = 1e-10 * (std::fabs(u) + std::fabs(d) + 1);
        ASSERT_NEAR(upper[i], u, scale) << "shape " << static_cast<int>(shape) << " p " << p << " bar " << i;
        ASSERT_NEAR(lower[i], d, scale);
        if (u + d != 0) {
          ASSERT_NEAR(width[i], 200 * (upper[i] - lower[i]) / (upper[i] + lower[i]), 1e-9);
        }
        const double range = upper[i] - lower[i];
        ASSERT_NEAR(oscillator[i], range == 0 ? 0 : (bars.close.data[i] - lower[i]) * 100 / range, 1e-9);
      }
    }
  }
}

TEST(Projection, SmoothingShortAndWildData) {
  Bars bars(walkBars(60));
  Array raw, smoothed, average, upper, lower;
  qvProjectionOscillator(&bars, &raw, 5, 1, 0);
  ASSERT_EQ(qvProjectionOscillator(&bars, &smoothed, 5, 4, 0), 0);
  qvExpMA(&raw, &average, 4, 8);
  for (int i = 8; i < 60; ++i) EXPECT_EQ(smoothed[i], average[i]);

  Bars few(walkBars(5));
  ASSERT_EQ(qvProjectionBands(&few, &upper, &lower, 5, 0), 0);
  expectItems(upper, {0, 0, 0, 0, 0});
  EXPECT_EQ(upper.firstValid, 8);

  // Nor does one of an infinite low, whose slope is not finite either.
  Bars infinite(walkBars(60));
  infinite.low.data[20] = kInf;
  ASSERT_EQ(qvProjectionBands(&infinite, upper.fresh(), lower.fresh(), 5, 0), 0);
  for (int i = 20; i < 25; ++i) EXPECT_EQ(lower[i], infinite.low.data[i]) << i;
  // The slopes of both series must exist.
  infinite.low.firstValid = 55;
  ASSERT_EQ(qvProjectionBands(&infinite, upper.fresh(), lower.fresh(), 5, 0), 0);
  EXPECT_EQ(upper[40], 0.0);

  // While a wild high is in the window no projection counts; it is forgotten afterwards.
  Array wild, wildLower;
  ASSERT_EQ(qvProjectionBands(&bars, upper.fresh(), lower.fresh(), 5, 0), 0);
  bars.high.data[20] = kNaN;
  ASSERT_EQ(qvProjectionBands(&bars, &wild, &wildLower, 5, 0), 0);
  for (int i = 8; i < 60; ++i) {
    if (i >= 20 && i < 25) {
      EXPECT_TRUE(i == 20 ? std::isnan(wild[i]) : wild[i] == bars.high.data[i]) << i;
    } else {
      EXPECT_EQ(wild[i], upper[i]) << i;
    }
    EXPECT_EQ(wildLower[i], lower[i]);
  }
}

TEST(StdErrBands, AroundTheForecast) {
  const std::vector<double> x = shaped(Shape::Walk, 60);
  Array in(x, 2), upper, middle, lower, forecast;
  ASSERT_EQ(qvStdErrBands(&in, &upper, &middle, &lower, 2.0, 10, 20), 0);
  qvLstSqrMA(&in, &forecast, 10, 0);
  EXPECT_EQ(upper.firstValid, 29);
  EXPECT_EQ(middle.firstValid, 11);
  EXPECT_EQ(middle.items(), forecast.items());
  for (int i = 29; i < 60; ++i) {
    const double e = 2.0 * qvStdErr(&in, i - 9, i);
    EXPECT_NEAR(upper[i], middle[i] + e, 1e-9);
    EXPECT_NEAR(lower[i], middle[i] - e, 1e-9);
  }
}

TEST(Ichimoku, FiveLines) {
  std::vector<Bar> rising;
  for (int k = 0; k < 6; ++k) rising.push_back({0, 2.0 * k + 4, 2.0 * k, 100.0 + k});
  Bars bars(rising);  // h(q, i) = i + (i - q + 1) + 2, of the bars that exist
  auto h = [](int q, int i) { return i + std::max(i - q + 1, 0) + 2.0; };
  QvArray out[5]{};
  Array spanA, spanB;
  Array::fill(spanA, 8, 7.0);  // room for all bars ahead
  Array::fill(spanB, 7, 7.0);  // room for one
  Array conversion, base, lagging;
  ASSERT_EQ(qvIchimokuKinkoHyo(&bars, &conversion, &base, &spanA, &spanB, &lagging, 2, 3, 4, 3, 99, 0), 0);
  expectItems(conversion, {0, h(2, 1), h(2, 2), h(2, 3), h(2, 4), h(2, 5)});
  expectItems(base, {0, h(3, 1), h(3, 2), h(3, 3), h(3, 4), h(3, 5)});
  EXPECT_EQ(conversion.firstValid, 1);
  EXPECT_EQ(base.firstValid, 2);
  EXPECT_EQ(spanA.size, 6);
  EXPECT_EQ(spanA.firstValid, 4);
  EXPECT_EQ(spanB.firstValid, 5);
  for (int i = 1; i < 6; ++i) EXPECT_EQ(spanA.data[i + 2], (h(2, i) + h(3, i)) / 2) << i;
  for (int i = 2; i < 5; ++i) EXPECT_EQ(spanB.data[i + 2], h(4, i)) << i;
  EXPECT_EQ(lagging.items(), (std::vector<double>{102, 103, 104, 105}));
  EXPECT_EQ(lagging.firstValid, 0);
  for (int shift : {0, -3, INT_MIN, INT_MAX}) {
    ASSERT_EQ(qvIchimokuKinkoHyo(&bars, &out[0], &out[1], &out[2], &out[3], &out[4], 2, 3, 4, shift, 0, 1),
              0);
    EXPECT_LE(out[4].size, 6);
  }
  EXPECT_EQ(out[4].size, 1) << "no close so much later: the size ends at the first that fails";
  for (QvArray& a : out) qvFreeArray(&a);
}

TEST(Fibonacci, Levels) {
  double a, b, c;
  ASSERT_EQ(qvFibonacciRetrace(10, 20, &a, &b, &c), 0);
  EXPECT_NEAR(a, 16.18, 1e-12);
  EXPECT_NEAR(b, 15.0, 1e-12);
  EXPECT_NEAR(c, 13.82, 1e-12);
  ASSERT_EQ(qvFibonacciProject(10, 20, &a, &b, &c), 0);
  EXPECT_NEAR(a, 36.18, 1e-12);
  EXPECT_NEAR(b, 46.18, 1e-12);
  EXPECT_NEAR(c, 62.36, 1e-12);
  qvFibonacciProject(5, 5, &a, &b, &c);
  EXPECT_EQ(a + b + c, 15.0);
  EXPECT_EQ(qvFibonacciProject(1, 2, &a, nullptr, &c), -1);
  EXPECT_EQ(qvFibonacciRetrace(1, 2, nullptr, &b, &c), -1);
}

}  // namespace
}  // namespace qvtest
