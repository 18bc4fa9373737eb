// Bar formations, crossovers and turns.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;
using BarTest = int(QVCALL*)(const QvBars*, int) noexcept;

// The signal of a bar (high, low, close) after a bar of high 20, low 10 and close 15.
int signalOf(BarTest test, double high, double low, double close) {
  const Bars bars{{0, 20, 10, 15}, {0, high, low, close}};
  return test(&bars, 1);
}

TEST(Formations, ClosePriceReversalIsAnOutsideBarThatClosesBeyondIt) {
  EXPECT_EQ(signalOf(qvCPR, 25, 5, 21), 1);
  EXPECT_EQ(signalOf(qvCPR, 25, 5, 9), -1);
  EXPECT_EQ(signalOf(qvCPR, 25, 5, 20), 0);
  EXPECT_EQ(signalOf(qvCPR, 25, 5, 10), 0);
  EXPECT_EQ(signalOf(qvCPR, 25, 10, 22), 0);  // equal low: not an outside bar
  EXPECT_EQ(signalOf(qvCPR, 20, 5, 4), 0);
}

TEST(Formations, GapsAreStrict) {
  EXPECT_EQ(signalOf(qvGap, 25, 21, 22), 1);
  EXPECT_EQ(signalOf(qvGap, 9, 5, 6), -1);
  EXPECT_EQ(signalOf(qvGap, 25, 20, 22), 0);
  EXPECT_EQ(signalOf(qvGap, 10, 5, 6), 0);
}

TEST(Formations, IslandReversalClosesAgainstItsGap) {
  EXPECT_EQ(signalOf(qvIslandReversal, 9, 1, 7), 1);  // above 1 + 5.6
  EXPECT_EQ(signalOf(qvIslandReversal, 9, 1, 6.5), 0);
  EXPECT_EQ(signalOf(qvIslandReversal, 29, 21, 23), -1);  // below 29 - 5.6
  EXPECT_EQ(signalOf(qvIslandReversal, 29, 21, 23.5), 0);
  EXPECT_EQ(signalOf(qvIslandReversal, 29, 20, 21), 0);  // no gap
  EXPECT_EQ(signalOf(qvIslandReversal, 9, 9, 9), 0);     // no range
}

TEST(Formations, InsideAndOutsideBarsAreStrictOnBothEnds) {
  EXPECT_EQ(signalOf(qvInsideBar, 19, 11, 15), 1);
  EXPECT_EQ(signalOf(qvInsideBar, 20, 11, 15), 0);
  EXPECT_EQ(signalOf(qvInsideBar, 19, 10, 15), 0);
  EXPECT_EQ(signalOf(qvOutsideBar, 21, 9, 15), 1);
  EXPECT_EQ(signalOf(qvOutsideBar, 20, 9, 15), 0);
  EXPECT_EQ(signalOf(qvOutsideBar, 21, 10, 15), 0);
}

TEST(Formations, KeyReversalTestsTheRiseFirst) {
  EXPECT_EQ(signalOf(qvKeyReversal, 15, 9, 16), 1);
  EXPECT_EQ(signalOf(qvKeyReversal, 21, 15, 14), -1);
  EXPECT_EQ(signalOf(qvKeyReversal, 21, 9, 16), 1);
  EXPECT_EQ(signalOf(qvKeyReversal, 21, 9, 14), -1);
  EXPECT_EQ(signalOf(qvKeyReversal, 21, 9, 15), 0);
  EXPECT_EQ(signalOf(qvKeyReversal, 20, 10, 16), 0);
}

TEST(Formations, SignalNothingWhereThereIsNoBar) {
  Bars bars{{0, 20, 10, 15}, {0, 25, 5, 21}};  // the second bar is an outside bar
  for (BarTest test : {qvCPR, qvGap, qvIslandReversal, qvInsideBar, qvKeyReversal, qvOutsideBar}) {
    for (int i : {INT_MIN, -1, 0, 2, INT_MAX}) EXPECT_EQ(test(&bars, i), 0) << i;
    EXPECT_EQ(test(nullptr, 1), -1);
  }
  qvFreeArray(&bars.close);
  EXPECT_EQ(qvCPR(&bars, 1), 0);
  EXPECT_EQ(qvOutsideBar(&bars, 1), 1);
}

// Against the bar before: a downward gap, an upward gap that closes below 15 - 0.7 * 5, an inside bar,
// an outside bar that closes above 14.
const std::vector<Bar> kBars{{0, 20, 10, 15}, {0, 9, 5, 6}, {0, 15, 10, 11}, {0, 14, 11, 12}, {0, 17, 9, 16}};

