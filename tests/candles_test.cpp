#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "core/memory.h"
#include "support/candles.h"
#include "support/series.h"

namespace qvtest {
namespace {

// Color, shape, top and bottom shadow of bar i.
std::vector<int> candleAt(const QvCandles& c, int i) {
  return {qvCandleColor(&c, i), qvCandleShape(&c, i), qvCandleTopShadow(&c, i), qvCandleBotShadow(&c, i)};
}
using Fields = std::vector<int>;

TEST(CandleConstruct, WritesTheDefaultsIntoFactorsThatAreZero) {
  const Bars bars{{1, 2, 0, 1.5}};
  Candles c;
  c.shortShadowFactor = 0.5;
  ASSERT_EQ(qvCandleConstruct(&bars, &c), 0);
  EXPECT_EQ(c.longShadowFactor, 2.0);
  EXPECT_EQ(c.shortShadowFactor, 0.5);
  EXPECT_EQ(c.dojiFactor, 0.005);
}

TEST(CandleConstruct, ClassifiesColourAndBody) {
  // Bodies 4, 1, 0.04 and 0 (left out of the mean): mean 5.04 / 3 = 1.68.
  const Bars bars{{10, 14, 10, 14}, {12, 12, 11, 11}, {10, 10.04, 10, 10.04}, {10, 10, 10, 10}};
  const Candles c(bars);
  EXPECT_EQ(candleAt(c, 0), (Fields{2, 3, 1, 1}));
  EXPECT_EQ(candleAt(c, 1), (Fields{1, 1, 1, 1}));
  EXPECT_EQ(qvCandleColor(&c, 2), 2);
  EXPECT_EQ(qvCandleShape(&c, 2), 0) << "0.04 is at most 0.005 times 10";
  EXPECT_EQ(candleAt(c, 3), (Fields{0, 0, 1, 1}));
}

TEST(CandleConstruct, ABodyOfTheAverageLengthIsNotLong) {
  const Candles c(Bars{{10, 12, 10, 12}, {12, 12, 10, 10}});
  EXPECT_EQ(qvCandleShape(&c, 0), 1);
  EXPECT_EQ(qvCandleShape(&c, 1), 1);
}

TEST(CandleConstruct, FlatBarsTakeNoPartInTheAverage) {
  const Candles c(Bars{{kInf, kInf, kInf, kInf}, {10, 12, 10, 12}, {10, 10.5, 10, 10.5}, {9, 9, 9, 9}});
  EXPECT_EQ(qvCandleShape(&c, 1), 3) << "2 is above 1.25";
  EXPECT_EQ(qvCandleShape(&c, 2), 1);
  const Candles flat(Bars{{9, 10, 8, 9}, {9, 10, 8, 9}});
  EXPECT_EQ(qvCandleShape(&flat, 0), 0) << "no average: no body is long";
}

TEST(CandleConstruct, MeasuresShadowsInBodies) {
  // Body 4: long above 8, normal from 3 (0.75 bodies) on.
  const Bars bars{{10, 22.25, 7, 14}, {14, 22, 7.25, 10}, {10, 17, 1.75, 14}};
  const Candles c(bars);
  EXPECT_EQ(candleAt(c, 0), (Fields{2, 1, 3, 2})) << "8.25 above, 3 below";
  EXPECT_EQ(candleAt(c, 1), (Fields{1, 1, 2, 1})) << "8 above, 2.75 below";
  EXPECT_EQ(candleAt(c, 2), (Fields{2, 1, 2, 3})) << "3 above, 8.25 below";
}

TEST(CandleConstruct, MeasuresTheShadowsOfAFlatBarInDojis) {
  // Reference 0.5 at a price of 100: long above 1, normal from 0.375 on.
  const Candles c(Bars{{100, 101.5, 99, 100}, {100, 101, 98.5, 100}, {100, 100.375, 99.75, 100}});
  EXPECT_EQ(candleAt(c, 0), (Fields{0, 0, 3, 2}));
  EXPECT_EQ(candleAt(c, 1), (Fields{0, 0, 2, 3}));
  EXPECT_EQ(candleAt(c, 2), (Fields{0, 0, 2, 1}));
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
    const Bars bars(data);
    const Candles c(bars);
    const std::vector<Fields> expected = naiveCandles(data);
    for (int i = 0; i < bars.barsize; ++i)
      ASSERT_EQ(candleAt(c, i), expected[static_cast<std::size_t>(i)])
          << "bar " << i << " of shape " << static_cast<int>(shape);
  }
}

TEST(CandleConstruct, RefusesMissingPricesAndSurvivesExhaustedMemory) {
  QvCandles c{};
  const Bars bars(walkBars(10));
  EXPECT_EQ(qvCandleConstruct(nullptr, &c), -1);
  EXPECT_EQ(qvCandleConstruct(&bars, nullptr), -1);
  for (QvArray QvBars::*series : {&QvBars::open, &QvBars::high, &QvBars::low, &QvBars::close}) {
    Bars lacking(walkBars(10));
    qvFreeArray(&(lacking.*series));
    EXPECT_EQ(qvCandleConstruct(&lacking, &c), -1);
    EXPECT_EQ(c.records, nullptr);
  }
  const long before = qv::memory::liveBlocks();
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvCandleConstruct(&bars, &c), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(c.records, nullptr);
  EXPECT_EQ(qv::memory::liveBlocks(), before);

  const QvBars empty{};
  EXPECT_EQ(qvCandleConstruct(&empty, &c), 0);
  EXPECT_EQ(qvCandleColor(&c, 0), 0);
  EXPECT_EQ(qvCandleFree(&c), 0);
  EXPECT_EQ(c.records, nullptr);
  EXPECT_EQ(qvCandleFree(&c), 0) << "an empty set";
  EXPECT_EQ(qvCandleFree(nullptr), -1);
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(CandleFields, ReadZeroOutsideTheSet) {
  Candles c(Bars(walkBars(5)));
  const QvCandles empty{};
  for (auto field : {qvCandleColor, qvCandleShape, qvCandleTopShadow, qvCandleBotShadow}) {
    for (int i : {INT_MIN, -1, 5, 6, INT_MAX}) EXPECT_EQ(field(&c, i), 0) << i;
    EXPECT_EQ(field(&empty, 0), 0);
    EXPECT_EQ(field(nullptr, 0), -1);
    c.records[4] = {-1, -1, -1, -1};
    EXPECT_EQ(field(&c, 4), -1) << "sign-extended";
  }
}

TEST(CandleNeighbours, CompareBodiesAndRanges) {
  // Bar 1 is above bar 0 with a gap between the bodies only, bar 2 with a gap between the ranges;
  // bars 3 and 4 mirror them; bar 5 touches bar 4.
  const Bars bars{{10, 13, 9, 12},  {14, 15, 12.5, 13}, {20, 21, 16, 18},
                  {17, 19, 11, 12}, {9, 10, 8, 8.5},    {9, 12, 9, 11}};
  EXPECT_EQ(qvBodyMidpoint(&bars, 2), 19);
  const int bodyUp[] = {0, 1, 1, 0, 0, 0}, bodyDown[] = {0, 0, 0, 1, 1, 0};
  const int rangeUp[] = {0, 0, 1, 0, 0, 0}, rangeDown[] = {0, 0, 0, 0, 1, 0};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(qvBodyGapUp(&bars, i), bodyUp[i]) << i;
    EXPECT_EQ(qvBodyGapDn(&bars, i), bodyDown[i]) << i;
    EXPECT_EQ(qvWesternGapUp(&bars, i), rangeUp[i]) << i;
    EXPECT_EQ(qvWesternGapDn(&bars, i), rangeDown[i]) << i;
  }
}

TEST(CandleNeighbours, AreSafeOutsideTheSeries) {
  const Bars bars(walkBars(6));
  const QvBars empty{};
  for (auto gap : {qvBodyGapUp, qvBodyGapDn, qvWesternGapUp, qvWesternGapDn}) {
    for (int i : {INT_MIN, -1, 0, 6, INT_MAX}) EXPECT_EQ(gap(&bars, i), 0) << i;
    EXPECT_EQ(gap(&empty, 1), 0);
    EXPECT_EQ(gap(nullptr, 1), -1);
  }
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
  Array out;
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "QVhammer", 1, 5), 2) << "the name in any case";
  EXPECT_EQ(out.items(), (std::vector<double>{0, 0, 1, 0, 1, 0, 0, 0}));
  out.firstValid = 6;
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHangingman", INT_MIN, INT_MAX), 4);
  EXPECT_EQ(out.items(), (std::vector<double>{0, 1, 0, 1, 0, 1, 0, 1}));
  EXPECT_EQ(out.firstValid, 6) << "left as it was";
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHammer", 7, 7), 0);
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHammer", 5, 2), 0) << "an empty range";
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHammer", INT_MAX, INT_MIN), 0);
  EXPECT_EQ(out.items(), std::vector<double>(8, 0.0));
}

