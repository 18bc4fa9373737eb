// The averages that remember: exponential family, Wilder's smoothing, momentum-adapted averages and
// the oscillator that they adapt to. All prices are exact in binary where values are compared exactly.
#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;
using Average = std::function<int(const QvArray*, QvArray*)>;

// The items of an average, and its first valid index in `first`.
Items computed(const Array& in, const Average& average, int* first = nullptr) {
  Array out;
  EXPECT_EQ(average(&in, &out), 0);
  if (first) *first = out.firstValid;
  return out.items();
}

TEST(ExponentialHelpers, ConvertPeriodsAndStepOnce) {
  EXPECT_EQ(qvPeriodToExp(3), 0.5);
  EXPECT_EQ(qvExpToPeriod(0.5), 3);
  for (double p : {1.0, 2.5, 14.0, 200.0}) EXPECT_NEAR(qvExpToPeriod(qvPeriodToExp(p)), p, 1e-12 * p);
  EXPECT_EQ(qvEMA(10, 14, 3), 12);  // half of the way
}

TEST(ExponentialAverage, HalvesTheDistanceWithPeriodThree) {
  int first;
  EXPECT_EQ(computed(
                {8, 16, 4, 20}, [](auto in, auto out) { return qvExpMA(in, out, 3, 0); }, &first),
            (Items{8, 12, 8, 14}));
  EXPECT_EQ(first, 0);
  // Seeded with the first valid item.
  EXPECT_EQ(computed(
                Array(Items{99, 8, 16}, 1), [](auto in, auto out) { return qvExpMA(in, out, 3, 0); }, &first),
            (Items{0, 8, 12}));
  EXPECT_EQ(first, 1);
}

TEST(ExponentialAverage, CopiesWithPeriodOne) {
  const Items walk = shaped(Shape::Walk, 50);
  EXPECT_EQ(computed(Array(walk), [](auto in, auto out) { return qvExpMA(in, out, 1, 0); }), walk);
}

TEST(InPlace, KeepsTheItemsBelowTheStartAndEqualsTheSeparateOutput) {
  const Average averages[] = {
      [](auto in, auto out) { return qvExpMA(in, out, 7.5, 5); },
      [](auto in, auto out) { return qvWellesMA(in, out, 7, 5); },
      [](auto in, auto out) { return qvWellesSum(in, out, 7, 5); },
      [](auto in, auto out) { return qvWellesMA(in, out, 70, 5); },  // longer than the series
  };
  for (const Average& average : averages) {
    const Items walk = shaped(Shape::Walk, 60);
    Array separate, series(walk);
    ASSERT_EQ(average(&series, &separate), 0);
    ASSERT_EQ(average(&series, &series), 0);
    EXPECT_EQ(series.firstValid, separate.firstValid);
    for (int i = 0; i < 60; ++i)
      EXPECT_EQ(series[i], i < 5 ? walk[static_cast<size_t>(i)] : separate[i]) << i;
  }
  Array series{1, 2, 3};  // nothing to compute: nothing changes
  ASSERT_EQ(qvExpMA(&series, &series, 2, 3), 0);
  series.firstValid = 0;
  ASSERT_EQ(qvWellesMA(&series, &series, 2, 3), 0);
  EXPECT_EQ(series.items(), (Items{1, 2, 3}));
  EXPECT_EQ(series.firstValid, 4);
}

TEST(ZeroLagAverage, LooksBackHalfThePeriod) {
  // Period 5: L = 2, k = 1/3. Seed in[0] at index 1; then 2/3 of the last + (2 in[i] - in[i-2]) / 3:
  // (12 + 2*9 - 6) / 3 = 8, (16 + 2*12 - 13) / 3 = 9.
  int first;
  const Items five = computed(
      {6, 13, 9, 12}, [](auto in, auto out) { return qvZeroLagExpMA(in, out, 5, 0); }, &first);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(five[0], 0);
  EXPECT_EQ(five[1], 6);
  EXPECT_NEAR(five[2], 8, 1e-14);
  EXPECT_NEAR(five[3], 9, 1e-14);
  for (double shortPeriod : {1.0, 3.0, 4.0, 4.99}) {
    computed(
        {6, 13, 9, 12}, [=](auto in, auto out) { return qvZeroLagExpMA(in, out, shortPeriod, 0); }, &first);
    EXPECT_EQ(first, 0) << shortPeriod;
  }
  // Period 3: L = 1, k = 1/2: (6 + 2*13 - 6) / 2 = 13, (13 + 2*9 - 13) / 2 = 9, (9 + 2*12 - 9) / 2 = 12.
  EXPECT_EQ(computed({6, 13, 9, 12}, [](auto in, auto out) { return qvZeroLagExpMA(in, out, 3, 0); }),
            (Items{6, 13, 9, 12}));
  // The seed would lie beyond the end.
  EXPECT_EQ(computed(
                {6, 13, 9, 12}, [](auto in, auto out) { return qvZeroLagExpMA(in, out, 11, 0); }, &first),
            (Items{0, 0, 0, 0}));
  EXPECT_EQ(first, 4);
  computed(
      {6, 13, 9, 12}, [](auto in, auto out) { return qvZeroLagExpMA(in, out, kInf, 9); }, &first);
  EXPECT_EQ(first, INT_MAX);
}

