// Times the library against two open C libraries, TA-Lib and Tulip Indicators, row by row: nanoseconds per
// bar of one call over a whole series, outputs reused. Library and peers take turns in one process, and the
// best of the quiet rounds counts; the ratio is the better peer's time over the library's. Short series are
// other bars in each call. A second table tells how the cost depends on the period and on the shape of the
// data. scripts/peers.sh builds and runs it.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "program.h"
#include "timing.h"

namespace qvpeers {

Options options;
Findings findings;

namespace {

char doing[200];

void crashed(int signal) {
  char text[260];
  const int length = std::snprintf(text, sizeof text, "\nsignal %d in %s\n", signal, doing);
  (void)!write(1, text, static_cast<std::size_t>(length));
  _exit(3);
}

std::vector<Row> allRows() {
  std::vector<Row> rows;
  for (auto* part : {averageRows, oscillatorRows, trendRows, volumeRows, priceRows, candleRows, libraryRows})
    for (Row& row : part()) rows.push_back(std::move(row));
  return rows;
}

void printConditions(const char* when) {
  double load[1] = {};
  if (getloadavg(load, 1) < 1) load[0] = 0;
  std::vector<double> copies;
  for (int k = 0; k < 100; ++k) copies.push_back(control.measure());
  std::printf("%s: load %.2f, control (scalar copy) %.3f ns per item, at best %.3f\n", when, load[0],
              median(std::move(copies)), control.best());
}

void printFindings() {
  if (!findings.missing.empty())
    std::printf("missing in the library (%zu, skipped):", findings.missing.size());
  for (const std::string& name : findings.missing) std::printf(" %s", name.c_str());
  if (!findings.missing.empty()) std::puts("");
  for (const std::string& text : findings.failed) std::printf("failed, skipped: %s\n", text.c_str());
}

void addOptions(CLI::App& app) {
  app.add_option("library", options.library, "The libQVLIB60.so to measure")
      ->required()
      ->check(CLI::ExistingFile);
  app.add_option("--rows", options.rows, "Rows whose name or function contains one of these")->delimiter(',');
  app.add_option("--n", options.bars, "Numbers of bars")->delimiter(',')->check(CLI::Range(100, 100'000'000));
  app.add_option("--p", options.periods, "Periods")->delimiter(',')->check(CLI::Range(2, 1'000'000));
  app.add_option("--shapes", options.shapes, "Shapes of the data")
      ->delimiter(',')
      ->check(CLI::IsMember(kShapes));
  app.add_option("--rounds", options.rounds, "Quiet rounds of each cell")->check(CLI::PositiveNumber);
  app.add_option("--budget", options.budget, "Seconds for the rounds of one cell (at least two rounds)");
  app.add_option("--cap", options.cap,
                 "Seconds for one library call; a slower cell runs on fewer bars and says so");
  app.add_option("--cost-p", options.costPeriods, "Periods of the table of costs")
      ->delimiter(',')
      ->check(CLI::Range(2, 1'000'000));
  app.add_option("--cost-n", options.costBars, "Bars of the table of costs")
      ->check(CLI::Range(10'000, 100'000'000));
  app.add_option("--tsv", options.tsv, "Write the cells to this file, tab separated");
  app.add_option("--markdown", options.markdown, "Write the random walk's table to this file");
  app.add_option("--scratch", options.scratch, "Folder for the text file that is read");
  app.add_option("--control", options.control, "What the control takes on this machine at rest, ns per item");
  app.add_flag("--no-table{false}", options.table, "Without the comparison");
  app.add_flag("--no-costs{false}", options.costs, "Without the table of costs");
  app.add_flag("--no-extra{false}", options.extra, "Without the rows that no peer has");
  app.add_flag("--list", options.list, "Names of the rows");
  app.add_flag("--quick", options.quick,
               "5,000 bars of the random walk, 5 rounds, costs on 20,000 bars; what else is given holds");
  app.parse_complete_callback([&app] {
    if (!options.quick) return;
    const auto unlessGiven = [&app](const char* name, auto& option, auto value) {
      if (app.count(name) == 0) option = value;
    };
    unlessGiven("--n", options.bars, std::vector<int>{5000});
    unlessGiven("--shapes", options.shapes, std::vector<std::string>{"walk"});
    unlessGiven("--rounds", options.rounds, 5);
    unlessGiven("--budget", options.budget, 0.3);
    unlessGiven("--cap", options.cap, 0.5);
    unlessGiven("--cost-n", options.costBars, 20'000);
  });
}

void run() {
  const std::vector<Row> rows = allRows();
  if (options.list) {
    for (const Row& row : rows) std::printf("%-30s %s\n", row.name.c_str(), row.functions.c_str());
    return;
  }
  openLibrary(options.library);
  TA_Initialize();
  for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS}) std::signal(signal, crashed);
  if (options.control > 0) control.setRest(options.control);
  for (int k = 0; k < 500; ++k) control.measure();
  const double begin = now();
  std::printf("library %s; ns/bar, best of %d quiet rounds\n", options.library.c_str(), options.rounds);
  printConditions("at the start");
  std::vector<Cell> cells;
  if (options.table) cells = measureTable(rows);
  if (options.extra) {
    std::puts("\nLibrary alone:");
    measureOrders();
    measureTextFile();
  }
  if (options.costs) measureCosts(rows);
  if (options.table) printSummary(rows, cells);
  printFindings();
  if (!options.tsv.empty()) writeTsv(cells);
  if (!options.markdown.empty()) writeMarkdown(cells);
  printConditions("at the end");
  std::printf("%.0f s\n", (now() - begin) / 1e9);
}

}  // namespace

std::vector<std::string> split(const std::string& list) {
  return CLI::detail::split(list, ',');
}

bool chosen(const std::string& name, const std::string& functions) {
  const std::string in = CLI::detail::to_lower(name + " " + functions);
  return options.rows.empty() ||
         std::any_of(options.rows.begin(), options.rows.end(), [&](const std::string& part) {
           return in.find(CLI::detail::to_lower(part)) != std::string::npos;
         });
}

bool present(const std::string& functions) {
  bool all = true;
  for (const std::string& name : split(functions))
    if (!has(name)) {
      findings.missing.insert(name);
      all = false;
    }
  return all;
}

void running(const std::string& what) {
  std::snprintf(doing, sizeof doing, "%s", what.c_str());
}

}  // namespace qvpeers

int main(int argc, char** argv) {
  try {
    CLI::App app{"Times the library against TA-Lib and Tulip Indicators"};
    qvpeers::addOptions(app);
    CLI11_PARSE(app, argc, argv);
    qvpeers::run();
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
}
