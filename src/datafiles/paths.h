// Paths out of the directory and file name that callers give, and the files opened by them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace qv::datafiles {

inline constexpr std::size_t kPathSize = 256;  // with the terminator

struct Path {
  char text[kPathSize] = "";
};

// Directory and file name in one path: blanks around both are dropped, a separator stands between
// them where the directory needs one, and what does not fit is cut off. An empty file name gives
// the directory as a prefix.
Path joinPath(const char* directory, const char* fileName) noexcept;

// True for a name without separators and drives: a file that lies in the directory itself.
bool isPlainName(std::string_view fileName) noexcept;

// Files come from disks that did not distinguish case. If the path does not exist exactly, its last part
// becomes the name of the entry of its directory that equals it without regard to case (the first in the
// order of bytes), when there is one.
void resolveCase(Path& path) noexcept;

// A data file open for reading, its name found without regard to case where it does not exist
// exactly. Test ok() after construction. Only regular files can be opened: a directory opens on some
// systems, and a pipe could not be read twice.
class InputFile {
 public:
  InputFile(const char* directory, const char* fileName) noexcept;
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool ok() const noexcept { return stream_ != nullptr; }
  // The path as the file was found.
  const char* path() const noexcept { return path_.text; }

  // The number of bytes read: fewer than `size` at the end of the file and when reading fails.
  std::size_t read(void* bytes, std::size_t size) noexcept;
  bool failed() const noexcept { return std::ferror(stream_) != 0; }
  bool seek(std::int64_t offset) noexcept;
  // In bytes; below 0 when it cannot be told.
  std::int64_t size() const noexcept;

 private:
  Path path_;
  std::FILE* stream_ = nullptr;
};

}  // namespace qv::datafiles
