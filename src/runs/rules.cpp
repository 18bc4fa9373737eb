#include "runs/rules.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>

namespace qv::runs {

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

Formula opened(const char* rule, const std::string& text) {
  char why[200];
  QvFormula* f = qvFormulaOpen(text.c_str(), why, sizeof why);
  if (!f) throw Error(std::string(rule) + " '" + text + "'", why, QV_INVALID_PARM);
  qvFormulaClose(f);
  return Formula(text);
}

}  // namespace

std::string numberText(double x) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, x).ptr};
}

Rules::Rules(const RuleTexts& texts) {
  if (texts[kLong].empty() && texts[kShort].empty())
    throw Error("rules", "nothing is ever entered, give a long or a short rule", QV_INVALID_PARM);
  for (const auto& [leaves, enters] : {std::pair{kExit, kLong}, std::pair{kCover, kShort}})
    if (!texts[leaves].empty() && texts[enters].empty())
      throw Error(kRuleNames[leaves], std::string("never acts without a ") + kRuleNames[enters] + " rule",
                  QV_INVALID_PARM);
  for (int rule = 0; rule < kRuleCount; ++rule) {
    if (texts[rule].empty()) continue;
    Entry& entry = entries_[rule];
    entry.formula = opened(kRuleNames[rule], texts[rule]);
    for (const std::string& name : entry.formula->parameters()) {
      const auto known = std::find(parameters_.begin(), parameters_.end(), lower(name));
      entry.uses.push_back(static_cast<std::size_t>(known - parameters_.begin()));
      if (known == parameters_.end()) parameters_.push_back(lower(name));
    }
    entry.current.assign(entry.uses.size(), std::numeric_limits<double>::quiet_NaN());  // not set
  }
}

void Rules::set(std::span<const double> values) {
  for (Entry& entry : entries_)
    for (std::size_t k = 0; k < entry.uses.size(); ++k) {
      const double value = values[entry.uses[k]];
      if (entry.current[k] == value) continue;
      entry.current[k] = value;
      entry.formula->set(parameters_[entry.uses[k]], value);
    }
}

std::string Rules::settingOf(const Entry& entry) const {
  std::string text;
  for (std::size_t k = 0; k < entry.uses.size(); ++k)
    text += (k ? ", " : "") + parameters_[entry.uses[k]] + "=" + numberText(entry.current[k]);
  return text;
}

void Rules::check() {
  for (int rule = 0; rule < kRuleCount; ++rule) {
    Entry& entry = entries_[rule];
    if (!entry.formula || (entry.isChecked && entry.checked == entry.current)) continue;
    QvFormulaNeeds needs;
    if (qvFormulaNeeds(entry.formula->get(), 0.001, &needs) < 0)
      throw Error(kRuleNames[rule], "a number is out of range with " + settingOf(entry), QV_INVALID_PARM);
    if (needs.repaints)
      throw Error(kRuleNames[rule], "looks at later bars, nobody could have acted on it", QV_INVALID_PARM);
    entry.checked = entry.current;
    entry.isChecked = true;
  }
}

Signals Rules::over(const QvBars& bars) {
  Signals signals;
  for (int rule = 0; rule < kRuleCount; ++rule) {
    Entry& entry = entries_[rule];
    if (!entry.formula) continue;
    if (!entry.isEvaluated || entry.evaluated != entry.current) {
      entry.isEvaluated = false;
      const int status = qvFormulaEval(entry.formula->get(), &bars, &entry.values);
      if (status == QV_MALLOC) throw Error(kRuleNames[rule], status);
      if (status < 0)
        throw Error(kRuleNames[rule], "a number is out of range, or the bars lack a series that it reads",
                    status);
      entry.evaluated = entry.current;
      entry.isEvaluated = true;
    }
    signals.rules[rule] = &entry.values;
  }
  return signals;
}

void Rules::forget() {
  for (Entry& entry : entries_) {
    entry.isEvaluated = false;
    entry.values.reset();
  }
}

}  // namespace qv::runs
