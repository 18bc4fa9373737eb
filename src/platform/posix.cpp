// POSIX systems. Files come from disks that did not distinguish case, so names that do not exist
// exactly are looked up without regard to it.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/names.h"
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

bool isRegularFile(const char* path) noexcept {
  struct stat info;
  return stat(path, &info) == 0 && S_ISREG(info.st_mode);
}

bool seekFile(std::FILE* file, std::int64_t offset) noexcept {
  return fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0;
}

std::int64_t fileSize(std::FILE* file) noexcept {
  struct stat info;
  return fstat(fileno(file), &info) == 0 ? std::int64_t{info.st_size} : -1;
}

void resolveCase(char* path) noexcept {
  struct stat info;
  if (stat(path, &info) == 0) return;
  char* name = path + (lastPart(path) - path);
  if (!*name) return;
  char directory[4096] = ".";
  const auto length = static_cast<std::size_t>(name - path);
  if (length >= sizeof directory) return;
  if (length) {
    std::memcpy(directory, path, length);
    directory[length] = '\0';
  }
  DIR* entries = opendir(directory);
  if (!entries) return;
  char best[sizeof(dirent::d_name)] = "";
  while (const dirent* entry = readdir(entries))
    if (compareNoCase(entry->d_name, name) == 0 && (!*best || std::strcmp(entry->d_name, best) < 0))
      std::strcpy(best, entry->d_name);
  closedir(entries);
  if (*best) std::memcpy(name, best, std::strlen(best));  // equal but for case: the same length
}

int listFiles(const char* directory, const char* pattern, FileVisitor visit, void* context) noexcept {
  const char* where = *directory ? directory : ".";
  DIR* entries = opendir(where);
  if (!entries) return 0;
  NameList names;
  bool ok = true;
  while (const dirent* entry = readdir(entries)) {
    if (!matchesPattern(entry->d_name, pattern)) continue;
    char path[4096 + sizeof(dirent::d_name)];
    std::snprintf(path, sizeof path, "%s/%s", where, entry->d_name);
    if (isRegularFile(path) && !(ok = names.add(entry->d_name))) break;
  }
  closedir(entries);
  if (!ok) return -3;
  names.sort();
  for (std::size_t i = 0; i < names.count(); ++i)
    if (!visit(names[i], context)) break;
  return 0;
}

}  // namespace qv::platform
