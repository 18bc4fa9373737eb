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

// True where "a.csv" and "A.CSV" can be two files of a directory.
bool distinguishesCase() noexcept;

// True for anything of that name.
bool exists(const char* path) noexcept;

// Opens a regular file for reading bytes: null for directories, devices and pipes, which could block or have
// no end. What is opened is what was looked at, also where names change meanwhile.
std::FILE* openRegularFile(const char* path) noexcept;

// Places the file at a byte offset, also beyond what a long holds; false when that fails.
bool seekFile(std::FILE* file, std::int64_t offset) noexcept;

// The size of an open file in bytes; -1 when the system does not tell.
std::int64_t fileSize(std::FILE* file) noexcept;

// Calls visit(name, isRegular, context) for every entry of a directory, in no order, until it answers
// false. An empty directory text is the current directory; an unreadable directory has no entries.
using EntryVisitor = bool (*)(const char* name, bool isRegular, void* context);
void visitDirectory(const char* directory, EntryVisitor visit, void* context) noexcept;

}  // namespace qv::platform
