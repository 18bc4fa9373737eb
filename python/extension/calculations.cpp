#include "python/extension/calculations.h"

#include <cstring>
#include <limits>
#include <map>

#include "core/nearest.h"
#include "python/extension/arguments.h"
#include "python/extension/errors.h"

namespace qv::python {

namespace {

constexpr int kMostData = 4, kMostParams = 5, kMostOutputs = 5;

// ---- The object behind a function -----------------------------------------------------------------

// A calculation, the names of its arguments and the function that callers see. Made when the package is
// imported; lives for ever.
struct Calculation {
  PyObject_HEAD const QvCatalogueEntry* entry;
  int dataCount;                               // bar sets or series
  PyObject* names[kMostData + kMostParams];    // of data and parameters, interned
  const char* texts[kMostData + kMostParams];  // the same
  PyObject* resultType;                        // of several outputs; null until it is needed
  PyObject* function;
  PyMethodDef method;
};

Calculation& calculationOf(PyObject* self) {
  return *reinterpret_cast<Calculation*>(self);
}

// Pickled functions are found again by their name.
PyObject* reduce(PyObject* self, PyObject*) {
  PyObject* module = PyImport_ImportModule("qvlib60.indicators");
  if (!module) return nullptr;
  PyObject* found = Py_BuildValue("(N(s))", PyObject_GetAttrString(module, "calculation_of"),
                                  calculationOf(self).entry->shortName);
  Py_DECREF(module);
  return found;
}

PyObject* attribute(PyObject* self, PyObject* name) {
  const Calculation& c = calculationOf(self);
  if (PyUnicode_Check(name) && PyUnicode_CompareWithASCIIString(name, c.entry->shortName) == 0)
    return Py_NewRef(c.function);
  return PyObject_GenericGetAttr(self, name);
}

PyTypeObject* calculationType() {
  static PyMethodDef methods[] = {{"__reduce__", reduce, METH_NOARGS, nullptr}, {}};
  static PyType_Slot slots[] = {
      {Py_tp_methods, methods}, {Py_tp_getattro, reinterpret_cast<void*>(attribute)}, {0, nullptr}};
  static PyType_Spec definition = {"qvlib60._core.Calculation", sizeof(Calculation), 0,
                                   Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
  static auto* const type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&definition));
  return type;
}

// By short names.
std::map<std::string, PyObject*>& calculations() {
  static std::map<std::string, PyObject*> all;
  return all;
}

// ---- A call ---------------------------------------------------------------------------------------

class Call {
 public:
  explicit Call(Calculation& calculation) : calculation_(calculation), entry_(*calculation.entry) {}

  PyObject* run(PyObject* const* args, Py_ssize_t count, PyObject* keywords) {
    takeArguments(args, count, keywords);
    takeData();
    for (int k = 0; k < entry_.paramCount; ++k) {
      PyObject* given = slots_[calculation_.dataCount + k];
      params_[k] = given ? numberOf(given, entry_, k, entry_.shortName) : entry_.params[k].defaultValue;
    }
    takeOutputs();
    if (size_ > 0) calculate();
    return results();
  }

 private:
  // Puts each argument at its place: data, parameters.
  void takeArguments(PyObject* const* args, Py_ssize_t count, PyObject* keywords) {
    const int dataCount = calculation_.dataCount, all = dataCount + entry_.paramCount;
    int place = 0;
    for (Py_ssize_t i = 0; i < count; ++i) {
      // A bar set in place of the series that it holds.
      if (i == 0 && entry_.barsCount == 0 && !isPlain(args[0])) {
        set_[0] = barSetOf(args[0], keepers_[0], like_);
        if (set_[0]) {
          place = dataCount;
          continue;
        }
      }
      if (place >= all) tooMany(count);
      slots_[place++] = args[i];
    }
    const Py_ssize_t named = keywords ? PyTuple_GET_SIZE(keywords) : 0;
    for (Py_ssize_t i = 0; i < named; ++i) takeKeyword(PyTuple_GET_ITEM(keywords, i), args[count + i]);
  }

  [[noreturn]] void tooMany(Py_ssize_t count) const {
    throw py::type_error(what() + " takes " + std::to_string(calculation_.dataCount + entry_.paramCount) +
                         " arguments before out and start, " + std::to_string(count) + " are given");
  }

  void takeKeyword(PyObject* name, PyObject* value) {
    const int all = calculation_.dataCount + entry_.paramCount;
    int k = 0;
    // Names of a call are interned as those here are; those of a dictionary may not be.
    while (k < all && calculation_.names[k] != name) ++k;
    if (k == all)
      for (k = 0; k < all && PyUnicode_Compare(calculation_.names[k], name) != 0;) ++k;
    if (k < all) {
      if (slots_[k] || (k < calculation_.dataCount && set_[0]))
        throw py::type_error(what() + ": " + calculation_.texts[k] + " is given twice");
      slots_[k] = value;
    } else if (PyUnicode_CompareWithASCIIString(name, "out") == 0) {
      out_ = value == Py_None ? nullptr : value;
    } else if (PyUnicode_CompareWithASCIIString(name, "start") == 0) {
      start_ = intOf(value, "start");
    } else {
      unknownKeyword(name);
    }
  }

