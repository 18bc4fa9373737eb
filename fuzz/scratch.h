// A directory in memory for the files that an input consists of.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace qvfuzz {

class Scratch {
 public:
  Scratch()
      : path_((access("/dev/shm", W_OK) == 0 ? "/dev/shm/qvfuzz-" : "/tmp/qvfuzz-") +
              std::to_string(getpid())) {
    mkdir(path_.c_str(), 0700);
  }
  ~Scratch() {
    clear();
    rmdir(path_.c_str());
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const char* path() const { return path_.c_str(); }
  std::string operator/(const char* name) const { return path_ + "/" + name; }

  void write(const char* name, const uint8_t* bytes, std::size_t size) const {
    const int file = open((*this / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0) return;
    if (::write(file, bytes, size) < 0) std::abort();
    close(file);
  }
  void clear() const {
    DIR* entries = opendir(path());
    if (!entries) return;
    while (const dirent* entry = readdir(entries)) unlinkat(dirfd(entries), entry->d_name, 0);
    closedir(entries);
  }

 private:
  std::string path_;
};

}  // namespace qvfuzz
