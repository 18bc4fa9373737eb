// Bar compression by calendar period, by time and rolling.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "core/calculation.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

// Bars that each tell their number: open 10 i, high 10 i + 9, low 10 i + 1, close 10 i + 5, volume 1,
// open interest 2.
Bars* numbered(Bars& bars, const Items& dates) {
  qvFreeBars(&bars);
  qvAllocBars(&bars, static_cast<int>(dates.size()));
  std::copy(dates.begin(), dates.end(), bars.date.data);
  for (int i = 0; i < bars.barsize; ++i) {
    const double values[] = {10.0 * i, 10.0 * i + 9, 10.0 * i + 1, 10.0 * i + 5, 1, 2};
    for (int k = 1; k < qv::kSeriesCount; ++k) qv::seriesOf(bars, k).data[i] = values[k - 1];
  }
  return &bars;
}

void expectEqualSizes(const QvBars& bars, int n) {
  EXPECT_EQ(bars.barsize, n);
  for (int k = 0; k < qv::kSeriesCount; ++k) EXPECT_EQ(qv::seriesOf(bars, k).size, n) << "series " << k;
}

constexpr double kMonday = 36528;  // 3 January 2000

double day(int year, int month, int dayOfMonth) {
  return qvYMDtoDate(year, month, dayOfMonth, 0, 0, 0);
}

TEST(GroupBarsDate, MakesWeeksOutOfDays) {
  Bars in, out;
  Items dates;
  for (int k : {0, 1, 2, 3, 4, 7, 8, 9, 10, 11}) dates.push_back(kMonday + k);
  numbered(in, dates);
  in.frequency = 2;
  std::strcpy(in.symbol, "ABC");
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 3, 0, 0), 0);
  expectEqualSizes(out, 2);
  const Items series[] = {
      {kMonday + 4, kMonday + 11}, {0, 50}, {49, 99}, {1, 51}, {45, 95}, {5, 5}, {10, 10}};
  for (int k = 0; k < qv::kSeriesCount; ++k) EXPECT_EQ(itemsOf(qv::seriesOf(out, k)), series[k]) << k;
  EXPECT_EQ(out.frequency, 3);
  EXPECT_STREQ(out.symbol, "ABC");
  EXPECT_EQ(in.frequency, 2);
  in.low.data[1] = 0;  // a price like any other
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 6, 0, 0), 0);
  EXPECT_EQ(out.low.data[0], 0);
}

TEST(GroupBarsDate, FindsThePeriodsOfEachFrequency) {
  Items months, quarters;
  for (int m = 1; m <= 12; ++m) months.push_back(day(2001, m, 28));
  for (int m = 3; m <= 12; m += 3) quarters.push_back(day(2001, m, 28));
  const struct {
    const char* what;
    int frequency;
    Items dates, groups;  // the groups' dates
    double begin = 0, end = 0;
  } cases[] = {
      {"a week without its Monday", 3, {kMonday + 4, kMonday + 8, kMonday + 9}, {kMonday + 4, kMonday + 9}},
      {"two Wednesdays", 3, {kMonday + 2, kMonday + 9}, {kMonday + 2, kMonday + 9}},
      {"Monday to Sunday", 3, {kMonday, kMonday + 6, kMonday + 7}, {kMonday + 6, kMonday + 7}},
      {"days of several times", 2, {7.25, 7.75, 8.0, 8.5}, {7.75, 8.5}},
      {"months",
       4,
       {day(2000, 1, 31), day(2000, 2, 1), day(2000, 2, 29), day(2001, 2, 1)},
       {day(2000, 1, 31), day(2000, 2, 29), day(2001, 2, 1)}},
      {"quarters", 5, months, quarters},
      {"a month back, out of order",
       5,
       {day(2000, 5, 1), day(2000, 2, 1), day(2000, 3, 1), day(2000, 4, 1)},
       {day(2000, 3, 1), day(2000, 4, 1)}},
      {"years",
       6,
       {day(1999, 12, 31), day(2000, 1, 1), day(2000, 12, 31)},
       {day(1999, 12, 31), day(2000, 12, 31)}},
      {"between two dates", 2, {1, 2, 3, 4, 5, 6}, {2, 3, 4, 5}, 2, 5},
      {"a first bar beyond the end date", 2, {1, 2, 3, 4, 5, 6}, {4}, 4, 1},
      {"no bar at all", 2, {1, 2, 3, 4, 5, 6}, {}, 7, 0},
  };
  for (const auto& c : cases) {
    Bars in, out;
    ASSERT_EQ(qvGroupBarsDate(numbered(in, c.dates), &out, c.frequency, c.begin, c.end), 0) << c.what;
    EXPECT_EQ(itemsOf(out.date), c.groups) << c.what;
    expectEqualSizes(out, static_cast<int>(c.groups.size()));
  }
}

