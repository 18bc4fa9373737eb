#include "python/extension/sweeps.h"

#include <pybind11/stl.h>

#include <atomic>

#include "python/extension/backtests.h"
#include "python/extension/tables.h"
#include "runs/screen.h"
#include "runs/sweep.h"

namespace qv::python {

namespace {

// Lets a run without the interpreter's lock be watched and stopped: by a signal, or by an exception of the
// caller's own progress function.
class Watch {
 public:
  Watch(int threads, py::object progress) : progress_(std::move(progress)) {
    control_.jobs = threads;
    control_.stopped = &stopped_;
    control_.progress = [this](double part) { look(part); };
  }
  const runs::RunControl& control() const { return control_; }

  // After the run, with the lock.
  void rethrow() {
    if (failure_) {
      PyErr_Restore(std::exchange(type_, nullptr), std::exchange(failure_, nullptr),
                    std::exchange(trace_, nullptr));
      throw py::error_already_set();
    }
  }

 private:
  void look(double part) {
    const py::gil_scoped_acquire locked;
    if (failure_) return;
    bool failed = PyErr_CheckSignals() != 0;
    if (!failed && !progress_.is_none()) {
      PyObject* answer = PyObject_CallFunction(progress_.ptr(), "d", part);
      failed = !answer;
      Py_XDECREF(answer);
    }
    if (!failed) return;
    PyErr_Fetch(&type_, &failure_, &trace_);
    PyErr_NormalizeException(&type_, &failure_, &trace_);
    stopped_ = true;
  }
  py::object progress_;
  PyObject *type_ = nullptr, *failure_ = nullptr, *trace_ = nullptr;
  std::atomic<bool> stopped_{false};
  runs::RunControl control_;
};

// The bars of a set, which must outlive them.
Bars borrowed(const BarSet& set) {
  const QvBars& b = set.bars();
  const auto items = [](const QvArray& a) {
    return a.data ? std::span<const double>(a.data, Series::lengthOf(a.size)) : std::span<const double>();
  };
  Bars bars = Bars::borrow({items(b.date), items(b.open), items(b.high), items(b.low), items(b.close),
                            items(b.volume), items(b.openInterest)});
  for (const auto member : kSeriesOfBars) (bars.*member).firstValid = (b.*member).firstValid;
  return bars;
}

// (name, file or bar set); the list keeps the sets.
std::vector<runs::SweepSource> sourcesOf(const py::list& list, bool adjusted) {
  std::vector<runs::SweepSource> sources;
  for (const auto& item : list) {
    const auto pair = item.cast<py::tuple>();
    const auto name = pair[0].cast<std::string>();
    if (py::isinstance<py::str>(pair[1])) {
      const auto file = pair[1].cast<std::string>();
      runs::LoadOptions how;
      how.adjusted = adjusted;
      sources.push_back({name, [file, how] { return runs::loadBars(file, how); }});
    } else {
      const BarSet* set = &pair[1].cast<const BarSet&>();
      sources.push_back({name, [set] { return borrowed(*set); }});
    }
  }
  return sources;
}

runs::SweepRequest requestOf(const py::list& sources, const std::vector<std::string>& rules,
                             const std::vector<std::pair<std::string, std::vector<double>>>& sets,
                             const py::dict& settings, const std::string& rank, bool adjusted) {
  runs::SweepRequest request;
  request.rules = rulesOf(rules);
  for (const auto& [name, values] : sets) request.sets.push_back({name, values});
  request.settings = settingsOf(settings);
  request.sources = sourcesOf(sources, adjusted);
  if (!rank.empty()) request.rank = &runs::findFigure(rank);
  return request;
}

template <typename Rows, typename Of>
void addFigures(py::dict& table, const Rows& rows, const std::string& prefix, Of of) {
  for (const runs::Figure& figure : runs::figureList())
    table[py::str(prefix + figure.name)] = numbers(rows, [&](const auto& row) { return figure.of(of(row)); });
}

py::dict sweep(const py::list& sources, const std::vector<std::string>& rules,
               const std::vector<std::pair<std::string, std::vector<double>>>& sets, const py::dict& settings,
               const std::string& rank, bool adjusted, int threads, const py::object& progress) {
  using namespace py::literals;
  const runs::SweepRequest request = requestOf(sources, rules, sets, settings, rank, adjusted);
  Watch watch(threads, progress);
  runs::SweepResult result;
  {
    const py::gil_scoped_release unlocked;
    result = runs::sweep(request, watch.control());
  }
  watch.rethrow();
  py::dict rows("source"_a = integers(result.rows, [](auto& r) { return r.source; }),
                "combination"_a = integers(result.rows, [](auto& r) { return r.combination; }));
  addFigures(rows, result.rows, "", [](auto& r) -> const runs::Figures& { return r.figures; });
  py::dict medians("combination"_a = integers(result.medians, [](auto& r) { return r.combination; }));
  for (std::size_t k = 0; k < runs::figureList().size(); ++k)
    medians[py::str(runs::figureList()[k].name)] =
        numbers(result.medians, [&](auto& r) { return r.values[k]; });
  return py::dict("rows"_a = rows, "medians"_a = medians, "failed"_a = result.failed);
}

py::dict walk(const py::list& sources, const std::vector<std::string>& rules,
              const std::vector<std::pair<std::string, std::vector<double>>>& sets, const py::dict& settings,
              const std::string& rank, bool adjusted, const std::string& stretches, int threads,
              const py::object& progress) {
  using namespace py::literals;
  const runs::SweepRequest request = requestOf(sources, rules, sets, settings, rank, adjusted);
  const runs::Walk how = runs::parseWalk(stretches);
  Watch watch(threads, progress);
  runs::WalkResult result;
  {
    const py::gil_scoped_release unlocked;
    result = runs::walkForward(request, how, watch.control());
  }
  watch.rethrow();
  py::dict rows("source"_a = integers(result.rows, [](auto& r) { return r.source; }),
                "combination"_a = integers(result.rows, [](auto& r) { return r.combination; }),
                "tuned_from"_a = numbers(result.rows, [](auto& r) { return r.tunedOn.from; }),
                "tuned_to"_a = numbers(result.rows, [](auto& r) { return r.tunedOn.to; }),
                "tested_from"_a = numbers(result.rows, [](auto& r) { return r.testedOn.from; }),
                "tested_to"_a = numbers(result.rows, [](auto& r) { return r.testedOn.to; }));
  rows[py::str("tuned_" + std::string(request.rank->name))] =
      numbers(result.rows, [&](auto& r) { return request.rank->of(r.tuned); });
  addFigures(rows, result.rows, "", [](auto& r) -> const runs::Figures& { return r.tested; });
  return py::dict("rows"_a = rows, "median"_a = result.median, "failed"_a = result.failed);
}

// Rules and sets that cannot be used throw; the number of combinations.
std::size_t checkSweep(const std::vector<std::string>& rules,
                       const std::vector<std::pair<std::string, std::vector<double>>>& sets,
                       const py::dict& settings, const std::string& rank) {
  const runs::SweepRequest request = requestOf(py::list(), rules, sets, settings, rank, false);
  const py::gil_scoped_release unlocked;
  return runs::checkSweep(request);
}

py::dict screen(const py::list& places, const std::string& where, double asOf, bool adjusted, int threads) {
  using namespace py::literals;
  runs::ScreenOptions options{where, asOf, threads, {}, {}};
  options.load.adjusted = adjusted;
  const std::vector<runs::SweepSource> given = sourcesOf(places, adjusted);
  std::vector<runs::Source> sources;
  for (std::size_t k = 0; k < given.size(); ++k) {
    const py::object place = places[k].cast<py::tuple>()[1];
    const bool isFile = py::isinstance<py::str>(place);
    sources.push_back(
        {isFile ? place.cast<std::string>() : given[k].name, "", given[k].name, "", "", "", ""});
  }
  options.bars = [&given](std::size_t k) { return given[k].load(); };
  runs::Screened found;
  {
    const py::gil_scoped_release unlocked;
    found = runs::screen(sources, options);
  }
  const auto& matches = found.matches;
  py::dict rows("symbol"_a = texts(matches, [](auto& m) { return m.symbol; }),
                "date"_a = numbers(matches, [](auto& m) { return m.date; }),
                "close"_a = numbers(matches, [](auto& m) { return m.close; }));
  for (std::size_t k = 0; k < found.formulas.size(); ++k)
    rows[py::str(found.formulas[k])] = numbers(matches, [&](auto& m) { return m.values[k]; });
  return py::dict("rows"_a = rows, "needed"_a = found.barsNeeded, "read"_a = found.read,
                  "too_short"_a = found.tooShort, "unknown"_a = found.unknown,
                  "unreadable"_a = found.unreadable);
}

py::list figures() {
  py::list all;
  for (const runs::Figure& f : runs::figureList())
    all.append(py::make_tuple(f.name, f.title, f.what, f.smallerIsBetter));
  return all;
}

}  // namespace

void addSweeps(py::module_& module) {
  module.def("sweep", &sweep);
  module.def("walk", &walk);
  module.def("check_sweep", &checkSweep);
  module.def("screen", &screen);
  module.def("figure_list", &figures);
  module.def("parse_set", [](const std::string& text) { return runs::parseSet(text).values; });
}

}  // namespace qv::python
