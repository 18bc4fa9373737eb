// Classes of characters in plain ASCII, whatever the caller's locale is.
#pragma once

namespace qv {

constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

constexpr char upperCase(char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr char lowerCase(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool isLetter(char c) noexcept {
  return upperCase(c) >= 'A' && upperCase(c) <= 'Z';
}

}  // namespace qv
