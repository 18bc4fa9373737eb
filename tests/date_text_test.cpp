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

std::string format(double date, const std::string& picture) {
  char out[64];
  const int length = qvFormatDate(date, picture.c_str(), out);
  EXPECT_EQ(length, static_cast<int>(std::string(out).size()));
  return out;
}

constexpr double kJan15 = 39462.0;  // 15 January 2008

}  // namespace

TEST(DateText, DatesInAllForms) {
  const std::pair<const char*, int> dates[] = {
      {"2008/01/15", 0},       {"01/15/2008", 1},      {"15/01/2008", 2},
      {"8-1-15", 0},           {"1.15.08", 1},         {"15jan2008", 2},
      {"15-Jan-2008", 2},      {"JANUARY 15 2008", 1}, {"JAN 15, 2008", 1},
      {"20080115", 0},         {"080115", 0},          {"01152008", 1},
      {"011508", 1},           {"15012008", 2},        {"2008/01/15", 3},
      {"2008/01/15", INT_MIN},  // unknown orders count as 0
      {"200801159999", 0},      // characters after the eighth are dropped
      {"20080115 PM", 0}};      // a time without digits; its seconds hold no marker
  for (const auto& [text, order] : dates) EXPECT_EQ(parse(text, order), jan15()) << text;
  EXPECT_EQ(parse("15-Dec-2008", 2).month, 12);
  EXPECT_EQ(parse("15-Ja-2008", 2).valid, 0);
  EXPECT_EQ(parse("15-Jxn-2008", 2).valid, 0);
  EXPECT_EQ(parse("2008/02/30", 0), (Parsed{0, 2008, 2, 30, 0, 0, 0}));
  EXPECT_EQ(parse("2008011", 0), (Parsed{1, 2008, 1, 1, 0, 0, 0}));
}

TEST(DateText, TimesAfterDates) {
  const std::pair<const char*, Parsed> times[] = {
      {"20080115 093000", jan15(9, 30)},
      {"080115 2359", jan15(23, 59)},
      {"2008/01/15 10:30 PM", jan15(22, 30)},
      {"2008/01/15 12:30 AM", jan15(12, 30)},
      {"2008/01/15 12:30 PM", jan15(12, 30)},
      {"2008/01/15 10:30:59", jan15(10, 30, 59)},
      {"2008/01/15 10:30:59pm", jan15(22, 30, 59)},
      {"2008/01/15 p", jan15(12)},  // the marker is the hour group itself
      {"2008/01/15 25:00", {0, 2008, 1, 15, 25, 0, 0}},
      // Eight groups have a last one; of a text with nine there is none to look at.
      {"2008/01/15 1:2:3 4 p", jan15(13, 2, 3)},
      {"2008/01/15 1:2:3 4 5 p", jan15(1, 2, 3)},
      {"2008/01/15 1:2:3 4 5 6 p", jan15(1, 2, 3)}};
  for (const auto& [text, parsed] : times) EXPECT_EQ(parse(text, 0), parsed) << text;
}

