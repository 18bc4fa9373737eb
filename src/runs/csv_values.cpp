#include "runs/csv_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "core/characters.h"
#include "runs/words.h"

namespace qv::runs {

namespace {

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

}  // namespace qv::runs
