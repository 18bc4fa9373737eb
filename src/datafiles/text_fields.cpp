#include "datafiles/text_fields.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <limits>

namespace qv::datafiles {

namespace {

// Takes blanks and one sign off the front of a number, which std::from_chars would not all take.
// True when the sign is a minus.
bool takeSign(std::string_view& text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  if (text.empty() || (text.front() != '+' && text.front() != '-')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

bool takeHexadecimalPrefix(std::string_view& text) noexcept {
  constexpr std::string_view kFirst = "0123456789abcdefABCDEF.";
  if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return false;
  if (kFirst.find(text[2]) == kFirst.npos) return false;
  text.remove_prefix(2);
  return true;
}

// std::from_chars would take a minus sign here.
bool beginsWithMinus(std::string_view text) noexcept {
  return !text.empty() && text.front() == '-';
}

}  // namespace

double decimalValue(std::string_view text) noexcept {
  if (text.empty()) return 0.0;
  const bool negative = takeSign(text);
  const auto format = takeHexadecimalPrefix(text) ? std::chars_format::hex : std::chars_format::general;
  if (beginsWithMinus(text)) return 0.0;
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format);
  if (error == std::errc::invalid_argument) return 0.0;
  if (error == std::errc::result_out_of_range) {
    // The digits of one line stay within the range of a double: its exponent did not.
    const bool small = std::find(text.data(), end, '-') != end;
    value = small ? 0.0 : std::numeric_limits<double>::infinity();
  }
  return negative ? -value : value;
}

int integerValue(std::string_view text) noexcept {
  const bool negative = takeSign(text);
  if (beginsWithMinus(text)) return 0;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range || value > INT_MAX) return negative ? INT_MIN : INT_MAX;
  return negative ? -static_cast<int>(value) : static_cast<int>(value);
}

Columns::Columns(std::string_view delimiters) noexcept {
  for (const char c : delimiters) kinds_[static_cast<unsigned char>(c)] = Kind::kDelimiter;
  kinds_[0] = Kind::kEnd;
}

void Columns::split(std::string_view line, int wanted) noexcept {
  wanted = std::min(wanted, kMost);
  count_ = 0;
  const char* p = line.data();
  const char* const end = p + line.size();
  const auto kind = [this](const char* c) { return kinds_[static_cast<unsigned char>(*c)]; };
  while (count_ < wanted) {
    while (p != end && kind(p) == Kind::kDelimiter) ++p;
    const char* const first = p;
    while (p != end && kind(p) == Kind::kText) ++p;
    if (p == first) return;
    columns_[static_cast<std::size_t>(count_++)] = {first, static_cast<std::size_t>(p - first)};
  }
}

}  // namespace qv::datafiles
