// Words, compared in any case, and taken off a text.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "core/characters.h"

namespace qv::runs {

inline std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), upperCase);
  return text;
}

inline std::string_view trimmed(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

inline bool sameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [](char x, char y) { return upperCase(x) == upperCase(y); });
}

// Takes a start off the text where it is there.
inline bool take(std::string_view& s, std::string_view start) {
  if (!s.starts_with(start)) return false;
  s.remove_prefix(start.size());
  return true;
}

}  // namespace qv::runs
