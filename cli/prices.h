// Bars as rows.
#pragma once

#include <string>

#include "cli/options.h"
#include "cli/output.h"

namespace qvcli {

// "daily", "weekly" ...; empty where nothing is known.
std::string frequencyName(const QvBars& bars);

// Item i, unknown below the first valid index and where it is not a number.
Cell itemOf(const QvArray& series, int i);

// The columns that the file has: date, open, high, low, close, volume, open interest.
void printBars(Form form, const QvBars& bars);

}  // namespace qvcli
