// Options that several subcommands have.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "qvlib60.hpp"
#include "runs/load.h"

namespace qvcli {

// How a price file is read: --type, --dates, --adjusted.
struct FileOptions {
  qv::runs::LoadOptions load;
};
void addFileOptions(CLI::App& command, FileOptions& options);

// Which bars of it: --from, --to, --last, --every.
struct RangeOptions {
  std::string from, to, every;
  int last = 0;  // 0: all
};
void addRangeOptions(CLI::App& command, RangeOptions& options);

// The threads to use: --jobs.
void addJobsOption(CLI::App& command, int& jobs);

// The bars of a file as both sets of options want them.
qv::Bars loadBars(const std::string& file, const FileOptions& options, const RangeOptions& range = {});

// A date that was given as an option, YYYY-MM-DD with or without HH:MM[:SS]; throws UsageError for any other
// text.
double dateOption(const std::string& name, const std::string& text);

// Throws UsageError where the formula means nothing.
qv::Formula openFormula(const std::string& text);

}  // namespace qvcli
