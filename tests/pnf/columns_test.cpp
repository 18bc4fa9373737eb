// Columns out of bars.
#include <gtest/gtest.h>

#include <climits>

#include "core/calculation.h"
#include "support/expect.h"

namespace qvtest {
namespace {

using Convert = decltype(&qvBars2PNF);

const Items kDates{1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 1011};

// Columns as open, high, low, close, boxes, direction, date.
void expectChart(Convert convert, const std::vector<Bar>& data, double reversal, int start,
                 const Items& columnOf, const std::vector<Bar>& wanted) {
  const Bars bars(data), columns(wanted);
  Bars out;
  Array index;
  expectGives(convert(&bars, &out, &index, 1, reversal, start), index, columnOf);
  for (int k = 0; k < qv::kSeriesCount; ++k)
    EXPECT_EQ(itemsOf(qv::seriesOf(out, k)), itemsOf(qv::seriesOf(columns, k))) << k;
}

TEST(PointAndFigure, ByClosesFollowsItsRules) {
  // Moves are measured from bar 2 (the close 20): 19 at bar 6 is the first a box away. The bars
  // before it widen column 0 (20.5 at bar 3); 17.5 extends it; 19.5 is two boxes back, 21 goes on.
  // Column 0 is 4.25 boxes high.
  expectChart(qvBars2PNF, closingAt({1, 50, 20, 20.5, 20.75, 19.5, 19, 17.5, 19, 19.5, 21, 20}, {}, kDates),
              2, 2, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1},
              {{0, 20.75, 17.5, 17.5, 4, -1, 1003}, {18.5, 21, 18.5, 21, 0, 1, 1009}});
  // The bar that opens column zero does not decide: bar 1 is two boxes up; bar 2, back at the start,
  // moves nothing; bar 3 decides, and is a box below the 12 of bar 1. From there on every bar but the
  // last reverses.
  expectChart(qvBars2PNF, closingAt({10, 12, 10, 11, 12, 11, 10}, {}, kDates), 1, INT_MIN,
              {0, 0, 0, 1, 2, 3, 3},
              {{0, 12, 10, 12, 3, 1, 1001},
               {11, 11, 11, 11, 1, -1, 1003},
               {12, 12, 12, 12, 1, 1, 1004},
               {11, 11, 10, 10, 0, -1, 1005}});
}

TEST(PointAndFigure, ByHighsAndLowsOneBarMayExtendAndReverse) {
  const double highs[] = {10.5, 10.75, 10.875, 12, 10.5, 11.5, 11}, lows[] = {9.5, 9.25, 9.125, 8, 7, 9, 8.5};
  std::vector<Bar> data;
  for (int i = 0; i < 7; ++i) data.push_back({10, highs[i], lows[i], 10, 0, 0, 1000.0 + i});
  // Bar 3 is a box or more away both ways: upward counts. It takes the column to 12 and is three
  // boxes below that; bar 4 falls to 7 and is three boxes above that; bar 6 is three below 11.5.
  expectChart(qvBars2PNFhilo, data, 3, 0, {0, 0, 0, 1, 2, 2, 3},
              {{0, 12, 9.125, 12, 3, 1, 1001},
               {11, 11, 7, 7, 5, -1, 1003},
               {8, 11.5, 8, 11.5, 4, 1, 1004},
               {10.5, 10.5, 8.5, 8.5, 0, -1, 1006}});
}

TEST(PointAndFigure, ReversalsAreMeasuredFromTheExtremeByClosesAndFromThePriceByHighsAndLows) {
  // In doubles 2.5 - 2.2 is a hair below 3 * 0.1, but 2.5 - 3 * 0.1 is 2.2. Upwards the same from -2.5.
  for (const double sign : {1.0, -1.0}) {
    Items prices{2.25, 2.25, 2.375, 2.5, 2.2};
    for (double& p : prices) p *= sign;
    const Bars bars(closingAt(prices));
    Bars columns, byRange;
    Array index, rangeIndex;
    expectGives(qvBars2PNF(&bars, &columns, &index, 0.1, 3, 0), index, {0, 0, 0, 0, 0});
    expectGives(qvBars2PNFhilo(&bars, &byRange, &rangeIndex, 0.1, 3, 0), rangeIndex, {0, 0, 0, 0, 1});
  }
}

TEST(PointAndFigure, SurvivesAnyArgument) {
  Bars bars(walkBars(60)), wild(walkBars(60)), lacking(walkBars(30));
  for (int i = 0; i < 60; i += 3) {
    wild.close.data[i] = wild.low.data[i] = kNaN;
    wild.high.data[i] = i % 2 ? kInf : -kInf;
  }
  qvFreeArray(&lacking.close);
  const QvBars empty{};
  for (Convert convert : {qvBars2PNF, qvBars2PNFhilo}) {
    Bars columns;
    Array columnOf;
    for (const QvBars* in : std::initializer_list<const QvBars*>{nullptr, &empty, &lacking})
      EXPECT_EQ(convert(in, &columns, &columnOf, 1, 3, 0), -1);
    for (QvBars* out : std::initializer_list<QvBars*>{nullptr, &bars})
      EXPECT_EQ(convert(&bars, out, &columnOf, 1, 3, 0), -1);
    for (QvArray* out : std::initializer_list<QvArray*>{nullptr, &bars.volume, &columns.date})
      EXPECT_EQ(convert(&bars, &columns, out, 1, 3, 0), -1);
    for (double box : {0.0, -kInf, kNaN}) EXPECT_EQ(convert(&bars, &columns, &columnOf, box, 3, 0), -1);
    EXPECT_FALSE(columns.date.data || columnOf.data) << "nothing written";
    expectAnswersExhaustedMemory("columns", [&] {
      const int status = convert(&bars, &columns, &columnOf, 0.5, 1, 0);
      EXPECT_TRUE(status == 0 || !(columns.date.data || columnOf.data));
      return status;
    });
    for (const QvBars* in : {&bars, &wild})
      for (double box : {5e-324, 1.0, 1e308})
        for (double reversal : {-kInf, 0.0, 5e-324, 1e308, kNaN})
          for (int start : {INT_MIN, 57, 58, INT_MAX}) {
            Bars out;
            Array index;
            const int status = convert(in, &out, &index, box, reversal, start);
            ASSERT_TRUE(status == -1 || (status == 0 && start <= 57));
          }
    for (const int n : {1, 20}) {
      const Bars flat(closingAt(Items(static_cast<std::size_t>(n), 7.0)));
      Bars still;
      EXPECT_EQ(convert(&flat, &still, columnOf.fresh(), 1, 3, 0), -1) << "never moves a box";
    }
  }
}

}  // namespace
}  // namespace qvtest
