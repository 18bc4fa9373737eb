// Bands and channels.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Bands : testing::Test {
  // Typical prices 2, 4, 6: averages 3 and 5 over two bars, deviation 1.
  const Bars bars{{0, 3, 1, 2}, {0, 6, 2, 4}, {0, 8, 6, 4}};
  const Array in{{50, 100, 20}, 1};
  Array upper, middle, lower, out;
};

TEST_F(Bands, Bollinger) {
  expectNear(qvBollinger(&bars, &upper, &middle, &lower, 2.0, 2, 0), upper, {0, 5, 7}, 1);
  expectNear(0, middle, {0, 3, 5}, 1);
  expectNear(0, lower, {0, 1, 3}, 1);
}

TEST_F(Bands, BollingerWidth) {
  const Bars flat(closingAt(Items(10, 42.1)));
  expectNear(qvBollingerWidth(&bars, &out, 2.0, 2, 0), out, {0, 4, 4}, 1);
  expectGives(qvBollingerWidth(&flat, out.fresh(), 2.0, 4, 0), out, Items(10, 0.0), 3);
}

TEST_F(Bands, Envelope) {
  const Array w{1, 2, 3};
  expectNear(qvEnvelope(&in, &w, &upper, &lower, 2.0, 0), upper, {0, 104, 26}, 1);
  expectNear(0, lower, {0, 96, 14}, 1);
}

TEST_F(Bands, EnvelopePct) {
  expectNear(qvEnvelopePct(&in, &upper, &lower, 0.1, 0), upper, {0, 110, 22}, 1);
  expectNear(0, lower, {0, 90, 18}, 1);
}

TEST_F(Bands, MAEnvelope) {
  expectNear(qvMAEnvelope(&in, &upper, &lower, 0.1, 2, 2, 0), upper, {0, 0, 66}, 2);
  expectNear(0, lower, {0, 0, 54}, 2);
  EXPECT_EQ(qvMAEnvelope(&in, &upper, &lower, 0.1, 8, 2, 0), -1);
}

TEST_F(Bands, MAHighLow) {
  expectNear(qvMAHighLow(&bars, &upper, &lower, 2, 2, 0), upper, {0, 4.5, 7}, 1);
  expectNear(0, lower, {0, 1.5, 4}, 1);
  EXPECT_EQ(qvMAHighLow(&bars, &upper, &lower, -1, 2, 0), -1);
}

TEST_F(Bands, PriceChannels) {
  // The current bar is left out; a zero low never counts.
  const Bars four{{5, 6, 4, 5}, {5, 9, 0, 5}, {5, 7, 3, 5}, {5, 99, 1, 5}};
  expectGives(qvPriceChannels(&four, &upper, &lower, 2, 0), upper, {0, 0, 9, 9}, 2);
  expectGives(0, lower, {0, 0, 4, 3}, 2);
  expectGives(qvPriceChannels(&four, &upper, &lower, 1, 2), upper, {0, 0, 0, 7}, 3);
}

TEST_F(Bands, StdErrBands) {
  const Array walk(shaped(Shape::Walk, 60), 2);
  qvLstSqrMA(&walk, &out, 10, 0);
  const auto error = [&](int i) { return 2.0 * qvStdErr(&walk, i - 9, i); };
  const int status = qvStdErrBands(&walk, &upper, &middle, &lower, 2.0, 10, 20);
  expectGives(status, middle, out.items(), 11);
  expectEach(status, upper, 29, 1e-11, [&](int i) { return out[i] + error(i); });
  expectEach(status, lower, 29, 1e-11, [&](int i) { return out[i] - error(i); });
}

struct Projections : Bands {
  // The last three highs rise by 1 a bar, so that the 9 projects to 10; the lows by 1/2: the 2 to 2.5.
  const Bars five{{0, 9, 1, 5}, {0, 9, 1, 5}, {0, 6, 3, 5}, {0, 9, 2, 5}, {0, 8, 4, 5}};
};

TEST_F(Projections, Bands) {
  expectNear(qvProjectionBands(&five, &upper, &lower, 3, 0), upper, {0, 0, 0, 0, 10}, 4);
  expectNear(0, lower, {0, 0, 0, 0, 2.5}, 4);
  const Bars few(walkBars(5));
  expectGives(qvProjectionBands(&few, &upper, &lower, 5, 0), upper, Items(5, 0.0), 8);
}

TEST_F(Projections, Bandwidth) {
  expectNear(qvProjectionBandwidth(&five, &out, 3, 0), out, {0, 0, 0, 0, 120}, 4);
}

TEST_F(Projections, Oscillator) {
  expectNear(qvProjectionOscillator(&five, &out, 3, 0, 0), out, {0, 0, 0, 0, 100.0 / 3}, 4);
  const Bars level(closingAt(Items(5, 42.1))), walk(walkBars(60));
  expectGives(qvProjectionOscillator(&level, &out, 2, 0, 0), out, Items(5, 0.0), 2);
  qvProjectionOscillator(&walk, out.fresh(), 5, 1, 0);
  qvExpMA(&out, &middle, 4, 8);
  expectGives(qvProjectionOscillator(&walk, &upper, 5, 4, 0), upper, middle.items(), 8);
}

