// Dates and times as data sites write them.
#include <charconv>

#include "core/characters.h"
#include "runs/csv_values.h"
#include "runs/words.h"

namespace qv::runs {

namespace {

// Takes a run of digits, at most nine; answers how many.
int takeDigits(std::string_view& s, int& value) {
  int count = 0;
  value = 0;
  while (!s.empty() && isDigit(s.front()) && count < 9) {
    value = value * 10 + (s.front() - '0');
    s.remove_prefix(1);
    ++count;
  }
  return count;
}

int takeMonth(std::string_view& s) {
  constexpr std::string_view kMonths[] = {"January",   "February", "March",    "April",
                                          "May",       "June",     "July",     "August",
                                          "September", "October",  "November", "December"};
  std::size_t letters = 0;
  while (letters < s.size() && isLetter(s[letters])) ++letters;
  for (int m = 0; m < 12; ++m) {
    const std::string_view name = kMonths[m];
    const bool abbreviated = letters == 3 || (m == 8 && letters == 4);
    if (!sameWord(s.substr(0, letters), abbreviated ? name.substr(0, letters) : name)) continue;
    s.remove_prefix(letters);
    take(s, ".");
    return m + 1;
  }
  return 0;
}

void takeWeekday(std::string_view& s) {
  constexpr std::string_view kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                        "Thursday", "Friday", "Saturday"};
  std::size_t letters = 0;
  while (letters < s.size() && isLetter(s[letters])) ++letters;
  for (const std::string_view day : kDays) {
    if (!sameWord(s.substr(0, letters), day) && !sameWord(s.substr(0, letters), day.substr(0, 3))) continue;
    s.remove_prefix(letters);
    while (!s.empty() && (s.front() == ' ' || s.front() == ',' || s.front() == '.')) s.remove_prefix(1);
    return;
  }
}

void takeSeparators(std::string_view& s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '-' || s.front() == '/' || s.front() == ','))
    s.remove_prefix(1);
}

// "3 Jan 2020", "03-Jan-20", "Jan 3, 2020".
bool takeNamedDate(std::string_view& s, DateParts& parts) {
  std::string_view rest = s;
  takeWeekday(rest);
  int day = 0, year = 0, month = takeMonth(rest);
  takeSeparators(rest);
  if (!takeDigits(rest, day)) return false;
  takeSeparators(rest);
  if (!month) {
    month = takeMonth(rest);
    takeSeparators(rest);
  }
  if (!month) return false;
  const int digits = takeDigits(rest, year);
  if (digits != 4 && digits != 2) return false;
  parts.part = {year, month, day};
  parts.settled = true;
  s = rest;
  return true;
}

// "2020-01-03", "20200103", "1/3/2020", "3.1.20".
bool takeNumericDate(std::string_view& s, DateParts& parts) {
  std::string_view rest = s;
  int digits = takeDigits(rest, parts.part[0]);
  if (digits == 8) {
    parts.part = {parts.part[0] / 10000, parts.part[0] / 100 % 100, parts.part[0] % 100};
    parts.settled = true;
    s = rest;
    return true;
  }
  if (digits != 4 && digits != 1 && digits != 2) return false;
  parts.settled = digits == 4;
  if (rest.empty()) return false;
  const char separator = rest.front();
  if (separator != '-' && separator != '/' && separator != '.') return false;
  rest.remove_prefix(1);
  digits = takeDigits(rest, parts.part[1]);
  if (digits < 1 || digits > 2 || rest.empty() || rest.front() != separator) return false;
  rest.remove_prefix(1);
  digits = takeDigits(rest, parts.part[2]);
  parts.fourDigitYear = !parts.settled && digits == 4;
  if (digits != 1 && digits != 2 && !parts.fourDigitYear) return false;
  s = rest;
  return true;
}

