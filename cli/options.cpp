#include "cli/options.h"

#include <map>
#include <thread>

#include "cli/tool.h"

namespace qvcli {

void addFileOptions(CLI::App& command, FileOptions& options) {
  command.add_option("--type", options.load.type,
                     "Kind of file: csv, txt (with a layout file), ct, dj, tc, tt; found out unless given");
  using qv::runs::DateOrder;
  const std::map<std::string, DateOrder> orders = {
      {"dmy", DateOrder::DayFirst}, {"mdy", DateOrder::MonthFirst}, {"ymd", DateOrder::YearFirst}};
  command.add_option("--dates", options.load.dates, "Order of the dates in a CSV file: dmy, mdy or ymd")
      ->transform(CLI::Transformer(orders, CLI::ignore_case).description(""));
  command.add_flag("--adjusted", options.load.adjusted, "Prices adjusted as the column Adj Close says");
}

void addRangeOptions(CLI::App& command, RangeOptions& options) {
  command.add_option("--from", options.from, "First date, YYYY-MM-DD");
  command.add_option("--to", options.to, "Last date, YYYY-MM-DD");
  command.add_option("--last", options.last, "Only the last N bars")->check(CLI::Range(1, 1 << 30));
  command.add_option("--every", options.every,
                     "Longer bars: weekly, monthly, quarterly, yearly, or 5min, 1h");
}

void addJobsOption(CLI::App& command, int& jobs) {
  jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  command.add_option("--jobs", jobs, "Threads to use; all cores unless given")->check(CLI::Range(1, 1024));
}

qv::Bars loadBars(const std::string& file, const FileOptions& options, const RangeOptions&) {
  return qv::runs::loadBars(file, options.load);
}

double dateOption(const std::string& name, const std::string& text) {
  const double date = qvDateStrToDate(text.c_str(), QV_DATE_YMD);
  if (date == 0.0) throw UsageError(name + ": " + text + " is no date, write YYYY-MM-DD");
  return date;
}

qv::Formula openFormula(const std::string& text) {
  try {
    return qv::Formula(text);
  } catch (const qv::Error& e) {
    throw UsageError("'" + text + "', " + e.what());
  }
}

}  // namespace qvcli
