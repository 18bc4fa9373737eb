// File names on both systems: comparison and pattern matching without regard to case, and the
// sorted list that a directory scan collects.
#pragma once

#include <cstddef>

#include "core/memory.h"

namespace qv::platform {

int compareNoCase(const char* a, const char* b) noexcept;
bool matchesPattern(const char* name, const char* pattern) noexcept;

// Names packed into one block, visited in order without regard to case (then by bytes).
class NameList {
 public:
  bool add(const char* name) noexcept;  // false when the memory is exhausted
  void sort() noexcept;
  std::size_t count() const noexcept { return count_; }
  const char* operator[](std::size_t i) const noexcept { return text_.data() + offsets_[i]; }

 private:
  memory::Buffer<char> text_;
  memory::Buffer<std::size_t> offsets_;
  std::size_t used_ = 0;
  std::size_t count_ = 0;
};

}  // namespace qv::platform