  [[noreturn]] void unknownKeyword(PyObject* name) const {
    const std::string text = py::str(py::handle(name));
    std::string known;
    NearestWord nearest(text);
    const int all = calculation_.dataCount + entry_.paramCount;
    for (int k = 0; k < all; ++k) {
      nearest.offer(calculation_.texts[k]);
      known += std::string(calculation_.texts[k]) + ", ";
    }
    throw py::type_error(what() + " has no argument " + text +
                         (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?"
                                         : ": there are " + known + "start and out"));
  }

  void takeData() {
    if (set_[0]) return takeSeriesOfSet();
    for (int k = 0; k < calculation_.dataCount; ++k) {
      if (!slots_[k]) throw py::type_error(what() + ": " + calculation_.texts[k] + " is missing");
      if (entry_.barsCount > 0)
        takeBars(k);
      else
        takeSeries(k);
    }
  }

  void takeBars(int k) {
    set_[k] = barSetOf(slots_[k], keepers_[k], like_);
    if (!set_[k])
      throw py::type_error(what() + ": " + calculation_.texts[k] +
                           ": qvlib60.Bars or a DataFrame is wanted, " + Py_TYPE(slots_[k])->tp_name +
                           " is given");
    demandSeries(*set_[k], entry_.series, what());
    if (k > 0) return;
    size_ = set_[0]->size();
    begin_ = set_[0]->begin(entry_.series);
  }

  void takeSeries(int k) {
    inputs_[k] = inputOf(slots_[k], calculation_.texts[k]);
    if (inputs_[k].keeper) {
      like_ = py::handle(package.indexOf)(py::handle(slots_[k]), like_ ? like_ : py::none());
    }
    useSeries(k);
  }

  // The series of a bar set that one usually passes.
  void takeSeriesOfSet() {
    for (int k = 0; k < calculation_.dataCount; ++k) {
      int series = 0;
      while (series < kBarSeries && !(entry_.inputs[k].series & (1 << series))) ++series;
      if (series == kBarSeries)
        throw py::type_error(what() + ": " + calculation_.texts[k] +
                             " is nothing that bars hold: give series");
      demandSeries(*set_[0], 1 << series, what());
      inputs_[k].series = set_[0]->bars().*kSeriesOfBars[series];
      useSeries(k);
    }
  }

  void useSeries(int k) {
    const QvArray& series = inputs_[k].series;
    if (k > 0 && series.size != size_)
      throw py::value_error(what() + ": " + calculation_.texts[k] + " has " + std::to_string(series.size) +
                            " items, " + calculation_.texts[0] + " has " + std::to_string(size_));
    size_ = series.size;
    begin_ = std::max(begin_, series.firstValid);
  }

  void takeOutputs() {
    const int count = entry_.outputCount;
    if (!out_) {
      for (int k = 0; k < count; ++k) {
        arrays_[k] = newArray(size_);
        outputs_[k] = seriesOf(arrays_[k].ptr());
      }
      return;
    }
    if (count == 1 && !PyTuple_Check(out_) && !PyList_Check(out_)) {
      takeOutput(0, out_);
      return;
    }
    const bool fits = (PyTuple_Check(out_) || PyList_Check(out_)) && PySequence_Fast_GET_SIZE(out_) == count;
    if (!fits)
      throw py::type_error(what() + ": out: a tuple of " + std::to_string(count) +
                           (count == 1 ? " array is wanted" : " arrays is wanted"));
    for (int k = 0; k < count; ++k) takeOutput(k, PySequence_Fast_GET_ITEM(out_, k));
  }

  // The library may write into its input where the catalogue says so, and only exactly there.
  void takeOutput(int k, PyObject* object) {
    arrays_[k] = py::reinterpret_borrow<py::object>(object);
    outputs_[k] = outputOf(object, "out", size_);
    for (int i = 0; i < k; ++i)
      if (overlap(outputs_[i], outputs_[k])) throw py::value_error(what() + ": two arrays of out overlap");
    const bool mayShare = (entry_.flags & QV_CALC_IN_PLACE) && entry_.inputCount == 1;
    for (int i = 0; i < entry_.inputCount; ++i) {
      const QvArray& in = inputs_[i].series;
      if (overlap(outputs_[k], in) && !(mayShare && in.data == outputs_[k].data))
        throw py::value_error(what() + ": out overlaps " + calculation_.texts[i]);
    }
    for (const BarSet* set : set_)
      for (int s = 0; set && s < kBarSeries; ++s)
        if (overlap(outputs_[k], set->bars().*kSeriesOfBars[s]))
          throw py::value_error(what() + ": out overlaps the bars' " + kSeriesNames[s]);
  }

