// Windows.
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "platform/platform.h"

namespace qv::platform {

namespace {

const char* lastPart(const char* path) noexcept {
  const char* name = path;
  for (const char* c = path; *c; ++c)
    if (*c == '\\' || *c == '/' || *c == ':') name = c + 1;
  return name;
}

}  // namespace

char pathSeparator() noexcept {
  return '\\';
}
bool endsDirectory(char c) noexcept {
  return c == ':' || c == '\\';
}

int errorBox(const char* caption, const char* text) noexcept {
  return MessageBoxA(nullptr, text, caption, MB_ICONSTOP);
}

void shortName(const char* path, char* out, std::size_t outSize) noexcept {
  char shortPath[MAX_PATH + 1];
  const DWORD length = GetShortPathNameA(path, shortPath, sizeof shortPath);
  const bool known = length > 0 && length < sizeof shortPath;
  std::snprintf(out, outSize, "%s", lastPart(known ? shortPath : path));
}

bool modificationDate(const char* path, int* year, int* month, int* day) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  FILETIME local;
  SYSTEMTIME time;
  if (!GetFileAttributesExA(path, GetFileExInfoStandard, &data)) return false;
  if (!FileTimeToLocalFileTime(&data.ftLastWriteTime, &local) || !FileTimeToSystemTime(&local, &time))
    return false;
  *year = time.wYear;
  *month = time.wMonth;
  *day = time.wDay;
  return true;
}

bool distinguishesCase() noexcept {
  return false;
}

bool exists(const char* path) noexcept {
  return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

std::FILE* openRegularFile(const char* path) noexcept {
  const DWORD attributes = GetFileAttributesA(path);
  const bool isRegular = attributes != INVALID_FILE_ATTRIBUTES &&
                         !(attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE));
  return isRegular ? std::fopen(path, "rb") : nullptr;
}

bool seekFile(std::FILE* file, std::int64_t offset) noexcept {
  return _fseeki64(file, offset, SEEK_SET) == 0;
}

std::int64_t fileSize(std::FILE* file) noexcept {
  return _filelengthi64(_fileno(file));
}

void visitDirectory(const char* directory, EntryVisitor visit, void* context) noexcept {
  char query[MAX_PATH + 32];
  const std::size_t length = std::strlen(directory);
  const char* join = length == 0 || endsDirectory(directory[length - 1]) ? "" : "\\";
  std::snprintf(query, sizeof query, "%s%s*", directory, join);
  WIN32_FIND_DATAA data;
  const HANDLE search = FindFirstFileA(query, &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (!visit(data.cFileName, !(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY), context)) break;
  } while (FindNextFileA(search, &data));
  FindClose(search);
}

}  // namespace qv::platform
