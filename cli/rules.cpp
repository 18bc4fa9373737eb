#include "cli/rules.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "runs/report.h"

namespace qvcli {

namespace {

// "5bp", "0.05%", "0": a bare number could mean either.
double fractionOf(const char* option, const std::string& text) {
  double x = 0;
  const char* const last = text.data() + text.size();
  const auto [end, status] = std::from_chars(text.data(), last, x);
  const std::string unit(end, last);
  const double scale = unit == "bp" ? 1e-4 : unit == "%" ? 1e-2 : 0.0;
  if (status != std::errc() || !std::isfinite(x) || x < 0 || (scale == 0.0 && (x != 0 || !unit.empty())))
    throw UsageError(std::string(option) + ": " + text + ": write 5bp or 0.05%");
  return x * scale;
}

}  // namespace

void addRuleOptions(CLI::App& command, RuleOptions& options) {
  using namespace qv::runs;
  const char* const group = "Rules (formulas, docs/formulas.md)";
  const auto rule = [&](Rule which, const char* what) {
    command.add_option(std::string("--") + kRuleNames[which], options.rules[which], what)
        ->type_name("RULE")
        ->group(group);
  };
  rule(kLong, "Buys at the next open");
  rule(kExit, "Sells what was bought");
  rule(kShort, "Sells short");
  rule(kCover, "Buys back what was sold short");
  command
      .add_option("--stop", options.rules[kStop],
                  "Distance of a protective stop, taken at the close of the entry's bar")
      ->type_name("FORMULA")
      ->group(group);
  command.add_option("--set", options.sets, "Values of a parameter $NAME of the rules")
      ->type_name("NAME=VALUES")
      ->group(group);

  const char* const terms = "Costs and account";
  BacktestSettings& s = options.settings;
  command.add_option("--cost", options.cost, "Of the traded value of each fill: 5bp, 0.05%")->group(terms);
  command.add_option("--slip", options.slip, "Slippage, likewise")->group(terms);
  command.add_option("--fixed", s.fixed, "Money for each fill")->check(CLI::NonNegativeNumber)->group(terms);
  command.add_option("--capital", s.capital, "Money at the start")
      ->check(CLI::PositiveNumber)
      ->capture_default_str()
      ->group(terms);
  command.add_option("--size", s.size, "Contracts or shares of an entry")
      ->check(CLI::Range(1, 1000000000))
      ->capture_default_str()
      ->group(terms);
  command.add_option("--rate", options.rate, "Yearly return without risk, for the ratios: 2%")->group(terms);
  command.add_option("--tick", s.tick, "Truncate prices to multiples of this; not truncated unless given")
      ->check(CLI::PositiveNumber)
      ->group(terms);
}

qv::runs::BacktestSettings settingsOf(const RuleOptions& options) {
  qv::runs::BacktestSettings s = options.settings;
  s.cost = fractionOf("--cost", options.cost);
  s.slip = fractionOf("--slip", options.slip);
  s.rate = fractionOf("--rate", options.rate);
  return s;
}

std::vector<qv::runs::ParameterSet> setsOf(const RuleOptions& options) {
  std::vector<qv::runs::ParameterSet> sets;
  for (const std::string& text : options.sets)
    sets.push_back(asUsage("--set: ", [&] { return qv::runs::parseSet(text); }));
  return sets;
}

void printTerms(const RuleOptions& options) {
  std::printf("%s", qv::runs::termsText(options.rules, settingsOf(options)).c_str());
}

}  // namespace qvcli
