#include "runs/report.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>

#include "runs/temporary_file.h"

namespace qv::runs {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::string numberOf(const char* format, double x) {
  if (std::isnan(x)) return "";
  if (std::isinf(x)) return "no loss";
  char text[400];
  std::snprintf(text, sizeof text, format, x);
  return text;
}

template <typename... Values>
void append(std::string& text, const char* format, Values... values) {
  char piece[700];
  std::snprintf(piece, sizeof piece, format, values...);
  text += piece;
}

}  // namespace

std::vector<FigureRow> figureRows(const Figures& f, const QvEquityFigures& h) {
  const QvEquityFigures& e = f.equity;
  const QvTradeFigures& t = f.trades;
  return {{"Final equity", "%.2f", e.last, h.last},
          {"Total growth %", "%.2f", e.totalGrowth, h.totalGrowth},
          {"Annual growth %", "%.2f", e.annualGrowth, h.annualGrowth},
          {"Sharpe ratio", "%.3f", e.sharpe, h.sharpe},
          {"Sortino ratio", "%.3f", e.sortino, h.sortino},
          {"Greatest drawdown", "%.2f", e.greatestDrawdown, h.greatestDrawdown},
          {"Greatest drawdown %", "%.2f", e.greatestDrawdownPercent, h.greatestDrawdownPercent},
          {"Longest drawdown, bars", "%.0f", 1.0 * e.greatestDrawdownBars, 1.0 * h.greatestDrawdownBars},
          {"Exposure %", "%.1f", t.exposure, kNone},
          {"Profit factor of all trades", "%.3f", t.profitFactor, kNone},
          {"Expectancy of a trade", "%.2f", t.expectancy, kNone},
          {"Bars a year", "%.2f", e.barsPerYear, h.barsPerYear}};
}

std::string figureTable(const Figures& figures, const QvEquityFigures& hold) {
  std::string text;
  append(text, "%-30s%16s%16s\n", "What that report lacks", "SYSTEM", "BUY AND HOLD");
  for (const FigureRow& row : figureRows(figures, hold)) {
    const std::string held = numberOf(row.format, row.hold);
    append(text, "  %-28s%16s", row.title, numberOf(row.format, row.system).c_str());
    if (!held.empty()) append(text, "%16s", held.c_str());
    text += '\n';
  }
  return text;
}

std::string termsText(const RuleTexts& rules, const BacktestSettings& s) {
  std::string text;
  for (std::size_t rule = 0; rule < rules.size(); ++rule) {
    if (rules[rule].empty()) continue;
    append(text, "%-8s", kRuleNames[rule]);
    text += rules[rule] + "\n";
  }
  text +=
      "fills   Rules are known at a bar's close, count from their first valid bar on, and are filled at the "
      "next\n"
      "        open.";
  if (!rules[kStop].empty())
    text +=
        " The stop's distance is that of the entry's bar; it waits from the next bar on and is filled\n"
        "        at its price, or at the open of a bar that opens beyond it.";
  append(text, "\ncosts   %g bp of the traded value and %g bp slippage, %.2f fixed, for each fill\n",
         s.cost * 1e4, s.slip * 1e4, s.fixed);
  append(text, "account %.2f, entries of %d, %g %% a year without risk\n", s.capital, s.size, s.rate * 100);
  if (s.tick > 0)
    append(text, "tick    %g, prices are truncated to its multiples\n", s.tick);
  else
    text += "tick    none, prices are as the file has them\n";
  return text;
}

std::string profitReport(const QvOrderSystem& system) {
  const TemporaryFile file;
  check(qvProfitRpt(&system, file.path.string().c_str(), 0), "the report");
  std::ifstream text(file.path);
  return {std::istreambuf_iterator<char>(text), {}};
}

}  // namespace qv::runs
