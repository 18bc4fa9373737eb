// The graph object: opening, sub-windows, styles, scales and the visible range.
#include "charting/graph.h"

#include <cmath>
#include <new>

#include "charting/texts.h"

namespace qv::charting {

namespace {

constexpr int kMostSubWindows = 64;
constexpr int kFarthestBar = 1 << 30;

// The first bar dated at or behind a date.
int barAt(const QvBars& bars, double date) noexcept {
  const double* dates = bars.date.data;
  return static_cast<int>(std::lower_bound(dates, dates + barCount(bars), date) - dates);
}

}  // namespace

void release(Item& item) noexcept {
  release(item.bars);
  release(item.smoothed);
  for (Part& part : item.parts) {
    release(part.values);
    release(part.other);
  }
  item.kind = Item::Kind::None;
}

int addSubWindow(QvGraph& graph) noexcept {
  if (graph.subWindowCount >= kMostSubWindows) return QV_INVALID_PARM;
  if (!graph.subWindows.grow(static_cast<std::size_t>(graph.subWindowCount) + 1)) return QV_MALLOC;
  new (&graph.subWindow(graph.subWindowCount)) SubWindow;
  return graph.subWindowCount++;
}

int put(QvGraph& graph, int number, Item& item) noexcept {
  if (number == QV_GRAPH_NEW) {
    number = 0;
    while (number < graph.itemCount && graph.item(number).kind != Item::Kind::None) ++number;
    if (number == graph.itemCount) {
      if (!graph.items.grow(static_cast<std::size_t>(number) + 1)) {
        release(item);
        return QV_MALLOC;
      }
      ++graph.itemCount;
    }
    item.colour = graph.colours;
    if (item.kind == Item::Kind::Line)
      graph.colours = (graph.colours + 1) % static_cast<int>(std::size(graph.theme.palette));
  } else {
    item.colour = graph.item(number).colour;
    release(graph.item(number));
  }
  graph.item(number) = item;
  return number;
}

}  // namespace qv::charting

using namespace qv;
using namespace qv::charting;

extern "C" {

QvGraph* QVCALL qvGraphOpen(const QvBars* bars, const char* title, int keep) noexcept {
  void* block = bars ? memory::allocateZeroed(1, sizeof(QvGraph)) : nullptr;
  if (!block) return nullptr;
  auto* graph = new (block) QvGraph;
  graph->theme = lightTheme();
  storeText(graph->title, title);
  if (charting::keep(graph->bars, bars, keep) != QV_OK || addSubWindow(*graph) < 0) {
    qvGraphClose(graph);
    return nullptr;
  }
  constexpr double kPriceWeight = 3.0;
  graph->subWindow(0).weight = kPriceWeight;
  graph->subWindow(0).series = kPrices;
  return graph;
}

void QVCALL qvGraphClose(QvGraph* graph) noexcept {
  if (!graph) return;
  for (int i = 0; i < graph->itemCount; ++i) release(graph->item(i));
  release(graph->bars);
  graph->~QvGraph();
  memory::release(graph);
}

int QVCALL qvGraphSubWindow(QvGraph* graph, int subWindow, const char* title, double weight) noexcept {
  if (!graph || !(weight >= 0.0 && isValue(weight))) return QV_INVALID_PARM;
  if (subWindow != QV_GRAPH_NEW && !hasSubWindow(graph, subWindow)) return QV_INVALID_PARM;
  const int number = subWindow == QV_GRAPH_NEW ? addSubWindow(*graph) : subWindow;
  if (number < 0) return number;
  graph->subWindow(number).weight = weight;
  storeText(graph->subWindow(number).title, title);
  return number;
}

int QVCALL qvGraphStyle(QvGraph* graph, int item, int part, const QvGraphStyle* style) noexcept {
  if (!charting::hasItem(graph, item) || !style || part < 0 || part >= graph->item(item).partCount ||
      style->dash < QV_DASH_SOLID || style->dash > QV_DASH_DOTTED)
    return QV_INVALID_PARM;
  QvGraphStyle& kept = graph->item(item).parts[part].style;
  kept = *style;
  char name[sizeof style->name + 1] = {};
  std::memcpy(name, style->name, sizeof style->name);
  storeText(kept.name, name);
  if (!(isValue(style->width) && style->width > 0.0)) kept.width = 0.0;
  return QV_OK;
}

int QVCALL qvGraphRemove(QvGraph* graph, int item) noexcept {
  if (!charting::hasItem(graph, item)) return QV_INVALID_PARM;
  release(graph->item(item));
  return QV_OK;
}

int QVCALL qvGraphScale(QvGraph* graph, int subWindow, int side, int kind, double low, double high) noexcept {
  if (!hasSubWindow(graph, subWindow) || side < QV_SIDE_RIGHT || side > QV_SIDE_LEFT ||
      kind < QV_SCALE_LINEAR || kind > QV_SCALE_PERCENT)
    return QV_INVALID_PARM;
  const bool fixed = isValue(low) && isValue(high) && low < high;
  if (fixed && kind == QV_SCALE_LOG && low <= 0.0) return QV_INVALID_PARM;
  Scale& scale = graph->subWindow(subWindow).scales[side];
  scale.kind = kind;
  scale.fixedLow = fixed ? low : 0.0;
  scale.fixedHigh = fixed ? high : 0.0;
  return QV_OK;
}

int QVCALL qvGraphRange(QvGraph* graph, int first, int last) noexcept {
  if (!graph || first > last || first < -kFarthestBar || last > kFarthestBar) return QV_INVALID_PARM;
  graph->first = first;
  graph->last = last;
  return QV_OK;
}

int QVCALL qvGraphRangeDates(QvGraph* graph, double from, double to) noexcept {
  if (!graph || !(from <= to)) return QV_INVALID_PARM;
  const QvBars& bars = *graph->bars.record;
  const int first = barAt(bars, from);
  int last = barAt(bars, to);
  while (last < barCount(bars) && bars.date.data[last] == to) ++last;
  return last > first ? qvGraphRange(graph, first, last - 1) : int{QV_INVALID_PARM};
}

int QVCALL qvGraphCursor(QvGraph* graph, int bar) noexcept {
  if (!graph || bar < -1) return QV_INVALID_PARM;
  graph->cursor = bar;
  return QV_OK;
}

}  // extern "C"
