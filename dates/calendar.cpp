// Calendar arithmetic on date numbers.
#include "qvlib60/dates.h"

extern "C" {

// Day 0 of the proleptic Gregorian calendar's count is a Monday.
int QVCALL qvDayOfWeek(double date) noexcept { return static_cast<int>(date + 693593) % 7; }

}  // extern "C"
