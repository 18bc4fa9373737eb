// Formulas in a graph, where they belong.
#include <cstdio>

#include "charting/graph_outputs.h"
#include "charting/texts.h"
#include "formula/open.h"

namespace {

using namespace qv;
using namespace qv::charting;
using formula::Node;

class Formula {
 public:
  Formula(const char* text, char* error, int errorSize) noexcept
      : status_(formula::open(text, error, errorSize, f_)) {}

  int status() const noexcept { return status_; }  // 0, -1 or -3
  const QvFormula* get() const noexcept { return f_.get(); }
  const Node& node(int i) const noexcept { return f_->nodes[static_cast<std::size_t>(i)]; }
  const Node& root() const noexcept { return node(f_->root); }

 private:
  formula::FormulaPtr f_;
  int status_;
};

// Where values stand: with the prices, as signals over them, in the panel of a calculation or of a series, or
// in a panel of their own.
struct Place {
  enum Kind { Constant, Prices, Signals, Panel } kind = Panel;
  const QvCatalogueEntry* entry = nullptr;
  unsigned series = 0;
};

// The call whose output a node is, else null.
const Node* callOf(const Formula& f, const Node& node) noexcept {
  return node.kind == formula::Kind::Output ? &f.node(node.operands[0]) : nullptr;
}

Place placeOf(const Formula& f, const Node& node) noexcept;

// Sums and differences of a price with what is none are prices, and multiples of prices.
Place placeOfPair(const Formula& f, const Node& node) noexcept {
  const Place a = placeOf(f, f.node(node.operands[0])), b = placeOf(f, f.node(node.operands[1]));
  if (b.kind == Place::Constant) return a;
  if (a.kind == Place::Constant) return node.kind == formula::Kind::Divide ? Place{} : b;
  const bool price = a.kind == Place::Prices, prices = price && b.kind == Place::Prices;
  switch (node.kind) {
    case formula::Kind::Add:
      return price || b.kind == Place::Prices ? Place{Place::Prices} : Place{};
    case formula::Kind::Subtract:
      return price && !prices ? a : Place{};
    case formula::Kind::Smaller:
    case formula::Kind::Larger:
      return a;
    default:
      return {};
  }
}

Place placeOfOutput(const Formula& f, const Node& node) noexcept {
  const Node& call = *callOf(f, node);
  const QvCatalogueOutput& output = call.entry->outputs[node.index];
  if (output.style == QV_STYLE_SIGNAL) return {Place::Signals};
  if (output.place == QV_PLACE_PANEL) return {Place::Panel, call.entry};
  return call.entry->inputCount > 0 ? placeOf(f, f.node(call.operands[0])) : Place{Place::Prices};
}

Place placeOf(const Formula& f, const Node& node) noexcept {
  using enum formula::Kind;
  if (node.constant) return {Place::Constant};
  switch (node.kind) {
    case Field: {
      const unsigned series = 1u << static_cast<unsigned>(node.index);
      return series & kPrices ? Place{Place::Prices} : Place{Place::Panel, nullptr, series};
    }
    case Shift:
    case Highest:
    case Lowest:
    case Coarse:
    case Absolute:
      return placeOf(f, f.node(node.operands[0]));
    case If:
      return placeOf(f, f.node(node.operands[1]));
    case Add:
    case Subtract:
    case Multiply:
    case Divide:
    case Smaller:
    case Larger:
      return placeOfPair(f, node);
    case Not:
    case Less:
    case LessOrEqual:
    case Equal:
    case NotEqual:
    case And:
    case Or:
    case CrossesAbove:
    case Candle:
      return {Place::Signals};
    case Output:
      return placeOfOutput(f, node);
    default:
      return {};
  }
}

// The newest panel of that calculation or series, else -1.
int panelOf(const QvGraph& graph, const Place& place) noexcept {
  if (place.kind != Place::Panel) return 0;
  for (int i = graph.subWindowCount - 1; i > 0; --i) {
    const SubWindow& s = graph.subWindow(i);
    if ((place.entry && s.entry == place.entry) || (place.series && s.series == place.series)) return i;
  }
  return -1;
}

// The value of a formula as a series of the part.
int compute(const QvGraph& graph, const QvFormula* f, KeptSeries& kept) noexcept {
  QvArray* series = ownSeries(kept);
  if (!series) return QV_MALLOC;
  const int first = qvGetMaxFirstValid();
  const int status = qvFormulaEval(f, graph.bars.record, series);
  qvSetMaxFirstValid(first);  // painting is no calculation of the caller's
  return status;
}

// The formula with one of its outputs behind it.
class OutputText {
 public:
  OutputText(const char* text, const char* output) noexcept
      : text_(std::strlen(text) + std::strlen(output) + 2) {
    if (text_.ok()) std::snprintf(text_.data(), text_.count(), "%s.%s", text, output);
  }
  bool ok() const noexcept { return text_.ok(); }
  const char* text() noexcept { return text_.data(); }

