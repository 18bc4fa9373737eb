#include <gtest/gtest.h>

#include <climits>

#include "support/candles.h"
#include "support/expect.h"

namespace qvtest {
namespace {

using Fields = std::vector<int>;  // of a bar: colour, shape, top and bottom shadow

std::vector<Fields> candlesOf(const QvCandles& c, int n) {
  std::vector<Fields> all;
  for (int i = 0; i < n; ++i)
    all.push_back(
        {qvCandleColor(&c, i), qvCandleShape(&c, i), qvCandleTopShadow(&c, i), qvCandleBotShadow(&c, i)});
  return all;
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
      {"0.005 times 200 is still a doji", {{200, 201, 200, 201}}, {{2, 0, 1, 1}}},
      {"no mean: no body is long", {{9, 9, 9, 9}, {9, 9, 9, 9}}, {{0, 0, 1, 1}, {0, 0, 1, 1}}},
      // Body 4, as long as the average and so not long: long above 8, normal from 3 (0.75 bodies) on. 8.25
      // above and 3 below; 8 and 2.75; 3 and 8.25.
      {"shadows are measured in bodies",
       {{10, 22.25, 7, 14}, {14, 22, 7.25, 10}, {10, 17, 1.75, 14}},
       {{2, 1, 3, 2}, {1, 1, 2, 1}, {2, 1, 2, 3}}},
      // Reference 0.5 at a price of 100: long above 1, normal from 0.375 on.
      {"those of a flat bar in dojis",
       {{100, 101.5, 99, 100}, {100, 101, 98.5, 100}, {100, 100.375, 99.75, 100}},
       {{0, 0, 3, 2}, {0, 0, 2, 3}, {0, 0, 2, 1}}},
  };
  for (const auto& test : cases) {
    std::vector<Bar> bars;
    std::vector<Fields> fields;
    for (int k = 0; k < 200; ++k) {  // the bars are worked on in stretches: none may show
      bars.insert(bars.end(), test.bars.begin(), test.bars.end());
      fields.insert(fields.end(), test.candles.begin(), test.candles.end());
    }
    const Candles c{Bars(bars)};
    EXPECT_EQ(candlesOf(c, static_cast<int>(bars.size())), fields) << test.what;
  }
}

TEST(CandleConstruct, TakesTheFactorsThatAreNotZero) {
  Candles c;
  const Bars bars{{10, 14, 9.75, 11}, {10, 10, 10, 10}};
  c.shortShadowFactor = 9;
  ASSERT_EQ(qvCandleConstruct(&bars, &c), 0);
  EXPECT_EQ(c.longShadowFactor, 2.0);
  EXPECT_EQ(c.shortShadowFactor, 9);
  EXPECT_EQ(c.dojiFactor, 0.005);
  // 3 above, a quarter below a body of 1: a long shadow is long whatever the short factor.
  EXPECT_EQ(candlesOf(c, 2), (std::vector<Fields>{{2, 1, 3, 1}, {0, 0, 1, 1}}));
}

// Against the average of the bars before, by the obvious loop; bars that are cut off change nothing.
TEST(CandleConstructTrailing, MeasuresBodiesAgainstTheBarsBefore) {
  std::mt19937 random(3);
  for (int round = 0; round < 60; ++round) {
    std::vector<Bar> bars = walkBars(1 + static_cast<int>(random() % 700), static_cast<unsigned>(random()));
    for (Bar& b : bars) {
      if (random() % 4 == 0) b.close = b.open;
      if (random() % 90 == 0) b.open = kNaN;
      if (round % 3 == 0) b.open = b.close + (random() % 5 ? 0.1 : 0);  // equal bodies: none is long
    }
    const int n = static_cast<int>(bars.size()), period = 1 + static_cast<int>(random() % 40);
    Candles c;
    const Bars whole(bars);
    ASSERT_EQ(qvCandleConstructTrailing(&whole, &c, period), 0);
    for (int i = 0; i < n; ++i) {
      double sum = 0;
      int count = 0;
      for (int k = std::max(0, i - period); k < i; ++k)
        if (bars[k].open != bars[k].close) sum += std::fabs(bars[k].open - bars[k].close), ++count;
      const double body = std::fabs(bars[i].open - bars[i].close), average = sum / count;
      const bool equal = std::fabs(body - average) < 1e-9;
      ASSERT_EQ(qvCandleShape(&c, i) == 3, !equal && body > average) << i << " of " << n << ", " << period;
    }
    bars.resize(static_cast<std::size_t>(n) - random() % static_cast<unsigned>(n));
    Candles cut;
    const Bars fewer(bars);
    ASSERT_EQ(qvCandleConstructTrailing(&fewer, &cut, period), 0);
    EXPECT_EQ(candlesOf(cut, fewer.barsize), candlesOf(c, fewer.barsize));
  }
  for (const double body : {0.1, 0.3, 0.7}) {  // no body is long among its equals
    const Bars equal(std::vector<Bar>(200, {0, body, 0, body}));
    for (int period = 1; period < 60; ++period) {
      Candles c;
      ASSERT_EQ(qvCandleConstructTrailing(&equal, &c, period), 0);
      for (int i = 1; i < 200; ++i) ASSERT_NE(qvCandleShape(&c, i), 3) << i << ", " << period;
    }
  }
  Candles c;
  const Bars bars(walkBars(30)), none;
  EXPECT_EQ(qvCandleConstructTrailing(&bars, &c, 0), -1);
  EXPECT_EQ(qvCandleConstructTrailing(&none, &c, 5), 0);
  qvCandleFree(&c);
  const Bars many(walkBars(300));
  for (const Bars* set : {&bars, &many})
    expectAnswersExhaustedMemory("trailing", [&] {
      const int status = qvCandleConstructTrailing(set, &c, set == &bars ? INT_MAX : 90);
      qvCandleFree(&c);
      return status;
    });
}

// Missing prices and exhausted memory are tried with the fill, as an entry of the catalogue.
TEST(CandleFields, ReadZeroOutsideTheSet) {
  const Bars bars(walkBars(10));
  const QvBars noBars{};
  Candles c(bars), empty(noBars);
  for (auto field : {qvCandleColor, qvCandleShape, qvCandleTopShadow, qvCandleBotShadow}) {
    for (int i : {INT_MIN, -1, 10, INT_MAX}) EXPECT_EQ(field(&c, i) + field(&empty, 0), 0) << i;
    EXPECT_EQ(field(nullptr, 0), -1);
  }
  for (int k = 0; k < 2; ++k) EXPECT_EQ(qvCandleFree(&empty), 0) << "also when it is empty";
  EXPECT_EQ(qvCandleColor(&empty, 0), 0);
  EXPECT_EQ(qvCandleFree(nullptr), -1);
  EXPECT_EQ(qvCandleConstruct(nullptr, &c), -1);
  EXPECT_EQ(qvCandleConstruct(&bars, nullptr), -1);
}

TEST(CandleNeighbours, CompareBodiesAndRanges) {
  // Bar 1 is above bar 0 with a gap between the bodies only, bar 2 with a gap between the ranges;
  // bars 3 and 4 mirror them; bar 5 touches bar 4.
  const Bars bars{{10, 13, 9, 12},  {14, 15, 12.5, 13}, {20, 21, 16, 18},
                  {17, 19, 11, 12}, {9, 10, 8, 8.5},    {9, 12, 9, 11}};
  const QvBars empty{};
  const std::pair<decltype(&qvBodyGapUp), std::vector<int>> gaps[] = {{qvBodyGapUp, {0, 1, 1, 0, 0, 0}},
                                                                      {qvBodyGapDn, {0, 0, 0, 1, 1, 0}},
                                                                      {qvWesternGapUp, {0, 0, 1, 0, 0, 0}},
                                                                      {qvWesternGapDn, {0, 0, 0, 0, 1, 0}}};
  for (const auto& [gap, signals] : gaps) {
    for (int i = 0; int signal : signals) EXPECT_EQ(gap(&bars, i++), signal) << i;
    for (int i : {INT_MIN, -1, 6, INT_MAX}) EXPECT_EQ(gap(&bars, i) + qvBodyMidpoint(&bars, i), 0) << i;
    EXPECT_EQ(gap(&empty, 1) + qvBodyMidpoint(&empty, 0) + qvBodyMidpoint(nullptr, 0), 0);
    EXPECT_EQ(gap(nullptr, 1), -1);
  }
  EXPECT_EQ(qvBodyMidpoint(&bars, 2), 19);

  // Strict, and relative to the first number, which must be above zero.
  EXPECT_EQ(qvApproxEqual(100, 100.5, 0.005) + qvApproxEqual(100, 100, 0) + qvApproxEqual(-100, -100, 0.005),
            0);
  EXPECT_EQ(qvApproxEqual(100.5, 100, 0.005), 1);
}

TEST(CandleFill, MarksThePatternWithinTheRange) {
  // Black hammers at the even bars, white hanging men at the odd ones.
  std::vector<Bar> hammers;
  for (double even : {1, 0, 1, 0, 1, 0}) hammers.push_back({100 + even, 101, 96, 101 - even});
  const Bars bars(hammers);
  const Candles whole(bars);
  const QvCandles empty{};
  Array out(Items(6, 5.0), 4), small{5, 5, 5};
  const auto fill = [&](const char* name, int start, int end) {
    const int found = qvCandleFill(&bars, &whole, &out, name, start, end);
    return found - static_cast<int>(std::count(out.data, out.data + 6, 1.0));
  };
  // The first valid index is left as it was.
  expectGives(fill("QVhammer", 1, 3), out, {0, 0, 1, 0, 0, 0}, 4);  // the name in any case
  expectGives(fill("qvHangingman", INT_MIN, INT_MAX), out, {0, 1, 0, 1, 0, 1}, 4);
  expectGives(fill("qvHammer", INT_MAX, INT_MIN), out, Items(6, 0.0), 4);
  for (const char* name : {"qvHamer", "qvHammers", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(qvCandleFill(&bars, &whole, &small, name, 0, 5), -1);
  for (const QvCandles* none : {static_cast<const QvCandles*>(nullptr), &empty})
    EXPECT_EQ(qvCandleFill(&bars, none, &small, "qvHammer", 0, 5), -1);
  EXPECT_EQ(small.items(), (Items{5, 5, 5})) << "untouched";
}

}  // namespace
}  // namespace qvtest
