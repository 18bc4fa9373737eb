// The calendar against std::chrono.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>

#include "support/dates.h"
#include "support/series.h"

using namespace qvtest;

TEST(Calendar, EveryDayOfYears101To2599AgreesWithChrono) {
  using namespace std::chrono;
  const sys_days epoch{year{1899} / 12 / 30};
  for (sys_days d{year{101} / 1 / 1}, end{year{2600} / 1 / 1}; d != end; d += days{1}) {
    const year_month_day ymd{d};
    const auto number = static_cast<double>((d - epoch).count());
    const int y = int{ymd.year()}, m = static_cast<int>(unsigned{ymd.month()}),
              dd = static_cast<int>(unsigned{ymd.day()});
    ASSERT_EQ(dateOf(y, m, dd), number);
    ASSERT_EQ(split(number), (Parts{y, m, dd, 0, 0, 0}));
    ASSERT_EQ(qvDayOfWeek(number), static_cast<int>(weekday{d}.iso_encoding()) - 1);
    ASSERT_TRUE(m < 12 || dd < 31 || qvYearToDays(y) == number);
    ASSERT_EQ(qvIsLeapYear(y), ymd.year().is_leap());
  }
  for (const int y : {1900, 2000, 2007, 2008})
    for (int m = -1; m <= 14; ++m)
      for (int d = -1; d <= 33; ++d)
        ASSERT_EQ(qvDateValidate(y, m, d, 0, 0, 0), m > 0 && d > 0 && (year{y} / m / d).ok()) << d;
}

TEST(Calendar, EpochAndTimes) {
  EXPECT_EQ(split(-1.25), (Parts{1899, 12, 29, 6, 0, 0}));
  // 1000.25 s counts as 1001 s, and the last instant of a day as its hour 24.
  EXPECT_EQ(split(2 + 1000.25 / 86400), (Parts{1900, 1, 1, 0, 16, 41}));
  EXPECT_EQ(split(2 + 86399.5 / 86400), (Parts{1900, 1, 1, 24, 0, 0}));
  qvDateToYMD(2.75, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ((Items{qvYMDtoDate(1899, 12, 29, 6, 0, 0), qvYMDtoDate(0, 0, 0, 12, 0, 0)}), (Items{-1.25, 0.5}));
  EXPECT_EQ(qvDateValidate(0, 0, 1, 0, 0, 0), 0);
  const int badTimes[][3] = {{24, 0, 0}, {-1, 0, 0}, {0, 60, 0}, {0, -1, 0}, {0, 0, 60}, {0, 0, -1}};
  for (const auto& [h, m, s] : badTimes) EXPECT_EQ(qvYMDtoDate(2008, 1, 15, h, m, s), 0.0);
}

TEST(Calendar, EveryStoredSecondComesBack) {
  // Days of 1901 to 2199, and before day 0.
  for (const double day : {367.0, 2.0, 1.0, 0.0, -1.0, -25568.0, 25569.0, 45293.0, 65536.0, 109572.0}) {
    for (int s = 0; s < 86400; ++s) {
      const double time = s / 86400.0, date = day < 0 ? day - time : day + time;
      const Parts parts = split(date);
      ASSERT_EQ(parts[3] * 3600 + parts[4] * 60 + parts[5], s) << day;
      ASSERT_EQ(qvDateDiff("S", day, date), s) << day;
      ASSERT_EQ(qvYMDtoDate(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]), date) << day;
    }
  }
  // A time between two seconds is rounded up, from a ten-thousandth of a second on.
  EXPECT_EQ(split(2 + 34200.00009 / 86400)[5], 0);
  EXPECT_EQ(split(2 + 34200.00011 / 86400)[5], 1);
}

TEST(Calendar, TwoDigitYearsAndNumbersOfDigits) {
  const int years[][3] = {{20, 99, 1999},  {20, 0, 2000},  {20, 19, 2019}, {20, 20, 1920}, {20, -5, 1995},
                          {100, 20, 1920}, {-1, 20, 1920}, {21, 20, 2020}, {0, 0, 1900},   {99, 98, 2098}};
  for (const auto& [cutoff, shortYear, year] : years) {
    qvSet2DigitYearCutoff(20);
    qvSet2DigitYearCutoff(cutoff);  // those outside 0 .. 99 are ignored
    EXPECT_EQ(qvYearToDays(shortYear), qvYearToDays(year)) << cutoff << ' ' << shortYear;
    EXPECT_EQ(dateOf(shortYear, 2, 29), dateOf(year, 2, 29)) << cutoff << ' ' << shortYear;
  }
  qvSet2DigitYearCutoff(20);
  EXPECT_EQ(qvNumToDate(991231), dateOf(1999, 12, 31));
  EXPECT_EQ(qvNumToDate(1000115), dateOf(2000, 1, 15));
  EXPECT_EQ(qvNumToDate(18991231), dateOf(3799, 12, 31)) << "up to 1899: since 1900";
  EXPECT_EQ((Items{qvNumToDate(19000115), qvNumToDate(20081301), qvNumToTime(93006), qvNumToTime(240000)}),
            (Items{16, 0, 34206.0 / 86400, 0}));
}

TEST(Calendar, PartsAndDifferences) {
  const double date = qvYMDtoDate(2008, 1, 15, 12, 45, 0);
  // 59.5 s are a minute.
  const std::tuple<const char*, double, int> parts[] = {{"Year", date, 2008},
                                                        {"m", date, 1},
                                                        {"dummy", date, 15},
                                                        {"H", date, 12},
                                                        {"n", date, 45},
                                                        {"S", 2 + 59.5 / 86400, 0},
                                                        {"s", 2 + 58.5 / 86400, 59},
                                                        {"W", date, 0},
                                                        {nullptr, date, -1}};
  for (const auto& [part, of, value] : parts) EXPECT_EQ(qvDatePart(part, of), value) << of;
  EXPECT_EQ(qvDateDiff("d", 39448.99, 39462.01), 14);
  EXPECT_EQ(qvDateDiff("D", 1e300, -1e300), INT_MIN);
  EXPECT_EQ(qvDateDiff("S", 2.75, 9.25), -43200);
  EXPECT_EQ(qvDateDiff("H", 2.5, 7.75), 0);
  EXPECT_EQ(qvDateDiff(nullptr, 2.5, 7.75), -1);
  EXPECT_EQ(qvDayOfWeek(-1.0), 4) << "Friday, 29 December 1899";
  EXPECT_EQ(qvDayOfWeek(-1.25), 3) << "the sum is truncated, not the date";
}

TEST(Calendar, WildNumbersAreAnswered) {
  EXPECT_EQ(split(-693900), (Parts{0, 2, 29, 0, 0, 0}));
  EXPECT_EQ(qvDayOfWeek(-693900), 1) << "the Tuesday before 1 March of year 0";
  EXPECT_EQ(split(kNaN), (Parts{1899, 12, 30, 0, 0, 0}));
  EXPECT_EQ(split(1e300)[0], INT_MAX);
  EXPECT_EQ(split(-kInf)[0], INT_MIN);
  for (const int y : {INT_MIN, -2001, -1, 99, 100, INT_MAX - 1, INT_MAX})
    for (const double number : {qvYearToDays(y), dateOf(y, 12, 31), qvNumToDate(y), qvNumToTime(y)})
      EXPECT_TRUE(std::isfinite(number) && qvDateValidate(y, y, y, 0, 0, y) == 0) << y;
}
