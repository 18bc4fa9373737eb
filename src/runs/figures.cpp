#include "runs/figures.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "core/nearest.h"

namespace qv::runs {

namespace {

#define OF(field) [](const Figures& f) noexcept -> double { return f.field; }

constexpr Figure kFigures[] = {
    {"equity", "equity", "Equity at the end", 2, false, OF(equity.last)},
    {"growth", "growth %", "Growth in all, percent", 2, false, OF(equity.totalGrowth)},
    {"annual", "annual %", "Growth of a year, percent", 2, false, OF(equity.annualGrowth)},
    {"sharpe", "sharpe", "Sharpe ratio", 3, false, OF(equity.sharpe)},
    {"sortino", "sortino", "Sortino ratio", 3, false, OF(equity.sortino)},
    {"drawdown", "drawdown", "Greatest drawdown, money", 2, true, OF(equity.greatestDrawdown)},
    {"drawdown-percent", "drawdown %", "Greatest drawdown, percent", 2, true,
     OF(equity.greatestDrawdownPercent)},
    {"drawdown-bars", "drawdown bars", "Longest drawdown, bars", 0, true, OF(equity.greatestDrawdownBars)},
    {"exposure", "exposure %", "Bars with a position, percent", 1, true, OF(trades.exposure)},
    {"trades", "trades", "Closed trades", 0, false, OF(trades.trades)},
    {"profit-factor", "profit factor", "Gross profit over gross loss", 3, false, OF(trades.profitFactor)},
    {"expectancy", "expectancy", "Mean result of a closed trade", 2, false, OF(trades.expectancy)},
};

#undef OF

}  // namespace

std::span<const Figure> figureList() {
  return kFigures;
}

const Figure& findFigure(const std::string& name) {
  NearestWord nearest(name);
  for (const Figure& figure : kFigures) {
    const std::string own = figure.name;
    const bool same = std::equal(own.begin(), own.end(), name.begin(), name.end(), [](char a, char b) {
      return a == std::tolower(static_cast<unsigned char>(b));
    });
    if (same) return figure;
    nearest.offer(figure.name);
  }
  std::string known;
  for (const Figure& figure : kFigures) known += (known.empty() ? "" : ", ") + std::string(figure.name);
  throw Error(name,
              nearest.word() ? "no such figure, did you mean " + std::string(nearest.word()) + "?"
                             : "no such figure; there are " + known,
              QV_INVALID_PARM);
}

bool isBetter(const Figure& figure, double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(b) && !std::isnan(a);
  return figure.smallerIsBetter ? a < b : a > b;
}

}  // namespace qv::runs
