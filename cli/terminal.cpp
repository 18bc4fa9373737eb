#include "cli/terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <io.h>
#else
#include <sys/ioctl.h>
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

// A number of the environment within sensible bounds, else what it was.
void takeNumber(const char* name, int& number) {
  const char* text = std::getenv(name);
  const long given = text ? std::strtol(text, nullptr, 10) : 0;
  if (given >= 20 && given <= 1000) number = static_cast<int>(given);
}

}  // namespace

TerminalSize terminalSize() {
  TerminalSize size;
  takeNumber("COLUMNS", size.columns);
  takeNumber("LINES", size.rows);
#ifdef _WIN32
  size.isTerminal = _isatty(_fileno(stdout)) != 0;
#else
  size.isTerminal = isatty(fileno(stdout)) != 0;
  winsize window{};
  if (size.isTerminal && ioctl(fileno(stdout), TIOCGWINSZ, &window) == 0 && window.ws_col > 0 &&
      window.ws_row > 2) {
    size.columns = std::min<int>(window.ws_col, 1000);
    size.rows = std::min<int>(window.ws_row - 2, 1000);
  }
#endif
  return size;
}

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
