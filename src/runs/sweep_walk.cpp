// Walk forward: stretches of the calendar, the best combination of each, and the test behind it.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <mutex>
#include <optional>

#include "core/bar_series.h"
#include "runs/sweep_parts.h"

namespace qv::runs {

namespace {

constexpr std::size_t kChunk = 16;  // combinations of one task
constexpr int kLeastTestBars = 2;

// Bars of a stretch: from `begin` until before `end`.
struct Stretch {
  int begin, end;
};
struct Window {
  Stretch tune, test;
};

// The date by which a period that begins with `date` ends; of a month that is too short its last day.
double periodAfter(double date, Period period) {
  if (period.unit == 'd' || period.unit == 'w') return date + period.count * (period.unit == 'w' ? 7.0 : 1.0);
  int year, month, day;
  qvDateToYMD(date, &year, &month, &day, nullptr, nullptr, nullptr);
  const int months = month - 1 + period.count * (period.unit == 'y' ? 12 : 1);
  year += months / 12;
  month = months % 12 + 1;
  while (!qvDateValidate(year, month, day, 0, 0, 0)) --day;
  return qvYMDtoDate(year, month, day, 0, 0, 0);
}

std::vector<Window> windowsOf(const QvBars& bars, const Walk& walk) {
  const double* dates = bars.date.data;
  const int n = bars.barsize;
  const auto barFrom = [&](double date) {
    return static_cast<int>(std::lower_bound(dates, dates + n, date) - dates);
  };
  std::vector<Window> windows;
  for (double begin = std::floor(dates[0]);;) {
    const double tuned = periodAfter(begin, walk.tune);
    const Window w{{barFrom(begin), barFrom(tuned)},
                   {barFrom(tuned), barFrom(periodAfter(tuned, walk.test))}};
    if (w.test.begin > n - kLeastTestBars) return windows;
    if (w.tune.end > w.tune.begin && w.test.end - w.test.begin >= kLeastTestBars) windows.push_back(w);
    const double next = periodAfter(begin, walk.test);
    if (!(next > begin)) return windows;  // beyond the calendar
    begin = next;
  }
}

// The bars of a stretch, without copying them.
Bars barsOf(const QvBars& bars, Stretch stretch) {
  const auto items = [&](const QvArray& a) {
    if (!a.data || a.size < stretch.end) return std::span<const double>();
    return std::span<const double>(a.data + stretch.begin, a.data + stretch.end);
  };
  Bars part = Bars::borrow({items(bars.date), items(bars.open), items(bars.high), items(bars.low),
                            items(bars.close), items(bars.volume), items(bars.openInterest)});
  for (int k = 0; k < 7; ++k) {
    QvArray& series = seriesOf(part, k);
    if (series.data)
      series.firstValid = std::clamp(seriesOf(bars, k).firstValid - stretch.begin, 0, part.barsize);
  }
  return part;
}

// Runs over one stretch: rules that know the bars until its end, orders within it.
class StretchRun {
 public:
  StretchRun(const QvBars& bars, Stretch stretch, const std::string& name, const BacktestSettings& settings)
      : known_(barsOf(bars, {0, stretch.end})),
        traded_(barsOf(bars, stretch)),
        backtest_(traded_, name, settings),
        offset_(stretch.begin) {}
  Figures run(Rules& rules) { return backtest_.run(rules.over(known_), offset_); }

