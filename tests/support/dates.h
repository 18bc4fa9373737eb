// Dates taken apart and printed, for the tests of the calendar and of texts.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "qvlib60.h"

namespace qvtest {

inline constexpr double kJan15 = 39462.0;  // 15 January 2008

using Parts = std::vector<int>;  // year to second; parsed ones behind the answer

inline Parts split(double date) {
  Parts p(6, -9);
  qvDateToYMD(date, &p[0], &p[1], &p[2], &p[3], &p[4], &p[5]);
  return p;
}

inline Parts parse(const char* text, int format) {
  Parts p(7, -9);
  p[0] = qvDateStrToYMD(text, format, &p[1], &p[2], &p[3], &p[4], &p[5], &p[6]);
  return p;
}

inline Parts parseTime(const char* text) {
  Parts p(4, -9);
  p[0] = qvTimeStrToHMS(text, &p[1], &p[2], &p[3]);
  return p;
}

inline double dateOf(int year, int month, int day) {
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

template <typename Function, typename... Args>
std::string printed(Function print, Args... args) {
  char out[600] = "?";
  const int length = print(args..., out);
  EXPECT_EQ(length, static_cast<int>(std::strlen(out)));
  return out;
}

}  // namespace qvtest
