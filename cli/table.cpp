#include "cli/table.h"

#include <algorithm>
#include <cstdio>

namespace qvcli {

void heading(const std::string& title) {
  std::printf("\n%s\n%s\n", title.c_str(), std::string(title.size(), '=').c_str());
}

std::string dateText(double date) {
  char text[32];
  qvFormatDate(date, "yyyy/mm/dd", text);
  return text;
}

void printColumns(const QvArray& dates, int first, int last, const std::vector<SeriesColumn>& columns) {
  auto width = [](const SeriesColumn& c) {
    return static_cast<int>(std::max<std::size_t>(c.title.size(), 10));
  };
  std::printf("%-10s", "date");
  for (const SeriesColumn& c : columns) std::printf("  %*s", width(c), c.title.c_str());
  std::printf("\n");
  for (int i = std::max(first, 0); i <= last; ++i) {
    std::printf("%-10s", dateText(qvGetArrayItem(&dates, i)).c_str());
    for (const SeriesColumn& c : columns) {
      if (i < c.series->firstValid || i >= c.series->size)
        std::printf("  %*s", width(c), "-");
      else
        std::printf("  %*.*f", width(c), c.decimals, c.series->data[i]);
    }
    std::printf("\n");
  }
}

}  // namespace qvcli
