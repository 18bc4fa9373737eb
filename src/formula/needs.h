// How many bars a formula needs.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

// 0, -1 for parameters that a calculation refuses, or -3.
int needsOf(const QvFormula& f, double tolerance, QvFormulaNeeds& needs) noexcept;

}  // namespace qv::formula
