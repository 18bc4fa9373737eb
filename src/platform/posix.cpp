// POSIX systems.
// Files of more than 2 GiB where addresses have 32 bits.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64  // NOLINT(bugprone-reserved-identifier)
#endif
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/platform.h"

namespace qv::platform {

namespace {

const char* lastPart(const char* path) noexcept {
  const char* slash = std::strrchr(path, '/');
  return slash ? slash + 1 : path;
}

}  // namespace

char pathSeparator() noexcept {
  return '/';
}
bool endsDirectory(char c) noexcept {
  return c == '/' || c == '\\' || c == ':';
}

int errorBox(const char* caption, const char* text) noexcept {
  std::fprintf(stderr, "%s: %s\n", caption, text);
  return 1;
}

void shortName(const char* path, char* out, std::size_t outSize) noexcept {
  const char* name = lastPart(path);
  if (const char* backslash = std::strrchr(name, '\\')) name = backslash + 1;
  std::snprintf(out, outSize, "%s", name);
}

bool modificationDate(const char* path, int* year, int* month, int* day) noexcept {
  struct stat info;
  std::tm local;
  if (stat(path, &info) != 0 || !localtime_r(&info.st_mtime, &local)) return false;
  *year = local.tm_year + 1900;
  *month = local.tm_mon + 1;
  *day = local.tm_mday;
  return true;
}

bool distinguishesCase() noexcept {
  return true;
}

bool exists(const char* path) noexcept {
  struct stat info;
  return stat(path, &info) == 0;
}

std::FILE* openRegularFile(const char* path) noexcept {
  // Without O_NONBLOCK the open of a pipe waits for a writer, that of a device maybe for ever.
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat info;
  std::FILE* file =
      fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) ? fdopen(descriptor, "rb") : nullptr;
  if (!file) close(descriptor);
  return file;
}

bool seekFile(std::FILE* file, std::int64_t offset) noexcept {
  return fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0;
}

std::int64_t fileSize(std::FILE* file) noexcept {
  struct stat info;
  return fstat(fileno(file), &info) == 0 ? std::int64_t{info.st_size} : -1;
}

void visitDirectory(const char* directory, EntryVisitor visit, void* context) noexcept {
  DIR* entries = opendir(*directory ? directory : ".");
  if (!entries) return;
  const auto isRegular = [entries](const dirent& entry) {
    if (entry.d_type == DT_REG || entry.d_type == DT_DIR) return entry.d_type == DT_REG;
    struct stat info;
    return fstatat(dirfd(entries), entry.d_name, &info, 0) == 0 && S_ISREG(info.st_mode);
  };
  const dirent* entry;
  while ((entry = readdir(entries)) && visit(entry->d_name, isRegular(*entry), context)) {
  }
  closedir(entries);
}

}  // namespace qv::platform
