// Calendar steps that are shared beyond the date functions.
#pragma once

namespace qv::dates {

inline constexpr int kSecondsPerDay = 86400;

// Few whole seconds are binary fractions of a day: a stored one reads as about a millionth of a second more
// or less. Times this near to a whole second count as that second.
inline constexpr double kSecondTolerance = 0.0001;

// The time of day in seconds, as it reads.
double secondsOfDay(double date) noexcept;

// A day with a time of day, which before day 0 is subtracted.
constexpr double withTime(double day, double time) noexcept {
  return day >= 0.0 ? day + time : day - time;
}

// The two-digit-year rule: below the cutoff (negative years too) + 2000, else below 100 + 1900;
// other years as they are.
int widenedYear(int year) noexcept;

}  // namespace qv::dates
