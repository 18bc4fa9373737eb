#include "cli/options.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>

#include "cli/tool.h"
#include "core/bar_series.h"
#include "core/nearest.h"

namespace qvcli {

namespace {

CLI::Validator number(bool (*good)(double), const char* wrong) {
  const auto check = [good, wrong](const std::string& text) {
    double x = 0.0;
    return CLI::detail::lexical_cast(text, x) && good(x) ? std::string() : text + " " + wrong;
  };
  return CLI::Validator(check, "");
}

}  // namespace

CLI::Validator above0() {
  return number([](double x) { return x > 0.0 && x < 1e300; }, "is no number above 0");
}
CLI::Validator from0() {
  return number([](double x) { return x >= 0.0 && x < 1e300; }, "is no number from 0 on");
}

void addFileOptions(CLI::App& command, FileOptions& options) {
  using qv::runs::DateOrder;
  using qv::runs::DecimalSign;
  command
      .add_option("--type", options.load.type,
                  "Kind of file: csv, txt (with a layout file), ct, dj, tc or tt; found out unless given")
      ->check(CLI::IsMember({"csv", "txt", "ct", "dj", "tc", "tt"}, CLI::ignore_case).description(""));
  const std::map<std::string, DateOrder> orders = {
      {"dmy", DateOrder::DayFirst}, {"mdy", DateOrder::MonthFirst}, {"ymd", DateOrder::YearFirst}};
  command.add_option("--dates", options.load.dates, "Order of the dates in a CSV file: dmy, mdy or ymd")
      ->transform(CLI::CheckedTransformer(orders, CLI::ignore_case).description(""));
  const std::map<std::string, DecimalSign> signs = {{"point", DecimalSign::Point},
                                                    {"comma", DecimalSign::Comma}};
  command.add_option("--decimal", options.load.decimal, "Decimal sign in a CSV file: point or comma")
      ->transform(CLI::CheckedTransformer(signs, CLI::ignore_case).description(""));
  command.add_flag("--adjusted", options.load.adjusted, "Prices adjusted as the column Adj Close says");
  command.add_flag("--verbose", options.verbose, "Say on standard error how the file was read");
}

void addRangeOptions(CLI::App& command, RangeOptions& options) {
  command.add_option("--from", options.from, "First date, YYYY-MM-DD");
  command.add_option("--to", options.to, "Last date, YYYY-MM-DD");
  command.add_option("--last", options.last, "Only the last N bars")
      ->check(CLI::Range(1, 1 << 30).description(""));
  command.add_option("--every", options.every,
                     "Longer bars: weekly, monthly, quarterly, yearly, or a time as 5min or 1h");
}

void addJobsOption(CLI::App& command, int& jobs) {
  jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  command.add_option("--jobs", jobs, "Threads to use; all cores unless given")
      ->check(CLI::Range(1, 1024).description(""));
}

void addAgainstOption(CLI::App& command, std::string& file) {
  command.add_option("--against", file,
                     "A second price file, for calculations that compare two: rsic, spread(1, 0.5), "
                     "compstrength, compperformance");
}

namespace {

// Seconds of "5min", "30s", "1h"; 0 for any other text.
double secondsOf(const std::string& text) {
  char* end = nullptr;
  const long count = std::strtol(text.c_str(), &end, 10);
  const std::string unit = end;
  const double seconds = unit == "s" || unit == "sec"    ? 1.0
                         : unit == "m" || unit == "min"  ? 60.0
                         : unit == "h" || unit == "hour" ? 3600.0
                                                         : 0.0;
  return count > 0 && count <= 86400 ? static_cast<double>(count) * seconds : 0.0;
}

qv::Bars compressed(qv::Bars& bars, const std::string& every) {
  const std::map<std::string, int> frequencies = {{"daily", QV_FREQ_DAILY},
                                                  {"weekly", QV_FREQ_WEEKLY},
                                                  {"monthly", QV_FREQ_MONTHLY},
                                                  {"quarterly", QV_FREQ_QUARTERLY},
                                                  {"yearly", QV_FREQ_YEARLY}};
  qv::Bars out;
  if (const auto found = frequencies.find(every); found != frequencies.end()) {
    qv::check(qvGroupBarsDate(&bars, &out, found->second, 0.0, 0.0), every);
  } else if (const double seconds = secondsOf(every); seconds > 0.0) {
    qv::check(qvGroupBarsTime(&bars, &out, seconds, 0.0, 0.0), every);
  } else {
    qv::NearestWord nearest(every);
    for (const auto& f : frequencies) nearest.offer(f.first.c_str());
    throw UsageError("--every: " + every + " is unknown" +
                     (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?"
                                     : ", write weekly, monthly, quarterly, yearly or a time as 5min"));
  }
  // What was not in the file is not in the longer bars.
  for (int k = 1; k < 7; ++k)
    if (qv::seriesOf(bars, k).firstValid >= bars.barsize) qv::seriesOf(out, k).firstValid = out.barsize;
  return out;
}

}  // namespace

Range rangeOf(const qv::Bars& bars, const RangeOptions& options) {
  Range range{0, bars.barsize};
  const double from = options.from.empty() ? 0.0 : dateOption("--from", options.from);
  double to = options.to.empty() ? 0.0 : dateOption("--to", options.to);
  if (to == std::floor(to)) to += 1.0;  // the whole day
  if (!options.from.empty())
    while (range.first < range.end && bars.date.data[range.first] < from) ++range.first;
  if (!options.to.empty())
    while (range.end > range.first && bars.date.data[range.end - 1] >= to) --range.end;
  if (options.last > 0) range.first = std::max(range.first, range.end - options.last);
  return range;
}

qv::runs::Loaded load(const std::string& file, const FileOptions& options, const std::string& every) {
  qv::runs::Loaded loaded = qv::runs::load(file, options.load);
  if (options.verbose)
    std::fprintf(stderr, "qv: %s: type %s%s%s, %d bars\n", file.c_str(), loaded.type.c_str(),
                 loaded.layout.empty() ? "" : ", ", loaded.layout.c_str(), loaded.bars.barsize);
  if (!loaded.leftOut.empty())
    std::fprintf(stderr, "qv: %s: rows left out: %zu (qv check names them)\n", file.c_str(),
                 loaded.leftOut.size());
  if (!every.empty()) loaded.bars = compressed(loaded.bars, every);
  return loaded;
}

qv::Bars loadBars(const std::string& file, const FileOptions& options, const RangeOptions& rangeOptions) {
  qv::runs::Loaded loaded = load(file, options, rangeOptions.every);
  const Range range = rangeOf(loaded.bars, rangeOptions);
  if (range.first >= range.end) throw qv::Error(file, "no bars in this range", QV_RECORD_NOT_FOUND);
  qv::Bars& bars = loaded.bars;
  for (int k = 0; k < 7; ++k) {
    QvArray& a = qv::seriesOf(bars, k);
    std::copy(a.data + range.first, a.data + range.end, a.data);
    a.firstValid = std::max(0, a.firstValid - range.first);
  }
  qv::check(qvReSizeBars(&bars, range.end - range.first), file);
  return std::move(loaded.bars);
}

std::unique_ptr<qv::Bars> loadAgainst(const std::string& file, const FileOptions& options,
                                      const std::string& every) {
  return file.empty() ? nullptr : std::make_unique<qv::Bars>(load(file, options, every).bars);
}

double dateOption(const std::string& name, const std::string& text) {
  qv::runs::DateParts parts;
  const double date =
      qv::runs::readDate(text, parts) && parts.settled ? dateOf(parts, qv::runs::DateOrder::YearFirst) : 0.0;
  if (date == 0.0) throw UsageError(name + ": " + text + " is no date, write YYYY-MM-DD");
  return date;
}

qv::Formula openFormula(const std::string& text) {
  try {
    return qv::Formula(text);
  } catch (const qv::Error& e) {
    throw UsageError(std::string(e.what()) + " in '" + text + "'");
  }
}

QvFormulaNeeds needsOf(const qv::Formula& formula, const std::string& text, double tolerance) {
  const std::vector<std::string> parameters = formula.parameters();
  if (!parameters.empty())
    throw UsageError("$" + parameters[0] + " in '" + text + "' has no value: write the number in its place");
  return formula.needs(tolerance);
}

Calculation openCalculation(const std::string& text, bool hasOther) {
  Calculation made{text, std::nullopt, std::nullopt};
  try {
    made.comparison = qv::runs::comparisonIn(text);
  } catch (const qv::Error& e) {
    throw UsageError(e.what());
  }
  if (made.comparison && !hasOther)
    throw UsageError(text + ": compares two price files, --against names the other");
  if (made.comparison) return made;
  made.formula = openFormula(text);
  needsOf(*made.formula, text);
  return made;
}

qv::Series Calculation::over(const qv::Bars& bars, const qv::Bars* other) const {
  if (comparison) return comparison->over(bars, *other);
  qv::Series values;
  qv::check(qvFormulaEval(formula->get(), &bars, &values), text);
  return values;
}

}  // namespace qvcli
