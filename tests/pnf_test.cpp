#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "qvlib60/pnf.h"
#include "support/expect.h"
#include "support/files.h"
#include "support/series.h"

namespace qvtest {
namespace {

using Convert = decltype(&qvBars2PNF);
constexpr Convert kForms[] = {qvBars2PNF, qvBars2PNFhilo};

std::vector<Bar> closes(const std::vector<double>& prices) {
  std::vector<Bar> bars;
  for (double p : prices) bars.push_back({p, p, p, p, 0, 0, 1000.0 + static_cast<double>(bars.size())});
  return bars;
}

// Column c as open, high, low, close, boxes, direction, date.
using Column = std::vector<double>;
Column columnAt(const QvBars& b, int c) {
  return {b.open.data[c],   b.high.data[c],         b.low.data[c], b.close.data[c],
          b.volume.data[c], b.openInterest.data[c], b.date.data[c]};
}

void expectChart(Convert convert, const std::vector<Bar>& data, double reversal, int start,
                 const Items& columnOf, const std::vector<Column>& wanted) {
  const Bars bars(data);
  Bars columns;
  Array index;
  expectGives(convert(&bars, &columns, &index, 1, reversal, start), index, columnOf);
  ASSERT_EQ(columns.barsize, static_cast<int>(wanted.size()));
  for (int c = 0; const Column& column : wanted) EXPECT_EQ(columnAt(columns, c++), column);
}

TEST(PointAndFigure, ByClosesFollowsItsRules) {
  // A falling column opens three boxes back.
  expectChart(qvBars2PNF, closes({10, 11, 12, 13, 10}), 3, 0, {0, 0, 0, 0, 1},
              {{0, 13, 11, 13, 3, 1, 1001}, {12, 12, 10, 10, 0, -1, 1004}});
  // A column one box high counts two boxes.
  expectChart(qvBars2PNF, closes({10, 10, 11, 9}), 2, 0, {0, 0, 0, 1},
              {{0, 11, 10, 11, 2, 1, 1001}, {10, 10, 9, 9, 0, -1, 1003}});
  // Moves are measured from bar 2 (the close 20): 19 at bar 6 is the first a box away. The bars
  // before it widen column 0 (20.5 at bar 3); 17.5 extends it; 19.5 is two boxes back, 21 goes on.
  // Column 0 is 4.25 boxes high.
  expectChart(qvBars2PNF, closes({1, 50, 20, 20.5, 20.75, 19.5, 19, 17.5, 19, 19.5, 21, 20}), 2, 2,
              {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1},
              {{0, 20.75, 17.5, 17.5, 4, -1, 1003}, {18.5, 21, 18.5, 21, 0, 1, 1009}});
  // The bar that opens column zero does not decide: bar 1 is two boxes up; bar 2, back at the start,
  // moves nothing; bar 3 decides, and is a box below the 12 of bar 1. From there on every bar but the
  // last reverses.
  expectChart(qvBars2PNF, closes({10, 12, 10, 11, 12, 11, 10}), 1, 0, {0, 0, 0, 1, 2, 3, 3},
              {{0, 12, 10, 12, 3, 1, 1001},
               {11, 11, 11, 11, 1, -1, 1003},
               {12, 12, 12, 12, 1, 1, 1004},
               {11, 11, 10, 10, 0, -1, 1005}});
}

TEST(PointAndFigure, ByHighsAndLowsOneBarMayExtendAndReverse) {
  std::vector<Bar> data = closes(Items(7, 10.0));
  const Items highs{10.5, 10.75, 10.875, 12, 10.5, 11.5, 11}, lows{9.5, 9.25, 9.125, 8, 7, 9, 8.5};
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i].high = highs[i];
    data[i].low = lows[i];
  }
  // Bar 3 is a box or more away both ways: upward counts. It takes the column to 12 and is three
  // boxes below that; bar 4 falls to 7 and is three boxes above that; bar 6 is three below 11.5.
  expectChart(qvBars2PNFhilo, data, 3, 0, {0, 0, 0, 1, 2, 2, 3},
              {{0, 12, 9.125, 12, 3, 1, 1001},
               {11, 11, 7, 7, 5, -1, 1003},
               {8, 11.5, 8, 11.5, 4, 1, 1004},
               {10.5, 10.5, 8.5, 8.5, 0, -1, 1006}});
}

