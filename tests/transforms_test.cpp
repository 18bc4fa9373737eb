// Price transforms, simple changes, and comparisons by date.
#include <gtest/gtest.h>

#include <climits>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(PriceTransforms, GiveOnePricePerBarFromTheStart) {
  const Bars bars{{1, 2, 3, 4}, {10, 20, 5, 11}, {0, 20, 5, 11}};  // the third has no open
  Array out;
  expectGives(qvAvgPrices(&bars, &out, 1), out, {0, 11.5, 12}, 1);
  expectGives(qvMedianPrices(&bars, &out, 1), out, {0, 12.5, 12.5}, 1);
  expectGives(qvTypicalPrices(&bars, &out, 1), out, {0, 12, 12}, 1);
  expectGives(qvWeightedCloses(&bars, &out, 1), out, {0, 11.75, 11.75}, 1);
  expectGives(qvWeightedCloses(&bars, &out, 9), out, {0, 0, 0}, 9);
}

TEST(PerformancePct, IsTheChangeSinceItsFirstItem) {
  const Array in({7, 80, 100, 60}, 1), zero{0, 1, -2};
  Array out;
  expectGives(qvPerformancePct(&in, &out, 0), out, {0, 0, 25, -25}, 1);
  expectGives(qvPerformancePct(&zero, &out, 0), out, {kNaN, kInf, -kInf});  // not guarded
}

TEST(DiffValue, SetsItsFirstValidIndexToThePeriod) {
  const Array in({1, 4, 9, 16, 25, 36}, 1);
  Array out;
  expectGives(qvDiffValue(&in, &out, 2, 0), out, {0, 0, 0, 12, 16, 20}, 2);
  expectGives(qvDiffValue(&in, &out, INT_MAX, INT_MAX), out, Items(6, 0.0));
}

Bars* dated(Bars& bars, const Items& dates, const Items& closes) {
  qvAllocBars(&bars, static_cast<int>(dates.size()));
  std::copy(dates.begin(), dates.end(), bars.date.data);
  std::copy(closes.begin(), closes.end(), bars.close.data);
  return &bars;
}

struct Comparisons : testing::Test {
  Bars one, two;
  Array out;
  int strength(double startDate) { return qvCompStrength(&one, &two, &out, startDate); }
  int performance(double startDate) { return qvCompPerformance(&one, &two, &out, startDate); }
  int spread(double startDate) { return qvSpread(&one, &two, &out, 2, 3, startDate); }
};

TEST_F(Comparisons, MatchBarsByDate) {
  // Day 3 is missing in the second set, day 5 in the first; the second set ends on day 6.
  dated(one, {1, 2, 3, 4, 6, 7}, {5, 8, 12, 20, 30, 40});
  dated(two, {2, 4, 5, 6}, {4, 5, 7, 10});
  expectGives(strength(0), out, {0, 2, 2, 4, 3, 0}, 1);
  expectGives(spread(0), out, {0, 4, 4, 25, 30, 0});
  expectGives(performance(0), out, {0, 1, -1, 2, 1.5, 0}, 1);  // against the strength 2 of the first matched
}

TEST_F(Comparisons, BeginAtTheLaterOfTheStartDateAndTheSecondSet) {
  dated(one, {1, 2, 3, 4}, {2, 4, 6, 8});
  dated(two, {1, 2, 3, 4}, {2, 2, 2, 2});
  expectGives(strength(2.5), out, {0, 0, 3, 4}, 2);
  expectGives(performance(3), out, {0, 0, 1, (4.0 - 3.0) / 3.0 + 1.0});
  EXPECT_EQ(strength(4.5), -9);
  Array small{9, 9};
  expectGives(qvCompStrength(&one, &two, &small, 0), small, {1, 2});
  EXPECT_EQ(qvCompStrength(&one, &two, &small, 3), -9) << "beyond the room of the output";
  QvArray shared = two.close;
  EXPECT_EQ(qvCompStrength(&one, &two, &shared, 0), -1);
  EXPECT_EQ(two.close.data[0], 2) << "written";
}

TEST_F(Comparisons, NeedTheSecondSetToHaveTheFirstDate) {
  dated(one, {1, 3, 4}, {2, 4, 6});
  dated(two, {2, 3, 4}, {2, 2, 2});
  expectGives(strength(0), out, {0, 2, 3});  // day 2 is missing in the first set, which moves on to day 3
  qvFreeBars(&two);
  dated(two, {2, 4}, {2, 2});
  for (double date : {0.0, 3.0})
    for (int status : {strength(date), performance(date), spread(date)}) EXPECT_EQ(status, -9);
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
  qvFreeBars(&two);
  dated(two, {0.5}, {2});
  EXPECT_EQ(strength(0), -9);
  qvReSizeBars(&two, 0);
  EXPECT_EQ(strength(0), -9);
}

TEST_F(Comparisons, CountTheTimeOfDay) {
  dated(one, {1.5, 2.5}, {2, 4});
  dated(two, {1.5, 2.25, 2.5}, {1, 1, 2});
  expectGives(strength(0), out, {2, 2});
}

TEST_F(Comparisons, HaveOneAtTheFirstMatchedBarWhateverItsStrength) {
  dated(one, {1, 2}, {0, 4});
  dated(two, {1, 2}, {0, 2});
  expectGives(performance(0), out, {1, kNaN});
}

}  // namespace
}  // namespace qvtest
