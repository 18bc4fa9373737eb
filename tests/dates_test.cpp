// The calendar: date numbers against std::chrono, the two-digit-year window, odd rules, wild numbers.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cmath>

#include "support/series.h"

using qvtest::kInf;
using qvtest::kNaN;

namespace {

struct Parts {
  int year = -9, month = -9, day = -9, hour = -9, minute = -9, second = -9;
  bool operator==(const Parts&) const = default;
};

Parts split(double date) {
  Parts p;
  qvDateToYMD(date, &p.year, &p.month, &p.day, &p.hour, &p.minute, &p.second);
  return p;
}

void PrintTo(const Parts& p, std::ostream* os) {
  *os << p.year << '-' << p.month << '-' << p.day << ' ' << p.hour << ':' << p.minute << ':' << p.second;
}

constexpr double kWild[] = {0.0,    -0.0, 1e9,   -1e9, 1e15,   -1e15,     1e18,           -1e18,  1e300,
                            -1e300, kInf, -kInf, kNaN, 5e-324, -693594.5, 783831030000.0, 1.7e308};
constexpr int kWildInts[] = {INT_MIN, INT_MIN + 1, -1000000, -2001,   -1,          0,
                             1,       99,          100,      1000000, INT_MAX - 1, INT_MAX};

}  // namespace

TEST(Calendar, EveryDayOfYears101To2599AgreesWithChrono) {
  using namespace std::chrono;
  const sys_days epoch{year{1899} / 12 / 30};
  for (sys_days d{year{101} / 1 / 1}, end{year{2600} / 1 / 1}; d != end; d += days{1}) {
    const year_month_day ymd{d};
    const auto number = static_cast<double>((d - epoch).count());
    const int y = int{ymd.year()}, m = static_cast<int>(unsigned{ymd.month()}),
              dd = static_cast<int>(unsigned{ymd.day()});
    ASSERT_EQ(qvYMDtoDate(y, m, dd, 0, 0, 0), number);
    ASSERT_EQ(split(number), (Parts{y, m, dd, 0, 0, 0}));
    ASSERT_EQ(qvDayOfWeek(number), static_cast<int>(weekday{d}.iso_encoding()) - 1);
    if (m == 12 && dd == 31) {
      ASSERT_EQ(qvYearToDays(y), number);
      ASSERT_EQ(qvIsLeapYear(y), ymd.year().is_leap());
    }
  }
}

