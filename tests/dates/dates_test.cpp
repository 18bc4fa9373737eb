// Dates: the calendar against std::chrono, texts read and printed, the older set with 16-bit parts.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstring>

#include "support/expect.h"
#include "support/series.h"

using namespace qvtest;

namespace {

constexpr double kJan15 = 39462.0;  // 15 January 2008

using Parts = std::vector<int>;  // year to second; parsed ones behind the answer

Parts split(double date) {
  Parts p(6, -9);
  qvDateToYMD(date, &p[0], &p[1], &p[2], &p[3], &p[4], &p[5]);
  return p;
}

Parts parse(const char* text, int format) {
  Parts p(7, -9);
  p[0] = qvDateStrToYMD(text, format, &p[1], &p[2], &p[3], &p[4], &p[5], &p[6]);
  return p;
}

Parts parseTime(const char* text) {
  Parts p(4, -9);
  p[0] = qvTimeStrToHMS(text, &p[1], &p[2], &p[3]);
  return p;
}

double dateOf(int year, int month, int day) {
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

template <typename Function, typename... Args>
std::string printed(Function print, Args... args) {
  char out[600] = "?";
  const int length = print(args..., out);
  EXPECT_EQ(length, static_cast<int>(std::strlen(out)));
  return out;
}

}  // namespace

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

TEST(DateText, DatesAndTimesInAllForms) {
  // Unknown orders count as 0, characters after the eighth are dropped; a time without digits holds no
  // marker.
  const std::pair<const char*, int> dates[] = {
      {"8-1-15", 0},     {"15-Jan-2008", 2},      {"15jan2008", 2},    {"JANUARY 15, 2008", 1}, {"080115", 0},
      {"2008/01/15", 3}, {"2008/01/15", INT_MIN}, {"200801159999", 0}, {"20080115 PM", 0}};
  for (const auto& [text, order] : dates)
    EXPECT_EQ(parse(text, order), (Parts{1, 2008, 1, 15, 0, 0, 0})) << text;
  // A P is the hour group itself. Eight groups have a last one; of nine there is none to look at.
  const std::pair<const char*, Parts> times[] = {
      {"20080115 093000", {9, 30, 0}},         {"080115 2359", {23, 59, 0}},
      {"2008/01/15 12:30 AM", {12, 30, 0}},    {"2008/01/15 12:30 PM", {12, 30, 0}},
      {"2008/01/15 10:30:59pm", {22, 30, 59}}, {"2008/01/15 p", {12, 0, 0}},
      {"2008/01/15 1:2:3 4 p", {13, 2, 3}},    {"2008/01/15 1:2:3 4 5 p", {1, 2, 3}}};
  for (const auto& [text, t] : times)
    EXPECT_EQ(parse(text, 0), (Parts{1, 2008, 1, 15, t[0], t[1], t[2]})) << text;
  EXPECT_EQ(parse("2008/02/30 25:00", 0), (Parts{0, 2008, 2, 30, 25, 0, 0}));
  EXPECT_EQ(parse("2008011", 0), (Parts{1, 2008, 1, 1, 0, 0, 0}));
  EXPECT_EQ(parse("", 0), (Parts{0, 2000, 0, 0, 0, 0, 0}));
  // A leading separator leaves the first group, here the year, empty.
  EXPECT_EQ(parse(" 2008/01/15", 0), (Parts{0, 2000, 2008, 1, 15, 0, 0}));
  EXPECT_EQ(parse("15-Dec-2008", 2)[2], 12);
  for (const char* text : {"15-Ja-2008", "15-Jxn-2008"}) EXPECT_EQ(qvDateStrValidate(text, 2), 0);
  EXPECT_EQ(qvDateStrToDate(nullptr, 0), 0.0);
  EXPECT_EQ(qvDateStrToYMD("8/1/15", 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
  for (const int status : {qvDateStrValidate(nullptr, 0), parse(nullptr, 0)[0]}) EXPECT_EQ(status, -1);
  // Of a date and a time in three groups the third has no compact form.
  for (const char* text : {"20080115T0930", "\xff\xfe\xe4"}) EXPECT_EQ(qvDateStrValidate(text, 0), 0);
}

TEST(DateText, TimesAlone) {
  const std::pair<const char*, Parts> times[] = {
      {"9:30", {1, 9, 30, 0}},     {"9::30", {1, 9, 0, 30}}, {"2:15 pm", {1, 14, 15, 0}},
      {"093000", {1, 9, 30, 0}},   {"930", {0, 93, 0, 0}},   {"at 23:59:59.75", {1, 23, 59, 59}},
      {"p 2", {1, 14, 0, 0}},      {"noon", {1, 0, 0, 0}},   {"09:30:15:45", {1, 9, 30, 15}},
      {"12:05 PM", {1, 12, 5, 0}}, {"24:00", {0, 24, 0, 0}}, {nullptr, {-1, -9, -9, -9}}};
  for (const auto& [text, parsed] : times) EXPECT_EQ(parseTime(text), parsed);
  EXPECT_EQ(qvTimeStrToTime("6:00 pm"), 0.75);
  EXPECT_EQ(qvTimeStrToTime(nullptr), 0.0);
  EXPECT_EQ(qvTimeStrToHMS("9:30", nullptr, nullptr, nullptr), 1);
}

TEST(FormatDate, FieldsAndMarkers) {
  // 3:07:09 on 5 November 2008 (3 * 3600 + 7 * 60 + 8.5 seconds).
  const double november = kJan15 + 295 + 11228.5 / 86400;
  const double morning = kJan15 + 0.25, evening = kJan15 + 0.75;
  const std::tuple<double, const char*, const char*> cases[] = {
      {kJan15, "d.m.y yyy yyyyy YyYy", "15.1.08 08 08 2008"},
      {kJan15, "[Z z 1%s%n]", "[Z z 1%0%0]"},  // letters are fields wherever they stand
      {november, "h:n:s hh:nn:ss", "3:7:9 03:07:09"},
      {november, "m h d m m n m", "11 3 5 7 11 7 11"},  // minute once after the hour
      {kJan15, "hh A/P", "12 A"},
      {kJan15 + 0.5, "am/pm h:nn", "pm 12:00"},
      {evening, "A/pm h", "p1 6"},  // three characters are the marker, the M a month
      // A marker that the end of the picture cuts short writes what is there.
      {morning, "h AM", "6 AM"},
      {evening, "h AM/P", "6 P"},
      {1e300, "yyyy", "9999"},
      {-1e300, "yyyy yy", "0000 00"},
      {2 + 86399.5 / 86400, "hh:nn:ss am", "24:00:00 "},
  };
  for (const auto& [date, picture, text] : cases)
    EXPECT_EQ(printed(qvFormatDate, date, picture), text) << picture;
  char out[4] = "abc";
  EXPECT_EQ(qvFormatDate(2.0, nullptr, out), -1);
  EXPECT_EQ(qvFormatDate(2.0, "d", nullptr), -1);
  EXPECT_STREQ(out, "");
}

TEST(FormatDate, WhatIsPrintedIsReadBackAndRandomTextAnswered) {
  const char* const pictures[][3] = {{"yyyy/mm/dd", "yyyymmdd", "yyyy-m-d"},
                                     {"mm/dd/yyyy", "mmddyyyy", "m.d.yyyy"},
                                     {"dd/mm/yyyy", "ddmmyyyy", "d m yyyy"}};
  for (double d = dateOf(1600, 1, 1); d < 150000; d += 13)
    for (int order = 0; order < 3; ++order)
      for (const char* picture : pictures[order])
        ASSERT_EQ(qvDateStrToDate(printed(qvFormatDate, d, picture).c_str(), order), d) << picture;
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto n = random() % 24; n > 0; --n) text += "0123456789pPaAjJanyYmMdDhHsS/:.- %"[random() % 34];
    const Parts p = parse(text.c_str(), i % 3), t = parseTime(text.c_str());
    ASSERT_EQ(p[0], qvDateValidate(p[1], p[2], p[3], p[4], p[5], p[6])) << text;
    ASSERT_EQ(t[0], t[1] < 24 && t[2] < 60 && t[3] < 60) << text;
    ASSERT_LE(printed(qvFormatDate, kJan15 + 0.75, text.c_str()).size(), 2 * text.size()) << text;
  }
}

TEST(DateWrappers, PartsAndDifferences) {
  using Shorts = std::vector<short>;
  Shorts p(3);
  qvJulianToYMD(-kInf, &p[0], &p[1], &p[2]);
  EXPECT_EQ(p[0], -32768);
  qvJulianToYMD(kJan15 + 0.9, &p[0], &p[1], &p[2]);
  qvJulianToYMD(2.0, &p[0], nullptr, &p[2]);  // nothing without room for all
  EXPECT_EQ(p, (Shorts{2008, 1, 15}));
  qvJulianToHMS(2 + 11228.5 / 86400, &p[0], &p[1], &p[2]);
  qvJulianToHMS(2.0, &p[0], &p[1], nullptr);
  EXPECT_EQ(p, (Shorts{3, 7, 9}));
  EXPECT_EQ((Items{qvYMDToJulian(2008, 1, 15), qvHMSToJulian(18, 0, 0), qvTimeTxtToJulian("6 pm", 77)}),
            (Items{kJan15, 0.75, 0.75}));
  EXPECT_EQ((Parts{qvJulianDOW(3.0), qvJulianDif(0.9, 2.1), qvYMDDif(2008, 2, 28, 2008, 3, 1),
                   qvHMSDif(23, 0, 0, 1, 30, 15), qvDateTxtDif("2008/01/01", "01/15/2008", 2, 4),
                   qvTimeTxtDif("9:00", "9:00 pm", 0, 0), qvDateTxtDif(nullptr, "01/15/2008", 2, 4),
                   qvTimeTxtDif("9:00", nullptr, 0, 0)}),
            (Parts{1, 2, 2, -77385, 14, 43200, -1, -1}));
}

TEST(DateWrappers, EveryCodePrintsAndParses) {
  const char* const dates[] = {"",         "08-01-15",   "2008-01-15", "01-15-08", "01-15-2008",
                               "15-01-08", "15-01-2008", "080115",     "20080115", "011508",
                               "01152008", "150108",     "15012008",   ""};
  const char* const times[] = {"", "09-30-06", "09-30", "093006", "0930", ""};
  for (short code = 0; code <= 13; ++code) {  // 0 and 13 print nothing and read years first
    const bool known = code % 13 != 0;
    EXPECT_EQ(printed(qvJulianToDateTxt, kJan15, code, "-"), dates[code]);
    EXPECT_EQ(qvDateTxtToJulian(known ? dates[code] : "2008/01/15", code), kJan15) << code;
    EXPECT_EQ(qvDateTxtVal(dates[code], code), known) << code;
    if (code > 5) continue;
    EXPECT_EQ(printed(qvJulianToTimeTxt, 34205.5 / 86400, code, code < 3 ? "-" : nullptr), times[code]);
  }
  // The separator is part of the picture: an S prints the seconds.
  const std::string separator(250, '-'), longText = "08" + separator + "01" + separator + "15";
  EXPECT_EQ(printed(qvJulianToDateTxt, kJan15, short{1}, "%s"), "08%001%015");
  EXPECT_EQ(printed(qvJulianToDateTxt, kJan15, short{1}, separator.c_str()), longText);
  char out[32] = "?";
  EXPECT_EQ((Parts{qvJulianToDateTxt(kJan15, 2, nullptr, out), qvJulianToDateTxt(kJan15, 2, "-", nullptr),
                   qvJulianToTimeTxt(kJan15, 3, "-", nullptr)}),
            Parts(3, -1));
  EXPECT_STREQ(out, "");
  expectAnswersExhaustedMemory("time", [&] { return qvJulianToTimeTxt(kJan15, 1, "-", out); });
}
