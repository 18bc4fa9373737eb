// What a person sees on a terminal only.
#pragma once

#include <string>

namespace qvcli {

// That of standard output; where it is no terminal, one that prints well, or COLUMNS and LINES.
struct TerminalSize {
  int columns = 100, rows = 32;
  bool isTerminal = false;
};
TerminalSize terminalSize();

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
