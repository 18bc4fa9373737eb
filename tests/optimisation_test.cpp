// Parameter ranges and trade marks.
#include <gtest/gtest.h>

#include <climits>

#include "core/memory.h"
#include "support/trading.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

QvOptVar range(double start, double end, double step, double value = 0) {
  QvOptVar v{};
  v.start = start;
  v.end = end;
  v.step = step;
  v.value = value;
  return v;
}

int countOf(double start, double end, double step) {
  QvOptVar v = range(start, end, step);
  const int combinations = qvOptVarCount(&v, 1);
  EXPECT_EQ(v.count, combinations);
  return combinations;
}

TEST(OptVar, CountsTheValuesOfARange) {
  EXPECT_EQ(countOf(1, 10, 2), 5);
  EXPECT_EQ(countOf(1, 10, 0), 1);
  EXPECT_EQ(countOf(10, 1, -3), 4);
  EXPECT_EQ(countOf(0.5, 2.5, 0.25), 9);
  EXPECT_EQ(countOf(5, 5, 1), 1);
  EXPECT_EQ(countOf(10, 1, 1), -8) << "against the step";
  EXPECT_EQ(countOf(1, 0, 1), 0);
  EXPECT_EQ(countOf(0, 1e300, 1e-300), INT_MAX);
  EXPECT_EQ(countOf(kNaN, 1, 1), 0);
  EXPECT_EQ(qvOptVarCount(nullptr, 0), 1);
  QvOptVar many[] = {range(1, 100000, 1), range(1, 100000, 1), range(0, 1e9, 1)};
  EXPECT_EQ(qvOptVarCount(many, 3), INT_MAX);
}

