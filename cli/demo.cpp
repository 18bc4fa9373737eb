#include "cli/demo.h"

#include <stdexcept>

#include "cli/records.h"

namespace qvcli {

namespace {

struct Chapter {
  const char* name;
  void (*show)(const DemoData&);
};

constexpr Chapter kChapters[] = {
    {"averages", showAverages}, {"momentum", showMomentum},  {"bands", showBands},
    {"candles", showCandles},   {"pnf", showPointAndFigure}, {"finance", showFinance},
    {"trading", showTrading},   {"files", showDataFiles},
};

}  // namespace

std::string demoChapters() {
  std::string names;
  for (const Chapter& c : kChapters) names += (names.empty() ? "" : ", ") + std::string(c.name);
  return names;
}

int runDemo(const DemoOptions& options) {
  qv::Bars bars;
  const std::string folder = options.data + "/text";
  check(qvFILEread("TXT", &bars, folder.c_str(), options.file.c_str(), 0, -1), folder + "/" + options.file);
  const DemoData demo{options.data, &bars};
  bool shown = false;
  for (const Chapter& c : kChapters) {
    if (!options.chapter.empty() && options.chapter != c.name) continue;
    c.show(demo);
    shown = true;
  }
  if (!shown) throw std::runtime_error("no chapter '" + options.chapter + "'; there are: " + demoChapters());
  return 0;
}

}  // namespace qvcli
