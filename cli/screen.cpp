// qv screen: the securities of a directory for which a rule holds.
#include "runs/screen.h"

#include <cstdio>
#include <filesystem>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/tool.h"

namespace qvcli {

namespace {

struct Options {
  std::vector<std::string> places;
  std::string where, asOf;
  int jobs = 1;
  FileOptions how;
  OutputOptions output;
};

std::vector<qv::runs::Source> sourcesOf(const Options& options) {
  std::vector<qv::runs::Source> all;
  for (const std::string& place : options.places) {
    if (std::filesystem::is_directory(place)) {
      for (qv::runs::Source& s : qv::runs::sourcesOf(place, options.how.load.type))
        all.push_back(std::move(s));
      continue;
    }
    const std::string type =
        options.how.load.type.empty() ? qv::runs::typeOfFile(place) : options.how.load.type;
    if ((type == "CSV" || type == "TXT") && !std::filesystem::exists(place))
      throw qv::Error(place, "no such file or directory", QV_FILE_OPEN);
    all.push_back({place, type, std::filesystem::path(place).stem().string(), "", "", "", ""});
  }
  return all;
}

int run(const Options& options) {
  needsOf(openFormula(options.where), options.where);
  const qv::runs::ScreenOptions how{options.where,
                                    options.asOf.empty() ? 0.0 : dateOption("--asof", options.asOf),
                                    options.jobs, options.how.load};
  const qv::runs::Screened found = qv::runs::screen(sourcesOf(options), how);
  std::vector<Column> columns = {{"symbol"}, {"date"}, {"close", 2}};
  for (const std::string& text : found.formulas) columns.push_back({text});
  Rows rows(options.output.form(), columns);
  for (const qv::runs::Match& m : found.matches) {
    std::vector<Cell> cells = {m.symbol, Date{m.date}, m.close};
    for (const double x : m.values) cells.push_back(x);
    rows.add(std::move(cells));
  }
  if (!found.matches.empty() || options.output.form() != Form::Table) rows.print();
  std::fflush(stdout);
  for (const std::string& why : found.unreadable) std::fprintf(stderr, "qv: %s\n", why.c_str());
  std::fprintf(stderr, "%d read, %zu match, %d too short (%d bars needed)", found.read, found.matches.size(),
               found.tooShort, found.barsNeeded);
  if (found.unknown > 0) std::fprintf(stderr, ", %d without a series that the rule needs", found.unknown);
  std::fprintf(stderr, ", %zu unreadable\n", found.unreadable.size());
  return found.matches.empty() ? 1 : kDone;
}

}  // namespace

void addScreen(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add(
      "screen", "Find the securities of a directory for which a rule holds",
      {"qv screen prices --where 'rsi(14) < 30 and close > sma(200)'",
       "qv screen data/techtools --where 'close > sma(50)' --asof 2000-06-30"},
      [options] { return run(*options); }, kUsageError);
  command.add_option("DIR", options->places, "Directories, or price files")->required();
  command.add_option("--where", options->where, "The rule, as docs/formulas.md describes it")->required();
  command.add_option("--asof", options->asOf, "Look at the last bar on or before this date, YYYY-MM-DD");
  addJobsOption(command, options->jobs);
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
