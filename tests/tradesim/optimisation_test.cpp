// Parameter ranges.
#include <gtest/gtest.h>

#include <climits>

#include "support/expect.h"
#include "support/trading.h"

namespace qvtest {
namespace {

using Vars = std::vector<QvOptVar>;

QvOptVar range(double start, double end, double step, double value = 0) {
  return {start, end, step, 0, value};
}

int countOf(Vars vars) {
  return qvOptVarCount(vars.data(), static_cast<int>(vars.size()));
}

TEST(OptVar, CountsTheValuesOfARange) {
  EXPECT_EQ(countOf({range(1, 10, 2)}), 5);
  EXPECT_EQ(countOf({range(1, 10, 0)}), 1);
  EXPECT_EQ(countOf({range(10, 1, -3)}), 4);
  EXPECT_EQ(countOf({range(0.5, 2.5, 0.25), range(5, 5, 1)}), 9);
  EXPECT_EQ(countOf({range(10, 1, 1)}), -8) << "against the step";
  EXPECT_EQ(countOf({range(0, 1e300, 1e-300), range(1, 9, 1)}), INT_MAX);
  EXPECT_EQ(countOf({range(kNaN, 1, 1)}), 0);
  EXPECT_EQ(qvOptVarCount(nullptr, 0), 1);
}

TEST(OptVar, StepsThroughAllCombinationsFirstVariableFastest) {
  QvOptVar vars[] = {range(1, 3, 1), range(10, 40, 10)};
  int k = 0;
  for (double second : {10, 20, 30, 40})
    for (double first : {1, 2, 3}) {
      ASSERT_EQ(qvOptVarValue(vars, 2, ++k), 0);
      EXPECT_EQ(std::pair(+vars[0].value, +vars[1].value), std::pair(first, second));
    }
  for (int outside : {13, 0, -1, INT_MAX, INT_MIN}) EXPECT_EQ(qvOptVarValue(vars, 2, outside), -1) << outside;
  EXPECT_TRUE(vars[0].value == 3 && vars[1].value == 40 && vars[0].count == 3 && vars[1].count == 4);
  QvOptVar empty[] = {range(1, 0, 1), range(1, 1e9, 1)};
  EXPECT_EQ(qvOptVarValue(empty, 2, 1), -1) << "a range without values has no combinations";
  // Two ranges against their steps: odd, but in bounds.
  QvOptVar against[] = {range(10, 1, 1), range(3, 1, 1), range(-1e9, 1e9, 1)};
  for (int each : {1, INT_MAX}) EXPECT_EQ(qvOptVarValue(against, 3, each), 0);
  EXPECT_EQ(qvOptVarValue(nullptr, 0, 1), 0) << "no variables, one combination";
}

std::string label(Vars vars, const char* separator = "/") {
  const int n = static_cast<int>(vars.size());
  const int room = qvOptVarStringLen(vars.data(), n, separator);
  std::vector<char> out(static_cast<std::size_t>(room), '#');  // the sanitizers watch its end
  EXPECT_EQ(qvOptVarString(vars.data(), n, separator, out.data()), 0);
  return out.data();
}

TEST(OptVar, LabelsTakeWidthAndDecimalsFromTheRange) {
  EXPECT_EQ(label({range(0.5, 2.5, 0.25, 1.25)}), "1.25");
  EXPECT_EQ(label({range(1, -1, -1, 0)}), " 0") << "a sign";
  EXPECT_EQ(label({}), "");
  EXPECT_EQ(label({range(-10, 10, 1, 5)}), "  5") << "10 + 1, and a sign";
  EXPECT_EQ(label({range(0, 8, 1, 5), range(0, 9, 1, 5)}, ","), "5, 5") << "9 has one digit, 10 has two";
  EXPECT_EQ(label({range(0, 1, 0.5, 0.05)}), "0.0") << "decimals are cut, not rounded";
  EXPECT_EQ(label({range(0.125, 0.125, 0, 0.125), range(1, 20, 1, 7)}, " and "), "0.125 and  7");
  EXPECT_EQ(label({range(0.1, 0.9, 0.1, 0.3)}), "0") << "0.9 + 0.1 has no decimals";
  EXPECT_EQ(label({range(0, 123456, 0.00005, 98765.5)}), " 98765.500") << "ten characters at most";
  const QvOptVar three[] = {range(0.5, 2.5, 0.25), range(-10, 10, 1), range(0, 1e12, 1)};
  EXPECT_EQ(qvOptVarStringLen(three, 3, ", "), 4 + 3 + 13 + 2 * 2 + 1);
  for (double value : {1e9, -1e9, 1e300, -0.5, kNaN})  // set by the caller, outside the range
    EXPECT_LE(label({range(0.5, 2.5, 0.25, value), three[1]}).size(), 4u + 1 + 3);
}

}  // namespace
}  // namespace qvtest
