#include "core/text.h"

#include "core/characters.h"

int qv::compareNoCase(std::string_view a, std::string_view b) noexcept {
  const auto folded = [](char c) { return static_cast<unsigned char>(lowerCase(c)); };
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i)
    if (const int difference = folded(a[i]) - folded(b[i])) return difference;
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}
