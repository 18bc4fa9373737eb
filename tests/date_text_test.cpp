// Reading dates and times from text, and printing them by pictures.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

#include "dates/pictures.h"
#include "support/series.h"

using qvtest::kInf;
using qvtest::kNaN;

namespace {

struct Parsed {
  int valid, year = -9, month = -9, day = -9, hour = -9, minute = -9, second = -9;
  bool operator==(const Parsed&) const = default;
};

void PrintTo(const Parsed& p, std::ostream* os) {
  *os << p.valid << ": " << p.year << '-' << p.month << '-' << p.day << ' ' << p.hour << ':' << p.minute
      << ':' << p.second;
}

Parsed parse(const char* text, int format) {
  Parsed p{0};
  p.valid = qvDateStrToYMD(text, format, &p.year, &p.month, &p.day, &p.hour, &p.minute, &p.second);
  return p;
}

Parsed parseTime(const char* text) {
  Parsed p{0, 0, 0, 0};
  p.valid = qvTimeStrToHMS(text, &p.hour, &p.minute, &p.second);
  return p;
}

Parsed jan15(int hour = 0, int minute = 0, int second = 0) {
  return {1, 2008, 1, 15, hour, minute, second};
}

std::string format(double date, const char* picture) {
  char out[64];
  const int length = qvFormatDate(date, picture, out);
  EXPECT_EQ(length, static_cast<int>(std::string(out).size()));
  return out;
}

constexpr double kJan15 = 39462.0;  // 15 January 2008

}  // namespace

TEST(DateText, SeparatedDates) {
  EXPECT_EQ(parse("2008/01/15", 0), jan15());
  EXPECT_EQ(parse("01/15/2008", 1), jan15());
  EXPECT_EQ(parse("15/01/2008", 2), jan15());
  EXPECT_EQ(parse("8-1-15", 0), jan15());
  EXPECT_EQ(parse("1.15.08", 1), jan15());
  EXPECT_EQ(parse("15-Jan-2008", 2), jan15());
  EXPECT_EQ(parse("15jan2008", 2), jan15());
  EXPECT_EQ(parse("JANUARY 15 2008", 1), jan15());
  EXPECT_EQ(parse("JAN 15, 2008", 1), jan15());
  EXPECT_EQ(parse("15-Dec-2008", 2).month, 12);
  EXPECT_EQ(parse("15-Ja-2008", 2).valid, 0);
  EXPECT_EQ(parse("15-Jxn-2008", 2).valid, 0);
  EXPECT_EQ(parse("2008/01/15", 3), jan15());  // unknown orders count as 0
  EXPECT_EQ(parse("2008/01/15", INT_MIN), jan15());
  EXPECT_EQ(parse("2008/02/30", 0), (Parsed{0, 2008, 2, 30, 0, 0, 0}));
}

TEST(DateText, CompactDates) {
  EXPECT_EQ(parse("20080115", 0), jan15());
  EXPECT_EQ(parse("080115", 0), jan15());
  EXPECT_EQ(parse("01152008", 1), jan15());
  EXPECT_EQ(parse("011508", 1), jan15());
  EXPECT_EQ(parse("15012008", 2), jan15());
  EXPECT_EQ(parse("20080115 093000", 0), jan15(9, 30, 0));
  EXPECT_EQ(parse("20080115T0930", 0).valid, 0);  // three groups: no compact form
  EXPECT_EQ(parse("080115 2359", 0), jan15(23, 59, 0));
  EXPECT_EQ(parse("2008011", 0), (Parsed{1, 2008, 1, 1, 0, 0, 0}));
  EXPECT_EQ(parse("200801159999", 0), jan15());  // characters after the eighth are dropped
  EXPECT_EQ(parse("20080115 PM", 0), jan15());   // a time without digits; its seconds hold no marker
}

TEST(DateText, TimesAfterDates) {
  EXPECT_EQ(parse("2008/01/15 10:30 PM", 0), jan15(22, 30));
  EXPECT_EQ(parse("2008/01/15 12:30 AM", 0), jan15(12, 30));
  EXPECT_EQ(parse("2008/01/15 12:30 PM", 0), jan15(12, 30));
  EXPECT_EQ(parse("2008/01/15 10:30:59", 0), jan15(10, 30, 59));
  EXPECT_EQ(parse("2008/01/15 10:30:59pm", 0), jan15(22, 30, 59));
  EXPECT_EQ(parse("2008/01/15 p", 0), jan15(12));  // the marker is the hour group itself
  EXPECT_EQ(parse("2008/01/15 25:00", 0), (Parsed{0, 2008, 1, 15, 25, 0, 0}));
  // Eight groups have a last one; of a text with nine there is none to look at.
  EXPECT_EQ(parse("2008/01/15 1:2:3 4 p", 0), jan15(13, 2, 3));
  EXPECT_EQ(parse("2008/01/15 1:2:3 4 5 p", 0), jan15(1, 2, 3));
  EXPECT_EQ(parse("2008/01/15 1:2:3 4 5 6 p", 0), jan15(1, 2, 3));
}