  void calculate() {
    const QvArray* inputs[kMostData] = {};
    const QvBars* sets[2] = {};
    QvArray* outputs[kMostOutputs] = {};
    for (int k = 0; k < entry_.inputCount; ++k) inputs[k] = &inputs_[k].series;
    for (int k = 0; k < entry_.barsCount; ++k) sets[k] = &set_[k]->bars();
    for (int k = 0; k < entry_.outputCount; ++k) outputs[k] = &outputs_[k];
    const int start = entry_.barsCount > 0 ? std::max(start_, begin_) : start_;
    PyThreadState* const unlocked = PyEval_SaveThread();
    const int status = qvCatalogueCall(&entry_, sets, inputs, outputs, params_, start);
    for (int k = 0; status >= 0 && k < entry_.outputCount; ++k) finish(outputs_[k], status > 0);
    PyEval_RestoreThread(unlocked);
    if (status == QV_INVALID_PARM) throw py::value_error(what() + ": " + refusal(entry_, params_));
    if (status < 0) fail(what(), status);
  }

  // Not-a-number where there is no value: below the first valid index, where the data has not begun, behind
  // what a shorter second bar set leaves.
  void finish(QvArray& out, bool isEmpty) const {
    const int filled = std::clamp(out.size, 0, size_);
    out.size = size_;
    eraseBelow(out, isEmpty ? size_ : std::max(out.firstValid, begin_));
    std::fill(out.data + filled, out.data + size_, std::numeric_limits<double>::quiet_NaN());
  }

  PyObject* results() {
    const bool isWrapped = like_ && !like_.is_none() && !out_;
    if (entry_.outputCount == 1 && !isWrapped) return arrays_[0].release().ptr();
    py::tuple all(static_cast<std::size_t>(entry_.outputCount));
    for (int k = 0; k < entry_.outputCount; ++k) {
      const char* name = entry_.outputCount == 1 ? entry_.shortName : entry_.outputs[k].name;
      all[static_cast<std::size_t>(k)] =
          isWrapped ? py::handle(package.wrapped)(arrays_[k], like_, pythonName(name)) : arrays_[k];
    }
    if (entry_.outputCount == 1) return py::object(all[0]).release().ptr();
    if (!calculation_.resultType)
      calculation_.resultType = py::handle(package.resultType)(entry_.shortName).release().ptr();
    PyObject* made = PyObject_Call(calculation_.resultType, all.ptr(), nullptr);
    if (!made) throw py::error_already_set();
    return made;
  }

  std::string what() const { return entry_.shortName; }

  Calculation& calculation_;
  const QvCatalogueEntry& entry_;
  PyObject* slots_[kMostData + kMostParams] = {};
  PyObject* out_ = nullptr;
  int start_ = 0, size_ = 0, begin_ = 0;
  double params_[kMostParams] = {};
  Input inputs_[kMostData];
  const BarSet* set_[2] = {};
  py::object keepers_[2], like_, arrays_[kMostOutputs];
  QvArray outputs_[kMostOutputs] = {};
};

PyObject* callCalculation(PyObject* self, PyObject* const* args, Py_ssize_t count, PyObject* keywords) {
  return guarded([&] { return Call(calculationOf(self)).run(args, count, keywords); });
}

// ---- Making them ------------------------------------------------------------------------------------

// The function of a short name. `doc` begins with its signature, as inspect reads it.
py::object function(const std::string& name, const std::string& doc) {
  auto& all = calculations();
  if (const auto found = all.find(name); found != all.end())
    return py::reinterpret_borrow<py::object>(calculationOf(found->second).function);
  const QvCatalogueEntry& entry = findCalculation(name);
  Calculation* c = PyObject_New(Calculation, calculationType());
  if (!c) throw py::error_already_set();
  c->entry = &entry;
  c->dataCount = entry.barsCount + entry.inputCount;
  c->resultType = nullptr;
  const auto take = [&](int k, const std::string& text) {
    c->names[k] = PyUnicode_InternFromString(text.c_str());
    c->texts[k] = PyUnicode_AsUTF8(c->names[k]);
  };
  for (int k = 0; k < entry.barsCount; ++k) take(k, k == 0 ? "bars" : "other");
  for (int k = 0; k < entry.inputCount; ++k) {
    const std::string text = pythonName(entry.inputs[k].name);
    take(entry.barsCount + k, text == "in" ? "series" : text);
  }
  for (int k = 0; k < entry.paramCount; ++k) take(c->dataCount + k, pythonName(entry.params[k].name));
  c->method = {entry.shortName, reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(callCalculation)),
               METH_FASTCALL | METH_KEYWORDS, strdup(doc.c_str())};
  auto* const self = reinterpret_cast<PyObject*>(c);
  const py::str module("qvlib60.indicators");
  c->function = PyCFunction_NewEx(&c->method, self, module.ptr());
  all[name] = self;
  return py::reinterpret_borrow<py::object>(c->function);
}

py::object calculation(const std::string& name) {
  const auto found = calculations().find(name);
  if (found == calculations().end()) throw py::value_error(name + ": no such calculation");
  return py::reinterpret_borrow<py::object>(found->second);
}

}  // namespace

void addCalculations(py::module_& module) {
  module.def("function", &function);
  module.def("calculation", &calculation);
}

}  // namespace qv::python
