// The C++ header beside the library's own inner headers.
#include "qvlib60.hpp"

#include "core/calculation.h"
#include "support/expect.h"
#include "support/spx.h"

namespace qvtest {
namespace {

std::string messageOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const qv::Error& e) {
    return e.what();
  }
  return "";
}

TEST(CppInterface, SeriesOwnOrBorrow) {
  const long live = qv::memory::liveBlocks();
  {
    qv::Series a{1, 2, 3}, empty;
    qv::Series moved = std::move(a), copied = moved.copy();
    copied[0] = 9;
    EXPECT_EQ(itemsOf(moved), (Items{1, 2, 3}));
    EXPECT_EQ(itemsOf(copied), (Items{9, 2, 3}));
    EXPECT_EQ(a.data, nullptr);
    moved = std::move(copied);
    EXPECT_EQ(moved[0], 9);
    EXPECT_TRUE(empty.items().empty());
    moved.firstValid = 2;
    EXPECT_EQ(moved.values().size(), 1U);
    Items mine{5, 6};
    {
      qv::Series borrowed = qv::Series::borrow(mine);
      qv::Series other = std::move(borrowed);
      other[1] = 7;
      qv::Bars bars = qv::Bars::borrow({.close = mine});
      EXPECT_EQ(bars.date.data[1], 2.0) << "numbered";
      qv::Bars taken = std::move(bars);
      EXPECT_EQ(taken.close.data, mine.data());
      EXPECT_EQ(bars.close.data, nullptr);
      qv::Bars own(3), copy = own.copy();
      own = std::move(taken);
      EXPECT_EQ(own.barsize, 2);
    }
    EXPECT_EQ(mine, (Items{5, 7}));
    EXPECT_EQ(messageOf([&] { qv::Bars::borrow({.high = Items{1}, .close = mine}); }),
              "qv::Bars::borrow: columns of different lengths");
  }
  EXPECT_EQ(qv::memory::liveBlocks(), live);
}

TEST(CppInterface, CalculationsByName) {
  const Bars& bars = spx();
  Array rsi, upper, middle, lower;
  qvRSI(&bars.close, &rsi, 14, 0);
  qvBollinger(&bars, &upper, &middle, &lower, 2, 20, 0);
  const int p = 14;
  EXPECT_EQ(itemsOf(qv::calc("rsi", bars.close, {p})), rsi.items());
  EXPECT_EQ(itemsOf(qv::calc("qvRSI", bars)), rsi.items());
  const std::vector<qv::Series> bands = qv::calcAll("bollinger", bars, {2, 20});
  ASSERT_EQ(bands.size(), 3U);
  EXPECT_EQ(itemsOf(qv::calc("sma", qv::Series{1, 2, 3}, {2})), (Items{0, 1.5, 2.5}));
  EXPECT_EQ(messageOf([&] { qv::calc("rsi", bars.close, {0}); }), "qvRSI: Invalid Parm");
  EXPECT_EQ(messageOf([&] { qv::calc("rsi", bars.close, {1, 2}); }), "qvRSI: too many parameters");
  EXPECT_EQ(messageOf([&] { qv::calc("rsii", bars.close); }), "rsii: no such calculation");
  EXPECT_EQ(messageOf([&] { qv::calc("atr", bars.close); }), "qvATR: wrong number of bar sets or series");
}

TEST(CppInterface, Formulas) {
  const Bars& bars = spx();
  qv::Formula rule("sma($fast) crosses above sma($slow)");
  EXPECT_EQ(rule.parameters(), (std::vector<std::string>{"fast", "slow"}));
  EXPECT_EQ(messageOf([&] { rule(bars); }), "qvFormulaEval: Invalid Parm");
  rule.set("fast", 5).set("slow", 20);
  EXPECT_EQ(rule(bars).firstValid, 20);
  EXPECT_EQ(rule.needs().firstValid, 20);
  EXPECT_EQ(messageOf([&] { rule.set("medium", 3); }), "$medium: Invalid Parm");
  EXPECT_EQ(messageOf([] { qv::Formula("rsii"); }), "formula: rsii: unknown, did you mean rsi? at 1");
}

}  // namespace
}  // namespace qvtest
