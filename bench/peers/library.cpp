#include "library.h"

#include <stdexcept>

namespace qvpeers {

namespace {
void* library;
}

void openLibrary(const std::string& path) {
  library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) throw std::runtime_error(dlerror());
}

void* symbol(const char* name) {
  return dlsym(library, name);
}

bool has(const std::string& name) {
  return symbol(name.c_str()) != nullptr;
}

}  // namespace qvpeers
