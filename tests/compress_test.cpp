// Bar compression by calendar period, by time and rolling.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "core/memory.h"
#include "support/calculations.h"
#include "support/series.h"

namespace qvtest {
namespace {

using Items = std::vector<double>;

// Bars that each tell their number: open 10 i, high 10 i + 9, low 10 i + 1, close 10 i + 5, volume 1,
// open interest 2.
Bars* numbered(Bars& bars, const Items& dates) {
  qvFreeBars(&bars);
  qvAllocBars(&bars, static_cast<int>(dates.size()));
  for (int i = 0; i < bars.barsize; ++i) {
    bars.date.data[i] = dates[static_cast<std::size_t>(i)];
    bars.open.data[i] = 10 * i;
    bars.high.data[i] = 10 * i + 9;
    bars.low.data[i] = 10 * i + 1;
    bars.close.data[i] = 10 * i + 5;
    bars.volume.data[i] = 1;
    bars.openInterest.data[i] = 2;
  }
  return &bars;
}

Items itemsOf(const QvArray& a) {
  return a.data ? Items(a.data, a.data + a.size) : Items{};
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
  EXPECT_EQ(itemsOf(out.date), (Items{kMonday + 4, kMonday + 11}));
  EXPECT_EQ(itemsOf(out.open), (Items{0, 50}));
  EXPECT_EQ(itemsOf(out.high), (Items{49, 99}));
  EXPECT_EQ(itemsOf(out.low), (Items{1, 51}));
  EXPECT_EQ(itemsOf(out.close), (Items{45, 95}));
  EXPECT_EQ(itemsOf(out.volume), (Items{5, 5}));
  EXPECT_EQ(itemsOf(out.openInterest), (Items{10, 10}));
  EXPECT_EQ(out.frequency, 3);
  EXPECT_STREQ(out.symbol, "ABC");
  EXPECT_EQ(in.frequency, 2);
}

TEST(GroupBarsDate, FindsThePeriodsOfEachFrequency) {
  const struct {
    const char* what;
    int frequency;
    Items dates, groups;  // the groups' dates
  } cases[] = {
      {"a week without its Monday", 3, {kMonday + 4, kMonday + 8, kMonday + 9}, {kMonday + 4, kMonday + 9}},
      {"two Wednesdays", 3, {kMonday + 2, kMonday + 9}, {kMonday + 2, kMonday + 9}},
      {"Monday to Sunday", 3, {kMonday, kMonday + 6, kMonday + 7}, {kMonday + 6, kMonday + 7}},
      {"days of several times", 2, {7.25, 7.75, 8.0, 8.5}, {7.75, 8.5}},
      {"months",
       4,
       {day(2000, 1, 31), day(2000, 2, 1), day(2000, 2, 29), day(2001, 2, 1)},
       {day(2000, 1, 31), day(2000, 2, 29), day(2001, 2, 1)}},
      {"a month back, out of order",
       5,
       {day(2000, 5, 1), day(2000, 2, 1), day(2000, 3, 1), day(2000, 4, 1)},
       {day(2000, 3, 1), day(2000, 4, 1)}},
      {"years",
       6,
       {day(1999, 12, 31), day(2000, 1, 1), day(2000, 12, 31)},
       {day(1999, 12, 31), day(2000, 12, 31)}},
  };
  for (const auto& c : cases) {
    Bars in, out;
    ASSERT_EQ(qvGroupBarsDate(numbered(in, c.dates), &out, c.frequency, 0, 0), 0) << c.what;
    EXPECT_EQ(itemsOf(out.date), c.groups) << c.what;
  }
  Items months, quarters;
  for (int m = 1; m <= 12; ++m) months.push_back(day(2001, m, 28));
  for (int m = 3; m <= 12; m += 3) quarters.push_back(day(2001, m, 28));
  Bars in, out;
  ASSERT_EQ(qvGroupBarsDate(numbered(in, months), &out, 5, 0, 0), 0);
  EXPECT_EQ(itemsOf(out.date), quarters);
}

TEST(GroupBarsDate, TakesTheBarsBetweenTwoDates) {
  Bars in, out;
  numbered(in, {1, 2, 3, 4, 5, 6});
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 6, 2, 5), 0);
  EXPECT_EQ(itemsOf(out.open), Items{10});
  EXPECT_EQ(itemsOf(out.close), Items{45});
  EXPECT_EQ(itemsOf(out.volume), Items{4});
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 2, 4, 1), 0);  // the first bar is a group whatever the end date
  EXPECT_EQ(itemsOf(out.date), Items{4});
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 2, 7, 0), 0);  // no bar at all
  expectEqualSizes(out, 0);
}

