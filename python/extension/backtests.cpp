#include "python/extension/backtests.h"

#include <pybind11/stl.h>

#include "python/extension/charts.h"
#include "python/extension/handles.h"
#include "python/extension/tables.h"
#include "runs/backtest_chart.h"
#include "runs/report.h"

namespace qv::python {

namespace {

using runs::Backtest;
using runs::OrderRecord;
using runs::Rules;
using runs::TradeRecord;

// A run and the bars that it ran over.
class BacktestRun {
 public:
  BacktestRun(py::object bars, const std::string& name, const runs::RuleTexts& texts, const Values& values,
              const runs::BacktestSettings& settings)
      : keeper_(std::move(bars)),
        texts_(texts),
        settings_(settings),
        backtest_(keeper_.cast<const BarSet&>().bars(), name, settings) {
    Rules rules(texts);
    std::vector<double> ordered;
    for (const std::string& parameter : rules.parameters()) {
      const auto value = values.find(parameter);
      if (value == values.end()) missingValue("", parameter);
      ordered.push_back(value->second);
    }
    for (const auto& [parameter, value] : values)
      if (std::find(rules.parameters().begin(), rules.parameters().end(), parameter) ==
          rules.parameters().end())
        throw py::type_error("no rule has a parameter $" + parameter);
    const py::gil_scoped_release unlocked;
    rules.set(ordered);
    rules.check();
    figures_ = backtest_.runInFull(rules.over(keeper().bars()));
  }

  py::dict trades() const {
    using namespace py::literals;
    const std::vector<TradeRecord> rows = backtest_.trades();
    const auto position = [](const TradeRecord& t) -> const QvPosition& { return t.trade.position; };
    return py::dict(
        "side"_a = texts(rows, [&](auto& t) { return position(t).direction == QV_LONG ? "long" : "short"; }),
        "entered"_a = numbers(rows, [&](auto& t) { return position(t).entryDate; }),
        "entry_price"_a = numbers(rows, [&](auto& t) { return +position(t).entryPrice; }),
        "left"_a = numbers(rows, [](auto& t) { return t.trade.exitDate; }),
        "exit_price"_a = numbers(rows, [](auto& t) { return +t.trade.exitPrice; }),
        "by"_a = texts(rows, [](auto& t) { return t.isOpen ? "open" : t.trade.exitName; }),
        "contracts"_a = integers(rows, [&](auto& t) { return position(t).remaining; }),
        "bars"_a = integers(rows, [&](auto& t) { return t.trade.exitBar - position(t).entryBar; }),
        "cost"_a = numbers(rows, [](auto& t) { return t.cost; }),
        "result"_a = numbers(rows, [](auto& t) { return t.result; }));
  }

  py::dict orders() const {
    using namespace py::literals;
    const std::vector<OrderRecord>& rows = backtest_.orders();
    const double* dates = backtest_.system().bars.date.data;
    const auto isFilled = [](const OrderRecord& o) { return o.state == OrderRecord::Filled; };
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    return py::dict(
        "placed"_a = numbers(rows, [&](auto& o) { return dates[o.placed]; }),
        "rule"_a = texts(rows, [](auto& o) { return runs::kRuleNames[o.rule]; }),
        "order"_a = texts(rows,
                          [](auto& o) {
                            return std::string(o.direction == QV_BUY ? "buy" : "sell") +
                                   (o.action == QV_ENTRY ? " to open" : " to close");
                          }),
        "at"_a = texts(rows, [](auto& o) { return o.rule == runs::kStop ? "stop" : "market"; }),
        "stop_price"_a = numbers(rows, [](auto& o) { return o.rule == runs::kStop ? o.price : kNone; }),
        "state"_a = texts(rows,
                          [](auto& o) {
                            constexpr const char* kStates[] = {"filled", "cancelled", "pending"};
                            return kStates[o.state];
                          }),
        "filled"_a = numbers(rows, [&](auto& o) { return isFilled(o) ? dates[o.filled] : kNone; }),
        "fill_price"_a = numbers(rows, [&](auto& o) { return isFilled(o) ? o.fill : kNone; }),
        "cost"_a = numbers(rows, [&](auto& o) { return isFilled(o) ? o.cost : kNone; }));
  }

  py::dict equity() const {
    using namespace py::literals;
    const QvBars& bars = backtest_.system().bars;
    std::vector<double> held(static_cast<std::size_t>(bars.barsize));
    for (const TradeRecord& t : backtest_.trades()) {
      const QvPosition& p = t.trade.position;
      for (int i = p.entryBar; i < t.trade.exitBar + (t.isOpen ? 1 : 0); ++i)
        held[static_cast<std::size_t>(i)] += p.direction == QV_LONG ? p.remaining : -p.remaining;
    }
    const auto same = [](double x) { return x; };
    return py::dict("position"_a = numbers(held, same),
                    "equity"_a = numbers(backtest_.equity().items(), same),
                    "hold"_a = numbers(backtest_.holding().items(), same));
  }

