#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "support/candles.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

// Color, shape, top and bottom shadow of bar i.
using Fields = std::vector<int>;
Fields candleAt(const QvCandles& c, int i) {
  return {qvCandleColor(&c, i), qvCandleShape(&c, i), qvCandleTopShadow(&c, i), qvCandleBotShadow(&c, i)};
}

TEST(CandleConstruct, WritesTheDefaultsIntoFactorsThatAreZero) {
  const Bars bars{{1, 2, 0, 1.5}};
  Candles c;
  c.shortShadowFactor = 0.5;
  ASSERT_EQ(qvCandleConstruct(&bars, &c), 0);
  EXPECT_EQ(c.longShadowFactor, 2.0);
  EXPECT_EQ(c.shortShadowFactor, 0.5);
  EXPECT_EQ(c.dojiFactor, 0.005);
}

TEST(CandleConstruct, ClassifiesColourBodyAndShadows) {
  const struct {
    const char* what;
    std::vector<Bar> bars;
    std::vector<Fields> candles;
  } cases[] = {
      // The body 0 is left out of the mean: 5.04 / 3 = 1.68. 0.04 is at most 0.005 times 10.
      {"bodies 4, 1, 0.04 and 0",
       {{10, 14, 10, 14}, {12, 12, 11, 11}, {10, 10.04, 10, 10.04}, {10, 10, 10, 10}},
       {{2, 3, 1, 1}, {1, 1, 1, 1}, {2, 0, 1, 1}, {0, 0, 1, 1}}},
      {"a body of the average length is not long",
       {{10, 12, 10, 12}, {12, 12, 10, 10}},
       {{2, 1, 1, 1}, {1, 1, 1, 1}}},
      // Without shadows; 2 is above the mean 1.25.
      {"flat bars take no part in the mean",
       {{9, 9, 9, 9}, {10, 12, 10, 12}, {10, 10.5, 10, 10.5}},
       {{0, 0, 1, 1}, {2, 3, 1, 1}, {2, 1, 1, 1}}},
      {"no mean: no body is long", {{9, 9, 9, 9}, {9, 9, 9, 9}}, {{0, 0, 1, 1}, {0, 0, 1, 1}}},
      // Body 4: long above 8, normal from 3 (0.75 bodies) on. 8.25 above and 3 below; 8 and 2.75; 3 and 8.25.
      {"shadows are measured in bodies",
       {{10, 22.25, 7, 14}, {14, 22, 7.25, 10}, {10, 17, 1.75, 14}},
       {{2, 1, 3, 2}, {1, 1, 2, 1}, {2, 1, 2, 3}}},
      // Reference 0.5 at a price of 100: long above 1, normal from 0.375 on.
      {"those of a flat bar in dojis",
       {{100, 101.5, 99, 100}, {100, 101, 98.5, 100}, {100, 100.375, 99.75, 100}},
       {{0, 0, 3, 2}, {0, 0, 2, 3}, {0, 0, 2, 1}}},
  };
  for (const auto& test : cases) {
    const Candles c{Bars(test.bars)};
    for (int i = 0; const Fields& fields : test.candles)
      EXPECT_EQ(candleAt(c, i++), fields) << test.what << i;
  }
  const Candles c(Bars{{kInf, kInf, kInf, kInf}, {10, 12, 10, 12}, {10, 10.5, 10, 10.5}});
  EXPECT_EQ(qvCandleShape(&c, 1), 3) << "a flat bar at infinity takes no part either";
}

TEST(CandleConstruct, ALongShadowIsLongWhateverTheShortFactor) {
  Candles c;
  const Bars bars{{10, 14, 9.75, 11}, {10, 10, 10, 10}};
  c.longShadowFactor = 0.5;
  c.shortShadowFactor = 9;
  c.dojiFactor = kNaN;
  ASSERT_EQ(qvCandleConstruct(&bars, &c), 0);
  EXPECT_EQ(candleAt(c, 0), (Fields{2, 1, 3, 1})) << "3 above, a quarter below a body of 1";
  EXPECT_EQ(candleAt(c, 1), (Fields{0, 1, 1, 1})) << "not a doji by a factor that is not a number";
}

