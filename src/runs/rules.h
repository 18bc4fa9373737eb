// The rules of a trading system: formulas that are opened once and evaluated over any number of bar sets.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "qvlib60.hpp"

namespace qv::runs {

enum Rule { kLong, kExit, kShort, kCover, kStop, kRuleCount };
inline constexpr const char* kRuleNames[kRuleCount] = {"long", "exit", "short", "cover", "stop"};

// The formulas as texts, empty where there is none. Rules hold where their value is neither 0 nor
// not-a-number; the stop is a distance in prices.
using RuleTexts = std::array<std::string, kRuleCount>;

// The rules over one bar set; null where there is none.
struct Signals {
  std::array<const QvArray*, kRuleCount> rules{};

  bool knows(Rule rule, int i) const noexcept {
    const QvArray* a = rules[rule];
    return a && i >= a->firstValid && i < a->size;
  }
  bool holds(Rule rule, int i) const noexcept {
    if (!knows(rule, i)) return false;
    const double x = rules[rule]->data[i];
    return x < 0 || x > 0;
  }
};

class Rules {
 public:
  // Throws qv::Error, which names the rule: for a text that means nothing, for no entry at all, for an exit
  // without its entry.
  explicit Rules(const RuleTexts& texts);

  // The parameters of all rules, without "$" and in small letters, each once.
  const std::vector<std::string>& parameters() const noexcept { return parameters_; }
  // Sets all of them, in that order.
  void set(std::span<const double> values);

  // Throws where a rule looks at later bars, whose signals nobody could have acted on, or where the
  // parameters that are set are out of the range of a calculation.
  void check();

  // Their values, which stay until the next call. A rule is evaluated again only if its parameters have
  // changed, or after `forget`, which must stand between two bar sets.
  Signals over(const QvBars& bars);
  void forget();

 private:
  struct Entry {
    std::optional<Formula> formula;
    std::vector<std::size_t> uses;  // of the parameters
    std::vector<double> current, evaluated, checked;
    bool isChecked = false, isEvaluated = false;
    Series values;
  };
  std::string settingOf(const Entry& entry) const;

  std::array<Entry, kRuleCount> entries_;
  std::vector<std::string> parameters_;
};

// The shortest text that reads back as the number.
std::string numberText(double x);

}  // namespace qv::runs