TEST(GroupBarsDate, StopsWhenTheOutputIsFull) {
  Bars in, out, none;
  numbered(in, {1, 1.5, 2, 2.5, 3, 3.5});
  numbered(out, {0, 0, 0});
  out.datasize = 2;  // the third bar must stay as it is
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 2, 0, 0), 0);
  expectEqualSizes(out, 2);
  EXPECT_EQ(itemsOf(out.date), (Items{1.5, 2.5}));
  EXPECT_EQ(itemsOf(out.close), (Items{15, 35}));
  EXPECT_EQ(out.date.data[2], 0);
  EXPECT_EQ(out.close.data[2], 25);
  qvAllocBars(&none, 0);
  ASSERT_EQ(qvGroupBarsDate(&in, &none, 2, 0, 0), 0);
  expectEqualSizes(none, 0);
}

TEST(GroupBarsDate, CompressesInPlace) {
  Bars in(walkBars(300)), apart, same;
  ASSERT_EQ(qvGroupBarsDate(&in, &apart, 4, 36600, 36900), 0);
  qvCopyBars(&in, &same);
  ASSERT_EQ(qvGroupBarsDate(&same, &same, 4, 36600, 36900), 0);
  QvBars view = in;  // a second record of the same blocks
  ASSERT_EQ(qvGroupBarsDate(&in, &view, 4, 36600, 36900), 0);
  for (const QvBars* bars : {static_cast<QvBars*>(&same), static_cast<QvBars*>(&in), &view}) {
    expectEqualSizes(*bars, apart.barsize);
    EXPECT_EQ(bars->frequency, 4);
    for (int k = 0; k < qv::kSeriesCount; ++k)
      EXPECT_EQ(itemsOf(qv::seriesOf(*bars, k)), itemsOf(qv::seriesOf(apart, k))) << "series " << k;
  }
}

TEST(GroupBarsTime, MakesFiveMinutesOutOfOneAndRestartsEachDay) {
  // One-minute bars of 9:30 to 9:41 on two days: 5 + 5 + 2 bars each.
  Items dates;
  for (int d : {0, 1})
    for (int m = 0; m < 12; ++m) dates.push_back(kMonday + d + (34200 + 60 * m) / 86400.0);
  Bars in, out;
  numbered(in, dates);
  in.frequency = 1;
  ASSERT_EQ(qvGroupBarsTime(&in, &out, 300, 0, 0), 0);
  EXPECT_EQ(itemsOf(out.volume), (Items{5, 5, 2, 5, 5, 2}));
  EXPECT_EQ(itemsOf(out.open), (Items{0, 50, 100, 120, 170, 220}));
  EXPECT_EQ(out.date.data[2], dates[11]);
  EXPECT_EQ(out.frequency, 1);
}

TEST(GroupBarsTime, CountsFromTheFirstBarOfEachGroup) {
  Bars in, out;
  Items dates;
  for (int second : {0, 59, 60, 130, 189, 190}) dates.push_back(kMonday + second / 86400.0);
  numbered(in, dates);
  for (const auto& [seconds, volumes] :
       {std::pair{60.0, Items{2, 1, 2, 1}}, {0.0, Items(6, 1.0)}, {kNaN, Items{6}}}) {
    qvFreeBars(&out);
    expectGives(qvGroupBarsTime(&in, &out, seconds, 0, 0), out.volume, volumes);
  }
}

