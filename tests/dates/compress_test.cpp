// Bar compression by calendar period, by time and rolling.
#include <gtest/gtest.h>

#include "core/calculation.h"
#include "support/vendor_files.h"

namespace qvtest {
namespace {

// Bars that each tell their number: open 10 i, high 10 i + 9, low 10 i + 1, close 10 i + 5, volume 1,
// open interest 2.
std::vector<Bar> numbered(const Items& dates) {
  std::vector<Bar> bars;
  for (double i = 0; const double date : dates) {
    bars.push_back({i, i + 9, i + 1, i + 5, 1, 2, date});
    i += 10;
  }
  return bars;
}

void expectSeries(const QvBars& bars, const QvBars& wanted) {
  EXPECT_EQ(bars.barsize, wanted.barsize);
  for (int k = 0; k < qv::kSeriesCount; ++k)
    expectGives(0, qv::seriesOf(bars, k), itemsOf(qv::seriesOf(wanted, k)));
}

TEST(GroupBarsDate, TakesWhatLiesBetweenTheDatesAndAMonthOutOfOrder) {
  // May, February, March, April: a month back stays in the quarter's group. Two Mondays are two weeks.
  const Items days{1, 2, 3, 4, 5, 6}, months{36647, 36557, 36586, 36617}, weeks{kMonday, kMonday + 7};
  const std::tuple<Items, int, double, double, Items> cases[] = {{days, 2, 2, 5, {2, 3, 4, 5}},
                                                                 {days, 2, 4, 1, {4}},
                                                                 {days, 2, 7, 0, {}},
                                                                 {weeks, 3, 0, 0, weeks},
                                                                 {months, 5, 0, 0, {36586, 36617}}};
  for (const auto& [dates, frequency, begin, end, groups] : cases) {
    Bars in(numbered(dates)), out;
    expectGives(qvGroupBarsDate(&in, &out, frequency, begin, end), out.date, groups);
  }
}

// The period of a date as a number: bars in order form one group as long as it stays the same.
double periodOf(double date, int frequency) {
  int y, m;
  qvDateToYMD(date, &y, &m, nullptr, nullptr, nullptr, nullptr);
  const double periods[] = {std::floor(date), std::floor((date - kMonday) / 7), 12.0 * y + m,
                            4.0 * y + (m + 2) / 3, 1.0 * y};
  return periods[frequency - 2];
}

TEST(GroupBarsDate, AgreesWithGroupsOfEqualPeriods) {
  std::vector<Bar> bars = walkBars(900);
  double date = kMonday, steps[] = {0.25, 0.5, 1, 9};
  std::mt19937 random(1);
  for (Bar& b : bars) b.date = date += steps[random() % 4];
  bars[30].low = 0;  // a price like any other
  for (int frequency = 2; frequency <= 6; ++frequency) {
    SCOPED_TRACE(frequency);
    Bars in(bars), out;
    std::strcpy(in.symbol, "ABC");
    std::vector<Bar> groups;
    for (int i = 0, first = 0; i < in.barsize; ++i) {
      if (periodOf(in.date.data[i], frequency) == periodOf(qvGetArrayItem(&in.date, i + 1), frequency))
        continue;
      Bar& g = groups.emplace_back();
      g.date = in.date.data[i];
      qvGroupBars(&in, &g.open, &g.high, &g.low, &g.close, &g.volume, &g.openInterest, i - first + 1, i);
      first = i + 1;
    }
    const Bars wanted(groups);
    expectAnswersExhaustedMemory("apart", [&] { return qvGroupBarsDate(&in, &out, frequency, 0, 0); });
    expectSeries(out, wanted);
    EXPECT_STREQ(out.symbol, "ABC");
    EXPECT_TRUE(out.frequency == frequency && in.frequency == 0);
    Array sums;
    expectGives(qvGroupArray(&in, &in.volume, &sums, frequency), sums, itemsOf(wanted.volume), 0);
    QvBars view = in;  // a second record of the same blocks
    ASSERT_EQ(qvGroupBarsDate(&in, frequency % 2 ? &view : &in, frequency, 0, 0), 0);
    expectSeries(in, wanted);
    EXPECT_EQ(in.frequency, frequency);
  }
}

TEST(GroupBarsDate, StopsWhenTheOutputIsFull) {
  Bars in(numbered({1, 1.5, 2, 2.5, 3, 3.5})), out(numbered({0, 0, 0}));
  out.datasize = 2;  // the third bar must stay as it is
  expectGives(qvGroupBarsDate(&in, &out, 2, 0, 0), out.close, {15, 35});
  EXPECT_EQ(out.close.data[2], 25);
  out.datasize = 0;
  expectGives(qvGroupBarsDate(&in, &out, 2, 0, 0), out.close, {});
}

TEST(GroupBarsTime, CountsFromTheFirstBarOfEachGroupAndRestartsEachDay) {
  // One-minute bars of 9:30 to 9:41 on two days: 5 + 5 + 2 bars each.
  Items minutes, seconds;
  for (int m = 0; m < 24; ++m) minutes.push_back(kMonday + m / 12 + (34200 + 60 * (m % 12)) / 86400.0);
  for (int second : {0, 59, 60, 130, 189, 190}) seconds.push_back(kMonday + second / 86400.0);
  const std::tuple<double, Items, Items> cases[] = {
      {300, minutes, {5, 5, 2, 5, 5, 2}}, {60, seconds, {2, 1, 2, 1}}, {0, seconds, Items(6, 1.0)}};
  for (const auto& [span, dates, volumes] : cases) {
    Bars in(numbered(dates)), out;
    expectGives(qvGroupBarsTime(&in, &out, span, 0, 0), out.volume, volumes);
  }
}

TEST(GroupBarsTime, TakesEveryStoredSecondAsThatSecond) {
  for (const double day : {367.0, 45293.0, 109572.0, -25568.0}) {
    Items seconds;
    for (int s = 1; s <= 7 * 12000; ++s) seconds.push_back(day < 0 ? day - s / 86400.0 : day + s / 86400.0);
    Bars in(numbered(seconds)), out;
    ASSERT_EQ(qvGroupBarsTime(&in, &out, 7, day - 1, day + 1), 0);
    EXPECT_EQ(itemsOf(out.volume), Items(12000, 7.0)) << day;
  }
}

TEST(GroupArray, SumsPerPeriodWithinTheShortestSeriesAndTheRoom) {
  Bars dates(numbered({36528, 36529, 36557, 36586, 36587}));  // 2 days in January, 1 in February, 2 in March
  // Size, first valid index and room; sums and their first valid index. A group below the first valid
  // item received nothing.
  const std::tuple<int, int, int, Items, int> cases[] = {{5, 0, 5, {3, 4, 24}, 0}, {5, 4, 5, {0, 0, 16}, 2},
                                                         {5, 9, 5, {0, 0, 0}, 0},  {6, 1, 5, {2, 4, 24}, 0},
                                                         {3, 0, 5, {3, 4}, 0},     {5, 0, 1, {3}, 0}};
  for (const auto& [size, firstValid, room, sums, sumsFirstValid] : cases) {
    Array in({1, 2, 4, 8, 16, 32}, firstValid), out{7, 7, 7, 7, 7};
    in.size = size;
    out.capacity = room;
    expectGives(qvGroupArray(&dates, &in, &out, 4), out, sums, sumsFirstValid);
    EXPECT_TRUE(room > 1 || out.data[1] == 7);
    if (room > 1) expectGives(qvGroupArray(&dates, &in, &in, 4), in, sums, sumsFirstValid);
  }
  Array in{1, 2, 4, 8, 16}, out, empty;
  expectAnswersExhaustedMemory("qvGroupArray", [&] { return qvGroupArray(&dates, &in, &out, 4); });
  in.size = 0;
  expectGives(qvGroupArray(&dates, &in, &out, 4), out, {});
}

TEST(GroupBars, SummarisesTheBarsUpToAnIndex) {
  Bars in(numbered({1, 2, 3, 4}));
  in.high.data[1] = 99;
  Array out{0, 0, 0, 0, 0, 0};
  double* x = out.data;
  const auto group = [&](int p, int index) {
    return qvGroupBars(&in, x, x + 1, x + 2, x + 3, x + 4, x + 5, p, index);
  };
  expectGives(group(3, 3), out, {10, 99, 11, 35, 3, 6});
  expectGives(group(INT_MAX, 2), out, {0, 99, 1, 25, 3, 6});
  in.high.firstValid = 2;  // each series begins at its own first valid index
  in.volume.firstValid = 3;
  in.low.firstValid = 4;  // nowhere
  expectGives(group(3, 3), out, {10, 39, 0, 35, 1, 6});
  for (int status : {group(3, -1), group(3, 4), group(0, 3), qvGroupBars(&in, x, x, nullptr, x, x, x, 3, 3)})
    EXPECT_EQ(status, -1);
}

// Every bar from start on against qvGroupBars of the untouched input; below it 0, or in place what was.
TEST(GroupBarsPeriods, EqualsEachStretchAlsoInPlace) {
  std::vector<Bar> bars = walkBars(90);
  for (std::size_t i = 0; i < bars.size(); i += 7) bars[i].high = kNaN;
  for (int p : {1, 7, 90, INT_MAX})
    for (int start : {INT_MIN, 0, 20, 89, INT_MAX})
      for (int firstValid : {0, 5, INT_MAX}) {
        SCOPED_TRACE(testing::Message() << p << ' ' << start << ' ' << firstValid);
        Bars in(bars), apart, wanted(bars);
        in.high.firstValid = in.volume.firstValid = firstValid;
        in.low.firstValid = firstValid / 2;
        const int first = std::clamp(start, 0, 90);
        for (int i = first; i < 90; ++i)
          qvGroupBars(&in, wanted.open.data + i, wanted.high.data + i, wanted.low.data + i,
                      wanted.close.data + i, wanted.volume.data + i, wanted.openInterest.data + i, p, i);
        ASSERT_EQ(qvGroupBarsPeriods(&in, &apart, p, start), 0);
        expectAnswersExhaustedMemory("in place", [&] { return qvGroupBarsArray(&in, &in, p, start); });
        expectSeries(in, wanted);
        for (int k = 0; k < 7; ++k) std::fill_n(qv::seriesOf(wanted, k).data, first, 0.0);
        expectSeries(apart, wanted);
      }
  Bars in(walkBars(20)), small(walkBars(8));
  ASSERT_EQ(qvGroupBarsPeriods(&in, &small, 3, 0), 0);
  EXPECT_EQ(small.barsize, 8);
}

using Compression = int (*)(QvBars*, QvBars*);
constexpr Compression kCompressions[] = {
    [](QvBars* in, QvBars* out) { return qvGroupBarsDate(in, out, 3, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsTime(in, out, 60, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsPeriods(in, out, 5, 0); },
};

TEST(Compression, TakesEmptySetsAndRefusesBadArgumentsBeforeItWrites) {
  Bars whole(walkBars(9)), none, out;
  Array empty, sums;
  for (int status : {qvGroupBarsDate(&whole, &out, 1, 0, 0), qvGroupBarsDate(&whole, &out, 7, 0, 0),
                     qvGroupArray(&whole, &whole.volume, &sums, 1), qvGroupArray(&whole, &empty, &sums, 3),
                     qvGroupArray(nullptr, &whole.close, &sums, 3), qvGroupArray(&whole, nullptr, &sums, 3),
                     qvGroupArray(&whole, &whole.close, nullptr, 3), qvGroupBarsPeriods(&whole, &out, 0, 0)})
    EXPECT_EQ(status, -1);
  for (Compression compress : kCompressions) {
    Bars noBars, result;
    qvAllocBars(&noBars, 0);
    expectGives(compress(&noBars, &result), result.close, {});
    for (int status : {compress(nullptr, &out), compress(&none, &out), compress(&whole, nullptr)})
      EXPECT_EQ(status, -1);
    for (int k = 0; k < qv::kSeriesCount; ++k) {
      Bars lacking(walkBars(9));
      qvFreeArray(&qv::seriesOf(lacking, k));
      EXPECT_EQ(compress(&lacking, &out), -1) << "series " << k;
      EXPECT_TRUE(k == 0 || compress(&whole, &lacking) == -1) << "an output without series " << k;
      Bars short1(walkBars(9));
      qv::seriesOf(short1, k).capacity = 8;
      EXPECT_EQ(compress(&whole, &short1), -1) << "an output with less room in series " << k;
      qv::seriesOf(short1, k).capacity = 9;
    }
  }
  EXPECT_EQ(out.date.data, nullptr);
  EXPECT_EQ(sums.data, nullptr);
}

}  // namespace
}  // namespace qvtest
