#include "python/extension/bars.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <cstring>

#include "python/extension/handles.h"
#include "runs/check.h"
#include "runs/directories.h"
#include "runs/write.h"

namespace qv::python {

namespace {

// The memory of a bar set that the library allocated, for arrays to refer to.
py::object arrayOver(const QvArray& series, const py::capsule& owner) {
  auto array = py::array_t<double>(static_cast<py::ssize_t>(series.size), series.data, owner);
  array.attr("setflags")(py::arg("write") = false);
  return array;
}

// All seven series, for steps that ask for all of them: what is missing is 0.
class WholeBars {
 public:
  explicit WholeBars(const QvBars& bars)
      : record(bars), zeros_(static_cast<std::size_t>(std::max(bars.barsize, 1))) {
    for (const auto member : kSeriesOfBars)
      if (!(record.*member).data) record.*member = {zeros_.data(), bars.barsize, bars.barsize, 0};
  }
  QvBars record;

 private:
  std::vector<double> zeros_;
};

py::object compressed(const BarSet& set, int frequency, double seconds) {
  Bars out;
  int status = 0;
  {
    const py::gil_scoped_release unlocked;
    WholeBars whole(set.bars());
    status = frequency > 0 ? qvGroupBarsDate(&whole.record, &out, frequency, 0.0, 0.0)
                           : qvGroupBarsTime(&whole.record, &out, seconds, 0.0, 0.0);
  }
  if (status < 0) fail("longer bars", status);
  for (int k = 1; k < kBarSeries; ++k)
    if (!set.has(k)) (out.*kSeriesOfBars[k]).firstValid = out.barsize;
  return make<BarSet>(std::move(out));
}

runs::LoadOptions optionsOf(const std::string& type, const std::string& dates, const std::string& decimal,
                            bool adjusted) {
  runs::LoadOptions how;
  how.type = type;
  how.adjusted = adjusted;
  using runs::DateOrder;
  using runs::DecimalSign;
  how.dates = dates == "dmy"   ? DateOrder::DayFirst
              : dates == "mdy" ? DateOrder::MonthFirst
              : dates == "ymd" ? DateOrder::YearFirst
                               : DateOrder::Unknown;
  how.decimal = decimal == "point"   ? DecimalSign::Point
                : decimal == "comma" ? DecimalSign::Comma
                                     : DecimalSign::Unknown;
  return how;
}

py::object listOf(const std::vector<runs::LeftOut>& rows) {
  py::list list;
  for (const runs::LeftOut& row : rows) list.append(py::make_tuple(row.line, row.why));
  return list;
}

py::tuple read(const std::string& file, const std::string& type, const std::string& dates,
               const std::string& decimal, bool adjusted) {
  runs::Loaded loaded;
  {
    const py::gil_scoped_release unlocked;
    loaded = runs::load(file, optionsOf(type, dates, decimal, adjusted));
  }
  const py::object leftOut = listOf(loaded.leftOut);
  return py::make_tuple(make<BarSet>(std::move(loaded.bars)), loaded.type, loaded.layout, leftOut);
}

py::list findings(const std::string& file, const std::string& type, const std::string& dates,
                  const std::string& decimal, bool adjusted) {
  std::vector<runs::Finding> found;
  {
    const py::gil_scoped_release unlocked;
    found = runs::findingsIn(runs::load(file, optionsOf(type, dates, decimal, adjusted)));
  }
  py::list list;
  for (const runs::Finding& f : found) list.append(py::make_tuple(f.place, f.date, f.what));
  return list;
}

py::list sources(const std::string& directory, const std::string& type) {
  py::list list;
  for (const runs::Source& s : runs::sourcesOf(directory, type))
    list.append(py::make_tuple(s.file, s.type, s.symbol, s.description, s.frequency, s.first, s.last));
  return list;
}

void write(const BarSet& set, const std::string& file) {
  const py::gil_scoped_release unlocked;
  runs::writeText(file, WholeBars(set.bars()).record);
}

}  // namespace

BarSet::BarSet(const std::array<py::object, kBarSeries>& columns, unsigned unknown)
    : columns_(columns), unknown_(unknown) {
  int size = -1;
  const char* first = "";
  for (std::size_t k = 0; k < columns.size(); ++k) {
    if (columns[k].is_none()) continue;
    if (!isPlain(columns[k].ptr()))
      throw py::type_error(std::string(kSeriesNames[k]) + ": an array of float64 is wanted");
    QvArray& series = bars_.*kSeriesOfBars[k];
    series = seriesOf(columns[k].ptr());
    if (size < 0) first = kSeriesNames[k];
    if (size >= 0 && series.size != size)
      throw py::value_error(std::string(kSeriesNames[k]) + ": " + std::to_string(series.size) + " items, " +
                            first + " has " + std::to_string(size));
    size = series.size;
  }
  if (size < 0) throw py::value_error("no column at all: give at least one, close=...");
  bars_.barsize = bars_.datasize = size;
  if (columns_[0].is_none()) {
    columns_[0] = newArray(size);
    bars_.date = seriesOf(columns_[0].ptr());
    for (int i = 0; i < size; ++i) bars_.date.data[i] = i + 1.0;
  }
  setFirsts();
}

BarSet::BarSet(Bars&& bars) {
  auto kept = std::make_unique<Bars>(std::move(bars));
  static_cast<QvBars&>(bars_) = *kept;
  const py::capsule owner(kept.get(), [](void* p) { delete static_cast<Bars*>(p); });
  static_cast<void>(kept.release());  // the capsule's
  for (int k = 0; k < kBarSeries; ++k) {
    QvArray& series = bars_.*kSeriesOfBars[k];
    series.size = series.capacity = bars_.barsize;
    columns_[static_cast<std::size_t>(k)] = arrayOver(series, owner);
    if (series.firstValid >= bars_.barsize && bars_.barsize > 0) unknown_ |= 1u << k;
  }
  setFirsts();
}

void BarSet::setFirsts() {
  for (int k = 0; k < kBarSeries; ++k) {
    QvArray& series = bars_.*kSeriesOfBars[k];
    if (series.data) series.firstValid = isUnknown(k) ? series.size : firstNumber(series.data, series.size);
  }
}

int BarSet::begin(int series) const {
  int first = 0;
  for (int k = 0; k < kBarSeries; ++k)
    if (series & (1 << k)) first = std::max(first, (bars_.*kSeriesOfBars[k]).firstValid);
  return first;
}

void BarSet::setSymbol(const std::string& symbol) {
  std::strncpy(bars_.symbol, symbol.c_str(), sizeof bars_.symbol - 1);
}

const BarSet* barSetOf(PyObject* object, py::object& keeper, py::object& like) {
  static PyObject* const member = PyUnicode_InternFromString("_set");
  static PyObject* const index = PyUnicode_InternFromString("index");
  py::object made;
  if (!PyObject_TypeCheck(object, reinterpret_cast<PyTypeObject*>(package.bars))) {
    made = py::handle(package.barsOfFrame)(py::handle(object));
    if (made.is_none()) return nullptr;
    object = made.ptr();
  }
  keeper = py::reinterpret_steal<py::object>(PyObject_GetAttr(object, member));
  if (!keeper) throw py::error_already_set();
  if (!like) {
    like = py::reinterpret_steal<py::object>(PyObject_GetAttr(object, index));
    if (!like) throw py::error_already_set();
  }
  return &keeper.cast<const BarSet&>();
}

const BarSet& barSetIn(PyObject* object, const char* name, py::object& keeper) {
  py::object like = py::none();
  const BarSet* set = barSetOf(object, keeper, like);
  if (!set) throw py::type_error(std::string(name) + ": qvlib60.Bars or a DataFrame is wanted");
  return *set;
}

void demandSeries(const BarSet& set, int series, const std::string& what) {
  std::string missing;
  for (int k = 0; k < kBarSeries; ++k)
    if ((series & (1 << k)) && !(set.bars().*kSeriesOfBars[k]).data)
      missing += (missing.empty() ? "" : ", ") + std::string(kSeriesNames[k]);
  if (!missing.empty()) throw py::value_error(what + ": the bars have no " + missing);
}

void addBars(py::module_& module) {
  Handle<BarSet>(module, "BarSet", "The series behind qvlib60.Bars.")
      .def("__len__", &BarSet::size)
      .def("column",
           [](const BarSet& s, const std::string& name) -> py::object {
             for (int k = 0; k < kBarSeries; ++k)
               if (name == kSeriesNames[k]) return s.has(k) ? s.column(k) : py::none();
             throw py::key_error(name);
           })
      .def("columns",
           [](const BarSet& s) {
             py::list all;
             for (int k = 0; k < kBarSeries; ++k)
               all.append(s.column(k).is_none() ? py::none() : s.column(k));
             return all;
           })
      .def("described_as", [](BarSet& s, const BarSet& other) { s.describe(other.bars()); })
      .def_property_readonly("unknown", &BarSet::unknown)
      .def_property(
          "symbol", [](const BarSet& s) { return std::string(s.bars().symbol); }, &BarSet::setSymbol)
      .def_property_readonly("description", [](const BarSet& s) { return std::string(s.bars().description); })
      .def_property_readonly("frequency", [](const BarSet& s) { return s.bars().frequency; })
      .def("compressed", &compressed, py::arg("frequency"), py::arg("seconds"))
      .def("write", &write);
  module.def("bar_set", [](const std::array<py::object, kBarSeries>& columns, unsigned unknown) {
    return make<BarSet>(columns, unknown);
  });
  module.def("read", &read);
  module.def("findings", &findings);
  module.def("sources", &sources);
}

}  // namespace qv::python