TEST(CandleConstruct, AgreesWithTheNaiveClassificationOnAnyData) {
  for (Shape shape : kShapes) {
    const std::vector<double> close = shaped(shape, 700, 3), jitter = shaped(Shape::Integers, 700, 5);
    std::vector<Bar> data(close.size());
    for (std::size_t i = 0; i < data.size(); ++i) {
      const double open = i ? close[i - 1] : close[i], step = jitter[i] / 4;
      data[i] = {open, std::max(open, close[i]) + step, std::min(open, close[i]) - jitter[699 - i] / 4,
                 close[i]};
    }
    const Candles c{Bars(data)};
    for (int i = 0; const Fields& expected : naiveCandles(data))
      ASSERT_EQ(candleAt(c, i++), expected) << "bar " << i - 1 << " of shape " << static_cast<int>(shape);
  }
}

TEST(CandleConstruct, RefusesMissingPricesAndSurvivesExhaustedMemory) {
  Candles c;
  const Bars bars(walkBars(10));
  const QvBars empty{};
  EXPECT_EQ(qvCandleConstruct(nullptr, &c), -1);
  EXPECT_EQ(qvCandleConstruct(&bars, nullptr), -1);
  for (QvArray QvBars::*series : {&QvBars::open, &QvBars::high, &QvBars::low, &QvBars::close}) {
    Bars lacking(walkBars(10));
    qvFreeArray(&(lacking.*series));
    EXPECT_EQ(qvCandleConstruct(&lacking, &c), -1);
    EXPECT_EQ(c.records, nullptr);
  }
  expectAnswersExhaustedMemory("qvCandleConstruct", [&] { return qvCandleConstruct(&bars, &c); });
  EXPECT_EQ(qvCandleFree(&c), 0);
  EXPECT_EQ(qvCandleConstruct(&empty, &c), 0);
  EXPECT_EQ(qvCandleColor(&c, 0), 0);
  for (int k = 0; k < 2; ++k) EXPECT_EQ(qvCandleFree(&c), 0) << "also when it is empty";
  EXPECT_EQ(c.records, nullptr);
  EXPECT_EQ(qvCandleFree(nullptr), -1);
}

TEST(CandleFields, ReadZeroOutsideTheSet) {
  Candles c(Bars(walkBars(5)));
  const QvCandles empty{};
  c.records[4] = {-1, -1, -1, -1};
  for (auto field : {qvCandleColor, qvCandleShape, qvCandleTopShadow, qvCandleBotShadow}) {
    for (int i : {INT_MIN, -1, 5, 6, INT_MAX}) EXPECT_EQ(field(&c, i), 0) << i;
    EXPECT_EQ(field(&empty, 0), 0);
    EXPECT_EQ(field(nullptr, 0), -1);
    EXPECT_EQ(field(&c, 4), -1) << "sign-extended";
  }
}

TEST(CandleNeighbours, CompareBodiesAndRanges) {
  // Bar 1 is above bar 0 with a gap between the bodies only, bar 2 with a gap between the ranges;
  // bars 3 and 4 mirror them; bar 5 touches bar 4.
  const Bars bars{{10, 13, 9, 12},  {14, 15, 12.5, 13}, {20, 21, 16, 18},
                  {17, 19, 11, 12}, {9, 10, 8, 8.5},    {9, 12, 9, 11}};
  const QvBars empty{};
  const struct {
    decltype(&qvBodyGapUp) gap;
    int signals[6];
  } gaps[] = {{qvBodyGapUp, {0, 1, 1, 0, 0, 0}},
              {qvBodyGapDn, {0, 0, 0, 1, 1, 0}},
              {qvWesternGapUp, {0, 0, 1, 0, 0, 0}},
              {qvWesternGapDn, {0, 0, 0, 0, 1, 0}}};
  for (const auto& [gap, signals] : gaps) {
    for (int i = 0; i < 6; ++i) EXPECT_EQ(gap(&bars, i), signals[i]) << i;
    for (int i : {INT_MIN, -1, 6, INT_MAX}) EXPECT_EQ(gap(&bars, i), 0) << i;
    EXPECT_EQ(gap(&empty, 1), 0);
    EXPECT_EQ(gap(nullptr, 1), -1);
  }
  EXPECT_EQ(qvBodyMidpoint(&bars, 2), 19);
  for (int i : {INT_MIN, -1, 6, INT_MAX}) EXPECT_EQ(qvBodyMidpoint(&bars, i), 0.0);
  EXPECT_EQ(qvBodyMidpoint(&empty, 0), 0.0);
  EXPECT_EQ(qvBodyMidpoint(nullptr, 0), 0.0);
}