TEST(DoubleAndTripleAverage, MakeUpForTheLagOfTheirStages) {
  // Period 3 on 8, 16, 0: e1 = 8, 12, 6; e2 = 8, 10, 8; e3 = 8, 9, 8.5.
  int first;
  EXPECT_EQ(computed(
                {8, 16, 0}, [](auto in, auto out) { return qvDEMA(in, out, 3, 0); }, &first),
            (Items{8, 14, 4}));
  EXPECT_EQ(first, 1);
  EXPECT_EQ(computed(
                {8, 16, 0}, [](auto in, auto out) { return qvTEMA(in, out, 3, 0); }, &first),
            (Items{8, 15, 2.5}));
  EXPECT_EQ(first, 1);
}

TEST(GeneralisedSmoothing, LiesBetweenTheSingleAndTheDoubleAverage) {
  // As above: e1 = 8, 12, 6; e2 = 8, 10, 8; factor 1/2 gives 1.5 e1 - 0.5 e2.
  auto t3 = [](double factor, int passes) {
    return [=](const QvArray* in, QvArray* out) { return qvT3(in, out, 3, factor, passes, 0); };
  };
  const Array in{8, 16, 0};
  int first;
  EXPECT_EQ(computed(in, t3(0.5, 1), &first), (Items{8, 13, 5}));
  EXPECT_EQ(first, 0);
  for (double none : {0.0, -3.0, kNaN, -kInf})
    EXPECT_EQ(computed(in, t3(none, 1)), (Items{8, 12, 6})) << none;
  for (double full : {1.0, 7.0, kInf}) EXPECT_EQ(computed(in, t3(full, 1)), (Items{8, 14, 4})) << full;
  // A second pass smooths 8, 12, 6 again; fewer than one pass counts as one.
  EXPECT_EQ(computed(in, t3(0, 2)), (Items{8, 10, 8}));
  for (int passes : {0, -1, INT_MIN}) EXPECT_EQ(computed(in, t3(0, passes)), (Items{8, 12, 6})) << passes;
  EXPECT_EQ(computed(in, t3(0, INT_MAX)), (Items{8, 8, 8}));  // in the end only the seed is left
}

TEST(GeneralisedSmoothing, RepeatsItsPasses) {
  const Array walk(shaped(Shape::Walk, 80), 4);
  Array repeated;
  ASSERT_EQ(qvT3(&walk, &repeated, 6, 0.7, 1, 0), 0);
  for (int passes = 2; passes <= 7; ++passes) {
    const Array last(repeated.items(), 4);
    ASSERT_EQ(qvT3(&last, &repeated, 6, 0.7, 1, 0), 0);
    EXPECT_EQ(computed(walk, [=](auto in, auto out) { return qvT3(in, out, 6, 0.7, passes, 0); }),
              repeated.items())
        << passes;
  }
}

TEST(WildersSmoothing, SeedsWithThePlainSum) {
  // Period 4: 24 / 4 = 6; (3*6 + 2) / 4 = 5; (3*5 + 9) / 4 = 6.
  int first;
  EXPECT_EQ(computed(
                {2, 8, 4, 10, 2, 9}, [](auto in, auto out) { return qvWellesMA(in, out, 4, 0); }, &first),
            (Items{0, 0, 0, 6, 5, 6}));
  EXPECT_EQ(first, 3);
  // 24; 24 - 6 + 2 = 20; 20 - 5 + 9 = 24.
  EXPECT_EQ(computed(
                {2, 8, 4, 10, 2, 9}, [](auto in, auto out) { return qvWellesSum(in, out, 4, 0); }, &first),
            (Items{0, 0, 0, 24, 20, 24}));
  EXPECT_EQ(first, 3);
}

TEST(WildersSmoothing, LeavesAPartialSumWhereThePeriodDoesNotFit) {
  int first;
  EXPECT_EQ(computed(
                {2, 8, 4}, [](auto in, auto out) { return qvWellesMA(in, out, 4, 1); }, &first),
            (Items{0, 0, 3}));
  EXPECT_EQ(first, 4);
  EXPECT_EQ(computed(
                {2, 8, 4}, [](auto in, auto out) { return qvWellesSum(in, out, INT_MAX, 2); }, &first),
            (Items{0, 0, 4}));
  EXPECT_EQ(first, INT_MAX);
}

