// The short texts of the data files: names, symbols and descriptions, trimmed before they are stored.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "core/text.h"

namespace qv::datafiles {

using qv::copyText, qv::textOf;

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

}  // namespace qv::datafiles
