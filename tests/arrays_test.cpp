// Utilities on whole series and the price formulas of a single bar.
#include <gtest/gtest.h>

#include <climits>

#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

TEST(ScaleArray, MapsTheGivenOrTheFoundRange) {
  const Array in{1, 2, 5};
  Array out;
  ASSERT_EQ(qvScaleArray(&in, &out, 0, 10, 0, 100, 0, 0), 0);  // ratio 10
  EXPECT_EQ(out.items(), (Items{10, 20, 50}));
  ASSERT_EQ(qvScaleArray(&in, &out, 0, 0, 0, 100, 0, 0), 0);  // range 1..5, ratio 25
  EXPECT_EQ(out.items(), (Items{0, 25, 100}));
  ASSERT_EQ(qvScaleArray(&in, &out, kNaN, 0, 0, 100, 0, 1), 0);  // not-a-number counts as 0; range 2..5
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(out[1], 0);
  EXPECT_EQ(out[2], 100);
}

TEST(ScaleArray, DoesNotFlipAReversedTarget) {
  const Array in{1, 2, 5};
  Array out;
  ASSERT_EQ(qvScaleArray(&in, &out, 0, 0, 100, 0, 0, 0), 0);
  EXPECT_EQ(out.items(), (Items{100, 125, 200}));
  ASSERT_EQ(qvScaleArray(&in, &out, 0, 0, 0, 0, 0, 0), 0);
  EXPECT_EQ(out.items(), (Items{0, 0, 0}));
}

TEST(ScaleArray, SkipsZerosForTheMinimumOnly) {
  const Array in{4, 0, 8, 6};
  Array out;
  ASSERT_EQ(qvScaleArray(&in, &out, 0, 0, 0, 100, 1, 0), 0);  // 4..8
  EXPECT_EQ(out.items(), (Items{0, -100, 100, 50}));
  const Array negative{-4, 0, -8, -6};  // the maximum 0 is not skipped: -8..0
  ASSERT_EQ(qvScaleArray(&negative, &out, 0, 0, 0, 100, 1, 0), 0);
  EXPECT_EQ(out.items(), (Items{50, 100, 0, 25}));
}

TEST(MultAddArray, WorksInPlaceAndLeavesTheFirstValidIndex) {
  Array a({1, 2, 3, 4}, 1);
  ASSERT_EQ(qvMultAddArray(&a, &a, 10, -1, 2), 0);
  EXPECT_EQ(a.items(), (Items{1, 2, 29, 39}));
  EXPECT_EQ(a.firstValid, 1);
}

TEST(ShiftArray, MovesItemsAndTheFirstValidIndex) {
  Array a{1, 2, 3, 8, 9};
  qvReSizeArray(&a, 3);
  a.firstValid = 1;
  qvShiftArray(&a, 2);
  EXPECT_EQ(a.items(), (Items{0, 0, 1, 2, 3}));
  EXPECT_EQ(a.firstValid, 3);
  qvShiftArray(&a, 0);
  EXPECT_EQ(a.items(), (Items{0, 0, 1, 2, 3}));
  qvShiftArray(&a, 2);  // 2 and 3 fall off the end of the block
  EXPECT_EQ(a.items(), (Items{0, 0, 0, 0, 1}));
  EXPECT_EQ(a.firstValid, 5);
  qvShiftArray(&a, -4);
  EXPECT_EQ(a.items(), Items{1});
  EXPECT_EQ(a.firstValid, 1);

  Array b{1, 2, 3};
  qvShiftArray(&b, -1);
  EXPECT_EQ(b.items(), (Items{2, 3}));
  EXPECT_EQ(b.firstValid, 0);
}

TEST(ShiftArray, ByTheWholeLengthOrMoreLeavesNothing) {
  for (int k : {3, 4, INT_MAX}) {
    Array a{1, 2, 3};
    qvReSizeArray(&a, 2);
    qvShiftArray(&a, k);
    EXPECT_EQ(a.items(), (Items{0, 0, 0})) << k;
    EXPECT_EQ(a.firstValid, 3) << k;
  }
  for (int k : {-2, -3, INT_MIN}) {
    Array a{1, 2, 3};
    qvReSizeArray(&a, 2);
    qvShiftArray(&a, k);
    EXPECT_EQ(a.size, 0) << k;
    EXPECT_EQ(a.firstValid, 0) << k;
  }
  Array empty;
  qvShiftArray(&empty, 5);
  qvShiftArray(nullptr, 5);
  EXPECT_EQ(empty.size, 0);
}

TEST(Divide, GuardsAZeroDivisor) {
  const Array a({1, 6, 5, 9}, 1), b{2, 3, 0, kNaN};
  Array out;
  ASSERT_EQ(qvDivide(&a, &b, &out, 100, 0), 0);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(out[1], 200);
  EXPECT_EQ(out[2], 0);
  EXPECT_TRUE(std::isnan(out[3]));
  EXPECT_EQ(out.firstValid, 1);
}

