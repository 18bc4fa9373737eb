#include "charting/texts.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace qv::charting {

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

bool continues(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0u) == 0x80u;
}

}  // namespace

// Overlong forms, surrogates and what lies beyond U+10FFFF are no UTF-8.
int characterLength(const char* text) noexcept {
  const auto byte = [text](int i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4 || !continues(text[1])) return 0;
  if (first < 0xE0) return 2;
  const unsigned second = byte(1);
  if (!continues(text[2])) return 0;
  if (first < 0xF0) return (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ? 0 : 3;
  if (!continues(text[3])) return 0;
  return (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F) ? 0 : 4;
}

void storeText(char* field, std::size_t size, const char* text) noexcept {
  std::size_t used = 0;
  while (text && *text) {
    const int length = characterLength(text);
    const bool control = static_cast<unsigned char>(*text) < 0x20 || *text == 0x7F;
    const char* stored = length == 0 ? kReplacement : control ? " " : text;
    const auto bytes = static_cast<std::size_t>(length == 0 ? 3 : length);
    if (used + bytes >= size) break;
    std::memcpy(field + used, stored, bytes);
    used += bytes;
    text += std::max(length, 1);
  }
  std::memset(field + used, 0, size - used);
}

NumberFormat formatFor(double greatest, double step) noexcept {
  NumberFormat format;
  constexpr double kTooLong = 1e15, kTooFine = 1e-9;
  if (greatest >= kTooLong || step < kTooFine) {
    format.exponent = true;
    const double digits = std::floor(std::log10(greatest)) - std::floor(std::log10(step));
    format.decimals = static_cast<int>(std::clamp(digits, 0.0, 15.0));
    return format;
  }
  constexpr struct {
    double unit;
    char suffix;
  } kUnits[] = {{1e12, 'T'}, {1e9, 'B'}, {1e6, 'M'}};
  for (const auto& u : kUnits)
    if (greatest >= u.unit) {
      format.unit = u.unit;
      format.suffix[0] = u.suffix;
      break;
    }
  const double digits = -std::floor(std::log10(step / format.unit) + 1e-9);
  format.decimals = static_cast<int>(std::clamp(digits, 0.0, 12.0));
  return format;
}

void writeNumber(char (&out)[kNumberSize], double value, const NumberFormat& format, bool percent) noexcept {
  char* end = out;
  if (value == 0.0) {
    *end++ = '0';
  } else {
    // Values far beyond the scale for which the format was made are written with an exponent.
    const double scaled = value / format.unit;
    const bool exponent = format.exponent || std::fabs(scaled) >= 1e15;
    const auto shape = exponent ? std::chars_format::scientific : std::chars_format::fixed;
    end = std::to_chars(out, out + kNumberSize - 4, scaled, shape, format.decimals)
              .ptr;  // 15 + 15 digits at most
    if (!exponent && format.suffix[0]) *end++ = format.suffix[0];
  }
  if (percent) *end++ = '%';
  *end = '\0';
}

}  // namespace qv::charting
