// qv calc: formulas at every bar.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/prices.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::string file, against;
  std::vector<std::string> formulas;
  FileOptions how;
  RangeOptions range;
  OutputOptions output;
};

int run(const Options& options) {
  std::vector<Calculation> calculations;
  std::vector<Column> columns = {{"date"}, {"close"}};
  for (const std::string& text : options.formulas) {
    calculations.push_back(openCalculation(text, !options.against.empty()));
    columns.push_back({text});
  }
  // Values are those over the whole file, whichever of them are shown.
  const qv::runs::Loaded loaded = load(options.file, options.how, options.range.every);
  const qv::Bars& bars = loaded.bars;
  const auto other = loadAgainst(options.against, options.how, options.range.every);
  std::vector<qv::Series> values;
  values.reserve(calculations.size());
  for (const Calculation& c : calculations) values.push_back(c.over(bars, other.get()));
  Rows rows(options.output.form(), columns);
  const Range range = rangeOf(bars, options.range);
  for (int i = range.first; i < range.end; ++i) {
    std::vector<Cell> cells = {Date{bars.date.data[i]}, itemOf(bars.close, i)};
    for (const qv::Series& s : values) cells.push_back(itemOf(s, i));
    rows.add(std::move(cells));
  }
  rows.print();
  return kDone;
}

}  // namespace

void addCalc(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("calc", "Compute formulas at every bar of a price file",
                               {"qv calc data/text/SPX.CSV 'rsi(14)' 'bollinger(2,20).upper' --last 5"},
                               [options] { return run(*options); });
  command.add_option("FILE", options->file, "Price file, or DIR/NAME of a security")->required();
  command.add_option("FORMULA", options->formulas, "Formulas, as docs/formulas.md describes them")
      ->required();
  addAgainstOption(command, options->against);
  addRangeOptions(command, options->range);
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