TEST(ApproxEqual, IsStrictAndRelativeToItsFirstNumber) {
  EXPECT_EQ(qvApproxEqual(100, 100.5, 0.005), 0);
  EXPECT_EQ(qvApproxEqual(100.5, 100, 0.005), 1);
  EXPECT_EQ(qvApproxEqual(100, 100, 0), 0) << "a tolerance of 0 never finds equality";
  EXPECT_EQ(qvApproxEqual(-100, -100, 0.005), 0) << "nor does a negative first number";
  EXPECT_EQ(qvApproxEqual(kNaN, 1, 0.005), 0);
}

// Black and white hammers alternate: hammers are at the even bars.
std::vector<Bar> hammers(int n) {
  std::vector<Bar> bars;
  for (int i = 0; i < n; ++i) bars.push_back(i % 2 ? Bar{100, 101, 96, 101} : Bar{101, 101, 96, 100});
  return bars;
}

TEST(CandleFill, MarksThePatternWithinTheRange) {
  const Bars bars(hammers(8));
  const Candles c(bars);
  Array out(Items(8, 5.0));
  const struct {
    const char* name;
    int start, end;
    Items signals;
  } cases[] = {{"QVhammer", 1, 5, {0, 0, 1, 0, 1, 0, 0, 0}},  // the name in any case
               {"qvHangingman", INT_MIN, INT_MAX, {0, 1, 0, 1, 0, 1, 0, 1}},
               {"qvHammer", 7, 7, Items(8, 0.0)},
               {"qvHammer", 5, 2, Items(8, 0.0)},
               {"qvHammer", INT_MAX, INT_MIN, Items(8, 0.0)}};
  for (const auto& [name, start, end, signals] : cases) {
    out.firstValid = 6;
    EXPECT_EQ(qvCandleFill(&bars, &c, &out, name, start, end),
              std::count(signals.begin(), signals.end(), 1.0));
    EXPECT_EQ(out.items(), signals);
    EXPECT_EQ(out.firstValid, 6) << "left as it was";
  }
}

TEST(CandleFill, RefusesBadArgumentsAndStopsWhereTheDataEnd) {
  const Bars shorter(hammers(4)), bars(hammers(8));
  const Candles c(shorter), whole(bars);
  const QvCandles empty{};
  Array out, small{5, 5, 5};
  for (const char* name : {"qvHamer", "qvHammers", "qvHamme", "Hammer", "", "qvFormationFill", " qvHammer"})
    EXPECT_EQ(qvCandleFill(&bars, &whole, &small, name, 0, 7), -1) << name;
  EXPECT_EQ(qvCandleFill(nullptr, nullptr, nullptr, "qvNoSuchPattern", 0, 7), -1);
  EXPECT_EQ(qvCandleFill(&bars, &whole, &small, nullptr, 0, 7), -1);
  EXPECT_EQ(qvCandleFill(&bars, nullptr, &small, "qvHammer", 0, 7), -1);
  EXPECT_EQ(qvCandleFill(&bars, &empty, &small, "qvHammer", 0, 7), -1);
  EXPECT_EQ(small.items(), (Items{5, 5, 5})) << "untouched";

  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHammer", 0, 7), 2);
  EXPECT_EQ(out.items(), (Items{1, 0, 1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(qvCandleFill(&bars, &whole, &small, "qvHammer", 0, 7), 2);
  EXPECT_EQ(small.items(), (Items{1, 0, 1}));
  EXPECT_EQ(qvCandleFill(&shorter, &whole, &out, "qvHammer", 0, 7), 2) << "more candles than bars";
}

}  // namespace
}  // namespace qvtest
