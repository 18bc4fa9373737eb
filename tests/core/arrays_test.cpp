// Utilities on whole series and the price formulas of a single bar.
#include <gtest/gtest.h>

#include <climits>

#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(ScaleArray, MapsTheGivenOrTheFoundRange) {
  const Array in{1, 2, 5}, gaps{4, 0, 8, 6}, negative{-4, 0, -8, -6};
  Array out;
  expectGives(qvScaleArray(&in, &out, 0, 10, 0, 100, 0, 0), out, {10, 20, 50});
  expectGives(qvScaleArray(&in, &out, 0, 0, 0, 100, 0, 0), out, {0, 25, 100});     // range 1..5
  expectGives(qvScaleArray(&in, &out, kNaN, 0, 0, 100, 0, 1), out, {0, 0, 100});   // counts as 0; range 2..5
  expectGives(qvScaleArray(&in, &out, 0, 0, 100, 0, 0, 0), out, {100, 125, 200});  // reversed, not flipped
  expectGives(qvScaleArray(&gaps, out.fresh(), 0, 0, 0, 100, 1, 0), out, {0, -100, 100, 50});  // 4..8
  const Array constant{7, 7};
  expectGives(qvScaleArray(&constant, out.fresh(), 0, 0, 0, 100, 0, 0), out, {kNaN, kNaN});
  // The maximum 0 is not skipped: -8..0.
  expectGives(qvScaleArray(&negative, out.fresh(), 0, 0, 0, 100, 1, 0), out, {50, 100, 0, 25});
}

TEST(ShiftArray, MovesItemsAndTheFirstValidIndex) {
  Array a({1, 2, 3, 8, 9}, 1);
  qvReSizeArray(&a, 3);
  const auto expectShifted = [&](int by, const Items& items, int firstValid) {
    qvShiftArray(&a, by);
    expectGives(0, a, items, firstValid);
  };
  for (int by : {2, 0}) expectShifted(by, {0, 0, 1, 2, 3}, 3);
  expectShifted(2, {0, 0, 0, 0, 1}, 5);  // 2 and 3 fall off the end of the block
  expectShifted(-4, {1}, 1);
  expectShifted(INT_MAX, Items(5, 0.0), 5);
  expectShifted(INT_MIN, {}, 0);
  qvShiftArray(nullptr, 5);
}

TEST(MultAddArray, WorksInPlaceAndDivideGuardsAZeroDivisor) {
  Array a({1, 2, 3, 4}, 1), out;
  expectGives(qvMultAddArray(&a, &a, 10, -1, 2), a, {1, 2, 29, 39}, 1);
  const Array b{4, 2, 0, kNaN};
  expectGives(qvDivide(&a, &b, &out, 100, 0), out, {0, 100, 0, kNaN}, 1);
}

TEST(FillInterval, DrawsLinesBetweenMarks) {
  const Array values{10, 99, 99, 16, 99, 20}, marks{0, 0, 0, 1, 0, 0}, late{10, 99, 99, 16, 20},
      ends{0, 1, 0, 1, 1};
  Array out;
  expectGives(qvFillInterval(&values, &marks, &out, 0), out, {10, 12, 14, 16, 18, 20});  // steps 6/3 and 4/2
  // The first line begins at the cleared item 0, its step is (16 - 10) / 3.
  expectGives(qvFillInterval(&late, &ends, out.fresh(), 2), out, {0, 2, 4, 16, 20}, 2);
}

TEST(FindDate, GivesTheFirstBarAtOrAfterADate) {
  Bars bars(closingAt({1, 2, 3}, {}, {10, 12, 12.5})), none;
  for (const auto& [date, index] : {std::pair{0.0, 0}, {12.0, 1}, {12.1, 2}, {15.5, 3}, {kNaN, 3}})
    EXPECT_EQ(qvFindDate(&bars, date), index) << date;
  EXPECT_EQ(qvFindDate(&none, 1), 0);
}

TEST(FirstNonZeroItem, SearchesFromTheFirstValidIndex) {
  const Array a({5, 0, 0, 7}, 1), zeros({5, 0, 0}, 1), negative({0, 4}, -3), empty;
  for (const auto& [array, index] : {std::pair{&a, 3}, {&zeros, 0}, {&negative, 1}, {&empty, 0}})
    EXPECT_EQ(qvFirstNonZeroItem(array), index);
}

TEST(SumPrev, AddsTheItemsUpToAnIndex) {
  const Array a({1, 2, 4, 8, 16}, 1);
  // Not below the first valid index, and no items past the end (5 and 6).
  const int sums[][3] = {{2, 3, 12}, {9, 3, 14},      {3, 6, 16},           {INT_MAX, INT_MAX, 30},
                         {0, 3, 0},  {INT_MIN, 3, 0}, {INT_MAX, INT_MIN, 0}};
  for (const auto& [count, index, sum] : sums) EXPECT_EQ(qvSumPrev(&a, count, index), sum) << count;
}

TEST(Decimals, TruncatesTheFraction) {
  EXPECT_EQ(qvDecimals(-12.5, 2), 50);
  EXPECT_EQ(qvDecimals(1.15, 2), 14);             // 1.15 is stored as 1.149999...
  EXPECT_EQ(qvDecimals(1 + 0x1p-52, 20), 0);      // exactly the machine epsilon
  EXPECT_EQ(qvDecimals(1 + 0x1p-51, 20), 44408);  // 4.4408...e-16
  EXPECT_EQ(qvDecimals(0.5, INT_MAX), INT_MAX);
  EXPECT_EQ(qvDecimals(0.5, INT_MIN), 0);
  for (double x : {3.0, kNaN, -kInf}) EXPECT_EQ(qvDecimals(x, 2), 0);
}

TEST(BarPrices, FollowTheirFormulas) {
  // A gap up, a gap down, and a bar whose high equals the previous close.
  const Bars bars{{0, 12, 8, 10}, {0, 22, 18, 20}, {0, 9, 4, 5}, {0, 5, 3, 4}};
  const double highs[] = {12, 22, 20, 5}, lows[] = {8, 10, 4, 3};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(qvTrueHigh(&bars, i), highs[i]) << i;
    EXPECT_EQ(qvTrueLow(&bars, i), lows[i]) << i;
    EXPECT_EQ(qvTrueRange(&bars, i), highs[i] - lows[i]) << i;
  }
  EXPECT_EQ(qvTypicalPrice(&bars, 2), 6);
  EXPECT_EQ(qvWeightedClose(&bars, 2), 5.75);
  EXPECT_EQ(qvMedianPrice(&bars, 2), 6.5);
}

TEST(BarPrices, AreZeroWhereThereIsNoBar) {
  Bars bars(walkBars(3));
  for (auto price : {qvTrueHigh, qvTrueRange, qvTypicalPrice, qvWeightedClose, qvMedianPrice, qvTrueLow}) {
    for (int i : {INT_MIN, -1, 3, INT_MAX}) EXPECT_EQ(price(&bars, i), 0) << i;
    EXPECT_EQ(price(nullptr, 0), 0);
    QvBars lacking = bars;
    (price == qvTrueLow ? lacking.low : lacking.high).data = nullptr;
    EXPECT_EQ(price(&lacking, 1), 0);
  }
}

}  // namespace
}  // namespace qvtest
