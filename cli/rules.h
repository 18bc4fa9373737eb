// The options of a trading system by rules, which backtest and sweep share.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "cli/tool.h"
#include "runs/backtest.h"
#include "runs/sets.h"

namespace qvcli {

struct RuleOptions {
  qv::runs::RuleTexts rules;
  std::vector<std::string> sets;
  std::string cost = "0", slip = "0", rate = "0";
  qv::runs::BacktestSettings settings;  // but for these
};
void addRuleOptions(CLI::App& command, RuleOptions& options);

// Both throw UsageError.
qv::runs::BacktestSettings settingsOf(const RuleOptions& options);
std::vector<qv::runs::ParameterSet> setsOf(const RuleOptions& options);

// How orders are filled and what they cost, for people.
void printTerms(const RuleOptions& options);

// Calls what reads an option; what that finds wrong is a UsageError.
template <typename Read>
auto asUsage(const std::string& option, Read read) {
  try {
    return read();
  } catch (const qv::Error& e) {
    throw UsageError(option + e.what());
  }
}

}  // namespace qvcli
