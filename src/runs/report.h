// A backtest as text.
#pragma once

#include <string>
#include <vector>

#include "runs/backtest.h"

namespace qv::runs {

// A figure of the system, and of holding where there is one.
struct FigureRow {
  const char* title;
  const char* format;
  double system;
  double hold;  // not-a-number: none
};
std::vector<FigureRow> figureRows(const Figures& figures, const QvEquityFigures& hold);

// The figures as a table.
std::string figureTable(const Figures& figures, const QvEquityFigures& hold);

// The rules, how their orders are filled, costs and account.
std::string termsText(const RuleTexts& rules, const BacktestSettings& settings);

// The simulator's own report.
std::string profitReport(const QvOrderSystem& system);

}  // namespace qv::runs