TEST(PointAndFigure, ReversalsAreMeasuredFromTheExtremeByClosesAndFromThePriceByHighsAndLows) {
  // In doubles 2.5 - 2.2 is a hair below 3 * 0.1, but 2.5 - 3 * 0.1 is 2.2.
  const Bars bars(closes({2.25, 2.25, 2.375, 2.5, 2.2}));
  Bars columns, byRange;
  Array index, rangeIndex;
  expectGives(qvBars2PNF(&bars, &columns, &index, 0.1, 3, 0), index, {0, 0, 0, 0, 0});
  expectGives(qvBars2PNFhilo(&bars, &byRange, &rangeIndex, 0.1, 3, 0), rangeIndex, {0, 0, 0, 0, 1});
}

TEST(PointAndFigure, ColumnsAlternateAndBeginABoxFromTheLast) {
  const Bars bars(walkBars(3000));
  for (Convert convert : kForms) {
    Bars columns;
    Array columnOf;
    ASSERT_EQ(convert(&bars, &columns, &columnOf, 0.5, 3, 5), 0);
    ASSERT_EQ(columns.datasize, 3000);
    ASSERT_EQ(columnOf.size, 3000);
    EXPECT_GT(columns.barsize, 50);
    EXPECT_EQ(columnOf[2999], columns.barsize - 1);
    for (int c = 1; c < columns.barsize; ++c) {
      const Column now = columnAt(columns, c), before = columnAt(columns, c - 1);
      const bool rises = now[5] > 0;
      ASSERT_EQ(now[5], -before[5]);
      ASSERT_EQ(now[0], rises ? before[2] + 0.5 : before[1] - 0.5);
      ASSERT_EQ(now[0], rises ? now[2] : now[1]);
      ASSERT_EQ(now[3], rises ? now[1] : now[2]);
      ASSERT_GE(now[1] - now[2], 1.0) << "two boxes at least: three back, less the one that it begins with";
    }
    for (int i = 1; i < 3000; ++i) {
      const int c = static_cast<int>(columnOf[i]);
      ASSERT_TRUE(columnOf[i] == columnOf[i - 1] ||
                  (columnOf[i] == columnOf[i - 1] + 1 && columns.date.data[c] == bars.date.data[i]));
    }
  }
}

TEST(PointAndFigure, APriceThatNeverMovesABoxIsRefusedWithTheOutputsAllocated) {
  const Bars flat(closes(std::vector<double>(20, 7.0))), walk(walkBars(20));
  for (Convert convert : kForms) {
    Bars columns, none, late;
    Array columnOf, noneOf, lateOf;
    EXPECT_EQ(convert(&flat, &columns, &columnOf, 1, 3, 0), -1);
    EXPECT_EQ(columns.barsize, 20);
    EXPECT_EQ(columnOf.items(), std::vector<double>(20, 0.0));
    EXPECT_EQ(convert(&walk, &none, &noneOf, kInf, 3, 0), -1);
    EXPECT_EQ(convert(&walk, &late, &lateOf, 0.01, 3, 18), -1) << "no bar after the first of column 0";
    EXPECT_EQ(late.date.data[0], walk.date.data[19]);
  }
}

