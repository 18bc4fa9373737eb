#include "python/extension/charts.h"

#include "python/extension/handles.h"
#include "runs/comparison.h"

namespace qv::python {

namespace {

// Of the module that needs Cairo's library.
runs::PictureWriter cairoWriter() {
  try {
    const auto writer = py::module_::import("qvlib60._cairo").attr("writer").cast<py::capsule>();
    return reinterpret_cast<runs::PictureWriter>(writer.get_pointer());
  } catch (py::error_already_set& e) {
    py::raise_from(e, PyExc_ImportError, "PNG and PDF need Cairo (Debian: libcairo2); SVG does not");
    throw py::error_already_set();
  }
}

// Only ever used by the thread that holds the interpreter's lock.
class Chart {
 public:
  Chart(py::object keeper, runs::GraphPointer graph) : keeper_(std::move(keeper)), graph_(std::move(graph)) {}

  void prices(int kind) { done(qvGraphChart(get(), QV_GRAPH_NEW, 0, nullptr, kind, 0, QV_GRAPH_REFER)); }
  void volume() {
    const int below = done(qvGraphSubWindow(get(), QV_GRAPH_NEW, "", 1));
    done(qvGraphChart(get(), QV_GRAPH_NEW, below, nullptr, QV_CHART_VOLUME, 0, QV_GRAPH_REFER));
  }
  void formula(const std::string& text, const py::object& other) {
    py::object keeper;
    const QvBars* second = nullptr;
    if (!other.is_none()) second = &barSetIn(other.ptr(), "against", keeper).bars();
    runs::addFormula(get(), text, second);
  }
  void scale(int kind) { done(qvGraphScale(get(), 0, QV_SIDE_RIGHT, kind, 0, 0)); }
  void range(int first, int last) { done(qvGraphRange(get(), first, last)); }
  void theme(bool dark) {
    const QvGraphTheme theme = themeOf(dark);
    done(qvGraphSetTheme(get(), &theme));
  }

  std::string svg(double width, double height) {
    const int length = done(qvGraphTextSVG(get(), width, height, nullptr, 0));
    std::string text(static_cast<std::size_t>(length), '\0');
    done(qvGraphTextSVG(get(), width, height, text.data(), length + 1));
    return text;
  }
  void save(const std::string& file, double width, double height, double scale) {
    const bool drawn = runs::pictureKindOf(file) > runs::PictureKind::Svg;
    runs::writePicture(get(), file, width, height, scale, drawn ? cairoWriter() : nullptr);
  }

 private:
  QvGraph* get() { return graph_.get(); }
  static int done(int status) {
    if (status < 0) fail("chart", status);
    return status;
  }
  py::object keeper_;
  runs::GraphPointer graph_;
};

}  // namespace

py::object chartOver(py::object keeper, runs::GraphPointer graph) {
  return make<Chart>(std::move(keeper), std::move(graph));
}

QvGraphTheme themeOf(bool dark) {
  QvGraphTheme theme;
  qvGraphTheme(dark ? QV_THEME_DARK : QV_THEME_LIGHT, &theme);
  return theme;
}

void addCharts(py::module_& module) {
  Handle<Chart>(module, "Chart", "A graph over bars.")
      .def("prices", &Chart::prices)
      .def("volume", &Chart::volume)
      .def("formula", &Chart::formula)
      .def("scale", &Chart::scale)
      .def("range", &Chart::range)
      .def("theme", &Chart::theme)
      .def("svg", &Chart::svg)
      .def("save", &Chart::save);
  module.def("chart", [](const py::object& bars, const std::string& title) {
    py::object keeper;
    const BarSet& set = barSetIn(bars.ptr(), "bars", keeper);
    demandSeries(set, QV_SERIES_DATE | QV_SERIES_CLOSE, "chart");
    return chartOver(keeper, runs::openGraph(set.bars(), title));
  });
}

}  // namespace qv::python
