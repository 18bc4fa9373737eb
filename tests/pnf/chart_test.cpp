// The text chart of columns.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "support/files.h"
#include "support/series.h"

namespace qvtest {
namespace {

TEST(PointAndFigureChart, DrawsLevelsToWithinATenthOfABox) {
  const ScratchDir dir;
  const std::string path = dir / "chart.txt";
  // X from 11 to 13, O from 12 to 10, X from 11 to 11.95.
  const Bars columns{{0, 13, 11, 13, 3, 1}, {12, 12, 10, 10, 3, -1}, {11, 11.95, 11, 11.95, 0, 1}};
  const std::string chart = "\n   13.000 X  \n   12.000 XOX\n   11.000 XOX\n   10.000  O ";
  for (int append : {0, 1}) ASSERT_EQ(qvPNFchart(&columns, 1, path.c_str(), append), 0);
  EXPECT_EQ(dir.read("chart.txt"), chart + chart) << "appended";
  // Box 4: the top is 13.4 less 1.4, the bottom 10 less 2 less 0.4; 12 and 8 are the levels, and 8
  // is in no column.
  ASSERT_EQ(qvPNFchart(&columns, 4, path.c_str(), 0), 0);
  EXPECT_EQ(dir.read("chart.txt"), "\n   12.000 XOX\n    8.000    ") << "truncated";
  const Bars tenths{{0, 0.5, 0.4, 0.5, 0, 1}};  // (0.5 - 0.4) / 0.1 is a hair below 1
  ASSERT_EQ(qvPNFchart(&tenths, 0.1, path.c_str(), 0), 0);
  EXPECT_EQ(dir.read("chart.txt"), "\n    0.500 X\n    0.400 X");
  const Bars flat{{0, 2.5, 2, 0, 0, 0}, {0, 3, 1.5, 0, 0, -1}};
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  EXPECT_EQ(qvPNFchart(&flat, 0.5, "STDOUT", 0), 0);  // a file like any other
  std::filesystem::current_path(before);
  EXPECT_EQ(dir.read("STDOUT"),
            "\n    3.000  O\n    2.500 OO\n    2.000 OO\n    1.500  O");  // 0 is as falling
}

TEST(PointAndFigureChart, LevelsDoNotDrift) {
  const ScratchDir dir;
  const Bars tall{{0, 1000, 0, 1000, 0, 1}};
  ASSERT_EQ(qvPNFchart(&tall, 0.1, (dir / "chart.txt").c_str(), 0), 0);
  std::istringstream text(dir.read("chart.txt"));
  std::string mark;
  double level;
  for (int tenths = 10000; tenths >= 0; --tenths) {
    ASSERT_TRUE(text >> level >> mark) << tenths;
    ASSERT_NEAR(level, tenths / 10.0, 0.00101) << "truncated to three decimals";
  }
  EXPECT_FALSE(text >> mark);
}

TEST(PointAndFigureChart, RefusesWhatCannotBeDrawnAndWritesNothing) {
  const ScratchDir dir;
  const std::string path = dir / "chart.txt";
  dir.write("chart.txt", "kept");
  const auto draw = [&](double high, double low, double box) {
    const Bars bars{{0, high, low, 0, 0, 1}};
    return qvPNFchart(&bars, box, path.c_str(), 0);
  };
  for (double box : {0.0, -1.0, kNaN, kInf, 5e-324, 1e-9, 1.9e-5}) EXPECT_EQ(draw(13, 11, box), -1) << box;
  for (double price : {kNaN, kInf, -kInf}) EXPECT_EQ(draw(price, 11, 1) + draw(13, price, 1), -2) << price;
  Bars late{{0, 13, 11, 0, 0, 1}};
  late.low.firstValid = 1;
  EXPECT_EQ(qvPNFchart(&late, 1, path.c_str(), 0), -1);
  Bars bars{{0, 13, 11, 13, 3, 1}};
  EXPECT_EQ(qvPNFchart(nullptr, 1, path.c_str(), 0), -1);
  EXPECT_EQ(qvPNFchart(&bars, 1, nullptr, 0), -1);
  EXPECT_EQ(qvPNFchart(&bars, 1, (dir / "no/such.txt").c_str(), 0), -2);
  bars.high.firstValid = 1;
  EXPECT_EQ(qvPNFchart(&bars, 1, path.c_str(), 0), -1) << "no valid high";
  EXPECT_EQ(draw(100'001, 1, 1), -1) << "more than a hundred thousand rows";
  EXPECT_EQ(dir.read("chart.txt"), "kept");

  ASSERT_EQ(draw(100'000, 1, 1), 0);
  const std::string text = dir.read("chart.txt");
  EXPECT_EQ(std::count(text.begin(), text.end(), 'X'), 100'000) << "the most rows there may be";
  EXPECT_TRUE(text.ends_with("\n    1.000 X"));
}

}  // namespace
}  // namespace qvtest
