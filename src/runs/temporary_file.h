// A file of the system's temporary directory that is removed again.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace qv::runs {

struct TemporaryFile {
  std::filesystem::path path;

  TemporaryFile() {
    std::random_device random;
    path = std::filesystem::temp_directory_path() /
           ("qv" + std::to_string(random()) + std::to_string(random()) + ".txt");
  }
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
};

}  // namespace qv::runs
