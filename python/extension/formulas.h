// Formulas, opened with their parameters' values: such a one never changes and may be evaluated on any
// threads.
#pragma once

#include <map>
#include <string>

#include "python/extension/bars.h"

namespace qv::python {

using Values = std::map<std::string, double>;  // of parameters, without "$"

class OpenFormula {
 public:
  // Throws for a text that means nothing, a parameter without a value, a value that a calculation refuses.
  OpenFormula(const std::string& text, const Values& values);

  const std::string& text() const { return text_; }
  const Formula& formula() const { return formula_; }
  QvFormulaNeeds needs(double tolerance) const { return formula_.needs(tolerance); }
  // Throws where the bars lack a series that it reads.
  void demandSeries(const BarSet& set) const { python::demandSeries(set, series_, text_); }

 private:
  std::string text_;
  Formula formula_;
  int series_;
};

// Into a series of as many items as there are bars; not-a-number where there is no value. No Python is
// needed. The status of qvFormulaEval.
int evaluate(const OpenFormula& formula, const QvBars& bars, QvArray& out) noexcept;

// Throws that a parameter has none; the rule may be empty.
[[noreturn]] void missingValue(const std::string& rule, const std::string& parameter);

void addFormulas(py::module_& module);

}  // namespace qv::python
