// A directory of its own for each test that writes files, removed afterwards.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace qvtest {

inline std::string readFile(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// What a program sees that opens it as text: line ends are the system's.
inline std::string readText(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class ScratchDir {
 public:
  ScratchDir() {
    std::random_device random;  // test programs of several builds may run at the same time
    do path_ = std::filesystem::temp_directory_path() / ("qvtest-" + std::to_string(random()));
    while (!std::filesystem::create_directory(path_));
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::string path() const { return path_.string(); }
  std::string read(const std::string& name) const { return readText(path_ / name); }
  // A new file each time: some file systems flush one that is overwritten, at every close.
  void write(const std::string& name, const std::string& bytes) const {
    std::filesystem::remove(path_ / name);
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace qvtest
