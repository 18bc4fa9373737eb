// qv sweep: a trading system by rules over every combination of its parameters.
#include "runs/sweep.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/rules.h"
#include "cli/terminal.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

using qv::runs::Figure;
using qv::runs::figureList;
using qv::runs::Figures;

constexpr int kInterrupted = 130;  // as shells tell it

struct Options {
  std::vector<std::string> files;
  RuleOptions system;
  FileOptions how;
  RangeOptions range;
  OutputOptions output;
  std::string rank, walk;
  int jobs = 1, top = 0;
};

// Set by Ctrl-C; a second one ends the program at once.
std::atomic<bool> stopped{false};
extern "C" void stop(int) {
  stopped = true;
  std::signal(SIGINT, SIG_DFL);
}

std::vector<Column> withFigures(std::vector<Column> columns) {
  for (const Figure& figure : figureList()) columns.push_back({figure.title, figure.decimals});
  return columns;
}

void addValues(std::vector<Cell>& cells, const qv::runs::SweepRequest& request, std::size_t combination) {
  for (const double x : request.valuesOf(combination)) cells.push_back(x);
}
void addFigures(std::vector<Cell>& cells, const Figures& f) {
  for (const Figure& figure : figureList()) cells.push_back(figure.of(f));
}

void print(const qv::runs::SweepRequest& request, const qv::runs::SweepResult& result,
           const Options& options) {
  std::vector<Column> columns = {{"file"}};
  for (const qv::runs::ParameterSet& set : request.sets) columns.push_back({set.name});
  Rows rows(options.output.form(), withFigures(columns));
  const auto shown = [&](std::size_t n) {
    return options.top > 0 ? std::min(n, static_cast<std::size_t>(options.top)) : n;
  };
  for (std::size_t i = 0; i < shown(result.rows.size()); ++i) {
    const qv::runs::SweepRow& row = result.rows[i];
    std::vector<Cell> cells = {request.sources[row.source].name};
    addValues(cells, request, row.combination);
    addFigures(cells, row.figures);
    rows.add(std::move(cells));
  }
  for (std::size_t i = 0; i < shown(result.medians.size()); ++i) {
    std::vector<Cell> cells = {std::string("median")};
    addValues(cells, request, result.medians[i].combination);
    cells.insert(cells.end(), result.medians[i].values.begin(), result.medians[i].values.end());
    rows.add(std::move(cells));
  }
  rows.print();
}

void print(const qv::runs::SweepRequest& request, const qv::runs::WalkResult& result,
           const Options& options) {
  std::vector<Column> columns = {{"file"}, {"tuned from"}, {"tuned to"}};
  for (const qv::runs::ParameterSet& set : request.sets) columns.push_back({set.name});
  columns.push_back({std::string("tuned ") + request.rank->title, request.rank->decimals});
  columns.insert(columns.end(), {{"tested from"}, {"tested to"}});
  Rows rows(options.output.form(), withFigures(columns));
  for (const qv::runs::WalkRow& row : result.rows) {
    std::vector<Cell> cells = {request.sources[row.source].name, Date{row.tunedOn.from},
                               Date{row.tunedOn.to}};
    addValues(cells, request, row.combination);
    cells.insert(cells.end(), {request.rank->of(row.tuned), Date{row.testedOn.from}, Date{row.testedOn.to}});
    addFigures(cells, row.tested);
    rows.add(std::move(cells));
  }
  if (result.rows.size() > 1) {
    std::vector<Cell> cells = {std::string("median")};
    cells.resize(columns.size());
    cells.insert(cells.end(), result.median.begin(), result.median.end());
    rows.add(std::move(cells));
  }
  rows.print();
}

// The exit code, after a line for each file that failed.
int end(const std::vector<std::string>& failed, bool isComplete) {
  std::fflush(stdout);
  for (const std::string& why : failed) std::fprintf(stderr, "qv: %s\n", why.c_str());
  if (!isComplete && stopped) {
    std::fprintf(stderr, "qv: stopped, above is what was done\n");
    return kInterrupted;
  }
  return failed.empty() ? kDone : kDataError;
}

int run(const Options& options) {
  qv::runs::SweepRequest request;
  request.rules = options.system.rules;
  request.sets = setsOf(options.system);
  request.settings = settingsOf(options.system);
  const std::string rank = options.rank.empty() && !options.walk.empty() ? "sharpe" : options.rank;
  if (!rank.empty()) request.rank = asUsage("--rank: ", [&] { return &qv::runs::findFigure(rank); });
  for (const std::string& file : options.files)
    request.sources.push_back(
        {file, [file, &options] { return loadBars(file, options.how, options.range); }});
  const qv::runs::Walk walk = options.walk.empty()
                                  ? qv::runs::Walk{}
                                  : asUsage("--walk: ", [&] { return qv::runs::parseWalk(options.walk); });
  const std::size_t count = asUsage("", [&] { return qv::runs::checkSweep(request); });

  const Form form = options.output.form();
  if (form == Form::Table) {
    printTerms(options.system);
    std::printf("\n");
  }
  ProgressBar bar(std::to_string(count) + " combinations");
  qv::runs::RunControl control{options.jobs, &stopped, {}};
  if (bar.isShown()) control.progress = [&](double part) { bar.show(part); };
  stopped = false;
  std::signal(SIGINT, stop);
  const auto finish = [&](const auto& result) {
    bar.clear();
    print(request, result, options);
    return end(result.failed, result.isComplete);
  };
  return options.walk.empty() ? finish(qv::runs::sweep(request, control))
                              : finish(qv::runs::walkForward(request, walk, control));
}

}  // namespace

void addSweep(Tool& tool) {
  auto options = std::make_shared<Options>();
  std::string figures;
  for (const Figure& figure : figureList())
    figures += (figures.empty() ? "" : ", ") + std::string(figure.name);
  const std::string system =
      "qv sweep data/text/SPX.CSV --long 'sma($fast) crosses above sma($slow)' "
      "--exit 'sma($fast) crosses below sma($slow)' --set fast=10:50:10 --set slow=60:200:20";
  CLI::App& command =
      tool.add("sweep", "Test a trading system with many parameters",
               {system + " --rank sharpe", system + " --walk 5y/1y"}, [options] { return run(*options); });
  command.add_option("FILE", options->files, "Price files, or DIR/NAME in a vendor's directory")->required();
  addRuleOptions(command, options->system);
  command.get_option("--set")->description(
      "Values of a parameter $NAME of the rules: FIRST:LAST:STEP with both ends, or A,B,C");
  command.add_option("--rank", options->rank, "Best first, by one of: " + figures)->type_name("FIGURE");
  command.add_option("--top", options->top, "Only so many rows and medians")->check(CLI::Range(1, 1 << 30));
  command
      .add_option(
          "--walk", options->walk,
          "Tune on a stretch (by --rank, sharpe unless given), test on the next, roll on: 5y/1y; y, m, w, d")
      ->type_name("TUNE/TEST");
  addJobsOption(command, options->jobs);
  addRangeOptions(command, options->range);
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
