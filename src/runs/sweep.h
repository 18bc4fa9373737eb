// Sweeps: a backtest for every combination of parameters and every file, and walks, which tune on one stretch
// of the bars and test on the next. The rows do not depend on the number of threads.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "runs/backtest.h"
#include "runs/figures.h"
#include "runs/sets.h"
#include "runs/workers.h"

namespace qv::runs {

struct SweepSource {
  std::string name;
  std::function<Bars()> load;  // called on any thread; throws where nothing can be read
};

struct SweepRequest {
  RuleTexts rules;
  std::vector<ParameterSet> sets;
  BacktestSettings settings;
  std::vector<SweepSource> sources;
  const Figure* rank = nullptr;  // best rows first; a walk needs one

  // The values of a combination, in the order of the sets. The last set changes fastest.
  std::vector<double> valuesOf(std::size_t combination) const;
};

struct SweepRow {
  std::size_t source, combination;
  Figures figures;
};

// Over the files, figure by figure, in the order of figureList().
struct MedianRow {
  std::size_t combination;
  std::vector<double> values;
};

struct SweepResult {
  std::vector<SweepRow> rows;  // by source and combination, or ranked; of a stopped run those that are done
  std::vector<MedianRow> medians;   // where there is more than one source; ranked as the rows
  std::vector<std::string> failed;  // a message for each source that could not be run
  bool isComplete = true;
};

// Throws qv::Error for rules and sets that cannot be used, with the combination where it depends on that.
SweepResult sweep(const SweepRequest& request, const RunControl& control);

// The number of combinations, after the same checks.
std::size_t checkSweep(const SweepRequest& request);

// ---- Walk forward -------------------------------------------------------------------------------

// A stretch of the calendar: 5y, 18m, 26w, 250d.
struct Period {
  int count = 0;
  char unit = 'y';
};
struct Walk {
  Period tune, test;
};
// "5y/1y". Throws for anything else.
Walk parseWalk(const std::string& text);

struct Dates {
  double from, to;  // of the first and the last bar
};
struct WalkRow {
  std::size_t source;
  Dates tunedOn, testedOn;
  std::size_t combination;  // the best one by the rank figure on the bars it is tuned on, of equals the first
  Figures tuned, tested;
};
struct WalkResult {
  std::vector<WalkRow> rows;   // by source and time
  std::vector<double> median;  // of the tested figures of all rows
  std::vector<std::string> failed;
  bool isComplete = true;
};

// Tunes on the first stretch, tests on the bars behind it, and moves on by the length of the test, until the
// bars end; what is left of the last test counts if it has at least two bars. While a stretch is tuned no
// later bar is there: its rules are evaluated over the bars that end with it. Rules are warmed up by earlier
// bars where there are some. Every stretch begins without a position, with the whole capital.
WalkResult walkForward(const SweepRequest& request, const Walk& walk, const RunControl& control);

}  // namespace qv::runs
