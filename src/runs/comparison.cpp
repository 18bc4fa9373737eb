#include "runs/comparison.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "runs/words.h"

namespace qv::runs {

namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& why) {
  throw Error(text, why, QV_INVALID_PARM);
}

// "(1, 0.5)" or nothing.
std::vector<double> numbersIn(const std::string& text, std::string_view call) {
  std::vector<double> numbers;
  call = trimmed(call);
  if (call.empty()) return numbers;
  if (call.front() != '(' || call.back() != ')') refuse(text, "a name and numbers in brackets are wanted");
  call = call.substr(1, call.size() - 2);
  for (bool more = !trimmed(call).empty(); more;) {
    const std::size_t comma = call.find(',');
    const std::string_view word = trimmed(call.substr(0, comma));
    double number = 0.0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (word.empty() || error != std::errc() || end != word.data() + word.size())
      refuse(text, "'" + std::string(word) + "' is no number");
    numbers.push_back(number);
    more = comma != std::string_view::npos;
    if (more) call.remove_prefix(comma + 1);
  }
  return numbers;
}

}  // namespace

std::optional<Comparison> comparisonIn(const std::string& text) {
  const std::size_t bracket = text.find('(');
  const std::string name(trimmed(std::string_view(text).substr(0, bracket)));
  const QvCatalogueEntry* entry = qvCatalogueFind(name.c_str());
  if (!entry || entry->barsCount < 2) return std::nullopt;
  const Params given(numbersIn(text, std::string_view(text).substr(std::min(bracket, text.size()))));
  return Comparison{entry, given.of(*entry)};
}

Series Comparison::over(const QvBars& bars, const QvBars& other) const {
  std::vector<Series> outputs = calcAll(*entry, {&bars, &other}, {}, params);
  return std::move(outputs[static_cast<std::size_t>(entry->mainOutput)]);
}

void addFormula(QvGraph* graph, const std::string& text, const QvBars* other) {
  if (const std::optional<Comparison> comparison = comparisonIn(text); comparison && other) {
    check(
        qvGraphCalculation(graph, QV_GRAPH_NEW, comparison->entry, other, nullptr, comparison->params.data()),
        text);
    return;
  }
  char why[300] = "";
  const int item = qvGraphFormula(graph, QV_GRAPH_NEW, text.c_str(), why, sizeof why);
  if (item < 0) throw Error("'" + text + "'", why, item);
}

}  // namespace qv::runs
