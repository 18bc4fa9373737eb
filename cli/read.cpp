// qv read: the bars of a file, printed or written as a text file with its layout.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/prices.h"
#include "cli/tool.h"
#include "runs/write.h"

namespace qvcli {

namespace {

struct Options {
  std::string file, write;
  FileOptions how;
  RangeOptions range;
  OutputOptions output;
};

int run(const Options& options) {
  const qv::Bars bars = loadBars(options.file, options.how, options.range);
  if (options.write.empty()) {
    printBars(options.output.form(), bars);
  } else {
    qv::runs::writeText(options.write, bars);
  }
  return kDone;
}

}  // namespace

void addRead(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command =
      tool.add("read", "Print the bars of a price file, or write them as a text file with its layout",
               {"qv read data/text/SPX.CSV --last 5",
                "qv read data/telechart/SPX --every weekly --write weekly/SPX.CSV"},
               [options] { return run(*options); });
  command.add_option("FILE", options->file, "Price file, or DIR/NAME of a security")->required();
  addRangeOptions(command, options->range);
  command.add_option("--write", options->write,
                     "Write a new text file, and beside it the layout file txtinfo.txt, instead of printing");
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