  py::tuple figures() const {
    return py::make_tuple(figuresOf(figures_.equity), figuresOf(figures_.trades),
                          figuresOf(backtest_.holdingFigures()));
  }
  py::tuple statistics() const {
    const QvOrderSystem& s = backtest_.system();
    return py::make_tuple(statisticsOf(s.netStatistics), statisticsOf(s.longStatistics),
                          statisticsOf(s.shortStatistics));
  }

  runs::GraphPointer graph(const std::string& title, bool dark) const {
    return runs::backtestGraph(backtest_, title, themeOf(dark));
  }

  std::string report() const {
    std::string text = runs::termsText(texts_, settings_);
    if (backtest_.entriesWithoutStop() > 0)
      text += "note    " + std::to_string(backtest_.entriesWithoutStop()) +
              " entries had no stop: its distance was not above 0\n";
    return text + "\n" + runs::profitReport(backtest_.system()) + "\n" +
           runs::figureTable(figures_, backtest_.holdingFigures());
  }

 private:
  const BarSet& keeper() const { return keeper_.cast<const BarSet&>(); }
  py::object keeper_;
  runs::RuleTexts texts_;
  runs::BacktestSettings settings_;
  Backtest backtest_;
  runs::Figures figures_{};
};

}  // namespace

runs::BacktestSettings settingsOf(const py::dict& s) {
  return {s["cost"].cast<double>(),    s["slip"].cast<double>(), s["fixed"].cast<double>(),
          s["capital"].cast<double>(), s["size"].cast<int>(),    s["rate"].cast<double>(),
          s["tick"].cast<double>()};
}

runs::RuleTexts rulesOf(const std::vector<std::string>& texts) {
  runs::RuleTexts rules;
  std::copy_n(texts.begin(), std::min(texts.size(), rules.size()), rules.begin());
  return rules;
}

py::dict figuresOf(const QvEquityFigures& f) {
  using namespace py::literals;
  return py::dict("final_equity"_a = +f.last, "total_growth"_a = +f.totalGrowth,
                  "annual_growth"_a = +f.annualGrowth, "sharpe"_a = +f.sharpe, "sortino"_a = +f.sortino,
                  "greatest_drawdown"_a = +f.greatestDrawdown,
                  "greatest_drawdown_percent"_a = +f.greatestDrawdownPercent,
                  "longest_drawdown"_a = +f.greatestDrawdownBars, "bars_per_year"_a = +f.barsPerYear);
}

py::dict figuresOf(const QvTradeFigures& f) {
  using namespace py::literals;
  return py::dict("exposure"_a = +f.exposure, "profit_factor"_a = +f.profitFactor,
                  "expectancy"_a = +f.expectancy, "gross_profit"_a = +f.grossProfit,
                  "gross_loss"_a = +f.grossLoss, "trade_count"_a = +f.trades, "bars_held"_a = +f.barsHeld);
}

py::dict statisticsOf(const QvTradeStats& s) {
  using namespace py::literals;
  return py::dict(
      "net_profit"_a = +s.totalNetProfit, "gross_profit"_a = +s.grossProfit, "gross_loss"_a = +s.grossLoss,
      "trades"_a = +s.totalNumberOfTrades, "percent_profitable"_a = +s.percentProfitable,
      "winners"_a = +s.numberOfWinningTrades, "losers"_a = +s.numberOfLosingTrades,
      "largest_winner"_a = +s.largestWinningTrade, "largest_loser"_a = +s.largestLosingTrade,
      "average_winner"_a = +s.averageWinningTrade, "average_loser"_a = +s.averageLosingTrade,
      "average_trade"_a = +s.averageTrade, "consecutive_winners"_a = +s.maximumConsecutiveWinners,
      "consecutive_losers"_a = +s.maximumConsecutiveLosers, "bars_in_winners"_a = +s.averageBarsInWinners,
      "bars_in_losers"_a = +s.averageBarsInLosers, "intraday_drawdown"_a = +s.maximumIntradayDrawdown,
      "profit_factor"_a = +s.profitFactor, "contracts_held"_a = +s.maximumContractsHeld,
      "account_required"_a = +s.accountSizeRequired, "return_on_account"_a = +s.returnOnAccount,
      "pessimistic_return_ratio"_a = +s.prr, "open_profit"_a = +s.openPositionPL);
}

void addBacktests(py::module_& module) {
  Handle<BacktestRun>(module, "Backtest", "A backtest that has run.")
      .def("trades", &BacktestRun::trades)
      .def("orders", &BacktestRun::orders)
      .def("equity", &BacktestRun::equity)
      .def("figures", &BacktestRun::figures)
      .def("statistics", &BacktestRun::statistics)
      .def("report", &BacktestRun::report)
      .def("chart", [](const py::object& self, const std::string& title, bool dark) {
        return chartOver(self, self.cast<const BacktestRun&>().graph(title, dark));
      });
  module.def("backtest",
             [](const py::object& bars, const std::string& name, const std::vector<std::string>& rules,
                const Values& values, const py::dict& settings) {
               py::object keeper;
               barSetIn(bars.ptr(), "bars", keeper);
               return make<BacktestRun>(keeper, name, rulesOf(rules), values, settingsOf(settings));
             });
}

}  // namespace qv::python
