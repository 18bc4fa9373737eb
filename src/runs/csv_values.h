// Numbers and dates as data sites write them.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "runs/load.h"

namespace qv::runs {

// "null", "N/A", "-", nothing: a value that is not there.
bool isMissing(std::string_view cell);

// ---- Numbers ---------------------------------------------------------------------------------------

// What a cell tells about the signs in its number. One that goes either way, as "1,234" and "1.234", tells
// nothing but that it does.
enum class Sign { None, Point, Comma, EitherPoint, EitherComma };
Sign decimalSignOf(std::string_view cell);

// A number with signs between its thousands, a currency sign in front, or K, M, B, T behind. False where the
// cell holds anything else.
bool readNumber(std::string_view cell, bool decimalComma, double& value);

// ---- Dates -----------------------------------------------------------------------------------------

// The parts of a date as they are written, before it is decided which is which.
struct DateParts {
  std::array<int, 3> part = {};
  bool settled =
      false;  // the parts are year, month, day: the year has four digits and leads, or the month a name
  bool fourDigitYear = false;  // the last part is the year
  double time = 0.0;           // of day, as a fraction
  bool hasTime = false;
};
// False where the cell holds no date. A zone behind the time is left out: the time stays that of the place.
bool readDate(std::string_view cell, DateParts& parts);
bool readTime(std::string_view cell, double& time);

// Whether the order makes a date of the parts.
bool fits(const DateParts& parts, DateOrder order);
// The date number of the parts, which have to fit; 0.0 where they don't.
double dateOf(const DateParts& parts, DateOrder order);

// Seconds or milliseconds since 1970, by the number of digits. False for any other text.
bool readEpoch(std::string_view cell, double& date);

}  // namespace qv::runs
