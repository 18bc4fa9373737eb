// A file of the system's temporary directory that is removed again.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace qv::runs {

struct TemporaryFile {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / newName();

  TemporaryFile() = default;
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

 private:
  static std::string newName() {
    std::random_device random;
    return "qv" + std::to_string(random()) + std::to_string(random()) + ".txt";
  }
};

}  // namespace qv::runs
