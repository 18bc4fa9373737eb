// The date number and the proleptic Gregorian calendar: building, splitting, validating and
// comparing date numbers.
#include "dates/calendar.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>

#include "core/characters.h"
#include "core/numbers.h"
#include "qvlib60/dates.h"

namespace {

using namespace qv::dates;

std::atomic<int> twoDigitYearCutoff{20};

// Days from 31 December of year 0 to day 0.
constexpr int kDaysToDayZero = 693594;

// Days of a common year before the month 1..12.
constexpr int kDaysBefore[] = {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
constexpr int kDaysIn[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

// Year, month and day from here on are in full: years have been widened.

bool isLeap(int year) noexcept {
  return year % 400 == 0 || (year % 100 != 0 && year % 4 == 0);
}

// Date number of 31 December.
std::int64_t yearEnd(int year) noexcept {
  return std::int64_t{year} * 365 + year / 4 - year / 100 + year / 400 - kDaysToDayZero;
}

struct CalendarDay {
  int year, month, day;
};

// The day of a whole date number, in closed form over cycles of 400 years that begin on 1 March, so
// that any number costs the same. A not-a-number is day 0; years saturate.
CalendarDay dayOf(double whole) noexcept {
  constexpr std::int64_t kFarthest = 1'000'000'000'000'000;
  constexpr std::int64_t kDaysPerCycle = 146097;
  constexpr std::int64_t kFirstOfMarchYear0 = -693899;
  const std::int64_t n = std::clamp(qv::truncatedInt64(whole), -kFarthest, kFarthest) - kFirstOfMarchYear0;
  const std::int64_t cycle = (n >= 0 ? n : n - (kDaysPerCycle - 1)) / kDaysPerCycle;
  const int dayOfCycle = static_cast<int>(n - cycle * kDaysPerCycle);
  const int yearOfCycle = (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  const int dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const int monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  return {qv::saturate(cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0)), month,
          dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

// Seconds since midnight, rounded up to the next whole second: a second that was stored is that second
// again, and the last instant of a day is 24:00:00.
int secondsOf(double date) noexcept {
  return qv::truncatedInt(std::ceil(secondsOfDay(date) - kSecondTolerance));
}

bool isTime(int hour, int minute, int second) noexcept {
  return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
}

}  // namespace

int qv::dates::widenedYear(int year) noexcept {
  if (year >= 100) return year;
  return year < twoDigitYearCutoff.load(std::memory_order_relaxed) ? year + 2000 : year + 1900;
}

double qv::dates::secondsOfDay(double date) noexcept {
  double whole;
  return std::fabs(std::modf(date, &whole)) * kSecondsPerDay;
}

extern "C" {

double QVCALL qvYMDtoDate(int year, int month, int day, int hour, int minute, int second) noexcept {
  if (!qvDateValidate(year, month, day, hour, minute, second)) return 0.0;
  std::int64_t days = 0;
  if (month != 0) {  // not a time of day alone
    const int full = widenedYear(year);
    days = yearEnd(full - 1) + kDaysBefore[month] + day;
    if (month >= 3 && isLeap(full)) ++days;
  }
  const double time = static_cast<double>(hour * 3600 + minute * 60 + second) / kSecondsPerDay;
  return withTime(static_cast<double>(days), time);
}

void QVCALL qvDateToYMD(double date, int* year, int* month, int* day, int* hour, int* minute,
                        int* second) noexcept {
  if (hour || minute || second) {
    const int seconds = secondsOf(date);
    if (hour) *hour = seconds / 3600;
    if (minute) *minute = seconds / 60 % 60;
    if (second) *second = seconds % 60;
  }
  if (year || month || day) {
    const CalendarDay d = dayOf(std::trunc(date));
    if (year) *year = d.year;
    if (month) *month = d.month;
    if (day) *day = d.day;
  }
}

double QVCALL qvNumToDate(int yyyymmdd) noexcept {
  int year = yyyymmdd / 10000;
  const int month = yyyymmdd % 10000 / 100;
  const int day = yyyymmdd - year * 10000 - month * 100;
  if (year >= 100 && year <= 1899) year += 1900;
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

double QVCALL qvNumToTime(int hhmmss) noexcept {
  const int hour = hhmmss / 10000;
  const int minute = hhmmss % 10000 / 100;
  return qvYMDtoDate(0, 0, 0, hour, minute, hhmmss - hour * 10000 - minute * 100);
}

int QVCALL qvDatePart(const char* part, double date) noexcept {
  if (!part) return QV_INVALID_PARM;
  int value = 0;
  switch (qv::upperCase(*part)) {
    case 'Y':
      qvDateToYMD(date, &value, nullptr, nullptr, nullptr, nullptr, nullptr);
      break;
    case 'M':
      qvDateToYMD(date, nullptr, &value, nullptr, nullptr, nullptr, nullptr);
      break;
    case 'D':
      qvDateToYMD(date, nullptr, nullptr, &value, nullptr, nullptr, nullptr);
      break;
    case 'H':
      qvDateToYMD(date, nullptr, nullptr, nullptr, &value, nullptr, nullptr);
      break;
    case 'N':
      qvDateToYMD(date, nullptr, nullptr, nullptr, nullptr, &value, nullptr);
      break;
    case 'S':
      qvDateToYMD(date, nullptr, nullptr, nullptr, nullptr, nullptr, &value);
      break;
    default:
      break;
  }
  return value;
}

int QVCALL qvDateDiff(const char* part, double date1, double date2) noexcept {
  if (!part) return QV_INVALID_PARM;
  switch (qv::upperCase(*part)) {
    case 'D':
      return qv::truncatedInt(std::trunc(date2) - std::trunc(date1));
    case 'S':
      return secondsOf(date2) - secondsOf(date1);
    default:
      return 0;
  }
}

int QVCALL qvDayOfWeek(double date) noexcept {
  const int remainder = static_cast<int>(qv::truncatedInt64(date + (kDaysToDayZero - 1)) % 7);
  return remainder < 0 ? remainder + 7 : remainder;  // before year 1
}

int QVCALL qvIsLeapYear(int year) noexcept {
  return isLeap(widenedYear(year)) ? 1 : 0;
}

double QVCALL qvYearToDays(int year) noexcept {
  return static_cast<double>(yearEnd(widenedYear(year)));
}

int QVCALL qvDateValidate(int year, int month, int day, int hour, int minute, int second) noexcept {
  if (!isTime(hour, minute, second)) return 0;
  if (year == 0 && month == 0 && day == 0) return 1;  // a bare time of day
  if (month < 1 || month > 12 || day < 1) return 0;
  return day <= kDaysIn[month] || (month == 2 && day == 29 && qvIsLeapYear(year)) ? 1 : 0;
}

void QVCALL qvSet2DigitYearCutoff(int cutoff) noexcept {
  if (cutoff >= 0 && cutoff <= 99) twoDigitYearCutoff.store(cutoff, std::memory_order_relaxed);
}

}  // extern "C"
