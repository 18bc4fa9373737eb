// What sweeps and walks have in common.
#pragma once

#include <vector>

#include "runs/sweep.h"

namespace qv::runs {

// The combinations of the sets; throws where the rules, the sets or a combination cannot be used.
Combinations checkedCombinations(const SweepRequest& request);

// In the order of figureList().
std::vector<double> medianFigures(const std::vector<const Figures*>& all);

}  // namespace qv::runs
