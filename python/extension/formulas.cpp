#include "python/extension/formulas.h"

#include <pybind11/stl.h>

#include "core/characters.h"
#include "python/extension/handles.h"

namespace qv::python {

namespace {

Formula opened(const std::string& text) {
  char why[300];
  QvFormula* f = qvFormulaOpen(text.c_str(), why, sizeof why);
  if (!f) throw py::value_error("'" + text + "': " + why);
  qvFormulaClose(f);
  return Formula(text);
}

bool isSame(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

py::object evaluated(const OpenFormula& formula, const py::object& bars, const py::object& out) {
  py::object keeper, like;
  const BarSet* const set = barSetOf(bars.ptr(), keeper, like);
  if (!set) throw py::type_error("bars: qvlib60.Bars or a DataFrame is wanted");
  formula.demandSeries(*set);
  py::object array = out.is_none() ? newArray(set->size()) : out;
  QvArray series = outputOf(array.ptr(), "out", set->size());
  for (int k = 0; k < kBarSeries; ++k)
    if (overlap(series, set->bars().*kSeriesOfBars[k]))
      throw py::value_error(std::string("out overlaps the bars' ") + kSeriesNames[k]);
  int status = QV_OK;
  if (series.size > 0) {
    const py::gil_scoped_release unlocked;
    status = evaluate(formula, set->bars(), series);
  }
  if (status < 0) fail(formula.text(), status);
  if (!out.is_none() || like.is_none()) return array;
  return py::handle(package.wrapped)(array, like, formula.text());
}

}  // namespace

OpenFormula::OpenFormula(const std::string& text, const Values& values)
    : text_(text), formula_(opened(text)), series_(0) {
  const std::vector<std::string> names = formula_.parameters();
  for (const auto& given : values) {
    const bool isKnown =
        std::any_of(names.begin(), names.end(), [&](const auto& n) { return isSame(n, given.first); });
    if (!isKnown)
      throw py::type_error(std::string("'").append(text).append("' has no parameter $") + given.first);
    formula_.set(given.first, given.second);
  }
  for (const std::string& name : names) {
    const bool isGiven =
        std::any_of(values.begin(), values.end(), [&](const auto& v) { return isSame(v.first, name); });
    if (!isGiven) missingValue(text, name);
  }
  QvFormulaNeeds needs;
  const int status = qvFormulaNeeds(formula_.get(), 1e-3, &needs);
  if (status == QV_INVALID_PARM)
    throw py::value_error("'" + text + "': a calculation refuses the value of a parameter");
  if (status < 0) fail(text, status);
  series_ = needs.series;
}

void missingValue(const std::string& rule, const std::string& parameter) {
  throw py::value_error((rule.empty() ? "$" : "'" + rule + "': $") + parameter + " has no value, give " +
                        parameter + "=...");
}

int evaluate(const OpenFormula& formula, const QvBars& bars, QvArray& out) noexcept {
  const int size = out.size;
  const int status = qvFormulaEval(formula.formula().get(), &bars, &out);
  out.size = size;
  if (status >= 0) eraseBelow(out, out.firstValid);
  return status;
}

void addFormulas(py::module_& module) {
  Handle<OpenFormula>(module, "Formula", "An opened formula.")
      .def_property_readonly("text", &OpenFormula::text)
      .def("evaluate", &evaluated, py::arg("bars"), py::arg("out"))
      .def("needs", [](const OpenFormula& f, double tolerance) {
        const QvFormulaNeeds n = f.needs(tolerance);
        return py::make_tuple(n.firstValid, n.settled, n.repaints != 0, n.series);
      });
  module.def("formula",
             [](const std::string& text, const Values& values) { return make<OpenFormula>(text, values); });
  module.def("parameters", [](const std::string& text) { return opened(text).parameters(); });
}

}  // namespace qv::python
