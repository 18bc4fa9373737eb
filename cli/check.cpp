// qv check: what is wrong with price files.
#include "runs/check.h"

#include <cstdio>
#include <filesystem>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/tool.h"
#include "runs/directories.h"

namespace qvcli {

namespace {

struct Options {
  std::vector<std::string> files;
  FileOptions how;
  OutputOptions output;
};

int run(const Options& options) {
  Rows rows(options.output.form(), {{"file"}, {"place"}, {"date"}, {"finding"}});
  std::size_t files = 0, findings = 0;
  bool failed = false;
  const auto checkOne = [&](const std::string& file, const std::string& type) {
    qv::runs::LoadOptions how = options.how.load;
    how.type = type;
    try {
      const qv::runs::Loaded loaded = qv::runs::load(file, how);
      for (const qv::runs::Finding& f : qv::runs::findingsIn(loaded)) {
        rows.add({file, f.place, f.date != 0.0 ? Cell(Date{f.date}) : Cell(Unknown{}), f.what});
        ++findings;
      }
      ++files;
    } catch (const qv::Error& e) {
      std::fprintf(stderr, "qv: %s\n", e.what());
      failed = true;
    }
  };
  for (const std::string& file : options.files) {
    if (!std::filesystem::is_directory(file)) {
      checkOne(file, options.how.load.type);
      continue;
    }
    for (const qv::runs::Source& source : qv::runs::sourcesOf(file, options.how.load.type))
      checkOne(source.file, source.type);
  }
  if (findings > 0 || options.output.form() != Form::Table) rows.print();
  std::fflush(stdout);
  std::fprintf(stderr, "checked: %zu, findings: %zu\n", files, findings);
  return failed ? kUsageError : findings > 0 ? 1 : kDone;
}

}  // namespace

void addCheck(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add(
      "check", "Find rows that can't be read, impossible bars and gaps in price files",
      {"qv check data/text/SPX.CSV", "qv check data/computrac data/techtools"},
      [options] { return run(*options); }, kUsageError);
  command.add_option("FILE", options->files, "Price files, securities as DIR/NAME, or directories")
      ->required();
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
