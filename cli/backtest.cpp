// qv backtest: a trading system by rules over one file.
#include "runs/backtest.h"

#include <cmath>
#include <cstdio>

#include "cli/options.h"
#include "cli/output.h"
#include "cli/picture.h"
#include "cli/rules.h"
#include "cli/tool.h"
#include "runs/backtest_chart.h"
#include "runs/report.h"

namespace qvcli {

namespace {

using qv::runs::Backtest;
using qv::runs::Figures;
using qv::runs::OrderRecord;
using qv::runs::Rules;

struct Options {
  std::string file;
  RuleOptions system;
  FileOptions how;
  RangeOptions range;
  OutputOptions output;
  PictureOptions chart;
  bool trades = false, orders = false, equity = false;
};

Rules rulesOf(const RuleOptions& options) {
  const std::vector<qv::runs::ParameterSet> sets = setsOf(options);
  for (const qv::runs::ParameterSet& set : sets)
    if (set.values.size() != 1)
      throw UsageError("$" + set.name + ": a backtest takes one value; qv sweep takes several");
  return asUsage("", [&] {
    Rules rules(options.rules);
    std::vector<double> values;
    for (const std::size_t place : qv::runs::placesOf(sets, rules.parameters()))
      values.push_back(sets[place].values[0]);
    rules.set(values);
    rules.check();
    return rules;
  });
}

void printFigures(const Figures& figures, const QvEquityFigures& hold, Form form) {
  if (form == Form::Table) {
    std::printf("\n%s", qv::runs::figureTable(figures, hold).c_str());
    return;
  }
  Rows rows(form, {{"figure"}, {"system"}, {"buy and hold"}});
  for (const qv::runs::FigureRow& row : qv::runs::figureRows(figures, hold))
    rows.add({std::string(row.title), row.system, std::isnan(row.hold) ? Cell(Unknown{}) : Cell(row.hold)});
  rows.print();
}

void printTrades(const Backtest& test, Form form) {
  Rows rows(form, {{"side"},
                   {"entered"},
                   {"entry price", 2},
                   {"left"},
                   {"exit price", 2},
                   {"by"},
                   {"contracts", 0},
                   {"bars", 0},
                   {"cost", 2},
                   {"result", 2}});
  for (const qv::runs::TradeRecord& t : test.trades()) {
    const QvPosition& p = t.trade.position;
    rows.add({std::string(p.direction == QV_LONG ? "long" : "short"), Date{p.entryDate}, +p.entryPrice,
              Date{t.trade.exitDate}, +t.trade.exitPrice, std::string(t.isOpen ? "open" : t.trade.exitName),
              1.0 * p.remaining, 1.0 * (t.trade.exitBar - p.entryBar), t.cost, t.result});
  }
  rows.print();
}

void printOrders(const Backtest& test, Form form) {
  Rows rows(form, {{"placed"},
                   {"rule"},
                   {"order"},
                   {"at"},
                   {"stop price", 2},
                   {"state"},
                   {"filled"},
                   {"fill price", 2},
                   {"cost", 2}});
  const double* dates = test.system().bars.date.data;
  for (const OrderRecord& o : test.orders()) {
    const bool isFilled = o.state == OrderRecord::Filled, isStop = o.rule == qv::runs::kStop;
    const std::string side = o.direction == QV_BUY ? "buy" : "sell";
    const char* const states[] = {"filled", "cancelled", "pending"};
    rows.add({Date{dates[o.placed]}, std::string(qv::runs::kRuleNames[o.rule]),
              side + (o.action == QV_ENTRY ? " to open" : " to close"),
              std::string(isStop ? "stop" : "market"), isStop ? Cell(o.price) : Unknown{},
              std::string(states[o.state]), isFilled ? Cell(Date{dates[o.filled]}) : Unknown{},
              isFilled ? Cell(o.fill) : Unknown{}, isFilled ? Cell(o.cost) : Unknown{}});
  }
  rows.print();
}

void printEquity(const Backtest& test, Form form) {
  const QvBars& bars = test.system().bars;
  std::vector<double> held(static_cast<std::size_t>(bars.barsize));
  for (const qv::runs::TradeRecord& t : test.trades())
    for (int i = t.trade.position.entryBar; i < t.trade.exitBar + (t.isOpen ? 1 : 0); ++i)
      held[static_cast<std::size_t>(i)] =
          t.trade.position.direction == QV_LONG ? t.trade.position.remaining : -t.trade.position.remaining;
  const qv::Series hold = test.holding();
  Rows rows(form, {{"date"}, {"close", 2}, {"position", 0}, {"equity", 2}, {"buy and hold", 2}});
  for (int i = 0; i < bars.barsize; ++i)
    rows.add({Date{bars.date.data[i]}, bars.close.data[i], held[static_cast<std::size_t>(i)],
              test.equity()[i], hold[i]});
  rows.print();
}

void printReport(const Options& options, const Backtest& test, const Figures& figures) {
  const QvBars& bars = test.system().bars;
  std::printf("%s, %d bars, %s to %s\n\n", options.file.c_str(), bars.barsize,
              isoDate(bars.date.data[0], ' ').c_str(),
              isoDate(bars.date.data[bars.barsize - 1], ' ').c_str());
  printTerms(options.system);
  if (test.entriesWithoutStop() > 0)
    std::printf("note    %d entries had no stop: its distance was not above 0\n", test.entriesWithoutStop());
  std::printf("\n");
  qvSetDefaultDateFormat(QV_DATE_YMD);
  qv::check(qvProfitRpt(&test.system(), "STDOUT", 1), "the report");
  printFigures(figures, test.holdingFigures(), Form::Table);
}

int run(const Options& options) {
  const Form form = options.output.form();
  if (form != Form::Table && options.trades + options.orders + options.equity > 1)
    throw UsageError("--csv and --json print one table: choose one of --trades, --orders, --equity");
  checkPictureOptions(options.chart);
  const qv::runs::BacktestSettings settings = settingsOf(options.system);
  Rules rules = rulesOf(options.system);
  const qv::Bars bars = loadBars(options.file, options.how, options.range);
  Backtest test(bars, options.file, settings);
  const Figures figures = test.runInFull(rules.over(bars));

  const bool isList = options.trades || options.orders || options.equity;
  if (form == Form::Table)
    printReport(options, test, figures);
  else if (!isList)
    printFigures(figures, test.holdingFigures(), form);
  const auto list = [&](bool wanted, const char* title, void (*print)(const Backtest&, Form)) {
    if (!wanted) return;
    if (form == Form::Table) std::printf("\n%s\n", title);
    print(test, form);
  };
  list(options.trades, "Trades", printTrades);
  list(options.orders, "Orders", printOrders);
  list(options.equity, "Equity", printEquity);
  if (!options.chart.file.empty())
    showPicture(qv::runs::backtestGraph(test, options.file, themeOf(options.chart)).get(), options.chart);
  return kDone;
}

}  // namespace

void addBacktest(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add(
      "backtest", "Test a trading system by rules on a file",
      {"qv backtest data/text/SPX.CSV --long 'sma(20) crosses above sma(100)' "
       "--exit 'sma(20) crosses below sma(100)' --stop '2 * atr(14)' --cost 5bp",
       "qv backtest data/text/SPX.CSV --long 'rsi($n) < 30' --exit 'rsi($n) > 60' --set n=7 --trades",
       "qv backtest data/text/SPX.CSV --long 'close > sma(200)' --exit 'close < sma(200)' --chart "
       "trades.svg"},
      [options] { return run(*options); });
  command.add_option("FILE", options->file, "A price file, or DIR/NAME in a vendor's directory")->required();
  addRuleOptions(command, options->system);
  command.add_flag("--trades", options->trades, "List the trades");
  command.add_flag("--orders", options->orders, "List the orders");
  command.add_flag("--equity", options->equity, "List the equity of every bar");
  addPictureOptions(command, options->chart, "--chart", "--chart-size");
  addRangeOptions(command, options->range);
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