TEST(GroupBarsDate, TakesZeroPricesAsPrices) {
  Bars in, out;
  numbered(in, {2, 3});
  in.low.data[1] = 0;
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 6, 0, 0), 0);
  EXPECT_EQ(out.low.data[0], 0);
}

TEST(GroupBarsDate, StopsWhenTheOutputIsFull) {
  Bars in, out;
  numbered(in, {1, 1.5, 2, 2.5, 3, 3.5});
  numbered(out, {0, 0, 0});
  out.datasize = 2;  // the third bar must stay as it is
  ASSERT_EQ(qvGroupBarsDate(&in, &out, 2, 0, 0), 0);
  expectEqualSizes(out, 2);
  EXPECT_EQ(itemsOf(out.date), (Items{1.5, 2.5}));
  EXPECT_EQ(itemsOf(out.close), (Items{15, 35}));
  EXPECT_EQ(out.date.data[2], 0);
  EXPECT_EQ(out.close.data[2], 25);

  Bars none;
  qvAllocBars(&none, 0);
  ASSERT_EQ(qvGroupBarsDate(&in, &none, 2, 0, 0), 0);
  expectEqualSizes(none, 0);
}

TEST(GroupBarsDate, CompressesInPlace) {
  Bars in(walkBars(300)), apart;
  ASSERT_EQ(qvGroupBarsDate(&in, &apart, 4, 36600, 36900), 0);
  Bars same;
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

TEST(GroupBarsDate, RefusesAnUnknownFrequencyBeforeItWrites) {
  Bars in, out;
  numbered(in, {1, 2});
  Array sums;
  for (int frequency : {INT_MIN, -1, 0, 1, 7, INT_MAX}) {
    EXPECT_EQ(qvGroupBarsDate(&in, &out, frequency, 0, 0), -1);
    EXPECT_EQ(qvGroupArray(&in, &in.volume, &sums, frequency), -1);
  }
  EXPECT_EQ(out.date.data, nullptr);
  EXPECT_EQ(sums.data, nullptr);
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
  expectEqualSizes(out, 6);
  EXPECT_EQ(itemsOf(out.volume), (Items{5, 5, 2, 5, 5, 2}));
  EXPECT_EQ(itemsOf(out.open), (Items{0, 50, 100, 120, 170, 220}));
  EXPECT_EQ(out.date.data[2], dates[11]);
  EXPECT_EQ(out.frequency, 1);
}

TEST(GroupBarsTime, CountsFromTheFirstBarOfEachGroup) {
  Bars in, out;  // seconds 0, 59, 60, 130, 189, 190 of a day
  Items dates;
  for (int second : {0, 59, 60, 130, 189, 190}) dates.push_back(kMonday + second / 86400.0);
  numbered(in, dates);
  ASSERT_EQ(qvGroupBarsTime(&in, &out, 60, 0, 0), 0);
  EXPECT_EQ(itemsOf(out.volume), (Items{2, 1, 2, 1}));
  ASSERT_EQ(qvGroupBarsTime(&in, &out, 0, 0, 0), 0);
  EXPECT_EQ(out.barsize, 6);
  ASSERT_EQ(qvGroupBarsTime(&in, &out, kNaN, 0, 0), 0);
  EXPECT_EQ(out.barsize, 1);
}

TEST(GroupArray, SumsPerPeriod) {
  Bars dates;
  numbered(dates, {day(2000, 1, 3), day(2000, 1, 4), day(2000, 2, 1), day(2000, 3, 1), day(2000, 3, 2)});
  const Array in{1, 2, 4, 8, 16};
  Array out;
  ASSERT_EQ(qvGroupArray(&dates, &in, &out, 4), 0);
  EXPECT_EQ(out.items(), (Items{3, 4, 24}));
  EXPECT_EQ(out.firstValid, 0);

  const Array late({1, 2, 4, 8, 16}, 4);  // January and February received nothing
  Array used{7, 7, 7, 7, 7};
  ASSERT_EQ(qvGroupArray(&dates, &late, &used, 4), 0);
  EXPECT_EQ(used.items(), (Items{0, 0, 16}));
  EXPECT_EQ(used.firstValid, 2);

  const Array never({1, 2, 4, 8, 16}, 9);
  ASSERT_EQ(qvGroupArray(&dates, &never, &used, 4), 0);
  EXPECT_EQ(used.items(), (Items{0, 0, 0}));
  EXPECT_EQ(used.firstValid, 0);

  Array inPlace({1, 2, 4, 8, 16}, 1);
  ASSERT_EQ(qvGroupArray(&dates, &inPlace, &inPlace, 4), 0);
  EXPECT_EQ(inPlace.items(), (Items{2, 4, 24}));
  EXPECT_EQ(inPlace.firstValid, 0);
}

TEST(GroupArray, EndsWithTheShortestSeriesAndTheRoom) {
  Bars dates;
  numbered(dates, {1, 2, 3});
  const Array longer{1, 2, 4, 8}, shorter{1, 2};
  Array out;
  ASSERT_EQ(qvGroupArray(&dates, &longer, &out, 2), 0);
  EXPECT_EQ(out.items(), (Items{1, 2, 4}));
  ASSERT_EQ(qvGroupArray(&dates, &shorter, &out, 2), 0);
  EXPECT_EQ(out.items(), (Items{1, 2}));
  Array small{9, 9};
  small.capacity = 1;
  ASSERT_EQ(qvGroupArray(&dates, &longer, &small, 2), 0);
  EXPECT_EQ(small.items(), Items{1});
  EXPECT_EQ(small.data[1], 9);
}

TEST(GroupBars, SummarisesTheBarsUpToAnIndex) {
  Bars in;
  numbered(in, {1, 2, 3, 4});
  in.high.data[1] = 99;
  double o, h, l, c, v, oi;
  ASSERT_EQ(qvGroupBars(&in, &o, &h, &l, &c, &v, &oi, 3, 3), 0);
  EXPECT_EQ((Items{o, h, l, c, v, oi}), (Items{10, 99, 11, 35, 3, 6}));
  ASSERT_EQ(qvGroupBars(&in, &o, &h, &l, &c, &v, &oi, INT_MAX, 2), 0);
  EXPECT_EQ((Items{o, h, l, c, v, oi}), (Items{0, 99, 1, 25, 3, 6}));
  in.high.firstValid = 2;  // each series begins at its own first valid index
  in.volume.firstValid = 3;
  in.low.firstValid = 4;  // nowhere
  ASSERT_EQ(qvGroupBars(&in, &o, &h, &l, &c, &v, &oi, 3, 3), 0);
  EXPECT_EQ((Items{o, h, l, c, v, oi}), (Items{10, 39, 0, 35, 1, 6}));
  for (int index : {INT_MIN, -1, 4, INT_MAX})
    EXPECT_EQ(qvGroupBars(&in, &o, &h, &l, &c, &v, &oi, 3, index), -1);
  for (int p : {INT_MIN, -1, 0}) EXPECT_EQ(qvGroupBars(&in, &o, &h, &l, &c, &v, &oi, p, 3), -1);
  EXPECT_EQ(qvGroupBars(&in, &o, &h, nullptr, &c, &v, &oi, 3, 3), -1);
}

// Every bar from start on against qvGroupBars of the untouched input.
TEST(GroupBarsPeriods, EqualsEachStretchAlsoInPlace) {
  std::vector<Bar> bars = walkBars(90);
  for (std::size_t i = 0; i < bars.size(); i += 7) bars[i].high = kNaN;
  for (int p : {1, 2, 7, 89, 90, 91, INT_MAX}) {
    for (int start : {INT_MIN, 0, 1, 20, 89, 90, INT_MAX}) {
      for (int firstValid : {0, 5, 60, 90, INT_MAX}) {
        Bars in(bars), apart, same(bars);
        for (Bars* b : {&in, &same}) {
          b->high.firstValid = b->openInterest.firstValid = firstValid;
          b->low.firstValid = firstValid / 2;
        }
        ASSERT_EQ(qvGroupBarsPeriods(&in, &apart, p, start), 0);
        ASSERT_EQ(qvGroupBarsArray(&same, &same, p, start), 0);
        expectEqualSizes(apart, 90);
        expectEqualSizes(same, 90);
        for (int i = 0; i < 90; ++i) {
          double want[7] = {in.date.data[i]};
          qvGroupBars(&in, want + 1, want + 2, want + 3, want + 4, want + 5, want + 6, p, i);
          for (int k = 0; k < qv::kSeriesCount; ++k) {
            const double a = qv::seriesOf(apart, k).data[i], s = qv::seriesOf(same, k).data[i];
            const double untouched = qv::seriesOf(in, k).data[i];
            const auto equal = [](double x, double y) { return x == y || (x != x && y != y); };
            ASSERT_TRUE(equal(a, i >= start ? want[k] : 0.0)) << k << " " << i << " " << p << " " << start;
            ASSERT_TRUE(equal(s, i >= start ? want[k] : untouched))
                << k << " " << i << " " << p << " " << start;
          }
        }
      }
    }
  }
}

TEST(GroupBarsPeriods, KeepsToTheRoomOfItsOutput) {
  Bars in(walkBars(20)), small(walkBars(8));
  ASSERT_EQ(qvGroupBarsPeriods(&in, &small, 3, 0), 0);
  expectEqualSizes(small, 8);
  EXPECT_EQ(small.open.data[7], in.open.data[5]);
  for (int p : {INT_MIN, -1, 0}) {
    Bars out;
    EXPECT_EQ(qvGroupBarsPeriods(&in, &out, p, 0), -1);
    EXPECT_EQ(out.date.data, nullptr);
  }
}

using Compression = int (*)(QvBars*, QvBars*);
constexpr Compression kCompressions[] = {
    [](QvBars* in, QvBars* out) { return qvGroupBarsDate(in, out, 3, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsTime(in, out, 60, 0, 0); },
    [](QvBars* in, QvBars* out) { return qvGroupBarsPeriods(in, out, 5, 0); },
};

TEST(Compression, RefusesMissingData) {
  for (Compression compress : kCompressions) {
    Bars none, out;
    EXPECT_EQ(compress(nullptr, &out), -1);
    EXPECT_EQ(compress(&none, &out), -1);
    for (int k = 0; k < qv::kSeriesCount; ++k) {
      Bars in(walkBars(9)), incomplete(walkBars(9));
      EXPECT_EQ(compress(&in, nullptr), -1);
      qvFreeArray(&qv::seriesOf(in, k));
      EXPECT_EQ(compress(&in, &out), -1) << "series " << k;
      Bars full(walkBars(9));
      if (k > 0) {  // an output without dates is an empty one
        qvFreeArray(&qv::seriesOf(incomplete, k));
        EXPECT_EQ(compress(&full, &incomplete), -1) << "series " << k;
      }
    }
    EXPECT_EQ(out.date.data, nullptr);
  }
  Bars dates(walkBars(3));
  Array empty, out;
  EXPECT_EQ(qvGroupArray(&dates, &empty, &out, 3), -1);
  EXPECT_EQ(qvGroupArray(nullptr, &dates.close, &out, 3), -1);
  EXPECT_EQ(qvGroupArray(&dates, &dates.close, nullptr, 3), -1);
}

TEST(Compression, SurvivesEmptySetsAndWildDates) {
  for (Compression compress : kCompressions) {
    Bars in, out;
    qvAllocBars(&in, 0);
    EXPECT_EQ(compress(&in, &out), 0);
    expectEqualSizes(out, 0);
    for (double wild : {kNaN, kInf, -kInf, 1e308, -1e308, 1e15}) {
      for (int every : {1, 3}) {
        Bars strange(walkBars(50));
        for (int i = 0; i < 50; i += every) strange.date.data[i] = wild;
        Bars result;
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
  const long before = qv::memory::liveBlocks();
  for (Compression compress : kCompressions) {
    for (bool inPlace : {false, true}) {
      for (long k = 1; k < 100; ++k) {
        Bars in(walkBars(60)), out;
        const Items closes = itemsOf(in.close), highs = itemsOf(in.high);
        qv::memory::failAllocation(k);
        const int status = compress(&in, inPlace ? static_cast<QvBars*>(&in) : &out);
        qv::memory::failAllocation(0);
        if (status == 0) break;
        ASSERT_EQ(status, -3);
        ASSERT_LT(k, 99) << "allocates without end";
        EXPECT_EQ(itemsOf(in.close), closes);
        EXPECT_EQ(itemsOf(in.high), highs);
        expectEqualSizes(in, 60);
        expectEqualSizes(out, out.barsize);
      }
    }
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before) << "blocks leaked";
}

}  // namespace
}  // namespace qvtest
