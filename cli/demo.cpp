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
  const std::string folder = options.data + "/text", path = folder + "/" + options.file;
  const int status = qvFILEread("TXT", &bars, folder.c_str(), options.file.c_str(), 0, -1);
  if (status == QV_FILE_OPEN || status == QV_FILE_NOT_FOUND)
    throw qv::Error(path, "not found; --data names the directory of the bundled data", status);
  check(status, path);
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
