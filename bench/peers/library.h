// The library under test, opened at run time, so that any build of it can be measured.
#pragma once

#include <dlfcn.h>

#include <string>

namespace qvpeers {

void openLibrary(const std::string& path);  // throws std::runtime_error
void* symbol(const char* name);

// A library may lack a function that this program knows: rows that need one are listed and left out.
bool has(const std::string& name);

}  // namespace qvpeers

// Calls a function of the library under test as the public headers declare it.
#define QV_CALL(f, ...)                                                           \
  ([&] {                                                                          \
    static const auto at = reinterpret_cast<decltype(&f)>(::qvpeers::symbol(#f)); \
    return at(__VA_ARGS__);                                                       \
  }())