 private:
  Bars known_, traded_;
  Backtest backtest_;
  int offset_;
};

struct Worker {
  Rules rules;
  std::size_t window;
  std::optional<StretchRun> stretch;
  std::vector<double> values;
};

struct Best {
  std::size_t combination = SIZE_MAX, tried = 0;
  Figures figures{};
};

// One file. Rows of windows that were stopped half-way are left out.
void walkOver(const SweepRequest& request, const Combinations& combinations, const Walk& walk,
              const RunControl& control, std::size_t source, WalkResult& result) {
  const std::string& name = request.sources[source].name;
  const Bars bars = request.sources[source].load();
  if (bars.barsize < 1 || !bars.date.data) throw Error(name, "no bars with dates", QV_INVALID_PARM);
  const std::vector<Window> windows = windowsOf(bars, walk);
  if (windows.empty()) throw Error(name, "too few bars to tune and to test on", QV_INVALID_PARM);

  const Figure& rank = *request.rank;
  const std::size_t count = combinations.count(), chunks = (count + kChunk - 1) / kChunk;
  std::vector<Best> best(windows.size());
  std::mutex mutex;
  const auto offer = [&](Best& to, std::size_t c, const Figures& f) {
    const double x = rank.of(f), y = rank.of(to.figures);
    if (to.combination == SIZE_MAX || isBetter(rank, x, y) || (!isBetter(rank, y, x) && c < to.combination)) {
      to.combination = c;
      to.figures = f;
    }
  };
  const auto makeWorker = [&] { return Worker{Rules(request.rules), SIZE_MAX, std::nullopt, {}}; };
  runTasks(chunks * windows.size(), control, makeWorker, [&](Worker& worker, std::size_t task) {
    const std::size_t w = task / chunks, first = task % chunks * kChunk;
    if (worker.window != w) {
      worker.rules.forget();
      worker.stretch.emplace(bars, windows[w].tune, name, request.settings);
      worker.window = w;
    }
    Best own;
    for (std::size_t c = first; c < std::min(first + kChunk, count) && !control.isStopped(); ++c) {
      combinations.fill(c, worker.values);
      worker.rules.set(worker.values);
      offer(own, c, worker.stretch->run(worker.rules));
      ++own.tried;
    }
    const std::lock_guard lock(mutex);
    if (own.tried > 0) offer(best[w], own.combination, own.figures);
    best[w].tried += own.tried;
  });

  Rules rules(request.rules);
  std::vector<double> values;
  for (std::size_t w = 0; w < windows.size(); ++w) {
    if (best[w].tried < count) {
      result.isComplete = false;
      continue;
    }
    combinations.fill(best[w].combination, values);
    rules.set(values);
    rules.forget();
    StretchRun test(bars, windows[w].test, name, request.settings);
    const auto dates = [&](Stretch s) { return Dates{bars.date.data[s.begin], bars.date.data[s.end - 1]}; };
    result.rows.push_back({source, dates(windows[w].tune), dates(windows[w].test), best[w].combination,
                           best[w].figures, test.run(rules)});
  }
}

Period parsePeriod(const std::string& part, const std::string& text) {
  Period period{0, '?'};
  const auto [end, status] = std::from_chars(part.data(), part.data() + part.size(), period.count);
  if (status == std::errc() && end + 1 == part.data() + part.size()) period.unit = *end;
  if (std::string("ymwd").find(period.unit) == std::string::npos || period.count < 1 || period.count > 100000)
    throw Error(text, "write the stretch to tune on and that to test on as 5y/1y, with y, m, w or d",
                QV_INVALID_PARM);
  return period;
}

}  // namespace

Walk parseWalk(const std::string& text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  return {parsePeriod(text.substr(0, slash), text),
          parsePeriod(slash < text.size() ? text.substr(slash + 1) : "", text)};
}

WalkResult walkForward(const SweepRequest& request, const Walk& walk, const RunControl& control) {
  if (!request.rank) throw Error("walk", "needs a figure to rank by", QV_INVALID_PARM);
  const Combinations combinations = checkedCombinations(request);
  WalkResult result;
  for (std::size_t source = 0; source < request.sources.size(); ++source) {
    if (control.isStopped()) {
      result.isComplete = false;
      break;
    }
    RunControl part = control;
    if (control.progress)
      part.progress = [&](double done) {
        control.progress((static_cast<double>(source) + done) / static_cast<double>(request.sources.size()));
      };
    try {
      walkOver(request, combinations, walk, part, source, result);
    } catch (const std::exception& e) {
      result.failed.push_back(e.what());
    }
  }
  std::vector<const Figures*> tested;
  for (const WalkRow& row : result.rows) tested.push_back(&row.tested);
  result.median = medianFigures(tested);
  return result;
}

}  // namespace qv::runs
