// A rule over many securities at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "runs/directories.h"
#include "runs/load.h"

namespace qv::runs {

struct ScreenOptions {
  std::string where;  // the rule
  double asOf = 0.0;  // the last bar on or before this date instead of the last one; 0.0: the last one
  int jobs = 1;       // threads
  LoadOptions load;
  std::function<Bars(std::size_t)> bars =
      {};  // of a source by its number, instead of its file; on any thread
};

// A security for which the rule holds.
struct Match {
  std::string symbol;
  double date = 0, close = 0;
  std::vector<double> values;  // of the rule's formulas; not-a-number where one is not known
};

struct Screened {
  std::vector<std::string> formulas;  // the values that the rule compares, as it writes them
  int barsNeeded = 0;                 // for the rule's first value
  int read = 0, tooShort = 0;
  int unknown = 0;                      // read and long enough, but without a series that the rule needs
  std::vector<Match> matches;           // in the order of the sources
  std::vector<std::string> unreadable;  // "FILE: why", in the same order
};

// Throws qv::Error where the rule means nothing or has parameters.
Screened screen(const std::vector<Source>& sources, const ScreenOptions& options);

// The values that a rule compares, each once and without those that are numbers: of "rsi(14) < 30 and close >
// sma(200)" rsi(14), close, sma(200).
std::vector<std::string> operandsOf(const std::string& rule);

}  // namespace qv::runs
