// The data files of a directory.
#pragma once

#include <string_view>

#include "core/memory.h"

namespace qv::datafiles {

// The names of the regular files with this extension (".CSV", in any case), in order without regard to
// case (then by bytes). Test ok() after construction: not so when the memory is exhausted. A directory
// that cannot be read has no files.
class DirectoryFiles {
 public:
  DirectoryFiles(const char* directory, const char* extension) noexcept;

  bool ok() const noexcept { return ok_; }
  std::size_t count() const noexcept { return count_; }
  const char* operator[](std::size_t i) const noexcept { return text_.data() + offsets_[i]; }

 private:
  bool add(std::string_view name) noexcept;
  void sort() noexcept;

  // The names, packed into one block, and where each begins.
  memory::Buffer<char> text_;
  memory::Buffer<std::size_t> offsets_;
  std::size_t used_ = 0;
  std::size_t count_ = 0;
  bool ok_ = true;
};

}  // namespace qv::datafiles
