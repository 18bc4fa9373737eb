// The short texts of the data files: names, symbols and descriptions that are trimmed and stored in
// fields of fixed width.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace qv::datafiles {

// The characters that trimming removes. Independent of the caller's locale.
constexpr std::string_view kBlanks = " \t\r\f\n";

constexpr std::string_view trimmedFront(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}
constexpr std::string_view trimmedEnd(std::string_view text) noexcept {
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}
constexpr std::string_view trimmed(std::string_view text) noexcept {
  return trimmedEnd(trimmedFront(text));
}

// True for a line of nothing but blanks. Texts of files end at a zero byte.
constexpr bool isBlank(std::string_view text) noexcept {
  text = trimmedFront(text);
  return text.empty() || text.front() == '\0';
}

// A file name up to its first ".".
constexpr std::string_view stemOf(std::string_view fileName) noexcept {
  return fileName.substr(0, fileName.find('.'));
}

// Fills a field: the text, cut to leave room for the terminator, then zeros.
template <std::size_t N>
void copyText(char (&field)[N], std::string_view text) noexcept {
  const std::size_t length = std::min(text.size(), N - 1);
  if (length) std::memmove(field, text.data(), length);
  std::memset(field + length, 0, N - length);
}

// What a field holds, also when a caller filled it to its last character.
template <std::size_t N>
std::string_view textOf(const char (&field)[N]) noexcept {
  return {field, static_cast<std::size_t>(std::find(field, field + N, '\0') - field)};
}

}  // namespace qv::datafiles
