#include "cli/demo.h"

#include <stdexcept>

#include "cli/records.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Chapter {
  const char* name;
  void (*show)(const DemoData&);
};

constexpr Chapter kChapters[] = {
    {"averages", showAverages}, {"momentum", showMomentum},  {"bands", showBands},
    {"candles", showCandles},   {"pnf", showPointAndFigure}, {"finance", showFinance},
    {"trading", showTrading},   {"streams", showStreams},    {"files", showDataFiles},
};

std::string chapterNames() {
  std::string names;
  for (const Chapter& c : kChapters) names += (names.empty() ? "" : ", ") + std::string(c.name);
  return names;
}

struct DemoOptions {
  std::string data = "data";     // the directory of the bundled data
  std::string file = "SPX.CSV";  // the price file in its folder `text`
  std::string chapter;           // only this chapter; empty = all
};

int run(const DemoOptions& options) {
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
  if (!shown) throw UsageError("no chapter '" + options.chapter + "'; there are: " + chapterNames());
  return kDone;
}

}  // namespace

void addDemo(Tool& tool) {
  auto options = std::make_shared<DemoOptions>();
  CLI::App& command = tool.add("demo", "Show what the library does, on the bundled prices",
                               {"qv demo --chapter averages"}, [options] { return run(*options); });
  command.add_option("--data", options->data, "Directory of the bundled data")->capture_default_str();
  command.add_option("--file", options->file, "Price file in the data directory's folder text")
      ->capture_default_str();
  command.add_option("--chapter", options->chapter, "Only this chapter: " + chapterNames());
}

}  // namespace qvcli
