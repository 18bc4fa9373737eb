// Daily bars compressed to weeks, and three averages of the weekly closes.
#include <cstdio>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"

namespace qvcli {

void showAverages(const DemoData& demo) {
  heading("The price file");
  check(qvFILEprintinfo(demo.bars, "STDOUT", 1), "bar information");

  qv::Bars weekly;
  check(qvGroupBarsDate(demo.bars, &weekly, QV_FREQ_WEEKLY, 0.0, 0.0), "weekly bars");

  struct Average {
    const char* title;
    int method;
    int period;
    qv::Series values;
  } averages[] = {{"exponential 10", QV_MA_EXPONENTIAL, 10, {}},
                  {"simple 10", QV_MA_SIMPLE, 10, {}},
                  {"Welles 14", QV_MA_WILDER, 14, {}}};
  std::vector<SeriesColumn> columns = {{"close", &weekly.close}};
  for (Average& a : averages) {
    check(qvMovingAverage(&weekly.close, &a.values, a.method, a.period, 0), a.title);
    columns.push_back({a.title, &a.values});
  }
  heading("Weekly closes and their averages, the last twelve weeks");
  printColumns(weekly.date, weekly.barsize - 12, weekly.barsize - 1, columns);
}

}  // namespace qvcli
