#include "cli/terminal.h"

#include <algorithm>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace qvcli {

namespace {

constexpr int kWidth = 40;

bool standardErrorIsTerminal() {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(fileno(stderr)) != 0;
#endif
}

}  // namespace

ProgressBar::ProgressBar(const std::string& what) : what_(what), isShown_(standardErrorIsTerminal()) {}

void ProgressBar::show(double part) {
  if (!isShown_) return;
  const int filled = std::clamp(static_cast<int>(part * kWidth), 0, kWidth);
  std::fprintf(
      stderr, "\r%s [%s%s] %3d %%", what_.c_str(), std::string(static_cast<std::size_t>(filled), '#').c_str(),
      std::string(static_cast<std::size_t>(kWidth - filled), ' ').c_str(), static_cast<int>(part * 100));
  std::fflush(stderr);
}

void ProgressBar::clear() {
  if (isShown_) std::fprintf(stderr, "\r%*s\r", kWidth + 10 + static_cast<int>(what_.size()), "");
}

}  // namespace qvcli