TEST(CandleFill, RefusesBadArguments) {
  const Bars bars(hammers(8));
  const Candles c(bars);
  Array out{5, 5, 5};
  for (const char* name : {"qvHamer", "qvHammers", "qvHamme", "Hammer", "", "qvFormationFill", " qvHammer"})
    EXPECT_EQ(qvCandleFill(&bars, &c, &out, name, 0, 7), -1) << name;
  EXPECT_EQ(qvCandleFill(nullptr, nullptr, nullptr, "qvNoSuchPattern", 0, 7), -1);
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, nullptr, 0, 7), -1);
  EXPECT_EQ(qvCandleFill(&bars, nullptr, &out, "qvHammer", 0, 7), -1);
  const QvCandles empty{};
  EXPECT_EQ(qvCandleFill(&bars, &empty, &out, "qvHammer", 0, 7), -1);
  EXPECT_EQ(out.items(), (std::vector<double>{5, 5, 5})) << "untouched";
}

TEST(CandleFill, StopsWhereTheCandlesOrTheOutputEnd) {
  const Bars shorter(hammers(4)), bars(hammers(8));
  const Candles c(shorter), whole(bars);
  Array out;
  EXPECT_EQ(qvCandleFill(&bars, &c, &out, "qvHammer", 0, 7), 2);
  EXPECT_EQ(out.items(), (std::vector<double>{1, 0, 1, 0, 0, 0, 0, 0}));
  Array small{5, 5, 5};
  EXPECT_EQ(qvCandleFill(&bars, &whole, &small, "qvHammer", 0, 7), 2);
  EXPECT_EQ(small.items(), (std::vector<double>{1, 0, 1}));
  EXPECT_EQ(qvCandleFill(&shorter, &whole, &out, "qvHammer", 0, 7), 2) << "more candles than bars";
}

}  // namespace
}  // namespace qvtest
