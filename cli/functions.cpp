// qv functions: the catalogue of calculations, or one of them in full.
#include <cstdio>

#include "cli/output.h"
#include "cli/tool.h"
#include "core/nearest.h"

namespace qvcli {

namespace {

struct Options {
  std::string name;
  OutputOptions output;
};

// "(p=14)", "(close, p=14)".
std::string callOf(const QvCatalogueEntry& e) {
  std::string call;
  for (int i = 0; i < e.inputCount; ++i) call += (call.empty() ? "" : ", ") + std::string(e.inputs[i].name);
  for (int i = 0; i < e.paramCount; ++i)
    call += (call.empty() ? "" : ", ") + std::string(e.params[i].name) + "=" +
            fullNumber(e.params[i].defaultValue);
  return std::string(e.shortName) + "(" + call + ")";
}

int run(const Options& options) {
  Rows rows(options.output.form(), {{"name"}, {"group"}, {"title"}, {"call"}});
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    rows.add({std::string(e.shortName), std::string(e.group), std::string(e.title), callOf(e)});
  }
  rows.print();
  return kDone;
}

}  // namespace

void addFunctions(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("functions", "List the calculations, or describe one of them",
                               {"qv functions rsi"}, [options] { return run(*options); });
  command.add_option("NAME", options->name, "A calculation by its short or full name");
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
