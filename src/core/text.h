// Short texts: compared without regard to case, and stored in fields of fixed width.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace qv {

// Below 0, 0 or above 0. ASCII only: the locale must not change which name is found.
int compareNoCase(std::string_view a, std::string_view b) noexcept;

// Fills a field: the text, cut to leave room for the terminator that follows it, then `fill`. The text
// may lie in the field.
template <std::size_t N>
void copyText(char (&field)[N], std::string_view text, char fill = '\0') noexcept {
  const std::size_t length = std::min(text.size(), N - 1);
  if (length) std::memmove(field, text.data(), length);
  field[length] = '\0';
  std::memset(field + length + 1, fill, N - 1 - length);
}

// What a field holds, also when a caller filled it to its last character.
template <std::size_t N>
std::string_view textOf(const char (&field)[N]) noexcept {
  return {field, static_cast<std::size_t>(std::find(field, field + N, '\0') - field)};
}

// The same of a caller's text of which no more than `most` characters count.
inline std::string_view textUpTo(const char* text, std::size_t most) noexcept {
  std::size_t length = 0;
  while (length < most && text[length]) ++length;
  return {text, length};
}

}  // namespace qv