TEST(OptVar, StepsThroughAllCombinationsFirstVariableFastest) {
  QvOptVar vars[] = {range(1, 3, 1), range(10, 40, 10)};
  ASSERT_EQ(qvOptVarCount(vars, 2), 12);
  std::vector<std::pair<double, double>> seen;
  for (int k = 1; k <= 12; ++k) {
    ASSERT_EQ(qvOptVarValue(vars, 2, k), 0);
    seen.emplace_back(+vars[0].value, +vars[1].value);
  }
  int k = 0;
  for (double second : {10, 20, 30, 40})
    for (double first : {1, 2, 3}) EXPECT_EQ(seen[static_cast<std::size_t>(k++)], std::pair(first, second));
  for (int outside : {13, 0, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(qvOptVarValue(vars, 2, outside), -1) << outside;
    EXPECT_EQ(+vars[0].value, 3.0);
    EXPECT_EQ(+vars[1].value, 40.0);
  }
}

TEST(OptVar, RangesWithoutValuesHaveNoCombinations) {
  QvOptVar vars[] = {range(1, 0, 1), range(1, 1e9, 1), range(kNaN, kInf, 2)};
  EXPECT_EQ(qvOptVarValue(vars, 3, 1), -1);
  // Two ranges against their steps: odd, but in bounds.
  QvOptVar against[] = {range(10, 1, 1), range(3, 1, 1), range(-1e9, 1e9, 1)};
  for (int k : {1, 2, INT_MAX}) qvOptVarValue(against, 3, k);
  EXPECT_EQ(qvOptVarValue(nullptr, 0, 1), 0);
  EXPECT_EQ(qvOptVarValue(nullptr, 0, 2), -1);
}

std::string label(std::vector<QvOptVar> vars, const char* separator = "/") {
  const int n = static_cast<int>(vars.size());
  const int room = qvOptVarStringLen(vars.data(), n, separator);
  std::vector<char> out(static_cast<std::size_t>(room), '#');  // the sanitizers watch its end
  EXPECT_EQ(qvOptVarString(vars.data(), n, separator, out.data()), 0);
  return out.data();
}

TEST(OptVar, LabelsTakeWidthAndDecimalsFromTheRange) {
  EXPECT_EQ(label({range(0.5, 2.5, 0.25, 1.25)}), "1.25");
  EXPECT_EQ(label({range(-10, 10, 1, 5)}), "  5") << "10 + 1, and a sign";
  EXPECT_EQ(label({range(-10, 10, 1, -10)}), "-10");
  EXPECT_EQ(label({range(9, 9, 1, 9)}), " 9") << "one step beyond the range has two digits";
  EXPECT_EQ(label({range(0, 1, 0.5, 0.05)}), "0.0") << "decimals are cut, not rounded";
  EXPECT_EQ(label({range(0.125, 0.125, 0, 0.125), range(1, 20, 1, 7)}, " and "), "0.125 and  7");
  EXPECT_EQ(label({range(0.1, 0.9, 0.1, 0.3)}), "0") << "0.9 + 0.1 has no decimals";
  EXPECT_EQ(label({range(0, 123456, 0.00005, 98765.5)}), " 98765.500") << "ten characters at most";
  EXPECT_EQ(label({}), "");
  EXPECT_EQ(label({range(kNaN, kInf, kInf, kNaN)}), "0");
}

TEST(OptVar, LabelsNeverOutgrowTheirRoom) {
  EXPECT_EQ(qvOptVarStringLen(nullptr, 0, "long separator"), 1);
  QvOptVar v = range(0.5, 2.5, 0.25);
  EXPECT_EQ(qvOptVarStringLen(&v, 1, ", "), 5);
  QvOptVar three[] = {v, range(-10, 10, 1), range(0, 1e12, 1)};
  EXPECT_EQ(qvOptVarStringLen(three, 3, ", "), 4 + 3 + 13 + 2 * 2 + 1);
  for (double value : {1e9, -1e9, 1e300, -0.5, kNaN}) {
    v.value = value;  // set by the caller, outside the range
    EXPECT_LE(label({v, v}, ", ").size() + 1, 11u);
  }
}

TEST(OptVar, NullArguments) {
  QvOptVar v = range(1, 2, 1);
  char out[20];
  EXPECT_EQ(qvOptVarCount(nullptr, 1), -1);
  EXPECT_EQ(qvOptVarValue(nullptr, 1, 1), -1);
  EXPECT_EQ(qvOptVarString(nullptr, 1, "", out), -1);
  EXPECT_EQ(qvOptVarString(&v, 1, nullptr, out), -1);
  EXPECT_EQ(qvOptVarString(&v, 1, "", nullptr), -1);
  EXPECT_EQ(qvOptVarStringLen(nullptr, 1, ""), -1);
  EXPECT_EQ(qvOptVarStringLen(&v, 1, nullptr), -1);
  EXPECT_EQ(qvOptVarCount(&v, -1), 1);
}

TEST(TradeGraph, MarksEntriesAndExits) {
  const Bars bars(flatBars({10, 11, 12, 13, 14, 15}));
  System sys(bars);
  sys.reverseOnEntry = 0;
  sys.next();
  sys.buy("A", 2);
  sys.next();  // bar 1
  sys.sell("X", 1);
  sys.sellShort("S", 1);
  sys.next();  // bar 2: half of the long trade closed, a short one opened
  sys.sell("X", 1, QV_CLOSE);
  sys.cover("C", 1);
  sys.next();  // bar 3
  sys.sellShort("open", 1);
  sys.next();
  Array out;
  ASSERT_EQ(qvCreateTradeGraph(&sys, &out), 0);
  EXPECT_EQ(out.items(), (Items{0, 1, 2 + 8, 4 + 8, 0, 0}));

  // The first trade ends on its own entry bar; the second, the short one, is not on these bars.
  sys.trades[0].exitBar = 1;
  sys.trades[1].exitBar = 6;
  sys.trades[1].position.entryBar = -1;
  Array used;
  Array::fill(used, 9, 7.5);
  ASSERT_EQ(qvCreateTradeGraph(&sys, &used), 0);
  EXPECT_EQ(used.items(), (Items{0, 1 + 8, 0, 8, 0, 0})) << "marks outside the bars are left out";
  EXPECT_EQ(qvCreateTradeGraph(&sys, &sys.bars.close), -1);
  EXPECT_EQ(qvCreateTradeGraph(nullptr, &out), -1);
  EXPECT_EQ(qvCreateTradeGraph(&sys, nullptr), -1);
  Array unallocated;
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvCreateTradeGraph(&sys, &unallocated), -3);
  qv::memory::failAllocation(0);
  const QvOrderSystem empty{};
  EXPECT_EQ(qvCreateTradeGraph(&empty, &out), -1);
}

}  // namespace
}  // namespace qvtest
