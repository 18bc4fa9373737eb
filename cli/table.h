// Readable tables on standard output.
#pragma once

#include <string>
#include <vector>

#include "qvlib60.h"

namespace qvcli {

// A title with an empty line before and a rule below.
void heading(const std::string& title);

// The date as yyyy/mm/dd.
std::string dateText(double date);

// Rows FIRST .. LAST of a bar set's dates with one column per series; values below a series' first
// valid index print as "-".
struct SeriesColumn {
  std::string title;
  const QvArray* series;
  int decimals = 2;
};
void printColumns(const QvArray& dates, int first, int last, const std::vector<SeriesColumn>& columns);

}  // namespace qvcli
