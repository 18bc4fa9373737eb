// A backtest as a picture.
#pragma once

#include <string>

#include "runs/backtest.h"
#include "runs/picture.h"

namespace qv::runs {

// The prices with the trades of the last run marked, each entry joined to its exit; below, the equity beside
// that of buying and holding, and how far it is below its highest. Refers to the test and its bars.
GraphPointer backtestGraph(const Backtest& test, const std::string& title, const QvGraphTheme& theme);

}  // namespace qv::runs
