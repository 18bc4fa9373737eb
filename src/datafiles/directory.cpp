#include "datafiles/directory.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"
#include "datafiles/paths.h"
#include "platform/platform.h"

namespace qv::datafiles {

namespace {

bool hasExtension(std::string_view name, std::string_view extension) noexcept {
  return name.size() >= extension.size() &&
         compareNoCase(name.substr(name.size() - extension.size()), extension) == 0;
}

}  // namespace

DirectoryFiles::DirectoryFiles(const char* directory, const char* extension) noexcept {
  struct Search {
    DirectoryFiles& files;
    std::string_view extension;
  } search{*this, extension};
  const auto take = [](const char* name, bool isRegular, void* context) {
    const auto& s = *static_cast<const Search*>(context);
    if (isRegular && hasExtension(name, s.extension)) s.files.ok_ = s.files.add(name);
    return s.files.ok_;
  };
  platform::visitDirectory(joinPath(directory, "").text, take, &search);
  sort();
}

bool DirectoryFiles::add(std::string_view name) noexcept {
  if (!text_.grow(used_ + name.size() + 1) || !offsets_.grow(count_ + 1)) return false;
  text_[used_ + name.copy(&text_[used_], name.size())] = '\0';
  offsets_[count_++] = used_;
  used_ += name.size() + 1;
  return true;
}

void DirectoryFiles::sort() noexcept {
  std::sort(offsets_.data(), offsets_.data() + count_, [this](std::size_t a, std::size_t b) {
    const char* x = text_.data() + a;
    const char* y = text_.data() + b;
    const int order = compareNoCase(x, y);
    return order ? order < 0 : std::strcmp(x, y) < 0;
  });
}

}  // namespace qv::datafiles
