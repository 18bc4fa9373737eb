#include "python/extension/streams.h"

#include <limits>
#include <string_view>

#include "python/extension/formulas.h"
#include "python/extension/handles.h"

namespace qv::python {

namespace {

constexpr std::size_t kMostValues = 18;  // of two bar sets and four series: what a stream may ask for

// The lock is held throughout: a stream is for one thread at a time.
class FormulaStream {
 public:
  FormulaStream(const OpenFormula& formula, Stream stream)
      : stream_(std::move(stream)), series_(formula.needs(1e-3).series), text_(formula.text()) {
    if (stream_.outputCount() != 1) throw py::value_error(text_ + ": the block is that of another stream");
  }

  enum Step { Update, Peek, ReplaceLast };

  // The values at the bars of these columns, arrays of one length or None.
  py::object take(const py::list& columns, Step step) {
    const double* values[kMostValues] = {};
    int count = -1;
    for (std::size_t k = 0; k < static_cast<std::size_t>(kBarSeries); ++k) {
      if (columns[k].is_none()) continue;
      const py::object column = columns[k];
      if (!isPlain(column.ptr())) throw py::type_error(std::string(kSeriesNames[k]) + ": an array is wanted");
      const QvArray series = seriesOf(column.ptr());
      if (count >= 0 && series.size != count)
        throw py::value_error(std::string(kSeriesNames[k]) +
                              ": as many items as in the other columns are wanted");
      count = series.size;
      values[k] = series.data;
    }
    demand(values);
    const bool fits = step == Update ? count >= 0 : count == 1;
    if (!fits)
      throw py::value_error(text_ + (step == Update ? ": no column is given" : ": one bar is wanted"));
    py::object array = newArray(count);
    QvArray out = seriesOf(array.ptr());
    if (count > 0) run(step, values, count, &out.data);
    const int end = stream_.bars() + (step == Peek ? 1 : 0), first = stream_.firstValid();
    eraseBelow(out, first < 0 ? count : std::max(0, first - (end - count)));
    return array;
  }

  py::object copy(const OpenFormula& formula) const { return make<FormulaStream>(formula, Stream(stream_)); }
  py::bytes save() const {
    const std::vector<unsigned char> block = stream_.save();
    return {reinterpret_cast<const char*>(block.data()), block.size()};
  }
  int bars() const { return stream_.bars(); }
  int first() const { return stream_.firstValid(); }

 private:
  void demand(const double* const* values) const {
    for (int k = 0; k < kBarSeries; ++k)
      if ((series_ & (1 << k)) && !values[k])
        throw py::value_error(text_ + ": " + kSeriesNames[k] + " is missing");
  }
  void run(Step step, const double* const* values, int count, double* const* outputs) {
    const int status = step == Update ? qvStreamUpdate(stream_.get(), values, count, outputs)
                       : step == Peek ? qvStreamPeek(stream_.get(), values, outputs)
                                      : qvStreamReplaceLast(stream_.get(), values, outputs);
    if (status == QV_RECORD_NOT_FOUND) throw py::value_error(text_ + ": there is no bar yet to be replaced");
    if (status < 0) fail(text_, status);
  }
  Stream stream_;
  int series_;
  std::string text_;
};

Stream opened(const OpenFormula& formula) {
  QvStream* probe = nullptr;
  const int status = qvStreamOpenFormula(formula.formula().get(), &probe);
  qvStreamClose(probe);
  if (status == QV_UNKNOWN)
    throw py::value_error("'" + formula.text() + "': looks at later bars, there is no stream of it");
  if (status < 0) fail(formula.text(), status);
  return Stream(formula.formula());
}

Stream loaded(std::string_view block) {
  try {
    return Stream::load({reinterpret_cast<const unsigned char*>(block.data()), block.size()});
  } catch (const Error& e) {
    if (e.code() == QV_MALLOC) throw;
    throw py::value_error("the block is damaged, or another version's");
  }
}

}  // namespace

void addStreams(py::module_& module) {
  Handle<FormulaStream>(module, "Stream", "A formula that takes one bar at a time.")
      .def("update", [](FormulaStream& s, const py::list& c) { return s.take(c, FormulaStream::Update); })
      .def("peek", [](FormulaStream& s, const py::list& c) { return s.take(c, FormulaStream::Peek); })
      .def("replace_last",
           [](FormulaStream& s, const py::list& c) { return s.take(c, FormulaStream::ReplaceLast); })
      .def("copy", &FormulaStream::copy)
      .def("save", &FormulaStream::save)
      .def_property_readonly("bars", &FormulaStream::bars)
      .def_property_readonly("first", &FormulaStream::first);
  module.def("stream",
             [](const OpenFormula& formula) { return make<FormulaStream>(formula, opened(formula)); });
  module.def("load_stream", [](const OpenFormula& formula, const py::bytes& block) {
    return make<FormulaStream>(formula, loaded(std::string_view(block)));
  });
}

}  // namespace qv::python
