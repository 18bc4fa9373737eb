#include "runs/sets.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "core/nearest.h"
#include "qvlib60.hpp"

namespace qv::runs {

namespace {

constexpr double kMostValues = 1e6;

[[noreturn]] void refuse(const std::string& text, const std::string& why) {
  throw Error(text, why, QV_INVALID_PARM);
}

double numberOf(const std::string& part, const std::string& text) {
  double x = 0;
  const auto [end, status] = std::from_chars(part.data(), part.data() + part.size(), x);
  if (status != std::errc() || end != part.data() + part.size() || !std::isfinite(x))
    refuse(text, "'" + part + "' is no number; write NAME=FIRST:LAST:STEP or NAME=A,B,C");
  return x;
}

std::vector<double> numbersOf(const std::string& list, char separator, const std::string& text) {
  std::vector<double> numbers;
  for (std::size_t from = 0;;) {
    const std::size_t to = std::min(list.find(separator, from), list.size());
    numbers.push_back(numberOf(list.substr(from, to - from), text));
    if (to == list.size()) return numbers;
    from = to + 1;
  }
}

// Without the last roundings: 0.1 and two steps of 0.1 are 0.3.
double asWritten(double x) {
  char text[40];
  const int length = std::snprintf(text, sizeof text, "%.15g", x);
  std::from_chars(text, text + length, x);
  return x;
}

// The last value is the end where steps lead there but for rounding: 0.1:0.7:0.1 has seven.
std::vector<double> rangeOf(double first, double last, double step, const std::string& text) {
  if (step == 0.0 || (last - first) / step < 0)
    refuse(text, "the step does not lead from the first to the last value");
  const double steps = std::floor((last - first) / step + 1e-9);
  if (!(steps < kMostValues)) refuse(text, "too many values");
  std::vector<double> values;
  values.push_back(first);
  for (int k = 1; k <= static_cast<int>(steps); ++k) values.push_back(asWritten(first + k * step));
  if (std::fabs(values.back() - last) <= 1e-9 * std::fabs(step)) values.back() = last;
  return values;
}

}  // namespace

ParameterSet parseSet(const std::string& text) {
  const std::size_t equals = text.find('=');
  ParameterSet set;
  for (std::size_t i = text.starts_with('$') ? 1 : 0; i < std::min(equals, text.size()); ++i)
    set.name += static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
  if (equals == std::string::npos || set.name.empty())
    refuse(text, "write NAME=FIRST:LAST:STEP or NAME=A,B,C");
  const std::string list = text.substr(equals + 1);
  if (list.find(':') == std::string::npos) {
    set.values = numbersOf(list, ',', text);
    return set;
  }
  const std::vector<double> range = numbersOf(list, ':', text);
  if (range.size() > 3) refuse(text, "write NAME=FIRST:LAST:STEP");
  set.values = rangeOf(range[0], range[1], range.size() == 3 ? range[2] : 1.0, text);
  return set;
}

std::vector<std::size_t> placesOf(const std::vector<ParameterSet>& sets,
                                  const std::vector<std::string>& parameters) {
  for (std::size_t k = 0; k < sets.size(); ++k) {
    const std::string& name = sets[k].name;
    for (std::size_t j = 0; j < k; ++j)
      if (sets[j].name == name) refuse("$" + name, "given twice");
    if (std::find(parameters.begin(), parameters.end(), name) != parameters.end()) continue;
    NearestWord nearest(name);
    for (const std::string& known : parameters) nearest.offer(known.c_str());
    refuse("$" + name, nearest.word() ? "not in the rules, did you mean $" + std::string(nearest.word()) + "?"
                                      : "not in the rules");
  }
  std::vector<std::size_t> places;
  for (const std::string& name : parameters) {
    const auto set =
        std::find_if(sets.begin(), sets.end(), [&](const ParameterSet& s) { return s.name == name; });
    if (set == sets.end()) refuse("$" + name, "has no value, give one with --set " + name + "=...");
    places.push_back(static_cast<std::size_t>(set - sets.begin()));
  }
  return places;
}

Combinations::Combinations(const std::vector<ParameterSet>& sets, std::vector<std::size_t> places)
    : sets_(&sets), places_(std::move(places)), strides_(sets.size()) {
  for (std::size_t k = sets.size(); k-- > 0;) {
    strides_[k] = count_;
    count_ *= sets[k].values.size();
    if (count_ > INT32_MAX) refuse("the sets", "too many combinations");
  }
}

void Combinations::fill(std::size_t combination, std::vector<double>& values) const {
  values.resize(places_.size());
  for (std::size_t k = 0; k < places_.size(); ++k) values[k] = value(places_[k], combination);
}

}  // namespace qv::runs