TEST(PointAndFigure, SurvivesAnyArgument) {
  const Bars bars(walkBars(60));
  Bars wild(walkBars(60));
  for (int i = 0; i < 60; i += 3) {
    wild.close.data[i] = wild.low.data[i] = kNaN;
    wild.high.data[i] = i % 2 ? kInf : -kInf;
  }
  for (Convert convert : kForms)
    for (double box : {0.0, -1.0, -kInf, kNaN, 5e-324, 1e-9, 1.0, 1e308})
      for (double reversal : {-kInf, -1.0, 0.0, 5e-324, 1.0, 1e308, kInf, kNaN})
        for (int start : {INT_MIN, -1, 0, 57, 58, 59, 60, INT_MAX}) {
          Bars columns, wildColumns, zero;
          Array columnOf, wildColumnOf, zeroOf;
          const int status = convert(&bars, &columns, &columnOf, box, reversal, start);
          ASSERT_TRUE(status == -1 || (status == 0 && box > 0 && start <= 57));
          ASSERT_LE(columns.barsize, 60);
          ASSERT_TRUE(box > 0 || !(columns.date.data || columnOf.data));
          ASSERT_GE(convert(&wild, &wildColumns, &wildColumnOf, box, reversal, start), -1);
          if (start >= 0) continue;  // counts as 0
          ASSERT_EQ(convert(&bars, &zero, &zeroOf, box, reversal, 0), status);
          ASSERT_EQ(zeroOf.items(), columnOf.items());
        }
}

TEST(PointAndFigure, RefusesMissingAndSharedRecords) {
  for (Convert convert : kForms) {
    Bars bars(walkBars(30)), columns, lacking(walkBars(30));
    Array columnOf;
    const QvBars empty{};
    qvFreeArray(&lacking.close);
    for (const QvBars* in :
         {static_cast<const QvBars*>(nullptr), &empty, static_cast<const QvBars*>(&lacking)})
      EXPECT_EQ(convert(in, &columns, &columnOf, 1, 3, 0), -1);
    for (QvBars* out : {static_cast<QvBars*>(nullptr), static_cast<QvBars*>(&bars)})
      EXPECT_EQ(convert(&bars, out, &columnOf, 1, 3, 0), -1);
    for (QvArray* out : {static_cast<QvArray*>(nullptr), &bars.volume, &columns.date})
      EXPECT_EQ(convert(&bars, &columns, out, 1, 3, 0), -1);
    EXPECT_EQ(columns.date.data, nullptr) << "nothing written";
    EXPECT_EQ(bars.barsize, 30);
  }
}

TEST(PointAndFigure, SurvivesTheFailureOfEachAllocation) {
  const Bars bars(walkBars(30));
  for (Convert convert : kForms) {
    Bars columns;
    Array columnOf;
    expectAnswersExhaustedMemory("columns", [&] {
      const int status = convert(&bars, &columns, &columnOf, 0.5, 1, 0);
      EXPECT_TRUE(status == 0 || !(columns.date.data || columnOf.data));
      return status;
    });
  }
}

// Three columns: X from 11 to 13, O from 12 to 10, X from 11 to 11.95.
Bars& threeColumns() {
  static Bars b{{0, 13, 11, 13, 3, 1}, {12, 12, 10, 10, 3, -1}, {11, 11.95, 11, 11.95, 0, 1}};
  return b;
}

TEST(PointAndFigureChart, DrawsLevelsToWithinATenthOfABox) {
  const ScratchDir dir;
  ASSERT_EQ(qvPNFchart(&threeColumns(), 1, (dir / "chart.txt").c_str(), 0), 0);
  const std::string chart = "\n   13.000 X  \n   12.000 XOX\n   11.000 XOX\n   10.000  O ";
  EXPECT_EQ(dir.read("chart.txt"), chart);
  ASSERT_EQ(qvPNFchart(&threeColumns(), 1, (dir / "chart.txt").c_str(), 1), 0);
  EXPECT_EQ(dir.read("chart.txt"), chart + chart) << "appended";
  // Box 4: the top is 13.4 less 1.4, the bottom 10 less 2 less 0.4; 12 and 8 are the levels, and 8
  // is in no column.
  ASSERT_EQ(qvPNFchart(&threeColumns(), 4, (dir / "chart.txt").c_str(), 0), 0);
  EXPECT_EQ(dir.read("chart.txt"), "\n   12.000 XOX\n    8.000    ") << "truncated";
  const Bars flat{{0, 2.5, 2, 0, 0, 0}};
  ASSERT_EQ(qvPNFchart(&flat, 0.5, (dir / "chart.txt").c_str(), 0), 0);
  EXPECT_EQ(dir.read("chart.txt"), "\n    2.500 O\n    2.000 O") << "without direction: as falling";

  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  EXPECT_EQ(qvPNFchart(&flat, 0.5, "STDOUT", 0), 0);
  std::filesystem::current_path(before);
  EXPECT_EQ(dir.read("STDOUT"), dir.read("chart.txt")) << "a file like any other";
}

