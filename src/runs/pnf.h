// Point-and-figure charts.
#pragma once

#include <string>

#include "qvlib60.hpp"

namespace qv::runs {

struct PointAndFigure {
  double box = 0;
  Bars columns;
  Series columnOf;   // of every bar
  std::string text;  // the chart, a line for each level
};

// By closes, or by highs and lows. A box of 0 becomes about a hundredth of the last price. Throws, with the
// name, where the prices never move a box.
PointAndFigure pointAndFigure(const QvBars& bars, const std::string& name, double box, double reversal,
                              bool byHighsAndLows);

}  // namespace qv::runs
