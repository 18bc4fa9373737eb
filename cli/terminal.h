// What a person sees on a terminal only.
#pragma once

#include <string>

namespace qvcli {

// A bar on standard error; nothing where that is no terminal.
class ProgressBar {
 public:
  explicit ProgressBar(const std::string& what);
  bool isShown() const { return isShown_; }
  void show(double part);
  void clear();

 private:
  std::string what_;
  bool isShown_;
};

}  // namespace qvcli
