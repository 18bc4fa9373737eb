#include "python/extension/arguments.h"

#include <cmath>
#include <limits>

#include "core/characters.h"
#include "core/nearest.h"
#include "runs/rules.h"

namespace qv::python {

namespace {

std::string shown(PyObject* object) {
  PyObject* text = PyObject_Repr(object);
  if (!text) PyErr_Clear();
  const std::string shown = text ? std::string(py::str(py::handle(text))) : std::string("something");
  Py_XDECREF(text);
  return shown.size() > 60 ? shown.substr(0, 57) + "..." : shown;
}

[[noreturn]] void wrongChoice(const QvCatalogueParam& p, const std::string& text, const std::string& what) {
  NearestWord nearest(text);
  for (int k = 0; k < p.choiceCount; ++k) nearest.offer(p.choices[k]);
  std::string why = what + ": " + pythonName(p.name) + " has no '" + text + "'";
  if (nearest.word())
    why += ", did you mean '" + std::string(nearest.word()) + "'?";
  else
    for (int k = 0; k < p.choiceCount && k < 12; ++k)
      why += (k ? ", " : ": there are ") + std::string(p.choices[k]) + (k == 11 ? " ..." : "");
  throw py::value_error(why);
}

bool isInt(double x) {
  return std::fabs(x) <= std::numeric_limits<int>::max() && x == std::floor(x);
}
[[noreturn]] void notInt(const std::string& name, PyObject* object) {
  throw py::value_error(name + ": a whole number below 2,147,483,648 is wanted, " + shown(object) +
                        " is given");
}

}  // namespace

std::string pythonName(const std::string& name) {
  std::string out;
  bool wasSmall = false;
  for (const char c : name) {
    const bool isCapital = c >= 'A' && c <= 'Z';
    if (isCapital && wasSmall) out += '_';
    wasSmall = !isCapital;
    out += lowerCase(c);
  }
  return out;
}

std::string refusal(const QvCatalogueEntry& entry, const double* params) {
  for (int k = 0; k < entry.paramCount; ++k) {
    const QvCatalogueParam& p = entry.params[k];
    const bool isChoice = p.kind == QV_PARAM_METHOD || p.kind == QV_PARAM_CHOICE;
    if (p.kind == QV_PARAM_PERIOD && !(params[k] >= 1.0))
      return pythonName(p.name) + " must be 1 or more, it is " + runs::numberText(params[k]);
    if (isChoice && !(params[k] >= 0.0 && params[k] < p.choiceCount))
      return pythonName(p.name) + " must be 0 to " + std::to_string(p.choiceCount - 1) + ", it is " +
             runs::numberText(params[k]);
  }
  return "these parameters are refused";
}

int intOf(PyObject* object, const char* name) {
  const double x = PyFloat_AsDouble(object);
  if (PyErr_Occurred()) {
    PyErr_Clear();
    throw py::type_error(std::string(name) + ": a whole number is wanted, " + shown(object) + " is given");
  }
  if (!isInt(x)) notInt(name, object);
  return static_cast<int>(x);
}

double numberOf(PyObject* object, const QvCatalogueEntry& entry, int param, const char* what) {
  const QvCatalogueParam& p = entry.params[param];
  if (PyUnicode_Check(object) && p.choiceCount > 0) {
    const std::string text = py::str(py::handle(object));
    const int value = qvCatalogueChoice(&entry, param, text.c_str());
    if (value < 0) wrongChoice(p, text, what);
    return value;
  }
  if (p.kind == QV_PARAM_DATE && !PyFloat_Check(object) && !PyLong_Check(object))
    return py::handle(package.dateNumber)(py::handle(object)).cast<double>();
  const auto named = [&] { return std::string(what) + ": " + pythonName(p.name); };
  if (p.isInteger && !PyLong_CheckExact(object) && !PyFloat_CheckExact(object))
    return intOf(object, named().c_str());
  const double x = PyFloat_AsDouble(object);
  if (x == -1.0 && PyErr_Occurred()) {
    PyErr_Clear();
    throw py::type_error(named() + ": a number is wanted, " + shown(object) + " is given");
  }
  if (p.isInteger && !isInt(x)) notInt(named(), object);
  return x;
}

}  // namespace qv::python
