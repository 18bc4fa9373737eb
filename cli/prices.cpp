#include "cli/prices.h"

#include <cmath>

#include "core/bar_series.h"

namespace qvcli {

std::string frequencyName(const QvBars& bars) {
  constexpr const char* kNames[] = {"", "intraday", "daily", "weekly", "monthly", "quarterly", "yearly"};
  return bars.frequency >= QV_FREQ_UNKNOWN && bars.frequency <= QV_FREQ_YEARLY ? kNames[bars.frequency] : "";
}

Cell itemOf(const QvArray& series, int i) {
  if (i < series.firstValid || i >= series.size || std::isnan(series.data[i])) return Unknown{};
  return series.data[i];
}

void printBars(Form form, const QvBars& bars) {
  constexpr const char* kTitles[] = {"open", "high", "low", "close", "volume", "openinterest"};
  std::vector<Column> columns = {{"date"}};
  std::vector<const QvArray*> series;
  for (int k = 0; k < 6; ++k) {
    const QvArray& a = qv::seriesOf(bars, 1 + k);
    if (a.firstValid >= bars.barsize) continue;
    series.push_back(&a);
    columns.push_back({kTitles[k]});
  }
  Rows rows(form, columns);
  for (int i = 0; i < bars.barsize; ++i) {
    std::vector<Cell> cells = {Date{bars.date.data[i]}};
    for (const QvArray* a : series) cells.push_back(itemOf(*a, i));
    rows.add(std::move(cells));
  }
  rows.print();
}

}  // namespace qvcli