TEST(DateText, UnreadableDates) {
  // A leading separator leaves the first group, here the year, empty.
  EXPECT_EQ(parse(" 2008/01/15", 0), (Parsed{0, 2000, 2008, 1, 15, 0, 0}));
  EXPECT_EQ(parse(" 20080115", 0), (Parsed{0, 2000, 0, 0, 20, 8, 1}));
  EXPECT_EQ(parse("", 0), (Parsed{0, 2000, 0, 0, 0, 0, 0}));
  EXPECT_EQ(parse("n/a", 0).valid, 0);
  EXPECT_EQ(parse("\xff\xfe\xe4", 1).valid, 0);
  EXPECT_EQ(qvDateStrToDate("n/a", 0), 0.0);
  EXPECT_EQ(qvDateStrToDate("2008/01/15 18:00", 0), kJan15 + 0.75);
  EXPECT_EQ(qvDateStrValidate("2008/01/15", 0), 1);
  EXPECT_EQ(qvDateStrValidate("2008/13/15", 0), 0);
  EXPECT_EQ(qvDateStrToYMD("2008/01/15", 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(parse(nullptr, 0), Parsed{-1});
  EXPECT_EQ(qvDateStrValidate(nullptr, 0), -1);
  EXPECT_EQ(qvDateStrToDate(nullptr, 0), 0.0);
  const std::string digits(100000, '9'), letters(100000, 'p');
  for (const int order : {0, 1, 2}) {
    EXPECT_EQ(qvDateStrValidate(digits.c_str(), order), 0);
    EXPECT_EQ(qvDateStrValidate(letters.c_str(), order), 0);
  }
}

TEST(DateText, TwoDigitYearsFollowTheCutoff) {
  EXPECT_EQ(parse("19/12/31", 0).year, 2019);
  EXPECT_EQ(parse("20/12/31", 0).year, 1920);
  qvSet2DigitYearCutoff(50);
  EXPECT_EQ(parse("20/12/31", 0).year, 2020);
  qvSet2DigitYearCutoff(20);
}

TEST(TimeText, Fields) {
  EXPECT_EQ(parseTime("9:30"), (Parsed{1, 0, 0, 0, 9, 30, 0}));
  EXPECT_EQ(parseTime("9::30"), (Parsed{1, 0, 0, 0, 9, 0, 30}));
  EXPECT_EQ(parseTime("2:15 pm"), (Parsed{1, 0, 0, 0, 14, 15, 0}));
  EXPECT_EQ(parseTime("093000"), (Parsed{1, 0, 0, 0, 9, 30, 0}));
  EXPECT_EQ(parseTime("930"), (Parsed{0, 0, 0, 0, 93, 0, 0}));
  EXPECT_EQ(parseTime("at 23:59:59.75"), (Parsed{1, 0, 0, 0, 23, 59, 59}));
  EXPECT_EQ(parseTime("09:30:15:45"), (Parsed{1, 0, 0, 0, 9, 30, 15}));
  EXPECT_EQ(parseTime("p 2"), (Parsed{1, 0, 0, 0, 14, 0, 0}));
  EXPECT_EQ(parseTime("12:05 PM"), (Parsed{1, 0, 0, 0, 12, 5, 0}));
  EXPECT_EQ(parseTime("noon"), (Parsed{1, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(parseTime(""), (Parsed{1, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(parseTime("24:00"), (Parsed{0, 0, 0, 0, 24, 0, 0}));
  EXPECT_EQ(qvTimeStrToTime("6:00 pm"), 0.75);
  EXPECT_EQ(qvTimeStrToTime("24:00"), 0.0);
  EXPECT_EQ(qvTimeStrToHMS("9:30", nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(parseTime(nullptr).valid, -1);
  EXPECT_EQ(qvTimeStrToTime(nullptr), 0.0);
}

TEST(FormatDate, Fields) {
  EXPECT_EQ(format(2.75, "yyyy/mm/dd hh:nn:ss"), "1900/01/01 18:00:00");
  EXPECT_EQ(format(2.75, "m/d/yy h:nn AM/PM"), "1/1/00 6:00 PM");
  EXPECT_EQ(format(2.75, "hh:mm"), "18:00");
  EXPECT_EQ(format(kJan15, "YYYYMMDD"), "20080115");
  EXPECT_EQ(format(kJan15, "d.m.y"), "15.1.08");
  EXPECT_EQ(format(kJan15, "yyy yyyyy YyYy"), "08 08 2008");
  EXPECT_EQ(format(kJan15, "DDDD-M"), "15-1");
  EXPECT_EQ(format(kJan15, "[Z z 1%s%n]"), "[Z z 1%0%0]");  // letters are fields wherever they stand
  EXPECT_EQ(format(kJan15, ""), "");
  // 3:07:09 on 5 November 2008 (3 * 3600 + 7 * 60 + 8.5 seconds).
  const double morning = kJan15 + 295 + 11228.5 / 86400;
  EXPECT_EQ(format(morning, "h:n:s hh:nn:ss"), "3:7:9 03:07:09");
  EXPECT_EQ(format(morning, "m h d m m n m"), "11 3 5 7 11 7 11");  // minute once after the hour
  EXPECT_EQ(format(morning, "hn m"), "37 11");
}

TEST(FormatDate, Markers) {
  const double midnight = kJan15, morning = kJan15 + 0.25, noon = kJan15 + 0.5, evening = kJan15 + 0.75;
  EXPECT_EQ(format(midnight, "h a/p"), "12 a");
  EXPECT_EQ(format(morning, "hh am/pm"), "06 am");
  EXPECT_EQ(format(noon, "h A/P"), "12 P");
  EXPECT_EQ(format(evening, "am/pm h:nn"), "pm 6:00");
  EXPECT_EQ(format(evening, "A/pm h"), "p1 6");  // three characters are the marker, the M a month
  // A marker that the end of the picture cuts short writes what is there.
  EXPECT_EQ(format(morning, "h AM"), "6 AM");
  EXPECT_EQ(format(evening, "h AM"), "6 ");
  EXPECT_EQ(format(evening, "h AM/P"), "6 P");
  EXPECT_EQ(format(morning, "h A"), "6 A");
  EXPECT_EQ(format(evening, "h A/"), "6 ");
}

TEST(FormatDate, EveryDateFitsItsPicture) {
  for (const double d : {1e9, -1e6, 1e300, -1e300, kInf, -kInf, kNaN, 2 + 86399.5 / 86400})
    EXPECT_EQ(format(d, "yyyy/mm/dd hh:nn:ss").size(), 19u) << d;
  EXPECT_EQ(format(1e300, "yyyy"), "9999");
  EXPECT_EQ(format(-1e300, "yyyy yy"), "0000 00");
  EXPECT_EQ(format(kNaN, "yyyy/mm/dd"), "1899/12/30");
  EXPECT_EQ(format(2 + 86399.5 / 86400, "hh:nn:ss"), "24:00:00");
  char out[4] = "abc";
  EXPECT_EQ(qvFormatDate(2.0, nullptr, out), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(qvFormatDate(2.0, "d", nullptr), -1);
}

TEST(FormatDate, DefaultFormatPicksThePictures) {
  using qv::dates::Picture, qv::dates::defaultPicture;
  EXPECT_STREQ(defaultPicture(Picture::Date), "yyyy/mm/dd");
  EXPECT_STREQ(defaultPicture(Picture::ShortYearTime), "yy/mm/dd hh:nn:ss");
  qvSetDefaultDateFormat(3);
  qvSetDefaultDateFormat(-1);
  EXPECT_STREQ(defaultPicture(Picture::LongYearTime), "yyyy/mm/dd hh:nn:ss");
  qvSetDefaultDateFormat(1);
  EXPECT_STREQ(defaultPicture(Picture::ShortYearTime), "mm/dd/yy hh:nn:ss");
  qvSetDefaultDateFormat(2);
  EXPECT_STREQ(defaultPicture(Picture::Date), "dd/mm/yyyy");
  qvSetDefaultDateFormat(0);
}

TEST(FormatDate, WhatIsPrintedIsReadBack) {
  const char* const pictures[][3] = {{"yyyy/mm/dd", "yyyymmdd", "yyyy-m-d"},
                                     {"mm/dd/yyyy", "mmddyyyy", "m.d.yyyy"},
                                     {"dd/mm/yyyy", "ddmmyyyy", "d m yyyy"}};
  for (double d = qvYMDtoDate(1600, 1, 1, 0, 0, 0); d < 150000; d += 13)
    for (int order = 0; order < 3; ++order)
      for (const char* picture : pictures[order])
        ASSERT_EQ(qvDateStrToDate(format(d, picture).c_str(), order), d) << picture;
}

TEST(DateText, RandomTextIsAnswered) {
  const std::string alphabet = "0123456789pPaAjJanyYmMdDhHsS/:.- %";
  std::mt19937 random(7);
  char out[200];
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto n = random() % 24; n > 0; --n) text += alphabet[random() % alphabet.size()];
    const Parsed p = parse(text.c_str(), i % 3), t = parseTime(text.c_str());
    ASSERT_EQ(p.valid, qvDateValidate(p.year, p.month, p.day, p.hour, p.minute, p.second)) << text;
    ASSERT_EQ(t.valid, t.hour < 24 && t.minute < 60 && t.second < 60) << text;
    ASSERT_LE(qvFormatDate(kJan15 + 0.75, text.c_str(), out), static_cast<int>(2 * text.size())) << text;
  }
}