TEST(DateText, UnreadableDates) {
  // A leading separator leaves the first group, here the year, empty.
  EXPECT_EQ(parse(" 2008/01/15", 0), (Parsed{0, 2000, 2008, 1, 15, 0, 0}));
  EXPECT_EQ(parse(" 20080115", 0), (Parsed{0, 2000, 0, 0, 20, 8, 1}));
  EXPECT_EQ(parse("", 0), (Parsed{0, 2000, 0, 0, 0, 0, 0}));
  EXPECT_EQ(qvDateStrToDate("n/a", 0), 0.0);
  EXPECT_EQ(qvDateStrToDate("2008/01/15 18:00", 0), kJan15 + 0.75);
  EXPECT_EQ(qvDateStrValidate("2008/01/15", 0), 1);
  EXPECT_EQ(qvDateStrToYMD("2008/01/15", 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(parse(nullptr, 0), Parsed{-1});
  EXPECT_EQ(qvDateStrValidate(nullptr, 0), -1);
  EXPECT_EQ(qvDateStrToDate(nullptr, 0), 0.0);
  // The third of three groups of a date and a time has no compact form.
  for (const std::string& text : {std::string(100000, '9'), std::string(100000, 'p'), std::string("n/a"),
                                  std::string("\xff\xfe\xe4"), std::string("20080115T0930")})
    for (const int order : {0, 1, 2}) EXPECT_EQ(qvDateStrValidate(text.c_str(), order), 0);
}

TEST(DateText, TwoDigitYearsFollowTheCutoff) {
  EXPECT_EQ(parse("19/12/31", 0).year, 2019);
  EXPECT_EQ(parse("20/12/31", 0).year, 1920);
  qvSet2DigitYearCutoff(50);
  EXPECT_EQ(parse("20/12/31", 0).year, 2020);
  qvSet2DigitYearCutoff(20);
}

TEST(TimeText, Fields) {
  const struct {
    const char* text;
    int valid, hour, minute, second;
  } times[] = {{"9:30", 1, 9, 30, 0},     {"9::30", 1, 9, 0, 30}, {"2:15 pm", 1, 14, 15, 0},
               {"093000", 1, 9, 30, 0},   {"930", 0, 93, 0, 0},   {"at 23:59:59.75", 1, 23, 59, 59},
               {"p 2", 1, 14, 0, 0},      {"noon", 1, 0, 0, 0},   {"09:30:15:45", 1, 9, 30, 15},
               {"12:05 PM", 1, 12, 5, 0}, {"24:00", 0, 24, 0, 0}, {"", 1, 0, 0, 0}};
  for (const auto& t : times)
    EXPECT_EQ(parseTime(t.text), (Parsed{t.valid, 0, 0, 0, t.hour, t.minute, t.second})) << t.text;
  EXPECT_EQ(qvTimeStrToTime("6:00 pm"), 0.75);
  EXPECT_EQ(qvTimeStrToTime("24:00"), 0.0);
  EXPECT_EQ(qvTimeStrToHMS("9:30", nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(parseTime(nullptr).valid, -1);
  EXPECT_EQ(qvTimeStrToTime(nullptr), 0.0);
}

TEST(FormatDate, FieldsAndMarkers) {
  // 3:07:09 on 5 November 2008 (3 * 3600 + 7 * 60 + 8.5 seconds).
  const double november = kJan15 + 295 + 11228.5 / 86400;
  const double morning = kJan15 + 0.25, evening = kJan15 + 0.75;
  const struct {
    double date;
    std::string picture, text;
  } cases[] = {
      {2.75, "yyyy/mm/dd hh:nn:ss", "1900/01/01 18:00:00"},
      {2.75, "m/d/yy h:nn AM/PM", "1/1/00 6:00 PM"},
      {2.75, "hh:mm", "18:00"},
      {kJan15, "YYYYMMDD", "20080115"},
      {kJan15, "d.m.y", "15.1.08"},
      {kJan15, "yyy yyyyy YyYy", "08 08 2008"},
      {kJan15, "DDDD-M", "15-1"},
      {kJan15, "[Z z 1%s%n]", "[Z z 1%0%0]"},  // letters are fields wherever they stand
      {kJan15, "", ""},
      {november, "h:n:s hh:nn:ss", "3:7:9 03:07:09"},
      {november, "m h d m m n m", "11 3 5 7 11 7 11"},  // minute once after the hour
      {november, "hn m", "37 11"},
      {kJan15, "h a/p", "12 a"},
      {morning, "hh am/pm", "06 am"},
      {kJan15 + 0.5, "h A/P", "12 P"},
      {evening, "am/pm h:nn", "pm 6:00"},
      {evening, "A/pm h", "p1 6"},  // three characters are the marker, the M a month
      // A marker that the end of the picture cuts short writes what is there.
      {morning, "h AM", "6 AM"},
      {evening, "h AM", "6 "},
      {evening, "h AM/P", "6 P"},
      {morning, "h A", "6 A"},
      {evening, "h A/", "6 "},
  };
  for (const auto& c : cases) EXPECT_EQ(format(c.date, c.picture), c.text) << c.picture;
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
