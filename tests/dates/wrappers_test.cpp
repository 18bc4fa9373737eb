// The wrappers with 16-bit parts.
#include <gtest/gtest.h>

#include "support/dates.h"
#include "support/expect.h"

using namespace qvtest;

TEST(DateWrappers, PartsAndDifferences) {
  using Shorts = std::vector<short>;
  Shorts p(3);
  qvJulianToYMD(-kInf, &p[0], &p[1], &p[2]);
  EXPECT_EQ(p[0], -32768);
  qvJulianToYMD(kJan15 + 0.9, &p[0], &p[1], &p[2]);
  EXPECT_EQ(p, (Shorts{2008, 1, 15}));
  qvJulianToHMS(2 + 11228.5 / 86400, &p[0], &p[1], &p[2]);
  EXPECT_EQ(p, (Shorts{3, 7, 9}));
  EXPECT_EQ((Items{qvYMDToJulian(2008, 1, 15), qvHMSToJulian(18, 0, 0), qvTimeTxtToJulian("6 pm", 77)}),
            (Items{kJan15, 0.75, 0.75}));
  EXPECT_EQ((Parts{qvJulianDOW(3.0), qvJulianDif(0.9, 2.1), qvYMDDif(2008, 2, 28, 2008, 3, 1),
                   qvHMSDif(23, 0, 0, 1, 30, 15), qvDateTxtDif("2008/01/01", "01/15/2008", 2, 4),
                   qvTimeTxtDif("9:00", "9:00 pm", 0, 0)}),
            (Parts{1, 2, 2, -77385, 14, 43200}));
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