 private:
  memory::Buffer<char> text_;
};

// The parts of a calculation of which no output was named.
int computeOutputs(const QvGraph& graph, const char* text, const QvCatalogueEntry& entry,
                   Item& item) noexcept {
  return takeOutputs(entry, item, [&](int output, KeptSeries& kept) noexcept -> int {
    OutputText named(text, entry.outputs[output].name);
    if (!named.ok()) return QV_MALLOC;
    const Formula f(named.text(), nullptr, 0);
    return f.status() == QV_OK ? compute(graph, f.get(), kept) : f.status();
  });
}

// 1 where the text names none of the calculation's outputs, else 0; -3.
int namesNoOutput(const char* text, const QvCatalogueEntry& entry) noexcept {
  if (entry.outputCount < 2) return 0;
  OutputText named(text, entry.outputs[0].name);
  const int status = named.ok() ? Formula(named.text(), nullptr, 0).status() : int{QV_MALLOC};
  return status == QV_INVALID_PARM ? 0 : status == QV_OK ? 1 : status;
}

int fill(const QvGraph& graph, const char* text, const Formula& f, const Place& place, Item& item) noexcept {
  const Node* call = callOf(f, f.root());
  const int whole = call ? namesNoOutput(text, *call->entry) : 0;
  if (whole < 0) return whole;
  item.partCount = 0;
  if (call && place.entry == call->entry) takeHints(*call->entry, whole ? -1 : f.root().index, item);
  if (whole) return computeOutputs(graph, text, *call->entry, item);
  Part& part = item.parts[item.partCount++];
  part.form = call ? call->entry->outputs[f.root().index].style : QV_LINE_LINE;
  if (part.form == QV_LINE_BAND) part.form = QV_LINE_LINE;
  if (place.kind == Place::Signals) part.form = QV_LINE_SIGNAL;
  if (place.series == kVolume && f.root().kind == formula::Kind::Field) part.form = QV_LINE_HISTOGRAM;
  return compute(graph, f.get(), part.values);
}

int refuse(char* error, int size, int code) noexcept {
  char text[32];
  qvErrDesc(code, text);
  if (error && size > 0) std::snprintf(error, static_cast<std::size_t>(size), "%s", text);
  return code;
}

}  // namespace

extern "C" {

int QVCALL qvGraphFormula(QvGraph* graph, int subWindow, const char* formula, char* error,
                          int errorSize) noexcept {
  if (!graph || (subWindow != QV_GRAPH_NEW && !hasSubWindow(graph, subWindow)))
    return refuse(error, errorSize, QV_INVALID_PARM);
  const Formula f(formula, error, errorSize);
  if (f.status() != QV_OK) return f.status();
  const Place place = placeOf(f, f.root());
  Item item;
  item.kind = Item::Kind::Line;
  storeText(item.name, formula);
  if (const int status = fill(*graph, formula, f, place, item); status < 0) {
    release(item);
    return refuse(error, errorSize, status);
  }
  // A calculation gets a panel of its own, what is made of its values goes there, too.
  const Node* call = callOf(f, f.root());
  const bool opens = place.kind == Place::Panel && (!place.entry || (call && call->entry == place.entry)) &&
                     !(place.series && panelOf(*graph, place) >= 0);
  const int number = subWindow != QV_GRAPH_NEW ? subWindow : opens ? QV_GRAPH_NEW : panelOf(*graph, place);
  const int result = putInPanel(*graph, item, number, place.entry, place.series);
  return result < 0 ? refuse(error, errorSize, result) : result;
}

}  // extern "C"