TEST(FormationFill, WritesAndCountsTheSignals) {
  const Bars bars(kBars);
  const struct {
    const char* name;
    Items signals;
  } cases[] = {
      {"qvCPR", {0, 0, 0, 0, 1}},
      {"qvGap", {0, -1, 1, 0, 0}},
      {"qvGapDown", {0, 1, 0, 0, 0}},
      {"QVGAPUP", {0, 0, 1, 0, 0}},
      {"qvIslandReversal", {0, 0, -1, 0, 0}},
      {"QVINSIDEBAR", {0, 0, 0, 1, 0}},
      {"qvKeyReversal", {0, 0, 0, 0, 1}},
      {"qvoutsidebar", {0, 0, 0, 0, 1}},
  };
  for (const auto& c : cases) {
    Array out;
    const auto none = std::count(c.signals.begin(), c.signals.end(), 0.0);
    EXPECT_EQ(qvFormationFill(&bars, &out, c.name, 0, INT_MAX), 5 - none) << c.name;
    EXPECT_EQ(out.items(), c.signals) << c.name;
    EXPECT_EQ(out.firstValid, 0) << c.name;
  }
}

TEST(FormationFill, KeepsToItsBars) {
  const Bars bars(kBars);
  Array out;
  EXPECT_EQ(qvFormationFill(&bars, &out, "qvGap", 2, 3), 1);
  EXPECT_EQ(out.items(), (Items{0, 0, 1, 0, 0}));
  EXPECT_EQ(out.firstValid, 2);
  EXPECT_EQ(qvFormationFill(&bars, &out, "qvGap", 0, 1), 1);
  EXPECT_EQ(out.items(), (Items{0, -1, 0, 0, 0}));
  EXPECT_EQ(qvFormationFill(&bars, &out, "qvGap", 3, 2), 0);
  EXPECT_EQ(qvFormationFill(&bars, &out, "qvGap", 7, 9), 0);
  EXPECT_EQ(out.firstValid, 7);
}

TEST(FormationFill, AnUnknownNameLeavesTheOutputCleared) {
  const Bars bars(kBars);
  for (const char* name : {"", "qvGa", "qvGaps", "Gap"}) {
    Array out{1, 2, 3, 4, 5};
    EXPECT_EQ(qvFormationFill(&bars, &out, name, 0, 4), -1) << name;
    EXPECT_EQ(out.items(), Items(5, 0.0)) << name;
  }
  Array out{1, 2};
  EXPECT_EQ(qvFormationFill(&bars, &out, nullptr, 0, 4), -1);
  EXPECT_EQ(out.items(), (Items{1, 2}));
}

TEST(CrossOver, CountsATouchFromEitherSide) {
  const Array b{5, 5, 5, 5, 5, 5, 5, 5};
  const Array a{4, 5, 5, 6, 5, 3, 7, 4};  // touch from below, still, still, touch from above, still, up, down
  Array out;
  ASSERT_EQ(qvCrossOverFill(&a, &b, &out, 0, 8), 0);
  EXPECT_EQ(out.items(), (Items{0, 1, 0, 0, -1, 0, 1, -1}));
  for (int i = 0; i < 8; ++i) EXPECT_EQ(qvCrossOver(&a, &b, i), out[i]) << i;
  ASSERT_EQ(qvCrossOverFill(&a, &b, &out, 0, 7), 0);  // the end is exclusive
  EXPECT_EQ(out.items(), (Items{0, 1, 0, 0, -1, 0, 1, 0}));
}

TEST(CrossOver, BeginsAfterTheFirstValidIndex) {
  const Array a({4, 6, 4, 6}, 1), b({5, 5, 5, 5});
  Array out;
  ASSERT_EQ(qvCrossOverFill(&a, &b, &out, 0, 4), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, -1, 1}));
  EXPECT_EQ(out.firstValid, 1);
}

TEST(Turn, NeedsTwoMovesAndNoFlatPair) {
  const Array a{3, 2, 4, 4, 1, 2, 1};
  Array out;
  ASSERT_EQ(qvTurnFill(&a, &out, 0, 6), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 1, 0, 0, 1, -1}));  // 4 to 4 to 1 is no peak
  for (int i = 0; i < 7; ++i) EXPECT_EQ(qvTurn(&a, i), out[i]) << i;
  ASSERT_EQ(qvTurnFill(&a, &out, 1, 5), 0);  // the end is inclusive
  EXPECT_EQ(out.items(), (Items{0, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(out.firstValid, 1);
}

TEST(CrossOverAndTurn, SignalNothingOutsideTheSeries) {
  const Array a{1, 3, 2}, shorter{2, 2};
  Array empty;
  for (int i : {INT_MIN, -1, 0, 2, INT_MAX}) EXPECT_EQ(qvCrossOver(&a, &shorter, i), 0) << i;
  EXPECT_EQ(qvCrossOver(&a, &shorter, 1), 1);
  EXPECT_EQ(qvCrossOver(&a, &empty, 1), 0);
  for (int i : {INT_MIN, 0, 1, 3, INT_MAX}) EXPECT_EQ(qvTurn(&a, i), 0) << i;
  EXPECT_EQ(qvTurn(&a, 2), -1);
  EXPECT_EQ(qvTurn(nullptr, 2), -1);
  EXPECT_EQ(qvCrossOver(&a, nullptr, 1), -1);
}

}  // namespace
}  // namespace qvtest
