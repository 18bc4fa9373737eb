// The fixed-width names of the records.
#pragma once

#include <cstddef>
#include <cstring>

namespace qv::tradesim {

// Cuts the text to the field, which always ends with a NUL.
template <std::size_t N>
void copyName(char (&field)[N], const char* text) noexcept {
  std::size_t length = 0;
  while (length < N - 1 && text[length]) ++length;
  std::memcpy(field, text, length);
  field[length] = '\0';
}

// Names in positions and trades have blanks behind their NUL.
template <std::size_t N>
void copySpaceFilled(char (&field)[N], const char* text) noexcept {
  std::memset(field, ' ', N);
  copyName(field, text);
}

}  // namespace qv::tradesim