TEST(ChandeMomentum, BalancesRisesAgainstFalls) {
  // Moves +3 -1 0 +2 -2, period 3: (3 - 1) / 4, (2 - 1) / 3, (2 - 2) / 4.
  const auto cmo = [](auto in, auto out) { return qvCMO(in, out, 3, 0); };
  int first;
  const Items items = computed({5, 8, 7, 7, 9, 7}, cmo, &first);
  EXPECT_EQ(first, 3);
  EXPECT_EQ((Items(items.begin(), items.begin() + 4)), (Items{0, 0, 0, 50}));
  EXPECT_NEAR(items[4], 100.0 / 3, 1e-13);
  EXPECT_EQ(items[5], 0);
  EXPECT_EQ(computed({1, 2, 3, 5, 4, 3, 1}, cmo), (Items{0, 0, 0, 100, 50, 0, -100}));
}

TEST(ChandeMomentum, IsZeroOnceThePriceStandsStill) {
  // Moves that are not exact in binary leave rounding errors in a rolled sum; a market that does not
  // trade for a while has no momentum all the same.
  Items prices = shaped(Shape::Walk, 40);
  prices.resize(60, prices.back());
  const Items items = computed(Array(prices), [](auto in, auto out) { return qvCMO(in, out, 10, 0); });
  for (size_t i = 10; i < items.size(); ++i) {
    EXPECT_LE(std::fabs(items[i]), 100.0 + 1e-9) << i;
    if (i >= 49) {
      EXPECT_EQ(items[i], 0.0) << i;
    }
  }
}

TEST(ChandeMomentum, EqualsTheSumsOverEachWindow) {
  for (Shape shape : kShapes) {
    const Items x = shaped(shape, 200);
    for (int p : {1, 5, 60}) {
      const Items items = computed(Array(x), [=](auto in, auto out) { return qvCMO(in, out, p, 0); });
      for (int i = p; i < 200; ++i) {
        double up = 0, down = 0;
        for (int j = i - p + 1; j <= i; ++j) {
          const double change = x[static_cast<size_t>(j)] - x[static_cast<size_t>(j - 1)];
          (change > 0 ? up : down) += change == change ? std::fabs(change) : 0;
        }
        const double expected = up + down > 0 ? (up - down) / (up + down) * 100 : 0;
        ASSERT_NEAR(items[static_cast<size_t>(i)], expected, 1e-9)
            << static_cast<int>(shape) << " " << p << " " << i;
      }
    }
  }
}

TEST(VariableIndexAverage, MovesByTheMomentum) {
  // Oscillator of 2 bars on 8 8 8 12 12 10: from index 2 on 0, 100, 100, -100. Period 3, k = 1/2:
  // seed 8 at index 1; 8; 10; 11; 10.5.
  int first;
  EXPECT_EQ(computed(
                {8, 8, 8, 12, 12, 10}, [](auto in, auto out) { return qvVIDYA(in, out, 2, 3, 0); }, &first),
            (Items{0, 8, 8, 10, 11, 10.5}));
  EXPECT_EQ(first, 2);
}

TEST(VariableIndexAverage, StartsThirteenBarsLateWithNine) {
  const Array walk(shaped(Shape::Walk, 60));
  for (auto [period, expected] : {std::pair{8, 8}, {9, 22}, {10, 10}}) {
    int first;
    const Items items = computed(
        walk, [p = period](auto in, auto out) { return qvVIDYA(in, out, p, 20, 0); }, &first);
    EXPECT_EQ(first, expected);
    EXPECT_EQ(items[static_cast<size_t>(expected - 1)], walk[expected - 1]) << "the seed";
    EXPECT_EQ(items[static_cast<size_t>(expected - 2)], 0.0);
  }
  int first;
  const Items nine = computed(walk, [](auto in, auto out) { return qvVIDYA(in, out, 9, 20, 3); });
  EXPECT_EQ(computed(
                walk, [](auto in, auto out) { return qvVariableMA(in, out, 20, 3); }, &first),
            nine);
  EXPECT_EQ(first, 25);
  // The seed at the last item, and one beyond it.
  EXPECT_EQ(computed({1, 2, 3}, [](auto in, auto out) { return qvVIDYA(in, out, 3, 2, 0); }),
            (Items{0, 0, 3}));
  EXPECT_EQ(computed({1, 2, 3}, [](auto in, auto out) { return qvVIDYA(in, out, 4, 2, 0); }),
            (Items{0, 0, 0}));
}

}  // namespace
}  // namespace qvtest