TEST(PointAndFigureChart, LevelsDoNotDrift) {
  const ScratchDir dir;
  const Bars tall{{0, 1000, 0, 1000, 0, 1}};
  ASSERT_EQ(qvPNFchart(&tall, 0.1, (dir / "chart.txt").c_str(), 0), 0);
  std::istringstream text(dir.read("chart.txt"));
  std::string line, mark;
  std::getline(text, line);  // the newline that the first row begins with
  for (int tenths = 10000; tenths >= 0; --tenths) {
    double level;
    ASSERT_TRUE(text >> level >> mark) << tenths;
    ASSERT_NEAR(level, tenths / 10.0, 0.00101) << "truncated to three decimals";
    ASSERT_EQ(mark, "X");
  }
  EXPECT_FALSE(text >> mark);
}

TEST(PointAndFigureChart, RefusesWhatCannotBeDrawnAndWritesNothing) {
  const ScratchDir dir;
  const std::string path = dir / "chart.txt";
  dir.write("chart.txt", "kept");
  for (double box : {0.0, -0.0, -1.0, kNaN, kInf, -kInf, 5e-324, 1e-300, 1e-9, 2e-5})
    EXPECT_EQ(qvPNFchart(&threeColumns(), box, path.c_str(), 0), -1) << box;
  for (double price : {kNaN, kInf, -kInf}) {
    const Bars wild{{0, price, 11, 13, 3, 1}}, wildLow{{0, 13, price, 13, 3, 1}};
    for (const QvBars* bars : {&wild, &wildLow}) EXPECT_EQ(qvPNFchart(bars, 1, path.c_str(), 0), -1) << price;
  }
  const Bars high{{0, 1e308, 11, 13, 3, 1}}, low{{0, 13, 1e308, 13, 3, 1}};
  Bars unset{{0, 13, 11, 13, 3, 1}};
  unset.high.firstValid = 1;
  const QvBars empty{};
  EXPECT_EQ(qvPNFchart(&high, 1e300, path.c_str(), 0), -1);
  EXPECT_EQ(qvPNFchart(&unset, 1, path.c_str(), 0), -1) << "no valid high";
  EXPECT_EQ(qvPNFchart(&empty, 1, path.c_str(), 0), -1);
  EXPECT_EQ(qvPNFchart(nullptr, 1, path.c_str(), 0), -1);
  EXPECT_EQ(qvPNFchart(&threeColumns(), 1, nullptr, 0), -1);
  EXPECT_EQ(qvPNFchart(&threeColumns(), 1, (dir / "no/such.txt").c_str(), 0), -2);
  EXPECT_EQ(dir.read("chart.txt"), "kept");
  EXPECT_EQ(qvPNFchart(&low, 1, path.c_str(), 0), 0);
  EXPECT_EQ(dir.read("chart.txt"), "") << "highs below the lows: no level";
}

TEST(PointAndFigureChart, HasAHundredThousandRowsAtMost) {
  const ScratchDir dir;
  const Bars most{{0, 100'000, 1, 0, 0, 1}}, more{{0, 100'001, 1, 0, 0, 1}};
  const Bars huge{{0, 1e308, 1e308, 0, 0, 1}};
  EXPECT_EQ(qvPNFchart(&most, 1, (dir / "most.txt").c_str(), 0), 0);
  EXPECT_EQ(qvPNFchart(&more, 1, (dir / "more.txt").c_str(), 0), -1);
  EXPECT_FALSE(std::filesystem::exists(dir / "more.txt"));
  const std::string text = dir.read("most.txt");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 100'000);
  EXPECT_EQ(text.substr(text.rfind('\n')), "\n    1.000 X");
  ASSERT_EQ(qvPNFchart(&huge, 1, (dir / "huge.txt").c_str(), 0), 0) << "a box is lost in such a price";
  EXPECT_EQ(dir.read("huge.txt"), "\n9223372036854775807.000 X");
}

}  // namespace
}  // namespace qvtest
