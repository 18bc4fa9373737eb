// Bar formations, crossovers and turns.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <span>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

using BarTest = int(QVCALL*)(const QvBars*, int) noexcept;

TEST(Formations, FollowTheirDefinitions) {
  struct Case {
    BarTest test;
    double high, low, close;  // after a bar of high 20, low 10 and close 15
    int signal;
  };
  // An outside bar (both ends strictly) that closes beyond the bar before.
  const Case closePriceReversals[] = {{qvCPR, 25, 5, 21, 1}, {qvCPR, 25, 5, 9, -1},  {qvCPR, 25, 5, 20, 0},
                                      {qvCPR, 25, 5, 10, 0}, {qvCPR, 25, 10, 22, 0}, {qvCPR, 20, 5, 4, 0}};
  const Case gaps[] = {
      {qvGap, 25, 21, 22, 1}, {qvGap, 9, 5, 6, -1}, {qvGap, 25, 20, 22, 0}, {qvGap, 10, 5, 6, 0}};
  // Closes against its gap: above 1 + 5.6, below 29 - 5.6. The last two have no gap and no range.
  const Case islands[] = {{qvIslandReversal, 9, 1, 7, 1},     {qvIslandReversal, 9, 1, 6.5, 0},
                          {qvIslandReversal, 29, 21, 23, -1}, {qvIslandReversal, 29, 21, 23.5, 0},
                          {qvIslandReversal, 29, 20, 21, 0},  {qvIslandReversal, 9, 9, 9, 0}};
  const Case insideAndOutside[] = {{qvInsideBar, 19, 11, 15, 1}, {qvInsideBar, 20, 11, 15, 0},
                                   {qvInsideBar, 19, 10, 15, 0}, {qvOutsideBar, 21, 9, 15, 1},
                                   {qvOutsideBar, 20, 9, 15, 0}, {qvOutsideBar, 21, 10, 15, 0}};
  // Where both ends are beyond, the close decides.
  const Case keyReversals[] = {{qvKeyReversal, 15, 9, 16, 1}, {qvKeyReversal, 21, 15, 14, -1},
                               {qvKeyReversal, 21, 9, 16, 1}, {qvKeyReversal, 21, 9, 14, -1},
                               {qvKeyReversal, 21, 9, 15, 0}, {qvKeyReversal, 20, 10, 16, 0}};
  const std::span<const Case> all[] = {closePriceReversals, gaps, islands, insideAndOutside, keyReversals};
  for (const std::span<const Case>& cases : all) {
    for (const Case& c : cases) {
      const Bars bars{{0, 20, 10, 15}, {0, c.high, c.low, c.close}};
      EXPECT_EQ(c.test(&bars, 1), c.signal) << c.high << ' ' << c.low << ' ' << c.close;
    }
  }
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
    int start = 0, end = INT_MAX;
  } cases[] = {
      {"qvCPR", {0, 0, 0, 0, 1}},
      {"qvGap", {0, -1, 1, 0, 0}},
      {"qvGapDown", {0, 1, 0, 0, 0}},
      {"QVGAPUP", {0, 0, 1, 0, 0}},
      {"qvIslandReversal", {0, 0, -1, 0, 0}},
      {"QVINSIDEBAR", {0, 0, 0, 1, 0}},
      {"qvKeyReversal", {0, 0, 0, 0, 1}},
      {"qvoutsidebar", {0, 0, 0, 0, 1}},
      {"qvGap", {0, 0, 1, 0, 0}, 2, 3},
      {"qvGap", {0, -1, 0, 0, 0}, 0, 1},
      {"qvGap", {0, 0, 0, 0, 0}, 3, 2},
      {"qvGap", {0, 0, 0, 0, 0}, 7, 9},
  };
  for (const auto& c : cases) {
    Array out;
    const auto none = std::count(c.signals.begin(), c.signals.end(), 0.0);
    EXPECT_EQ(qvFormationFill(&bars, &out, c.name, c.start, c.end), 5 - none) << c.name;
    expectGives(0, out, c.signals, c.start);
  }
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
  const Array b{5, 5, 5, 5, 5, 5, 5, 5}, c({4, 6, 4, 6}, 1);
  const Array a{4, 5, 5, 6, 5, 3, 7, 4};  // touch from below, still, still, touch from above, still, up, down
  Array out, late;
  expectGives(qvCrossOverFill(&a, &b, &out, 0, 8), out, {0, 1, 0, 0, -1, 0, 1, -1});
  for (int i = 0; i < 8; ++i) EXPECT_EQ(qvCrossOver(&a, &b, i), out[i]) << i;
  expectGives(qvCrossOverFill(&a, &b, &out, 0, 7), out, {0, 1, 0, 0, -1, 0, 1, 0});  // the end is exclusive
  expectGives(qvCrossOverFill(&c, &b, &late, 0, 4), late, {0, 0, -1, 1}, 1);         // after the first valid
}

TEST(Turn, NeedsTwoMovesAndNoFlatPair) {
  const Array a{3, 2, 4, 4, 1, 2, 1};
  Array out;
  expectGives(qvTurnFill(&a, &out, 0, 6), out, {0, 0, 1, 0, 0, 1, -1});  // 4 to 4 to 1 is no peak
  for (int i = 0; i < 7; ++i) EXPECT_EQ(qvTurn(&a, i), out[i]) << i;
  expectGives(qvTurnFill(&a, &out, 1, 5), out, {0, 0, 0, 0, 0, 1, 0}, 1);  // the end is inclusive
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
