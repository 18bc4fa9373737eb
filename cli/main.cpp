// qv: the command-line tool over the library.
#include "cli/chart.h"
#include "cli/tool.h"

int main(int argc, char** argv) {
  qvcli::Tool tool;
  qvcli::addFunctions(tool);
  qvcli::addChart(tool);
  qvcli::addBacktest(tool);
  qvcli::addSweep(tool);
  qvcli::addDemo(tool);
  return tool.run(argc, argv);
}