// Behind the time: a zone ("Z", "+01:00", "-0500", "UTC", "EST", "GMT-0500"), or nothing.
bool isZone(std::string_view s) {
  s = trimmed(s);
  for (int letters = 0; !s.empty() && isLetter(s.front()); ++letters) {
    if (letters == 4) return false;
    s.remove_prefix(1);
  }
  if (s.empty()) return true;
  if (s.front() != '+' && s.front() != '-') return false;
  s.remove_prefix(1);
  int number;
  const int hours = takeDigits(s, number);
  if (hours == 2 && take(s, ":")) return takeDigits(s, number) == 2 && s.empty();
  return (hours == 2 || hours == 4) && s.empty();
}

}  // namespace

bool readTime(std::string_view cell, double& time) {
  std::string_view s = trimmed(cell);
  int hour, minute = 0, second = 0;
  const int digits = takeDigits(s, hour);
  if (digits == 4 || digits == 6) {  // hhmm, hhmmss
    if (digits == 6) second = hour % 100, hour /= 100;
    minute = hour % 100;
    hour /= 100;
  } else {
    if (digits < 1 || digits > 2 || !take(s, ":") || takeDigits(s, minute) != 2) return false;
    if (take(s, ":") && takeDigits(s, second) != 2) return false;
    if (take(s, ".")) {
      int fraction;
      if (!takeDigits(s, fraction)) return false;
    }
  }
  s = trimmed(s);
  const bool pm = sameWord(s.substr(0, 2), "PM"), am = sameWord(s.substr(0, 2), "AM");
  if (am || pm) {
    if (hour < 1 || hour > 12) return false;
    hour = hour % 12 + (pm ? 12 : 0);
    s.remove_prefix(2);
  }
  if (hour > 23 || minute > 59 || second > 59 || !isZone(s)) return false;
  time = (hour * 3600 + minute * 60 + second) / 86400.0;
  return true;
}

bool readDate(std::string_view cell, DateParts& parts) {
  parts = {};
  std::string_view s = trimmed(cell);
  if (!takeNumericDate(s, parts) && !takeNamedDate(s, parts)) return false;
  if (s.empty()) return true;
  if (s.front() != ' ' && s.front() != 'T' && s.front() != ',')
    return (s.front() == 'Z' || !isLetter(s.front())) && isZone(s);
  s.remove_prefix(1);
  s = trimmed(s);
  parts.hasTime = readTime(s, parts.time);
  return parts.hasTime || isZone(s);
}

namespace {

// Year, month and day of the parts in an order. Two digits are the years 1970 to 2069, whatever the cutoff of
// the library's parsers is.
std::array<int, 3> ordered(const DateParts& p, DateOrder order) {
  std::array<int, 3> date = p.part;
  if (!p.settled && order == DateOrder::DayFirst) date = {p.part[2], p.part[1], p.part[0]};
  if (!p.settled && order == DateOrder::MonthFirst) date = {p.part[2], p.part[0], p.part[1]};
  if (date[0] < 100) date[0] += date[0] < 70 ? 2000 : 1900;
  return date;
}

}  // namespace

bool fits(const DateParts& parts, DateOrder order) {
  if (!parts.settled && parts.fourDigitYear && order == DateOrder::YearFirst) return false;
  const auto [year, month, day] = ordered(parts, order);
  return qvDateValidate(year, month, day, 0, 0, 0) != 0;
}

double dateOf(const DateParts& parts, DateOrder order) {
  if (!parts.settled && parts.fourDigitYear && order == DateOrder::YearFirst) return 0.0;
  const auto [year, month, day] = ordered(parts, order);
  const double date = qvYMDtoDate(year, month, day, 0, 0, 0);
  // Before day 0 the time of day is subtracted.
  return date < 0.0 ? date - parts.time : date == 0.0 ? 0.0 : date + parts.time;
}

bool readEpoch(std::string_view cell, double& date) {
  cell = trimmed(cell);
  long long number;
  const auto result = std::from_chars(cell.data(), cell.data() + cell.size(), number);
  if (result.ec != std::errc() || result.ptr != cell.data() + cell.size()) return false;
  if (cell.size() == 13) number /= 1000;
  if (cell.size() != 13 && cell.size() != 10) return false;
  const long long days = number / 86400, seconds = number % 86400;
  date = 25569.0 + static_cast<double>(days) + static_cast<double>(seconds) / 86400.0;
  return true;
}

}  // namespace qv::runs
