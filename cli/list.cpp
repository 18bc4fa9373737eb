// qv list: what there is to read in a directory.
#include <cstdio>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/prices.h"
#include "cli/tool.h"
#include "runs/directories.h"

namespace qvcli {

namespace {

struct Options {
  std::string directory;
  FileOptions file;
  OutputOptions output;
};

int run(const Options& options) {
  Rows rows(options.output.form(),
            {{"name"}, {"type"}, {"symbol"}, {"description"}, {"frequency"}, {"bars"}, {"first"}, {"last"}});
  int unreadable = 0;
  for (const qv::runs::Source& source : qv::runs::sourcesOf(options.directory, options.file.load.type)) {
    qv::runs::LoadOptions how = options.file.load;
    how.type = source.type;
    try {
      const qv::runs::Loaded loaded = qv::runs::load(source.file, how);
      const QvBars& b = loaded.bars;
      rows.add({source.file, loaded.type, source.symbol, source.description, frequencyName(b),
                static_cast<double>(b.barsize), Date{b.date.data[0]}, Date{b.date.data[b.barsize - 1]}});
    } catch (const qv::Error& e) {
      std::fprintf(stderr, "qv: %s\n", e.what());
      ++unreadable;
    }
  }
  rows.print();
  if (unreadable > 0) std::fprintf(stderr, "qv: %d unreadable\n", unreadable);
  return kDone;
}

}  // namespace

void addList(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("list", "List the price files or securities of a directory",
                               {"qv list data/computrac"}, [options] { return run(*options); });
  command.add_option("DIR", options->directory, "Directory")->required();
  addFileOptions(command, options->file);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
