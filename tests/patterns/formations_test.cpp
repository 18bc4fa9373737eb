// Bar formations, crossovers and turns.
#include <gtest/gtest.h>

#include <array>
#include <climits>

#include "support/expect.h"

namespace qvtest {
namespace {

TEST(Formations, FollowTheirDefinitions) {
  const struct {
    const char* name;
    int(QVCALL* test)(const QvBars*, int) noexcept;
    std::vector<std::array<double, 4>> cases;  // high, low, close and signal
  } formations[] = {
      // After a bar of high 20, low 10 and close 15. An outside bar that closes beyond the bar before.
      {"qvCPR",
       qvCPR,
       {{25, 5, 21, 1}, {25, 5, 9, -1}, {25, 5, 20, 0}, {25, 5, 10, 0}, {25, 10, 22, 0}, {20, 5, 4, 0}}},
      {"QVGAP", qvGap, {{25, 21, 22, 1}, {9, 5, 6, -1}, {25, 20, 22, 0}, {10, 5, 6, 0}}},
      {"qvGapUp", nullptr, {{25, 21, 22, 1}, {9, 5, 6, 0}, {25, 20, 22, 0}}},
      {"qvGapDown", nullptr, {{25, 21, 22, 0}, {9, 5, 6, 1}, {10, 5, 6, 0}}},
      // Closes against its gap: above 1 + 5.6, below 29 - 5.6. The last two have no gap and no range.
      {"qvIslandReversal",
       qvIslandReversal,
       {{9, 1, 7, 1}, {9, 1, 6.5, 0}, {29, 21, 23, -1}, {29, 21, 23.5, 0}, {29, 20, 21, 0}, {9, 9, 9, 0}}},
      {"qvInsideBar", qvInsideBar, {{19, 11, 15, 1}, {20, 11, 15, 0}, {19, 10, 15, 0}}},
      {"qvoutsidebar", qvOutsideBar, {{21, 9, 15, 1}, {20, 9, 15, 0}, {21, 10, 15, 0}}},
      // Where both ends are beyond, the close decides.
      {"qvKeyReversal",
       qvKeyReversal,
       {{15, 9, 16, 1}, {21, 15, 14, -1}, {21, 9, 16, 1}, {21, 9, 14, -1}, {21, 9, 15, 0}, {20, 10, 16, 0}}},
  };
  for (const auto& [name, test, cases] : formations) {
    for (const auto& [high, low, close, signal] : cases) {
      SCOPED_TRACE(name + testing::PrintToString(close));
      const Bars bars{{0, 20, 10, 15}, {0, high, low, close}};
      Array out;
      EXPECT_EQ(qvFormationFill(&bars, &out, name, 0, 1), signal != 0);
      expectGives(0, out, {0, signal}, 0);
      EXPECT_TRUE(!test || test(&bars, 1) == signal);
    }
    if (!test) continue;
    Bars bars{{0, 20, 10, 15}, {0, 25, 5, 21}};
    for (int i : {INT_MIN, -1, 0, 2, INT_MAX}) EXPECT_EQ(test(&bars, i), 0) << i;
    EXPECT_EQ(test(nullptr, 1), -1);
    qvFreeArray(&bars.close);
    EXPECT_EQ(test(&bars, 1), test == qvOutsideBar ? 1 : 0);  // which does not read it
  }
}

TEST(FormationFill, KeepsToItsRangeAndKnowsItsNames) {
  const Bars bars{{0, 20, 10, 15}, {0, 9, 5, 6}, {0, 15, 10, 11}, {0, 14, 11, 12}};  // a gap down, then up
  Array out;
  const auto fill = [&](int start, int end) { return qvFormationFill(&bars, &out, "qvGap", start, end); };
  expectGives(fill(INT_MIN, INT_MAX) - 2, out, {0, -1, 1, 0}, 0);
  expectGives(fill(2, 3) - 1, out, {0, 0, 1, 0}, 2);
  expectGives(fill(0, 1) - 1, out, {0, -1, 0, 0}, 0);
  for (int end : {2, 9}) expectGives(fill(7, end), out, Items(4, 0.0), 7);
  for (const char* name : {"", "qvGa", "qvGaps", "Gap", static_cast<const char*>(nullptr)}) {
    out.data[0] = 5;
    EXPECT_EQ(qvFormationFill(&bars, &out, name, 0, 3), -1);
    EXPECT_EQ(out[0], name ? 0 : 5) << "cleared where there is a name";
  }
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvFormationFill(&bars, out.fresh(), "", 0, 3), -3);
  qv::memory::failAllocation(0);
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
  const Array a{3, 2, 4, 4, 1, 1, 2, 1};
  Array out;
  // 4 4 1 is no peak, 1 1 2 no trough.
  expectGives(qvTurnFill(&a, &out, 0, 7), out, {0, 0, 1, 0, 0, 0, 0, -1});
  for (int i = 0; i < 8; ++i) EXPECT_EQ(qvTurn(&a, i), out[i]) << i;
  expectGives(qvTurnFill(&a, &out, 1, 7), out, {0, 0, 0, 0, 0, 0, 0, -1}, 1);
  expectGives(qvTurnFill(&a, &out, 0, 6), out, {0, 0, 1, 0, 0, 0, 0, 0});  // the end is inclusive
}

TEST(CrossOverAndTurn, SignalNothingOutsideTheSeries) {
  const Array a{1, 3, 2}, shorter{2, 2};
  for (int i : {INT_MIN, -1, 2, INT_MAX})
    EXPECT_EQ(qvCrossOver(&a, &shorter, i) + qvTurn(&shorter, i), 0) << i;
  EXPECT_EQ(qvTurn(nullptr, 2), -1);
}

}  // namespace
}  // namespace qvtest