TEST(GroupArray, SumsPerPeriod) {
  Bars dates;
  numbered(dates, {day(2000, 1, 3), day(2000, 1, 4), day(2000, 2, 1), day(2000, 3, 1), day(2000, 3, 2)});
  const struct {
    int firstValid;
    Items sums;
    int sumsFirstValid;
  } cases[] = {{0, {3, 4, 24}, 0},
               {4, {0, 0, 16}, 2},  // January and February received nothing
               {9, {0, 0, 0}, 0}};  // none did
  Array used{7, 7, 7, 7, 7}, inPlace({1, 2, 4, 8, 16}, 1);
  for (const auto& c : cases) {
    const Array in({1, 2, 4, 8, 16}, c.firstValid);
    expectGives(qvGroupArray(&dates, &in, &used, 4), used, c.sums, c.sumsFirstValid);
  }
  expectGives(qvGroupArray(&dates, &inPlace, &inPlace, 4), inPlace, {2, 4, 24}, 0);
}

TEST(GroupArray, EndsWithTheShortestSeriesAndTheRoom) {
  Bars dates;
  numbered(dates, {1, 2, 3});
  const Array longer{1, 2, 4, 8}, shorter{1, 2};
  Array out, small{9, 9};
  expectGives(qvGroupArray(&dates, &longer, &out, 2), out, {1, 2, 4});
  expectGives(qvGroupArray(&dates, &shorter, &out, 2), out, {1, 2});
  small.capacity = 1;
  expectGives(qvGroupArray(&dates, &longer, &small, 2), small, {1});
  EXPECT_EQ(small.data[1], 9);
}

TEST(GroupBars, SummarisesTheBarsUpToAnIndex) {
  Bars in;
  numbered(in, {1, 2, 3, 4});
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
  for (int index : {INT_MIN, -1, 4, INT_MAX}) EXPECT_EQ(group(3, index), -1);
  for (int p : {INT_MIN, -1, 0}) EXPECT_EQ(group(p, 3), -1);
  EXPECT_EQ(qvGroupBars(&in, x, x, nullptr, x, x, x, 3, 3), -1);
}

// Every bar from start on against qvGroupBars of the untouched input.
TEST(GroupBarsPeriods, EqualsEachStretchAlsoInPlace) {
  std::vector<Bar> bars = walkBars(90);
  for (std::size_t i = 0; i < bars.size(); i += 7) bars[i].high = kNaN;
  for (int p : {1, 2, 7, 89, 90, 91, INT_MAX}) {
    for (int start : {INT_MIN, 0, 1, 20, 89, 90, INT_MAX}) {
      for (int firstValid : {0, 5, 60, 90, INT_MAX}) {
        SCOPED_TRACE(testing::Message() << p << ' ' << start << ' ' << firstValid);
        Bars in(bars), apart, same(bars);
        for (Bars* b : {&in, &same}) {
          b->high.firstValid = b->openInterest.firstValid = firstValid;
          b->low.firstValid = firstValid / 2;
        }
        Bars wanted(bars), cleared(bars);
        for (int i = 0; i < 90; ++i) {
          double w[7] = {in.date.data[i]};
          qvGroupBars(&in, w + 1, w + 2, w + 3, w + 4, w + 5, w + 6, p, i);
          for (int k = 0; k < qv::kSeriesCount; ++k) {
            if (i >= start) qv::seriesOf(wanted, k).data[i] = w[k];
            qv::seriesOf(cleared, k).data[i] = i >= start ? w[k] : 0.0;
          }
        }
        ASSERT_EQ(qvGroupBarsPeriods(&in, &apart, p, start), 0);
        ASSERT_EQ(qvGroupBarsArray(&same, &same, p, start), 0);
        for (int k = 0; k < qv::kSeriesCount && !HasFailure(); ++k) {
          expectGives(0, qv::seriesOf(apart, k), itemsOf(qv::seriesOf(cleared, k)));
          expectGives(0, qv::seriesOf(same, k), itemsOf(qv::seriesOf(wanted, k)));
        }
      }
    }
  }
  Bars in(walkBars(20)), small(walkBars(8));
  ASSERT_EQ(qvGroupBarsPeriods(&in, &small, 3, 0), 0);
  expectEqualSizes(small, 8);
  EXPECT_EQ(small.open.data[7], in.open.data[5]);
}

