// Backtests by rules.
#pragma once

#include "python/extension/bars.h"
#include "python/extension/formulas.h"
#include "runs/backtest.h"

namespace qv::python {

// The settings of a dictionary, which the package has checked.
runs::BacktestSettings settingsOf(const py::dict& settings);
runs::RuleTexts rulesOf(const std::vector<std::string>& texts);

// Figures by the names of Python, as dictionaries.
py::dict figuresOf(const QvEquityFigures& figures);
py::dict figuresOf(const QvTradeFigures& figures);
py::dict statisticsOf(const QvTradeStats& statistics);

void addBacktests(py::module_& module);

}  // namespace qv::python