TEST(FillInterval, DrawsLinesBetweenMarks) {
  const Array values{10, 99, 99, 16, 99, 20}, marks{0, 0, 0, 1, 0, 0};
  Array out;
  ASSERT_EQ(qvFillInterval(&values, &marks, &out, 0), 0);
  EXPECT_EQ(out.items(), (Items{10, 12, 14, 16, 18, 20}));  // steps 6/3 and 4/2
}

TEST(FillInterval, BeginsItsFirstLineAtItemZero) {
  const Array values{10, 99, 99, 16, 20}, marks{0, 1, 0, 1, 1};
  Array out;
  ASSERT_EQ(qvFillInterval(&values, &marks, &out, 2), 0);
  EXPECT_EQ(out.items(), (Items{0, 2, 4, 16, 20}));  // step (16 - 10) / 3 from the cleared item 0
  EXPECT_EQ(out.firstValid, 2);
}

TEST(FindDate, GivesTheFirstBarAtOrAfterADate) {
  Bars bars(walkBars(4));
  const Items dates{10, 12, 12.5, 15};
  std::copy(dates.begin(), dates.end(), bars.date.data);
  EXPECT_EQ(qvFindDate(&bars, 0), 0);
  EXPECT_EQ(qvFindDate(&bars, 12), 1);
  EXPECT_EQ(qvFindDate(&bars, 12.1), 2);
  EXPECT_EQ(qvFindDate(&bars, 15.5), 4);
  EXPECT_EQ(qvFindDate(&bars, kNaN), 4);
  Bars none;
  EXPECT_EQ(qvFindDate(&none, 1), 0);
  EXPECT_EQ(qvFindDate(nullptr, 1), -1);
  qvFreeArray(&bars.date);
  EXPECT_EQ(qvFindDate(&bars, 1), -1);
}

TEST(FirstNonZeroItem, SearchesFromTheFirstValidIndex) {
  EXPECT_EQ(qvFirstNonZeroItem(std::make_unique<Array>(Items{5, 0, 0, 7}, 1).get()), 3);
  EXPECT_EQ(qvFirstNonZeroItem(std::make_unique<Array>(Items{5, 0, 0}, 1).get()), 0);
  EXPECT_EQ(qvFirstNonZeroItem(std::make_unique<Array>(Items{0, 4}, -3).get()), 1);
  EXPECT_EQ(qvFirstNonZeroItem(std::make_unique<Array>().get()), 0);
}

TEST(SumPrev, AddsTheItemsUpToAnIndex) {
  const Array a({1, 2, 4, 8, 16}, 1);
  EXPECT_EQ(qvSumPrev(&a, 2, 3), 12);
  EXPECT_EQ(qvSumPrev(&a, 9, 3), 14);  // not below the first valid index
  EXPECT_EQ(qvSumPrev(&a, 3, 6), 16);  // items 5 and 6 are past the end
  EXPECT_EQ(qvSumPrev(&a, INT_MAX, INT_MAX), 30);
  for (int count : {0, -1, INT_MIN}) EXPECT_EQ(qvSumPrev(&a, count, 3), 0) << count;
  for (int index : {0, -1, INT_MIN}) EXPECT_EQ(qvSumPrev(&a, INT_MAX, index), 0) << index;
  EXPECT_EQ(qvSumPrev(nullptr, 2, 3), 0);
}

TEST(Decimals, TruncatesTheFraction) {
  EXPECT_EQ(qvDecimals(12.5, 2), 50);
  EXPECT_EQ(qvDecimals(-12.5, 2), 50);
  EXPECT_EQ(qvDecimals(3.0, 2), 0);
  EXPECT_EQ(qvDecimals(1.15, 2), 14);             // 1.15 is stored as 1.149999...
  EXPECT_EQ(qvDecimals(1 + 0x1p-52, 20), 0);      // exactly the machine epsilon
  EXPECT_EQ(qvDecimals(1 + 0x1p-51, 20), 44408);  // 4.4408...e-16
  EXPECT_EQ(qvDecimals(0.5, INT_MAX), INT_MAX);
  EXPECT_EQ(qvDecimals(0.5, INT_MIN), 0);
  for (double x : {kNaN, kInf, -kInf}) EXPECT_EQ(qvDecimals(x, 2), 0);
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
  for (auto price : {qvTrueHigh, qvTrueLow, qvTrueRange, qvTypicalPrice, qvWeightedClose, qvMedianPrice}) {
    for (int i : {INT_MIN, -1, 3, INT_MAX}) EXPECT_EQ(price(&bars, i), 0) << i;
    EXPECT_NE(price(&bars, 2), 0);
    EXPECT_EQ(price(nullptr, 0), 0);
  }
  qvFreeArray(&bars.high);
  EXPECT_EQ(qvTrueRange(&bars, 1), 0);
  EXPECT_EQ(qvMedianPrice(&bars, 1), 0);
  EXPECT_NE(qvTrueLow(&bars, 1), 0);
}

}  // namespace
}  // namespace qvtest
