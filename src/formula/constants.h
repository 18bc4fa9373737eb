// The constant nodes of a formula with its parameters as they are set.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

// numbers[i] is the value of constant node i. 0, or -1 when a parameter has no value or a node gets one that
// it refuses: bars back below 0, a period below 1, a choice that does not exist.
int resolve(const QvFormula& f, double* numbers) noexcept;

}  // namespace qv::formula
