#include "runs/sweep.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>

#include "runs/sweep_parts.h"

namespace qv::runs {

namespace {

constexpr std::size_t kChunk = 16;  // combinations of one task

// A file while workers need its bars: read by the first, let go by the last.
struct Shared {
  std::mutex mutex;
  std::shared_ptr<const Bars> bars;
  std::size_t tasksLeft = 0;
  std::string failure;
};

// What a thread works with: its own formulas, over the file that it is at.
struct Worker {
  Rules rules;
  std::shared_ptr<const Bars> bars;
  std::optional<Backtest> backtest;
  std::vector<double> values;
};

std::shared_ptr<const Bars> barsOf(Shared& shared, const SweepSource& source) {
  const std::lock_guard lock(shared.mutex);
  if (!shared.bars && shared.failure.empty()) shared.bars = std::make_shared<const Bars>(source.load());
  return shared.bars;
}

void fail(Shared& shared, const std::string& why) {
  const std::lock_guard lock(shared.mutex);
  if (shared.failure.empty()) shared.failure = why;
}

void endTask(Shared& shared) {
  const std::lock_guard lock(shared.mutex);
  if (--shared.tasksLeft == 0) shared.bars.reset();
}

std::vector<MedianRow> mediansOf(const std::vector<SweepRow>& rows, std::size_t combinations) {
  std::vector<std::vector<const Figures*>> of(combinations);
  for (const SweepRow& row : rows) of[row.combination].push_back(&row.figures);
  std::vector<MedianRow> medians;
  for (std::size_t c = 0; c < combinations; ++c)
    if (!of[c].empty()) medians.push_back({c, medianFigures(of[c])});
  return medians;
}

// Numbers that are none come last.
double median(std::vector<double> values) {
  if (values.empty()) return std::numeric_limits<double>::quiet_NaN();
  const auto isLess = [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; };
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end(), isLess);
  if (values.size() % 2 == 1) return *middle;
  const double below = *std::max_element(values.begin(), middle, isLess);
  return below == *middle ? below : below + (*middle - below) / 2;
}

// Equals keep the order of files and sets.
void rankRows(SweepResult& result, const Figure& rank) {
  std::sort(result.rows.begin(), result.rows.end(), [&](const SweepRow& a, const SweepRow& b) {
    const double x = rank.of(a.figures), y = rank.of(b.figures);
    if (isBetter(rank, x, y) || isBetter(rank, y, x)) return isBetter(rank, x, y);
    return a.source != b.source ? a.source < b.source : a.combination < b.combination;
  });
  const auto place = static_cast<std::size_t>(&rank - figureList().data());
  std::stable_sort(result.medians.begin(), result.medians.end(), [&](const MedianRow& a, const MedianRow& b) {
    return isBetter(rank, a.values[place], b.values[place]);
  });
}

}  // namespace

std::vector<double> medianFigures(const std::vector<const Figures*>& all) {
  std::vector<double> medians;
  for (const Figure& figure : figureList()) {
    std::vector<double> values;
    values.reserve(all.size());
    for (const Figures* f : all) values.push_back(figure.of(*f));
    medians.push_back(median(std::move(values)));
  }
  return medians;
}

Combinations checkedCombinations(const SweepRequest& request) {
  Rules rules(request.rules);
  Combinations combinations(request.sets, placesOf(request.sets, rules.parameters()));
  std::vector<double> values;
  for (std::size_t c = 0; c < combinations.count(); ++c) {
    combinations.fill(c, values);
    rules.set(values);
    rules.check();
  }
  return combinations;
}

std::vector<double> SweepRequest::valuesOf(std::size_t combination) const {
  const Combinations combinations(sets, {});
  std::vector<double> values;
  values.reserve(sets.size());
  for (std::size_t k = 0; k < sets.size(); ++k) values.push_back(combinations.value(k, combination));
  return values;
}

std::size_t checkSweep(const SweepRequest& request) {
  return checkedCombinations(request).count();
}

SweepResult sweep(const SweepRequest& request, const RunControl& control) {
  const Combinations combinations = checkedCombinations(request);
  const std::size_t count = combinations.count(), sources = request.sources.size();
  const std::size_t chunks = (count + kChunk - 1) / kChunk;
  SweepResult result;
  std::vector<SweepRow>& rows = result.rows;
  rows.resize(count * sources);
  std::vector<char> isDone(rows.size());
  std::vector<Shared> shared(sources);
  for (Shared& s : shared) s.tasksLeft = chunks;

  const auto makeWorker = [&] { return Worker{Rules(request.rules), nullptr, std::nullopt, {}}; };
  runTasks(chunks * sources, control, makeWorker, [&](Worker& worker, std::size_t task) {
    const std::size_t source = task / chunks, first = task % chunks * kChunk;
    try {
      const auto bars = barsOf(shared[source], request.sources[source]);
      if (!bars) return endTask(shared[source]);
      if (bars != worker.bars) {
        worker.rules.forget();
        worker.backtest.emplace(*bars, request.sources[source].name, request.settings);
        worker.bars = bars;
      }
      for (std::size_t c = first; c < std::min(first + kChunk, count) && !control.isStopped(); ++c) {
        combinations.fill(c, worker.values);
        worker.rules.set(worker.values);
        rows[source * count + c] = {source, c, worker.backtest->run(worker.rules.over(*bars))};
        isDone[source * count + c] = 1;
      }
    } catch (const std::exception& e) {
      fail(shared[source], e.what());
    }
    endTask(shared[source]);
  });

  std::size_t kept = 0;
  for (std::size_t s = 0; s < sources; ++s) {
    if (!shared[s].failure.empty()) {
      result.failed.push_back(shared[s].failure);
      continue;
    }
    for (std::size_t k = s * count; k < (s + 1) * count; ++k) {
      if (isDone[k])
        rows[kept++] = rows[k];
      else
        result.isComplete = false;
    }
  }
  rows.resize(kept);
  if (sources > 1) result.medians = mediansOf(result.rows, count);
  if (request.rank) rankRows(result, *request.rank);
  return result;
}

}  // namespace qv::runs
