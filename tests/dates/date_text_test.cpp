// Dates and times read from texts.
#include <gtest/gtest.h>

#include <climits>

#include "support/dates.h"

using namespace qvtest;

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
