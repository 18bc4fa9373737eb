// The date functions with 16-bit parts and numbered text formats.
#include <gtest/gtest.h>

#include <string>

#include "core/memory.h"
#include "support/series.h"

namespace {

constexpr double kJan15 = 39462.0;  // 15 January 2008

template <typename Function>
std::string text(Function print, double date, short code, const char* separator) {
  char out[600] = "?";
  const int length = print(date, code, separator, out);
  EXPECT_EQ(length, static_cast<int>(std::string(out).size()));
  return out;
}

}  // namespace

TEST(DateWrappers, Parts) {
  EXPECT_EQ(qvYMDToJulian(2008, 1, 15), kJan15);
  EXPECT_EQ(qvYMDToJulian(2008, 13, 15), 0.0);
  EXPECT_EQ(qvHMSToJulian(18, 0, 0), 0.75);
  short a = 0, b = 0, c = 0;
  qvJulianToYMD(kJan15 + 0.9, &a, &b, &c);
  EXPECT_TRUE(a == 2008 && b == 1 && c == 15);
  qvJulianToHMS(kJan15 + 0.75, &a, &b, &c);
  EXPECT_TRUE(a == 18 && b == 0 && c == 0);
  qvJulianToYMD(1e300, &a, &b, &c);
  EXPECT_EQ(a, 32767);
  qvJulianToYMD(-qvtest::kInf, &a, &b, &c);
  EXPECT_EQ(a, -32768);
  qvJulianToYMD(2.0, &a, nullptr, &c);
  qvJulianToHMS(2.0, nullptr, &b, &c);
  EXPECT_EQ(a, -32768);
  EXPECT_EQ(qvJulianDOW(2.0), 0);
}

TEST(DateWrappers, Differences) {
  EXPECT_EQ(qvJulianDif(kJan15 + 0.9, kJan15 + 2.1), 2);
  EXPECT_EQ(qvYMDDif(2008, 2, 28, 2008, 3, 1), 2);
  EXPECT_EQ(qvHMSDif(9, 0, 0, 9, 30, 15), 1815);
  EXPECT_EQ(qvHMSDif(23, 0, 0, 1, 0, 0), -79200);
  EXPECT_EQ(qvDateTxtDif("2008/01/01", "01/15/2008", 2, 4), 14);
  EXPECT_EQ(qvTimeTxtDif("9:00", "9:00 pm", 0, 0), 43200);
  EXPECT_EQ(qvDateTxtDif(nullptr, "01/15/2008", 2, 4), -1);
  EXPECT_EQ(qvTimeTxtDif("9:00", nullptr, 0, 0), -1);
}

TEST(DateWrappers, EveryCodePrintsAndParses) {
  const char* const printed[] = {"",         "08-01-15",   "2008-01-15", "01-15-08", "01-15-2008",
                                 "15-01-08", "15-01-2008", "080115",     "20080115", "011508",
                                 "01152008", "150108",     "15012008"};
  for (short code = 1; code <= 12; ++code) {
    EXPECT_EQ(text(qvJulianToDateTxt, kJan15, code, "-"), printed[code]);
    EXPECT_EQ(qvDateTxtToJulian(printed[code], code), kJan15) << code;
    EXPECT_EQ(qvDateTxtVal(printed[code], code), 1) << code;
  }
  const short otherCodes[] = {-32768, -1, 0, 13, 32767};
  for (const short code : otherCodes) {
    EXPECT_EQ(qvDateTxtToJulian("2008/01/15", code), kJan15);
    EXPECT_EQ(text(qvJulianToDateTxt, kJan15, code, "-"), "");
    EXPECT_EQ(text(qvJulianToTimeTxt, kJan15, code, "-"), "");
  }
  EXPECT_EQ(qvDateTxtVal("15/01/2008", 4), 0);
  EXPECT_EQ(qvTimeTxtToJulian("6 pm", 77), 0.75);
  const char* const times[] = {"", "09-30-06", "09-30", "093006", "0930"};
  for (short code = 1; code <= 4; ++code)  // 9:30:06
    EXPECT_EQ(text(qvJulianToTimeTxt, kJan15 + 34205.5 / 86400, code, code < 3 ? "-" : nullptr), times[code]);
}

TEST(DateWrappers, Separators) {
  EXPECT_EQ(text(qvJulianToDateTxt, kJan15, 2, ""), "20080115");
  EXPECT_EQ(text(qvJulianToDateTxt, kJan15, 1, "%s"), "08%001%015") << "an S prints the seconds";
  const std::string separator(250, '-');
  EXPECT_EQ(text(qvJulianToDateTxt, kJan15, 1, separator.c_str()),
            "08" + separator + "01" + separator + "15");
  char out[32] = "?";
  EXPECT_EQ(qvJulianToDateTxt(kJan15, 2, nullptr, out), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(qvJulianToDateTxt(kJan15, 2, "-", nullptr), -1);
  EXPECT_EQ(qvJulianToTimeTxt(kJan15, 3, "-", nullptr), -1);
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvJulianToTimeTxt(kJan15, 1, "-", out), -3);
  qv::memory::failAllocation(0);
}
