#include "datafiles/paths.h"

#include <algorithm>
#include <cstring>

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

bool isPlainName(std::string_view fileName) noexcept {
  return fileName.find_first_of("/\\:") == fileName.npos;
}

void resolveCase(Path& path) noexcept {
  if (!platform::distinguishesCase() || platform::exists(path.text)) return;
  char* separator = std::strrchr(path.text, platform::pathSeparator());
  char* name = separator ? separator + 1 : path.text;
  if (!*name) return;
  Path directory;
  copyText(directory.text, {path.text, static_cast<std::size_t>(name - path.text)});

  struct Search {
    const char* name;
    Path best;
  } search{name, {}};
  const auto take = [](const char* entry, bool, void* context) {
    auto& s = *static_cast<Search*>(context);
    char* best = s.best.text;
    if (compareNoCase(entry, s.name) == 0 && (!*best || std::strcmp(entry, best) < 0))
      copyText(s.best.text, entry);
    return true;
  };
  platform::visitDirectory(directory.text, take, &search);
  // Equal but for case: the same length.
  if (*search.best.text) std::memcpy(name, search.best.text, std::strlen(name));
}

InputFile::InputFile(const char* directory, const char* fileName) noexcept
    : path_(joinPath(directory, fileName)) {
  resolveCase(path_);
  stream_ = platform::openRegularFile(path_.text);
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
