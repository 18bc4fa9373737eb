// What the library needs of the operating system beyond the standard library. Only the sources of
// this folder know which system it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace qv::platform {

// The separator that joined paths are written with: '/' or '\\'.
char pathSeparator() noexcept;
// True when a directory text that ends in c needs no separator before a file name.
bool endsDirectory(char c) noexcept;

// Shows an error to the user, with a stop sign where there are windows, else on standard error.
int errorBox(const char* caption, const char* text) noexcept;

// The last part of the path's short 8.3 form; where there is none, of the path itself.
// `out` receives at most outSize - 1 characters.
void shortName(const char* path, char* out, std::size_t outSize) noexcept;

// Local date of the last modification; false when there is no such file.
bool modificationDate(const char* path, int* year, int* month, int* day) noexcept;

// If `path` does not exist exactly, replaces its last part by the name of the entry of its
// directory that equals it without regard to case (the first in name order), when there is one.
void resolveCase(char* path) noexcept;

// Directories, devices and pipes are not regular files.
bool isRegularFile(const char* path) noexcept;

// Places the file at a byte offset, also beyond what a long holds; false when that fails.
bool seekFile(std::FILE* file, std::int64_t offset) noexcept;

// The size of an open file in bytes; -1 when the system does not tell.
std::int64_t fileSize(std::FILE* file) noexcept;

// Calls visit(name, context) for every regular file of the directory whose name matches the
// pattern ('*' and '?', without regard to case), in name order without regard to case. Stops when
// visit returns false. An empty directory text is the current directory. 0, or -3 when the memory
// runs out; an unreadable directory has no files.
using FileVisitor = bool (*)(const char* name, void* context);
int listFiles(const char* directory, const char* pattern, FileVisitor visit, void* context) noexcept;

}  // namespace qv::platform
