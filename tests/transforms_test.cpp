// Price transforms, simple changes, and comparisons by date.
#include <gtest/gtest.h>

#include <climits>

#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

TEST(PriceTransforms, GiveOnePricePerBarFromTheStart) {
  const Bars bars{{1, 2, 3, 4}, {10, 20, 5, 11}, {0, 20, 5, 11}};  // the third has no open
  Array out;
  ASSERT_EQ(qvAvgPrices(&bars, &out, 1), 0);
  EXPECT_EQ(out.items(), (Items{0, 11.5, 12}));
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(qvMedianPrices(&bars, &out, 1), 0);
  EXPECT_EQ(out.items(), (Items{0, 12.5, 12.5}));
  ASSERT_EQ(qvTypicalPrices(&bars, &out, 1), 0);
  EXPECT_EQ(out.items(), (Items{0, 12, 12}));
  ASSERT_EQ(qvWeightedCloses(&bars, &out, 1), 0);
  EXPECT_EQ(out.items(), (Items{0, 11.75, 11.75}));
  ASSERT_EQ(qvWeightedCloses(&bars, &out, 9), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
  EXPECT_EQ(out.firstValid, 9);
}

TEST(PerformancePct, IsTheChangeSinceItsFirstItem) {
  const Array in({7, 80, 100, 60}, 1);
  Array out;
  ASSERT_EQ(qvPerformancePct(&in, &out, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 25, -25}));
  EXPECT_EQ(out.firstValid, 1);
  const Array zero{0, 1, -2};  // not guarded
  ASSERT_EQ(qvPerformancePct(&zero, &out, 0), 0);
  EXPECT_TRUE(std::isnan(out[0]));
  EXPECT_EQ(out[1], kInf);
  EXPECT_EQ(out[2], -kInf);
}

TEST(DiffValue, SetsItsFirstValidIndexToThePeriod) {
  const Array in({1, 4, 9, 16, 25, 36}, 1);
  Array out;
  ASSERT_EQ(qvDiffValue(&in, &out, 2, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 12, 16, 20}));
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(qvDiffValue(&in, &out, INT_MAX, INT_MAX), 0);
  EXPECT_EQ(out.items(), Items(6, 0.0));
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
  ASSERT_EQ(strength(0), 0);
  EXPECT_EQ(out.items(), (Items{0, 2, 2, 4, 3, 0}));
  EXPECT_EQ(out.firstValid, 1);
  ASSERT_EQ(spread(0), 0);
  EXPECT_EQ(out.items(), (Items{0, 4, 4, 25, 30, 0}));
  ASSERT_EQ(performance(0), 0);  // against the strength 2 of the first matched bar
  EXPECT_EQ(out.items(), (Items{0, 1, -1, 2, 1.5, 0}));
  EXPECT_EQ(out.firstValid, 1);
}

TEST_F(Comparisons, BeginAtTheLaterOfTheStartDateAndTheSecondSet) {
  dated(one, {1, 2, 3, 4}, {2, 4, 6, 8});
  dated(two, {1, 2, 3, 4}, {2, 2, 2, 2});
  ASSERT_EQ(strength(2.5), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 3, 4}));
  EXPECT_EQ(out.firstValid, 2);
  ASSERT_EQ(performance(3), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 1, (4.0 - 3.0) / 3.0 + 1.0}));
  EXPECT_EQ(strength(4.5), -9);
}

TEST_F(Comparisons, NeedTheSecondSetToHaveTheFirstDate) {
  dated(one, {1, 3, 4}, {2, 4, 6});
  dated(two, {2, 3, 4}, {2, 2, 2});
  EXPECT_EQ(strength(0), 0);  // day 2 is missing in the first set, which moves on to day 3
  EXPECT_EQ(out.items(), (Items{0, 2, 3}));
  qvFreeBars(&two);
  dated(two, {2, 4}, {2, 2});
  for (double date : {0.0, 3.0}) {
    EXPECT_EQ(strength(date), -9);
    EXPECT_EQ(performance(date), -9);
    EXPECT_EQ(spread(date), -9);
  }
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
  ASSERT_EQ(strength(0), 0);
  EXPECT_EQ(out.items(), (Items{2, 2}));
}

TEST_F(Comparisons, StopAtTheRoomOfTheOutput) {
  dated(one, {1, 2, 3}, {2, 4, 6});
  dated(two, {1, 2, 3}, {1, 1, 1});
  Array small{9, 9};
  ASSERT_EQ(qvCompStrength(&one, &two, &small, 0), 0);
  EXPECT_EQ(small.items(), (Items{2, 4}));
  EXPECT_EQ(qvCompStrength(&one, &two, &small, 3), -9);
  QvArray shared = two.close;
  EXPECT_EQ(qvCompStrength(&one, &two, &shared, 0), -1);
  EXPECT_EQ(two.close.data[0], 1) << "written";
}

TEST_F(Comparisons, HaveOneAtTheFirstMatchedBarWhateverItsStrength) {
  dated(one, {1, 2}, {0, 4});
  dated(two, {1, 2}, {0, 2});
  ASSERT_EQ(performance(0), 0);
  EXPECT_EQ(out[0], 1);
  EXPECT_TRUE(std::isnan(out[1]));
}

}  // namespace
}  // namespace qvtest
