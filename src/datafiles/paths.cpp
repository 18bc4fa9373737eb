#include "datafiles/paths.h"

#include <algorithm>

#include "datafiles/texts.h"
#include "platform/platform.h"

namespace qv::datafiles {

Path joinPath(const char* directory, const char* fileName) noexcept {
  const std::string_view prefix = trimmed(directory).substr(0, kPathSize - 1);
  const std::string_view name = trimmedFront(fileName);
  Path path;
  std::size_t length = prefix.copy(path.text, prefix.size());
  if (length > 0 && length < kPathSize - 2 && !platform::endsDirectory(path.text[length - 1]))
    path.text[length++] = platform::pathSeparator();
  length += name.copy(path.text + length, std::min(name.size(), kPathSize - 1 - length));
  path.text[trimmedEnd({path.text, length}).size()] = '\0';
  return path;
}

InputFile::InputFile(const char* directory, const char* fileName) noexcept
    : path_(joinPath(directory, fileName)) {
  platform::resolveCase(path_.text);
  if (platform::isRegularFile(path_.text)) stream_ = std::fopen(path_.text, "rb");
}

InputFile::~InputFile() {
  if (stream_) std::fclose(stream_);
}

std::size_t InputFile::read(void* bytes, std::size_t size) noexcept {
  return std::fread(bytes, 1, size, stream_);
}

bool InputFile::seek(std::int64_t offset) noexcept {
  return platform::seekFile(stream_, offset);
}

std::int64_t InputFile::size() const noexcept {
  return platform::fileSize(stream_);
}

}  // namespace qv::datafiles