TEST_F(Projections, BandsAgreeWithAllLines) {
  for (Shape shape : kShapes) {
    if (shape == Shape::NaNs) continue;
    const Items x = shaped(shape, 150, 9);
    Bars walk(walkBars(150));
    for (int i = 0; i < 150; ++i) {
      walk.low.data[i] = x[static_cast<std::size_t>(i)];
      walk.high.data[i] = walk.low.data[i] + std::fabs(walk.open.data[i] - walk.close.data[i]);
    }
    for (int p : {1, 2, 3, 14, 40}) {
      SCOPED_TRACE(testing::Message() << "shape " << static_cast<int>(shape) << " p " << p);
      const auto furthest = [&](const QvArray& y, double sign, int i) {
        double slope, unused, best = y.data[i];
        qvRegressionLine(&y, &slope, &unused, i - p + 1, i);
        for (int j = 1; j < p; ++j) best = sign * std::max(sign * best, sign * (y.data[i - j] + j * slope));
        return best;
      };
      const int status = qvProjectionBands(&walk, upper.fresh(), lower.fresh(), p, 3), first = 3 + 2 * p - 2;
      expectEach(status, upper, first, 1e-10, [&](int i) { return furthest(walk.high, 1, i); });
      expectEach(status, lower, first, 1e-10, [&](int i) { return furthest(walk.low, -1, i); });
    }
  }
}

TEST_F(Projections, BandsForgetWildPrices) {
  Bars walk(walkBars(60)), infinite(walkBars(60));
  Array wild, wildLower;
  // While a wild high is in the window no projection counts; it is forgotten afterwards.
  ASSERT_EQ(qvProjectionBands(&walk, upper.fresh(), lower.fresh(), 5, 0), 0);
  walk.high.data[20] = kNaN;
  const auto unprojected = [&](int i) { return i >= 20 && i < 25 ? walk.high.data[i] : upper[i]; };
  expectEach(qvProjectionBands(&walk, &wild, &wildLower, 5, 0), wild, 8, 0, unprojected);
  EXPECT_EQ(wildLower.items(), lower.items());
  // Nor does one of an infinite low, whose slope is not finite either.
  infinite.low.data[20] = kInf;
  ASSERT_EQ(qvProjectionBands(&infinite, &upper, &lower, 5, 0), 0);
  for (int i = 20; i < 25; ++i) EXPECT_EQ(lower[i], infinite.low.data[i]) << i;
  infinite.low.firstValid = 55;  // the slopes of both series must exist
  expectGives(qvProjectionBands(&infinite, &upper, &lower, 5, 0), upper, Items(60, 0.0), 8);
}

TEST_F(Bands, IchimokuKinkoHyo) {
  std::vector<Bar> rising;
  for (int k = 0; k < 6; ++k) rising.push_back({0, 2.0 * k + 4, 2.0 * k, 100.0 + k});
  const Bars bars(rising);  // middles of q bars: 2 i - q + 3, of fewer where there are fewer
  Array conversion, base, lagging, spanA, spanB;
  Array::fill(spanA, 8, 0);  // room for all bars ahead
  Array::fill(spanB, 7, 0);  // room for one
  ASSERT_EQ(qvIchimokuKinkoHyo(&bars, &conversion, &base, &spanA, &spanB, &lagging, 2, 3, 4, 3, 99, 0), 0);
  expectGives(spanA.size - 6, conversion, {0, 3, 5, 7, 9, 11}, 1);
  expectGives(spanB.size - 6, base, {0, 3, 4, 6, 8, 10}, 2);
  spanA.size = 8;
  spanB.size = 7;
  expectGives(0, spanA, {0, 0, 0, 3, 4.5, 6.5, 8.5, 10.5}, 4);  // their mean, two bars ahead
  expectGives(0, spanB, {0, 0, 0, 0, 4, 5, 7}, 5);
  expectGives(0, lagging, {102, 103, 104, 105}, 0);
  for (const auto& [shift, size] : {std::pair{0, 6}, {-3, 6}, {INT_MIN, 6}, {INT_MAX, 1}}) {
    lagging.fresh();
    ASSERT_EQ(qvIchimokuKinkoHyo(&bars, &conversion, &base, &spanA, &spanB, &lagging, 2, 3, 4, shift, 0, 1),
              0);
    EXPECT_EQ(lagging.size, size) << "the size ends at the first bar without so late a close";
  }
}

TEST(Fibonacci, Retrace) {
  Array levels{0, 0, 0};
  double* r = levels.data;
  expectNear(qvFibonacciRetrace(10, 20, r, r + 1, r + 2), levels, {16.18, 15, 13.82}, 0);
  expectGives(qvFibonacciRetrace(5, 5, r, r + 1, r + 2), levels, {5, 5, 5}, 0);
}

TEST(Fibonacci, Project) {
  Array levels{0, 0, 0};
  double* r = levels.data;
  expectNear(qvFibonacciProject(10, 20, r, r + 1, r + 2), levels, {36.18, 46.18, 62.36}, 0);
  expectGives(qvFibonacciProject(5, 5, r, r + 1, r + 2), levels, {5, 5, 5}, 0);
}

}  // namespace
}  // namespace qvtest
