// Options that several subcommands have.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "qvlib60.hpp"
#include "runs/comparison.h"
#include "runs/csv_values.h"
#include "runs/load.h"

namespace qvcli {

// How a price file is read: --type, --dates, --decimal, --adjusted, --verbose.
struct FileOptions {
  qv::runs::LoadOptions load;
  bool verbose = false;
};
void addFileOptions(CLI::App& command, FileOptions& options);

// Which bars of it: --from, --to, --last, --every.
struct RangeOptions {
  std::string from, to, every;
  int last = 0;  // 0: all
};
void addRangeOptions(CLI::App& command, RangeOptions& options);

// Numbers above 0, and from 0 on.
CLI::Validator above0();
CLI::Validator from0();

// The threads to use: --jobs.
void addJobsOption(CLI::App& command, int& jobs);

// A file, its bars compressed as --every says. Tells on standard error how many rows were left out.
qv::runs::Loaded load(const std::string& file, const FileOptions& options, const std::string& every = "");
// The bars of a file that both sets of options want, and no others.
qv::Bars loadBars(const std::string& file, const FileOptions& options, const RangeOptions& range = {});

// The bars of the file that others are compared with (--against), of the same kind; null where there is none.
void addAgainstOption(CLI::App& command, std::string& file);
std::unique_ptr<qv::Bars> loadAgainst(const std::string& file, const FileOptions& options,
                                      const std::string& every);

// The bars first .. end - 1 that the options ask for.
struct Range {
  int first, end;
};
Range rangeOf(const qv::Bars& bars, const RangeOptions& options);

// A date that was given as an option, YYYY-MM-DD with or without HH:MM[:SS]; throws UsageError for any other
// text.
double dateOption(const std::string& name, const std::string& text);

// A formula, or with bars to compare with a comparison ("spread(1, 0.5)") in its place.
struct Calculation {
  std::string text;
  std::optional<qv::runs::Comparison> comparison;
  std::optional<qv::Formula> formula;

  qv::Series over(const qv::Bars& bars, const qv::Bars* other) const;
};
// Throws UsageError where it means nothing, and where it can't be used as it is: a parameter without a value.
Calculation openCalculation(const std::string& text, bool hasOther);

// Throws UsageError where the formula means nothing.
qv::Formula openFormula(const std::string& text);
// Throws UsageError where the formula can't be used as it is: a parameter without a value.
QvFormulaNeeds needsOf(const qv::Formula& formula, const std::string& text, double tolerance = 1e-3);

}  // namespace qvcli