using Compression = int (*)(QvBars*, QvBars*);
constexpr Compression kCompressions[] = {
    [](QvBars* in, QvBars* out) { return qvGroupBarsDate(in, out, 3, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsTime(in, out, 60, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsPeriods(in, out, 5, 0); },
};

TEST(Compression, RefusesBadArgumentsBeforeItWrites) {
  Bars whole(walkBars(9)), none, out;
  Array empty, sums;
  for (int frequency : {INT_MIN, -1, 0, 1, 7, INT_MAX}) {
    EXPECT_EQ(qvGroupBarsDate(&whole, &out, frequency, 0, 0), -1);
    EXPECT_EQ(qvGroupArray(&whole, &whole.volume, &sums, frequency), -1);
  }
  for (int p : {INT_MIN, -1, 0}) EXPECT_EQ(qvGroupBarsPeriods(&whole, &out, p, 0), -1);
  for (Compression compress : kCompressions) {
    EXPECT_EQ(compress(nullptr, &out), -1);
    EXPECT_EQ(compress(&none, &out), -1);
    EXPECT_EQ(compress(&whole, nullptr), -1);
    for (int k = 0; k < qv::kSeriesCount; ++k) {
      Bars lacking(walkBars(9));
      qvFreeArray(&qv::seriesOf(lacking, k));
      EXPECT_EQ(compress(&lacking, &out), -1) << "series " << k;
      EXPECT_TRUE(k == 0 || compress(&whole, &lacking) == -1) << "an output without series " << k;
    }
  }
  EXPECT_EQ(qvGroupArray(&whole, &empty, &sums, 3), -1);
  EXPECT_EQ(qvGroupArray(nullptr, &whole.close, &sums, 3), -1);
  EXPECT_EQ(qvGroupArray(&whole, &whole.close, nullptr, 3), -1);
  EXPECT_EQ(out.date.data, nullptr);
  EXPECT_EQ(sums.data, nullptr);
}

TEST(Compression, SurvivesEmptySetsAndWildDates) {
  for (Compression compress : kCompressions) {
    Bars in, out;
    qvAllocBars(&in, 0);
    EXPECT_EQ(compress(&in, &out), 0);
    expectEqualSizes(out, 0);
    for (double wild : {kNaN, kInf, -kInf, 1e308, -1e308, 1e15}) {
      for (int every : {1, 3}) {
        Bars strange(walkBars(50)), result;
        for (int i = 0; i < 50; i += every) strange.date.data[i] = wild;
        EXPECT_EQ(compress(&strange, &result), 0);
        expectEqualSizes(result, result.barsize);
        for (int frequency = 2; frequency <= 6; ++frequency) {
          Bars grouped;
          EXPECT_EQ(qvGroupBarsDate(&strange, &grouped, frequency, wild, wild), 0);
          expectEqualSizes(grouped, grouped.barsize);
        }
      }
    }
  }
}

TEST(Compression, LeavesTheBarsAloneWhenMemoryRunsOut) {
  const Bars before(walkBars(60));
  const long live = qv::memory::liveBlocks();
  for (Compression compress : kCompressions) {
    for (bool inPlace : {false, true}) {
      int status = -3;
      for (long k = 1; status == -3; ++k) {
        ASSERT_LT(k, 99) << "allocates without end";
        Bars in(walkBars(60)), out;
        qv::memory::failAllocation(k);
        status = compress(&in, inPlace ? static_cast<QvBars*>(&in) : &out);
        qv::memory::failAllocation(0);
        if (status == 0) break;
        ASSERT_EQ(status, -3);
        EXPECT_EQ(itemsOf(in.close), itemsOf(before.close));
        EXPECT_EQ(itemsOf(in.high), itemsOf(before.high));
        expectEqualSizes(in, 60);
        expectEqualSizes(out, out.barsize);
      }
    }
  }
  EXPECT_EQ(qv::memory::liveBlocks(), live) << "blocks leaked";
}

}  // namespace
}  // namespace qvtest
