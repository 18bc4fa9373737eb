// Dates printed.
#include <gtest/gtest.h>

#include <random>

#include "support/dates.h"

using namespace qvtest;

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
