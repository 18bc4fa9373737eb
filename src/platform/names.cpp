#include "platform/names.h"

#include <algorithm>
#include <cstring>

namespace qv::platform {

namespace {

// ASCII only: the locale must not change which file is found.
unsigned char folded(char c) noexcept {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

int compareNoCase(const char* a, const char* b) noexcept {
  for (;; ++a, ++b) {
    const int difference = folded(*a) - folded(*b);
    if (difference || !*a) return difference;
  }
}

bool matchesPattern(const char* name, const char* pattern) noexcept {
  const char* star = nullptr;   // the last '*' seen
  const char* retry = nullptr;  // where its match would be lengthened
  while (*name) {
    if (*pattern == '*') {
      star = ++pattern;
      retry = name;
    } else if (*pattern == '?' || (*pattern && folded(*pattern) == folded(*name))) {
      ++pattern;
      ++name;
    } else if (star) {
      pattern = star;
      name = ++retry;
    } else {
      return false;
    }
  }
  while (*pattern == '*') ++pattern;
  return !*pattern;
}

bool NameList::add(const char* name) noexcept {
  const std::size_t length = std::strlen(name) + 1;
  if (!text_.grow(used_ + length) || !offsets_.grow(count_ + 1)) return false;
  std::memcpy(text_.data() + used_, name, length);
  offsets_[count_++] = used_;
  used_ += length;
  return true;
}

void NameList::sort() noexcept {
  std::sort(offsets_.data(), offsets_.data() + count_, [this](std::size_t a, std::size_t b) {
    const char* x = text_.data() + a;
    const char* y = text_.data() + b;
    const int order = compareNoCase(x, y);
    return order ? order < 0 : std::strcmp(x, y) < 0;
  });
}

}  // namespace qv::platform
