// Price transforms, simple changes, and comparisons by date.
#include <gtest/gtest.h>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

struct Transforms : testing::Test {
  const Bars bars{{1, 2, 3, 4}, {10, 20, 5, 11}, {0, 20, 5, 11}};  // the third has no open
  const Array in{{7, 80, 100, 60}, 1};
  Array out, second, third;
};

TEST_F(Transforms, AvgPrices) {
  expectGives(qvAvgPrices(&bars, &out, 1), out, {0, 11.5, 12}, 1);
}

TEST_F(Transforms, MedianPrices) {
  expectGives(qvMedianPrices(&bars, &out, 1), out, {0, 12.5, 12.5}, 1);
}

TEST_F(Transforms, TypicalPrices) {
  expectGives(qvTypicalPrices(&bars, &out, 1), out, {0, 12, 12}, 1);
}

TEST_F(Transforms, WeightedCloses) {
  expectGives(qvWeightedCloses(&bars, &out, 1), out, {0, 11.75, 11.75}, 1);
}

TEST_F(Transforms, PerformancePct) {
  const Array zero{0, 1, -2};
  expectGives(qvPerformancePct(&in, &out, 0), out, {0, 0, 25, -25}, 1);
  expectGives(qvPerformancePct(&zero, &second, 0), second, {kNaN, kInf, -kInf}, 0);  // not guarded
}

TEST_F(Transforms, DiffValue) {
  expectGives(qvDiffValue(&in, &out, 2, 0), out, {0, 0, 0, -20}, 2);  // the period, not the first value
}

struct Comparisons : Transforms {
  // The strength, performance and spread of closes at dates in out, second and third; what they answer.
  int compare(const Items& dates, const Items& closes, const Items& dates2, const Items& closes2,
              double startDate) {
    const Bars one(closingAt(closes, {}, dates)), two(closingAt(closes2, {}, dates2));
    const int status = qvCompStrength(&one, &two, out.fresh(), startDate);
    EXPECT_EQ(qvCompPerformance(&one, &two, second.fresh(), startDate), status);
    EXPECT_EQ(qvSpread(&one, &two, third.fresh(), 2, 3, startDate), status);
    return status;
  }
};

TEST_F(Comparisons, MatchBarsByDate) {
  // Day 3 is missing in the second set, day 5 in the first; the second set ends on day 6.
  const int status = compare({1, 2, 3, 4, 6, 7}, {5, 8, 12, 20, 30, 40}, {2, 4, 5, 6}, {4, 5, 7, 10}, 0);
  expectGives(status, out, {0, 2, 2, 4, 3, 0}, 1);
  expectGives(status, second, {0, 1, -1, 2, 1.5, 0}, 1);  // against the strength 2 of the first matched
  expectGives(status, third, {0, 4, 4, 25, 30, 0}, 1);
  // The time of day counts.
  expectGives(compare({1.5, 2.5}, {2, 4}, {1.5, 2.25, 2.5}, {1, 1, 2}, 0), out, {2, 2}, 0);
  // One at the first matched bar whatever its strength.
  expectGives(compare({1}, {2}, {1}, {4}, 0), second, {1}, 0);
  expectGives(compare({1, 2}, {0, 4}, {1, 2}, {0, 2}, 0), second, {1, kNaN}, 0);
}

TEST_F(Comparisons, BeginWhereBothHaveABar) {
  const Items days{1, 2, 3, 4}, closes{2, 4, 6, 8}, twos(4, 2.0);
  expectGives(compare(days, closes, days, twos, 2.5), out, {0, 0, 3, 4}, 2);
  expectGives(compare(days, closes, days, twos, 3), second, {0, 0, 1, (4.0 - 3.0) / 3.0 + 1.0}, 2);
  // Day 2 is missing in the first set, which moves on to day 3; the second set must have it.
  expectGives(compare({1, 3, 4}, {2, 4, 6}, {2, 3, 4}, {2, 2, 2}, 0), out, {0, 2, 3}, 1);
  EXPECT_EQ(compare({1, 3, 4}, {2, 4, 6}, {2, 4}, {2, 2}, 0), -9);
  expectGives(-9 - compare({1, 3, 4}, {2, 4, 6}, {2, 4}, {2, 2}, 3), out, {0, 0, 0}, 0);
  EXPECT_EQ(compare(days, closes, days, twos, 4.5), -9);
  EXPECT_EQ(compare(days, closes, {0.5}, {2}, 0), -9);
  const Bars one(closingAt(closes, {}, days));
  Bars two(closingAt(twos, {}, days));
  Array small{9, 9};
  expectGives(qvCompStrength(&one, &two, &small, 0), small, {1, 2}, 0);
  EXPECT_EQ(qvCompStrength(&one, &two, &small, 3), -9) << "beyond the room of the output";
  qvReSizeBars(&two, 0);
  EXPECT_EQ(qvCompStrength(&one, &two, &out, 0), -9);
}

}  // namespace
}  // namespace qvtest
