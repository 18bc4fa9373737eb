// What is wrong with a price file.
#pragma once

#include <string>
#include <vector>

#include "runs/load.h"

namespace qv::runs {

struct Finding {
  std::string place;  // "line 12" of a CSV file, "bar 12" of any other; "record 12" where it became no bar
  double date;        // 0.0 where the row has none
  std::string what;
};

// Rows that are left out; highs below lows, opens and closes outside; dates twice or out of order; gaps of
// more than five times the usual distance; prices of zero or less; moves to ten times or a tenth of the
// price. In the order of the bars, rows that are left out first. Of bars in the day, distances within days
// and between days count apart.
std::vector<Finding> findingsIn(const Loaded& loaded);

}  // namespace qv::runs
