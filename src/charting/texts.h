// Texts that a graph keeps and makes: always UTF-8, cut behind whole characters.
#pragma once

#include <cstddef>
#include <cstring>

namespace qv::charting {

// The bytes of the character that begins at `text` (which is not at its end), or 0 where they are no UTF-8.
int characterLength(const char* text) noexcept;

// Stores a caller's text: bytes that are not UTF-8 become U+FFFD, control characters blanks.
void storeText(char* field, std::size_t size, const char* text) noexcept;
template <std::size_t N>
void storeText(char (&field)[N], const char* text) noexcept {
  storeText(field, N, text);
}

// How a scale's numbers are written: so many digits behind the point, of so many millions.
struct NumberFormat {
  double unit = 1.0;
  char suffix[2] = "";
  int decimals = 0;
  bool exponent = false;
};
// So that numbers up to `greatest` differ where they are a step apart.
NumberFormat formatFor(double greatest, double step) noexcept;

inline constexpr std::size_t kNumberSize = 40;
void writeNumber(char (&out)[kNumberSize], double value, const NumberFormat& format, bool percent) noexcept;

}  // namespace qv::charting
