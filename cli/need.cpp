// qv need: how much history a formula takes.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::vector<std::string> formulas;
  double tolerance = 1e-3;
  OutputOptions output;
};

int run(const Options& options) {
  Rows rows(options.output.form(),
            {{"formula"}, {"bars to the first value"}, {"bars to settle"}, {"looks ahead"}});
  for (const std::string& text : options.formulas) {
    const QvFormulaNeeds needs = needsOf(openFormula(text), text, options.tolerance);
    const bool settles = needs.settled >= 0;
    const Cell settled = settles ? Cell(needs.settled + 1.0) : Cell(Unknown{});
    const bool isTable = options.output.form() == Form::Table;
    rows.add({text, needs.firstValid + 1.0, !settles && isTable ? Cell(std::string("never")) : settled,
              std::string(needs.repaints ? "yes" : "no")});
  }
  rows.print();
  return kDone;
}

}  // namespace

void addNeed(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("need",
                               "Tell how many bars a formula takes to its first value, and until it no "
                               "longer depends on where the data began",
                               {"qv need 'macd(12,26,9)'"}, [options] { return run(*options); });
  command.add_option("FORMULA", options->formulas, "Formulas")->required();
  command
      .add_option("--tolerance", options->tolerance,
                  "What counts as no longer depending, relative to the values")
      ->check(above0())
      ->capture_default_str();
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
