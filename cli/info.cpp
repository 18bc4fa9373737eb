// qv info: what a price file holds.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/prices.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::string file;
  FileOptions how;
  OutputOptions output;
};

int run(const Options& options) {
  const qv::runs::Loaded loaded = load(options.file, options.how);
  const QvBars& b = loaded.bars;
  double highest = b.close.data[0], lowest = highest;
  for (int i = 0; i < b.barsize; ++i) {
    highest = std::max(highest, b.close.data[i]);
    lowest = std::min(lowest, b.close.data[i]);
  }
  printRecord(options.output.form(), {{"file", options.file},
                                      {"type", loaded.type},
                                      {"layout", loaded.layout},
                                      {"symbol", std::string(b.symbol)},
                                      {"description", std::string(b.description)},
                                      {"frequency", frequencyName(b)},
                                      {"bars", static_cast<double>(b.barsize)},
                                      {"left out", static_cast<double>(loaded.leftOut.size())},
                                      {"first", Date{b.date.data[0]}},
                                      {"last", Date{b.date.data[b.barsize - 1]}},
                                      {"lowest close", lowest, 2},
                                      {"highest close", highest, 2},
                                      {"last close", b.close.data[b.barsize - 1], 2}});
  return kDone;
}

}  // namespace

void addInfo(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      tool.add("info", "Describe a price file", {"qv info data/text/SPX.CSV", "qv info data/computrac/SPXW"},
               [options] { return run(*options); });
  command.add_option("FILE", options->file, "Price file, or DIR/NAME of a security")->required();
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
