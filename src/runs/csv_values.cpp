#include "runs/csv_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "core/characters.h"

namespace qv::runs {

namespace {

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

bool sameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return upperCase(x) == upperCase(y); });
}

bool take(std::string_view& s, std::string_view start) {
  if (!s.starts_with(start)) return false;
  s.remove_prefix(start.size());
  return true;
}

// Signs around a number that are not part of it: "$ 1,234.50", "EUR" is none.
struct Amount {
  std::string_view digits;
  double times = 1.0;
  bool negative = false;
};

Amount amountOf(std::string_view cell) {
  constexpr std::string_view kCurrencies[] = {"$", "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5"};
  Amount a{trimmed(cell)};
  if (take(a.digits, "-")) {
    a.negative = true;
  } else {
    take(a.digits, "+");
  }
  for (const std::string_view sign : kCurrencies)
    if (take(a.digits, sign)) break;
  a.digits = trimmed(a.digits);
  if (!a.negative && take(a.digits, "-")) a.negative = true;
  if (a.digits.empty()) return a;
  constexpr std::string_view kSuffixes = "KMBT";
  const auto suffix = kSuffixes.find(upperCase(a.digits.back()));
  if (suffix != std::string_view::npos) {
    for (std::size_t i = 0; i <= suffix; ++i) a.times *= 1000.0;
    a.digits = trimmed(a.digits.substr(0, a.digits.size() - 1));
  }
  return a;
}

// What most cells are: digits with a point or without, few enough that both the number without its point and
// the power of ten are exact, so that their quotient is the nearest double.
bool readPlain(std::string_view cell, double& value) {
  constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  if (cell.empty() || cell.size() > 16 || !isDigit(cell.front())) return false;
  std::int64_t digits = 0;
  std::size_t point = cell.size() - 1;
  for (std::size_t i = 0; i < cell.size(); ++i) {
    if (isDigit(cell[i])) {
      digits = digits * 10 + (cell[i] - '0');
    } else if (cell[i] == '.' && point == cell.size() - 1) {
      point = i;
    } else {
      return false;
    }
  }
  if (digits > (std::int64_t{1} << 53)) return false;
  value = static_cast<double>(digits) / kPowers[cell.size() - 1 - point];
  return true;
}

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

bool isMissing(std::string_view cell) {
  constexpr std::string_view kWords[] = {"null", "n/a", "na", "#n/a", "nan", "none", "-", "--", "."};
  cell = trimmed(cell);
  return cell.empty() || std::any_of(std::begin(kWords), std::end(kWords),
                                     [&](std::string_view word) { return sameWord(cell, word); });
}

Sign decimalSignOf(std::string_view cell) {
  const bool isPlain = !cell.empty() && isDigit(cell.front()) && isDigit(cell.back());
  const std::string_view s = isPlain ? cell : amountOf(cell).digits;
  std::size_t points = 0, commas = 0, last = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '.') ++points, last = i;
    if (s[i] == ',') ++commas, last = i;
  }
  if (points + commas == 0) return Sign::None;
  const bool comma = s[last] == ',';
  if (points && commas) return comma ? Sign::Comma : Sign::Point;
  // Several of one kind stand between thousands, so the other one is the decimal sign.
  if (points + commas > 1) return comma ? Sign::Point : Sign::Comma;
  const bool thousands = s.size() - last == 4 && last >= 1 && last <= 3 && s[0] != '0';
  if (thousands) return comma ? Sign::EitherComma : Sign::EitherPoint;
  return comma ? Sign::Comma : Sign::Point;
}

bool readNumber(std::string_view cell, bool decimalComma, double& value) {
  if (!decimalComma && readPlain(cell, value)) return true;
  const Amount a = amountOf(cell);
  const char point = decimalComma ? ',' : '.', between = decimalComma ? '.' : ',';
  if (a.digits.empty() || a.digits.size() > 60) return false;
  char plain[64];
  char* end = plain;
  std::size_t group = 0, groups = 0;  // digits since the sign before, signs so far
  bool fraction = false;
  for (std::size_t i = 0; i < a.digits.size(); ++i) {
    const char c = a.digits[i];
    if (isDigit(c)) {
      ++group;
      *end++ = c;
    } else if (c == between && !fraction) {
      if (groups ? group != 3 : group < 1 || group > 3) return false;
      ++groups;
      group = 0;
    } else if (c == point && !fraction) {
      if (groups && group != 3) return false;
      fraction = true;
      group = 0;
      *end++ = '.';
    } else if ((c == 'e' || c == 'E') && !groups && end > plain) {
      if (a.digits.size() - i > 5) return false;
      end = std::copy(a.digits.begin() + static_cast<std::ptrdiff_t>(i), a.digits.end(), end);
      fraction = true;
      break;
    } else {
      return false;
    }
  }
  if (groups && !fraction && group != 3) return false;
  const char* from = plain;
  const std::from_chars_result result = std::from_chars(from, end, value);
  if (result.ec != std::errc() || result.ptr != end) return false;
  value *= a.negative ? -a.times : a.times;
  return std::isfinite(value);
}

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
