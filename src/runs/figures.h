// The figures of a backtest by name: what sweeps print and rank by.
#pragma once

#include <span>
#include <string>

#include "runs/backtest.h"

namespace qv::runs {

struct Figure {
  const char* name;   // as an option takes it
  const char* title;  // of a column
  const char* what;
  int decimals;  // in a table
  bool smallerIsBetter;
  double (*of)(const Figures&) noexcept;
};

// All of them, in the order of the columns.
std::span<const Figure> figureList();

// By its name in any case; throws, and offers the nearest, for any other.
const Figure& findFigure(const std::string& name);

// True where a is the better value. What is no number is worse than any number.
bool isBetter(const Figure& figure, double a, double b);

}  // namespace qv::runs