TEST(Calendar, EpochAndTimes) {
  EXPECT_EQ(qvYMDtoDate(1900, 1, 1, 0, 0, 0), 2.0);
  EXPECT_EQ(qvYMDtoDate(1899, 12, 30, 0, 0, 0), 0.0);
  EXPECT_EQ(qvYMDtoDate(1899, 12, 29, 6, 0, 0), -1.25);
  EXPECT_EQ(qvYMDtoDate(0, 0, 0, 12, 0, 0), 0.5);
  EXPECT_EQ(qvYMDtoDate(0, 0, 0, 24, 0, 0), 0.0);
  EXPECT_EQ(split(2.75), (Parts{1900, 1, 1, 18, 0, 0}));
  EXPECT_EQ(split(-1.25), (Parts{1899, 12, 29, 6, 0, 0}));
  EXPECT_EQ(split(0.5), (Parts{1899, 12, 30, 12, 0, 0}));
  // 1000.25 s counts as 1001 s, and the last instant of a day as its hour 24.
  EXPECT_EQ(split(2 + 1000.25 / 86400), (Parts{1900, 1, 1, 0, 16, 41}));
  EXPECT_EQ(split(2 + 86399.5 / 86400), (Parts{1900, 1, 1, 24, 0, 0}));
  qvDateToYMD(2.75, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  // Every second of a recent day comes back, or one second later where the fraction rounds up.
  for (int s = 0; s < 86400; ++s) {
    const Parts p = split(qvYMDtoDate(2008, 1, 15, s / 3600, s / 60 % 60, s % 60));
    const int back = p.hour * 3600 + p.minute * 60 + p.second;
    ASSERT_TRUE(p.day == 15 && (back == s || back == s + 1)) << s;
  }
}

TEST(Calendar, Validation) {
  EXPECT_EQ(qvDateValidate(0, 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(qvDateValidate(0, 0, 0, 23, 59, 59), 1);
  EXPECT_EQ(qvDateValidate(2008, 0, 0, 0, 0, 0), 0);
  EXPECT_EQ(qvDateValidate(0, 0, 1, 0, 0, 0), 0);
  EXPECT_EQ(qvDateValidate(0, 1, 1, 0, 0, 0), 1);  // 1 January 2000
  const int badTimes[][3] = {{24, 0, 0}, {-1, 0, 0}, {0, 60, 0}, {0, -1, 0}, {0, 0, 60}, {0, 0, -1}};
  for (const auto& t : badTimes) EXPECT_EQ(qvDateValidate(2008, 1, 15, t[0], t[1], t[2]), 0);
  const int daysIn[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int m = -1; m <= 14; ++m)
    for (int d = -1; d <= 33; ++d)
      EXPECT_EQ(qvDateValidate(2007, m, d, 0, 0, 0), m >= 1 && m <= 12 && d >= 1 && d <= daysIn[m - 1]);
  EXPECT_EQ(qvDateValidate(2008, 2, 29, 0, 0, 0), 1);
  EXPECT_EQ(qvDateValidate(1900, 2, 29, 0, 0, 0), 0);
}

TEST(Calendar, TwoDigitYears) {
  EXPECT_EQ(qvYMDtoDate(99, 2, 29, 0, 0, 0), 0.0);  // 1999
  EXPECT_EQ(qvYMDtoDate(0, 2, 29, 0, 0, 0), qvYMDtoDate(2000, 2, 29, 0, 0, 0));
  EXPECT_EQ(qvYMDtoDate(19, 1, 1, 0, 0, 0), qvYMDtoDate(2019, 1, 1, 0, 0, 0));
  EXPECT_EQ(qvYMDtoDate(20, 1, 1, 0, 0, 0), qvYMDtoDate(1920, 1, 1, 0, 0, 0));
  EXPECT_EQ(qvYMDtoDate(-5, 1, 1, 0, 0, 0), qvYMDtoDate(1995, 1, 1, 0, 0, 0));
  EXPECT_EQ(qvIsLeapYear(0), 1);
  EXPECT_EQ(qvIsLeapYear(1900), 0);
  qvSet2DigitYearCutoff(100);
  qvSet2DigitYearCutoff(-1);
  EXPECT_EQ(qvYearToDays(20), qvYearToDays(1920));
  qvSet2DigitYearCutoff(21);
  EXPECT_EQ(qvYearToDays(20), qvYearToDays(2020));
  qvSet2DigitYearCutoff(0);
  EXPECT_EQ(qvYearToDays(0), qvYearToDays(1900));
  EXPECT_EQ(qvYearToDays(-1), qvYearToDays(1999));  // below any cutoff
  qvSet2DigitYearCutoff(20);
}

TEST(Calendar, NumbersOfDigits) {
  const std::pair<int, double> dates[] = {
      {991231, qvYMDtoDate(1999, 12, 31, 0, 0, 0)},
      {1000101, qvYMDtoDate(2000, 1, 1, 0, 0, 0)},
      {1230115, qvYMDtoDate(2023, 1, 15, 0, 0, 0)},
      {20080229, qvYMDtoDate(2008, 2, 29, 0, 0, 0)},
      {19000101, 2.0},
      {18991231, qvYMDtoDate(3799, 12, 31, 0, 0, 0)},  // up to 1899: since 1900
      {20081301, 0.0},
      {-20080115, 0.0}};
  for (const auto& [number, date] : dates) EXPECT_EQ(qvNumToDate(number), date) << number;
  const std::pair<int, double> times[] = {
      {180000, 0.75}, {93000, 0.3958333333333333}, {240000, 0.0}, {-1, 0.0}};
  for (const auto& [number, time] : times) EXPECT_EQ(qvNumToTime(number), time) << number;
}

TEST(Calendar, PartsAndDifferences) {
  const double date = qvYMDtoDate(2008, 1, 15, 12, 45, 0);
  const struct {
    const char* part;
    double date;
    int value;
  } parts[] = {{"Year", date, 2008},        {"m", date, 1}, {"dummy", date, 15}, {"H", date, 12},
               {"n", 2.78125, 45},          // 18:45
               {"S", 2 + 59.5 / 86400, 0},  // a minute
               {"s", 2 + 58.5 / 86400, 59}, {"", date, 0},  {"W", date, 0},      {nullptr, date, -1}};
  for (const auto& p : parts) EXPECT_EQ(qvDatePart(p.part, p.date), p.value) << p.date;
  const struct {
    const char* unit;
    double from, to;
    int difference;
  } differences[] = {{"d", 39448.99, 39462.01, 14}, {"D", 39462.01, 39448.99, -14}, {"S", 2.5, 7.75, 21600},
                     {"H", 2.5, 7.75, 0},           {"D", -1e300, 1e300, INT_MAX},  {"D", kInf, kInf, 0},
                     {nullptr, date, date, -1}};
  for (const auto& d : differences) EXPECT_EQ(qvDateDiff(d.unit, d.from, d.to), d.difference) << d.from;
  EXPECT_LT(qvDateDiff("S", 2.9, 3.1), 0);
  EXPECT_EQ(qvDayOfWeek(2.999), 0);
  EXPECT_EQ(qvDayOfWeek(-1.0), 4);   // Friday, 29 December 1899
  EXPECT_EQ(qvDayOfWeek(-1.25), 3);  // the sum is truncated, not the date
}

TEST(Calendar, WildNumbersAreAnswered) {
  for (const double d : kWild) {
    const Parts p = split(d);
    EXPECT_TRUE(p.month >= 1 && p.month <= 12 && p.day >= 1 && p.day <= 31) << d;
    EXPECT_TRUE(p.hour >= 0 && p.hour <= 24 && p.minute >= 0 && p.minute < 60) << d;
    EXPECT_TRUE(qvDayOfWeek(d) >= 0 && qvDayOfWeek(d) <= 6) << d;
    for (const double e : kWild) qvDateDiff("D", d, e), qvDateDiff("S", d, e);
  }
  EXPECT_EQ(split(kNaN), (Parts{1899, 12, 30, 0, 0, 0}));
  EXPECT_EQ(split(1e300).year, INT_MAX);
  EXPECT_EQ(split(-kInf).year, INT_MIN);
  for (const int y : kWildInts) {
    EXPECT_TRUE(std::isfinite(qvYearToDays(y)));
    EXPECT_TRUE(std::isfinite(qvYMDtoDate(y, 12, 31, 23, 59, 59)));
    for (const int v : kWildInts) qvDateValidate(y, v, v, 0, 0, v), qvYMDtoDate(v, v, y, v, v, v);
    qvIsLeapYear(y);
    qvNumToDate(y);
    qvNumToTime(y);
  }
  EXPECT_EQ(qvDatePart("Y", qvYearToDays(INT_MAX)), INT_MAX);
}
