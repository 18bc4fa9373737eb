// An opened formula over one bar set.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

// A value for every bar of `bars`, which has bars and the series that are read. `numbers` are the resolved
// constants. `result` has room for all bars; the first valid index goes to *firstValid, items below it are
// 0.0. 0, what a calculation refuses with, or -3.
int evaluate(const QvFormula& f, const double* numbers, const QvBars& bars, double* result,
             int* firstValid) noexcept;

}  // namespace qv::formula
