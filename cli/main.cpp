// qv: the command-line tool over the library.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/chart.h"
#include "cli/tool.h"

int main(int argc, char** argv) {
#ifdef SIGPIPE
  // Who reads the output has seen enough: no error.
  std::signal(SIGPIPE, [](int) { std::_Exit(qvcli::kDone); });
#endif
  qvcli::Tool tool;
  qvcli::addFunctions(tool);
  qvcli::addNeed(tool);
  qvcli::addList(tool);
  qvcli::addInfo(tool);
  qvcli::addRead(tool);
  qvcli::addCheck(tool);
  qvcli::addCalc(tool);
  qvcli::addPatterns(tool);
  qvcli::addScreen(tool);
  qvcli::addChart(tool);
  qvcli::addBacktest(tool);
  qvcli::addSweep(tool);
  qvcli::addPointAndFigure(tool);
  qvcli::addOption(tool);
  qvcli::addBond(tool);
  qvcli::addDemo(tool);
  qvcli::addCompletion(tool);
  const int code = tool.run(argc, argv);
  if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return code;
  std::fprintf(stderr, "qv: standard output: %s\n", std::strerror(errno));
  return qvcli::kUsageError;
}
